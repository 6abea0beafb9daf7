#include "tests/framework/core/Probe.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

namespace Qor::Chart::Core {

namespace {

using testing::ElementsAre;

/// Nodes by letter; the edge "ab" makes b depend on a, and a letter in capitals hands everything on as further.
class Graph {
public:
    explicit Graph(std::vector<std::string> const& p_edges) : _edges(p_edges) {
        for (std::string const& edge : _edges)
            Get(edge[0])->Deps().Add(*Get(edge[1]), Dependencies::Link::Reference);
        Probe::log.clear();
    }
    ~Graph() {
        for (std::string const& edge : _edges)
            Get(edge[0])->Deps().Remove(*Get(edge[1]), Dependencies::Link::Reference);
    }
    Graph(Graph const&) = delete;
    Graph& operator=(Graph const&) = delete;

    Probe& operator[](char p_letter) { return *Get(p_letter); }
    Ptr<Probe> const& Get(char p_letter) {
        Ptr<Probe>& node = _nodes[p_letter];
        if (!node) {
            node = MakeProbe(std::string(1, p_letter));
            node->handsOnAs = p_letter < 'a' ? IModifiable::RelationshipFurther : IModifiable::RelationshipSelf;
        }
        return node;
    }

private:
    std::vector<std::string> _edges;
    std::map<char, Ptr<Probe>> _nodes;
};

} // namespace

TEST(Propagation, reachesEachDependentOnceWithItsSmallestRelationship) {
    struct Case {
        char const* what;
        std::vector<std::string> edges;
        std::vector<std::string> told; ///< the origin first, the others in any order
    };
    for (auto const& [what, edges, told] : std::vector<Case>{
             {"nobody depends", {"ba"}, {"a x 0"}},
             {"chain", {"ab", "bc", "cd"}, {"a x 0", "b x 1", "c x 2", "d x 2"}},
             {"diamond", {"ab", "ac", "bd", "cd"}, {"a x 0", "b x 1", "c x 1", "d x 2"}},
             {"direct and further", {"ab", "bc", "cd", "ad"}, {"a x 0", "b x 1", "c x 2", "d x 1"}},
             {"two links", {"ab", "ab"}, {"a x 0", "b x 1"}},
             {"circle back to the origin", {"ab", "bc", "ca"}, {"a x 0", "b x 1", "c x 2"}},
             {"circle beside", {"ab", "bc", "cb"}, {"a x 0", "b x 1", "c x 2"}},
             {"handed on by the origin as further", {"Ab", "bc"}, {"A x 0", "b x 2", "c x 2"}},
             {"handed on as further", {"aB", "Bc", "ac", "Bd"}, {"a x 0", "B x 1", "c x 1", "d x 2"}},
         }) {
        Graph graph(edges);
        graph[told[0][0]].Report("x");
        EXPECT_THAT(Probe::log, testing::UnorderedElementsAreArray(told)) << what;
    }
}

TEST(Propagation, randomGraphsAgreeWithASearchByLevels) {
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        auto const nodes = static_cast<unsigned>(2 + random() % 20);
        std::vector<std::string> edges{"ab"};
        for (unsigned edge = 0; edge < nodes * 2; ++edge)
            edges.push_back({static_cast<char>('a' + random() % nodes), static_cast<char>('a' + random() % nodes)});
        std::map<char, unsigned> level{{'a', 0}};
        for (unsigned hop = 0; hop < nodes; ++hop) {
            for (std::string const& edge : edges) {
                if (level.contains(edge[0]) && level[edge[0]] == hop)
                    level.emplace(edge[1], hop + 1);
            }
        }
        std::vector<std::string> expected;
        for (auto const& [name, hops] : level)
            expected.push_back(std::string(1, name) + " x " + std::to_string(std::min(hops, 2U)));
        Graph graph(edges);
        graph['a'].Report("x");
        ASSERT_THAT(Probe::log, testing::UnorderedElementsAreArray(expected)) << "round " << round;
    }
}

TEST(Propagation, costsOneStepForEachDependent) {
    std::vector<Ptr<Probe>> joints{MakeProbe({}, false)};
    for (int diamond = 0; diamond < 20; ++diamond) {
        joints.push_back(MakeProbe({}, false));
        for (auto const& side : {MakeProbe({}, false), MakeProbe({}, false)}) {
            joints.back()->Add(side);
            side->Add(joints[joints.size() - 2]);
        }
    }
    Probe::received = 0;
    joints.front()->Touch();
    EXPECT_EQ(Probe::received, 1 + 20 * 3) << "diamonds in a row";

    auto const models = MakeChain(1000);
    auto const mirrors = MakeChain(1000);
    for (std::size_t level = 0; level < models.size(); ++level)
        mirrors[level]->weak.Attach(models[level]);
    Probe::received = 0;
    models.back()->Touch();
    EXPECT_EQ(Probe::received, 2000) << "a chain of which every node is mirrored";
    EXPECT_EQ(mirrors[999]->relationship, IModifiable::RelationshipDirect);
    EXPECT_EQ(mirrors[998]->relationship, IModifiable::RelationshipFurther);
}

TEST(Propagation, aChangeMadeMeanwhileReachesItsNodeAtOnceAndTheOthersAfterwards) {
    Graph graph({"ab", "bc", "xy", "yc"});
    graph['b'].onTouch = [&](std::string const& p_name) {
        if (p_name != "first")
            return;
        graph['b'].Report("same node");
        graph['x'].Report("other node");
        graph['a'].Report("origin");
    };
    TimeStamp const before = graph['x'].Time();
    graph['a'].Report("first");
    EXPECT_GT(graph['x'].Time(), before);
    EXPECT_THAT(Probe::log,
        ElementsAre("a first 0", "b first 1", "b same node 0", "x other node 0", "a origin 0", "c first 2",
            "c same node 1", "y other node 1", "c other node 2", "b origin 1", "c origin 2"));
}

TEST(Propagation, nodesThatDieMeanwhileAreToldNoMoreAndDestroyedAfterwards) {
    auto const origin = MakeProbe("origin");
    auto first = MakeProbe("first");
    auto second = MakeProbe("second");
    auto const third = MakeProbe("third");
    auto changed = MakeProbe("changed");
    for (auto const& dependent : {first, second, third})
        dependent->weak.Attach(origin);
    third->ref.Attach(changed);
    Probe::log.clear();
    int const alive = Probe::alive;
    WeakPtr<Probe> const weakSecond(second);
    first->onTouch = [&](std::string const&) {
        first.Reset();
        second.Reset();
        EXPECT_TRUE(weakSecond.Expired());
        EXPECT_EQ(Probe::alive, alive);
        changed->Report("postponed");
        third->ref.Attach({});
        changed.Reset();
        throw std::runtime_error("after the end");
    };
    {
        qordebug::CaptureScope const capture(Utility::GetLogger());
        origin->Report("x");
        EXPECT_TRUE(capture.contains("after the end"));
    }
    EXPECT_EQ(Probe::alive, alive - 3);
    EXPECT_THAT(Probe::log, ElementsAre("origin x 0", "first x 1", "changed postponed 0", "third ref 0", "third x 1"));
    origin->Report("again");
    EXPECT_EQ(Probe::log.back(), "third again 1");
}

TEST(Propagation, aNodeWhoseConstructorFailsMeanwhileIsForgotten) {
    struct Failing : Probe {
        explicit Failing(Ptr<Probe> const& p_dependent) : Probe("failing") {
            Deps().Add(*p_dependent, Dependencies::Link::Reference);
            Report("postponed");
            throw std::runtime_error("no such thing");
        }
    };
    Graph graph({"ab", "ac"});
    graph['b'].onTouch = [&](std::string const&) {
        EXPECT_THROW((void)MakeNode<Failing>(graph.Get('c')), std::runtime_error);
    };
    graph['a'].Report("x");
    EXPECT_THAT(Probe::log, ElementsAre("a x 0", "b x 1", "failing name 0", "failing postponed 0", "c x 1"));
}

TEST(Propagation, aReceiverThatThrowsIsReportedAndPassedOver) {
    Graph graph({"ab", "ac", "bd"});
    graph['b'].onTouch = [](std::string const& p_name) {
        if (p_name == "standard")
            throw std::runtime_error("out of paint");
        if (p_name == "other")
            throw 7;
    };
    for (auto const& [name, text] : {std::pair{"standard", "out of paint"}, std::pair{"other", "unknown exception"}}) {
        qordebug::CaptureScope const capture(Utility::GetLogger());
        Probe::log.clear();
        TimeStamp const before = graph['b'].Time();
        graph['a'].Report(name);
        EXPECT_EQ(Probe::log.size(), 4U);
        EXPECT_EQ(graph['d'].relationship, IModifiable::RelationshipFurther);
        EXPECT_GT(graph['b'].Time(), before);
        EXPECT_THAT(capture.texts(qordebug::severity::error),
            ElementsAre(testing::AllOf(testing::HasSubstr("\"b\""), testing::HasSubstr(text))));
    }
    Probe::log.clear();
    graph['a'].Report("fine");
    EXPECT_EQ(Probe::log.size(), 4U);
}

TEST(Propagation, longChainsAreTouchedAndDestroyedOnTheDefaultStack) {
    int const alive = Probe::alive;
    auto chain = MakeChain(100'000);
    Ptr<Probe> root = chain.front();
    Probe::received = 0;
    chain.back()->Touch();
    EXPECT_EQ(Probe::received, 100'000);
    EXPECT_EQ(root->relationship, IModifiable::RelationshipFurther);
    chain.clear();
    EXPECT_EQ(Probe::alive, alive + 100'000);
    root.Reset();
    EXPECT_EQ(Probe::alive, alive);
}

} // namespace Qor::Chart::Core
