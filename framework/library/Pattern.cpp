#include "framework/library/Pattern.h"

#include <algorithm>
#include <cstddef>

namespace Qor::Chart::Library {

namespace {

constexpr int Levels = 16;

/// The order in which the sixteen pixels of a 4 by 4 tile are set so that each step stays evenly spread (Bayer's matrix).
constexpr int Order[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};

constexpr Pattern::Stipple MakePattern(int p_sixteenths) {
    Pattern::Stipple pattern{};
    for (std::size_t row = 0; row < 32; ++row) {
        unsigned tile = 0;
        for (std::size_t column = 0; column < 4; ++column) {
            tile = tile * 2 + (Order[row % 4][column] < p_sixteenths ? 1 : 0);
        }
        for (std::size_t byte = 0; byte < 4; ++byte) {
            pattern[row * 4 + byte] = static_cast<unsigned char>(tile * 0x11);
        }
    }
    return pattern;
}

constexpr std::array<Pattern::Stipple, Levels + 1> MakePatterns() {
    std::array<Pattern::Stipple, Levels + 1> patterns{};
    for (int level = 0; level <= Levels; ++level) {
        patterns[static_cast<std::size_t>(level)] = MakePattern(level);
    }
    return patterns;
}

constexpr Pattern::Stipple MakeHatch() {
    Pattern::Stipple pattern{};
    for (std::size_t row = 0; row < 32; ++row) {
        for (std::size_t column = 0; column < 32; ++column) {
            if ((column + 32 - row) % 8 < 3) {
                pattern[row * 4 + column / 8] |= static_cast<unsigned char>(0x80U >> column % 8);
            }
        }
    }
    return pattern;
}

} // namespace

Pattern::Stipple const& Pattern::PolygonStipplePattern(int p_sixteenths) {
    static constexpr auto Patterns = MakePatterns();
    return Patterns[static_cast<std::size_t>(std::clamp(p_sixteenths, 0, Levels))];
}

Pattern::Stipple const& Pattern::HatchPattern() {
    static constexpr auto Hatch = MakeHatch();
    return Hatch;
}

} // namespace Qor::Chart::Library
