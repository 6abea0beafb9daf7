#include "render/nodes/Viewport.h"

#include "tests/render/nodes/SceneFixture.h"
#include "tests/render/support/QuietSink.h"
#include "render/context/PickPoint.h"
#include "render/events/EventInformation.h"
#include "render/pick/BoxSelection.h"
#include "render/pick/HitRecord.h"
#include "framework/model/Light.h"
#include "framework/qordebug/highrestimer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <tuple>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Mode = DrawContext::DrawMode;
using Rectangle = Types::Viewport<0>;
using Types::RelativeLength;
using Names = std::vector<std::uint64_t>;

struct Hooks : VisHooks {
    using VisHooks::Hit;
    using VisHooks::HitOverlay;
    using VisHooks::Setup;
    using VisHooks::SetupOverlay;
    using VisHooks::Teardown;
    using VisHooks::TeardownOverlay;
};

Types::Viewport<1> Pixels(double p_x, double p_y, double p_width, double p_height) {
    return {RelativeLength::Pixels(p_x), RelativeLength::Pixels(p_y), RelativeLength::Pixels(p_width),
        RelativeLength::Pixels(p_height)};
}

/// Keeps what handlers ask for.
struct Host : Fixtures::QuietSink {
    void RequestRedraw() override { ++redraws; }
    void SelectBox(BoxSelection const& p_box) override { boxes.push_back(p_box); }

    int redraws = 0;
    std::vector<BoxSelection> boxes;
};

/// A window of 400 by 300 pixels with panes.
struct ViewportTest : ::testing::Test, Fixtures::SceneFixture {
    Core::Ptr<Model::Pane> AddPane(Types::Viewport<1> const& p_viewport = {}) {
        auto pane = Core::MakeNode<Model::Pane>();
        pane->SetViewport(p_viewport);
        scene->Add(pane);
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
    Viewport& Node() const { return dynamic_cast<Viewport&>(Child()); }

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

    /// An event at a place for which a part of the pane was hit.
    template <class Handler>
    auto Send(Handler p_handler, std::uint64_t p_name, Types::Pos const& p_pos = {}, std::uint32_t p_modifiers = 0) {
        HitResult result;
        result.records.emplace_back(p_name, Ogl::HitRecord::DepthOverlay);
        HitRecord const hit(Core::Ptr<Vis>(&Node()), result, {}, {}, p_pos);
        EventInformation event(host, &hit);
        event.position = p_pos;
        event.buttons = EventInformation::ButtonMaskPrimary;
        event.modifiers = p_modifiers;
        return (Node().*p_handler)(event);
    }

    Host host;
};

TEST_F(ViewportTest, setupWritesTheContextForTheSubtree) {
    auto const pane = AddPane(Pixels(350, 10, 100, 80));
    pane->SetBackgroundColor(Qt::red);
    Update();
    Utility::Scoped<Ogl::Agl> scope(handle);
    struct Case {
        int mode;
        bool isOverlay, isKept, isPerViewport;
        Rectangle expected;
    };
    for (Case const& c :
        {Case{0, false, true, false, {300, 10, 100, 80}}, Case{1, false, false, true, {357, 1, 100, 80}},
            Case{1, true, true, true, {300, 1, 100, 80}}, Case{0, true, false, false, {350, 10, 100, 80}}}) {
        SCOPED_TRACE(c.mode + 10 * c.isOverlay);
        pane->SetProjectionMode(static_cast<Model::Pane::ProjectionMode>(c.mode));
        pane->SetKeepInsideParent(c.isKept);
        DrawContext const window = WindowContext();
        DrawContext context(window, DrawContext::DrawInfo{Mode::Draw, c.isPerViewport});
        context.SetPerViewportOffset({7, -9});
        context.LightCount().Set(2);
        context.Lights().Set({Core::WeakPtr<Model::Light>()});
        agl.Enable(AGL_LIGHT0 + 1);
        context.CreateCheckPoint();
        (c.isOverlay ? Hooks::SetupOverlay : Hooks::Setup)(Node(), context, scope);

        EXPECT_EQ(context.Viewport().Top(), c.expected);
        EXPECT_EQ(agl.LayerId(), Node().Id());
        EXPECT_EQ(context.Schema().Top().clearColor, QColor(Qt::red));
        EXPECT_EQ(agl.IsEnabled(AGL_LIGHT0 + 1), c.isOverlay);
        EXPECT_EQ(context.LightCount().Top() + context.Lights().Top().size(), c.isOverlay ? 3U : 0U);
        EXPECT_EQ(static_cast<int>(context.ProjectionMode().Top()), c.mode);
        EXPECT_EQ(agl.Get(AGL_PROJECTION_MATRIX), context.Projection().Top());
        agl.MatrixMode(AGL_MODELVIEW);
        (c.isOverlay ? Hooks::TeardownOverlay : Hooks::Teardown)(Node(), context, scope);
        context.RestoreCheckPoint();
        EXPECT_EQ(agl.LayerId(), 0U);
    }
}

TEST_F(ViewportTest, decorationIsHitPartByPart) {
    auto pane = AddPane(Pixels(100, 50, 200, 150));
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
    EXPECT_EQ(HitAt({99, 120}), missed);
    pane->SetMovable(false);
    pane->SetBackgroundPickable(false);
    EXPECT_EQ(HitAt({101, 198}).first, Names{2});
    pane->SetResizable(false);
    EXPECT_EQ(HitAt({101, 198}), std::pair(Names(), true));
    pane->SetButtonsShown(false);
    Update();
    EXPECT_FALSE(Node().IsHandled(HandledHit) || Node().IsHandled(HandledHitOverlay));
    scene->Clear();
    pane.Reset();
    EXPECT_EQ(HitAt({150, 60}), missed) << "its pane is gone";
}

/// In a process of its own, as installed fonts are looked up once.
TEST_F(ViewportTest, withoutFontsThePaneIsInvalidUntilItIsTouchedAndThenShowsItsScene) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const run = [this] {
        std::string const file = ::testing::TempDir() + "qor-no-fonts.conf";
        std::ofstream(file) << "<?xml version=\"1.0\"?><fontconfig></fontconfig>";
        setenv("FONTCONFIG_FILE", file.c_str(), 1);
        auto const pane = AddPane();
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
    auto const pane = AddPane(Pixels(100, 50, 200, 150));
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

TEST_F(ViewportTest, rubberBandIsDrawnAndHandedOver) {
    constexpr std::uint32_t control = EventInformation::ModifierControl, shift = EventInformation::ModifierShift;
    auto const pane = AddPane(Pixels(100, 50, 200, 150));
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
    auto pane = AddPane();
    pane->SetToolbarShown(true);
    Update();
    auto const actions = Core::DynamicCast<Model::Toolbar>((*Node().begin())->SourceModel().Lock())->Actions();
    auto const state = [&] {
        Update();
        return std::tuple(
            static_cast<int>(pane->GetProjectionMode()), actions[0]->IsChecked(), actions[1]->IsChecked());
    };
    EXPECT_EQ(state(), std::tuple(0, true, false));
    actions[1]->Execute();
    EXPECT_EQ(state(), std::tuple(1, false, true));
    pane->SetProjectionMode(Model::Pane::ProjectionMode::Orthographic);
    EXPECT_EQ(state(), std::tuple(0, true, false));
}

} // namespace
} // namespace Qor::Chart::Render
