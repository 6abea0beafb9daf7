#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/AutoNameLoader.h"
#include "framework/ogl/HitDetect.h"
#include "framework/ogl/Text.h"

#include "framework/assets/Resource.h"

#include <functional>
#include <limits>

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

TEST(HitDetect, aToleranceBelowOnePixelIsOnePixelAndWhatIsUndefinedOrOutsideIsNotHit) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    RecordedAgl recorded;
    auto const slope = [](Agl& p_agl, HitDetect&) { Slope(p_agl); };
    for (Types::Size const& tolerance : {Types::Size(1, 1), Types::Size(0, -5)}) {
        Records const records = PickAt(recorded, {50, 50}, slope, tolerance);
        ASSERT_EQ(records.size(), 1U);
        EXPECT_NEAR(records[0].depth, 0.49, 1e-12) << "the nearest corner of the pick area";
    }
    auto const undefined = [&](Agl& p_agl, HitDetect&) {
        DrawImmediate(p_agl, AGL_TRIANGLES, {{-1, -1, 0}, {1, -1, 0}, {0, nan, 0}});
    };
    auto const outside = [&](Agl& p_agl, HitDetect&) { DrawImmediate(p_agl, AGL_POINTS, {{1.6, 0, 0}}); };
    EXPECT_TRUE(PickAt(recorded, {50, 50}, undefined).empty());
    EXPECT_TRUE(PickAt(recorded, {130, 50}, outside, {20, 20}).empty()) << "within the tolerance, but not in the pane";
    EXPECT_EQ(recorded.agl.CheckError(), "");
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

TEST(HitDetect, nothingReachesTheBackEndAndTheDrawsAroundItStillMerge) {
    RecordedAgl recorded;
    auto const square = MakeSquare(recorded.agl);
    auto const projection = Types::Matrix4::Scaling(0.5);
    auto const draw = [&](Agl& p_agl, HitDetect&) {
        EXPECT_EQ(p_agl.Get(AGL_PROJECTION_MATRIX), projection);
        p_agl.Clear(AGL_COLOR_BUFFER_BIT);
        p_agl.Draw(square);
        Slope(p_agl);
    };
    recorded.agl.Draw(square);
    EXPECT_EQ(PickAt(recorded, {50, 50}, draw, {1, 1}, projection).size(), 1U);
    recorded.agl.Draw(square);
    auto const commands = recorded.Take();
    EXPECT_EQ(recorded.agl.CheckError(), "");
    ASSERT_EQ(commands.size(), 1U);
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
