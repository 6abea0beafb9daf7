#include "tests/framework/core/Probe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <unordered_set>

namespace Qor::Chart::Core {

TEST(WeakPtr, knowsItsNodeByOwnerAliveOrNot) {
    std::vector<Ptr<Probe>> nodes{MakeProbe(), MakeProbe(), MakeProbe()};
    std::vector<WeakPtr<Node>> first(nodes.begin(), nodes.end());
    std::vector<WeakPtr<Probe>> second(nodes.begin(), nodes.end());
    WeakPtr<Node> const never;
    std::set<WeakPtr<Node>> const ordered(first.begin(), first.end());
    std::unordered_set<WeakPtr<Node>> const hashed(first.begin(), first.end());
    nodes.clear();
    auto later = MakeProbe();
    for (std::size_t left = 0; left < 3; ++left) {
        EXPECT_TRUE(first[left].Expired() && !first[left].Lock());
        EXPECT_TRUE(!first[left].IsEmpty() && first[left] != never);
        EXPECT_NE(first[left], WeakPtr<Node>(later)) << "a new node at the same place is another one";
        EXPECT_TRUE(ordered.contains(second[left]) && hashed.contains(second[left]));
        for (std::size_t right = 0; right < 3; ++right)
            EXPECT_EQ(first[left] == second[right], left == right);
    }
    EXPECT_TRUE(std::is_sorted(ordered.begin(), ordered.end()));
    EXPECT_TRUE(never.IsEmpty() && never.Expired());
    EXPECT_EQ(never, WeakPtr<Probe>(Ptr<Probe>()));
    first[0].Reset();
    EXPECT_TRUE(first[0].IsEmpty());
}

TEST(WeakPtr, bringsNoNodeBackThatIsBeingDestroyed) {
    for (bool const hasHandleBefore : {false, true}) {
        int const alive = Probe::alive;
        auto node = MakeProbe();
        WeakPtr<Probe> before = hasHandleBefore ? WeakPtr<Probe>(node) : WeakPtr<Probe>();
        WeakPtr<Probe> during;
        node->onDeath = [&](Probe& p_dying) {
            EXPECT_TRUE(p_dying.IsDying());
            during = WeakPtr<Probe>(&p_dying);
            EXPECT_FALSE(before.Lock() || during.Lock());
            EXPECT_FALSE(during.IsEmpty());
            Ptr<Probe> const temporary(&p_dying);
        };
        node.Reset();
        EXPECT_EQ(Probe::alive, alive);
        EXPECT_TRUE(during.Expired());
        EXPECT_EQ(before == during, hasHandleBefore);
    }
}

TEST(DestructionScope, nodesExpireAtOnceAndAreDestroyedWhenTheOutermostOneCloses) {
    int const alive = Probe::alive;
    auto parent = MakeProbe();
    auto child = MakeProbe();
    auto const watcher = MakeProbe();
    parent->Add(child);
    watcher->weak.Attach(parent);
    WeakPtr<Probe> const weak(parent);
    EXPECT_FALSE(DestructionScope::IsOpen());
    {
        DestructionScope const outer;
        {
            DestructionScope const inner;
            Probe& stillThere = *parent;
            parent.Reset();
            EXPECT_TRUE(weak.Expired() && stillThere.IsDying());
            Probe::log.clear();
            child->Report("x");
            stillThere.Report("y");
            EXPECT_EQ(Probe::log, (std::vector<std::string>{" x 0", " y 0"})) << "the dying hear and tell nothing";
        }
        EXPECT_TRUE(DestructionScope::IsOpen());
        EXPECT_EQ(Probe::alive, alive + 3);
    }
    EXPECT_FALSE(DestructionScope::IsOpen());
    EXPECT_EQ(Probe::alive, alive + 2);
    EXPECT_TRUE(child->Deps().Empty());
}

TEST(DestructionScope, deepTreesDieFlatEvenAtTheEndOfTheirThread) {
    int const alive = Probe::alive;
    std::thread([] {
        static thread_local Ptr<Probe> outlivesTheRest;
        MakeProbe();
        outlivesTheRest = MakeChain(100'000).front();
    }).join();
    EXPECT_EQ(Probe::alive, alive);
}

TEST(Reference, ownsOrNotAndTellsTheOwner) {
    auto const owner = MakeProbe("owner");
    auto target = MakeProbe("target");
    WeakPtr<Probe> const weak(target);
    Probe::log.clear();
    owner->weak.Attach(target);
    EXPECT_EQ(owner->type, IModifiable::ModifiableTypeReference);
    owner->weak.Attach(target);
    owner->ref.Attach(target);
    owner->ref.Attach(target);
    target->Report("x");
    EXPECT_THAT(Probe::log, testing::ElementsAre("owner weak 0", "owner ref 0", "target x 0", "owner x 1"));
    target.Reset();
    EXPECT_TRUE(owner->ref && owner->weak.Lock());
    owner->weak.Detach();
    Probe::log.clear();
    owner->ref->Report("y");
    EXPECT_THAT(Probe::log, testing::ElementsAre("target y 0", "owner y 1")) << "the other link is still there";
    owner->weak.Attach(owner->ref.Get());
    owner->ref.Attach({});
    EXPECT_TRUE(weak.Expired() && owner->weak.Expired());
    EXPECT_EQ(owner->weak.Get(), weak);
    Probe::log.clear();
    owner->weak.Detach();
    owner->weak.Detach();
    EXPECT_THAT(Probe::log, testing::ElementsAre("owner weak 0"));
    EXPECT_TRUE(owner->weak.Get().IsEmpty());

    auto const survivor = MakeProbe();
    {
        auto const shortLived = MakeProbe();
        shortLived->ref.Attach(survivor);
        shortLived->weak.Attach(survivor);
        EXPECT_EQ(survivor->Deps().Size(), 1U);
    }
    EXPECT_TRUE(survivor->Deps().Empty());
}

} // namespace Qor::Chart::Core
