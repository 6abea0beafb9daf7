#include "framework/library/MeshFile.h"

#include "framework/library/Mesh.h"
#include "framework/library/MeshFileReader.h"
#include "framework/utility/Logger.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Qor::Chart::Library {

using Types::Color4f;
using Types::Matrix4;
using Vector3f = Types::Vector3_Base<float>;
using Vector3d = Types::Vector3_Base<double>;

namespace {

Vector3d Column(Matrix4 const& p_matrix, int p_column) {
    return {p_matrix.At(0, p_column), p_matrix.At(1, p_column), p_matrix.At(2, p_column)};
}

Color4f Product(Color4f const& p_a, Color4f const& p_b) {
    return {p_a.red * p_b.red, p_a.green * p_b.green, p_a.blue * p_b.blue, p_a.alpha * p_b.alpha};
}

/// Puts meshes where they belong and joins them into one.
class Joiner {
public:
    explicit Joiner(Ogl::Token p_kind) { _mesh.kind = p_kind; }

    Mesh Take() { return std::move(_mesh); }
    /// False when there are more vertices than an index can tell.
    bool Add(MeshFile::MeshInfo const& p_mesh, Matrix4 const& p_world) {
        Ogl::VertexData const& from = p_mesh.symbol.vertices->Data();
        std::size_t const first = _mesh.vertices.positions.size();
        if (first + from.positions.size() > UINT32_MAX) {
            return false;
        }
        for (Vector3f const& position : from.positions) {
            auto const at = p_world * Types::Vector4_Base<double>(Vector3d(position), 1.0);
            _mesh.vertices.positions.emplace_back(
                static_cast<float>(at.x), static_cast<float>(at.y), static_cast<float>(at.z));
        }
        for (std::size_t i = 0; i < from.positions.size(); ++i) {
            _mesh.vertices.colors.push_back(from.colors.empty() ? p_mesh.color : Product(p_mesh.color, from.colors[i]));
        }
        AddNormals(from, p_world);
        AddPrimitives(p_mesh.symbol.indices->Indices(), static_cast<std::uint32_t>(first), Mirrors(p_world));
        return true;
    }

private:
    static bool Mirrors(Matrix4 const& p_world) {
        return Types::Dot(Types::Cross(Column(p_world, 0), Column(p_world, 1)), Column(p_world, 2)) < 0;
    }

    /// The matrix of cofactors turns normals as the matrix turns surfaces, flattening ones included.
    void AddNormals(Ogl::VertexData const& p_from, Matrix4 const& p_world) {
        if (_mesh.kind != Ogl::Tokens::AGL_TRIANGLES) {
            return;
        }
        double const side = Mirrors(p_world) ? -1 : 1;
        Vector3d const x = Types::Cross(Column(p_world, 1), Column(p_world, 2)) * side;
        Vector3d const y = Types::Cross(Column(p_world, 2), Column(p_world, 0)) * side;
        Vector3d const z = Types::Cross(Column(p_world, 0), Column(p_world, 1)) * side;
        for (Vector3f const& normal : p_from.normals) {
            auto const turned = Types::Normalized(x * static_cast<double>(normal.x) +
                y * static_cast<double>(normal.y) + z * static_cast<double>(normal.z));
            _mesh.vertices.normals.push_back(turned == Vector3d() ? normal : Vector3f(turned));
        }
    }

    void AddPrimitives(std::vector<std::uint32_t> const& p_indices, std::uint32_t p_first, bool p_mirrored) {
        std::size_t const corners = _mesh.kind == Ogl::Tokens::AGL_TRIANGLES ? 3
            : _mesh.kind == Ogl::Tokens::AGL_LINES                           ? 2
                                                                             : 1;
        for (std::size_t i = 0; i + corners <= p_indices.size(); i += corners) {
            std::array<std::uint32_t, 3> primitive{};
            bool finite = true;
            for (std::size_t corner = 0; corner < corners; ++corner) {
                primitive[corner] = p_first + p_indices[i + corner];
                finite = finite && Types::IsFinite(_mesh.vertices.positions[primitive[corner]]);
            }
            if (!finite) {
                continue;
            }
            if (p_mirrored && corners == 3) {
                std::swap(primitive[1], primitive[2]);
            }
            _mesh.indices.insert(_mesh.indices.end(), primitive.begin(), primitive.begin() + corners);
        }
    }

    Mesh _mesh;
};

} // namespace

MeshFile::MeshFile(Key) {}

std::shared_ptr<MeshFile const> MeshFile::Load(qorfile::filepath const& p_file, Progress const& p_progress) {
    auto file = std::make_shared<MeshFile>(Key());
    MeshFileReader(*file, p_file, p_progress).Read();
    return file;
}

Symbol MeshFile::MeshSymbol(std::size_t p_number) const {
    if (p_number >= _meshes.size()) {
        std::string const range = _meshes.size() == 1
            ? "its only mesh has the number 0"
            : "its meshes have the numbers 0 to " + std::to_string(_meshes.size() - 1);
        MeshFileReader::Fail(_path, "it has no mesh number " + std::to_string(p_number), range);
    }
    Symbol const& symbol = _meshes[p_number].symbol;
    if (!symbol) {
        MeshFileReader::Fail(_path, "there is nothing to draw in its mesh number " + std::to_string(p_number),
            "choose another mesh of it");
    }
    auto const self = shared_from_this();
    return {{self, symbol.indices.get()}, {self, symbol.vertices.get()}, symbol.bounds};
}

std::span<std::byte const> MeshFile::ImageBytes(std::size_t p_number) const {
    auto const found = _images.find(p_number);
    return found == _images.end() ? std::span<std::byte const>() : std::span<std::byte const>(found->second);
}

Symbol MeshFile::WholeSymbol() const {
    Ogl::Token kind = Ogl::Tokens::AGL_POINTS;
    for (MeshInfo const& mesh : _meshes) {
        if (mesh.symbol) {
            kind = std::max(kind, mesh.kind); // points, lines and triangles follow each other
        }
    }
    Joiner joiner(kind);
    std::size_t leftOut = 0;
    for (Node const& node : _nodes) {
        for (std::uint32_t const number : node.meshes) {
            MeshInfo const& mesh = _meshes[number];
            if (!mesh.symbol) {
                continue;
            }
            if (mesh.kind != kind) {
                ++leftOut;
            } else if (!joiner.Add(mesh, node.world)) {
                MeshFileReader::Fail(_path, "it has too many vertices for one symbol", "use its meshes one by one");
            }
        }
    }
    if (leftOut != 0) {
        Utility::GetLogger().warning("The model file \"" + _path.string() + "\", used as one symbol, goes without " +
            std::to_string(leftOut) + " meshes of lines or points; use these one by one.");
    }
    Mesh joined = joiner.Take();
    if (joined.indices.empty()) {
        MeshFileReader::Fail(_path, "none of its nodes holds anything to draw", "use its meshes one by one");
    }
    Symbol symbol;
    symbol.indices = std::make_shared<Ogl::IndexBuffer const>(joined.kind, std::move(joined.indices));
    symbol.vertices = std::make_shared<Ogl::VertexBuffer const>(std::move(joined.vertices));
    symbol.bounds = symbol.vertices->Bounds();
    return symbol;
}

} // namespace Qor::Chart::Library
