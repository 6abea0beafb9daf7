#include "framework/library/MeshFile.h"

#include "framework/library/ModelFileError.h"
#include "framework/library/SymbolRegistry.h"
#include "framework/assets/ImageCache.h"
#include "framework/assets/ImageError.h"
#include "framework/types/Vector2.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"
#include "tests/framework/library/Triangles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

/// Where a failed allocation ends the program, files that ask for too much cannot be tried.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool AllocationFailureIsFatal = true;
#elif defined(__has_feature)
constexpr bool AllocationFailureIsFatal = __has_feature(address_sanitizer);
#else
constexpr bool AllocationFailureIsFatal = false;
#endif

namespace Qor::Chart::Library {

using namespace Ogl::Tokens;
using testing::HasSubstr;
using Types::Color4f;
using Box = Types::BoundingBox_Base<double>;
using Vector3 = Types::Vector3_Base<double>;

namespace {

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
        ASSERT_TRUE(mesh.kind != AGL_TRIANGLES || data.normals.size() == data.positions.size());
        for (auto const& normal : data.normals) {
            ASSERT_NEAR(Types::Length(normal), 1, 1e-4);
        }
    }
}

} // namespace

/// How half the intensity of light is shown: glTF keeps colours as intensities.
constexpr float HalfShown = 0.735356983F;

TEST(MeshFileTest, readsHierarchyNamesPlacesAndMaterials) {
    for (char const* name : {"scene.gltf", "scene.glb"}) {
        auto const file = MeshFile::Load(ModelFile(name));
        auto const& nodes = file->Nodes();
        ASSERT_EQ(nodes.size(), 5U);
        EXPECT_EQ(nodes[0].name, "car");
        EXPECT_THAT(nodes[0].children, testing::ElementsAre(1, 2, 4));
        EXPECT_EQ(nodes[1].world.TranslationPart(), Vector3(10, 0, 0));
        EXPECT_LT(nodes[2].world.Determinant(), 0);
        EXPECT_EQ(nodes[3].parent, 2U);
        EXPECT_EQ(nodes[3].world, nodes[2].world * nodes[3].local);
        EXPECT_EQ(nodes[1].meshes, nodes[2].meshes) << "one mesh in two places";

        auto const& meshes = file->Meshes();
        ASSERT_EQ(meshes.size(), 4U);
        EXPECT_EQ(meshes[0].name + " in " + meshes[0].material, "box in red paint");
        EXPECT_EQ(meshes[0].color, Color4f(1, 0, 0, 1));
        EXPECT_EQ(meshes[1].color, Color4f(HalfShown, 1, 1, 0.25F));
        EXPECT_TRUE(meshes[1].hasVertexColors && !meshes[0].hasVertexColors);
        EXPECT_TRUE(meshes[2].kind == AGL_LINES && meshes[2].primitives == 2);
        EXPECT_TRUE(meshes[3].kind == AGL_POINTS && meshes[3].primitives == 2);
        EXPECT_NEAR(file->Bounds().Max().x, 10.5, 1e-6);
        ExpectClean(*file);
    }
}

TEST(MeshFileTest, readsEachKindOfFile) {
    Box const unit({0, 0, 0}, {1, 1, 1});
    using Case = std::tuple<char const*, Ogl::Token, std::size_t, Color4f, bool, Box>;
    for (auto const& [name, kind, primitives, color, vertexColors, bounds] :
        {Case("cube.obj", AGL_TRIANGLES, 12, {0, 0.5F, 0, 0.75F}, false, {{-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}}),
            Case("tetra.ply", AGL_TRIANGLES, 4, {1, 1, 1, 1}, true, unit),
            Case("points.ply", AGL_POINTS, 4, {1, 1, 1, 1}, true, unit),
            Case("tetra.stl", AGL_TRIANGLES, 4, {1, 1, 1, 1}, false, unit),
            Case("tetra_binary.stl", AGL_TRIANGLES, 4, {1, 1, 1, 1}, false, unit),
            Case("lines.obj", AGL_LINES, 2, {0.6F, 0.6F, 0.6F, 1}, false, {{0, 0, 0}, {1, 1, 0}})}) {
        SCOPED_TRACE(name);
        auto const file = MeshFile::Load(ModelFile(name));
        ASSERT_EQ(file->Meshes().size(), 1U);
        MeshFile::MeshInfo const& mesh = file->Meshes()[0];
        EXPECT_EQ(mesh.kind, kind);
        EXPECT_EQ(mesh.primitives, primitives);
        EXPECT_EQ(mesh.color, color);
        EXPECT_EQ(mesh.hasVertexColors, vertexColors);
        EXPECT_EQ(mesh.symbol.bounds, bounds);
        ExpectClean(*file);
        if (kind == AGL_TRIANGLES) {
            ExpectSolid(mesh.symbol.vertices->Data(), mesh.symbol.indices->Indices());
        }
    }
}

TEST(MeshFileTest, keepsTexturesAndWhatAlphaMeans) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    std::string const path = ModelFile("textured.gltf");
    auto const file = MeshFile::Load(path);
    using Alpha = MeshFile::AlphaMode;
    struct Case {
        std::string texture;
        std::size_t sets;
        std::array<Types::Vector2_Base<float>, 2>
            right; ///< texture coordinates of the lower and the upper right corner
        Alpha alphaMode = Alpha::Opaque;
        float alpha = 1;
        bool isOneSided = true;
    };
    std::string const external = ModelFile("four quarters.png");
    std::vector<Case> const cases{
        {external, 2, {{{1, 0}, {1, 1}}}},
        {path + "#*0", 2, {{{1, 1}, {1, 1}}}, Alpha::Mask, 1, false},
        // The upper one, (1, 0) from above, is scaled to (2, 0), turned to (1.2, -1.6), and moved to (1.45, -1.1).
        {external, 2, {{{2.25F, 1.5F}, {1.45F, 2.1F}}}},
        {path + "#*1", 2, {{{1, 0}, {1, 1}}}},
        {ModelFile("missing.png"), 2, {{{1, 0}, {1, 1}}}},
        {path + "#*2", 2, {{{1, 0}, {1, 1}}}},
        {"", 0, {}},
        {"", 0, {}, Alpha::Blend, 0.5F},
        {"", 0, {}},
    };
    ASSERT_EQ(file->Meshes().size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        Case const& expected = cases[i];
        MeshFile::MeshInfo const& mesh = file->Meshes()[i];
        SCOPED_TRACE(mesh.material);
        EXPECT_EQ(mesh.surface.texture, expected.texture);
        EXPECT_EQ(mesh.surface.alphaMode, expected.alphaMode);
        EXPECT_EQ(mesh.color.alpha, expected.alpha);
        EXPECT_EQ(mesh.surface.isOneSided, expected.isOneSided);
        auto const& sets = mesh.symbol.vertices->Data().texCoords;
        EXPECT_EQ(std::ranges::count_if(sets, [](auto const& p_set) { return p_set.size() == 4; }), expected.sets);
        if (expected.sets == 0) {
            continue;
        }
        for (std::size_t corner : {0U, 1U}) {
            EXPECT_NEAR(sets[0][corner + 1].x, expected.right[corner].x, 1e-5);
            EXPECT_NEAR(sets[0][corner + 1].y, expected.right[corner].y, 1e-5);
        }
        EXPECT_EQ(sets[0][1].w, 1);
    }
    Ogl::TextureSampling const& sampling = file->Meshes()[1].surface.sampling;
    EXPECT_EQ(sampling.wrapS, AGL_CLAMP_TO_EDGE);
    EXPECT_EQ(sampling.wrapT, AGL_MIRRORED_REPEAT);
    EXPECT_EQ(sampling.minification, AGL_LINEAR_MIPMAP_NEAREST);
    EXPECT_EQ(sampling.magnification, AGL_NEAREST);
    EXPECT_TRUE(log.contains("2 meshes that have no texture coordinates, or infinite ones"));
    SymbolRegistry const registry;
    Assets::ImageCache const cache;
    EXPECT_EQ(registry.LoadImage(path + "#*0", cache)->size(), QSize(2, 2));
    for (char const* const image :
        {"textured.gltf#*1", "textured.gltf#*3", "textured.gltf#*99999999999999999999", "garbage.glb#*0"}) {
        EXPECT_THROW(registry.LoadImage(ModelFile(image), cache), Assets::ImageError) << image;
    }
}

TEST(MeshFileTest, oneSymbolOfTheWholeHasEverythingInItsPlace) {
    auto const file = MeshFile::Load(ModelFile("scene.glb"));
    qordebug::CaptureScope const log(Utility::GetLogger());
    Symbol const whole = file->WholeSymbol();
    EXPECT_TRUE(log.contains("2 meshes of lines or points"));
    EXPECT_EQ(whole.indices->Indices().size(), 3U * (12 + 12 + 4));
    // The cube once as it is, once mirrored and doubled, and the tetrahedron doubled with it.
    auto const& data = whole.vertices->Data();
    EXPECT_NEAR(ExpectSolid(data, whole.indices->Indices()), 1 + 2 + 2.0 / 6, 1e-5);
    std::set<float> reds;
    std::ranges::for_each(data.colors, [&](Color4f const& p_color) { reds.insert(p_color.red); });
    EXPECT_THAT(reds, testing::ElementsAre(0.0F, HalfShown, 1.0F)) << "vertex colours are multiplied by the material's";
}

TEST(MeshFileTest, tellsInOneSentenceWhyAFileCannotBeUsed) {
    std::string const nothing = testing::TempDir() + "nothing.obj";
    std::ofstream(nothing) << "# a comment and nothing that could be drawn\n# in it\n";
    std::string const inCapitals = testing::TempDir() + "FARVIEW.GLTF";
    std::ofstream(inCapitals) << std::ifstream(ModelFile("farview.gltf")).rdbuf();
    for (auto const& [path, reason] : {
             std::pair(ModelFile("missing.glb"), "there is no such file; check the path"),
             std::pair(ModelFile(""), "it is a folder"),
             std::pair(std::string(), "it has no name"),
             std::pair(ModelFile("empty.obj"), "it is empty"),
             std::pair(ModelFile("unknown.nosuchformat"), "\".nosuchformat\" is no known model format; convert it"),
             std::pair(ModelFile("truncated.glb"), "it is damaged or no .glb file"),
             std::pair(ModelFile("truncated.stl"), "it is damaged or no .stl file"),
             std::pair(ModelFile("garbage.gltf"), "it is damaged or no .gltf file"),
             std::pair(ModelFile("badindex.obj"), "damaged or no .obj file (OBJ: vertex index out of range)"),
             std::pair(ModelFile("huge.ply"), "it is damaged (it has 8 of 4000000000"),
             std::pair(ModelFile("farview.gltf"), "it is damaged (a part of its buffers lies where no memory can be)"),
             std::pair(inCapitals, "a part of its buffers lies where no memory can be"),
             std::pair(nothing, "there is nothing to draw in it"),
         }) {
        try {
            MeshFile::Load(path);
            ADD_FAILURE() << path;
        } catch (ModelFileError const& error) {
            EXPECT_THAT(error.what(),
                testing::AllOf(HasSubstr("\"" + path + "\""), HasSubstr(reason), testing::EndsWith("."),
                    testing::Not(HasSubstr("\n"))));
        }
    }
    std::filesystem::remove(nothing);
}

TEST(MeshFileTest, leavesOutPrimitivesThatCannotBeDrawnAndSaysSo) {
    for (auto const& [name, kept] :
        {std::pair("nan.obj", 1U), std::pair("badindex.ply", 4U), std::pair("badindex.gltf", 1U)}) {
        qordebug::CaptureScope const log(Utility::GetLogger());
        auto const file = MeshFile::Load(ModelFile(name));
        EXPECT_EQ(file->Meshes()[0].primitives, kept) << name;
        EXPECT_EQ(log.contains("primitives with infinite positions"), file->DroppedPrimitives() > 0) << name;
        ExpectClean(*file);
    }
}

TEST(MeshFileTest, damagedFilesEndInAnErrorOrInCleanBuffers) {
    namespace fs = std::filesystem;
    std::mt19937 random(42);
    qordebug::CaptureScope const log(Utility::GetLogger());
    std::vector<std::string> names{"cube.obj", "tetra.ply", "tetra_binary.stl", "tetra.stl"};
    if (!AllocationFailureIsFatal) {
        names.insert(names.end(), {"scene.glb", "textured.gltf"});
    }
    for (std::string const& name : names) {
        std::ifstream stream(ModelFile(name), std::ios::binary);
        std::string const good{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        fs::path const path = fs::path(testing::TempDir()) / ("damaged_" + name);
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
