#include "tests/framework/ogl/GlTest.h"

#include "framework/ogl/PushAttribScope.h"

#include <map>
#include <random>
#include <set>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using Types::Color4f;
using Types::Matrix4;
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
            if (random() < 0.2)
                Blend();
            agl->LoadIdentity();
            agl->Translate(64 * random(), 64 * random(), random() - 0.5);
            agl->Scale(9, 9, 0.1);
            agl->Rotate(360 * random(), {random(), 1, random()});
            agl->Color(float(random()), float(random()), float(random()), 0.5F);
            random() < 0.2 ? Rectangle(-0.5, -0.5, 0.5, 0.5) : agl->Draw(shapes[engine() % 2]);
            if (p_flush)
                agl->Flush();
        }
        return Picture();
    };
    for (bool const hasDepth : {false, true}) {
        QImage const merged = scene(hasDepth, false);
        EXPECT_GT(CountDrawn(merged), 1000);
        EXPECT_EQ(merged, scene(hasDepth, true));
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
                for (int step = 0; along.x() * along.y() == 0 && step < size; ++step, ++count)
                    expected[{from.x() + along.x() * step / size, from.y() + along.y() * step / size}] =
                        ((pattern >> (count / factor % 16)) & 1) != 0;
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
    for (auto const& [tilt, scaleX] : {std::pair(0, 1), {180, 1}, {0, -1}})
        EXPECT_TRUE(IsNear(draw(tilt, scaleX), QColor(255, 128, 0)))
            << "without colours of vertices, backs are lit too";
    LightUp();
    agl->LoadIdentity();
    agl->Light(AGL_LIGHT0, AGL_POSITION, Vector4(1, 0, 1, 0));
    EXPECT_TRUE(IsNear(draw(0, -1), QColor::fromRgbF(0.907F, 0.4535F, 0)));
    agl->Disable(AGL_LIGHTING);
    auto const withColors = GenericShader::State(std::bitset<2>(3));
    Bind<Shader> const both(*agl, agl->GenGenericShader(ShaderSource::Generic(), withColors));
    EXPECT_TRUE(IsNear(draw(0, 1), QColor(128, 64, 0)));
}

TEST_P(OpenGlDraw, smoothedTargetsMixPixelsAtEdges) {
    OffscreenTarget smooth(Size, Size, 4);
    if (smooth.Samples() == 0)
        GTEST_SKIP() << "The device has one sample a pixel only.";
    agl->Flush();
    smooth.Bind();
    Reset(*agl);
    agl->Rotate(10, {0, 0, 1});
    Rectangle(20, 5, 50, 40);
    QImage const picture = Picture();
    EXPECT_EQ(picture, smooth.Read());
    smooth.Release();
    std::set<QRgb> shades;
    for (int i = 0; i < Size * Size; ++i)
        shades.insert(picture.pixel(i % Size, i / Size));
    EXPECT_GT(shades.size(), 3U) << "black, white and what lies between";
}

INSTANTIATE_TEST_SUITE_P(
    , OpenGlDraw, testing::Values(Context::Profile::Core, Context::Profile::Compatibility), ProfileName);

} // namespace
} // namespace Qor::Chart::Ogl
