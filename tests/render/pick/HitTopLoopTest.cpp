#include "render/pick/HitTopLoop.h"

#include "tests/render/pick/HitFixture.h"
#include "tests/render/support/AllocationCount.h"
#include "tests/render/support/Script.h"
#include "framework/core/Exceptions.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Fixtures::HitNode;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Tree : Fixtures::HitFixture {
    std::vector<HitRecord> Pick(Layer p_layers = LayerBase) {
        trace.clear();
        visited = tested = 0;
        return HitTopLoop()(root, context, point, visited, tested, p_layers);
    }
    PickPoint point{{50, 50}, {2, 3}};
};
struct HitTopLoopTest : ::testing::Test, Tree {};

TEST_F(HitTopLoopTest, hooksRunAsInADrawAndSeeThePointInTheirPane) {
    auto const pane = MakePane("pane", {10.9F, 20.9F, 50, 60});
    auto const leaf = Make("leaf", "pane");
    leaf->depths = {.75, .25, .5};
    auto const records = Pick();
    EXPECT_EQ(trace, " +root ?root +pane ?pane +leaf ?leaf -leaf -pane -root");
    EXPECT_EQ(leaf->seen, (PickPoint{{40, 30}, {2, 3}}));
    EXPECT_EQ(root->seen, point);
    ASSERT_EQ(records.size(), 1U);
    HitRecord const& hit = records.front();
    EXPECT_THAT(hit.result.records, ElementsAre(Ogl::HitRecord(2, .25), Ogl::HitRecord(3, .5), Ogl::HitRecord(1, .75)));
    EXPECT_EQ(hit.screenPos, point.position);
    // nothing is projected: from pixel (50, 50) of the pane to -1 to 1, and then out of the three moves above the leaf
    Types::Vector3_Base<double> const global((50 - double{10.9F}) / 25 - 1, (50 - double{20.9F}) / 30 - 1, -.5);
    EXPECT_LT(Types::Length(hit.global - global), 1e-12);
    EXPECT_LT(Types::Length(hit.location - global + Types::Vector3_Base<double>(3, 0, 0)), 1e-12);

    leaf->overlayDepths = {.75, .25};
    auto const above = Pick(LayerOverlay);
    EXPECT_EQ(trace, " [root !root [pane !pane [leaf !leaf ]leaf ]pane ]root");
    EXPECT_THAT(above.front().result.records, ElementsAre(Ogl::HitRecord(2, 0), Ogl::HitRecord(1, 0)));
    EXPECT_NEAR(above.front().location.z, -1, 1e-12);

    leaf->wantsChildren = false;
    Make("unseen", "leaf");
    point.position = {9, 30};
    Pick();
    EXPECT_EQ(trace, " +root ?root +pane ?pane -pane -root") << "the point is beside the pane";
    point.position = {20, 30};
    Pick();
    EXPECT_EQ(trace, " +root ?root +pane ?pane +leaf ?leaf -leaf -pane -root");
    EXPECT_EQ(visited, 3U);
    bool isBranch = false;
    context.NodeFilter().Set([&](Core::Ptr<Vis> const& p_node, bool& p_skipsChildren) {
        p_skipsChildren = isBranch;
        return p_node == pane;
    });
    for (char const* const expected :
        {" +root ?root +pane +leaf ?leaf -leaf -pane -root", " +root ?root +pane -pane -root"}) {
        Pick();
        EXPECT_EQ(trace, expected) << "a delegate takes nodes or whole branches";
        isBranch = true;
    }
}

TEST_F(HitTopLoopTest, aHookThatFailsCostsTheRestOfItsSubtreeAlone) {
    auto const failing = Make("failing", "root", Vis::VisFlagContextRoot);
    Make("leaf", "failing")->depths = {.5};
    Make("next")->depths = {.5};
    nodes["leaf"]->overlayDepths = nodes["next"]->overlayDepths = {.5};
    for (char const mark : std::string("+?-[!]")) {
        for (bool const isStandard : {true, false}) {
            SCOPED_TRACE(mark);
            dispatcher.exceptions.clear();
            failing->Touch();
            failing->actions.clear();
            failing->actions[mark] = [&](DrawContext const& p_context) {
                Utility::Scoped<Ogl::Agl> scope(p_context.Graphics());
                scope->PushMatrix();
                scope->PushAttrib(AGL_ALL_ATTRIB_BITS);
                scope->Enable(AGL_LIGHTING);
                scope->MatrixMode(AGL_PROJECTION);
                scope->Begin(AGL_LINES);
                if (isStandard)
                    throw std::runtime_error("no way");
                throw 7;
            };
            bool const isOverlay = std::string("[!]").find(mark) != std::string::npos;
            bool const isLate = mark == '-' || mark == ']';
            EXPECT_EQ(Text(Pick(isOverlay ? LayerOverlay : LayerBase)), isLate ? "leaf@failing next@" : "next@");
            ASSERT_EQ(dispatcher.exceptions.size(), 1U);
            EXPECT_THAT(dispatcher.exceptions[0], HasSubstr("\"failing\""));
            EXPECT_THAT(dispatcher.exceptions[0],
                HasSubstr(isOverlay ? " caught exception in RenderLoop-HitOverlay: "
                                    : " caught exception in RenderLoop-Hit: "));
            EXPECT_THAT(
                dispatcher.locations.back(), HasSubstr(isOverlay ? "HitTopLoop::HitOverlay(" : "HitTopLoop::HitBase("));
            EXPECT_FALSE(failing->IsValid());
            ExpectRestored();
        }
    }
    EXPECT_EQ(Text(Pick()), "next@") << "until it is touched the node is left out";
}

TEST_F(HitTopLoopTest, aGraphThatChangesMeanwhileIsReportedAndTheResultStands) {
    for (char const* const name : {"first", "second", "third"}) {
        auto const node = Make(name);
        node->depths = node->overlayDepths = {.5};
    }
    Make("leaf", "second")->depths = {.5};
    auto const expectPick = [this](char const* p_result, std::vector<std::string> const& p_texts) {
        qordebug::CaptureScope log(Utility::GetLogger(), {"Err"});
        EXPECT_EQ(Text(Pick(LayerBoth)), p_result);
        EXPECT_EQ(log.texts("Err"), p_texts);
        ExpectRestored();
    };
    nodes["third"]->actions['?'] = [this](DrawContext const&) {
        root->Remove(nodes["first"]);
        nodes.erase("first");
    };
    expectPick("third@ second@ third@ leaf@ second@ gone@", {"Graph modified during a hit detect in Base layer."});
    nodes["third"]->actions.clear();
    nodes["leaf"]->actions['?'] = [this](DrawContext const&) {
        nodes.erase("leaf");
        nodes["second"]->Clear();
        root->Clear();
    };
    nodes.erase("third");
    expectPick("second@ gone@", {"Graph modified during a hit detect in Base layer."});
}

/// Memory taken by one pick over a tree of some nodes that are not hit, after earlier picks.
std::size_t AllocationsOfAPick(int p_branches) {
    Tree tree;
    tree.trace.reserve(1 << 20);
    for (int branch = 0; branch < p_branches; ++branch) {
        tree.Make("branch");
        for (int leaf = 0; leaf < 10; ++leaf)
            tree.Make("leaf", "branch");
    }
    std::size_t last = 0;
    for (int run = 0; run < 3; ++run) {
        std::size_t const before = Fixtures::allocations;
        EXPECT_THAT(tree.Pick(LayerBoth), IsEmpty());
        last = Fixtures::allocations - before;
    }
    return last;
}

TEST(HitTopLoopLimitsTest, whatIsNotHitTakesNoMemory) {
    EXPECT_EQ(AllocationsOfAPick(2), AllocationsOfAPick(300));
}

TEST(HitTopLoopLimitsTest, tenThousandLevelsArePickedAndATreeTooDeepIsOneError) {
    static constexpr int levels = 10000;
    std::vector<Core::Ptr<HitNode>> chain;
    for (int level = 0; level < levels; ++level)
        chain.push_back(Core::MakeNode<HitNode>(nullptr, "node"));
    chain.back()->depths = {.5};
    for (int level = levels - 1; level > 0; --level)
        chain[level - 1]->Append(chain[level]);
    Tree tree;
    tree.root = chain.front();
    for (int run = 0; run < 2; ++run) {
        Fixtures::OnThread(std::size_t{512} << 10U, [&] {
            EXPECT_THAT(
                [&] { tree.Pick(); }, ::testing::ThrowsMessage<Core::TreeTooDeepExcept>(HasSubstr("Flatten the tree")));
        });
        tree.ExpectRestored();
        Fixtures::OnThread(Fixtures::DefaultStack, [&] { EXPECT_EQ(tree.Pick().size(), 1U); });
        EXPECT_EQ(tree.tested, static_cast<unsigned>(levels));
    }
    EXPECT_THAT(tree.dispatcher.exceptions, IsEmpty());
}

} // namespace
} // namespace Qor::Chart::Render
