#include "framework/library/MeshFileReader.h"

#include "framework/library/GltfCheck.h"
#include "framework/library/GuardedFiles.h"
#include "framework/library/ImporterAssertions.h"
#include "framework/library/Mesh.h"
#include "framework/library/ModelFileError.h"
#include "framework/library/Normals.h"
#include "framework/library/PlyCheck.h"
#include "framework/qorfile/fileexists.h"
#include "framework/types/Vector3.h"
#include "framework/utility/Logger.h"

#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/config.h>
#include <assimp/material.h>
#include <assimp/mesh.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <fstream>
#include <iterator>
#include <new>
#include <span>
#include <utility>
#include <vector>

namespace Qor::Chart::Library {

using Types::Matrix4;
using Vector3 = Types::Vector3_Base<float>;

namespace {

/// Of the whole of loading: what the importer takes, the rest is for taking over what it read.
constexpr double ImporterShare = 0.8;

constexpr unsigned PostProcessing = aiProcess_RemoveComponent | aiProcess_Triangulate | aiProcess_SortByPType;

constexpr int UnusedComponents = aiComponent_TANGENTS_AND_BITANGENTS | aiComponent_BONEWEIGHTS |
    aiComponent_ANIMATIONS | aiComponent_LIGHTS | aiComponent_CAMERAS;

bool IsFinite(aiVector3D const& p_vector) {
    return std::isfinite(p_vector.x) && std::isfinite(p_vector.y) && std::isfinite(p_vector.z);
}

Vector3 ToVector(aiVector3D const& p_vector) {
    return {p_vector.x, p_vector.y, p_vector.z};
}

Matrix4 ToMatrix(aiMatrix4x4 const& p_matrix) {
    std::array<double, 16> rows{};
    for (unsigned i = 0; i < 16; ++i) {
        rows[i] = p_matrix[i / 4][i % 4];
    }
    return Matrix4::FromRowMajor(rows.data());
}

/// One line without a full stop, fit to stand inside a sentence.
std::string Phrase(std::string p_words) {
    std::ranges::replace_if(
        p_words, [](unsigned char p_char) { return p_char < ' '; }, ' ');
    while (!p_words.empty() && (p_words.back() == '.' || p_words.back() == ' ')) {
        p_words.pop_back();
    }
    return p_words;
}

Ogl::Token KindOf(aiMesh const& p_mesh) {
    if (p_mesh.mPrimitiveTypes & (aiPrimitiveType_TRIANGLE | aiPrimitiveType_POLYGON)) {
        return Ogl::Tokens::AGL_TRIANGLES;
    }
    return p_mesh.mPrimitiveTypes & aiPrimitiveType_LINE ? Ogl::Tokens::AGL_LINES : Ogl::Tokens::AGL_POINTS;
}

unsigned CornersOf(Ogl::Token p_kind) {
    return p_kind == Ogl::Tokens::AGL_TRIANGLES ? 3 : p_kind == Ogl::Tokens::AGL_LINES ? 2 : 1;
}

/// True when primitives have vertices of their own instead of sharing them, as in formats without indices.
bool WantsJoining(aiScene const& p_scene) {
    return std::ranges::any_of(std::span(p_scene.mMeshes, p_scene.mNumMeshes), [](aiMesh const* p_mesh) {
        std::size_t const corners =
            std::size_t{p_mesh->mNumFaces} * (p_mesh->mNumFaces ? p_mesh->mFaces[0].mNumIndices : 0);
        return p_mesh->mNumVertices > corners / 10 * 9;
    });
}

/// What kinds of primitives there really are; points for a mesh without any.
unsigned PrimitiveTypesOf(aiMesh const& p_mesh) {
    unsigned types = 0;
    for (aiFace const& face : std::span(p_mesh.mFaces, p_mesh.mNumFaces)) {
        types |= face.mNumIndices == 1 ? aiPrimitiveType_POINT
            : face.mNumIndices == 2    ? aiPrimitiveType_LINE
            : face.mNumIndices == 3    ? aiPrimitiveType_TRIANGLE
                                       : aiPrimitiveType_POLYGON;
    }
    return types != 0 ? types : static_cast<unsigned>(aiPrimitiveType_POINT);
}

std::vector<std::uint32_t> ReadIndices(aiMesh const& p_mesh, unsigned p_corners) {
    std::vector<std::uint32_t> indices;
    indices.reserve(std::size_t{p_mesh.mNumFaces} * p_corners);
    for (aiFace const& face : std::span(p_mesh.mFaces, p_mesh.mNumFaces)) {
        if (face.mNumIndices == p_corners) {
            indices.insert(indices.end(), face.mIndices, face.mIndices + p_corners);
        }
    }
    return indices;
}

/// A list of vertices without primitives is taken as points.
std::vector<std::uint32_t> EveryVertex(aiMesh const& p_mesh) {
    std::vector<std::uint32_t> indices;
    for (std::uint32_t i = 0; i < p_mesh.mNumVertices; ++i) {
        if (IsFinite(p_mesh.mVertices[i])) {
            indices.push_back(i);
        }
    }
    return indices;
}

/// The normals of a mesh with length 1; none when a single one is unusable.
std::vector<Vector3> ReadNormals(aiMesh const& p_mesh) {
    std::vector<Vector3> normals;
    if (!p_mesh.HasNormals()) {
        return normals;
    }
    normals.reserve(p_mesh.mNumVertices);
    for (aiVector3D const& given : std::span(p_mesh.mNormals, p_mesh.mNumVertices)) {
        Vector3 const normal = Types::Normalized(ToVector(given));
        if (normal == Vector3()) {
            return {};
        }
        normals.push_back(normal);
    }
    return normals;
}

using TexCoords = std::vector<Types::Vector4_Base<float>>;

/// A set of texture coordinates; empty when the mesh has none, or one that is not finite.
TexCoords ReadTexCoords(
    aiMesh const& p_mesh, std::size_t p_set, MaterialReader::TextureTransform const& p_transform = {}) {
    TexCoords all;
    if (p_set >= AI_MAX_NUMBER_OF_TEXTURECOORDS || !p_mesh.HasTextureCoords(static_cast<unsigned>(p_set))) {
        return all;
    }
    all.reserve(p_mesh.mNumVertices);
    for (aiVector3D const& at : std::span(p_mesh.mTextureCoords[p_set], p_mesh.mNumVertices)) {
        auto const& [s, t] = p_transform;
        Vector3 const moved{s[0] * at.x + s[1] * at.y + s[2], t[0] * at.x + t[1] * at.y + t[2], at.z};
        if (!Types::IsFinite(moved)) {
            return {};
        }
        all.emplace_back(moved.x, moved.y, moved.z, 1.0F);
    }
    return all;
}

} // namespace

/// Passes on what the importer tells.
class MeshFileReader::ImporterProgress : public Assimp::ProgressHandler {
public:
    explicit ImporterProgress(MeshFileReader& p_reader) : _reader(p_reader) {}

    bool Update(float p_fraction) override {
        if (p_fraction >= 0) {
            _reader.Report(ImporterShare * static_cast<double>(p_fraction));
        }
        return !_reader._stopped;
    }

private:
    MeshFileReader& _reader;
};

MeshFileReader::MeshFileReader(MeshFile& p_file, qorfile::filepath const& p_path, MeshFile::Progress const& p_progress)
    : _file(p_file), _path(p_path), _progress(p_progress), _importer(std::make_unique<Assimp::Importer>()) {
    // Both are owned by the importer.
    _importer->SetProgressHandler(new ImporterProgress(*this));
    _importer->SetIOHandler(new GuardedFiles());
    _importer->SetPropertyInteger(AI_CONFIG_PP_RVC_FLAGS, UnusedComponents);
    _importer->SetPropertyBool(AI_CONFIG_IMPORT_NO_SKELETON_MESHES, true);
    _importer->SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
}

MeshFileReader::~MeshFileReader() = default;

void MeshFileReader::Fail(qorfile::filepath const& p_path, std::string const& p_why, std::string const& p_advice) {
    throw ModelFileError("Cannot read the model file \"" + p_path.string() + "\": " + p_why + "; " + p_advice + ".");
}

void MeshFileReader::Read() {
    try {
        CheckFile();
        Report(0);
        aiScene const& scene = Import();
        _file._path = _path;
        ReadMaterials(scene);
        ReadMeshes(scene);
        ReadNodes(scene);
        ReadBounds();
        Report(1);
    } catch (ModelFileError const&) {
        throw;
    } catch (std::bad_alloc const&) {
        FailMemory();
    } catch (std::exception const& failure) {
        FailImport(failure.what());
    }
    WarnOfWhatIsMissing();
}

void MeshFileReader::WarnOfWhatIsMissing() const {
    if (_file._droppedPrimitives != 0) {
        Utility::GetLogger().warning("The model file \"" + _path.string() + "\" has " +
            std::to_string(_file._droppedPrimitives) +
            " primitives with infinite positions or with indices of no vertex; they are left out.");
    }
    auto const withoutImage = std::ranges::count_if(_materials, &MaterialReader::Material::lacksImage);
    if (withoutImage != 0) {
        Utility::GetLogger().warning("The model file \"" + _path.string() + "\" has " + std::to_string(withoutImage) +
            " materials with a texture that shows no image; they are shown without a texture.");
    }
    if (_withoutCoordinates != 0) {
        Utility::GetLogger().warning("The model file \"" + _path.string() + "\" has textures for " +
            std::to_string(_withoutCoordinates) +
            " meshes that have no texture coordinates, or infinite ones; these are shown without a texture.");
    }
}

void MeshFileReader::CheckFile() const {
    if (_path.empty()) {
        Fail(_path, "it has no name", "give the path of a file");
    }
    if (qorfile::folderexists(_path)) {
        Fail(_path, "it is a folder", "name a file in it");
    }
    if (!qorfile::fileexists(_path)) {
        Fail(_path, "there is no such file", "check the path");
    }
    std::ifstream stream(_path.string(), std::ios::binary);
    if (!stream) {
        Fail(_path, "it may not be read", "check its permissions");
    }
    if (stream.peek() == std::ifstream::traits_type::eof()) {
        Fail(_path, "it is empty", "export it again");
    }
    CheckContent();
}

/// Files in the PLY and glTF formats are looked through first: their importers do not survive every fault.
void MeshFileReader::CheckContent() const {
    std::string fault;
    if (GltfCheck::IsGltf(_path.string())) {
        fault = GltfCheck::Examine(_path.string());
    } else {
        std::ifstream stream(_path.string(), std::ios::binary);
        std::string content(5, '\0');
        stream.read(content.data(), 5);
        if (stream && PlyCheck::IsPly(content)) {
            content.append(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
            fault = PlyCheck::Examine(content);
        }
    }
    if (!fault.empty()) {
        Fail(_path, "it is damaged (" + Phrase(fault) + ")", "export it again");
    }
}

aiScene const& MeshFileReader::Import() {
    ImporterAssertions const throwing;
    aiScene const* scene = _importer->ReadFile(_path.string(), 0);
    CheckStopped();
    if (!scene || !scene->mRootNode) {
        FailImport(_importer->GetErrorString());
    }
    for (aiMesh* mesh : std::span(scene->mMeshes, scene->mNumMeshes)) {
        Clean(*mesh);
    }
    unsigned const joining = WantsJoining(*scene) ? static_cast<unsigned>(aiProcess_JoinIdenticalVertices) : 0U;
    scene = scene->mNumMeshes == 0 ? nullptr : _importer->ApplyPostProcessing(PostProcessing | joining);
    CheckStopped();
    if (!scene) {
        Fail(_path, "there is nothing to draw in it", "choose a file with triangles, lines or points");
    }
    return *scene;
}

void MeshFileReader::FailMemory() const {
    Fail(_path, "it is damaged, or too large for the memory of this machine", "export it again, in smaller parts");
}

void MeshFileReader::FailImport(std::string const& p_words) const {
    std::string const extension = _path.extension();
    if (extension.empty()) {
        Fail(_path, "its name has no extension that tells the format", "rename it");
    }
    if (p_words.find("bad_alloc") != std::string::npos) {
        FailMemory();
    }
    if (!_importer->IsExtensionSupported(extension)) {
        Fail(_path, "\"" + extension + "\" is no known model format", "convert it to glTF, OBJ, PLY or STL");
    }
    // These words of the importer only tell that it did not recognise what is in the file.
    bool const telling = !p_words.empty() && p_words.find("No suitable reader") == std::string::npos;
    Fail(_path, "it is damaged or no " + extension + " file" + (telling ? " (" + Phrase(p_words) + ")" : std::string()),
        "export it again");
}

/// Takes out the primitives that later steps could not cope with.
void MeshFileReader::Clean(aiMesh& p_mesh) {
    if (p_mesh.mNumFaces == 0 || !p_mesh.mFaces) {
        p_mesh.mNumFaces = 0;
        p_mesh.mPrimitiveTypes = aiPrimitiveType_POINT;
        return;
    }
    auto const isGood = [&](aiFace const& p_face) {
        return p_face.mNumIndices != 0 && p_mesh.mVertices &&
            std::all_of(p_face.mIndices, p_face.mIndices + p_face.mNumIndices,
                [&](unsigned p_index) { return p_index < p_mesh.mNumVertices && IsFinite(p_mesh.mVertices[p_index]); });
    };
    unsigned kept = 0;
    for (unsigned i = 0; i < p_mesh.mNumFaces; ++i) {
        if (!isGood(p_mesh.mFaces[i])) {
            ++_file._droppedPrimitives;
            continue;
        }
        if (kept != i) {
            std::swap(p_mesh.mFaces[kept].mNumIndices, p_mesh.mFaces[i].mNumIndices);
            std::swap(p_mesh.mFaces[kept].mIndices, p_mesh.mFaces[i].mIndices);
        }
        ++kept;
    }
    p_mesh.mNumFaces = kept;
    p_mesh.mPrimitiveTypes = PrimitiveTypesOf(p_mesh);
    if (kept == 0) {
        _emptied.insert(&p_mesh);
    }
}

void MeshFileReader::ReadMeshes(aiScene const& p_scene) {
    bool any = false;
    _file._meshes.reserve(p_scene.mNumMeshes);
    for (unsigned i = 0; i < p_scene.mNumMeshes; ++i) {
        _file._meshes.push_back(ReadMesh(*p_scene.mMeshes[i]));
        any = any || _file._meshes.back().symbol;
        Report(ImporterShare + (1 - ImporterShare) * (i + 1) / p_scene.mNumMeshes);
        CheckStopped();
    }
    if (!any) {
        Fail(_path, "there is nothing to draw in it", "choose a file with triangles, lines or points");
    }
}

void MeshFileReader::ReadMaterials(aiScene const& p_scene) {
    _materialReader.emplace(_path, p_scene);
    for (aiMaterial const* material : std::span(p_scene.mMaterials, p_scene.mNumMaterials)) {
        _materials.push_back(_materialReader->Read(*material));
    }
    for (MaterialReader::Material& material : _materials) {
        if (material.image && !_file._images.contains(*material.image)) {
            _file._images[*material.image] = MaterialReader::BytesOf(*p_scene.mTextures[*material.image]);
        }
    }
}

MeshFile::MeshInfo MeshFileReader::ReadMesh(aiMesh const& p_mesh) {
    MeshFile::MeshInfo info;
    info.name = p_mesh.mName.C_Str();
    MaterialReader::Material const material =
        p_mesh.mMaterialIndex < _materials.size() ? _materials[p_mesh.mMaterialIndex] : MaterialReader::Material();
    info.material = material.name;
    info.materialNumber = p_mesh.mMaterialIndex;
    info.color = material.color;
    info.surface = material.surface;
    Mesh mesh;
    if (p_mesh.mNumFaces != 0) {
        mesh.kind = KindOf(p_mesh);
        mesh.indices = ReadIndices(p_mesh, CornersOf(mesh.kind));
    } else if (p_mesh.HasPositions() && !_emptied.contains(&p_mesh)) {
        mesh.kind = Ogl::Tokens::AGL_POINTS;
        mesh.indices = EveryVertex(p_mesh);
    }
    info.kind = mesh.kind;
    info.primitives = mesh.indices.size() / CornersOf(mesh.kind);
    if (mesh.indices.empty()) {
        return info;
    }
    ReadVertices(p_mesh, mesh.vertices);
    ReadTexture(p_mesh, material, info, mesh.vertices);
    if (mesh.kind == Ogl::Tokens::AGL_TRIANGLES && mesh.vertices.normals.empty()) {
        Normals::Generate(mesh);
    }
    info.hasVertexColors = !mesh.vertices.colors.empty();
    info.symbol.indices = std::make_shared<Ogl::IndexBuffer const>(mesh.kind, std::move(mesh.indices));
    info.symbol.vertices = std::make_shared<Ogl::VertexBuffer const>(std::move(mesh.vertices));
    info.symbol.bounds = info.symbol.vertices->Bounds();
    return info;
}

void MeshFileReader::ReadVertices(aiMesh const& p_mesh, Ogl::VertexData& p_vertices) const {
    p_vertices.positions.reserve(p_mesh.mNumVertices);
    for (aiVector3D const& position : std::span(p_mesh.mVertices, p_mesh.mNumVertices)) {
        p_vertices.positions.push_back(ToVector(position));
    }
    p_vertices.normals = ReadNormals(p_mesh);
    if (p_mesh.HasVertexColors(0)) {
        p_vertices.colors.reserve(p_mesh.mNumVertices);
        for (aiColor4D const& color : std::span(p_mesh.mColors[0], p_mesh.mNumVertices)) {
            p_vertices.colors.push_back(_materialReader->Shown(color));
        }
    }
}

/// Texture coordinates cost sixteen bytes a vertex and set, so they are kept where a texture needs them and nowhere
/// else.
void MeshFileReader::ReadTexture(aiMesh const& p_mesh, MaterialReader::Material const& p_material,
    MeshFile::MeshInfo& p_info, Ogl::VertexData& p_vertices) {
    if (p_info.surface.texture.empty()) {
        return;
    }
    p_vertices.texCoords[0] = ReadTexCoords(p_mesh, p_material.coordinates, p_material.transform);
    if (p_vertices.texCoords[0].empty()) {
        p_info.surface.texture.clear();
        ++_withoutCoordinates;
        return;
    }
    p_vertices.texCoords[1] = ReadTexCoords(p_mesh, p_material.coordinates == 0 ? 1 : 0);
}

void MeshFileReader::ReadNodes(aiScene const& p_scene) {
    std::vector<std::pair<aiNode const*, std::uint32_t>> pending{{p_scene.mRootNode, MeshFile::NoParent}};
    while (!pending.empty()) {
        auto const [node, parent] = pending.back();
        pending.pop_back();
        auto const number = static_cast<std::uint32_t>(_file._nodes.size());
        ReadNode(*node, parent);
        for (unsigned i = node->mNumChildren; i > 0; --i) {
            pending.emplace_back(node->mChildren[i - 1], number);
        }
    }
}

void MeshFileReader::ReadNode(aiNode const& p_node, std::uint32_t p_parent) {
    auto const number = static_cast<std::uint32_t>(_file._nodes.size());
    MeshFile::Node& node = _file._nodes.emplace_back();
    node.name = p_node.mName.C_Str();
    node.parent = p_parent;
    node.local = ToMatrix(p_node.mTransformation);
    if (!node.local.IsFinite()) {
        Utility::GetLogger().warning("The model file \"" + _path.string() + "\" gives node \"" + node.name +
            "\" a place that is not finite; it is put where its parent is.");
        node.local = Matrix4();
    }
    node.world = node.local;
    if (p_parent != MeshFile::NoParent) {
        node.world = _file._nodes[p_parent].world * node.local;
        _file._nodes[p_parent].children.push_back(number);
    }
    for (unsigned const mesh : std::span(p_node.mMeshes, p_node.mNumMeshes)) {
        if (mesh < _file._meshes.size()) {
            node.meshes.push_back(mesh);
        }
    }
}

void MeshFileReader::ReadBounds() {
    for (MeshFile::Node const& node : _file._nodes) {
        for (std::uint32_t const mesh : node.meshes) {
            _file._bounds.Add(_file._meshes[mesh].symbol.bounds.Transformed(node.world));
        }
    }
}

void MeshFileReader::Report(double p_fraction) {
    _reported = std::clamp(p_fraction, _reported, 1.0);
    if (_progress && !_stopped) {
        _stopped = !_progress(_reported);
    }
}

void MeshFileReader::CheckStopped() const {
    if (_stopped) {
        Fail(_path, "loading was stopped", "load it again to have it");
    }
}

} // namespace Qor::Chart::Library
