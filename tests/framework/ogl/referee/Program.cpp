#include "tests/framework/ogl/referee/Program.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <tuple>

namespace Qor::Chart::Ogl::Referee {

namespace {

using namespace Tokens;
using Numbers = std::vector<double>;
using Types::Color4f;
using Vector3 = Agl::Vector3;
using Vector4 = Agl::Vector4;

/// What a program sees of `Agl`.
struct AglSide {
    Agl& agl;
    std::vector<std::shared_ptr<PrimitiveBuffer const>> shapes;
};

/// What OpenGL has not, or not without danger for the next program: the stack of scissor boxes, and how deep its own
/// stacks are.
struct OpenGlSide {
    Program const& program;
    std::vector<GLuint> const& textures;
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

/// The numbers of a call, taken one after the other as parameters of any type.
class Arguments {
public:
    explicit Arguments(Numbers const& p_numbers) : _next(p_numbers.data()), _end(p_numbers.data() + p_numbers.size()) {}

    template <class T>
    T Take() {
        if constexpr (std::is_same_v<T, double const*>) {
            return _next;
        } else if constexpr (std::is_same_v<T, float const*>) {
            std::transform(_next, _end, _floats, [](double p_number) { return static_cast<float>(p_number); });
            return _floats;
        } else if constexpr (std::is_same_v<T, unsigned char const*>) {
            // The rows of a stipple pattern, repeated to thirty-two of four bytes each.
            for (std::ptrdiff_t i = 0; i < 128; ++i)
                _bytes[i] = static_cast<unsigned char>(
                    static_cast<std::uint32_t>(_next[i / 4 % (_end - _next)]) >> (24 - 8 * (i % 4)));
            return _bytes;
        } else if constexpr (std::is_same_v<T, Types::Matrix4>) {
            return Types::Matrix4::FromColumnMajor(_next);
        } else if constexpr (std::is_same_v<T, Vector3>) {
            return T{Take<double>(), Take<double>(), Take<double>()};
        } else if constexpr (std::is_same_v<T, Vector4>) {
            return T{Take<double>(), Take<double>(), Take<double>(), Take<double>()};
        } else if constexpr (std::is_same_v<T, Color4f> || std::is_same_v<T, Types::Viewport<0>>) {
            return T{Take<float>(), Take<float>(), Take<float>(), Take<float>()};
        } else {
            return static_cast<T>(*_next++);
        }
    }
    template <class... P, class Function>
    void HandTo(Function const& p_function) {
        std::apply(p_function, std::tuple<std::decay_t<P>...>{Take<std::decay_t<P>>()...});
    }

private:
    double const* _next;
    double const* _end;
    float _floats[4] = {};
    unsigned char _bytes[128] = {};
};

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

void CutScissor(OpenGlSide& p_side, int p_left, int p_bottom, int p_width, int p_height) {
    int right = p_left + p_width;
    int top = p_bottom + p_height;
    if (!p_side.scissors.empty()) {
        auto const& [x, y, width, height] = p_side.scissors.back();
        p_left = std::max(p_left, x);
        p_bottom = std::max(p_bottom, y);
        right = std::min(right, x + width);
        top = std::min(top, y + height);
    }
    glScissor(p_left, p_bottom, std::max(0, right - p_left), std::max(0, top - p_bottom));
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
    if (!CanPop(enabledLights.size()))
        return;
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
    std::function<void(AglSide&, Numbers const&)> agl;
    std::function<void(OpenGlSide&, Numbers const&)> gl;
};

/// Calls a function of `Agl`; of overloads the one whose parameters begin with P.
template <class... P>
auto On(void (Agl::*p_function)(P...)) {
    return [=](AglSide& p_side, Numbers const& p_numbers) {
        Arguments(p_numbers).HandTo<P...>([&](P... p) { (p_side.agl.*p_function)(p...); });
    };
}

template <class... P>
auto On(void (*p_function)(P...)) {
    return [=](OpenGlSide&, Numbers const& p_numbers) { Arguments(p_numbers).HandTo<P...>(p_function); };
}

template <class... P, class... G>
Operation Both(void (Agl::*p_agl)(P...), void (*p_gl)(G...)) {
    return {On(p_agl), On(p_gl)};
}

void SetLight(AglSide& p_side, Numbers const& p_numbers) {
    if (p_numbers.size() == 3)
        return On<Token, Token, float>(&Agl::Light)(p_side, p_numbers);
    if (p_numbers.size() == 5)
        return On<Token, Token, Vector3 const&>(&Agl::Light)(p_side, p_numbers);
    if (p_numbers[1] == AGL_POSITION)
        return On<Token, Token, Vector4 const&>(&Agl::Light)(p_side, p_numbers);
    return On<Token, Token, Color4f const&>(&Agl::Light)(p_side, p_numbers);
}

/// Of the overloads of a function the one that takes so many numbers.
std::function<void(AglSide&, Numbers const&)> ByCount(
    std::map<std::size_t, std::function<void(AglSide&, Numbers const&)>> p_overloads) {
    return [=](AglSide& p_side, Numbers const& p_numbers) { p_overloads.at(p_numbers.size())(p_side, p_numbers); };
}

void PopMatrix(OpenGlSide& p_side, Numbers const&) {
    std::size_t& depth = p_side.MatrixDepth();
    if (p_side.CanPop(depth)) {
        glPopMatrix();
        --depth;
    }
}

void PopScissor(OpenGlSide& p_side, Numbers const&) {
    if (p_side.CanPop(p_side.scissors.size())) {
        auto const& [x, y, width, height] = p_side.scissors.back();
        glScissor(x, y, width, height);
        p_side.scissors.pop_back();
    }
}

void SetTexEnv(OpenGlSide&, Numbers const& p_numbers) {
    Arguments arguments(p_numbers);
    auto const name = arguments.Take<GLenum>();
    glTexEnvfv(GL_TEXTURE_ENV, name, arguments.Take<float const*>());
}

using G = OpenGlSide;
using N = Numbers const;

std::size_t Index(Numbers const& p_numbers) {
    return static_cast<std::size_t>(p_numbers.at(0));
}

std::map<std::string_view, Operation> const Operations = {
    {"MatrixMode", Both(&Agl::MatrixMode, glMatrixMode)},
    {"LoadMatrix", Both(&Agl::LoadMatrix, glLoadMatrixd)},
    {"PushMatrix", {On(&Agl::PushMatrix), [](G& p_side, N&) { glPushMatrix(), ++p_side.MatrixDepth(); }}},
    {"PopMatrix", {On(&Agl::PopMatrix), PopMatrix}},
    {"Translate", Both<Vector3 const&>(&Agl::Translate, glTranslated)},
    {"Scale", Both<Vector3 const&>(&Agl::Scale, glScaled)},
    {"Rotate", Both(&Agl::Rotate, glRotated)},
    {"PushAttrib", {On(&Agl::PushAttrib), [](G& p_side, N& p) { p_side.PushAttrib(static_cast<Token>(p[0])); }}},
    {"PopAttrib", {On(&Agl::PopAttrib), [](G& p_side, N&) { p_side.PopAttrib(); }}},
    {"PushScissor",
        {On(&Agl::PushScissor),
            [](G& p_side, N&) { glGetIntegerv(GL_SCISSOR_BOX, p_side.scissors.emplace_back().data()); }}},
    {"PopScissor", {On(&Agl::PopScissor), PopScissor}},
    {"Scissor",
        {On(&Agl::Scissor),
            [](G& p_side, N& p) {
                Arguments(p).HandTo<int, int, int, int>(std::bind_front(CutScissor, std::ref(p_side)));
            }}},
    {"Enable", {On(&Agl::Enable), On(Enable)}},
    {"Disable", Both(&Agl::Disable, glDisable)},
    {"Viewport", Both(&Agl::Viewport, glViewport)},
    {"DepthRange", Both(&Agl::DepthRange, glDepthRange)},
    {"ClearColor", Both<Color4f const&>(&Agl::ClearColor, glClearColor)},
    {"ClearDepth", Both(&Agl::ClearDepth, glClearDepth)},
    {"ClearStencil", Both(&Agl::ClearStencil, glClearStencil)},
    {"Clear", Both(&Agl::Clear, glClear)},
    {"PointSize", Both(&Agl::PointSize, glPointSize)},
    {"LineWidth", Both(&Agl::LineWidth, glLineWidth)},
    {"LineStipple", Both(&Agl::LineStipple, glLineStipple)},
    {"PolygonOffset", Both(&Agl::PolygonOffset, glPolygonOffset)},
    {"PolygonMode", Both(&Agl::PolygonMode, glPolygonMode)},
    {"PolygonStipple", Both<unsigned char const*>(&Agl::PolygonStipple, glPolygonStipple)},
    {"CullFace", Both(&Agl::CullFace, glCullFace)},
    {"FrontFace", Both(&Agl::FrontFace, glFrontFace)},
    {"ShadeModel", Both(&Agl::ShadeModel, glShadeModel)},
    {"BlendFunc", Both(&Agl::BlendFunc, glBlendFunc)},
    {"BlendEquation", Both(&Agl::BlendEquation, glBlendEquation)},
    {"ColorMask", Both(&Agl::ColorMask, glColorMask)},
    {"DepthFunc", Both(&Agl::DepthFunc, glDepthFunc)},
    {"DepthMask", Both(&Agl::DepthMask, glDepthMask)},
    {"StencilFunc", Both(&Agl::StencilFunc, glStencilFunc)},
    {"StencilOp", Both(&Agl::StencilOp, glStencilOp)},
    {"StencilMask", Both(&Agl::StencilMask, glStencilMask)},
    {"Light", {SetLight, On(glLightfv)}},
    {"LightModel",
        {ByCount({{2, On<Token, bool>(&Agl::LightModel)}, {5, On<Token, Color4f const&>(&Agl::LightModel)}}),
            On(glLightModelfv)}},
    {"Material",
        {ByCount({{3, On<Token, Token, float>(&Agl::Material)}, {6, On<Token, Token, Color4f const&>(&Agl::Material)}}),
            On(glMaterialfv)}},
    {"ColorMaterial",
        {On(&Agl::ColorMaterial), [](G& p_side, N& p) { CurrentColor(), On(glColorMaterial)(p_side, p); }}},
    {"ClipPlane", Both(&Agl::ClipPlane, glClipPlane)},
    {"ActiveTexture", Both(&Agl::ActiveTexture, glActiveTexture)},
    {"BindTexture",
        {[](AglSide& p_side, N& p) { p_side.agl.BindTexture(p[0] < 0 ? nullptr : TestTextures().at(Index(p))); },
            [](G& p_side, N& p) { glBindTexture(GL_TEXTURE_2D, p[0] < 0 ? 0 : p_side.textures.at(Index(p))); }}},
    {"TexEnv",
        {ByCount({{2, On<Token, Token>(&Agl::TexEnv)}, {5, On<Token, Color4f const&>(&Agl::TexEnv)}}), SetTexEnv}},
    {"TexEnvf", {On<Token, float>(&Agl::TexEnv), SetTexEnv}},
    {"Color", Both<float, float, float, float>(&Agl::Color, glColor4f)},
    {"Normal", Both(&Agl::Normal, glNormal3d)},
    {"MultiTexCoord", Both(&Agl::MultiTexCoord, glMultiTexCoord4d)},
    {"Begin", Both(&Agl::Begin, glBegin)},
    {"Vertex", Both<Vector3 const&>(&Agl::Vertex, glVertex3d)},
    {"End", Both(&Agl::End, glEnd)},
    {"Draw",
        {[](AglSide& p_side, N& p) { p_side.agl.Draw(p_side.shapes.at(Index(p))); },
            [](G& p_side, N& p) { DrawArrays(p_side.program.shapes.at(Index(p))); }}},
};

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

/// A pattern without symmetry, so that a wrong orientation shows.
QImage Pattern(int p_size, bool p_isTranslucent) {
    QImage image(p_size, p_size, QImage::Format_RGBA8888);
    for (int y = 0; y < p_size; ++y) {
        for (int x = 0; x < p_size; ++x) {
            int const check = (x / 2 + y / 3) % 2;
            int const alpha = p_isTranslucent ? 60 + 190 * ((x + 2 * y) % p_size) / p_size : 255;
            image.setPixelColor(x, y, QColor(255 * x / p_size, 80 + 140 * check, 255 - 200 * y / p_size, alpha));
        }
    }
    return image;
}

} // namespace

std::vector<std::shared_ptr<Texture const>> const& TestTextures() {
    auto const make = [](int p_size, bool p_isTranslucent, TextureSampling const& p_sampling) {
        return std::make_shared<Texture const>(Pattern(p_size, p_isTranslucent), p_sampling);
    };
    static std::vector<std::shared_ptr<Texture const>> const textures = {
        make(8, false, {AGL_LINEAR, AGL_LINEAR, AGL_CLAMP_TO_EDGE, AGL_CLAMP_TO_EDGE}),
        make(16, true, {AGL_NEAREST, AGL_NEAREST, AGL_REPEAT, AGL_REPEAT}),
        make(12, false, {AGL_LINEAR, AGL_LINEAR, AGL_MIRRORED_REPEAT, AGL_REPEAT}),
        make(32, true, {AGL_LINEAR_MIPMAP_LINEAR, AGL_LINEAR, AGL_REPEAT, AGL_MIRRORED_REPEAT}),
        make(7, false, {AGL_LINEAR, AGL_NEAREST, AGL_REPEAT, AGL_CLAMP_TO_EDGE}),
    };
    return textures;
}

void Program::AddPrimitive(Token p_kind, VertexData p_vertices, bool p_isBuffered) {
    VertexData const& v = p_vertices;
    if (p_isBuffered) {
        std::vector<std::uint32_t> indices(v.positions.size());
        std::iota(indices.begin(), indices.end(), 0U);
        Add("Draw", {static_cast<double>(shapes.size())});
        shapes.push_back({p_kind, std::move(p_vertices), std::move(indices)});
        return;
    }
    Add("Begin", {static_cast<double>(p_kind)});
    for (std::size_t i = 0; i < v.positions.size(); ++i) {
        if (!v.colors.empty())
            Add("Color", {v.colors[i].red, v.colors[i].green, v.colors[i].blue, v.colors[i].alpha});
        if (!v.normals.empty())
            Add("Normal", {v.normals[i].x, v.normals[i].y, v.normals[i].z});
        for (std::size_t unit = 0; unit < TextureUnitCount; ++unit) {
            if (auto const& set = v.texCoords[unit]; !set.empty())
                Add("MultiTexCoord",
                    {static_cast<double>(AGL_TEXTURE0 + unit), set[i].x, set[i].y, set[i].z, set[i].w});
        }
        Add("Vertex", {v.positions[i].x, v.positions[i].y, v.positions[i].z});
    }
    Add("End");
}

void Play(Program const& p_program, Agl& p_agl) {
    AglSide side{p_agl, {}};
    for (ShapeData const& shape : p_program.shapes)
        side.shapes.push_back(p_agl.CreatePrimitiveBuffer(
            std::make_shared<IndexBuffer>(shape.kind, shape.indices), std::make_shared<VertexBuffer>(shape.vertices)));
    for (Call const& call : p_program.calls)
        Operations.at(call.name).agl(side, call.arguments);
}

bool PlayOnOpenGl(Program const& p_program, std::vector<unsigned> const& p_textures) {
    OpenGlSide side{p_program, p_textures, {}, {}, {}, false};
    for (Call const& call : p_program.calls)
        Operations.at(call.name).gl(side, call.arguments);
    return side.hasUnderflow;
}

Played AglPlayer::Draw(std::function<void(Agl&)> const& p_draw, int p_width, int p_height) {
    _context.MakeCurrent();
    OffscreenTarget target(p_width, p_height);
    target.Bind();
    Agl agl(std::make_unique<SharedBackend>(_backend));
    agl.Viewport({0, 0, static_cast<float>(p_width), static_cast<float>(p_height)});
    agl.ClearColor(Color4f(0, 0, 0, 1));
    agl.Clear(AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT | AGL_STENCIL_BUFFER_BIT);
    p_draw(agl);
    Played played{agl.ReadPixels(0, 0, p_width, p_height), {}};
    played.errors = agl.CheckError();
    return played;
}

Played DrawOnOpenGl(Program const& p_program) {
    Context const context(Context::Profile::Compatibility);
    OffscreenTarget target(Program::Size, Program::Size);
    target.Bind();
    std::vector<GLuint> textures;
    for (auto const& texture : TestTextures())
        textures.push_back(MakeTexture(*texture));
    glBindTexture(GL_TEXTURE_2D, 0);
    glViewport(0, 0, Program::Size, Program::Size);
    glScissor(0, 0, Program::Size, Program::Size);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    bool const hasUnderflow = PlayOnOpenGl(p_program, textures);
    Played played{target.Read(), {}};
    played.errors = glGetError() != GL_NO_ERROR || hasUnderflow ? "OpenGL reports an error." : "";
    return played;
}

} // namespace Qor::Chart::Ogl::Referee
