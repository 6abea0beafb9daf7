#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/TimeStamp.h"
#include "framework/core/WeakPtr.h"
#include "framework/types/Pos.h"
#include "framework/types/Viewport.h"
#include "host/Camera.h"
#include "host/DropTracker.h"
#include "host/EventCaller.h"
#include "host/EventTargets.h"
#include "host/Export.h"
#include "host/FocusTracker.h"
#include "host/HoverTracker.h"
#include "host/InputEvent.h"
#include "host/Picker.h"
#include "host/PressTracker.h"
#include "host/SelectionInput.h"
#include "host/TimerList.h"
#include "render/events/EventSink.h"
#include "render/pick/SelectRecord.h"

#include <boost/any.hpp>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Qor::Chart::Host {

class Scene;

/// Turns what a window toolkit says of pointer, wheel, keys and drops into calls of the nodes' event handlers. It decides
/// who is offered what, in which order; docs/events.md has the policy as a table. What no node wants goes to the
/// program's callbacks.
///
///     Host::InputDispatcher input(scene);
///     input.SetView(camera, window);
///     input.Callbacks().click = [](auto const& p_event, auto const& p_hits, bool) { ... };
///     input.PointerMoved(pixels.ToFramebuffer(event.x, event.y), modifiers); // and so on, from the toolkit's events
///     input.FrameDone(); // after each frame
///
/// All places are framebuffer pixels of the window, origin in the lower left corner: `WindowPixels` makes them. Handlers
/// that throw are reported to the scene's dispatcher, with the node's name, and count as not interested. Input that
/// arrives while a handler or callback runs waits until everything before it is done. Use it on the scene's thread; the
/// scene must outlive it.
class QOR_HOST_API InputDispatcher : public Render::EventSink {
public:
    explicit InputDispatcher(Scene& p_scene);
    ~InputDispatcher() override;
    InputDispatcher(InputDispatcher const&) = delete;
    InputDispatcher& operator=(InputDispatcher const&) = delete;

    /// Free to change at any time.
    InputCallbacks& Callbacks() noexcept { return _callbacks; }
    InputSettings& Settings() noexcept { return _settings; }
    /// Null says that there are no windows to open; the host must outlive its use. The scene's capabilities follow.
    void SetPopOutHost(Render::PopOutHost* p_host) noexcept;
    /// Null says that there is neither clipboard nor input method; the host must outlive its use.
    void SetTextInputHost(Render::TextInputHost* p_host) noexcept { _textInputHost = p_host; }

    /// How the scene is looked at from now on; until the first call nothing is hit.
    /// @param p_window  the rectangle that the scene is drawn into
    void SetView(Camera const& p_camera, Types::Viewport<0> const& p_window);

    /// \name Pointer
    /// Buttons are 0 primary, 1 secondary, 2 middle, up to 31. Modifiers are those of `Render::EventInformation`. A finger
    /// is a pointer that presses without having moved there; see `SetTouch`.
    /// @{
    void PointerMoved(Types::Pos const& p_position, std::uint32_t p_modifiers = 0);
    void PointerPressed(Types::Pos const& p_position, std::uint32_t p_button = 0, std::uint32_t p_modifiers = 0);
    void PointerReleased(Types::Pos const& p_position, std::uint32_t p_button = 0, std::uint32_t p_modifiers = 0);
    /// The pointer is outside the window now. A drag goes on.
    void PointerLeft();
    /// The toolkit takes a press back: a drag is undone as by the Escape key, and all buttons are up.
    void PointerCancelled();
    /// The release will not come: a drag ends where it is, and all buttons are up.
    void CaptureLost();
    /// A press and a release of a finger; `SetTouch(true)` included.
    void Tapped(Types::Pos const& p_position, std::uint32_t p_modifiers = 0);
    /// Whether the pointer is a finger, for which more around it counts as under it.
    void SetTouch(bool p_isTouch) noexcept { _isTouch = p_isTouch; }
    /// @param p_notches  of the wheel, away from the user is positive; fractions come from touchpads
    void Scrolled(Types::Pos const& p_position, double p_notches, std::uint32_t p_modifiers = 0);
    /// @}

    /// \name Keys
    /// They go to the node that has the focus, if any has, before others are asked.
    /// @{
    /// @param p_text  what the press types; empty for most keys
    void KeyPressed(int p_key, std::uint32_t p_modifiers = 0, std::wstring p_text = {});
    /// The press of a key that means something to the program as well, such as a shortcut: offered to the node that has
    /// the focus, and to nobody else. The answer says whether that has used it, so that the program must not; false as
    /// well while a handler runs.
    bool KeyOffered(int p_key, std::uint32_t p_modifiers = 0, std::wstring const& p_text = {});
    /// What an input method gives to the node that has the focus.
    /// @param p_text         what is typed for good, before the composition
    /// @param p_composition  what is being composed now; empty when nothing is
    void TextComposed(std::wstring const& p_text, std::wstring const& p_composition);
    void KeyReleased(int p_key, std::uint32_t p_modifiers = 0);
    /// The user types elsewhere: a drag ends where it is, and keys that nodes hold are released. The node that has the
    /// focus has it again after `FocusGained`.
    void FocusLost();
    void FocusGained();
    /// Whether a node has taken the focus.
    bool HasFocus() const noexcept { return _focus.IsTaken(); }
    /// @}

    /// \name Dragging in from outside
    /// The answers say whether a node would take, or has taken, what is dragged; false as well while a handler runs.
    /// @{
    bool DragMoved(Types::Pos const& p_position, boost::any const& p_dragged, std::uint32_t p_modifiers = 0);
    void DragLeft();
    bool Dropped(Types::Pos const& p_position, boost::any const& p_dragged, std::uint32_t p_modifiers = 0);
    /// @}

    /// The window has updated or drawn the scene: what is under a resting pointer may be something else now.
    void FrameDone();

    /// In how many milliseconds `RunDue` has something to do, 0 when it is overdue; nothing when nothing waits.
    std::optional<int> DueIn() const noexcept;
    /// Runs the call-backs and time-outs that are due.
    void RunDue();

    /// What was under the pointer when it was last looked, best first; empty while it is outside.
    std::vector<Render::HitRecord> const& Hits() const noexcept { return _targets.Hits(); }
    /// How often the scene was picked.
    std::uint64_t PickCount() const noexcept { return _pickCount; }
    /// Whether a node or the program is being dragged.
    bool IsDragging() const noexcept { return _press.IsDragging(); }

    /// \name For handlers
    /// @{
    void RequestRedraw() override;
    void RequestUpdate() override;
    void SelectBox(Render::BoxSelection const& p_box) override;
    void AboutToMove(Core::WeakPtr<Model::ModelNode> const& p_node) override;
    void Hover(Render::SelectRecord const& p_record) override;
    void EndHover(Core::WeakPtr<Model::ModelNode> const& p_node) override;
    Render::PopOutHost* GetPopOutHost() override { return _popOutHost; }
    void TakeFocus(
        Core::WeakPtr<Render::Vis> const& p_node, std::function<void(FocusChange)> const& p_changed) override;
    void LeaveFocus(Core::WeakPtr<Render::Vis> const& p_node) override;
    Render::TextInputHost* GetTextInputHost() override { return _textInputHost; }
    /// @}

private:
    struct Waiting {
        std::function<void()> input;
        bool isMove;
    };

    /// Runs a piece of input and what follows it, at once or, when another is under way, after that. A move takes the
    /// place of one that waits just before it.
    template <class Input>
    void Take(Input p_input, bool p_isMove = false);
    template <class Input>
    void Run(Input const& p_input);
    void RunQueue();
    /// Hands events to the model's listeners, and asks for an update when anything below p_root has changed.
    void Settle(Core::Ptr<Render::Vis> const& p_root, Core::TimeStamp p_before);
    void WakeUp();
    std::optional<std::uint64_t> NextDue() const;

    InputEvent Now() const;
    int ToPixels(double p_logical) const;
    void Place(Types::Pos const& p_position, std::uint32_t p_modifiers);
    void GoOutside();
    /// Picks if what is known of the place is out of date; whether it did.
    bool Look();
    /// The same, and hovering follows.
    void LookAndHover(bool p_isMove);
    void LookAtRest();
    bool IsResting() const noexcept { return _isInside && !_press.IsDown(); }
    /// @param p_where  a point or a rectangle
    template <class Where>
    std::vector<Render::HitRecord> PickAt(Where const& p_where);

    void Move(Types::Pos const& p_position, std::uint32_t p_modifiers);
    void Press(Types::Pos const& p_position, std::uint32_t p_button, std::uint32_t p_modifiers);
    void Release(Types::Pos const& p_position, std::uint32_t p_button, std::uint32_t p_modifiers);
    void Drag();
    /// Ends the press, with its drag.
    /// @param p_upButtons  those that count as up from now on, by their masks; with none the press waits for its release
    void BreakOff(bool p_takesBack, std::uint32_t p_upButtons);
    /// Hovering starts anew for the node whose drag has ended, and follows the pointer again for all.
    void AfterPress(Core::WeakPtr<Render::Vis> const& p_owner, bool p_wasDragging);
    /// Whom a key is offered to when who has the focus does not want it.
    EventTargets KeyTargets(InputEvent const& p_event) const;
    void PressKey(InputEvent const& p_event);
    /// Offers a key to the node that has the focus, then to those that Tab goes to; whether it is used up.
    bool PressFocusedKey(InputEvent const& p_event);
    /// Notes who holds the key; whether anybody has taken it.
    bool Hold(int p_key, EventCaller::Outcome const& p_outcome);
    InputEvent KeyEvent(int p_key, std::wstring const& p_text) const;
    void ReleaseKey(int p_key);
    void ReleaseHeldKeys();
    void EndHover();
    void EndHoverOfDead();

    Scene& _scene;
    InputCallbacks _callbacks;
    InputSettings _settings;
    Render::PopOutHost* _popOutHost = nullptr;
    Render::TextInputHost* _textInputHost = nullptr;
    Picker _picker;
    TimerList _timers;
    EventCaller _caller;
    HoverTracker _hover;
    SelectionInput _selection;
    PressTracker _press;
    DropTracker _drops;
    FocusTracker _focus;

    Camera _camera;
    Types::Viewport<0> _window;
    EventTargets _targets; ///< under the pointer
    Render::PickPoint _lookedAt;
    bool _isStale = true; ///< something else may be there by now
    bool _looksAgain = false; ///< and it is to be looked at even if the pointer rests
    std::uint64_t _nextLook = 0; ///< nanoseconds; a resting pointer is not looked at before
    std::uint64_t _pickCount = 0;

    Types::Pos _position;
    bool _isInside = false;
    bool _isTouch = false;
    std::uint32_t _buttons = 0;
    std::uint32_t _modifiers = 0;
    std::map<int, EventTarget> _heldKeys; ///< and the node that has handled the press; without a hit
    std::optional<Render::SelectRecord> _hovered; ///< what the program was told of, until it is told of the end

    std::deque<Waiting> _queue;
    bool _isBusy = false;
    std::optional<std::uint64_t> _announced; ///< when the program was told to wake up
};

} // namespace Qor::Chart::Host
