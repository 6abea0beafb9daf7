#include "render/loops/RenderLoop.h"

#include "tests/render/DrawFixture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;

void* Allocate(std::size_t p_size) {
    ++allocations;
    if (void* const memory = std::malloc(p_size > 0 ? p_size : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

// The whole test program counts what it allocates.
void* operator new(std::size_t p_size) {
    return Allocate(p_size);
}
void* operator new[](std::size_t p_size) {
    return Allocate(p_size);
}
void operator delete(void* p_memory) noexcept {
    std::free(p_memory);
}
void operator delete[](void* p_memory) noexcept {
    std::free(p_memory);
}
void operator delete(void* p_memory, std::size_t) noexcept {
    std::free(p_memory);
}
void operator delete[](void* p_memory, std::size_t) noexcept {
    std::free(p_memory);
}

namespace Qor::Chart::Render {
namespace {

/// Moves itself, draws a cube and throws nothing away.
class Cube : public Vis {
public:
    Cube() : Vis(VisFlagSelfManaged) {
        for (auto const callback : {HandledSetup, HandledDraw, HandledTeardown})
            RegisterCB(callback);
        OptimalPaths().SetAll();
        SetActive(true);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return {}; }

private:
    void DoSetup(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override {
        p_agl->PushAttrib(Ogl::Tokens::AGL_CURRENT_BIT);
        p_context.ModelView().Set(Types::Matrix4::Translation({1, 2, 3}));
        p_agl->LoadMatrix(p_context.ModelView().Top());
    }
    DrawResult DoDraw(DrawContext const& p_context) override {
        Utility::Scoped<Ogl::Agl> agl(p_context.Graphics());
        agl->Draw(p_context.Geometry().UnitCube());
        return DrawResultDescend;
    }
    void DoTeardown(DrawContext const&, Utility::Scoped<Ogl::Agl>& p_agl) override { p_agl->PopAttrib(); }
};

struct Hooks : VisHooks {
    static void Append(Vis& p_parent, Core::Ptr<Vis> const& p_child) {
        p_parent.Add(p_child);
        SetHasActiveChildren(p_parent, true);
    }
};

/// Memory taken by one run over a tree of some nodes, after earlier runs.
std::size_t AllocationsOfARun(std::size_t p_branches) {
    Fixtures::DrawFixture fixture(Ogl::RecorderBackend::Keep::Counters);
    DrawContext context = fixture.MakeContext();
    auto const root = Core::MakeNode<Cube>();
    for (std::size_t branch = 0; branch < p_branches; ++branch) {
        auto const node = Core::MakeNode<Cube>();
        for (int leaf = 0; leaf < 10; ++leaf)
            Hooks::Append(*node, Core::MakeNode<Cube>());
        Hooks::Append(*root, node);
    }
    RenderLoop loop(LayerBase, DrawContext::DrawMode::Draw);
    std::size_t last = 0;
    for (int run = 0; run < 3; ++run) {
        fixture.agl.BeginFrame();
        std::size_t const before = allocations;
        loop(root, context);
        last = allocations - before;
        fixture.agl.EndFrame();
    }
    return last;
}

TEST(RenderLoopAllocationTest, aSteadyFrameAllocatesNothingPerNode) {
    EXPECT_EQ(AllocationsOfARun(2), AllocationsOfARun(300));
}

} // namespace
} // namespace Qor::Chart::Render
