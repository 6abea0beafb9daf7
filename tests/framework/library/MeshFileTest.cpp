#include "framework/library/MeshFile.h"

#include "framework/library/ModelFileError.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>

namespace Qor::Chart::Library {

using testing::HasSubstr;
using Types::Color4f;
using Types::Matrix4;
using Box = Types::BoundingBox_Base<double>;
using Vector3 = Types::Vector3_Base<double>;

namespace {

std::string ModelFile(std::string const& p_name) {
    return std::string(QOR_TEST_DATA) + "/models/" + p_name;
}

std::string MessageFor(std::string const& p_path) {
    try {
        MeshFile::Load(p_path);
    } catch (ModelFileError const& error) {
        return error.what();
    }
    return "no error";
}

/// The volume that the triangles enclose, positive when they are counter-clockwise from outside.
double VolumeOf(Symbol const& p_symbol) {
    auto const& indices = p_symbol.indices->Indices();
    auto const& positions = p_symbol.vertices->Data().positions;
    double volume = 0;
    for (std::size_t i = 0; i < indices.size(); i += 3) {
        Vector3 const a(positions[indices[i]]);
        volume +=
            Types::Dot(a, Types::Cross(Vector3(positions[indices[i + 1]]), Vector3(positions[indices[i + 2]]))) / 6;
    }
    return volume;
}

/// Everything that is promised of the buffers of a file.
void ExpectClean(MeshFile const& p_file) {
    for (MeshFile::MeshInfo const& mesh : p_file.Meshes()) {
        if (!mesh.symbol) {
            continue;
        }
        auto const& data = mesh.symbol.vertices->Data();
        for (std::uint32_t const index : mesh.symbol.indices->Indices()) {
            ASSERT_LT(index, data.positions.size());
            ASSERT_TRUE(Types::IsFinite(data.positions[index]));
        }
        if (mesh.kind == Ogl::Tokens::AGL_TRIANGLES) {
            ASSERT_EQ(data.normals.size(), data.positions.size());
        }
        for (auto const& normal : data.normals) {
            ASSERT_NEAR(Types::Length(normal), 1, 1e-4);
        }
    }
}

} // namespace

TEST(MeshFileTest, readsHierarchyNamesPlacesAndMaterials) {
    for (char const* name : {"scene.gltf", "scene.glb"}) {
        auto const file = MeshFile::Load(ModelFile(name));
        auto const& nodes = file->Nodes();
        ASSERT_EQ(nodes.size(), 5U);
        EXPECT_EQ(nodes[0].name, "car");
        EXPECT_EQ(nodes[0].parent, MeshFile::NoParent);
        EXPECT_THAT(nodes[0].children, testing::ElementsAre(1, 2, 4));
        EXPECT_EQ(nodes[1].name, "body");
        EXPECT_EQ(nodes[1].world.TranslationPart(), Vector3(10, 0, 0));
        EXPECT_EQ(nodes[2].name, "mirrored");
        EXPECT_LT(nodes[2].world.Determinant(), 0);
        EXPECT_EQ(nodes[3].parent, 2U);
        EXPECT_EQ(nodes[3].world, nodes[2].world * nodes[3].local);
        EXPECT_EQ(nodes[1].meshes, nodes[2].meshes) << "one mesh in two places";
        EXPECT_EQ(nodes[4].meshes.size(), 2U);

        auto const& meshes = file->Meshes();
        ASSERT_EQ(meshes.size(), 4U);
        EXPECT_EQ(meshes[0].name, "box");
        EXPECT_EQ(meshes[0].material, "red paint");
        EXPECT_EQ(meshes[0].color, Color4f(1, 0, 0, 1));
        EXPECT_EQ(meshes[0].primitives, 12U);
        EXPECT_FALSE(meshes[0].hasVertexColors);
        EXPECT_EQ(meshes[1].color, Color4f(0.5F, 1, 1, 0.25F));
        EXPECT_TRUE(meshes[1].hasVertexColors);
        EXPECT_EQ(meshes[2].kind, Ogl::Tokens::AGL_LINES);
        EXPECT_EQ(meshes[2].primitives, 2U);
        EXPECT_EQ(meshes[3].kind, Ogl::Tokens::AGL_POINTS);
        EXPECT_EQ(meshes[3].primitives, 2U);
        EXPECT_NEAR(file->Bounds().Max().x, 10.5, 1e-6);
        ExpectClean(*file);
    }
}

TEST(MeshFileTest, readsEachKindOfFile) {
    struct {
        char const* name;
        Ogl::Token kind;
        std::size_t primitives;
        Color4f color;
        bool vertexColors;
        Box bounds;
    } const cases[] = {
        {"cube.obj", Ogl::Tokens::AGL_TRIANGLES, 12, {0, 0.5F, 0, 0.75F}, false, {{-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}}},
        {"tetra.ply", Ogl::Tokens::AGL_TRIANGLES, 4, {1, 1, 1, 1}, true, {{0, 0, 0}, {1, 1, 1}}},
        {"points.ply", Ogl::Tokens::AGL_POINTS, 4, {1, 1, 1, 1}, true, {{0, 0, 0}, {1, 1, 1}}},
        {"tetra.stl", Ogl::Tokens::AGL_TRIANGLES, 4, {1, 1, 1, 1}, false, {{0, 0, 0}, {1, 1, 1}}},
        {"tetra_binary.stl", Ogl::Tokens::AGL_TRIANGLES, 4, {1, 1, 1, 1}, false, {{0, 0, 0}, {1, 1, 1}}},
        {"lines.obj", Ogl::Tokens::AGL_LINES, 2, {0.6F, 0.6F, 0.6F, 1}, false, {{0, 0, 0}, {1, 1, 0}}},
    };
    for (auto const& each : cases) {
        auto const file = MeshFile::Load(ModelFile(each.name));
        ASSERT_EQ(file->Meshes().size(), 1U) << each.name;
        MeshFile::MeshInfo const& mesh = file->Meshes()[0];
        EXPECT_EQ(mesh.kind, each.kind) << each.name;
        EXPECT_EQ(mesh.primitives, each.primitives) << each.name;
        EXPECT_EQ(mesh.color, each.color) << each.name;
        EXPECT_EQ(mesh.hasVertexColors, each.vertexColors) << each.name;
        EXPECT_EQ(mesh.symbol.bounds, each.bounds) << each.name;
        ExpectClean(*file);
        if (each.kind == Ogl::Tokens::AGL_TRIANGLES) {
            EXPECT_GT(VolumeOf(mesh.symbol), 0) << each.name;
        }
    }
}

TEST(MeshFileTest, oneSymbolOfTheWholeHasEverythingInItsPlace) {
    auto const file = MeshFile::Load(ModelFile("scene.glb"));
    qordebug::CaptureScope const log(Utility::GetLogger());
    Symbol const whole = file->WholeSymbol();
    EXPECT_TRUE(log.contains("2 meshes of lines or points"));
    EXPECT_EQ(whole.indices->Kind(), Ogl::Tokens::AGL_TRIANGLES);
    EXPECT_EQ(whole.indices->Indices().size(), 3U * (12 + 12 + 4));
    // The cube once as it is, once mirrored and doubled, and the tetrahedron doubled with it: all still inside out of
    // nothing.
    EXPECT_NEAR(VolumeOf(whole), 1 + 2 + 2.0 / 6, 1e-5);

    auto const& data = whole.vertices->Data();
    std::set<float> reds;
    for (std::size_t i = 0; i < data.positions.size(); ++i) {
        ASSERT_NEAR(Types::Length(data.normals[i]), 1, 1e-5);
        reds.insert(data.colors[i].red);
    }
    EXPECT_THAT(reds, testing::ElementsAre(0.0F, 0.5F, 1.0F)) << "vertex colours are multiplied by the material's";
    for (std::size_t i = 0; i < whole.indices->Indices().size(); i += 3) {
        auto const at = [&](std::size_t p_corner) { return whole.indices->Indices()[i + p_corner]; };
        Vector3 const a(data.positions[at(0)]);
        Vector3 const face = Types::Cross(Vector3(data.positions[at(1)]) - a, Vector3(data.positions[at(2)]) - a);
        EXPECT_GT(Types::Dot(face, Vector3(data.normals[at(0)])), 0) << "triangle " << i / 3;
    }
}

TEST(MeshFileTest, tellsInOneSentenceWhyAFileCannotBeUsed) {
    namespace fs = std::filesystem;
    fs::path const nothing = fs::path(testing::TempDir()) / "nothing.obj";
    std::ofstream(nothing) << "# a comment and nothing that could be drawn\n# in it\n";
    struct {
        std::string path;
        char const* reason;
    } const cases[] = {
        {ModelFile("missing.glb"), "there is no such file; check the path"},
        {ModelFile(""), "it is a folder"},
        {"", "it has no name"},
        {ModelFile("empty.obj"), "it is empty"},
        {ModelFile("unknown.nosuchformat"), "\".nosuchformat\" is no known model format; convert it"},
        {ModelFile("truncated.glb"), "it is damaged or no .glb file"},
        {ModelFile("truncated.stl"), "it is damaged or no .stl file"},
        {ModelFile("garbage.glb"), "it is damaged or no .glb file"},
        {ModelFile("garbage.gltf"), "it is damaged or no .gltf file"},
        {ModelFile("badindex.obj"), "it is damaged or no .obj file (OBJ: vertex index out of range)"},
        {ModelFile("huge.ply"), "it is damaged (it has 8 of 4000000000"},
        {nothing.string(), "there is nothing to draw in it"},
    };
    for (auto const& each : cases) {
        std::string const message = MessageFor(each.path);
        EXPECT_THAT(message, HasSubstr("\"" + each.path + "\""));
        EXPECT_THAT(message, HasSubstr(each.reason));
        EXPECT_THAT(message, testing::EndsWith("."));
        EXPECT_THAT(message, testing::Not(HasSubstr("\n")));
    }
    fs::remove(nothing);
}

TEST(MeshFileTest, leavesOutPrimitivesThatCannotBeDrawnAndSaysSo) {
    struct {
        char const* name;
        std::size_t kept;
    } const cases[] = {{"nan.obj", 1}, {"badindex.ply", 4}, {"badindex.gltf", 1}};
    for (auto const& each : cases) {
        qordebug::CaptureScope const log(Utility::GetLogger());
        auto const file = MeshFile::Load(ModelFile(each.name));
        EXPECT_EQ(file->Meshes()[0].primitives, each.kept) << each.name;
        EXPECT_EQ(log.contains("primitives with infinite positions"), file->DroppedPrimitives() > 0) << each.name;
        ExpectClean(*file);
    }
}

TEST(MeshFileTest, progressRunsFromStartToEndAndMayStopTheLoading) {
    std::vector<double> reported;
    MeshFile::Load(ModelFile("scene.glb"), [&](double p_fraction) {
        reported.push_back(p_fraction);
        return true;
    });
    EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
    EXPECT_EQ(reported.front(), 0);
    EXPECT_EQ(reported.back(), 1);

    int calls = 0;
    EXPECT_THROW(MeshFile::Load(ModelFile("scene.glb"), [&](double) { return ++calls < 2; }), ModelFileError);
    EXPECT_EQ(calls, 2);
}

TEST(MeshFileTest, damagedFilesEndInAnErrorOrInCleanBuffers) {
    namespace fs = std::filesystem;
    std::mt19937 random(42);
    qordebug::CaptureScope const log(Utility::GetLogger());
    for (char const* name : {"scene.glb", "cube.obj", "tetra.ply", "tetra_binary.stl", "tetra.stl"}) {
        std::ifstream stream(ModelFile(name), std::ios::binary);
        std::string const good{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        fs::path const path = fs::path(testing::TempDir()) / (std::string("damaged_") + name);
        for (int round = 0; round < 60; ++round) {
            std::string bad = good.substr(0, round % 3 == 0 ? random() % good.size() : good.size());
            for (int i = 0; i < round % 7 && !bad.empty(); ++i) {
                bad[random() % bad.size()] = static_cast<char>(random());
            }
            std::ofstream(path, std::ios::binary) << bad;
            try {
                auto const file = MeshFile::Load(path.string());
                ExpectClean(*file);
                file->WholeSymbol();
            } catch (ModelFileError const& error) {
                EXPECT_THAT(error.what(), HasSubstr(path.string()));
            }
        }
        fs::remove(path);
    }
}

} // namespace Qor::Chart::Library
