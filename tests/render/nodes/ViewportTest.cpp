#include "render/nodes/Viewport.h"

#include "tests/render/nodes/SceneFixture.h"
#include "render/context/PickPoint.h"
#include "render/events/EventInformation.h"
#include "render/pick/BoxSelection.h"
#include "render/pick/HitRecord.h"
#include "framework/model/Light.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <tuple>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Mode = DrawContext::DrawMode;
using Ogl::PixelRectangle;
using Rectangle = Types::Viewport<0>;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Types::RelativeLength;
using Names = std::vector<std::uint64_t>;

struct Hooks : VisHooks {
    using VisHooks::Hit;
    using VisHooks::HitOverlay;
    using VisHooks::SetBoundingBox;
    using VisHooks::Setup;
    using VisHooks::SetupOverlay;
    using VisHooks::Teardown;
    using VisHooks::TeardownOverlay;
    using VisHooks::Update;
};

Types::Viewport<1> Pixels(double p_x, double p_y, double p_width, double p_height) {
    return {RelativeLength::Pixels(p_x), RelativeLength::Pixels(p_y), RelativeLength::Pixels(p_width),
        RelativeLength::Pixels(p_height)};
}

/// Keeps what handlers and the pop-out ask for.
struct Host : EventSink, PopOutHost {
    void RequestRedraw() override { ++redraws; }
    void RequestUpdate() override { ++updates; }
    void SelectBox(BoxSelection const& p_box) override { boxes.push_back(p_box); }
    void AboutToMove(Core::WeakPtr<Model::ModelNode> const& p_node) override { moved.push_back(p_node.Peek()); }
    void Hover(SelectRecord const&) override {}
    void EndHover(Core::WeakPtr<Model::ModelNode> const&) override {}
    PopOutHost* GetPopOutHost() override { return this; }
    void PopOut(Factory const& p_factory, Types::Size const& p_size, Restore const& p_restore,
        Content const& p_content) override {
        window = p_factory(p_content);
        size = p_size;
        restore = p_restore;
    }

    int redraws = 0, updates = 0;
    std::vector<BoxSelection> boxes;
    std::vector<Model::ModelNode*> moved;
    Core::Ptr<Model::ModelNode> window;
    Types::Size size;
    Restore restore;
};

/// A window of 400 by 300 pixels with panes.
struct ViewportTest : ::testing::Test, Fixtures::SceneFixture {
    Core::Ptr<Model::Pane> AddPane(Types::Viewport<1> const& p_viewport, Core::Ptr<Model::ModelNode> const& p_parent) {
        auto pane = Core::MakeNode<Model::Pane>();
        pane->SetViewport(p_viewport);
        (p_parent ? p_parent : Core::Ptr<Model::ModelNode>(scene))->Add(pane);
        return pane;
    }
    DrawContext WindowContext(Mode p_mode = Mode::Draw) {
        DrawContext context = MakeContext(p_mode);
        context.Viewport().Set({0, 0, 400, 300});
        return context;
    }
    std::vector<Ogl::RecordedCommand> Draw(Layer p_layer, Mode p_mode = Mode::Draw) {
        DrawContext context = WindowContext(p_mode);
        dispatcher.redraws.clear();
        agl.BeginFrame();
        RenderLoop(p_layer, p_mode)(root, context);
        agl.EndFrame();
        EXPECT_EQ(agl.GetStatistics().pushes, agl.GetStatistics().pops);
        return Backend().Commands();
    }
    std::size_t DecorationDraws() { return Draw(LayerOverlay, Mode::Highlight).size(); }
    /// Of what was drawn last.
    std::pair<float, float> LowestCorner() const {
        std::pair<float, float> corner(1e9F, 1e9F);
        for (Ogl::RecordedCommand const& command : Backend().Commands())
            for (Ogl::ImmediateVertex const& vertex : command.vertices)
                corner = {std::min(corner.first, vertex.position.x), std::min(corner.second, vertex.position.y)};
        return {std::floor(corner.first), std::floor(corner.second)};
    }
    bool Has(QColor const& p_color) const {
        return std::ranges::any_of(Backend().Commands(), [&](Ogl::RecordedCommand const& p_command) {
            auto const isColor = [&](auto const& p_vertex) { return p_vertex.color == Types::Color4f(p_color); };
            return std::ranges::any_of(p_command.vertices, isColor);
        });
    }
    Viewport& Node(std::size_t p_place = 0) const { return dynamic_cast<Viewport&>(Child(p_place)); }

    /// The names hit at a place of the window, and whether both layers are gone into.
    std::pair<Names, bool> HitAt(Types::Pos const& p_pos) {
        DrawContext context = WindowContext();
        context.CreateCheckPoint();
        Utility::Scoped<Ogl::Agl> scope(handle);
        HitResult result;
        Hooks::Setup(Node(), context, scope);
        PickPoint const point{p_pos - context.Viewport().Top().Origin(), {}};
        bool descends = Hooks::Hit(Node(), context, point, result);
        descends = Hooks::HitOverlay(Node(), context, point, result) && descends;
        Hooks::Teardown(Node(), context, scope);
        Names names;
        for (Ogl::HitRecord const& record : result.records)
            names.push_back(record.name);
        return {names, descends};
    }

    /// An event at a place for which a part of the target, or else of the first pane, was hit.
    template <class Handler>
    auto Send(Handler p_handler, std::uint64_t p_name, Types::Pos const& p_pos = {}, std::uint32_t p_modifiers = 0) {
        HitResult result;
        result.records.emplace_back(p_name, Ogl::HitRecord::DepthOverlay);
        Viewport& node = target ? *target : Node();
        HitRecord const hit(Core::Ptr<Vis>(&node), result, {}, {}, p_pos);
        EventInformation event(host, &hit);
        event.position = p_pos;
        event.buttons = EventInformation::ButtonMaskPrimary;
        event.modifiers = p_modifiers;
        return (node.*p_handler)(event);
    }
    Event::Result Press(int p_key, std::uint32_t p_modifiers = 0) {
        EventInformation event(host, nullptr);
        event.key = p_key;
        event.modifiers = p_modifiers;
        return Node().OnKeyPress(event);
    }

    Host host;
    Viewport* target = nullptr;
};

TEST_F(ViewportTest, nestedPanesDrawInTheirOwnRectanglesCutByThoseAround) {
    auto const outer = AddPane(Pixels(100, 50, 200, 200), nullptr);
    auto const inner = AddPane({0.5, 0.5, 1, 1}, outer);
    auto const innermost = AddPane(Pixels(-20, 10, 60, 40), inner);
    for (auto const& pane : {outer, inner, innermost}) {
        pane->SetBorderColor(Qt::black);
        pane->Add(Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube)));
    }
    innermost->SetBackgroundColor(QColor(0, 0, 0, 0));
    Update();
    // clear of depths and background of each pane, but for the last one, and its cube, in the order of the layers
    std::tuple<PixelRectangle, PixelRectangle, bool> const expected[] = {
        {{100, 50, 200, 200}, {100, 50, 200, 200}, false}, {{100, 50, 200, 200}, {100, 50, 200, 200}, false},
        {{100, 50, 200, 200}, {100, 50, 200, 200}, true}, {{200, 150, 200, 200}, {200, 150, 100, 100}, false},
        {{200, 150, 200, 200}, {200, 150, 100, 100}, false}, {{200, 150, 200, 200}, {200, 150, 100, 100}, true},
        {{180, 160, 60, 40}, {200, 160, 40, 40}, false}, {{180, 160, 60, 40}, {200, 160, 40, 40}, true}};
    auto const commands = Draw(LayerBase);
    ASSERT_EQ(commands.size(), std::size(expected));
    for (std::size_t i = 0; i < commands.size(); ++i) {
        auto const& [viewport, scissor, isCube] = expected[i];
        EXPECT_EQ(commands[i].kind == Ogl::Command::Kind::Draw, isCube) << i;
        EXPECT_EQ(commands[i].state.viewport.rectangle, viewport) << i;
        EXPECT_EQ(commands[i].state.scissor.box, scissor) << i;
        EXPECT_TRUE(commands[i].state.IsEnabled(Ogl::EnableBit::ScissorTest));
    }
    auto const borders = Draw(LayerOverlay, Mode::Highlight);
    ASSERT_EQ(borders.size(), 3U) << "from within outwards";
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(borders[i].state.viewport.rectangle, std::get<0>(expected[7 - 3 * i]));
    EXPECT_THAT(Draw(LayerOverlay), IsEmpty());
    EXPECT_EQ(agl.CheckError(), "");

    inner->SetViewport(Pixels(0, 0, 0, 10));
    Update();
    EXPECT_EQ(Draw(LayerBase).size(), 3U) << "what cannot be drawn takes its subtree along";
    inner->SetKeepInsideParent(true);
    Update();
    EXPECT_EQ(Draw(LayerBase)[3].state.viewport.rectangle, (PixelRectangle{100, 50, 1, 10}));
}

TEST_F(ViewportTest, setupFitsTheSceneAndWritesTheContextForTheSubtree) {
    auto const pane = AddPane(Pixels(350, 10, 100, 80), nullptr);
    pane->SetBackgroundColor(Qt::red);
    Update();
    Types::BoundingBox_Base<double> const point({5, 6, 7}, {5, 6, 7});
    Hooks::SetBoundingBox(Node(), point);
    auto const camera = Types::Matrix4::Rotation(30, {0, 1, 0});
    Utility::Scoped<Ogl::Agl> scope(handle);
    struct Case {
        int mode;
        bool isOverlay, isKept, isPerViewport;
        Rectangle expected;
        char const* message;
    };
    for (Case const& c :
        {Case{0, false, true, false, {300, 10, 100, 80}, ""}, Case{1, false, false, true, {357, 1, 100, 80}, ""},
            Case{7, false, false, false, {350, 10, 100, 80}, "::DoSetup("},
            Case{1, true, true, true, {300, 1, 100, 80}, ""},
            Case{7, true, false, false, {350, 10, 100, 80}, "::DoSetupOverlay("}}) {
        SCOPED_TRACE(c.mode + 10 * c.isOverlay);
        pane->SetProjectionMode(static_cast<Model::Pane::ProjectionMode>(c.mode));
        pane->SetKeepInsideParent(c.isKept);
        DrawContext const window = WindowContext();
        DrawContext context(window, DrawContext::DrawInfo{Mode::Draw, c.isPerViewport});
        context.SetPerViewportOffset({7, -9});
        context.Camera().Set(camera);
        context.LightCount().Set(2);
        context.Lights().Set({Core::WeakPtr<Model::Light>()});
        agl.Enable(AGL_LIGHT0 + 1);
        context.CreateCheckPoint();
        qordebug::CaptureScope const log(Utility::GetLogger());
        (c.isOverlay ? Hooks::SetupOverlay : Hooks::Setup)(Node(), context, scope);

        EXPECT_EQ(context.Viewport().Top(), c.expected);
        EXPECT_EQ(agl.LayerId(), Node().Id());
        EXPECT_EQ(context.Schema().Top().clearColor, QColor(Qt::red));
        EXPECT_EQ(agl.IsEnabled(AGL_LIGHT0 + 1), c.isOverlay);
        EXPECT_EQ(context.LightCount().Top() + context.Lights().Top().size(), c.isOverlay ? 3U : 0U);
        EXPECT_EQ(static_cast<int>(context.ProjectionMode().Top()), c.mode % 7);
        auto const projection = context.Projection().Top();
        EXPECT_EQ(agl.Get(AGL_PROJECTION_MATRIX), projection);
        agl.MatrixMode(AGL_PROJECTION);
        agl.LoadIdentity();
        if (c.isOverlay)
            agl.Ortho2D(c.expected);
        else if (c.mode == 0)
            agl.Ortho(c.expected, {{4, 5, 6}, {6, 7, 8}}, camera);
        else if (c.mode == 1)
            agl.Perspective(c.expected, {{4, 5, 6}, {6, 7, 8}}, camera);
        EXPECT_EQ(agl.Get(AGL_PROJECTION_MATRIX), projection);
        if (c.mode == 7)
            EXPECT_THAT(log.texts(),
                ElementsAre(AllOf(HasSubstr(c.message), EndsWith(c.isOverlay ? ") @line768" : ") @line552"))));
        else
            EXPECT_TRUE(log.empty());
        agl.MatrixMode(AGL_MODELVIEW);
        (c.isOverlay ? Hooks::TeardownOverlay : Hooks::Teardown)(Node(), context, scope);
        context.RestoreCheckPoint();
        EXPECT_EQ(agl.LayerId(), 0U);
    }
}

TEST_F(ViewportTest, decorationIsHitPartByPart) {
    auto pane = AddPane(Pixels(100, 50, 200, 150), nullptr);
    pane->SetMovable(true);
    pane->SetResizable(true);
    pane->SetBackgroundPickable(true);
    pane->SetButtonsShown(true);
    Update();
    std::pair<Types::Pos, Names> const cases[] = {
        {{200, 120}, {0}},
        {{150, 190}, {0, 1}},
        {{101, 198}, {0, 1, 2}},
        {{298, 198}, {0, 1, 3}},
        {{102, 52}, {0, 4}},
        {{298, 51}, {0, 5}},
        {{292, 52}, {0}},
        {{275, 183}, {0, 1, 6}},
        {{250, 183}, {0, 1, 7}},
    };
    for (auto const& [pos, names] : cases)
        EXPECT_EQ(HitAt(pos), std::pair(names, true)) << pos;
    std::pair<Names, bool> const missed;
    {
        qordebug::CaptureScope const log(Utility::GetLogger(), {""});
        EXPECT_EQ(HitAt({99, 120}), missed);
        EXPECT_THAT(log.texts(),
            ElementsAre("Culling based on viewport (base) in  where:  vp(100, 50, 200, 150)",
                "Culling based on viewport (overlay) in  where:  vp(100, 50, 200, 150)"));
    }
    pane->SetMovable(false);
    pane->SetBackgroundPickable(false);
    EXPECT_EQ(HitAt({101, 198}).first, Names{2});
    pane->SetResizable(false);
    EXPECT_EQ(HitAt({101, 198}), std::pair(Names(), true));
    Update();
    EXPECT_TRUE(Node().IsHandled(HandledHit) && Node().IsHandled(HandledHitOverlay));
    pane->SetButtonsShown(false);
    Update();
    EXPECT_FALSE(Node().IsHandled(HandledHit) || Node().IsHandled(HandledHitOverlay));
    pane->SetViewport(Pixels(100, 50, 200, 0));
    EXPECT_EQ(HitAt({150, 50}), missed);
    scene->Clear();
    pane.Reset();
    EXPECT_EQ(HitAt({150, 60}), missed) << "its pane is gone";
}

TEST_F(ViewportTest, updateTellsWhetherTheNodeCanBeShown) {
    auto pane = AddPane({}, nullptr);
    Update();
    auto const status = [this, node = Core::Ptr<Vis>(&Node())] {
        return Hooks::Update(*node, MakeUpdateContext()).Value();
    };
    EXPECT_EQ(status(), NodeStatusOk);
    Node().SetInvalid();
    EXPECT_EQ(status(), NodeStatusInvalid) << "nothing has changed";
    pane->SetTitle(L"other");
    EXPECT_EQ(status(), NodeStatusOk);
    scene->Clear();
    pane.Reset();
    EXPECT_EQ(status(), NodeStatusInvalid);
}

/// In a process of its own, as installed fonts are looked up once.
TEST_F(ViewportTest, withoutFontsThePaneIsInvalidUntilItIsTouchedAndThenShowsItsScene) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const run = [this] {
        std::string const file = ::testing::TempDir() + "qor-no-fonts.conf";
        std::ofstream(file) << "<?xml version=\"1.0\"?><fontconfig></fontconfig>";
        setenv("FONTCONFIG_FILE", file.c_str(), 1);
        auto const pane = AddPane({}, nullptr);
        pane->SetTitlePinned(true);
        pane->SetTitle(L"title");
        capabilities.animations = false;
        Update();
        bool const isInvalid = !Node().IsValid() && Draw(LayerBase).empty();
        Node().Touch();
        Update();
        bool const isShown = Node().IsValid() && !Draw(LayerBase).empty() && DecorationDraws() > 0;
        std::exit(isInvalid && isShown ? 0 : 1);
    };
    EXPECT_EXIT(run(), ::testing::ExitedWithCode(0), "");
}

TEST_F(ViewportTest, titleBarSlidesInUnderThePointerAndOut) {
    qordebug::manualclock clock;
    auto const pane = AddPane(Pixels(100, 50, 200, 150), nullptr);
    pane->SetMovable(true);
    Update();
    Draw(LayerBase);
    // the lower edge of the bar, 150 for none, and whether another frame is wanted
    using Look = std::pair<float, bool>;
    auto const look = [&](unsigned p_milliseconds = 0) {
        clock.advance(p_milliseconds);
        float const bottom = DecorationDraws() > 0 ? LowestCorner().second : 150;
        EXPECT_TRUE(std::ranges::all_of(dispatcher.redraws, [](int p_delay) { return p_delay == 41; }));
        return Look(bottom, !dispatcher.redraws.empty());
    };
    auto const isLit = [&] { return Has(schema.highlightColor); };
    EXPECT_EQ(look(), Look(150, false));
    EXPECT_EQ(Send(&Viewport::OnMouseOver, 0), Event::Ignored);
    EXPECT_EQ(Send(&Viewport::OnMouseOver, Viewport::PartTitleBar), Event::Consumed);
    EXPECT_EQ(look(), Look(150, true));
    EXPECT_EQ(look(150), Look(139, true));
    EXPECT_EQ(look(150), Look(129, true)) << "the colour still changes";
    EXPECT_EQ(look(150), Look(129, false));
    EXPECT_TRUE(isLit());

    host.redraws = 0;
    Send(&Viewport::OnMouseOut, 0);
    EXPECT_EQ(look(), Look(129, true));
    EXPECT_EQ(look(150), Look(139, true));
    EXPECT_EQ(look(150), Look(150, false));
    Send(&Viewport::OnMouseOut, 0);
    EXPECT_EQ(host.redraws, 1) << "it has left already";

    capabilities.animations = false;
    pane->SetButtonsShown(true);
    pane->SetResizable(true);
    Update();
    for (auto const part : {Viewport::PartTitleBar, Viewport::PartGripTopLeft, Viewport::PartPopOutButton}) {
        Send(&Viewport::OnMouseOver, part);
        EXPECT_EQ(look(), Look(0, false)) << "grips";
        EXPECT_TRUE(isLit());
        EXPECT_EQ(Has(schema.titleColor), part != Viewport::PartTitleBar);
    }
    pane->SetTitlePinned(true);
    Send(&Viewport::OnMouseOut, 0);
    EXPECT_EQ(look(), Look(129, false));
    EXPECT_FALSE(isLit());
    pane->SetTitlePinned(false);
    EXPECT_EQ(look(), Look(150, false));
}

TEST_F(ViewportTest, panesAreMovedAndResizedInTheirParent) {
    auto const outer = AddPane(Pixels(100, 50, 200, 200), nullptr);
    auto const inner = AddPane(Pixels(20, 30, 80, 60), outer);
    Update();
    Draw(LayerBase);
    target = dynamic_cast<Viewport*>(Node().begin()->Get());
    Send(&Viewport::OnDrag, Viewport::PartTitleBar, {0, 0});
    EXPECT_EQ(host.updates, 0) << "nothing is dragged";
    struct Drag {
        std::uint64_t part;
        Types::Pos from, to;
        Types::Viewport<1> during, after;
    };
    for (Drag const& drag : {
             Drag{Viewport::PartTitleBar, {150, 135}, {160, 140}, Pixels(30, 35, 80, 60), Pixels(30, 35, 80, 60)},
             Drag{Viewport::PartTitleBar, {150, 140}, {999, -99}, Pixels(180, -55, 80, 60), Pixels(120, 0, 80, 60)},
             Drag{Viewport::PartGripTopLeft, {0, 0}, {260, 999}, Pixels(150, 0, 50, 200), Pixels(150, 0, 50, 200)},
             Drag{Viewport::PartGripBottomRight, {0, 0}, {90, 120}, Pixels(150, 70, 50, 130), Pixels(150, 70, 50, 130)},
         }) {
        Send(&Viewport::OnMouseOver, drag.part);
        EXPECT_EQ(Send(&Viewport::OnDragBegin, drag.part, drag.from), Event::Consumed);
        host.moved.clear();
        Send(&Viewport::OnDrag, drag.part, drag.from);
        Send(&Viewport::OnDrag, drag.part, drag.to);
        EXPECT_EQ(inner->GetViewport(), drag.during);
        Send(&Viewport::OnDragEnd, drag.part, drag.to);
        EXPECT_EQ(inner->GetViewport(), drag.after);
        EXPECT_THAT(host.moved, ElementsAre(inner.Get()));
        Send(&Viewport::OnDrag, drag.part, drag.from);
        EXPECT_EQ(inner->GetViewport(), drag.after) << "the drag is over";
    }
}

TEST_F(ViewportTest, rubberBandIsDrawnAndHandedOver) {
    constexpr std::uint32_t control = EventInformation::ModifierControl, shift = EventInformation::ModifierShift;
    auto const pane = AddPane(Pixels(100, 50, 200, 150), nullptr);
    pane->SetBackgroundPickable(true);
    Update();
    Draw(LayerBase);
    EXPECT_EQ(Send(&Viewport::OnDragBegin, 0, {150, 100}), Event::Ignored);
    for (bool const isUpward : {true, false}) {
        EXPECT_EQ(Send(&Viewport::OnDragBegin, 0, {150, 100}, control), Event::Consumed);
        EXPECT_EQ(DecorationDraws(), 0U);
        Send(&Viewport::OnDrag, 0, {90, isUpward ? 130 : 70}, control);
        EXPECT_EQ(DecorationDraws(), isUpward ? 2U : 1U) << "stripes are a draw of their own";
        EXPECT_EQ(LowestCorner(), std::pair(-1.0F, isUpward ? 49.0F : 19.0F)) << "cut at the pane";
        EXPECT_EQ(HitAt({200, 100}), std::pair(Names{0}, false));
        Send(&Viewport::OnDragEnd, 0, {90, 130}, isUpward ? control : control | shift);
        EXPECT_EQ(DecorationDraws(), 0U);
        BoxSelection const& box = host.boxes.back();
        EXPECT_EQ(box.Scope().Peek(), &Node());
        EXPECT_EQ(box.Rectangle(), isUpward ? Rectangle(90, 100, 60, 30) : Rectangle(90, 70, 60, 30));
        EXPECT_EQ(box.Flag(), !isUpward);
        EXPECT_EQ(box.GetOperation(), isUpward ? BoxSelection::Operation::Replace : BoxSelection::Operation::Add);
    }
    EXPECT_EQ(pane->GetViewport(), Pixels(100, 50, 200, 150));
}

TEST_F(ViewportTest, toolbarSwitchesTheProjectionAndFollowsIt) {
    bool isReady = false;
    Generator const builtIn = std::exchange(generator, {});
    generator.Register<Model::Toolbar>([&](Core::Ptr<Model::ModelNode> const& p_model) {
        return std::exchange(isReady, true) ? builtIn(p_model) : throw std::runtime_error("not yet");
    });
    generator += builtIn;
    auto pane = AddPane({}, nullptr);
    pane->SetToolbarShown(true);
    Update();
    EXPECT_FALSE(Node().IsValid());
    pane->Touch();
    Update();
    ASSERT_EQ(Node().Size(), 1U);
    auto const toolbar = Core::DynamicCast<Model::Toolbar>((*Node().begin())->SourceModel().Lock());
    ASSERT_TRUE(toolbar);
    auto const actions = toolbar->Actions();
    ASSERT_EQ(actions.size(), 2U);
    auto const state = [&] {
        Update();
        return std::tuple(
            static_cast<int>(pane->GetProjectionMode()), actions[0]->IsChecked(), actions[1]->IsChecked());
    };
    EXPECT_EQ(state(), std::tuple(0, true, false));
    actions[1]->Execute();
    EXPECT_EQ(state(), std::tuple(1, false, true));
    Press(EventInformation::KeyOrthographic);
    EXPECT_EQ(state(), std::tuple(0, true, false));
    for (bool const isShown : {false, true}) {
        pane->SetToolbarShown(isShown);
        Update();
        EXPECT_EQ(toolbar->IsVisible(), isShown);
        EXPECT_EQ(Node().Size(), 1U);
    }
    scene->Clear();
    pane.Reset();
    qordebug::CaptureScope const log(Utility::GetLogger());
    EXPECT_TRUE(actions[1]->Execute());
    EXPECT_TRUE(log.contains("\"!_viewport.Expired() && !_thisAction.Expired() && !_other.Expired()\" - "));
    EXPECT_TRUE(actions[1]->IsChecked() && !actions[0]->IsChecked());
}

TEST_F(ViewportTest, keysSwitchTheProjectionAndButtonsTakeTheContentOut) {
    auto const pane = AddPane(Pixels(100, 50, 200, 150), nullptr);
    pane->SetButtonsShown(true);
    pane->SetMovable(true);
    auto const content = AddPane({}, pane);
    Update();
    Draw(LayerBase);
    std::tuple<int, unsigned, Event::Result, int> const keys[] = {{79, 0, Event::Ignored, 0},
        {80, 2, Event::Ignored, 0}, {80, 0, Event::Consumed, 1}, {80, 0, Event::Ignored, 1}, {81, 0, Event::Ignored, 1},
        {79, 0, Event::Consumed, 0}};
    for (auto const& [key, modifiers, result, mode] : keys) {
        EXPECT_EQ(Press(key, modifiers), result);
        EXPECT_EQ(static_cast<int>(pane->GetProjectionMode()), mode);
    }
    EXPECT_EQ(Send(&Viewport::OnClick, Viewport::PartTitleBar), Event::Ignored);
    for (auto const part : {Viewport::PartPopOutButton, Viewport::PartDetachButton}) {
        bool const isDetached = part == Viewport::PartDetachButton;
        EXPECT_EQ(Send(&Viewport::OnClick, part), Event::Consumed);
        EXPECT_EQ(pane->IsVisible(), !isDetached);
        EXPECT_EQ(pane->Size(), isDetached ? 0U : 1U);
        EXPECT_EQ(host.size, Types::Size(200, 150));
        auto const copy = Core::DynamicCast<Model::Pane>(host.window);
        ASSERT_TRUE(copy && copy->IsVisible() && copy->AreButtonsShown() && !copy->IsMovable());
        EXPECT_EQ(copy->GetViewport(), Types::Viewport<1>());
        EXPECT_TRUE(copy->Size() == 1 && *copy->begin() == content);
        EXPECT_EQ(static_cast<bool>(host.restore), isDetached);
    }
    host.restore();
    host.restore();
    EXPECT_TRUE(pane->IsVisible());
    EXPECT_TRUE(pane->Size() == 1 && *pane->begin() == content);
}

} // namespace
} // namespace Qor::Chart::Render
