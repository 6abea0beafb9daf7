#include "tests/framework/ogl/referee/Program.h"

#include "tests/framework/ogl/referee/Textures.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

namespace Qor::Chart::Ogl::Referee {

namespace {

using namespace Tokens;
using Numbers = std::vector<double>;

/// What a program sees of `Agl` besides the `Agl` itself.
struct AglSide {
    Agl& agl;
    std::vector<std::shared_ptr<PrimitiveBuffer const>> shapes;
    std::vector<std::shared_ptr<Texture const>> textures;
};

/// What OpenGL has not, or not without danger for the next program: the stack of scissor boxes, and how deep its own
/// stacks are.
struct OpenGlSide {
    Program const& program;
    std::vector<GLuint> textures;
    std::vector<std::array<int, 4>> scissors;
    std::map<std::pair<GLint, GLint>, std::size_t> matrixDepths;
    std::vector<std::vector<GLenum>> enabledLights; ///< at each PushAttrib that covers what is enabled
    bool hasUnderflow = false;

    std::size_t& MatrixDepth() {
        GLint mode = 0;
        GLint unit = 0;
        glGetIntegerv(GL_MATRIX_MODE, &mode);
        glGetIntegerv(GL_ACTIVE_TEXTURE, &unit);
        return matrixDepths[{mode, mode == GL_TEXTURE ? unit : 0}];
    }
    bool CanPop(std::size_t p_depth) {
        hasUnderflow = hasUnderflow || p_depth == 0;
        return p_depth > 0;
    }
    void PushAttrib(GLbitfield p_mask);
    void PopAttrib();
};

Token T(Numbers const& p_numbers, std::size_t p_index) {
    return static_cast<Token>(p_numbers.at(p_index));
}

int I(Numbers const& p_numbers, std::size_t p_index) {
    return static_cast<int>(p_numbers.at(p_index));
}

float F(Numbers const& p_numbers, std::size_t p_index) {
    return static_cast<float>(p_numbers.at(p_index));
}

bool B(Numbers const& p_numbers, std::size_t p_index) {
    return p_numbers.at(p_index) != 0;
}

Types::Color4f Color(Numbers const& p_numbers, std::size_t p_first) {
    return {F(p_numbers, p_first), F(p_numbers, p_first + 1), F(p_numbers, p_first + 2), F(p_numbers, p_first + 3)};
}

Agl::Vector3 Vector(Numbers const& p_numbers, std::size_t p_first = 0) {
    return {p_numbers.at(p_first), p_numbers.at(p_first + 1), p_numbers.at(p_first + 2)};
}

Agl::Vector4 Vector4(Numbers const& p_numbers, std::size_t p_first = 0) {
    return {Vector(p_numbers, p_first), p_numbers.at(p_first + 3)};
}

Types::Viewport<0> Rectangle(Numbers const& p_numbers) {
    return {F(p_numbers, 0), F(p_numbers, 1), F(p_numbers, 2), F(p_numbers, 3)};
}

/// The arguments from p_first on, as OpenGL takes parameter arrays.
std::array<float, 4> Parameters(Numbers const& p_numbers, std::size_t p_first) {
    std::array<float, 4> parameters{};
    for (std::size_t i = p_first; i < p_numbers.size(); ++i)
        parameters[i - p_first] = F(p_numbers, i);
    return parameters;
}

void SetLight(Agl& p_agl, Numbers const& p_n) {
    switch (T(p_n, 1)) {
    case AGL_POSITION:
        return p_agl.Light(T(p_n, 0), T(p_n, 1), Vector4(p_n, 2));
    case AGL_SPOT_DIRECTION:
        return p_agl.Light(T(p_n, 0), T(p_n, 1), Vector(p_n, 2));
    default:
        return p_n.size() == 3 ? p_agl.Light(T(p_n, 0), T(p_n, 1), F(p_n, 2))
                               : p_agl.Light(T(p_n, 0), T(p_n, 1), Color(p_n, 2));
    }
}

void SetLightModel(Agl& p_agl, Numbers const& p_n) {
    p_n.size() == 2 ? p_agl.LightModel(T(p_n, 0), B(p_n, 1)) : p_agl.LightModel(T(p_n, 0), Color(p_n, 1));
}

void SetMaterial(Agl& p_agl, Numbers const& p_n) {
    p_n.size() == 3 ? p_agl.Material(T(p_n, 0), T(p_n, 1), F(p_n, 2))
                    : p_agl.Material(T(p_n, 0), T(p_n, 1), Color(p_n, 2));
}

void SetTexEnv(Agl& p_agl, Numbers const& p_n) {
    bool const isScale = T(p_n, 0) == AGL_RGB_SCALE || T(p_n, 0) == AGL_ALPHA_SCALE;
    if (isScale)
        return p_agl.TexEnv(T(p_n, 0), F(p_n, 1));
    p_n.size() == 2 ? p_agl.TexEnv(T(p_n, 0), T(p_n, 1)) : p_agl.TexEnv(T(p_n, 0), Color(p_n, 1));
}

void DrawArrays(ShapeData const& p_shape) {
    VertexData const& v = p_shape.vertices;
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, v.positions.data());
    if (!v.normals.empty()) {
        glEnableClientState(GL_NORMAL_ARRAY);
        glNormalPointer(GL_FLOAT, 0, v.normals.data());
    }
    if (!v.colors.empty()) {
        glEnableClientState(GL_COLOR_ARRAY);
        glColorPointer(4, GL_FLOAT, 0, v.colors.data());
    }
    for (GLenum unit = 0; unit < v.texCoords.size(); ++unit) {
        if (!v.texCoords[unit].empty()) {
            glClientActiveTexture(GL_TEXTURE0 + unit);
            glEnableClientState(GL_TEXTURE_COORD_ARRAY);
            glTexCoordPointer(4, GL_FLOAT, 0, v.texCoords[unit].data());
        }
    }
    glDrawElements(p_shape.kind, static_cast<GLsizei>(p_shape.indices.size()), GL_UNSIGNED_INT, p_shape.indices.data());
    glPopClientAttrib();
}

void CutScissor(OpenGlSide& p_side, Numbers const& p_n) {
    int left = I(p_n, 0);
    int bottom = I(p_n, 1);
    int right = left + I(p_n, 2);
    int top = bottom + I(p_n, 3);
    if (!p_side.scissors.empty()) {
        auto const& [x, y, width, height] = p_side.scissors.back();
        left = std::max(left, x);
        bottom = std::max(bottom, y);
        right = std::min(right, x + width);
        top = std::min(top, y + height);
    }
    glScissor(left, bottom, std::max(0, right - left), std::max(0, top - bottom));
}

void SetStipple(Numbers const& p_n) {
    std::array<GLubyte, 128> bytes{};
    for (std::size_t i = 0; i < 128; ++i)
        bytes[i] = static_cast<GLubyte>(T(p_n, i / 4 % p_n.size()) >> (24 - 8 * (i % 4)));
    glPolygonStipple(bytes.data());
}

std::array<std::uint32_t, 32> StippleRows(Numbers const& p_n) {
    std::array<std::uint32_t, 32> rows{};
    for (std::size_t i = 0; i < 32; ++i)
        rows[i] = T(p_n, i % p_n.size());
    return rows;
}

/// Changes what is enabled and changes it back.
void Toggle(GLenum p_capability) {
    bool const isOn = glIsEnabled(p_capability) == GL_TRUE;
    isOn ? glDisable(p_capability) : glEnable(p_capability);
    isOn ? glEnable(p_capability) : glDisable(p_capability);
}

/// Mesa 22.3 lets a material follow the current colour only when somebody asks for it.
std::array<GLfloat, 4> CurrentColor() {
    std::array<GLfloat, 4> color{};
    glGetFloatv(GL_CURRENT_COLOR, color.data());
    return color;
}

/// Mesa 22.3 lets a material that was set before have its way over the current colour until that is set again.
void Enable(GLenum p_capability) {
    glEnable(p_capability);
    if (p_capability == GL_COLOR_MATERIAL) {
        std::array<GLfloat, 4> const color = CurrentColor();
        glColor4f(1 - color[0], color[1], color[2], color[3]);
        CurrentColor();
        glColor4fv(color.data());
    }
}

/// Changes every group and changes it back. Mesa 22.3 brings back only those groups of a PushAttrib that it saw change, and
/// forgets at a PopAttrib what was changed inside of it; with this it sees them all. Nor does it clip by planes that come
/// back before they are set again.
void TouchAllGroups() {
    for (GLenum const capability : {GL_POINT_SMOOTH, GL_LINE_SMOOTH, GL_CULL_FACE, GL_LIGHTING, GL_DEPTH_TEST,
             GL_STENCIL_TEST, GL_NORMALIZE, GL_BLEND, GL_TEXTURE_2D, GL_SCISSOR_TEST}) {
        Toggle(capability);
    }
    std::array<GLubyte, 128> stipple{};
    glGetPolygonStipple(stipple.data());
    stipple[0] ^= 1;
    glPolygonStipple(stipple.data());
    stipple[0] ^= 1;
    glPolygonStipple(stipple.data());
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    for (GLenum i = 0; i < ClipPlaneCount; ++i) {
        std::array<GLdouble, 4> plane{};
        glGetClipPlane(GL_CLIP_PLANE0 + i, plane.data());
        std::array<GLdouble, 4> const other{plane[0] + 1, 0, 0, 0};
        glClipPlane(GL_CLIP_PLANE0 + i, other.data());
        glClipPlane(GL_CLIP_PLANE0 + i, plane.data());
    }
    glPopMatrix();
    glMatrixMode(static_cast<GLenum>(mode));
    std::array<GLdouble, 2> range{};
    glGetDoublev(GL_DEPTH_RANGE, range.data());
    glDepthRange(range[1], range[0]);
    glDepthRange(range[0], range[1]);
    std::array<GLdouble, 3> normal{};
    glGetDoublev(GL_CURRENT_NORMAL, normal.data());
    glNormal3d(normal[0] + 1, normal[1], normal[2]);
    std::array<GLdouble, 3> changed{};
    glGetDoublev(GL_CURRENT_NORMAL, changed.data());
    glNormal3dv(normal.data());
}

void OpenGlSide::PushAttrib(GLbitfield p_mask) {
    glPushAttrib(p_mask);
    std::vector<GLenum>& lights = enabledLights.emplace_back();
    for (GLenum light = GL_LIGHT0; light < GL_LIGHT0 + LightCount && (p_mask & GL_ENABLE_BIT) != 0; ++light)
        lights.push_back(glIsEnabled(light) == GL_TRUE ? light : 0);
}

/// Mesa 22.3 does not bring lights back with what else is enabled, nor does a material follow a colour that comes back.
void OpenGlSide::PopAttrib() {
    glPopAttrib();
    for (std::size_t i = 0; i < enabledLights.back().size(); ++i) {
        GLenum const light = GL_LIGHT0 + static_cast<GLenum>(i);
        enabledLights.back()[i] != 0 ? glEnable(light) : glDisable(light);
    }
    enabledLights.pop_back();
    TouchAllGroups();
    if (glIsEnabled(GL_COLOR_MATERIAL) == GL_TRUE)
        Enable(GL_COLOR_MATERIAL);
}

/// How a call is made on either side.
struct Operation {
    void (*agl)(AglSide&, Numbers const&);
    void (*gl)(OpenGlSide&, Numbers const&);
};

using A = AglSide;
using G = OpenGlSide;
using N = Numbers const;

// clang-format off
std::map<std::string_view, Operation> const Operations = {
    {"MatrixMode", {[](A& a, N& n) { a.agl.MatrixMode(T(n, 0)); }, [](G&, N& n) { glMatrixMode(T(n, 0)); }}},
    {"LoadIdentity", {[](A& a, N&) { a.agl.LoadIdentity(); }, [](G&, N&) { glLoadIdentity(); }}},
    {"LoadMatrix", {[](A& a, N& n) { a.agl.LoadMatrix(Types::Matrix4::FromColumnMajor(n.data())); },
        [](G&, N& n) { glLoadMatrixd(n.data()); }}},
    {"MultMatrix", {[](A& a, N& n) { a.agl.MultMatrix(Types::Matrix4::FromColumnMajor(n.data())); },
        [](G&, N& n) { glMultMatrixd(n.data()); }}},
    {"PushMatrix", {[](A& a, N&) { a.agl.PushMatrix(); }, [](G& g, N&) { glPushMatrix(); ++g.MatrixDepth(); }}},
    {"PopMatrix", {[](A& a, N&) { a.agl.PopMatrix(); },
        [](G& g, N&) { if (g.CanPop(g.MatrixDepth())) { glPopMatrix(); --g.MatrixDepth(); } }}},
    {"Translate", {[](A& a, N& n) { a.agl.Translate(Vector(n)); }, [](G&, N& n) { glTranslated(n[0], n[1], n[2]); }}},
    {"Scale", {[](A& a, N& n) { a.agl.Scale(Vector(n)); }, [](G&, N& n) { glScaled(n[0], n[1], n[2]); }}},
    {"Rotate", {[](A& a, N& n) { a.agl.Rotate(n[0], Vector(n, 1)); },
        [](G&, N& n) { glRotated(n[0], n[1], n[2], n[3]); }}},
    {"PushAttrib", {[](A& a, N& n) { a.agl.PushAttrib(T(n, 0)); },
        [](G& g, N& n) { g.PushAttrib(T(n, 0)); }}},
    {"PopAttrib", {[](A& a, N&) { a.agl.PopAttrib(); },
        [](G& g, N&) { if (g.CanPop(g.enabledLights.size())) { g.PopAttrib(); } }}},
    {"PushScissor", {[](A& a, N&) { a.agl.PushScissor(); },
        [](G& g, N&) { glGetIntegerv(GL_SCISSOR_BOX, g.scissors.emplace_back().data()); }}},
    {"PopScissor", {[](A& a, N&) { a.agl.PopScissor(); }, [](G& g, N&) {
        if (g.CanPop(g.scissors.size())) {
            glScissor(g.scissors.back()[0], g.scissors.back()[1], g.scissors.back()[2], g.scissors.back()[3]);
            g.scissors.pop_back();
        } }}},
    {"Scissor", {[](A& a, N& n) { a.agl.Scissor(Rectangle(n)); }, [](G& g, N& n) { CutScissor(g, n); }}},
    {"Enable", {[](A& a, N& n) { a.agl.Enable(T(n, 0)); }, [](G&, N& n) { Enable(T(n, 0)); }}},
    {"Disable", {[](A& a, N& n) { a.agl.Disable(T(n, 0)); }, [](G&, N& n) { glDisable(T(n, 0)); }}},
    {"Viewport", {[](A& a, N& n) { a.agl.Viewport(Rectangle(n)); },
        [](G&, N& n) { glViewport(I(n, 0), I(n, 1), I(n, 2), I(n, 3)); }}},
    {"DepthRange", {[](A& a, N& n) { a.agl.DepthRange(n[0], n[1]); }, [](G&, N& n) { glDepthRange(n[0], n[1]); }}},
    {"ClearColor", {[](A& a, N& n) { a.agl.ClearColor(Color(n, 0)); },
        [](G&, N& n) { glClearColor(F(n, 0), F(n, 1), F(n, 2), F(n, 3)); }}},
    {"ClearDepth", {[](A& a, N& n) { a.agl.ClearDepth(n[0]); }, [](G&, N& n) { glClearDepth(n[0]); }}},
    {"ClearStencil", {[](A& a, N& n) { a.agl.ClearStencil(I(n, 0)); }, [](G&, N& n) { glClearStencil(I(n, 0)); }}},
    {"Clear", {[](A& a, N& n) { a.agl.Clear(T(n, 0)); }, [](G&, N& n) { glClear(T(n, 0)); }}},
    {"PointSize", {[](A& a, N& n) { a.agl.PointSize(F(n, 0)); }, [](G&, N& n) { glPointSize(F(n, 0)); }}},
    {"LineWidth", {[](A& a, N& n) { a.agl.LineWidth(F(n, 0)); }, [](G&, N& n) { glLineWidth(F(n, 0)); }}},
    {"LineStipple", {[](A& a, N& n) { a.agl.LineStipple(I(n, 0), static_cast<std::uint16_t>(I(n, 1))); },
        [](G&, N& n) { glLineStipple(I(n, 0), static_cast<GLushort>(I(n, 1))); }}},
    {"PolygonOffset", {[](A& a, N& n) { a.agl.PolygonOffset(F(n, 0), F(n, 1)); },
        [](G&, N& n) { glPolygonOffset(F(n, 0), F(n, 1)); }}},
    {"PolygonMode", {[](A& a, N& n) { a.agl.PolygonMode(T(n, 0), T(n, 1)); },
        [](G&, N& n) { glPolygonMode(T(n, 0), T(n, 1)); }}},
    {"PolygonStipple", {[](A& a, N& n) { a.agl.PolygonStipple(StippleRows(n)); }, [](G&, N& n) { SetStipple(n); }}},
    {"CullFace", {[](A& a, N& n) { a.agl.CullFace(T(n, 0)); }, [](G&, N& n) { glCullFace(T(n, 0)); }}},
    {"FrontFace", {[](A& a, N& n) { a.agl.FrontFace(T(n, 0)); }, [](G&, N& n) { glFrontFace(T(n, 0)); }}},
    {"ShadeModel", {[](A& a, N& n) { a.agl.ShadeModel(T(n, 0)); }, [](G&, N& n) { glShadeModel(T(n, 0)); }}},
    {"BlendFunc", {[](A& a, N& n) { a.agl.BlendFunc(T(n, 0), T(n, 1)); },
        [](G&, N& n) { glBlendFunc(T(n, 0), T(n, 1)); }}},
    {"BlendEquation", {[](A& a, N& n) { a.agl.BlendEquation(T(n, 0)); }, [](G&, N& n) { glBlendEquation(T(n, 0)); }}},
    {"ColorMask", {[](A& a, N& n) { a.agl.ColorMask(B(n, 0), B(n, 1), B(n, 2), B(n, 3)); },
        [](G&, N& n) { glColorMask(B(n, 0), B(n, 1), B(n, 2), B(n, 3)); }}},
    {"DepthFunc", {[](A& a, N& n) { a.agl.DepthFunc(T(n, 0)); }, [](G&, N& n) { glDepthFunc(T(n, 0)); }}},
    {"DepthMask", {[](A& a, N& n) { a.agl.DepthMask(B(n, 0)); }, [](G&, N& n) { glDepthMask(B(n, 0)); }}},
    {"StencilFunc", {[](A& a, N& n) { a.agl.StencilFunc(T(n, 0), I(n, 1), T(n, 2)); },
        [](G&, N& n) { glStencilFunc(T(n, 0), I(n, 1), T(n, 2)); }}},
    {"StencilOp", {[](A& a, N& n) { a.agl.StencilOp(T(n, 0), T(n, 1), T(n, 2)); },
        [](G&, N& n) { glStencilOp(T(n, 0), T(n, 1), T(n, 2)); }}},
    {"StencilMask", {[](A& a, N& n) { a.agl.StencilMask(T(n, 0)); }, [](G&, N& n) { glStencilMask(T(n, 0)); }}},
    {"Light", {[](A& a, N& n) { SetLight(a.agl, n); },
        [](G&, N& n) { glLightfv(T(n, 0), T(n, 1), Parameters(n, 2).data()); }}},
    {"LightModel", {[](A& a, N& n) { SetLightModel(a.agl, n); },
        [](G&, N& n) { glLightModelfv(T(n, 0), Parameters(n, 1).data()); }}},
    {"Material", {[](A& a, N& n) { SetMaterial(a.agl, n); },
        [](G&, N& n) { glMaterialfv(T(n, 0), T(n, 1), Parameters(n, 2).data()); }}},
    {"ColorMaterial", {[](A& a, N& n) { a.agl.ColorMaterial(T(n, 0), T(n, 1)); },
        [](G&, N& n) { CurrentColor(); glColorMaterial(T(n, 0), T(n, 1)); }}},
    {"ClipPlane", {[](A& a, N& n) { a.agl.ClipPlane(T(n, 0), Vector4(n, 1)); },
        [](G&, N& n) { glClipPlane(T(n, 0), n.data() + 1); }}},
    {"ActiveTexture", {[](A& a, N& n) { a.agl.ActiveTexture(T(n, 0)); }, [](G&, N& n) { glActiveTexture(T(n, 0)); }}},
    {"BindTexture", {[](A& a, N& n) { a.agl.BindTexture(I(n, 0) < 0 ? nullptr : a.textures.at(T(n, 0))); },
        [](G& g, N& n) { glBindTexture(GL_TEXTURE_2D, I(n, 0) < 0 ? 0 : g.textures.at(T(n, 0))); }}},
    {"TexEnv", {[](A& a, N& n) { SetTexEnv(a.agl, n); },
        [](G&, N& n) { glTexEnvfv(GL_TEXTURE_ENV, T(n, 0), Parameters(n, 1).data()); }}},
    {"Color", {[](A& a, N& n) { a.agl.Color(Color(n, 0)); },
        [](G&, N& n) { glColor4f(F(n, 0), F(n, 1), F(n, 2), F(n, 3)); }}},
    {"Normal", {[](A& a, N& n) { a.agl.Normal(Vector(n)); }, [](G&, N& n) { glNormal3d(n[0], n[1], n[2]); }}},
    {"MultiTexCoord", {[](A& a, N& n) { a.agl.MultiTexCoord(T(n, 0), n[1], n[2], n[3], n[4]); },
        [](G&, N& n) { glMultiTexCoord4d(T(n, 0), n[1], n[2], n[3], n[4]); }}},
    {"Begin", {[](A& a, N& n) { a.agl.Begin(T(n, 0)); }, [](G&, N& n) { glBegin(T(n, 0)); }}},
    {"Vertex", {[](A& a, N& n) { a.agl.Vertex(Vector(n)); }, [](G&, N& n) { glVertex3d(n[0], n[1], n[2]); }}},
    {"End", {[](A& a, N&) { a.agl.End(); }, [](G&, N&) { glEnd(); }}},
    {"Draw", {[](A& a, N& n) { a.agl.Draw(a.shapes.at(T(n, 0))); },
        [](G& g, N& n) { DrawArrays(g.program.shapes.at(T(n, 0))); }}},
};
// clang-format on

/// Hands everything on to a back end that belongs to somebody else.
class SharedBackend : public Backend {
public:
    explicit SharedBackend(Backend& p_backend) : _backend(p_backend) {}
    void BeginFrame() override { _backend.BeginFrame(); }
    void EndFrame() override { _backend.EndFrame(); }
    void Execute(CommandList const& p_commands, Statistics& p_statistics) override {
        _backend.Execute(p_commands, p_statistics);
    }
    void Prepare(Shader const& p_shader) override { _backend.Prepare(p_shader); }
    QImage ReadPixels(PixelRectangle const& p_rectangle) override { return _backend.ReadPixels(p_rectangle); }
    DeviceFeatures const& Features() override { return _backend.Features(); }
    void TakeErrors(std::vector<std::string>& p_errors) override { _backend.TakeErrors(p_errors); }

private:
    Backend& _backend;
};

GLuint MakeTexture(Texture const& p_texture) {
    TextureSampling const& sampling = p_texture.Sampling();
    auto const set = [](GLenum p_name, Token p_value) {
        glTexParameteri(GL_TEXTURE_2D, p_name, static_cast<GLint>(p_value));
    };
    GLuint name = 0;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    set(GL_TEXTURE_MIN_FILTER, sampling.minification);
    set(GL_TEXTURE_MAG_FILTER, sampling.magnification);
    set(GL_TEXTURE_WRAP_S, sampling.wrapS);
    set(GL_TEXTURE_WRAP_T, sampling.wrapT);
    set(GL_GENERATE_MIPMAP, sampling.minification == AGL_LINEAR_MIPMAP_LINEAR ? 1U : 0U);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, p_texture.Width(), p_texture.Height(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
        p_texture.Image().constBits());
    return name;
}

} // namespace

std::string Program::Print() const {
    std::ostringstream text;
    for (Call const& call : calls) {
        text << call.name;
        for (double const number : call.arguments) {
            bool const isToken = number >= 256 && number == std::floor(number);
            text << ' ' << (isToken ? std::hex : std::dec) << (isToken ? "0x" : "");
            isToken ? text << static_cast<std::uint64_t>(number) : text << number;
        }
        text << std::dec << '\n';
        if (call.name == "Draw" && static_cast<std::size_t>(call.arguments.at(0)) < shapes.size()) {
            ShapeData const& shape = shapes[static_cast<std::size_t>(call.arguments[0])];
            text << "  (kind " << shape.kind;
            for (std::uint32_t const index : shape.indices)
                text << ", " << shape.vertices.positions[index];
            text << ")\n";
        }
    }
    return text.str();
}

AglPlayer::AglPlayer(Context::Profile p_profile)
    : _context(std::make_unique<Context>(p_profile))
    , _target(std::make_unique<OffscreenTarget>(Program::Size, Program::Size))
    , _backend(std::make_unique<OpenGlBackend>()) {
    _target->Bind();
}

AglPlayer::~AglPlayer() = default;

Played AglPlayer::Play(Program const& p_program) const {
    _context->MakeCurrent();
    Agl agl(std::make_unique<SharedBackend>(*_backend));
    agl.Viewport({0, 0, Program::Size, Program::Size});
    agl.ClearColor(Types::Color4f(0, 0, 0, 1));
    agl.Clear(AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT | AGL_STENCIL_BUFFER_BIT);
    AglSide side{agl, {}, TestTextures()};
    for (ShapeData const& shape : p_program.shapes)
        side.shapes.push_back(agl.CreatePrimitiveBuffer(
            std::make_shared<IndexBuffer>(shape.kind, shape.indices), std::make_shared<VertexBuffer>(shape.vertices)));
    for (Call const& call : p_program.calls)
        Operations.at(call.name).agl(side, call.arguments);
    Played played;
    played.picture = agl.ReadPixels(0, 0, Program::Size, Program::Size);
    played.errors = agl.CheckError();
    return played;
}

QImage AglPlayer::Picture(Backend& p_backend, int p_width, int p_height, std::function<void(Agl&)> const& p_draw) {
    OffscreenTarget target(p_width, p_height);
    target.Bind();
    Agl agl(std::make_unique<SharedBackend>(p_backend));
    agl.Viewport({0, 0, static_cast<float>(p_width), static_cast<float>(p_height)});
    p_draw(agl);
    QImage picture = agl.ReadPixels(0, 0, p_width, p_height);
    target.Release();
    return picture;
}

Played PlayOnOpenGl(Program const& p_program) {
    Context context(Context::Profile::Compatibility);
    OffscreenTarget target(Program::Size, Program::Size);
    target.Bind();
    OpenGlSide side{p_program, {}, {}, {}, {}, false};
    for (auto const& texture : TestTextures())
        side.textures.push_back(MakeTexture(*texture));
    glBindTexture(GL_TEXTURE_2D, 0);
    glViewport(0, 0, Program::Size, Program::Size);
    glScissor(0, 0, Program::Size, Program::Size);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    for (Call const& call : p_program.calls)
        Operations.at(call.name).gl(side, call.arguments);
    Played played;
    played.picture = target.Read();
    bool const hasError = glGetError() != GL_NO_ERROR;
    played.errors = hasError || side.hasUnderflow ? "OpenGL reports an error." : "";
    return played;
}

} // namespace Qor::Chart::Ogl::Referee
