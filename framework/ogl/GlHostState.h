#pragma once

#include "framework/ogl/State.h"

#include <epoxy/gl.h>

#include <array>

namespace Qor::Chart::Ogl {

/// Whatever of the OpenGL state the OpenGL back end changes while it draws: read from the context when it begins, put back
/// when it ends. Needs a current context.
class GlHostState {
public:
    /// p_compatibility: the context still has the fixed-function stages, which must be off while shaders draw.
    void Capture(bool p_compatibility);
    /// Sets what the back end takes for granted and never changes while it draws.
    void Neutralise() const;
    void Restore() const;

private:
    static constexpr std::size_t CapabilityCount = 33;
    static constexpr std::size_t UnitCount = TextureUnitCount;
    static constexpr std::size_t BlockCount = 3;

    struct Stencil {
        GLint function = 0, reference = 0, valueMask = 0, writeMask = 0, fail = 0, depthFail = 0, depthPass = 0;
    };
    struct Unit {
        GLint texture = 0, sampler = 0;
    };
    struct Block {
        GLint buffer = 0;
        GLint64 start = 0, size = 0;
    };

    bool _compatibility = false;
    std::array<GLboolean, CapabilityCount> _capabilities{};
    GLint _program = 0, _vertexArray = 0, _arrayBuffer = 0, _uniformBuffer = 0, _activeTexture = 0;
    GLint _packBuffer = 0, _unpackBuffer = 0, _packAlignment = 4, _unpackAlignment = 4, _packRow = 0, _unpackRow = 0;
    GLint _packSkipRows = 0, _packSkipPixels = 0, _unpackSkipRows = 0, _unpackSkipPixels = 0;
    std::array<Unit, UnitCount> _units;
    std::array<Block, BlockCount> _blocks;
    std::array<GLint, 4> _viewport{}, _scissor{};
    std::array<GLint, 4> _blendFactors{};
    std::array<GLint, 2> _blendEquations{};
    std::array<GLboolean, 4> _colorMask{};
    std::array<GLfloat, 4> _clearColor{};
    std::array<GLfloat, 2> _depthRange{};
    GLfloat _offsetFactor = 0, _offsetUnits = 0;
    GLfloat _clearDepth = 1, _lineWidth = 1, _pointSize = 1;
    GLint _clearStencil = 0, _depthFunction = 0, _cullFace = 0, _frontFace = 0, _provokingVertex = 0;
    std::array<GLint, 2> _polygonMode{};
    GLboolean _depthMask = GL_TRUE;
    std::array<Stencil, 2> _stencils;
};

} // namespace Qor::Chart::Ogl
