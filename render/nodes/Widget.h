#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"

#include <cstdint>

namespace Qor::Chart::Render {

class DrawContext;
class EventInformation;

/// Something on the screen that can be pointed at and worked with by mouse and keys: a field for text, a button, a
/// colour picker. It is no node: a node owns it, gives it a place, draws it in an overlay pass and hands events to it.
/// Places are in the pixels in which the owner draws, the origin in the lower left corner.
class QOR_VIS_API Widget {
public:
    enum Flag : std::uint32_t {
        FlagHover = 0x4, ///< the pointer is over it
        FlagFocus = 0x8, ///< keys go to it
        FlagAnimated = 0x10, ///< it fades in and out instead of coming and going at once
        FlagDisabled = 0x20, ///< it shows, and takes no events
        FlagShown = 0x40,
    };

    virtual ~Widget();

    /// The place and the size of the widget; empty at first.
    void SetRectangle(Types::Viewport<0> const& p_rectangle);
    Types::Viewport<0> const& Rectangle() const noexcept { return _rectangle; }

    void Set(Flag p_flag, bool p_on);
    bool Has(Flag p_flag) const noexcept { return (_flags & p_flag) != 0; }

    /// True inside the rectangle, whether or not the widget is shown: a place is known before it opens under the
    /// pointer.
    virtual bool IsHit(Types::Pos const& p_pos) const;

    /// Draws the widget in pixels as after `Agl::Ortho2D`, as far as it is shown, and asks for another frame while it
    /// moves by itself. The depth test is the caller's.
    virtual void Draw(DrawContext const& p_context) = 0;

    /// \name Events
    /// What the user does, handed on by the owner. A place is the pointer's in the widget's pixels; everything else
    /// stands in the event. The answers say whether the widget has used the event; by default none is. A disabled
    /// widget is not asked.
    /// @{
    /// The primary button goes down at a place; true begins a drag, which ends with `Release`.
    virtual bool Press(Types::Pos const& p_pos, EventInformation& p_event);
    virtual void Drag(Types::Pos const& p_pos, EventInformation& p_event);
    virtual void Release(Types::Pos const& p_pos, EventInformation& p_event);
    /// A second press shortly after the first, such as one that takes a word.
    virtual bool DoublePress(Types::Pos const& p_pos, EventInformation& p_event);
    /// A key, or text that was typed or composed, while the widget has the focus.
    virtual bool Key(EventInformation& p_event);
    /// The Tab key has brought the focus, which is set already; with Shift held it came from behind.
    virtual void TabbedInto(EventInformation& p_event);
    /// @}

    /// While it has the focus: whether the user types into its window from now on. By default that changes nothing.
    virtual void WindowChanged(bool p_isEntered);

    /// Whether a press and the Tab key give it the focus: unless it is disabled, by default.
    virtual bool IsFocusable() const;

protected:
    Widget() = default;
    Widget(Widget const&) = default;
    Widget& operator=(Widget const&) = default;

    /// After a flag was set or cleared.
    virtual void FlagChanged(Flag p_flag);
    /// After the rectangle was set.
    virtual void RectangleChanged();

private:
    Types::Viewport<0> _rectangle;
    std::uint32_t _flags = 0;
};

} // namespace Qor::Chart::Render
