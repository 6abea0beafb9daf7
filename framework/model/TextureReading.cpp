#include "framework/model/TextureReading.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Qor::Chart::Model {

namespace {

using Environment = Types::TextureUnit::Environment;
using Filter = Types::TextureUnit::Filter;
using Wrap = Types::TextureUnit::Wrap;

/// The values of an enumeration that counts in constants of OpenGL, and their names.
template <class T, std::size_t N>
struct Names {
    std::array<std::string_view, N> names;
    std::array<T, N> values;

    std::string Write(T p_value) const {
        auto const found = std::find(values.begin(), values.end(), p_value);
        return Detail::WriteChoice(names, static_cast<int>(found - values.begin()));
    }
    std::optional<T> Read(std::string_view p_text) const {
        std::optional<int> const number = Detail::ReadChoice(names, p_text);
        return number ? std::optional<T>(values.at(static_cast<std::size_t>(*number))) : std::nullopt;
    }
};

constexpr Names<Environment, 6> Environments{{"Modulate", "Decal", "Replace", "Blend", "Add", "Combine"},
    {Environment::Modulate, Environment::Decal, Environment::Replace, Environment::Blend, Environment::Add,
        Environment::Combine}};
constexpr Names<Filter, 6> Filters{
    {"Nearest", "Linear", "NearestMipmapNearest", "LinearMipmapNearest", "NearestMipmapLinear", "LinearMipmapLinear"},
    {Filter::Nearest, Filter::Linear, Filter::NearestMipmapNearest, Filter::LinearMipmapNearest,
        Filter::NearestMipmapLinear, Filter::LinearMipmapLinear}};
constexpr Names<Wrap, 4> Wraps{{"Repeat", "MirroredRepeat", "ClampToEdge", "ClampToBorder"},
    {Wrap::Repeat, Wrap::MirroredRepeat, Wrap::ClampToEdge, Wrap::ClampToBorder}};

/// The first word of a text and what follows it.
std::pair<std::string_view, std::string_view> SplitWord(std::string_view p_text) {
    constexpr std::string_view blanks = " \t\r\n";
    std::size_t const first = std::min(p_text.find_first_not_of(blanks), p_text.size());
    std::size_t const end = std::min(p_text.find_first_of(blanks, first), p_text.size());
    std::size_t const next = std::min(p_text.find_first_not_of(blanks, end), p_text.size());
    return {p_text.substr(first, end - first), p_text.substr(next)};
}

Filter WithoutMipmaps(Filter p_filter) {
    bool const isNearest = p_filter == Filter::Nearest || p_filter == Filter::NearestMipmapNearest ||
        p_filter == Filter::NearestMipmapLinear;
    return isNearest ? Filter::Nearest : Filter::Linear;
}

} // namespace

std::string ValueText<Environment>::Write(Environment p_value) {
    return Environments.Write(p_value);
}
std::optional<Environment> ValueText<Environment>::Read(std::string_view p_text) {
    return Environments.Read(p_text);
}
std::string ValueText<Environment>::Form() {
    return Detail::ChoiceForm(Environments.names);
}

std::string ValueText<TextureFilters>::Write(TextureFilters const& p_value) {
    return Filters.Write(p_value.minification) + ' ' + Filters.Write(p_value.magnification);
}
std::optional<TextureFilters> ValueText<TextureFilters>::Read(std::string_view p_text) {
    auto const [first, second] = SplitWord(p_text);
    std::optional<Filter> const minification = Filters.Read(first);
    if (!minification)
        return std::nullopt;
    std::optional<Filter> const magnification = second.empty() ? WithoutMipmaps(*minification) : Filters.Read(second);
    return magnification ? std::optional<TextureFilters>({*minification, *magnification}) : std::nullopt;
}
std::string ValueText<TextureFilters>::Form() {
    return "the filters for smaller and larger, or one for both, each " + Detail::ChoiceForm(Filters.names);
}

std::string ValueText<TextureWraps>::Write(TextureWraps const& p_value) {
    return Wraps.Write(p_value.s) + ' ' + Wraps.Write(p_value.t);
}
std::optional<TextureWraps> ValueText<TextureWraps>::Read(std::string_view p_text) {
    auto const [first, second] = SplitWord(p_text);
    std::optional<Wrap> const s = Wraps.Read(first);
    std::optional<Wrap> const t = second.empty() ? s : Wraps.Read(second);
    return s && t ? std::optional<TextureWraps>({*s, *t}) : std::nullopt;
}
std::string ValueText<TextureWraps>::Form() {
    return "the wraps sideways and upwards, or one for both, each " + Detail::ChoiceForm(Wraps.names);
}

} // namespace Qor::Chart::Model
