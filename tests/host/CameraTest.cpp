#include "host/Camera.h"

#include "framework/ogl/Agl.h"
#include "framework/ogl/RecorderBackend.h"

#include <gtest/gtest.h>

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

TEST(CameraTest, whatIsUnderThePointerStaysThereWhenZoomedAndFollowsItWhenPanned) {
    Box const box({3, 0, 0}, {7, 2, 3});
    Viewport const viewport(40, 20, 800, 600);
    using Pixel = Camera::Pixel;
    for (auto const mode : {ProjectionMode::Orthographic, ProjectionMode::Perspective}) {
        for (double const depth : {0.2, 0.6, 0.95}) {
            Camera camera;
            camera.SetProjectionMode(mode);
            camera.Fit(box, viewport);
            Pixel pointer(311, 470);
            auto const pointAt = [&](Pixel const& p_pixel) {
                return *Ogl::Agl::UnProject(
                    Vector(p_pixel.x, p_pixel.y, depth), {}, ProjectionOf(camera, box, viewport), viewport);
            };
            Vector const point = pointAt(pointer);
            Vector const beside = pointAt(pointer + Pixel(3, 4));
            auto const pixelOf = [&](Vector const& p_point) {
                Vector const device = Project(ProjectionOf(camera, box, viewport), p_point);
                return Pixel(viewport.x + (device.x + 1) / 2 * viewport.width,
                    viewport.y + (device.y + 1) / 2 * viewport.height);
            };
            double size = Length(pixelOf(beside) - pointer);
            for (double const factor : {1.25, 40.0, 0.002, 3.0}) {
                camera.ZoomAbout(factor, pointer, viewport, point);
                EXPECT_LT(Length(pixelOf(point) - pointer), 1e-6) << factor;
                double const now = Length(pixelOf(beside) - pointer);
                EXPECT_NEAR(now / size, factor, factor * 1e-6);
                size = now;
                Pixel const next(pointer.x + 57, pointer.y - 31);
                camera.Pan(pointer, next, viewport, point);
                pointer = next;
                EXPECT_LT(Length(pixelOf(point) - pointer), 1e-6) << factor;
            }
            Camera const before = camera;
            camera.ZoomAbout(0, pointer, viewport);
            camera.ZoomAbout(std::nan(""), pointer, viewport);
            camera.ZoomAbout(2, {INFINITY, 0}, viewport);
            camera.Pan(pointer, {0, 0}, Viewport());
            EXPECT_EQ(camera.Matrix(box), before.Matrix(box));
            for (double const factor : {1e9, 1e-9}) {
                for (int i = 0; i < 100; ++i)
                    camera.ZoomAbout(factor, pointer, viewport, point);
                EXPECT_TRUE(camera.Matrix(box).IsFinite() && camera.Matrix(box).Inverse().has_value());
            }
        }
    }
}

TEST(CameraTest, sceneTurnsWithThePointer) {
    Camera camera;
    camera.Look(*Camera::ViewOf("front"));
    EXPECT_FALSE(Camera::ViewOf("Front"));
    Vector const nearest(0, 0, 1);
    camera.Orbit({100, 100}, {130, 80}, Window);
    Vector const turned = Project(camera.Matrix(), nearest);
    EXPECT_GT(turned.x, 0.05);
    EXPECT_LT(turned.y, -0.05);
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
