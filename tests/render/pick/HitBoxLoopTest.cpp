#include "render/pick/HitBoxLoop.h"

#include "tests/render/pick/HitFixture.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace Qor::Chart::Render {
namespace {

using Fixtures::HitNode;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Rectangle = Types::Viewport<0>;

struct HitBoxLoopTest : ::testing::Test, Fixtures::HitFixture {
    std::vector<HitRecord> Pick(Rectangle const& p_rectangle, Core::WeakPtr<Vis> const& p_scope = {}) {
        trace.clear();
        visited = tested = 0;
        BoxSelection const box(p_scope, p_rectangle, false, BoxSelection::Operation::Replace);
        return HitBoxLoop()(root, context, box, visited, tested);
    }
};

TEST_F(HitBoxLoopTest, onlyTheScopeIsTestedAndNoPaneBelowIt) {
    Make("group");
    MakePane("pane", {0, 0, 100, 100}, "group");
    Make("leaf", "pane");
    MakePane("inner", {0, 0, 100, 100}, "pane");
    MakePane("other", {0, 0, 100, 100});
    for (auto const& [name, node] : nodes)
        node->depths = {.5};
    auto const hits = [this](Core::WeakPtr<Vis> const& p_scope) {
        std::string text = Text(Pick({10, 10, 50, 50}, p_scope));
        ExpectRestored();
        return text;
    };
    EXPECT_EQ(hits({}), "group@ root@") << "the whole tree, but for the panes in it";
    EXPECT_EQ(hits(nodes["pane"]), "leaf@pane pane@pane");
    EXPECT_THAT(trace, HasSubstr("+root +group +pane ?pane +leaf ?leaf -leaf -pane -group +other -other -root"));
    EXPECT_EQ(tested, 4U) << "in both passes";
    EXPECT_EQ(hits(nodes["inner"]), "inner@inner");
    EXPECT_EQ(hits(nodes["leaf"]), "leaf@pane");
    Core::WeakPtr<Vis> const gone = Core::MakeNode<HitNode>(nullptr, "gone");
    EXPECT_EQ(hits(gone), "group@ root@");
}

TEST_F(HitBoxLoopTest, oneListWithTheSceneBeforeTheOverlayAtEqualDepth) {
    Make("a")->depths = {0};
    nodes["a"]->overlayDepths = {.9, .3};
    Make("b")->depths = {.4};
    Make("c")->overlayDepths = {.1};
    nodes["c"]->SetLayer(30001);
    auto const records = Pick({10, 10, 50, 50});
    EXPECT_EQ(Text(records), "c@ a@ a@ b@");
    EXPECT_EQ(records[1].result.records.size(), 1U) << "of the scene";
    EXPECT_EQ(records[1].screenPos, Types::Pos(36, 36));
    EXPECT_THAT(records[2].result.records, ElementsAre(Ogl::HitRecord(2, 0), Ogl::HitRecord(1, 0)));
    root->SetDisabled(true);
    EXPECT_TRUE(Pick({10, 10, 50, 50}).empty());
    EXPECT_EQ(visited, 0U);
}

TEST_F(HitBoxLoopTest, failuresAndChangesAreReported) {
    auto const failing = Make("failing");
    failing->actions['!'] = failing->actions['?'] = [&](DrawContext const&) {
        failing->Touch();
        throw std::runtime_error("no way");
    };
    Make("next")->depths = {.5};
    qordebug::CaptureScope log(Utility::GetLogger(), {""});
    for (char const* const function : {"HitBoxLoop::HitOverlay(", "HitBoxLoop::HitBase("}) {
        EXPECT_EQ(Text(Pick({10, 10, 50, 50})), "next@");
        EXPECT_THAT(dispatcher.locations.back(), HasSubstr(function));
        EXPECT_EQ(log.texts("").back(), "Graph modified during a hit detect.");
        failing->actions.erase('!');
        failing->Touch();
    }
    EXPECT_EQ(log.texts("").size() + dispatcher.locations.size(), 4U);
    ExpectRestored();
}

} // namespace
} // namespace Qor::Chart::Render
