#pragma once

#include "tests/render/nodes/SceneFixture.h"
#include "tests/render/support/Models.h"
#include "tests/render/support/QuietSink.h"
#include "render/events/EventInformation.h"
#include "render/pick/HitTopLoop.h"

#include <gtest/gtest.h>

#include <optional>

namespace Qor::Chart::Render::Fixtures {

/// A window of 400 by 300 pixels with a pane of 200 by 150 at (100, 50), and the host around it.
struct PaneFixture : SceneFixture, QuietSink {
    PaneFixture() {
        pane->SetViewport(PixelViewport(100, 50, 200, 150));
        scene->Add(pane);
    }
    DrawContext WindowContext(DrawContext::DrawMode p_mode = DrawContext::DrawMode::Draw) {
        DrawContext context = MakeContext(p_mode);
        context.Viewport().Set({0, 0, 400, 300});
        return context;
    }
    /// Draws a layer and gives the commands.
    std::vector<Ogl::RecordedCommand> DrawLayer(
        Layer p_layer, DrawContext::DrawMode p_mode = DrawContext::DrawMode::Draw) {
        DrawContext context = WindowContext(p_mode);
        dispatcher.redraws.clear();
        agl.BeginFrame();
        RenderLoop(p_layer, p_mode)(root, context);
        agl.EndFrame();
        EXPECT_EQ(agl.GetStatistics().pushes, agl.GetStatistics().pops);
        return Backend().Commands();
    }
    std::vector<HitRecord> Pick(Types::Pos const& p_inPane, Layer p_layers = LayerBoth) {
        DrawContext context = WindowContext();
        unsigned visited = 0, tested = 0;
        return HitTopLoop()(root, context, {p_inPane + Types::Pos(100, 50), {}}, visited, tested, p_layers);
    }
    /// The pane's visual node or one below it, by its class.
    template <class Node>
    Node& Find() const {
        auto* node = dynamic_cast<Node*>(&Child());
        for (Core::Ptr<Vis> const& child : Child())
            node = node ? node : dynamic_cast<Node*>(child.Get());
        return *node;
    }
    /// Gives a handler an event for what was hit first, with the pointer at a place of the pane.
    template <class Node, class Result>
    Result Send(Result (Node::*p_handler)(EventInformation&), std::vector<HitRecord> const& p_hits,
        Types::Pos const& p_inPane = {}, std::uint32_t p_buttons = EventInformation::ButtonMaskPrimary,
        std::uint32_t p_modifiers = 0) {
        event.emplace(*this, p_hits.empty() ? nullptr : &p_hits.front());
        event->position = p_inPane + Types::Pos(100, 50);
        event->buttons = p_buttons;
        event->modifiers = p_modifiers;
        return (Find<Node>().*p_handler)(*event);
    }

    Core::Ptr<Model::Pane> pane = Core::MakeNode<Model::Pane>();
    std::optional<EventInformation> event; ///< the last one
};

} // namespace Qor::Chart::Render::Fixtures
