#pragma once

#include "framework/Export.h"
#include "framework/library/Symbol.h"
#include "framework/ogl/TextureSampling.h"
#include "framework/ogl/Tokens.h"
#include "framework/qorfile/filepath.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Color4f.h"
#include "framework/types/Matrix4.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace Qor::Chart::Library {

/// A model file as it was read: its meshes, ready to be drawn, and the hierarchy of named nodes that places them.
/// Whatever format the file has, what is found here is clean: triangles, lines or points whose indices are in range and
/// whose positions are finite, normals for all triangles. Texture coordinates are kept for meshes of a textured
/// material alone, so that a mesh without texture costs no more for them: those of the texture, its shift, turn and
/// scale applied, for unit 0; a further set, where the mesh has one, for unit 1. Never changes after loading; hold it
/// by handle.
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

    /// What the alpha of a material means.
    enum class AlphaMode {
        Opaque, ///< nothing
        Mask, ///< a pixel is seen as a whole or not at all
        Blend, ///< what lies behind shines through
    };

    /// What a material has besides its colour.
    struct Surface {
        /// An image that is multiplied with the colour, in the words of `SymbolRegistry::LoadImage`. Empty where there
        /// is none, or the mesh does not say where on it the image lies.
        std::string texture;
        Ogl::TextureSampling sampling{.minification = Ogl::Tokens::AGL_LINEAR_MIPMAP_LINEAR,
            .wrapS = Ogl::Tokens::AGL_REPEAT,
            .wrapT = Ogl::Tokens::AGL_REPEAT};
        AlphaMode alphaMode = AlphaMode::Blend;
        float alphaCutoff = 0.5F; ///< below this alpha a masked pixel is not seen
        bool isOneSided = false; ///< made to be seen from the front of its triangles alone

        bool operator==(Surface const&) const = default;
    };

    struct MeshInfo {
        std::string name;
        std::string material;
        std::uint32_t materialNumber = 0; ///< the same for all meshes of one material
        Types::Color4f color{1, 1, 1, 1}; ///< of the material, its opacity as alpha
        Surface surface; ///< of the material
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
    /// The bytes of an image file that is part of the model file, or an empty range for a number that no texture refers
    /// to.
    std::span<std::byte const> ImageBytes(std::size_t p_number) const;
    /// Around the boxes of all meshes in all their places, in the file's coordinates.
    Types::BoundingBox_Base<double> const& Bounds() const { return _bounds; }
    /// Primitives that were left out because they had infinite positions or indices out of range.
    std::size_t DroppedPrimitives() const { return _droppedPrimitives; }

    /// One mesh, in its own coordinates. Whoever holds its buffers holds the whole file with all its meshes and the bytes of
    /// its images, so that what else is asked for needs no reading. Throws `ModelFileError` for a number that no mesh has,
    /// and for a mesh of which nothing could be used.
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
    std::map<std::size_t, std::vector<std::byte>> _images;
    Types::BoundingBox_Base<double> _bounds;
    std::size_t _droppedPrimitives = 0;
};

} // namespace Qor::Chart::Library
