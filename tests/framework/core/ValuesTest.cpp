#include "tests/framework/core/Probe.h"

#include "framework/core/ModificationWatcherList.h"
#include "framework/core/NodePath.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <set>
#include <thread>

namespace Qor::Chart::Core {

TEST(TimeStamp, everyTouchIsLaterThanAllBeforeOnAllThreads) {
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
}

TEST(WeakRef, refusesANodeOfAnotherType) {
    struct Owner : Probe {
        WeakRef<Owner> special{*this, "special"};
    };
    auto const owner = MakeNode<Owner>();
    auto const right = MakeNode<Owner>();
    auto const wrong = MakeProbe();
    owner->special.Attach(Ptr<Node>(right));
    qordebug::CaptureScope const capture(Utility::GetLogger());
    owner->special.Attach(Ptr<Node>(wrong));
    EXPECT_THAT(capture.texts(qordebug::severity::ensure),
        testing::ElementsAre(testing::StartsWith("\"Incorrect type being attached to WeakRef<T>\" - ")));
    EXPECT_TRUE(owner->special.Peek() == right.Get() && wrong->Deps().Empty());
    owner->special.Attach(Ptr<Node>());
    EXPECT_TRUE(owner->special.Get().IsEmpty() && capture.entries().size() == 1U);
}

TEST(NodePath, comparesAsItsIdentifiersDoHoweverItWasMade) {
    std::mt19937 random(5);
    std::vector<NodePath> paths{NodePath()};
    std::vector<std::vector<std::int32_t>> oracle{{}};
    WorkingPath working;
    std::vector<std::int32_t> ids;
    for (int step = 0; step < 400; ++step) {
        if (random() % 3 == 0) {
            working.Pop();
            if (!ids.empty())
                ids.pop_back();
        } else if (ids.size() < 6) {
            ids.push_back(static_cast<std::int32_t>(random() % 3) - 1);
            working.Push(ids.back());
        }
        paths.push_back(random() % 4 == 0 ? NodePath(ids) : working.Path());
        oracle.push_back(ids);
    }
    for (std::size_t left = 0; left < paths.size(); ++left) {
        EXPECT_EQ(paths[left].Ids(), oracle[left]) << "a path stays what it was when the working path moves on";
        EXPECT_EQ(paths[left].Last(), oracle[left].empty() ? 0 : oracle[left].back());
        for (std::size_t right = 0; right < paths.size(); ++right) {
            ASSERT_EQ(paths[left] == paths[right], oracle[left] == oracle[right]);
            ASSERT_EQ(paths[left] <=> paths[right], oracle[left] <=> oracle[right]);
        }
    }
}

TEST(NodePath, aPathForEachLevelOfADeepTreeSharesTheBeginnings) {
    // Whole copies would take 20 GB.
    WorkingPath working;
    std::vector<NodePath> paths;
    for (std::int32_t level = 0; level < 100'000; ++level) {
        working.Push(level);
        paths.push_back(working.Path());
    }
    NodePath const last = paths.back();
    paths.clear();
    EXPECT_EQ(last.Ids()[70'000], 70'000);
}

TEST(ModificationWatcher, seesChangesOfTheNodeAndBelowUntilReset) {
    auto node = MakeProbe();
    auto const child = MakeProbe();
    node->Add(child);
    ModificationWatcher watcher{WeakPtr<Node>(node)};
    EXPECT_FALSE(watcher.Modified() || ModificationWatcher().Modified());
    child->Touch();
    ModificationWatcher const copy = watcher;
    watcher.Reset();
    EXPECT_TRUE(copy.Modified() && !watcher.Modified());
    node.Reset();
    EXPECT_TRUE(watcher.Modified()) << "its death is a change";
}

TEST(ModificationWatcherList, copiesAreIndependentHoweverTheyShare) {
    auto const node = MakeProbe();
    ModificationWatcherList list;
    list.Add(WeakPtr<Node>(node));
    ModificationWatcherList copy = list;
    copy.Touch();
    EXPECT_TRUE(copy.Modified() && !list.Modified());
    node->Touch();
    copy.Reset();
    EXPECT_TRUE(!copy.Modified() && list.Modified());
    copy = list;
    list.Clear();
    EXPECT_TRUE(copy.Modified() && !list.Modified());
}

} // namespace Qor::Chart::Core
