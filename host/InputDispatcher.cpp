#include "host/InputDispatcher.h"

#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Ensure.h"
#include "host/PaneFinder.h"
#include "host/Scene.h"
#include "host/WindowPixels.h"
#include "render/events/EventInformation.h"
#include "render/pick/BoxSelection.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <utility>

namespace Qor::Chart::Host {

using Render::EventHandler;
using WeakVis = Core::WeakPtr<Render::Vis>;

namespace {

/// A resting pointer is looked at again after this many times as long as a look takes, so that following what moves
/// below it costs a fifth of the time at most.
constexpr std::uint64_t RestFactor = 4;
/// How much waiting input is run in one go; more is left for `RunDue`, so that handlers which make input of their own
/// without end do not hold up the window.
constexpr int MaxInARow = 256;
constexpr std::uint64_t NanosecondsPerMillisecond = 1'000'000;

constexpr std::uint32_t AllButtons = ~std::uint32_t{0};

std::uint32_t MaskOf(std::uint32_t p_button) {
    return p_button < 32 ? std::uint32_t{1} << p_button : 0;
}

int MillisecondsUntil(std::uint64_t p_due) {
    std::uint64_t const now = qordebug::now();
    if (p_due <= now)
        return 0;
    std::uint64_t const left = (p_due - now + NanosecondsPerMillisecond - 1) / NanosecondsPerMillisecond;
    return static_cast<int>(std::min<std::uint64_t>(left, std::numeric_limits<int>::max()));
}

std::optional<std::uint64_t> Earlier(std::optional<std::uint64_t> p_a, std::optional<std::uint64_t> p_b) {
    return p_a && p_b ? std::min(p_a, p_b) : p_a ? p_a : p_b;
}

} // namespace

InputDispatcher::InputDispatcher(Scene& p_scene)
    : _scene(p_scene)
    , _picker(p_scene)
    , _caller(p_scene, *this, _timers)
    , _hover(_caller)
    , _selection(p_scene, _caller, _hover, _window)
    , _press(_caller, _hover, _selection, _callbacks)
    , _drops(_caller)
    , _focus(p_scene, _caller) {}

InputDispatcher::~InputDispatcher() {
    _focus.End();
}

void InputDispatcher::SetPopOutHost(Render::PopOutHost* p_host) noexcept {
    _popOutHost = p_host;
    _scene.Capabilities().popOutWindows = p_host != nullptr;
}

void InputDispatcher::SetView(Camera const& p_camera, Types::Viewport<0> const& p_window) {
    _camera = p_camera;
    _window = p_window;
    _isStale = true;
}

// One thing after another.

template <class Input>
void InputDispatcher::Take(Input p_input, bool p_isMove) {
    if (!_isBusy && _queue.empty())
        Run(p_input);
    else if (p_isMove && !_queue.empty() && _queue.back().isMove)
        _queue.back().input = std::move(p_input);
    else
        _queue.push_back({std::move(p_input), p_isMove});
    if (_isBusy)
        return;
    RunQueue();
    WakeUp();
}

template <class Input>
void InputDispatcher::Run(Input const& p_input) {
    struct Busy {
        explicit Busy(bool& p_flag) noexcept : flag(p_flag) { flag = true; }
        ~Busy() { flag = false; }
        bool& flag;
    } const busy(_isBusy);
    Core::Ptr<Render::Vis> const root = _scene.Visual();
    Core::TimeStamp const before = root->Time();
    p_input();
    _hover.SetTimeOuts(_caller.TakeTimeOuts());
    EndHoverOfDead();
    _focus.EndOfGone();
    Settle(root, before);
}

void InputDispatcher::RunQueue() {
    for (int i = 0; i < MaxInARow && !_queue.empty(); ++i) {
        Waiting const next = std::move(_queue.front());
        _queue.pop_front();
        Run(next.input);
    }
}

void InputDispatcher::Settle(Core::Ptr<Render::Vis> const& p_root, Core::TimeStamp p_before) {
    _scene.Dispatcher().DeliverEvents();
    if (p_root->Time() != p_before || _scene.Dispatcher().UpdateRequested())
        RequestUpdate();
}

std::optional<std::uint64_t> InputDispatcher::NextDue() const {
    std::optional<std::uint64_t> next = _timers.NextDue();
    if (!_press.IsDown()) // nobody is left before the release
        next = Earlier(next, _hover.NextDue());
    if (_looksAgain && IsResting())
        next = Earlier(next, _nextLook);
    return _queue.empty() ? next : Earlier(next, std::uint64_t{0});
}

std::optional<int> InputDispatcher::DueIn() const noexcept {
    std::optional<std::uint64_t> const next = NextDue();
    return next ? std::optional(MillisecondsUntil(*next)) : std::nullopt;
}

void InputDispatcher::WakeUp() {
    std::optional<std::uint64_t> const next = NextDue();
    if (!next || (_announced && *_announced <= *next))
        return;
    _announced = next;
    _caller.Tell(_callbacks.wakeUp, MillisecondsUntil(*next));
}

void InputDispatcher::RunDue() {
    _announced.reset();
    if (_isBusy) // what is due is announced again after that
        return;
    RunQueue();
    Take([this] {
        for (TimerList::Timer const& timer : _timers.TakeDue())
            _caller.CallTimer(timer);
        if (!_press.IsDown())
            _hover.LeaveDue(Now());
        LookAtRest();
    });
}

// What is under the pointer.

InputEvent InputDispatcher::Now() const {
    InputEvent event;
    event.position = _position;
    event.pressed = _press.IsDown() ? _press.Position() : _position;
    event.button = _press.IsDown() ? _press.Button() : 0;
    event.buttons = _buttons;
    event.modifiers = _modifiers;
    return event;
}

int InputDispatcher::ToPixels(double p_logical) const {
    return WindowPixels{{}, _scene.Capabilities().pixelRatio}.ToFramebuffer(p_logical);
}

void InputDispatcher::Place(Types::Pos const& p_position, std::uint32_t p_modifiers) {
    _position = p_position;
    _modifiers = p_modifiers;
    _isInside = true;
    _hover.Restart();
}

void InputDispatcher::GoOutside() {
    _isInside = false;
    _isStale = true;
    _targets = EventTargets();
    _hover.LeaveAll(Now());
}

template <class Where>
std::vector<Render::HitRecord> InputDispatcher::PickAt(Where const& p_where) {
    ++_pickCount;
    try {
        return _picker.Pick(_camera, _window, p_where);
    } catch (std::exception const& failure) {
        _scene.Dispatcher().ReportException(
            std::string("Nothing can be picked: ") + failure.what(), Utility::AtLine(__PRETTY_FUNCTION__, __LINE__));
    }
    return {};
}

bool InputDispatcher::Look() {
    if (!_isInside)
        return false;
    int const tolerance = ToPixels(_isTouch ? _settings.touchTolerance : _settings.tolerance);
    Render::PickPoint const point{_position, {tolerance, tolerance}};
    if (!_isStale && point == _lookedAt)
        return false;
    std::uint64_t const start = qordebug::now();
    _targets = EventTargets(PickAt(point));
    std::uint64_t const end = qordebug::now();
    _nextLook = end + RestFactor * (end - start);
    _lookedAt = point;
    _isStale = false;
    _looksAgain = false;
    return true;
}

void InputDispatcher::LookAndHover(bool p_isMove) {
    if (Look() || p_isMove)
        _hover.Update(_targets, Now(), p_isMove);
}

void InputDispatcher::LookAtRest() {
    if (_looksAgain && IsResting() && qordebug::now() >= _nextLook)
        LookAndHover(false);
}

void InputDispatcher::FrameDone() {
    _isStale = true;
    _looksAgain = true;
    if (!_isBusy)
        Take([this] { LookAtRest(); });
}

// Pointer.

void InputDispatcher::PointerMoved(Types::Pos const& p_position, std::uint32_t p_modifiers) {
    Take([this, p_position, p_modifiers] { Move(p_position, p_modifiers); }, true);
}

void InputDispatcher::Move(Types::Pos const& p_position, std::uint32_t p_modifiers) {
    Place(p_position, p_modifiers);
    if (_press.IsDown())
        Drag();
    else
        LookAndHover(true);
}

void InputDispatcher::Drag() {
    _press.Move(Now());
    if (EventTarget const* const dragged = _press.DraggedOntoOthers()) {
        Look();
        _drops.Move(_targets, Now(), dragged);
    }
}

void InputDispatcher::PointerPressed(Types::Pos const& p_position, std::uint32_t p_button, std::uint32_t p_modifiers) {
    Take([this, p_position, p_button, p_modifiers] { Press(p_position, p_button, p_modifiers); });
}

void InputDispatcher::Press(Types::Pos const& p_position, std::uint32_t p_button, std::uint32_t p_modifiers) {
    bool const isNew = !_press.IsDown() || _press.Button() == p_button;
    if (isNew && _press.IsDown())
        BreakOff(false, MaskOf(p_button));
    if (isNew) {
        bool const hasMoved = !_isInside || !(p_position == _position);
        Place(p_position, p_modifiers);
        LookAndHover(hasMoved);
        bool const isElsewhere = std::ranges::none_of(
            _targets, [&](EventTarget const& p_target) { return p_target.hit && _focus.Has(p_target.node); });
        if (isElsewhere)
            _focus.End();
    }
    _buttons |= MaskOf(p_button);
    if (!isNew)
        return;
    InputEvent event = Now();
    event.button = p_button;
    _press.Begin(event, _targets, ToPixels(_settings.dragThreshold), _settings.doubleClickTime);
}

void InputDispatcher::PointerReleased(Types::Pos const& p_position, std::uint32_t p_button, std::uint32_t p_modifiers) {
    Take([this, p_position, p_button, p_modifiers] { Release(p_position, p_button, p_modifiers); });
}

void InputDispatcher::Release(Types::Pos const& p_position, std::uint32_t p_button, std::uint32_t p_modifiers) {
    if (!_press.IsDown() || _press.Button() != p_button) {
        _buttons &= ~MaskOf(p_button);
        return;
    }
    bool const hasMoved = !(p_position == _position) || p_modifiers != _modifiers;
    if (hasMoved && _isInside) {
        Place(p_position, p_modifiers);
        Drag();
    }
    _buttons &= ~MaskOf(p_button);
    if (EventTarget const* const dragged = _press.DraggedOntoOthers())
        _drops.Drop(Now(), dragged);
    bool const wasDragging = _press.IsDragging();
    AfterPress(_press.End(Now()), wasDragging);
}

void InputDispatcher::AfterPress(WeakVis const& p_owner, bool p_wasDragging) {
    _hover.Restart();
    if (!p_owner.IsEmpty())
        _hover.Leave(p_owner, Now());
    if (p_wasDragging)
        _isStale = true;
    if (IsResting())
        LookAndHover(false);
}

void InputDispatcher::BreakOff(bool p_takesBack, std::uint32_t p_upButtons) {
    bool const wasDragging = _press.IsDragging();
    if (EventTarget const* const dragged = _press.DraggedOntoOthers())
        _drops.Leave(Now(), dragged);
    WeakVis const owner = p_takesBack ? _press.TakeBack(Now()) : _press.Stop(Now());
    if (p_upButtons != 0)
        _press.Forget();
    _buttons &= ~p_upButtons;
    AfterPress(owner, wasDragging);
}

void InputDispatcher::PointerLeft() {
    Take([this] {
        if (!_press.IsDown())
            GoOutside();
    });
}

void InputDispatcher::PointerCancelled() {
    Take([this] {
        if (_press.IsDown())
            BreakOff(true, AllButtons);
        _buttons = 0;
    });
}

void InputDispatcher::CaptureLost() {
    Take([this] {
        if (_press.IsDown())
            BreakOff(false, AllButtons);
        _buttons = 0;
    });
}

void InputDispatcher::Tapped(Types::Pos const& p_position, std::uint32_t p_modifiers) {
    Take([this, p_position, p_modifiers] {
        _isTouch = true;
        Press(p_position, 0, p_modifiers);
        Release(p_position, 0, p_modifiers);
    });
}

void InputDispatcher::Scrolled(Types::Pos const& p_position, double p_notches, std::uint32_t p_modifiers) {
    Take([this, p_position, p_notches, p_modifiers] {
        if (_press.IsDown())
            return;
        Place(p_position, p_modifiers);
        LookAndHover(false);
        InputEvent event = Now();
        event.scroll = p_notches;
        if (!_caller.Offer(_targets, EventHandler::EventScroll, event).IsTaken())
            _caller.Tell(_callbacks.scroll, event);
    });
}

// Keys.

InputEvent InputDispatcher::KeyEvent(int p_key, std::wstring const& p_text) const {
    InputEvent event = Now();
    event.key = p_key;
    event.text = p_text;
    return event;
}

void InputDispatcher::KeyPressed(int p_key, std::uint32_t p_modifiers, std::wstring p_text) {
    Take([this, p_key, p_modifiers, text = std::move(p_text)] {
        _modifiers = p_modifiers;
        _hover.Restart();
        PressKey(KeyEvent(p_key, text));
    });
}

bool InputDispatcher::KeyOffered(int p_key, std::uint32_t p_modifiers, std::wstring const& p_text) {
    if (_isBusy || !_queue.empty() || _press.IsDown() || !_focus.IsTaken())
        return false;
    bool isTaken = false;
    Take([&] {
        _modifiers = p_modifiers;
        _hover.Restart();
        isTaken = Hold(p_key, _focus.Offer(KeyEvent(p_key, p_text)));
    });
    return isTaken;
}

void InputDispatcher::TextComposed(std::wstring const& p_text, std::wstring const& p_composition) {
    Take([this, p_text, p_composition] {
        _hover.Restart();
        InputEvent event = KeyEvent(Render::EventInformation::KeyNone, p_text);
        event.composition = p_composition;
        _focus.Offer(event);
    });
}

// A pane takes keys also where nothing of it is hit. Those that Tab goes to in their order are not asked out of it.
EventTargets InputDispatcher::KeyTargets(InputEvent const& p_event) const {
    EventTargets targets = _targets;
    if (_isInside)
        targets.AddRoot(PaneFinder::At(_scene.Visual(), _window, _position).pane);
    bool const isTab = p_event.key == Render::EventInformation::KeyTab;
    targets.RemoveIf([&](EventTarget const& p_target) {
        return _focus.Has(p_target.node) ||
            (isTab && EventCaller::IsConnected(p_target.node, EventHandler::EventKeyPress));
    });
    return targets;
}

bool InputDispatcher::Hold(int p_key, EventCaller::Outcome const& p_outcome) {
    if (p_outcome.isHandled)
        _heldKeys.insert_or_assign(p_key, EventTarget{p_outcome.handler, nullptr});
    return p_outcome.IsTaken();
}

bool InputDispatcher::PressFocusedKey(InputEvent const& p_event) {
    bool const hadFocus = _focus.IsTaken();
    if (Hold(p_event.key, _focus.Offer(p_event)))
        return true;
    if (p_event.key == Render::EventInformation::KeyTab)
        return Hold(p_event.key, _focus.OfferToNext(p_event));
    if (!hadFocus || p_event.key != Render::EventInformation::KeyEscape)
        return false;
    _focus.End();
    return true;
}

void InputDispatcher::PressKey(InputEvent const& p_event) {
    if (_press.IsDown()) {
        if (p_event.key == Render::EventInformation::KeyEscape)
            BreakOff(true, 0);
        return;
    }
    if (PressFocusedKey(p_event))
        return;
    LookAndHover(false);
    bool const isTaken =
        Hold(p_event.key, _caller.OfferToAll(KeyTargets(p_event), EventHandler::EventKeyPress, p_event));
    if (!isTaken && !_selection.PressKey(p_event, _targets.Hits(), _isInside))
        _caller.Tell(_callbacks.keyPress, p_event);
}

void InputDispatcher::KeyReleased(int p_key, std::uint32_t p_modifiers) {
    Take([this, p_key, p_modifiers] {
        _modifiers = p_modifiers;
        ReleaseKey(p_key);
    });
}

void InputDispatcher::ReleaseKey(int p_key) {
    InputEvent event = Now();
    event.key = p_key;
    auto const held = _heldKeys.extract(p_key);
    if (!held.empty())
        _caller.Call(held.mapped(), EventHandler::EventKeyRelease, event);
    else if (!_press.IsDown())
        _caller.OfferToAll(KeyTargets(event), EventHandler::EventKeyRelease, event);
}

void InputDispatcher::ReleaseHeldKeys() {
    while (!_heldKeys.empty())
        ReleaseKey(_heldKeys.begin()->first);
}

void InputDispatcher::FocusLost() {
    Take([this] {
        if (_press.IsDown())
            BreakOff(false, AllButtons);
        _buttons = 0;
        ReleaseHeldKeys();
        _modifiers = 0;
        _focus.SetWindow(false);
    });
}

void InputDispatcher::FocusGained() {
    Take([this] { _focus.SetWindow(true); });
}

// Dragging from outside.

bool InputDispatcher::DragMoved(Types::Pos const& p_position, boost::any const& p_dragged, std::uint32_t p_modifiers) {
    if (_isBusy || !_queue.empty() || _press.IsDown())
        return false;
    bool isTaken = false;
    Take([&] {
        Place(p_position, p_modifiers);
        Look();
        InputEvent event = Now();
        event.dragged = p_dragged;
        isTaken = _drops.Move(_targets, event, nullptr);
    });
    return isTaken;
}

void InputDispatcher::DragLeft() {
    Take([this] {
        if (_press.IsDown())
            return;
        _drops.Leave(Now(), nullptr);
        GoOutside();
    });
}

bool InputDispatcher::Dropped(Types::Pos const& p_position, boost::any const& p_dragged, std::uint32_t p_modifiers) {
    if (!DragMoved(p_position, p_dragged, p_modifiers) || !_queue.empty())
        return false;
    bool isTaken = false;
    Take([&] {
        InputEvent event = Now();
        event.dragged = p_dragged;
        isTaken = _drops.Drop(event, nullptr);
    });
    return isTaken;
}

// For handlers.

void InputDispatcher::RequestRedraw() {
    _scene.Dispatcher().RequestRedraw(0);
}

void InputDispatcher::RequestUpdate() {
    _scene.Dispatcher().RequestUpdate();
}

void InputDispatcher::SelectBox(Render::BoxSelection const& p_box) {
    if (_press.IsBrokenOff())
        return;
    bool const isTaken = _selection.SelectBox(p_box, [&] { return PickAt(p_box); });
    _caller.Tell(_callbacks.selectBox, p_box, isTaken);
}

void InputDispatcher::AboutToMove(Core::WeakPtr<Model::ModelNode> const& p_node) {
    _caller.Tell(_callbacks.aboutToMove, p_node);
}

void InputDispatcher::Hover(Render::SelectRecord const& p_record) {
    bool const isKnown = _hovered && !(*_hovered < p_record) && !(p_record < *_hovered);
    if (isKnown)
        return;
    EndHover();
    _hovered = p_record;
    _caller.Tell(_callbacks.hover, p_record);
}

void InputDispatcher::TakeFocus(WeakVis const& p_node, std::function<void(FocusChange)> const& p_changed) {
    _focus.Take(p_node, p_changed);
}

void InputDispatcher::LeaveFocus(WeakVis const& p_node) {
    _focus.Leave(p_node);
}

void InputDispatcher::EndHover(Core::WeakPtr<Model::ModelNode> const& p_node) {
    if (_hovered && _hovered->Selection() == p_node)
        EndHover();
}

void InputDispatcher::EndHover() {
    if (std::optional<Render::SelectRecord> const ended = std::exchange(_hovered, std::nullopt))
        _caller.Tell(_callbacks.endHover, ended->Selection());
}

void InputDispatcher::EndHoverOfDead() {
    if (_hovered && !_hovered->IsValid())
        EndHover();
}

} // namespace Qor::Chart::Host
