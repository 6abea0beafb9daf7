#include "tests/framework/core/Probe.h"

#include "framework/core/ModificationWatcherList.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Core {

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
    watcher.Reset();
    EXPECT_FALSE(watcher.Modified());
}

TEST(ModificationWatcherList, isModifiedByATouchOrANodeUntilResetOrCleared) {
    auto const a = MakeProbe();
    auto const b = MakeProbe();
    ModificationWatcherList list;
    EXPECT_FALSE(list.Modified());
    list.Touch();
    EXPECT_TRUE(list.Modified() && list.Empty()) << "a touch needs no node";
    list.Add(WeakPtr<Node>(a));
    list.Add(WeakPtr<Node>(b));
    EXPECT_EQ(list.Size(), 2U);
    list.Reset();
    EXPECT_FALSE(list.Modified());
    b->Touch();
    EXPECT_TRUE(list.Modified());
    list.Touch();
    list.Clear();
    EXPECT_TRUE(list.Empty() && !list.Modified());
    b->Touch();
    EXPECT_FALSE(list.Modified());
}

TEST(ModificationWatcherList, copiesAreIndependentHoweverTheyShare) {
    auto const node = MakeProbe();
    ModificationWatcherList list;
    list.Add(WeakPtr<Node>(node));
    ModificationWatcherList const copy = list;
    ModificationWatcherList touched = list;
    touched.Touch();
    EXPECT_TRUE(touched.Modified() && !list.Modified() && !copy.Modified());
    node->Touch();
    list.Reset();
    EXPECT_TRUE(copy.Modified() && !list.Modified());
    list = copy;
    EXPECT_TRUE(list.Modified());
    list.Clear();
    EXPECT_EQ(copy.Size(), 1U);
    list = touched;
    list.Add(WeakPtr<Node>(node));
    EXPECT_EQ(touched.Size(), 1U);
}

} // namespace Qor::Chart::Core
