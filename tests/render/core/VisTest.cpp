#include "render/core/Vis.h"

#include "framework/core/Ref.h"
#include "framework/model/Group.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
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

using Test = Core::Ptr<TestVis>;

struct Hooks : VisHooks {
    using VisHooks::BoundingBox;
    using VisHooks::ClearNewPaths;
    using VisHooks::ClearPendingUpdateAttempt;
    using VisHooks::Draw;
    using VisHooks::HasNewPaths;
    using VisHooks::Hit;
    using VisHooks::PostUpdate;
    using VisHooks::SetHasActiveChildren;
    using VisHooks::Tracker;
    using VisHooks::Update;
};

Test MakeEnabled(int p_flags = 0) {
    static Model const model = Core::MakeNode<Chart::Model::Group>();
    return Core::MakeNode<TestVis>(p_flags, model);
}

std::string CallbacksOf(Vis const& p_vis) {
    std::ostringstream text;
    text << p_vis.Tracker().CallbacksModified();
    return text.str();
}

} // namespace

TEST(Vis, isBornValidInactiveAndDueForAFullUpdate) {
    for (int const flags : {0, 1, 2, 3, 4, 6, 7, 0xF8}) {
        auto const vis = Core::MakeNode<TestVis>(flags);
        for (auto const flag : {Vis::VisFlagContextRoot, Vis::VisFlagSecond, Vis::VisFlagSelfManaged})
            EXPECT_EQ(vis->IsFlagged(flag), (flags & flag) != 0) << flags;
        EXPECT_TRUE(vis->IsValid());
        EXPECT_FALSE(vis->IsActive() || vis->IsPending() || vis->IsPendingUpdateAttempt() || vis->IsDisabled());
        EXPECT_TRUE(vis->Tracker().ThisModified() && !vis->Tracker().OnlyCallbacksModified());
        EXPECT_EQ(CallbacksOf(*vis), "[111111]");
        EXPECT_FALSE(vis->GetPath().IsDefined() || vis->BoundingBox().IsDefined() || vis->OptimalPaths().Any());
        EXPECT_EQ(vis->Handled().Word(), 0U);
    }
}

TEST(Vis, movesBetweenItsStatesOnlyAsItShould) {
    struct Case {
        char const* events; ///< active, Inactive, invalid, pending, touch, completion
        char const* state; ///< as flags: active, valid, pending, attempt
        bool isActive;
        bool isFullyTouched;
    };
    for (auto const& [events, state, isActive, isFullyTouched] : {
             Case{"a", "v", true, false},
             Case{"aI", "v", false, false},
             Case{"ai", "", false, false},
             Case{"ait", "v", true, true},
             Case{"ap", "vp", false, false},
             Case{"apt", "vu", true, true},
             Case{"aptt", "vu", true, true},
             Case{"aptc", "v", true, true},
             Case{"apit", "vu", true, true},
             Case{"aptp", "vpu", false, true},
             Case{"apiI", "p", false, false},
             Case{"at", "v", true, false},
         }) {
        auto const vis = MakeEnabled();
        Hooks::Tracker(*vis).Reset();
        for (char const* event = events; *event != 0; ++event) {
            if (*event == 'a' || *event == 'I')
                vis->SetActive(*event == 'a');
            else if (*event == 'i')
                vis->SetInvalid();
            else if (*event == 'p')
                vis->SetPending();
            else if (*event == 'c')
                Hooks::ClearPendingUpdateAttempt(*vis);
            else
                vis->TouchThis(IModifiable::ModifiableTypeProperty, {}, IModifiable::RelationshipFurther, {}, {}, {});
        }
        std::string const actual = std::string(vis->IsValid() ? "v" : "") + (vis->IsPending() ? "p" : "") +
            (vis->IsPendingUpdateAttempt() ? "u" : "");
        EXPECT_EQ(actual, state) << events;
        EXPECT_EQ(vis->IsActive(), isActive) << events;
        EXPECT_EQ(CallbacksOf(*vis), isFullyTouched ? "[111111]" : "[000000]") << events;
        EXPECT_EQ(vis->Tracker().Modified(), std::string_view(events).find('t') != std::string_view::npos);
    }
}

TEST(Vis, isEnabledWhenItsModelIsAndNothingForbidsIt) {
    enum Source { None, Dead, Enabled, Disabled };
    struct Case {
        Source source;
        bool isPlainEnabled;
        bool isSelfManagedEnabled;
    };
    for (auto const& [source, isPlainEnabled, isSelfManagedEnabled] :
        {Case{None, false, true}, Case{Dead, false, true}, Case{Enabled, true, true}, Case{Disabled, false, false}}) {
        for (bool const isSelfManaged : {false, true}) {
            Model model = source == None ? Model() : Core::MakeNode<Chart::Model::Group>();
            auto const vis = Core::MakeNode<TestVis>(isSelfManaged ? Vis::VisFlagSelfManaged : 0, model);
            if (source == Dead)
                model.Reset();
            if (source == Disabled)
                model->SetEnabled(false);
            EXPECT_EQ(vis->IsEnabled(), isSelfManaged ? isSelfManagedEnabled : isPlainEnabled) << source;
            vis->SetDisabled(true);
            EXPECT_FALSE(vis->IsEnabled()) << source;
        }
    }
}

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
    EXPECT_EQ(child->log.back(), "1 0 1 enabled");
    EXPECT_EQ(parent->log.back(), "1 0 2 enabled");
    EXPECT_TRUE(parent->Tracker().Modified() && !parent->Tracker().ExplicitModified());
}

TEST(Vis, takingUpAHookIsReportedOnceUnderItsKind) {
    constexpr int types[] = {1000, 1000, 1003, 1005, 1001, 1000, 1000, 1004, 1004, 1004, 1000, 1000};
    for (int hook = 0; hook < 12; ++hook) {
        auto const callback = static_cast<HandledCallbacks>(hook);
        auto const vis = MakeEnabled();
        vis->log.clear();
        Hooks::Tracker(*vis).Reset();
        vis->UnregisterCB(callback);
        EXPECT_TRUE(vis->log.empty());
        vis->RegisterCB(callback);
        vis->RegisterCB(callback);
        EXPECT_TRUE(vis->IsHandled(callback) && vis->Handled().Word() == 1U << hook);
        vis->UnregisterCB(callback);
        vis->UnregisterCB(callback);
        EXPECT_FALSE(vis->IsHandled(callback));
        std::string const type = std::to_string(types[hook]);
        EXPECT_THAT(vis->log, testing::ElementsAre(type + " 0 0 callback", type + " 1 0 callback"));
        EXPECT_TRUE(vis->Tracker().ThisModified() && vis->Tracker().OnlyCallbacksModified());
        EXPECT_EQ(vis->Tracker().CallbacksModified().Any(), types[hook] > 1000);
    }
}

TEST(Vis, hooksOfTheUpdateHaveTheirOwnRegistration) {
    auto const vis = MakeEnabled();
    vis->log.clear();
    for (auto const hook : {HandledPostUpdate, HandledUpdateModel, HandledRefreshUpdateContext}) {
        Hooks::Tracker(*vis).Reset();
        vis->RegisterUpdateHook(hook);
        vis->RegisterUpdateHook(hook);
        EXPECT_TRUE(vis->IsHandled(hook));
        EXPECT_TRUE(vis->Tracker().ExplicitModified() && !vis->Tracker().OnlyCallbacksModified());
        vis->UnregisterUpdateHook(hook);
        vis->UnregisterUpdateHook(hook);
        EXPECT_FALSE(vis->IsHandled(hook));
        EXPECT_THAT(vis->log, testing::ElementsAre("1007 0 0 callback", "1007 1 0 callback"));
        vis->log.clear();
    }
    qordebug::CaptureScope const capture(Utility::GetLogger());
    for (auto const hook : {12, 13, 14, 15})
        vis->RegisterCB(static_cast<HandledCallbacks>(hook));
    vis->RegisterUpdateHook(HandledDraw);
    EXPECT_EQ(capture.texts(qordebug::severity::ensure).size(), 5U);
    EXPECT_EQ(vis->Handled().Word(), 0U);
    EXPECT_TRUE(vis->log.empty());
}

TEST(Vis, hooksOutOfRangeAreRefused) {
    auto const vis = MakeEnabled();
    for (int const hook : {-1, 16, 1003}) {
        auto const callback = static_cast<HandledCallbacks>(hook);
        for (std::function<void()> const& call : std::vector<std::function<void()>>{
                 [&] { (void)vis->IsHandled(callback); },
                 [&] { vis->RegisterCB(callback); },
                 [&] { vis->UnregisterCB(callback); },
             })
            EXPECT_THAT(call,
                testing::Throws<std::out_of_range>(
                    testing::Property(&std::out_of_range::what, testing::StrEq("invalid bitset<N> position"))));
    }
}

TEST(Vis, anUnwrittenHookIsReportedWithItsSignature) {
    auto const vis = MakeEnabled();
    char nothing = 0; // the hooks do not look at what they are given
    auto& update = reinterpret_cast<UpdateContext&>(nothing);
    auto& draw = reinterpret_cast<DrawContext&>(nothing);
    auto& point = reinterpret_cast<PickPoint&>(nothing);
    auto& hit = reinterpret_cast<HitResult&>(nothing);
    Types::BoundingBox_Base<double> const box({1, 2, 3}, {4, 5, 6});
    struct Case {
        char const* name;
        std::function<bool()> call; ///< true when the answer is right
    };
    for (auto const& [name, call] : std::vector<Case>{
             {"DoUpdate", [&] { return Hooks::Update(*vis, update) == NodeStatusInvalid; }},
             {"DoPostUpdate", [&] { return Hooks::PostUpdate(*vis, update), true; }},
             {"DoDraw", [&] { return Hooks::Draw(*vis, draw) == 0; }},
             {"DoHit", [&] { return Hooks::Hit(*vis, draw, point, hit); }},
             {"DoBoundingBox", [&] { return Hooks::BoundingBox(*vis, box) == box; }},
         }) {
        qordebug::CaptureScope const capture(Utility::GetLogger());
        EXPECT_TRUE(call()) << name;
        EXPECT_THAT(capture.texts(qordebug::severity::sentry),
            testing::ElementsAre(
                testing::ContainsRegex("Qor::Chart::Render::Vis::" + std::string(name) + "\\(.* @line[0-9]+$")));
    }
}

TEST(ActiveIterator, meetsTheActiveValidAndSettledChildrenOnly) {
    for (int pattern = 0; pattern < 4 * 4 * 4 * 4; ++pattern) {
        auto const parent = MakeEnabled();
        std::vector<Core::Ptr<Vis>> expected;
        for (int child = 0; child < 4; ++child) {
            int const state = pattern >> (child * 2) & 3;
            auto const vis = MakeEnabled();
            vis->SetActive(state != 1);
            if (state == 2)
                vis->SetInvalid();
            if (state == 3)
                vis->SetPending();
            parent->Add(vis);
            if (state == 0)
                expected.push_back(vis);
        }
        std::vector<Core::Ptr<Vis>> met;
        for (auto child = parent->ActiveBegin(); child != parent->ActiveEnd(); child++) {
            EXPECT_TRUE(child->Get()->IsActive());
            met.push_back(*child);
        }
        EXPECT_EQ(met, expected);
        EXPECT_EQ(parent->ActiveBegin() == parent->ActiveEnd(), expected.empty());
        for (std::size_t child = 0; child < expected.size(); ++child)
            EXPECT_EQ(*(parent->ActiveBegin() + child), expected[child]);
        EXPECT_TRUE(parent->ActiveEmpty()) << "only an update tells";
    }
    auto const vis = MakeEnabled();
    Hooks::SetHasActiveChildren(*vis, true);
    EXPECT_FALSE(vis->ActiveEmpty());
}

TEST(Vis, recordsChildrenOfItsModelAndOfItsOwnChildren) {
    Model const model = Core::MakeNode<Chart::Model::Group>();
    Model const modelChild = Core::MakeNode<Chart::Model::Group>();
    auto const vis = Core::MakeNode<TestVis>(0, model);
    auto const child = MakeEnabled();
    vis->Add(child);
    Hooks::Tracker(*vis).Reset();
    model->Add(modelChild);
    auto record = vis->Tracker().BeginAdded();
    ASSERT_NE(record, vis->Tracker().EndAdded());
    EXPECT_EQ(record->node, WeakPtr<Node>(modelChild));
    EXPECT_TRUE(record->isModelNode);
    auto const grandchild = MakeEnabled();
    child->Add(grandchild);
    record = ++vis->Tracker().BeginAdded();
    ASSERT_NE(record, vis->Tracker().EndAdded());
    EXPECT_EQ(record->node, WeakPtr<Node>(grandchild));
    EXPECT_FALSE(record->isModelNode);
    model->Remove(modelChild);
    EXPECT_EQ(++vis->Tracker().BeginAdded(), vis->Tracker().EndAdded());
}

TEST(Vis, aNewNodeLeavesAMarkOnAllAboveIt) {
    auto const root = MakeEnabled();
    auto const middle = MakeEnabled();
    root->Add(middle);
    middle->SetDisabled(true);
    for (auto const& vis : {root, middle})
        Hooks::ClearNewPaths(*vis);
    middle->Touch();
    EXPECT_FALSE(Hooks::HasNewPaths(*root) || Hooks::HasNewPaths(*middle));
    auto const leaf = MakeEnabled();
    middle->Add(leaf);
    EXPECT_TRUE(Hooks::HasNewPaths(*root) && Hooks::HasNewPaths(*middle) && Hooks::HasNewPaths(*leaf));
}

TEST(Vis, dumpsItsStateOrItsNameForTheMiddleOfAMessage) {
    auto const vis = MakeEnabled(Vis::VisFlagContextRoot);
    vis->SetLayer(-3);
    vis->SetActive(true);
    std::ostringstream name;
    std::ostringstream state;
    vis->Dump(name, Core::Verbosity::Quiet, 4);
    vis->Dump(state, Core::Verbosity::Verbose, 0);
    EXPECT_EQ(name.str(), "TestVis \"\" #" + std::to_string(vis->Id()));
    EXPECT_THAT(state.str(), testing::StartsWith(name.str() + " path (undefined) layer -3 flags 49 active box "));
}

} // namespace Qor::Chart::Render
