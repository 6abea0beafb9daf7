#include "host/qt/SceneWidget.h"

#include "tests/render/support/Models.h"
#include "framework/model/SceneGraph.h"
#include "framework/ogl/OpenGlBackend.h"
#include "host/qt/SceneWindow.h"
#include "render/events/EventInformation.h"
#include "render/nodes/PaneLayout.h"
#include "render/pick/BoxSelection.h"

#include <QApplication>
#include <QTest>
#include <gmock/gmock.h>

#include <cstdio>

/// What main calls for the last of the tests.
int ShowWithoutOpenGl(int p_argc, char** p_argv);

namespace Qor::Chart::Host {
namespace {

using Render::Fixtures::MakeCube;
using Render::Fixtures::PixelViewport;

/// A window of 400 by 300 pixels with a pane of 200 by 150 at (100, 60) and a cube in it.
struct SceneWidgetTest : testing::Test {
    void SetUp() override {
        if (!qApp)
            GTEST_SKIP() << "There is no display, and Xvfb, which would make one, is not installed; run scripts/setup.";
        pane->SetViewport(PixelViewport(100, 60, 200, 150));
        pane->SetTitle(L"A pane");
        pane->SetMovable(true);
        pane->SetResizable(true);
        pane->SetBackgroundPickable(true);
        pane->SetButtonsShown(true);
        pane->SetToolbarShown(true);
        pane->SetBorderColor(QColor(60, 60, 60));
        pane->SetBackgroundColor(QColor(220, 230, 240));
        cube->SetName("cube");
        pane->Add(cube);
        model->Add(pane);
        widget = std::make_unique<SceneWidget>();
        widget->View().SetModel(model);
        Show(*widget);
    }
    void Show(QWidget& p_widget) const {
        p_widget.resize(400, 300);
        p_widget.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&p_widget));
        Settle();
    }
    /// Runs the event loop until nothing has been drawn for a while.
    void Settle() const {
        constexpr int most = 50;
        std::uint32_t before = 0;
        for (int i = 0; i < most && (i == 0 || (widget && Frames(*widget) != before)); ++i) {
            before = widget ? Frames(*widget) : 0;
            QTest::qWait(80);
        }
    }
    static std::uint32_t Frames(SceneWidget& p_widget) { return p_widget.View().Driver().Statistics().frame; }
    static std::size_t DeviceObjects(SceneWidget& p_widget) {
        return dynamic_cast<Ogl::OpenGlBackend&>(p_widget.View().GetScene().Graphics().GetBackend())
            .DeviceObjectCount();
    }
    /// Through the window system's door, with y counted upwards.
    void Press(
        QPoint const& p_place, Qt::KeyboardModifiers p_modifiers = {}, Qt::MouseButton p_button = Qt::LeftButton) {
        QTest::mouseMove(widget->windowHandle(), Turned(p_place));
        Settle();
        QTest::mousePress(widget->windowHandle(), p_button, p_modifiers, Turned(p_place));
    }
    void Release(
        QPoint const& p_place, Qt::KeyboardModifiers p_modifiers = {}, Qt::MouseButton p_button = Qt::LeftButton) {
        QTest::mouseRelease(widget->windowHandle(), p_button, p_modifiers, Turned(p_place));
        Settle();
    }
    void Drag(QPoint const& p_from, QPoint const& p_to, Qt::KeyboardModifiers p_modifiers = {},
        Qt::MouseButton p_button = Qt::LeftButton) {
        Press(p_from, p_modifiers, p_button);
        for (int step = 1; step <= 4; ++step) {
            QPoint const place = p_from + (p_to - p_from) * step / 4;
            QMouseEvent move(QEvent::MouseMove, Turned(place), widget->mapToGlobal(Turned(place)), Qt::NoButton,
                p_button, p_modifiers);
            QApplication::sendEvent(widget.get(), &move);
            QTest::qWait(5);
        }
        Release(p_to, p_modifiers, p_button);
    }
    void Click(QPoint const& p_place) {
        Press(p_place);
        Release(p_place);
    }
    static QPoint Turned(QPoint const& p_place) { return {p_place.x(), 299 - p_place.y()}; }

    Core::Ptr<Model::SceneGraph> model = Core::MakeNode<Model::SceneGraph>();
    Core::Ptr<Model::Pane> pane = Core::MakeNode<Model::Pane>();
    Core::Ptr<Model::SimpleObject> cube = MakeCube();
    std::unique_ptr<SceneWidget> widget;
};

TEST_F(SceneWidgetTest, framesFollowChangesAndNothingElse) {
    auto const framesOf = [&](auto const& p_action) {
        std::uint32_t const before = Frames(*widget);
        p_action();
        Settle();
        return Frames(*widget) - before;
    };
    EXPECT_EQ(framesOf([] {}), 0U) << "idle";
    EXPECT_EQ(framesOf([&] {
        for (int i = 0; i < 1000; ++i)
            cube->SetTransform(Types::Matrix4::Translation({0.001 * i, 0, 0}));
    }),
        1U);
    EXPECT_EQ(framesOf([&] { model->Add(MakeCube()); }), 1U);
    EXPECT_EQ(framesOf([&] { widget->View().GetScene().Dispatcher().RequestRedraw(50); }), 1U) << "later";
    EXPECT_EQ(framesOf([&] {
        widget->hide();
        cube->SetTransform(Types::Matrix4());
    }),
        0U)
        << "hidden";
    EXPECT_GE(framesOf([&] { widget->show(); }), 1U);
}

TEST_F(SceneWidgetTest, mouseAndKeysReachNodesAndCameras) {
    std::string clicked;
    SceneView& view = widget->View();
    view.Input().Callbacks().click = [&](InputEvent const&, InputCallbacks::Hits const& p_hits, bool) {
        clicked = p_hits.empty() ? "nothing" : p_hits.back().node.Lock()->SourceModel().Lock()->Name();
    };
    Click({200, 135});
    EXPECT_EQ(clicked, "cube");
    Click({20, 20});
    EXPECT_EQ(clicked, "nothing");

    Camera const before = view.GetCamera();
    QImage const picture = widget->grabFramebuffer();
    Drag({200, 100}, {260, 110});
    EXPECT_NE(view.GetCamera().Azimuth(), before.Azimuth());
    EXPECT_NE(widget->grabFramebuffer(), picture);
    QTest::keyClick(widget->windowHandle(), Qt::Key_1);
    EXPECT_EQ(view.GetCamera().Azimuth(), 0);
    Drag({200, 100}, {200, 140}, {}, Qt::RightButton);
    EXPECT_GT(view.GetCamera().Zoom(), before.Zoom());
    double const zoom = view.GetCamera().Zoom();
    QWheelEvent wheel(QPointF(200, 150), widget->mapToGlobal(QPointF(200, 150)), {}, {0, 240}, Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget.get(), &wheel);
    EXPECT_NEAR(view.GetCamera().Zoom(), zoom * Navigator::ZoomPerNotch * Navigator::ZoomPerNotch, 1e-9);
    QTest::keyClick(widget->windowHandle(), Qt::Key_P);
    EXPECT_EQ(pane->GetProjectionMode(), Model::Pane::ProjectionMode::Perspective);
}

TEST_F(SceneWidgetTest, panesAreMovedResizedBandSelectedSwitchedAndPoppedOut) {
    Drag({200, 202}, {230, 182});
    EXPECT_EQ(pane->GetViewport(), PixelViewport(130, 40, 200, 150)) << "by the title bar";
    Drag({329, 40}, {349, 30});
    EXPECT_EQ(pane->GetViewport(), PixelViewport(130, 30, 219, 160))
        << "by the lower right grip, to " << pane->GetViewport();

    std::vector<Types::Viewport<0>> boxes;
    widget->View().Input().Callbacks().selectBox = [&](Render::BoxSelection const& p_box, bool) {
        boxes.push_back(p_box.Rectangle());
    };
    Drag({150, 60}, {300, 150}, Qt::ControlModifier);
    EXPECT_THAT(boxes, testing::ElementsAre(Types::Viewport<0>(150, 60, 150, 90)));

    using Render::PaneLayout;
    PaneLayout::Rectangle const bar = PaneLayout::TitleBar({130, 30, 219, 160}, 20).Translate(130, 30);
    auto const middle = [&](PaneLayout::Rectangle const& p_button) {
        return QPoint(static_cast<int>(p_button.x + p_button.width / 2), static_cast<int>(p_button.y + 8));
    };
    Click(middle(PaneLayout::DetachButton(bar, 20)));
    auto const windows = [&] { return widget->View().PopOuts().Windows(); };
    ASSERT_EQ(windows().size(), 1U);
    EXPECT_FALSE(pane->IsVisible());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(windows().front()));
    Settle();
    EXPECT_EQ(windows().front()->title(), "A pane");
    EXPECT_GE(windows().front()->View().Driver().Statistics().frame, 1U);
    EXPECT_NE(windows().front()->grabFramebuffer().pixelColor(110, 80), QColor(220, 230, 240)) << "the cube";
    windows().front()->close();
    Settle();
    EXPECT_TRUE(pane->IsVisible());
    EXPECT_TRUE(pane->Contains(*cube));
    EXPECT_TRUE(windows().empty());

    Click(middle(PaneLayout::PopOutButton(bar, 20)));
    EXPECT_EQ(windows().size(), 1U);
    EXPECT_TRUE(pane->IsVisible());
    widget.reset();
    EXPECT_TRUE(pane->Contains(*cube)) << "a window that is open goes with the widget";
}

TEST_F(SceneWidgetTest, widgetsSurviveHidingMovingToOtherWindowsAndEachOther) {
    QImage const picture = widget->grabFramebuffer();
    std::size_t const objects = DeviceObjects(*widget);
    EXPECT_GT(objects, 0U);
    QWidget first;
    QWidget second;
    for (QWidget* const parent : {&first, &second, &first}) {
        widget->setParent(parent);
        widget->show();
        Show(*parent);
        EXPECT_EQ(widget->grabFramebuffer(), picture);
        EXPECT_EQ(DeviceObjects(*widget), objects) << "sent again, once";
    }
    widget->resize(0, 0);
    Settle();
    widget->resize(400, 300);
    Settle();

    SceneWidget other;
    other.View().SetModel(model);
    Show(other);
    other.setParent(&second);
    other.show();
    Settle();
    widget.reset();
    cube->SetVisible(false);
    Settle();
    EXPECT_NE(other.grabFramebuffer(), picture);
    cube->SetVisible(true);
    Settle();
    EXPECT_EQ(other.grabFramebuffer(), picture) << "the model lives on in the other";
}

TEST_F(SceneWidgetTest, whatCallbacksThrowIsToldOnce) {
    std::vector<std::string> said;
    SceneView& view = widget->View();
    view.SetErrorCallback([&](std::string const& p_sentence) {
        said.push_back(p_sentence);
        throw 1;
    });
    view.SetFrameCallback([] { throw std::runtime_error("The figures are missing."); });
    for (int frame = 0; frame < 3; ++frame) {
        view.Refresh();
        Settle();
    }
    EXPECT_THAT(said, testing::ElementsAre("The program could not follow the frame: The figures are missing."));

    view.SetFrameCallback([&view, &said, last = std::string("a callback that takes itself away")] {
        view.SetFrameCallback({});
        said.push_back(last);
    });
    view.Refresh();
    Settle();
    EXPECT_EQ(said.back(), "a callback that takes itself away");
}

TEST_F(SceneWidgetTest, withoutOpenGlThereIsOneSentenceAndNoCrash) {
    std::string const command = "QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES='*=false' /proc/" +
        std::to_string(getpid()) + "/exe --without-opengl";
    FILE* const program = popen(command.c_str(), "r");
    ASSERT_TRUE(program);
    std::string said;
    for (int sign = fgetc(program); sign != EOF; sign = fgetc(program))
        said += static_cast<char>(sign);
    EXPECT_EQ(pclose(program), 0);
    EXPECT_THAT(said, testing::MatchesRegex("The scene cannot be shown, because [^.\n]*\\.\n"));
}

} // namespace
} // namespace Qor::Chart::Host

int ShowWithoutOpenGl(int p_argc, char** p_argv) {
    using namespace Qor::Chart;
    QApplication const application(p_argc, p_argv);
    Host::SceneWidget widget;
    widget.View().SetErrorCallback([](std::string const& p_sentence) { std::puts(p_sentence.c_str()); });
    widget.View().SetModel(Core::MakeNode<Model::Pane>());
    widget.show();
    QTest::qWait(100);
    return 0;
}
