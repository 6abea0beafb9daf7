#pragma once

#include "framework/core/Ptr.h"
#include "framework/library/MeshFile.h"
#include "framework/model/Group.h"
#include "framework/qorfile/filepath.h"
#include "host/Export.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Qor::Chart::Library {
class SymbolRegistry;
}

namespace Qor::Chart::Host {

/// Makes model trees of model files, in any format that the symbol registry reads. Every node of the file becomes a group of
/// its name, every mesh of it a simple object with the mesh's material colour. Groups carry no transform, so each object
/// gets its own matrix from the mesh to the coordinates of the file: any affine one, shear and mirror included. Objects
/// that show the same mesh share one symbol, which names the mesh as in "car.glb#12". A node that holds nothing but one
/// mesh becomes that object itself.
///
/// Materials with a texture or with transparency become render styles of their name, which stand between a group and
/// those of its objects that are made of them, one for each group and material: "car.glb" / "door" / "glass" /
/// "window". Opacity is the style's, so that the object's colour is solid. A textured object is white unless its
/// material has a colour, too. Of see-through material that is made to be seen from the front the back faces are left
/// out.
///
/// The importer keeps the files that it read in memory: keep it until the first update, so that no file is read twice.
class QOR_HOST_API Importer {
public:
    /// Told how far reading has come, from 0 to 1; giving false stops it.
    using Progress = Library::MeshFile::Progress;

    /// What was made of one file.
    struct Result {
        Core::Ptr<Model::Group> root; ///< named after the file
        std::size_t groups = 0; ///< the root included
        std::size_t objects = 0;
        std::size_t styles = 0; ///< of textured and of transparent materials
        std::size_t triangles = 0; ///< of all objects together
        std::size_t lines = 0;
        std::size_t points = 0;
        std::size_t dropped = 0; ///< primitives and objects left out because they hold numbers that cannot be drawn
    };

    /// The registry of the scene that the trees are made for; it must outlive the importer.
    explicit Importer(Library::SymbolRegistry const& p_symbols);
    ~Importer();

    /// Reads a file. It must be the registry's scene that the result is added to.
    /// @throws Library::ModelFileError when the file cannot be used, or p_progress stopped it
    Result Import(qorfile::filepath const& p_file, Progress const& p_progress = {});

private:
    class Builder;

    Library::SymbolRegistry const& _symbols;
    std::vector<std::shared_ptr<Library::MeshFile const>> _files;
};

} // namespace Qor::Chart::Host
