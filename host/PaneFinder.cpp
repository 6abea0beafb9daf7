#include "host/PaneFinder.h"

#include "framework/model/Pane.h"
#include "render/core/PaneMarker.h"
#include "render/nodes/PaneLayout.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Qor::Chart::Host {

namespace {

using Render::PaneLayout;
using Render::Vis;

/// A node, and the view that it stands in.
struct Entry {
    Core::Ptr<Vis> node;
    PaneView view;
};

/// Makes the view of what is below a node. Nothing to do for a node that is neither a pane nor a camera.
void Enter(Entry& p_entry, bool p_isPane) {
    Core::Ptr<Model::ModelNode> const model = p_entry.node->SourceModel().Lock();
    PaneView& view = p_entry.view;
    if (auto const camera = Core::DynamicCast<CameraNode>(model))
        view.camera = Core::WeakPtr<CameraNode>(camera);
    if (!p_isPane)
        return;
    view.pane = Core::WeakPtr<Vis>(p_entry.node);
    if (auto const pane = Core::DynamicCast<Model::Pane>(model)) {
        Types::Viewport<0> const placed = PaneLayout::Place(pane->GetViewport(), view.rectangle);
        view.rectangle = pane->IsKeptInsideParent() ? PaneLayout::FittedInto(view.rectangle, placed) : placed;
    }
}

/// Goes through the tree in the order of drawing. The visitor is given each pane and says whether to go on below it.
template <class Visitor>
void Walk(Core::Ptr<Vis> const& p_root, Types::Viewport<0> const& p_window, Visitor const& p_visit) {
    std::vector<Entry> waiting;
    if (p_root)
        waiting.push_back({p_root, {{}, {}, p_window}});
    while (!waiting.empty()) {
        Entry entry = std::move(waiting.back());
        waiting.pop_back();
        bool const isPane = dynamic_cast<Render::PaneMarker const*>(entry.node.Get()) != nullptr;
        Enter(entry, isPane);
        if (isPane && !p_visit(entry.view))
            continue;
        auto const first = static_cast<std::ptrdiff_t>(waiting.size());
        for (auto child = entry.node->ActiveBegin(); !(child == entry.node->ActiveEnd()); ++child) {
            if ((*child)->OptimalPaths().Has(Render::CallbackHighlightOverlay))
                waiting.push_back({*child, entry.view});
        }
        std::reverse(std::next(waiting.begin(), first), waiting.end());
    }
}

} // namespace

std::vector<PaneView> PaneFinder::All(Core::Ptr<Render::Vis> const& p_root, Types::Viewport<0> const& p_window) {
    std::vector<PaneView> panes;
    Walk(p_root, p_window, [&](PaneView const& p_view) {
        panes.push_back(p_view);
        return true;
    });
    return panes;
}

PaneView PaneFinder::At(
    Core::Ptr<Render::Vis> const& p_root, Types::Viewport<0> const& p_window, Types::Pos const& p_pixel) {
    PaneView found{{}, {}, p_window};
    Walk(p_root, p_window, [&](PaneView const& p_view) {
        bool const isThere = p_view.rectangle.Contains(p_pixel);
        if (isThere)
            found = p_view;
        return isThere;
    });
    return found;
}

} // namespace Qor::Chart::Host
