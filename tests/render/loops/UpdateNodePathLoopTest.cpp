#include "render/loops/UpdateNodePathLoop.h"

#include "tests/render/support/Script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;
using ::testing::ElementsAre;

class UpdateNodePathLoopTest : public ::testing::Test {
protected:
    UpdateNodePathLoopTest() {
        for (int number = 0; number < 6; ++number) {
            _models.push_back(Core::MakeNode<ScriptModel>(number));
            _nodes.push_back(Core::MakeNode<ScriptVis>(_world, _models.back()));
        }
    }
    int Id(int p_node) const { return static_cast<int>(_nodes[p_node]->Id()); }
    std::vector<std::int32_t> PathOf(int p_node) const { return _nodes[p_node]->GetPath().Ids(); }

    World _world;
    std::vector<Core::Ptr<ScriptModel>> _models;
    std::vector<Core::Ptr<Vis>> _nodes;
    UpdateNodePathLoop const _loop{};
};

TEST_F(UpdateNodePathLoopTest, everyNodeGetsThePathFromTheRootWhateverItsState) {
    _loop(_nodes[0]);
    EXPECT_THAT(PathOf(0), ElementsAre(Id(0)));
    _nodes[0]->Add(_nodes[1]);
    _nodes[1]->Add(_nodes[2]);
    _nodes[1]->Add(_nodes[3]);
    _nodes[2]->SetInvalid();
    _nodes[3]->SetPending();
    _nodes[1]->SetDisabled(true);
    _loop(_nodes[0]);
    EXPECT_THAT(PathOf(1), ElementsAre(Id(0), Id(1)));
    EXPECT_THAT(PathOf(2), ElementsAre(Id(0), Id(1), Id(2)));
    EXPECT_THAT(PathOf(3), ElementsAre(Id(0), Id(1), Id(3)));
}

TEST_F(UpdateNodePathLoopTest, aMovedNodeKeepsItsPathButWhatIsNewBelowItGetsThePresentOne) {
    _nodes[0]->Add(_nodes[1]);
    _nodes[0]->Add(_nodes[2]);
    _nodes[2]->Add(_nodes[3]);
    _loop(_nodes[0]);
    _nodes[0]->Remove(_nodes[2]);
    _nodes[1]->Add(_nodes[2]);
    _nodes[3]->Add(_nodes[4]);
    _loop(_nodes[0]);
    EXPECT_THAT(PathOf(2), ElementsAre(Id(0), Id(2)));
    EXPECT_THAT(PathOf(3), ElementsAre(Id(0), Id(2), Id(3)));
    EXPECT_THAT(PathOf(4), ElementsAre(Id(0), Id(1), Id(2), Id(3), Id(4)));
}

TEST_F(UpdateNodePathLoopTest, newNodesAreFoundUnderAnyOtherRootAndAfterASubtreeWasAddedWhole) {
    _nodes[1]->Add(_nodes[2]);
    _loop(_nodes[1]);
    _nodes[2]->Add(_nodes[3]);
    _nodes[0]->Add(_nodes[1]);
    _nodes[3]->Add(_nodes[4]);
    _nodes[0]->Remove(_nodes[1]); // what is new below it stays unnoticed until it is met again
    _loop(_nodes[0]);
    EXPECT_FALSE(_nodes[3]->GetPath().IsDefined());
    _nodes[0]->Add(_nodes[5]);
    _nodes[5]->Add(_nodes[1]);
    _loop(_nodes[0]);
    EXPECT_THAT(PathOf(1), ElementsAre(Id(1)));
    EXPECT_THAT(PathOf(3), ElementsAre(Id(0), Id(5), Id(1), Id(2), Id(3)));
    EXPECT_THAT(PathOf(4), ElementsAre(Id(0), Id(5), Id(1), Id(2), Id(3), Id(4)));
}

} // namespace
} // namespace Qor::Chart::Render
