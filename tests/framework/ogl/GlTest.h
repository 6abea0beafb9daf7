#pragma once

#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/Context.h"
#include "framework/ogl/OffscreenTarget.h"
#include "framework/ogl/OpenGlBackend.h"

#include <memory>
#include <string>
#include <utility>

namespace Qor::Chart::Ogl {

/// Tests that draw with OpenGL, once in a core and once in a compatibility context. Without a driver they are skipped.
/// The picture is 64 by 64 pixels; a pixel is one unit wide, and the origin is its lower left corner.
class GlTest : public testing::TestWithParam<Context::Profile> {
public:
    static constexpr int Size = 64;

    void SetUp() override {
        try {
            context = std::make_unique<Context>(GetParam());
        } catch (ContextError const& error) {
            GTEST_SKIP() << error.what();
        }
        target = std::make_unique<OffscreenTarget>(Size, Size);
        target->Bind();
        auto backend = std::make_unique<OpenGlBackend>();
        gl = backend.get();
        agl = std::make_unique<Agl>(std::move(backend));
        Reset(*agl);
    }
    void TearDown() override {
        EXPECT_EQ(agl ? agl->CheckError() : "", "");
        agl.reset();
        target.reset();
        context.reset();
    }

    /// Black, without depth test, in pixels.
    static void Reset(Agl& p_agl) {
        Types::Viewport<0> const viewport(0, 0, Size, Size);
        p_agl.Viewport(viewport);
        p_agl.ClearColor(Types::Color4f(0, 0, 0, 1));
        p_agl.Clear(Tokens::AGL_COLOR_BUFFER_BIT | Tokens::AGL_DEPTH_BUFFER_BIT | Tokens::AGL_STENCIL_BUFFER_BIT);
        p_agl.MatrixMode(Tokens::AGL_PROJECTION);
        p_agl.LoadIdentity();
        p_agl.Ortho2D(viewport);
        p_agl.MatrixMode(Tokens::AGL_MODELVIEW);
        p_agl.LoadIdentity();
    }
    void Rectangle(double p_left, double p_bottom, double p_right, double p_top, double p_z = 0) const {
        DrawImmediate(*agl, Tokens::AGL_QUADS,
            {{p_left, p_bottom, p_z}, {p_right, p_bottom, p_z}, {p_right, p_top, p_z}, {p_left, p_top, p_z}});
    }
    void Line(Agl::Vector3 const& p_from, Agl::Vector3 const& p_to) const {
        DrawImmediate(*agl, Tokens::AGL_LINES, {p_from, p_to});
    }
    QColor Middle() const { return At(Picture(), 32, 32); }
    QImage Picture() const { return agl->ReadPixels(0, 0, Size, Size); }
    /// A pixel, counted from the lower left.
    static QColor At(QImage const& p_image, int p_x, int p_y) {
        return p_image.pixelColor(p_x, p_image.height() - 1 - p_y);
    }
    static int CountDrawn(QImage const& p_image) {
        int count = 0;
        for (int y = 0; y < p_image.height(); ++y) {
            for (int x = 0; x < p_image.width(); ++x)
                count += (p_image.pixel(x, y) & 0xFFFFFF) != 0 ? 1 : 0;
        }
        return count;
    }
    static testing::AssertionResult IsNear(QColor const& p_actual, QColor const& p_expected, int p_tolerance = 2) {
        bool const isNear = std::abs(p_actual.red() - p_expected.red()) <= p_tolerance &&
            std::abs(p_actual.green() - p_expected.green()) <= p_tolerance &&
            std::abs(p_actual.blue() - p_expected.blue()) <= p_tolerance;
        return (isNear ? testing::AssertionSuccess() : testing::AssertionFailure())
            << p_actual.name().toStdString() << " for " << p_expected.name().toStdString();
    }

    std::unique_ptr<Context> context;
    std::unique_ptr<OffscreenTarget> target;
    std::unique_ptr<Agl> agl;
    OpenGlBackend* gl = nullptr;
};

inline std::string ProfileName(testing::TestParamInfo<Context::Profile> const& p_info) {
    return p_info.param == Context::Profile::Core ? "core" : "compatibility";
}

} // namespace Qor::Chart::Ogl
