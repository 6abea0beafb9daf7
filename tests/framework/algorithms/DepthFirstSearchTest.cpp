#include "framework/algorithms/DepthFirstSearch.h"

#include "framework/core/NodeList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace Qor::Chart::Algorithms {

namespace {

struct Place : Core::NodeList<Place> {};
using Handle = Core::Ptr<Place>;
using Search = DepthFirstSearch<Handle, Core::NodeList<Place>::Iterator>;

Handle MakePlace(std::string p_name, std::vector<Handle> const& p_children = {}) {
    auto place = Core::MakeNode<Place>();
    place->SetName(std::move(p_name));
    for (Handle const& child : p_children) {
        place->Add(child);
    }
    return place;
}

/// Visits every node and counts.
std::size_t CountFrom(Handle const& p_root) {
    std::size_t count = 0;
    auto search = Search::Make(
        "counting",
        [&count](Handle const& p_node, auto const& p_visitChildren) {
            p_visitChildren(p_node->begin(), p_node->end());
            return ++count > 0;
        },
        [](Handle const&) { return false; });
    search(p_root);
    return count;
}

} // namespace

TEST(DepthFirstSearchTest, goesWhereTheOperationLeadsAndVisitsSharedNodesInEachPlace) {
    Handle const shared = MakePlace("shared", {MakePlace("below")});
    Handle const right = MakePlace("right", {shared});
    Handle const root = MakePlace("root", {MakePlace("left", {shared}), right});

    std::vector<std::string> visited;
    auto search = Search::Make(
        "listing",
        [&](Handle const& p_node, auto const& p_visitChildren) {
            visited.push_back(p_node->Name());
            if (p_node != right) {
                p_visitChildren(p_node->begin(), p_node->end());
            }
            return p_node == root;
        },
        [](Handle const&) -> bool { throw std::logic_error("no cycle here"); });
    EXPECT_TRUE(search(root));
    EXPECT_THAT(visited, testing::ElementsAre("root", "left", "shared", "below", "right"));
    EXPECT_FALSE(search(shared) || search(nullptr));
    EXPECT_EQ(CountFrom(root), 7U);
}

TEST(DepthFirstSearchTest, aCycleIsMetOnceAndTheSearchStaysUsable) {
    Handle const child = MakePlace("child");
    Handle const root = MakePlace("root", {child});
    child->Add(root);

    int visits = 0;
    bool throws = true;
    auto search = Search::Make(
        "looking",
        [&](Handle const& p_node, auto const& p_visitChildren) {
            ++visits;
            p_visitChildren(p_node->begin(), p_node->end());
            return true;
        },
        [&](Handle const& p_node) {
            EXPECT_EQ(p_node, root);
            return throws ? throw Core::CyclicDependencyFoundExcept(p_node->Name()) : false;
        });
    EXPECT_THROW(search(root), Core::CyclicDependencyFoundExcept);
    EXPECT_EQ(search.Depth(), 0U);
    throws = false;
    EXPECT_TRUE(search(root));
    EXPECT_EQ(visits, 4);
    child->Clear();
}

} // namespace Qor::Chart::Algorithms
