#pragma once

#include "framework/Export.h"
#include "framework/library/MeshFile.h"
#include "framework/library/Shape.h"
#include "framework/library/Symbol.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

class QImage;

namespace Qor::Chart::Assets {
class ImageCache;
}

namespace Qor::Chart::Library {

/// Gives the buffers of symbols, by built-in shape or by model file, the same ones to everybody who asks. It keeps none
/// alive: buffers are freed when the last user lets go of them. For one thread.
class QOR_FRAMEWORK_API SymbolRegistry {
public:
    SymbolRegistry();
    ~SymbolRegistry();
    SymbolRegistry(SymbolRegistry const&) = delete;
    SymbolRegistry& operator=(SymbolRegistry const&) = delete;

    std::shared_ptr<Ogl::IndexBuffer const> GetIndexBuffer(Shape p_shape) const { return Get(p_shape).indices; }
    std::shared_ptr<Ogl::VertexBuffer const> GetVertexBuffer(Shape p_shape) const { return Get(p_shape).vertices; }
    Types::BoundingBox_Base<double> GetBoundingBox(Shape p_shape) const { return Get(p_shape).bounds; }
    /// The three in one. A value that is no shape is reported and gives the cube.
    Symbol Get(Shape p_shape) const;

    /// Reads a model file, in any format that the importer knows, or takes it from memory when it is in use. "FILE" gives the
    /// whole file as one symbol with its materials' colours (`MeshFile::WholeSymbol`), "FILE#12" its mesh number 12 in the
    /// mesh's own coordinates and without its material. A path with "#" in it is taken as a whole when there is such a file.
    /// A file that has changed on disk is read anew; a broken one is not read again until it changes. Throws `ModelFileError`.
    Symbol LoadModel(std::string const& p_file) const;

    std::shared_ptr<Ogl::IndexBuffer const> const& GetIndexBuffer(Symbol const& p_model) const {
        return p_model.indices;
    }
    std::shared_ptr<Ogl::VertexBuffer const> const& GetVertexBuffer(Symbol const& p_model) const {
        return p_model.vertices;
    }
    Types::BoundingBox_Base<double> const& GetBoundingBox(Symbol const& p_model) const { return p_model.bounds; }

    /// The file itself, with its hierarchy. As long as it or a symbol of one of its meshes is held, `LoadModel` of its meshes
    /// costs next to nothing: hold it until the nodes that use it had their first update. Throws `ModelFileError`.
    std::shared_ptr<MeshFile const> OpenModel(
        std::string const& p_file, MeshFile::Progress const& p_progress = {}) const;

    /// The image that a texture shows, the same one to everybody for as long as somebody uses it. "FILE" is an image
    /// file, as `Assets::ImageCache` takes it; "MODEL#*3" is the image number 3 that is part of a model file, counted
    /// from 0. A path with "#" in it is taken as a whole when there is such a file. Throws `Assets::ImageError` with
    /// one sentence when the image is missing or broken.
    std::shared_ptr<QImage const> LoadImage(std::string const& p_name, Assets::ImageCache const& p_images) const;

private:
    struct WeakSymbol;
    struct FileEntry;

    FileEntry& Entry(std::string const& p_path) const;
    void DropUnused() const;

    mutable std::unique_ptr<std::array<WeakSymbol, AllShapes.size()>> _shapes;
    mutable std::map<std::string, FileEntry> _files;
    mutable std::size_t _dropAt;
};

} // namespace Qor::Chart::Library
