#pragma once

#include "framework/Export.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Pos.h"
#include "framework/types/Size.h"
#include "framework/types/Viewport.h"

namespace Qor::Chart::Ogl {

/// Says cheaply of most shapes that a pick misses them, before a `HitDetect` is opened: a scene has many shapes, and a pick
/// hits few.
struct QOR_FRAMEWORK_API QuickPick {
    /// False when a pick with these arguments, which are those of `HitDetect`, certainly hits nothing inside the box. True may
    /// mean nothing.
    /// @param p_modelView  leads from the coordinates of the box to those that the projection takes
    static bool MayHit(Types::Viewport<0> const& p_viewport, Types::Matrix4 const& p_projection,
        Types::Pos const& p_position, Types::Size const& p_tolerance, Types::Matrix4 const& p_modelView,
        Types::BoundingBox_Base<double> const& p_box) noexcept;
};

} // namespace Qor::Chart::Ogl
