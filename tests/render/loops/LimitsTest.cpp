#include "render/loops/RenderLoop.h"
#include "render/loops/UpdateNodePathLoop.h"
#include "tests/render/support/Script.h"
#include "framework/core/Exceptions.h"

#include <gmock/gmock.h>

#include <chrono>

/// Trees far deeper, wider and more entangled than any that people make.
namespace Qor::Chart::Render {
namespace {

using namespace Fixtures;
using ::testing::HasSubstr;

/// A chain of model nodes, the root first; linked from below, while nobody stands above.
std::vector<Core::Ptr<ScriptModel>> MakeChain(int p_levels) {
    Script script;
    script.handled = AllHooks;
    std::vector<Core::Ptr<ScriptModel>> chain;
    for (int level = 0; level < p_levels; ++level)
        chain.push_back(Core::MakeNode<ScriptModel>(level, script));
    for (int level = p_levels - 1; level > 0; --level)
        chain[level - 1]->Add(chain[level]);
    return chain;
}

TEST(LimitsTest, tenThousandLevelsNeedTheDefaultStackAndOnASmallerOneAreOneErrorAfterWhichAllCanBeUsed) {
    static constexpr int levels = 10000;
    Stage stage;
    auto const chain = MakeChain(levels);
    Core::Ptr<Vis> root;
    DrawContext context = stage.MakeContext();
    RenderLoop loop(LayerBase, DrawContext::DrawMode::Draw);
    std::pair<char const*, std::function<void()>> const steps[] = {
        {"generate", [&] { root = stage.generator(chain.front()); }},
        {"update", [&] { stage.Update(root); }},
        {"paths", [&] { UpdateNodePathLoop()(root); }},
        {"draw", [&] { loop(root, context); }},
    };
    for (auto const& [what, step] : steps) {
        SCOPED_TRACE(what);
        OnThread(std::size_t{512} << 10U, [&] {
            EXPECT_THAT(step, ::testing::ThrowsMessage<Core::TreeTooDeepExcept>(HasSubstr("Flatten the tree")));
        });
        EXPECT_EQ(chain.front()->uses.empty(), !root);
        EXPECT_EQ(stage.agl.Depths(), Ogl::StackDepths());
        EXPECT_EQ(context.ModelView().Size(), 1U);
        OnThread(DefaultStack, step);
        EXPECT_TRUE(root->IsValid());
    }
    EXPECT_EQ(chain.back()->uses.front()->GetPath().Size(), static_cast<std::size_t>(levels));
    EXPECT_EQ(loop.DrawnCount(), static_cast<std::uint32_t>(levels));
    EXPECT_TRUE(stage.dispatcher.exceptions.empty());
}

/// Seconds that adding and removing so many children and the updates after it take.
double SecondsForChildren(int p_count) {
    Stage stage;
    Script plain;
    plain.handled = 0;
    auto const top = Core::MakeNode<ScriptModel>(0, plain);
    Core::Ptr<Vis> const root = stage.generator(top);
    stage.Update(root);
    std::vector<Core::Ptr<ScriptModel>> children;
    for (int i = 0; i < p_count; ++i)
        children.push_back(Core::MakeNode<ScriptModel>(i, plain));

    auto const begin = std::chrono::steady_clock::now();
    for (auto const& child : children)
        top->Add(child);
    stage.Update(root);
    EXPECT_EQ(root->Size(), static_cast<std::size_t>(p_count));
    for (int step = 0; step < 2; ++step) { // every second one, then the rest from the end on
        for (int i = p_count - 1 - step; i >= 0; i -= 2)
            top->Remove(children[static_cast<std::size_t>(i)]);
        stage.Update(root);
    }
    std::chrono::duration<double> const time = std::chrono::steady_clock::now() - begin;
    EXPECT_TRUE(root->Empty());
    return time.count();
}

TEST(LimitsTest, manyChildrenBetweenTwoUpdatesCostInProportion) {
    double small = 1;
    double large = 1;
    for (int attempt = 0; attempt < 5 && (attempt == 0 || large > 24 * small); ++attempt) {
        small = SecondsForChildren(2500);
        large = SecondsForChildren(20000);
    }
    EXPECT_LT(large, 24 * small) << "eight times as many; a quadratic cost would be 64 times as much";
}

} // namespace
} // namespace Qor::Chart::Render
