#include "framework/ogl/GlDevice.h"

#include "framework/utility/Logger.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Ogl {

namespace {

/// Size of a buffer that is only there to be found again; no host makes one of this size.
constexpr GLsizeiptr MarkerSize = 7919;
/// Ways to read textures that are kept; a program that animates one must not fill the memory.
constexpr std::size_t MaxSamplers = 64;
// The same in all extensions for it, and in OpenGL 4.6.
constexpr GLenum TextureMaxAnisotropy = 0x84FE, MaxTextureMaxAnisotropy = 0x84FF;

std::string Text(GLenum p_name) {
    auto const* const text = reinterpret_cast<char const*>(glGetString(p_name));
    return text == nullptr ? std::string() : text;
}

void const* Offset(std::size_t p_bytes) {
    return reinterpret_cast<void const*>(p_bytes);
}

template <class T>
GLsizeiptr SizeOf(std::vector<T> const& p_values) {
    return static_cast<GLsizeiptr>(p_values.size() * sizeof(T));
}

void SetAttribute(GLuint p_location, GLint p_components, GLsizei p_stride, std::size_t p_offset, GLuint p_divisor = 0) {
    glEnableVertexAttribArray(p_location);
    glVertexAttribPointer(p_location, p_components, GL_FLOAT, GL_FALSE, p_stride, Offset(p_offset));
    glVertexAttribDivisor(p_location, p_divisor);
}

/// Where the attributes of a vertex buffer lie in its object: one array after the other.
struct AttributeArray {
    GLuint location;
    GLint components;
    void const* data;
    std::size_t bytes;
};

std::array<AttributeArray, AttributeInfo::Count> AttributeArrays(VertexData const& p_data) {
    auto const array = [](GLuint p_location, GLint p_components, auto const& p_values) {
        return AttributeArray{p_location, p_components, p_values.data(), static_cast<std::size_t>(SizeOf(p_values))};
    };
    std::array<AttributeArray, AttributeInfo::Count> arrays = {array(AttributeLocation::Position, 3, p_data.positions),
        array(AttributeLocation::Normal, 3, p_data.normals), array(AttributeLocation::Color, 4, p_data.colors)};
    for (GLuint unit = 0; unit < TextureUnitCount; ++unit) {
        arrays[AttributeInfo::TexCoord0 + unit] = array(AttributeLocation::TexCoord0 + unit, 4, p_data.texCoords[unit]);
    }
    return arrays;
}

/// Sets how a texture object or a sampler object is read with p_setInteger, p_setFloat and p_setFloats.
template <class SetInteger, class SetFloat, class SetFloats>
void SetSampling(TextureSampling const& p_sampling, float p_maxAnisotropy, SetInteger const& p_setInteger,
    SetFloat const& p_setFloat, SetFloats const& p_setFloats) {
    p_setInteger(GL_TEXTURE_MIN_FILTER, static_cast<GLint>(p_sampling.minification));
    p_setInteger(GL_TEXTURE_MAG_FILTER, static_cast<GLint>(p_sampling.magnification));
    p_setInteger(GL_TEXTURE_WRAP_S, static_cast<GLint>(p_sampling.wrapS));
    p_setInteger(GL_TEXTURE_WRAP_T, static_cast<GLint>(p_sampling.wrapT));
    Types::Color4f const& border = p_sampling.borderColor;
    std::array<GLfloat, 4> const color = {border.red, border.green, border.blue, border.alpha};
    p_setFloats(GL_TEXTURE_BORDER_COLOR, color.data());
    p_setFloat(GL_TEXTURE_LOD_BIAS, p_sampling.lodBias);
    if (p_maxAnisotropy > 1) {
        p_setFloat(TextureMaxAnisotropy, std::clamp(p_sampling.maxAnisotropy, 1.0F, p_maxAnisotropy));
    }
}

void SetArrayEnabled(GLuint p_location, bool p_on) {
    p_on ? glEnableVertexAttribArray(p_location) : glDisableVertexAttribArray(p_location);
}

/// What the driver makes of the indices that a pipeline reads.
GLenum ModeOf(Pipeline p_pipeline) {
    constexpr std::array<GLenum, PipelineCount> modes = {
        GL_POINTS, GL_LINES, GL_TRIANGLES, GL_LINES_ADJACENCY, GL_LINES_ADJACENCY, GL_TRIANGLES, GL_TRIANGLES};
    return modes[static_cast<std::size_t>(p_pipeline)];
}

void DeleteBuffer(GLuint& p_name) {
    glDeleteBuffers(1, &p_name);
    p_name = 0;
}

GLuint MakeBuffer() {
    GLuint name = 0;
    glGenBuffers(1, &name);
    return name;
}

} // namespace

GlDevice::GlDevice(std::shared_ptr<Graveyard> p_graveyard) : _graveyard(std::move(p_graveyard)), _marker(MakeBuffer()) {
    GLint mask = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &mask);
    _isCompatibility = (mask & GL_CONTEXT_CORE_PROFILE_BIT) == 0;
    _hasBaseInstance = epoxy_gl_version() >= 42 || epoxy_has_gl_extension("GL_ARB_base_instance");
    GLint alignment = 256;
    glGetIntegerv(GL_UNIFORM_BUFFER_OFFSET_ALIGNMENT, &alignment);
    _uniformAlignment = static_cast<std::size_t>(std::max(alignment, 16));

    GLint maxTexture = 0;
    GLfloat pointSizes[2] = {1, 1};
    GLint samples = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxTexture);
    glGetFloatv(GL_POINT_SIZE_RANGE, pointSizes);
    glGetIntegerv(GL_MAX_SAMPLES, &samples);
    if (epoxy_has_gl_extension("GL_EXT_texture_filter_anisotropic") || epoxy_gl_version() >= 46) {
        glGetFloatv(MaxTextureMaxAnisotropy, &_maxAnisotropy);
    }
    _features.maxTextureSize = static_cast<unsigned>(std::max(maxTexture, 64));
    _features.maxPointSize = pointSizes[1];
    _features.vendor = Text(GL_VENDOR);
    _features.renderer = Text(GL_RENDERER);
    _features.version = Text(GL_VERSION);
    _features.Set(DeviceFeature::PolygonStipple)
        .Set(DeviceFeature::WideLines)
        .Set(DeviceFeature::SmoothPoints)
        .Set(DeviceFeature::Instancing)
        .Set(DeviceFeature::Pixels)
        .Set(DeviceFeature::Multisampling, samples > 1);

    GLint arrayBuffer = 0;
    GLint vertexArray = 0;
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &arrayBuffer);
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &vertexArray);
    glBindBuffer(GL_ARRAY_BUFFER, _marker);
    glBufferData(GL_ARRAY_BUFFER, MarkerSize, nullptr, GL_STATIC_DRAW);
    for (StreamBuffer* const buffer :
        {&_instances, &_uniforms, &_immediateVertices, &_immediateTexCoords, &_immediateStarts, &_immediateIndices}) {
        buffer->name = MakeBuffer();
    }
    _immediateArray = MakeImmediateArray(AttributeLocation::CurrentColor);
    _ownColorsArray = MakeImmediateArray(AttributeLocation::Color);
    glBindVertexArray(static_cast<GLuint>(vertexArray));
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(arrayBuffer));
}

GLuint GlDevice::MakeImmediateArray(GLuint p_colorLocation) const {
    GLuint name = 0;
    glGenVertexArrays(1, &name);
    glBindVertexArray(name);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, _immediateIndices.name);
    glBindBuffer(GL_ARRAY_BUFFER, _immediateVertices.name);
    constexpr GLsizei stride = sizeof(ImmediateVertex);
    SetAttribute(AttributeLocation::Position, 4, stride, offsetof(ImmediateVertex, position));
    SetAttribute(AttributeLocation::Normal, 3, stride, offsetof(ImmediateVertex, normal));
    SetAttribute(p_colorLocation, 4, stride, offsetof(ImmediateVertex, color));
    glBindBuffer(GL_ARRAY_BUFFER, _immediateTexCoords.name);
    for (GLuint i = 0; i < TextureUnitCount; ++i) {
        SetAttribute(AttributeLocation::TexCoord0 + i, 4, sizeof(ImmediateTexCoords),
            i * sizeof(ImmediateTexCoords::value_type));
    }
    glBindBuffer(GL_ARRAY_BUFFER, _immediateStarts.name);
    SetAttribute(AttributeLocation::StippleStart, 1, sizeof(float), 0);
    return name;
}

bool GlDevice::IsIntact() const {
    if (glIsBuffer(_marker) == GL_FALSE) {
        return false;
    }
    GLint previous = 0;
    GLint size = 0;
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &previous);
    glBindBuffer(GL_ARRAY_BUFFER, _marker);
    glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(previous));
    return size == MarkerSize;
}

std::size_t GlDevice::ObjectCount() const {
    return _programs.Count() + _shapes.size() + _vertices.size() + _textures.size();
}

GLuint GlDevice::VertexName(VertexBuffer const& p_vertices, std::uint64_t& p_bytes) {
    auto const [entry, isNew] = _vertices.try_emplace(p_vertices.Id());
    VertexObject& object = entry->second;
    if (!isNew) {
        return object.name;
    }
    object.name = MakeBuffer();
    p_vertices.NotifyWhenGone(_graveyard);
    auto const arrays = AttributeArrays(p_vertices.Data());
    std::size_t total = 0;
    for (AttributeArray const& array : arrays) {
        total += array.bytes;
    }
    glBindBuffer(GL_ARRAY_BUFFER, object.name);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(total), nullptr, GL_STATIC_DRAW);
    std::size_t offset = 0;
    for (AttributeArray const& array : arrays) {
        glBufferSubData(
            GL_ARRAY_BUFFER, static_cast<GLintptr>(offset), static_cast<GLsizeiptr>(array.bytes), array.data);
        offset += array.bytes;
    }
    p_bytes += total;
    object.bytes = total;
    _heldBytes += total;
    return object.name;
}

GlShape& GlDevice::Shape(PrimitiveBuffer const& p_buffer, Pipeline p_pipeline, std::uint64_t& p_bytes) {
    auto const [entry, isNew] = _shapes.try_emplace(p_buffer.Id());
    GlShape& shape = entry->second;
    if (isNew) {
        p_buffer.NotifyWhenGone(_graveyard);
        GLuint const vertices = VertexName(*p_buffer.Vertices(), p_bytes);
        glGenVertexArrays(1, &shape.vertexArray);
        BindArray(shape.vertexArray);
        PointAtInstance(0);
        glBindBuffer(GL_ARRAY_BUFFER, vertices);
        std::size_t offset = 0;
        for (AttributeArray const& array : AttributeArrays(p_buffer.Vertices()->Data())) {
            if (array.bytes != 0) {
                SetAttribute(array.location, array.components, 0, offset);
            }
            offset += array.bytes;
        }
    }
    auto const slot = static_cast<std::size_t>(p_pipeline);
    if (shape.indexBuffers[slot] == 0) {
        std::span<std::uint32_t const> const indices = p_buffer.Assembled(p_pipeline);
        shape.indexBuffers[slot] = MakeBuffer();
        shape.counts[slot] = static_cast<GLsizei>(indices.size());
        shape.current = p_pipeline;
        BindArray(shape.vertexArray);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, shape.indexBuffers[slot]);
        glBufferData(
            GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size_bytes()), indices.data(), GL_STATIC_DRAW);
        p_bytes += indices.size_bytes();
        shape.bytes += indices.size_bytes();
        _heldBytes += indices.size_bytes();
    }
    return shape;
}

GLuint GlDevice::TextureName(Texture const& p_texture, bool p_needsMipmaps, std::uint64_t& p_bytes) {
    auto const [entry, isNew] = _textures.try_emplace(p_texture.Id());
    TextureObject& object = entry->second;
    if (isNew) {
        p_texture.NotifyWhenGone(_graveyard);
        glGenTextures(1, &object.name);
        glBindTexture(GL_TEXTURE_2D, object.name);
        object.bytes = SendTexture(p_texture);
        p_bytes += object.bytes;
        _heldBytes += object.bytes;
    }
    if (!object.hasMipmaps && (p_needsMipmaps || p_texture.Sampling().NeedsMipmaps())) {
        glBindTexture(GL_TEXTURE_2D, object.name);
        glGenerateMipmap(GL_TEXTURE_2D);
        object.hasMipmaps = true;
        std::uint64_t const smaller = object.bytes / 3; // each has a quarter of the pixels of the one before
        object.bytes += smaller;
        _heldBytes += smaller;
    }
    return object.name;
}

std::uint64_t GlDevice::SendTexture(Texture const& p_texture) const {
    QImage image = p_texture.Image();
    int const limit = static_cast<int>(_features.maxTextureSize);
    if (image.width() > limit || image.height() > limit) {
        Utility::GetLogger().warning("An image of " + std::to_string(image.width()) + " by " +
            std::to_string(image.height()) +
            " pixels is larger than the device takes; it is scaled"
            " down to at most " +
            std::to_string(limit) + ".");
        image = image.scaled(std::min(image.width(), limit), std::min(image.height(), limit), Qt::KeepAspectRatio,
            Qt::SmoothTransformation);
        image = image.convertToFormat(QImage::Format_RGBA8888);
    }
    glTexImage2D(
        GL_TEXTURE_2D, 0, GL_RGBA8, image.width(), image.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE, image.constBits());
    SetSampling(
        p_texture.Sampling(), _maxAnisotropy,
        [](GLenum p_name, GLint p_value) { glTexParameteri(GL_TEXTURE_2D, p_name, p_value); },
        [](GLenum p_name, GLfloat p_value) { glTexParameterf(GL_TEXTURE_2D, p_name, p_value); },
        [](GLenum p_name, GLfloat const* p_values) { glTexParameterfv(GL_TEXTURE_2D, p_name, p_values); });
    return static_cast<std::uint64_t>(image.sizeInBytes());
}

GLuint GlDevice::SamplerName(TextureSampling const& p_sampling) {
    auto const found = std::find_if(
        _samplers.begin(), _samplers.end(), [&](auto const& p_entry) { return p_entry.first == p_sampling; });
    if (found != _samplers.end()) {
        return found->second;
    }
    GLuint name = 0;
    glGenSamplers(1, &name);
    SetSampling(
        p_sampling, _maxAnisotropy,
        [name](GLenum p_name, GLint p_value) { glSamplerParameteri(name, p_name, p_value); },
        [name](GLenum p_name, GLfloat p_value) { glSamplerParameterf(name, p_name, p_value); },
        [name](GLenum p_name, GLfloat const* p_values) { glSamplerParameterfv(name, p_name, p_values); });
    _samplers.emplace_back(p_sampling, name);
    return name;
}

GlProgram const& GlDevice::Program(
    Shader const& p_shader, ProgramVariant const& p_variant, std::vector<std::string>& p_errors) {
    if (!_programs.Knows(p_shader.Id())) {
        p_shader.NotifyWhenGone(_graveyard);
    }
    return _programs.Find(p_shader, p_variant, p_errors);
}

void GlDevice::BeginDrawing() {
    _boundArray = 0;
    glVertexAttrib1f(AttributeLocation::StippleStart, 0);
    if (_samplers.size() > MaxSamplers) {
        DeleteSamplers();
    }
}

void GlDevice::DeleteSamplers() {
    for (auto const& [sampling, name] : _samplers) {
        glDeleteSamplers(1, &name);
    }
    _samplers.clear();
}

void GlDevice::BindArray(GLuint p_vertexArray) {
    if (p_vertexArray != _boundArray) {
        glBindVertexArray(p_vertexArray);
        _boundArray = p_vertexArray;
    }
}

template <class T>
void GlDevice::Stream(GLenum p_target, StreamBuffer& p_buffer, std::vector<T> const& p_values) {
    glBindBuffer(p_target, p_buffer.name);
    glBufferData(p_target, SizeOf(p_values), p_values.data(), GL_STREAM_DRAW);
    _heldBytes -= p_buffer.bytes;
    p_buffer.bytes = p_values.size() * sizeof(T);
    _heldBytes += p_buffer.bytes;
}

void GlDevice::SendInstances(std::vector<Instance> const& p_instances) {
    Stream(GL_ARRAY_BUFFER, _instances, p_instances);
}

// Arrays that no draw of the list reads are empty, and then they must be off.
void GlDevice::SendImmediate(CommandList const& p_list) {
    for (GLuint const array : {_ownColorsArray, _immediateArray}) {
        BindArray(array);
        for (GLuint i = 0; i < TextureUnitCount; ++i) {
            SetArrayEnabled(AttributeLocation::TexCoord0 + i, !p_list.texCoords.empty());
        }
        SetArrayEnabled(AttributeLocation::StippleStart, !p_list.stippleStarts.empty());
    }
    Stream(GL_ARRAY_BUFFER, _immediateVertices, p_list.vertices);
    if (!p_list.texCoords.empty()) {
        Stream(GL_ARRAY_BUFFER, _immediateTexCoords, p_list.texCoords);
    }
    if (!p_list.stippleStarts.empty()) {
        Stream(GL_ARRAY_BUFFER, _immediateStarts, p_list.stippleStarts);
    }
    Stream(GL_ELEMENT_ARRAY_BUFFER, _immediateIndices, p_list.indices);
}

void GlDevice::SendUniforms(std::vector<std::byte> const& p_bytes) {
    Stream(GL_UNIFORM_BUFFER, _uniforms, p_bytes);
}

void GlDevice::PointAtInstance(std::size_t p_firstInstance) const {
    glBindBuffer(GL_ARRAY_BUFFER, _instances.name);
    std::size_t const start = p_firstInstance * sizeof(Instance);
    constexpr GLsizei stride = sizeof(Instance);
    for (GLuint row = 0; row < 3; ++row) {
        SetAttribute(AttributeLocation::Row0 + row, 4, stride, start + row * sizeof(Instance::rows[0]), 1);
    }
    SetAttribute(AttributeLocation::CurrentColor, 4, stride, start + offsetof(Instance, color), 1);
}

void GlDevice::DrawShape(
    GlShape& p_shape, Pipeline p_pipeline, std::uint32_t p_firstInstance, std::uint32_t p_instances) {
    auto const slot = static_cast<std::size_t>(p_pipeline);
    GLenum const mode = ModeOf(p_pipeline);
    auto const instances = static_cast<GLsizei>(p_instances);
    BindArray(p_shape.vertexArray);
    if (p_shape.current != p_pipeline) {
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, p_shape.indexBuffers[slot]);
        p_shape.current = p_pipeline;
    }
    if (_hasBaseInstance) {
        glDrawElementsInstancedBaseInstance(
            mode, p_shape.counts[slot], GL_UNSIGNED_INT, nullptr, instances, p_firstInstance);
    } else {
        PointAtInstance(p_firstInstance);
        glDrawElementsInstanced(mode, p_shape.counts[slot], GL_UNSIGNED_INT, nullptr, instances);
    }
}

void GlDevice::DrawImmediate(
    Pipeline p_pipeline, std::uint32_t p_firstIndex, std::uint32_t p_indices, Types::Color4f const* p_color) {
    BindArray(p_color != nullptr ? _ownColorsArray : _immediateArray);
    if (p_color != nullptr) {
        glVertexAttrib4f(AttributeLocation::CurrentColor, p_color->red, p_color->green, p_color->blue, p_color->alpha);
    }
    glVertexAttrib4f(AttributeLocation::Row0, 1, 0, 0, 0);
    glVertexAttrib4f(AttributeLocation::Row0 + 1, 0, 1, 0, 0);
    glVertexAttrib4f(AttributeLocation::Row0 + 2, 0, 0, 1, 0);
    glDrawElements(ModeOf(p_pipeline), static_cast<GLsizei>(p_indices), GL_UNSIGNED_INT,
        Offset(p_firstIndex * sizeof(std::uint32_t)));
}

void GlDevice::BindUniforms(GLuint p_block, std::size_t p_offset, std::size_t p_size) const {
    glBindBufferRange(
        GL_UNIFORM_BUFFER, p_block, _uniforms.name, static_cast<GLintptr>(p_offset), static_cast<GLsizeiptr>(p_size));
}

void GlDevice::DeleteShape(GlShape const& p_shape) {
    glDeleteVertexArrays(1, &p_shape.vertexArray);
    glDeleteBuffers(static_cast<GLsizei>(p_shape.indexBuffers.size()), p_shape.indexBuffers.data());
}

void GlDevice::Collect() {
    for (std::uint64_t const id : _dead) {
        if (auto const shape = _shapes.find(id); shape != _shapes.end()) {
            DeleteShape(shape->second);
            _heldBytes -= shape->second.bytes;
            _shapes.erase(shape);
        } else if (auto const vertices = _vertices.find(id); vertices != _vertices.end()) {
            DeleteBuffer(vertices->second.name);
            _heldBytes -= vertices->second.bytes;
            _vertices.erase(vertices);
        } else if (auto const texture = _textures.find(id); texture != _textures.end()) {
            glDeleteTextures(1, &texture->second.name);
            _heldBytes -= texture->second.bytes;
            _textures.erase(texture);
        } else {
            _programs.Delete(id);
        }
    }
    _dead.clear();
}

void GlDevice::DeleteAll() {
    for (auto const& [id, shape] : _shapes) {
        DeleteShape(shape);
    }
    for (auto& [id, vertices] : _vertices) {
        DeleteBuffer(vertices.name);
    }
    for (auto const& [id, texture] : _textures) {
        glDeleteTextures(1, &texture.name);
    }
    DeleteSamplers();
    _programs.DeleteAll();
    DeleteBuffer(_marker);
    for (StreamBuffer* const buffer :
        {&_instances, &_uniforms, &_immediateVertices, &_immediateTexCoords, &_immediateStarts, &_immediateIndices}) {
        DeleteBuffer(buffer->name);
    }
    glDeleteVertexArrays(1, &_immediateArray);
    glDeleteVertexArrays(1, &_ownColorsArray);
}

} // namespace Qor::Chart::Ogl
