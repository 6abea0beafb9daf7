#include "framework/assets/TextDecoder.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace Qor::Chart::Assets {

namespace {

constexpr char32_t LastCodePoint = 0x10FFFF;

bool IsHighSurrogate(char32_t p_unit) {
    return p_unit >= 0xD800 && p_unit < 0xDC00;
}
bool IsLowSurrogate(char32_t p_unit) {
    return p_unit >= 0xDC00 && p_unit < 0xE000;
}
bool IsSurrogate(char32_t p_unit) {
    return p_unit >= 0xD800 && p_unit < 0xE000;
}

/// Reads one code point of UTF-8 at p_at and moves p_at behind it, or behind the valid beginning of a broken one.
char32_t ReadUtf8(std::string_view p_text, std::size_t& p_at) {
    auto const lead = static_cast<unsigned char>(p_text[p_at++]);
    if (lead < 0x80) {
        return lead;
    }
    int const following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4) {
        return TextDecoder::Replacement;
    }
    char32_t value = static_cast<char32_t>(lead & (0x3F >> following));
    for (int i = 0; i < following; ++i) {
        auto const next = p_at < p_text.size() ? static_cast<unsigned char>(p_text[p_at]) : 0U;
        char32_t const longer = (value << 6) | (next & 0x3F);
        bool const isOverlong = i == 0 && ((following == 2 && longer < 0x20) || (following == 3 && longer < 0x10));
        bool const isBeyond =
            i == 0 && ((following == 2 && longer >= 0x360 && longer < 0x380) || (following == 3 && longer >= 0x110));
        if ((next & 0xC0) != 0x80 || isOverlong || isBeyond) {
            return TextDecoder::Replacement;
        }
        value = longer;
        ++p_at;
    }
    return value;
}

} // namespace

std::u32string TextDecoder::Utf8(std::string_view p_text, std::size_t p_limit) {
    std::u32string result;
    result.reserve(std::min(p_text.size(), p_limit));
    for (std::size_t at = 0; at < p_text.size() && result.size() < p_limit;) {
        result.push_back(ReadUtf8(p_text, at));
    }
    return result;
}

std::u32string TextDecoder::Wide(std::wstring_view p_text, std::size_t p_limit) {
    std::u32string result;
    result.reserve(std::min(p_text.size(), p_limit));
    for (std::size_t at = 0; at < p_text.size() && result.size() < p_limit; ++at) {
        auto unit = static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(p_text[at]));
        if (IsHighSurrogate(unit) && at + 1 < p_text.size()) {
            auto const next = static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(p_text[at + 1]));
            if (IsLowSurrogate(next)) {
                unit = 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00);
                ++at;
            }
        }
        result.push_back(IsSurrogate(unit) || unit > LastCodePoint ? Replacement : unit);
    }
    return result;
}

} // namespace Qor::Chart::Assets
