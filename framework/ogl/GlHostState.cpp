#include "framework/ogl/GlHostState.h"

#include <cstdint>

namespace Qor::Chart::Ogl {

namespace {

struct Capability {
    GLenum name;
    bool isCompatibility; ///< exists in the compatibility profile alone
    bool isOn; ///< what the back end takes for granted
};

// Names that only the compatibility profile knows.
constexpr GLenum AlphaTest = 0x0BC0, PolygonStipple = 0x0B42, LineStipple = 0x0B24, PointSmooth = 0x0B10;
constexpr GLenum PointSprite = 0x8861;

constexpr std::array<Capability, 33> Capabilities = {{
    {GL_BLEND, false, false},
    {GL_CULL_FACE, false, false},
    {GL_DEPTH_TEST, false, false},
    {GL_STENCIL_TEST, false, false},
    {GL_SCISSOR_TEST, false, false},
    {GL_PROGRAM_POINT_SIZE, false, true},
    {GL_LINE_SMOOTH, false, false},
    {GL_POLYGON_SMOOTH, false, false},
    {GL_POLYGON_OFFSET_FILL, false, false},
    {GL_POLYGON_OFFSET_LINE, false, false},
    {GL_POLYGON_OFFSET_POINT, false, false},
    {GL_PRIMITIVE_RESTART, false, false},
    {GL_DITHER, false, false},
    {GL_MULTISAMPLE, false, true},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, false, false},
    {GL_SAMPLE_COVERAGE, false, false},
    {GL_COLOR_LOGIC_OP, false, false},
    {GL_RASTERIZER_DISCARD, false, false},
    {GL_FRAMEBUFFER_SRGB, false, false},
    {GL_DEPTH_CLAMP, false, false},
    {GL_CLIP_DISTANCE0, false, false},
    {GL_CLIP_DISTANCE0 + 1, false, false},
    {GL_CLIP_DISTANCE0 + 2, false, false},
    {GL_CLIP_DISTANCE0 + 3, false, false},
    {GL_CLIP_DISTANCE0 + 4, false, false},
    {GL_CLIP_DISTANCE0 + 5, false, false},
    {GL_CLIP_DISTANCE0 + 6, false, false},
    {GL_CLIP_DISTANCE0 + 7, false, false},
    {AlphaTest, true, false},
    {PolygonStipple, true, false},
    {LineStipple, true, false},
    {PointSmooth, true, false},
    {PointSprite, true, true},
}};

GLint Get(GLenum p_name) {
    GLint value = 0;
    glGetIntegerv(p_name, &value);
    return value;
}

GLuint Name(GLint p_value) {
    return static_cast<GLuint>(p_value);
}

void SetCapability(GLenum p_name, bool p_on) {
    p_on ? glEnable(p_name) : glDisable(p_name);
}

} // namespace

void GlHostState::Capture(bool p_compatibility) {
    static_assert(Capabilities.size() == CapabilityCount);
    _compatibility = p_compatibility;
    for (std::size_t i = 0; i < Capabilities.size(); ++i) {
        if (_compatibility || !Capabilities[i].isCompatibility) {
            _capabilities[i] = glIsEnabled(Capabilities[i].name);
        }
    }
    _program = Get(GL_CURRENT_PROGRAM);
    _vertexArray = Get(GL_VERTEX_ARRAY_BINDING);
    _arrayBuffer = Get(GL_ARRAY_BUFFER_BINDING);
    _uniformBuffer = Get(GL_UNIFORM_BUFFER_BINDING);
    for (GLuint i = 0; i < BlockCount; ++i) {
        glGetIntegeri_v(GL_UNIFORM_BUFFER_BINDING, i, &_blocks[i].buffer);
        glGetInteger64i_v(GL_UNIFORM_BUFFER_START, i, &_blocks[i].start);
        glGetInteger64i_v(GL_UNIFORM_BUFFER_SIZE, i, &_blocks[i].size);
    }
    _activeTexture = Get(GL_ACTIVE_TEXTURE);
    for (GLenum i = 0; i < UnitCount; ++i) {
        glActiveTexture(GL_TEXTURE0 + i);
        _units[i] = {Get(GL_TEXTURE_BINDING_2D), Get(GL_SAMPLER_BINDING)};
    }
    glActiveTexture(static_cast<GLenum>(_activeTexture));
    _packBuffer = Get(GL_PIXEL_PACK_BUFFER_BINDING);
    _unpackBuffer = Get(GL_PIXEL_UNPACK_BUFFER_BINDING);
    _packAlignment = Get(GL_PACK_ALIGNMENT);
    _unpackAlignment = Get(GL_UNPACK_ALIGNMENT);
    _packRow = Get(GL_PACK_ROW_LENGTH);
    _unpackRow = Get(GL_UNPACK_ROW_LENGTH);
    _packSkipRows = Get(GL_PACK_SKIP_ROWS);
    _packSkipPixels = Get(GL_PACK_SKIP_PIXELS);
    _unpackSkipRows = Get(GL_UNPACK_SKIP_ROWS);
    _unpackSkipPixels = Get(GL_UNPACK_SKIP_PIXELS);
    glGetIntegerv(GL_VIEWPORT, _viewport.data());
    glGetIntegerv(GL_SCISSOR_BOX, _scissor.data());
    _blendFactors = {Get(GL_BLEND_SRC_RGB), Get(GL_BLEND_DST_RGB), Get(GL_BLEND_SRC_ALPHA), Get(GL_BLEND_DST_ALPHA)};
    _blendEquations = {Get(GL_BLEND_EQUATION_RGB), Get(GL_BLEND_EQUATION_ALPHA)};
    glGetBooleanv(GL_COLOR_WRITEMASK, _colorMask.data());
    glGetFloatv(GL_COLOR_CLEAR_VALUE, _clearColor.data());
    glGetFloatv(GL_DEPTH_RANGE, _depthRange.data());
    glGetFloatv(GL_DEPTH_CLEAR_VALUE, &_clearDepth);
    glGetFloatv(GL_POLYGON_OFFSET_FACTOR, &_offsetFactor);
    glGetFloatv(GL_POLYGON_OFFSET_UNITS, &_offsetUnits);
    glGetFloatv(GL_LINE_WIDTH, &_lineWidth);
    glGetFloatv(GL_POINT_SIZE, &_pointSize);
    _clearStencil = Get(GL_STENCIL_CLEAR_VALUE);
    _depthFunction = Get(GL_DEPTH_FUNC);
    glGetBooleanv(GL_DEPTH_WRITEMASK, &_depthMask);
    _cullFace = Get(GL_CULL_FACE_MODE);
    _frontFace = Get(GL_FRONT_FACE);
    _provokingVertex = Get(GL_PROVOKING_VERTEX);
    _polygonMode[1] = GL_FILL;
    glGetIntegerv(GL_POLYGON_MODE, _polygonMode.data());
    _stencils[0] = {Get(GL_STENCIL_FUNC), Get(GL_STENCIL_REF), Get(GL_STENCIL_VALUE_MASK), Get(GL_STENCIL_WRITEMASK),
        Get(GL_STENCIL_FAIL), Get(GL_STENCIL_PASS_DEPTH_FAIL), Get(GL_STENCIL_PASS_DEPTH_PASS)};
    _stencils[1] = {Get(GL_STENCIL_BACK_FUNC), Get(GL_STENCIL_BACK_REF), Get(GL_STENCIL_BACK_VALUE_MASK),
        Get(GL_STENCIL_BACK_WRITEMASK), Get(GL_STENCIL_BACK_FAIL), Get(GL_STENCIL_BACK_PASS_DEPTH_FAIL),
        Get(GL_STENCIL_BACK_PASS_DEPTH_PASS)};
}

void GlHostState::Neutralise() const {
    for (Capability const& capability : Capabilities) {
        if (_compatibility || !capability.isCompatibility) {
            SetCapability(capability.name, capability.isOn);
        }
    }
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    for (GLenum const name : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS, GL_UNPACK_ROW_LENGTH,
             GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_PIXELS}) {
        glPixelStorei(name, 0);
    }
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    for (GLuint i = 0; i < UnitCount; ++i) {
        glBindSampler(i, 0);
    }
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glLineWidth(1);
    glProvokingVertex(GL_LAST_VERTEX_CONVENTION);
}

void GlHostState::Restore() const {
    for (std::size_t i = 0; i < Capabilities.size(); ++i) {
        if (_compatibility || !Capabilities[i].isCompatibility) {
            SetCapability(Capabilities[i].name, _capabilities[i] != GL_FALSE);
        }
    }
    glUseProgram(Name(_program));
    glBindVertexArray(Name(_vertexArray));
    glBindBuffer(GL_ARRAY_BUFFER, Name(_arrayBuffer));
    for (GLuint i = 0; i < BlockCount; ++i) {
        Block const& block = _blocks[i];
        if (block.size > 0) {
            glBindBufferRange(GL_UNIFORM_BUFFER, i, Name(block.buffer), static_cast<GLintptr>(block.start),
                static_cast<GLsizeiptr>(block.size));
        } else {
            glBindBufferBase(GL_UNIFORM_BUFFER, i, Name(block.buffer));
        }
    }
    glBindBuffer(GL_UNIFORM_BUFFER, Name(_uniformBuffer));
    for (GLuint i = 0; i < UnitCount; ++i) {
        glActiveTexture(GL_TEXTURE0 + i);
        glBindTexture(GL_TEXTURE_2D, Name(_units[i].texture));
        glBindSampler(i, Name(_units[i].sampler));
    }
    glActiveTexture(static_cast<GLenum>(_activeTexture));
    glBindBuffer(GL_PIXEL_PACK_BUFFER, Name(_packBuffer));
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, Name(_unpackBuffer));
    glPixelStorei(GL_PACK_ALIGNMENT, _packAlignment);
    glPixelStorei(GL_UNPACK_ALIGNMENT, _unpackAlignment);
    glPixelStorei(GL_PACK_ROW_LENGTH, _packRow);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, _unpackRow);
    glPixelStorei(GL_PACK_SKIP_ROWS, _packSkipRows);
    glPixelStorei(GL_PACK_SKIP_PIXELS, _packSkipPixels);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, _unpackSkipRows);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, _unpackSkipPixels);
    glViewport(_viewport[0], _viewport[1], _viewport[2], _viewport[3]);
    glScissor(_scissor[0], _scissor[1], _scissor[2], _scissor[3]);
    glBlendFuncSeparate(Name(_blendFactors[0]), Name(_blendFactors[1]), Name(_blendFactors[2]), Name(_blendFactors[3]));
    glBlendEquationSeparate(Name(_blendEquations[0]), Name(_blendEquations[1]));
    glColorMask(_colorMask[0], _colorMask[1], _colorMask[2], _colorMask[3]);
    glClearColor(_clearColor[0], _clearColor[1], _clearColor[2], _clearColor[3]);
    glDepthRange(static_cast<GLdouble>(_depthRange[0]), static_cast<GLdouble>(_depthRange[1]));
    glClearDepth(static_cast<GLdouble>(_clearDepth));
    glPolygonOffset(_offsetFactor, _offsetUnits);
    glLineWidth(_lineWidth);
    glPointSize(_pointSize);
    glClearStencil(_clearStencil);
    glDepthFunc(Name(_depthFunction));
    glDepthMask(_depthMask);
    glCullFace(Name(_cullFace));
    glFrontFace(Name(_frontFace));
    glProvokingVertex(Name(_provokingVertex));
    if (_compatibility && _polygonMode[0] != _polygonMode[1]) {
        glPolygonMode(GL_FRONT, Name(_polygonMode[0]));
        glPolygonMode(GL_BACK, Name(_polygonMode[1]));
    } else {
        glPolygonMode(GL_FRONT_AND_BACK, Name(_polygonMode[0]));
    }
    constexpr std::array<GLenum, 2> faces = {GL_FRONT, GL_BACK};
    for (std::size_t i = 0; i < faces.size(); ++i) {
        Stencil const& stencil = _stencils[i];
        glStencilFuncSeparate(faces[i], Name(stencil.function), stencil.reference, Name(stencil.valueMask));
        glStencilMaskSeparate(faces[i], Name(stencil.writeMask));
        glStencilOpSeparate(faces[i], Name(stencil.fail), Name(stencil.depthFail), Name(stencil.depthPass));
    }
}

} // namespace Qor::Chart::Ogl
