#include "render/events/EventHandler.h"

#include "render/core/Vis.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace Qor::Chart::Render {
namespace {

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

TEST(EventHandlerTest, connectingNotifiesOnceEachWayAndEventsOutOfRangeThrow) {
    auto const node = Core::MakeNode<Listener>();
    for (int const event : {14, -1}) {
        auto const name = static_cast<EventHandler::EventName>(event);
        EXPECT_THAT([&] { (void)node->IsEventDefined(name); },
            ::testing::ThrowsMessage<std::out_of_range>("invalid bitset<N> position"));
        EXPECT_THROW(node->Listen(name), std::out_of_range);
        EXPECT_THROW(node->Ignore(name), std::out_of_range);
    }
    for (bool const isDefined : {true, false}) {
        for (int time = 0; time < 2; ++time)
            isDefined ? node->Listen(EventHandler::EventClick) : node->Ignore(EventHandler::EventClick);
        EXPECT_EQ(node->IsEventDefined(EventHandler::EventClick), isDefined);
        EXPECT_FALSE(node->IsEventDefined(EventHandler::EventDrop));
    }
    EXPECT_THAT(node->touches, ::testing::ElementsAre(Notice(1000, 0, 0, "callback"), Notice(1000, 1, 0, "callback")));
}

} // namespace
} // namespace Qor::Chart::Render
