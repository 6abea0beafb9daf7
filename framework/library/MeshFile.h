#pragma once

#include "framework/Export.h"
#include "framework/library/Symbol.h"
#include "framework/ogl/Tokens.h"
#include "framework/qorfile/filepath.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Color4f.h"
#include "framework/types/Matrix4.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Qor::Chart::Library {

/// A model file as it was read: its meshes, ready to be drawn, and the hierarchy of named nodes that places them. Whatever
/// format the file has, what is found here is clean: triangles, lines or points whose indices are in range and whose
/// positions are finite, normals for all triangles. Never changes after loading; hold it by handle.
class QOR_FRAMEWORK_API MeshFile : public std::enable_shared_from_this<MeshFile> {
    struct Key {};

public:
    static constexpr std::uint32_t NoParent = UINT32_MAX;

    /// One place in the hierarchy. Parents stand before their children; the first node is the root.
    struct Node {
        std::string name;
        Types::Matrix4 local; ///< to the parent's coordinates
        Types::Matrix4 world; ///< to the file's coordinates; any affine matrix, mirroring ones included
        std::uint32_t parent = NoParent;
        std::vector<std::uint32_t> children;
        std::vector<std::uint32_t> meshes; ///< numbers of meshes; a mesh may stand in many nodes
    };

    struct MeshInfo {
        std::string name;
        std::string material;
        Types::Color4f color{1, 1, 1, 1}; ///< of the material
        bool hasVertexColors = false; ///< then the material's colour is a factor to them
        Ogl::Token kind = Ogl::Tokens::AGL_TRIANGLES; ///< AGL_TRIANGLES, AGL_LINES or AGL_POINTS
        std::size_t primitives = 0;
        Symbol symbol; ///< in the mesh's own coordinates; without buffers when nothing of the mesh could be used
    };

    /// Told how far loading has come, from 0 to 1 and never back; giving false stops it. May not throw.
    using Progress = std::function<bool(double)>;

    /// Reads a file. Throws `ModelFileError` when it is missing, unreadable, empty, of an unknown format, damaged, too large
    /// for the memory, has nothing to draw in it, or when p_progress stopped the loading.
    static std::shared_ptr<MeshFile const> Load(qorfile::filepath const& p_file, Progress const& p_progress = {});

    qorfile::filepath const& Path() const { return _path; }
    std::vector<Node> const& Nodes() const { return _nodes; }
    /// In the order in which "FILE#NUMBER" counts them, from 0.
    std::vector<MeshInfo> const& Meshes() const { return _meshes; }
    /// Around the boxes of all meshes in all their places, in the file's coordinates.
    Types::BoundingBox_Base<double> const& Bounds() const { return _bounds; }
    /// Primitives that were left out because they had infinite positions or indices out of range.
    std::size_t DroppedPrimitives() const { return _droppedPrimitives; }

    /// One mesh, in its own coordinates. Whoever holds its buffers holds the whole file. Throws `ModelFileError` for a number
    /// that no mesh has, and for a mesh of which nothing could be used.
    Symbol MeshSymbol(std::size_t p_number) const;

    /// All meshes in all their places as one, with the materials' colours as colours of the vertices. A file with triangles
    /// gives these alone, otherwise its lines, otherwise its points. Made for each call.
    Symbol WholeSymbol() const;

    explicit MeshFile(Key);

private:
    friend class MeshFileReader;

    qorfile::filepath _path;
    std::vector<Node> _nodes;
    std::vector<MeshInfo> _meshes;
    Types::BoundingBox_Base<double> _bounds;
    std::size_t _droppedPrimitives = 0;
};

} // namespace Qor::Chart::Library
