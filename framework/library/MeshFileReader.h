#pragma once

#include "framework/library/MaterialReader.h"
#include "framework/library/MeshFile.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace Assimp {
class Importer;
}
struct aiMesh;
struct aiNode;
struct aiScene;

namespace Qor::Chart::Library {

/// Fills a `MeshFile` from a file through the importer library: once, then it is done with.
class MeshFileReader {
public:
    MeshFileReader(MeshFile& p_file, qorfile::filepath const& p_path, MeshFile::Progress const& p_progress);
    ~MeshFileReader();

    /// Throws `ModelFileError`.
    void Read();

    /// Throws `ModelFileError` with one sentence: that the file cannot be read, why, and what to do.
    [[noreturn]] static void Fail(
        qorfile::filepath const& p_path, std::string const& p_why, std::string const& p_advice);

private:
    class ImporterProgress;

    void CheckFile() const;
    void CheckContent() const;
    aiScene const& Import();
    [[noreturn]] void FailMemory() const;
    [[noreturn]] void FailImport(std::string const& p_words) const;
    void Clean(aiMesh& p_mesh);
    void ReadMeshes(aiScene const& p_scene);
    void ReadMaterials(aiScene const& p_scene);
    MeshFile::MeshInfo ReadMesh(aiMesh const& p_mesh);
    void ReadVertices(aiMesh const& p_mesh, Ogl::VertexData& p_vertices) const;
    void ReadTexture(aiMesh const& p_mesh, MaterialReader::Material const& p_material, MeshFile::MeshInfo& p_info,
        Ogl::VertexData& p_vertices);
    void ReadNodes(aiScene const& p_scene);
    void ReadNode(aiNode const& p_node, std::uint32_t p_parent);
    void ReadBounds();
    void Report(double p_fraction);
    void CheckStopped() const;
    void WarnOfWhatIsMissing() const;

    MeshFile& _file;
    qorfile::filepath _path;
    MeshFile::Progress const& _progress;
    double _reported = 0;
    bool _stopped = false;
    std::unique_ptr<Assimp::Importer> _importer;
    std::optional<MaterialReader> _materialReader;
    std::vector<MaterialReader::Material> _materials;
    std::size_t _withoutCoordinates = 0; ///< meshes of a textured material
    std::unordered_set<aiMesh const*> _emptied; ///< had primitives, but no good ones
};

} // namespace Qor::Chart::Library
