#include "framework/model/SimpleObject.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace Qor::Chart::Model {

namespace {

using Events::PickedArgs;
using testing::ElementsAre;
using testing::HasSubstr;

class EventDelegateTest : public testing::Test {
protected:
    void Pick() { node->Delegate().Raise(PickedArgs(node)); }

    template <class T = PickedArgs>
    EventConnection On(auto p_callback) {
        return node->Delegate().Connect<T>(std::move(p_callback));
    }
    EventConnection Note(std::string const& p_text) {
        return On([this, p_text](PickedArgs const&) { heard.push_back(p_text); });
    }

    Core::Ptr<SimpleObject> node = Core::MakeNode<SimpleObject>();
    std::vector<std::string> heard;
};

} // namespace

TEST_F(EventDelegateTest, eachHearsWhatItSubscribedToInOrderUntilItsConnectionEnds) {
    node->SetName("wheel");
    EventConnection picked = Note("picked");
    auto any = On<Events::Event>([this](auto const& p_event) { heard.push_back(p_event.Node().Peek()->Name()); });
    {
        EventConnection const dropped = Note("dropped");
        EventConnection moved = Note("replaced");
        moved = Note("moved");
        Pick();
    }
    EXPECT_THAT(heard, ElementsAre("picked", "wheel", "dropped", "moved"));
    node->Delegate().Raise(Events::PendingUpdateCompletedArgs(node, {{0, 0, 0}, {1, 1, 1}}));
    picked.Disconnect();
    picked.Disconnect();
    Pick();
    EXPECT_THAT(heard, ElementsAre("picked", "wheel", "dropped", "moved", "wheel", "wheel"));
    EXPECT_TRUE(any.IsConnected());
    node.Reset();
    EXPECT_FALSE(any.IsConnected());
}

TEST_F(EventDelegateTest, subscribersMayComeAndGoWhileAnEventIsRaised) {
    EventConnection late;
    EventConnection self;
    EventConnection third;
    self = On([&, mark = std::make_shared<int>(1)](PickedArgs const&) {
        third.Disconnect();
        self.Disconnect();
        late = Note("late");
        heard.push_back("self " + std::to_string(*mark));
    });
    EventConnection const second = Note("second");
    third = Note("third");
    Pick();
    Pick();
    EXPECT_THAT(heard, ElementsAre("self 1", "second", "second", "late"));
}

TEST_F(EventDelegateTest, whatACallbackThrowsIsReportedAndTheOthersStillHear) {
    node->SetName("wheel");
    EventConnection const bad = On([](PickedArgs const&) { throw std::runtime_error("the pump is off"); });
    EventConnection const odd = On([](PickedArgs const&) { throw 7; });
    EventConnection const good = Note("good");
    qordebug::CaptureScope const log(Utility::GetLogger());
    Pick();
    EXPECT_THAT(heard, ElementsAre("good"));
    EXPECT_THAT(log.texts(qordebug::severity::error),
        ElementsAre(testing::AllOf(HasSubstr("PickedArgs"), HasSubstr("wheel"), HasSubstr("the pump is off")),
            HasSubstr("no std::exception")));
}

TEST_F(EventDelegateTest, theNodeMayDieUnderItsOwnEvent) {
    EventConnection const drops = On([this](PickedArgs const& p_event) {
        node.Reset();
        heard.emplace_back(p_event.Node().Expired() ? "gone" : "alive");
    });
    EventConnection const after = Note("after");
    PickedArgs const event(node);
    node->Delegate().Raise(event);
    EXPECT_THAT(heard, ElementsAre("gone", "after"));
    EXPECT_FALSE(after.IsConnected());
}

TEST_F(EventDelegateTest, aCallbackMayOwnTheConnectionOfAnotherAndItsOwn) {
    auto const other = std::make_shared<EventConnection>(Note("other"));
    EventConnection const owner = On([other](PickedArgs const&) { other->Disconnect(); });
    auto const self = std::make_shared<EventConnection>();
    *self = On([self](PickedArgs const&) { self->Disconnect(); });
    Pick();
    Pick();
    EXPECT_THAT(heard, ElementsAre("other"));
    node.Reset();
    EXPECT_FALSE(owner.IsConnected());
}

} // namespace Qor::Chart::Model
