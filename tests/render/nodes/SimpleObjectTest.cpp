#include "render/nodes/SimpleObject.h"

#include "tests/render/nodes/SceneFixture.h"
#include "framework/library/Pattern.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Mode = DrawContext::DrawMode;
using Box = Types::BoundingBox_Base<double>;
using Fixtures::SceneFixture;
using Ogl::EnableBit::Blend;
using Ogl::EnableBit::DepthTest;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using Types::Matrix4;

constexpr std::size_t MostBytes = 400; ///< of a node, so that a leaf with its model stays under 1,000

static_assert(sizeof(SimpleObject) <= MostBytes);

/// The file of a test; it goes with it.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string const& p_name)
        : path((std::filesystem::temp_directory_path() / p_name).string()) {}
    ~TemporaryFile() { std::filesystem::remove(path); }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    /// Writes one red triangle, its highest corner at the given height.
    void WriteTriangle(double p_height) const {
        std::ofstream(path) << "ply\nformat ascii 1.0\nelement vertex 3\n"
                               "property float x\nproperty float y\nproperty float z\n"
                               "property uchar red\nproperty uchar green\nproperty uchar blue\n"
                               "element face 1\nproperty list uchar int vertex_indices\nend_header\n"
                               "0 0 0 255 0 0\n1 0 0 255 0 0\n0 "
                            << p_height << " 0 255 0 0\n3 0 1 2\n";
    }

    std::string const path;
};

TEST(SimpleObjectTest, hooksEventsAndLayerFollowTheModel) {
    struct Case {
        char const* name;
        std::function<void(Model::SimpleObject&, SceneCapabilities&)> edit;
        bool highlights;
        bool isPickable;
        int layer;
    };
    Case const cases[] = {
        {"plain", [](auto&, auto&) {}, false, true, 0},
        {"front", [](auto& p_object, auto&) { p_object.SetFront(true); }, false, true, 30001},
        {"not pickable", [](auto& p_object, auto&) { p_object.SetPickable(false); }, false, false, 0},
        {"front, not pickable",
            [](auto& p_object, auto&) {
                p_object.SetFront(true);
                p_object.SetPickable(false);
            },
            false, false, 0},
        {"pulse", [](auto& p_object, auto&) { p_object.SetPulse(true); }, true, true, 0},
        {"pulse, animations off",
            [](auto& p_object, auto& p_capabilities) {
                p_object.SetPulse(true);
                p_capabilities.Suppress(SceneCapabilities::SuppressionDrag);
            },
            false, true, 0},
    };
    for (Case const& test : cases) {
        for (bool const isEditedFirst : {true, false}) {
            SCOPED_TRACE(std::string(test.name) + (isEditedFirst ? ", from the start" : ", later"));
            SceneFixture fixture;
            auto const object = fixture.AddCube();
            if (!isEditedFirst)
                fixture.Update();
            test.edit(*object, fixture.capabilities);
            fixture.Update();
            auto const& vis = dynamic_cast<SimpleObject&>(fixture.Child());
            for (auto const hook : {HandledUpdate, HandledSetup, HandledTeardown, HandledDraw, HandledBoundingBox})
                EXPECT_TRUE(vis.IsHandled(hook)) << hook;
            EXPECT_EQ(vis.IsHandled(HandledHighlight), test.highlights);
            EXPECT_EQ(vis.OptimalPaths().Has(CallbackHighlight), test.highlights);
            EXPECT_EQ(vis.IsHandled(HandledHit), test.isPickable);
            for (int event = 0; event < EventHandler::EventCount; ++event)
                EXPECT_EQ(vis.IsEventDefined(static_cast<EventHandler::EventName>(event)),
                    test.isPickable && (event == 0 || event == 2 || event == 9))
                    << event;
            EXPECT_EQ(vis.GetLayer(), test.layer);
            EXPECT_FALSE(fixture.root->Tracker().Modified());
            EXPECT_EQ(fixture.Update(), 0U);
        }
    }
}

TEST(SimpleObjectTest, objectsOfOneShapeAreDrawnTogether) {
    SceneFixture fixture;
    for (int i = 0; i < 500; ++i) {
        auto const object = fixture.AddCube();
        object->SetTransform(Matrix4::Translation({1.0 * i, 2, 3}));
        object->SetColor(QColor(i % 256, 51, 0));
    }
    fixture.Update();
    auto const commands = fixture.Draw();
    ASSERT_EQ(commands.size(), 1U);
    ASSERT_EQ(commands[0].instances.size(), 500U);
    Ogl::Instance const& last = commands[0].instances[499];
    EXPECT_EQ(last.rows[0], (std::array<float, 4>{1, 0, 0, 499}));
    EXPECT_EQ(last.color, Types::Color4f(QColor(243, 51, 0)));
    EXPECT_EQ(commands[0].state.enables & (Blend | DepthTest), DepthTest);

    EXPECT_EQ(fixture.agl.GetStatistics().pushes, fixture.agl.GetStatistics().pops);
    EXPECT_TRUE(fixture.agl.Get(AGL_MODELVIEW_MATRIX).IsIdentity());
    EXPECT_EQ(fixture.agl.CheckError(), "");
    EXPECT_THAT(fixture.dispatcher.exceptions, IsEmpty());
}

TEST(SimpleObjectTest, whatIsBelowAnObjectMovesWithIt) {
    SceneFixture fixture;
    auto const outer = fixture.AddCube();
    auto const inner = Core::MakeNode<Model::SimpleObject>(outer->GetSymbol());
    outer->SetTransform(Matrix4::Translation({10, 0, 0}));
    inner->SetTransform(Matrix4::Scaling({1, 4, 1}));
    outer->Add(inner);
    auto const after = fixture.AddCube();
    fixture.Update();
    EXPECT_EQ(fixture.Child().BoundingBox(), Box({9.5, -2, -0.5}, {10.5, 2, 0.5}));

    auto const commands = fixture.Draw();
    std::vector<Ogl::Instance> instances;
    for (auto const& command : commands)
        instances.insert(instances.end(), command.instances.begin(), command.instances.end());
    ASSERT_EQ(instances.size(), 3U);
    EXPECT_EQ(instances[1].rows[0][3], 10);
    EXPECT_EQ(instances[1].rows[1][1], 4);
    EXPECT_EQ(instances[2].rows[0][3], 0);

    outer->SetTransform({});
    fixture.Update();
    EXPECT_EQ(fixture.root->BoundingBox(), Box({-0.5, -2, -0.5}, {0.5, 2, 0.5}));
}

TEST(SimpleObjectTest, transparentObjectsAreBlendedInTheOrderOfTheChildren) {
    SceneFixture fixture;
    for (int const alpha : {255, 100, 255})
        fixture.AddCube()->SetColor(QColor(10, 20, 30, alpha));
    fixture.Update();
    auto const commands = fixture.Draw();
    ASSERT_EQ(commands.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(commands[i].state.IsEnabled(Blend), i == 1);
    EXPECT_EQ(commands[1].state.colorBuffer.sourceFactor, AGL_SRC_ALPHA);
    EXPECT_EQ(commands[1].state.colorBuffer.destinationFactor, AGL_ONE_MINUS_SRC_ALPHA);
    EXPECT_EQ(commands[1].instances[0].color, Types::Color4f(QColor(10, 20, 30, 100)));
}

TEST(SimpleObjectTest, objectsShimmerThroughGeometry) {
    struct Case {
        char const* name;
        bool isWanted;
        bool isFront;
        bool hasStipple;
        int sixteenths; ///< 0 for no second pass
        int alpha;
    };
    Case const cases[] = {
        {"not asked for", false, true, true, 0, 0},
        {"device without stipple", true, true, false, 0, 0},
        {"front", true, true, true, 12, 255},
        {"not front", true, false, true, 4, 128},
    };
    for (Case const& test : cases) {
        SCOPED_TRACE(test.name);
        SceneFixture fixture;
        Ogl::Agl agl(std::make_unique<Fixtures::FeatureBackend>(test.hasStipple));
        auto const object = fixture.AddCube();
        object->SetVisibleBehindGeometry(test.isWanted);
        object->SetFront(test.isFront);
        fixture.Update();
        auto const commands = fixture.DrawOn(agl);
        ASSERT_EQ(commands.size(), test.sixteenths > 0 ? 2U : 1U);
        EXPECT_EQ(commands[0].state.enables & (Blend | DepthTest), DepthTest);
        for (auto const capability : {AGL_POLYGON_STIPPLE, AGL_BLEND})
            EXPECT_FALSE(agl.IsEnabled(capability));
        EXPECT_TRUE(agl.IsEnabled(AGL_DEPTH_TEST));
        if (test.sixteenths == 0)
            continue;
        Ogl::RecordedCommand const& second = commands[1];
        EXPECT_EQ(second.buffer, commands[0].buffer);
        EXPECT_EQ(second.state.enables & (Blend | DepthTest), Blend);
        EXPECT_TRUE(second.state.IsEnabled(Ogl::EnableBit::PolygonStipple));
        EXPECT_EQ(second.state.colorBuffer.destinationFactor, AGL_ONE_MINUS_SRC_ALPHA);
        EXPECT_EQ(second.instances[0].color, Types::Color4f(QColor(200, 200, 200, test.alpha)));
        Ogl::Agl pattern(std::make_unique<Ogl::RecorderBackend>());
        pattern.PolygonStipple(Library::Pattern::PolygonStipplePattern(test.sixteenths).data());
        EXPECT_EQ(second.state.polygonStipple.rows, pattern.Current().polygonStipple.rows);
    }
}

TEST(SimpleObjectTest, pulseGoesBackAndForthInTheHighlightColour) {
    qordebug::manualclock clock;
    SceneFixture fixture;
    fixture.highlighter->SetColor(QColor(255, 0, 0));
    auto const object = fixture.AddCube();
    object->SetColor(QColor(0, 0, 0));
    object->SetPulse(true);
    fixture.Update();
    auto const redness = [&] {
        auto const commands = fixture.Draw(Mode::Highlight);
        return commands.size() == 1 ? commands[0].instances[0].color.red : -1.0F;
    };
    // milliseconds since the last look, and the strength of the highlight then
    std::pair<unsigned, float> const looks[] = {
        {0, 0.0F}, {1000, 0.5F}, {1000, 1.0F}, {1000, 0.5F}, {1000, 0.0F}, {500, 0.25F}};
    for (auto const& [milliseconds, expected] : looks) {
        clock.advance(milliseconds);
        fixture.dispatcher.redraws.clear();
        EXPECT_NEAR(redness(), expected, 0.01);
        EXPECT_THAT(fixture.dispatcher.redraws, ::testing::Contains(50));
    }
    EXPECT_EQ(fixture.Draw(Mode::Highlight)[0].state.depth.function, AGL_LEQUAL);
    EXPECT_EQ(fixture.agl.Current().depth.function, AGL_LESS);

    fixture.capabilities.animations = false;
    fixture.dispatcher.redraws.clear();
    EXPECT_THAT(fixture.Draw(Mode::Highlight), IsEmpty());
    EXPECT_THAT(fixture.dispatcher.redraws, IsEmpty());
    fixture.capabilities.animations = true;

    object->SetPulse(false);
    fixture.Update();
    EXPECT_THAT(fixture.dispatcher.redraws, ElementsAre(0));
    fixture.Draw(Mode::Highlight);
    EXPECT_EQ(fixture.drawn, 0U);
}

TEST(SimpleObjectTest, symbolsThatCannotBeShownMakeTheNodeInvalidUntilTheyChange) {
    struct Case {
        char const* name;
        std::function<void(Model::SimpleObject&)> spoil;
        char const* report;
    };
    Case const cases[] = {
        {"no symbol", [](auto& p_object) { p_object.SetSymbol({}); }, "The object has no symbol"},
        {"unset symbol", [](auto& p_object) { p_object.SetSymbol(Core::MakeNode<Model::Symbol>()); },
            "The object has no symbol"},
        {"missing file", [](auto& p_object) { p_object.GetSymbol()->SetFile("/no/such/file.ply"); },
            "/no/such/file.ply"},
    };
    for (Case const& test : cases) {
        for (bool const isSpoiltFirst : {true, false}) {
            SCOPED_TRACE(std::string(test.name) + (isSpoiltFirst ? ", from the start" : ", later"));
            SceneFixture fixture;
            auto const object = fixture.AddCube();
            auto const good = object->GetSymbol();
            if (!isSpoiltFirst)
                fixture.Update();
            test.spoil(*object);
            fixture.Update();
            EXPECT_FALSE(fixture.Child().IsValid());
            EXPECT_THAT(fixture.dispatcher.warnings,
                ElementsAre(Pair(1, HasSubstr(test.report)), Pair(2, HasSubstr("in an invalid state"))));
            EXPECT_EQ(fixture.root->BoundingBox(), Box());

            fixture.dispatcher.warnings.clear();
            fixture.Child().Touch(); // not a change of the model
            EXPECT_THAT(fixture.Draw(), IsEmpty());
            fixture.Update();
            EXPECT_FALSE(fixture.Child().IsValid());
            EXPECT_THAT(fixture.dispatcher.warnings, ElementsAre(Pair(2, ::testing::_)));

            object->SetSymbol(good);
            good->SetShape(Model::SymbolShape::Sphere);
            fixture.Update();
            EXPECT_TRUE(fixture.Child().IsActive());
            EXPECT_EQ(fixture.Draw().size(), 1U);
            EXPECT_THAT(fixture.dispatcher.exceptions, IsEmpty());
        }
    }
}

TEST(SimpleObjectTest, sharedSymbolIsFollowedByAllAndFreedWithTheLast) {
    SceneFixture fixture;
    auto const first = fixture.AddCube();
    auto const second = fixture.AddCube();
    second->SetSymbol(first->GetSymbol());
    fixture.Update();
    std::weak_ptr<Ogl::VertexBuffer const> const cube = fixture.symbols.GetVertexBuffer(Library::Shape::Cube);
    EXPECT_FALSE(cube.expired());

    first->GetSymbol()->SetShape(Model::SymbolShape::Cone);
    EXPECT_EQ(fixture.Update(), 2U);
    EXPECT_TRUE(cube.expired());
    auto const commands = fixture.Draw();
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_EQ(commands[0].instances.size(), 2U);

    std::weak_ptr<Ogl::VertexBuffer const> const cone = fixture.symbols.GetVertexBuffer(Library::Shape::Cone);
    EXPECT_FALSE(cone.expired());
    fixture.root.Reset();
    EXPECT_TRUE(cone.expired());
}

TEST(SimpleObjectTest, filesShowTheirOwnColoursAndAreReadAgainWhenSetAnew) {
    TemporaryFile const file("qor-simple-object.ply");
    file.WriteTriangle(1);
    SceneFixture fixture;
    auto const object = fixture.AddCube();
    auto const other = fixture.AddCube();
    object->GetSymbol()->SetFile(file.path);
    other->GetSymbol()->SetFile(file.path);
    other->SetColor(QColor(0, 255, 0));
    fixture.AddCube();
    fixture.Update();
    auto const commands = fixture.Draw();
    ASSERT_EQ(commands.size(), 2U) << "two symbols of one file share what they draw";
    EXPECT_EQ(commands[0].instances[0].color, Types::Color4f(1, 1, 1));
    EXPECT_EQ(commands[0].instances[1].color, Types::Color4f(0, 1, 0));
    EXPECT_EQ(commands[0].shader->Options(), 3U);
    EXPECT_EQ(commands[1].shader->Options(), 1U);

    file.WriteTriangle(12.5);
    object->SetPickable(false);
    fixture.Update();
    EXPECT_EQ(fixture.Child(0).BoundingBox().Max().y, 1);
    object->GetSymbol()->SetFile({});
    object->GetSymbol()->SetFile(file.path);
    fixture.Update();
    EXPECT_EQ(fixture.Child(0).BoundingBox().Max().y, 12.5);
    EXPECT_EQ(fixture.Child(1).BoundingBox().Max().y, 1) << "its symbol was not set anew";
}

/// A scene whose space measures something.
class DomainVis : public Vis {
public:
    explicit DomainVis(Types::QuantityUnit p_unit) : Vis(VisFlagSelfManaged), _unit(std::move(p_unit)) {
        RegisterUpdateHook(HandledRefreshUpdateContext);
    }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return {}; }

private:
    void DoRefreshUpdateContext(UpdateContext& p_context) override {
        p_context.SpatialDomain().Set(Types::UniformSpatialDomain(_unit));
    }

    Types::QuantityUnit _unit;
};

TEST(SimpleObjectTest, otherUnitsThanMetresAreReportedAndTakenForMetres) {
    std::pair<Types::QuantityUnit, bool> const cases[] = {
        {{L"Length", L"m"}, false}, {{L"Length", L"ft"}, true}, {{L"Temperature", L"K"}, true}};
    for (auto const& [unit, isReported] : cases) {
        SCOPED_TRACE(::testing::PrintToString(isReported));
        SceneFixture fixture;
        auto const object = fixture.AddCube();
        object->SetTransform(Matrix4::Scaling(2));
        fixture.root = Core::MakeNode<DomainVis>(unit);
        fixture.root->Add(fixture.generator(object));
        fixture.Child().SetActive(true);
        qordebug::CaptureScope const log(Utility::GetLogger());
        fixture.Update();
        EXPECT_EQ(
            log.contains("\"At the time of writing we did not fully provide length units in all cases so we assumed "
                         "we were in meters, if this ever changes we need to fix this code\" - "),
            isReported);
        EXPECT_TRUE(fixture.Child().IsValid());
        EXPECT_EQ(fixture.root->BoundingBox(), Box({-1, -1, -1}, {1, 1, 1}));
    }
}

} // namespace
} // namespace Qor::Chart::Render
