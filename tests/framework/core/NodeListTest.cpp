#include "tests/framework/core/Probe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace Qor::Chart::Core {

namespace {

std::vector<std::string> NamesOf(Probe const& p_list) {
    std::vector<std::string> names;
    for (Ptr<Probe> const& child : p_list)
        names.push_back(child->Name());
    return names;
}

struct Leaf : NodeList<Leaf> {};

struct NodeListTest : testing::Test {
    Ptr<Probe> list = MakeProbe("list");
    Ptr<Probe> watcher = MakeProbe("watcher");
    Ptr<Probe> a = MakeProbe("a");
    Ptr<Probe> b = MakeProbe("b");

    NodeListTest() { watcher->weak.Attach(list); }

    /// What the list's direct dependent was told last.
    void ExpectTold(IModifiable::Change p_change, Ptr<Probe> const& p_child) const {
        EXPECT_EQ(watcher->type, IModifiable::ModifiableTypeNode);
        EXPECT_EQ(watcher->change, p_change);
        EXPECT_EQ(watcher->relationship, IModifiable::RelationshipDirect);
        EXPECT_EQ(watcher->DataNode(), WeakPtr<Node>(p_child));
    }
};

} // namespace

TEST_F(NodeListTest, reportsWhatCameAndLeft) {
    EXPECT_TRUE(list->Add(a));
    ExpectTold(IModifiable::ChangeAdd, a);
    EXPECT_TRUE(list->Add(b));
    ExpectTold(IModifiable::ChangeAdd, b);
    EXPECT_TRUE(list->Remove(a));
    ExpectTold(IModifiable::ChangeRemove, a);
    list->Add(a);
    WeakPtr<Node> const gone(b);
    b.Reset();
    list->Clear();
    EXPECT_EQ(watcher->change, IModifiable::ChangeClear);
    auto const* const all = boost::any_cast<NodeHandles>(&watcher->data);
    ASSERT_TRUE(all);
    EXPECT_THAT(*all, testing::ElementsAre(gone, WeakPtr<Node>(a)));
    EXPECT_TRUE(gone.Expired() && list->Empty() && a->Deps().Empty());
}

TEST_F(NodeListTest, holdsANodeOnceAndIgnoresWhatIsNotThere) {
    auto const other = MakeProbe();
    EXPECT_TRUE(list->Add(a) && other->Add(a));
    Probe::log.clear();
    EXPECT_FALSE(list->Add(a) || list->Add({}) || list->Remove(b) || list->Remove(Ptr<Probe>()));
    MakeProbe("empty")->Clear();
    EXPECT_THAT(Probe::log, testing::ElementsAre("empty name 0"));
    EXPECT_EQ(list->Size(), 1U);
    EXPECT_TRUE(list->Remove(a));
    EXPECT_TRUE(other->Contains(*a) && !list->Contains(*a));
    a->Report("x");
    EXPECT_EQ(Probe::log.back(), " x 1") << "the other list is told, and only that";
}

TEST_F(NodeListTest, agreesWithAPlainVector) {
    std::mt19937 random(3);
    std::vector<Ptr<Probe>> pool;
    for (int node = 0; node < 300; ++node)
        pool.push_back(MakeProbe(std::to_string(node), false));
    std::vector<Ptr<Probe>> oracle;
    auto const less = [](Ptr<Probe> const& p_left, Ptr<Probe> const& p_right) {
        return p_left->Name().back() < p_right->Name().back();
    };
    list->isLogging = watcher->isLogging = false;
    for (int step = 0; step < 20'000; ++step) {
        Ptr<Probe> const& node = pool[random() % pool.size()];
        auto const found = std::ranges::find(oracle, node);
        bool const isIn = found != oracle.end();
        bool const isGrowing = step / 500 % 2 == 0;
        ASSERT_EQ(list->Contains(*node), isIn);
        if (random() % 8 < (isGrowing ? 6 : 2)) {
            ASSERT_EQ(list->Add(node), !isIn);
            if (!isIn)
                oracle.push_back(node);
        } else {
            ASSERT_EQ(list->Remove(node), isIn);
            if (isIn)
                oracle.erase(found);
        }
        if (random() % 50 == 0)
            list->CloseHoles();
        if (random() % 200 == 0) {
            list->StableSort(less);
            std::ranges::stable_sort(oracle, less);
        }
        if (random() % 4000 == 0) {
            list->Clear();
            oracle.clear();
        }
        ASSERT_EQ(list->Size(), oracle.size());
        ASSERT_TRUE(std::equal(list->begin(), list->end(), oracle.begin(), oracle.end())) << "step " << step;
    }
}

TEST_F(NodeListTest, removingAllChildrenIsLinearInAnyOrder) {
    for (bool const fromTheFront : {false, true}) {
        auto const parent = MakeNode<Leaf>();
        std::vector<Ptr<Leaf>> children;
        double const adding = SecondsOf([&] {
            for (std::size_t child = 0; child < Many; ++child) {
                children.push_back(MakeNode<Leaf>());
                parent->Add(children.back());
            }
        });
        double const removing = SecondsOf([&] {
            for (std::size_t const child : ShuffledIndices(Many, 1))
                parent->Remove(fromTheFront ? *parent->begin() : children[child]);
        });
        EXPECT_TRUE(parent->Empty() && children[0]->Deps().Empty());
        EXPECT_LT(removing, adding * LinearFactor) << (fromTheFront ? "front" : "random");
    }
}

TEST_F(NodeListTest, iterationPassesOverRemovedAndMeetsAllThatStay) {
    for (int child = 0; child < 100; ++child)
        list->Add(MakeProbe(std::to_string(child), false));
    std::vector<std::string> const before = NamesOf(*list);
    std::vector<std::string> met;
    std::set<std::string> removedAhead;
    DestructionScope const scope;
    for (auto at = list->begin(); at != list->end() && (*at)->Name() != "new"; ++at) {
        auto ahead = at;
        met.push_back((*at)->Name());
        if (met.size() % 3 == 0) {
            removedAhead.insert((*++ahead)->Name());
            list->Remove(*ahead);
        }
        if (met.size() % 10 != 0) {
            list->Remove(*at);
            EXPECT_FALSE(*at);
        }
        for (int child = 0; child < 40 && met.size() == 60; ++child)
            list->Add(MakeProbe("new", false));
    }
    std::vector<std::string> expected;
    std::ranges::copy_if(
        before, std::back_inserter(expected), [&](auto const& p_name) { return !removedAhead.contains(p_name); });
    EXPECT_EQ(met, expected);
    EXPECT_EQ(removedAhead.size(), 25U);
    auto const last = list->begin();
    list->Clear();
    EXPECT_FALSE(*last);
    auto next = last;
    EXPECT_EQ(++next, list->end());
}

TEST_F(NodeListTest, sortingKeepsEqualOnesInOrderAndTellsNobody) {
    for (char const* const name : {"b1", "a1", "c1", "a2", "b2"})
        list->Add(MakeProbe(name));
    list->Remove(*list->begin());
    TimeStamp const before = list->Time();
    Probe::received = 0;
    list->StableSort([](auto const& p_left, auto const& p_right) { return p_left->Name()[0] < p_right->Name()[0]; });
    list->CloseHoles();
    EXPECT_THAT(NamesOf(*list), testing::ElementsAre("a1", "a2", "b2", "c1"));
    EXPECT_EQ(Probe::received, 0);
    EXPECT_EQ(list->Time(), before);
}

TEST_F(NodeListTest, dumpsItselfOrAllBelow) {
    list->Add(a);
    a->Add(b);
    auto const line = [](Ptr<Probe> const& p_node) {
        return "Probe \"" + p_node->Name() + "\" #" + std::to_string(p_node->Id()) + "\n";
    };
    for (auto const& [verbosity, below] : {std::pair{Verbosity::Normal, std::string()},
             std::pair{Verbosity::Verbose, "    " + line(a) + "      " + line(b)}}) {
        std::ostringstream text;
        list->Dump(text, verbosity, 1);
        EXPECT_EQ(text.str(), "  " + line(list) + below);
    }
}

} // namespace Qor::Chart::Core
