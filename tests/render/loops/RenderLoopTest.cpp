#include "render/loops/RenderLoop.h"

#include "render/core/PaneMarker.h"
#include "tests/render/DrawFixture.h"
#include "tests/render/support/AllocationCount.h"
#include "tests/render/support/TraceNode.h"
#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Mode = DrawContext::DrawMode;
using Fixtures::allocations;
using Fixtures::DrawFixture;
using Node = Fixtures::TraceNode;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class PaneNode : public Fixtures::TraceNode, public PaneMarker {
public:
    using TraceNode::TraceNode;
};

/// A root with two children, the first of which has a child:  root ( one ( leaf ) two )
struct RenderLoopTest : ::testing::Test {
    template <class T = Node>
    Core::Ptr<T> Make(std::string p_name, Node* p_parent = nullptr, int p_flags = 0) {
        auto node = Core::MakeNode<T>(&trace, std::move(p_name), p_flags);
        if (p_parent)
            p_parent->Append(node);
        return node;
    }
    std::string Run(RenderLoop& p_loop, Core::WeakPtr<Vis> const& p_pane = {}) {
        trace.clear();
        p_loop(root, context, p_pane);
        return trace;
    }
    std::string Run() { return Run(loop); }
    /// Nothing that a run did is left over.
    void ExpectRestored() {
        EXPECT_EQ(fixture.agl.Depths(), Ogl::StackDepths());
        EXPECT_EQ(context.ModelView().Size(), 1U);
        EXPECT_TRUE(fixture.agl.Get(AGL_PROJECTION_MATRIX).IsIdentity());
        fixture.agl.Translate(1, 0, 0);
        EXPECT_EQ(fixture.agl.Get(AGL_MODELVIEW_MATRIX), Types::Matrix4::Translation({1, 0, 0})) << "and its mode";
        fixture.agl.LoadIdentity();
    }

    DrawFixture fixture;
    DrawContext context = fixture.MakeContext();
    std::string trace;
    Core::Ptr<Node> root = Make("root");
    Core::Ptr<Node> one = Make("one", root.Get());
    Core::Ptr<Node> leaf = Make("leaf", one.Get());
    Core::Ptr<Node> two = Make("two", root.Get());
    RenderLoop loop{LayerBase, Mode::Draw};
    RenderLoop::VisitDelegate const note = [this](Core::Ptr<Vis> const& p_node) { trace += " *" + p_node->Name(); };
    RenderLoop visiting{LayerBase, Mode::Draw, note, note};
};

TEST_F(RenderLoopTest, onlyBranchesWithWorkForThePassAreEnteredAndANodeMayLeaveItsChildrenOut) {
    one->OptimalPaths().Set(CallbackDraw, false);
    EXPECT_EQ(Run(visiting), " *root +root .root *two +two .two -two *two -root *root");
    EXPECT_EQ(visiting.VisitedCount(), 3U);
    EXPECT_EQ(visiting.DrawnCount(), 2U);
    one->OptimalPaths().Set(CallbackDraw);
    one->result = DrawResultSkipChildren;
    root->UnregisterCB(HandledDraw);
    EXPECT_EQ(Run(), " +root +one .one -one +two .two -two -root");
    EXPECT_EQ(loop.DrawnCount(), 2U);
    one->result = DrawResultDescend;
    leaf->SetInvalid();
    EXPECT_EQ(Run(), " +root +one .one -one +two .two -two -root");
}

TEST_F(RenderLoopTest, restrictionToOnePaneStaysInForce) {
    root->Clear();
    auto const left = Make<PaneNode>("left", root.Get());
    auto right = Make<PaneNode>("right", root.Get());
    Core::WeakPtr<Vis> const rightHandle = right;
    EXPECT_EQ(Run(loop, Core::WeakPtr<Vis>(left)), " +root .root +left .left -left -root");
    EXPECT_EQ(Run(loop, rightHandle), " +root .root +right .right -right -root");
    root->Remove(right);
    right.Reset();
    EXPECT_EQ(Run(loop, rightHandle), " +root .root -root") << "a pane that is gone leaves the restriction as it was";
}

TEST_F(RenderLoopTest, contextRootsGetADispatcherAndAContextOfTheirOwn) {
    auto const inner = boost::make_shared<Fixtures::RecordingDispatcher>();
    fixture.dispatcher.next = inner;
    auto const pane = Make("pane", root.Get(), Vis::VisFlagContextRoot);
    Make("below", pane.Get())->actions['.'] = [&](DrawContext const& p_context) {
        EXPECT_NE(&p_context, &context);
        throw std::runtime_error("no way");
    };
    Run();
    EXPECT_THAT(fixture.dispatcher.asked, ElementsAre(Core::WeakPtr<Vis>(pane)));
    EXPECT_THAT(fixture.dispatcher.exceptions, IsEmpty());
    EXPECT_EQ(inner->exceptions.size(), 1U);
    EXPECT_EQ(inner.use_count(), 2) << "the context of the pane is gone";
    ExpectRestored();
}

TEST_F(RenderLoopTest, filterLeavesOutNodesOrWholeBranches) {
    bool isWhole = false;
    context.NodeFilter().Set([&](Core::Ptr<Vis> const& p_node, bool& p_whole) {
        EXPECT_FALSE(p_whole);
        p_whole = isWhole;
        return p_node == one || p_node == two;
    });
    EXPECT_EQ(Run(), " +root .root +one +leaf .leaf -leaf -one +two -two -root");
    isWhole = true;
    EXPECT_EQ(Run(), " +root .root +two -two -root") << "without active children there is no branch to leave out";
}

TEST_F(RenderLoopTest, aFailingDelegateIsReportedAndLeavesNothingBehind) {
    RenderLoop::VisitDelegate const failing = [&](Core::Ptr<Vis> const& p_node) {
        if (p_node == leaf)
            throw std::runtime_error("host");
    };
    for (auto const& [pre, post] : {std::pair(failing, note), std::pair(note, failing)}) {
        RenderLoop pass(LayerBase, Mode::Draw, pre, post);
        leaf->Touch();
        EXPECT_THAT(Run(pass), HasSubstr(".two"));
        EXPECT_FALSE(leaf->IsValid());
        EXPECT_THAT(fixture.dispatcher.locations.back(), HasSubstr("RenderLoop::Draw("));
        ExpectRestored();
    }
    EXPECT_EQ(fixture.dispatcher.exceptions.size(), 2U);
}

TEST_F(RenderLoopTest, aHookMayRemoveItsNodeOrAllOfThem) {
    for (char const* const variant : {"+one", ".one", "-one", "+all", ".all", "-all"}) {
        for (RenderLoop* const pass : {&loop, &visiting}) {
            bool const isAll = variant[1] == 'a';
            auto const parent = Make("parent", root.Get());
            auto* const victim = Make("victim", parent.Get()).Get();
            victim->actions[*variant] = [&](DrawContext const&) {
                isAll ? parent->Clear() : void(parent->Remove(*victim));
            };
            Make("next", parent.Get());
            EXPECT_THAT(Run(*pass), HasSubstr("-victim"));
            EXPECT_EQ(trace.find(".next") == std::string::npos, isAll);
            EXPECT_THAT(fixture.dispatcher.exceptions, IsEmpty());
            ExpectRestored();
            root->Remove(parent);
        }
    }
}

TEST_F(RenderLoopTest, boundsAreOutlinedInTheBaseDrawPass) {
    struct Hooks : VisHooks {
        using VisHooks::SetBoundingBox;
    };
    Hooks::SetBoundingBox(*one, {{0, 0, 0}, {2, 4, 0}});
    Hooks::SetBoundingBox(*two, {{1, 1, 1}, {1, 1, 1}});
    context.SetShowBounds(true);
    RenderLoop overlay(LayerOverlay, Mode::Draw);
    Run(overlay);
    EXPECT_EQ(fixture.agl.GetStatistics().draws, 0U);
    Run();
    EXPECT_EQ(fixture.agl.GetStatistics().draws, 2U);
    ExpectRestored();
}

/// Memory taken by one run over a tree of some nodes that draw, after earlier runs.
std::size_t AllocationsOfARun(std::size_t p_nodes) {
    DrawFixture fixture(Ogl::RecorderBackend::Keep::Counters);
    DrawContext context = fixture.MakeContext();
    auto const root = Core::MakeNode<Node>(nullptr, "root");
    for (std::size_t i = 0; i < p_nodes; ++i) {
        auto const cube = Core::MakeNode<Node>(nullptr, "cube");
        cube->actions['.'] = [](DrawContext const& p_context) {
            Utility::Scoped<Ogl::Agl>(p_context.Graphics())->Draw(p_context.Geometry().UnitCube());
        };
        root->Append(cube);
    }
    RenderLoop loop(LayerBase, Mode::Draw);
    std::size_t last = 0;
    for (int run = 0; run < 3; ++run) {
        fixture.agl.BeginFrame();
        std::size_t const before = allocations;
        loop(root, context);
        last = allocations - before;
        fixture.agl.EndFrame();
    }
    return last;
}

TEST(RenderLoopAllocationTest, aSteadyFrameAllocatesNothingPerNode) {
    EXPECT_EQ(AllocationsOfARun(20), AllocationsOfARun(3000));
}

} // namespace
} // namespace Qor::Chart::Render
