#pragma once

#include "framework/ogl/State.h"

#include <array>
#include <cstdint>

namespace Qor::Chart::Ogl {

/// The uniform blocks of all programs, in the std140 layout of `GlProgram`'s text: everything is a multiple of 16 bytes.
/// What changes rarely stands in one block,
/// what changes often in another, and what only textured draws need in a third.
using Float4 = std::array<float, 4>;
using Int4 = std::array<std::int32_t, 4>;
using UInt4 = std::array<std::uint32_t, 4>;

struct LightUniforms {
    Float4 ambient;
    Float4 diffuse;
    Float4 specular;
    Float4 position;
    Float4 spot; ///< direction of length 1, cosine of the cutoff (-2 for none)
    Float4 attenuation; ///< constant, linear, quadratic; spot exponent
};

struct SceneUniforms {
    std::array<float, 16> projection;
    Float4 viewer;
    Float4 eyePoint; ///< the origin of eye coordinates, without the origin of the projection
    Float4 viewport; ///< x, y, width, height
    std::array<Float4, ClipPlaneCount> clipPlanes;
    std::array<LightUniforms, LightCount> lights;
    std::array<UInt4, 8> stipple;
};

struct MaterialUniforms {
    Float4 ambient;
    Float4 diffuse;
    Float4 specular;
    Float4 emission;
    Float4 shininess; ///< in the first component
};

struct DrawUniforms {
    std::array<MaterialUniforms, 2> materials; ///< front, back
    Float4 sceneAmbient;
    Float4 perspectiveRow;
    Float4 sizes; ///< point size, line width, factor and pattern of the line stipple
    Float4 offset; ///< polygon offset: factor for slopes and constant part, in device depths
    Int4 modes; ///< light mask, enabled groups, local viewer, colour material mode
    Int4 colorFaces; ///< colour material on front, on back; clip plane mask
};

/// A combiner in bits, lowest first: 3 for the function, for each argument 3 for its source and 2 for its operand, 2 for the
/// logarithm of the scale.
struct TextureUniforms {
    std::array<std::array<float, 16>, TextureUnitCount> matrices;
    std::array<Float4, TextureUnitCount> environmentColors;
    Int4 environment; ///< environment mode of each texture unit, 0 where it is off
    UInt4 combineRgb;
    UInt4 combineAlpha;
};
static_assert(TextureUnitCount == 4, "one component for each unit");

/// Groups that each block depends on.
inline constexpr StateMask SceneItems = StateBit(StateItem::Projection) | StateBit(StateItem::Viewport) |
    StateBit(StateItem::ClipPlanes) | (((StateMask(1) << LightCount) - 1) << StateItem::Light0) |
    StateBit(StateItem::PolygonStipple);
inline constexpr StateMask DrawItems = StateBit(StateItem::Material) | StateBit(StateItem::LightModel) |
    StateBit(StateItem::PerspectiveRow) | StateBit(StateItem::Point) | StateBit(StateItem::Line) |
    StateBit(StateItem::Polygon) | StateBit(StateItem::Viewport);
inline constexpr StateMask TextureItems = (((StateMask(1) << TextureUnitCount) - 1) << StateItem::Texture0) |
    (((StateMask(1) << TextureUnitCount) - 1) << StateItem::TextureMatrix0);

/// What the second block depends on besides its groups.
inline constexpr EnableBit::Type DrawEnables = EnableBit::Lights | EnableBit::ColorMaterial | EnableBit::Normalize |
    EnableBit::RescaleNormal | EnableBit::ClipPlanes;

SceneUniforms MakeSceneUniforms(State const& p_state);
DrawUniforms MakeDrawUniforms(State const& p_state);
TextureUniforms MakeTextureUniforms(State const& p_state);

} // namespace Qor::Chart::Ogl
