#include "render/nodes/Viewport.h"

#include "tests/render/nodes/PaneFixture.h"
#include "framework/model/Light.h"
#include "framework/qordebug/highrestimer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <tuple>

namespace Qor::Chart::Render {
namespace {

using Mode = DrawContext::DrawMode;
using Names = std::vector<std::uint64_t>;

struct ViewportTest : ::testing::Test, Fixtures::PaneFixture {
    std::size_t DecorationDraws() { return DrawLayer(LayerOverlay, Mode::Highlight).size(); }
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
    void RequestRedraw() override { ++redraws; }
    Viewport& Node() const { return dynamic_cast<Viewport&>(Child()); }

    /// The names hit at a place of the window.
    Names HitAt(Types::Pos const& p_pos) {
        Names names;
        for (HitRecord const& hit : Pick(p_pos - Types::Pos(100, 50)))
            for (Ogl::HitRecord const& record : hit.result.records)
                names.push_back(record.name);
        std::ranges::sort(names);
        return names;
    }

    /// An event at a place for which a part of the pane was hit.
    template <class Result>
    Result Send(Result (Viewport::*p_handler)(EventInformation&), std::uint64_t p_name, Types::Pos const& p_inPane = {},
        std::uint32_t p_modifiers = 0) {
        HitResult result;
        result.records.emplace_back(p_name, Ogl::HitRecord::DepthOverlay);
        return PaneFixture::Send(p_handler, {{Core::Ptr<Vis>(&Node()), result, {}, {}, {}}}, p_inPane,
            EventInformation::ButtonMaskPrimary, p_modifiers);
    }

    int redraws = 0;
};

TEST_F(ViewportTest, whatIsBelowHasThePanesViewportIdentityBackgroundAndNoLightsFromOutside) {
    struct Hooks : VisHooks {
        using VisHooks::Setup;
        using VisHooks::Teardown;
    };
    pane->SetBackgroundColor(Qt::red);
    Update();
    DrawContext const window = WindowContext();
    DrawContext context(window, DrawContext::DrawInfo{Mode::Draw, true});
    context.SetPerViewportOffset({7, -9});
    context.LightCount().Set(2);
    context.Lights().Set({Core::WeakPtr<Model::Light>()});
    agl.Enable(Ogl::Tokens::AGL_LIGHT0 + 1);
    context.CreateCheckPoint();
    Utility::Scoped<Ogl::Agl> scope(handle);
    Hooks::Setup(Node(), context, scope);
    EXPECT_EQ(context.Viewport().Top(), Types::Viewport<0>(107, 41, 200, 150));
    EXPECT_EQ(agl.LayerId(), Node().Id());
    EXPECT_EQ(context.Schema().Top().clearColor, QColor(Qt::red));
    EXPECT_FALSE(agl.IsEnabled(Ogl::Tokens::AGL_LIGHT0 + 1));
    EXPECT_EQ(context.LightCount().Top() + context.Lights().Top().size(), 0U);
    Hooks::Teardown(Node(), context, scope);
    context.RestoreCheckPoint();
    EXPECT_EQ(agl.LayerId(), 0U);
}

TEST_F(ViewportTest, decorationIsHitPartByPart) {
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
        EXPECT_EQ(HitAt(pos), names) << pos;
    EXPECT_EQ(HitAt({99, 120}), Names());
    pane->SetMovable(false);
    pane->SetBackgroundPickable(false);
    EXPECT_EQ(HitAt({101, 198}), Names{2});
    pane->SetResizable(false);
    EXPECT_EQ(HitAt({101, 198}), Names());
    pane->SetButtonsShown(false);
    Update();
    EXPECT_FALSE(Node().IsHandled(HandledHit) || Node().IsHandled(HandledHitOverlay));
    scene->Clear();
    pane.Reset();
    EXPECT_EQ(HitAt({150, 60}), Names()) << "its pane is gone";
}

/// In a process of its own, as installed fonts are looked up once.
TEST_F(ViewportTest, withoutFontsThePaneIsInvalidUntilItIsTouchedAndThenShowsItsScene) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const run = [this] {
        std::string const file = ::testing::TempDir() + "qor-no-fonts.conf";
        std::ofstream(file) << "<?xml version=\"1.0\"?><fontconfig></fontconfig>";
        setenv("FONTCONFIG_FILE", file.c_str(), 1);
        pane->SetTitlePinned(true);
        pane->SetTitle(L"title");
        capabilities.animations = false;
        Update();
        bool const isInvalid = !Node().IsValid() && DrawLayer(LayerBase).empty();
        Node().Touch();
        Update();
        bool const isShown = Node().IsValid() && !DrawLayer(LayerBase).empty() && DecorationDraws() > 0;
        std::exit(isInvalid && isShown ? 0 : 1);
    };
    EXPECT_EXIT(run(), ::testing::ExitedWithCode(0), "");
}

TEST_F(ViewportTest, titleBarSlidesInUnderThePointerAndOut) {
    qordebug::manualclock clock;
    pane->SetMovable(true);
    Update();
    DrawLayer(LayerBase);
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

    redraws = 0;
    Send(&Viewport::OnMouseOut, 0);
    EXPECT_EQ(look(), Look(129, true));
    EXPECT_EQ(look(150), Look(139, true));
    EXPECT_EQ(look(150), Look(150, false));
    Send(&Viewport::OnMouseOut, 0);
    EXPECT_EQ(redraws, 1) << "it has left already";

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

TEST_F(ViewportTest, theRubberBandIsDrawnAndCutAtThePane) {
    constexpr std::uint32_t control = EventInformation::ModifierControl;
    pane->SetBackgroundPickable(true);
    Update();
    DrawLayer(LayerBase);
    for (bool const isUpward : {true, false}) {
        Send(&Viewport::OnDragBegin, 0, {50, 50}, control);
        EXPECT_EQ(DecorationDraws(), 0U);
        Send(&Viewport::OnDrag, 0, {-10, isUpward ? 80 : 20}, control);
        EXPECT_EQ(DecorationDraws(), isUpward ? 2U : 1U) << "stripes are a draw of their own";
        EXPECT_EQ(LowestCorner(), std::pair(-1.0F, isUpward ? 49.0F : 19.0F));
        Send(&Viewport::OnDragEnd, 0, {-10, 80}, control);
        EXPECT_EQ(DecorationDraws(), 0U);
    }
}

TEST_F(ViewportTest, toolbarSwitchesTheProjectionAndFollowsIt) {
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
