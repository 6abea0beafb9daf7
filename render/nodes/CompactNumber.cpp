#include "render/nodes/CompactNumber.h"

#include <array>
#include <charconv>
#include <system_error>

namespace Qor::Chart::Render {

namespace {

constexpr double Thousand = 1000;
constexpr double Largest = 1e12; // no figure is so large but by mistake

std::string Fixed(double p_value, int p_decimals) {
    std::array<char, 64> text{};
    auto const [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), p_value, std::chars_format::fixed, p_decimals);
    return error == std::errc() ? std::string(text.data(), end) : std::string();
}

/// Three digits, as many decimals as that takes: 1.23, 12.3, 123. What rounds up to 1000 of a unit is 1 of the next.
CompactNumber Scaled(std::uint64_t p_value, std::string const& p_unit) {
    constexpr std::array prefixes{"", "k", "M", "G", "T", "P", "E"};
    if (p_value < static_cast<std::uint64_t>(Thousand))
        return {std::to_string(p_value), p_unit};
    auto value = static_cast<double>(p_value);
    std::size_t power = 0;
    for (; value >= Thousand - 0.5; value /= Thousand)
        ++power;
    int const decimals = value < 9.995 ? 2 : value < 99.95 ? 1 : 0;
    return {Fixed(value, decimals), prefixes[power] + p_unit};
}

bool IsUsable(double p_value) {
    return p_value >= 0 && p_value < Largest;
}

} // namespace

CompactNumber CompactNumber::Dash() {
    return {"\u2013", ""};
}

CompactNumber CompactNumber::Count(std::uint64_t p_count) {
    return Scaled(p_count, "");
}

CompactNumber CompactNumber::Bytes(std::uint64_t p_bytes) {
    return Scaled(p_bytes, "B");
}

CompactNumber CompactNumber::Milliseconds(double p_milliseconds) {
    if (!IsUsable(p_milliseconds))
        return Dash();
    bool const isLong = p_milliseconds >= Thousand - 0.005;
    double const value = isLong ? p_milliseconds / Thousand : p_milliseconds;
    return {Fixed(value, value < Thousand - 0.005 ? 2 : 0), isLong ? "s" : "ms"};
}

CompactNumber CompactNumber::Rate(double p_perSecond) {
    if (!IsUsable(p_perSecond) || p_perSecond == 0)
        return {"idle", ""};
    return {Fixed(p_perSecond, p_perSecond < 99.95 ? 1 : 0), "fps"};
}

} // namespace Qor::Chart::Render
