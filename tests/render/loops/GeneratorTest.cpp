#include "render/loops/Generator.h"

#include "tests/render/support/Script.h"
#include "framework/core/Exceptions.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// A tree as text: "n0(n1 n2(n3))".
std::string TextOf(Vis const& p_vis) {
    std::string text = p_vis.Name();
    char const* separator = "(";
    for (Core::Ptr<Vis> const& child : p_vis)
        text += std::exchange(separator, " ") + TextOf(*child);
    return p_vis.Empty() ? text : text + ")";
}

class GeneratorTest : public ::testing::Test {
protected:
    /// n0(n1(n3 n4) n2), with the class or flags of n1 as given.
    template <class Type = ScriptModel>
    Core::Ptr<ScriptModel> MakeModel(Script const& p_first = {}) {
        std::vector<Core::Ptr<ScriptModel>> nodes;
        for (int number = 0; number < 5; ++number) {
            nodes.push_back(number == 1 ? Core::Ptr<ScriptModel>(Core::MakeNode<Type>(number, p_first))
                                        : Core::MakeNode<ScriptModel>(number));
        }
        nodes[0]->Add(nodes[1]);
        nodes[0]->Add(nodes[2]);
        nodes[1]->Add(nodes[3]);
        nodes[1]->Add(nodes[4]);
        return nodes[0];
    }

    Stage _stage;
    qordebug::CaptureScope _log{Utility::GetLogger()};
};

TEST_F(GeneratorTest, theVisualTreeHasShapeOrderAndNamesOfTheModel) {
    Core::Ptr<ScriptModel> const model = MakeModel();
    EXPECT_EQ(TextOf(*_stage.generator(model)), "n0(n1(n3 n4) n2)");
    EXPECT_EQ(TextOf(*_stage.generator(Core::MakeNode<ScriptModel>(7))), "n7");
    EXPECT_TRUE(_log.empty());
}

TEST_F(GeneratorTest, aSelfManagedNodeGetsNoChildren) {
    Script script;
    script.flags = Vis::VisFlagSelfManaged;
    EXPECT_EQ(TextOf(*_stage.generator(MakeModel(script))), "n0(n1 n2)");
}

TEST_F(GeneratorTest, aSharedModelNodeGetsAVisualNodeForEveryUse) {
    Core::Ptr<ScriptModel> const model = MakeModel();
    Core::Ptr<Model::ModelNode> const shared = *model->begin();
    Core::Ptr<ScriptModel> const top = Core::MakeNode<ScriptModel>(9);
    top->Add(model);
    top->Add(shared);
    EXPECT_EQ(TextOf(*_stage.generator(top)), "n9(n0(n1(n3 n4) n2) n1(n3 n4))");
}

TEST_F(GeneratorTest, aClassWithoutFactoryIsLeftOutWithAllBelowItThoughItsBaseHasOne) {
    EXPECT_EQ(TextOf(*_stage.generator(MakeModel<UnknownModel>())), "n0(n2)");
    EXPECT_THAT(_log.texts("cerr"), ElementsAre("WARNING: Generator - Node: \"UnknownModel\" no factory found!"));

    _log.clear();
    Core::Ptr<ScriptModel> const unknown = Core::MakeNode<UnknownModel>(1);
    EXPECT_FALSE(_stage.generator.IsRegistered(unknown));
    EXPECT_FALSE(_stage.generator.Find(unknown));
    EXPECT_EQ(_stage.generator(unknown), nullptr);
    EXPECT_THAT(_log.texts(qordebug::severity::ensure), ElementsAre(HasSubstr("\"parents.size() == 1\" - ")));
}

TEST_F(GeneratorTest, mergingKeepsTheFactoriesOfTheOneMergedInto) {
    Generator other;
    int calls = 0;
    auto const factory = [&](Core::Ptr<ScriptModel> const& p_model) {
        ++calls;
        return Core::Ptr<Vis>(Core::MakeNode<ScriptVis>(_stage.world, p_model));
    };
    other.Register<ScriptModel>(factory);
    other.Register<UnknownModel>([&](Core::Ptr<UnknownModel> const& p_model) { return factory(p_model); });
    Generator const before = _stage.generator;
    _stage.generator += other;
    EXPECT_EQ(TextOf(*_stage.generator(MakeModel<UnknownModel>())), "n0(n1(n3 n4) n2)");
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(before.IsRegistered(Core::MakeNode<UnknownModel>(1))) << "copies are independent";
}

TEST_F(GeneratorTest, whatFailsHalfwayLeavesNothingBehind) {
    Core::Ptr<ScriptModel> const model = MakeModel();
    auto const last = Core::StaticCast<ScriptModel>(*++model->begin());
    last->script.answers[HookFactory] = Answer::Throw;
    EXPECT_THROW(_stage.generator(model), std::runtime_error);
    EXPECT_TRUE(model->uses.empty());

    last->script.answers = {};
    last->Add(model);
    try {
        _stage.generator(model);
        ADD_FAILURE() << "the cycle was not noticed";
    } catch (Core::CyclicDependencyFoundExcept const& found) {
        EXPECT_THAT(found.what(), HasSubstr("while generating a scene graph"));
    }
    EXPECT_TRUE(model->uses.empty());
    last->Clear();
    EXPECT_EQ(TextOf(*_stage.generator(model)), "n0(n1(n3 n4) n2)");
}

} // namespace
} // namespace Qor::Chart::Render
