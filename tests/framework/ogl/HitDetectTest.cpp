#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/AutoNameLoader.h"
#include "framework/ogl/HitDetect.h"
#include "framework/ogl/Text.h"

#include "framework/assets/Resource.h"

#include <functional>
#include <limits>
#include <string>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using Records = std::vector<HitRecord>;

constexpr std::uint64_t BigName = std::uint64_t(1) << 40;
Types::Viewport<0> const Pane(300, 200, 100, 100);

/// What a pick at a place of the pane finds while p_draw draws. Without a projection of its own the pane shows x and y
/// from -1 to 1, and depths of 0 to 1 are z of -1 to 1.
Records PickAt(RecordedAgl& p_recorded, Types::Pos const& p_position,
    std::function<void(Agl&, HitDetect&)> const& p_draw, Types::Size const& p_tolerance = {1, 1},
    Types::Matrix4 const& p_projection = {}) {
    HitBuffer buffer(16);
    {
        Utility::Scoped<Agl> const scope{Utility::Unscoped<Agl>(p_recorded.agl)};
        HitDetect detect(scope, Pane, p_projection, p_position, p_tolerance, buffer);
        p_draw(p_recorded.agl, detect);
    }
    return buffer.Records();
}

/// A square of side 1 at a depth of 0.5 whose x coordinate is also its z coordinate: nearer on the left.
void Slope(Agl& p_agl) {
    DrawImmediate(p_agl, AGL_QUADS, {{-0.5, -0.5, -0.5}, {0.5, -0.5, 0.5}, {0.5, 0.5, 0.5}, {-0.5, 0.5, -0.5}});
}

TEST(HitDetect, handWorkedPicks) {
    struct Case {
        std::string what;
        Types::Pos position;
        Types::Size tolerance;
        std::function<void(Agl&)> draw;
        double depth; // negative when nothing is hit
    };
    auto const immediate = [](Token p_kind, std::vector<Agl::Vector3> const& p_vertices) {
        return [=](Agl& p_agl) { DrawImmediate(p_agl, p_kind, p_vertices); };
    };
    double const nan = std::numeric_limits<double>::quiet_NaN();
    std::vector<Case> const cases = {
        {"nearest corner of the pick area", {50, 50}, {1, 1}, Slope, 0.49},
        {"a tolerance below one pixel is one pixel", {50, 50}, {0, -5}, Slope, 0.49},
        {"an outline is hit inside too", {50, 50}, {1, 1},
            [](Agl& p) { p.PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE), Slope(p); }, 0.49},
        {"undefined corner", {50, 50}, {1, 1}, immediate(AGL_TRIANGLES, {{-1, -1, 0}, {1, -1, 0}, {0, nan, 0}}), -1},
        {"unfinished primitive", {50, 50}, {1, 1}, immediate(AGL_POLYGON, {{-1, -1, 0}, {1, 1, 0}}), -1},
        {"outside the pane", {130, 50}, {20, 20}, immediate(AGL_POINTS, {{1.6, 0, 0}}), -1},
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
    auto const pointAt = [&](double p_x, double p_z) { DrawImmediate(recorded.agl, AGL_POINTS, {{p_x, 0, p_z}}); };
    Records const records = PickAt(recorded, {50, 50}, [&](Agl&, HitDetect& p_detect) {
        pointAt(0, 0.9);
        AutoNameLoader names(p_detect, BigName);
        names.Next();
        pointAt(0, 0.5);
        pointAt(0, -0.5);
        pointAt(0, 0);
        names.Next();
        pointAt(0.9, -0.9);
        names.Next();
        pointAt(0, 0.25);
        names.Reset();
        names.Reset();
        pointAt(0, 0.4);
        names.Next();
        pointAt(0, 0.6);
    });
    EXPECT_EQ(records,
        (Records{{HitRecord::NameInvalid, 0.95}, {BigName, 0.25}, {BigName + 2, 0.625}, {HitRecord::NameInvalid, 0.7},
            {BigName, 0.8}}));
}

TEST(HitDetect, fullBufferKeepsTheNearestAndSaysSo) {
    std::vector<double> const depths = {0.5, 0.2, 0.8, 0.2, 0.1, 0.9, 0.5};
    std::vector<Records> const kept = {{}, {{4, 0.1}}, {{1, 0.2}, {4, 0.1}}, {{1, 0.2}, {3, 0.2}, {4, 0.1}},
        {{0, 0.5}, {1, 0.2}, {3, 0.2}, {4, 0.1}}, {{0, 0.5}, {1, 0.2}, {3, 0.2}, {4, 0.1}, {6, 0.5}}};
    for (std::size_t capacity = 0; capacity < kept.size(); ++capacity) {
        HitBuffer buffer(capacity);
        for (std::size_t i = 0; i < depths.size(); ++i) {
            EXPECT_EQ(buffer.HasOverflowed(), i > capacity);
            buffer.Add({i, depths[i]});
        }
        EXPECT_EQ(buffer.Records(), kept[capacity]);
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
    auto const draw = [&](Agl& p_agl, HitDetect&) {
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
    };
    EXPECT_EQ(PickAt(recorded, {50, 50}, draw, {1, 1}, projection).size(), 1U);
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

// A text counts where its glyphs are, with no more than their rectangles.
TEST(HitDetect, textIsTestedInsteadOfDrawn) {
    std::vector<Assets::FontFile> const fonts = Assets::Resource().FontSet("");
    if (fonts.empty())
        GTEST_SKIP() << "no font is installed";
    RecordedAgl recorded;
    auto const text = recorded.agl.GenFont(fonts, 40);
    Types::Size const size = text->Extents("HH");
    for (auto const& [x, hits] : {std::pair(20, 1U), {10 + size.width + 20, 0U}}) {
        auto const draw = [&](Agl& p_agl, HitDetect&) { text->Draw(p_agl, "HH", Types::Viewport<0>(10, 20, 200, 60)); };
        auto const pixels = Types::Matrix4::Ortho(0, 100, 0, 100, -1, 1);
        EXPECT_EQ(PickAt(recorded, {x, 60}, draw, {1, 1}, pixels).size(), hits) << x;
    }
    EXPECT_TRUE(recorded.Take().empty());
    EXPECT_EQ(recorded.agl.CheckError(), "");
}

TEST(HitDetect, innerScopeGetsWhatIsDrawn) {
    RecordedAgl recorded;
    Records inner;
    Records const outer = PickAt(recorded, {50, 50}, [&](Agl& p_agl, HitDetect&) {
        inner = PickAt(recorded, {70, 50}, [](Agl& p_innermost, HitDetect&) {
            DrawImmediate(p_innermost, AGL_POINTS, {{0.4, 0, 0.5}});
        });
        DrawImmediate(p_agl, AGL_POINTS, {{0, 0, 0}});
    });
    EXPECT_EQ(inner, (Records{{HitRecord::NameInvalid, 0.75}}));
    EXPECT_EQ(outer, (Records{{HitRecord::NameInvalid, 0.5}}));
}

} // namespace
} // namespace Qor::Chart::Ogl
