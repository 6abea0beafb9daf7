#pragma once

#include "framework/types/Pos.h"
#include "render/Export.h"

#include <boost/any.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Qor::Chart::Render {

class EventSink;
struct HitRecord;

/// What a handler is told of an event: where the pointer is, what is pressed, what was hit; and what it may ask of the
/// dispatcher in return. It lives for one call of a handler.
class QOR_VIS_API EventInformation {
public:
    /// Bits of `buttons`.
    enum ButtonMask : std::uint32_t {
        ButtonMaskPrimary = 1,
        ButtonMaskSecondary = 2,
        ButtonMaskMiddle = 4,
    };
    /// Bits of `modifiers`.
    enum ModifierMask : std::uint32_t {
        ModifierAlt = 1,
        ModifierControl = 2,
        ModifierShift = 4,
    };
    /// Values of `key` that nodes know; a letter has the code of its capital, a digit its own.
    enum KeyCode : int {
        KeyNone = 0, ///< text alone, as an input method gives it
        KeyBackspace = 8,
        KeyTab = 9,
        KeyReturn = 13,
        KeyEscape = 27, ///< ends a drag
        KeySpace = 32,
        KeyPageUp = 33,
        KeyPageDown = 34,
        KeyEnd = 35,
        KeyHome = 36,
        KeyLeft = 37,
        KeyUp = 38,
        KeyRight = 39,
        KeyDown = 40,
        KeyDelete = 46,
        KeyOrthographic = 79, ///< O
        KeyPerspective = 80, ///< P
        KeySign = 256, ///< the key of a sign that is neither letter nor digit has this plus the code of the sign
    };

    /// @param p_sink  takes what the handler asks for; it outlives the call
    /// @param p_hit   the record of the receiving node, null when it was not hit; it outlives the call
    EventInformation(EventSink& p_sink, HitRecord const* p_hit) noexcept : _sink(p_sink), _hit(p_hit) {}

    Types::Pos position; ///< of the pointer, in framebuffer pixels of the window, origin in the lower left corner
    std::uint32_t button = 0; ///< the button that the event is about; 0 is the primary one
    std::uint32_t buttons = 0; ///< all buttons that are down, see ButtonMask
    std::uint32_t modifiers = 0; ///< see ModifierMask
    int key = 0; ///< the key that the event is about; 0 for pointer events
    std::wstring text; ///< what the key press types, or what an input method gives for good; empty for most keys
    /// What an input method is composing in place of the selection, empty when it gives that up; nothing when the event
    /// says nothing of it.
    std::optional<std::wstring> composition;
    double scroll = 0.0; ///< notches of the wheel, away from the user is positive
    std::vector<HitRecord> const* hits = nullptr; ///< for a selection list: all that is under the pointer, best first
    boost::any dragged; ///< what is dragged in from outside, as the window gave it; empty otherwise

    /// The host, for what the handler wants of it.
    EventSink& Sink() const noexcept { return _sink; }
    /// What was hit of the receiving node; null when nothing was.
    HitRecord const* Hit() const noexcept { return _hit; }

    /// What is to be called later.
    struct LaterCall {
        int milliseconds;
        std::function<void()> call;
    };

    /// Asks to be called once more after a time, on the rendering thread, unless the receiving node is gone by then. A
    /// handler may ask for several calls; an empty one is none.
    void CallLater(int p_milliseconds, std::function<void()> p_call) {
        if (p_call)
            _laterCalls.push_back({p_milliseconds, std::move(p_call)});
    }
    std::vector<LaterCall> const& LaterCalls() const noexcept { return _laterCalls; }

    /// Sets after which time without events the dispatcher takes the pointer to have left the node; 0 never does. It holds
    /// until it is set again or the pointer has left.
    void SetTimeOut(int p_milliseconds) noexcept { _timeOut = p_milliseconds; }
    /// Nothing when it was not set.
    std::optional<int> TimeOut() const noexcept { return _timeOut; }

private:
    EventSink& _sink;
    HitRecord const* _hit;
    std::vector<LaterCall> _laterCalls;
    std::optional<int> _timeOut;
};

} // namespace Qor::Chart::Render
