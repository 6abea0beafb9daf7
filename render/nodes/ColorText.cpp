#include "render/nodes/ColorText.h"

#include <cstddef>
#include <cstdint>

namespace Qor::Chart::Render {

namespace {

constexpr std::size_t ShortLength = 3;
constexpr std::size_t OpaqueLength = 6;
constexpr std::size_t FullLength = 8;
constexpr int Opaque = 255;

std::wstring_view Trimmed(std::wstring_view p_text) {
    constexpr std::wstring_view blanks = L" \t\r\n";
    std::size_t const first = p_text.find_first_not_of(blanks);
    if (first == std::wstring_view::npos)
        return {};
    return p_text.substr(first, p_text.find_last_not_of(blanks) - first + 1);
}

std::optional<std::uint32_t> DigitOf(wchar_t p_character) {
    if (p_character >= L'0' && p_character <= L'9')
        return static_cast<std::uint32_t>(p_character - L'0');
    if (p_character >= L'a' && p_character <= L'f')
        return static_cast<std::uint32_t>(p_character - L'a') + 10;
    if (p_character >= L'A' && p_character <= L'F')
        return static_cast<std::uint32_t>(p_character - L'A') + 10;
    return std::nullopt;
}

} // namespace

std::wstring ColorText::Write(QColor const& p_color) {
    return p_color.name(p_color.alpha() == Opaque ? QColor::HexRgb : QColor::HexArgb).toStdWString();
}

std::optional<QColor> ColorText::Read(std::wstring_view p_text) {
    std::wstring_view digits = Trimmed(p_text);
    if (digits.starts_with(L'#'))
        digits.remove_prefix(1);
    bool const isShort = digits.size() == ShortLength;
    if (!isShort && digits.size() != OpaqueLength && digits.size() != FullLength)
        return std::nullopt;
    std::uint32_t number = digits.size() == FullLength ? 0 : Opaque;
    for (wchar_t const character : digits) {
        std::optional<std::uint32_t> const digit = DigitOf(character);
        if (!digit)
            return std::nullopt;
        number = number << 4U | *digit;
        if (isShort)
            number = number << 4U | *digit;
    }
    return QColor::fromRgba(number);
}

} // namespace Qor::Chart::Render
