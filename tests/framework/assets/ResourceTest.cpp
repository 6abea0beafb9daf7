#include "framework/assets/Resource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace Qor::Chart::Assets {

TEST(ResourceTest, shaderSourcesComeFromTheFirstFolderThatHasBothPieces) {
    namespace fs = std::filesystem;
    fs::path const root = fs::path(testing::TempDir()) / "shader_folders";
    fs::remove_all(root);
    for (char const* folder : {"half", "first", "second"}) {
        fs::create_directories(root / folder);
        std::ofstream(root / folder / "glow.vert") << "vertex of " << folder;
        if (std::string(folder) != "half") {
            std::ofstream(root / folder / "glow.frag") << "fragment of " << folder;
        }
    }
    Resource resource;
    EXPECT_EQ(resource.ShaderSource("glow"), nullptr);
    for (char const* folder : {"half", "first", "second"}) {
        resource.AddFolder((root / folder).string());
    }

    auto const text = resource.ShaderSource("glow");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->name, "glow");
    EXPECT_EQ(text->vertex, "vertex of first");
    EXPECT_EQ(text->fragment, "fragment of first");
    EXPECT_EQ(resource.ShaderSource("glow"), text) << "the same handle, so that what is made of it can be shared";
    EXPECT_EQ(resource.ShaderSource("dim"), nullptr);

    resource.SetShaderSource({"glow", "mine", "too"});
    EXPECT_EQ(resource.ShaderSource("glow")->vertex, "mine");
    fs::remove_all(root);
}

} // namespace Qor::Chart::Assets
