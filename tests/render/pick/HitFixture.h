#pragma once

#include "render/context/PickPoint.h"
#include "render/pick/HitRecord.h"
#include "tests/render/DrawFixture.h"
#include "tests/render/support/TraceNode.h"

#include <gtest/gtest.h>

#include <optional>

namespace Qor::Chart::Render::Fixtures {

/// A node that says it is hit at the depths that it is told. The marks of its hooks are + ? - in the base pass and
/// [ ! ] in the overlay pass.
class HitNode : public TraceNode {
public:
    HitNode(std::string* p_trace, std::string p_name, int p_flags = 0)
        : TraceNode(p_trace, std::move(p_name), p_flags) {
        for (auto const callback : {HandledHit, HandledSetupOverlay, HandledHitOverlay, HandledTeardownOverlay})
            RegisterCB(callback);
    }

    std::vector<double> depths, overlayDepths; ///< of the hits, named from `NameFirst` on
    std::optional<Types::Viewport<0>> viewport; ///< set for what is below
    bool wantsChildren = true;
    PickPoint seen; ///< the last point that it was asked about

private:
    void Prepare(char p_mark, DrawContext& p_context, Agl& p_agl) {
        if (viewport)
            p_context.Viewport().Set(*viewport);
        NoteSetup(p_mark, p_context, p_agl);
    }
    bool Answer(char p_mark, DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result,
        std::vector<double> const& p_depths) {
        seen = p_point;
        std::uint64_t name = Ogl::HitRecord::NameFirst;
        for (double const depth : p_depths)
            p_result.records.emplace_back(name++, depth);
        Note(p_mark, p_context);
        return wantsChildren;
    }
    void DoSetup(DrawContext& p_context, Agl& p_agl) override { Prepare('+', p_context, p_agl); }
    void DoSetupOverlay(DrawContext& p_context, Agl& p_agl) override { Prepare('[', p_context, p_agl); }
    bool DoHit(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) override {
        return Answer('?', p_context, p_point, p_result, depths);
    }
    bool DoHitOverlay(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) override {
        return Answer('!', p_context, p_point, p_result, overlayDepths);
    }
    void DoTeardownOverlay(DrawContext const& p_context, Agl& p_agl) override { NoteTeardown(']', p_context, p_agl); }
};

/// A tree below a root, in a window of 100 by 100 pixels.
struct HitFixture : DrawFixture {
    HitFixture() : DrawFixture(Ogl::RecorderBackend::Keep::Counters) { context.Viewport().Set({0, 0, 100, 100}); }

    /// A node below the named one; below the root without a name.
    Core::Ptr<HitNode> Make(std::string const& p_name, std::string const& p_parent = "root", int p_flags = 0) {
        auto const node = Core::MakeNode<HitNode>(&trace, p_name, p_flags);
        nodes[p_parent]->Append(node);
        return nodes[p_name] = node;
    }
    Core::Ptr<HitNode> MakePane(
        std::string const& p_name, Types::Viewport<0> const& p_viewport, std::string const& p_parent = "root") {
        auto const pane = Make(p_name, p_parent, Vis::VisFlagContextRoot);
        pane->viewport = p_viewport;
        return pane;
    }

    /// "node@hitRoot" of each record.
    static std::string Text(std::vector<HitRecord> const& p_records) {
        std::string text;
        auto const nameOf = [](Core::WeakPtr<Vis> const& p_node) {
            return p_node.IsEmpty() ? std::string() : p_node.Expired() ? "gone" : p_node.Lock()->Name();
        };
        for (HitRecord const& record : p_records)
            text += (text.empty() ? "" : " ") + nameOf(record.node) + "@" + nameOf(record.hitRoot);
        return text;
    }
    /// Nothing that a pick did is left over.
    void ExpectRestored() {
        using namespace Ogl::Tokens;
        EXPECT_EQ(agl.Depths(), Ogl::StackDepths());
        EXPECT_EQ(context.ModelView().Size(), 1U);
        EXPECT_EQ(context.Viewport().Size(), 2U);
        EXPECT_TRUE(agl.Get(AGL_MODELVIEW_MATRIX).IsIdentity());
        EXPECT_TRUE(agl.Get(AGL_PROJECTION_MATRIX).IsIdentity());
        EXPECT_EQ(agl.Current().transform.matrixMode, AGL_MODELVIEW);
        EXPECT_FALSE(agl.IsEnabled(AGL_LIGHTING));
        EXPECT_EQ(agl.GetStatistics().draws + agl.GetStatistics().clears, 0U);
        EXPECT_EQ(agl.CheckError(), "");
    }

    DrawContext context = MakeContext();
    std::string trace;
    Core::Ptr<HitNode> root = Core::MakeNode<HitNode>(&trace, "root");
    std::map<std::string, Core::Ptr<HitNode>> nodes{{"root", root}};
    unsigned visited = 0, tested = 0;
};

} // namespace Qor::Chart::Render::Fixtures
