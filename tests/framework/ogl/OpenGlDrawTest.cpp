#include "tests/framework/ogl/GlTest.h"

#include "framework/ogl/Bind.h"
#include "framework/ogl/PushAttribScope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using Types::Color4f;

class OpenGlDraw : public GlTest {
public:
    /// The colour of a lit vertex with a normal towards the viewer.
    QColor LitPoint(Agl::Vector3 const& p_normal) {
        agl->PointSize(5);
        agl->Normal(p_normal);
        Point(32, 32);
        return At(Picture(), 32, 32);
    }
};

TEST_P(OpenGlDraw, kindsFillWhatTheyName) {
    struct Case {
        Token kind;
        std::vector<std::pair<int, int>> vertices;
        int pixels;
    };
    std::vector<Case> const cases = {
        {AGL_TRIANGLES, {{10, 10}, {20, 10}, {20, 20}, {10, 10}, {20, 20}, {10, 20}}, 100},
        {AGL_TRIANGLE_STRIP, {{10, 10}, {20, 10}, {10, 20}, {20, 20}, {10, 30}, {20, 30}}, 200},
        {AGL_TRIANGLE_FAN, {{10, 10}, {20, 10}, {20, 20}, {10, 20}}, 100},
        {AGL_QUADS, {{10, 10}, {20, 10}, {20, 20}, {10, 20}, {30, 30}, {32, 30}, {32, 32}, {30, 32}}, 104},
        {AGL_QUAD_STRIP, {{10, 10}, {10, 20}, {20, 10}, {20, 20}, {40, 10}, {40, 20}}, 300},
        {AGL_POLYGON, {{10, 10}, {20, 10}, {25, 15}, {20, 20}, {10, 20}}, 125},
        {AGL_POINTS, {{10, 10}, {20, 20}}, 2},
    };
    for (Case const& test : cases) {
        Reset(*agl);
        agl->Begin(test.kind);
        for (auto const& [x, y] : test.vertices) {
            test.kind == AGL_POINTS ? agl->Vertex(x + 0.5, y + 0.5) : agl->Vertex(x, y);
        }
        agl->End();
        EXPECT_NEAR(CountDrawn(Picture()), test.pixels, 0.05 * test.pixels) << "kind " << test.kind;
    }
}

TEST_P(OpenGlDraw, readPixelsHasItsTopRowFirst) {
    agl->Color(1, 0, 0);
    Rectangle(0, 56, 8, 64);
    EXPECT_EQ(Picture().pixelColor(2, 2), QColor(255, 0, 0));
    EXPECT_EQ(agl->ReadPixels(4, 50, 8, 10).pixelColor(0, 0), QColor(255, 0, 0));
    EXPECT_EQ(target->Read().pixelColor(2, 2), QColor(255, 0, 0));
    EXPECT_EQ(target->Read().pixelColor(2, 60), QColor(0, 0, 0));
}

TEST_P(OpenGlDraw, orderIsKept) {
    auto const square = MakeSquare(*agl);
    auto const cube = MakeCube(*agl);
    for (int i = 0; i < 30; ++i) {
        agl->PushMatrix();
        agl->Translate(10 + i, 32, 0);
        agl->Scale(8, 20, 0.1);
        agl->Color(QColor(8 * i, 255 - 8 * i, 0));
        if (i % 3 == 2) {
            agl->Begin(AGL_QUADS);
            for (auto const& [x, y] : {std::pair(-0.5, -0.5), {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}}) {
                agl->Vertex(x, y);
            }
            agl->End();
        } else {
            agl->Draw(i % 3 == 0 ? square : cube);
        }
        agl->PopMatrix();
    }
    QImage const picture = Picture();
    for (int i = 0; i < 29; ++i) {
        EXPECT_TRUE(IsNear(At(picture, 6 + i, 32), QColor(8 * i, 255 - 8 * i, 0))) << i;
    }
}

// What is merged looks exactly like what is sent one by one.
TEST_P(OpenGlDraw, mergingChangesNoPixel) {
    auto const scene = [this](bool p_flush) {
        Reset(*agl);
        std::mt19937 random(5);
        std::uniform_real_distribution<double> number(0, 1);
        std::vector<std::shared_ptr<PrimitiveBuffer const>> const shapes = {MakeCube(*agl), MakeSquare(*agl)};
        agl->Enable(AGL_DEPTH_TEST);
        for (int i = 0; i < 300; ++i) {
            PushAttribScope const saved(*agl, AGL_ALL_ATTRIB_BITS);
            if (number(random) < 0.2) {
                agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
            }
            if (number(random) < 0.2) {
                agl->Enable(AGL_BLEND);
                agl->BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
            }
            agl->LoadIdentity();
            agl->Translate(64 * number(random), 64 * number(random), number(random) - 0.5);
            agl->Scale(6, 6, 0.1);
            agl->Rotate(360 * number(random), {number(random), 1, number(random)});
            agl->Color(float(number(random)), float(number(random)), float(number(random)), 0.5F);
            agl->Draw(shapes[static_cast<std::size_t>(number(random) < 0.3)]);
            if (p_flush) {
                agl->Flush();
            }
        }
        agl->Disable(AGL_DEPTH_TEST);
        return Picture();
    };
    QImage const merged = scene(false);
    EXPECT_GT(CountDrawn(merged), 1000);
    EXPECT_EQ(merged, scene(true));
}

TEST_P(OpenGlDraw, nestedScissorDrawsOnlyWhereBothAllow) {
    agl->Enable(AGL_SCISSOR_TEST);
    agl->PushScissor();
    agl->Scissor({8, 8, 32, 32});
    agl->PushScissor();
    agl->Scissor({20, 20, 40, 40});
    Rectangle(0, 0, 64, 64);
    agl->PopScissor();
    agl->PopScissor();
    agl->Disable(AGL_SCISSOR_TEST);
    QImage const picture = Picture();
    EXPECT_EQ(CountDrawn(picture), 20 * 20);
    EXPECT_EQ(At(picture, 20, 39), QColor(255, 255, 255));
}

TEST_P(OpenGlDraw, clearsObeyScissorAndMask) {
    agl->Enable(AGL_SCISSOR_TEST);
    agl->Scissor({0, 0, 10, 10});
    agl->ColorMask(true, false, true, true);
    agl->ClearColor(QColor(255, 255, 255));
    agl->Clear(AGL_COLOR_BUFFER_BIT);
    agl->Disable(AGL_SCISSOR_TEST);
    agl->ColorMask(true, true, true, true);
    QImage const picture = Picture();
    EXPECT_EQ(CountDrawn(picture), 100);
    EXPECT_EQ(At(picture, 5, 5), QColor(255, 0, 255));
}

TEST_P(OpenGlDraw, stippleShowsItsPatternByWindowCoordinates) {
    std::array<std::uint32_t, 32> rows{};
    rows[3] = 0x80000001;
    rows[4] = 0x40000000;
    agl->PolygonStipple(rows);
    agl->Enable(AGL_POLYGON_STIPPLE);
    Rectangle(0, 0, 64, 64);
    Line(0, 60.5, 64, 60.5);
    agl->Disable(AGL_POLYGON_STIPPLE);
    QImage const picture = Picture();
    EXPECT_EQ(CountDrawn(picture), 2 * 2 * 3 + 64) << "lines are not stippled";
    for (auto const& [x, y] : {std::pair(0, 3), {31, 3}, {32, 3}, {63, 35}, {1, 4}, {33, 36}}) {
        EXPECT_EQ(At(picture, x, y), QColor(255, 255, 255)) << x << ", " << y;
    }
}

TEST_P(OpenGlDraw, blendingMixesInOrder) {
    agl->Color(1, 0, 0);
    Rectangle(0, 0, 64, 64);
    agl->Enable(AGL_BLEND);
    agl->BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
    agl->Color(0, 1, 0, 0.25F);
    Rectangle(0, 0, 64, 64);
    agl->Color(0, 0, 1, 0.5F);
    Rectangle(0, 0, 32, 64);
    agl->Disable(AGL_BLEND);
    QImage const picture = Picture();
    EXPECT_TRUE(IsNear(At(picture, 50, 30), QColor(191, 64, 0)));
    EXPECT_TRUE(IsNear(At(picture, 10, 30), QColor(96, 32, 128)));
}

TEST_P(OpenGlDraw, depthAndStencilDecide) {
    agl->Enable(AGL_DEPTH_TEST);
    agl->Color(1, 0, 0);
    Rectangle(0, 0, 64, 64, 0.5);
    agl->Color(0, 1, 0);
    Rectangle(0, 0, 20, 64, 0.2);
    agl->DepthFunc(AGL_GREATER);
    agl->DepthMask(false);
    agl->Color(0, 0, 1);
    Rectangle(20, 0, 40, 64, 0.2);
    agl->DepthFunc(AGL_LESS);
    agl->DepthMask(true);
    agl->DepthRange(0, 0.1);
    agl->Color(1, 1, 0);
    Rectangle(40, 0, 50, 64, -0.9);
    agl->DepthRange(0, 1);
    agl->Disable(AGL_DEPTH_TEST);

    agl->Enable(AGL_STENCIL_TEST);
    agl->StencilFunc(AGL_ALWAYS, 5, 0xFF);
    agl->StencilOp(AGL_KEEP, AGL_KEEP, AGL_REPLACE);
    agl->ColorMask(false, false, false, false);
    Rectangle(0, 0, 64, 10);
    agl->ColorMask(true, true, true, true);
    agl->StencilFunc(AGL_EQUAL, 5, 0xFF);
    agl->Color(1, 1, 1);
    Rectangle(0, 5, 64, 20);
    agl->Disable(AGL_STENCIL_TEST);

    QImage const picture = Picture();
    EXPECT_EQ(At(picture, 10, 30), QColor(255, 0, 0)) << "behind";
    EXPECT_EQ(At(picture, 30, 30), QColor(0, 0, 255));
    EXPECT_EQ(At(picture, 45, 30), QColor(255, 255, 0)) << "in the front part of the depth range";
    EXPECT_EQ(At(picture, 60, 7), QColor(255, 255, 255));
    EXPECT_EQ(At(picture, 60, 15), QColor(255, 0, 0)) << "outside of the stencil";
    EXPECT_EQ(agl->GetMaxStencilBits(), 8U);
}

// Each way to draw is cut at x = 32 by a plane that was given in a shifted frame.
TEST_P(OpenGlDraw, clipPlanesCutEveryPipeline) {
    agl->PushMatrix();
    agl->Translate(30, 0, 0);
    agl->ClipPlane(AGL_CLIP_PLANE0 + 5, {-1, 0, 0, 2});
    agl->PopMatrix();
    agl->Enable(AGL_CLIP_PLANE0 + 5);
    auto const square = MakeSquare(*agl);
    auto const drawSquare = [&] {
        agl->PushMatrix();
        agl->Translate(32, 32, 0);
        agl->Scale(20, 20, 1);
        agl->Draw(square);
        agl->PopMatrix();
    };
    std::vector<std::pair<char const*, std::function<void()>>> const ways = {
        {"buffer", drawSquare},
        {"immediate", [&] { Rectangle(22, 22, 42, 42); }},
        {"line", [&] { Line(10, 30.5, 50, 30.5); }},
        {"wide line",
            [&] {
                agl->LineWidth(5);
                Line(10, 30.5, 50, 30.5);
            }},
        {"outline",
            [&] {
                agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
                drawSquare();
            }},
        {"corners",
            [&] {
                agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_POINT);
                agl->PointSize(3);
                drawSquare();
            }},
    };
    for (auto const& [name, draw] : ways) {
        agl->PushAttrib(AGL_LINE_BIT | AGL_POLYGON_BIT | AGL_POINT_BIT);
        Reset(*agl);
        draw();
        agl->PopAttrib();
        QImage const picture = Picture();
        int left = 0;
        int right = 0;
        for (int x = 0; x < Size; ++x) {
            for (int y = 0; y < Size; ++y) {
                (x < 32 ? left : right) += At(picture, x, y).red() != 0 ? 1 : 0;
            }
        }
        EXPECT_GT(left, 8) << name;
        EXPECT_EQ(right, 0) << name;
    }
}

TEST_P(OpenGlDraw, wideLinesAreAsWideAsTheySay) {
    for (float const width : {1.0F, 2.0F, 3.0F, 7.0F, 20.0F}) {
        Reset(*agl);
        agl->LineWidth(width);
        double const center = 32 + (int(width) % 2 != 0 ? 0.5 : 0.0);
        Line(10, center, 50, center);
        EXPECT_EQ(CountDrawn(Picture()), 40 * int(width)) << "flat " << width;
        Reset(*agl);
        Line(center, 10, center, 50);
        EXPECT_EQ(CountDrawn(Picture()), 40 * int(width)) << "upright " << width;
    }
    Reset(*agl);
    agl->LineWidth(5);
    Line(10, 10.3, 50, 40.3);
    EXPECT_EQ(CountDrawn(Picture()), 40 * 5) << "wide in y where the line is flatter than steep";
}

TEST_P(OpenGlDraw, smoothLinesFadeAtTheirSides) {
    agl->Enable(AGL_LINE_SMOOTH);
    agl->Enable(AGL_BLEND);
    agl->BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
    agl->LineWidth(4);
    Line(10, 32.5, 50, 32.5);
    agl->Disable(AGL_BLEND);
    agl->Disable(AGL_LINE_SMOOTH);
    QImage const picture = Picture();
    EXPECT_EQ(At(picture, 30, 32), QColor(255, 255, 255));
    EXPECT_TRUE(IsNear(At(picture, 30, 34), QColor(128, 128, 128), 8));
    EXPECT_EQ(At(picture, 30, 36), QColor(0, 0, 0));
}

// A line from before the eye to behind it ends at the near plane, wide or not.
TEST_P(OpenGlDraw, linesThatPassTheEyeAreCut) {
    for (float const width : {1.0F, 5.0F}) {
        Reset(*agl);
        agl->MatrixMode(AGL_PROJECTION);
        agl->LoadMatrix(Types::Matrix4::Perspective(90, 1, 1, 100));
        agl->MatrixMode(AGL_MODELVIEW);
        agl->LineWidth(width);
        agl->Begin(AGL_LINES);
        agl->Vertex(0, 0, -10);
        agl->Vertex(20, 0.4, 10);
        agl->End();
        QImage const picture = Picture();
        EXPECT_NEAR(CountDrawn(picture), 32 * int(width), 3 * int(width)) << width;
        EXPECT_EQ(At(picture, 10, 32), QColor(0, 0, 0));
    }
}

TEST_P(OpenGlDraw, pointsAreSquareOrRound) {
    agl->PointSize(10);
    Point(32, 32);
    EXPECT_EQ(CountDrawn(Picture()), 100);
    Reset(*agl);
    agl->Enable(AGL_POINT_SMOOTH);
    agl->Enable(AGL_BLEND);
    agl->BlendFunc(AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA);
    Point(32, 32);
    agl->Disable(AGL_BLEND);
    agl->Disable(AGL_POINT_SMOOTH);
    QImage const picture = Picture();
    double covered = 0;
    for (int x = 0; x < Size; ++x) {
        for (int y = 0; y < Size; ++y) {
            covered += At(picture, x, y).redF();
        }
    }
    EXPECT_NEAR(covered, 3.14159 * 25, 2);
    EXPECT_EQ(At(picture, 27, 27), QColor(0, 0, 0)) << "the corner of the square";
}

// Quads in line mode are their edges and nothing else: the same picture as lines between the corners.
TEST_P(OpenGlDraw, outlinesHaveNoDiagonals) {
    Types::Matrix4 const camera = Types::Matrix4::Rotation(25, {1, 0, 0}) * Types::Matrix4::Rotation(30, {0, 1, 0});
    auto const setUp = [&] {
        Reset(*agl);
        agl->MatrixMode(AGL_PROJECTION);
        agl->LoadIdentity();
        agl->Perspective({0, 0, Size, Size}, Agl::Box({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}), camera);
        agl->MatrixMode(AGL_MODELVIEW);
    };
    for (float const width : {1.0F, 3.0F}) {
        agl->LineWidth(width);
        setUp();
        agl->Begin(AGL_LINES);
        for (unsigned corner = 0; corner < 8; ++corner) {
            for (unsigned axis = 1; axis < 8; axis *= 2) {
                if ((corner & axis) == 0) {
                    for (unsigned end : {corner, corner | axis}) {
                        agl->Vertex((end & 1U ? 0.5 : -0.5), (end & 2U ? 0.5 : -0.5), (end & 4U ? 0.5 : -0.5));
                    }
                }
            }
        }
        agl->End();
        QImage const edges = Picture();
        setUp();
        agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
        agl->Draw(MakeCube(*agl));
        agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
        QImage const outline = Picture();
        int differing = 0;
        for (int y = 0; y < Size; ++y) {
            for (int x = 0; x < Size; ++x) {
                differing += edges.pixel(x, y) != outline.pixel(x, y) ? 1 : 0;
            }
        }
        EXPECT_GT(CountDrawn(edges), 200);
        EXPECT_LT(differing, 12) << "lines may differ in single pixels where they tie";

        setUp();
        agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
        agl->Enable(AGL_CULL_FACE);
        agl->Draw(MakeCube(*agl));
        agl->Disable(AGL_CULL_FACE);
        agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
        EXPECT_LT(CountDrawn(Picture()), CountDrawn(outline)) << "the three edges behind are hidden";
    }
}

TEST_P(OpenGlDraw, polygonModesOfFrontsAndBacksDiffer) {
    agl->PolygonMode(AGL_FRONT, AGL_POINT);
    agl->PolygonMode(AGL_BACK, AGL_FILL);
    agl->PointSize(2);
    Rectangle(10, 10, 30, 30);
    EXPECT_EQ(CountDrawn(Picture()), 16);
    Reset(*agl);
    agl->FrontFace(AGL_CW);
    Rectangle(10, 10, 30, 30);
    EXPECT_EQ(CountDrawn(Picture()), 400);
    agl->FrontFace(AGL_CCW);
    agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
}

TEST_P(OpenGlDraw, flatShadingTakesTheLastVertexButThePolygonsFirst) {
    std::vector<std::pair<Token, QColor>> const cases = {
        {AGL_QUADS, QColor(0, 0, 255)}, {AGL_POLYGON, QColor(255, 0, 0)}, {AGL_TRIANGLE_FAN, QColor(0, 0, 255)}};
    agl->ShadeModel(AGL_FLAT);
    for (Token const mode : {AGL_FILL, AGL_LINE}) {
        agl->PolygonMode(AGL_FRONT_AND_BACK, mode);
        for (auto const& [kind, expected] : cases) {
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
            EXPECT_EQ(At(Picture(), 10, 20), expected) << kind << " in mode " << mode;
        }
    }
    agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
    agl->ShadeModel(AGL_SMOOTH);
}

// The light equation, term by term, at a single vertex.
TEST_P(OpenGlDraw, lightsAddUpAsTheEquationSays) {
    struct Case {
        char const* name;
        std::function<void(Agl&)> setUp;
        Agl::Vector3 normal;
        double expected;
    };
    double const s = std::sqrt(0.5);
    std::vector<Case> const cases = {
        {"directional", [](Agl&) {}, {0, 0, 1}, 0.04 + 0.8},
        {"slanted", [](Agl&) {}, {s, 0, s}, 0.04 + 0.8 * s},
        {"turned away", [](Agl&) {}, {0, 0, -1}, 0.04},
        {"normal of length 2", [](Agl&) {}, {0, 0, 0.5}, 0.04 + 0.4},
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
                p.Light(AGL_LIGHT0, AGL_POSITION, Agl::Vector4(32, 32, 4, 1));
                p.Light(AGL_LIGHT0, AGL_LINEAR_ATTENUATION, 0.125F);
                p.Light(AGL_LIGHT0, AGL_QUADRATIC_ATTENUATION, 0.03125F);
            },
            {0, 0, 1}, 0.04 + 0.8 / 2},
        {"spot beside",
            [](Agl& p) {
                p.Light(AGL_LIGHT0, AGL_POSITION, Agl::Vector4(32 + 4, 32, 4, 1));
                p.Light(AGL_LIGHT0, AGL_SPOT_CUTOFF, 40.0F);
            },
            {0, 0, 1}, 0.04},
        {"spot that fades",
            [=](Agl& p) {
                p.Light(AGL_LIGHT0, AGL_POSITION, Agl::Vector4(32 + 4, 32, 4, 1));
                p.Light(AGL_LIGHT0, AGL_SPOT_CUTOFF, 50.0F);
                p.Light(AGL_LIGHT0, AGL_SPOT_EXPONENT, 2.0F);
            },
            {0, 0, 1}, 0.04 + 0.8 * s * 0.5},
        {"specular",
            [](Agl& p) {
                p.Material(AGL_FRONT, AGL_DIFFUSE, Color4f(0, 0, 0));
                p.Material(AGL_FRONT, AGL_SPECULAR, Color4f(0.5F, 0.5F, 0.5F));
                p.Material(AGL_FRONT, AGL_SHININESS, 4.0F);
            },
            {s, 0, s}, 0.04 + 0.5 * 0.25},
        {"second light",
            [](Agl& p) {
                p.Light(AGL_LIGHT0, AGL_DIFFUSE, Color4f(0.25F, 0.25F, 0.25F));
                p.Light(AGL_LIGHT0 + 7, AGL_DIFFUSE, Color4f(0.5F, 0.5F, 0.5F));
                p.Enable(AGL_LIGHT0 + 7);
            },
            {0, 0, 1}, 0.04 + 0.8 * 0.75},
        {"colour material",
            [](Agl& p) {
                p.Enable(AGL_COLOR_MATERIAL);
                p.Color(0.5F, 0.5F, 0.5F);
            },
            {0, 0, 1}, 0.5 * 0.2 + 0.5},
    };
    for (Case const& test : cases) {
        Reset(*agl);
        PushAttribScope const saved(*agl, AGL_ALL_ATTRIB_BITS);
        agl->Enable(AGL_LIGHTING);
        agl->Enable(AGL_LIGHT0);
        test.setUp(*agl);
        int const value = int(std::lround(255 * test.expected));
        EXPECT_TRUE(IsNear(LitPoint(test.normal), QColor(value, value, value))) << test.name;
    }
}

TEST_P(OpenGlDraw, twoSidedLightingShowsTheBackMaterialOnBacks) {
    agl->Enable(AGL_LIGHTING);
    agl->Enable(AGL_LIGHT0);
    agl->LightModel(AGL_LIGHT_MODEL_TWO_SIDE, true);
    agl->Material(AGL_BACK, AGL_DIFFUSE, Color4f(1, 0, 0));
    agl->Material(AGL_BACK, AGL_AMBIENT, Color4f(0, 0, 0));
    agl->Normal({0, 0, -1});
    for (Token const mode : {AGL_FILL, AGL_LINE}) {
        agl->PolygonMode(AGL_FRONT_AND_BACK, mode);
        Reset(*agl);
        agl->Begin(AGL_QUADS);
        for (auto const& [x, y] : {std::pair(10.5, 10.5), {10.5, 30.5}, {30.5, 30.5}, {30.5, 10.5}}) {
            agl->Vertex(x, y);
        }
        agl->End();
        EXPECT_TRUE(IsNear(At(Picture(), 10, 20), QColor(255, 0, 0))) << mode;
    }
    agl->PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
    agl->Disable(AGL_LIGHTING);
}

// Normals follow any affine matrix: the drawn face has the brightness of its true slope.
TEST_P(OpenGlDraw, facesAreLitRightUnderMirrorShearAndUnevenScale) {
    Types::Matrix4 shear;
    shear.Set(2, 0, 0.05);
    std::vector<std::pair<char const*, Types::Matrix4>> const matrices = {
        {"plain", Types::Matrix4::Scaling(20)},
        {"mirror", Types::Matrix4::Scaling({-20, 20, 20})},
        {"mirror in depth", Types::Matrix4::Scaling({20, 20, -20})},
        {"uneven", Types::Matrix4::Scaling({20, 20, 1})},
        {"shear", shear * Types::Matrix4::Scaling({15, 15, 0.3})},
        {"turned, uneven, mirrored", Types::Matrix4::Scaling({20, -20, 0.4}) * Types::Matrix4::Rotation(30, {0, 1, 0})},
    };
    auto const square = MakeSquare(*agl);
    agl->Enable(AGL_LIGHTING);
    agl->Enable(AGL_LIGHT0);
    agl->Enable(AGL_NORMALIZE);
    Agl::Vector3 const toLight = Types::Normalized(Agl::Vector3(0.6, 0.2, 1));
    agl->Light(AGL_LIGHT0, AGL_POSITION, Agl::Vector4(toLight, 0));
    for (auto const& [name, matrix] : matrices) {
        Agl::Vector3 const u = (matrix * Agl::Vector4(1, 0, 0, 0)).XYZ();
        Agl::Vector3 const v = (matrix * Agl::Vector4(0, 1, 0, 0)).XYZ();
        Agl::Vector3 normal = Types::Normalized(Types::Cross(u, v));
        normal = matrix.Determinant() < 0 ? -normal : normal;
        double const diffuse = std::max(0.0, Types::Dot(normal, toLight));
        int const value = int(std::lround(255 * (0.04 + 0.8 * diffuse)));
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
            EXPECT_TRUE(IsNear(At(Picture(), 32, 32), QColor(value, value, value))) << name << isBuffer;
        }
    }
    agl->Disable(AGL_LIGHTING);
}

TEST_P(OpenGlDraw, genericShaderLightsWithItsHeadlightOrTheLightsInForce) {
    auto const square = MakeSquare(*agl);
    auto const draw = [&](double p_tilt, Types::Matrix4 const& p_before) {
        Reset(*agl);
        agl->Translate(32, 32, 0);
        agl->MultMatrix(p_before);
        agl->Rotate(p_tilt, {0, 1, 0});
        agl->Scale(20, 20, 0.01);
        agl->Color(1, 0.5F, 0);
        agl->Draw(square);
        return At(Picture(), 32, 32);
    };
    Types::Matrix4 const flat = Types::Matrix4::Scaling({1, 1, 0.01});
    Bind<Shader> const shader(*agl, agl->GenGenericShader());
    EXPECT_TRUE(IsNear(draw(0, {}), QColor(255, 128, 0)));
    EXPECT_TRUE(IsNear(draw(180, flat), QColor(255, 128, 0))) << "backs are lit too";
    EXPECT_TRUE(IsNear(draw(0, Types::Matrix4::Scaling({-1, 1, 1})), QColor(255, 128, 0))) << "mirrored";
    agl->Enable(AGL_LIGHTING);
    EXPECT_TRUE(IsNear(draw(0, {}), QColor(255, 128, 0))) << "no light is on";
    agl->Enable(AGL_LIGHT0);
    agl->LoadIdentity();
    agl->Light(AGL_LIGHT0, AGL_POSITION, Agl::Vector4(1, 0, 1, 0));
    EXPECT_TRUE(IsNear(draw(0, {}), QColor::fromRgbF(0.907F, 0.4535F, 0)));
    EXPECT_TRUE(IsNear(draw(0, Types::Matrix4::Scaling({-1, 1, 1})), QColor::fromRgbF(0.907F, 0.4535F, 0)));
    agl->Disable(AGL_LIGHT0);
    agl->Disable(AGL_LIGHTING);

    VertexData data;
    data.positions = {{-0.5F, -0.5F, 0}, {0.5F, -0.5F, 0}, {0, 0.5F, 0}};
    data.colors.assign(3, Color4f(0.5F, 0.5F, 1));
    auto const colored = MakeShape(*agl, AGL_TRIANGLES, data, {0, 1, 2});
    agl->Draw(colored);
    EXPECT_TRUE(IsNear(At(Picture(), 32, 32), QColor(255, 128, 0))) << "colours of vertices are off";
    Bind<Shader> const both(
        *agl, agl->GenGenericShader(ShaderSource::Generic(), GenericShader::State(std::bitset<2>(3))));
    agl->Draw(colored);
    EXPECT_TRUE(IsNear(At(Picture(), 32, 32), QColor(128, 64, 0)));
}

TEST_P(OpenGlDraw, textureEnvironmentsCombineAsTheySay) {
    QImage image(2, 2, QImage::Format_RGBA8888);
    image.fill(QColor(255, 128, 0, 128));
    image.setPixelColor(0, 0, QColor(0, 0, 255, 255));
    TextureSampling nearest;
    nearest.magnification = AGL_NEAREST;
    auto const texture = std::make_shared<Texture const>(image, nearest);
    std::vector<std::pair<Token, QColor>> const cases = {
        {AGL_REPLACE, QColor(255, 128, 0)},
        {AGL_MODULATE, QColor(128, 128, 0)},
        {AGL_DECAL, QColor(192, 192, 64)},
        {AGL_BLEND, QColor(0, 255, 128)},
        {AGL_ADD, QColor(255, 255, 128)},
    };
    for (Token const unit : {AGL_TEXTURE0, AGL_TEXTURE1}) {
        agl->ActiveTexture(unit);
        agl->Enable(AGL_TEXTURE_2D);
        agl->BindTexture(texture);
        agl->TexEnv(AGL_TEXTURE_ENV_COLOR, Color4f(0, 1, 0));
        agl->MatrixMode(AGL_TEXTURE);
        agl->LoadIdentity();
        agl->Scale(1.0 / 20, 1.0 / 20, 1);
        agl->MatrixMode(AGL_MODELVIEW);
        for (auto const& [mode, expected] : cases) {
            Reset(*agl);
            agl->TexEnv(AGL_TEXTURE_ENV_MODE, mode);
            agl->Color(0.5F, 1, 0.5F);
            agl->Begin(AGL_QUADS);
            for (auto const& [x, y] : {std::pair(0, 0), {20, 0}, {20, 20}, {0, 20}}) {
                agl->MultiTexCoord(unit, x, y);
                agl->Vertex(10 + x, 10 + y);
            }
            agl->End();
            QImage const picture = Picture();
            EXPECT_TRUE(IsNear(At(picture, 25, 15), expected)) << "mode " << mode;
            if (mode == AGL_REPLACE) {
                EXPECT_EQ(At(picture, 12, 28), QColor(0, 0, 255)) << "the upper left pixel of the image";
            }
        }
        agl->Disable(AGL_TEXTURE_2D);
    }
    agl->ActiveTexture(AGL_TEXTURE0);
}

TEST_P(OpenGlDraw, smoothedTargetsMixPixelsAtEdges) {
    OffscreenTarget smooth(Size, Size, 4);
    if (smooth.Samples() == 0) {
        GTEST_SKIP() << "The device has one sample a pixel only.";
    }
    agl->Flush();
    smooth.Bind();
    Reset(*agl);
    agl->Begin(AGL_TRIANGLES);
    agl->Vertex(5, 5);
    agl->Vertex(60, 20);
    agl->Vertex(20, 60);
    agl->End();
    QImage const picture = Picture();
    EXPECT_EQ(picture, smooth.Read());
    smooth.Release();
    int mixed = 0;
    for (int y = 0; y < Size; ++y) {
        for (int x = 0; x < Size; ++x) {
            int const red = picture.pixelColor(x, y).red();
            mixed += red > 10 && red < 245 ? 1 : 0;
        }
    }
    EXPECT_GT(mixed, 30);
}

INSTANTIATE_TEST_SUITE_P(
    , OpenGlDraw, testing::Values(Context::Profile::Core, Context::Profile::Compatibility), ProfileName);

} // namespace
} // namespace Qor::Chart::Ogl
