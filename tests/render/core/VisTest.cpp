#include "render/core/Vis.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Render {
namespace {

class TestVis : public Vis {
public:
    TestVis() : Vis(VisFlagSelfManaged) {}

    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
        Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) override {
        log.push_back(std::to_string(p_type) + ' ' + std::to_string(p_change) + ' ' + p_name);
        Vis::TouchThis(p_type, p_change, p_relationship, p_node, p_name, p_data);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return {}; }

    using Vis::RegisterCB;
    using Vis::RegisterUpdateHook;
    using Vis::UnregisterCB;
    using Vis::UnregisterUpdateHook;

    std::vector<std::string> log;
};

struct Hooks : VisHooks {
    using VisHooks::Tracker;
};

TEST(Vis, takingUpAHookIsReportedOnceUnderItsKind) {
    // Hook 12 is not in use; the last three are hooks of the update.
    constexpr int types[] = {
        1000, 1000, 1003, 1005, 1001, 1000, 1000, 1004, 1004, 1004, 1000, 1000, 0, 1007, 1007, 1007};
    for (int hook = 0; hook < 16; hook += hook == 11 ? 2 : 1) {
        bool const isUpdate = hook > 12;
        auto const callback = static_cast<HandledCallbacks>(hook);
        auto const vis = Core::MakeNode<TestVis>();
        Hooks::Tracker(*vis).Reset();
        for (int twice = 0; twice < 2; ++twice)
            isUpdate ? vis->RegisterUpdateHook(callback) : vis->RegisterCB(callback);
        EXPECT_TRUE(vis->IsHandled(callback) && vis->Handled().Word() == 1U << hook);
        for (int twice = 0; twice < 2; ++twice)
            isUpdate ? vis->UnregisterUpdateHook(callback) : vis->UnregisterCB(callback);
        std::string const type = std::to_string(types[hook]);
        EXPECT_THAT(vis->log, testing::ElementsAre(type + " 0 callback", type + " 1 callback"));
        EXPECT_EQ(vis->Tracker().OnlyCallbacksModified(), !isUpdate);
        EXPECT_EQ(vis->Tracker().CallbacksModified().Any(), types[hook] > 1000 && !isUpdate);
    }
}

} // namespace
} // namespace Qor::Chart::Render
