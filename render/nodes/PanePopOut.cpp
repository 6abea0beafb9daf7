#include "render/nodes/PanePopOut.h"

#include "framework/utility/Ensure.h"

#include <memory>
#include <utility>

namespace Qor::Chart::Render {

namespace {

/// A pane and what was taken out of it.
struct Detached {
    Detached(Core::Ptr<Model::Pane> const& p_pane, PanePopOut::Content p_content)
        : pane(p_pane), content(std::move(p_content)) {}

    Core::WeakPtr<Model::Pane> pane;
    PanePopOut::Content content;
};

} // namespace

Core::Ptr<Model::ModelNode> PanePopOut::PopoutViewportContent(
    Core::WeakPtr<Model::Pane> const& p_parent, Content const& p_content) {
    Core::Ptr<Model::Pane> const parent = p_parent.Lock();
    (void)QOR_ENSURE_TEXT(parent, "!p_parent.Expired()");
    Core::Ptr<Model::Pane> const pane =
        parent ? Model::CloneOf(*parent, Model::ModelNode::Children::Leave) : Core::MakeNode<Model::Pane>();
    pane->Reset(Model::Pane::MovableProperty);
    pane->Reset(Model::Pane::ResizableProperty);
    pane->Reset(Model::Pane::ViewportProperty);
    for (Core::Ptr<Model::ModelNode> const& node : p_content)
        pane->Add(node);
    pane->SetVisible(true);
    return pane;
}

void PanePopOut::Open(PopOutHost& p_host, Core::WeakPtr<Model::Pane> const& p_parent, Types::Size const& p_size,
    PopOutHost::Restore const& p_restore, Content const& p_content) {
    auto const factory = [p_parent](Content const& p_nodes) { return PopoutViewportContent(p_parent, p_nodes); };
    p_host.PopOut(factory, p_size, p_restore, p_content);
}

PopOutHost::Restore PanePopOut::Detach(Model::Pane& p_pane, Content const& p_content) {
    p_pane.SetVisible(false);
    p_pane.Clear();
    auto const detached = std::make_shared<Detached>(Core::Ptr<Model::Pane>(&p_pane), p_content);
    return [detached] {
        Core::Ptr<Model::Pane> const pane = detached->pane.Lock();
        if (!pane)
            return;
        Content const nodes = std::exchange(detached->content, {});
        for (Core::Ptr<Model::ModelNode> const& node : nodes)
            pane->Add(node);
        pane->SetVisible(true);
    };
}

} // namespace Qor::Chart::Render
