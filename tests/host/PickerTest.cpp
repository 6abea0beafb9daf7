#include "host/Picker.h"

#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/Scene.h"
#include "host/FrameDriver.h"
#include "host/WindowPixels.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Host {
namespace {

struct PickerTest : testing::Test {
    PickerTest() {
        for (double const x : {-1.0, 1.0}) {
            auto cube = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
            cube->SetTransform(Types::Matrix4::Translation({x, x, 0}));
            cube->SetName(x < 0 ? "low left" : "up right");
            cube->SetPickable(true);
            scene.Add(cube);
        }
        driver.Update();
        camera.Look(0, 0);
    }
    std::string NameAt(Types::Viewport<0> const& p_window, Render::PickPoint const& p_point) {
        auto const hits = picker.Pick(camera, p_window, p_point);
        auto const node = hits.empty() ? nullptr : hits.front().node.Lock();
        return node ? node->SourceModel().Lock()->Name() : "";
    }

    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    Picker picker{scene};
    Camera camera;
};

TEST_F(PickerTest, theSameSpotOfTheWindowHitsTheSameAtEveryPixelRatio) {
    std::set<std::string> met;
    for (double const ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        WindowPixels const pixels{{static_cast<int>(400 * ratio), static_cast<int>(300 * ratio)}, ratio};
        camera.Fit(scene.Bounds(), pixels.Viewport());
        for (int y = 10; y < 300; y += 40) {
            for (int x = 10; x < 400; x += 40) {
                bool const isLow = x < 200 && y > 150;
                bool const isHigh = x > 200 && y < 150;
                std::string const name = NameAt(pixels.Viewport(), pixels.ToPickPoint(x, y, 2));
                met.insert(name);
                EXPECT_TRUE(name.empty() ||
                    name ==
                        (isLow           ? "low left"
                                : isHigh ? "up right"
                                         : "none"))
                    << name << " at " << x << ", " << y << ", ratio " << ratio;
            }
        }
        EXPECT_EQ(NameAt(pixels.Viewport(), pixels.ToPickPoint(150, 200, 2)), "low left") << "y counts from above";
        EXPECT_EQ(NameAt(pixels.Viewport(), pixels.ToPickPoint(250, 100, 2)), "up right");
    }
    EXPECT_EQ(met.size(), 3U);
}

TEST_F(PickerTest, pixelsAreExactWhereTheToolkitDividedByTheRatio) {
    for (double const ratio : {1.0, 1.25, 1.75, 2.0}) {
        WindowPixels const pixels{{1000, 800}, ratio};
        for (int i = 0; i < 800; ++i)
            ASSERT_EQ(pixels.ToFramebuffer(i / ratio, i / ratio), Types::Pos(i, 799 - i)) << ratio;
    }
    EXPECT_EQ((WindowPixels{{100, 100}, 2}.ToPickPoint(-0.5, 60, 2)), (Render::PickPoint{{-1, -21}, {4, 4}}));
    EXPECT_EQ((WindowPixels{{100, 100}, 0}.ToFramebuffer(3, 4)), Types::Pos(3, 95)) << "no ratio counts as 1";
}

TEST_F(PickerTest, needsNoFrameDrawsNothingAndCountsAnew) {
    Types::Viewport<0> const window(50, 20, 400, 300);
    camera.Fit(scene.Bounds(), window);
    auto& backend = static_cast<Ogl::RecorderBackend&>(scene.Graphics().GetBackend());
    std::size_t const drawn = backend.Commands().size();
    auto const depths = scene.Graphics().Depths();
    auto const matrices = [&] {
        return std::pair(scene.Graphics().Get(Ogl::Tokens::AGL_PROJECTION_MATRIX),
            scene.Graphics().Get(Ogl::Tokens::AGL_MODELVIEW_MATRIX));
    };
    auto const before = matrices();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(NameAt(window, {{200, 120}, {2, 2}}), "low left");
        EXPECT_EQ(picker.Visited(), 4U) << "three in the scene, the root once more in the overlay";
        EXPECT_EQ(picker.Tested(), 2U);
    }
    EXPECT_EQ(picker.Pick(camera, window, {{45, 120}, {2, 2}}).size(), 0U) << "left of the window";
    EXPECT_EQ(picker.Pick(camera, {}, {{0, 0}, {2, 2}}).size(), 0U);
    EXPECT_EQ(picker.Visited(), 0U);
    using Render::BoxSelection;
    auto const pane = Core::MakeNode<Model::Pane>(); // clears the depths in its setup
    pane->SetName("pane");
    pane->SetBackgroundPickable(true);
    scene.Add(pane);
    driver.Update();
    EXPECT_EQ(NameAt(window, {{200, 120}, {2, 2}}), "pane");
    Core::WeakPtr<Render::Vis> const shown = *std::next(scene.Visual()->begin(), 2);
    for (auto const& [scope, count] : {std::pair(Core::WeakPtr<Render::Vis>(), 2U), {shown, 1U}}) {
        BoxSelection const box(scope, window, false, BoxSelection::Operation::Replace);
        EXPECT_EQ(picker.Pick(camera, window, box).size(), count);
    }
    EXPECT_EQ(scene.Graphics().GetStatistics().clears, 0U);
    EXPECT_EQ(backend.Commands().size(), drawn);
    EXPECT_EQ(scene.Graphics().Depths(), depths);
    EXPECT_EQ(matrices(), before);
    EXPECT_EQ(scene.Graphics().CheckError(), "");
}

} // namespace
} // namespace Qor::Chart::Host
