#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/AutoNameLoader.h"
#include "framework/ogl/HitDetect.h"
#include "framework/utility/Scoped.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using Records = std::vector<HitRecord>;
using Scope = Utility::Scoped<Agl>;

constexpr std::uint64_t BigName = std::uint64_t(1) << 40;
Types::Viewport<0> const Pane(300, 200, 100, 100);

/// What a pick at a place of the pane finds while p_draw draws. Without a projection of its own the pane shows x and y
/// from -1 to 1, and depths of 0 to 1 are z of -1 to 1.
Records PickAt(RecordedAgl& p_recorded, Types::Pos const& p_position,
    std::function<void(Agl&, HitDetect&)> const& p_draw, Types::Size const& p_tolerance = {1, 1},
    Types::Matrix4 const& p_projection = {}) {
    HitBuffer buffer(16);
    {
        Scope const scope{Utility::Unscoped<Agl>(p_recorded.agl)};
        HitDetect detect(scope, Pane, p_projection, p_position, p_tolerance, buffer);
        p_draw(p_recorded.agl, detect);
    }
    return buffer.Records();
}

void Immediate(Agl& p_agl, Token p_kind, std::vector<Agl::Vector3> const& p_vertices) {
    p_agl.Begin(p_kind);
    for (Agl::Vector3 const& vertex : p_vertices) {
        p_agl.Vertex(vertex);
    }
    p_agl.End();
}

/// A square of side 1 at a depth of 0.5 whose x coordinate is also its z coordinate: nearer on the left.
void Slope(Agl& p_agl) {
    Immediate(p_agl, AGL_QUADS, {{-0.5, -0.5, -0.5}, {0.5, -0.5, 0.5}, {0.5, 0.5, 0.5}, {-0.5, 0.5, -0.5}});
}

TEST(HitDetect, handWorkedPicks) {
    struct Case {
        std::string what;
        Types::Pos position;
        Types::Size tolerance;
        std::function<void(Agl&)> draw;
        double depth; // negative when nothing is hit
    };
    auto const clipped = [](double p_x, double p_offset) {
        return [=](Agl& p_agl) {
            p_agl.ClipPlane(AGL_CLIP_PLANE0 + 3, {p_x, 0, 0, p_offset});
            p_agl.Enable(AGL_CLIP_PLANE0 + 3);
            Slope(p_agl);
        };
    };
    auto const culled = [](Token p_face, Token p_winding) {
        return [=](Agl& p_agl) {
            p_agl.Enable(AGL_CULL_FACE);
            p_agl.CullFace(p_face);
            p_agl.FrontFace(p_winding);
            Slope(p_agl);
        };
    };
    double const nan = std::numeric_limits<double>::quiet_NaN();
    std::vector<Case> const cases = {
        {"nearest corner of the pick area", {50, 50}, {1, 1}, Slope, 0.49},
        {"tolerance widens it", {50, 50}, {10, 1}, Slope, 0.4},
        {"up to the edge of the square", {50, 50}, {40, 1}, Slope, 0.25},
        {"a tolerance below one pixel is one pixel", {50, 50}, {0, -5}, Slope, 0.49},
        {"beside the square", {80, 50}, {4, 4}, Slope, -1},
        {"touches it by its tolerance", {80, 50}, {6, 4}, Slope, 0.74},
        {"line, clipped", {50, 50}, {5, 5},
            [](Agl& p_agl) {
                Immediate(p_agl, AGL_LINES, {{-1, 0, 1}, {1, 0, -1}});
            },
            0.45},
        {"line that passes by", {50, 50}, {5, 5},
            [](Agl& p_agl) {
                Immediate(p_agl, AGL_LINE_STRIP, {{-1, 0.2, 0}, {1, 0.2, 0}});
            },
            -1},
        {"the last line of a loop", {50, 50}, {5, 5},
            [](Agl& p_agl) {
                Immediate(p_agl, AGL_LINE_LOOP, {{0.9, 0, 0.5}, {0, 0.9, 0}, {-0.9, 0, 0.5}});
            },
            0.75},
        {"points, the nearest of two", {25, 75}, {2, 2},
            [](Agl& p_agl) {
                Immediate(p_agl, AGL_POINTS, {{-0.5, 0.5, 0.8}, {-0.51, 0.5, 0.2}, {0, 0, -1}});
            },
            0.6},
        {"an outline is hit inside too", {50, 50}, {1, 1},
            [](Agl& p_agl) {
                p_agl.PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE);
                Slope(p_agl);
            },
            0.49},
        {"clip plane through the pick area", {50, 50}, {10, 1}, clipped(1, 0.05), 0.475},
        {"clip plane takes it all away", {50, 50}, {10, 1}, clipped(-1, -0.2), -1},
        {"front face kept", {50, 50}, {1, 1}, culled(AGL_BACK, AGL_CCW), 0.49},
        {"front face culled", {50, 50}, {1, 1}, culled(AGL_FRONT, AGL_CCW), -1},
        {"back face culled", {50, 50}, {1, 1}, culled(AGL_BACK, AGL_CW), -1},
        {"both culled", {50, 50}, {1, 1}, culled(AGL_FRONT_AND_BACK, AGL_CW), -1},
        {"before the near plane", {50, 50}, {1, 1},
            [](Agl& p_agl) {
                p_agl.Translate(0, 0, -0.9);
                Slope(p_agl);
            },
            0.04},
        {"depth range", {50, 50}, {1, 1},
            [](Agl& p_agl) {
                p_agl.DepthRange(1, 0.5);
                Slope(p_agl);
            },
            0.745},
        {"undefined corner", {50, 50}, {1, 1},
            [nan](Agl& p_agl) {
                Immediate(p_agl, AGL_TRIANGLES, {{-1, -1, 0}, {1, -1, 0}, {0, nan, 0}});
            },
            -1},
        {"unfinished primitive", {50, 50}, {1, 1},
            [](Agl& p_agl) {
                Immediate(p_agl, AGL_POLYGON, {{-1, -1, 0}, {1, 1, 0}});
            },
            -1},
        {"outside the pane", {130, 50}, {20, 20},
            [](Agl& p_agl) {
                Immediate(p_agl, AGL_POINTS, {{1.6, 0, 0}});
            },
            -1},
    };
    for (Case const& test : cases) {
        RecordedAgl recorded;
        Records const records = PickAt(
            recorded, test.position, [&](Agl& p_agl, HitDetect&) { test.draw(p_agl); }, test.tolerance);
        ASSERT_EQ(records.size(), test.depth < 0 ? 0U : 1U) << test.what;
        if (test.depth >= 0) {
            EXPECT_NEAR(records[0].depth, test.depth, 1e-12) << test.what;
            EXPECT_EQ(records[0].name, HitRecord::NameInvalid);
        }
        EXPECT_EQ(recorded.agl.CheckError(), "") << test.what;
    }
}

TEST(HitDetect, everyNameThatIsHitGetsOneRecord) {
    RecordedAgl recorded;
    auto const square = MakeSquare(recorded.agl);
    auto const drawAt = [&](Agl& p_agl, double p_x, double p_z) {
        p_agl.PushMatrix();
        p_agl.Translate(p_x, 0, p_z);
        p_agl.Draw(square);
        p_agl.PopMatrix();
    };
    Records const records = PickAt(recorded, {50, 50}, [&](Agl& p_agl, HitDetect& p_detect) {
        drawAt(p_agl, 0, 0.9);
        AutoNameLoader names(p_detect, BigName);
        names.Next();
        drawAt(p_agl, 0, 0.5);
        drawAt(p_agl, 0, -0.5);
        drawAt(p_agl, 0, 0);
        names.Next();
        drawAt(p_agl, 0.9, -0.9);
        names.Next();
        drawAt(p_agl, 0, 0.2);
        names.Reset();
        names.Reset();
        drawAt(p_agl, 0, 0.4);
        names.Next();
        drawAt(p_agl, 0, 0.6);
    });
    EXPECT_EQ(records,
        (Records{{HitRecord::NameInvalid, 0.95}, {BigName, 0.25}, {BigName + 2, 0.6}, {HitRecord::NameInvalid, 0.7},
            {BigName, 0.8}}));
}

TEST(HitDetect, fullBufferKeepsTheNearestAndSaysSo) {
    std::vector<double> const depths = {0.5, 0.2, 0.8, 0.2, 0.1, 0.9, 0.5};
    std::vector<std::vector<std::uint64_t>> const kept = {
        {}, {4}, {1, 4}, {1, 3, 4}, {0, 1, 3, 4}, {0, 1, 3, 4, 6}, {0, 1, 2, 3, 4, 6}, {0, 1, 2, 3, 4, 5, 6}};
    for (std::size_t capacity = 0; capacity < kept.size(); ++capacity) {
        HitBuffer buffer(capacity);
        for (std::size_t i = 0; i < depths.size(); ++i) {
            buffer.Add({i, depths[i]});
        }
        std::vector<std::uint64_t> names;
        for (HitRecord const& record : buffer.Records()) {
            names.push_back(record.name);
            EXPECT_EQ(record.depth, depths[record.name]);
        }
        EXPECT_EQ(names, kept[capacity]);
        EXPECT_EQ(buffer.HasOverflowed(), capacity < depths.size());
    }
}

TEST(HitDetect, nothingReachesTheBackEndAndAllComesBack) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const square = MakeSquare(agl);
    agl.Viewport({0, 0, 640, 480});
    agl.MatrixMode(AGL_TEXTURE);
    agl.Draw(square);
    auto const depths = agl.Depths();
    auto const projection = Types::Matrix4::Scaling(0.5);
    auto const statistics = agl.GetStatistics();
    Records const records = PickAt(
        recorded, {50, 50},
        [&](Agl& p_agl, HitDetect&) {
            EXPECT_EQ(p_agl.Get(AGL_PROJECTION_MATRIX), projection);
            p_agl.Clear(AGL_COLOR_BUFFER_BIT);
            p_agl.Draw(square);
            Slope(p_agl);
            p_agl.MatrixMode(AGL_MODELVIEW);
            p_agl.PushMatrix();
            p_agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
            p_agl.PushScissor();
            p_agl.Begin(AGL_TRIANGLES);
            p_agl.Vertex(0, 0);
        },
        {1, 1}, projection);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_NEAR(records[0].depth, 0.49, 1e-12);
    EXPECT_EQ(agl.GetStatistics().draws, statistics.draws);
    EXPECT_EQ(agl.Depths(), depths);
    EXPECT_EQ(agl.Current().transform.matrixMode, AGL_TEXTURE);
    EXPECT_EQ(agl.Current().viewport.rectangle, (PixelRectangle{0, 0, 640, 480}));
    EXPECT_EQ(agl.Get(AGL_PROJECTION_MATRIX), Types::Matrix4());
    agl.Draw(square);
    auto const commands = recorded.Take();
    EXPECT_EQ(agl.CheckError(), "");
    ASSERT_EQ(commands.size(), 1U) << "the draws before and after the pick still merge";
    EXPECT_EQ(commands[0].instances.size(), 2U);
}

TEST(HitDetect, innerScopeGetsWhatIsDrawn) {
    RecordedAgl recorded;
    Records inner;
    Records const outer = PickAt(recorded, {50, 50}, [&](Agl& p_agl, HitDetect&) {
        inner = PickAt(recorded, {70, 50}, [](Agl& p_innermost, HitDetect&) { Slope(p_innermost); });
        Immediate(p_agl, AGL_POINTS, {{0, 0, 0}});
    });
    ASSERT_EQ(inner.size(), 1U);
    EXPECT_NEAR(inner[0].depth, 0.69, 1e-12);
    ASSERT_EQ(outer.size(), 1U);
    EXPECT_EQ(outer[0].depth, 0.5);
}

} // namespace
} // namespace Qor::Chart::Ogl
