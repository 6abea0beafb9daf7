#include "tests/framework/core/Probe.h"

#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <map>
#include <stdexcept>

namespace Qor::Chart::Core {

namespace {

using testing::ElementsAre;

/// Nodes by letter; the edge "ab" makes b depend on a, and a letter in capitals hands everything on as further.
struct Graph {
    explicit Graph(std::vector<std::string> const& p_edges) : edges(p_edges) {
        for (std::string const& edge : edges)
            Get(edge[0])->Deps().Add(*Get(edge[1]), Dependencies::Link::Reference);
        Probe::log.clear();
    }
    ~Graph() {
        for (std::string const& edge : edges)
            Get(edge[0])->Deps().Remove(*Get(edge[1]), Dependencies::Link::Reference);
    }
    Graph(Graph const&) = delete;
    Graph& operator=(Graph const&) = delete;

    Probe& operator[](char p_letter) { return *Get(p_letter); }
    Ptr<Probe> const& Get(char p_letter) {
        Ptr<Probe>& node = nodes[p_letter];
        if (!node) {
            node = MakeProbe(std::string(1, p_letter));
            node->handsOnAs = p_letter < 'a' ? IModifiable::RelationshipFurther : IModifiable::RelationshipSelf;
        }
        return node;
    }

    std::vector<std::string> edges;
    std::map<char, Ptr<Probe>> nodes;
};

} // namespace

TEST(Propagation, reachesEachDependentOnceWithItsSmallestRelationship) {
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        unsigned const nodes = 2 + static_cast<unsigned>(random() % 20);
        auto const letter = [&] { return "aBcdefGhijkLmnopqRstuv"[random() % nodes]; };
        char const origin = letter();
        std::vector<std::string> edges;
        for (unsigned edge = 0; edge < nodes * 2; ++edge)
            edges.push_back({edge == 0 ? origin : letter(), letter()});
        std::map<char, unsigned> level{{origin, 0}};
        for (unsigned hop = 0; hop < nodes; ++hop) {
            for (std::string const& edge : edges) {
                if (level.contains(edge[0]) && level[edge[0]] == hop)
                    level.emplace(edge[1], hop + 1);
            }
        }
        std::vector<std::string> expected;
        for (auto const& [name, hops] : level) {
            unsigned const relationship = hops > 0 && origin < 'a' ? 2 : std::min(hops, 2U);
            expected.push_back(std::string(1, name) + " x " + std::to_string(relationship));
        }
        Graph graph(edges);
        graph[origin].Report("x");
        ASSERT_THAT(Probe::log, testing::UnorderedElementsAreArray(expected)) << "round " << round;
    }
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
    graph['a'].Report("first");
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
        EXPECT_TRUE(weakSecond.Expired() && Probe::alive == alive);
        changed->Report("postponed");
        third->ref.Attach({});
        changed.Reset();
        throw std::runtime_error("after the end");
    };
    qordebug::CaptureScope const capture(Utility::GetLogger());
    origin->Report("x");
    EXPECT_TRUE(capture.contains("after the end"));
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
        graph['a'].Report(name);
        EXPECT_EQ(Probe::log.size(), 4U);
        EXPECT_THAT(capture.texts(qordebug::severity::error),
            ElementsAre(testing::AllOf(testing::HasSubstr("\"b\""), testing::HasSubstr(text))));
    }
}

} // namespace Qor::Chart::Core
