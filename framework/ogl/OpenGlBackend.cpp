#include "framework/ogl/OpenGlBackend.h"

#include "framework/ogl/Context.h"
#include "framework/ogl/GlDevice.h"
#include "framework/ogl/GlHostState.h"
#include "framework/ogl/GlUniforms.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <optional>
#include <unordered_map>
#include <utility>

namespace Qor::Chart::Ogl {

namespace {

constexpr int RequiredVersion = 33;
constexpr GLuint SceneBlock = 0;
constexpr GLuint DrawBlock = 1;
constexpr GLuint TextureBlock = 2;

/// Walks along the states of a command list and tells which groups change on the way.
class StateCursor {
public:
    explicit StateCursor(CommandList const& p_list) : _list(p_list) {}

    /// All groups the first time.
    StateMask MoveTo(std::uint32_t p_index) {
        StateKey const& next = _list.states[p_index];
        StateMask changed = 0;
        constexpr std::size_t block = 8; // most states differ in a group or two
        for (std::size_t first = 0; first < StateItem::Count; first += block) {
            std::size_t const end = std::min(first + block, std::size_t(StateItem::Count));
            std::size_t const bytes = (end - first) * sizeof(next.version[0]);
            if (!_started || std::memcmp(&next.version[first], &_key.version[first], bytes) != 0) {
                changed |= Take(next, first, end);
            }
        }
        _changedEnables = _started ? _key.enables ^ next.enables : EnableBit::All;
        _state.enables = next.enables;
        _key = next;
        _started = true;
        return changed;
    }
    State const& Current() const { return _state; }
    EnableBit::Type ChangedEnables() const { return _changedEnables; }

private:
    StateMask Take(StateKey const& p_next, std::size_t p_first, std::size_t p_end) {
        StateMask taken = 0;
        for (std::size_t item = p_first; item < p_end; ++item) {
            std::uint32_t const version = p_next.version[item];
            if (version != StateKey::NoVersion && (!_started || version != _key.version[item])) {
                std::memcpy(_state.Item(item), _list.Version(item, version), State::ItemSize(item));
                taken |= StateBit(item);
            }
        }
        return taken;
    }

    CommandList const& _list;
    State _state;
    StateKey _key;
    EnableBit::Type _changedEnables = EnableBit::All;
    bool _started = false;
};

/// The uniform blocks of all states of a list, in one piece.
class UniformStream {
public:
    static constexpr std::size_t None = std::size_t(-1); ///< nothing is textured

    struct Offsets {
        std::size_t scene = 0;
        std::size_t draw = 0;
        std::size_t textures = None;
    };

    void Fill(CommandList const& p_list, std::size_t p_alignment) {
        _bytes.clear();
        _offsets.clear();
        StateCursor cursor(p_list);
        Offsets offsets;
        std::size_t textures = None;
        for (std::uint32_t i = 0; i < p_list.states.size(); ++i) {
            StateMask const changed = cursor.MoveTo(i);
            if ((changed & SceneItems) != 0 || i == 0) {
                offsets.scene = Append(MakeSceneUniforms(cursor.Current()), p_alignment);
            }
            if ((changed & DrawItems) != 0 || (cursor.ChangedEnables() & DrawEnables) != 0 || i == 0) {
                offsets.draw = Append(MakeDrawUniforms(cursor.Current()), p_alignment);
            }
            if ((changed & TextureItems) != 0 || (cursor.ChangedEnables() & EnableBit::Textures) != 0) {
                textures = None;
            }
            bool const isTextured = cursor.Current().UsedTextureUnits() != 0;
            if (isTextured && textures == None) {
                textures = Append(MakeTextureUniforms(cursor.Current()), p_alignment);
            }
            offsets.textures = isTextured ? textures : None;
            _offsets.push_back(offsets);
        }
    }
    std::vector<std::byte> const& Bytes() const { return _bytes; }
    Offsets const& At(std::uint32_t p_state) const { return _offsets[p_state]; }

private:
    template <class T>
    std::size_t Append(T const& p_block, std::size_t p_alignment) {
        std::size_t const offset = (_bytes.size() + p_alignment - 1) / p_alignment * p_alignment;
        _bytes.resize(offset + sizeof(T));
        std::memcpy(_bytes.data() + offset, &p_block, sizeof(T));
        return offset;
    }

    std::vector<std::byte> _bytes;
    std::vector<Offsets> _offsets;
};

void SetCapability(GLenum p_name, bool p_on) {
    p_on ? glEnable(p_name) : glDisable(p_name);
}

/// Sets what OpenGL itself does with fragments; everything else goes to the programs.
void ApplyState(State const& p_state, StateMask p_changed, EnableBit::Type p_changedEnables) {
    auto const has = [p_changed](std::size_t p_item) { return (p_changed & StateBit(p_item)) != 0; };
    auto const toggles = [&](EnableBit::Type p_bit, GLenum p_name) {
        if ((p_changedEnables & p_bit) != 0) {
            SetCapability(p_name, p_state.IsEnabled(p_bit));
        }
    };
    toggles(EnableBit::DepthTest, GL_DEPTH_TEST);
    toggles(EnableBit::StencilTest, GL_STENCIL_TEST);
    toggles(EnableBit::Blend, GL_BLEND);
    for (GLenum i = 0; i < ClipPlaneCount; ++i) {
        toggles(EnableBit::ClipPlane0 << i, GL_CLIP_DISTANCE0 + i);
    }
    if (has(StateItem::Viewport)) {
        PixelRectangle const& r = p_state.viewport.rectangle;
        glViewport(r.x, r.y, r.width, r.height);
        glDepthRange(
            static_cast<GLdouble>(p_state.viewport.nearDepth), static_cast<GLdouble>(p_state.viewport.farDepth));
    }
    if (has(StateItem::Scissor) || (p_changedEnables & EnableBit::ScissorTest) != 0) {
        bool const isOn = p_state.IsEnabled(EnableBit::ScissorTest) && p_state.scissor.defined != 0;
        SetCapability(GL_SCISSOR_TEST, isOn);
        PixelRectangle const& r = p_state.scissor.box;
        glScissor(r.x, r.y, r.width, r.height);
    }
    if (has(StateItem::Depth)) {
        glDepthFunc(p_state.depth.function);
        glDepthMask(p_state.depth.mask != 0 ? GL_TRUE : GL_FALSE);
        glClearDepth(static_cast<GLdouble>(p_state.depth.clearValue));
    }
    if (has(StateItem::Stencil)) {
        StencilState const& s = p_state.stencil;
        glStencilFunc(s.function, s.reference, s.valueMask);
        glStencilMask(s.writeMask);
        glStencilOp(s.fail, s.depthFail, s.depthPass);
        glClearStencil(s.clearValue);
    }
    if (has(StateItem::ColorBuffer)) {
        ColorBufferState const& c = p_state.colorBuffer;
        auto const channel = [&c](std::size_t p_index) { return static_cast<GLboolean>(c.mask[p_index] != 0); };
        glBlendFunc(c.sourceFactor, c.destinationFactor);
        glBlendEquation(c.equation);
        glColorMask(channel(0), channel(1), channel(2), channel(3));
        glClearColor(c.clearColor.red, c.clearColor.green, c.clearColor.blue, c.clearColor.alpha);
    }
    if (has(StateItem::Polygon)) {
        glFrontFace(p_state.polygon.frontFace);
        glPolygonOffset(p_state.polygon.offsetFactor, p_state.polygon.offsetUnits);
    }
    if (has(StateItem::CurrentVertex)) {
        auto const& normal = p_state.currentVertex.normal;
        glVertexAttrib3f(AttributeLocation::Normal, normal.x, normal.y, normal.z);
        for (GLuint i = 0; i < TextureUnitCount; ++i) {
            auto const& t = p_state.currentVertex.texCoords[i];
            glVertexAttrib4f(AttributeLocation::TexCoord0 + i, t.x, t.y, t.z, t.w);
        }
    }
}

ProgramVariant VariantOf(Command const& p_command, State const& p_state) {
    ProgramVariant variant;
    Pipeline const pipeline = p_command.pipeline;
    bool const isPolygon = pipeline != Pipeline::Points && pipeline != Pipeline::Lines;
    bool const isLine = pipeline == Pipeline::Lines || pipeline == Pipeline::Edges;
    variant.pipeline = pipeline;
    variant.immediate = p_command.kind == Command::Kind::Immediate;
    variant.normals = p_command.hasNormals;
    variant.colors = p_command.hasColors;
    variant.lighting = p_state.IsEnabled(EnableBit::Lighting);
    variant.twoSide = isPolygon && variant.lighting && p_state.lightModel.twoSide != 0;
    variant.flat = p_state.lightModel.shadeModel == Tokens::AGL_FLAT;
    variant.units = static_cast<std::uint8_t>(p_state.UsedTextureUnits());
    for (std::size_t i = 0; i < variant.units; ++i) {
        variant.combined |= p_state.IsTextured(i) && p_state.textures[i].environment == Tokens::AGL_COMBINE;
    }
    variant.clipped = p_state.IsEnabled(EnableBit::ClipPlanes);
    variant.stippled =
        isLine ? p_state.IsLineStippled() : IsFilled(pipeline) && p_state.IsEnabled(EnableBit::PolygonStipple);
    variant.offset = (pipeline == Pipeline::Edges && p_state.IsEnabled(EnableBit::OffsetLine)) ||
        (pipeline == Pipeline::Corners && p_state.IsEnabled(EnableBit::OffsetPoint));
    variant.smooth = isLine ? p_state.IsEnabled(EnableBit::LineSmooth)
                            : !IsFilled(pipeline) && p_state.IsEnabled(EnableBit::PointSmooth);
    variant.expanded = isLine && (variant.smooth || std::floor(p_state.line.width + 0.5F) > 1);
    // Plain lines do with the program of triangles: changing programs costs more than a draw.
    if (pipeline == Pipeline::Lines && !variant.expanded && !variant.stippled) {
        variant.pipeline = Pipeline::Triangles;
    }
    return variant;
}

/// Has the right program in use, and tells it and OpenGL which faces to draw; calls OpenGL only for what differs from the
/// command before.
class ProgramCursor {
public:
    /// False when there is nothing to draw with.
    bool Use(GlDevice& p_device, Command const& p_command, State const& p_state, std::vector<std::string>& p_errors) {
        ProgramVariant const variant = VariantOf(p_command, p_state);
        if (_program == nullptr || p_command.shader != _shader || variant.Key() != _key) {
            _program = &p_device.Program(*p_command.shader, variant, p_errors);
            _shader = p_command.shader;
            _key = variant.Key();
            _faces = -1;
            _triangles = -1;
            glUseProgram(_program->name);
        }
        bool const isClockwise = p_state.polygon.frontFace == Tokens::AGL_CW;
        int const faces = p_command.faces | (isClockwise ? 4 : 0);
        if (_faces != faces && _program->faces >= 0) {
            glUniform1i(_program->faces, faces);
            _faces = faces;
        }
        if (p_command.pipeline == Pipeline::BackThenFront) {
            SetTriangles(p_command.buffer->Assembled(p_command.pipeline).size() / 6);
        }
        Cull(p_command);
        Offset(IsFilled(p_command.pipeline) && p_state.IsEnabled(EnableBit::OffsetFill));
        return _program->name != 0;
    }

private:
    void SetTriangles(std::size_t p_count) {
        auto const count = static_cast<GLint>(p_count);
        if (_triangles != count) {
            glUniform1i(_program->triangles, count);
            _triangles = count;
        }
    }

    /// Outlines and corners choose their faces themselves.
    void Cull(Command const& p_command) {
        int const culled = IsFilled(p_command.pipeline) ? FaceBit::Both & ~p_command.faces : 0;
        if (culled == _culled) {
            return;
        }
        SetCapability(GL_CULL_FACE, culled != 0);
        if (culled != 0) {
            glCullFace(culled == FaceBit::Front ? GL_FRONT : GL_BACK);
        }
        _culled = culled;
    }

    /// Outlines and corners are moved by their program, and lines that are drawn as areas not at all.
    void Offset(bool p_isOn) {
        if (_isOffset != p_isOn) {
            SetCapability(GL_POLYGON_OFFSET_FILL, p_isOn);
            _isOffset = p_isOn;
        }
    }

    GlProgram const* _program = nullptr;
    Shader const* _shader = nullptr;
    std::uint32_t _key = 0;
    int _faces = -1;
    GLint _triangles = -1;
    int _culled = -1;
    std::optional<bool> _isOffset;
};

std::string DescribeError(GLenum p_error) {
    switch (p_error) {
    case GL_INVALID_ENUM:
        return "an invalid constant";
    case GL_INVALID_VALUE:
        return "an invalid value";
    case GL_INVALID_OPERATION:
        return "an invalid operation";
    case GL_INVALID_FRAMEBUFFER_OPERATION:
        return "that the target that is bound is incomplete";
    case GL_OUT_OF_MEMORY:
        return "that it is out of memory";
    default:
        return "the error " + std::to_string(p_error);
    }
}

} // namespace

class OpenGlBackend::Impl {
public:
    void BeginFrame();
    void EndFrame();
    void Execute(CommandList const& p_list, Statistics& p_statistics);
    void Prepare(Shader const& p_shader);
    QImage ReadPixels(PixelRectangle const& p_rectangle);
    DeviceFeatures const& Features();
    void TakeErrors(std::vector<std::string>& p_errors);
    void Release();
    std::size_t ObjectCount() const { return _device == nullptr ? 0 : _device->ObjectCount(); }

private:
    /// Lets p_use have the device of the current context, with OpenGL in the state that the back end takes for granted and
    /// the host's put back afterwards, unless a frame has that already. Without a usable context nothing happens.
    template <class Use>
    void WithDevice(Use const& p_use);
    bool Activate(bool p_report);
    void CollectGarbage();
    void CollectErrors(char const* p_while);
    void Complain(std::string p_sentence);

    void Run(CommandList const& p_list, Statistics& p_statistics);
    void BindTextures(CommandList const& p_list, State const& p_state, Statistics& p_statistics);
    void Draw(CommandList const& p_list, Command const& p_command, Statistics& p_statistics);
    QImage Read(PixelRectangle const& p_rectangle);
    QImage ReadResolved(PixelRectangle const& p_rectangle);

    std::shared_ptr<Graveyard> _graveyard = std::make_shared<Graveyard>();
    std::unordered_map<void const*, std::unique_ptr<GlDevice>> _devices;
    GlDevice* _device = nullptr;
    void const* _identity = nullptr;
    GlHostState _host;
    bool _inFrame = false;
    std::string _lastComplaint;
    std::vector<std::string> _errors;
    std::vector<std::uint64_t> _buried;
    UniformStream _uniforms;
    DeviceFeatures _noFeatures;
};

// The same complaint is made once, not once per flush, until things are well again.
void OpenGlBackend::Impl::Complain(std::string p_sentence) {
    if (p_sentence != _lastComplaint) {
        _errors.push_back(p_sentence);
        _lastComplaint = std::move(p_sentence);
    }
}

bool OpenGlBackend::Impl::Activate(bool p_report) {
    auto const fail = [&](std::string p_sentence) {
        _device = nullptr;
        _identity = nullptr;
        if (p_report) {
            Complain(std::move(p_sentence));
        }
        return false;
    };
    void const* const identity = Context::CurrentIdentity();
    if (identity == nullptr) {
        return fail("No OpenGL context is current on this thread, so nothing is drawn; make one current first.");
    }
    auto found = _devices.find(identity);
    if (found != _devices.end() && !found->second->IsIntact()) {
        _devices.erase(found);
        found = _devices.end();
    }
    if (found == _devices.end()) {
        if (!epoxy_is_desktop_gl() || epoxy_gl_version() < RequiredVersion) {
            return fail("The current OpenGL context is too old, so nothing is drawn; it takes OpenGL 3.3 or later.");
        }
        found = _devices.emplace(identity, std::make_unique<GlDevice>(_graveyard)).first;
    }
    _device = found->second.get();
    _identity = identity;
    _lastComplaint.clear();
    return true;
}

template <class Use>
void OpenGlBackend::Impl::WithDevice(Use const& p_use) {
    if (_inFrame) {
        if (_device != nullptr && Context::CurrentIdentity() == _identity) {
            p_use();
        } else if (_device != nullptr) {
            Complain("Another OpenGL context was made current during a frame, so the rest of the frame is not drawn.");
        }
        return;
    }
    if (!Activate(true)) {
        return;
    }
    CollectErrors("before drawing (by the host)");
    _host.Capture(_device->IsCompatibility());
    _host.Neutralise();
    CollectGarbage();
    p_use();
    _host.Restore();
}

void OpenGlBackend::Impl::BeginFrame() {
    _inFrame = true;
    if (Activate(true)) {
        CollectErrors("before the frame (by the host)");
        _host.Capture(_device->IsCompatibility());
        _host.Neutralise();
        CollectGarbage();
    }
}

void OpenGlBackend::Impl::EndFrame() {
    if (_device != nullptr && Context::CurrentIdentity() == _identity) {
        _host.Restore();
    }
    _inFrame = false;
}

void OpenGlBackend::Impl::CollectGarbage() {
    _buried.clear();
    _graveyard->Empty(_buried);
    if (!_buried.empty()) {
        for (auto const& [identity, device] : _devices) {
            device->Bury(_buried);
        }
    }
    _device->Collect();
}

void OpenGlBackend::Impl::CollectErrors(char const* p_while) {
    constexpr int most = 8;
    for (int i = 0; i < most; ++i) {
        GLenum const error = glGetError();
        if (error == GL_NO_ERROR) {
            return;
        }
        _errors.push_back("OpenGL reports " + DescribeError(error) + " " + p_while + ".");
    }
}

void OpenGlBackend::Impl::Execute(CommandList const& p_list, Statistics& p_statistics) {
    WithDevice([&] {
        Run(p_list, p_statistics);
        p_statistics.heldBytes = _device->HeldBytes();
        CollectErrors("while drawing");
    });
}

void OpenGlBackend::Impl::Run(CommandList const& p_list, Statistics& p_statistics) {
    _device->BeginDrawing();
    _uniforms.Fill(p_list, _device->UniformAlignment());
    _device->SendUniforms(_uniforms.Bytes());
    if (!p_list.instances.empty()) {
        _device->SendInstances(p_list.instances);
    }
    if (!p_list.indices.empty()) {
        _device->SendImmediate(p_list);
    }
    p_statistics.bufferBytes += _uniforms.Bytes().size() + p_list.instances.size() * sizeof(Instance) +
        p_list.vertices.size() * sizeof(ImmediateVertex) + p_list.texCoords.size() * sizeof(ImmediateTexCoords) +
        p_list.stippleStarts.size() * sizeof(float) + p_list.indices.size() * sizeof(std::uint32_t);

    StateCursor cursor(p_list);
    std::optional<std::uint32_t> state;
    UniformStream::Offsets bound;
    bool isFirst = true;
    ProgramCursor programs;
    for (Command const& command : p_list.commands) {
        if (state != command.state) {
            StateMask const changed = cursor.MoveTo(command.state);
            EnableBit::Type const changedEnables = cursor.ChangedEnables();
            ApplyState(cursor.Current(), changed, changedEnables);
            UniformStream::Offsets const& offsets = _uniforms.At(command.state);
            if (isFirst || offsets.scene != bound.scene) {
                _device->BindUniforms(SceneBlock, offsets.scene, sizeof(SceneUniforms));
            }
            if (isFirst || offsets.draw != bound.draw) {
                _device->BindUniforms(DrawBlock, offsets.draw, sizeof(DrawUniforms));
            }
            if (offsets.textures != UniformStream::None && offsets.textures != bound.textures) {
                _device->BindUniforms(TextureBlock, offsets.textures, sizeof(TextureUniforms));
                BindTextures(p_list, cursor.Current(), p_statistics);
            }
            p_statistics.stateChanges +=
                static_cast<std::uint64_t>(isFirst ? 0 : std::popcount(changed) + std::popcount(changedEnables));
            bound = offsets;
            state = command.state;
            isFirst = false;
        }
        if (command.kind == Command::Kind::Clear) {
            glClear(command.clearMask);
            continue;
        }
        if (programs.Use(*_device, command, cursor.Current(), _errors)) {
            Draw(p_list, command, p_statistics);
        }
    }
}

void OpenGlBackend::Impl::BindTextures(CommandList const& p_list, State const& p_state, Statistics& p_statistics) {
    for (GLenum i = 0; i < TextureUnitCount; ++i) {
        TextureUnitState const& unit = p_state.textures[i];
        Texture const* const texture = p_state.IsTextured(i) ? p_list.FindTexture(unit.texture) : nullptr;
        if (texture == nullptr) {
            continue;
        }
        bool const hasSampling = unit.hasSampling != 0;
        bool const needsMipmaps = hasSampling && unit.sampling.NeedsMipmaps();
        glActiveTexture(GL_TEXTURE0 + i);
        glBindTexture(GL_TEXTURE_2D, _device->TextureName(*texture, needsMipmaps, p_statistics.bufferBytes));
        glBindSampler(i, hasSampling ? _device->SamplerName(unit.sampling) : 0);
    }
}

void OpenGlBackend::Impl::Draw(CommandList const& p_list, Command const& p_command, Statistics& p_statistics) {
    auto const perPrimitive = static_cast<std::uint64_t>(IndicesPerPrimitive(p_command.pipeline));
    ++p_statistics.drawCalls;
    if (p_command.kind == Command::Kind::Immediate) {
        Types::Color4f const* const color =
            p_command.hasColors ? &p_list.instances[p_command.colorInstance].color : nullptr;
        _device->DrawImmediate(p_command.pipeline, p_command.first, p_command.count, color);
        ++p_statistics.instances;
        CountPrimitives(p_command, p_command.count / perPrimitive, p_statistics);
        return;
    }
    GlShape& shape = _device->Shape(*p_command.buffer, p_command.pipeline, p_statistics.bufferBytes);
    _device->DrawShape(shape, p_command.pipeline, p_command.first, p_command.count);
    auto const indices = static_cast<std::uint64_t>(shape.counts[static_cast<std::size_t>(p_command.pipeline)]);
    p_statistics.instances += p_command.count;
    CountPrimitives(p_command, p_command.count * (indices / perPrimitive), p_statistics);
}

void OpenGlBackend::Impl::Prepare(Shader const& p_shader) {
    bool const isUsable = _inFrame ? _device != nullptr && Context::CurrentIdentity() == _identity : Activate(false);
    if (!isUsable || _device->HasProgramOf(p_shader)) {
        return;
    }
    GLint program = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    ProgramVariant variant;
    variant.normals = true;
    _device->Program(p_shader, variant, _errors);
    glUseProgram(static_cast<GLuint>(program));
}

QImage OpenGlBackend::Impl::ReadPixels(PixelRectangle const& p_rectangle) {
    QImage image;
    WithDevice([&] {
        GLint samples = 0;
        glGetIntegerv(GL_SAMPLE_BUFFERS, &samples);
        image = samples > 0 ? ReadResolved(p_rectangle) : Read(p_rectangle);
        CollectErrors("while reading pixels");
    });
    return image;
}

QImage OpenGlBackend::Impl::Read(PixelRectangle const& p_rectangle) {
    QImage image(p_rectangle.width, p_rectangle.height, QImage::Format_RGBA8888);
    if (image.isNull()) {
        return image;
    }
    image.fill(Qt::transparent);
    glReadPixels(
        p_rectangle.x, p_rectangle.y, p_rectangle.width, p_rectangle.height, GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    return image.mirrored();
}

// Pixels with several samples are averaged into a picture of their own, which can be read.
QImage OpenGlBackend::Impl::ReadResolved(PixelRectangle const& p_rectangle) {
    GLint drawTarget = 0;
    GLint readTarget = 0;
    GLint previous = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawTarget);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &readTarget);
    glGetIntegerv(GL_RENDERBUFFER_BINDING, &previous);
    GLuint colors = 0;
    GLuint target = 0;
    int const right = p_rectangle.x + p_rectangle.width;
    int const top = p_rectangle.y + p_rectangle.height;
    glGenRenderbuffers(1, &colors);
    glBindRenderbuffer(GL_RENDERBUFFER, colors);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, right, top);
    glGenFramebuffers(1, &target);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, target);
    glFramebufferRenderbuffer(GL_DRAW_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, colors);
    glDisable(GL_SCISSOR_TEST);
    glBlitFramebuffer(p_rectangle.x, p_rectangle.y, right, top, p_rectangle.x, p_rectangle.y, right, top,
        GL_COLOR_BUFFER_BIT, GL_NEAREST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, target);
    QImage image = Read(p_rectangle);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(drawTarget));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(readTarget));
    glBindRenderbuffer(GL_RENDERBUFFER, static_cast<GLuint>(previous));
    glDeleteFramebuffers(1, &target);
    glDeleteRenderbuffers(1, &colors);
    return image;
}

DeviceFeatures const& OpenGlBackend::Impl::Features() {
    bool const isUsable = _inFrame ? _device != nullptr : Activate(false);
    return isUsable ? _device->Features() : _noFeatures;
}

void OpenGlBackend::Impl::TakeErrors(std::vector<std::string>& p_errors) {
    p_errors.insert(p_errors.end(), std::make_move_iterator(_errors.begin()), std::make_move_iterator(_errors.end()));
    _errors.clear();
}

void OpenGlBackend::Impl::Release() {
    if (Context::CurrentIdentity() == nullptr || !Activate(false)) {
        return;
    }
    _device->DeleteAll();
    _devices.erase(_identity);
    _device = nullptr;
    _identity = nullptr;
}

OpenGlBackend::OpenGlBackend() : _impl(std::make_unique<Impl>()) {}

OpenGlBackend::~OpenGlBackend() {
    _impl->Release();
}

void OpenGlBackend::BeginFrame() {
    _impl->BeginFrame();
}

void OpenGlBackend::EndFrame() {
    _impl->EndFrame();
}

void OpenGlBackend::Execute(CommandList const& p_commands, Statistics& p_statistics) {
    _impl->Execute(p_commands, p_statistics);
}

void OpenGlBackend::Prepare(Shader const& p_shader) {
    _impl->Prepare(p_shader);
}

QImage OpenGlBackend::ReadPixels(PixelRectangle const& p_rectangle) {
    return _impl->ReadPixels(p_rectangle);
}

DeviceFeatures const& OpenGlBackend::Features() {
    return _impl->Features();
}

void OpenGlBackend::TakeErrors(std::vector<std::string>& p_errors) {
    _impl->TakeErrors(p_errors);
}

void OpenGlBackend::Release() {
    _impl->Release();
}

std::size_t OpenGlBackend::DeviceObjectCount() const {
    return _impl->ObjectCount();
}

} // namespace Qor::Chart::Ogl
