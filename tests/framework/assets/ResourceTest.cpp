#include "framework/assets/ImageCache.h"

#include "framework/assets/ImageError.h"
#include "framework/assets/Resource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace Qor::Chart::Assets {

namespace {

namespace fs = std::filesystem;

struct ResourceTest : testing::Test {
    std::string const folder = testing::TempDir() + testing::UnitTest::GetInstance()->current_test_info()->name() + "/";
    Resource resource;
    ImageCache cache;

    ResourceTest() {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~ResourceTest() override { fs::remove_all(folder); }

    std::string Write(std::string const& p_name, std::string const& p_text) const {
        std::ofstream(folder + p_name) << p_text;
        return folder + p_name;
    }
    std::string WriteImage(std::string const& p_name, int p_width) const {
        EXPECT_TRUE(QImage(p_width, 4, QImage::Format_RGB32).save(QString::fromStdString(folder + p_name), "PNG"));
        return folder + p_name;
    }
};

} // namespace

TEST_F(ResourceTest, anImageIsSharedUntilItsLastUserGoesOrItsFileChanges) {
    std::string const file = WriteImage("really_a_png.jpg", 7);
    auto image = cache.Image(file);
    EXPECT_EQ(cache.Image(file), image);
    WriteImage("really_a_png.jpg", 9);
    fs::last_write_time(file, fs::last_write_time(file) + std::chrono::seconds(2));
    EXPECT_EQ(cache.Image(file)->width(), 9);
    EXPECT_EQ(image->width(), 7);
    image.reset();
    EXPECT_EQ(cache.Size(), 0U);
}

TEST_F(ResourceTest, oneSentenceTellsWhyAnImageCannotBeHad) {
    for (auto const& [path, reason] : {std::pair(folder + "missing.png", "no such file"),
             std::pair(folder, "is a folder"), std::pair(Write("broken.png", "\x89PNG\r\n\x1a\nno"), "complete image"),
             std::pair(Write("empty.png", ""), "complete image"), std::pair(std::string(), "without a file name")}) {
        try {
            cache.Image(path);
            FAIL() << path;
        } catch (ImageError const& error) {
            EXPECT_THAT(error.what(),
                testing::AllOf(testing::HasSubstr(reason), testing::HasSubstr(path), testing::EndsWith(".")));
        }
    }
}

TEST_F(ResourceTest, signsOfTheLibraryMayBeReplaced) {
    WriteImage("PopOut.png", 3);
    resource.AddFolder(folder);
    EXPECT_TRUE(resource.ImageFile("NoSuchSign").empty());
    EXPECT_EQ(cache.Image(resource.ImageFile("PopOut"))->width(), 3);
    for (char const* name : {"Detach", "Ortho", "Perspective"}) {
        EXPECT_EQ(cache.Image(resource.ImageFile(name))->width(), 64);
    }
}

TEST_F(ResourceTest, shaderSourcesComeFromTheFirstFolderThatHasBothPieces) {
    for (std::string const name : {"half", "first", "second"}) {
        fs::create_directories(folder + name);
        Write(name + "/glow.vert", "vertex of " + name);
        Write(name + (name == "half" ? "/other.frag" : "/glow.frag"), "fragment of " + name);
        resource.AddFolder(folder + name);
    }
    auto const text = resource.ShaderSource("glow");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->vertex + ", " + text->fragment, "vertex of first, fragment of first");
    EXPECT_EQ(resource.ShaderSource("glow"), text) << "the same handle, so that what is made of it can be shared";
    EXPECT_EQ(resource.ShaderSource("dim"), nullptr);
    resource.SetShaderSource({"glow", "mine", "too"});
    EXPECT_EQ(resource.ShaderSource("glow")->vertex, "mine");
}

} // namespace Qor::Chart::Assets
