#include "host/InputDispatcher.h"

#include "tests/host/Actors.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Logger.h"
#include "host/FrameDriver.h"
#include "render/pick/BoxSelection.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace Qor::Chart::Host {
namespace {

using Render::EventInformation;

Types::Viewport<0> const Window(0, 0, 200, 100);
/// A root R around A (near, x 10 to 50), B (far, x 30 to 110) and C (x 120 to 160), all from y 0 to 40.
struct InputDispatcherTest : testing::Test {
    InputDispatcherTest() {
        RegisterActors(scene);
        auto& callbacks = input.Callbacks();
        callbacks.click = [this](InputEvent const&, InputCallbacks::Hits const& p_hits, bool p_isTaken) {
            script.Note("click:" + std::to_string(p_hits.size()) + (p_isTaken ? "taken" : ""));
        };
        callbacks.doubleClick = [this](auto const&, auto const&, bool) { script.Note("double"); };
        callbacks.drag = [this](InputEvent const& p_event, InputCallbacks::DragPhase p_phase) {
            script.Note(std::array{"begin", "drag", "end", "cancel"}[static_cast<std::size_t>(p_phase)] +
                std::to_string(p_event.position.x));
        };
        callbacks.scroll = [this](InputEvent const&) { script.Note("scroll"); };
        callbacks.keyPress = [this](InputEvent const& p_event) { script.Note("key" + std::to_string(p_event.key)); };
        callbacks.selectBox = [this](Render::BoxSelection const&, bool) { script.Note("box"); };
    }

    /// Makes the nodes: "A:over!,out" connects two events, of which the node consumes the first.
    void Cast(std::string const& p_nodes) {
        input.PointerCancelled();
        input.PointerLeft();
        clock.advance(10'000);
        scene.Capabilities().interaction = true;
        script = Script();
        for (char const* const name : {"R", "A", "B", "C"})
            actors[name] = Core::MakeNode<Actor>();
        for (auto const& [name, actor] : actors) {
            actor->SetName(name);
            actor->script = &script;
        }
        actors["A"]->rectangle = {10, 0, 40, 40};
        actors["B"]->rectangle = {30, 0, 80, 40};
        actors["B"]->depth = 0.5;
        actors["C"]->rectangle = {120, 0, 40, 40};
        std::istringstream nodes(p_nodes);
        for (std::string node; nodes >> node;) {
            std::istringstream events(node.substr(2));
            std::string const name = node.substr(0, 1);
            for (std::string event; std::getline(events, event, ',');) {
                if (event.back() == '!') {
                    event.pop_back();
                    script.consumed.insert(name + "." + event);
                }
                actors[name]->events.insert(event);
            }
        }
        for (char const* const name : {"A", "B", "C"})
            actors["R"]->Add(actors[name]);
        scene.SetModel(actors["R"]);
        driver.Frame(camera, Window);
        input.SetView(camera, Window);
    }

    /// Plays steps such as "move 20 20, press, move 30 20, release".
    void Play(std::string const& p_steps) {
        std::istringstream steps(p_steps);
        for (std::string step; std::getline(steps, step, ',');) {
            std::istringstream words(step);
            std::string what;
            words >> what;
            if (int x = 0, y = 0; words >> x >> y)
                at = {x, y};
            Do(what);
        }
    }
    void Do(std::string const& p_what) {
        std::map<std::string, std::function<void()>> const steps{
            {"move", [this] { input.PointerMoved(at); }},
            {"press", [this] { input.PointerPressed(at); }},
            {"release", [this] { input.PointerReleased(at); }},
            {"press2", [this] { input.PointerPressed(at, 1); }},
            {"release2", [this] { input.PointerReleased(at, 1); }},
            {"tap", [this] { input.Tapped(at); }},
            {"wheel", [this] { input.Scrolled(at, 1); }},
            {"O", [this] { input.KeyPressed('O'); }},
            {"upO", [this] { input.KeyReleased('O'); }},
            {"escape", [this] { input.KeyPressed(EventInformation::KeyEscape); }},
            {"out", [this] { input.PointerLeft(); }},
            {"cancel", [this] { input.PointerCancelled(); }},
            {"capture", [this] { input.CaptureLost(); }},
            {"focus", [this] { input.FocusLost(); }},
            {"carry", [this] { script.Note(input.DragMoved(at, 7) ? "yes" : "no"); }},
            {"drop", [this] { script.Note(input.Dropped(at, 7) ? "yes" : "no"); }},
            {"away", [this] { input.DragLeft(); }},
            {"killA", [this] { actors["R"]->Remove(*actors["A"]); }},
            {"readonly", [this] { scene.Capabilities().interaction = false; }},
            {"late", [this] { clock.advance(600); }},
            {"due", [this] { input.RunDue(); }},
            {"frame",
                [this] {
                    driver.Frame(camera, Window);
                    input.FrameDone();
                }},
        };
        steps.at(p_what)();
    }

    qordebug::manualclock clock;
    Script script;
    std::map<std::string, Core::Ptr<Actor>> actors;
    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    Camera camera;
    InputDispatcher input{scene};
    Types::Pos at;
};

TEST_F(InputDispatcherTest, offersEventsByThePolicy) {
    struct {
        char const* nodes;
        char const* steps;
        char const* calls;
    } const cases[] = {
        // hovering
        {"A:over,out B:over,out R:over,out", "move 35 20, move 90 60", "A.over B.over R.over A.out B.out R.out"},
        {"A:over!,out B:over,out", "move 35 20, move 60 20, out", "A.over A.out B.over B.out"},
        {"A:over!,out B:over,out", "move 60 20, move 35 20", "B.over A.over B.out"},
        {"C:over!,out", "move 125 20, move 135 20, move 145 20", "C.over C.out C.over"},
        {"A:over B:over!,move R:move", "move 35 20, move 36 20", "A.over B.over B.move B.move"},
        {"A:over!,out B:over,out", "move 35 20, killA, frame, frame", "A.over B.over"},
        // clicks
        {"A:click B:click! R:click", "move 35 20, press, release", "A.click B.click click:2taken"},
        {"A:click R:click", "move 20 20, press, move 22 20, release, move 90 60, press, release",
            "A.click R.click click:1 click:0"},
        {"A:click", "press 20 20, press2, release2, release", "A.click click:1"},
        {"A:click B:click", "press 35 20, killA, frame, release", "B.click click:2"},
        {"A:click,double", "tap 20 20, tap, tap", "A.click click:1 A.double A.click double A.click click:1"},
        {"A:click,double!", "tap 20 20, tap, tap, late, tap",
            "A.click click:1 A.double double A.click click:1 A.click click:1"},
        {"A:click B:click,double", "tap 35 20, killA, frame, tap", "A.click B.click click:2 B.click click:1"},
        {"A:click,scroll,over", "readonly, move 20 20, press, release, wheel", "A.over click:1 scroll"},
        // drags
        {"A:over!,out,begin!,drag,end", "move 20 20, press, move 22 20, move 30 20, move 190 20, release",
            "A.over A.begin(20,20) A.drag(30,20) A.drag(190,20) A.end(190,20) A.out"},
        {"A:over!,out,begin!,end", "press 20 20, release 30 20", "A.over A.begin(20,20) A.end(30,20) A.out A.over"},
        {"A:over! B:over,out,begin!,drag", "press 35 20, move 45 20, release",
            "A.over B.over B.begin(35,20) B.drag(45,20) B.out"},
        {"A:begin R:begin!,drag", "press 20 20, move 30 20", "A.begin(20,20) R.begin(20,20) R.drag(30,20)"},
        {"A:begin,click", "press 20 20, move 60 20, move 61 20, release", "A.begin(20,20) begin20 drag60 drag61 end61"},
        {"A:over,out", "press 20 20, move 60 20, escape, move 190 20, release", "A.over begin20 drag60 cancel20 A.out"},
        {"A:begin!,drag,end,key!", "press 20 20, move 60 20, O, escape, move 70 20, release",
            "A.begin(20,20) A.drag(60,20) A.drag(20,20) A.end(20,20)"},
        {"A:begin!,drag,end", "press 20 20, move 60 20, cancel, release",
            "A.begin(20,20) A.drag(60,20) A.drag(20,20) A.end(20,20)"},
        {"A:begin!,drag,end", "press 20 20, move 60 20, out, focus, move 70 20, release",
            "A.begin(20,20) A.drag(60,20) A.end(60,20)"},
        {"A:begin!,end,click", "press 20 20, capture, release, press, move 60 20, capture",
            "A.begin(20,20) A.end(60,20)"},
        {"A:begin!,drag,end B:over", "press 20 20, move 60 20, killA, frame, move 61 20, release",
            "A.begin(20,20) A.drag(60,20) B.over"},
        {"A:", "press -2147483648 20, move 2147483647 20, release", "begin-2147483648 drag2147483647 end2147483647"},
        // the wheel and keys
        {"A:scroll B:scroll! R:scroll", "wheel 35 20, wheel 20 20, wheel 90 60",
            "A.scroll B.scroll A.scroll R.scroll scroll scroll"},
        {"B:key!", "O, move 35 20, O, upO, move 150 90, O", "key79 A.key B.key B.keyup key79"},
        {"B:key!", "move 60 20, O, move 150 90, focus, upO", "B.key B.keyup"},
        // dragging in
        {"A:takes!,dropover,drop! B:takes!,dropover", "carry 90 60, carry 20 20, carry 21 20, carry 60 20, drop 20 20",
            "no A.takes enter A.dropover yes A.takes stay A.dropover yes B.takes leave A.dropover enter B.dropover yes "
            "A.takes leave B.dropover enter A.dropover A.drop yes"},
        {"A:begin!,takes B:takes!,dropover,drop", "press 20 20, move 40 20, release",
            "A.begin(20,20) B.takes enter B.dropover B.drop"},
        {"A:begin!,takes B:takes!,dropover,drop", "press 20 20, move 40 20, escape, release",
            "A.begin(20,20) B.takes enter B.dropover leave B.dropover"},
    };
    for (auto const& test : cases) {
        SCOPED_TRACE(std::string(test.nodes) + " | " + test.steps);
        Cast(test.nodes);
        Play(test.steps);
        EXPECT_EQ(script.calls, test.calls);
    }
}

TEST_F(InputDispatcherTest, looksOnceAMoveAndOnceAFrame) {
    Cast("A:over,click,scroll");
    struct {
        char const* steps;
        unsigned picks;
    } const cases[] = {{"move 20 20, move, press, release, wheel, O", 1}, {"move 21 20", 1}, {"frame", 1},
        {"press, frame, move 22 20, move 60 20, frame", 0}, {"release", 1}, {"out, frame", 0}, {"move 5 5, frame", 2}};
    for (auto const& test : cases) {
        std::uint64_t const before = input.PickCount();
        Play(test.steps);
        EXPECT_EQ(input.PickCount() - before, test.picks) << test.steps;
    }
}

TEST_F(InputDispatcherTest, callsBackAndTimesOut) {
    Cast("A:over,out,click B:click");
    std::vector<int> wakeUps;
    input.Callbacks().wakeUp = [&](int p_milliseconds) { wakeUps.push_back(p_milliseconds); };
    script.actions["A.over"] = [](EventInformation& p_event) { p_event.SetTimeOut(400); };
    for (char const* const name : {"A", "B"})
        script.actions[std::string(name) + ".click"] = [this, name](EventInformation& p_event) {
            p_event.CallLater(500, [this, name] { script.Note(name); });
            p_event.CallLater(450, [this] { script.Note("first"); });
        };
    Play("move 35 20");
    clock.advance(300);
    input.TextComposed(L"a", L"");
    EXPECT_EQ(input.DueIn(), 400) << "text is input, too";
    Play("late, due, frame, move 36 20");
    EXPECT_EQ(script.calls, "A.over A.out A.over") << "a frame is no move";
    Play("press, late, due, escape, release");
    EXPECT_EQ(script.calls, "A.over A.out A.over") << "nobody is left while a button is down";
    Play("press, release, killA, frame, late, due");
    EXPECT_EQ(script.calls, "A.over A.out A.over A.click B.click click:2 first B");
    EXPECT_EQ(input.DueIn(), std::nullopt);
    EXPECT_THAT(wakeUps, testing::ElementsAre(400, 400, 400));
}

TEST_F(InputDispatcherTest, goesOnWhenHandlersAndCallbacksThrow) {
    qordebug::CaptureScope const log(Utility::GetLogger());
    Cast("A:over,click,begin! B:click!");
    for (char const* const call : {"A.over", "A.click", "A.begin"})
        script.actions[call] = [](EventInformation&) { throw std::runtime_error("ouch"); };
    input.Callbacks().click = [](auto const&, auto const&, bool) { throw 7; };
    Play("move 35 20, press, release, late, press, move 60 20, release");
    EXPECT_EQ(script.calls, "A.over A.click B.click A.begin(35,20) begin35 drag60 end60");
    std::vector<Report> const reports = scene.Dispatcher().Reports();
    ASSERT_EQ(reports.size(), 4U);
    EXPECT_THAT(
        reports[0].text, testing::AllOf(testing::HasSubstr("ActorVis"), testing::HasSubstr("OnMouseOver: ouch")));
    EXPECT_THAT(reports[2].text, testing::HasSubstr("callback of the program"));
}

TEST_F(InputDispatcherTest, inputOfHandlersWaitsAndChangesAskForAnUpdate) {
    Cast("A:click B:over,out");
    scene.Dispatcher().TakeUpdateRequest();
    script.actions["A.click"] = [this](EventInformation&) {
        Play("move 60 20, move 70 20, press, move 90 60");
        script.Note("waits");
        actors["R"]->Remove(*actors["A"]);
    };
    Play("press 20 20");
    EXPECT_FALSE(scene.Dispatcher().UpdateRequested());
    Play("release");
    EXPECT_EQ(script.calls, "A.click waits click:1 B.over begin70 drag90");
    EXPECT_TRUE(scene.Dispatcher().UpdateRequested());
    EXPECT_EQ(scene.Dispatcher().RedrawDueIn(), 0);
}

TEST_F(InputDispatcherTest, whatTheProgramIsToldOfHoveringComesInPairsAndBrokenBandsDoNot) {
    Cast("A:over!,out B:over!,out,begin!,end");
    auto const name = [](auto const& p_node) { return p_node.Expired() ? "gone" : p_node.Lock()->Name(); };
    input.Callbacks().hover = [&](Render::SelectRecord const& p_record) {
        script.Note("+" + name(p_record.Selection()));
    };
    input.Callbacks().endHover = [&](auto const& p_node) { script.Note("-" + name(p_node)); };
    for (char const* const who : {"A", "B"}) {
        script.actions[std::string(who) + ".over"] = [](EventInformation& p_event) {
            Core::Ptr<Render::Vis> const vis = p_event.Hit()->node.Lock();
            p_event.Sink().Hover({vis, vis->SourceModel().Lock(), vis->GetPath()});
        };
        script.actions[std::string(who) + ".out"] = [this, who](EventInformation& p_event) {
            p_event.Sink().EndHover(Core::WeakPtr<Model::ModelNode>(actors[who]));
        };
    }
    script.actions["B.end"] = [](EventInformation& p_event) {
        p_event.Sink().SelectBox({{}, Window, false, Render::BoxSelection::Operation::Replace});
    };
    Play("move 60 20, move 35 20, killA");
    actors["A"].Reset();
    Play("frame");
    EXPECT_EQ(script.calls, "B.over +B A.over -B +A B.out B.over -gone +B") << "B is entered over what is gone";
    script.calls.clear();
    Play("press 60 20, move 20 60, escape, release, press 60 20, move 20 60, release");
    EXPECT_THAT(script.calls, testing::EndsWith("B.end(20,60) box B.out -B"));
    EXPECT_EQ(script.calls.find("box"), script.calls.rfind("box"));
    script.calls.clear();
    for (std::uint64_t const part : {1, 1, 2})
        input.Hover({scene.Visual(), actors["C"], part, {}});
    EXPECT_EQ(script.calls, "+C -C +C") << "the same again is nothing new";
}

} // namespace
} // namespace Qor::Chart::Host
