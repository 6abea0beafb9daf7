#include "host/Picker.h"

#include "tests/render/support/Models.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/Scene.h"
#include "host/FrameDriver.h"
#include "host/WindowPixels.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Host {
namespace {

struct PickerTest : testing::Test {
    PickerTest() {
        for (double const x : {-1.0, 1.0}) {
            auto const cube = Render::Fixtures::MakeCube({x, x, 0});
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

TEST_F(PickerTest, pixelsAreExactAtEveryRatioAndCountFromBelow) {
    for (double const ratio : {1.0, 1.25, 1.75, 2.0}) {
        WindowPixels const pixels{{1000, 800}, ratio};
        for (int i = 0; i < 800; ++i)
            ASSERT_EQ(pixels.ToFramebuffer(i / ratio, i / ratio), Types::Pos(i, 799 - i)) << ratio;
        camera.Fit(scene.Bounds(), pixels.Viewport());
        EXPECT_EQ(NameAt(pixels.Viewport(), pixels.ToPickPoint(400 / ratio, 500 / ratio, 2)), "low left");
        EXPECT_EQ(NameAt(pixels.Viewport(), pixels.ToPickPoint(600 / ratio, 300 / ratio, 2)), "up right");
    }
    EXPECT_EQ((WindowPixels{{100, 100}, 2}.ToPickPoint(-0.5, 60, 2)), (Render::PickPoint{{-1, -21}, {4, 4}}));
    EXPECT_EQ((WindowPixels{{100, 100}, 0}.ToFramebuffer(3, 4)), Types::Pos(3, 95)) << "no ratio counts as 1";
}

TEST_F(PickerTest, needsNoFrameDrawsNothingAndCountsAnew) {
    Types::Viewport<0> const window(50, 20, 400, 300);
    camera.Fit(scene.Bounds(), window);
    auto& backend = static_cast<Ogl::RecorderBackend&>(scene.Graphics().GetBackend());
    std::size_t const drawn = backend.Commands().size();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(NameAt(window, {{200, 120}, {2, 2}}), "low left");
        EXPECT_EQ(picker.Visited(), 4U) << "three in the scene, the root once more in the overlay";
        EXPECT_EQ(picker.Tested(), 2U);
    }
    EXPECT_EQ(picker.Pick(camera, window, {{45, 120}, {2, 2}}).size(), 0U) << "left of the window";
    EXPECT_EQ(picker.Pick(camera, {}, {{0, 0}, {2, 2}}).size(), 0U);
    auto const pane = Core::MakeNode<Model::Pane>(); // clears the depths in its setup
    pane->SetName("pane");
    pane->SetBackgroundPickable(true);
    scene.Add(pane);
    driver.Update();
    EXPECT_EQ(NameAt(window, {{200, 120}, {2, 2}}), "pane");
    EXPECT_EQ(scene.Graphics().GetStatistics().clears, 0U);
    EXPECT_EQ(backend.Commands().size(), drawn);
    EXPECT_EQ(scene.Graphics().CheckError(), "");
}

} // namespace
} // namespace Qor::Chart::Host
