#include "host/EventDispatcher.h"

#include "framework/core/Ptr.h"
#include "framework/model/Group.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Logger.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/Scene.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Host {
namespace {

using Model::Events::PickedArgs;
using testing::AllOf, testing::ElementsAre, testing::EndsWith, testing::HasSubstr;

TEST(EventDispatcherTest, repeatedReportsReachTheLogAtPowersOfTenAndTheQuietestIsForgottenFirst) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    Scene scene(std::make_unique<Ogl::RecorderBackend>());
    EventDispatcher& dispatcher = scene.Dispatcher();
    for (int i = 0; i < 100; ++i)
        dispatcher.ReportException("node 7 caught exception", "Update @line12");
    dispatcher.ReportWarning(*scene.Visual(), "something is odd.\n", "", 1);
    EXPECT_THAT(log.texts(),
        ElementsAre(HasSubstr("node 7 caught exception [Update"), HasSubstr("(10 times so far)"),
            HasSubstr("(100 times so far)"), AllOf(HasSubstr("SceneVis"), EndsWith("something is odd."))));
    for (std::size_t i = 2; i < EventDispatcher::MaxReports; ++i)
        dispatcher.ReportException(std::to_string(i), "");
    dispatcher.ReportException("node 7 caught exception", "Update @line12");
    dispatcher.ReportException("new", "");
    std::vector<Report> const reports = dispatcher.Reports();
    ASSERT_EQ(reports.size(), EventDispatcher::MaxReports);
    EXPECT_EQ(reports.front().text, "2") << "what was quiet for longest is gone";
    EXPECT_EQ(reports[reports.size() - 2].count, 101U);
}

TEST(EventDispatcherTest, eventsWaitForTheNextDeliveryAndThoseOfDeadNodesAreDropped) {
    EventDispatcher dispatcher;
    auto const first = Core::MakeNode<Model::Group>();
    auto second = Core::MakeNode<Model::Group>();
    auto const raise = [&](Core::Ptr<Model::ModelNode> const& p_node) {
        dispatcher.DispatchEvent(Core::WeakPtr<Model::ModelNode>(p_node), std::make_shared<PickedArgs>(p_node));
    };
    int heard = 0;
    auto const echo = first->Delegate().Connect<PickedArgs>([&](PickedArgs const&) {
        ++heard;
        raise(first);
    });
    for (auto const& node : {first, second, first})
        raise(node);
    second.Reset();
    EXPECT_EQ(heard, 0);
    EXPECT_EQ(dispatcher.DeliverEvents(), 2U);
    EXPECT_EQ(heard, 2);
    EXPECT_EQ(dispatcher.WaitingEvents(), 2U) << "those that the listener raised";
    EXPECT_TRUE(dispatcher.TakeUpdateRequest()) << "the listeners may have changed the model";
    EXPECT_FALSE(dispatcher.UpdateRequested());
}

TEST(EventDispatcherTest, requestsMergeIntoTheEarliestFrame) {
    qordebug::manualclock clock;
    EventDispatcher dispatcher;
    std::vector<int> wakeUps;
    dispatcher.SetWakeUp([&](int p_milliseconds) { wakeUps.push_back(p_milliseconds); });
    EXPECT_EQ(dispatcher.RedrawDueIn(), std::nullopt);
    for (int const delay : {40, 100, 20})
        dispatcher.RequestRedraw(delay);
    EXPECT_THAT(wakeUps, ElementsAre(40, 20));
    clock.advance(15);
    EXPECT_EQ(dispatcher.RedrawDueIn(), 5);
    EXPECT_FALSE(dispatcher.TakeRedrawRequest());
    clock.advance(10);
    EXPECT_TRUE(dispatcher.TakeRedrawRequest());
    EXPECT_FALSE(dispatcher.TakeRedrawRequest());
    dispatcher.RequestRedraw(-5);
    EXPECT_EQ(dispatcher.RedrawDueIn(), 0);
}

} // namespace
} // namespace Qor::Chart::Host
