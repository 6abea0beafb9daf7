#pragma once

#include "framework/ogl/State.h"

#include <array>
#include <cstdint>

namespace Qor::Chart::Ogl {

/// The uniform blocks of all programs, in the std140 layout of `GlProgram`'s text: everything is a multiple of 16 bytes.
/// What changes rarely stands in one block, what changes often in the other.
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
    std::array<std::array<float, 16>, TextureUnitCount> textureMatrices;
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
    Float4 sizes; ///< point size, line width
    std::array<Float4, TextureUnitCount> environmentColors;
    Int4 modes; ///< light mask, enabled groups, local viewer, colour material mode
    Int4 colorFaces; ///< colour material on front, on back; clip plane mask
    Int4 environment; ///< environment mode of each texture unit, 0 where it is off
};

/// Groups that each block depends on.
inline constexpr StateMask SceneItems = StateBit(StateItem::Projection) | StateBit(StateItem::Viewport) |
    StateBit(StateItem::ClipPlanes) | (((StateMask(1) << LightCount) - 1) << StateItem::Light0) |
    (((StateMask(1) << TextureUnitCount) - 1) << StateItem::TextureMatrix0) | StateBit(StateItem::PolygonStipple);
inline constexpr StateMask DrawItems = StateBit(StateItem::Material) | StateBit(StateItem::LightModel) |
    StateBit(StateItem::PerspectiveRow) | StateBit(StateItem::Point) | StateBit(StateItem::Line) |
    (((StateMask(1) << TextureUnitCount) - 1) << StateItem::Texture0);

/// What the second block depends on besides its groups.
inline constexpr EnableBit::Type DrawEnables = EnableBit::Lights | EnableBit::ColorMaterial | EnableBit::Normalize |
    EnableBit::RescaleNormal | EnableBit::ClipPlanes | EnableBit::Textures;

SceneUniforms MakeSceneUniforms(State const& p_state);
DrawUniforms MakeDrawUniforms(State const& p_state);

} // namespace Qor::Chart::Ogl
