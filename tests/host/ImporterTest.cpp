#include "host/Importer.h"

#include "framework/library/ModelFileError.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Symbol.h"
#include "host/Offscreen.h"

#include <gmock/gmock.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace Qor::Chart::Host {
namespace {

std::string const Data = std::string(QOR_TEST_DATA) + "/../../examples/data/";

/// The node of a name, and the names on the way to it.
struct Found {
    Core::Ptr<Model::ModelNode> node;
    std::string path;
};

Found Find(Core::Ptr<Model::ModelNode> const& p_node, std::string const& p_name, std::string const& p_path = "") {
    std::string const path = p_path + "/" + p_node->Name();
    if (p_node->Name() == p_name)
        return {p_node, path};
    for (auto const& child : *p_node) {
        if (Found found = Find(child, p_name, path); found.node)
            return found;
    }
    return {};
}

struct ImporterTest : testing::Test {
    Offscreen offscreen{{64, 64}, 0, Offscreen::Device::Recorder};
    Importer importer{offscreen.GetScene().Symbols()};
};

TEST_F(ImporterTest, keepsHierarchyNamesColoursTransformsAndSharedMeshes) {
    Importer::Result const result = importer.Import(Data + "demo.glb");
    EXPECT_EQ(result.root->Name(), "demo.glb");
    EXPECT_EQ(result.dropped, 0U);
    Found const band = Find(result.root, "band 2");
    EXPECT_EQ(band.path, "/demo.glb/harbour/island/lighthouse/bands/band 2");
    auto const object = Core::DynamicCast<Model::SimpleObject>(band.node);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->Color().name(), QString("#c8382e"));
    auto const translation = object->Transform()->TranslationPart();
    EXPECT_NEAR(translation.x, -1.9, 1e-5);
    EXPECT_NEAR(translation.y, 2.55 + 1.0, 1e-5) << "the tower's place and the band's in it";

    auto const hull = [&](char const* p_boat) {
        return Core::DynamicCast<Model::SimpleObject>(Find(Find(result.root, p_boat).node, "hull").node);
    };
    EXPECT_GT(hull("moored boat")->Transform()->Determinant(), 0);
    EXPECT_LT(hull("mirrored boat")->Transform()->Determinant(), 0);
    Types::Matrix4 const& sheared = *hull("leaning boat")->Transform();
    auto const column = [&](int p) {
        return Types::Vector3_Base<double>(sheared.At(0, p), sheared.At(1, p), sheared.At(2, p));
    };
    EXPECT_GT(std::abs(Dot(Normalized(column(1)), Normalized(column(2)))), 0.2) << "no rotation does that";

    std::map<std::string, Model::Symbol const*> symbols;
    std::size_t objects = 0;
    std::vector<Core::Ptr<Model::ModelNode>> left{result.root};
    while (!left.empty()) {
        auto const node = left.back();
        left.pop_back();
        left.insert(left.end(), node->begin(), node->end());
        auto const part = Core::DynamicCast<Model::SimpleObject>(node);
        if (!part)
            continue;
        ++objects;
        Model::Symbol const* const symbol = part->GetSymbol().Get();
        EXPECT_EQ(symbols.emplace(symbol->GetFile(), symbol).first->second, symbol) << symbol->GetFile();
        EXPECT_THAT(symbol->GetFile(), testing::StartsWith(Data + "demo.glb#"));
    }
    EXPECT_EQ(objects, result.objects);
    EXPECT_LT(symbols.size() * 3, objects);
}

TEST_F(ImporterTest, everySampleIsUpdatedAndDrawnWhole) {
    struct Case {
        char const* file;
        std::size_t objects, triangles;
    };
    for (Case const& sample : {Case{"examples/data/bracket.obj", 3, 32}, {"examples/data/wave.ply", 1, 1352},
             {"examples/data/knot.stl", 1, 1200}, {"tests/data/models/points.ply", 1, 0},
             {"tests/data/models/lines.obj", 1, 0}}) {
        SCOPED_TRACE(sample.file);
        Offscreen picture({64, 64}, 0, Offscreen::Device::Recorder);
        double last = 0;
        Importer reader(picture.GetScene().Symbols());
        Importer::Result const result =
            reader.Import(std::string(QOR_TEST_DATA) + "/../../" + sample.file, [&last](double p_part) {
                EXPECT_GE(p_part, last);
                last = p_part;
                return true;
            });
        EXPECT_EQ(result.objects, sample.objects);
        EXPECT_EQ(result.triangles, sample.triangles);
        EXPECT_EQ(result.triangles == 0, result.points + result.lines > 0);
        picture.GetScene().Add(result.root);
        picture.Frame();
        EXPECT_EQ(picture.Driver().Statistics().Drawn(), sample.objects);
        EXPECT_EQ(picture.Driver().Statistics().graphics.primitives, sample.triangles + result.points + result.lines);
        EXPECT_EQ(picture.GetScene().Dispatcher().ReportCount(), 0U);
    }
}

TEST_F(ImporterTest, badFilesAndStoppedImportsAreOneSentence) {
    for (char const* const file : {"missing.glb", "README.md", ""}) {
        try {
            importer.Import(file);
            ADD_FAILURE() << file;
        } catch (Library::ModelFileError const& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(file));
        }
    }
    EXPECT_THROW(importer.Import(Data + "demo.glb", [](double) { return false; }), Library::ModelFileError);
}

} // namespace
} // namespace Qor::Chart::Host
