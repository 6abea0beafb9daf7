#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/Context.h"
#include "framework/ogl/HitDetect.h"
#include "framework/ogl/OffscreenTarget.h"

#include <epoxy/gl.h>

#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

// The same picks, once by HitDetect and once by the selection mode of a driver that still has it. Polygons
// are filled: in the other modes drivers leave out the edges that clipping adds, so that a pick inside an outline misses.

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using Vector3 = Agl::Vector3;
using Matrix4 = Types::Matrix4;

constexpr int Picks = 2500;
constexpr int Names = 8;
Types::Viewport<0> const Pane(12, 7, 200, 150);

struct Primitive {
    Token kind = AGL_POINTS;
    std::vector<Vector3> vertices;
    bool isBuffered = false;
};

struct Program {
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

class Generator {
public:
    explicit Generator(unsigned p_seed) : _engine(p_seed) {}

    Program Make() {
        Program program;
        bool const isPerspective = Chance(0.6);
        program.projection =
            isPerspective ? Matrix4::Perspective(50, 4.0 / 3, 0.5, 12) : Matrix4::Ortho(-2, 2, -1.5, 1.5, -3, 3);
        program.modelView =
            Matrix4::Translation({0, 0, isPerspective ? -In(0, 4) : 0}) * Matrix4::Rotation(In(0, 360), Point(1));
        for (int i = 0; i < Names; ++i) {
            program.primitives.push_back(MakePrimitive());
        }
        for (Agl::Vector4& plane : program.clipPlanes) {
            plane = {Point(1), In(0, 1.5)};
        }
        for (Token const capability : {AGL_CLIP_PLANE0, AGL_CLIP_PLANE0 + 1, AGL_CLIP_PLANE0 + 2, AGL_CULL_FACE}) {
            if (Chance(0.25)) {
                program.enabled.push_back(capability);
            }
        }
        program.cullFace = OneOf({AGL_FRONT, AGL_BACK, AGL_BACK, AGL_FRONT_AND_BACK});
        program.frontFace = OneOf({AGL_CCW, AGL_CW});
        program.nearDepth = Chance(0.2) ? In(0, 1) : 0;
        program.farDepth = Chance(0.2) ? In(0, 1) : 1;
        program.position = {static_cast<int>(In(0, 200)), static_cast<int>(In(0, 150))};
        program.tolerance = {static_cast<int>(std::exp(In(0, 4))), static_cast<int>(std::exp(In(0, 4)))};
        return program;
    }

private:
    double In(double p_low, double p_high) { return std::uniform_real_distribution<>(p_low, p_high)(_engine); }
    bool Chance(double p_share) { return In(0, 1) < p_share; }
    Token OneOf(std::vector<Token> const& p_tokens) { return p_tokens[_engine() % p_tokens.size()]; }
    Vector3 Point(double p_reach) { return {In(-p_reach, p_reach), In(-p_reach, p_reach), In(-p_reach, p_reach)}; }
    /// Vertices anywhere, except that quads and polygons have to be flat and convex.
    Primitive MakePrimitive() {
        auto const count = static_cast<int>(In(1, 10));
        Primitive primitive{static_cast<Token>(In(0, AGL_POLYGON + 1)), {}, Chance(0.5)};
        Vector3 const center = Point(1.5);
        Vector3 const across = Point(1);
        Vector3 const along = Point(1);
        for (int i = 0; i < count; ++i) {
            double const angle = 2 * std::numbers::pi * i / (primitive.kind == AGL_QUADS ? 4 : count);
            if (primitive.kind < AGL_QUADS) {
                primitive.vertices.push_back(Point(1.8));
            } else if (primitive.kind == AGL_QUAD_STRIP) {
                primitive.vertices.push_back(center + across * (0.4 * (i / 2)) + along * (i % 2 - 0.5));
            } else {
                primitive.vertices.push_back(center + across * std::cos(angle) + along * std::sin(angle));
            }
        }
        return primitive;
    }

    std::mt19937 _engine;
};

std::vector<HitRecord> PickWithAgl(Program const& p_program) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    agl.LoadMatrix(p_program.modelView);
    for (std::size_t i = 0; i < p_program.clipPlanes.size(); ++i) {
        agl.ClipPlane(AGL_CLIP_PLANE0 + static_cast<Token>(i), p_program.clipPlanes[i]);
    }
    for (Token const capability : p_program.enabled) {
        agl.Enable(capability);
    }
    agl.CullFace(p_program.cullFace);
    agl.FrontFace(p_program.frontFace);
    agl.DepthRange(p_program.nearDepth, p_program.farDepth);
    HitBuffer buffer(Names);
    {
        Utility::Scoped<Agl> const scope{Utility::Unscoped<Agl>(agl)};
        HitDetect detect(scope, Pane, p_program.projection, p_program.position, p_program.tolerance, buffer);
        for (std::uint64_t name = 0; name < p_program.primitives.size(); ++name) {
            detect.LoadName(name);
            Primitive const& primitive = p_program.primitives[name];
            if (primitive.isBuffered) {
                VertexData data;
                data.positions = {primitive.vertices.begin(), primitive.vertices.end()};
                std::vector<std::uint32_t> indices(primitive.vertices.size());
                std::iota(indices.begin(), indices.end(), 0U);
                agl.Draw(MakeShape(agl, primitive.kind, std::move(data), std::move(indices)));
            } else {
                DrawImmediate(agl, primitive.kind, primitive.vertices);
            }
        }
    }
    EXPECT_TRUE(recorded.Take().empty());
    EXPECT_EQ(agl.CheckError(), "");
    return buffer.Records();
}

/// Takes what the pane shows of the pick area to the whole of the view volume.
Matrix4 PickMatrix(Program const& p_program) {
    auto const axis = [](double p_middle, double p_reach, double p_extent) {
        double const low = std::max(0.0, p_middle - p_reach);
        double const high = std::min(p_extent, p_middle + p_reach);
        return std::pair(p_extent / (high - low), (p_extent - low - high) / (high - low));
    };
    auto const [scaleX, moveX] = axis(p_program.position.x, p_program.tolerance.width, 200);
    auto const [scaleY, moveY] = axis(p_program.position.y, p_program.tolerance.height, 150);
    return Matrix4::Translation({moveX, moveY, 0}) * Matrix4::Scaling({scaleX, scaleY, 1});
}

std::vector<HitRecord> PickWithDriver(Program const& p_program) {
    std::array<GLuint, 4 * Names + 4> words{};
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glViewport(12, 7, 200, 150);
    glDepthRange(p_program.nearDepth, p_program.farDepth);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd((PickMatrix(p_program) * p_program.projection).Data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(p_program.modelView.Data());
    for (std::size_t i = 0; i < p_program.clipPlanes.size(); ++i) {
        glClipPlane(GL_CLIP_PLANE0 + static_cast<GLenum>(i), &p_program.clipPlanes[i].x);
    }
    for (Token const capability : p_program.enabled) {
        glEnable(capability);
    }
    glCullFace(p_program.cullFace);
    glFrontFace(p_program.frontFace);
    glSelectBuffer(static_cast<GLsizei>(words.size()), words.data());
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(0);
    for (GLuint name = 0; name < p_program.primitives.size(); ++name) {
        glLoadName(name);
        glBegin(p_program.primitives[name].kind);
        for (Vector3 const& vertex : p_program.primitives[name].vertices) {
            glVertex3d(vertex.x, vertex.y, vertex.z);
        }
        glEnd();
    }
    GLint const count = glRenderMode(GL_RENDER);
    glPopAttrib();
    std::vector<HitRecord> records;
    for (GLint i = 0; i < count; ++i) {
        GLuint const* const record = words.data() + 4 * static_cast<std::size_t>(i);
        EXPECT_EQ(record[0], 1U);
        records.emplace_back(record[3], static_cast<double>(record[1]) / 0xFFFFFFFFU);
    }
    return records;
}

/// A depth that rounding puts before the near plane comes out of the driver's integers as 1.
bool Agree(std::vector<HitRecord> const& p_a, std::vector<HitRecord> const& p_b) {
    return std::equal(p_a.begin(), p_a.end(), p_b.begin(), p_b.end(), [](HitRecord const& p_x, HitRecord const& p_y) {
        double const difference = std::abs(p_x.depth - p_y.depth);
        bool const isWrapped = p_x.depth < 1e-6 && p_y.depth > 1 - 1e-6;
        return p_x.name == p_y.name && (isWrapped || difference <= 1e-5);
    });
}

TEST(HitSelectMode, driverFindsTheSameNamesAndDepths) {
    std::unique_ptr<Context> context;
    try {
        context = std::make_unique<Context>(Context::Profile::Compatibility);
    } catch (ContextError const& error) {
        GTEST_SKIP() << "There is no context with a selection mode to compare with: " << error.what();
    }
    OffscreenTarget target(256, 256);
    target.Bind();
    Generator generator(2024);
    std::size_t hits = 0;
    for (int pick = 0; pick < Picks; ++pick) {
        Program const program = generator.Make();
        auto const ours = PickWithAgl(program);
        auto const theirs = PickWithDriver(program);
        hits += ours.size();
        EXPECT_TRUE(Agree(ours, theirs)) << pick << testing::PrintToString(ours) << testing::PrintToString(theirs);
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_GT(hits, 2000U);
}

} // namespace
} // namespace Qor::Chart::Ogl
