#include "render/loops/UpdateLoop.h"

#include "tests/render/support/Script.h"
#include "framework/core/Exceptions.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

/// What the random editor and the saboteur do not see: cycles and a host that fails.
namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;
using ::testing::HasSubstr;

struct UpdateLoopTest : ::testing::Test {
    /// n0(n1(n3) n2), updated once.
    UpdateLoopTest() {
        for (int number = 0; number < 4; ++number)
            models.push_back(Core::MakeNode<ScriptModel>(number));
        models[0]->Add(models[1]);
        models[0]->Add(models[2]);
        models[1]->Add(models[3]);
        root = stage.generator(models[0]);
        stage.Update(root);
    }
    void Answers(int p_number, Answer p_answer) {
        models[p_number]->script.answers[HookUpdate] = p_answer;
        models[p_number]->Changed();
    }

    Stage stage;
    std::vector<Core::Ptr<ScriptModel>> models;
    Core::Ptr<Vis> root;
};

TEST_F(UpdateLoopTest, aHostThatThrowsOnAReportDoesNotStopTheUpdate) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    stage.dispatcher.throwsOnException = true;
    Answers(1, Answer::ThrowInt);
    Answers(2, Answer::ThrowInt);
    EXPECT_EQ(stage.Update(root).updated, 2U);
    EXPECT_EQ(log.texts(qordebug::severity::error).size(), 2U);
}

TEST_F(UpdateLoopTest, aCycleIsRefusedAndTheTreeCanBeMended) {
    Core::Ptr<Vis> const leaf(models[3]->uses.front());
    leaf->Add(root);
    auto const update = [&] {
        for (int twice = 0; twice < 2; ++twice) { // the first round makes the root active
            models[3]->Changed();
            stage.Update(root);
        }
    };
    EXPECT_THAT(update, ::testing::ThrowsMessage<Core::CyclicDependencyFoundExcept>(HasSubstr("n0")));
    EXPECT_EQ(stage.agl.Depths(), Ogl::StackDepths());
    leaf->Remove(root);
    models[3]->Changed();
    stage.Update(root);
    EXPECT_TRUE(leaf->IsActive());
}

} // namespace
} // namespace Qor::Chart::Render
