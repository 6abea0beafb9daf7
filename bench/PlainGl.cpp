#include "bench/PlainGl.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <cstddef>

namespace Bench {

namespace {

template <class T>
void SendBuffer(GLenum p_target, std::vector<T> const& p_data) {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(p_target, buffer);
    glBufferData(p_target, static_cast<GLsizeiptr>(p_data.size() * sizeof(T)), p_data.data(), GL_STATIC_DRAW);
}

/// To the vertex array object that is bound.
void SendShape(Ogl::PrimitiveBuffer const& p_shape) {
    SendBuffer(GL_ARRAY_BUFFER, p_shape.Vertices()->Data().positions);
    SendBuffer(GL_ELEMENT_ARRAY_BUFFER, p_shape.Indices()->Indices());
}

GLuint MakeProgram(char const* p_vertexSource, char const* p_fragmentSource) {
    GLuint const program = glCreateProgram();
    auto const attach = [program](GLenum p_stage, char const* p_source) {
        GLuint const shader = glCreateShader(p_stage);
        glShaderSource(shader, 1, &p_source, nullptr);
        glCompileShader(shader);
        glAttachShader(program, shader);
    };
    attach(GL_VERTEX_SHADER, p_vertexSource);
    attach(GL_FRAGMENT_SHADER, p_fragmentSource);
    glLinkProgram(program);
    return program;
}

std::array<float, 16> Floats(Types::Matrix4 const& p_matrix) {
    std::array<float, 16> floats;
    std::transform(p_matrix.Data(), p_matrix.Data() + 16, floats.begin(),
        [](double p_element) { return static_cast<float>(p_element); });
    return floats;
}

constexpr GLuint MatrixLocation = 1;
constexpr GLuint ColorLocation = 5;

} // namespace

PlainGl::PlainGl(Shapes p_shapes, Types::Matrix4 const& p_projection) : _projection(Floats(p_projection)) {
    for (auto const& shape : p_shapes) {
        Shape& made = _shapes.emplace_back();
        made.kind = shape->Kind();
        made.count = static_cast<int>(shape->Indices()->Indices().size());
        glGenVertexArrays(1, &made.arrays);
        glBindVertexArray(made.arrays);
        SendShape(*shape);
        glEnableClientState(GL_VERTEX_ARRAY);
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
    }
    MakeInstancing(*p_shapes.front());
    glBindVertexArray(0);
}

void PlainGl::MakeInstancing(Ogl::PrimitiveBuffer const& p_shape) {
    _program = MakeProgram("#version 330\n"
                           "layout(location = 0) in vec3 position;\n"
                           "layout(location = 1) in mat4 modelView;\n"
                           "layout(location = 5) in vec4 ownColor;\n"
                           "uniform mat4 projection;\n"
                           "flat out vec4 color;\n"
                           "void main() {\n"
                           "    color = ownColor;\n"
                           "    gl_Position = projection * (modelView * vec4(position, 1));\n"
                           "}\n",
        "#version 330\n"
        "flat in vec4 color;\n"
        "out vec4 fragment;\n"
        "void main() { fragment = color; }\n");
    glGenVertexArrays(1, &_instanceArrays);
    glBindVertexArray(_instanceArrays);
    SendShape(p_shape);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    glGenBuffers(1, &_instanceBuffer);
    glBindBuffer(GL_ARRAY_BUFFER, _instanceBuffer);
    auto const attribute = [](GLuint p_location, std::size_t p_offset) {
        glEnableVertexAttribArray(p_location);
        glVertexAttribPointer(p_location, 4, GL_FLOAT, GL_FALSE, sizeof(Instance),
            reinterpret_cast<void const*>(p_offset)); // NOLINT(performance-no-int-to-ptr): as OpenGL takes offsets
        glVertexAttribDivisor(p_location, 1);
    };
    for (GLuint column = 0; column < 4; ++column)
        attribute(MatrixLocation + column, column * 4 * sizeof(float));
    attribute(ColorLocation, offsetof(Instance, color));
}

void PlainGl::BeginPicture() const {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(_projection.data());
    glMatrixMode(GL_MODELVIEW);
}

void PlainGl::DrawEach(std::span<Object const> p_objects, bool p_isMixed) {
    auto const set = [](GLenum p_capability, bool p_isOn) {
        p_isOn ? glEnable(p_capability) : glDisable(p_capability);
    };
    BeginPicture();
    std::size_t bound = _shapes.size();
    for (Object const& object : p_objects) {
        Shape const& shape = _shapes[object.shape];
        if (object.shape != bound)
            glBindVertexArray(shape.arrays);
        bound = object.shape;
        if (p_isMixed) {
            set(GL_BLEND, object.state.isBlended);
            set(GL_CULL_FACE, object.state.isCulled);
            glDepthMask(object.state.writesDepth ? GL_TRUE : GL_FALSE);
        }
        glLoadMatrixf(object.floats.data());
        glColor4f(object.color.red, object.color.green, object.color.blue, object.color.alpha);
        glDrawElements(shape.kind, shape.count, GL_UNSIGNED_INT, nullptr);
    }
    glDisable(GL_BLEND);
    glDisable(GL_CULL_FACE);
    glDepthMask(GL_TRUE);
    glBindVertexArray(0);
    glFinish();
}

void PlainGl::DrawInstanced(std::span<Object const> p_objects) {
    BeginPicture();
    _instances.clear();
    for (Object const& object : p_objects)
        _instances.push_back({object.floats, object.color});
    glUseProgram(_program);
    glUniformMatrix4fv(glGetUniformLocation(_program, "projection"), 1, GL_FALSE, _projection.data());
    glBindVertexArray(_instanceArrays);
    glBindBuffer(GL_ARRAY_BUFFER, _instanceBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(_instances.size() * sizeof(Instance)), _instances.data(),
        GL_STREAM_DRAW);
    glDrawElementsInstanced(
        _shapes.front().kind, _shapes.front().count, GL_UNSIGNED_INT, nullptr, static_cast<GLsizei>(_instances.size()));
    glBindVertexArray(0);
    glUseProgram(0);
    glFinish();
}

std::vector<PlainGl::Hit> PlainGl::Select(
    std::span<Object const> p_objects, Types::Pos const& p_pixel, int p_tolerance) {
    constexpr std::size_t record = 4; // one name, both depths, the name
    _selection.resize(record * (p_objects.size() + 1));
    glSelectBuffer(static_cast<GLsizei>(_selection.size()), _selection.data());
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(0);
    std::array<GLint, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    auto const offset = [&](int p_center, std::size_t p_axis) {
        return (viewport[p_axis + 2] - 2.0 * (p_center - viewport[p_axis])) / (2 * p_tolerance);
    };
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glTranslated(offset(p_pixel.x, 0), offset(p_pixel.y, 1), 0);
    glScaled(viewport[2] / (2.0 * p_tolerance), viewport[3] / (2.0 * p_tolerance), 1);
    glMultMatrixf(_projection.data());
    glMatrixMode(GL_MODELVIEW);
    GLuint name = 0;
    for (Object const& object : p_objects) {
        Shape const& shape = _shapes[object.shape];
        glBindVertexArray(shape.arrays);
        glLoadName(name++);
        glLoadMatrixf(object.floats.data());
        glDrawElements(shape.kind, shape.count, GL_UNSIGNED_INT, nullptr);
    }
    glBindVertexArray(0);
    auto const count = static_cast<std::size_t>(glRenderMode(GL_RENDER));
    std::vector<Hit> hits;
    for (std::size_t i = 0; i < count; ++i)
        hits.push_back({_selection[record * i + 3], _selection[record * i + 1] / 4294967295.0});
    return hits;
}

void PlainGl::PushAndPopAttributes(std::size_t p_times) {
    for (std::size_t i = 0; i < p_times; ++i) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glLineWidth(2);
        glPopAttrib();
    }
}

void PlainGl::PushAndPopMatrices(std::size_t p_times) {
    for (std::size_t i = 0; i < p_times; ++i) {
        glPushMatrix();
        glTranslated(1, 2, 3);
        glPopMatrix();
    }
}

} // namespace Bench
