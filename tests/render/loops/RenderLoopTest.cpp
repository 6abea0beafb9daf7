#include "render/loops/RenderLoop.h"

#include "render/core/PaneMarker.h"
#include "tests/render/DrawFixture.h"
#include "framework/core/Exceptions.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Mode = DrawContext::DrawMode;
using Fixtures::DrawFixture;
using Fixtures::RecordingDispatcher;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Box = Types::BoundingBox_Base<double>;
using Trace = std::vector<std::string>;

#if defined(__SANITIZE_ADDRESS__) || !defined(NDEBUG)
constexpr std::size_t DeepStack = std::size_t{128} << 20U; // frames are larger here
#else
constexpr std::size_t DeepStack = std::size_t{8} << 20U;
#endif

/// A node that notes its hooks in a trace and does what it is told in them. It handles all of them.
class Node : public Vis {
public:
    using Action = std::function<void(Node&, DrawContext const&)>;

    Node(Trace& p_trace, std::string p_name, int p_flags = 0) : Vis(VisFlagSelfManaged | p_flags), trace(p_trace) {
        SetName(std::move(p_name));
        for (auto const callback : {HandledSetup, HandledDraw, HandledHighlight, HandledTeardown, HandledSetupOverlay,
                 HandledDrawOverlay, HandledHighlightOverlay, HandledTeardownOverlay})
            RegisterCB(callback);
        OptimalPaths().SetAll();
        SetActive(true);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return {}; }
    using Vis::RegisterCB;
    using Vis::UnregisterCB;

    /// Unregisters setup and teardown.
    Node& DrawOnly() {
        for (auto const callback : {HandledSetup, HandledTeardown})
            UnregisterCB(callback);
        return *this;
    }

    Trace& trace;
    std::map<std::string, Action> actions; ///< by hook
    DrawResult result = DrawResultDescend;
    double shift = 1; ///< by how much setup moves what is below

private:
    void Note(char const* p_hook, DrawContext const& p_context) {
        trace.push_back(p_hook + (" " + Name()));
        if (auto const it = actions.find(p_hook); it != actions.end())
            it->second(*this, p_context);
    }
    void Move(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) const {
        p_context.ModelView().Set(p_context.ModelView().Top() * Types::Matrix4::Translation({shift, 0, 0}));
        p_agl->LoadMatrix(p_context.ModelView().Top());
        p_agl->PushAttrib(AGL_ENABLE_BIT);
    }
    void DoSetup(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override {
        Move(p_context, p_agl);
        Note("setup", p_context);
    }
    DrawResult DoDraw(DrawContext const& p_context) override {
        Note("draw", p_context);
        return result;
    }
    DrawResult DoHighlight(DrawContext const& p_context) override {
        Note("highlight", p_context);
        return result;
    }
    void DoTeardown(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override {
        Note("teardown", p_context);
        p_agl->PopAttrib();
    }
    void DoSetupOverlay(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override {
        Move(p_context, p_agl);
        Note("setup overlay", p_context);
    }
    DrawResult DoDrawOverlay(DrawContext const& p_context) override {
        Note("draw overlay", p_context);
        return result;
    }
    DrawResult DoHighlightOverlay(DrawContext const& p_context) override {
        Note("highlight overlay", p_context);
        return result;
    }
    void DoTeardownOverlay(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override {
        Note("teardown overlay", p_context);
        p_agl->PopAttrib();
    }
};

class PaneNode : public Node, public PaneMarker {
public:
    using Node::Node;
};

/// Sets what else only an update would.
struct Hooks : VisHooks {
    static void Append(Vis& p_parent, Core::Ptr<Vis> const& p_child) {
        p_parent.Add(p_child);
        SetHasActiveChildren(p_parent, true);
    }
    static void SetBox(Vis& p_vis, Box const& p_box) { SetBoundingBox(p_vis, p_box); }
};

/// A root with two children, the first of which has a child:  root ( one ( leaf ) two )
struct RenderLoopTest : ::testing::Test {
    template <class T = Node>
    Core::Ptr<T> Make(std::string p_name, Vis* p_parent = nullptr, int p_flags = 0) {
        auto node = Core::MakeNode<T>(trace, std::move(p_name), p_flags);
        if (p_parent)
            Hooks::Append(*p_parent, node);
        return node;
    }
    Trace Run(RenderLoop& p_loop) {
        trace.clear();
        p_loop(root, context);
        return trace;
    }
    /// Nothing that a run did is left over.
    void ExpectRestored() {
        EXPECT_EQ(fixture.agl.Depths(), Ogl::StackDepths());
        EXPECT_EQ(context.ModelView().Size(), 1U);
        EXPECT_TRUE(context.ModelView().Top().IsIdentity());
        fixture.agl.Translate(1, 0, 0);
        EXPECT_FALSE(fixture.agl.Get(AGL_MODELVIEW_MATRIX).IsIdentity()) << "the matrix mode is model-view";
        fixture.agl.LoadIdentity();
    }

    DrawFixture fixture;
    DrawContext context = fixture.MakeContext();
    Trace trace;
    Core::Ptr<Node> root = Make("root");
    Core::Ptr<Node> one = Make("one", root.Get());
    Core::Ptr<Node> leaf = Make("leaf", one.Get());
    Core::Ptr<Node> two = Make("two", root.Get());
    RenderLoop loop{LayerBase, Mode::Draw};
};

TEST_F(RenderLoopTest, eachPassCallsItsHooksAroundTheChildren) {
    struct Case {
        Layer layer;
        Mode mode;
        std::string suffix;
        std::string draw;
    };
    for (Case const& c : {Case{LayerBase, Mode::Draw, "", "draw"}, Case{LayerBase, Mode::Highlight, "", "highlight"},
             Case{LayerOverlay, Mode::Draw, " overlay", "draw overlay"},
             Case{LayerOverlay, Mode::Highlight, " overlay", "highlight overlay"}}) {
        RenderLoop pass(c.layer, c.mode);
        auto const setup = "setup" + c.suffix + " ", draw = c.draw + " ", teardown = "teardown" + c.suffix + " ";
        for (int run = 0; run < 2; ++run) {
            EXPECT_THAT(Run(pass),
                ElementsAre(setup + "root", draw + "root", setup + "one", draw + "one", setup + "leaf", draw + "leaf",
                    teardown + "leaf", teardown + "one", setup + "two", draw + "two", teardown + "two",
                    teardown + "root"));
            EXPECT_EQ(pass.VisitedCount(), 4U) << "each run counts from 0";
            EXPECT_EQ(pass.DrawnCount(), 4U);
        }
        ExpectRestored();
    }
}

TEST_F(RenderLoopTest, valuesThatSetupWritesHoldForTheSubtreeAlone) {
    std::map<std::string, double> places;
    for (auto const& node : {root, one, leaf, two}) {
        node->actions["draw"] = [&](Node& p_node, DrawContext const& p_context) {
            places[p_node.Name()] = p_context.ModelView().Top().TranslationPart().x;
            EXPECT_EQ(fixture.agl.Get(AGL_MODELVIEW_MATRIX), p_context.ModelView().Top());
        };
    }
    Run(loop);
    EXPECT_EQ(places, (std::map<std::string, double>{{"root", 1}, {"one", 2}, {"leaf", 3}, {"two", 2}}));
}

TEST_F(RenderLoopTest, onlyBranchesWithWorkForThePassAreEntered) {
    one->OptimalPaths().Set(CallbackDraw, false);
    Trace visits;
    RenderLoop visiting(
        LayerBase, Mode::Draw, [&](Core::Ptr<Vis> const& p_node) { visits.push_back("pre " + p_node->Name()); },
        [&](Core::Ptr<Vis> const& p_node) { visits.push_back("post " + p_node->Name()); });
    EXPECT_THAT(Run(visiting),
        ElementsAre("setup root", "draw root", "setup two", "draw two", "teardown two", "teardown root"));
    EXPECT_THAT(visits, ElementsAre("pre root", "pre two", "post two", "post root"));
    EXPECT_EQ(visiting.VisitedCount(), 3U);
    EXPECT_EQ(visiting.DrawnCount(), 2U);

    one->OptimalPaths().Set(CallbackDraw);
    for (auto const& node : {root, one, leaf, two})
        node->UnregisterCB(HandledDraw);
    two->RegisterCB(HandledDraw);
    two->DrawOnly();
    Run(visiting);
    EXPECT_THAT(trace,
        ElementsAre(
            "setup root", "setup one", "setup leaf", "teardown leaf", "teardown one", "draw two", "teardown root"));
    EXPECT_EQ(visiting.DrawnCount(), 1U);
}

TEST_F(RenderLoopTest, aNodeMayLeaveItsChildrenOut) {
    one->result = DrawResultSkipChildren;
    EXPECT_THAT(Run(loop),
        ElementsAre("setup root", "draw root", "setup one", "draw one", "teardown one", "setup two", "draw two",
            "teardown two", "teardown root"));
    leaf->SetInvalid();
    one->result = DrawResultDescend;
    EXPECT_THAT(Run(loop), ::testing::Not(::testing::Contains("draw leaf")));
}

TEST_F(RenderLoopTest, disabledRootDrawsNothingButErrorsAreAskedFor) {
    root->SetDisabled(true);
    qordebug::CaptureScope log(Utility::GetLogger());
    fixture.agl.PopMatrix();
    EXPECT_THAT(Run(loop), IsEmpty());
    loop(Core::Ptr<Vis>(), context);
    EXPECT_EQ(loop.VisitedCount(), 0U);
    EXPECT_EQ(fixture.agl.CheckError(), "");
    EXPECT_FALSE(log.empty());
}

TEST_F(RenderLoopTest, restrictionToOnePaneStaysInForce) {
    auto const left = Make<PaneNode>("left", root.Get());
    auto right = Make<PaneNode>("right", root.Get());
    for (auto const& node : {root, one, leaf, two})
        node->DrawOnly();
    left->DrawOnly();
    right->DrawOnly();
    Core::WeakPtr<Vis> const rightHandle = right;
    loop(root, context, Core::WeakPtr<Vis>(left));
    EXPECT_THAT(trace, ElementsAre("draw root", "draw one", "draw leaf", "draw two", "draw left"));
    EXPECT_EQ(loop.VisitedCount(), 6U);
    EXPECT_THAT(Run(loop), ::testing::Contains("draw left"));
    trace.clear();
    loop(root, context, rightHandle);
    EXPECT_EQ(trace.back(), "draw right");
    EXPECT_EQ(trace.size(), 5U);
    root->Remove(right);
    right.Reset();
    trace.clear();
    loop(root, context, rightHandle);
    EXPECT_EQ(trace.size(), 4U) << "a pane that is gone leaves the restriction as it was";
}

TEST_F(RenderLoopTest, contextRootsGetADispatcherAndAContextOfTheirOwn) {
    auto const inner = boost::make_shared<RecordingDispatcher>();
    fixture.dispatcher.next = inner;
    auto const pane = Make("pane", root.Get(), Vis::VisFlagContextRoot);
    auto const below = Make("below", pane.Get());
    DrawContext const* contextBelow = nullptr;
    below->actions["draw"] = [&](Node&, DrawContext const& p_context) {
        contextBelow = &p_context;
        throw std::runtime_error("no way");
    };
    Run(loop);
    ASSERT_EQ(fixture.dispatcher.asked.size(), 1U);
    EXPECT_EQ(fixture.dispatcher.asked.front().Peek(), pane.Get());
    EXPECT_NE(contextBelow, &context);
    EXPECT_THAT(fixture.dispatcher.exceptions, IsEmpty());
    ASSERT_EQ(inner->exceptions.size(), 1U);
    EXPECT_EQ(inner.use_count(), 2) << "the context of the pane is gone";
    ExpectRestored();
}

TEST_F(RenderLoopTest, filterLeavesOutNodesOrWholeBranches) {
    bool isWhole = false;
    context.NodeFilter().Set([&](Core::Ptr<Vis> const& p_node, bool& p_whole) {
        EXPECT_FALSE(p_whole);
        p_whole = isWhole;
        return p_node->Name() == "one" || p_node->Name() == "two";
    });
    EXPECT_THAT(Run(loop),
        ElementsAre("setup root", "draw root", "setup one", "setup leaf", "draw leaf", "teardown leaf", "teardown one",
            "setup two", "teardown two", "teardown root"));
    isWhole = true;
    EXPECT_THAT(Run(loop), ElementsAre("setup root", "draw root", "setup two", "teardown two", "teardown root"))
        << "without active children there is no branch to leave out";
    EXPECT_EQ(loop.DrawnCount(), 1U);
}

TEST_F(RenderLoopTest, aFailingHookIsReportedAndLeavesNothingBehind) {
    struct Case {
        std::string hook;
        std::string stage;
        Trace ofBranch; ///< what still runs of "one" and what is below it
    };
    for (Case const& c : {Case{"setup", "RenderLoop-Setup/Teardown", {"setup one"}},
             Case{"draw", "RenderLoop-Draw", {"setup one", "draw one", "teardown one"}},
             Case{"teardown", "RenderLoop-Setup/Teardown",
                 {"setup one", "draw one", "setup leaf", "draw leaf", "teardown leaf", "teardown one"}}}) {
        for (bool const isStandard : {true, false}) {
            one->actions.clear();
            one->actions[c.hook] = [&](Node&, DrawContext const&) {
                fixture.agl.PushMatrix();
                fixture.agl.PushScissor();
                fixture.agl.MatrixMode(AGL_PROJECTION);
                if (isStandard)
                    throw std::runtime_error("broken");
                throw 42;
            };
            one->Touch();
            ASSERT_TRUE(one->IsValid());
            fixture.dispatcher.exceptions.clear();
            Trace visits;
            RenderLoop visiting(
                LayerBase, Mode::Draw, {}, [&](Core::Ptr<Vis> const& p_node) { visits.push_back(p_node->Name()); });
            Trace expected{"setup root", "draw root"};
            expected.insert(expected.end(), c.ofBranch.begin(), c.ofBranch.end());
            for (char const* const step : {"setup two", "draw two", "teardown two", "teardown root"})
                expected.emplace_back(step);
            EXPECT_EQ(Run(visiting), expected) << c.hook;
            EXPECT_THAT(visits, ::testing::Contains("one"));
            EXPECT_FALSE(one->IsValid());
            EXPECT_TRUE(root->IsValid() && two->IsValid());
            ASSERT_EQ(fixture.dispatcher.exceptions.size(), 1U);
            std::string const& report = fixture.dispatcher.exceptions.front();
            EXPECT_THAT(report, HasSubstr("\"one\""));
            EXPECT_THAT(report, HasSubstr(" caught exception in " + c.stage));
            EXPECT_THAT(report, HasSubstr(isStandard ? "broken" : "no std::exception"));
            EXPECT_THAT(fixture.dispatcher.locations.back(),
                HasSubstr(c.hook == "draw" ? "RenderLoop::DrawThis(" : "RenderLoop::Draw("));
            ExpectRestored();
        }
    }
}

TEST_F(RenderLoopTest, delegatesThatFailStopNothing) {
    for (bool const isPre : {true, false}) {
        auto const failing = [](Core::Ptr<Vis> const& p_node) {
            if (p_node->Name() == "leaf")
                throw std::runtime_error("host");
        };
        RenderLoop visiting(LayerBase, Mode::Draw, isPre ? failing : RenderLoop::VisitDelegate(),
            isPre ? RenderLoop::VisitDelegate() : failing);
        leaf->Touch();
        EXPECT_THAT(Run(visiting), ::testing::Contains("draw two"));
        EXPECT_FALSE(leaf->IsValid());
        ExpectRestored();
    }
    EXPECT_EQ(fixture.dispatcher.exceptions.size(), 2U);
}

TEST_F(RenderLoopTest, aModeThatCannotBeDrawnIsReportedAndThrows) {
    qordebug::CaptureScope log(Utility::GetLogger());
    RenderLoop wrong(LayerBase, Mode::DrawInPlace);
    EXPECT_EQ(log.texts(qordebug::severity::sentry).size(), 2U);
    EXPECT_THAT(
        [&] { wrong(root, context); }, ::testing::ThrowsMessage<std::out_of_range>("invalid bitset<N> position"));
    EXPECT_THAT(trace, IsEmpty());
}

TEST_F(RenderLoopTest, aHookMayRemoveItsNodeOrAllOfThem) {
    Trace visits;
    RenderLoop visiting(
        LayerBase, Mode::Draw, [&](Core::Ptr<Vis> const& p_node) { visits.push_back(p_node->Name()); },
        [&](Core::Ptr<Vis> const& p_node) { visits.push_back(p_node->Name()); });
    for (char const* const hook : {"setup", "draw", "teardown"}) {
        for (bool const isAll : {false, true}) {
            for (RenderLoop* const pass : {&loop, &visiting}) {
                auto const parent = Make("parent", root.Get());
                Make("victim", parent.Get())->actions[hook] = [&](Node& p_node, DrawContext const&) {
                    if (isAll)
                        parent->Clear();
                    else
                        parent->Remove(p_node);
                };
                Make("next", parent.Get());
                Trace const steps = Run(*pass);
                EXPECT_THAT(steps, ::testing::Contains("teardown victim"));
                EXPECT_EQ(std::count(steps.begin(), steps.end(), "draw next"), isAll ? 0 : 1);
                EXPECT_THAT(fixture.dispatcher.exceptions, IsEmpty());
                ExpectRestored();
                root->Remove(parent);
            }
        }
    }
}

TEST_F(RenderLoopTest, boundsAreOutlinedInTheBaseDrawPass) {
    Hooks::SetBox(*one, Box({0, 0, 0}, {2, 4, 0}));
    Hooks::SetBox(*two, Box({1, 1, 1}, {1, 1, 1}));
    struct Case {
        Layer layer;
        Mode mode;
        bool isShown;
        std::size_t draws;
    };
    for (Case const& c : {Case{LayerBase, Mode::Draw, true, 2}, Case{LayerBase, Mode::Draw, false, 0},
             Case{LayerOverlay, Mode::Draw, true, 0}, Case{LayerBase, Mode::Highlight, true, 0}}) {
        context.SetShowBounds(c.isShown);
        fixture.agl.ResetStatistics();
        RenderLoop pass(c.layer, c.mode);
        Run(pass);
        EXPECT_EQ(fixture.agl.GetStatistics().draws, c.draws);
        ExpectRestored();
    }
}

/// A chain of nodes on a thread with a stack of its own.
struct Chain {
    std::size_t levels;
    std::string error;
    std::uint32_t visited = 0;
    bool isRestored = false;

    static void* Draw(void* p_chain) {
        auto& chain = *static_cast<Chain*>(p_chain);
        DrawFixture fixture(Ogl::RecorderBackend::Keep::Counters);
        DrawContext context = fixture.MakeContext();
        Trace trace;
        auto root = Core::MakeNode<Node>(trace, "leaf");
        for (std::size_t level = 1; level < chain.levels; ++level) {
            auto const parent = Core::MakeNode<Node>(trace, "node");
            Hooks::Append(*parent, root);
            root = parent;
        }
        RenderLoop loop(LayerBase, Mode::Draw);
        try {
            loop(root, context);
        } catch (Core::TreeTooDeepExcept const& error) {
            chain.error = error.what();
        }
        chain.visited = loop.VisitedCount();
        chain.isRestored = context.ModelView().Size() == 1 && fixture.agl.Depths() == Ogl::StackDepths() &&
            fixture.dispatcher.exceptions.empty() && root->IsValid();
        return nullptr;
    }
    void DrawOnStack(std::size_t p_bytes) {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, p_bytes);
        pthread_t thread{};
        ASSERT_EQ(pthread_create(&thread, &attributes, &Draw, this), 0);
        pthread_join(thread, nullptr);
        pthread_attr_destroy(&attributes);
    }
};

TEST(RenderLoopDepthTest, tenThousandLevelsAreDrawnOnTheDefaultStack) {
    Chain chain{10'000, {}};
    chain.DrawOnStack(DeepStack);
    EXPECT_EQ(chain.error, "");
    EXPECT_EQ(chain.visited, 10'000U);
    EXPECT_TRUE(chain.isRestored);
}

TEST(RenderLoopDepthTest, aTreeTooDeepIsOneError) {
    Chain chain{20'000, {}};
    chain.DrawOnStack(std::size_t{1} << 20U);
    EXPECT_THAT(chain.error, HasSubstr("too deep for drawing"));
    EXPECT_LT(chain.visited, 20'000U);
    EXPECT_TRUE(chain.isRestored);
}

} // namespace
} // namespace Qor::Chart::Render
