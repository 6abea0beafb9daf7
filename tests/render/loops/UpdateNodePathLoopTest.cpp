#include "render/loops/UpdateNodePathLoop.h"

#include "tests/render/support/Script.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;
using ::testing::ElementsAre;

/// Where all nodes are made from a model, the random editor compares every path; here they are moved as they are.
TEST(UpdateNodePathLoopTest, aMovedNodeKeepsItsPathButWhatIsNewBelowItGetsThePresentOne) {
    World world;
    std::vector<Core::Ptr<ScriptModel>> models;
    std::vector<Core::Ptr<Vis>> nodes;
    for (int number = 0; number < 5; ++number) {
        models.push_back(Core::MakeNode<ScriptModel>(number));
        nodes.push_back(Core::MakeNode<ScriptVis>(world, models.back()));
    }
    auto const id = [&](int p_node) { return static_cast<int>(nodes[p_node]->Id()); };
    UpdateNodePathLoop const loop{};
    nodes[0]->Add(nodes[1]);
    nodes[0]->Add(nodes[2]);
    nodes[2]->Add(nodes[3]);
    loop(nodes[0]);
    nodes[0]->Remove(nodes[2]);
    nodes[1]->Add(nodes[2]);
    nodes[3]->Add(nodes[4]);
    loop(nodes[0]);
    EXPECT_THAT(nodes[2]->GetPath().Ids(), ElementsAre(id(0), id(2)));
    EXPECT_THAT(nodes[3]->GetPath().Ids(), ElementsAre(id(0), id(2), id(3)));
    EXPECT_THAT(nodes[4]->GetPath().Ids(), ElementsAre(id(0), id(1), id(2), id(3), id(4)));
}

} // namespace
} // namespace Qor::Chart::Render
