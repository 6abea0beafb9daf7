#include "render/context/PickContext.h"

#include "render/context/DrawContext.h"
#include "framework/algorithms/Hit.h"
#include "framework/types/Math.h"
#include "framework/types/Matrix4.h"
#include "framework/utility/Ensure.h"

#include <algorithm>

namespace Qor::Chart::Render {

PickContext::PickContext(DrawContext const& p_context, PickPoint const& p_point, PickHint p_hint)
    : _hint(p_hint), _point(p_point) {
    Types::Pos const localPos = WindowPosition(p_context);
    bool const isUnprojected = Algorithms::Hit::Unproject(
        localPos, p_context.ModelView().Top(), p_context.Projection().Top(), p_context.Viewport().Top(), _pickRay);
    (void)QOR_ENSURE_TEXT(isUnprojected,
        "Library::Hit::Unproject( localPos, p_context.modelView(), p_context.projection(), p_context.viewport(), "
        "pickRay)");
    MakeFrustum(p_context, p_context.ModelView().Top(), localPos);
}

PickContext::PickContext(
    DrawContext const& p_context, Types::Matrix4 const& p_matrix, PickPoint const& p_point, PickHint p_hint)
    : _hint(p_hint), _point(p_point) {
    Types::Matrix4 localModelView = p_context.ModelView().Top();
    localModelView *= p_matrix;
    Types::Pos const localPos = WindowPosition(p_context);
    bool const isUnprojected = Algorithms::Hit::Unproject(
        localPos, localModelView, p_context.Projection().Top(), p_context.Viewport().Top(), _pickRay);
    (void)QOR_ENSURE_TEXT(isUnprojected,
        "Library::Hit::Unproject( localPos, localModelView, p_context.projection(), p_context.viewport(), pickRay)");
    MakeFrustum(p_context, localModelView, localPos);
}

PickContext PickContext::Expand(DrawContext const& p_context, double p_pixels) const {
    PickPoint point = _point;
    point.tolerance = {Types::Math::Truncate(_point.tolerance.width + p_pixels),
        Types::Math::Truncate(_point.tolerance.height + p_pixels)};
    return {p_context, point, _hint};
}

Types::Pos PickContext::WindowPosition(DrawContext const& p_context) const {
    Types::Viewport<0> const& viewport = p_context.Viewport().Top();
    return {Types::Math::Truncate(static_cast<float>(_point.position.x) + viewport.x),
        Types::Math::Truncate(static_cast<float>(_point.position.y) + viewport.y)};
}

void PickContext::MakeFrustum(
    DrawContext const& p_context, Types::Matrix4 const& p_modelView, Types::Pos const& p_position) {
    double const halfWidth = std::max(1, _point.tolerance.width);
    double const halfHeight = std::max(1, _point.tolerance.height);
    Types::Viewport<0> const rectangle(static_cast<float>(p_position.x - halfWidth),
        static_cast<float>(p_position.y - halfHeight), static_cast<float>(halfWidth * 2.0),
        static_cast<float>(halfHeight * 2.0));
    _frustum =
        Types::Frustum_Base<double>(rectangle, p_modelView, p_context.Projection().Top(), p_context.Viewport().Top());
}

} // namespace Qor::Chart::Render
