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

TEST(CallbackTypeBitSet, printsEachPassInItsPlace) {
    struct Case {
        int type;
        std::size_t position;
        char const* text;
    };
    for (auto const& [type, position, text] :
        {Case{CallbackHit, 5, "[100000]"}, Case{CallbackHitOverlay, 4, "[010000]"}, Case{CallbackDraw, 3, "[001000]"},
            Case{CallbackDrawOverlay, 2, "[000100]"}, Case{CallbackHighlight, 1, "[000010]"},
            Case{CallbackHighlightOverlay, 0, "[000001]"}}) {
        CallbackTypeBitSet set;
        set.Set(type);
        std::ostringstream stream;
        stream << set;
        EXPECT_EQ(stream.str(), text);
        EXPECT_EQ(CallbackTypeBitSet::PositionOf(type), position);
        EXPECT_TRUE(set.Has(type) && set.Any());
        CallbackTypeBitSet all;
        all.SetAll();
        all.Set(type, false);
        EXPECT_FALSE(all.Has(type));
        all |= set;
        CallbackTypeBitSet full;
        full.SetAll();
        EXPECT_EQ(all, full);
    }
}

TEST(CallbackTypeBitSet, refusesOtherCodes) {
    for (int const type : {1000, 1007, 0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        CallbackTypeBitSet set;
        EXPECT_THAT([&] { set.Set(type); }, IsOutOfRange) << type;
        EXPECT_THAT([&] { (void)set.Has(type); }, IsOutOfRange) << type;
    }
}

TEST(HandledCallbackSet, holdsSixteenHooks) {
    HandledCallbackSet set;
    set.Set(0, true);
    set.Set(15, true);
    set.Set(3, true);
    set.Set(3, false);
    EXPECT_EQ(set.Word(), 0x8001U);
    EXPECT_TRUE(set.Has(15) && !set.Has(3));
    for (int const hook : {-1, 16})
        EXPECT_THAT([&] { set.Set(hook, true); }, IsOutOfRange) << hook;
}

} // namespace Qor::Chart::Render
