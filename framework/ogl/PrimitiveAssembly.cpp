#include "framework/ogl/PrimitiveAssembly.h"

#include <algorithm>
#include <array>

namespace Qor::Chart::Ogl {

namespace {

using Indices = std::span<std::uint32_t const>;

/// Calls p_use(corners, provoking) for each polygon, its corners in the order that tells its front.
template <class Use>
void ForEachPolygon(Token p_kind, Indices p_vertices, Use const& p_use) {
    std::size_t const size = p_vertices.size();
    auto const v = [p_vertices](std::size_t p_index) { return p_vertices[p_index]; };
    switch (p_kind) {
    case Tokens::AGL_TRIANGLES:
        for (std::size_t i = 0; i + 3 <= size; i += 3) {
            p_use(p_vertices.subspan(i, 3), v(i + 2));
        }
        break;
    case Tokens::AGL_TRIANGLE_STRIP:
        for (std::size_t i = 0; i + 3 <= size; ++i) {
            std::size_t const odd = i % 2;
            p_use(Indices(std::array{v(i + odd), v(i + 1 - odd), v(i + 2)}), v(i + 2));
        }
        break;
    case Tokens::AGL_TRIANGLE_FAN:
        for (std::size_t i = 1; i + 2 <= size; ++i) {
            p_use(Indices(std::array{v(0), v(i), v(i + 1)}), v(i + 1));
        }
        break;
    case Tokens::AGL_QUADS:
        for (std::size_t i = 0; i + 4 <= size; i += 4) {
            p_use(p_vertices.subspan(i, 4), v(i + 3));
        }
        break;
    case Tokens::AGL_QUAD_STRIP:
        for (std::size_t i = 0; i + 4 <= size; i += 2) {
            p_use(Indices(std::array{v(i), v(i + 1), v(i + 3), v(i + 2)}), v(i + 3));
        }
        break;
    case Tokens::AGL_POLYGON:
        if (size >= 3) {
            p_use(p_vertices, v(0));
        }
        break;
    default:
        break;
    }
}

/// A fan around a corner, with which each triangle ends.
void AppendFan(Indices p_corners, std::size_t p_corner, std::vector<std::uint32_t>& p_result) {
    std::size_t const size = p_corners.size();
    for (std::size_t i = 1; i + 2 <= size; ++i) {
        p_result.insert(p_result.end(),
            {p_corners[(p_corner + i) % size], p_corners[(p_corner + i + 1) % size], p_corners[p_corner]});
    }
}

void AppendFlatTriangles(Indices p_corners, std::uint32_t p_provoking, std::vector<std::uint32_t>& p_result) {
    auto const found = std::find(p_corners.begin(), p_corners.end(), p_provoking);
    AppendFan(p_corners, static_cast<std::size_t>(found - p_corners.begin()), p_result);
}

/// OpenGL leaves open along which diagonal a quad is cut. Drivers take the one from its first corner.
void AppendTriangles(Indices p_corners, std::uint32_t p_provoking, std::vector<std::uint32_t>& p_result) {
    if (p_corners.size() == 4 && p_provoking != p_corners[0]) {
        AppendFan(p_corners, 0, p_result);
    } else {
        AppendFlatTriangles(p_corners, p_provoking, p_result);
    }
}

void AppendEdges(Indices p_corners, std::uint32_t p_provoking, std::vector<std::uint32_t>& p_result) {
    std::size_t const size = p_corners.size();
    for (std::size_t i = 0; i < size; ++i) {
        p_result.insert(
            p_result.end(), {p_corners[(i + 2) % size], p_corners[i], p_corners[(i + 1) % size], p_provoking});
    }
}

void AppendCorners(Indices p_corners, std::uint32_t p_provoking, std::vector<std::uint32_t>& p_result) {
    std::size_t const size = p_corners.size();
    for (std::size_t i = 0; i < size; ++i) {
        p_result.insert(
            p_result.end(), {p_corners[i], p_corners[(i + 1) % size], p_corners[(i + size - 1) % size], p_provoking});
    }
}

void AppendLines(Token p_kind, Indices p_vertices, std::vector<std::uint32_t>& p_result) {
    std::size_t const size = p_vertices.size();
    std::size_t const step = p_kind == Tokens::AGL_LINES ? 2 : 1;
    for (std::size_t i = 0; i + 2 <= size; i += step) {
        p_result.insert(p_result.end(), {p_vertices[i], p_vertices[i + 1]});
    }
    if (p_kind == Tokens::AGL_LINE_LOOP && size >= 2) {
        p_result.insert(p_result.end(), {p_vertices[size - 1], p_vertices[0]});
    }
}

} // namespace

void AssemblePrimitives(Token p_kind, std::span<std::uint32_t const> p_vertices, Pipeline p_pipeline,
    std::vector<std::uint32_t>& p_result) {
    bool const isLine = p_kind >= Tokens::AGL_LINES && p_kind <= Tokens::AGL_LINE_STRIP;
    switch (p_pipeline) {
    case Pipeline::Points:
        if (p_kind == Tokens::AGL_POINTS) {
            p_result.insert(p_result.end(), p_vertices.begin(), p_vertices.end());
        }
        break;
    case Pipeline::Lines:
        if (isLine) {
            AppendLines(p_kind, p_vertices, p_result);
        }
        break;
    case Pipeline::Triangles:
        ForEachPolygon(p_kind, p_vertices,
            [&](Indices p_corners, std::uint32_t p_provoking) { AppendTriangles(p_corners, p_provoking, p_result); });
        break;
    case Pipeline::BackThenFront:
        AssemblePrimitives(p_kind, p_vertices, Pipeline::Triangles, p_result);
        AssemblePrimitives(p_kind, p_vertices, Pipeline::Triangles, p_result);
        break;
    case Pipeline::FlatTriangles:
        ForEachPolygon(p_kind, p_vertices, [&](Indices p_corners, std::uint32_t p_provoking) {
            AppendFlatTriangles(p_corners, p_provoking, p_result);
        });
        break;
    case Pipeline::Edges:
        ForEachPolygon(p_kind, p_vertices,
            [&](Indices p_corners, std::uint32_t p_provoking) { AppendEdges(p_corners, p_provoking, p_result); });
        break;
    case Pipeline::Corners:
        ForEachPolygon(p_kind, p_vertices,
            [&](Indices p_corners, std::uint32_t p_provoking) { AppendCorners(p_corners, p_provoking, p_result); });
        break;
    }
}

} // namespace Qor::Chart::Ogl
