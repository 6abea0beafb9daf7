#include "render/events/EventHandler.h"

#include "render/core/Vis.h"
#include "render/events/EventInformation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace Qor::Chart::Render {
namespace {

using ::testing::ElementsAre;
using Notice = std::tuple<int, int, int, std::string>;

class Listener : public Vis, public EventHandler {
public:
    Listener() : Vis(VisFlagSelfManaged) {}
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return {}; }
    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
        Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) override {
        touches.emplace_back(p_type, p_change, p_relationship, p_name);
        Vis::TouchThis(p_type, p_change, p_relationship, p_node, p_name, p_data);
    }
    void Listen(EventName p_event) { Connect(*this, p_event); }
    void Ignore(EventName p_event) { Disconnect(*this, p_event); }

    std::vector<Notice> touches;
};

TEST(EventHandlerTest, connectingNotifiesOnceEachWay) {
    auto const node = Core::MakeNode<Listener>();
    for (int event = 0; event < EventHandler::EventCount; ++event)
        EXPECT_FALSE(node->IsEventDefined(static_cast<EventHandler::EventName>(event)));
    node->Listen(EventHandler::EventClick);
    node->Listen(EventHandler::EventClick);
    EXPECT_TRUE(node->IsEventDefined(EventHandler::EventClick));
    EXPECT_FALSE(node->IsEventDefined(EventHandler::EventDrop));
    EventHandler const& handler = *node;
    EventHandler const copy(handler);
    node->Ignore(EventHandler::EventClick);
    node->Ignore(EventHandler::EventClick);
    EXPECT_FALSE(node->IsEventDefined(EventHandler::EventClick));
    EXPECT_TRUE(copy.IsEventDefined(EventHandler::EventClick));
    EXPECT_THAT(node->touches, ElementsAre(Notice(1000, 0, 0, "callback"), Notice(1000, 1, 0, "callback")));
}

TEST(EventHandlerTest, eventsOutOfRangeThrow) {
    auto const node = Core::MakeNode<Listener>();
    for (int const event : {14, -1, 1000}) {
        auto const name = static_cast<EventHandler::EventName>(event);
        EXPECT_THAT([&] { (void)node->IsEventDefined(name); },
            ::testing::ThrowsMessage<std::out_of_range>("invalid bitset<N> position"));
        EXPECT_THROW(node->Listen(name), std::out_of_range);
        EXPECT_THROW(node->Ignore(name), std::out_of_range);
    }
    EXPECT_TRUE(node->touches.empty());
}

TEST(EventHandlerTest, answersHaveTheNumbersThatHostsKnow) {
    EXPECT_EQ(Event::Result(), Event::Ignored);
    EXPECT_EQ(std::pair(int(Event::Ignored.status), int(Event::Ignored.propagation)), std::pair(2, 1));
    EXPECT_EQ(std::pair(int(Event::Consumed.status), int(Event::Consumed.propagation)), std::pair(1, 2));
}

} // namespace
} // namespace Qor::Chart::Render
