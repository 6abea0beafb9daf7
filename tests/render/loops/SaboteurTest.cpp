#include "render/loops/RenderLoop.h"
#include "render/loops/UpdateNodePathLoop.h"
#include "tests/render/support/Script.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;
using namespace Ogl::Tokens;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Trace = std::vector<std::pair<int, Hook>>;

constexpr char const* Stages[HookCount] = {"UpdateLoop-DoUpdateModel", "UpdateLoop-DoUpdate",
    "UpdateLoop-DoRefreshUpdateContext", "UpdateLoop-DoBoundingBox", "UpdateLoop-DoPostUpdate", "UpdateLoop-Generator",
    "RenderLoop-Setup/Teardown", "RenderLoop-Draw", "RenderLoop-Draw", "RenderLoop-Setup/Teardown",
    "RenderLoop-Setup/Teardown", "RenderLoop-Draw", "RenderLoop-Draw", "RenderLoop-Setup/Teardown"};

struct Pass {
    Layer layer;
    DrawContext::DrawMode mode;
    Hook setup, draw, teardown;
};
constexpr Pass Passes[] = {
    {LayerBase, DrawContext::DrawMode::Draw, HookSetup, HookDraw, HookTeardown},
    {LayerBase, DrawContext::DrawMode::Highlight, HookSetup, HookHighlight, HookTeardown},
    {LayerOverlay, DrawContext::DrawMode::Draw, HookSetupOverlay, HookDrawOverlay, HookTeardownOverlay},
    {LayerOverlay, DrawContext::DrawMode::Highlight, HookSetupOverlay, HookHighlightOverlay, HookTeardownOverlay},
};

/// Which hook of which node fails; the first time that it is called counts.
struct Sabotage {
    int node = -1;
    Hook hook = HookCount;
    bool isFirstModelCall = false;

    bool Strikes(int p_node, Hook p_hook) const { return p_node == node && p_hook == hook; }
};

std::array<std::size_t, 16> SizesOf(DrawContext const& p_context) {
    DrawContext const& c = p_context;
    return {c.Viewport().Size(), c.ModelView().Size(), c.Camera().Size(), c.Projection().Size(), c.Schema().Size(),
        c.NumberFormat().Size(), c.ProjectionMode().Size(), c.LightCount().Size(), c.StencilBits().Size(),
        c.ClipPlanes().Size(), c.Textures().Size(), c.Lights().Size(), c.NodeFilter().Size(), c.FirstTexture().Size(),
        c.SecondTexture().Size(), c.Shader().Size()};
}

class Scene {
public:
    explicit Scene(unsigned p_seed) {
        std::minstd_rand random(p_seed);
        for (int number = 0; number < 9; ++number) {
            Script script;
            script.low = script.high = number;
            script.flags = random() % 4 == 0 ? Vis::VisFlagContextRoot : 0;
            models.push_back(Core::MakeNode<ScriptModel>(number, script));
            if (number == 0)
                continue;
            int const parent = static_cast<int>(random() % static_cast<unsigned>(number));
            models[parent]->Add(models[number]);
            children[parent].push_back(number);
        }
        stage.world.onHook = [this](ScriptModel const& p_model, Hook p_hook) {
            bool const isSecond = !(p_hook == HookUpdateModel && _modelCalls[p_model.number]++ % 2 == 0);
            if (p_hook < HookFactory) {
                EXPECT_EQ(stage.agl.Depths().attrib, 1U) << "what a failed hook left reaches another one";
                EXPECT_EQ(stage.agl.Depths().primitive, 0U);
            }
            if (_litter && _sabotage.Strikes(p_model.number, p_hook) && isSecond != _sabotage.isFirstModelCall)
                Litter();
        };
        root = stage.generator(models[0]);
    }

    void Arm(Sabotage const& p_sabotage, Answer p_answer, bool p_litter) {
        _sabotage = p_sabotage;
        _litter = p_litter;
        Script& script = models[p_sabotage.node]->script;
        (p_sabotage.isFirstModelCall ? script.firstModel : script.answers[p_sabotage.hook]) = p_answer;
    }
    void Disarm() {
        models[_sabotage.node]->script.answers = {};
        models[_sabotage.node]->script.firstModel = Answer::Ok;
        _sabotage = {};
    }

    /// One frame: update, paths, four passes. Checks that it leaves nothing behind.
    Trace Frame() {
        stage.world.trace.clear();
        stage.dispatcher.exceptions.clear();
        qordebug::CaptureScope const log(Utility::GetLogger());
        Ogl::StackDepths const depths = stage.agl.Depths();
        stage.agl.ResetStatistics();
        stage.Update(root);
        EXPECT_EQ(stage.agl.Depths(), depths) << "after the update";
        UpdateNodePathLoop()(root);
        for (Pass const& pass : Passes) {
            DrawContext context = stage.MakeContext(pass.mode);
            context.ModelView().Set(Types::Matrix4::Translation({5, 0, 0}));
            stage.agl.LoadMatrix(context.ModelView().Top());
            auto const sizes = SizesOf(context);
            RenderLoop loop(pass.layer, pass.mode);
            loop(root, context);
            EXPECT_EQ(SizesOf(context), sizes);
            EXPECT_EQ(context.LightCount().Top(), 0U);
            EXPECT_EQ(context.ModelView().Top(), Types::Matrix4::Translation({5, 0, 0}));
            EXPECT_EQ(stage.agl.Get(AGL_MODELVIEW_MATRIX), context.ModelView().Top());
            EXPECT_EQ(stage.agl.Depths(), depths);
        }
        Ogl::Statistics const& statistics = stage.agl.GetStatistics();
        EXPECT_EQ(statistics.pushes, statistics.pops);
        EXPECT_THAT(stage.world.complaints, IsEmpty());
        EXPECT_THAT(log.texts(qordebug::severity::error), IsEmpty());
        EXPECT_THAT(log.texts(qordebug::severity::ensure), IsEmpty());
        return stage.world.trace;
    }

    std::vector<Core::Ptr<ScriptModel>> models;
    std::array<std::vector<int>, 9> children; ///< the nodes below each as numbers
    Stage stage;
    Core::Ptr<Vis> root;

private:
    /// What a hook that stops halfway leaves behind.
    void Litter() {
        Utility::Scoped<Ogl::Agl> agl(stage.handle);
        agl->PushAttrib(AGL_ALL_ATTRIB_BITS);
        agl->PushScissor();
        agl->PushLayerId(7);
        agl->PushMatrix();
        agl->MatrixMode(AGL_PROJECTION);
        agl->PushMatrix();
        agl->Begin(AGL_LINES);
        agl->Vertex(1, 2);
    }

    Sabotage _sabotage;
    bool _litter = false;
    std::map<int, unsigned> _modelCalls;
};

/// What a frame must call, as plain recursion.
class Expectation {
public:
    Expectation(Scene const& p_scene, Sabotage const& p_sabotage) : _scene(p_scene), _sabotage(p_sabotage) {}

    Trace Frame(bool p_isUpdated) {
        _trace.clear();
        if (p_isUpdated)
            Update(0);
        for (Pass const& pass : Passes)
            Draw(0, pass);
        return _trace;
    }
    unsigned reports = 0;

private:
    void Update(int p_node) {
        if (!_sabotage.isFirstModelCall || p_node != _sabotage.node)
            _trace.emplace_back(p_node, HookUpdateModel);
        if (Fails(p_node, HookUpdateModel) || Fails(p_node, HookUpdate)) {
            _neverUpdated.insert(p_node);
            return;
        }
        Fails(p_node, HookRefresh);
        ForChildren(p_node, [this](int p_child) { Update(p_child); });
        Fails(p_node, HookBox);
        Fails(p_node, HookPost);
    }
    void Draw(int p_node, Pass const& p_pass) {
        // only a child is left out for being invalid; what is below the root is pruned while the root was never updated
        if ((p_node != 0 && _invalid.count(p_node) > 0) || _neverUpdated.count(p_node) > 0)
            return;
        if (Fails(p_node, p_pass.setup))
            return;
        if (!Fails(p_node, p_pass.draw))
            ForChildren(p_node, [&](int p_child) { Draw(p_child, p_pass); });
        Fails(p_node, p_pass.teardown);
    }
    bool Fails(int p_node, Hook p_hook) {
        _trace.emplace_back(p_node, p_hook);
        if (!_sabotage.Strikes(p_node, p_hook))
            return false;
        _invalid.insert(p_node);
        ++reports;
        return true;
    }
    template <class Do>
    void ForChildren(int p_node, Do const& p_do) const {
        auto const& children = _scene.children[p_node];
        std::for_each(children.begin(), children.end(), p_do);
    }

    Scene const& _scene;
    Sabotage _sabotage;
    Trace _trace;
    std::set<int> _invalid, _neverUpdated;
};

ScriptVis* VisOf(Scene const& p_scene, int p_node) {
    return p_scene.models[p_node]->uses.empty() ? nullptr : p_scene.models[p_node]->uses.front();
}

void PlayOut(unsigned p_seed, Sabotage const& p_sabotage, Answer p_answer, bool p_litter) {
    SCOPED_TRACE(::testing::Message() << "tree " << p_seed << ", node " << p_sabotage.node << ", hook "
                                      << p_sabotage.hook << ", first call " << p_sabotage.isFirstModelCall
                                      << ", answer " << static_cast<int>(p_answer) << ", litter " << p_litter);
    Scene undisturbed(p_seed);
    Expectation calm(undisturbed, {});
    ASSERT_EQ(undisturbed.Frame(), calm.Frame(true));
    Trace const drawn = undisturbed.Frame();
    ASSERT_EQ(drawn, calm.Frame(false));

    Scene scene(p_seed);
    Expectation expected(scene, p_sabotage);
    scene.Arm(p_sabotage, p_answer, p_litter);
    EXPECT_EQ(scene.Frame(), expected.Frame(true));
    auto const& reports = scene.stage.dispatcher.exceptions;
    ASSERT_EQ(reports.size(), expected.reports);
    EXPECT_THAT(reports[0], HasSubstr("\"n" + std::to_string(p_sabotage.node) + "\""));
    EXPECT_THAT(reports[0] + ":", HasSubstr(std::string(" caught exception in ") + Stages[p_sabotage.hook] + ":"));
    for (int node = 0; node < static_cast<int>(scene.models.size()); ++node)
        EXPECT_EQ(VisOf(scene, node)->IsValid(), node != p_sabotage.node) << node;

    if (p_sabotage.node != 0) { // an invalid root is still drawn, and fails again
        EXPECT_EQ(scene.Frame(), expected.Frame(false)) << "without a touch nothing is tried again";
        EXPECT_THAT(reports, IsEmpty());
    }

    scene.Disarm();
    if (p_litter)
        VisOf(scene, p_sabotage.node)->Touch();
    else
        scene.models[p_sabotage.node]->Changed();
    Trace const repaired = scene.Frame();
    EXPECT_THAT(reports, IsEmpty());
    EXPECT_TRUE(VisOf(scene, p_sabotage.node)->IsValid());
    EXPECT_THAT(repaired, ::testing::Contains(std::pair(p_sabotage.node, HookUpdate)));
    ASSERT_GE(repaired.size(), drawn.size());
    EXPECT_EQ(Trace(repaired.end() - static_cast<std::ptrdiff_t>(drawn.size()), repaired.end()), drawn);
}

TEST(SaboteurTest, everyHookOfEveryNodeFailsInTurnAndTheFrameGoesOn) {
    for (unsigned seed = 1; seed <= 3 && !::testing::Test::HasFailure(); ++seed) {
        for (int node = 0; node < 9; ++node) {
            for (int hook = HookUpdateModel; hook < HookCount; ++hook) {
                if (hook == HookFactory)
                    continue;
                for (Answer const answer : {Answer::Throw, Answer::ThrowInt}) {
                    for (bool const litter : {false, true})
                        PlayOut(seed, {node, static_cast<Hook>(hook)}, answer, litter);
                    if (hook == HookUpdateModel)
                        PlayOut(seed, {node, HookUpdateModel, true}, answer, true);
                }
            }
        }
    }
}

TEST(SaboteurTest, aFactoryThatFailsCostsItsSubtreeAloneAndIsTriedAgain) {
    for (int variant = 0; variant < 9 * 4; ++variant) {
        int const parent = variant / 4;
        int const failing = 9 + variant / 2 % 2;
        SCOPED_TRACE(::testing::Message() << "parent " << parent << ", failing " << failing);
        Scene scene(5);
        for (int const number : {9, 10, 11})
            scene.models.push_back(Core::MakeNode<ScriptModel>(number));
        scene.Frame();
        scene.Arm({failing, HookFactory}, variant % 2 == 0 ? Answer::Throw : Answer::ThrowInt, true);
        scene.models[9]->Add(scene.models[10]);
        scene.models[parent]->Add(scene.models[9]);
        scene.models[parent]->Add(scene.models[11]);
        scene.Frame();

        auto const& reports = scene.stage.dispatcher.exceptions;
        ASSERT_EQ(reports.size(), 1U);
        EXPECT_THAT(reports[0], HasSubstr(" caught exception in UpdateLoop-Generator"));
        EXPECT_EQ(VisOf(scene, 9), nullptr);
        ASSERT_NE(VisOf(scene, 11), nullptr);
        EXPECT_TRUE(VisOf(scene, 11)->IsActive());
        EXPECT_TRUE(VisOf(scene, parent)->IsActive() || parent == 0);

        scene.Frame();
        EXPECT_THAT(reports, IsEmpty()) << "nothing changed";
        scene.Disarm();
        scene.models[failing]->Changed();
        Trace const trace = scene.Frame();
        EXPECT_THAT(reports, IsEmpty());
        EXPECT_THAT(trace, ::testing::IsSupersetOf({std::pair(9, HookDraw), std::pair(10, HookDraw)}));
    }
}

} // namespace
} // namespace Qor::Chart::Render
