#include "tests/framework/core/Probe.h"

#include <gmock/gmock.h>

#include <thread>

namespace Qor::Chart::Core {

TEST(WeakPtr, knowsItsNodeByOwnerAliveOrNot) {
    std::vector<Ptr<Probe>> nodes{MakeProbe(), MakeProbe(), MakeProbe()};
    std::vector<WeakPtr<Node>> first(nodes.begin(), nodes.end());
    std::vector<WeakPtr<Probe>> second(nodes.begin(), nodes.end());
    nodes.clear();
    auto later = MakeProbe();
    for (std::size_t left = 0; left < 3; ++left) {
        EXPECT_TRUE(first[left].Expired() && !first[left].Lock() && !first[left].IsEmpty());
        EXPECT_NE(first[left], WeakPtr<Node>(later)) << "a new node at the same place is another one";
        EXPECT_TRUE(first[left] == second[left] && first[left] != second[(left + 1) % 3]);
    }
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
            EXPECT_FALSE(before.Lock() || during.Lock() || during.IsEmpty());
            Ptr<Probe> const temporary(&p_dying);
        };
        node.Reset();
        EXPECT_TRUE(during.Expired() && Probe::alive == alive);
        EXPECT_EQ(before == during, hasHandleBefore);
    }
}

TEST(DestructionScope, nodesExpireAtOnceAndAreDestroyedWhenTheOutermostOneCloses) {
    auto parent = MakeProbe();
    auto child = MakeProbe();
    auto const watcher = MakeProbe();
    parent->Add(child);
    watcher->weak.Attach(parent);
    WeakPtr<Probe> const weak(parent);
    int const alive = Probe::alive;
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
        EXPECT_EQ(Probe::alive, alive);
    }
    EXPECT_EQ(Probe::alive, alive - 1);
    EXPECT_TRUE(child->Deps().Empty());
}

TEST(DestructionScope, deepTreesAreTouchedAndDieFlatEvenAtTheEndOfTheirThread) {
    int const alive = Probe::alive;
    std::thread([] {
        static thread_local Ptr<Probe> outlivesTheRest;
        MakeProbe();
        auto const chain = MakeChain(100'000);
        outlivesTheRest = chain.front();
        Probe::received = 0;
        chain.back()->Touch();
        EXPECT_EQ(Probe::received, 100'000);
    }).join();
    EXPECT_EQ(Probe::alive, alive);
}

TEST(Reference, ownsOrNotAndTellsTheOwner) {
    auto owner = MakeProbe("owner");
    auto target = MakeProbe("target");
    WeakPtr<Probe> const weak(target);
    Probe::log.clear();
    owner->weak.Attach(target);
    owner->weak.Attach(target);
    owner->ref.Attach(target);
    target->Report("x");
    EXPECT_THAT(Probe::log, testing::ElementsAre("owner weak 0", "owner ref 0", "target x 0", "owner x 1"));
    target.Reset();
    EXPECT_TRUE(owner->ref && owner->weak.Lock());
    owner->weak.Detach();
    owner->ref->Report("y");
    EXPECT_EQ(Probe::log.back(), "owner y 1") << "the other link is still there";
    owner->weak.Attach(owner->ref.Get());
    owner->ref.Attach({});
    EXPECT_TRUE(weak.Expired() && owner->weak.Get() == weak);
    auto const survivor = MakeProbe();
    owner->ref.Attach(survivor);
    owner->weak.Attach(survivor);
    owner.Reset();
    EXPECT_TRUE(survivor->Deps().Empty());
}

} // namespace Qor::Chart::Core
