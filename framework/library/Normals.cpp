#include "framework/library/Normals.h"

#include "framework/types/Vector3.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Qor::Chart::Library {

namespace {

using Vector3 = Types::Vector3_Base<float>;
using Indices = std::vector<std::uint32_t>;

constexpr std::uint32_t None = UINT32_MAX;
/// At a vertex of more faces than this all of them are smoothed: to compare each with each would take too long.
constexpr std::uint32_t ManyFaces = 64;

std::uint32_t BitsOf(float p_value) {
    return std::bit_cast<std::uint32_t>(p_value + 0.0F); // -0 is 0
}

/// Numbers the places at which vertices stand: equal positions have equal numbers, the first vertex there.
Indices Places(std::vector<Vector3> const& p_positions) {
    std::size_t const mask = std::bit_ceil(2 * p_positions.size() + 1) - 1;
    Indices table(mask + 1, None);
    Indices places(p_positions.size());
    for (std::uint32_t i = 0; i < p_positions.size(); ++i) {
        Vector3 const& at = p_positions[i];
        std::uint64_t hash = BitsOf(at.x);
        hash = (hash ^ (hash >> 15)) * 0x9E3779B97F4A7C15ULL + BitsOf(at.y);
        hash = (hash ^ (hash >> 29)) * 0xBF58476D1CE4E5B9ULL + BitsOf(at.z);
        hash = (hash ^ (hash >> 32)) * 0x94D049BB133111EBULL;
        std::size_t slot = (hash >> 20) & mask;
        while (table[slot] != None && p_positions[table[slot]] != at) {
            slot = (slot + 1) & mask;
        }
        if (table[slot] == None) {
            table[slot] = i;
        }
        places[i] = table[slot];
    }
    return places;
}

/// For each triangle its normal, with twice its area as length.
std::vector<Vector3> FaceNormals(Mesh const& p_mesh) {
    std::vector<Vector3> normals;
    normals.reserve(p_mesh.indices.size() / 3);
    for (std::size_t i = 0; i + 2 < p_mesh.indices.size(); i += 3) {
        Types::Vector3_Base<double> const a(p_mesh.vertices.positions[p_mesh.indices[i]]);
        Types::Vector3_Base<double> const b(p_mesh.vertices.positions[p_mesh.indices[i + 1]]);
        Types::Vector3_Base<double> const c(p_mesh.vertices.positions[p_mesh.indices[i + 2]]);
        normals.emplace_back(Types::Cross(b - a, c - a));
    }
    return normals;
}

/// Which triangles meet at each place: those of place i are `faces[start[i]]` to `faces[start[i + 1]]`.
struct Meetings {
    Indices start;
    Indices faces;

    Meetings(Indices const& p_indices, Indices const& p_places)
        : start(p_places.size() + 1, 0), faces(p_indices.size()) {
        for (std::uint32_t const index : p_indices) {
            ++start[p_places[index] + 1];
        }
        for (std::size_t i = 1; i < start.size(); ++i) {
            start[i] += start[i - 1];
        }
        Indices next(start.begin(), start.end() - 1);
        for (std::uint32_t corner = 0; corner < p_indices.size(); ++corner) {
            faces[next[p_places[p_indices[corner]]]++] = corner / 3;
        }
    }
};

/// The mesh as it is written anew, a vertex for each pair of an old vertex and a normal.
class Rewriter {
public:
    explicit Rewriter(Mesh& p_mesh) : _mesh(p_mesh), _first(p_mesh.vertices.positions.size(), None) {}

    void Corner(std::size_t p_corner, Vector3 const& p_normal) {
        std::uint32_t& index = _mesh.indices[p_corner];
        std::uint32_t* link = &_first[index];
        while (*link != None && Types::Dot(_vertices.normals[*link], p_normal) < 0.9999F) {
            link = &_next[*link];
        }
        if (*link == None) {
            auto const made = static_cast<std::uint32_t>(_vertices.positions.size());
            *link = made;
            Copy(index, p_normal);
            index = made;
        } else {
            index = *link;
        }
    }
    void Finish() { _mesh.vertices = std::move(_vertices); }

private:
    void Copy(std::uint32_t p_vertex, Vector3 const& p_normal) {
        Ogl::VertexData const& from = _mesh.vertices;
        _vertices.positions.push_back(from.positions[p_vertex]);
        _vertices.normals.push_back(p_normal);
        if (!from.colors.empty()) {
            _vertices.colors.push_back(from.colors[p_vertex]);
        }
        for (std::size_t unit = 0; unit < from.texCoords.size(); ++unit) {
            if (!from.texCoords[unit].empty()) {
                _vertices.texCoords[unit].push_back(from.texCoords[unit][p_vertex]);
            }
        }
        _next.push_back(None);
    }

    Mesh& _mesh;
    Ogl::VertexData _vertices;
    Indices _first;
    Indices _next;
};

Vector3 UnitOr(Vector3 const& p_vector, Vector3 const& p_otherwise) {
    auto const unit = Types::Normalized(Types::Vector3_Base<double>(p_vector));
    return unit == Types::Vector3_Base<double>() ? p_otherwise : Vector3(unit);
}

} // namespace

void Normals::Generate(Mesh& p_mesh, double p_crease) {
    std::vector<Vector3> const areas = FaceNormals(p_mesh);
    std::vector<Vector3> directions;
    directions.reserve(areas.size());
    for (Vector3 const& area : areas) {
        directions.push_back(UnitOr(area, {}));
    }
    Indices const places = Places(p_mesh.vertices.positions);
    Meetings const meetings(p_mesh.indices, places);
    auto const gentle = static_cast<float>(std::cos(p_crease * std::numbers::pi / 180));

    std::unordered_map<std::uint32_t, Vector3> sumsOfMany;
    Rewriter rewriter(p_mesh);
    for (std::size_t corner = 0; corner < areas.size() * 3; ++corner) {
        Vector3 const& own = directions[corner / 3];
        std::uint32_t const place = places[p_mesh.indices[corner]];
        std::uint32_t const begin = meetings.start[place];
        std::uint32_t const end = meetings.start[place + 1];
        bool const many = end - begin > ManyFaces;
        if (auto const known = many ? sumsOfMany.find(place) : sumsOfMany.end(); known != sumsOfMany.end()) {
            rewriter.Corner(corner, known->second);
            continue;
        }
        bool const all = many || own == Vector3();
        Vector3 sum;
        for (std::uint32_t i = begin; i < end; ++i) {
            std::uint32_t const face = meetings.faces[i];
            if (all || Types::Dot(own, directions[face]) >= gentle) {
                sum += areas[face];
            }
        }
        Vector3 const normal = UnitOr(sum, UnitOr(own, {0, 0, 1}));
        if (many) {
            sumsOfMany.emplace(place, normal);
        }
        rewriter.Corner(corner, normal);
    }
    rewriter.Finish();
}

} // namespace Qor::Chart::Library
