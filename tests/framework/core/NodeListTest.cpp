#include "tests/framework/core/Probe.h"

#include <gmock/gmock.h>

#include <array>
#include <map>

namespace Qor::Chart::Core {

namespace {

struct Leaf : NodeList<Leaf> {};

struct NodeListTest : testing::Test {
    Ptr<Probe> list = MakeProbe();
    Ptr<Probe> watcher = MakeProbe();
    Ptr<Probe> a = MakeProbe();
    Ptr<Probe> b = MakeProbe();

    NodeListTest() { watcher->weak.Attach(list); }
};

} // namespace

TEST_F(NodeListTest, reportsWhatCameAndLeft) {
    list->Add(b);
    for (auto const change : {IModifiable::ChangeAdd, IModifiable::ChangeRemove, IModifiable::ChangeAdd}) {
        EXPECT_TRUE(change == IModifiable::ChangeAdd ? list->Add(a) : list->Remove(a));
        EXPECT_EQ(watcher->type, IModifiable::ModifiableTypeNode);
        EXPECT_EQ(watcher->change, change);
        EXPECT_EQ(watcher->relationship, IModifiable::RelationshipDirect);
        EXPECT_EQ(boost::any_cast<WeakPtr<Node>>(watcher->data), WeakPtr<Node>(a));
    }
    WeakPtr<Node> const gone(b);
    b.Reset();
    list->Clear();
    EXPECT_EQ(watcher->change, IModifiable::ChangeClear);
    EXPECT_THAT(boost::any_cast<NodeHandles>(watcher->data), testing::ElementsAre(gone, WeakPtr<Node>(a)));
    EXPECT_TRUE(gone.Expired() && list->Empty() && a->Deps().Empty());
    EXPECT_FALSE(list->Add({}) || list->Remove(b));
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
        if (random() % 8 < (step / 500 % 2 == 0 ? 6 : 2)) {
            ASSERT_EQ(list->Add(node), !isIn);
            if (!isIn)
                oracle.push_back(node);
        } else {
            ASSERT_EQ(list->Remove(node), isIn);
            if (isIn)
                oracle.erase(found);
        }
        Probe::received = 0;
        if (random() % 50 == 0)
            list->CloseHoles();
        if (random() % 200 == 0) {
            list->StableSort(less);
            std::ranges::stable_sort(oracle, less);
        }
        ASSERT_EQ(Probe::received, 0) << "the order is nobody's business";
        ASSERT_EQ(list->Size(), oracle.size());
        ASSERT_TRUE(std::equal(list->begin(), list->end(), oracle.begin(), oracle.end())) << "step " << step;
    }
}

TEST_F(NodeListTest, removingAllChildrenIsLinearInAnyOrder) {
    for (bool const fromTheFront : {false, true}) {
        auto const parent = MakeNode<Leaf>();
        std::vector<Ptr<Leaf>> children;
        ExpectLinear([&](std::size_t) { parent->Add(children.emplace_back(MakeNode<Leaf>())); },
            [&](std::size_t p_child) { parent->Remove(fromTheFront ? *parent->begin() : children[p_child]); });
        EXPECT_TRUE(parent->Empty() && children[0]->Deps().Empty());
    }
}

TEST_F(NodeListTest, iterationPassesOverRemovedAndMeetsAllThatStay) {
    for (int child = 0; child < 100; ++child)
        list->Add(MakeProbe(std::to_string(child), false));
    std::vector<int> met;
    std::size_t removedAhead = 0;
    DestructionScope const scope;
    for (auto at = list->begin(); at != list->end() && (*at)->Name() != "new"; ++at) {
        auto ahead = at;
        met.push_back(std::stoi((*at)->Name()));
        if (met.size() % 3 == 0)
            removedAhead += list->Remove(*++ahead) ? 1U : 0U;
        if (met.size() % 10 != 0)
            list->Remove(*at);
        for (int child = 0; child < 40 && met.size() == 60; ++child)
            list->Add(MakeProbe("new", false));
    }
    EXPECT_EQ(met.size() + removedAhead, 100U);
    EXPECT_EQ(std::ranges::adjacent_find(met, std::greater_equal<>()), met.end());
    auto last = list->begin();
    list->Clear();
    EXPECT_FALSE(*last);
    EXPECT_EQ(++last, list->end());
}

TEST(Dependencies, thousandsOfDependentsAgreeWithAPlainMap) {
    std::mt19937 random(11);
    std::vector<Ptr<Probe>> dependents;
    for (int node = 0; node < 3000; ++node)
        dependents.push_back(MakeProbe({}, false));
    auto const subject = MakeProbe({}, false);
    Dependencies& deps = subject->Deps();
    std::map<Node const*, std::array<unsigned, 2>> oracle;
    for (int step = 0; step < 200'000; ++step) {
        Probe& node = *dependents[random() % (step < 2'000 ? 40 : dependents.size())];
        auto const link = random() % 2 == 0 ? Dependencies::Link::Child : Dependencies::Link::Reference;
        auto const kind = static_cast<std::size_t>(link);
        if (random() % 8 < (step / 50'000 % 2 == 0 ? 5 : 2)) {
            deps.Add(node, link);
            ++oracle[&node][kind];
        } else {
            deps.Remove(node, link);
            oracle[&node][kind] -= oracle[&node][kind] > 0 ? 1 : 0;
            if (oracle[&node] == std::array<unsigned, 2>{})
                oracle.erase(&node);
        }
        ASSERT_EQ(deps.Size(), oracle.size());
        Probe const& other = *dependents[random() % dependents.size()];
        auto const found = oracle.find(&other);
        ASSERT_EQ(deps.Has(other, link), found != oracle.end() && found->second[kind] > 0) << "step " << step;
    }
}

TEST(Dependencies, removingAllInRandomOrderIsLinear) {
    struct Owner : Node {
        WeakRef<Owner> weak{*this, "weak"};
    };
    auto const subject = MakeNode<Owner>();
    std::vector<Ptr<Owner>> owners;
    ExpectLinear([&](std::size_t) { owners.emplace_back(MakeNode<Owner>())->weak.Attach(subject); },
        [&](std::size_t p_owner) { owners[p_owner].Reset(); });
    EXPECT_TRUE(subject->Deps().Empty());
}

} // namespace Qor::Chart::Core
