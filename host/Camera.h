#pragma once

#include "framework/types/BoundingBox.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Vector2.h"
#include "framework/types/Viewport.h"
#include "host/Export.h"
#include "render/context/ProjectionMode.h"

#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace Qor::Chart::Host {

/// Where a scene is looked at from. A camera orbits the centre of a box that it was fitted to, and is described as the
/// matrix that draw contexts carry: it acts on coordinates relative to the centre of a box, before the projection that
/// `Agl::Ortho` and `Agl::Perspective` make for that box. In it the identity looks along the negative z axis of the scene
/// with y up, a rotation orbits, a scale zooms, and a translation pans in units of the scene.
///
/// The tools by which a user moves it take pixels of the window, fractions included, with the origin in the lower left
/// corner, and the viewport that the camera's picture fills, or the pane does that it belongs to.
///
/// A plain value; no operation throws.
class QOR_HOST_API Camera {
public:
    using Box = Types::BoundingBox_Base<double>;
    using Vector = Types::Vector3_Base<double>;
    using Pixel = Types::Vector2_Base<double>;

    /// Directions that have a name.
    enum class View { Front, Back, Left, Right, Top, Bottom, Isometric };

    /// Which way is up in the scene.
    enum class UpAxis { Y, Z };

    /// The three-quarter view that a scene is shown in at first, in degrees.
    static constexpr double DefaultAzimuth = 35.0;
    static constexpr double DefaultElevation = 27.0;
    /// By how many degrees a drag along the whole shorter side of the viewport orbits.
    static constexpr double DegreesPerSide = 180.0;
    static constexpr double MinZoom = 1e-6;
    static constexpr double MaxZoom = 1e6;

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
    /// Looks from a direction that has a name; what is in the middle of the box stays where it is in the picture.
    void Look(View p_view);
    /// The view of a name such as "front", in lower case; nothing for other names.
    static std::optional<View> ViewOf(std::string_view p_name);

    /// Turns the box with a pointer that moves over it.
    void Orbit(Pixel const& p_from, Pixel const& p_to, Types::Viewport<0> const& p_viewport);
    /// Moves the scene with the pointer: what lies under p_from, as deep in the scene as p_at, or as the centre of the box
    /// when there is no such point, lies under p_to afterwards. Nothing changes for arguments that are not finite, and for
    /// an empty viewport.
    void Pan(Pixel const& p_from, Pixel const& p_to, Types::Viewport<0> const& p_viewport,
        std::optional<Vector> const& p_at = {});
    /// Enlarges everything by a factor, or makes it smaller with one below 1; what lies under the pointer stays there. A
    /// perspective comes nearer to what is under the pointer and never passes it. The zoom stops at its limits.
    /// @param p_at  a point that is seen, such as where a pick hit: what is in its depth stays under the pointer, and is
    ///              what later orbits turn around; else that is the centre of the box
    void ZoomAbout(double p_factor, Pixel const& p_pointer, Types::Viewport<0> const& p_viewport,
        std::optional<Vector> const& p_at = {});

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
    /// How deep a point lies in the view, towards the viewer from the centre of the box; 0 for none and for one that no eye
    /// sees.
    double DepthOf(std::optional<Vector> const& p_point) const;
    /// Of the eye from the centre of the box, along the view.
    double EyeDistance() const;
    /// Half of what is seen along the shorter side of the viewport at some depth, in units of the scene.
    double HalfSide(double p_depth) const;

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
