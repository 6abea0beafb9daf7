#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/types/Pos.h"
#include "host/EventCaller.h"
#include "host/EventTargets.h"
#include "host/HoverTracker.h"
#include "host/InputEvent.h"
#include "host/SelectionInput.h"

#include <cstdint>
#include <optional>

namespace Qor::Chart::Host {

/// Follows a button from its press to its release, and tells clicks, double clicks and drags apart. One button at a time:
/// others that go down meanwhile take no part. A drag belongs to the first node that handles its beginning, or else to
/// the program, and to nobody else until it ends.
class PressTracker {
public:
    PressTracker(EventCaller& p_caller, HoverTracker& p_hover, SelectionInput& p_selection,
        InputCallbacks const& p_callbacks) noexcept
        : _caller(p_caller), _hover(p_hover), _selection(p_selection), _callbacks(p_callbacks) {}

    bool IsDown() const noexcept { return _phase != Phase::None; }
    bool IsDragging() const noexcept { return _phase == Phase::Node || _phase == Phase::Program; }
    std::uint32_t Button() const noexcept { return _button; }
    Types::Pos const& Position() const noexcept { return _position; }
    /// What is dragged, while it wants to be dropped on others; null otherwise.
    EventTarget const* DraggedOntoOthers() const;
    /// The drag ends against the user's will: what it hands over is not wanted.
    bool IsBrokenOff() const noexcept { return _isBrokenOff; }

    /// A button has gone down on some targets.
    /// @param p_threshold  how many pixels the pointer must move to drag
    void Begin(
        InputEvent const& p_input, EventTargets const& p_targets, int p_threshold, int p_doubleClickMilliseconds);
    void Move(InputEvent const& p_input);
    /// The button has gone up. Gives whose drag has ended; empty when it was no node's.
    Core::WeakPtr<Render::Vis> End(InputEvent const& p_input);
    /// Takes a drag back: it goes to where it began, and ends. The same goes for a press; both wait for the release.
    Core::WeakPtr<Render::Vis> TakeBack(InputEvent const& p_input);
    /// Ends a drag where it is. The press waits for the release, unless it is forgotten as well.
    Core::WeakPtr<Render::Vis> Stop(InputEvent const& p_input);
    /// No button is down any more, whatever was.
    void Forget() noexcept;

private:
    enum class Phase {
        None, ///< the button is up
        Pressed, ///< and not moved far enough to drag
        Node, ///< a node is dragged
        Program, ///< no node wanted the drag
        Over, ///< nothing comes until the release
    };

    /// The click before, for the double click.
    struct LastClick {
        std::uint32_t button;
        Types::Pos position;
        std::uint64_t pressed;
        std::optional<EventTarget> target;
        EventTargets targets;
    };

    bool IsFar(Types::Pos const& p_from, Types::Pos const& p_to) const noexcept;
    bool IsSecondClick(int p_milliseconds) const;
    void BeginDrag(InputEvent const& p_input);
    bool OfferDrag(EventTarget const& p_target, InputEvent const& p_input, bool& p_isStopped);
    void Drag(InputEvent const& p_input, InputCallbacks::DragPhase p_phase);
    Core::WeakPtr<Render::Vis> EndDrag(InputEvent const& p_input, InputCallbacks::DragPhase p_phase);
    void Click(InputEvent const& p_input);

    EventCaller& _caller;
    HoverTracker& _hover;
    SelectionInput& _selection;
    InputCallbacks const& _callbacks;

    Phase _phase = Phase::None;
    std::uint32_t _button = 0;
    Types::Pos _position;
    std::uint64_t _pressed = 0; ///< nanoseconds of the process's clock
    int _threshold = 0;
    bool _isSecond = false; ///< the press of what may be a double click
    EventTargets _targets; ///< at the place of the press
    std::optional<EventTarget> _owner;
    bool _owesEnd = false;
    bool _isBrokenOff = false;
    std::optional<LastClick> _lastClick;
};

} // namespace Qor::Chart::Host
