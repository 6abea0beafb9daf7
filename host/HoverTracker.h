#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/types/Pos.h"
#include "host/EventCaller.h"
#include "host/EventTargets.h"
#include "host/InputEvent.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace Qor::Chart::Host {

/// Knows which nodes the pointer is over, and tells them when it comes and when it goes. A node counts anew for each of
/// its parts: going from one to another is a leave and an enter. Who was told that the pointer came is told
/// once that it went, if the node had connected that event then or has now.
class HoverTracker {
public:
    explicit HoverTracker(EventCaller& p_caller) noexcept : _caller(p_caller) {}

    /// Takes what is under the pointer now. Those that are no longer there are left first; then the others are gone
    /// through in order up to one that stops, new ones are entered, and those behind a new stop are left.
    /// @param p_isMove  whether the pointer has moved, and not what is under it
    void Update(EventTargets const& p_targets, InputEvent const& p_input, bool p_isMove);
    /// The pointer is over nothing.
    void LeaveAll(InputEvent const& p_input);

    /// The pointer counts as over a node that is not under it, as long as it stays closer to its present place than
    /// this.
    void Hold(Core::WeakPtr<Render::Vis> const& p_node, InputEvent const& p_input, int p_pixels);

    /// Enters a node for a drag that it may begin, unless it is entered already.
    void Ensure(EventTarget const& p_target, InputEvent const& p_input);
    /// Leaves a node, to be entered again by the next update if it is still there.
    void Leave(Core::WeakPtr<Render::Vis> const& p_node, InputEvent const& p_input);

    /// Takes the time-outs that nodes have set; they count from now.
    void SetTimeOuts(std::vector<EventCaller::TimeOut> const& p_timeOuts);
    /// An event came: all time-outs start again.
    void Restart() noexcept;
    /// When the earliest time-out is due, in nanoseconds of the process's clock; nothing when there is none.
    std::optional<std::uint64_t> NextDue() const;
    /// Leaves those whose time is up. They are entered again when the pointer moves on them.
    void LeaveDue(InputEvent const& p_input);

private:
    struct Entry {
        Core::WeakPtr<Render::Vis> node;
        std::uint64_t name;
        bool stops = false;
        bool isOver = true; ///< false once its time is up
        bool hasOut = false; ///< wanted to know when the pointer goes when it came
        bool isReached = false;
        int timeOut = 0; ///< milliseconds, 0 for none
        std::optional<Types::Pos> heldAt = std::nullopt; ///< for a node that need not be under the pointer
        int heldFor = 0; ///< pixels

        bool IsHeld(Types::Pos const& p_position) const noexcept;
        std::optional<std::uint64_t> Due(std::uint64_t p_lastEvent) const noexcept;
    };

    Entry* Find(EventTarget const& p_target);
    void Enter(EventTarget const& p_target, InputEvent const& p_input, Entry& p_entry);
    void Out(Entry& p_entry, InputEvent const& p_input, Render::HitRecord const* p_hit);
    template <class Condition>
    void LeaveWhere(EventTargets const& p_targets, InputEvent const& p_input, Condition const& p_condition);

    EventCaller& _caller;
    std::vector<Entry> _entries;
    std::uint64_t _lastEvent = 0;
};

} // namespace Qor::Chart::Host
