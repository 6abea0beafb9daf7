#include "render/nodes/Bitmap.h"

#include "tests/render/nodes/SceneFixture.h"

#include <QImage>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace Qor::Chart::Render {
namespace {

/// A bitmap in a window of 100 by 100 pixels, and a folder for images.
struct BitmapTest : ::testing::Test, Fixtures::SceneFixture {
    BitmapTest() { scene->Add(bitmap); }
    ~BitmapTest() override { std::filesystem::remove_all(folder); }

    std::string Write(std::string const& p_name, int p_width, int p_height) const {
        QImage image(p_width, p_height, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(QString::fromStdString((folder / p_name).string()));
        return (folder / p_name).string();
    }
    static std::filesystem::path MakeFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "bitmap.XXXXXX").string();
        return mkdtemp(name.data());
    }
    /// The size of what the hook draws, in pixels; empty for nothing.
    Types::Size Drawn() {
        struct Hooks : VisHooks {
            using VisHooks::DrawOverlay;
        };
        DrawContext context = MakeContext();
        context.Viewport().Set({30, 20, 100, 100});
        agl.BeginFrame();
        EXPECT_EQ(Hooks::DrawOverlay(Child(), context), DrawResultDescend);
        agl.EndFrame();
        Types::BoundingBox_Base<double> box;
        for (Ogl::RecordedCommand const& command : Backend().Commands())
            for (Ogl::ImmediateVertex const& vertex : command.vertices)
                box.Add({double(vertex.position.x), double(vertex.position.y), 0});
        return {int(std::lround(box.Extents().x)), int(std::lround(box.Extents().y))};
    }

    std::filesystem::path folder = MakeFolder();
    Core::Ptr<Model::Bitmap> bitmap = Core::MakeNode<Model::Bitmap>();
};

TEST_F(BitmapTest, aFileThatCannotBeShownIsReportedOncePerChangeAndTheOldImageStays) {
    std::ofstream(folder / "text.png") << "no image";
    bitmap->SetImageFile(Write("wide.png", 200, 100));
    Update();
    std::string const missing = "The given image for Bitmap does not exist";
    std::size_t reports = 0;
    for (auto const& [name, text] : {std::pair((folder / "none.png").string(), missing), {folder.string(), missing},
             {(folder / "text.png").string(), "text.png\": "}, {"", missing}, {"/dev/null", "ordinary"}}) {
        bitmap->SetImageFile(name);
        for (int i = 0; i < 3; ++i)
            Update();
        EXPECT_FALSE(Child().IsValid()) << text;
        EXPECT_EQ(Drawn(), Types::Size(100, 50)) << text;
        ASSERT_EQ(dispatcher.warnings.size(), reports + 2) << text << ": its own and that of the invalid node";
        EXPECT_EQ(dispatcher.warnings[reports].first, 1);
        EXPECT_THAT(dispatcher.warnings[reports].second, ::testing::HasSubstr(text));
        EXPECT_THAT(dispatcher.warningLocations[reports],
            ::testing::ContainsRegex(text == missing ? " @line47$" : "Bitmap::Load"));
        Child().Touch(); // not a change of the model
        Update();
        EXPECT_FALSE(Child().IsValid()) << text;
        EXPECT_EQ(dispatcher.warnings.size(), reports + 3) << text << ": that of the invalid node";
        reports += 3;
    }
    bitmap->SetImageFile(Write("high.png", 10, 40));
    Update();
    EXPECT_TRUE(Child().IsValid());
    EXPECT_EQ(Drawn(), Types::Size(25, 100));
}

} // namespace
} // namespace Qor::Chart::Render
