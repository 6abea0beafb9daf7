#include "host/Navigator.h"

#include "tests/render/support/Models.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/FrameDriver.h"
#include "host/Scene.h"
#include "render/events/EventInformation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace Qor::Chart::Host {
namespace {

using Render::Fixtures::MakeCube;
using Vector = Types::Vector3_Base<double>;

/// A row of cubes in the window and three panes: one with another in it, one that lies over its corner, both seen by the
/// host's camera, and one beside them with a camera of its own.
struct NavigatorTest : testing::Test {
    NavigatorTest() {
        plain->SetViewport({0.0, 0.0, 0.5, 0.5});
        inner->SetViewport({0.0, 0.0, 0.5, 0.5});
        front->SetViewport({0.375, 0.0, 0.25, 0.15});
        own->SetViewport({0.5, 0.5, 0.5, 0.5});
        for (auto const& [parent, pane] :
            {std::pair(plain, inner), {inner, Core::Ptr<Model::Pane>()}, {own, nullptr}}) {
            parent->Add(MakeCube());
            if (pane)
                parent->Add(pane);
        }
        ownCamera->Add(own);
        for (int i = 0; i < 3; ++i)
            scene.Add(MakeCube({2.0 * i, 0, 0}));
        scene.Add(plain);
        scene.Add(front);
        scene.Add(ownCamera);
        driver.Update();
        navigator.SetWindow(Window);
        navigator.FitAll();
        Frame();
    }
    void Frame() {
        driver.Frame(camera, Window);
        input.FrameDone();
    }
    std::string PaneAt(Types::Pos const& p_pixel) {
        Core::Ptr<Render::Vis> const pane = navigator.ViewAt(p_pixel).pane.Lock();
        auto const model = pane ? pane->SourceModel().Lock() : nullptr;
        return model == plain ? "plain"
            : model == inner  ? "inner"
            : model == front  ? "front"
            : model == own    ? "own"
            : pane            ? "?"
                              : "window";
    }
    /// Where the scene is hit, in its own coordinates.
    std::optional<Vector> HitAt(Types::Pos const& p_pixel) {
        input.PointerMoved(p_pixel);
        return input.Hits().empty() ? std::nullopt : std::optional(input.Hits().front().global);
    }
    static double Distance(Vector const& p_a, Vector const& p_b) {
        return std::hypot(p_a.x - p_b.x, p_a.y - p_b.y, p_a.z - p_b.z);
    }
    void Drag(Types::Pos const& p_from, Types::Pos const& p_to, std::uint32_t p_button, std::uint32_t p_modifiers = 0) {
        input.PointerPressed(p_from, p_button, p_modifiers);
        input.PointerMoved(p_to, p_modifiers);
        input.PointerReleased(p_to, p_button, p_modifiers);
        Frame();
    }

    inline static Types::Viewport<0> const Window{0, 0, 800, 600};
    Core::Ptr<Model::Pane> plain = Core::MakeNode<Model::Pane>();
    Core::Ptr<Model::Pane> inner = Core::MakeNode<Model::Pane>();
    Core::Ptr<Model::Pane> front = Core::MakeNode<Model::Pane>();
    Core::Ptr<Model::Pane> own = Core::MakeNode<Model::Pane>();
    Core::Ptr<CameraNode> ownCamera = Core::MakeNode<CameraNode>();
    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    Camera camera;
    InputDispatcher input{scene};
    Navigator navigator{scene, input, camera};
};

TEST_F(NavigatorTest, thePaneOnTopIsFoundWithItsRectangleAndCamera) {
    EXPECT_EQ(PaneFinder::All(scene.Visual(), Window).size(), 4U);
    EXPECT_EQ(PaneAt({10, 10}), "inner");
    EXPECT_EQ(PaneAt({199, 149}), "inner");
    EXPECT_EQ(PaneAt({200, 149}), "plain") << "not the pixel after the last";
    EXPECT_EQ(PaneAt({399, 89}), "front") << "drawn over the other";
    EXPECT_EQ(PaneAt({450, 350}), "own");
    EXPECT_EQ(PaneAt({700, 100}), "window");
    EXPECT_EQ(PaneAt({-1, 5}), "window");
    front->SetVisible(false);
    Frame();
    EXPECT_EQ(PaneAt({399, 89}), "plain") << "what does not show is not there";
}

TEST_F(NavigatorTest, whatIsUnderThePointerStaysThereInAPanAndAZoomOfEveryView) {
    using Mode = Model::Pane::ProjectionMode;
    plain->SetVisible(false);
    for (auto const& [isPane, mode, place] : {std::tuple(false, Mode::Orthographic, Types::Pos(430, 300)),
             {true, Mode::Orthographic, {640, 480}}, {true, Mode::Perspective, {640, 480}}}) {
        SCOPED_TRACE(testing::Message() << isPane << ", " << static_cast<int>(mode));
        own->SetVisible(isPane);
        own->SetProjectionMode(mode);
        Frame();
        std::optional<Vector> const before = HitAt(place);
        ASSERT_TRUE(before);
        auto const expectSameAt = [&](Types::Pos const& p_place, char const* p_after) {
            Frame();
            std::optional<Vector> const now = HitAt(p_place);
            ASSERT_TRUE(now) << p_after;
            EXPECT_LT(Distance(*now, *before), 0.03) << p_after;
        };
        Types::Pos const next = place + Types::Pos(50, -50);
        Drag(place, next, 2);
        expectSameAt(next, "a pan");
        auto const zoom = [&, isShown = isPane] { return (isShown ? ownCamera->GetCamera() : camera).Zoom(); };
        double const first = zoom();
        input.Scrolled(next, 3);
        expectSameAt(next, "a turn of the wheel");
        EXPECT_GT(zoom(), first * 1.1);
        Drag(next, next + Types::Pos(0, 20), 1);
        expectSameAt(next, "a zoom");
        Drag(next, place, 0, Render::EventInformation::ModifierShift);
        expectSameAt(place, "a pan with Shift");
        navigator.FitAll();
    }
    EXPECT_EQ(camera.GetProjectionMode(), Camera().GetProjectionMode()) << "the window keeps its own";
}

TEST_F(NavigatorTest, eachPaneTurnsItsOwnCameraAndEscapeTurnsItBack) {
    auto const azimuths = [&] { return std::pair(camera.Azimuth(), ownCamera->GetCamera().Azimuth()); };
    auto const before = azimuths();
    input.PointerMoved({450, 350});
    input.PointerPressed({450, 350});
    input.PointerMoved({530, 350});
    EXPECT_EQ(azimuths().first, before.first);
    EXPECT_NE(azimuths().second, before.second);
    input.KeyPressed(Render::EventInformation::KeyEscape);
    EXPECT_EQ(azimuths(), before) << "taken back";
    input.PointerReleased({530, 350});
    Drag({530, 520}, {450, 520}, 0);
    EXPECT_NE(azimuths().second, before.second);
    auto const turned = azimuths();
    Drag({700, 100}, {650, 100}, 0);
    EXPECT_NE(azimuths().first, turned.first) << "beside the panes it is the host's";
    EXPECT_EQ(azimuths().second, turned.second);
}

TEST_F(NavigatorTest, keysLookAndFitWhereThePointerIs) {
    input.PointerMoved({450, 350});
    input.KeyPressed('5');
    EXPECT_DOUBLE_EQ(ownCamera->GetCamera().Elevation(), 90);
    EXPECT_DOUBLE_EQ(camera.Elevation(), Camera::DefaultElevation);
    input.KeyPressed('5', Render::EventInformation::ModifierControl);
    input.KeyPressed('8');
    input.KeyPressed('0');
    input.Scrolled({450, 350}, 9);
    double const zoomed = ownCamera->GetCamera().Zoom();
    input.KeyPressed('F');
    EXPECT_LT(ownCamera->GetCamera().Zoom(), zoomed);
    { Navigator const passing(scene, input, camera); }
    EXPECT_FALSE(input.Callbacks().drag || input.Callbacks().scroll || input.Callbacks().keyPress) << "nobody is there";
    EXPECT_TRUE(scene.Dispatcher().UpdateRequested());
}

TEST_F(NavigatorTest, panesAreMovedResizedAndTakenBackWithThePointer) {
    using Render::Fixtures::PixelViewport;
    own->SetMovable(true);
    own->SetResizable(true);
    own->SetViewport(PixelViewport(400, 300, 300, 200));
    Frame();
    Drag({500, 490}, {530, 470}, 0);
    EXPECT_EQ(own->GetViewport(), PixelViewport(430, 280, 300, 200)) << "by its title bar";
    Drag({729, 280}, {719, 290}, 0);
    EXPECT_EQ(own->GetViewport(), PixelViewport(430, 290, 289, 190)) << "by a grip";
    EXPECT_FALSE(input.IsDragging());

    Types::Viewport<1> const parts(1.0 / 3, 0.2, 0.5, 0.7);
    for (auto const& [place, isOwn] :
        {std::pair(Types::Pos(400, 590), false), {{400, 530}, true}, {{268, 121}, true}}) {
        own->Reset(Model::Pane::ViewportProperty);
        if (isOwn)
            own->SetViewport(parts);
        Frame();
        input.PointerMoved(place);
        input.PointerPressed(place);
        input.PointerMoved({100, 100});
        EXPECT_NE(own->GetViewport(), isOwn ? parts : Types::Viewport<1>());
        input.KeyPressed(Render::EventInformation::KeyEscape);
        input.PointerReleased({100, 100});
        Frame();
        EXPECT_EQ(own->GetViewport(), isOwn ? parts : Types::Viewport<1>()) << "to the last digit";
        EXPECT_EQ(own->IsSet(Model::Pane::ViewportProperty), isOwn);
    }
}

} // namespace
} // namespace Qor::Chart::Host
