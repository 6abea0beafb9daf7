#include "host/SelectionInput.h"

#include "host/PaneFinder.h"
#include "host/Scene.h"
#include "render/nodes/SelectionHits.h"
#include "render/nodes/SelectionList.h"
#include "render/nodes/SelectionLists.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Host {

using Render::EventHandler;
using Render::SelectionHits;
using Render::SelectionLists;

SelectionInput::List SelectionInput::Ready(List p_list) const {
    bool const isReady = p_list && _caller.Wants(Core::WeakPtr<Render::Vis>(p_list), EventHandler::EventClick);
    return isReady ? std::move(p_list) : List();
}

Core::Ptr<Render::Vis> SelectionInput::PaneAt(Types::Pos const& p_position) const {
    Core::Ptr<Render::Vis> pane = PaneFinder::At(_scene.Visual(), _window, p_position).pane.Lock();
    if (!pane)
        pane = _scene.Visual();
    return pane;
}

SelectionInput::List SelectionInput::ListAt(Hits const& p_hits, std::optional<Types::Pos> const& p_position) const {
    auto const lists = SelectionLists::Of(_scene.Registrar());
    if (!lists)
        return {};
    Render::HitRecord const* const hit = SelectionHits::Foremost(p_hits);
    Core::Ptr<Render::Vis> const node = hit ? hit->node.Lock() : p_position ? PaneAt(*p_position) : _scene.Visual();
    return node ? Ready(lists->ListOf(*node)) : List();
}

bool SelectionInput::Click(InputEvent const& p_input, Hits const& p_hits, ClickState const& p_state) {
    if (p_state.isTaken && !SelectionHits::Foremost(p_hits))
        return false;
    List const list = ListAt(p_hits, p_input.position);
    if (!list)
        return false;
    Core::WeakPtr<Render::Vis> const node(list);
    auto const event = p_state.isSecond ? EventHandler::EventDoubleClick : EventHandler::EventClick;
    bool const isTaken =
        _caller.Call({node, nullptr, &p_hits}, event, p_input).status == Render::Event::HandlerStatusHandled;
    if (isTaken)
        _hover.Hold(node, p_input, p_state.threshold);
    return isTaken;
}

/// What lies in a rectangle may be served by several lists: each takes its part, and the one around the rectangle also
/// an empty one.
bool SelectionInput::SelectBox(Render::BoxSelection const& p_box, std::function<Hits()> const& p_pick) {
    auto const lists = SelectionLists::Of(_scene.Registrar());
    if (!lists)
        return false;
    Core::Ptr<Render::Vis> const scope = p_box.Scope().Lock();
    std::vector<std::pair<List, Hits>> parts{{Ready(lists->ListOf(scope ? *scope : *_scene.Visual())), {}}};
    for (auto& [list, hits] : lists->ByList(p_pick())) {
        if (list == parts.front().first)
            parts.front().second = std::move(hits);
        else
            parts.emplace_back(Ready(list), std::move(hits));
    }
    bool isTaken = false;
    for (auto const& [list, hits] : parts)
        isTaken = (list && list->SelectBox(p_box, hits)) || isTaken;
    return isTaken;
}

bool SelectionInput::PressKey(InputEvent const& p_input, Hits const& p_hits, bool p_isInside) {
    List const list = ListAt(p_hits, p_isInside ? std::optional(p_input.position) : std::nullopt);
    if (!list)
        return false;
    return _caller.Call({Core::WeakPtr<Render::Vis>(list), nullptr}, EventHandler::EventKeyPress, p_input).status ==
        Render::Event::HandlerStatusHandled;
}

} // namespace Qor::Chart::Host
