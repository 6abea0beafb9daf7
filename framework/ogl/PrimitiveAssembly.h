#pragma once

#include "framework/Export.h"
#include "framework/ogl/Tokens.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Qor::Chart::Ogl {

/// What a device draws after the primitive kinds and polygon modes of the fixed-function interface are resolved.
enum class Pipeline : std::uint8_t {
    Points, ///< one index a point
    Lines, ///< two indices a line
    Triangles, ///< three indices a triangle, the last one being its provoking vertex but in quads
    Edges, ///< outlines of polygons: another corner, the two ends of the edge, the polygon's provoking vertex
    Corners, ///< corners of polygons as points: the corner, its next and its last neighbour, the provoking vertex
    FlatTriangles, ///< as triangles, but quads are cut so that both halves end with the provoking vertex
    BackThenFront, ///< all triangles twice: of the first half the backs are drawn, of the second the fronts
};
inline constexpr std::size_t PipelineCount = 7;

/// Number of indices that one primitive of the pipeline takes.
constexpr std::size_t IndicesPerPrimitive(Pipeline p_pipeline) {
    constexpr std::size_t counts[PipelineCount] = {1, 2, 3, 4, 4, 3, 3};
    return counts[static_cast<std::size_t>(p_pipeline)];
}

/// True for the kinds that have a front and a back: triangles, quads and polygons.
constexpr bool IsPolygonKind(Token p_kind) {
    return p_kind >= Tokens::AGL_TRIANGLES && p_kind <= Tokens::AGL_POLYGON;
}

/// True for filled polygons.
constexpr bool IsFilled(Pipeline p_pipeline) {
    return p_pipeline == Pipeline::Triangles || p_pipeline >= Pipeline::FlatTriangles;
}

/// Points and lines as they are, polygons filled.
constexpr Pipeline FilledPipeline(Token p_kind) {
    if (IsPolygonKind(p_kind)) {
        return Pipeline::Triangles;
    }
    return p_kind == Tokens::AGL_POINTS ? Pipeline::Points : Pipeline::Lines;
}

/// Takes vertices in the order of a primitive kind and appends the indices that the pipeline reads to p_result.
/// Incomplete primitives at the end are left out, as OpenGL does. Points and lines only assemble into their own pipeline,
/// polygon kinds only into the others; any other combination appends nothing. Outlines hold the edges of the
/// polygons and never the inner diagonals of quads and polygons.
QOR_FRAMEWORK_API void AssemblePrimitives(
    Token p_kind, std::span<std::uint32_t const> p_vertices, Pipeline p_pipeline, std::vector<std::uint32_t>& p_result);

} // namespace Qor::Chart::Ogl
