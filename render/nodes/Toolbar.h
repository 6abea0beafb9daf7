#pragma once

#include "framework/core/Reference.h"
#include "framework/model/Toolbar.h"
#include "framework/ogl/HitRecord.h"
#include "framework/types/Pos.h"
#include "framework/types/Viewport.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"
#include "render/Export.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"
#include "render/events/EventHandler.h"
#include "render/nodes/SchemaFont.h"
#include "render/nodes/ToolTip.h"
#include "render/nodes/ToolbarButton.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/nodes/ToolbarPainter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace Qor::Chart::Render {

/// The visual node of a toolbar: a bar over the scene of its pane with one button for each action, the first one on the
/// left or on top. A button shows the image of its action or, without one that can be had, the label. A click on it
/// executes the action, unless that is disabled; what the action throws leaves the handler. When the pointer rests on a
/// button, the action's tool tip appears beside the bar. A movable bar is dragged by its handle or anywhere between the
/// buttons; the model's position follows, measured from the same side and in the same unit, and stays inside the pane.
///
/// Hit records have the name `Ogl::HitRecord::NameFirst` + i for the button of action i and, behind it or alone,
/// `Ogl::HitRecord::NameDefault` for the bar. The result's data is the action, as a `Core::WeakPtr<Model::Action>`.
///
/// The position counts in pixels of the device; buttons, texts and gaps grow with the pixel ratio. Without its model,
/// or while that is not visible, the node shows nothing and is not hit.
class QOR_VIS_API Toolbar : public Vis, public EventHandler, public SelectsBelow {
public:
    /// How long a button looks pressed after a click.
    static constexpr int PressMilliseconds = 120;

    Toolbar();
    ~Toolbar() override;

    /// Mirrors a model node from now on. One that is no toolbar is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

    Event::Result OnMouseOver(EventInformation& p_event) override;
    void OnMouseOut(EventInformation& p_event) override;
    /// Begins to move the bar, or presses a button.
    Event::Result OnDragBegin(EventInformation& p_event) override;
    void OnDrag(EventInformation& p_event) override;
    /// Executes the action of a pressed button when the mouse button was let go over it.
    void OnDragEnd(EventInformation& p_event) override;
    Event::Result OnClick(EventInformation& p_event) override;

private:
    using Rectangle = Types::Viewport<0>;
    using WeakAction = Core::WeakPtr<Model::Action>;

    enum class Drag {
        None,
        Bar,
        Button,
    };

    NodeStatus DoUpdate(UpdateContext const& p_context) override;
    void DoSetupOverlay(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    DrawResult DoDrawOverlay(DrawContext const& p_context) override;
    DrawResult DoHighlightOverlay(DrawContext const& p_context) override;
    bool DoHitOverlay(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) override;

    /// The model, null unless it is there and visible.
    Core::Ptr<Model::Toolbar> Shown() const;
    ToolbarButton const* Find(Core::Ptr<Model::Action> const& p_action) const;
    ToolbarLayout LaidOut(DrawContext const& p_context, Model::Toolbar const& p_model);
    ToolbarPainter::Look LookOf(std::size_t p_button) const;
    /// The button whose tip is to be seen.
    std::optional<std::size_t> TipButton() const;
    /// The action whose button was hit; null for the bar and for an action that is no longer there.
    Core::Ptr<Model::Action> ActionOf(EventInformation const& p_event) const;
    /// The action, unless it has left the bar or the bar is not shown.
    Core::Ptr<Model::Action> Present(WeakAction const& p_action) const;
    bool IsOverDragged(EventInformation const& p_event) const;

    void Hover(std::uint64_t p_name);
    void Execute(EventInformation& p_event, Core::Ptr<Model::Action> const& p_action);
    void MoveBar(EventInformation const& p_event);
    void Press(WeakAction p_action);
    /// Has the node updated and drawn again by a call that came without an event.
    void Refresh();

    Core::WeakRef<Model::Toolbar> _toolbar;
    std::vector<ToolbarButton> _buttons; ///< as the model was at the last update
    SchemaFont _font;
    ToolbarLayout _layout; ///< of the last setup, empty while nothing is shown
    Rectangle _pane; ///< of the last setup, in pixels of the window

    std::uint64_t _hovered = Ogl::HitRecord::NameInvalid; ///< the name of the part under the pointer
    ToolTip _tip;
    WeakAction _pressed; ///< its button looks pressed
    unsigned _pressNumber = 0;

    Drag _drag = Drag::None;
    bool _isFirstMove = false; ///< a drag of the bar has begun, and nothing has moved yet
    WeakAction _dragged; ///< the action whose button a drag has begun on
    Types::Pos _dragBegin; ///< where, in pixels of the window
    Types::Pos _dragOffset; ///< from the bar's corner to there
    Types::XPosition _xBefore;
    Types::YPosition _yBefore;
};

} // namespace Qor::Chart::Render
