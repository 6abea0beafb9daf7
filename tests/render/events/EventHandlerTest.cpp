#include "render/events/EventHandler.h"

#include "render/core/Vis.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Render {
namespace {

class Listener : public Vis, public EventHandler {
public:
    Listener() : Vis(VisFlagSelfManaged) {}
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return {}; }
    void TouchThis(ModifiableType p_type, Change p_change, Relationship, Core::WeakPtr<Core::Node> const&,
        std::string const& p_name, boost::any const&) override {
        touches.push_back(std::to_string(p_type) + ' ' + std::to_string(p_change) + ' ' + p_name);
    }
    using EventHandler::Connect;
    using EventHandler::Disconnect;

    std::vector<std::string> touches;
};

TEST(EventHandlerTest, connectingNotifiesOnceEachWay) {
    auto const node = Core::MakeNode<Listener>();
    for (int time = 0; time < 2; ++time)
        node->Connect(*node, EventHandler::EventClick);
    EXPECT_TRUE(node->IsEventDefined(EventHandler::EventClick) && !node->IsEventDefined(EventHandler::EventDrop));
    for (int time = 0; time < 2; ++time)
        node->Disconnect(*node, EventHandler::EventClick);
    EXPECT_FALSE(node->IsEventDefined(EventHandler::EventClick));
    EXPECT_THAT(node->touches, ::testing::ElementsAre("1000 0 callback", "1000 1 callback"));
}

} // namespace
} // namespace Qor::Chart::Render
