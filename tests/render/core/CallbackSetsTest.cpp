#include "render/core/HandledCallbacks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace Qor::Chart::Render {

namespace {

auto const IsOutOfRange = testing::Throws<std::out_of_range>(
    testing::Property(&std::out_of_range::what, testing::StrEq("invalid bitset<N> position")));

} // namespace

TEST(CallbackTypeBitSet, keepsEachPassInItsPlace) {
    for (int type = CallbackHit; type <= CallbackHighlightOverlay; ++type) {
        CallbackTypeBitSet set;
        set.Set(type);
        std::ostringstream text;
        text << set;
        std::string expected = "[000000]";
        expected[1 + static_cast<std::size_t>(type - CallbackHit)] = '1';
        EXPECT_EQ(text.str(), expected);
        EXPECT_EQ(CallbackTypeBitSet::PositionOf(type), static_cast<std::size_t>(1006 - type));
        CallbackTypeBitSet all;
        all.SetAll();
        CallbackTypeBitSet rest = all;
        rest.Set(type, false);
        EXPECT_TRUE(set.Has(type) && !rest.Has(type));
        rest |= set;
        EXPECT_EQ(rest, all);
    }
}

TEST(CallbackTypeBitSet, refusesOtherCodes) {
    for (int const type : {1000, 1007, 0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        CallbackTypeBitSet set;
        EXPECT_THAT([&] { set.Set(type); }, IsOutOfRange) << type;
        EXPECT_THAT([&] { (void)set.Has(type); }, IsOutOfRange) << type;
    }
}

} // namespace Qor::Chart::Render
