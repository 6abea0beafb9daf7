#include "tests/framework/ogl/referee/Generator.h"
#include "tests/framework/ogl/referee/Report.h"

#include "framework/ogl/HitDetect.h"
#include "framework/ogl/RecorderBackend.h"

#include <epoxy/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

// Random picks, once by HitDetect and once by the selection mode of a driver that still has it, over all primitive kinds and
// polygon modes. In a polygon mode other than filled the driver leaves out the edges that clipping adds and what lies
// between them, while here a polygon is hit as a whole: what the driver finds must be found, at its depth or nearer, and
// exactly what would be found of filled polygons.

namespace Qor::Chart::Ogl::Referee {
namespace {

using namespace Tokens;
using Types::Matrix4;

constexpr int Picks = 2400;
constexpr int Names = 8;
constexpr double Tolerance = 1e-5;
Types::Viewport<0> const Pane(12, 7, 200, 150);

struct Pick {
    Matrix4 projection;
    Program state; ///< the model-view matrix and what else counts
    std::array<Program, Names> modes;
    std::array<Program, Names> primitives;
    Types::Pos position;
    Types::Size tolerance;
};

Pick MakePick(Random& p_random, bool p_hasModes) {
    Pick pick;
    bool const isPerspective = p_random.Chance(0.6);
    pick.projection =
        isPerspective ? Matrix4::Perspective(50, 4.0 / 3, 0.5, 12) : Matrix4::Ortho(-2, 2, -1.5, 1.5, -3, 3);
    Matrix4 const move = Matrix4::Translation({0, 0, isPerspective ? -p_random.In(0, 4) : 0});
    Matrix4 const modelView = move * Matrix4::Rotation(p_random.In(0, 360), p_random.Direction());
    pick.state.Add("LoadMatrix", {modelView.Data(), modelView.Data() + 16});
    for (Token const plane : {AGL_CLIP_PLANE0, AGL_CLIP_PLANE0 + 1, AGL_CLIP_PLANE0 + 2}) {
        Agl::Vector3 const normal = p_random.Point(1);
        pick.state.Add("ClipPlane", {double(plane), normal.x, normal.y, normal.z, p_random.In(0, 1.5)});
    }
    for (Token const capability : {AGL_CLIP_PLANE0, AGL_CLIP_PLANE0 + 1, AGL_CLIP_PLANE0 + 2, AGL_CULL_FACE}) {
        if (p_random.Chance(0.3))
            pick.state.Add("Enable", {double(capability)});
    }
    pick.state.Add("CullFace", {double(p_random.OneOf({AGL_FRONT, AGL_BACK, AGL_BACK, AGL_FRONT_AND_BACK}))});
    pick.state.Add("FrontFace", {double(p_random.OneOf({AGL_CCW, AGL_CW}))});
    double const nearDepth = p_random.Chance(0.2) ? p_random.In(0, 1) : 0;
    pick.state.Add("DepthRange", {nearDepth, p_random.Chance(0.2) ? p_random.In(0, 1) : 1});
    for (std::size_t name = 0; name < Names; ++name) {
        for (Token const face : {AGL_FRONT, AGL_BACK}) {
            Token const mode = p_hasModes ? p_random.OneOf({AGL_FILL, AGL_LINE, AGL_POINT}) : AGL_FILL;
            pick.modes[name].Add("PolygonMode", {double(face), double(mode)});
        }
        auto const kind = static_cast<Token>(p_random.Index(AGL_POLYGON + 1));
        auto const points = MakeRandomPoints(p_random, kind, 1 + p_random.Index(9));
        VertexData vertices;
        vertices.positions = {points.begin(), points.end()};
        pick.primitives[name].AddPrimitive(kind, std::move(vertices), p_random.Chance(0.5));
    }
    pick.position = {p_random.Index(200), p_random.Index(150)};
    pick.tolerance = {static_cast<int>(std::exp(p_random.In(0, 4))), static_cast<int>(std::exp(p_random.In(0, 4)))};
    return pick;
}

using Hits = std::map<std::uint64_t, double>; ///< depths by name

Hits PickWithAgl(Pick const& p_pick) {
    Agl agl(std::make_unique<RecorderBackend>());
    Play(p_pick.state, agl);
    HitBuffer buffer(Names);
    {
        Utility::Scoped<Agl> const scope{Utility::Unscoped<Agl>(agl)};
        HitDetect detect(scope, Pane, p_pick.projection, p_pick.position, p_pick.tolerance, buffer);
        for (std::size_t name = 0; name < Names; ++name) {
            detect.LoadName(name);
            Play(p_pick.modes[name], agl);
            Play(p_pick.primitives[name], agl);
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
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd((PickMatrix(p_pick) * p_pick.projection).Data());
    glMatrixMode(GL_MODELVIEW);
    PlayOnOpenGl(p_pick.state);
    glSelectBuffer(static_cast<GLsizei>(words.size()), words.data());
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(0);
    for (std::size_t name = 0; name < Names; ++name) {
        glLoadName(static_cast<GLuint>(name));
        if (!p_isFilled)
            PlayOnOpenGl(p_pick.modes[name]);
        PlayOnOpenGl(p_pick.primitives[name]);
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

/// The largest difference in depth; more than 1 when not the same names are hit. Counts the depths that are wrapped.
double Difference(Hits const& p_ours, Hits const& p_theirs, int& p_wrapped) {
    double worst = p_ours.size() == p_theirs.size() ? 0 : 2;
    for (auto const& [name, depth] : p_theirs) {
        auto const found = p_ours.find(name);
        bool const isWrapped = found != p_ours.end() && IsWrapped(found->second, depth);
        p_wrapped += isWrapped ? 1 : 0;
        worst = std::max(worst, found == p_ours.end() ? 2 : isWrapped ? 0 : std::abs(found->second - depth));
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
    std::size_t outlined = 0;
    int wrapped = 0;
    double worst = 0;
    for (int i = 0; i < Picks; ++i) {
        bool const hasModes = i % 3 == 0;
        Pick const pick = MakePick(random, hasModes);
        Hits const ours = PickWithAgl(pick);
        hits += ours.size();
        double const difference = Difference(ours, PickWithDriver(pick, true), wrapped);
        EXPECT_LE(difference, Tolerance) << "pick " << i;
        worst = std::max(worst, difference);
        for (auto const& [name, depth] : hasModes ? PickWithDriver(pick, false) : Hits()) {
            bool const isWrapped = depth > 1 - 1e-6;
            EXPECT_TRUE(ours.contains(name) && (isWrapped || ours.at(name) <= depth + Tolerance)) << "pick " << i;
            ++outlined;
        }
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_GT(hits, 2000U);
    EXPECT_LT(wrapped, 30) << "near and far may be mixed up where a hit lies on either plane";
    // That the comparison can fail.
    EXPECT_GT(Difference({{1, 0.5}}, {{1, 0.50002}}, wrapped), Tolerance);
    EXPECT_GT(Difference({{1, 0.5}}, {{2, 0.5}}, wrapped), Tolerance);
    std::ostringstream text;
    text << "| random picks, each over " << Names
         << " names | hits | hits of one side only | largest difference of depths |"
         << " hits of outlines and corners, each also one of the polygon as a whole |\n|---|---|---|---|---|\n| "
         << Picks << " | " << hits << " | 0 | " << worst << " of the depth range | " << outlined << " |\n";
    if (!HasFailure())
        Report("picks", text.str());
}

} // namespace
} // namespace Qor::Chart::Ogl::Referee
