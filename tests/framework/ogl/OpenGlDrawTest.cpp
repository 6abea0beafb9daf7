#include "tests/framework/ogl/GlTest.h"

#include "framework/ogl/PushAttribScope.h"

#include <cmath>
#include <functional>
#include <random>
#include <set>
#include <tuple>

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
    std::shared_ptr<PrimitiveBuffer const> MakeTriangle() const {
        VertexData data;
        data.positions = {{-0.5F, -0.5F, 0}, {0.5F, -0.5F, 0}, {0, 0.5F, 0}};
        data.normals.assign(3, {0, 0, 1});
        data.colors.assign(3, Color4f(0.5F, 0.5F, 1));
        return MakeShape(*agl, AGL_TRIANGLES, std::move(data), {0, 1, 2});
    }
    static QColor Grey(double p_value) { return QColor::fromRgbF(float(p_value), float(p_value), float(p_value)); }
};

// What is merged looks exactly like what is sent one by one.
TEST_P(OpenGlDraw, mergingChangesNoPixel) {
    std::vector<std::shared_ptr<PrimitiveBuffer const>> const shapes = {MakeTriangle(), MakeSquare(*agl)};
    auto const scene = [&](bool p_hasDepth, bool p_flush) {
        Reset(*agl);
        std::mt19937 engine(5);
        auto const random = [&] { return std::uniform_real_distribution<double>(0, 1)(engine); };
        p_hasDepth ? agl->Enable(AGL_DEPTH_TEST) : agl->Disable(AGL_DEPTH_TEST);
        for (int i = 0; i < 300; ++i) {
            PushAttribScope const saved(*agl, AGL_ALL_ATTRIB_BITS);
            agl->PolygonMode(AGL_FRONT_AND_BACK, random() < 0.2 ? AGL_LINE : AGL_FILL);
            if (random() < 0.2) {
                Blend();
            }
            agl->LoadIdentity();
            agl->Translate(64 * random(), 64 * random(), random() - 0.5);
            agl->Scale(9, 9, 0.1);
            agl->Rotate(360 * random(), {random(), 1, random()});
            agl->Color(float(random()), float(random()), float(random()), 0.5F);
            random() < 0.2 ? Rectangle(-0.5, -0.5, 0.5, 0.5) : agl->Draw(shapes[engine() % 2]);
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
    agl->DepthRange(0, 0.1);
    bar(Qt::yellow, 40, 50, -0.9);
    agl->Disable(AGL_DEPTH_TEST);
    agl->Enable(AGL_STENCIL_TEST);
    agl->StencilFunc(AGL_ALWAYS, 5, 0xFF);
    agl->StencilOp(AGL_KEEP, AGL_KEEP, AGL_REPLACE);
    bar(Qt::black, 50, 55, 0);
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
    std::vector<std::function<void()>> const drawings = {
        [&] {
            Line({10, 30.5, 0}, {50, 30.5, 0});
        },
        [&] { Rectangle(22, 22, 42, 42); },
        [&] { agl->Translate(32, 32, 0), agl->Scale(20, 20, 1), agl->Draw(square); },
    };
    for (Token const mode : {AGL_FILL, AGL_LINE, AGL_POINT}) {
        for (float const width : {1.0F, 5.0F}) {
            for (auto const& draw : drawings) {
                Reset(*agl);
                agl->PolygonMode(AGL_FRONT_AND_BACK, mode);
                agl->LineWidth(width);
                draw();
                EXPECT_GT(CountDrawn(Picture()), 8) << mode << ' ' << &draw - drawings.data() << ' ' << width;
                EXPECT_EQ(CountDrawn(Picture(), 32), 0) << mode << ' ' << &draw - drawings.data() << ' ' << width;
            }
        }
    }
}

TEST_P(OpenGlDraw, wideLinesAreAsWideAsTheySay) {
    for (int const width : {1, 2, 3, 7, 20}) {
        agl->LineWidth(float(width));
        double const center = 32 + width % 2 * 0.5;
        for (auto const& [from, to] : {std::pair(Vector3(10, center, 0), Vector3(50, center, 0)),
                 {{center, 10, 0}, {center, 50, 0}}, {{10, 10.3, 0}, {50, 40.3, 0}}}) {
            Reset(*agl);
            Line(from, to);
            EXPECT_EQ(CountDrawn(Picture()), 40 * width) << to << ", wide in y where flatter than steep";
        }
    }
}

TEST_P(OpenGlDraw, smoothLinesAndPointsFadeAtTheirEdges) {
    agl->Enable(AGL_LINE_SMOOTH);
    agl->Enable(AGL_POINT_SMOOTH);
    Blend();
    agl->LineWidth(4);
    agl->PointSize(10);
    Line({10, 42.5, 0}, {50, 42.5, 0});
    DrawImmediate(*agl, AGL_POINTS, {{32, 22, 0}});
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

TEST_P(OpenGlDraw, outlinesHaveNoDiagonals) {
    auto const square = MakeSquare(*agl);
    agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
    for (int const width : {1, 3}) {
        for (bool const isBuffer : {false, true}) {
            Reset(*agl);
            agl->LineWidth(float(width));
            agl->Translate(32.5, 32.5, 0);
            agl->Scale(30, 30, 1);
            isBuffer ? agl->Draw(square) : Rectangle(-0.5, -0.5, 0.5, 0.5);
            EXPECT_NEAR(CountDrawn(Picture()), 4 * 30 * width, 6 * width) << isBuffer;
            EXPECT_EQ(Middle(), QColor(0, 0, 0)) << isBuffer;
        }
    }
}

TEST_P(OpenGlDraw, polygonModesAndCullingDecideWhatIsDrawnOfFrontsAndBacks) {
    agl->PointSize(2);
    for (auto const& [front, back, cull, winding, pixels] : {
             std::tuple(AGL_FILL, AGL_FILL, AGL_BACK, AGL_CCW, 400),
             {AGL_FILL, AGL_FILL, AGL_FRONT, AGL_CCW, 0},
             {AGL_FILL, AGL_FILL, AGL_FRONT_AND_BACK, AGL_CCW, 0},
             {AGL_POINT, AGL_FILL, AGL_NONE, AGL_CCW, 16},
             {AGL_POINT, AGL_FILL, AGL_NONE, AGL_CW, 400},
             {AGL_FILL, AGL_POINT, AGL_FRONT, AGL_CW, 16},
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

// The light equation, term by term, at a single vertex in the middle; lights are given in a frame that is turned.
TEST_P(OpenGlDraw, lightsAddUpAsTheEquationSays) {
    double const s = std::sqrt(0.5);
    auto const grey = [](float p_value) { return Color4f(p_value, p_value, p_value); };
    auto const spot = [](Agl& p, float p_cutoff) {
        p.Light(AGL_LIGHT0, AGL_POSITION, Vector4(4, 0, -4, 1));
        p.Light(AGL_LIGHT0, AGL_SPOT_DIRECTION, Vector3(0, 0, 1));
        p.Light(AGL_LIGHT0, AGL_SPOT_CUTOFF, p_cutoff);
        p.Light(AGL_LIGHT0, AGL_SPOT_EXPONENT, 2.0F);
    };
    std::vector<std::tuple<char const*, Vector3, double, std::function<void(Agl&)>>> const cases = {
        {"slanted", {s, 0, s}, 0.04 + 0.8 * s, [](Agl&) {}},
        {"normal of length 1/2", {0, 0, 0.5}, 0.04 + 0.4, [](Agl&) {}},
        {"normalised", {0, 0, 0.5}, 0.04 + 0.8, [](Agl& p) { p.Enable(AGL_NORMALIZE); }},
        {"emission and ambient", {0, 0, -1}, 0.1 + 0.1 + 0.1,
            [=](Agl& p) {
                p.Material(AGL_FRONT, AGL_EMISSION, grey(0.1F));
                p.LightModel(AGL_LIGHT_MODEL_AMBIENT, grey(0.5F));
                p.Light(AGL_LIGHT0, AGL_AMBIENT, grey(0.5F));
            }},
        {"attenuated", {0, 0, 1}, 0.04 + 0.8 / 2,
            [](Agl& p) {
                p.Light(AGL_LIGHT0, AGL_POSITION, Vector4(0, 0, -4, 1));
                p.Light(AGL_LIGHT0, AGL_LINEAR_ATTENUATION, 0.125F);
                p.Light(AGL_LIGHT0, AGL_QUADRATIC_ATTENUATION, 0.03125F);
            }},
        {"spot beside", {0, 0, 1}, 0.04, [=](Agl& p) { spot(p, 40); }},
        {"spot that fades", {0, 0, 1}, 0.04 + 0.8 * s * 0.5, [=](Agl& p) { spot(p, 50); }},
        {"specular", {s, 0, s}, 0.04 + 0.5 * 0.25,
            [=](Agl& p) {
                p.Material(AGL_FRONT, AGL_DIFFUSE, grey(0));
                p.Material(AGL_FRONT, AGL_SPECULAR, grey(0.5F));
                p.Material(AGL_FRONT, AGL_SHININESS, 4.0F);
            }},
        {"second light", {0, 0, 1}, 0.04 + 0.8 * 1.125,
            [=](Agl& p) {
                p.Light(AGL_LIGHT0 + 7, AGL_POSITION, Vector4(0, 0, -1, 0));
                p.Light(AGL_LIGHT0 + 7, AGL_DIFFUSE, grey(0.125F));
                p.Enable(AGL_LIGHT0 + 7);
            }},
        {"colour material", {0, 0, 1}, 0.5 * 0.2 + 0.5,
            [](Agl& p) { p.Enable(AGL_COLOR_MATERIAL), p.Color(0.5F, 0.5F, 0.5F); }},
    };
    for (auto const& [name, normal, expected, setUp] : cases) {
        Reset(*agl);
        PushAttribScope const saved(*agl, AGL_ALL_ATTRIB_BITS);
        LightUp();
        agl->PointSize(5);
        agl->Translate(32, 32, 0);
        agl->Rotate(180, {1, 0, 0});
        setUp(*agl);
        agl->LoadIdentity();
        agl->Normal(normal);
        DrawImmediate(*agl, AGL_POINTS, {{32, 32, 0}});
        EXPECT_TRUE(IsNear(Middle(), Grey(expected))) << name;
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
    auto const square = MakeSquare(*agl);
    LightUp();
    agl->Enable(AGL_NORMALIZE);
    Vector3 const toLight = Types::Normalized(Vector3(0.6, 0.2, 1));
    agl->Light(AGL_LIGHT0, AGL_POSITION, Vector4(toLight, 0));
    for (auto const& [name, matrix] : {std::pair("mirror", Matrix4::Scaling({-20, 20, 20})),
             {"mirror in depth", Matrix4::Scaling({20, 20, -20})}, {"shear", shear * Matrix4::Scaling({15, 15, 0.3})},
             {"turned, uneven, mirrored", Matrix4::Scaling({20, -20, 0.4}) * Matrix4::Rotation(30, {0, 1, 0})}}) {
        Vector3 const u = (matrix * Vector4(1, 0, 0, 0)).XYZ();
        Vector3 const v = (matrix * Vector4(0, 1, 0, 0)).XYZ();
        double const side = matrix.Determinant() < 0 ? -1 : 1;
        double const diffuse = std::max(0.0, side * Types::Dot(Types::Normalized(Types::Cross(u, v)), toLight));
        for (bool const isBuffer : {true, false}) {
            Reset(*agl);
            agl->Translate(32, 32, 0);
            agl->MultMatrix(matrix);
            agl->Normal({0, 0, 1});
            isBuffer ? agl->Draw(square) : Rectangle(-0.5, -0.5, 0.5, 0.5);
            EXPECT_TRUE(IsNear(Middle(), Grey(0.04 + 0.8 * diffuse))) << name << isBuffer;
        }
    }
}

TEST_P(OpenGlDraw, genericShaderLightsWithItsHeadlightOrTheLightsInForce) {
    auto const shape = MakeTriangle();
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
    for (auto const& [tilt, scaleX] : {std::pair(0, 1), {180, 1}, {0, -1}}) {
        EXPECT_TRUE(IsNear(draw(tilt, scaleX), QColor(255, 128, 0)))
            << "without colours of vertices, backs are lit too";
    }
    LightUp();
    agl->LoadIdentity();
    agl->Light(AGL_LIGHT0, AGL_POSITION, Vector4(1, 0, 1, 0));
    EXPECT_TRUE(IsNear(draw(0, -1), QColor::fromRgbF(0.907F, 0.4535F, 0)));
    agl->Disable(AGL_LIGHTING);
    auto const withColors = GenericShader::State(std::bitset<2>(3));
    Bind<Shader> const both(*agl, agl->GenGenericShader(ShaderSource::Generic(), withColors));
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
    std::set<QRgb> shades;
    for (int i = 0; i < Size * Size; ++i) {
        shades.insert(picture.pixel(i % Size, i / Size));
    }
    EXPECT_GT(shades.size(), 3U) << "black, white and what lies between";
}

INSTANTIATE_TEST_SUITE_P(
    , OpenGlDraw, testing::Values(Context::Profile::Core, Context::Profile::Compatibility), ProfileName);

} // namespace
} // namespace Qor::Chart::Ogl
