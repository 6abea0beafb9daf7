#pragma once

#include "framework/core/ModificationWatcher.h"
#include "framework/core/Reference.h"
#include "framework/model/Pane.h"
#include "framework/model/Toolbar.h"
#include "framework/ogl/HitRecord.h"
#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"
#include "render/anim/Blender.h"
#include "render/core/PaneMarker.h"
#include "render/core/SelectsBelow.h"
#include "render/core/Vis.h"
#include "render/events/EventHandler.h"
#include "render/events/EventSink.h"
#include "render/nodes/PaneLayout.h"
#include "render/nodes/TextureWidget.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace Qor::Chart::Ogl {
class Text;
}

namespace Qor::Chart::Render {

/// The visual node of a pane: a rectangle of the window with its own viewport, scissor box, projection and background, in
/// which everything below it is drawn. Its scene fits it, seen with the camera on top of the context. Panes stand in panes
/// to any depth; each one lies in the rectangle of the one around it and is cut by it.
///
/// Over its scene a pane draws a border, a title bar that slides in while the pointer is on it, two buttons and four
/// grips, as far as the model wants them. All of that is drawn when the overlay highlight pass leaves the pane.
class QOR_VIS_API Viewport : public Vis, public EventHandler, public PaneMarker, public SelectsBelow {
public:
    /// What the pointer can find of a pane: the names in its hit records. The inside of a pane that is background pickable
    /// has the name `Ogl::HitRecord::NameDefault`.
    enum Part : std::uint64_t {
        PartTitleBar = Ogl::HitRecord::NameFirst,
        PartGripTopLeft,
        PartGripTopRight,
        PartGripBottomLeft,
        PartGripBottomRight,
        PartPopOutButton,
        PartDetachButton,
    };

    Viewport();
    ~Viewport() override;

    /// Mirrors a model node from now on. One that is no pane is reported and refused.
    void Attach(Core::Ptr<Model::ModelNode> const& p_model);

    Core::WeakPtr<Model::ModelNode> SourceModel() const override;

    /// Opens the title bar when the pointer is on a part of the decoration, and marks that part.
    Event::Result OnMouseOver(EventInformation& p_event) override;
    /// Closes the title bar unless it is pinned.
    void OnMouseOut(EventInformation& p_event) override;
    /// Begins to move the pane by its title bar, to resize it by a grip or, with the primary button and Control, to draw a
    /// rubber band over a pane that is background pickable. What is dragged is what `OnMouseOver` was called for before.
    Event::Result OnDragBegin(EventInformation& p_event) override;
    void OnDrag(EventInformation& p_event) override;
    /// Leaves the pane inside its parent, or hands the rubber band over. A pane that is dropped where the drag began, as
    /// when a drag is taken back, lies exactly as before.
    void OnDragEnd(EventInformation& p_event) override;
    /// Takes the content into a window of its own: as well (pop out), or instead until that is closed (detach).
    Event::Result OnClick(EventInformation& p_event) override;
    /// O and P switch the projection.
    Event::Result OnKeyPress(EventInformation& p_event) override;

private:
    using Rectangle = Types::Viewport<0>;

    NodeStatus DoUpdate(UpdateContext const& p_context) override;
    void DoSetup(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    DrawResult DoDraw(DrawContext const& p_context) override;
    DrawResult DoHighlight(DrawContext const& p_context) override;
    bool DoHit(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) override;
    void DoTeardown(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    void DoSetupOverlay(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;
    DrawResult DoDrawOverlay(DrawContext const& p_context) override;
    DrawResult DoHighlightOverlay(DrawContext const& p_context) override;
    bool DoHitOverlay(DrawContext const& p_context, PickPoint const& p_point, HitResult& p_result) override;
    void DoTeardownOverlay(DrawContext const& p_context, Utility::Scoped<Ogl::Agl>& p_agl) override;

    void UpdatePicking(Model::Pane const& p_pane);
    bool MakeTitleFont(UpdateContext const& p_context);
    void UpdateToolbar(UpdateContext const& p_context, Core::Ptr<Model::Pane> const& p_pane);
    void UpdateButtons(UpdateContext const& p_context);
    std::unique_ptr<TextureWidget> MakeButton(UpdateContext const& p_context, char const* p_image) const;

    Rectangle GetTitlebar(Rectangle const& p_viewport) const;
    Rectangle GetViewport(Rectangle const& p_parent) const;
    void SetViewport(Rectangle const& p_parent, Rectangle const& p_viewport) const;

    Rectangle BeginSetup(DrawContext& p_context, Utility::Scoped<Ogl::Agl>& p_agl, Model::Pane const* p_pane);
    void EndSetup(Utility::Scoped<Ogl::Agl>& p_agl) const;
    void PlaceButtons(Rectangle const& p_viewport);

    bool IsInside(DrawContext const& p_context, PickPoint const& p_point, char const* p_layer) const;
    bool HasHover(std::uint64_t p_name) const { return _hoverRecord && _hoverRecord->name == p_name; }
    bool IsDecorationHovered() const { return _hoverRecord && _hoverRecord->name != Ogl::HitRecord::NameDefault; }
    std::optional<PaneLayout::Grip> HoveredGrip() const;
    void ShowTitleBar(bool p_shown);
    /// The pointer is on nothing of the pane any more, and nothing is dragged.
    void EndHover();
    void Move(EventInformation const& p_event);
    /// Leaves a pane that was moved or resized inside its parent, or, when the drag is taken back, just as it was.
    void Place(EventInformation const& p_event);

    void DrawDecoration(DrawContext const& p_context);
    void DrawTitleBar(DrawContext const& p_context, Model::Pane const& p_pane);

    /// From where a drag moves or resizes the pane.
    struct DragStart {
        Types::Pos pointer;
        std::optional<Types::Viewport<1>> viewport; ///< of the pane; nothing when it had the default
    };

    /// Opens a window of a size for content, and says what is to be done when it closes.
    using PopOutFunction =
        std::function<void(PopOutHost&, Types::Size const&, PopOutHost::Restore const&, PopOutHost::Content const&)>;

    Core::WeakRef<Model::Pane> _pane;
    std::optional<Ogl::HitRecord> _hoverRecord; ///< what the pointer is on or drags
    Rectangle _parentViewport; ///< what the pane was placed in last
    Core::ModificationWatcherList _watchers; ///< over the pane
    std::shared_ptr<Ogl::Text> _titleFont; ///< empty until there was a font
    Rectangle _selectionBox; ///< the rubber band in pixels of the window, empty when there is none
    Core::Ptr<Model::Toolbar> _ownToolbar; ///< keeps the next one alive; null until it was first shown
    Core::WeakRef<Model::Toolbar> _toolbar;
    Core::Ptr<Vis> _toolbarVis; ///< a child of this node without a model node below the pane
    std::unique_ptr<TextureWidget> _popOutButton; ///< null until the buttons were first shown, as the next
    std::unique_ptr<TextureWidget> _detachButton;
    PopOutFunction _popout; ///< empty until the buttons were first shown
    ColorAnimation _titleColor;
    IntAnimation _titleHeightBlender; ///< how much of the title bar can be seen
    bool _drawable = true; ///< whether the last setup found a rectangle to draw in
    bool _dragPending = false; ///< a drag has begun, and nothing has moved yet
    std::optional<DragStart> _dragStart; ///< nothing while the pane is neither moved nor resized
    unsigned _titleHeight = 20;
    Types::Pos _dragOffset; ///< from the pane's corner to the pointer, or where a rubber band began
};

} // namespace Qor::Chart::Render
