#include "host/FrameDriver.h"
#include "host/FrameRate.h"
#include "host/Offscreen.h"
#include "host/Scene.h"

#include "framework/model/Bitmap.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Statistics.h"
#include "framework/ogl/Context.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/qordebug/highrestimer.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <optional>

namespace Qor::Chart::Host {
namespace {

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

/// Keeps what the context says of the last frame.
struct ProbeVis : Render::Vis {
    explicit ProbeVis(Core::Ptr<Model::ModelNode> const& p_model) : _model(p_model) {
        RegisterCB(Render::HandledDrawOverlay);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model; }
    static inline std::optional<FrameStatistics> seen;

private:
    Render::DrawResult DoDrawOverlay(Render::DrawContext const& p_context) override {
        seen = p_context.LastFrame() ? std::optional(*p_context.LastFrame()) : std::nullopt;
        return Render::DrawResultDescend;
    }

    Core::WeakPtr<Model::ModelNode> _model;
};

TEST(FigureTest, eachViewHandsTheFiguresOfItsOwnLastFrameToTheNodes) {
    struct Probe : Model::ModelNode {};
    Scene scene(std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters));
    scene.Factories().Register<Probe>(
        [](Core::Ptr<Model::ModelNode> const& p_model) { return Core::Ptr<Render::Vis>(new ProbeVis(p_model)); });
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    auto const pane = Core::MakeNode<Model::Pane>();
    pane->Add(Core::MakeNode<Probe>());
    scene.Add(pane);
    Types::Viewport<0> const window(0, 0, 100, 100);
    FrameDriver drivers[]{FrameDriver(scene), FrameDriver(scene)};
    std::optional<FrameStatistics> last[2];
    for (int frame = 0; frame < 6; ++frame) {
        int const view = frame == 3 ? 1 : frame % 2;
        pane->Add(Core::MakeNode<Model::SimpleObject>(symbol));
        drivers[view].Frame(Camera(), window);
        ASSERT_EQ(ProbeVis::seen.has_value(), last[view].has_value()) << frame;
        if (last[view]) {
            FrameStatistics const& seen = *ProbeVis::seen;
            EXPECT_EQ(seen.frame, last[view]->frame);
            EXPECT_EQ(seen.updated, last[view]->updated);
            EXPECT_EQ(seen.Drawn(), last[view]->Drawn());
            EXPECT_EQ(seen.DrawMilliseconds(), last[view]->DrawMilliseconds());
            EXPECT_EQ(seen.graphics, last[view]->graphics);
            EXPECT_GT(seen.graphics.heldBytes, 0U);
            EXPECT_EQ(seen.framesPerSecond, drivers[view].Statistics().framesPerSecond) << "as it is now";
        }
        last[view] = drivers[view].Statistics();
    }
}

struct Sample {
    int x, y; ///< from the lower left corner
    QColor color;
};

void Expect(QImage const& p_image, std::initializer_list<Sample> p_samples) {
    for (Sample const& sample : p_samples) {
        QColor const color = p_image.pixelColor(sample.x, p_image.height() - 1 - sample.y);
        int const difference = std::max({std::abs(color.red() - sample.color.red()),
            std::abs(color.green() - sample.color.green()), std::abs(color.blue() - sample.color.blue())});
        EXPECT_LE(difference, 4) << sample.x << ", " << sample.y << ": " << color.name().toStdString();
    }
}

/// A picture of one node, without a pane.
QImage PictureOf(Core::Ptr<Model::ModelNode> const& p_node, Types::Size const& p_size) {
    Offscreen picture(p_size, 0);
    picture.GetScene().Schema().clearColor = Qt::black;
    picture.GetScene().Schema().textColor = Qt::black;
    picture.GetScene().Add(p_node);
    picture.Frame();
    return picture.Render();
}

TEST(FigurePictureTest, nodesOverTheSceneLieWhereTheyShould) {
    std::string const file = (std::filesystem::temp_directory_path() / "figure-picture.png").string();
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int x = 0; x < 100; ++x)
        for (int y = 0; y < 50; ++y)
            image.setPixelColor(x, y, Qt::green);
    image.save(QString::fromStdString(file));
    auto const bitmap = Core::MakeNode<Model::Bitmap>();
    bitmap->SetImageFile(file);
    auto const statistics = Core::MakeNode<Model::Statistics>();
    statistics->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 20});
    try {
        Expect(PictureOf(bitmap, {100, 100}),
            {{50, 23, Qt::black}, {2, 27, Qt::red}, {97, 72, Qt::red}, {2, 72, Qt::green}, {47, 52, Qt::green},
                {50, 76, Qt::black}});
        Expect(PictureOf(bitmap, {400, 100}),
            {{98, 50, Qt::black}, {102, 2, Qt::red}, {297, 97, Qt::red}, {102, 97, Qt::green}, {302, 50, Qt::black}});
        // Black texts on a black scene: the ground is white.
        QColor const ground(232, 232, 232);
        QColor const frame(116, 116, 116);
        Expect(PictureOf(statistics, {300, 400}),
            {{19, 50, Qt::black}, {20, 50, frame}, {22, 50, ground}, {50, 9, Qt::black}, {50, 10, frame},
                {50, 12, ground}});
    } catch (Ogl::ContextError const& error) {
        GTEST_SKIP() << error.what();
    }
    std::filesystem::remove(file);
}

} // namespace
} // namespace Qor::Chart::Host
