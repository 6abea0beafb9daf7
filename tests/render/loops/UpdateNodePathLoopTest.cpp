#include "render/loops/UpdateNodePathLoop.h"

#include "tests/render/support/Script.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;
using ::testing::ElementsAre;

/// Nodes that move as they are; where all are made from a model, the random editor compares every path.
struct UpdateNodePathLoopTest : ::testing::Test {
    UpdateNodePathLoopTest() {
        for (int number = 0; number < 6; ++number) {
            models.push_back(Core::MakeNode<ScriptModel>(number));
            nodes.push_back(Core::MakeNode<ScriptVis>(world, models.back()));
        }
    }
    int Id(int p_node) const { return static_cast<int>(nodes[p_node]->Id()); }
    std::vector<std::int32_t> PathOf(int p_node) const { return nodes[p_node]->GetPath().Ids(); }

    World world;
    std::vector<Core::Ptr<ScriptModel>> models;
    std::vector<Core::Ptr<Vis>> nodes;
    UpdateNodePathLoop const loop{};
};

TEST_F(UpdateNodePathLoopTest, aMovedNodeKeepsItsPathButWhatIsNewBelowItGetsThePresentOne) {
    nodes[0]->Add(nodes[1]);
    nodes[0]->Add(nodes[2]);
    nodes[2]->Add(nodes[3]);
    loop(nodes[0]);
    nodes[0]->Remove(nodes[2]);
    nodes[1]->Add(nodes[2]);
    nodes[3]->Add(nodes[4]);
    loop(nodes[0]);
    EXPECT_THAT(PathOf(2), ElementsAre(Id(0), Id(2)));
    EXPECT_THAT(PathOf(3), ElementsAre(Id(0), Id(2), Id(3)));
    EXPECT_THAT(PathOf(4), ElementsAre(Id(0), Id(1), Id(2), Id(3), Id(4)));
}

TEST_F(UpdateNodePathLoopTest, newNodesAreFoundUnderAnyOtherRootAndAfterASubtreeWasAddedWhole) {
    nodes[1]->Add(nodes[2]);
    loop(nodes[1]);
    nodes[2]->Add(nodes[3]);
    nodes[0]->Add(nodes[1]);
    nodes[3]->Add(nodes[4]);
    nodes[0]->Remove(nodes[1]); // what is new below it stays unnoticed until it is met again
    loop(nodes[0]);
    EXPECT_FALSE(nodes[3]->GetPath().IsDefined());
    nodes[0]->Add(nodes[5]);
    nodes[5]->Add(nodes[1]);
    loop(nodes[0]);
    EXPECT_THAT(PathOf(1), ElementsAre(Id(1)));
    EXPECT_THAT(PathOf(3), ElementsAre(Id(0), Id(5), Id(1), Id(2), Id(3)));
    EXPECT_THAT(PathOf(4), ElementsAre(Id(0), Id(5), Id(1), Id(2), Id(3), Id(4)));
}

} // namespace
} // namespace Qor::Chart::Render
