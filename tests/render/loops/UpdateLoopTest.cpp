#include "render/loops/UpdateLoop.h"

#include "tests/render/support/Script.h"
#include "framework/core/Exceptions.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::StartsWith;
using Counts = Stage::Counts;

class UpdateLoopTest : public ::testing::Test {
protected:
    /// n0(n1(n3) n2), updated once.
    void SetUp() override {
        for (int number = 0; number < 4; ++number)
            _models.push_back(Core::MakeNode<ScriptModel>(number));
        _models[0]->Add(_models[1]);
        _models[0]->Add(_models[2]);
        _models[1]->Add(_models[3]);
        _root = _stage.generator(_models[0]);
        _first = _stage.Update(_root);
    }
    ScriptVis& Node(int p_number) { return *_models[p_number]->uses.front(); }
    void Change(int p_number, std::function<void(Script&)> const& p_change) {
        p_change(_models[p_number]->script);
        _models[p_number]->Changed();
    }
    std::vector<std::string> ChildNames() const {
        std::vector<std::string> names;
        for (Core::Ptr<Vis> const& child : *_root)
            names.push_back(child->Name());
        return names;
    }

    Stage _stage;
    std::vector<Core::Ptr<ScriptModel>> _models;
    Core::Ptr<Vis> _root;
    Counts _first;
};

TEST_F(UpdateLoopTest, aChangeCostsTheWayToItAndNothingChangedCostsOneVisit) {
    EXPECT_EQ(_first, (Counts{4, 4}));
    EXPECT_EQ(_stage.Update(_root), (Counts{1, 0}));
    Change(3, [](Script& p_script) { p_script.high = 9; });
    EXPECT_EQ(_stage.Update(_root), (Counts{4, 1})) << "n2 is looked at, n0 and n1 run no update hook";
    EXPECT_EQ(_root->BoundingBox(), Box({0, 0, 0}, {9, 1, 1}));
}

TEST_F(UpdateLoopTest, framesAndNodesAreLoggedOnlyWhenAskedFor) {
    qordebug::CaptureScope const log(Utility::GetLogger(), {"Gtm", "UpdateLoop"});
    Change(3, [](Script&) {});
    _stage.Update(_root);
    EXPECT_THAT(log.texts("Gtm"),
        ElementsAre(
            "Begin Update ..................................", "End Update .................................."));
    EXPECT_THAT(log.texts("UpdateLoop"), Contains(StartsWith("\ttype-path: ")).Times(3));
    EXPECT_THAT(log.texts("UpdateLoop"), Contains(HasSubstr("\tname-path: ")).Times(3));

    qordebug::CaptureScope const quiet(Utility::GetLogger(), {"Gtm", "UpdateLoop"});
    _models[0]->SetEnabled(false);
    EXPECT_EQ(_stage.Update(_root), (Counts{0, 0}));
    EXPECT_TRUE(quiet.empty());
}

TEST_F(UpdateLoopTest, aPendingNodeKeepsWhatItHadAndReportsItsCompletionOnce) {
    Change(1, [](Script& p_script) {
        p_script.answers[HookUpdate] = Answer::Pending;
        p_script.high = 20;
    });
    _models[3]->SetEnabled(false);
    EXPECT_EQ(_stage.Update(_root), (Counts{3, 1}));
    EXPECT_TRUE(Node(1).IsPending());
    EXPECT_EQ(Node(1).BoundingBox(), Box({0, 0, 0}, {1, 1, 1}));
    EXPECT_THAT(_stage.dispatcher.events, IsEmpty());

    Change(1, [](Script&) {});
    _stage.Update(_root);
    EXPECT_TRUE(Node(1).IsPending());
    EXPECT_FALSE(Node(1).IsPendingUpdateAttempt());
    EXPECT_THAT(_stage.dispatcher.events, IsEmpty()) << "tried again, and still pending";

    Change(1, [](Script& p_script) { p_script.answers = {}; });
    _stage.Update(_root);
    ASSERT_EQ(_stage.dispatcher.events.size(), 1U);
    EXPECT_EQ(_stage.dispatcher.events[0], Core::WeakPtr<Model::ModelNode>(_models[1]));
    EXPECT_EQ(Node(1).BoundingBox(), Box({0, 0, 0}, {20, 1, 1}));
    EXPECT_FALSE(Node(3).IsActive());

    Node(2).SetPending();
    Change(2, [](Script& p_script) { p_script.answers[HookUpdate] = Answer::Invalid; });
    _stage.Update(_root);
    EXPECT_EQ(_stage.dispatcher.events.size(), 2U) << "from pending to invalid is a completion too";
}

TEST_F(UpdateLoopTest, anInvalidNodeIsWarnedOfOnceAndRetriedWhenTouched) {
    Change(2, [](Script& p_script) { p_script.answers[HookUpdate] = Answer::Invalid; });
    _stage.Update(_root);
    EXPECT_THAT(_stage.dispatcher.warnings,
        ElementsAre(Pair(2,
            "The last change on this node left the node in an invalid state. "
            "Please read any earlier error messages or verify the last change "
            "and correct the problem, the node will revert to a valid state "
            "once the problem is corrected.\n")));
    EXPECT_EQ(_stage.Update(_root), (Counts{1, 0}));
    EXPECT_FALSE(Node(2).IsActive());
    EXPECT_TRUE(Node(1).IsActive());

    _models[2]->script.answers = {};
    Node(2).Toggle(HandledHit); // even a change of passes brings it back
    EXPECT_EQ(_stage.Update(_root), (Counts{3, 1}));
    EXPECT_TRUE(Node(2).IsActive());
    EXPECT_EQ(_stage.dispatcher.warnings.size(), 1U);
}

TEST_F(UpdateLoopTest, aChangeOfPassesRunsNoHooksButGathersAgain) {
    _stage.world.calls = {};
    Node(3).Toggle(HandledDraw);
    Node(1).Toggle(HandledBoundingBox);
    EXPECT_EQ(_stage.Update(_root), (Counts{4, 0}));
    EXPECT_EQ(_stage.world.calls[HookUpdateModel] + _stage.world.calls[HookUpdate], 0U);
    EXPECT_FALSE(Node(3).OptimalPaths().Has(CallbackDraw));
    EXPECT_TRUE(Node(3).OptimalPaths().Has(CallbackHit));

    Node(3).Toggle(HandledPostUpdate); // a hook of the update is a change of another kind
    EXPECT_EQ(_stage.Update(_root), (Counts{4, 2}));
}

TEST_F(UpdateLoopTest, aNodeIsDrawnInTheOrderOfItsClampedLayer) {
    struct Case {
        int first, second;
        bool isSwapped;
    };
    for (Case const& layers : {Case{1, 0, true}, {0, 0, false}, {0, -1, true}, {32000, 30001, false},
             {30001, 30000, true}, {-30000, -32000, false}, {-29999, -30000, true}, {30001, 32000, false}}) {
        SCOPED_TRACE(::testing::Message() << layers.first << " before " << layers.second);
        _models.clear();
        SetUp();
        Change(1, [&](Script& p_script) { p_script.layer = layers.first; });
        Change(2, [&](Script& p_script) { p_script.layer = layers.second; });
        _stage.Update(_root);
        if (layers.isSwapped)
            EXPECT_THAT(ChildNames(), ElementsAre("n2", "n1"));
        else
            EXPECT_THAT(ChildNames(), ElementsAre("n1", "n2"));
    }
}

TEST_F(UpdateLoopTest, optimalPathsSayWhichPassesHaveWork) {
    struct Case {
        char const* what;
        std::uint16_t handled;
        int flags;
        bool hasChild; ///< one that handles the base draw alone
        char const* expected; ///< hit, hit overlay, draw, draw overlay, highlight, highlight overlay
    };
    constexpr std::uint16_t scene = Bit(HandledHit) | Bit(HandledDraw) | Bit(HandledHighlight);
    constexpr std::uint16_t overlay = Bit(HandledHitOverlay) | Bit(HandledDrawOverlay) | Bit(HandledHighlightOverlay);
    Case const cases[] = {
        {"no box: only the overlay", scene | overlay, 0, false, "[010101]"},
        {"a box", scene | Bit(HandledBoundingBox), 0, false, "[101010]"},
        {"a context root needs no box", scene, Vis::VisFlagContextRoot, false, "[101010]"},
        {"a child's pass", Bit(HandledHitOverlay), 0, true, "[011000]"},
        {"own and child's passes", Bit(HandledHit), 0, true, "[101000]"},
        {"nothing", Bit(HandledUpdate), 0, false, "[000000]"},
    };
    for (Case const& the : cases) {
        SCOPED_TRACE(the.what);
        Script parent;
        parent.handled = the.handled;
        parent.flags = the.flags;
        Script child;
        child.low = child.high; // a point
        child.handled = Bit(HandledDraw) | Bit(HandledBoundingBox);
        auto const model = Core::MakeNode<ScriptModel>(10, parent);
        if (the.hasChild)
            model->Add(Core::MakeNode<ScriptModel>(11, child));
        _models[0]->Add(model);
        _stage.Update(_root);
        std::ostringstream text;
        text << model->uses.front()->OptimalPaths();
        EXPECT_EQ(text.str(), the.expected);
        _models[0]->Remove(model);
        _stage.Update(_root);
    }
}

TEST_F(UpdateLoopTest, passesOfASubtreeThatIsNotEnteredStillCount) {
    Script all;
    all.handled = AllHooks & static_cast<std::uint16_t>(~(Bit(HandledHit) | Bit(HandledHitOverlay)));
    auto const top = Core::MakeNode<ScriptModel>(10, all);
    top->Add(_models[1]);
    top->Add(_models[2]);
    Core::Ptr<Vis> const root = _stage.generator(top);
    _stage.Update(root);
    _models[2]->SetEnabled(false);
    EXPECT_EQ(_stage.Update(root), (Counts{2, 0})) << "n1 is not entered, n2 not even met";
    EXPECT_TRUE(root->OptimalPaths().Has(CallbackHitOverlay));
    _models[1]->SetEnabled(false);
    _stage.Update(root);
    EXPECT_FALSE(root->OptimalPaths().Has(CallbackHitOverlay));
}

TEST_F(UpdateLoopTest, aContextRootDoesNotEnlargeTheBoxAroundIt) {
    Script pane;
    pane.flags = Vis::VisFlagContextRoot;
    pane.low = pane.high = 500;
    auto const model = Core::MakeNode<ScriptModel>(10, pane);
    _models[0]->Add(model);
    _stage.Update(_root);
    EXPECT_EQ(model->uses.front()->BoundingBox(), Box({500, 0, 0}, {500, 1, 1}));
    EXPECT_EQ(_root->BoundingBox(), Box({0, 0, 0}, {1, 1, 1}));
}

TEST_F(UpdateLoopTest, childrenFollowTheModelEvenWhenItsNodesDiedBefore) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    _models[0]->Add(Core::MakeNode<UnknownModel>(8));
    Core::WeakPtr<ScriptModel> const dead = _models[1];
    _models[0]->Remove(_models[1]);
    _models.erase(_models.begin() + 1);
    ASSERT_TRUE(dead.Expired());
    _stage.Update(_root);
    EXPECT_THAT(ChildNames(), ElementsAre("n2"));
    EXPECT_THAT(log.texts("cerr"), ElementsAre("Factory for \"UnknownModel\" is not registered!"));
    _models[0]->Clear();
    EXPECT_EQ(_stage.Update(_root), (Counts{1, 1}));
    EXPECT_TRUE(_root->Empty());
    EXPECT_TRUE(_root->ActiveEmpty());
    EXPECT_THAT(log.texts(qordebug::severity::ensure), IsEmpty());
}

TEST_F(UpdateLoopTest, aCycleIsRefusedAndTheTreeCanBeMended) {
    Core::Ptr<Vis> const leaf(&Node(3));
    leaf->Add(_root);
    try {
        _stage.Update(_root); // the first round makes the root active
        _models[3]->Changed();
        _stage.Update(_root);
        ADD_FAILURE() << "the cycle was not noticed";
    } catch (Core::CyclicDependencyFoundExcept const& found) {
        EXPECT_THAT(found.what(), HasSubstr("n0"));
    }
    EXPECT_EQ(_stage.agl.Depths(), Ogl::StackDepths());
    leaf->Remove(_root);
    _models[3]->Changed();
    _stage.Update(_root);
    EXPECT_TRUE(leaf->IsActive());
}

TEST_F(UpdateLoopTest, aNodeThatFailedStaysSoWhateverItsOwnChildrenReport) {
    for (Hook const hook : {HookUpdateModel, HookRefresh, HookBox, HookPost}) {
        SCOPED_TRACE(hook);
        Change(1, [&](Script& p_script) {
            p_script.answers = {};
            p_script.answers[hook] = Answer::Throw;
        });
        _models[1]->Add(Core::MakeNode<ScriptModel>(50 + hook));
        Change(3, [](Script& p_script) { ++p_script.grown; });
        _stage.Update(_root);
        EXPECT_FALSE(Node(1).IsValid());
        EXPECT_FALSE(Node(1).IsActive());
    }
}

TEST_F(UpdateLoopTest, aHostThatThrowsOnAReportDoesNotStopTheUpdate) {
    class Thrower : public RecordingDispatcher {
        void ReportException(std::string const&, std::string const&) override { throw std::runtime_error("no"); }
    } thrower;
    qordebug::CaptureScope const log(Utility::GetLogger());
    for (int const node : {1, 2})
        Change(node, [](Script& p_script) { p_script.answers[HookUpdate] = Answer::ThrowInt; });
    unsigned visited = 0;
    unsigned updated = 0;
    UpdateLoop()(_root,
        UpdateContext(_stage.handle, _stage.resource, _stage.imageCache, _stage.schema, _stage.numberFormat,
            _stage.registrar, _stage.geometry, _stage.symbols, _stage.generator, thrower, _stage.units,
            Core::Verbosity::Quiet, _stage.capabilities),
        visited, updated);
    EXPECT_EQ(updated, 2U);
    EXPECT_EQ(log.texts(qordebug::severity::error).size(), 2U);
}

} // namespace
} // namespace Qor::Chart::Render
