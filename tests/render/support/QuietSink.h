#pragma once

#include "render/events/EventSink.h"

namespace Qor::Chart::Render::Fixtures {

/// A host to which nothing that handlers ask for matters.
struct QuietSink : EventSink {
    void RequestRedraw() override {}
    void RequestUpdate() override {}
    void SelectBox(BoxSelection const&) override {}
    void AboutToMove(Core::WeakPtr<Model::ModelNode> const&) override {}
    void Hover(SelectRecord const&) override {}
    void EndHover(Core::WeakPtr<Model::ModelNode> const&) override {}
    PopOutHost* GetPopOutHost() override { return nullptr; }
};

} // namespace Qor::Chart::Render::Fixtures
