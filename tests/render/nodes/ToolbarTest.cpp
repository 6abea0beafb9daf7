#include "render/nodes/Toolbar.h"

#include "tests/render/nodes/PaneFixture.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Render {
namespace {

using Mode = DrawContext::DrawMode;
using Rectangle = Types::Viewport<0>;
using ::testing::ElementsAre;
using Types::XPosition;
using Types::YPosition;
using enum Types::DefinedAs;
using enum Types::XEdge;
using enum Types::YEdge;
using Places = std::vector<Rectangle>;

TEST(ToolbarLayoutTest, partsStandInARowInsideThePane) {
    // The tip belongs to the last button and is 60 by 20 pixels large.
    auto const check = [](ToolbarLayout::Request const& p_request, Rectangle const& p_bar, Rectangle const& p_handle,
                           Places const& p_buttons, Rectangle const& p_tip) {
        ToolbarLayout const layout(p_request);
        EXPECT_EQ(layout.bar, p_bar);
        EXPECT_EQ(layout.handle, p_handle);
        EXPECT_EQ(layout.buttons, p_buttons);
        EXPECT_EQ(layout.TipPlace(p_request.pane, p_buttons.size() - 1, {60, 20}), p_tip);
        Types::Pos const last = p_buttons.back().Origin();
        EXPECT_EQ(layout.ButtonAt(last), p_buttons.size() - 1);
        EXPECT_EQ(layout.ButtonAt(last - Types::Pos(1, 0)), std::nullopt) << "a gap";
        XPosition const x = ToolbarLayout::Following(p_request.x, 77, p_bar.width, 400);
        YPosition const y = ToolbarLayout::Following(p_request.y, 55, p_bar.height, 300);
        EXPECT_NEAR(x.Resolve(0, 400, p_bar.width), 77, 1e-4);
        EXPECT_NEAR(y.Resolve(0, 300, p_bar.height), 55, 1e-4);
    };
    check({{400, 300}, {Pixels, Right, 0}, {Pixels, Top, 20}, false, false, 16, 1, {9, 16}}, {362, 260, 38, 20}, {},
        {{364, 262, 16, 16}, {382, 262, 16, 16}}, {340, 238, 60, 20});
    check({{400, 300}, {Pixels, Right, 5}, {Pixels, Top, 7}, true, true, 16, 1, {16, 40}}, {351, 247, 44, 46},
        {353, 285, 40, 6}, {{353, 267, 40, 16}, {353, 249, 40, 16}}, {289, 245, 60, 20});
    check({{400, 300}, {Pixels, Left, 390}, {Pixels, Bottom, -50}, false, false, 32, 2, {32}}, {360, 0, 40, 40}, {},
        {{364, 4, 32, 32}}, {340, 44, 60, 20});
    check({{30, 10}, {Fraction, Right, 0.5}, {Pixels, Bottom, 3}, false, false, 16, 1, {16, 16}}, {0, -10, 38, 20}, {},
        {{2, -8, 16, 16}, {20, -8, 16, 16}}, {0, -10, 60, 20});
}

/// A pane with a bar of 64 by 20 at (10, 20) of it: a handle and three square buttons.
struct ToolbarTest : ::testing::Test, Fixtures::PaneFixture {
    ToolbarTest() {
        bar->SetXPosition({Pixels, Left, 10});
        bar->SetYPosition({Pixels, Bottom, 20});
        for (std::size_t i = 0; i < 3; ++i) {
            actions.push_back(Core::MakeNode<Model::Action>("a", L"A"));
            actions[i]->SetImageFile("Ortho");
            actions[i]->SetExecute([this, i] { done.push_back(i); });
            bar->Add(actions[i]);
        }
        pane->Add(bar);
        Update();
    }

    /// How many rectangles, images and lines of the overlay are drawn.
    std::size_t Drawn() {
        std::size_t vertices = 0;
        Update();
        for (Mode const mode : {Mode::Draw, Mode::Highlight}) {
            for (Ogl::RecordedCommand const& command : DrawLayer(LayerOverlay, mode))
                vertices += command.vertices.size();
        }
        return vertices - frame;
    }
    void Drag(Types::Pos const& p_from, Types::Pos const& p_to, std::uint32_t p_buttonsAtEnd = 0) {
        auto const hits = Pick(p_from);
        EXPECT_EQ(Send(&Toolbar::OnDragBegin, hits, p_from), Event::Consumed);
        Send(&Toolbar::OnDrag, hits, p_to);
        Send(&Toolbar::OnDragEnd, hits, p_to, p_buttonsAtEnd);
    }

    void AboutToMove(Core::WeakPtr<Model::ModelNode> const&) override { ++moves; }

    static constexpr Types::Pos Handle{13, 30}, Gap{19, 30}, First{28, 30}, Second{46, 30}, Third{64, 30};
    Core::Ptr<Model::Toolbar> bar = Core::MakeNode<Model::Toolbar>();
    std::vector<Core::Ptr<Model::Action>> actions;
    std::vector<std::size_t> done;
    std::size_t frame = 0; ///< what the pane itself draws
    int moves = 0;
};

TEST_F(ToolbarTest, aClickExecutesTheActionThatWasHitAlone) {
    actions[1]->SetEnabled(false);
    for (Types::Pos const& place : {Third, First, Second, Gap, Handle})
        Send(&Toolbar::OnClick, Pick(place));
    EXPECT_THAT(done, ElementsAre(2, 0)) << "not the disabled one";
    auto const third = Pick(Third), first = Pick(First);
    bar->Remove(*actions[0]);
    Update();
    Send(&Toolbar::OnClick, third);
    Send(&Toolbar::OnClick, first);
    EXPECT_THAT(done, ElementsAre(2, 0, 2)) << "what has left the bar does nothing, and nothing else takes its place";

    bar->Add(actions[0]);
    Update();
    Drag(Third, {66, 32}, EventInformation::ButtonMaskPrimary);
    Drag(Third, Second);
    EXPECT_EQ(done.size(), 3U) << "one was broken off, one let go elsewhere";
    Drag(Third, {66, 32});
    EXPECT_THAT(done, ElementsAre(2, 0, 2, 0)) << "a click with an unsteady hand";
}

TEST_F(ToolbarTest, draggingTheBarWritesItsPositionInItsOwnTerms) {
    Drag(Handle, {33, 45});
    EXPECT_EQ(bar->GetXPosition(), XPosition(Pixels, Left, 30));
    EXPECT_EQ(bar->GetYPosition(), YPosition(Pixels, Bottom, 35));
    bar->SetXPosition({Fraction, Right, 0.625});
    bar->SetYPosition({Pixels, Top, 110});
    Drag(Gap, {-500, 900});
    EXPECT_EQ(bar->GetXPosition(), XPosition(Fraction, Right, 0.68)) << "not out of the pane";
    EXPECT_EQ(bar->GetYPosition(), YPosition(Pixels, Top, 0));
    bar->SetXPosition({Fraction, Left, 0.0512});
    Drag({15, 140}, {15, 140});
    EXPECT_EQ(bar->GetXPosition(), XPosition(Fraction, Left, 0.0512)) << "nothing is lost to rounding";
    EXPECT_EQ(moves, 3);
}

TEST_F(ToolbarTest, whatIsDrawnFollowsPointerAndModel) {
    bar->SetVisible(false);
    frame = Drawn();
    EXPECT_EQ(Pick(First).size(), 0U);
    bar->SetVisible(true);
    std::size_t const idle = Drawn();
    EXPECT_GT(idle, 0U);

    Send(&Toolbar::OnMouseOver, Pick(Second));
    std::size_t const hovered = Drawn();
    EXPECT_GT(hovered, idle);
    auto const early = event->LaterCalls().back().call;
    Send(&Toolbar::OnMouseOut, {});
    Send(&Toolbar::OnMouseOver, Pick(Third));
    early();
    EXPECT_EQ(Drawn(), hovered) << "the tip of what was left does not come";
    event->LaterCalls().back().call();
    EXPECT_GT(Drawn(), hovered) << "but that of where the pointer rests";
    bar->Remove(*actions[2]);
    EXPECT_LT(Drawn(), idle) << "there is nothing under the pointer now";
    bar->Add(actions[2]);
    Send(&Toolbar::OnMouseOut, {});
    EXPECT_EQ(Drawn(), idle);

    actions[0]->SetChecked(true);
    EXPECT_GT(Drawn(), idle);
    actions[0]->SetImageFile("/no/such/image.png");
    Update();
    actions[0]->SetToolTip(L"Tip");
    Update();
    EXPECT_EQ(dispatcher.warnings.size(), 1U);
}

} // namespace
} // namespace Qor::Chart::Render
