#include "host/InputDispatcher.h"

#include "tests/host/Actors.h"
#include "framework/model/Group.h"
#include "tests/render/support/Models.h"
#include "framework/model/SelectionList.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/qordebug/highrestimer.h"
#include "host/FrameDriver.h"
#include "render/pick/BoxSelection.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Qor::Chart::Host {
namespace {

Types::Viewport<0> const Window(0, 0, 400, 100);

/// Things that can be selected, but for one named X that takes clicks. On the left a pane with A, B behind its right half, C and the button X; on the right one with D and a list of its
/// own.
struct SelectionInputTest : testing::Test {
    void Make() {
        input.PointerCancelled();
        input.PointerLeft();
        clock.advance(10'000);
        scene.Capabilities().interaction = true;
        calls.clear();
        tiles.clear();
        outer = Core::MakeNode<Model::SelectionList>();
        inner = Core::MakeNode<Model::SelectionList>();
        auto const left = MakePane(0);
        auto const right = MakePane(200);
        for (auto const& [name, x, depth] :
            {std::tuple("A", 10, 0.1), {"B", 30, 0.2}, {"C", 120, 0.3}, {"X", 165, 0.1}, {"D", 20, 0.1}}) {
            auto const tile = tiles[name] = Core::MakeNode<Actor>();
            tile->SetName(name);
            tile->script = &script;
            tile->events = {"click"};
            tile->rectangle = {static_cast<float>(x), 10, 30, 30};
            tile->depth = depth;
            tile->isSelectable = *name != 'X';
            (*name == 'D' ? right : left)->Add(tile);
        }
        right->Add(inner);
        auto const root = Core::MakeNode<Model::Group>();
        for (Core::Ptr<Model::ModelNode> const& node :
            {Core::Ptr<Model::ModelNode>(left), Core::Ptr<Model::ModelNode>(right), Core::Ptr<Model::ModelNode>(outer)})
            root->Add(node);
        scene.SetModel(root);
        Frame();
    }
    static Core::Ptr<Model::Pane> MakePane(int p_x) {
        auto pane = Core::MakeNode<Model::Pane>();
        pane->SetViewport(Render::Fixtures::PixelViewport(p_x, 0, 200, 100));
        pane->SetBackgroundPickable(true);
        return pane;
    }
    void Frame() {
        driver.Frame(camera, Window);
        input.SetView(camera, Window);
        input.FrameDone();
    }

    /// Plays steps such as "click 20 20 cs", with the keys Ctrl, Shift and Alt.
    void Play(std::string const& p_steps) {
        std::istringstream steps(p_steps);
        for (std::string step; std::getline(steps, step, ',');) {
            std::istringstream words(step);
            std::string what;
            std::string keys;
            Types::Pos at;
            Types::Pos to;
            words >> what;
            if (what == "wait")
                words >> at.x;
            else
                words >> at.x >> at.y;
            if (what == "band" || what == "break")
                words >> to.x >> to.y;
            words.clear();
            words >> keys;
            std::uint32_t modifiers = 0;
            for (char const key : keys)
                modifiers |= key == 'a' ? 1U : key == 'c' ? 2U : 4U;
            Do(what, at, to, modifiers);
            Frame();
        }
    }
    void Do(std::string const& p_what, Types::Pos const& p_at, Types::Pos const& p_to, std::uint32_t p_modifiers) {
        if (p_what == "wait") {
            clock.advance(static_cast<std::uint64_t>(p_at.x));
            input.RunDue();
        } else if (p_what == "off") {
            (p_at.x < 200 ? outer : inner)->SetEnabled(false);
        } else if (p_what == "readonly") {
            scene.Capabilities().interaction = false;
        } else if (p_what == "escape") {
            input.KeyPressed(Render::EventInformation::KeyEscape);
        } else {
            input.PointerMoved(p_at, p_modifiers);
            if (p_what == "move")
                return;
            input.PointerPressed(p_at, 0, p_modifiers);
            if (p_what != "click")
                input.PointerMoved(p_to, p_modifiers);
            if (p_what == "break")
                input.KeyPressed(Render::EventInformation::KeyEscape);
            input.PointerReleased(p_what == "click" ? p_at : p_to, 0, p_modifiers);
        }
    }
    static std::string TextOf(Model::SelectionList const& p_list) {
        std::string text;
        for (Model::SelectionEntry const& entry : p_list.Selected())
            text += entry.node.Lock()->Name();
        return text;
    }

    qordebug::manualclock clock;
    Script script;
    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    Camera camera;
    InputDispatcher input{scene};
    std::map<std::string, Core::Ptr<Actor>> tiles;
    Core::Ptr<Model::SelectionList> outer;
    Core::Ptr<Model::SelectionList> inner;
    std::string calls;
};

TEST_F(SelectionInputTest, clicksBoxesAndKeysSelectByThePolicy) {
    RegisterActors(scene);
    script.consumed = {"X.click"};
    auto& callbacks = input.Callbacks();
    callbacks.click = [&](auto const&, auto const&, bool p_isTaken) { calls += p_isTaken ? "C" : "c"; };
    callbacks.doubleClick = [&](auto const&, auto const&, bool p_isTaken) { calls += p_isTaken ? "D" : "d"; };
    callbacks.selectBox = [&](auto const&, bool p_isTaken) { calls += p_isTaken ? "B" : "b"; };
    callbacks.keyPress = [&](auto const&) { calls += "k"; };
    struct {
        char const* steps;
        char const* selected; ///< in the list around all, and in that of the right pane
        char const* calls; ///< capital where the list or a node has taken it
    } const cases[] = {
        {"click 35 20", "A|", "C"},
        {"click 55 20, click 35 20 s, click 125 20 c", "BAC|", "CCC"},
        {"click 35 20 c, wait 600, click 35 20 c", "|", "CC"},
        {"click 35 20 c, click 35 20 c", "A|", "CD"}, // a double click is one
        {"click 125 20, click 90 80", "|", "CC"},
        {"click 90 80", "|", "c"},
        {"click 125 20, click 90 80 s, click 170 20", "C|", "CcC"}, // the button keeps its click
        {"click 35 20, click 230 30, click 300 80, click 230 30", "A|D", "CCCC"},
        // the things behind
        {"click 35 20, click 35 20 a", "B|", "CD"},
        {"click 35 20, click 35 20 a, click 35 20 a", "A|", "CDC"},
        {"click 35 20 a, click 37 21 a, click 36 19 as", "BA|", "CDC"},
        {"click 35 20, wait 1900, escape, wait 1900, click 35 20 a", "B|", "CC"}, // any input holds the row up
        {"click 35 20, wait 2100, click 35 20 a", "A|", "CC"},
        {"click 35 20, move 60 20, click 35 20 a", "A|", "CD"},
        {"click 35 20 c, click 35 20 ac", "AB|", "CD"},
        // rubber bands
        {"click 125 20, band 5 5 100 60 c", "AB|", "CB"},
        {"click 125 20, band 5 5 100 60 cs", "CAB|", "CB"},
        {"click 35 20, band 70 60 100 90 c", "|", "CB"},
        {"click 35 20, break 5 5 160 60 c", "A|", "C"},
        {"click 35 20, band 210 5 260 60 c", "A|D", "CB"},
        // keys
        {"click 35 20, escape, escape", "|", "Ck"},
        // lists that do nothing
        {"off 0 0, click 35 20, band 5 5 100 60 c, escape", "|", "cbk"},
        {"off 300 0, click 230 30, band 5 5 160 60 cs", "DABC|", "CB"},
        {"readonly, click 35 20", "|", "c"},
    };
    for (auto const& c : cases) {
        Make();
        Play(c.steps);
        EXPECT_EQ(TextOf(*outer) + "|" + TextOf(*inner), c.selected) << c.steps;
        EXPECT_EQ(calls, c.calls) << c.steps;
        for (auto const& [name, tile] : tiles) {
            Model::SelectionList const& list = name == "D" && inner->IsEnabled() ? *inner : *outer;
            EXPECT_EQ(tile->isSelected, list.IsSelected(tile)) << c.steps << ": " << name;
        }
    }
}

} // namespace
} // namespace Qor::Chart::Host
