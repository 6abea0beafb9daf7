#include "tests/framework/ogl/referee/Random.h"
#include "tests/framework/ogl/referee/Report.h"

#include "framework/ogl/Context.h"
#include "framework/ogl/HitDetect.h"
#include "framework/ogl/OffscreenTarget.h"
#include "framework/ogl/RecorderBackend.h"

#include <epoxy/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <numeric>
#include <sstream>

// Random picks, once by HitDetect and once by the selection mode of a driver that still has it, over all primitive kinds and
// polygon modes. In a polygon mode other than filled the driver leaves out the edges that clipping adds and what lies
// between them, while here a polygon is hit as a whole: what the driver finds must be found, at its depth or nearer, and
// exactly what would be found of filled polygons.

namespace Qor::Chart::Ogl::Referee {
namespace {

using namespace Tokens;
using Vector3 = Agl::Vector3;
using Types::Matrix4;

constexpr int Picks = 2400;
constexpr int Names = 8;
constexpr double Tolerance = 1e-5;
Types::Viewport<0> const Pane(12, 7, 200, 150);

struct Primitive {
    Token kind = AGL_POINTS;
    std::vector<Vector3> vertices;
    bool isBuffered = false;
    Token frontMode = AGL_FILL;
    Token backMode = AGL_FILL;
};

struct Pick {
    Matrix4 projection;
    Matrix4 modelView;
    std::vector<Primitive> primitives;
    std::vector<Token> enabled;
    std::array<Agl::Vector4, 3> clipPlanes;
    Token cullFace = AGL_BACK;
    Token frontFace = AGL_CCW;
    double nearDepth = 0;
    double farDepth = 1;
    Types::Pos position;
    Types::Size tolerance;
};

/// Vertices anywhere, except that quads and polygons are flat and convex.
Primitive MakePrimitive(Random& p_random, bool p_hasModes) {
    Primitive primitive{
        static_cast<Token>(p_random.Index(AGL_POLYGON + 1)), {}, p_random.Chance(0.5), AGL_FILL, AGL_FILL};
    if (p_hasModes) {
        primitive.frontMode = p_random.OneOf({AGL_FILL, AGL_LINE, AGL_POINT});
        primitive.backMode = p_random.OneOf({AGL_FILL, AGL_LINE, AGL_POINT});
    }
    int const count = 1 + p_random.Index(9);
    Vector3 const center = p_random.Point(1.5);
    Vector3 const across = p_random.Point(1);
    Vector3 const along = p_random.Point(1);
    for (int i = 0; i < count; ++i) {
        double const angle = 2 * std::numbers::pi * i / (primitive.kind == AGL_QUADS ? 4 : count);
        if (primitive.kind < AGL_QUADS) {
            primitive.vertices.push_back(p_random.Point(1.8));
        } else if (primitive.kind == AGL_QUAD_STRIP) {
            primitive.vertices.push_back(center + across * (0.4 * (i / 2)) + along * (i % 2 - 0.5));
        } else {
            primitive.vertices.push_back(center + across * std::cos(angle) + along * std::sin(angle));
        }
    }
    return primitive;
}

Pick MakePick(Random& p_random, bool p_hasModes) {
    Pick pick;
    bool const isPerspective = p_random.Chance(0.6);
    pick.projection =
        isPerspective ? Matrix4::Perspective(50, 4.0 / 3, 0.5, 12) : Matrix4::Ortho(-2, 2, -1.5, 1.5, -3, 3);
    Matrix4 const move = Matrix4::Translation({0, 0, isPerspective ? -p_random.In(0, 4) : 0});
    pick.modelView = move * Matrix4::Rotation(p_random.In(0, 360), p_random.Direction());
    for (int i = 0; i < Names; ++i)
        pick.primitives.push_back(MakePrimitive(p_random, p_hasModes));
    for (Agl::Vector4& plane : pick.clipPlanes)
        plane = {p_random.Point(1), p_random.In(0, 1.5)};
    for (Token const capability : {AGL_CLIP_PLANE0, AGL_CLIP_PLANE0 + 1, AGL_CLIP_PLANE0 + 2, AGL_CULL_FACE}) {
        if (p_random.Chance(0.3))
            pick.enabled.push_back(capability);
    }
    pick.cullFace = p_random.OneOf({AGL_FRONT, AGL_BACK, AGL_BACK, AGL_FRONT_AND_BACK});
    pick.frontFace = p_random.OneOf({AGL_CCW, AGL_CW});
    pick.nearDepth = p_random.Chance(0.2) ? p_random.In(0, 1) : 0;
    pick.farDepth = p_random.Chance(0.2) ? p_random.In(0, 1) : 1;
    pick.position = {p_random.Index(200), p_random.Index(150)};
    pick.tolerance = {static_cast<int>(std::exp(p_random.In(0, 4))), static_cast<int>(std::exp(p_random.In(0, 4)))};
    return pick;
}

using Hits = std::map<std::uint64_t, double>; ///< depths by name

Hits PickWithAgl(Pick const& p_pick) {
    Agl agl(std::make_unique<RecorderBackend>());
    agl.LoadMatrix(p_pick.modelView);
    for (std::size_t i = 0; i < p_pick.clipPlanes.size(); ++i)
        agl.ClipPlane(AGL_CLIP_PLANE0 + static_cast<Token>(i), p_pick.clipPlanes[i]);
    for (Token const capability : p_pick.enabled)
        agl.Enable(capability);
    agl.CullFace(p_pick.cullFace);
    agl.FrontFace(p_pick.frontFace);
    agl.DepthRange(p_pick.nearDepth, p_pick.farDepth);
    HitBuffer buffer(Names);
    {
        Utility::Scoped<Agl> const scope{Utility::Unscoped<Agl>(agl)};
        HitDetect detect(scope, Pane, p_pick.projection, p_pick.position, p_pick.tolerance, buffer);
        for (std::uint64_t name = 0; name < p_pick.primitives.size(); ++name) {
            Primitive const& primitive = p_pick.primitives[name];
            detect.LoadName(name);
            agl.PolygonMode(AGL_FRONT, primitive.frontMode);
            agl.PolygonMode(AGL_BACK, primitive.backMode);
            if (primitive.isBuffered) {
                VertexData data;
                data.positions = {primitive.vertices.begin(), primitive.vertices.end()};
                std::vector<std::uint32_t> indices(primitive.vertices.size());
                std::iota(indices.begin(), indices.end(), 0U);
                agl.Draw(agl.CreatePrimitiveBuffer(std::make_shared<IndexBuffer>(primitive.kind, std::move(indices)),
                    std::make_shared<VertexBuffer>(std::move(data))));
            } else {
                agl.Begin(primitive.kind);
                for (Vector3 const& vertex : primitive.vertices)
                    agl.Vertex(vertex);
                agl.End();
            }
        }
    }
    EXPECT_EQ(agl.CheckError(), "");
    Hits hits;
    for (HitRecord const& record : buffer.Records())
        hits[record.name] = record.depth;
    return hits;
}

/// Takes what the pane shows of the pick area to the whole of the view volume.
Matrix4 PickMatrix(Pick const& p_pick) {
    auto const axis = [](double p_middle, double p_reach, double p_extent) {
        double const low = std::max(0.0, p_middle - p_reach);
        double const high = std::min(p_extent, p_middle + p_reach);
        return std::pair(p_extent / (high - low), (p_extent - low - high) / (high - low));
    };
    auto const [scaleX, moveX] = axis(p_pick.position.x, p_pick.tolerance.width, 200);
    auto const [scaleY, moveY] = axis(p_pick.position.y, p_pick.tolerance.height, 150);
    return Matrix4::Translation({moveX, moveY, 0}) * Matrix4::Scaling({scaleX, scaleY, 1});
}

Hits PickWithDriver(Pick const& p_pick, bool p_isFilled) {
    std::array<GLuint, 4 * Names + 4> words{};
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glViewport(12, 7, 200, 150);
    glDepthRange(p_pick.nearDepth, p_pick.farDepth);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd((PickMatrix(p_pick) * p_pick.projection).Data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(p_pick.modelView.Data());
    for (std::size_t i = 0; i < p_pick.clipPlanes.size(); ++i)
        glClipPlane(GL_CLIP_PLANE0 + static_cast<GLenum>(i), &p_pick.clipPlanes[i].x);
    for (Token const capability : p_pick.enabled)
        glEnable(capability);
    glCullFace(p_pick.cullFace);
    glFrontFace(p_pick.frontFace);
    glSelectBuffer(static_cast<GLsizei>(words.size()), words.data());
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(0);
    for (GLuint name = 0; name < p_pick.primitives.size(); ++name) {
        Primitive const& primitive = p_pick.primitives[name];
        glLoadName(name);
        glPolygonMode(GL_FRONT, p_isFilled ? GL_FILL : primitive.frontMode);
        glPolygonMode(GL_BACK, p_isFilled ? GL_FILL : primitive.backMode);
        glBegin(primitive.kind);
        for (Vector3 const& vertex : primitive.vertices)
            glVertex3d(vertex.x, vertex.y, vertex.z);
        glEnd();
    }
    GLint const count = glRenderMode(GL_RENDER);
    glPopAttrib();
    Hits hits;
    for (GLint i = 0; i < count; ++i) {
        GLuint const* const record = words.data() + 4 * static_cast<std::size_t>(i);
        hits[record[3]] = static_cast<double>(record[1]) / 0xFFFFFFFFU;
    }
    return hits;
}

/// A depth that rounding puts before the near plane comes out of the driver's integers as 1.
bool IsWrapped(double p_ours, double p_theirs) {
    return p_ours < 1e-6 && p_theirs > 1 - 1e-6;
}

double DepthDifference(double p_ours, double p_theirs) {
    return IsWrapped(p_ours, p_theirs) ? 0 : std::abs(p_ours - p_theirs);
}

/// The largest difference in depth; more than 1 when not the same names are hit.
double Difference(Hits const& p_ours, Hits const& p_theirs) {
    double worst = p_ours.size() == p_theirs.size() ? 0 : 2;
    for (auto const& [name, depth] : p_theirs) {
        auto const found = p_ours.find(name);
        worst = std::max(worst, found == p_ours.end() ? 2 : DepthDifference(found->second, depth));
    }
    return worst;
}

TEST(PickReferee, randomPicksHitTheSameNamesAtTheSameDepths) {
    UseFastShaderCompiler();
    std::unique_ptr<Context> context;
    try {
        context = std::make_unique<Context>(Context::Profile::Compatibility);
    } catch (ContextError const& error) {
        GTEST_SKIP() << "There is no context with a selection mode to compare with: " << error.what();
    }
    OffscreenTarget target(256, 256);
    target.Bind();
    Random random(31);
    std::size_t hits = 0;
    std::ptrdiff_t wrapped = 0;
    std::size_t outlined = 0;
    std::size_t onlyWhole = 0;
    double worst = 0;
    for (int i = 0; i < Picks; ++i) {
        bool const hasModes = i % 3 == 0;
        Pick const pick = MakePick(random, hasModes);
        Hits const ours = PickWithAgl(pick);
        hits += ours.size();
        Hits const theirs = PickWithDriver(pick, true);
        wrapped += std::count_if(theirs.begin(), theirs.end(), [&](auto const& p_hit) {
            auto const found = ours.find(p_hit.first);
            return found != ours.end() && IsWrapped(found->second, p_hit.second);
        });
        double const difference = Difference(ours, theirs);
        EXPECT_LE(difference, Tolerance) << "pick " << i;
        worst = std::max(worst, difference);
        for (auto const& [name, depth] : hasModes ? PickWithDriver(pick, false) : Hits()) {
            bool const isWrapped = depth > 1 - 1e-6;
            EXPECT_TRUE(ours.contains(name) && (isWrapped || ours.at(name) <= depth + Tolerance)) << "pick " << i;
            ++outlined;
        }
        onlyWhole += hasModes ? ours.size() : 0;
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_GT(hits, 2000U);
    EXPECT_LT(wrapped, 30) << "near and far may be mixed up where a hit lies on either plane";
    // That the comparison can fail.
    EXPECT_GT(Difference({{1, 0.5}}, {{1, 0.50002}}), Tolerance);
    EXPECT_GT(Difference({{1, 0.5}}, {{2, 0.5}}), Tolerance);
    std::ostringstream text;
    text << "| Picks | |\n|---|---|\n| random picks, each over " << Names << " names | " << Picks << " |\n| hits | "
         << hits << " |\n| hits of one side only | 0 |\n| largest difference of depths | " << worst
         << " of the depth range |\n| hits of the picks with outlines and corners, polygons as a whole | " << onlyWhole
         << " |\n| of these also in the driver's outlines and corners | " << outlined << " |\n";
    if (!HasFailure())
        Report("picks", text.str());
}

} // namespace
} // namespace Qor::Chart::Ogl::Referee
