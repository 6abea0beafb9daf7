#include "host/InputDispatcher.h"

#include "framework/model/Events.h"
#include "framework/model/Pane.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/FrameDriver.h"
#include "host/Scene.h"
#include "render/events/EventInformation.h"
#include "render/pick/BoxSelection.h"
#include "render/pick/SelectRecord.h"
#include "render/pick/Selector.h"

#include <gmock/gmock.h>

namespace Qor::Chart::Host {
namespace {

using Types::RelativeLength;

/// A pane of 200 by 150 pixels at (100, 60) inside one at (30, 20), with a symbol in its middle, at (230, 155).
struct InteractionTest : testing::Test {
    InteractionTest() {
        outer->SetViewport(Rectangle(30, 20, 360, 260));
        inner->SetViewport(Rectangle(100, 60, 200, 150));
        inner->SetMovable(true);
        inner->SetResizable(true);
        inner->SetBackgroundPickable(true);
        cube->SetPickable(true);
        inner->Add(cube);
        outer->Add(inner);
        scene.Add(outer);
        driver.Update();
        camera.Look(0, 0);
        camera.Fit({{-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}}, Window);
        input.SetView(camera, Window);
        Frame();
    }
    static Types::Viewport<1> Rectangle(int p_x, int p_y, int p_width, int p_height) {
        return {RelativeLength::Pixels(p_x), RelativeLength::Pixels(p_y), RelativeLength::Pixels(p_width),
            RelativeLength::Pixels(p_height)};
    }
    void Frame() {
        driver.Frame(camera, Window);
        input.FrameDone();
    }
    void Drag(Types::Pos const& p_from, Types::Pos const& p_to, std::uint32_t p_modifiers = 0) {
        input.PointerPressed(p_from, 0, p_modifiers);
        input.PointerMoved(p_to, p_modifiers);
        Frame();
        input.PointerReleased(p_to, 0, p_modifiers);
        Frame();
    }

    inline static Types::Viewport<0> const Window{0, 0, 400, 300};
    Core::Ptr<Model::Pane> outer = Core::MakeNode<Model::Pane>();
    Core::Ptr<Model::Pane> inner = Core::MakeNode<Model::Pane>();
    Core::Ptr<Model::SimpleObject> cube =
        Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    Camera camera;
    InputDispatcher input{scene};
};

TEST_F(InteractionTest, symbolsInPanesAnswerThePointer) {
    std::vector<std::string> told;
    Core::WeakPtr<Model::ModelNode> selected;
    auto const connection =
        cube->Delegate().Connect<Model::Events::PickedArgs>([&](auto const&) { told.emplace_back("picked"); });
    auto& callbacks = input.Callbacks();
    callbacks.hover = [&](Render::SelectRecord const&) { told.emplace_back("hover"); };
    callbacks.endHover = [&](auto const&) { told.emplace_back("end"); };
    callbacks.click = [&](InputEvent const&, InputCallbacks::Hits const& p_hits, bool) {
        for (Render::HitRecord const& hit : p_hits) {
            for (Render::SelectRecord const& record : Render::Selector::RecordsOf(hit))
                selected = record.Selection();
        }
    };
    input.PointerMoved({230, 155});
    Frame();
    EXPECT_GT(driver.Statistics().passes[FrameStatistics::BaseHighlight].drawn, 1U) << "lit without having asked";
    input.PointerPressed({230, 155});
    input.PointerReleased({230, 155});
    for (bool const isPickable : {false, true}) {
        cube->SetPickable(isPickable);
        Frame();
        input.PointerMoved({231, 155});
    }
    inner->Remove(*cube);
    Frame();
    EXPECT_THAT(told, testing::ElementsAre("hover", "picked", "end", "hover", "end"));
    EXPECT_EQ(selected, Core::WeakPtr<Model::ModelNode>(cube));
}

TEST_F(InteractionTest, panesAreMovedResizedAndTakenBackWithThePointer) {
    int moves = 0;
    input.Callbacks().aboutToMove = [&](auto const&) { ++moves; };
    input.PointerMoved({200, 220});
    Drag({200, 220}, {230, 200});
    EXPECT_EQ(inner->GetViewport(), Rectangle(130, 40, 200, 150)) << "by its title bar";
    input.PointerPressed({230, 200});
    input.PointerMoved({100, 100});
    input.KeyPressed(Render::EventInformation::KeyEscape);
    input.PointerReleased({100, 100});
    Frame();
    EXPECT_EQ(inner->GetViewport(), Rectangle(130, 40, 200, 150)) << "Escape takes it back";
    Drag({359, 60}, {349, 70});
    EXPECT_EQ(inner->GetViewport(), Rectangle(130, 50, 189, 140)) << "by a grip";
    EXPECT_EQ(moves, 3);
    EXPECT_FALSE(input.IsDragging());
    Frame();
    EXPECT_FALSE(scene.Dispatcher().UpdateRequested()) << "it comes to rest";

    Types::Viewport<1> const parts(1.0 / 3, 0.2, 0.5, 0.7);
    for (auto const& [place, isOwn] : {std::pair(Types::Pos(200, 270), false), {{151, 73}, true}}) {
        inner->Reset(Model::Pane::ViewportProperty);
        if (isOwn)
            inner->SetViewport(parts);
        Frame();
        input.PointerMoved(place);
        input.PointerPressed(place);
        input.PointerMoved({100, 100});
        EXPECT_NE(inner->GetViewport(), isOwn ? parts : Types::Viewport<1>());
        input.KeyPressed(Render::EventInformation::KeyEscape);
        input.PointerReleased({100, 100});
        Frame();
        EXPECT_EQ(inner->GetViewport(), isOwn ? parts : Types::Viewport<1>()) << "to the last digit";
        EXPECT_EQ(inner->IsSet(Model::Pane::ViewportProperty), isOwn);
    }
}

TEST_F(InteractionTest, bandsSelectKeysSwitchAndWhatNobodyWantsTurnsTheCamera) {
    std::size_t inBox = 0;
    int drags = 0;
    input.Callbacks().selectBox = [&](Render::BoxSelection const& p_box, bool) {
        inBox += Picker(scene).Pick(camera, Window, p_box).size();
    };
    input.Callbacks().drag = [&](InputEvent const&, InputCallbacks::DragPhase) { ++drags; };
    Drag({140, 90}, {320, 200}, Render::EventInformation::ModifierControl);
    EXPECT_EQ(drags, 0);
    EXPECT_GE(inBox, 1U);
    Drag({140, 90}, {320, 200});
    EXPECT_EQ(drags, 3) << "begin, move, end";
    for (auto const& [place, pane] : {std::pair(Types::Pos(140, 90), inner), {Types::Pos(40, 30), outer}}) {
        pane->SetProjectionMode(Model::Pane::ProjectionMode::Orthographic);
        Frame();
        input.PointerMoved(place);
        input.KeyPressed(Render::EventInformation::KeyPerspective, Render::EventInformation::ModifierControl);
        EXPECT_EQ(pane->GetProjectionMode(), Model::Pane::ProjectionMode::Orthographic);
        input.KeyPressed(Render::EventInformation::KeyPerspective);
        EXPECT_EQ(pane->GetProjectionMode(), Model::Pane::ProjectionMode::Perspective);
    }
}

} // namespace
} // namespace Qor::Chart::Host
