#include "render/pick/BoxSelection.h"

#include "framework/types/Math.h"

#include <cmath>
#include <utility>

namespace Qor::Chart::Render {

BoxSelection::BoxSelection(
    Core::WeakPtr<Vis> p_scope, Types::Viewport<0> const& p_rectangle, bool p_flag, Operation p_operation)
    : _scope(std::move(p_scope)), _rectangle(p_rectangle.Normalized()), _flag(p_flag), _operation(p_operation) {}

Types::Pos BoxSelection::Center() const noexcept {
    return PointOf(_rectangle).position;
}

Types::Size BoxSelection::Tolerance() const noexcept {
    return PointOf(_rectangle).tolerance;
}

PickPoint BoxSelection::PointOf(Types::Viewport<0> const& p_rectangle) noexcept {
    using Types::Math::Truncate;
    return {
        {Truncate(p_rectangle.x + 1.0F + p_rectangle.width * 0.5F),
            Truncate(p_rectangle.y + 1.0F + p_rectangle.height * 0.5F)},
        {Truncate((std::fabs(p_rectangle.width) + 1.0F) * 0.5F),
            Truncate((std::fabs(p_rectangle.height) + 1.0F) * 0.5F)},
    };
}

} // namespace Qor::Chart::Render
