#include "host/FrameDriver.h"

#include "framework/model/Group.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/qordebug/highrestimer.h"
#include "host/FrameRate.h"
#include "host/HostError.h"
#include "host/Scene.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace Qor::Chart::Host {
namespace {

using Render::DrawContext;
using testing::HasSubstr;

Types::Viewport<0> const Window(0, 0, 200, 100);

/// A model node of the program's own, and the visual node that writes down in which passes it is drawn, and what the
/// context says of the last frame.
class Probe : public Model::ModelNode {};

class ProbeVis : public Render::Vis {
public:
    ProbeVis(Core::WeakPtr<Model::ModelNode> p_model, std::string& p_passes)
        : _model(std::move(p_model)), _passes(p_passes) {
        for (auto const hook : {Render::HandledDraw, Render::HandledHighlight, Render::HandledDrawOverlay,
                 Render::HandledHighlightOverlay, Render::HandledBoundingBox})
            RegisterCB(hook);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model; }
    static inline std::optional<Render::FrameStatistics> seen;

private:
    Types::BoundingBox_Base<double> DoBoundingBox(Types::BoundingBox_Base<double> const&) override {
        return {{-1, -1, -1}, {1, 1, 1}};
    }
    Render::DrawResult Note(DrawContext const& p_context, char const* p_pass) {
        _passes += p_pass + std::to_string(static_cast<int>(p_context.Mode()));
        seen = p_context.LastFrame() ? std::optional(*p_context.LastFrame()) : std::nullopt;
        return {};
    }
    Render::DrawResult DoDraw(DrawContext const& p_context) override { return Note(p_context, " base "); }
    Render::DrawResult DoHighlight(DrawContext const& p_context) override { return Note(p_context, " base "); }
    Render::DrawResult DoDrawOverlay(DrawContext const& p_context) override { return Note(p_context, " overlay "); }
    Render::DrawResult DoHighlightOverlay(DrawContext const& p_context) override {
        return Note(p_context, " overlay ");
    }

    Core::WeakPtr<Model::ModelNode> _model;
    std::string& _passes;
};

struct FrameTest : testing::Test {
    FrameTest() {
        scene.Factories().Register<Probe>([this](Core::Ptr<Model::ModelNode> const& p_model) {
            return Core::Ptr<Render::Vis>(Core::MakeNode<ProbeVis>(Core::WeakPtr<Model::ModelNode>(p_model), passes));
        });
    }

    void Frame() { driver.Frame(camera, Window); }

    std::string passes;
    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    Camera camera;
};

TEST_F(FrameTest, drawsTheFourPassesInOrderEachInItsMode) {
    scene.Add(Core::MakeNode<Probe>());
    Frame();
    EXPECT_EQ(passes, " base 0 base 2 overlay 0 overlay 2");
    EXPECT_EQ(driver.Statistics().Drawn(), 4U);
}

TEST_F(FrameTest, eachViewHandsTheFiguresOfItsOwnLastFrameToTheNodes) {
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    auto const pane = Core::MakeNode<Model::Pane>();
    pane->Add(Core::MakeNode<Probe>());
    scene.Add(pane);
    FrameDriver drivers[]{FrameDriver(scene), FrameDriver(scene)};
    std::optional<Render::FrameStatistics> last[2];
    for (int frame = 0; frame < 6; ++frame) {
        int const view = frame == 3 ? 1 : frame % 2;
        pane->Add(Core::MakeNode<Model::SimpleObject>(symbol));
        drivers[view].Frame(camera, Window);
        ASSERT_EQ(ProbeVis::seen.has_value(), last[view].has_value()) << frame;
        if (last[view]) {
            Render::FrameStatistics const& seen = *ProbeVis::seen;
            EXPECT_EQ(seen.frame, last[view]->frame);
            EXPECT_EQ(seen.Drawn(), last[view]->Drawn());
            EXPECT_EQ(seen.graphics, last[view]->graphics);
            EXPECT_EQ(seen.framesPerSecond, drivers[view].Statistics().framesPerSecond) << "as it is now";
        }
        last[view] = drivers[view].Statistics();
    }
}

TEST_F(FrameTest, aModelThatCannotBeShownIsOneSentenceAndChangesNothing) {
    auto const before = scene.Model();
    auto const outer = Core::MakeNode<Model::Group>();
    auto const inner = Core::MakeNode<Model::Group>();
    outer->SetName("snake");
    outer->Add(inner);
    inner->Add(outer);
    class Stranger : public Model::ModelNode {};
    for (auto const& [root, part] : {std::pair(Core::Ptr<Model::ModelNode>(), "needs a model node"),
             {Core::MakeNode<Stranger>(), "no factory"}, {outer, "\"snake\" contains itself"}}) {
        EXPECT_THAT([&] { scene.SetModel(root); }, testing::ThrowsMessage<HostError>(HasSubstr(part)));
        EXPECT_EQ(scene.Model(), before);
    }
    inner->Remove(*outer);
    scene.SetModel(outer);
    Frame();
    EXPECT_EQ(driver.Statistics().visited, 2U);
}

TEST(FrameRateTest, framesAreCountedOverTheLastSecond) {
    qordebug::manualclock clock;
    FrameRate rate;
    auto const frames = [&](int p_count, std::uint64_t p_every, std::uint64_t p_takes = 0) {
        double last = 0;
        for (int i = 0; i < p_count; ++i) {
            last = rate.Begin();
            clock.advance(p_takes);
            rate.End();
            clock.advance(p_every - p_takes);
        }
        return last;
    };
    EXPECT_EQ(frames(1, 10), 0) << "the first";
    EXPECT_DOUBLE_EQ(frames(1, 10), 100);
    EXPECT_DOUBLE_EQ(frames(50, 20), 51) << "the second has two of 10 ms";
    EXPECT_DOUBLE_EQ(frames(200, 20), 50);
    EXPECT_DOUBLE_EQ(frames(1000, 1), 1000);
    EXPECT_DOUBLE_EQ(frames(5, 4000, 3900), 0.25) << "slow frames are no pause";
    clock.advance(1100);
    EXPECT_EQ(frames(1, 10), 0) << "after a pause";
    EXPECT_DOUBLE_EQ(frames(3, 10), 100);
}

} // namespace
} // namespace Qor::Chart::Host
