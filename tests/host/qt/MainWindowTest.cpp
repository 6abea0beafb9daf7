#include "apps/qorview/MainWindow.h"

#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/Statistics.h"
#include "host/qt/SceneWindow.h"

#include <QApplication>
#include <QListWidget>
#include <QTest>
#include <gmock/gmock.h>

#include <algorithm>

namespace Qor::Chart::QorView {
namespace {

/// qorview's window with one pane and an island in its middle.
struct MainWindowTest : testing::Test {
    void SetUp() override {
        if (!qApp)
            GTEST_SKIP() << "There is no display, and Xvfb, which would make one, is not installed; run scripts/setup.";
        window = std::make_unique<MainWindow>(Options());
        window->Add(QOR_TEST_DATA "/../../examples/data/demo.glb");
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        QTest::qWait(300);
    }
    Host::SceneView& View() { return window->Widget().View(); }
    void Click(Types::Pos const& p_place) {
        View().Input().PointerMoved(p_place);
        View().Input().PointerPressed(p_place);
        View().Input().PointerReleased(p_place);
    }

    std::unique_ptr<MainWindow> window;
};

TEST_F(MainWindowTest, clicksSelectAndButtonsLeaveTheSelectionAlone) {
    Types::Size const size = View().Pixels().framebuffer;
    Types::Pos const island(size.width / 2, size.height / 2);
    Click(island);
    EXPECT_EQ(window->Selected().Count(), 1U);
    Click({size.width - 28, size.height - 30});
    auto const pane = Core::DynamicCast<Model::Pane>(*(*View().GetScene().Model()->begin())->begin());
    EXPECT_EQ(pane->GetProjectionMode(), Model::Pane::ProjectionMode::Orthographic) << "by the button";
    EXPECT_EQ(window->Selected().Count(), 1U);
    Click({3, 3});
    EXPECT_EQ(window->Selected().Count(), 0U);
}

TEST_F(MainWindowTest, theKeyForStatisticsShowsThemInAllWindows) {
    View().Input().GetPopOutHost()->PopOut(
        [](auto const&) { return Core::MakeNode<Model::SceneGraph>(); }, {200, 150}, {}, {});
    Host::SceneView& other = View().PopOuts().Windows().front()->View();
    auto const shown = [](Host::SceneView& p_view) {
        Model::ModelNode const& root = *p_view.GetScene().Model();
        return std::ranges::count_if(root, [](Core::Ptr<Model::ModelNode> const& p_node) {
            return Core::DynamicCast<Model::Statistics>(p_node) && p_node->IsVisible();
        });
    };
    for (int const expected : {1, 0, 1}) {
        (expected == 0 ? other : View()).Input().KeyPressed('S', 0);
        EXPECT_EQ(shown(View()), expected);
        EXPECT_EQ(shown(other), expected);
    }
    QTest::qWait(500);
    std::uint32_t const frames = View().Driver().Statistics().frame;
    QTest::qWait(500);
    EXPECT_EQ(View().Driver().Statistics().frame, frames) << "the figures keep no window awake";
}

TEST_F(MainWindowTest, reportsOfEachWindowAreListedOnce) {
    View().Input().GetPopOutHost()->PopOut(
        [](auto const&) { return Core::MakeNode<Model::SceneGraph>(); }, {200, 150}, {}, {});
    Host::SceneView& other = View().PopOuts().Windows().front()->View();
    int listed = 0;
    QObject::connect(window->findChild<QListWidget*>()->model(), &QAbstractItemModel::rowsInserted, window.get(),
        [&listed] { ++listed; });
    for (Host::SceneView* const view : {&View(), &other})
        view->GetScene().Dispatcher().ReportException(view == &other ? "there" : "here", "a place");
    for (int frame = 0; frame < 3; ++frame) {
        View().Refresh();
        other.Refresh();
        EXPECT_FALSE(QTest::qWaitFor([&] { return listed > 2; }, 500));
    }
    EXPECT_EQ(listed, 2);
}

} // namespace
} // namespace Qor::Chart::QorView
