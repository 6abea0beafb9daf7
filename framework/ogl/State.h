#pragma once

#include "framework/Export.h"
#include "framework/ogl/TextureSampling.h"
#include "framework/ogl/Tokens.h"
#include "framework/types/Color4f.h"
#include "framework/types/Vector3.h"
#include "framework/types/Vector4.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Qor::Chart::Ogl {

inline constexpr std::size_t LightCount = 8;
inline constexpr std::size_t ClipPlaneCount = 8;
inline constexpr std::size_t TextureUnitCount = 4;

/// A bit for each capability of `Agl::Enable`.
namespace EnableBit {
using Type = std::uint64_t;
inline constexpr Type Lighting = 1U << 0;
inline constexpr Type ColorMaterial = 1U << 1;
inline constexpr Type Normalize = 1U << 2;
inline constexpr Type RescaleNormal = 1U << 3;
inline constexpr Type CullFace = 1U << 4;
inline constexpr Type PolygonStipple = 1U << 5;
inline constexpr Type PointSmooth = 1U << 6;
inline constexpr Type LineSmooth = 1U << 7;
inline constexpr Type DepthTest = 1U << 8;
inline constexpr Type StencilTest = 1U << 9;
inline constexpr Type ScissorTest = 1U << 10;
inline constexpr Type Blend = 1U << 11;
inline constexpr Type LineStipple = 1U << 12;
inline constexpr Type OffsetFill = 1U << 13; ///< polygon offset, one bit for each polygon mode
inline constexpr Type OffsetLine = 1U << 14;
inline constexpr Type OffsetPoint = 1U << 15;
inline constexpr Type Texture0 = 1U << 16; ///< and one more for each further texture unit
inline constexpr Type Textures = ((Type(1) << TextureUnitCount) - 1) << 16;
inline constexpr Type Light0 = 1U << 20; ///< and one more for each further light
inline constexpr Type Lights = ((Type(1) << LightCount) - 1) << 20;
inline constexpr Type ClipPlane0 = 1U << 28; ///< and one more for each further clip plane
inline constexpr Type ClipPlanes = ((Type(1) << ClipPlaneCount) - 1) << 28;
inline constexpr Type Transparency = Type(1) << 36;
inline constexpr Type All = (Type(1) << 37) - 1;
static_assert(Texture0 << TextureUnitCount <= Light0 && Light0 << LightCount <= ClipPlane0);
} // namespace EnableBit

/// What the groups of the fixed-function state hold, with the defaults of OpenGL. Groups are saved, compared and copied
/// as bytes: they have no padding.
struct CurrentColorState {
    Types::Color4f color{1, 1, 1, 1};
};
struct CurrentVertexState {
    Types::Vector3_Base<float> normal{0, 0, 1};
    std::array<Types::Vector4_Base<float>, TextureUnitCount> texCoords{
        {{0, 0, 0, 1}, {0, 0, 0, 1}, {0, 0, 0, 1}, {0, 0, 0, 1}}};
};
struct PointState {
    float size = 1; ///< pixels
};
struct LineState {
    float width = 1; ///< pixels
    std::uint32_t stippleFactor = 1; ///< how many pixels a bit of the pattern stands for
    std::uint32_t stipplePattern = 0xFFFF; ///< 16 bits, the lowest one first
};
struct PolygonState {
    Token frontMode = Tokens::AGL_FILL;
    Token backMode = Tokens::AGL_FILL;
    Token cullFace = Tokens::AGL_BACK;
    Token frontFace = Tokens::AGL_CCW;
    float offsetFactor = 0;
    float offsetUnits = 0;
};
/// 32 rows of 32 pixels, the lowest row first; the highest bit is the leftmost pixel.
struct PolygonStippleState {
    std::array<std::uint32_t, 32> rows = AllSet();

private:
    static constexpr std::array<std::uint32_t, 32> AllSet() {
        std::array<std::uint32_t, 32> rows{};
        rows.fill(0xFFFFFFFF);
        return rows;
    }
};
struct LightModelState {
    Types::Color4f ambient{0.2F, 0.2F, 0.2F, 1};
    std::uint32_t localViewer = 0;
    std::uint32_t twoSide = 0;
    Token shadeModel = Tokens::AGL_SMOOTH;
    Token colorMaterialFace = Tokens::AGL_FRONT_AND_BACK;
    Token colorMaterialMode = Tokens::AGL_AMBIENT_AND_DIFFUSE;
};
struct MaterialFace {
    Types::Color4f ambient{0.2F, 0.2F, 0.2F, 1};
    Types::Color4f diffuse{0.8F, 0.8F, 0.8F, 1};
    Types::Color4f specular{0, 0, 0, 1};
    Types::Color4f emission{0, 0, 0, 1};
    float shininess = 0;
};
struct MaterialState {
    MaterialFace front;
    MaterialFace back;
};
/// Positions and directions are in eye coordinates.
struct LightState {
    Types::Color4f ambient{0, 0, 0, 1};
    Types::Color4f diffuse{0, 0, 0, 1}; ///< white for light 0
    Types::Color4f specular{0, 0, 0, 1}; ///< white for light 0
    Types::Vector4_Base<float> position{0, 0, 1, 0};
    Types::Vector3_Base<float> spotDirection{0, 0, -1};
    float spotExponent = 0;
    float spotCutoff = 180; ///< degrees
    float constantAttenuation = 1;
    float linearAttenuation = 0;
    float quadraticAttenuation = 0;
};
struct DepthState {
    Token function = Tokens::AGL_LESS;
    std::uint32_t mask = 1;
    float clearValue = 1;
};
struct StencilState {
    Token function = Tokens::AGL_ALWAYS;
    std::int32_t reference = 0;
    std::uint32_t valueMask = 0xFFFFFFFF;
    std::uint32_t writeMask = 0xFFFFFFFF;
    Token fail = Tokens::AGL_KEEP;
    Token depthFail = Tokens::AGL_KEEP;
    Token depthPass = Tokens::AGL_KEEP;
    std::int32_t clearValue = 0;
};
/// Pixels, origin lower left.
struct PixelRectangle {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    constexpr bool operator==(PixelRectangle const&) const = default;
};
struct ViewportState {
    PixelRectangle rectangle;
    float nearDepth = 0;
    float farDepth = 1;
};
struct TransformState {
    Token matrixMode = Tokens::AGL_MODELVIEW;
};
/// Planes in eye coordinates; what is on their positive side is kept.
struct ClipPlaneState {
    std::array<Types::Vector4_Base<double>, ClipPlaneCount> planes;
};
struct ColorBufferState {
    Token sourceFactor = Tokens::AGL_ONE;
    Token destinationFactor = Tokens::AGL_ZERO;
    Token equation = Tokens::AGL_FUNC_ADD;
    std::array<std::uint32_t, 4> mask{1, 1, 1, 1}; ///< red, green, blue, alpha
    Types::Color4f clearColor{0, 0, 0, 0};
};
struct ScissorState {
    PixelRectangle box;
    std::uint32_t defined = 0; ///< 0 until a box is set: everything may be drawn
};
struct TextureSelectState {
    std::uint32_t activeUnit = 0;
};
/// How the environment AGL_COMBINE computes the colour or the alpha of a unit out of up to three arguments.
struct CombinerState {
    Token function = Tokens::AGL_MODULATE;
    std::array<Token, 3> sources{Tokens::AGL_TEXTURE, Tokens::AGL_PREVIOUS, Tokens::AGL_CONSTANT};
    std::array<Token, 3> operands{Tokens::AGL_SRC_COLOR, Tokens::AGL_SRC_COLOR, Tokens::AGL_SRC_ALPHA};
    float scale = 1; ///< 1, 2 or 4

    constexpr bool operator==(CombinerState const&) const = default;
};
struct TextureUnitState {
    std::uint64_t texture = 0; ///< number of the bound texture, 0 for none
    Types::Color4f environmentColor{0, 0, 0, 0};
    Token environment = Tokens::AGL_MODULATE;
    CombinerState combineRgb;
    CombinerState combineAlpha{Tokens::AGL_MODULATE, {Tokens::AGL_TEXTURE, Tokens::AGL_PREVIOUS, Tokens::AGL_CONSTANT},
        {Tokens::AGL_SRC_ALPHA, Tokens::AGL_SRC_ALPHA, Tokens::AGL_SRC_ALPHA}, 1};
    std::uint32_t hasSampling = 0; ///< 0: the texture is read in its own way, else as follows
    TextureSampling sampling;
};
/// The projection and the point of eye space that is subtracted from everything before it is sent as floats, so that
/// scenes far from the origin keep their precision. The matrix takes eye coordinates without that point.
struct ProjectionState {
    std::array<double, 3> origin{};
    std::array<float, 16> matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    std::array<float, 4> viewer{0, 0, 1, 0}; ///< the eye, homogeneous, in eye coordinates without the origin
};
struct TextureMatrixState {
    std::array<float, 16> matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};
/// The last row of the model-view matrix, the same for all instances of a draw.
struct PerspectiveRowState {
    std::array<float, 4> row{0, 0, 0, 1};
};

/// Numbers of the groups, for masks and tables.
namespace StateItem {
inline constexpr std::size_t CurrentColor = 0;
inline constexpr std::size_t CurrentVertex = 1;
inline constexpr std::size_t Point = 2;
inline constexpr std::size_t Line = 3;
inline constexpr std::size_t Polygon = 4;
inline constexpr std::size_t PolygonStipple = 5;
inline constexpr std::size_t LightModel = 6;
inline constexpr std::size_t Material = 7;
inline constexpr std::size_t Light0 = 8;
inline constexpr std::size_t Depth = Light0 + LightCount;
inline constexpr std::size_t Stencil = Depth + 1;
inline constexpr std::size_t Viewport = Depth + 2;
inline constexpr std::size_t Transform = Depth + 3;
inline constexpr std::size_t ClipPlanes = Depth + 4;
inline constexpr std::size_t ColorBuffer = Depth + 5;
inline constexpr std::size_t Scissor = Depth + 6;
inline constexpr std::size_t TextureSelect = Depth + 7;
inline constexpr std::size_t Texture0 = Depth + 8;
inline constexpr std::size_t Projection = Texture0 + TextureUnitCount;
inline constexpr std::size_t TextureMatrix0 = Projection + 1;
inline constexpr std::size_t PerspectiveRow = TextureMatrix0 + TextureUnitCount;
inline constexpr std::size_t Count = PerspectiveRow + 1;
} // namespace StateItem

/// A set of groups, one bit each.
using StateMask = std::uint64_t;
static_assert(StateItem::Count <= 64);

constexpr StateMask StateBit(std::size_t p_item) {
    return StateMask(1) << p_item;
}

/// The whole state that a draw depends on, apart from its model-view matrix: the groups, one after the other, and what is
/// enabled.
struct QOR_FRAMEWORK_API State {
    CurrentColorState currentColor;
    CurrentVertexState currentVertex;
    PointState point;
    LineState line;
    PolygonState polygon;
    PolygonStippleState polygonStipple;
    LightModelState lightModel;
    MaterialState material;
    std::array<LightState, LightCount> lights = DefaultLights();
    DepthState depth;
    StencilState stencil;
    ViewportState viewport;
    TransformState transform;
    ClipPlaneState clipPlanes;
    ColorBufferState colorBuffer;
    ScissorState scissor;
    TextureSelectState textureSelect;
    std::array<TextureUnitState, TextureUnitCount> textures;
    ProjectionState projection;
    std::array<TextureMatrixState, TextureUnitCount> textureMatrices;
    PerspectiveRowState perspectiveRow;
    EnableBit::Type enables = 0;

    bool IsEnabled(EnableBit::Type p_bit) const { return (enables & p_bit) != 0; }
    /// True when the unit changes colours: it is on and has a texture.
    bool IsTextured(std::size_t p_unit) const {
        return IsEnabled(EnableBit::Texture0 << p_unit) && textures[p_unit].texture != 0;
    }
    /// How many units, counted from the first, a draw must take texture coordinates for; 0 when nothing is textured.
    std::size_t UsedTextureUnits() const;
    /// True when lines have gaps.
    bool IsLineStippled() const { return IsEnabled(EnableBit::LineStipple) && line.stipplePattern != 0xFFFF; }
    /// The bytes of a group.
    std::byte* Item(std::size_t p_item);
    std::byte const* Item(std::size_t p_item) const;
    static std::size_t ItemSize(std::size_t p_item);

private:
    static std::array<LightState, LightCount> DefaultLights();
};

} // namespace Qor::Chart::Ogl
