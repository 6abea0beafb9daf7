#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/PrimitiveAssembly.h"

#include <numeric>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using Indices = std::vector<std::uint32_t>;

TEST(PrimitiveBuffer, everyKindAssemblesIntoWhatDevicesDraw) {
    struct Case {
        Token kind;
        std::uint32_t vertices;
        Pipeline pipeline;
        Indices expected;
    };
    std::vector<Case> const cases = {
        {AGL_POINTS, 2, Pipeline::Points, {0, 1}},
        {AGL_LINES, 5, Pipeline::Lines, {0, 1, 2, 3}},
        {AGL_LINE_STRIP, 3, Pipeline::Lines, {0, 1, 1, 2}},
        {AGL_LINE_LOOP, 3, Pipeline::Lines, {0, 1, 1, 2, 2, 0}},
        {AGL_LINE_LOOP, 1, Pipeline::Lines, {}},
        {AGL_TRIANGLES, 7, Pipeline::Triangles, {0, 1, 2, 3, 4, 5}},
        {AGL_TRIANGLE_STRIP, 4, Pipeline::Triangles, {0, 1, 2, 2, 1, 3}},
        {AGL_TRIANGLE_FAN, 4, Pipeline::Triangles, {0, 1, 2, 0, 2, 3}},
        {AGL_QUADS, 7, Pipeline::Triangles, {1, 2, 0, 2, 3, 0}},
        {AGL_QUADS, 7, Pipeline::FlatTriangles, {0, 1, 3, 1, 2, 3}},
        {AGL_QUAD_STRIP, 5, Pipeline::FlatTriangles, {2, 0, 3, 0, 1, 3}},
        {AGL_POLYGON, 4, Pipeline::Triangles, {1, 2, 0, 2, 3, 0}},
        {AGL_POLYGON, 2, Pipeline::Triangles, {}},
        {AGL_QUADS, 4, Pipeline::Edges, {2, 0, 1, 3, 3, 1, 2, 3, 0, 2, 3, 3, 1, 3, 0, 3}},
        {AGL_TRIANGLES, 3, Pipeline::Corners, {0, 1, 2, 2, 1, 2, 0, 2, 2, 0, 1, 2}},
        {AGL_LINES, 4, Pipeline::Triangles, {}},
        {AGL_TRIANGLES, 3, Pipeline::Lines, {}},
    };
    for (Case const& test : cases) {
        Indices vertices(test.vertices);
        std::iota(vertices.begin(), vertices.end(), 0U);
        Indices result;
        AssemblePrimitives(test.kind, vertices, test.pipeline, result);
        EXPECT_EQ(result, test.expected) << "kind " << test.kind << " with " << test.vertices << " vertices";
    }
}

TEST(PrimitiveBuffer, wrongDataIsReportedAndNeverDrawn) {
    qordebug::CaptureScope capture(Utility::GetLogger());
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    VertexData data;
    data.positions = {{0, 0, 0}, {1, 0, 0}};
    data.normals = {{0, 0, 1}};
    auto const outOfRange = MakeShape(agl, AGL_LINES, data, {0, 2});
    EXPECT_FALSE(outOfRange->IsValid());
    EXPECT_TRUE(capture.contains("\"attribute.size() == positions.size()\""));
    EXPECT_TRUE(capture.contains("\"index < vertices.Size()\""));
    agl.Draw(outOfRange);
    agl.Draw(MakeShape(agl, AGL_LINES, {}, {}));
    agl.Draw(nullptr);
    EXPECT_EQ(agl.CreatePrimitiveBuffer(nullptr, nullptr), nullptr);
    EXPECT_TRUE(capture.contains("\"p_indices && p_vertices\""));
    EXPECT_TRUE(MakeShape(agl, 77, data, {0, 1})->Indices()->Indices().empty());
    EXPECT_TRUE(recorded.Take().empty());
}

} // namespace
} // namespace Qor::Chart::Ogl
