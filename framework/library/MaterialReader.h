#pragma once

#include "framework/library/MeshFile.h"
#include "framework/types/Color4f.h"

#include <assimp/types.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

struct aiMaterial;
struct aiScene;
struct aiTexture;

namespace Qor::Chart::Library {

/// Takes materials and the images of their textures over from what the importer library read.
class MaterialReader {
public:
    /// From the texture coordinates of a file to those that the texture is looked up with, both from the lower left
    /// corner.
    struct TextureTransform {
        std::array<float, 3> s{1, 0, 0}; ///< factors of both coordinates, and what is added
        std::array<float, 3> t{0, 1, 0};
    };

    struct Material {
        std::string name;
        Types::Color4f color{1, 1, 1, 1};
        MeshFile::Surface surface;
        std::size_t coordinates = 0; ///< which of a mesh's sets of texture coordinates the texture is laid out with
        TextureTransform transform;
        std::optional<std::size_t> image; ///< the image in the file that the texture shows
        bool lacksImage = false; ///< there is a texture, but nothing that it shows; it was left out
    };

    MaterialReader(qorfile::filepath const& p_path, aiScene const& p_scene);

    /// Image files are named whether they exist or not.
    Material Read(aiMaterial const& p_material) const;

    /// A colour as it is to be shown, whatever the file keeps.
    Types::Color4f Shown(aiColor4D const& p_color) const;

    /// The file of an image in a format that QImage reads; empty when there is nothing in it.
    static std::vector<std::byte> BytesOf(aiTexture const& p_image);

private:
    Types::Color4f ColorOf(aiMaterial const& p_material, bool p_textured) const;
    void ReadAlpha(aiMaterial const& p_material, Material& p_result) const;
    void ReadTexture(aiMaterial const& p_material, Material& p_result) const;
    void ReadImage(std::string const& p_reference, Material& p_result) const;
    std::string Find(std::string const& p_reference) const;
    TextureTransform TransformOf(aiMaterial const& p_material, int p_type) const;

    qorfile::filepath _path;
    aiScene const& _scene;
    bool _isGltf; ///< keeps colours as light intensities and counts texture coordinates from the upper left
};

} // namespace Qor::Chart::Library
