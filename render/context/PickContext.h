#pragma once

#include "framework/types/Frustum.h"
#include "framework/types/Ray.h"
#include "render/Export.h"
#include "render/context/PickPoint.h"

#include <cstdint>

namespace Qor::Chart::Types {
class Matrix4;
}

namespace Qor::Chart::Render {

class DrawContext;

/// What a node needs to test its own content against a pick point without drawing it: the ray through the point and the
/// volume around it, both in the node's coordinates. A plain value, computed once from the viewport and the matrices of a
/// drawing context.
class QOR_VIS_API PickContext {
public:
    /// What is to be picked; the context hands it on to the node, which may read it.
    enum class PickHint : std::uint32_t {
        Undefined = 0,
        Node = 1, ///< whether the node is hit at all
        Element = 2, ///< which of its elements
    };

    /// Undefined: no hint, no ray, no volume.
    PickContext() = default;
    /// @param p_point  relative to the origin of the context's viewport
    PickContext(DrawContext const& p_context, PickPoint const& p_point, PickHint p_hint);
    /// The same in the coordinates of a part that the node draws with a transformation of its own.
    /// @param p_matrix  that transformation; the context's model-view matrix is multiplied by it on the right
    PickContext(
        DrawContext const& p_context, Types::Matrix4 const& p_matrix, PickPoint const& p_point, PickHint p_hint);

    bool Defined() const noexcept { return _hint != PickHint::Undefined; }

    /// The same pick with both tolerances changed by p_pixels, without their fractions. It is always in the coordinates of
    /// p_context; a transformation of a part that this one was made with is not in it.
    PickContext Expand(DrawContext const& p_context, double p_pixels) const;

    PickHint Hint() const noexcept { return _hint; }
    PickPoint const& Point() const noexcept { return _point; }
    Types::Ray_Base<double> const& PickRay() const noexcept { return _pickRay; }
    /// What projects into the rectangle of twice the tolerance around the point.
    Types::Frustum_Base<double> const& Frustum() const noexcept { return _frustum; }

private:
    Types::Pos WindowPosition(DrawContext const& p_context) const;
    void MakeFrustum(DrawContext const& p_context, Types::Matrix4 const& p_modelView, Types::Pos const& p_position);

    PickHint _hint = PickHint::Undefined;
    PickPoint _point;
    Types::Ray_Base<double> _pickRay;
    Types::Frustum_Base<double> _frustum;
};

} // namespace Qor::Chart::Render
