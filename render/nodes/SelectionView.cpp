#include "render/nodes/SelectionView.h"

#include "render/nodes/SelectionHits.h"
#include "render/pick/SelectRecord.h"
#include "render/pick/Selector.h"
#include "render/core/SelectsBelow.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using Index = std::optional<std::uint64_t>;

template <class Handles>
void KeepOnce(Handles& p_handles) {
    std::ranges::sort(p_handles);
    p_handles.erase(std::unique(p_handles.begin(), p_handles.end()), p_handles.end());
}

bool SelectsBelowIt(Vis const& p_vis) {
    return dynamic_cast<SelectsBelow const*>(&p_vis) != nullptr;
}

/// Visits the visual nodes of a model node.
template <class Visit>
void ForVisuals(Model::ModelNode const& p_node, Visit const& p_visit) {
    for (Core::Dependencies::Entry const& entry : p_node.Deps().Entries()) {
        auto* const vis = entry.references > 0 ? dynamic_cast<Vis*>(entry.dependent) : nullptr;
        if (vis && vis->SourceModel().Peek() == &p_node)
            p_visit(*vis);
    }
}

/// Visits the nodes closest below one that have a look to show a selection with. A tree that contains itself, which the
/// update reports, does no harm.
template <class Visit>
void ForClosestBelow(Vis& p_vis, Visit const& p_visit) {
    std::unordered_set<Vis const*> entered{&p_vis};
    std::vector<Vis*> pending{&p_vis};
    while (!pending.empty()) {
        Vis const& parent = *pending.back();
        pending.pop_back();
        for (Core::Ptr<Vis> const& child : parent) {
            if (!child)
                continue;
            if (!SelectsBelowIt(*child))
                p_visit(*child);
            else if (entered.insert(child.Get()).second)
                pending.push_back(child.Get());
        }
    }
}

} // namespace

/// Nodes that change again and again while nobody looks are remembered once.
void SelectionView::MarkChanged(Node const& p_node) {
    if (_isAllChanged)
        return;
    _changed.push_back(p_node);
    if (_changed.size() < _mostChanged)
        return;
    KeepOnce(_changed);
    _mostChanged = 2 * _changed.size() + FewChanged;
}

SelectionView::Outcome SelectionView::Show(
    Model::SelectionList const* p_model, Core::TimeStamp p_time, Serves const& p_serves) {
    Outcome outcome;
    for (Node const& node : TakeChanged(p_model, p_time)) {
        Indices indices = p_model ? p_model->IndicesOf(node) : Indices();
        if (!indices.empty() && node.Expired()) {
            outcome.hasGone = true;
            indices.clear();
        }
        outcome.hasTold = ShowNode(node, std::move(indices), p_serves) || outcome.hasTold;
    }
    TellStillSelected();
    return outcome;
}

bool SelectionView::Withdraw(Serves const& p_serves) {
    bool hasTold = false;
    for (auto& [node, shown] : _shown) {
        Handlers kept;
        for (Core::WeakPtr<Vis> const& weak : std::exchange(shown.handlers, {})) {
            Core::Ptr<Vis> const handler = weak.Lock();
            if (handler && p_serves(*handler))
                kept.push_back(weak);
            else if (handler)
                hasTold = Tell(*handler, node, shown.indices, false) || hasTold;
        }
        shown.handlers = std::move(kept);
    }
    return hasTold;
}

std::vector<SelectionView::Node> SelectionView::TakeChanged(
    Model::SelectionList const* p_model, Core::TimeStamp p_time) {
    std::vector<Node> changed = std::exchange(_changed, {});
    bool const isAll = std::exchange(_isAllChanged, false);
    if (isAll && p_model) {
        for (Model::SelectionEntry const& entry : p_model->Selected())
            changed.push_back(entry.node);
    }
    bool const looks = std::exchange(_seen, p_time) != p_time;
    for (auto const& [node, shown] : _shown) {
        if (!isAll && !looks)
            break;
        if (isAll || IsOutOfDate(node, shown))
            changed.push_back(node);
    }
    KeepOnce(changed);
    return changed;
}

/// Identifiers count up, so a dependent that has come since has a higher one than all before; their number would stay
/// the same when another one left.
std::uint32_t SelectionView::NewestDependent(Model::ModelNode const& p_node) {
    std::uint32_t newest = 0;
    for (Core::Dependencies::Entry const& entry : p_node.Deps().Entries())
        newest = std::max(newest, entry.dependent->Id());
    return newest;
}

/// A visual node of the model node may have come or gone.
bool SelectionView::IsOutOfDate(Node const& p_node, Shown const& p_shown) {
    Model::ModelNode const* const node = p_node.Peek();
    return !node || NewestDependent(*node) != p_shown.newest ||
        (p_shown.IsShownBelow() && TimeBelow(*node) != p_shown.below) ||
        std::ranges::any_of(p_shown.handlers, &Handler::Expired);
}

Core::TimeStamp SelectionView::TimeBelow(Model::ModelNode const& p_node) {
    Core::TimeStamp latest;
    ForVisuals(p_node, [&](Vis const& p_vis) {
        if (SelectsBelowIt(p_vis))
            latest = std::max(latest, p_vis.Time());
    });
    return latest;
}

void SelectionView::FindHandlers(Model::ModelNode const& p_node, Serves const& p_serves, Shown& p_shown) {
    auto const add = [&](Vis& p_vis) {
        if (p_serves(p_vis))
            p_shown.handlers.emplace_back(&p_vis);
    };
    ForVisuals(p_node, [&](Vis& p_vis) {
        if (SelectsBelowIt(p_vis))
            ForClosestBelow(p_vis, add);
        else
            add(p_vis);
    });
    KeepOnce(p_shown.handlers);
    p_shown.newest = NewestDependent(p_node);
    p_shown.below = TimeBelow(p_node);
}

bool SelectionView::ShowNode(Node const& p_node, Indices p_indices, Serves const& p_serves) {
    Core::Ptr<Model::ModelNode> const node = p_node.Lock();
    auto const at = _shown.try_emplace(p_node).first;
    Shown const before = std::exchange(at->second, {});
    Shown& shown = at->second;
    if (node && !p_indices.empty()) {
        shown.indices = std::move(p_indices);
        FindHandlers(*node, p_serves, shown);
    }
    bool hasTold = TakeBack(p_node, before, shown.handlers);
    for (Handler const& weak : shown.handlers) {
        Core::Ptr<Vis> const handler = weak.Lock();
        bool const isKnown = std::ranges::binary_search(before.handlers, weak);
        if (handler)
            hasTold = TellDifference(*handler, p_node, isKnown ? before.indices : Indices(), shown.indices) || hasTold;
    }
    if (shown.IsShownBelow())
        _shownBelow.insert(p_node);
    else
        _shownBelow.erase(p_node);
    if (shown.indices.empty())
        _shown.erase(at);
    return hasTold;
}

bool SelectionView::TakeBack(Node const& p_node, Shown const& p_before, Handlers const& p_kept) {
    bool hasTold = false;
    for (Handler const& weak : p_before.handlers) {
        Core::Ptr<Vis> const handler = weak.Lock();
        if (!handler || std::ranges::binary_search(p_kept, weak))
            continue;
        hasTold = Tell(*handler, p_node, p_before.indices, false) || hasTold;
        if (p_before.IsShownBelow() || !_shownBelow.empty())
            _takenBack.push_back(weak);
    }
    return hasTold;
}

void SelectionView::TellAgain(Node const& p_node, Handler const& p_handler) {
    auto const found = _shown.find(p_node);
    Core::Ptr<Vis> const handler = p_handler.Lock();
    if (found != _shown.end() && handler && std::ranges::binary_search(found->second.handlers, p_handler))
        Tell(*handler, p_node, {found->second.indices.back()}, true);
}

/// A node shows as selected as long as it is itself, or one that it is in.
void SelectionView::TellStillSelected() {
    std::vector<Handler> takenBack = std::exchange(_takenBack, {});
    if (takenBack.empty())
        return;
    KeepOnce(takenBack);
    for (Handler const& weak : takenBack) {
        if (Core::Ptr<Vis> const handler = weak.Lock())
            TellAgain(handler->SourceModel(), weak);
    }
    for (Node const& node : _shownBelow) {
        for (Handler const& weak : _shown.at(node).handlers) {
            if (std::ranges::binary_search(takenBack, weak))
                TellAgain(node, weak);
        }
    }
}

bool SelectionView::Tell(Vis& p_handler, Node const& p_node, Indices const& p_indices, bool p_selected) {
    for (Index const& index : p_indices)
        Selector::Select(SelectionHits::RecordOf(Core::Ptr<Vis>(&p_handler), {p_node, index}), p_selected);
    return !p_indices.empty();
}

/// A node that does not tell its things apart takes the last word for all of them: as long as one stays selected, that
/// is told last.
bool SelectionView::TellDifference(Vis& p_handler, Node const& p_node, Indices const& p_before, Indices const& p_now) {
    Indices gone;
    Indices come;
    std::ranges::set_difference(p_before, p_now, std::back_inserter(gone));
    std::ranges::set_difference(p_now, p_before, std::back_inserter(come));
    if (!gone.empty() && come.empty() && !p_now.empty())
        come.push_back(p_now.back());
    bool const hasDeselected = Tell(p_handler, p_node, gone, false);
    return Tell(p_handler, p_node, come, true) || hasDeselected;
}

Core::Ptr<Vis> SelectionView::HandlerOf(Node const& p_node) const {
    auto const found = _shown.find(p_node);
    if (found == _shown.end())
        return {};
    for (Core::WeakPtr<Vis> const& weak : found->second.handlers) {
        if (Core::Ptr<Vis> handler = weak.Lock())
            return handler;
    }
    return {};
}

} // namespace Qor::Chart::Render
