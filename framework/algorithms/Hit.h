#pragma once

#include "framework/Export.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Pos.h"
#include "framework/types/Ray.h"
#include "framework/types/Viewport.h"

namespace Qor::Chart::Algorithms {

/// The arithmetic of pointing at something: from a place in a window to what lies there.
struct QOR_FRAMEWORK_API Hit {
    /// True when the place lies in the rectangle, both relative to the same origin. The left and the lower side belong to
    /// the rectangle, the right and the upper one to its neighbours; an empty rectangle is never hit.
    static bool IsHit(Types::Viewport<0> const& p_viewport, Types::Pos const& p_pos);

    /// The ray of all points that project to a place in the window, from the near plane away from the viewer.
    ///
    /// @param p_pos         in window pixels, on the same origin as p_viewport
    /// @param p_modelView   affine; leads from the coordinates in which the ray is wanted to those of the eye
    /// @param p_projection  perspective or parallel; a far plane at infinity is fine
    /// @param p_ray         receives the ray with a direction of length 1; an undefined ray on failure
    /// @return false when the viewport is empty or a matrix cannot be inverted
    static bool Unproject(Types::Pos const& p_pos, Types::Matrix4 const& p_modelView,
        Types::Matrix4 const& p_projection, Types::Viewport<0> const& p_viewport, Types::Ray_Base<double>& p_ray);
};

} // namespace Qor::Chart::Algorithms
