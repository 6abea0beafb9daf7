#pragma once

#include "framework/ogl/CommandList.h"
#include "framework/ogl/DeviceFeatures.h"
#include "framework/ogl/DeviceResource.h"
#include "framework/ogl/GlProgram.h"
#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/ogl/Texture.h"

#include <epoxy/gl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Qor::Chart::Ogl {

/// A shape in the memory of a device: its vertices and, per pipeline, the indices that were needed so far.
struct GlShape {
    GLuint vertexArray = 0;
    std::array<GLuint, PipelineCount> indexBuffers{};
    std::array<GLsizei, PipelineCount> counts{};
    std::uint64_t bytes = 0; ///< of the indices
    Pipeline current = Pipeline::Points; ///< whose indices the vertex array is bound to
};

/// All objects of one OpenGL context. Every operation needs that context to be current.
class GlDevice {
public:
    /// p_graveyard is told to resources that get objects here.
    explicit GlDevice(std::shared_ptr<Graveyard> p_graveyard);
    GlDevice(GlDevice const&) = delete;
    GlDevice& operator=(GlDevice const&) = delete;

    /// False when the objects are not there, because the context that had them is gone and another one looks like it.
    bool IsIntact() const;
    bool IsCompatibility() const { return _isCompatibility; }
    DeviceFeatures const& Features() const { return _features; }
    std::size_t ObjectCount() const;
    /// What the shapes, textures and buffers of this device take, in bytes.
    std::uint64_t HeldBytes() const { return _heldBytes; }

    /// The shape with its indices for the pipeline; p_bytes grows by what had to be sent.
    GlShape& Shape(PrimitiveBuffer const& p_buffer, Pipeline p_pipeline, std::uint64_t& p_bytes);
    /// The texture with its smaller images, if those are needed. May bind it to the active unit.
    GLuint TextureName(Texture const& p_texture, bool p_needsMipmaps, std::uint64_t& p_bytes);
    GLuint SamplerName(TextureSampling const& p_sampling);
    bool HasProgramOf(Shader const& p_shader) const { return _programs.Knows(p_shader.Id()); }
    GlProgram const& Program(
        Shader const& p_shader, ProgramVariant const& p_variant, std::vector<std::string>& p_errors);

    /// Forgets which vertex array is bound: to be called when others may have bound one.
    void BeginDrawing();
    /// Sends what changes from flush to flush.
    void SendInstances(std::vector<Instance> const& p_instances);
    void SendImmediate(CommandList const& p_list);
    void SendUniforms(std::vector<std::byte> const& p_bytes);
    /// Draw instances of a shape and immediate vertices with the program and the state in force. The shape must have been
    /// asked for with that pipeline.
    void DrawShape(GlShape& p_shape, Pipeline p_pipeline, std::uint32_t p_firstInstance, std::uint32_t p_instances);
    /// p_color is the colour of the draw when its vertices have colours of their own, else nullptr.
    void DrawImmediate(
        Pipeline p_pipeline, std::uint32_t p_firstIndex, std::uint32_t p_indices, Types::Color4f const* p_color);
    void BindUniforms(GLuint p_block, std::size_t p_offset, std::size_t p_size) const;
    std::size_t UniformAlignment() const { return _uniformAlignment; }

    /// Notes resources that are gone; Collect deletes what was made for them.
    void Bury(std::vector<std::uint64_t> const& p_ids) { _dead.insert(_dead.end(), p_ids.begin(), p_ids.end()); }
    void Collect();
    void DeleteAll();

private:
    struct TextureObject {
        GLuint name = 0;
        bool hasMipmaps = false;
        std::uint64_t bytes = 0;
    };
    struct VertexObject {
        GLuint name = 0;
        std::uint64_t bytes = 0;
    };
    /// A buffer whose contents change from flush to flush.
    struct StreamBuffer {
        GLuint name = 0;
        std::uint64_t bytes = 0;
    };

    GLuint MakeImmediateArray(GLuint p_colorLocation) const;
    /// Gives the bytes that were sent.
    std::uint64_t SendTexture(Texture const& p_texture) const;
    template <class T>
    void Stream(GLenum p_target, StreamBuffer& p_buffer, std::vector<T> const& p_values);
    void BindArray(GLuint p_vertexArray);
    void PointAtInstance(std::size_t p_firstInstance) const;
    GLuint VertexName(VertexBuffer const& p_vertices, std::uint64_t& p_bytes);
    void DeleteSamplers();
    void DeleteShape(GlShape const& p_shape);

    std::shared_ptr<Graveyard> _graveyard;
    DeviceFeatures _features;
    bool _isCompatibility = false;
    bool _hasBaseInstance = false; ///< draws can start at an instance (OpenGL 4.2)
    GLuint _boundArray = 0;
    std::size_t _uniformAlignment = 256;
    float _maxAnisotropy = 1;
    GLuint _marker = 0;
    StreamBuffer _instances;
    StreamBuffer _uniforms;
    GLuint _immediateArray = 0; ///< its colours are those of the draw
    GLuint _ownColorsArray = 0; ///< its colours are those of the vertices
    StreamBuffer _immediateVertices;
    StreamBuffer _immediateTexCoords;
    StreamBuffer _immediateStarts;
    StreamBuffer _immediateIndices;
    std::uint64_t _heldBytes = 0;
    GlPrograms _programs;
    std::unordered_map<std::uint64_t, GlShape> _shapes;
    std::unordered_map<std::uint64_t, VertexObject> _vertices;
    std::unordered_map<std::uint64_t, TextureObject> _textures;
    std::vector<std::pair<TextureSampling, GLuint>> _samplers;
    std::vector<std::uint64_t> _dead;
};

} // namespace Qor::Chart::Ogl
