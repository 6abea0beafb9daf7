#include "tests/framework/ogl/GlTest.h"

#include "framework/ogl/PushAttribScope.h"
#include "framework/types/TextureUnit.h"

#include <cmath>
#include <functional>
#include <map>
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
using Indices = std::vector<std::uint32_t>;

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

// Walks along lines between centres of pixels and tells which of them the pattern shows.
TEST_P(OpenGlDraw, lineStippleGoesOnAroundCornersAndStartsAnewWithEachPrimitive) {
    constexpr int factor = 3;
    constexpr std::uint32_t pattern = 0x2C9D;
    std::vector<QPoint> const path = {{5, 5}, {50, 5}, {50, 40}, {20, 40}, {20, 55}, {9, 55}};
    struct Case {
        Token kind;
        std::vector<std::vector<int>> chains; ///< numbers of points, in the order in which the pattern goes along them
    };
    agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
    agl->LineStipple(factor, pattern);
    agl->Enable(AGL_LINE_STIPPLE);
    for (Case const& test : {Case{AGL_LINES, {{0, 1}, {2, 3}, {4, 5}}}, Case{AGL_LINE_STRIP, {{0, 1, 2, 3, 4, 5}}},
             Case{AGL_LINE_LOOP, {{0, 1, 2, 3, 4, 5, 0}}}, Case{AGL_POLYGON, {{0, 1, 2, 3, 4, 5, 0}}}}) {
        std::map<std::pair<int, int>, bool> expected;
        for (std::vector<int> const& chain : test.chains) {
            int count = 0;
            for (std::size_t i = 1; i < chain.size(); ++i) {
                QPoint const from = path[std::size_t(chain[i - 1])];
                QPoint const along = path[std::size_t(chain[i])] - from;
                int const size = std::max(std::abs(along.x()), std::abs(along.y()));
                for (int step = 0; along.x() * along.y() == 0 && step < size; ++step, ++count) {
                    expected[{from.x() + along.x() * step / size, from.y() + along.y() * step / size}] =
                        ((pattern >> (count / factor % 16)) & 1) != 0;
                }
            }
        }
        VertexData data;
        Indices indices;
        for (QPoint const& point : path) {
            data.positions.emplace_back(float(point.x()) + 0.5F, float(point.y()) + 0.5F, 0.0F);
            indices.push_back(std::uint32_t(indices.size()));
        }
        data.colors.assign(path.size(), Color4f(1, 1, 1));
        auto const shape = MakeShape(*agl, test.kind, data, indices);
        for (auto const& [width, isBuffer] : {std::pair(1, false), {1, true}, {3, true}}) {
            Reset(*agl);
            agl->LineWidth(float(width));
            agl->Color(isBuffer ? QColor(Qt::blue) : QColor(Qt::white));
            if (isBuffer) {
                agl->Draw(shape);
            } else {
                DrawImmediate(*agl, test.kind, {data.positions.begin(), data.positions.end()});
            }
            QImage const picture = Picture();
            int wrong = 0;
            int shown = 0;
            for (auto const& [at, isShown] : expected) {
                // Wide lines cover each other's ends.
                bool const isEnd =
                    std::any_of(path.begin(), path.end(), [&, x = at.first, y = at.second](QPoint const& p) {
                        return (p - QPoint(x, y)).manhattanLength() < 4;
                    });
                bool const isDrawn = At(picture, at.first, at.second) == QColor(Qt::white);
                wrong += (width == 1 || !isEnd) && isDrawn != isShown ? 1 : 0;
                shown += isShown ? 1 : 0;
            }
            bool const isOpen = test.kind == AGL_LINES || test.kind == AGL_LINE_STRIP;
            EXPECT_TRUE(width > 1 || !isOpen || CountDrawn(picture) == shown) << "something beside the lines";
            EXPECT_EQ(wrong, 0) << "kind " << test.kind << ", width " << width << ", buffer " << isBuffer;
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

// Random combiners of up to four units, computed here once more.
TEST_P(OpenGlDraw, combinersComputeTheirFormulas) {
    using Unit = Types::TextureUnit;
    using Function = Unit::CombineFunction;
    std::mt19937 engine(11);
    auto const pick = [&](auto const& p_choices) { return p_choices[engine() % p_choices.size()]; };
    auto const color = [&] {
        std::array<float, 4> c{};
        std::generate(c.begin(), c.end(), [&] { return float(engine() % 256) / 255; });
        return Color4f(c[0], c[1], c[2], c[3]);
    };
    std::array const functions = {Function::Replace, Function::Modulate, Function::Add, Function::AddSigned,
        Function::Interpolate, Function::Subtract, Function::Dot3Rgb, Function::Dot3Rgba};
    for (int run = 0; run < 30; ++run) {
        PushAttribScope const saved(*agl, AGL_ALL_ATTRIB_BITS);
        std::array<Unit, 4> units;
        std::array<Color4f, 4> texels;
        std::array<std::shared_ptr<Texture const>, 4> textures;
        auto const randomise = [&](Unit::Combiner& p_combiner, bool p_isRgb) {
            p_combiner.function = p_isRgb ? pick(functions) : functions[engine() % 6];
            p_combiner.scale = float(1 << (engine() % 3));
            for (std::size_t i = 0; i < 3; ++i) {
                p_combiner.sources[i] = Unit::Source(pick(std::array{
                    AGL_TEXTURE, AGL_CONSTANT, AGL_PRIMARY_COLOR, AGL_PREVIOUS, AGL_TEXTURE0, AGL_TEXTURE2}));
                p_combiner.operands[i] = Unit::Operand(AGL_SRC_ALPHA + engine() % 2 - (p_isRgb ? engine() % 2 * 2 : 0));
            }
        };
        for (std::size_t i = 0; i < 4; ++i) {
            texels[i] = color();
            QImage image(1, 1, QImage::Format_RGBA8888);
            image.fill(texels[i].ToQColor());
            textures[i] = std::make_shared<Texture const>(image);
            units[i].enabled = true;
            units[i].environment = Unit::Environment::Combine;
            units[i].environmentColor = color();
            randomise(units[i].combineRgb, true);
            randomise(units[i].combineAlpha, false);
            agl->Apply(AGL_TEXTURE0 + Token(i), units[i], textures[i]);
        }
        Color4f const primary = color();
        Reset(*agl);
        agl->Color(primary);
        Rectangle(0, 0, 64, 64);
        auto const at = [](Color4f const& p, int i) {
            return i == 0 ? p.red : i == 1 ? p.green : i == 2 ? p.blue : p.alpha;
        };
        Color4f previous = primary;
        for (std::size_t i = 0; i < 4; ++i) {
            auto const argument = [&](Unit::Combiner const& p_combiner, std::size_t p_number, int p_channel) {
                Token const source = Token(p_combiner.sources[p_number]);
                Token const operand = Token(p_combiner.operands[p_number]);
                Color4f const& c = source == AGL_CONSTANT ? units[i].environmentColor
                    : source == AGL_PRIMARY_COLOR         ? primary
                    : source == AGL_PREVIOUS              ? previous
                                                          : texels[source == AGL_TEXTURE ? i : source - AGL_TEXTURE0];
                float const value = at(c, operand >= AGL_SRC_ALPHA ? 3 : p_channel);
                return operand % 2 != 0 ? 1 - value : value;
            };
            auto const combine = [&](Unit::Combiner const& p_combiner, int p_channel) {
                auto const a = [&](std::size_t p_number) { return argument(p_combiner, p_number, p_channel); };
                float dot = 0;
                for (int channel = 0; channel < 3; ++channel) {
                    dot += 4 * (argument(p_combiner, 0, channel) - 0.5F) * (argument(p_combiner, 1, channel) - 0.5F);
                }
                std::array const results = {a(0), a(0) * a(1), a(0) + a(1), a(0) + a(1) - 0.5F,
                    a(0) * a(2) + a(1) * (1 - a(2)), a(0) - a(1), dot, dot};
                return results[std::size_t(
                    std::find(functions.begin(), functions.end(), p_combiner.function) - functions.begin())];
            };
            auto const scaled = [](float p_value, float p_scale) { return std::clamp(p_value * p_scale, 0.0F, 1.0F); };
            Unit::Combiner const& rgb = units[i].combineRgb;
            float const alpha = combine(rgb.function == Function::Dot3Rgba ? rgb : units[i].combineAlpha, 3);
            previous = Color4f(scaled(combine(rgb, 0), rgb.scale), scaled(combine(rgb, 1), rgb.scale),
                scaled(combine(rgb, 2), rgb.scale), scaled(alpha, units[i].combineAlpha.scale));
        }
        QColor const drawn = Middle();
        EXPECT_TRUE(IsNear(drawn, previous.ToQColor(), 3)) << "run " << run;
        EXPECT_NEAR(drawn.alphaF(), previous.alpha, 0.012) << "run " << run;
    }
}

TEST_P(OpenGlDraw, aUnitMayReadItsTextureInAWayOfItsOwn) {
    QImage image(64, 64, QImage::Format_RGBA8888);
    for (int i = 0; i < 64 * 64; ++i) {
        image.setPixelColor(i % 64, i / 64, (i + i / 64) % 2 != 0 ? QColor(Qt::white) : QColor(Qt::black));
    }
    auto const texture = std::make_shared<Texture const>(image, TextureSampling{AGL_NEAREST, AGL_NEAREST});
    agl->BindTexture(texture);
    agl->Enable(AGL_TEXTURE_2D);
    auto const draw = [&](double p_s) {
        Reset(*agl);
        agl->TexCoord(p_s, 0.5);
        Rectangle(0, 0, 64, 64);
        return Middle();
    };
    QColor const own = draw(0.5);
    EXPECT_TRUE(own == QColor(Qt::white) || own == QColor(Qt::black));
    agl->TexSampling(TextureSampling{
        AGL_LINEAR_MIPMAP_LINEAR, AGL_LINEAR, AGL_CLAMP_TO_BORDER, AGL_REPEAT, Color4f(1, 0, 0), 20, 1});
    EXPECT_TRUE(IsNear(draw(0.5), Grey(0.5), 4)) << "the smallest image";
    EXPECT_EQ(draw(3), QColor(255, 0, 0)) << "beyond the border";
    agl->TexSampling(std::nullopt);
    EXPECT_EQ(draw(0.5), own);
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
