#include "framework/library/SymbolRegistry.h"

#include "framework/library/ModelFileError.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

namespace Qor::Chart::Library {

namespace {

namespace fs = std::filesystem;

std::string ModelFile(std::string const& p_name) {
    return std::string(QOR_TEST_DATA) + "/models/" + p_name;
}

struct SymbolRegistryTest : testing::Test {
    qordebug::CaptureScope log{Utility::GetLogger()};
    SymbolRegistry const registry;

    std::string MessageFor(std::string const& p_file) const {
        try {
            registry.LoadModel(p_file);
        } catch (ModelFileError const& error) {
            return error.what();
        }
        return "no error";
    }
};

} // namespace

TEST_F(SymbolRegistryTest, usersOfAShapeShareItsBuffersUntilTheLastOneGoes) {
    auto indices = registry.GetIndexBuffer(Shape::Cone);
    auto vertices = registry.GetVertexBuffer(Shape::Cone);
    auto const weak = std::weak_ptr(indices);
    // Buffers that are held apart still belong together.
    Symbol again = registry.Get(Shape::Cone);
    EXPECT_NE(again.vertices, nullptr);
    EXPECT_EQ(registry.GetIndexBuffer(Shape::Cone), again.indices);
    EXPECT_EQ(registry.GetBoundingBox(Shape::Cone), again.vertices->Bounds());
    EXPECT_NE(registry.GetIndexBuffer(Shape::Cube), again.indices);
    indices.reset();
    vertices.reset();
    again = {};
    EXPECT_TRUE(weak.expired());
    EXPECT_TRUE(registry.Get(Shape::Cone));
    EXPECT_EQ(registry.Get(static_cast<Shape>(-1)).bounds, registry.Get(Shape::Cube).bounds);
}

TEST_F(SymbolRegistryTest, usersOfAFileShareItsBuffersHoweverThePathIsWritten) {
    Symbol const whole = registry.LoadModel(ModelFile("scene.glb"));
    Symbol const same = registry.LoadModel(ModelFile("../models/./scene.glb"));
    EXPECT_EQ(registry.GetIndexBuffer(whole), registry.GetIndexBuffer(same));
    EXPECT_EQ(registry.GetVertexBuffer(whole), registry.GetVertexBuffer(same));

    Symbol const wire = registry.LoadModel(ModelFile("scene.glb#2"));
    EXPECT_EQ(wire.indices->Kind(), Ogl::Tokens::AGL_LINES);
    EXPECT_EQ(registry.LoadModel(ModelFile("scene.glb#2")).vertices, wire.vertices);
    EXPECT_NE(registry.LoadModel(ModelFile("scene.glb#0")).vertices, wire.vertices);
}

TEST_F(SymbolRegistryTest, oneUserKeepsTheFileAndTheLastOneFreesIt) {
    std::weak_ptr<MeshFile const> file = registry.OpenModel(ModelFile("scene.glb"));
    EXPECT_TRUE(file.expired());
    auto vertices = registry.LoadModel(ModelFile("scene.glb#1")).vertices;
    file = registry.OpenModel(ModelFile("scene.glb"));
    EXPECT_FALSE(file.expired()) << "reading the file again for each of its meshes would take for ever";
    vertices.reset();
    EXPECT_TRUE(file.expired());

    auto whole = registry.LoadModel(ModelFile("scene.glb"));
    std::weak_ptr const weak = whole.vertices;
    whole = {};
    EXPECT_TRUE(weak.expired());
}

TEST_F(SymbolRegistryTest, namesTheMeshThatAFileDoesNotHave) {
    EXPECT_THAT(MessageFor(ModelFile("scene.glb#4")),
        testing::HasSubstr("no mesh number 4; its meshes have the numbers 0 to 3"));
    EXPECT_THAT(
        MessageFor(ModelFile("scene.glb#99999999999999999999999")), testing::HasSubstr("it has no mesh number"));
    EXPECT_THAT(MessageFor(ModelFile("tetra.stl#1")), testing::HasSubstr("its only mesh has the number 0"));
    EXPECT_THAT(MessageFor(ModelFile("scene.glb#")), testing::HasSubstr("scene.glb#\": there is no such file"));
    EXPECT_THAT(MessageFor(ModelFile("scene.glb#two")), testing::HasSubstr("scene.glb#two\": there is no such file"));
}

TEST_F(SymbolRegistryTest, aMarkMayBePartOfAFileName) {
    fs::path const path = fs::path(testing::TempDir()) / "part#1";
    fs::path const folder = fs::path(testing::TempDir()) / "part#2";
    fs::create_directories(folder);
    fs::copy_file(ModelFile("tetra.stl"), folder / "tetra.stl", fs::copy_options::overwrite_existing);
    fs::copy_file(ModelFile("tetra.stl"), fs::path(path.string() + ".stl"), fs::copy_options::overwrite_existing);
    EXPECT_TRUE(registry.LoadModel(path.string() + ".stl"));
    EXPECT_TRUE(registry.LoadModel(path.string() + ".stl#0"));
    EXPECT_TRUE(registry.LoadModel((folder / "tetra.stl").string()));
    fs::remove(path.string() + ".stl");
    fs::remove_all(folder);
}

TEST_F(SymbolRegistryTest, readsAFileAgainOnlyWhenItHasChanged) {
    fs::path const path = fs::path(testing::TempDir()) / "changing.ply";
    auto const become = [&](char const* p_name, int p_seconds) {
        fs::copy_file(ModelFile(p_name), path, fs::copy_options::overwrite_existing);
        fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::seconds(p_seconds));
    };
    become("huge.ply", 1);
    EXPECT_THAT(MessageFor(path.string()), testing::HasSubstr("4000000000 elements"));
    EXPECT_THAT(MessageFor(path.string()), testing::HasSubstr("4000000000 elements"));
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
