#include "render/context/CheckPointManager.h"
#include "render/context/CopyOnWriteStack.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace Qor::Chart::Utility {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Manager : public CheckPointManager<17> {};

template <class T, std::size_t Id>
using Stack = CopyOnWriteStack<T, Id, 17>;

/// Three stacks of texts that note what is applied.
struct Context : Manager {
    using Applied = std::vector<std::string>;

    template <std::size_t Id>
    typename Stack<std::string, Id>::ApplyFunction Noting() {
        return [this](std::string const& p_value) { applied.push_back(std::to_string(Id) + ":" + p_value); };
    }

    Applied applied;
    Stack<std::string, 0> first{*this, "a", Noting<0>()};
    Stack<std::string, 5> second{*this, "b", Noting<5>()};
    Stack<std::string, 16> silent{*this, "c"};
};

TEST(CheckPointTest, severalWritesInOneCheckPointLeaveOneValueAndOneRestoreUndoesThem) {
    Context context;
    context.CreateCheckPoint();
    EXPECT_FALSE(context.Damaged());
    for (char const* text : {"x", "y", "z"})
        context.first.Set(text);
    EXPECT_EQ(context.first.Top(), "z");
    EXPECT_EQ(context.first.Size(), 2U);
    EXPECT_TRUE(context.Damaged() && context.Damaged(0) && !context.Damaged(5));
    EXPECT_TRUE(context.applied.empty());
    context.RestoreCheckPoint();
    EXPECT_EQ(context.first.Top(), "a");
    EXPECT_EQ(context.first.Size(), 1U);
    EXPECT_THAT(context.applied, ElementsAre("0:a"));
}

TEST(CheckPointTest, nestedCheckPointsUndoTheirOwnWritesInTheOrderOfTheIds) {
    Context context;
    context.first.Set("base");
    context.CreateCheckPoint();
    context.second.Set("outer");
    context.silent.Set("outer");
    context.CreateCheckPoint();
    context.silent.Set("inner");
    context.second.Set("inner");
    context.first.Set("inner");
    context.RestoreCheckPoint();
    EXPECT_THAT(context.applied, ElementsAre("0:base", "5:outer"));
    EXPECT_EQ(context.silent.Top(), "outer");
    context.CreateCheckPoint();
    context.RestoreCheckPoint();
    EXPECT_EQ(context.applied.size(), 2U) << "an untouched check point applies nothing";
    context.RestoreCheckPoint();
    EXPECT_THAT(context.applied, ElementsAre("0:base", "5:outer", "5:b"));
    EXPECT_EQ(context.silent.Top(), "c");
    EXPECT_TRUE(context.Damaged(0)) << "the write before all check points belongs to the outermost one";
}

TEST(CheckPointTest, referencesToValuesStayWhileOthersAreWritten) {
    Context context;
    std::string const& base = context.first.Top();
    std::vector<std::string const*> values;
    for (int depth = 0; depth < 100; ++depth) {
        context.CreateCheckPoint();
        context.first.Set(context.first.Top() + "+");
        values.push_back(&context.first.Top());
    }
    EXPECT_EQ(base, "a");
    EXPECT_EQ(*values[0], "a+");
    EXPECT_EQ(context.first.Size(), 101U);
    for (int depth = 99; depth >= 0; --depth) {
        EXPECT_EQ(context.first.Top().size(), static_cast<std::size_t>(depth) + 2);
        context.RestoreCheckPoint();
    }
    EXPECT_EQ(&context.first.Top(), &base);
}

TEST(CheckPointTest, valuesAreDroppedWhenTheirCheckPointIsClosed) {
    Manager manager;
    auto const value = std::make_shared<int>(1);
    {
        Stack<std::shared_ptr<int>, 3> stack(manager, nullptr);
        manager.CreateCheckPoint();
        stack.Set(value);
        manager.RestoreCheckPoint();
        EXPECT_EQ(value.use_count(), 1);
        manager.CreateCheckPoint();
        stack.Set(value);
    }
    EXPECT_EQ(value.use_count(), 1) << "a stack that dies with open check points drops its values";
}

TEST(CheckPointTest, aFailingApplyFunctionStopsNothingAndIsSeenByTheCaller) {
    Context context;
    Stack<int, 2> failing(context, 1, [](int const& p_value) { throw std::runtime_error(std::to_string(p_value)); });
    context.CreateCheckPoint();
    failing.Set(2);
    context.first.Set("x");
    context.second.Set("y");
    EXPECT_THROW(context.RestoreCheckPoint(), std::runtime_error);
    EXPECT_THAT(context.applied, ElementsAre("0:a", "5:b"));
    EXPECT_EQ(failing.Top(), 1);
    EXPECT_FALSE(context.Damaged());
}

/// What an apply function writes must not leak: every value has its check point, whichever stack was written.
TEST(CheckPointTest, writesMadeDuringARestoreBelongToTheOuterCheckPoint) {
    Context context;
    Stack<int, 2> writing(context, 0, [&context](int const&) {
        for (auto* const stack : {&context.first})
            stack->Set("late");
        context.second.Set("late");
        context.silent.Set("late");
    });
    context.CreateCheckPoint();
    context.CreateCheckPoint();
    writing.Set(1);
    context.first.Set("x");
    context.second.Set("y");
    context.RestoreCheckPoint();
    EXPECT_EQ(context.first.Top(), "late");
    EXPECT_EQ(context.second.Top(), "b") << "still to be restored, so dropped with the rest";
    EXPECT_EQ(context.silent.Top(), "late");
    context.RestoreCheckPoint();
    EXPECT_EQ(context.first.Top() + context.second.Top() + context.silent.Top(), "abc");
    EXPECT_EQ(context.first.Size() + context.second.Size() + context.silent.Size(), 3U);
}

TEST(CheckPointTest, idsOutOfRangeAndIdsUsedTwiceAreReported) {
    Manager manager;
    for (std::size_t const id : {std::size_t{17}, ~std::size_t{0}}) {
        EXPECT_THAT(
            [&] { manager.Touch(id); }, ::testing::ThrowsMessage<std::out_of_range>("invalid bitset<N> position"));
        EXPECT_THROW((void)manager.Damaged(id), std::out_of_range);
    }
    qordebug::CaptureScope log(GetLogger());
    Stack<int, 4> replaced(manager, 1);
    EXPECT_TRUE(log.empty());
    Stack<int, 4> later(manager, 1);
    ASSERT_EQ(log.texts().size(), 1U);
    EXPECT_THAT(log.texts().front(), StartsWith("\"_entries[p_id] == 0\" - "));
    EXPECT_THAT(log.texts().front(), HasSubstr("RegisterEntry"));
    manager.CreateCheckPoint();
    later.Set(2);
    manager.RestoreCheckPoint();
    EXPECT_EQ(later.Top(), 1);
}

} // namespace
} // namespace Qor::Chart::Utility
