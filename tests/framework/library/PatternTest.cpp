#include "framework/library/Pattern.h"

#include <gtest/gtest.h>

#include <bit>

namespace Qor::Chart::Library {

TEST(PatternTest, eachLevelLetsItsPartOfThePixelsThroughAndThoseOfTheLevelBelow) {
    for (int level = 0; level <= 16; ++level) {
        auto const& pattern = Pattern::PolygonStipplePattern(level);
        auto const& below = Pattern::PolygonStipplePattern(level - 1);
        int pixels = 0;
        for (std::size_t i = 0; i < pattern.size(); ++i) {
            pixels += std::popcount(pattern[i]);
            EXPECT_EQ(pattern[i] & below[i], below[i]);
        }
        EXPECT_EQ(pixels, level * 64);
    }
    EXPECT_EQ(Pattern::PolygonStipplePattern(99), Pattern::PolygonStipplePattern(16));
}

} // namespace Qor::Chart::Library
