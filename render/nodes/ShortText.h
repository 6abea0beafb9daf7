#pragma once

#include "render/Export.h"

#include <cstddef>
#include <string>

namespace Qor::Chart::Render {

/// Texts for one line, cut to what can be seen of them at most, so that a huge one costs no more than a long one.
struct QOR_VIS_API ShortText {
    static constexpr std::size_t Longest = 256; ///< in wide characters

    /// The text, or the beginning of one that is longer and an ellipsis.
    static std::wstring Of(std::wstring const& p_text);
    /// Whether the first text is what is left of the second.
    static bool IsOf(std::wstring const& p_shown, std::wstring const& p_text);
};

} // namespace Qor::Chart::Render
