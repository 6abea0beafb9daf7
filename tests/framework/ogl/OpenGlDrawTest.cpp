#include "tests/framework/ogl/GlTest.h"

#include "framework/ogl/Bind.h"
#include "framework/ogl/PushAttribScope.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <random>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using Types::Color4f;
using Types::Matrix4;
using Vector3 = Agl::Vector3;
using Vector4 = Agl::Vector4;

class OpenGlDraw : public GlTest {
public:
    void Blend() const {
        agl->Enable(AGL_BLEND);
        agl->BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
    }
    void LightUp() const {
        agl->Enable(AGL_LIGHTING);
        agl->Enable(AGL_LIGHT0);
    }
    static QColor Grey(double p_value) { return QColor::fromRgbF(float(p_value), float(p_value), float(p_value)); }
};

// What is merged looks exactly like what is sent one by one.
TEST_P(OpenGlDraw, mergingChangesNoPixel) {
    std::vector<std::shared_ptr<PrimitiveBuffer const>> const shapes = {MakeCube(*agl), MakeSquare(*agl)};
    auto const scene = [&](bool p_hasDepth, bool p_flush) {
        Reset(*agl);
        std::mt19937 random(5);
        std::uniform_real_distribution<double> number(0, 1);
        p_hasDepth ? agl->Enable(AGL_DEPTH_TEST) : agl->Disable(AGL_DEPTH_TEST);
        for (int i = 0; i < 300; ++i) {
            PushAttribScope const saved(*agl, AGL_ALL_ATTRIB_BITS);
            if (number(random) < 0.2) {
                agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
            }
            if (number(random) < 0.2) {
                Blend();
            }
            agl->LoadIdentity();
            agl->Translate(64 * number(random), 64 * number(random), number(random) - 0.5);
            agl->Scale(6, 6, 0.1);
            agl->Rotate(360 * number(random), {number(random), 1, number(random)});
            agl->Color(float(number(random)), float(number(random)), float(number(random)), 0.5F);
            if (number(random) < 0.2) {
                Rectangle(-0.5, -0.5, 0.5, 0.5);
            } else {
                agl->Draw(shapes[random() % 2]);
            }
            if (p_flush) {
                agl->Flush();
            }
        }
        return Picture();
    };
    for (bool const hasDepth : {false, true}) {
        QImage const merged = scene(hasDepth, false);
        EXPECT_GT(CountDrawn(merged), 1000);
        EXPECT_EQ(merged, scene(hasDepth, true));
    }
}

TEST_P(OpenGlDraw, nestedScissorsAndMasksLimitClearsAndDraws) {
    agl->Enable(AGL_SCISSOR_TEST);
    agl->PushScissor();
    agl->Scissor({8, 8, 32, 32});
    agl->PushScissor();
    agl->Scissor({20, 20, 40, 40});
    agl->ColorMask(true, false, true, true);
    agl->ClearColor(QColor(255, 255, 255));
    agl->Clear(AGL_COLOR_BUFFER_BIT);
    agl->Color(0, 0, 1);
    Rectangle(0, 0, 64, 30);
    EXPECT_EQ(CountDrawn(Picture()), 20 * 20);
    EXPECT_EQ(At(Picture(), 20, 39), QColor(255, 0, 255));
    EXPECT_EQ(At(Picture(), 39, 20), QColor(0, 0, 255));
    agl->PopScissor();
    agl->PopScissor();
}

TEST_P(OpenGlDraw, stippleShowsItsPatternByWindowCoordinates) {
    std::array<std::uint32_t, 32> rows{};
    rows[3] = 0x80000001;
    rows[4] = 0x40000000;
    agl->PolygonStipple(rows);
    agl->Enable(AGL_POLYGON_STIPPLE);
    Rectangle(0, 0, 64, 64);
    Line({0, 60.5, 0}, {64, 60.5, 0});
    QImage const picture = Picture();
    EXPECT_EQ(CountDrawn(picture), 2 * 2 * 3 + 64) << "lines are not stippled";
    for (auto const& [x, y] : {std::pair(0, 3), {31, 3}, {32, 3}, {63, 35}, {1, 4}, {33, 36}}) {
        EXPECT_EQ(At(picture, x, y), QColor(255, 255, 255)) << x << ", " << y;
    }
}

TEST_P(OpenGlDraw, depthAndStencilDecide) {
    auto const bar = [&](QColor const& p_color, double p_left, double p_right, double p_z) {
        agl->Color(p_color);
        Rectangle(p_left, 0, p_right, 64, p_z);
    };
    agl->Enable(AGL_DEPTH_TEST);
    bar(Qt::red, 0, 64, 0.5);
    bar(Qt::green, 0, 20, 0.2);
    agl->DepthFunc(AGL_GREATER);
    agl->DepthMask(false);
    bar(Qt::blue, 20, 40, 0.2);
    agl->DepthFunc(AGL_LESS);
    agl->DepthMask(true);
    agl->DepthRange(0, 0.1);
    bar(Qt::yellow, 40, 50, -0.9);
    agl->Disable(AGL_DEPTH_TEST);

    agl->Enable(AGL_STENCIL_TEST);
    agl->StencilFunc(AGL_ALWAYS, 5, 0xFF);
    agl->StencilOp(AGL_KEEP, AGL_KEEP, AGL_REPLACE);
    agl->ColorMask(false, false, false, false);
    bar(Qt::black, 50, 55, 0);
    agl->ColorMask(true, true, true, true);
    agl->StencilFunc(AGL_EQUAL, 5, 0xFF);
    bar(Qt::white, 45, 64, 0);
    QImage const picture = Picture();
    for (auto const& [x, expected] :
        {std::pair(10, Qt::red), {30, Qt::blue}, {45, Qt::yellow}, {52, Qt::white}, {60, Qt::red}}) {
        EXPECT_EQ(At(picture, x, 30), QColor(expected)) << x;
    }
}

// Each way to draw is cut at x = 32 by a plane that was given in a shifted frame.
TEST_P(OpenGlDraw, clipPlanesCutEveryPipeline) {
    agl->Translate(30, 0, 0);
    agl->ClipPlane(AGL_CLIP_PLANE0 + 5, {-1, 0, 0, 2});
    agl->Enable(AGL_CLIP_PLANE0 + 5);
    agl->PointSize(3);
    auto const square = MakeSquare(*agl);
    for (Token const mode : {AGL_FILL, AGL_LINE, AGL_POINT}) {
        for (float const width : {1.0F, 5.0F}) {
            for (char const what : {'s', 'r', 'l'}) {
                Reset(*agl);
                agl->PolygonMode(AGL_FRONT_AND_BACK, mode);
                agl->LineWidth(width);
                if (what == 'l') {
                    Line({10, 30.5, 0}, {50, 30.5, 0});
                } else if (what == 'r') {
                    Rectangle(22, 22, 42, 42);
                } else {
                    agl->Translate(32, 32, 0);
                    agl->Scale(20, 20, 1);
                    agl->Draw(square);
                }
                EXPECT_GT(CountDrawn(Picture()), 8) << mode << what << width;
                EXPECT_EQ(CountDrawn(Picture(), 32), 0) << mode << what << width;
            }
        }
    }
}

TEST_P(OpenGlDraw, wideLinesAreAsWideAsTheySay) {
    for (int const width : {1, 2, 3, 7, 20}) {
        agl->LineWidth(float(width));
        double const center = 32 + width % 2 * 0.5;
        for (bool const isFlat : {false, true}) {
            Reset(*agl);
            isFlat ? Line({10, center, 0}, {50, center, 0}) : Line({center, 10, 0}, {center, 50, 0});
            EXPECT_EQ(CountDrawn(Picture()), 40 * width);
        }
    }
    Reset(*agl);
    agl->LineWidth(5);
    Line({10, 10.3, 0}, {50, 40.3, 0});
    EXPECT_EQ(CountDrawn(Picture()), 40 * 5) << "wide in y where the line is flatter than steep";
}

TEST_P(OpenGlDraw, smoothLinesAndPointsFadeAtTheirEdges) {
    agl->Enable(AGL_LINE_SMOOTH);
    agl->Enable(AGL_POINT_SMOOTH);
    Blend();
    agl->LineWidth(4);
    agl->PointSize(10);
    Line({10, 42.5, 0}, {50, 42.5, 0});
    Draw(AGL_POINTS, {{32, 22, 0}});
    QImage const picture = Picture();
    EXPECT_EQ(At(picture, 30, 42), QColor(255, 255, 255));
    EXPECT_TRUE(IsNear(At(picture, 30, 44), QColor(128, 128, 128), 8));
    EXPECT_EQ(At(picture, 30, 46), QColor(0, 0, 0));
    EXPECT_EQ(At(picture, 32, 18), QColor(255, 255, 255));
    EXPECT_EQ(At(picture, 27, 17), QColor(0, 0, 0)) << "the corner of the square";
}

// A line from before the eye to behind it ends at the near plane, wide or not.
TEST_P(OpenGlDraw, linesThatPassTheEyeAreCut) {
    for (float const width : {1.0F, 5.0F}) {
        Reset(*agl);
        agl->MatrixMode(AGL_PROJECTION);
        agl->LoadMatrix(Matrix4::Perspective(90, 1, 1, 100));
        agl->LineWidth(width);
        Line({0, 0, -10}, {20, 0.4, 10});
        EXPECT_NEAR(CountDrawn(Picture()), 32 * int(width), 3 * int(width)) << width;
        EXPECT_EQ(At(Picture(), 10, 32), QColor(0, 0, 0));
    }
}

// Quads in line mode are their edges and nothing else: the same picture as lines between the corners.
TEST_P(OpenGlDraw, outlinesHaveNoDiagonals) {
    auto const cube = MakeCube(*agl);
    auto const setUp = [&] {
        Reset(*agl);
        agl->MatrixMode(AGL_PROJECTION);
        agl->LoadIdentity();
        agl->Perspective({0, 0, Size, Size}, Agl::Box({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}),
            Matrix4::Rotation(25, {1, 0, 0}) * Matrix4::Rotation(30, {0, 1, 0}));
    };
    for (float const width : {1.0F, 3.0F}) {
        agl->LineWidth(width);
        setUp();
        auto const at = [](unsigned p_corner) {
            return Vector3(p_corner & 1U ? 0.5 : -0.5, p_corner & 2U ? 0.5 : -0.5, p_corner & 4U ? 0.5 : -0.5);
        };
        for (unsigned edge = 0; edge < 64; ++edge) {
            if (std::has_single_bit(edge % 8 ^ edge / 8)) {
                Line(at(edge % 8), at(edge / 8));
            }
        }
        int const edges = CountDrawn(Picture());
        agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
        agl->Draw(cube);
        EXPECT_GT(edges, 200);
        EXPECT_LT(CountDrawn(Picture()), edges + 12) << "lines may differ in single pixels where they tie";
        setUp();
        agl->Draw(cube);
        EXPECT_GT(CountDrawn(Picture()), edges - 12);
    }
}

TEST_P(OpenGlDraw, polygonModesAndCullingDecideWhatIsDrawnOfFrontsAndBacks) {
    struct Case {
        Token front, back, cull, winding;
        int pixels;
    };
    agl->PointSize(2);
    for (auto const& [front, back, cull, winding, pixels] : {
             Case{AGL_FILL, AGL_FILL, AGL_BACK, AGL_CCW, 400},
             Case{AGL_FILL, AGL_FILL, AGL_FRONT, AGL_CCW, 0},
             Case{AGL_FILL, AGL_FILL, AGL_FRONT_AND_BACK, AGL_CCW, 0},
             Case{AGL_POINT, AGL_FILL, AGL_NONE, AGL_CCW, 16},
             Case{AGL_POINT, AGL_FILL, AGL_NONE, AGL_CW, 400},
             Case{AGL_FILL, AGL_POINT, AGL_FRONT, AGL_CW, 16},
         }) {
        Reset(*agl);
        PushAttribScope const saved(*agl, AGL_ALL_ATTRIB_BITS);
        agl->PolygonMode(AGL_FRONT, front);
        agl->PolygonMode(AGL_BACK, back);
        agl->FrontFace(winding);
        if (cull != AGL_NONE) {
            agl->Enable(AGL_CULL_FACE);
            agl->CullFace(cull);
        }
        Rectangle(10, 10, 30, 30);
        EXPECT_EQ(CountDrawn(Picture()), pixels) << front << ' ' << back << ' ' << cull;
    }
}

TEST_P(OpenGlDraw, flatShadingTakesTheLastVertexButThePolygonsFirst) {
    agl->ShadeModel(AGL_FLAT);
    for (Token const mode : {AGL_FILL, AGL_LINE}) {
        agl->PolygonMode(AGL_FRONT_AND_BACK, mode);
        for (Token const kind : {AGL_QUADS, AGL_TRIANGLE_FAN, AGL_POLYGON}) {
            Reset(*agl);
            agl->Begin(kind);
            agl->Color(1, 0, 0);
            agl->Vertex(10.5, 10.5);
            agl->Color(0, 1, 0);
            agl->Vertex(30.5, 10.5);
            agl->Vertex(30.5, 30.5);
            agl->Color(0, 0, 1);
            agl->Vertex(10.5, 30.5);
            agl->End();
            EXPECT_EQ(At(Picture(), 10, 20), QColor(kind == AGL_POLYGON ? Qt::red : Qt::blue)) << kind << mode;
        }
    }
}

// The light equation, term by term, at a single vertex in the middle; lights are given in a frame that is turned.
TEST_P(OpenGlDraw, lightsAddUpAsTheEquationSays) {
    struct Case {
        char const* name;
        std::function<void(Agl&)> setUp;
        Vector3 normal;
        double expected;
    };
    double const s = std::sqrt(0.5);
    auto const spot = [](Agl& p, float p_cutoff) {
        p.Light(AGL_LIGHT0, AGL_POSITION, Vector4(4, 0, -4, 1));
        p.Light(AGL_LIGHT0, AGL_SPOT_DIRECTION, Vector3(0, 0, 1));
        p.Light(AGL_LIGHT0, AGL_SPOT_CUTOFF, p_cutoff);
        p.Light(AGL_LIGHT0, AGL_SPOT_EXPONENT, 2.0F);
    };
    std::vector<Case> const cases = {
        {"slanted", [](Agl&) {}, {s, 0, s}, 0.04 + 0.8 * s},
        {"turned away", [](Agl&) {}, {0, 0, -1}, 0.04},
        {"normal of length 1/2", [](Agl&) {}, {0, 0, 0.5}, 0.04 + 0.4},
        {"normalised", [](Agl& p) { p.Enable(AGL_NORMALIZE); }, {0, 0, 0.5}, 0.04 + 0.8},
        {"emission and ambient",
            [](Agl& p) {
                p.Material(AGL_FRONT, AGL_EMISSION, Color4f(0.1F, 0.1F, 0.1F));
                p.LightModel(AGL_LIGHT_MODEL_AMBIENT, Color4f(0.5F, 0.5F, 0.5F));
                p.Light(AGL_LIGHT0, AGL_AMBIENT, Color4f(0.5F, 0.5F, 0.5F));
            },
            {0, 0, -1}, 0.1 + 0.1 + 0.1},
        {"attenuated",
            [](Agl& p) {
                p.Light(AGL_LIGHT0, AGL_POSITION, Vector4(0, 0, -4, 1));
                p.Light(AGL_LIGHT0, AGL_LINEAR_ATTENUATION, 0.125F);
                p.Light(AGL_LIGHT0, AGL_QUADRATIC_ATTENUATION, 0.03125F);
            },
            {0, 0, 1}, 0.04 + 0.8 / 2},
        {"spot beside", [=](Agl& p) { spot(p, 40); }, {0, 0, 1}, 0.04},
        {"spot that fades", [=](Agl& p) { spot(p, 50); }, {0, 0, 1}, 0.04 + 0.8 * s * 0.5},
        {"specular",
            [](Agl& p) {
                p.Material(AGL_FRONT, AGL_DIFFUSE, Color4f(0, 0, 0));
                p.Material(AGL_FRONT, AGL_SPECULAR, Color4f(0.5F, 0.5F, 0.5F));
                p.Material(AGL_FRONT, AGL_SHININESS, 4.0F);
            },
            {s, 0, s}, 0.04 + 0.5 * 0.25},
        {"second light",
            [](Agl& p) {
                p.Light(AGL_LIGHT0 + 7, AGL_POSITION, Vector4(0, 0, -1, 0));
                p.Light(AGL_LIGHT0 + 7, AGL_DIFFUSE, Color4f(0.125F, 0.125F, 0.125F));
                p.Enable(AGL_LIGHT0 + 7);
            },
            {0, 0, 1}, 0.04 + 0.8 * 1.125},
        {"colour material", [](Agl& p) { p.Enable(AGL_COLOR_MATERIAL), p.Color(0.5F, 0.5F, 0.5F); }, {0, 0, 1},
            0.5 * 0.2 + 0.5},
    };
    for (Case const& test : cases) {
        Reset(*agl);
        PushAttribScope const saved(*agl, AGL_ALL_ATTRIB_BITS);
        LightUp();
        agl->PointSize(5);
        agl->Translate(32, 32, 0);
        agl->Rotate(180, {1, 0, 0});
        test.setUp(*agl);
        agl->LoadIdentity();
        agl->Normal(test.normal);
        Draw(AGL_POINTS, {{32, 32, 0}});
        EXPECT_TRUE(IsNear(Middle(), Grey(test.expected))) << test.name;
    }
}

TEST_P(OpenGlDraw, twoSidedLightingShowsTheBackMaterialOnBacks) {
    LightUp();
    agl->LightModel(AGL_LIGHT_MODEL_TWO_SIDE, true);
    agl->Material(AGL_BACK, AGL_DIFFUSE, Color4f(1, 0, 0));
    agl->Material(AGL_BACK, AGL_AMBIENT, Color4f(0, 0, 0));
    agl->Normal({0, 0, -1});
    for (Token const mode : {AGL_FILL, AGL_LINE}) {
        agl->PolygonMode(AGL_FRONT_AND_BACK, mode);
        Reset(*agl);
        Rectangle(32.5, 10.5, 10.5, 50.5);
        EXPECT_TRUE(IsNear(At(Picture(), 10, 20), QColor(255, 0, 0))) << mode;
    }
}

// Normals follow any affine matrix: the drawn face has the brightness of its true slope.
TEST_P(OpenGlDraw, facesAreLitRightUnderMirrorShearAndUnevenScale) {
    Matrix4 shear;
    shear.Set(2, 0, 0.05);
    std::vector<std::pair<char const*, Matrix4>> const matrices = {
        {"mirror", Matrix4::Scaling({-20, 20, 20})},
        {"mirror in depth", Matrix4::Scaling({20, 20, -20})},
        {"shear", shear * Matrix4::Scaling({15, 15, 0.3})},
        {"turned, uneven, mirrored", Matrix4::Scaling({20, -20, 0.4}) * Matrix4::Rotation(30, {0, 1, 0})},
    };
    auto const square = MakeSquare(*agl);
    LightUp();
    agl->Enable(AGL_NORMALIZE);
    Vector3 const toLight = Types::Normalized(Vector3(0.6, 0.2, 1));
    agl->Light(AGL_LIGHT0, AGL_POSITION, Vector4(toLight, 0));
    for (auto const& [name, matrix] : matrices) {
        Vector3 const u = (matrix * Vector4(1, 0, 0, 0)).XYZ();
        Vector3 const v = (matrix * Vector4(0, 1, 0, 0)).XYZ();
        double const side = matrix.Determinant() < 0 ? -1 : 1;
        double const diffuse = std::max(0.0, side * Types::Dot(Types::Normalized(Types::Cross(u, v)), toLight));
        for (bool const isBuffer : {true, false}) {
            Reset(*agl);
            agl->Translate(32, 32, 0);
            agl->MultMatrix(matrix);
            if (isBuffer) {
                agl->Draw(square);
            } else {
                agl->Normal({0, 0, 1});
                Rectangle(-0.5, -0.5, 0.5, 0.5);
            }
            EXPECT_TRUE(IsNear(Middle(), Grey(0.04 + 0.8 * diffuse))) << name << isBuffer;
        }
    }
}

TEST_P(OpenGlDraw, genericShaderLightsWithItsHeadlightOrTheLightsInForce) {
    VertexData data;
    data.positions = {{-0.5F, -0.5F, 0}, {0.5F, -0.5F, 0}, {0, 0.5F, 0}};
    data.normals.assign(3, {0, 0, 1});
    data.colors.assign(3, Color4f(0.5F, 0.5F, 1));
    auto const shape = MakeShape(*agl, AGL_TRIANGLES, data, {0, 1, 2});
    auto const draw = [&](double p_tilt, double p_scaleX) {
        Reset(*agl);
        agl->Translate(32, 32, 0);
        agl->Scale(20 * p_scaleX, 20, 0.01);
        agl->Rotate(p_tilt, {0, 1, 0});
        agl->Color(1, 0.5F, 0);
        agl->Draw(shape);
        return Middle();
    };
    Bind<Shader> const shader(*agl, agl->GenGenericShader());
    EXPECT_TRUE(IsNear(draw(0, 1), QColor(255, 128, 0))) << "colours of vertices are off";
    EXPECT_TRUE(IsNear(draw(180, 1), QColor(255, 128, 0))) << "backs are lit too";
    EXPECT_TRUE(IsNear(draw(0, -1), QColor(255, 128, 0))) << "mirrored";
    agl->Enable(AGL_LIGHTING);
    EXPECT_TRUE(IsNear(draw(0, 1), QColor(255, 128, 0))) << "no light is on";
    LightUp();
    agl->LoadIdentity();
    agl->Light(AGL_LIGHT0, AGL_POSITION, Vector4(1, 0, 1, 0));
    EXPECT_TRUE(IsNear(draw(0, 1), QColor::fromRgbF(0.907F, 0.4535F, 0)));
    EXPECT_TRUE(IsNear(draw(0, -1), QColor::fromRgbF(0.907F, 0.4535F, 0)));
    agl->Disable(AGL_LIGHTING);
    Bind<Shader> const both(
        *agl, agl->GenGenericShader(ShaderSource::Generic(), GenericShader::State(std::bitset<2>(3))));
    EXPECT_TRUE(IsNear(draw(0, 1), QColor(128, 64, 0)));
}

TEST_P(OpenGlDraw, textureEnvironmentsCombineAsTheySay) {
    QImage image(2, 2, QImage::Format_RGBA8888);
    image.fill(QColor(255, 128, 0, 128));
    image.setPixelColor(0, 0, QColor(0, 0, 255, 255));
    TextureSampling nearest;
    nearest.magnification = AGL_NEAREST;
    auto const texture = std::make_shared<Texture const>(image, nearest);
    for (Token const unit : {AGL_TEXTURE0, AGL_TEXTURE1}) {
        agl->ActiveTexture(unit);
        agl->Enable(AGL_TEXTURE_2D);
        agl->BindTexture(texture);
        agl->TexEnv(AGL_TEXTURE_ENV_COLOR, Color4f(0, 1, 0));
        agl->MatrixMode(AGL_TEXTURE);
        agl->Scale(1.0 / 20, 1.0 / 20, 1);
        for (auto const& [mode, expected] : {std::pair(AGL_REPLACE, QColor(255, 128, 0)),
                 {AGL_MODULATE, QColor(128, 128, 0)}, {AGL_DECAL, QColor(192, 192, 64)},
                 {AGL_BLEND, QColor(0, 255, 128)}, {AGL_ADD, QColor(255, 255, 128)}}) {
            Reset(*agl);
            agl->TexEnv(AGL_TEXTURE_ENV_MODE, mode);
            agl->Color(0.5F, 1, 0.5F);
            agl->Begin(AGL_QUADS);
            for (auto const& [x, y] : {std::pair(0, 0), {20, 0}, {20, 20}, {0, 20}}) {
                agl->MultiTexCoord(unit, x, y);
                agl->Vertex(10 + x, 10 + y);
            }
            agl->End();
            EXPECT_TRUE(IsNear(At(Picture(), 25, 15), expected)) << "mode " << mode;
            EXPECT_TRUE(mode != AGL_REPLACE || At(Picture(), 12, 28) == QColor(0, 0, 255)) << "upper left of the image";
        }
        agl->Disable(AGL_TEXTURE_2D);
    }
}

TEST_P(OpenGlDraw, smoothedTargetsMixPixelsAtEdges) {
    OffscreenTarget smooth(Size, Size, 4);
    if (smooth.Samples() == 0) {
        GTEST_SKIP() << "The device has one sample a pixel only.";
    }
    agl->Flush();
    smooth.Bind();
    Reset(*agl);
    agl->Rotate(10, {0, 0, 1});
    Rectangle(20, 5, 50, 40);
    QImage const picture = Picture();
    EXPECT_EQ(picture, smooth.Read());
    smooth.Release();
    int mixed = 0;
    for (int i = 0; i < Size * Size; ++i) {
        int const red = picture.pixelColor(i % Size, i / Size).red();
        mixed += red > 10 && red < 245 ? 1 : 0;
    }
    EXPECT_GT(mixed, 30);
}

INSTANTIATE_TEST_SUITE_P(
    , OpenGlDraw, testing::Values(Context::Profile::Core, Context::Profile::Compatibility), ProfileName);

} // namespace
} // namespace Qor::Chart::Ogl
