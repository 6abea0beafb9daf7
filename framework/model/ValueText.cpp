#include "framework/model/ValueText.h"

#include "framework/utility/Unicode.h"

#include <QString>

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace Qor::Chart::Model {

namespace {

using Types::RelativeLength;
using RelativeViewport = Types::Viewport<1>;

constexpr std::string_view Blanks = " \t\r\n";

std::string_view Trimmed(std::string_view p_text) {
    std::size_t const first = p_text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return {};
    return p_text.substr(first, p_text.find_last_not_of(Blanks) - first + 1);
}

char Lower(char p_character) {
    return p_character >= 'A' && p_character <= 'Z' ? static_cast<char>(p_character - 'A' + 'a') : p_character;
}

bool EqualNames(std::string_view p_a, std::string_view p_b) {
    if (p_a.size() != p_b.size())
        return false;
    for (std::size_t i = 0; i < p_a.size(); ++i) {
        if (Lower(p_a[i]) != Lower(p_b[i]))
            return false;
    }
    return true;
}

template <class Number>
void AppendNumber(std::string& p_text, Number p_number) {
    std::array<char, 32> digits{};
    auto const end = std::to_chars(digits.data(), digits.data() + digits.size(), p_number).ptr;
    p_text.append(digits.data(), end);
}

template <class Number>
std::string JoinNumbers(std::span<Number const> p_numbers) {
    std::string text;
    for (Number const number : p_numbers) {
        if (!text.empty())
            text += ' ';
        AppendNumber(text, number);
    }
    return text;
}

/// Takes a finite number off the front of a text.
std::optional<double> TakeNumber(std::string_view& p_text) {
    std::size_t const sign = p_text.size() > 1 && p_text[0] == '+' && p_text[1] != '-' ? 1 : 0;
    double number = 0;
    auto const result = std::from_chars(p_text.data() + sign, p_text.data() + p_text.size(), number);
    if (result.ec != std::errc() || !std::isfinite(number))
        return std::nullopt;
    p_text.remove_prefix(static_cast<std::size_t>(result.ptr - p_text.data()));
    return number;
}

bool TakePrefix(std::string_view& p_text, std::string_view p_prefix) {
    if (!p_text.starts_with(p_prefix))
        return false;
    p_text.remove_prefix(p_prefix.size());
    return true;
}

/// Takes the blanks, and at most one comma among them, that stand between two values; false when there is nothing.
bool TakeSeparator(std::string_view& p_text) {
    std::size_t const before = p_text.size();
    p_text = Trimmed(p_text);
    if (TakePrefix(p_text, ","))
        p_text = Trimmed(p_text);
    return p_text.size() < before;
}

/// Reads the numbers that make up the whole text. Gives how many there were, 0 when something else stands there too or
/// there are more than fit.
std::size_t ReadNumbers(std::string_view p_text, std::span<double> p_numbers) {
    p_text = Trimmed(p_text);
    for (std::size_t count = 0; count < p_numbers.size(); ++count) {
        if (count > 0 && !TakeSeparator(p_text))
            return 0;
        std::optional<double> const number = TakeNumber(p_text);
        if (!number)
            return 0;
        p_numbers[count] = *number;
        if (p_text.empty())
            return count + 1;
    }
    return 0;
}

void AppendPercentage(std::string& p_text, double p_fraction) {
    double const percentage = p_fraction * 100.0;
    bool const isExact = percentage / 100.0 == p_fraction;
    AppendNumber(p_text, isExact ? percentage : p_fraction);
    if (isExact)
        p_text += '%';
}

void AppendPixels(std::string& p_text, double p_pixels) {
    AppendNumber(p_text, p_pixels);
    p_text += "px";
}

/// The part that the length is defined by stands first.
void AppendLength(std::string& p_text, RelativeLength const& p_length) {
    bool const isFraction = p_length.definedAs == Types::DefinedAs::Fraction;
    if (isFraction)
        AppendPercentage(p_text, p_length.fraction);
    else
        AppendPixels(p_text, p_length.pixels);
    double const other = isFraction ? p_length.pixels : p_length.fraction;
    if (other == 0)
        return;
    if (other > 0)
        p_text += '+';
    if (isFraction)
        AppendPixels(p_text, other);
    else
        AppendPercentage(p_text, other);
}

/// Takes a part of a parent, such as "50%" or "0.5", or a number of pixels, such as "12px".
std::optional<RelativeLength> TakeTerm(std::string_view& p_text) {
    std::optional<double> const number = TakeNumber(p_text);
    if (!number)
        return std::nullopt;
    if (TakePrefix(p_text, "px"))
        return RelativeLength::Pixels(*number);
    return RelativeLength::Fraction(TakePrefix(p_text, "%") ? *number / 100.0 : *number);
}

std::optional<RelativeLength> TakeLength(std::string_view& p_text) {
    std::optional<RelativeLength> length = TakeTerm(p_text);
    if (!length || (!p_text.starts_with('+') && !p_text.starts_with('-')))
        return length;
    std::optional<RelativeLength> const other = TakeTerm(p_text);
    if (!other || other->definedAs == length->definedAs)
        return std::nullopt;
    length->fraction += other->fraction;
    length->pixels += other->pixels;
    return length;
}

std::optional<QColor> ReadChannels(std::string_view p_text) {
    std::array<double, 4> channels{0, 0, 0, 1};
    if (ReadNumbers(p_text, channels) < 3)
        return std::nullopt;
    for (double const channel : channels) {
        if (channel < 0 || channel > 1)
            return std::nullopt;
    }
    return QColor::fromRgbF(static_cast<float>(channels[0]), static_cast<float>(channels[1]),
        static_cast<float>(channels[2]), static_cast<float>(channels[3]));
}

/// A position as its edge and its distance.
template <class Position>
std::string WritePosition(Position const& p_position, std::array<std::string_view, 2> const& p_edges) {
    bool const isPixels = p_position.definedAs == Types::DefinedAs::Pixels;
    std::string text(p_edges[static_cast<std::size_t>(p_position.edge)]);
    text += ' ';
    AppendLength(
        text, isPixels ? RelativeLength::Pixels(p_position.distance) : RelativeLength::Fraction(p_position.distance));
    return text;
}

template <class Position>
std::optional<Position> ReadPosition(std::string_view p_text, std::array<std::string_view, 2> const& p_edges) {
    std::string_view const text = Trimmed(p_text);
    std::size_t const gap = text.find_first_of(" \t");
    if (gap == std::string_view::npos)
        return std::nullopt;
    std::optional<int> const edge = Detail::ReadChoice(p_edges, text.substr(0, gap));
    std::string_view rest = Trimmed(text.substr(gap));
    std::optional<RelativeLength> const length = TakeLength(rest);
    if (!edge || !length || !rest.empty() || (length->fraction != 0 && length->pixels != 0))
        return std::nullopt;
    bool const isPixels = length->definedAs == Types::DefinedAs::Pixels;
    return Position(
        length->definedAs, static_cast<decltype(Position::edge)>(*edge), isPixels ? length->pixels : length->fraction);
}

constexpr std::array<std::string_view, 2> XEdges{"left", "right"};
constexpr std::array<std::string_view, 2> YEdges{"bottom", "top"};

} // namespace

namespace Detail {

std::string WriteChoice(std::span<std::string_view const> p_names, int p_value) {
    bool const isNamed = p_value >= 0 && static_cast<std::size_t>(p_value) < p_names.size();
    return isNamed ? std::string(p_names[static_cast<std::size_t>(p_value)]) : std::to_string(p_value);
}

std::optional<int> ReadChoice(std::span<std::string_view const> p_names, std::string_view p_text) {
    std::string_view const name = Trimmed(p_text);
    for (std::size_t value = 0; value < p_names.size(); ++value) {
        if (EqualNames(p_names[value], name))
            return static_cast<int>(value);
    }
    return std::nullopt;
}

std::string ChoiceForm(std::span<std::string_view const> p_names) {
    std::string form = "one of";
    for (std::string_view const name : p_names) {
        if (name != p_names.front())
            form += ',';
        form += ' ';
        form += name;
    }
    return form;
}

} // namespace Detail

std::string ValueText<bool>::Write(bool p_value) {
    return p_value ? "true" : "false";
}
std::optional<bool> ValueText<bool>::Read(std::string_view p_text) {
    std::string_view const text = Trimmed(p_text);
    if (EqualNames(text, "true"))
        return true;
    return EqualNames(text, "false") ? std::optional(false) : std::nullopt;
}
std::string ValueText<bool>::Form() {
    return "true or false";
}

std::string ValueText<int>::Write(int p_value) {
    return std::to_string(p_value);
}
std::optional<int> ValueText<int>::Read(std::string_view p_text) {
    std::string_view const text = Trimmed(p_text);
    int number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    bool const isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}
std::string ValueText<int>::Form() {
    return "a whole number such as 3";
}

std::string ValueText<double>::Write(double p_value) {
    return JoinNumbers(std::span<double const>(&p_value, 1));
}
std::optional<double> ValueText<double>::Read(std::string_view p_text) {
    double number = 0;
    return ReadNumbers(p_text, std::span(&number, 1)) == 1 ? std::optional(number) : std::nullopt;
}
std::string ValueText<double>::Form() {
    return "a number such as 0.5 or 1e-3";
}

std::string ValueText<std::string>::Write(std::string const& p_value) {
    return p_value;
}
std::optional<std::string> ValueText<std::string>::Read(std::string_view p_text) {
    return std::string(p_text);
}
std::string ValueText<std::string>::Form() {
    return "any text";
}

std::string ValueText<std::wstring>::Write(std::wstring const& p_value) {
    return Utility::ToUtf8(p_value);
}
std::optional<std::wstring> ValueText<std::wstring>::Read(std::string_view p_text) {
    return Utility::FromUtf8(p_text);
}
std::string ValueText<std::wstring>::Form() {
    return "any text in UTF-8";
}

std::string ValueText<QColor>::Write(QColor const& p_value) {
    QColor const color = p_value.toRgb();
    QString const name = color.name(color.alpha() == 255 ? QColor::HexRgb : QColor::HexArgb);
    if (QColor::fromString(name) == color)
        return name.toStdString();
    std::array const channels{color.redF(), color.greenF(), color.blueF(), color.alphaF()};
    return JoinNumbers(std::span<float const>(channels));
}
std::optional<QColor> ValueText<QColor>::Read(std::string_view p_text) {
    std::string_view const text = Trimmed(p_text);
    QColor const color = QColor::fromString(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    return color.isValid() ? std::optional(color) : ReadChannels(text);
}
std::string ValueText<QColor>::Form() {
    return "a colour: a name such as red, #rrggbb, #aarrggbb, or red, green, blue and alpha from 0 to 1 such as "
           "1 0.5 0 1";
}

std::string ValueText<std::optional<QColor>>::Write(std::optional<QColor> const& p_value) {
    return p_value ? ValueText<QColor>::Write(*p_value) : "none";
}
std::optional<std::optional<QColor>> ValueText<std::optional<QColor>>::Read(std::string_view p_text) {
    if (EqualNames(Trimmed(p_text), "none"))
        return std::optional<QColor>();
    std::optional<QColor> const color = ValueText<QColor>::Read(p_text);
    if (!color)
        return std::nullopt;
    return std::optional<std::optional<QColor>>(color);
}
std::string ValueText<std::optional<QColor>>::Form() {
    return "none, or " + ValueText<QColor>::Form();
}

std::string ValueText<std::vector<QColor>>::Write(std::vector<QColor> const& p_value) {
    std::string text;
    for (QColor const& color : p_value)
        text += (text.empty() ? "" : "; ") + ValueText<QColor>::Write(color);
    return text.empty() ? "none" : text;
}
std::optional<std::vector<QColor>> ValueText<std::vector<QColor>>::Read(std::string_view p_text) {
    std::vector<QColor> colors;
    if (EqualNames(Trimmed(p_text), "none"))
        return colors;
    for (;;) {
        std::size_t const end = p_text.find(';');
        std::optional<QColor> const color = ValueText<QColor>::Read(p_text.substr(0, end));
        if (!color)
            return std::nullopt;
        colors.push_back(*color);
        if (end == std::string_view::npos)
            return colors;
        p_text.remove_prefix(end + 1);
    }
}
std::string ValueText<std::vector<QColor>>::Form() {
    return "none, or colours with semicolons between them; " + ValueText<QColor>::Form();
}

std::string ValueText<Types::Vector2_Base<double>>::Write(Types::Vector2_Base<double> const& p_value) {
    std::array const numbers{p_value.x, p_value.y};
    return JoinNumbers(std::span<double const>(numbers));
}
std::optional<Types::Vector2_Base<double>> ValueText<Types::Vector2_Base<double>>::Read(std::string_view p_text) {
    std::array<double, 2> numbers{};
    if (ReadNumbers(p_text, numbers) != numbers.size())
        return std::nullopt;
    return Types::Vector2_Base<double>(numbers[0], numbers[1]);
}
std::string ValueText<Types::Vector2_Base<double>>::Form() {
    return "two numbers such as 1 -2.5";
}

std::string ValueText<Types::Vector3_Base<double>>::Write(Types::Vector3_Base<double> const& p_value) {
    std::array const numbers{p_value.x, p_value.y, p_value.z};
    return JoinNumbers(std::span<double const>(numbers));
}
std::optional<Types::Vector3_Base<double>> ValueText<Types::Vector3_Base<double>>::Read(std::string_view p_text) {
    std::array<double, 3> numbers{};
    if (ReadNumbers(p_text, numbers) != numbers.size())
        return std::nullopt;
    return Types::Vector3_Base<double>(numbers[0], numbers[1], numbers[2]);
}
std::string ValueText<Types::Vector3_Base<double>>::Form() {
    return "three numbers such as 1 0 -2.5";
}

std::string ValueText<SharedMatrix>::Write(SharedMatrix const& p_value) {
    return JoinNumbers(std::span<double const>(p_value->Data(), 16));
}
std::optional<SharedMatrix> ValueText<SharedMatrix>::Read(std::string_view p_text) {
    std::array<double, 16> numbers{};
    if (ReadNumbers(p_text, numbers) != numbers.size())
        return std::nullopt;
    return SharedMatrix(Types::Matrix4::FromColumnMajor(numbers.data()));
}
std::string ValueText<SharedMatrix>::Form() {
    return "a matrix of sixteen numbers, columns one after the other";
}

std::string ValueText<RelativeViewport>::Write(RelativeViewport const& p_value) {
    std::string text;
    for (RelativeLength const* const length : {&p_value.x, &p_value.y, &p_value.width, &p_value.height}) {
        if (!text.empty())
            text += ' ';
        AppendLength(text, *length);
    }
    return text;
}
std::optional<RelativeViewport> ValueText<RelativeViewport>::Read(std::string_view p_text) {
    std::string_view rest = Trimmed(p_text);
    RelativeViewport viewport;
    for (RelativeLength* const length : {&viewport.x, &viewport.y, &viewport.width, &viewport.height}) {
        if (length != &viewport.x && !TakeSeparator(rest))
            return std::nullopt;
        std::optional<RelativeLength> const read = TakeLength(rest);
        if (!read)
            return std::nullopt;
        *length = *read;
    }
    return rest.empty() ? std::optional(viewport) : std::nullopt;
}
std::string ValueText<RelativeViewport>::Form() {
    return "x, y, width and height, each as 50%, 12px or 50%+12px, such as 0% 0% 50% 100%-20px";
}

std::string ValueText<Types::XPosition>::Write(Types::XPosition const& p_value) {
    return WritePosition(p_value, XEdges);
}
std::optional<Types::XPosition> ValueText<Types::XPosition>::Read(std::string_view p_text) {
    return ReadPosition<Types::XPosition>(p_text, XEdges);
}
std::string ValueText<Types::XPosition>::Form() {
    return "left or right and a distance as 12px or 5%, such as right 12px";
}

std::string ValueText<Types::YPosition>::Write(Types::YPosition const& p_value) {
    return WritePosition(p_value, YEdges);
}
std::optional<Types::YPosition> ValueText<Types::YPosition>::Read(std::string_view p_text) {
    return ReadPosition<Types::YPosition>(p_text, YEdges);
}
std::string ValueText<Types::YPosition>::Form() {
    return "bottom or top and a distance as 12px or 5%, such as top 12px";
}

} // namespace Qor::Chart::Model
