#pragma once

#include "framework/types/BoundingBox.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Viewport.h"
#include "host/Export.h"
#include "render/context/ProjectionMode.h"

#include <span>

namespace Qor::Chart::Host {

/// Where a scene is looked at from. A camera orbits the centre of a box that it was fitted to, and is described as the
/// matrix that draw contexts carry: it acts on coordinates relative to the centre of a box, before the projection that
/// `Agl::Ortho` and `Agl::Perspective` make for that box. In it the identity looks along the negative z axis of the scene
/// with y up, a rotation orbits, a scale zooms, and a translation pans in units of the scene.
///
/// A plain value; no operation throws.
class QOR_HOST_API Camera {
public:
    using Box = Types::BoundingBox_Base<double>;
    using Vector = Types::Vector3_Base<double>;

    /// Which way is up in the scene.
    enum class UpAxis { Y, Z };

    /// The three-quarter view that a scene is shown in at first, in degrees.
    static constexpr double DefaultAzimuth = 35.0;
    static constexpr double DefaultElevation = 27.0;

    Camera() = default;

    /// Orbits the middle of the box from now on, and looks at it from the present direction, as near as all of it can be
    /// seen in a viewport of these proportions, with a small margin and in its middle. An undefined box counts as the unit
    /// cube, a point as a cube of edge 1 around it, an empty viewport as a square.
    /// @param p_parts  boxes of what is in the box, such as `Scene::Parts` gives: then only these must be seen, and the
    ///                 empty corners of the box may lie outside the picture
    void Fit(Box const& p_box, Types::Viewport<0> const& p_viewport, std::span<Box const> p_parts = {});

    /// Sets the direction that is looked from: p_azimuth degrees around the up axis, 0 being the front (from positive z,
    /// or from negative y when z is up) and positive ones counter-clockwise seen from above, and p_elevation above the
    /// horizon, -90 to 90. Numbers that are not finite are ignored.
    void Look(double p_azimuth, double p_elevation);
    /// Turns the direction by some degrees; the elevation stops at the poles.
    void Orbit(double p_azimuth, double p_elevation);
    void SetUpAxis(UpAxis p_axis) noexcept { _up = p_axis; }
    void SetProjectionMode(Render::ProjectionMode p_mode) noexcept { _mode = p_mode; }

    double Azimuth() const noexcept { return _azimuth; }
    double Elevation() const noexcept { return _elevation; }
    UpAxis GetUpAxis() const noexcept { return _up; }
    Render::ProjectionMode GetProjectionMode() const noexcept { return _mode; }
    /// By how much the box appears larger than when the sphere around it fills the viewport.
    double Zoom() const noexcept { return _zoom; }
    /// The box that is orbited; always defined and of some extent.
    Box const& FocusBox() const noexcept { return _box; }

    /// The matrix for a projection that is made for p_box, such as the present box of the scene: the picture stays the one
    /// that was fitted, while the near and far planes follow p_box. An undefined box is taken for the fitted one.
    Types::Matrix4 Matrix(Box const& p_box) const;
    /// The matrix for the fitted box itself.
    Types::Matrix4 Matrix() const { return Matrix(_box); }

private:
    Types::Matrix4 Rotation() const;

    Box _box{Vector(-0.5, -0.5, -0.5), Vector(0.5, 0.5, 0.5)};
    double _azimuth = DefaultAzimuth;
    double _elevation = DefaultElevation;
    double _zoom = 1.0;
    double _panX = 0.0; ///< of what is in the middle of the view from the centre of the box, in units of the scene
    double _panY = 0.0;
    UpAxis _up = UpAxis::Y;
    Render::ProjectionMode _mode = Render::ProjectionMode::Perspective;
};

} // namespace Qor::Chart::Host
