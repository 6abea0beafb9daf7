#include "render/nodes/SimpleObject.h"

#include "render/nodes/Group.h"
#include "render/nodes/SceneVis.h"
#include "render/events/EventInformation.h"
#include "render/events/EventSink.h"
#include "render/pick/Selector.h"
#include "tests/render/nodes/SceneFixture.h"
#include "framework/model/Group.h"
#include "framework/library/Pattern.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Mode = DrawContext::DrawMode;
using Box = Types::BoundingBox_Base<double>;
using Fixtures::SceneFixture;
using Ogl::EnableBit::Blend;
using Ogl::EnableBit::DepthTest;
using ::testing::_;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using Types::Matrix4;

static_assert(sizeof(SimpleObject) <= 400); // so that a leaf with its model stays under 1,000 bytes

/// Writes one red triangle, its highest corner at the given height.
void WriteTriangle(std::string const& p_path, double p_height) {
    std::ofstream(p_path) << "ply\nformat ascii 1.0\nelement vertex 3\n"
                             "property float x\nproperty float y\nproperty float z\n"
                             "property uchar red\nproperty uchar green\nproperty uchar blue\n"
                             "element face 1\nproperty list uchar int vertex_indices\nend_header\n"
                             "0 0 0 255 0 0\n1 0 0 255 0 0\n0 "
                          << p_height << " 0 255 0 0\n3 0 1 2\n";
}

struct SimpleObjectTest : ::testing::Test, SceneFixture {};

TEST_F(SimpleObjectTest, hooksEventsAndLayerFollowTheModel) {
    struct Case {
        bool isFront, isPickable, pulses;
        int layer;
    };
    auto const object = AddCube();
    for (Case const& c : {Case{false, true, false, 0}, Case{true, true, false, 30001}, Case{false, false, true, 0},
             Case{true, false, false, 0}, Case{true, true, true, 30001}}) {
        object->SetFront(c.isFront);
        object->SetPickable(c.isPickable);
        object->SetPulse(c.pulses);
        Update();
        auto const& vis = dynamic_cast<SimpleObject&>(Child());
        EXPECT_EQ(vis.IsHandled(HandledHighlight), c.pulses);
        EXPECT_EQ(vis.OptimalPaths().Has(CallbackHighlight), c.pulses);
        EXPECT_EQ(vis.IsHandled(HandledHit), c.isPickable);
        for (int event = 0; event < EventHandler::EventCount; ++event)
            EXPECT_EQ(vis.IsEventDefined(static_cast<EventHandler::EventName>(event)),
                c.isPickable && (event == 0 || event == 2 || event == 9))
                << event;
        EXPECT_EQ(vis.GetLayer(), c.layer);
        EXPECT_EQ(Update(), 0U);
    }
    capabilities.Suppress(SceneCapabilities::SuppressionDrag);
    object->Touch();
    Update();
    EXPECT_FALSE(Child().IsHandled(HandledHighlight));
}

TEST_F(SimpleObjectTest, whatIsBelowAnObjectMovesWithItAndTransparentObjectsAreBlendedLast) {
    auto const outer = AddCube();
    auto const inner = Core::MakeNode<Model::SimpleObject>(outer->GetSymbol());
    outer->SetTransform(Matrix4::Translation({10, 0, 0}));
    inner->SetTransform(Matrix4::Scaling({1, 4, 1}));
    inner->SetColor(QColor(10, 20, 30, 100));
    outer->Add(inner);
    AddCube();
    Update();
    EXPECT_EQ(Child().BoundingBox(), Box({9.5, -2, -0.5}, {10.5, 2, 0.5}));
    auto const commands = Draw();
    ASSERT_EQ(commands.size(), 2U);
    ASSERT_EQ(commands[0].instances.size(), 2U);
    EXPECT_EQ(commands[0].instances[0].rows[0][3], 10);
    EXPECT_EQ(commands[0].instances[1].rows[0][3], 0);
    EXPECT_EQ(commands[0].state.enables & (Blend | DepthTest), DepthTest);
    EXPECT_TRUE(commands[1].state.IsEnabled(Blend));
    EXPECT_EQ(commands[1].state.depth.mask, 0U);
    EXPECT_EQ(commands[1].instances[0].rows[0][3], 10);
    EXPECT_EQ(commands[1].instances[0].rows[1][1], 4);
    EXPECT_EQ(commands[1].state.colorBuffer.destinationFactor, AGL_ONE_MINUS_SRC_ALPHA);
    EXPECT_EQ(commands[1].instances[0].color, Types::Color4f(QColor(10, 20, 30, 100)));
    EXPECT_EQ(agl.GetStatistics().pushes, agl.GetStatistics().pops);
    EXPECT_TRUE(agl.Get(AGL_MODELVIEW_MATRIX).IsIdentity());
    EXPECT_EQ(agl.CheckError(), "");
    outer->SetTransform({});
    Update();
    EXPECT_EQ(root->BoundingBox(), Box({-0.5, -2, -0.5}, {0.5, 2, 0.5}));
}

TEST_F(SimpleObjectTest, objectsShimmerThroughGeometryWhereTheDeviceHasStipple) {
    struct Case {
        bool isWanted, isFront, hasStipple;
        int sixteenths, alpha; ///< 0 for no second pass
    };
    auto const object = AddCube();
    for (Case const& c : {Case{false, true, true, 0, 0}, Case{true, true, false, 0, 0}, Case{true, true, true, 12, 255},
             Case{true, false, true, 4, 128}}) {
        SCOPED_TRACE(c.sixteenths);
        Backend().features.Set(Ogl::DeviceFeature::PolygonStipple, c.hasStipple);
        object->SetVisibleBehindGeometry(c.isWanted);
        object->SetFront(c.isFront);
        Update();
        auto const commands = Draw();
        ASSERT_EQ(commands.size(), c.sixteenths > 0 ? 2U : 1U);
        EXPECT_EQ(commands[0].state.enables & (Blend | DepthTest), DepthTest);
        for (auto const capability : {AGL_POLYGON_STIPPLE, AGL_BLEND, AGL_DEPTH_TEST})
            EXPECT_EQ(agl.IsEnabled(capability), capability == AGL_DEPTH_TEST);
        if (c.sixteenths == 0)
            continue;
        Ogl::RecordedCommand const& second = commands[1];
        EXPECT_EQ(second.state.enables & (Blend | DepthTest), Blend);
        EXPECT_EQ(second.instances[0].color, Types::Color4f(QColor(200, 200, 200, c.alpha)));
        agl.PolygonStipple(Library::Pattern::PolygonStipplePattern(c.sixteenths).data());
        EXPECT_EQ(second.state.polygonStipple.rows, agl.Current().polygonStipple.rows);
    }
}

TEST_F(SimpleObjectTest, pulseGoesBackAndForthInTheHighlightColour) {
    qordebug::manualclock clock;
    highlighter->SetColor(QColor(255, 0, 0));
    auto const object = AddCube();
    object->SetColor(QColor(0, 0, 0));
    object->SetPulse(true);
    Update();
    // milliseconds since the last look, and the strength of the highlight then
    std::pair<unsigned, float> const looks[] = {{0, 0.0F}, {1000, 0.5F}, {1000, 1.0F}, {1500, 0.25F}, {500, 0.0F}};
    for (auto const& [milliseconds, expected] : looks) {
        clock.advance(milliseconds);
        dispatcher.redraws.clear();
        auto const commands = Draw(Mode::Highlight);
        ASSERT_EQ(commands.size(), expected > 0 ? 4U : 1U) << "surface, two rings, and the mask taken away";
        EXPECT_NEAR(commands[0].instances[0].color.red, expected, 0.01);
        EXPECT_EQ(commands[0].state.depth.function, AGL_LEQUAL);
        EXPECT_THAT(dispatcher.redraws, ::testing::Contains(50));
    }
    EXPECT_EQ(agl.Current().depth.function, AGL_LESS);

    dispatcher.redraws.clear();
    capabilities.animations = false;
    EXPECT_THAT(Draw(Mode::Highlight), IsEmpty());
    EXPECT_THAT(dispatcher.redraws, IsEmpty());
    object->SetPulse(false);
    Update();
    EXPECT_THAT(dispatcher.redraws, ElementsAre(0));
}

struct RecordingSink : EventSink {
    void RequestRedraw() override { calls.push_back("redraw"); }
    void RequestUpdate() override { calls.push_back("update"); }
    void SelectBox(BoxSelection const&) override {}
    void AboutToMove(Core::WeakPtr<Model::ModelNode> const&) override {}
    void Hover(SelectRecord const& p_record) override {
        calls.push_back("hover");
        hovered = p_record;
    }
    void EndHover(Core::WeakPtr<Model::ModelNode> const&) override { calls.push_back("end"); }
    PopOutHost* GetPopOutHost() override { return nullptr; }

    std::vector<std::string> calls;
    SelectRecord hovered;
};

TEST_F(SimpleObjectTest, hoverSelectionAndPulseHighlightInThisOrder) {
    auto const object = AddCube();
    object->SetColor(highlighter->Color());
    Update();
    auto& vis = dynamic_cast<SimpleObject&>(Child());
    RecordingSink sink;
    HitRecord const hit(Core::WeakPtr<Vis>(Core::Ptr<Vis>(&vis)), {{{1, 0.5}}, {}, {}}, {1, 2, 3}, {4, 5, 6}, {7, 8});
    EventInformation over(sink, &hit), nothing(sink, nullptr);
    auto const color = [&] {
        Update();
        auto const commands = Draw(Mode::Highlight);
        return commands.empty() ? QColor() : commands[commands.size() - 2].instances[0].color.ToQColor();
    };
    QColor const highlight(highlighter->Color().rgb());
    EXPECT_EQ(vis.OnMouseOver(nothing), Event::Ignored);
    EXPECT_EQ(color(), QColor());
    EXPECT_EQ(vis.OnMouseOver(over), Event::Consumed);
    EXPECT_EQ(vis.OnMouseOver(over), Event::Consumed);
    EXPECT_THAT(sink.calls, ElementsAre("hover", "redraw"));
    EXPECT_EQ(sink.hovered.Selection().Lock(), object);
    EXPECT_EQ(sink.hovered.Location(), Types::Vector3_Base<double>(1, 2, 3));
    EXPECT_EQ(color(), highlight);
    EXPECT_NE(Draw(Mode::Highlight)[0].instances[0].color.ToQColor(), highlight) << "its own colour marks nothing";

    ASSERT_EQ(Selector::RecordsOf(hit).size(), 1U);
    EXPECT_TRUE(Selector::Select(Selector::RecordsOf(hit).front(), true));
    EXPECT_EQ(color(), highlight);
    vis.OnMouseOut(nothing);
    vis.OnMouseOut(nothing);
    EXPECT_THAT(sink.calls, ElementsAre("hover", "redraw", "end", "redraw"));
    EXPECT_EQ(color(), schema.selectionColor);
    object->Touch();
    EXPECT_EQ(color(), schema.selectionColor) << "an update keeps it";
    EXPECT_TRUE(Selector::Select(sink.hovered, false));
    EXPECT_EQ(color(), QColor());

    vis.OnMouseOver(over);
    object->SetPickable(false); // the pointer has still to leave it
    EXPECT_EQ(color(), QColor());

    int clicks = 0;
    auto const connection = object->Delegate().Connect<Model::Events::PickedArgs>([&](auto const& p_event) {
        ++clicks;
        EXPECT_EQ(p_event.Position(), Types::Vector3_Base<double>(4, 5, 6));
        EXPECT_EQ(p_event.ScreenPosition(), Types::Pos(7, 8));
        scene->Clear();
    });
    EXPECT_EQ(vis.OnClick(nothing), Event::Ignored);
    over.button = 1;
    EXPECT_EQ(vis.OnClick(over), Event::Ignored);
    over.button = 0;
    EXPECT_EQ(vis.OnClick(over), Event::Consumed);
    EXPECT_EQ(clicks, 1);
}

TEST_F(SimpleObjectTest, symbolsThatCannotBeShownMakeTheNodeInvalidUntilTheyChange) {
    auto const object = AddCube();
    auto const good = object->GetSymbol();
    auto const missing = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    missing->SetFile("/no/such/file.ply");
    std::pair<Core::Ptr<Model::Symbol>, char const*> const cases[] = {{nullptr, "The object has no symbol"},
        {Core::MakeNode<Model::Symbol>(), "The object has no symbol"}, {missing, "/no/such/file.ply"}};
    for (auto const& [symbol, report] : cases) {
        dispatcher.warnings.clear();
        object->SetSymbol(symbol);
        Update();
        EXPECT_THAT(
            dispatcher.warnings, ElementsAre(Pair(1, HasSubstr(report)), Pair(2, HasSubstr("in an invalid state"))));
        EXPECT_EQ(root->BoundingBox(), Box());
        Child().Touch(); // not a change of the model
        EXPECT_THAT(Draw(), IsEmpty());
        Update();
        EXPECT_FALSE(Child().IsValid());
        EXPECT_THAT(dispatcher.warnings, ElementsAre(_, _, Pair(2, _)));
        object->SetSymbol(good);
        Update();
        EXPECT_EQ(Draw().size(), 1U);
        EXPECT_THAT(dispatcher.exceptions, IsEmpty());
    }
}

TEST_F(SimpleObjectTest, sharedSymbolIsFollowedByAllAndFreedWithTheLast) {
    auto const first = AddCube();
    AddCube()->SetSymbol(first->GetSymbol());
    Update();
    std::weak_ptr<Ogl::VertexBuffer const> const cube = symbols.GetVertexBuffer(Library::Shape::Cube);
    EXPECT_FALSE(cube.expired());
    first->GetSymbol()->SetShape(Model::SymbolShape::Cone);
    EXPECT_EQ(Update(), 2U);
    EXPECT_TRUE(cube.expired());
    auto const commands = Draw();
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_EQ(commands[0].instances.size(), 2U);

    std::weak_ptr<Ogl::VertexBuffer const> const cone = symbols.GetVertexBuffer(Library::Shape::Cone);
    root.Reset();
    EXPECT_TRUE(cone.expired());
}

TEST_F(SimpleObjectTest, filesShowTheirOwnColoursAndAreReadAgainWhenSetAnew) {
    std::string const path = ::testing::TempDir() + "qor-simple-object.ply";
    WriteTriangle(path, 1);
    auto const object = AddCube();
    auto const other = AddCube();
    object->GetSymbol()->SetFile(path);
    other->GetSymbol()->SetFile(path);
    other->SetColor(QColor(0, 255, 0));
    AddCube();
    Update();
    auto const commands = Draw();
    ASSERT_EQ(commands.size(), 2U) << "two symbols of one file share what they draw";
    EXPECT_EQ(commands[0].instances[0].color, Types::Color4f(1, 1, 1));
    EXPECT_EQ(commands[0].instances[1].color, Types::Color4f(0, 1, 0));
    EXPECT_EQ(commands[0].shader->Options(), 3U);
    EXPECT_EQ(commands[1].shader->Options(), 1U);

    WriteTriangle(path, 12.5);
    object->SetPickable(false);
    Update();
    EXPECT_EQ(Child(0).BoundingBox().Max().y, 1);
    object->GetSymbol()->SetFile({});
    object->GetSymbol()->SetFile(path);
    Update();
    std::filesystem::remove(path);
    EXPECT_EQ(Child(0).BoundingBox().Max().y, 12.5);
    EXPECT_EQ(Child(1).BoundingBox().Max().y, 1) << "its symbol was not set anew";
}

TEST_F(SimpleObjectTest, otherUnitsThanMetresAreReportedAndTakenForMetres) {
    AddCube()->SetTransform(Matrix4::Scaling(2));
    UpdateContext context = MakeUpdateContext();
    for (auto const& [unit, isReported] : {std::pair(L"m", false), {L"ft", true}, {L"K", true}}) {
        context.SpatialDomain().Set(Types::UniformSpatialDomain({L"Length", unit}));
        root = generator(scene);
        unsigned visited = 0, updated = 0;
        qordebug::CaptureScope const log(Utility::GetLogger());
        UpdateLoop()(root, context, visited, updated);
        EXPECT_EQ(
            log.contains("\"At the time of writing we did not fully provide length units in all cases so we assumed "
                         "we were in meters, if this ever changes we need to fix this code\" - "),
            isReported);
        EXPECT_EQ(root->BoundingBox(), Box({-1, -1, -1}, {1, 1, 1}));
    }
}

TEST_F(SimpleObjectTest, sceneAndGroupsFollowTheModel) {
    auto const group = Core::MakeNode<Model::Group>();
    AddCube()->SetTransform(Matrix4::Translation({10, 0, 0}));
    group->Add(AddCube());
    group->Add(*scene->begin());
    scene->Clear();
    scene->Add(group);
    scene->Add(Core::MakeNode<Model::Group>());
    Update();
    ASSERT_TRUE(Core::DynamicCast<SceneVis>(root));
    EXPECT_EQ(dynamic_cast<Group&>(Child(0)).BoundingBox(), Box({-0.5, -0.5, -0.5}, {10.5, 0.5, 0.5}));
    EXPECT_EQ(root->BoundingBox(), Child(0).BoundingBox());
    EXPECT_FALSE(Child(1).BoundingBox().IsDefined());
    EXPECT_FALSE(Child(1).OptimalPaths().Any());
    Draw();
    EXPECT_EQ(drawn, 2U);

    group->Remove(**std::next(group->begin()));
    Update();
    EXPECT_EQ(root->BoundingBox(), Box({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}));
}

} // namespace
} // namespace Qor::Chart::Render
