#pragma once

#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/Context.h"
#include "framework/ogl/OffscreenTarget.h"
#include "framework/ogl/OpenGlBackend.h"

#include <gtest/gtest.h>

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
        backend = std::make_unique<OpenGlBackend>();
        OpenGlBackend* const raw = backend.get();
        agl = std::make_unique<Agl>(std::move(backend));
        gl = raw;
        Reset(*agl);
    }
    void TearDown() override {
        if (agl) {
            EXPECT_EQ(agl->CheckError(), "");
        }
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
        agl->Begin(Tokens::AGL_QUADS);
        agl->Vertex(p_left, p_bottom, p_z);
        agl->Vertex(p_right, p_bottom, p_z);
        agl->Vertex(p_right, p_top, p_z);
        agl->Vertex(p_left, p_top, p_z);
        agl->End();
    }
    void Line(double p_x, double p_y, double p_toX, double p_toY) const {
        agl->Begin(Tokens::AGL_LINES);
        agl->Vertex(p_x, p_y);
        agl->Vertex(p_toX, p_toY);
        agl->End();
    }
    void Point(double p_x, double p_y) const {
        agl->Begin(Tokens::AGL_POINTS);
        agl->Vertex(p_x, p_y);
        agl->End();
    }
    QImage Picture() const { return agl->ReadPixels(0, 0, Size, Size); }
    /// A pixel, counted from the lower left.
    static QColor At(QImage const& p_image, int p_x, int p_y) {
        return p_image.pixelColor(p_x, p_image.height() - 1 - p_y);
    }
    static int CountDrawn(QImage const& p_image) {
        int count = 0;
        for (int y = 0; y < p_image.height(); ++y) {
            for (int x = 0; x < p_image.width(); ++x) {
                count += (p_image.pixel(x, y) & 0xFFFFFF) != 0 ? 1 : 0;
            }
        }
        return count;
    }
    static testing::AssertionResult IsNear(QColor const& p_actual, QColor const& p_expected, int p_tolerance = 2) {
        auto const differs = [p_tolerance](int p_a, int p_b) { return std::abs(p_a - p_b) > p_tolerance; };
        if (differs(p_actual.red(), p_expected.red()) || differs(p_actual.green(), p_expected.green()) ||
            differs(p_actual.blue(), p_expected.blue())) {
            return testing::AssertionFailure()
                << p_actual.name().toStdString() << " is not " << p_expected.name().toStdString();
        }
        return testing::AssertionSuccess();
    }

    std::unique_ptr<Context> context;
    std::unique_ptr<OffscreenTarget> target;
    std::unique_ptr<OpenGlBackend> backend; ///< for a moment only; `gl` stays
    std::unique_ptr<Agl> agl;
    OpenGlBackend* gl = nullptr;
};

inline std::string ProfileName(testing::TestParamInfo<Context::Profile> const& p_info) {
    return p_info.param == Context::Profile::Core ? "core" : "compatibility";
}

} // namespace Qor::Chart::Ogl
