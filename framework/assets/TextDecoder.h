#pragma once

#include "framework/Export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace Qor::Chart::Assets {

/// Turns strings into Unicode code points. What is not valid (broken UTF-8, lone surrogates, numbers that are no code
/// points) becomes U+FFFD, one for every broken piece. p_limit bounds how many code points are read.
class QOR_FRAMEWORK_API TextDecoder {
public:
    static constexpr char32_t Replacement = 0xFFFD;

    static std::u32string Utf8(std::string_view p_text, std::size_t p_limit = std::string::npos);
    /// A pair of surrogates makes one code point, whatever the width of wchar_t.
    static std::u32string Wide(std::wstring_view p_text, std::size_t p_limit = std::string::npos);
};

} // namespace Qor::Chart::Assets
