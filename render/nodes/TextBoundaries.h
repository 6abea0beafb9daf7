#pragma once

#include "render/Export.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace Qor::Chart::Render {

/// Where characters, as users see them, and words begin and end. Each answer looks at the character or word at a place
/// alone, whatever the length of the text. Places are counted in code points; those behind the end count as the end.
struct QOR_VIS_API TextBoundaries {
    /// The place itself if a character begins or the text ends there, else the next such place.
    static std::size_t Snap(std::u32string_view p_text, std::size_t p_place);
    /// For each place from the beginning to the end whether a character begins, or the text ends, there.
    static std::vector<bool> All(std::u32string_view p_text);
    /// The next such place behind, and the nearest before, a place.
    static std::size_t Next(std::u32string_view p_text, std::size_t p_place);
    static std::size_t Previous(std::u32string_view p_text, std::size_t p_place);

    /// Where the next word, or row of signs, begins: to where Ctrl and an arrow go; and where the one before begins.
    static std::size_t NextWord(std::u32string_view p_text, std::size_t p_place);
    static std::size_t PreviousWord(std::u32string_view p_text, std::size_t p_place);
    /// The word, the row of signs or the blanks at a place: what a double click takes.
    static std::pair<std::size_t, std::size_t> WordAt(std::u32string_view p_text, std::size_t p_place);

    /// Whether a text reads from right to left, by its first letter that says so.
    static bool IsRightToLeft(std::u32string_view p_text);
};

} // namespace Qor::Chart::Render
