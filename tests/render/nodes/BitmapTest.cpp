#include "render/nodes/Bitmap.h"

#include "tests/render/nodes/SceneFixture.h"

#include <QImage>
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace Qor::Chart::Render {
namespace {

using ::testing::HasSubstr;
using ::testing::SizeIs;

/// A bitmap in a window, and a folder with images.
struct BitmapTest : ::testing::Test, Fixtures::SceneFixture {
    BitmapTest() {
        std::string name = (std::filesystem::temp_directory_path() / "bitmap.XXXXXX").string();
        folder = mkdtemp(name.data());
        Write("wide", 200, 100);
        Write("high", 10, 40);
        std::ofstream(folder / "text.png") << "no image";
        std::filesystem::create_directory(folder / "folder");
        scene->Add(bitmap);
    }
    ~BitmapTest() override { std::filesystem::remove_all(folder); }

    void Write(std::string const& p_name, int p_width, int p_height) const {
        QImage image(p_width, p_height, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(QString::fromStdString(Path(p_name)));
    }
    std::string Path(std::string const& p_name) const { return (folder / (p_name + ".png")).string(); }

    /// What the hook gives in a viewport.
    DrawResult Draw(float p_width, float p_height) {
        struct Hooks : VisHooks {
            using VisHooks::DrawOverlay;
        };
        DrawContext context = MakeContext();
        context.Viewport().Set({30, 20, p_width, p_height});
        agl.Enable(Ogl::Tokens::AGL_DEPTH_TEST);
        agl.BeginFrame();
        auto const before = agl.Depths();
        DrawResult const result = Hooks::DrawOverlay(Child(), context);
        EXPECT_EQ(agl.Depths(), before);
        EXPECT_TRUE(agl.IsEnabled(Ogl::Tokens::AGL_DEPTH_TEST));
        agl.EndFrame();
        return result;
    }
    /// The size of what is drawn, in pixels; empty for nothing.
    Types::Size Drawn(float p_width, float p_height) {
        EXPECT_EQ(Draw(p_width, p_height), DrawResultDescend);
        if (Backend().Commands().empty())
            return {};
        Types::BoundingBox_Base<double> box;
        for (Ogl::ImmediateVertex const& vertex : Backend().Commands().front().vertices)
            box.Add({double(vertex.position.x), double(vertex.position.y), 0});
        return {int(std::lround(box.Extents().x)), int(std::lround(box.Extents().y))};
    }

    std::filesystem::path folder;
    Core::Ptr<Model::Bitmap> bitmap = Core::MakeNode<Model::Bitmap>();
};

TEST_F(BitmapTest, theImageFitsIntoItsViewportInItsOwnProportions) {
    Update();
    EXPECT_EQ(Drawn(100, 100), Types::Size()) << "without an image";
    EXPECT_FALSE(Child().IsValid());
    struct {
        char const* file;
        Types::Size viewport, expected;
    } const cases[]{{"wide", {100, 100}, {100, 50}}, {"wide", {400, 100}, {200, 100}}, {"wide", {200, 100}, {200, 100}},
        {"high", {100, 100}, {25, 100}}, {"high", {100, 1000}, {100, 400}}};
    for (auto const& [file, viewport, expected] : cases) {
        bitmap->SetImageFile(Path(file));
        Update();
        EXPECT_EQ(Drawn(float(viewport.width), float(viewport.height)), expected) << file << viewport.width;
    }
    for (auto const& [width, height] : {std::pair(0, 100), {100, 0}, {0, 0}}) {
        EXPECT_EQ(Draw(float(width), float(height)), DrawResultSkipChildren);
        EXPECT_THAT(Backend().Commands(), SizeIs(0));
    }
}

TEST_F(BitmapTest, aFileThatCannotBeShownIsReportedOncePerChangeAndTheOldImageStays) {
    bitmap->SetImageFile(Path("wide"));
    Update();
    std::string const missing = "The given image for Bitmap does not exist";
    std::size_t reports = 0;
    for (auto const& [name, text] :
        {std::pair(Path("none"), missing), {(folder / "folder").string(), missing}, {Path("text"), "text.png\": "},
            {std::string(1 << 20, 'x'), missing}, {"", missing}, {"/dev/null", "ordinary"}}) {
        bitmap->SetImageFile(name);
        for (int i = 0; i < 3; ++i)
            Update();
        EXPECT_FALSE(Child().IsValid()) << text;
        EXPECT_EQ(Drawn(100, 100), Types::Size(100, 50)) << text;
        ASSERT_EQ(dispatcher.warnings.size(), reports + 2) << text << ": its own and that of the invalid node";
        EXPECT_EQ(dispatcher.warnings[reports].first, 1);
        EXPECT_THAT(dispatcher.warnings[reports].second, HasSubstr(text));
        EXPECT_THAT(dispatcher.warningLocations[reports], ::testing::ContainsRegex("Bitmap::(DoUpdate|Load)"));
        if (text == missing) {
            EXPECT_EQ(dispatcher.warnings[reports].second, missing);
            EXPECT_THAT(dispatcher.warningLocations[reports], ::testing::EndsWith(" @line47"));
        }
        Child().Touch(); // not a change of the model
        Update();
        EXPECT_FALSE(Child().IsValid()) << text;
        EXPECT_EQ(dispatcher.warnings.size(), reports + 3) << text << ": that of the invalid node";
        reports += 3;
    }
    bitmap->SetImageFile(Path("high"));
    Update();
    EXPECT_TRUE(Child().IsValid());
    EXPECT_EQ(Drawn(100, 100), Types::Size(25, 100));
}

} // namespace
} // namespace Qor::Chart::Render
