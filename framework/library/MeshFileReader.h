#pragma once

#include "framework/library/MeshFile.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>

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
    MeshFile::MeshInfo ReadMesh(aiScene const& p_scene, aiMesh const& p_mesh);
    void ReadNodes(aiScene const& p_scene);
    void ReadNode(aiNode const& p_node, std::uint32_t p_parent);
    void ReadBounds();
    void Report(double p_fraction);
    void CheckStopped() const;

    MeshFile& _file;
    qorfile::filepath _path;
    MeshFile::Progress const& _progress;
    double _reported = 0;
    bool _stopped = false;
    std::unique_ptr<Assimp::Importer> _importer;
    std::unordered_set<aiMesh const*> _emptied; ///< had primitives, but no good ones
};

} // namespace Qor::Chart::Library
