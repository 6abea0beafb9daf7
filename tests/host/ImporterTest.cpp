#include "host/Importer.h"

#include "framework/library/ModelFileError.h"
#include "framework/model/RenderStyle.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Symbol.h"
#include "framework/ogl/Context.h"
#include "host/Offscreen.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <tuple>

namespace Qor::Chart::Host {
namespace {

std::string const Root = std::string(QOR_TEST_DATA) + "/../../";

using Objects = std::multimap<std::string, Core::Ptr<Model::SimpleObject>>;

/// The objects of a tree by the names on the way to them.
void Collect(Core::Ptr<Model::ModelNode> const& p_node, std::string const& p_path, Objects& p_objects) {
    std::string const path = p_path + "/" + p_node->Name();
    if (auto const object = Core::DynamicCast<Model::SimpleObject>(p_node))
        p_objects.emplace(path, object);
    for (auto const& child : *p_node)
        Collect(child, path, p_objects);
}

struct ImporterTest : testing::Test {
    Offscreen offscreen{{64, 64}, 0, Offscreen::Device::Recorder};
    Importer importer{offscreen.GetScene().Symbols()};
};

TEST_F(ImporterTest, keepsHierarchyNamesColoursTransformsAndSharedMeshes) {
    Importer::Result const result = importer.Import(Root + "examples/data/demo.glb");
    EXPECT_EQ(result.dropped, 0U);
    Objects objects;
    Collect(result.root, "", objects);
    EXPECT_EQ(objects.size(), result.objects);
    auto const find = [&](std::string const& p_path) {
        auto const found = objects.find("/demo.glb/harbour/" + p_path);
        return found != objects.end() ? found->second : Core::MakeNode<Model::SimpleObject>();
    };
    auto const band = find("island/lighthouse/bands/band 2");
    EXPECT_EQ(band->Color().name(), QString("#c8382e"));
    auto const translation = band->Transform()->TranslationPart();
    EXPECT_NEAR(translation.x, -1.9, 1e-5);
    EXPECT_NEAR(translation.y, 2.55 + 1.0, 1e-5) << "the tower's place and the band's in it";
    EXPECT_GT(find("boats/moored boat/hull")->Transform()->Determinant(), 0);
    EXPECT_LT(find("boats/mirrored boat/hull")->Transform()->Determinant(), 0);
    Types::Matrix4 const& sheared = *find("boats/gust/shear/leaning boat/hull")->Transform();
    auto const column = [&](int p) {
        return Types::Vector3_Base<double>(sheared.At(0, p), sheared.At(1, p), sheared.At(2, p));
    };
    EXPECT_GT(std::abs(Dot(Normalized(column(1)), Normalized(column(2)))), 0.2) << "no rotation does that";

    std::map<std::string, Model::Symbol const*> symbols;
    for (auto const& [path, object] : objects) {
        Model::Symbol const* const symbol = object->GetSymbol().Get();
        EXPECT_EQ(symbols.emplace(symbol->GetFile(), symbol).first->second, symbol) << path;
        EXPECT_THAT(symbol->GetFile(), testing::StartsWith(Root + "examples/data/demo.glb#"));
    }
    EXPECT_LT(symbols.size() * 3, objects.size());
}

TEST_F(ImporterTest, everySampleIsUpdatedAndDrawnWhole) {
    for (auto const& [file, objects, triangles] : {std::tuple("examples/data/bracket.obj", 3U, 32U),
             {"examples/data/wave.ply", 1U, 1352U}, {"examples/data/knot.stl", 1U, 1200U},
             {"tests/data/models/points.ply", 1U, 0U}, {"tests/data/models/lines.obj", 1U, 0U}}) {
        SCOPED_TRACE(file);
        Offscreen picture({64, 64}, 0, Offscreen::Device::Recorder);
        double last = 0;
        Importer::Result const result =
            Importer(picture.GetScene().Symbols()).Import(Root + file, [&last](double p_part) {
                EXPECT_GE(p_part, last);
                last = p_part;
                return true;
            });
        EXPECT_EQ(result.objects, objects);
        EXPECT_EQ(result.triangles, triangles);
        picture.GetScene().Add(result.root);
        picture.Frame();
        EXPECT_EQ(picture.Driver().Statistics().Drawn(), objects);
        EXPECT_EQ(picture.Driver().Statistics().graphics.primitives, triangles + result.points + result.lines);
        EXPECT_EQ(picture.GetScene().Dispatcher().ReportCount(), 0U);
    }
}

TEST_F(ImporterTest, texturedAndTransparentMaterialsBecomeStyles) {
    Importer::Result const result = importer.Import(Root + "examples/data/display.glb");
    EXPECT_EQ(result.styles, 3U);
    Objects objects;
    Collect(result.root, "", objects);
    EXPECT_EQ(objects.size(), result.objects);
    using Style = Model::RenderStyle;
    for (auto const& [path, texture, opacity, culling] :
        {std::tuple("crates/boards/large crate", std::string("examples/data/crate.png"), 1.0, Style::Culling::None),
            {"crates/boards/small crate", std::string("examples/data/crate.png"), 1.0, Style::Culling::None},
            {"exhibit/map/globe", "examples/data/display.glb#*0", 1.0, Style::Culling::None},
            {"exhibit/glass/case", "", 0.3, Style::Culling::Back}}) {
        SCOPED_TRACE(path);
        std::string const whole = std::string("/display.glb/display/") + path;
        ASSERT_EQ(objects.count(whole), 1U) << "objects of one group share the style";
        Core::Ptr<Style> style;
        for (auto const& group : *(*result.root->begin())) {
            for (auto const& child : *group) {
                if (whole.find("/" + child->Name() + "/") != std::string::npos)
                    style = Core::DynamicCast<Style>(child);
            }
        }
        ASSERT_TRUE(style);
        EXPECT_THAT(style->Texture(), testing::EndsWith(texture));
        EXPECT_EQ(style->Texture().empty(), texture.empty());
        EXPECT_NEAR(style->Opacity(), opacity, 1e-6);
        EXPECT_EQ(style->GetCulling(), culling);
        QColor const color = objects.find(whole)->second->Color();
        EXPECT_EQ(color.alpha(), 255) << "the style's opacity must not count twice";
        EXPECT_EQ(color == QColor(Qt::white), !texture.empty());
    }
    Importer::Result const leaf = importer.Import(Root + "tests/data/models/leaf.dae");
    auto const style = Core::DynamicCast<Style>(*(*leaf.root->begin())->begin());
    ASSERT_TRUE(style);
    EXPECT_THAT(style->Texture(), testing::EndsWith("four quarters.png"));
    EXPECT_EQ(style->GetCulling(), Style::Culling::None) << "the format says nothing of sides";
}

TEST_F(ImporterTest, texturesStandUprightAndBrokenOnesAreOneWarningEach) {
    std::optional<Offscreen> picture;
    try {
        picture.emplace(Types::Size(400, 100), 0);
    } catch (Ogl::ContextError const& error) {
        GTEST_SKIP() << error.what();
    }
    Importer wall(picture->GetScene().Symbols());
    picture->GetScene().Add(wall.Import(Root + "tests/data/models/textured.gltf").root);
    picture->GetCamera().Look(Camera::View::Front);
    QImage const image = picture->Render();
    EXPECT_EQ(picture->GetScene().Dispatcher().ReportCount(), 3U) << "truncated, missing, garbage";
    EXPECT_EQ(picture->Driver().Statistics().Drawn(), 9U);

    // The squares of edge 1, 1.1 apart, in the rectangle that differs from the background.
    QRect wallPixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, y))
                wallPixels |= QRect(x, y, 1, 1);
        }
    }
    struct Sample {
        double square, x, y; ///< from the square's lower left corner
        QColor color; ///< by which channels are lit
    };
    for (Sample const& sample :
        {Sample{0, 0.25, 0.75, Qt::red}, {0, 0.75, 0.75, Qt::green}, {0, 0.25, 0.25, Qt::blue},
            {0, 0.75, 0.25, Qt::white}, {3, 0.5, 0.5, Qt::white}, {4, 0.5, 0.5, Qt::white}, {6, 0.5, 0.5, Qt::white}}) {
        double const scale = wallPixels.width() / 9.8;
        QColor const seen = image.pixelColor(wallPixels.left() + int(scale * (1.1 * sample.square + sample.x)),
            wallPixels.bottom() - int(scale * sample.y));
        int const half = std::max({seen.red(), seen.green(), seen.blue()}) / 2;
        EXPECT_EQ(QColor(seen.red() > half ? 255 : 0, seen.green() > half ? 255 : 0, seen.blue() > half ? 255 : 0),
            sample.color)
            << sample.square << ": " << seen.name().toStdString();
    }
}

TEST_F(ImporterTest, importsCanBeStopped) {
    EXPECT_THROW(
        importer.Import(Root + "examples/data/demo.glb", [](double) { return false; }), Library::ModelFileError);
}

} // namespace
} // namespace Qor::Chart::Host
