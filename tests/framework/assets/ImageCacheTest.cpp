#include "framework/assets/ImageCache.h"

#include "framework/assets/ImageError.h"
#include "framework/assets/Resource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

namespace Qor::Chart::Assets {

namespace {

namespace fs = std::filesystem;

struct ImageCacheTest : testing::Test {
    fs::path folder = fs::path(testing::TempDir()) /
        (std::string("images_") + testing::UnitTest::GetInstance()->current_test_info()->name());
    ImageCache cache;

    ImageCacheTest() {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~ImageCacheTest() override { fs::remove_all(folder); }

    std::string Write(std::string const& p_name, int p_width, Qt::GlobalColor p_color = Qt::red) const {
        QImage image(p_width, 4, QImage::Format_RGB32);
        image.fill(p_color);
        std::string const path = (folder / p_name).string();
        EXPECT_TRUE(image.save(QString::fromStdString(path), "PNG"));
        return path;
    }
    std::string MessageFor(std::string const& p_path) const {
        try {
            cache.Image(p_path);
        } catch (ImageError const& error) {
            return error.what();
        }
        return "no error";
    }
};

} // namespace

TEST_F(ImageCacheTest, sharesAnImageUntilItsLastUserGoes) {
    std::string const file = Write("red.png", 7);
    auto image = cache.Image(file);
    EXPECT_EQ(image->width(), 7);
    EXPECT_EQ(cache.Image(file), image);
    EXPECT_EQ(cache.Size(), 1U);
    std::weak_ptr<QImage const> const weak = image;
    image.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(cache.Size(), 0U);
    EXPECT_EQ(cache.Image(file)->width(), 7);
}

TEST_F(ImageCacheTest, readsAChangedFileAnew) {
    std::string const file = Write("image.png", 7);
    auto const before = cache.Image(file);
    Write("image.png", 9);
    fs::last_write_time(file, fs::last_write_time(file) + std::chrono::seconds(2));
    EXPECT_EQ(cache.Image(file)->width(), 9);
    EXPECT_EQ(before->width(), 7);
}

TEST_F(ImageCacheTest, tellsInOneSentenceWhyAnImageCannotBeHad) {
    std::string const broken = (folder / "broken.png").string();
    std::ofstream(broken) << "\x89PNG\r\n\x1a\nnot really";
    std::string const empty = (folder / "empty.png").string();
    std::ofstream{empty};
    struct {
        std::string path;
        char const* reason;
    } const cases[] = {{(folder / "missing.png").string(), "no such file"}, {folder.string(), "is a folder"},
        {broken, "complete image"}, {empty, "complete image"}, {"", "without a file name"}};
    for (auto const& each : cases) {
        std::string const message = MessageFor(each.path);
        EXPECT_THAT(message, testing::HasSubstr(each.reason));
        EXPECT_THAT(message, testing::HasSubstr(each.path));
        EXPECT_THAT(message, testing::EndsWith("."));
    }
    EXPECT_EQ(cache.Size(), 0U);
}

TEST_F(ImageCacheTest, goesByTheContentOfAFileAndNotByItsName) {
    EXPECT_EQ(cache.Image(Write("really_a_png.jpg", 5))->width(), 5);
}

TEST_F(ImageCacheTest, signsOfTheLibraryAreThereAndMayBeReplaced) {
    Resource resource;
    for (char const* name : {"PopOut", "Detach", "Ortho", "Perspective"}) {
        auto const image = cache.Image(resource.ImageFile(name));
        ASSERT_FALSE(image->isNull()) << name;
        int opaque = 0;
        for (int y = 0; y < image->height(); ++y) {
            for (int x = 0; x < image->width(); ++x) {
                opaque += image->pixelColor(x, y).alpha() > 128 ? 1 : 0;
            }
        }
        int const pixels = image->width() * image->height();
        EXPECT_GT(opaque, pixels / 20) << name << " is hardly to be seen";
        EXPECT_LT(opaque, pixels / 2) << name;
        EXPECT_EQ(image->pixelColor(0, 0).alpha(), 0) << name;
    }
    EXPECT_TRUE(resource.ImageFile("NoSuchSign").empty());

    Write("PopOut.png", 3);
    resource.AddFolder(folder.string());
    EXPECT_EQ(cache.Image(resource.ImageFile("PopOut"))->width(), 3);
    EXPECT_EQ(cache.Image(resource.ImageFile("Detach"))->width(), 64);
}

} // namespace Qor::Chart::Assets
