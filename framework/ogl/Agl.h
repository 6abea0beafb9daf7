#pragma once

#include "framework/Export.h"
#include "framework/assets/FontFile.h"
#include "framework/ogl/Backend.h"
#include "framework/ogl/CommandList.h"
#include "framework/ogl/DeferredDraws.h"
#include "framework/ogl/DeviceFeatures.h"
#include "framework/ogl/GenericShader.h"
#include "framework/ogl/PrimitiveBuffer.h"
#include "framework/ogl/StackDepths.h"
#include "framework/ogl/State.h"
#include "framework/ogl/Statistics.h"
#include "framework/ogl/Texture.h"
#include "framework/ogl/Tokens.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Matrix4.h"
#include "framework/types/Vector3.h"
#include "framework/types/Vector4.h"
#include "framework/types/Viewport.h"

#include <QColor>
#include <QImage>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Qor::Chart::Types {
struct TextureUnit;
}

namespace Qor::Chart::Ogl {

class GlyphAtlas;
class HitDetect;
class Text;

/// The fixed-function interface of OpenGL on top of a back end that knows nothing of it. It keeps the whole state in its
/// own memory: pushing, popping, setting and reading never calls OpenGL and costs nanoseconds; stacks have no limit. Draws
/// are recorded, and consecutive draws of one shape that differ in nothing but transformation and colour are merged into
/// one; order is kept exactly. Commands reach the back end at the end of a frame, before anything that must see pixels
/// (`ReadPixels`, `CheckError`), and when enough have gathered.
///
///     Ogl::Agl agl(std::make_unique<Ogl::OpenGlBackend>());
///     Utility::Scoped<Ogl::Agl> scope{Utility::Unscoped<Ogl::Agl>(agl)};
///     scope->BeginFrame();
///     scope->Enable(AGL_DEPTH_TEST);
///     ...
///     scope->EndFrame();
///
/// Operations have the meaning of the OpenGL 2.1 functions of the same name; matrices take column vectors, angles are
/// degrees, colours are 0 to 1 and not premultiplied, windows have their origin in the lower left corner. A wrong constant,
/// an unbalanced pop or a call that is not allowed between Begin and End changes nothing and is put into words for
/// `CheckError`. Not thread-safe: use it on the thread that owns the context.
class QOR_FRAMEWORK_API Agl {
public:
    using Vector3 = Types::Vector3_Base<double>;
    using Vector4 = Types::Vector4_Base<double>;
    using Box = Types::BoundingBox_Base<double>;

    explicit Agl(std::unique_ptr<Backend> p_backend);
    ~Agl();
    Agl(Agl const&) = delete;
    Agl& operator=(Agl const&) = delete;

    /// Tells this one from all others that this process ever had; never 0.
    std::uint64_t Id() const { return _id; }

    /// Called by `Utility::Scoped<Agl>`. Scopes nest and cost nothing.
    void EnterScope() noexcept { ++_scopeDepth; }
    void LeaveScope() noexcept { --_scopeDepth; }

    /// \name Frames
    /// Between BeginFrame and EndFrame the back end has the device for itself; EndFrame draws what is recorded and leaves
    /// the device as BeginFrame found it. Stacks that are deeper or shallower at the end than at the beginning are reported
    /// and brought back.
    /// @{
    void BeginFrame();
    void EndFrame();
    /// Draws what is recorded. Needed before foreign OpenGL calls that must see it.
    void Flush();
    /// Draws what is recorded and gives all errors since the last call as sentences, one a line; they go to the log too.
    /// Empty when all is well.
    std::string CheckError();
    /// @}

    /// \name Matrices
    /// @{
    /// AGL_MODELVIEW, AGL_PROJECTION or AGL_TEXTURE (the stack of the active texture unit).
    void MatrixMode(Token p_mode);
    void LoadIdentity();
    void LoadMatrix(Types::Matrix4 const& p_matrix);
    /// Multiplies on the right: what is applied to vertices first is p_matrix.
    void MultMatrix(Types::Matrix4 const& p_matrix);
    void PushMatrix();
    void PopMatrix();
    void Translate(Vector3 const& p_offset);
    void Translate(double p_x, double p_y, double p_z) { Translate(Vector3(p_x, p_y, p_z)); }
    void Scale(Vector3 const& p_factors);
    void Scale(double p_x, double p_y, double p_z) { Scale(Vector3(p_x, p_y, p_z)); }
    /// Counter-clockwise when the axis points at the viewer.
    void Rotate(double p_degrees, Vector3 const& p_axis);
    /// The current matrix of AGL_MODELVIEW_MATRIX, AGL_PROJECTION_MATRIX or AGL_TEXTURE_MATRIX.
    Types::Matrix4 const& Get(Token p_matrix) const;

    /// Multiplies the current matrix by a parallel projection of world coordinates that fits the box into the viewport.
    /// p_camera acts around the centre of the box: the identity looks along the negative z axis, a rotation orbits, a scale
    /// zooms, a translation (in world units) pans. Whatever the rotation, the sphere around the box fits the shorter side of
    /// the viewport; near and far planes always enclose the whole box. An undefined box counts as the unit cube.
    void Ortho(Types::Viewport<0> const& p_viewport, Box const& p_box, Types::Matrix4 const& p_camera);
    /// The same as a perspective projection with an opening angle of 45 degrees along the shorter side of the viewport.
    void Perspective(Types::Viewport<0> const& p_viewport, Box const& p_box, Types::Matrix4 const& p_camera);
    /// Multiplies the current matrix by one that takes pixels: (0, 0) is the lower left corner of the viewport, (width,
    /// height) the upper right; z runs from -1 (far) to 1 (near).
    void Ortho2D(Types::Viewport<0> const& p_viewport);
    /// The point whose window coordinates are p_window (pixels, and depth from 0 to 1), in the coordinates that p_modelView
    /// takes; nothing when the matrices cannot be inverted or the viewport is empty.
    static std::optional<Vector3> UnProject(Vector3 const& p_window, Types::Matrix4 const& p_modelView,
        Types::Matrix4 const& p_projection, Types::Viewport<0> const& p_viewport);
    /// @}

    /// \name Stacks
    /// @{
    /// Saves the attribute groups of the mask; costs the same for one group and for all. PopAttrib brings back those that
    /// were written since.
    void PushAttrib(Token p_mask);
    void PopAttrib();
    /// A scissor box set after PushScissor is cut by the one before it; PopScissor brings that one back.
    void PushScissor();
    void PopScissor();
    void Scissor(Types::Viewport<0> const& p_box);
    /// The layer ids in force tell later picks what was drawn in which pane.
    void PushLayerId(std::uint32_t p_id);
    void PopLayerId();
    /// The innermost layer id, 0 without any.
    std::uint32_t LayerId() const { return _layers.empty() ? 0 : _layers.back(); }

    /// How deep all stacks are.
    StackDepths const& Depths() const { return _depths; }
    /// Brings all stacks to the given depths: pops what is too much; what was popped too much cannot be brought back, so
    /// the current values take its place and it is reported. An open primitive is dropped. Almost free when nothing
    /// differs.
    void RestoreDepths(StackDepths const& p_depths) {
        if (!(p_depths == _depths)) {
            RestoreDifferingDepths(p_depths);
        }
    }
    /// @}

    /// \name State
    /// @{
    void Enable(Token p_capability);
    void Disable(Token p_capability);
    bool IsEnabled(Token p_capability) const;

    /// Nothing is drawn until a viewport is set.
    void Viewport(Types::Viewport<0> const& p_viewport);
    void DepthRange(double p_near, double p_far);
    void ClearColor(Types::Color4f const& p_color);
    void ClearColor(QColor const& p_color);
    void ClearDepth(double p_depth);
    void ClearStencil(int p_value);
    /// AGL_COLOR_BUFFER_BIT, AGL_DEPTH_BUFFER_BIT and AGL_STENCIL_BUFFER_BIT; masks and the scissor box apply.
    void Clear(Token p_mask);

    void PointSize(float p_pixels);
    void LineWidth(float p_pixels);
    /// While AGL_LINE_STIPPLE is enabled a line shows the pixels whose bit of the pattern is set, the lowest bit first,
    /// each bit for p_factor pixels (cut to 1 to 256) along the line. The pattern starts anew with each line of AGL_LINES,
    /// each strip or loop and each outline of a polygon, and goes on around their corners. Pixels are counted from where a
    /// line starts, also when that is outside of the viewport. Strips and outlines of a shape are recorded vertex by vertex
    /// while this is on: for meshes of many triangles that is slow.
    void LineStipple(int p_factor, std::uint16_t p_pattern);
    void PolygonMode(Token p_face, Token p_mode);
    void PolygonStipple(std::array<std::uint32_t, 32> const& p_rows);
    /// 128 bytes, four a row, as OpenGL takes them.
    void PolygonStipple(unsigned char const* p_pattern);
    /// Moves the depths of polygons by p_factor times their slope and p_units times the smallest step of the depth buffer
    /// while the AGL_POLYGON_OFFSET_FILL, _LINE or _POINT of their polygon mode is enabled. For outlines and corners that step
    /// is taken to be that of 24 bits.
    void PolygonOffset(float p_factor, float p_units);
    void CullFace(Token p_face);
    void FrontFace(Token p_winding);
    void ShadeModel(Token p_model);

    void BlendFunc(Token p_source, Token p_destination);
    void BlendEquation(Token p_equation);
    void ColorMask(bool p_red, bool p_green, bool p_blue, bool p_alpha);
    void DepthFunc(Token p_function);
    void DepthMask(bool p_write);
    void StencilFunc(Token p_function, int p_reference, std::uint32_t p_mask);
    void StencilOp(Token p_fail, Token p_depthFail, Token p_depthPass);
    void StencilMask(std::uint32_t p_mask);

    /// p_light is AGL_LIGHT0 + i. Positions and spot directions are taken in object coordinates, as OpenGL does.
    void Light(Token p_light, Token p_parameter, Types::Color4f const& p_color);
    void Light(Token p_light, Token p_parameter, QColor const& p_color);
    void Light(Token p_light, Token p_parameter, Vector4 const& p_position);
    void Light(Token p_light, Token p_parameter, Vector3 const& p_direction);
    void Light(Token p_light, Token p_parameter, float p_value);
    void LightModel(Token p_parameter, Types::Color4f const& p_ambient);
    void LightModel(Token p_parameter, bool p_value);
    void Material(Token p_face, Token p_parameter, Types::Color4f const& p_color);
    void Material(Token p_face, Token p_parameter, QColor const& p_color);
    void Material(Token p_face, Token p_parameter, float p_shininess);
    /// Which material colours follow the current colour while AGL_COLOR_MATERIAL is enabled.
    void ColorMaterial(Token p_face, Token p_parameter);
    /// p_plane is AGL_CLIP_PLANE0 + i. Keeps what lies where ax + by + cz + dw >= 0, in object coordinates.
    void ClipPlane(Token p_plane, Vector4 const& p_equation);

    /// AGL_TEXTURE0 to AGL_TEXTURE3: the unit that the texture calls below, AGL_TEXTURE_2D and AGL_TEXTURE address.
    void ActiveTexture(Token p_unit);
    /// An empty handle unbinds. The texture is not kept alive beyond the draws that use it.
    void BindTexture(std::shared_ptr<Texture const> const& p_texture);
    /// AGL_TEXTURE_ENV_MODE: AGL_MODULATE, AGL_REPLACE, AGL_DECAL, AGL_BLEND, AGL_ADD or AGL_COMBINE. Functions, sources and
    /// operands of the last one: AGL_COMBINE_RGB to AGL_OPERAND2_ALPHA.
    void TexEnv(Token p_parameter, Token p_value);
    /// AGL_RGB_SCALE or AGL_ALPHA_SCALE: 1, 2 or 4.
    void TexEnv(Token p_parameter, float p_scale);
    /// AGL_TEXTURE_ENV_COLOR.
    void TexEnv(Token p_parameter, Types::Color4f const& p_color);
    /// How the active unit reads its texture; without a value, in the texture's own way.
    void TexSampling(std::optional<TextureSampling> const& p_sampling);
    /// Sets everything about a texture unit at once: whether it is on, its texture (the handle, not the number in the
    /// value), environment, combiners, sampling and the current matrix of its stack. The active unit stays what it is.
    void Apply(Token p_unit, Types::TextureUnit const& p_value, std::shared_ptr<Texture const> const& p_texture);

    /// Everything in force, for reading. The matrices in it are those of the last draw.
    State const& Current() const { return _state; }
    /// @}

    /// \name Drawing
    /// @{
    void Color(Types::Color4f const& p_color) {
        Write(StateItem::CurrentColor);
        _state.currentColor.color = p_color;
    }
    void Color(float p_red, float p_green, float p_blue, float p_alpha = 1) {
        Color(Types::Color4f(p_red, p_green, p_blue, p_alpha));
    }
    void Color(QColor const& p_color);
    void Normal(Vector3 const& p_normal);
    void TexCoord(double p_s, double p_t, double p_r = 0, double p_q = 1) {
        MultiTexCoord(Tokens::AGL_TEXTURE0, p_s, p_t, p_r, p_q);
    }
    void MultiTexCoord(Token p_unit, double p_s, double p_t, double p_r = 0, double p_q = 1);

    /// Opens a primitive: AGL_POINTS to AGL_POLYGON. Vertices take the current colour, normal and texture coordinates.
    void Begin(Token p_kind);
    void Vertex(double p_x, double p_y, double p_z = 0) { Vertex(Vector4(p_x, p_y, p_z, 1)); }
    void Vertex(Vector3 const& p_position) { Vertex(Vector4(p_position, 1)); }
    void Vertex(Vector4 const& p_position);
    /// A vertex at a pixel of a viewport that `Ortho2D` was called for, placed so that lines cover the pixels that they name
    /// and areas end where they say. p_depth runs from -1 (far) to 1 (near).
    void Pixel(double p_x, double p_y, double p_depth = 0) {
        Vertex(Vector4(p_x + PixelOffset, p_y + PixelOffset, p_depth, 1));
    }
    void End();

    /// Draws a shape with the current matrices, colour and state. An invalid shape is skipped.
    void Draw(std::shared_ptr<PrimitiveBuffer const> const& p_buffer);
    /// Draws the bound shape; see `Bind`.
    void Draw();

    /// Binds a shape or a shader and gives the one that was bound before; without a shader the fixed-function one is used.
    /// Use `Bind`, which gives it back.
    std::shared_ptr<PrimitiveBuffer const> Exchange(std::shared_ptr<PrimitiveBuffer const> p_buffer);
    std::shared_ptr<Shader const> Exchange(std::shared_ptr<Shader const> p_shader);
    /// What is drawn goes to this pick and not to the back end, and clears go nowhere, until another one or nullptr takes
    /// its place. Gives the one before. Called by `HitDetect`, which gives it back.
    HitDetect* Exchange(HitDetect* p_detect) { return std::exchange(_detect, p_detect); }

    /// The shape of these vertices and indices; the same one for the same buffers as long as it is in use. Empty, and
    /// reported, when either is missing.
    std::shared_ptr<PrimitiveBuffer const> CreatePrimitiveBuffer(
        std::shared_ptr<IndexBuffer const> const& p_indices, std::shared_ptr<VertexBuffer const> const& p_vertices);
    /// The shader that does what the fixed-function pipeline does.
    std::shared_ptr<Shader const> GenFixedFunctionShader();
    /// A shader of the given source; the same one for the same source and options as long as it is in use.
    std::shared_ptr<Shader const> GenShader(ShaderSource const& p_source, std::uint32_t p_options = 0);
    std::shared_ptr<GenericShader const> GenGenericShader(
        ShaderSource const& p_source = ShaderSource::Generic(), GenericShader::State const& p_state = {});
    /// What draws text in the fonts that `Assets::Resource::FontSet` gave, at first p_size logical pixels high. All texts
    /// share their glyphs.
    std::shared_ptr<Text> GenFont(std::vector<Assets::FontFile> const& p_fontSet, float p_size);
    /// @}

    /// \name Transparency
    /// What is seen through must be drawn after what is behind it, wherever the two stand in a program. Between
    /// BeginTransparency and EndTransparency, draws made while AGL_TRANSPARENCY is enabled wait; EndTransparency
    /// carries them out in the state in which they were made, after all others, the farthest first. How far a draw is
    /// tells the middle of its box, in eye coordinates; draws that are equally far keep their order, and draws of one
    /// shape that follow each other then are merged, but for quads in flat shading. Of filled polygons of which both
    /// faces show, the backs are drawn before the fronts, so that a closed shape is seen through to its far side.
    /// Blending and depth writes are the caller's: such draws should blend, and leave the depths as they are.
    ///
    /// A scope inside another one, and a clear, carry out what waits before they begin. Flushes, `CheckError` and
    /// `ReadPixels` leave it waiting. Outside of any scope AGL_TRANSPARENCY (saved with AGL_ENABLE_BIT and
    /// AGL_COLOR_BUFFER_BIT) does nothing. Use `TransparencyScope`.
    /// @{
    void BeginTransparency();
    void EndTransparency();
    /// @}

    /// \name Device
    /// @{
    /// Draws what is recorded and reads a rectangle of the current target, given in pixels: the result has its top row
    /// first. Null, with an error, when the device has no pixels.
    QImage ReadPixels(int p_x, int p_y, int p_width, int p_height);
    unsigned GetMaxStencilBits() const;
    unsigned GetMaxClipPlanes() const { return ClipPlaneCount; }
    unsigned GetMaxTextures() const { return TextureUnitCount; }
    DeviceFeatures const& Features() const;
    Backend& GetBackend() const { return *_backend; }
    Statistics const& GetStatistics() const { return _statistics; }
    void ResetStatistics() { _statistics = {}; }
    /// @}

private:
    static constexpr double PixelOffset = 0.375;
    /// Commands go to the back end when this many instances or immediate vertices have gathered: enough that a draw
    /// call costs nothing beside its instances, and few enough that they stay in the caches.
    static constexpr std::size_t MaxInstances = 32768;
    static constexpr std::size_t MaxVertices = 65536;
    static constexpr std::size_t MaxStates = 8192;

    /// One PushAttrib: which groups it covers, which of them were written since and are saved, and which groups were still
    /// to be saved by the frames below when it was pushed.
    struct AttribFrame {
        StateMask covered = 0;
        StateMask saved = 0;
        StateMask armedBefore = 0;
        EnableBit::Type coveredEnables = 0;
        EnableBit::Type savedEnables = 0;
        EnableBit::Type armedEnablesBefore = 0;
        EnableBit::Type enableValues = 0;
    };
    /// One PushScissor: the box before it, which cuts those that follow.
    struct ScissorFrame {
        ScissorState previous;
    };
    /// A draw of polygons by one of its polygon modes.
    struct PolygonPass {
        Pipeline pipeline = Pipeline::Triangles;
        std::uint8_t faces = FaceBit::Both;
    };
    struct BufferPair {
        IndexBuffer const* indices;
        VertexBuffer const* vertices;
        bool operator==(BufferPair const&) const = default;
    };
    struct BufferPairHash {
        std::size_t operator()(BufferPair const& p_pair) const;
    };
    struct OpenPrimitive {
        Token kind = Tokens::AGL_POINTS;
        std::uint32_t firstVertex = 0;
        bool isTextured = false;
        double normalMatrix[9] = {};
    };

    /// To be called before a group is written: saves it if a PushAttrib asks for it, and notes the change.
    void Write(std::size_t p_item) {
        StateMask const bit = StateBit(p_item);
        _dirty |= bit;
        if ((_armed & bit) != 0) {
            Save(p_item);
        }
    }
    void Save(std::size_t p_item);
    /// Sets a field of a group, if it differs.
    template <class T>
    void Assign(std::size_t p_item, T& p_field, T const& p_value) {
        if (!(p_field == p_value)) {
            Write(p_item);
            p_field = p_value;
        }
    }
    static std::uint64_t NextId();
    static PixelRectangle RoundToPixels(Types::Viewport<0> const& p_rectangle);
    void SetEnables(EnableBit::Type p_bits, bool p_on);
    void SetEnable(char const* p_operation, Token p_capability, bool p_on);
    EnableBit::Type BitOf(Token p_capability) const;
    void PopFrame();
    void RestoreDifferingDepths(StackDepths const& p_depths);
    template <class Pop, class Push>
    bool RestoreDepth(std::uint32_t const& p_depth, std::uint32_t p_wanted, Pop const& p_pop, Push const& p_push);

    std::vector<Types::Matrix4>& CurrentStack();
    std::uint32_t& CurrentStackDepth();
    Types::Matrix4& WriteMatrix();
    void PushOn(std::vector<Types::Matrix4>& p_stack, std::uint32_t& p_depth);
    void PopFrom(std::vector<Types::Matrix4>& p_stack, std::uint32_t& p_depth, StateMask p_dirty);
    StateMask CurrentMatrixBit() const;
    static Types::Matrix4 Fit(
        Types::Viewport<0> const& p_viewport, Box const& p_box, Types::Matrix4 const& p_camera, bool p_perspective);

    bool TracksColor() const;
    void CommitColorMaterial();
    bool CheckOutside(char const* p_operation);
    void Error(std::string p_sentence);
    void ErrorToken(char const* p_operation, Token p_token);
    /// The light to be written; nullptr, with an error, when there is none of that number.
    LightState* FindLight(Token p_light);
    bool CheckUnit(char const* p_operation, Token p_unit);
    void SetCombiner(std::size_t p_unit, Token p_parameter, Token p_value);
    void SetTexture(std::size_t p_unit, std::shared_ptr<Texture const> const& p_texture);
    template <class Change>
    void ChangeMaterial(Token p_face, Change const& p_change);

    /// Gives every group that was written since the last draw its version. Groups in p_unused may wait.
    void ResolveState(StateMask p_unused);
    void ResolveProjection();
    void ResolvePolygonPasses();
    /// Calls p_append with each pass that a primitive of a kind takes.
    template <class Append>
    void ForEachPass(Token p_kind, Append const& p_append);
    void ResolvePerspectiveRow(Types::Matrix4 const& p_modelView);
    void ResolveTextures();
    void KeepShader();
    void AppendInstance(Types::Matrix4 const& p_modelView);
    void AppendDraw(std::shared_ptr<PrimitiveBuffer const> const& p_buffer, PolygonPass const& p_pass);
    /// Adds a command for a shape.
    void AddShape(std::shared_ptr<PrimitiveBuffer const> const& p_buffer, Command p_command);
    void AppendImmediate(PolygonPass const& p_pass, std::size_t p_count);
    /// Adds a command for the indices from p_first on, or lets them join the one before.
    void AppendIndices(std::uint32_t p_first, Command p_command);
    bool NeedsStippleCounts(Token p_kind, Pipeline p_pipeline) const;
    /// Adds stippled lines or outlines of a primitive of p_count vertices, of which p_copy(i) records the one of that number.
    /// Each strip and outline has vertices of its own, which carry how far the pattern is there.
    template <class Copy>
    void AppendStippled(Token p_kind, Pipeline p_pipeline, std::size_t p_count, Copy const& p_copy);
    void AppendExpanded(PrimitiveBuffer const& p_buffer, PolygonPass const& p_pass);
    void BeginVertices();
    void AppendVertex(
        Vector4 const& p_position, Types::Vector3_Base<float> const& p_normal, Types::Color4f const& p_color);
    bool IsFull() const {
        return _list.instances.size() >= MaxInstances || _list.vertices.size() >= MaxVertices ||
            _list.states.size() >= MaxStates;
    }
    void FlushWhenFull();
    /// Records elsewhere from now on: with the draws that wait, or with those that do not.
    void SwitchRecording();
    void CarryOutTransparent();
    /// Lets the last instance of a shape, or the last command, be one of the draws that wait.
    void DeferInstance(PrimitiveBuffer const& p_buffer);
    void DeferImmediate(Command const& p_command);
    Shader const* EffectiveShader() const { return (_boundShader ? _boundShader : _fixedFunction).get(); }

    std::uint64_t const _id = NextId();
    std::unique_ptr<Backend> _backend;
    State _state;
    StateMask _armed = 0;
    StateMask _dirty = 0;
    EnableBit::Type _armedEnables = 0;
    StackDepths _depths;
    std::uint32_t _scopeDepth = 0;

    std::vector<AttribFrame> _attribs;
    std::array<std::vector<std::byte>, StateItem::Count> _savedItems;
    std::vector<Types::Matrix4> _modelView;
    std::vector<Types::Matrix4> _projection;
    std::array<std::vector<Types::Matrix4>, TextureUnitCount> _textureMatrices;
    std::vector<ScissorFrame> _scissors;
    std::vector<std::uint32_t> _layers;

    CommandList _list;
    StateKey _key;
    bool _keyIsNew = true;
    StateMask _resolved = 0; ///< groups that were looked at since the last change of recordings
    bool _isDeferring = false; ///< the list and the key are those of the draws that wait
    DeferredDraws _deferred; ///< or of the others, meanwhile
    std::uint32_t _transparencyScopes = 0;
    std::array<PolygonPass, 2> _passes;
    std::size_t _passCount = 1;
    OpenPrimitive _primitive;
    HitDetect* _detect = nullptr;
    std::vector<std::uint32_t> _assembly;

    std::shared_ptr<PrimitiveBuffer const> _boundBuffer;
    std::shared_ptr<Shader const> _boundShader;
    std::shared_ptr<Shader const> _fixedFunction;
    std::vector<std::weak_ptr<Shader const>> _shaders;
    std::vector<std::weak_ptr<GenericShader const>> _genericShaders;
    std::unordered_map<BufferPair, std::weak_ptr<PrimitiveBuffer const>, BufferPairHash> _buffers;
    std::size_t _buffersToSweep = 1024;
    std::unordered_map<std::uint64_t, std::weak_ptr<Texture const>> _boundTextures;
    std::weak_ptr<GlyphAtlas> _glyphAtlas;

    Statistics _statistics;
    std::vector<std::string> _errors;
    StackDepths _frameDepths;
    bool _inFrame = false;
};

} // namespace Qor::Chart::Ogl
