#include "framework/assets/ImageCache.h"

#include "framework/assets/ImageError.h"
#include "framework/assets/Resource.h"

#include <gmock/gmock.h>

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
    std::string WriteImage(std::string const& p_name, int p_width, char const* p_format = "PNG") const {
        EXPECT_TRUE(QImage(p_width, 4, QImage::Format_RGB32).save(QString::fromStdString(folder + p_name), p_format));
        return folder + p_name;
    }
    std::string WriteHalf(std::string const& p_name) const {
        std::string file = WriteImage(p_name, 50, p_name.substr(p_name.size() - 3).c_str());
        fs::resize_file(file, fs::file_size(file) * 3 / 4);
        return file;
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

TEST_F(ResourceTest, anImageInMemoryIsSharedUntilItsNameComesWithOtherBytes) {
    auto const bytesOf = [&](int p_width) {
        std::ifstream stream(WriteImage("file.png", p_width), std::ios::binary);
        return std::string{std::istreambuf_iterator<char>(stream), {}};
    };
    auto const load = [&](std::string const& p_bytes) {
        return cache.Image("blob 1", std::as_bytes(std::span(p_bytes)));
    };
    std::string const seven = bytesOf(7);
    auto const image = load(seven);
    EXPECT_EQ(load(seven), image);
    EXPECT_EQ(load(bytesOf(8))->width(), 8);
    EXPECT_EQ(image->width(), 7);
    for (std::string const& broken : {std::string(), seven.substr(0, seven.size() / 2)})
        EXPECT_THROW(load(broken), ImageError);
}

TEST_F(ResourceTest, oneSentenceTellsWhyAnImageCannotBeHad) {
    for (auto const& [path, reason] : {std::pair(folder + "missing.png", "no such file"),
             std::pair(folder, "is a folder"), std::pair(Write("broken.png", "\x89PNG\r\n\x1a\nno"), "complete image"),
             std::pair(Write("empty.png", ""), "complete image"),
             std::pair(WriteHalf("half.jpg"), "the end of its file is missing"),
             std::pair(WriteHalf("half.bmp"), "the end of its file is missing"),
             std::pair(WriteHalf("half.png"), "complete image"),
             std::pair(Write("huge.pgm", "P6\n30000 30000\n255\n"), "save it in a smaller size"),
             std::pair(std::string(), "without a file name")}) {
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
    for (char const* name : {"Detach", "Ortho", "Perspective"})
        EXPECT_EQ(cache.Image(resource.ImageFile(name))->width(), 64);
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
