#pragma once

#include "framework/core/WeakPtr.h"
#include "host/EventCaller.h"
#include "host/InputEvent.h"
#include "render/events/EventSink.h"

#include <functional>
#include <vector>

namespace Qor::Chart::Host {

/// Knows which node keys go to first, offers them to it, and has the Tab key go from one node to the next. Who has the
/// focus is told when the window's comes and goes, and once when its own ends.
class FocusTracker {
public:
    using Change = Render::EventSink::FocusChange;
    using Told = std::function<void(Change)>;
    using WeakVis = Core::WeakPtr<Render::Vis>;

    FocusTracker(Scene& p_scene, EventCaller& p_caller) noexcept : _scene(p_scene), _caller(p_caller) {}

    void Take(WeakVis const& p_node, Told p_changed);
    void Leave(WeakVis const& p_node);
    /// Nobody has the focus any more.
    void End();
    /// The same if who has it is gone, or takes no part in the scene any more.
    void EndOfGone();

    bool IsTaken() const noexcept { return !_node.IsEmpty(); }
    bool Has(WeakVis const& p_node) const noexcept { return IsTaken() && _node == p_node; }

    /// The user types into the window from now on, or no longer.
    void SetWindow(bool p_isHere);

    /// Offers a key press to who has the focus.
    EventCaller::Outcome Offer(InputEvent const& p_input);
    /// Offers a press of the Tab key to the nodes behind the one that has the focus, or before it with Shift, until one
    /// takes it. When none does, the focus ends.
    EventCaller::Outcome OfferToNext(InputEvent const& p_input);

private:
    /// All that have connected key presses and take part, in the order of the tree.
    std::vector<WeakVis> Candidates() const;

    Scene& _scene;
    EventCaller& _caller;
    WeakVis _node;
    Told _changed;
    bool _isWindowHere = true;
};

} // namespace Qor::Chart::Host
