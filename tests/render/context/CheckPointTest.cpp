#include "render/context/CheckPointManager.h"
#include "render/context/CopyOnWriteStack.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace Qor::Chart::Utility {
namespace {

using ::testing::ElementsAre;

class Manager : public CheckPointManager<17> {};

template <class T, std::size_t Id>
using Stack = CopyOnWriteStack<T, Id, 17>;

/// Three stacks of texts that note what is applied.
struct Context : Manager {
    template <std::size_t Id>
    typename Stack<std::string, Id>::ApplyFunction Noting() {
        return [this](std::string const& p_value) { applied.push_back(std::to_string(Id) + ":" + p_value); };
    }

    std::vector<std::string> applied;
    Stack<std::string, 0> first{*this, "a", Noting<0>()};
    Stack<std::string, 5> second{*this, "b", Noting<5>()};
    Stack<std::string, 16> silent{*this, "c"};
};

TEST(CheckPointTest, nestedCheckPointsUndoTheirOwnWritesInTheOrderOfTheIds) {
    Context context;
    std::string const& base = context.first.Top();
    context.first.Set("base");
    context.CreateCheckPoint();
    context.second.Set("outer");
    context.silent.Set("outer");
    context.CreateCheckPoint();
    EXPECT_FALSE(context.Damaged());
    context.silent.Set("inner");
    for (char const* text : {"x", "y", "z"}) {
        context.second.Set(text);
        context.first.Set(text);
    }
    EXPECT_TRUE(context.Damaged() && context.Damaged(0) && !context.Damaged(1));
    EXPECT_EQ(context.first.Size() + context.second.Size(), 6U) << "one value for each check point";
    EXPECT_EQ(base + context.first.Top(), "az") << "the values underneath stay where they are";
    EXPECT_TRUE(context.applied.empty());
    context.RestoreCheckPoint();
    EXPECT_THAT(context.applied, ElementsAre("0:base", "5:outer"));
    EXPECT_EQ(context.silent.Top(), "outer");
    context.RestoreCheckPoint();
    EXPECT_THAT(context.applied, ElementsAre("0:base", "5:outer", "5:b"));
    EXPECT_EQ(context.silent.Top(), "c");
    EXPECT_TRUE(context.Damaged(0)) << "the write before all check points belongs to the outermost one";
}

TEST(CheckPointTest, aFailingApplyFunctionStopsNothingAndIsSeenByTheCaller) {
    Context context;
    Stack<int, 2> failing(context, 1, [](int const&) { throw std::runtime_error("broken"); });
    context.CreateCheckPoint();
    failing.Set(2);
    context.second.Set("y");
    EXPECT_THROW(context.RestoreCheckPoint(), std::runtime_error);
    EXPECT_THAT(context.applied, ElementsAre("5:b"));
    EXPECT_TRUE(failing.Top() == 1 && !context.Damaged());
}

/// What an apply function writes must not leak: every value has its check point, whichever stack was written.
TEST(CheckPointTest, writesMadeDuringARestoreBelongToTheOuterCheckPoint) {
    Context context;
    Stack<int, 2> writing(context, 0, [&context](int const&) {
        context.first.Set("late");
        context.second.Set("late");
        context.silent.Set("late");
    });
    context.CreateCheckPoint();
    context.CreateCheckPoint();
    writing.Set(1);
    context.second.Set("y");
    context.RestoreCheckPoint();
    EXPECT_EQ(context.first.Top() + context.silent.Top(), "latelate");
    EXPECT_EQ(context.second.Top(), "b") << "still to be restored, so dropped with the rest";
    context.RestoreCheckPoint();
    EXPECT_EQ(context.first.Top() + context.second.Top() + context.silent.Top(), "abc");
    EXPECT_EQ(context.first.Size() + context.second.Size() + context.silent.Size(), 3U);
}

} // namespace
} // namespace Qor::Chart::Utility
