#include "tests/framework/core/Probe.h"

#include "framework/core/AnyBase.h"
#include "framework/core/TypeNumbers.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <thread>

namespace Qor::Chart::Core {

namespace {

template <class T>
struct Special : Probe {};

struct Plain : Node {};

} // namespace

TEST(TimeStamp, everyTouchIsLaterThanAllBeforeOnAllThreads) {
    EXPECT_EQ(TimeStamp().Value(), 0U);
    std::vector<TimeStamp> stamps[2];
    auto const touch = [](std::vector<TimeStamp>* p_stamps) {
        TimeStamp stamp;
        for (int count = 0; count < 5'000; ++count) {
            stamp.Touch();
            p_stamps->push_back(stamp);
        }
    };
    std::thread other(touch, &stamps[1]);
    touch(&stamps[0]);
    other.join();
    std::set<TimeStamp> all;
    for (auto const& some : stamps) {
        EXPECT_TRUE(std::ranges::is_sorted(some));
        all.insert(some.begin(), some.end());
    }
    EXPECT_EQ(all.size(), 10'000U);
    EXPECT_GT(*all.begin(), TimeStamp());
    EXPECT_GT(MakeNode<Plain>()->Time(), *all.rbegin());
}

TEST(Node, hasItsOwnIdentifierAndTheNumberOfItsClass) {
    auto const a = MakeNode<Special<int>>();
    auto const b = MakeNode<Special<int>>();
    auto const c = MakeNode<Special<Special<int>>>();
    EXPECT_TRUE(a->Id() > 0 && a->Id() != b->Id());
    EXPECT_TRUE(a->TypeNumber() > 0 && a->TypeNumber() == b->TypeNumber() && a->TypeNumber() != c->TypeNumber());
    EXPECT_EQ(a->TypeNumber(), TypeNumbers::NumberOf(typeid(Special<int>)));
    EXPECT_EQ(a->TypeName(), "Special<int>");
    EXPECT_THAT(c->TypeName(), testing::StartsWith("Special<Qor::"));
    EXPECT_EQ(MakeNode<Plain>()->TypeName(), "Plain");
}

TEST(Node, renamingIsAChangeWhenTheNameDiffers) {
    auto const node = MakeProbe("old");
    Probe::log.clear();
    node->SetName("old");
    node->SetName("new");
    EXPECT_THAT(Probe::log, testing::ElementsAre("new name 0"));
    std::ostringstream text;
    text << Ptr<Node>(node) << Ptr<Node>();
    EXPECT_EQ(text.str(), "Probe \"new\" #" + std::to_string(node->Id()) + "(no node)");
}

TEST(WeakRef, refusesANodeOfAnotherType) {
    struct Owner : Probe {
        WeakRef<Special<int>> special{*this, "special"};
    };
    auto const owner = MakeNode<Owner>();
    auto const right = MakeNode<Special<int>>();
    owner->special.Attach(Ptr<Node>(right));
    EXPECT_EQ(owner->special.Peek(), right.Get());
    qordebug::CaptureScope const capture(Utility::GetLogger());
    auto const wrong = MakeProbe();
    owner->special.Attach(Ptr<Node>(wrong));
    EXPECT_THAT(capture.texts(qordebug::severity::ensure),
        testing::ElementsAre(testing::StartsWith("\"Incorrect type being attached to WeakRef<T>\" - ")));
    EXPECT_EQ(owner->special.Peek(), right.Get());
    EXPECT_TRUE(wrong->Deps().Empty());
    owner->special.Attach(Ptr<Node>());
    EXPECT_TRUE(owner->special.Get().IsEmpty());
    EXPECT_EQ(capture.entries().size(), 1U);
}

TEST(AnyBase, givesTheValueToWhoKnowsItsType) {
    Any const empty;
    EXPECT_TRUE(empty.Empty() && !empty.Get<int>());
    Any const any = Any::Of(std::string("text"));
    Any const copy = any;
    ASSERT_TRUE(copy.Get<std::string>());
    EXPECT_EQ(*copy.Get<std::string>(), "text");
    EXPECT_NE(copy.Get<std::string>(), any.Get<std::string>());
    EXPECT_TRUE(copy.Type() == typeid(std::string) && !copy.Get<char const*>());
}

} // namespace Qor::Chart::Core
