#include "framework/library/SymbolRegistry.h"

#include "framework/library/ModelFileError.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"
#include "tests/framework/library/Triangles.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace Qor::Chart::Library {

namespace {

namespace fs = std::filesystem;

struct SymbolRegistryTest : testing::Test {
    qordebug::CaptureScope log{Utility::GetLogger()};
    SymbolRegistry const registry;

    void ExpectRefusal(std::string const& p_file, char const* p_sentence) const {
        try {
            registry.LoadModel(p_file);
            FAIL() << p_file;
        } catch (ModelFileError const& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(p_sentence));
        }
    }
};

} // namespace

TEST_F(SymbolRegistryTest, usersOfAShapeShareItsBuffersUntilTheLastOneGoes) {
    auto apart = registry.GetIndexBuffer(Shape::Cone);
    Symbol together = registry.Get(Shape::Cone);
    EXPECT_NE(together.vertices, nullptr) << "buffers that are held apart still belong together";
    EXPECT_EQ(registry.GetIndexBuffer(Shape::Cone), together.indices);
    EXPECT_EQ(registry.GetVertexBuffer(Shape::Cone), together.vertices);
    EXPECT_NE(registry.GetIndexBuffer(Shape::Cube), together.indices);
    std::weak_ptr const weak = together.indices;
    together = {};
    apart.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(registry.Get(static_cast<Shape>(-1)).bounds, registry.Get(Shape::Cube).bounds);
}

TEST_F(SymbolRegistryTest, usersOfAFileShareItsBuffersHoweverThePathIsWrittenUntilTheLastOneGoes) {
    Symbol whole = registry.LoadModel(ModelFile("scene.glb"));
    EXPECT_EQ(registry.LoadModel(ModelFile("../models/./scene.glb")).vertices, whole.vertices);
    std::weak_ptr const weak = whole.vertices;
    whole = {};
    EXPECT_TRUE(weak.expired());

    auto wire = registry.LoadModel(ModelFile("scene.glb#2"));
    EXPECT_EQ(wire.indices->Kind(), Ogl::Tokens::AGL_LINES);
    EXPECT_NE(registry.LoadModel(ModelFile("scene.glb#0")).vertices, wire.vertices);
    std::weak_ptr const file = registry.OpenModel(ModelFile("scene.glb"));
    EXPECT_FALSE(file.expired()) << "reading the file again for each of its meshes would take for ever";
    wire = {};
    EXPECT_TRUE(file.expired());
}

TEST_F(SymbolRegistryTest, namesTheMeshThatAFileDoesNotHave) {
    ExpectRefusal(ModelFile("scene.glb#4"), "no mesh number 4; its meshes have the numbers 0 to 3");
    ExpectRefusal(ModelFile("scene.glb#99999999999999999999999"), "it has no mesh number");
    ExpectRefusal(ModelFile("tetra.stl#1"), "its only mesh has the number 0");
    ExpectRefusal(ModelFile("scene.glb#"), "scene.glb#\": there is no such file");
    ExpectRefusal(ModelFile("scene.glb#two"), "scene.glb#two\": there is no such file");
}

TEST_F(SymbolRegistryTest, readsAFileAgainOnlyWhenItHasChanged) {
    fs::path const path = fs::path(testing::TempDir()) / "changing.ply";
    auto const become = [&](char const* p_name, int p_seconds) {
        fs::copy_file(ModelFile(p_name), path, fs::copy_options::overwrite_existing);
        fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::seconds(p_seconds));
    };
    become("huge.ply", 1);
    ExpectRefusal(path.string(), "4000000000 elements");
    become("tetra.ply", 2);
    Symbol const tetra = registry.LoadModel(path.string());
    EXPECT_EQ(tetra.indices->Indices().size(), 12U);
    become("points.ply", 3);
    Symbol const points = registry.LoadModel(path.string());
    EXPECT_EQ(points.indices->Kind(), Ogl::Tokens::AGL_POINTS);
    fs::remove(path);
    EXPECT_EQ(registry.LoadModel(path.string()).vertices, points.vertices) << "what is in use outlives its file";
}

} // namespace Qor::Chart::Library
