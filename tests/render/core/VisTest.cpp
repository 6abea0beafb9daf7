#include "render/core/Vis.h"

#include "framework/core/Ref.h"
#include "framework/model/Group.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <sstream>

namespace Qor::Chart::Render {

namespace {

using Core::IModifiable;
using Core::Node;
using Core::WeakPtr;
using Model = Core::Ptr<Chart::Model::ModelNode>;

class TestVis : public Vis {
public:
    explicit TestVis(int p_flags = 0, Model const& p_model = {}) : Vis(p_flags) { _model.Attach(p_model); }

    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship, WeakPtr<Node> const& p_node,
        std::string const& p_name, boost::any const& p_data) override {
        std::ostringstream text;
        text << p_type << ' ' << p_change << ' ' << p_relationship << ' ' << p_name << (p_node.IsEmpty() ? "" : " node")
             << (p_data.empty() ? "" : " data");
        log.push_back(text.str());
        Vis::TouchThis(p_type, p_change, p_relationship, p_node, p_name, p_data);
    }
    WeakPtr<Chart::Model::ModelNode> SourceModel() const override { return _model.Get(); }

    using Vis::RegisterCB;
    using Vis::RegisterUpdateHook;
    using Vis::UnregisterCB;
    using Vis::UnregisterUpdateHook;

    std::vector<std::string> log;

private:
    Core::WeakRef<Chart::Model::ModelNode> _model{*this, "model"};
};

struct Hooks : VisHooks {
    using VisHooks::Tracker;
};

Core::Ptr<TestVis> MakeEnabled() {
    static Model const model = Core::MakeNode<Chart::Model::Group>();
    return Core::MakeNode<TestVis>(0, model);
}

} // namespace

TEST(Vis, aDisabledNodesChangesReachOthersAsFurther) {
    Model const model = Core::MakeNode<Chart::Model::Group>();
    auto const parent = MakeEnabled();
    auto const child = Core::MakeNode<TestVis>(0, model);
    parent->Add(child);
    for (bool const isDisabled : {false, true}) {
        child->SetDisabled(isDisabled);
        for (auto const& vis : {parent, child})
            Hooks::Tracker(*vis).Reset();
        child->Touch();
        EXPECT_EQ(parent->log.back(), isDisabled ? "1 0 2 " : "1 0 1 ");
        EXPECT_TRUE(parent->Tracker().Modified());
        EXPECT_EQ(parent->Tracker().ExplicitModified(), !isDisabled);
        EXPECT_TRUE(child->Tracker().ThisModified()) << "the node itself records what it got";
        EXPECT_FALSE(child->Tracker().OnlyCallbacksModified());
    }
    child->SetDisabled(false);
    Hooks::Tracker(*parent).Reset();
    model->SetEnabled(false);
    EXPECT_EQ(parent->log.back(), "1 0 2 enabled");
    EXPECT_TRUE(parent->Tracker().Modified() && !parent->Tracker().ExplicitModified());
}

TEST(Vis, takingUpAHookIsReportedOnceUnderItsKind) {
    // Hook 12 is not in use; the last three are hooks of the update.
    constexpr int types[] = {
        1000, 1000, 1003, 1005, 1001, 1000, 1000, 1004, 1004, 1004, 1000, 1000, 0, 1007, 1007, 1007};
    for (int hook = 0; hook < 16; hook += hook == 11 ? 2 : 1) {
        bool const isUpdate = hook > 12;
        auto const callback = static_cast<HandledCallbacks>(hook);
        auto const vis = MakeEnabled();
        vis->log.clear();
        Hooks::Tracker(*vis).Reset();
        for (int twice = 0; twice < 2; ++twice)
            isUpdate ? vis->RegisterUpdateHook(callback) : vis->RegisterCB(callback);
        EXPECT_TRUE(vis->IsHandled(callback) && vis->Handled().Word() == 1U << hook);
        for (int twice = 0; twice < 2; ++twice)
            isUpdate ? vis->UnregisterUpdateHook(callback) : vis->UnregisterCB(callback);
        std::string const type = std::to_string(types[hook]);
        EXPECT_THAT(vis->log, testing::ElementsAre(type + " 0 0 callback", type + " 1 0 callback"));
        EXPECT_TRUE(vis->Tracker().ThisModified());
        EXPECT_EQ(vis->Tracker().OnlyCallbacksModified(), !isUpdate);
        EXPECT_EQ(vis->Tracker().CallbacksModified().Any(), types[hook] > 1000 && !isUpdate);
    }
}

TEST(Vis, hooksOfOneKindAreRefusedByTheOther) {
    auto const vis = MakeEnabled();
    qordebug::CaptureScope const capture(Utility::GetLogger());
    for (auto const hook : {12, 13, 14, 15})
        vis->RegisterCB(static_cast<HandledCallbacks>(hook));
    vis->RegisterUpdateHook(HandledDraw);
    EXPECT_EQ(capture.texts(qordebug::severity::ensure).size(), 5U);
    EXPECT_EQ(vis->Handled().Word(), 0U);
}

TEST(Vis, hooksAndPassesOutOfRangeAreRefused) {
    auto const vis = MakeEnabled();
    CallbackTypeBitSet set;
    for (int const code : {-1, 16, 1000, 1007, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        auto const hook = static_cast<HandledCallbacks>(code);
        for (std::function<void()> const& call :
            std::vector<std::function<void()>>{[&] { (void)vis->IsHandled(hook); }, [&] { vis->RegisterCB(hook); },
                [&] { vis->UnregisterCB(hook); }, [&] { set.Set(code); }, [&] { (void)set.Has(code); }})
            EXPECT_THAT(call,
                testing::Throws<std::out_of_range>(
                    testing::Property(&std::out_of_range::what, testing::StrEq("invalid bitset<N> position"))));
    }
}

} // namespace Qor::Chart::Render
