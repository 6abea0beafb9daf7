#include "host/Camera.h"

#include "framework/ogl/Agl.h"
#include "framework/ogl/RecorderBackend.h"

#include <gmock/gmock.h>

#include <cmath>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace Qor::Chart::Host {
namespace {

using Box = Camera::Box;
using Render::ProjectionMode;
using Vector = Camera::Vector;
using Viewport = Types::Viewport<0>;

Viewport const Window(0, 0, 800, 600);

/// The projection that a frame would use for the camera.
Types::Matrix4 ProjectionOf(Camera const& p_camera, Box const& p_box, Viewport const& p_viewport) {
    Ogl::Agl agl(std::make_unique<Ogl::RecorderBackend>());
    agl.MatrixMode(Ogl::Tokens::AGL_PROJECTION);
    agl.LoadIdentity();
    if (p_camera.GetProjectionMode() == ProjectionMode::Perspective)
        agl.Perspective(p_viewport, p_box, p_camera.Matrix(p_box));
    else
        agl.Ortho(p_viewport, p_box, p_camera.Matrix(p_box));
    return agl.Get(Ogl::Tokens::AGL_PROJECTION_MATRIX);
}

Vector Project(Types::Matrix4 const& p_matrix, Vector const& p_point) {
    auto const device = p_matrix * Types::Vector4_Base<double>(p_point, 1);
    return device.XYZ() / device.w;
}

/// The rectangle of normalised device coordinates that a box covers, with its depths.
Box Seen(Types::Matrix4 const& p_projection, Box const& p_box) {
    Box seen;
    for (unsigned corner = 0; corner < 8; ++corner)
        seen.Add(Project(p_projection, p_box.Corner(corner)));
    return seen;
}

TEST(CameraTest, fittedBoxesFillTheViewAndLieBetweenTheClippingPlanes) {
    for (Box const& box : {Box({-1, -1, -1}, {1, 1, 1}), Box({1e6, 5, -3}, {1e6 + 40, 5.5, 90}),
             Box({0, 0, 0}, {1000, 0, 1000}), Box({2, 0, 2}, {2, 9, 2}), Box({-1e-6, 0, 0}, {1e-6, 1e-6, 1e-6})}) {
        for (Viewport const& viewport :
            {Viewport(0, 0, 640, 480), Viewport(10, 10, 100, 900), Viewport(0, 0, 3000, 9)}) {
            for (int view = 0; view < 8; ++view) {
                bool const isPerspective = view % 2 == 1;
                Camera camera;
                camera.SetProjectionMode(isPerspective ? ProjectionMode::Perspective : ProjectionMode::Orthographic);
                camera.Look(view * 60.0 - 120, view / 2 * 40.0 - 30);
                camera.Fit(box, viewport);
                Box const seen = Seen(ProjectionOf(camera, box, viewport), box);
                if (seen.Extents().x < 1e-6 && seen.Extents().y < 1e-6)
                    continue; // an edge seen from its end
                std::string const what = (std::ostringstream() << box << view).str();
                double const reach = std::max(seen.Max().x, seen.Max().y);
                // An eye that would have to be inside the box to fill a narrow view stays away a little.
                EXPECT_GT(reach, isPerspective && viewport.height != 480 ? 0 : 0.939) << what;
                EXPECT_LT(reach, 0.9401) << what;
                EXPECT_NEAR(seen.Min().x + seen.Max().x, 0, 1e-6) << what;
                EXPECT_NEAR(seen.Min().y + seen.Max().y, 0, 1e-6) << what;
                EXPECT_TRUE(seen.Min().z > -1 && seen.Max().z < 1) << what;
            }
        }
    }
}

TEST(CameraTest, degenerateBoxesViewportsAndAnglesStillGiveAView) {
    Camera camera;
    for (Box const& box : {Box(), Box({7, 8, 9}, {7, 8, 9})}) {
        for (Viewport const& viewport : {Viewport(), Viewport(0, 0, 100, 0), Viewport(0, 0, 100, 100)}) {
            camera.Fit(box, viewport);
            EXPECT_EQ(camera.FocusBox().Extents(), Vector(1, 1, 1));
            EXPECT_TRUE(camera.Matrix(box).IsFinite() && camera.Matrix().Inverse().has_value());
        }
    }
    camera.Look(std::nan(""), 10);
    camera.Orbit(0, INFINITY);
    EXPECT_EQ(camera.Elevation(), Camera::DefaultElevation);
    camera.Orbit(400, 500);
    EXPECT_EQ(camera.Elevation(), 90);
    EXPECT_NEAR(camera.Azimuth(), 75, 1e-9);
}

TEST(CameraTest, partsThatLeaveTheCornersFreeAreSeenLarger) {
    Box const box({-5, 0, -5}, {5, 1, 5});
    std::vector<Box> const parts{Box({-5, 0, -1}, {5, 1, 1}), Box({-1, 0, -5}, {1, 1, 5})};
    Camera loose, tight;
    loose.Fit(box, Window);
    tight.Fit(box, Window, parts);
    EXPECT_GT(tight.Zoom(), 1.1 * loose.Zoom());
    Box seen;
    for (Box const& part : parts)
        seen.Add(Seen(ProjectionOf(tight, box, Window), part));
    EXPECT_NEAR(std::max(seen.Max().x, seen.Max().y), 0.94, 1e-6);
}

TEST(CameraTest, anotherBoxChangesTheClippingPlanesButNotThePicture) {
    Box const fitted({0, 0, 0}, {4, 2, 3});
    Box const grown({-1, 0, 0}, {4, 3, 3.5});
    for (auto const mode : {ProjectionMode::Orthographic, ProjectionMode::Perspective}) {
        Camera camera;
        camera.SetProjectionMode(mode);
        camera.Fit(fitted, Window);
        Types::Matrix4 const after = ProjectionOf(camera, grown, Window);
        for (unsigned corner = 0; corner < 8; ++corner) {
            Vector const was = Project(ProjectionOf(camera, fitted, Window), fitted.Corner(corner));
            Vector const is = Project(after, fitted.Corner(corner));
            EXPECT_LT(std::hypot(was.x - is.x, was.y - is.y), 1e-9);
            EXPECT_LT(std::abs(Project(after, grown.Corner(corner)).z), 1);
        }
    }
}

TEST(CameraTest, directionsAreThoseOfTheHeader) {
    using Axis = Camera::UpAxis;
    for (auto const& [up, azimuth, elevation, towardsViewer, upwards] :
        {std::tuple(Axis::Y, 0.0, 0.0, Vector(0, 0, 1), Vector(0, 1, 0)), {Axis::Y, 90, 0, {1, 0, 0}, {0, 1, 0}},
            {Axis::Y, 0, 90, {0, 1, 0}, {0, 0, -1}}, {Axis::Z, 0, 0, {0, -1, 0}, {0, 0, 1}},
            {Axis::Z, 90, 0, {1, 0, 0}, {0, 0, 1}}}) {
        Camera camera;
        camera.SetUpAxis(up);
        camera.SetProjectionMode(ProjectionMode::Orthographic);
        camera.Look(azimuth, elevation);
        camera.Fit(Box({-1, -1, -1}, {1, 1, 1}), Window);
        Vector const origin = Project(camera.Matrix(), {});
        EXPECT_NEAR(Normalized(Project(camera.Matrix(), towardsViewer) - origin).z, 1, 1e-12);
        EXPECT_NEAR(Normalized(Project(camera.Matrix(), upwards) - origin).y, 1, 1e-12);
    }
}

} // namespace
} // namespace Qor::Chart::Host
