#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"
#include "framework/types/Viewport.h"

#include <QColor>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace Qor::Chart::Model {

/// A rectangle of the chart surface with a view of its own: what is below it shows inside it. On request it has a
/// background, a border, a title bar and grips by which the user moves and resizes it.
class QOR_FRAMEWORK_API Pane : public ModelNode {
public:
    enum class ProjectionMode : int {
        Orthographic = 0,
        Perspective = 1,
    };

    static Property<Pane, Types::Viewport<1>> const ViewportProperty;
    static Property<Pane, std::wstring> const TitleProperty;
    static Property<Pane, bool> const MovableProperty;
    static Property<Pane, bool> const ResizableProperty;
    static Property<Pane, bool> const BackgroundPickableProperty;
    static Property<Pane, bool> const ButtonsShownProperty;
    static Property<Pane, bool> const TitlePinnedProperty;
    static Property<Pane, bool> const KeepInsideParentProperty;
    static Property<Pane, bool> const ToolbarShownProperty;
    static Property<Pane, QColor> const BorderColorProperty;
    static Property<Pane, QColor> const BackgroundColorProperty;
    static Property<Pane, std::optional<QColor>> const BackgroundTopColorProperty;
    static Property<Pane, ProjectionMode> const ProjectionModeProperty;
    static PropertyList const& ClassProperties();

    Pane() = default;

    /// Where the pane lies inside its parent; fills it by default. A rectangle that is not finite is refused with a
    /// message to the logger.
    Types::Viewport<1> const& GetViewport() const noexcept { return _viewport; }
    bool SetViewport(Types::Viewport<1> const& p_viewport) { return ViewportProperty.Set(*this, p_viewport); }

    std::wstring const& Title() const noexcept { return _title; }
    void SetTitle(std::wstring p_title) { TitleProperty.Set(*this, std::move(p_title)); }

    /// Whether the user may drag the pane by its title bar.
    bool IsMovable() const noexcept { return _movable; }
    void SetMovable(bool p_movable) { MovableProperty.Set(*this, p_movable); }

    /// Whether the pane has grips at its corners.
    bool IsResizable() const noexcept { return _resizable; }
    void SetResizable(bool p_resizable) { ResizableProperty.Set(*this, p_resizable); }

    /// Whether the pointer finds the pane anywhere inside it; also where a selection rectangle may begin.
    bool IsBackgroundPickable() const noexcept { return _backgroundPickable; }
    void SetBackgroundPickable(bool p_pickable) { BackgroundPickableProperty.Set(*this, p_pickable); }

    /// Whether the title bar has the buttons that take the content into a window of its own.
    bool AreButtonsShown() const noexcept { return _buttonsShown; }
    void SetButtonsShown(bool p_shown) { ButtonsShownProperty.Set(*this, p_shown); }

    /// Whether the title bar stays open instead of sliding in under the pointer.
    bool IsTitlePinned() const noexcept { return _titlePinned; }
    void SetTitlePinned(bool p_pinned) { TitlePinnedProperty.Set(*this, p_pinned); }

    /// Whether the pane is shifted and cut to lie inside its parent.
    bool IsKeptInsideParent() const noexcept { return _keepInsideParent; }
    void SetKeepInsideParent(bool p_keep) { KeepInsideParentProperty.Set(*this, p_keep); }

    /// Whether the pane has a toolbar that switches the projection.
    bool IsToolbarShown() const noexcept { return _toolbarShown; }
    void SetToolbarShown(bool p_shown) { ToolbarShownProperty.Set(*this, p_shown); }

    /// No border by default: fully transparent.
    QColor const& BorderColor() const noexcept { return _borderColor; }
    bool SetBorderColor(QColor const& p_color) { return BorderColorProperty.Set(*this, p_color); }

    /// The background, or its lower edge when it has a top colour; fully transparent leaves what is behind.
    QColor const& BackgroundColor() const noexcept { return _backgroundColor; }
    bool SetBackgroundColor(QColor const& p_color) { return BackgroundColorProperty.Set(*this, p_color); }

    /// The upper edge of the background, which then fades from one colour to the other.
    std::optional<QColor> const& BackgroundTopColor() const noexcept { return _backgroundTopColor; }
    bool SetBackgroundTopColor(std::optional<QColor> const& p_color) {
        return BackgroundTopColorProperty.Set(*this, p_color);
    }

    ProjectionMode GetProjectionMode() const noexcept { return _projectionMode; }
    void SetProjectionMode(ProjectionMode p_mode) { ProjectionModeProperty.Set(*this, p_mode); }

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~Pane() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    bool _movable = false;
    bool _resizable = false;
    bool _backgroundPickable = false;
    bool _buttonsShown = false;
    bool _titlePinned = false;
    bool _keepInsideParent = false;
    bool _toolbarShown = false;
    ProjectionMode _projectionMode = ProjectionMode::Orthographic;
    QColor _borderColor{0, 0, 0, 0};
    QColor _backgroundColor{255, 255, 255};
    std::optional<QColor> _backgroundTopColor;
    Types::Viewport<1> _viewport;
    std::wstring _title;
};

QOR_FRAMEWORK_API std::span<std::string_view const> NamesOf(Pane::ProjectionMode) noexcept;

} // namespace Qor::Chart::Model
