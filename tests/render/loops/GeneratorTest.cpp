#include "render/loops/Generator.h"

#include "tests/render/support/Script.h"
#include "framework/core/Exceptions.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

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

/// n0(n1(n3 n4) n2), with the class of n1 as given.
template <class Type>
Core::Ptr<ScriptModel> MakeModel() {
    auto const top = Core::MakeNode<ScriptModel>(0);
    auto const first = Core::MakeNode<Type>(1);
    top->Add(first);
    top->Add(Core::MakeNode<ScriptModel>(2));
    first->Add(Core::MakeNode<ScriptModel>(3));
    first->Add(Core::MakeNode<ScriptModel>(4));
    return top;
}

TEST(GeneratorTest, aClassWithoutFactoryIsLeftOutWithAllBelowItThoughItsBaseHasOne) {
    Stage stage;
    qordebug::CaptureScope log{Utility::GetLogger()};
    EXPECT_EQ(TextOf(*stage.generator(MakeModel<UnknownModel>())), "n0(n2)");
    EXPECT_THAT(log.texts("cerr"), ElementsAre("WARNING: Generator - Node: \"UnknownModel\" no factory found!"));

    log.clear();
    Core::Ptr<ScriptModel> const unknown = Core::MakeNode<UnknownModel>(1);
    EXPECT_FALSE(stage.generator.Find(unknown));
    EXPECT_EQ(stage.generator(unknown), nullptr);
    EXPECT_THAT(log.texts(qordebug::severity::ensure), ElementsAre(HasSubstr("\"parents.size() == 1\" - ")));
}

TEST(GeneratorTest, mergingKeepsTheFactoriesOfTheOneMergedInto) {
    Stage stage;
    Generator other;
    int calls = 0;
    auto const factory = [&](Core::Ptr<ScriptModel> const& p_model) {
        ++calls;
        return Core::Ptr<Vis>(Core::MakeNode<ScriptVis>(stage.world, p_model));
    };
    other.Register<ScriptModel>(factory);
    other.Register<UnknownModel>([&](Core::Ptr<UnknownModel> const& p_model) { return factory(p_model); });
    Generator const before = stage.generator;
    stage.generator += other;
    EXPECT_EQ(TextOf(*stage.generator(MakeModel<UnknownModel>())), "n0(n1(n3 n4) n2)");
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(before.IsRegistered(Core::MakeNode<UnknownModel>(1))) << "copies are independent";
}

TEST(GeneratorTest, aCycleIsRefusedAndLeavesNothingBehind) {
    Stage stage;
    auto const model = MakeModel<ScriptModel>();
    auto const last = *++model->begin();
    last->Add(model);
    EXPECT_THAT([&] { stage.generator(model); },
        ::testing::ThrowsMessage<Core::CyclicDependencyFoundExcept>(HasSubstr("while generating a scene graph")));
    EXPECT_TRUE(model->uses.empty());
    last->Clear();
    EXPECT_EQ(TextOf(*stage.generator(model)), "n0(n1(n3 n4) n2)");
}

} // namespace
} // namespace Qor::Chart::Render
