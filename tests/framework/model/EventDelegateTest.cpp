#include "framework/model/SimpleObject.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace Qor::Chart::Model {

namespace {

using Events::Event;
using Events::PendingUpdateCompletedArgs;
using Events::PickedArgs;
using testing::ElementsAre;
using testing::HasSubstr;

class EventDelegateTest : public testing::Test {
protected:
    void Pick() { node->Delegate().Raise(PickedArgs(node)); }

    EventConnection Note(std::string const& p_text) {
        return node->Delegate().Connect<PickedArgs>([this, p_text](PickedArgs const&) { heard.push_back(p_text); });
    }

    Core::Ptr<SimpleObject> node = Core::MakeNode<SimpleObject>();
    std::vector<std::string> heard;
};

} // namespace

TEST_F(EventDelegateTest, eachHearsWhatItSubscribedToInOrder) {
    EventConnection const picked = Note("picked");
    EventConnection const any = node->Delegate().Connect<Event>(
        [this](Event const& p_event) { heard.push_back(p_event.Node().Peek()->Name()); });
    EventConnection const completed =
        node->Delegate().Connect<PendingUpdateCompletedArgs>([this](PendingUpdateCompletedArgs const& p_event) {
            heard.emplace_back(p_event.BoundingBox().IsDefined() ? "box" : "no box");
        });
    node->SetName("wheel");
    Pick();
    node->Delegate().Raise(PendingUpdateCompletedArgs(node, {{0, 0, 0}, {1, 1, 1}}));
    EXPECT_THAT(heard, ElementsAre("picked", "wheel", "wheel", "box"));
}

TEST_F(EventDelegateTest, aSubscriptionEndsWithItsConnection) {
    EXPECT_FALSE(node->Delegate().HasSubscribers());
    EventConnection kept = Note("kept");
    {
        EventConnection const dropped = Note("dropped");
        EventConnection moved = Note("replaced");
        moved = Note("moved");
        Pick();
        EXPECT_THAT(heard, ElementsAre("kept", "dropped", "moved"));
    }
    heard.clear();
    Pick();
    EXPECT_THAT(heard, ElementsAre("kept"));
    kept.Disconnect();
    kept.Disconnect();
    EXPECT_FALSE(kept.IsConnected() || node->Delegate().HasSubscribers());

    EventConnection outlives = Note("");
    EXPECT_TRUE(outlives.IsConnected());
    node.Reset();
    EXPECT_FALSE(outlives.IsConnected());
}

TEST_F(EventDelegateTest, subscribersMayComeAndGoWhileAnEventIsRaised) {
    EventConnection late;
    EventConnection self;
    EventConnection third;
    self = node->Delegate().Connect<PickedArgs>([&, mark = std::make_shared<int>(1)](PickedArgs const&) {
        third.Disconnect();
        self.Disconnect();
        late = Note("late");
        heard.push_back("self " + std::to_string(*mark));
    });
    EventConnection const second = Note("second");
    third = Note("third");
    Pick();
    EXPECT_THAT(heard, ElementsAre("self 1", "second"));
    Pick();
    EXPECT_THAT(heard, ElementsAre("self 1", "second", "second", "late"));
}

TEST_F(EventDelegateTest, eventsRaisedByACallbackAreHeardWithin) {
    int depth = 0;
    EventConnection within;
    EventConnection const again = node->Delegate().Connect<PickedArgs>([&](PickedArgs const&) {
        if (++depth == 1) {
            within = Note("within");
            Pick();
            within.Disconnect();
        }
    });
    EventConnection const last = Note("last");
    Pick();
    EXPECT_EQ(depth, 2);
    EXPECT_THAT(heard, ElementsAre("last", "within", "last"));
}

TEST_F(EventDelegateTest, whatACallbackThrowsIsReportedAndTheOthersStillHear) {
    node->SetName("wheel");
    EventConnection const bad =
        node->Delegate().Connect<PickedArgs>([](PickedArgs const&) { throw std::runtime_error("the pump is off"); });
    EventConnection const odd = node->Delegate().Connect<PickedArgs>([](PickedArgs const&) { throw 7; });
    EventConnection const good = Note("good");
    qordebug::CaptureScope const log(Utility::GetLogger());
    Pick();
    EXPECT_THAT(heard, ElementsAre("good"));
    EXPECT_THAT(log.texts(qordebug::severity::error),
        ElementsAre(testing::AllOf(HasSubstr("PickedArgs"), HasSubstr("wheel"), HasSubstr("the pump is off")),
            HasSubstr("no std::exception")));
}

TEST_F(EventDelegateTest, theNodeMayDieUnderItsOwnEvent) {
    EventDelegate& delegate = node->Delegate();
    EventConnection const drops = delegate.Connect<PickedArgs>([this](PickedArgs const& p_event) {
        node.Reset();
        heard.emplace_back(p_event.Node().Expired() ? "gone" : "alive");
    });
    EventConnection const after = Note("after");
    PickedArgs const event(node);
    delegate.Raise(event);
    EXPECT_THAT(heard, ElementsAre("gone", "after"));
    EXPECT_FALSE(after.IsConnected());
}

TEST_F(EventDelegateTest, aCallbackMayOwnTheConnectionOfAnother) {
    auto const other = std::make_shared<EventConnection>(Note("other"));
    EventConnection owner = node->Delegate().Connect<PickedArgs>([other](PickedArgs const&) { other->Disconnect(); });
    auto const self = std::make_shared<EventConnection>();
    *self = node->Delegate().Connect<PickedArgs>([self](PickedArgs const&) { self->Disconnect(); });
    Pick();
    EXPECT_THAT(heard, ElementsAre("other"));
    auto const holder = std::make_shared<EventConnection>(Note("held"));
    EventConnection const holds = node->Delegate().Connect<PickedArgs>([holder](PickedArgs const&) {});
    node.Reset();
    EXPECT_FALSE(holder->IsConnected() || owner.IsConnected());
}

} // namespace Qor::Chart::Model
