#include "framework/model/Pane.h"

#include "framework/model/PropertyChecks.h"

#include <array>
#include <cmath>

namespace Qor::Chart::Model {

namespace {

std::string CheckViewport(Types::Viewport<1> const& p_viewport) {
    for (auto const* const length : {&p_viewport.x, &p_viewport.y, &p_viewport.width, &p_viewport.height}) {
        if (!std::isfinite(length->fraction) || !std::isfinite(length->pixels))
            return "a side is infinite or not a number; give finite fractions and pixels.";
    }
    return {};
}

} // namespace

Property<Pane, Types::Viewport<1>> const Pane::ViewportProperty(Field<&Pane::_viewport>,
    {1, "viewport", "Where the pane lies inside its parent, from the lower left corner."}, Types::Viewport<1>(),
    CheckViewport);

Property<Pane, std::wstring> const Pane::TitleProperty(
    Field<&Pane::_title>, {2, "title", "The text in the title bar."}, std::wstring());

Property<Pane, bool> const Pane::MovableProperty(
    Field<&Pane::_movable>, {3, "movable", "Whether the user may drag the pane by its title bar."}, false);

Property<Pane, bool> const Pane::ResizableProperty(
    Field<&Pane::_resizable>, {4, "resizable", "Whether the pane has grips at its corners."}, false);

Property<Pane, bool> const Pane::BackgroundPickableProperty(Field<&Pane::_backgroundPickable>,
    {5, "backgroundPickable",
        "Whether the pointer finds the pane anywhere inside it; also where a selection rectangle may begin."},
    false);

Property<Pane, bool> const Pane::ButtonsShownProperty(Field<&Pane::_buttonsShown>,
    {6, "buttonsShown", "Whether the title bar has the buttons that take the content into a window of its own."},
    false);

Property<Pane, bool> const Pane::TitlePinnedProperty(Field<&Pane::_titlePinned>,
    {7, "titlePinned", "Whether the title bar stays open instead of sliding in under the pointer."}, false);

Property<Pane, bool> const Pane::KeepInsideParentProperty(Field<&Pane::_keepInsideParent>,
    {8, "keepInsideParent", "Whether the pane is shifted and cut to lie inside its parent."}, false);

Property<Pane, bool> const Pane::ToolbarShownProperty(Field<&Pane::_toolbarShown>,
    {9, "toolbarShown", "Whether the pane has a toolbar that switches the projection."}, false);

Property<Pane, QColor> const Pane::BorderColorProperty(Field<&Pane::_borderColor>,
    {10, "borderColor", "The line around the pane; fully transparent draws none."}, QColor(0, 0, 0, 0),
    Detail::CheckColor);

Property<Pane, QColor> const Pane::BackgroundColorProperty(Field<&Pane::_backgroundColor>,
    {11, "backgroundColor",
        "The background, or its lower edge when it has a top colour; fully transparent leaves what is behind."},
    QColor(255, 255, 255), Detail::CheckColor);

Property<Pane, std::optional<QColor>> const Pane::BackgroundTopColorProperty(Field<&Pane::_backgroundTopColor>,
    {12, "backgroundTopColor", "The upper edge of the background, which then fades from one colour to the other."},
    std::nullopt, Detail::CheckOptionalColor);

Property<Pane, Pane::ProjectionMode> const Pane::ProjectionModeProperty(
    Field<&Pane::_projectionMode>, {13, "projectionMode", "How the scene is projected."}, ProjectionMode::Orthographic);

PropertyList const& Pane::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&ViewportProperty, &TitleProperty, &MovableProperty, &ResizableProperty, &BackgroundPickableProperty,
            &ButtonsShownProperty, &TitlePinnedProperty, &KeepInsideParentProperty, &ToolbarShownProperty,
            &BorderColorProperty, &BackgroundColorProperty, &BackgroundTopColorProperty, &ProjectionModeProperty});
    return properties;
}

Pane::~Pane() = default;

Core::Ptr<ModelNode> Pane::NewOfSameClass() const {
    return Core::MakeNode<Pane>();
}

std::span<std::string_view const> NamesOf(Pane::ProjectionMode) noexcept {
    static constexpr std::array<std::string_view, 2> names{"Orthographic", "Perspective"};
    return names;
}

} // namespace Qor::Chart::Model
