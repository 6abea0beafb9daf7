#include "framework/ogl/State.h"

#include <cstddef>
#include <type_traits>

namespace Qor::Chart::Ogl {

namespace {

struct Extent {
    std::size_t offset = 0;
    std::size_t size = 0;
};

template <class T>
constexpr Extent ExtentAt(std::size_t p_offset) {
    static_assert(std::is_trivially_copyable_v<T>);
    return {p_offset, sizeof(T)};
}

constexpr std::array<Extent, StateItem::Count> MakeExtents() {
    static_assert(std::is_standard_layout_v<State>);
    std::array<Extent, StateItem::Count> extents{};
    extents[StateItem::CurrentColor] = ExtentAt<CurrentColorState>(offsetof(State, currentColor));
    extents[StateItem::CurrentVertex] = ExtentAt<CurrentVertexState>(offsetof(State, currentVertex));
    extents[StateItem::Point] = ExtentAt<PointState>(offsetof(State, point));
    extents[StateItem::Line] = ExtentAt<LineState>(offsetof(State, line));
    extents[StateItem::Polygon] = ExtentAt<PolygonState>(offsetof(State, polygon));
    extents[StateItem::PolygonStipple] = ExtentAt<PolygonStippleState>(offsetof(State, polygonStipple));
    extents[StateItem::LightModel] = ExtentAt<LightModelState>(offsetof(State, lightModel));
    extents[StateItem::Material] = ExtentAt<MaterialState>(offsetof(State, material));
    for (std::size_t i = 0; i < LightCount; ++i) {
        extents[StateItem::Light0 + i] = ExtentAt<LightState>(offsetof(State, lights) + i * sizeof(LightState));
    }
    extents[StateItem::Depth] = ExtentAt<DepthState>(offsetof(State, depth));
    extents[StateItem::Stencil] = ExtentAt<StencilState>(offsetof(State, stencil));
    extents[StateItem::Viewport] = ExtentAt<ViewportState>(offsetof(State, viewport));
    extents[StateItem::Transform] = ExtentAt<TransformState>(offsetof(State, transform));
    extents[StateItem::ClipPlanes] = ExtentAt<ClipPlaneState>(offsetof(State, clipPlanes));
    extents[StateItem::ColorBuffer] = ExtentAt<ColorBufferState>(offsetof(State, colorBuffer));
    extents[StateItem::Scissor] = ExtentAt<ScissorState>(offsetof(State, scissor));
    extents[StateItem::TextureSelect] = ExtentAt<TextureSelectState>(offsetof(State, textureSelect));
    for (std::size_t i = 0; i < TextureUnitCount; ++i) {
        extents[StateItem::Texture0 + i] =
            ExtentAt<TextureUnitState>(offsetof(State, textures) + i * sizeof(TextureUnitState));
        extents[StateItem::TextureMatrix0 + i] =
            ExtentAt<TextureMatrixState>(offsetof(State, textureMatrices) + i * sizeof(TextureMatrixState));
    }
    extents[StateItem::Projection] = ExtentAt<ProjectionState>(offsetof(State, projection));
    extents[StateItem::PerspectiveRow] = ExtentAt<PerspectiveRowState>(offsetof(State, perspectiveRow));
    return extents;
}

constexpr std::array<Extent, StateItem::Count> Extents = MakeExtents();

} // namespace

std::byte* State::Item(std::size_t p_item) {
    return reinterpret_cast<std::byte*>(this) + Extents[p_item].offset;
}

std::byte const* State::Item(std::size_t p_item) const {
    return reinterpret_cast<std::byte const*>(this) + Extents[p_item].offset;
}

std::size_t State::ItemSize(std::size_t p_item) {
    return Extents[p_item].size;
}

std::size_t State::UsedTextureUnits() const {
    std::size_t count = 0;
    for (std::size_t unit = 0; IsEnabled(EnableBit::Textures) && unit < TextureUnitCount; ++unit) {
        count = IsTextured(unit) ? unit + 1 : count;
    }
    return count;
}

std::array<LightState, LightCount> State::DefaultLights() {
    std::array<LightState, LightCount> lights;
    lights[0].diffuse = {1, 1, 1, 1};
    lights[0].specular = {1, 1, 1, 1};
    return lights;
}

} // namespace Qor::Chart::Ogl
