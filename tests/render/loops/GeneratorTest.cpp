#include "render/loops/Generator.h"

#include "tests/render/support/Script.h"

#include <gtest/gtest.h>

namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;

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
    auto const top = Core::MakeNode<ScriptModel>(0);
    top->Add(Core::MakeNode<UnknownModel>(1));
    top->Add(Core::MakeNode<ScriptModel>(2));
    EXPECT_EQ(stage.generator(top)->Size(), 2U);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(before.IsRegistered(Core::MakeNode<UnknownModel>(1))) << "copies are independent";
}

} // namespace
} // namespace Qor::Chart::Render
