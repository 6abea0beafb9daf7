#include "framework/utility/Unicode.h"

#include <cstddef>
#include <cstdint>

namespace Qor::Chart::Utility {

namespace {

constexpr char32_t Replacement = 0xFFFD;

constexpr bool IsCharacter(char32_t p_code) {
    return p_code < 0xD800 || (p_code > 0xDFFF && p_code <= 0x10FFFF);
}

void Append(std::string& p_text, char32_t p_code) {
    auto const append = [&](char32_t p_bits) { p_text.push_back(static_cast<char>(p_bits)); };
    if (p_code < 0x80) {
        append(p_code);
        return;
    }
    int following = p_code < 0x800 ? 1 : p_code < 0x10000 ? 2 : 3;
    char32_t const mark = following == 1 ? 0xC0 : following == 2 ? 0xE0 : 0xF0;
    append(mark | (p_code >> (6 * following)));
    while (following-- > 0) {
        append(0x80 | ((p_code >> (6 * following)) & 0x3F));
    }
}

struct Decoded {
    char32_t code = Replacement;
    std::size_t length = 1;
};

/// The character that starts at p_text's first byte; the replacement, one byte long, when none does.
Decoded Decode(std::string_view p_text) {
    auto const byte = [&](std::size_t p_index) { return static_cast<std::uint8_t>(p_text[p_index]); };
    std::uint8_t const first = byte(0);
    if (first < 0x80) {
        return {first, 1};
    }
    std::size_t const length = (first & 0xE0) == 0xC0 ? 2 : (first & 0xF0) == 0xE0 ? 3 : (first & 0xF8) == 0xF0 ? 4 : 0;
    if (length == 0 || length > p_text.size()) {
        return {};
    }
    char32_t code = first & (0xFFU >> (length + 1));
    for (std::size_t index = 1; index < length; ++index) {
        if ((byte(index) & 0xC0) != 0x80) {
            return {};
        }
        code = (code << 6) | (byte(index) & 0x3FU);
    }
    char32_t const lowest = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
    return code >= lowest && IsCharacter(code) ? Decoded{code, length} : Decoded{};
}

} // namespace

std::string ToUtf8(std::wstring_view p_text) {
    std::string text;
    text.reserve(p_text.size());
    for (wchar_t const character : p_text) {
        auto const code = static_cast<char32_t>(character);
        Append(text, IsCharacter(code) ? code : Replacement);
    }
    return text;
}

std::wstring FromUtf8(std::string_view p_text) {
    std::wstring text;
    text.reserve(p_text.size());
    while (!p_text.empty()) {
        Decoded const next = Decode(p_text);
        text.push_back(static_cast<wchar_t>(next.code));
        p_text.remove_prefix(next.length);
    }
    return text;
}

} // namespace Qor::Chart::Utility
