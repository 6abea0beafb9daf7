#pragma once

#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"
#include "render/Export.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"
#include "render/events/EventHandler.h"
#include "render/events/EventSink.h"
#include "render/nodes/Widget.h"

#include <optional>

namespace Qor::Chart::Render {

/// Base of nodes that show one widget over the scene of their pane. It places the widget, draws and hits it, and hands
/// it what the user does with pointer and keys. A press into a focusable widget gives it the keys, and so does the Tab
/// key when its turn comes.
///
/// A derived class has the widget as a member, follows its model in `DoUpdate`, and says in `Placed` where and how
/// large the widget is to be. Hit records have the name `Ogl::HitRecord::NameDefault`.
class QOR_VIS_API WidgetNode : public Vis, public EventHandler, public SelectsBelow {
public:
    ~WidgetNode() override;

    Event::Result OnMouseOver(EventInformation& p_event) override;
    void OnMouseOut(EventInformation& p_event) override;
    Event::Result OnDragBegin(EventInformation& p_event) override;
    void OnDrag(EventInformation& p_event) override;
    void OnDragEnd(EventInformation& p_event) override;
    Event::Result OnClick(EventInformation& p_event) override;
    Event::Propagation OnDoubleClick(EventInformation& p_event) override;
    /// Keys while it has the focus, and the Tab key that gives it.
    Event::Result OnKeyPress(EventInformation& p_event) override;

protected:
    /// Where a widget is to be seen.
    struct Placement {
        Types::XPosition x;
        Types::YPosition y;
        Types::Size size; ///< in pixels of the device; made smaller when the pane is
    };

    WidgetNode();

    /// Takes up the hooks of the update and the overlay, and the events: for the constructor of the derived class,
    /// which has its model handle by then.
    void ConnectAll();

    /// The widget, the same one at all times.
    virtual Widget& GetWidget() = 0;
    Widget const& GetWidget() const { return const_cast<WidgetNode*>(this)->GetWidget(); }

    /// The size that a model asks for, in pixels of the device. A side of 0 is left to the widget.
    /// @param p_width, p_height  in logical pixels
    /// @param p_needed  gives the size that the widget needs, when it is told the width that is asked for, or 0
    template <class Needed>
    static Types::Size SizeOf(double p_width, double p_height, DrawContext const& p_context, Needed const& p_needed) {
        Types::Size const asked(SideOf(p_width, p_context), SideOf(p_height, p_context));
        if (asked.width > 0 && asked.height > 0)
            return asked;
        Types::Size const needed = p_needed(asked.width);
        return {asked.width > 0 ? asked.width : needed.width, asked.height > 0 ? asked.height : needed.height};
    }

    /// Has the node updated and drawn again, when something came without an event.
    void Refresh();

private:
    /// Asked before each draw and pick; nothing shows nothing. The context has the schema and the pixel ratio.
    virtual std::optional<Placement> Placed(DrawContext const& p_context) = 0;

    void DoSetupOverlay(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    DrawResult DoDrawOverlay(DrawContext const& p_context) override;
    bool DoHitOverlay(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) override;

    static int SideOf(double p_asked, DrawContext const& p_context);
    void Place(Widget& p_widget, Placement const& p_placement) const;
    bool TakesPress(EventInformation const& p_event) const;
    Types::Pos PlaceOf(EventInformation const& p_event) const;
    void TakeFocus(EventInformation& p_event);
    void FocusChanged(EventSink::FocusChange p_change);

    Types::Viewport<0> _pane; ///< of the last setup, in pixels of the window
    bool _isShown = false; ///< in the last setup
    bool _isDragged = false;
    bool _hasFocus = false; ///< also while the window has not
};

} // namespace Qor::Chart::Render
