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
using testing::ElementsAre;
using testing::HasSubstr;

Core::Ptr<Model::Group> NamedGroup(char const* p_name) {
    auto group = Core::MakeNode<Model::Group>();
    group->SetName(p_name);
    return group;
}

TEST(EventDispatcherTest, repeatedReportsReachTheLogAtPowersOfTen) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    EventDispatcher dispatcher;
    for (int i = 0; i < 250; ++i)
        dispatcher.ReportException("node 7 caught exception", "Update @line12");
    dispatcher.ReportException("node 7 caught exception", "Draw @line3");
    EXPECT_THAT(log.texts(),
        ElementsAre(HasSubstr("node 7 caught exception [Update"), HasSubstr("(10 times so far)"),
            HasSubstr("(100 times so far)"), HasSubstr("Draw @line3")));
    ASSERT_EQ(dispatcher.Reports().size(), 2U);
    EXPECT_EQ(dispatcher.Reports().front().count, 250U);
    EXPECT_EQ(dispatcher.ReportCount(), 251U);
}

TEST(EventDispatcherTest, rememberedReportsAreBoundedAndTheQuietestGoesFirst) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    EventDispatcher dispatcher;
    for (std::size_t i = 0; i < EventDispatcher::MaxReports; ++i)
        dispatcher.ReportException(std::to_string(i), "");
    dispatcher.ReportException("0", "");
    dispatcher.ReportException("new", "");
    std::vector<Report> const reports = dispatcher.Reports();
    ASSERT_EQ(reports.size(), EventDispatcher::MaxReports);
    EXPECT_EQ(reports.front().text, "2");
    EXPECT_EQ(reports.back().text, "new");
    EXPECT_EQ(reports[reports.size() - 2].count, 2U);
}

TEST(EventDispatcherTest, aWarningNamesItsNodeOnOneLine) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    Scene scene(std::make_unique<Ogl::RecorderBackend>());
    scene.Dispatcher().ReportWarning(*scene.Visual(), "something is odd.\n", "", 1);
    EXPECT_THAT(log.texts(qordebug::severity::warning),
        ElementsAre(testing::AllOf(HasSubstr("SceneVis"), testing::EndsWith("something is odd."))));
}

TEST(EventDispatcherTest, eventsWaitForDeliveryAndThoseOfDeadNodesAreDropped) {
    EventDispatcher dispatcher;
    auto const first = NamedGroup("first");
    auto second = NamedGroup("second");
    std::vector<std::string> heard;
    auto const hear = [&](PickedArgs const& p_event) { heard.push_back(p_event.Node().Lock()->Name()); };
    auto const one = first->Delegate().Connect<PickedArgs>(hear);
    auto const two = second->Delegate().Connect<PickedArgs>(hear);
    for (auto const& node : {first, second, first})
        dispatcher.DispatchEvent(Core::WeakPtr<Model::ModelNode>(node), std::make_shared<PickedArgs>(node));
    second.Reset();
    EXPECT_TRUE(heard.empty());
    EXPECT_EQ(dispatcher.DeliverEvents(), 2U);
    EXPECT_THAT(heard, ElementsAre("first", "first"));
    EXPECT_TRUE(dispatcher.TakeUpdateRequest()) << "the listeners may have changed the model";
    EXPECT_FALSE(dispatcher.UpdateRequested());
}

TEST(EventDispatcherTest, anEventRaisedByAListenerWaitsForTheNextDelivery) {
    EventDispatcher dispatcher;
    auto const node = NamedGroup("node");
    int heard = 0;
    auto const echo = node->Delegate().Connect<PickedArgs>([&](PickedArgs const&) {
        ++heard;
        dispatcher.DispatchEvent(Core::WeakPtr<Model::ModelNode>(node), std::make_shared<PickedArgs>(node));
    });
    dispatcher.DispatchEvent(Core::WeakPtr<Model::ModelNode>(node), std::make_shared<PickedArgs>(node));
    EXPECT_EQ(dispatcher.DeliverEvents(), 1U);
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(dispatcher.WaitingEvents(), 1U);
}

TEST(EventDispatcherTest, requestsMergeIntoTheEarliestFrame) {
    qordebug::manualclock clock;
    EventDispatcher dispatcher;
    std::vector<int> wakeUps;
    dispatcher.SetWakeUp([&](int p_milliseconds) { wakeUps.push_back(p_milliseconds); });
    EXPECT_EQ(dispatcher.RedrawDueIn(), std::nullopt);
    dispatcher.RequestRedraw(40);
    dispatcher.RequestRedraw(100);
    dispatcher.RequestRedraw(20);
    EXPECT_THAT(wakeUps, ElementsAre(40, 20));
    clock.advance(15);
    EXPECT_EQ(dispatcher.RedrawDueIn(), 5);
    EXPECT_FALSE(dispatcher.TakeRedrawRequest());
    clock.advance(10);
    EXPECT_EQ(dispatcher.RedrawDueIn(), 0);
    EXPECT_TRUE(dispatcher.TakeRedrawRequest());
    EXPECT_FALSE(dispatcher.TakeRedrawRequest());
    dispatcher.RequestRedraw(-5);
    dispatcher.RequestUpdate();
    EXPECT_EQ(dispatcher.RedrawDueIn(), 0);
    EXPECT_TRUE(dispatcher.UpdateRequested());
}

TEST(EventDispatcherTest, servesEveryContextRootItself) {
    EventDispatcher dispatcher;
    EXPECT_EQ(dispatcher.DispatcherOf({}).get(), &dispatcher);
}

} // namespace
} // namespace Qor::Chart::Host
