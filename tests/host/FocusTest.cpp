#include "host/FocusTracker.h"

#include "framework/model/EventDelegate.h"
#include "framework/model/Events.h"
#include "framework/model/Pane.h"
#include "framework/model/TextBox.h"
#include "framework/ogl/RecorderBackend.h"
#include "host/FrameDriver.h"
#include "host/InputDispatcher.h"
#include "host/Scene.h"
#include "render/events/EventInformation.h"
#include "render/events/TextInputHost.h"
#include "render/nodes/TextBox.h"

#include <gmock/gmock.h>

#include <sstream>

namespace Qor::Chart::Host {
namespace {

using Key = Render::EventInformation::KeyCode;

/// A window of 400 by 300 pixels with a pane in it, and in that from below the fields a and b, a label, and the field
/// c, each 100 by 20 pixels large and 50 above the other.
struct Window : Render::TextInputHost {
    Window() {
        input.SetTextInputHost(this);
        scene.Capabilities().animations = false;
        for (int i = 0; i < 4; ++i) {
            auto const box = Core::MakeNode<Model::TextBox>(
                i == 2 ? L"label" : L"", i == 2 ? Model::TextBox::Mode::Label : Model::TextBox::Mode::Editable);
            box->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Left, 50});
            box->SetYPosition({Types::DefinedAs::Pixels, Types::YEdge::Bottom, 50.0 * i});
            box->SetWidth(100);
            box->SetHeight(20);
            pane->Add(box);
            boxes.push_back(box);
        }
        scene.Add(pane);
        input.Callbacks().keyPress = [this](InputEvent const& p_event) { left += std::to_string(p_event.key) + " "; };
        Frame();
    }
    std::wstring ClipboardText() override { return {}; }
    void SetClipboardText(std::wstring const&) override {}
    void BeginTextInput(Types::Viewport<0> const&) override { isComposing = true; }
    void EndTextInput() override { isComposing = false; }
    void Frame() {
        input.SetView(camera, {0, 0, 400, 300});
        driver.Frame(camera, {0, 0, 400, 300});
        input.FrameDone();
    }
    Render::TextBox* Node(std::size_t p_box) const {
        std::vector<Core::Ptr<Render::Vis>> open{scene.Visual()};
        while (!open.empty()) {
            Core::Ptr<Render::Vis> const node = open.back();
            open.pop_back();
            auto* const box = dynamic_cast<Render::TextBox*>(node.Get());
            if (box && boxes[p_box] && box->SourceModel().Peek() == boxes[p_box].Get())
                return box;
            for (Core::Ptr<Render::Vis> const& child : *node)
                open.push_back(child);
        }
        return nullptr;
    }
    /// Which of the boxes has the focus, a to d; "-" for none.
    std::string Focused() const {
        std::string focused;
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            Render::TextBox const* const node = Node(i);
            if (node && node->Field().Has(Render::Widget::FlagFocus))
                focused += static_cast<char>('a' + i);
        }
        EXPECT_EQ(input.HasFocus(), !focused.empty());
        return focused.empty() ? "-" : focused;
    }
    /// @param p_step  a letter of a box is a click on it, + and - are Tab, else see below
    void Do(std::string const& p_step) {
        auto const click = [&](Types::Pos const& p_place) {
            input.PointerPressed(p_place);
            input.PointerReleased(p_place);
        };
        auto const press = [&](int p_key, std::uint32_t p_modifiers = 0, std::wstring const& p_text = {}) {
            input.KeyPressed(p_key, p_modifiers, p_text);
            input.KeyReleased(p_key, p_modifiers);
        };
        if (p_step == "+" || p_step == "-")
            press(Key::KeyTab, p_step == "-" ? std::uint32_t{Render::EventInformation::ModifierShift} : 0U);
        else if (p_step == "elsewhere")
            click({300, 250});
        else if (p_step == "Escape")
            press(Key::KeyEscape);
        else if (p_step == "type")
            press('O', 0, L"o");
        else if (p_step == "F5")
            press(116);
        else if (p_step == "leave")
            (isHere = false, input.FocusLost());
        else if (p_step == "enter")
            (isHere = true, input.FocusGained());
        else if (p_step == "drag")
            for (int const x : {60, 70, 80})
                x == 60 ? input.PointerPressed({x, 10}) : input.PointerMoved({x, 10});
        else if (p_step == "release")
            input.PointerReleased({80, 10});
        else if (p_step == "hide")
            boxes[0]->SetVisible(false);
        else if (p_step == "hidepane")
            pane->SetVisible(false);
        else if (p_step == "fail")
            Node(0)->SetInvalid();
        else if (p_step == "remove")
            pane->Remove(boxes[0]);
        else
            click({60, 10 + 50 * (p_step[0] - 'a')});
        Frame();
    }

    Scene scene{std::make_unique<Ogl::RecorderBackend>()};
    FrameDriver driver{scene};
    InputDispatcher input{scene};
    Camera camera;
    Core::Ptr<Model::Pane> pane = Core::MakeNode<Model::Pane>();
    std::vector<Core::Ptr<Model::TextBox>> boxes;
    std::string left; ///< the keys that nobody wanted
    bool isHere = true;
    bool isComposing = false;
};

TEST(FocusTest, goesWhereTheUserPointsAndTabsAndEndsWithItsReason) {
    struct Case {
        std::string steps, focused;
        std::string left; ///< keys that reached the program
        std::wstring a; ///< the text of the first box
    };
    for (Case const& test : {
             Case{"", "-", "", L""},
             {"a", "a", "", L""},
             {"a b", "b", "", L""},
             {"a c", "-", "", L""},
             {"a elsewhere", "-", "", L""},
             {"drag", "a", "", L""},
             {"drag release b", "b", "", L""},
             {"+", "a", "", L""},
             {"+ +", "b", "", L""},
             {"+ + +", "d", "", L""},
             {"+ + + +", "-", "9 ", L""},
             {"-", "d", "", L""},
             {"- -", "b", "", L""},
             {"d + +", "a", "9 ", L""},
             {"a Escape", "-", "", L""},
             {"a type Escape", "a", "", L""},
             {"a type Escape Escape", "-", "", L""},
             {"Escape", "-", "27 ", L""},
             {"a type", "a", "", L""},
             {"a type +", "b", "", L"o"},
             {"a type b", "b", "", L"o"},
             {"a F5", "a", "116 ", L""},
             {"a type leave", "a", "", L""},
             {"a leave enter type b", "b", "", L"o"},
             {"a leave b enter", "b", "", L""},
             {"leave a", "a", "", L""},
             {"leave a b enter type c", "-", "", L""},
             {"a type hide", "-", "", L"o"},
             {"b hidepane", "-", "", L""},
             {"a fail", "-", "", L""},
             {"fail +", "b", "", L""},
             {"a remove", "-", "", L""},
             {"b remove", "b", "", L""},
             {"a remove +", "b", "", L""},
         }) {
        Window window;
        window.pane->SetProjectionMode(Model::Pane::ProjectionMode::Perspective);
        std::istringstream steps(test.steps);
        for (std::string step; steps >> step;)
            window.Do(step);
        EXPECT_EQ(window.Focused(), test.focused) << test.steps;
        EXPECT_EQ(window.isComposing, window.isHere && test.focused != "-") << test.steps;
        EXPECT_EQ(window.left, test.left) << test.steps;
        EXPECT_EQ(window.boxes[0]->Text(), test.a) << test.steps;
        EXPECT_EQ(window.pane->GetProjectionMode(), Model::Pane::ProjectionMode::Perspective) << test.steps;
        window.Do("elsewhere");
        window.Do("type");
        EXPECT_EQ(window.pane->GetProjectionMode(),
            window.pane->IsVisible() ? Model::Pane::ProjectionMode::Orthographic
                                     : Model::Pane::ProjectionMode::Perspective)
            << "the key is the pane's again, after " << test.steps;
    }
}

TEST(FocusTest, aClickMeansWhatWasSeenBeforeTheCaretCame) {
    Window window;
    window.boxes[0]->SetText(std::wstring(200, L'm'));
    window.Frame();
    window.Do("a");
    EXPECT_LT(window.Node(0)->Field().Caret(), 5U) << "near the beginning, and not where the caret was";
}

TEST(FocusTest, whatIsTypedReachesTheModelOnceAndListenersMayDoAnything) {
    Window window;
    auto const& pane = window.pane;
    auto const& boxes = window.boxes;
    InputDispatcher& input = window.input;
    std::vector<std::wstring> told;
    Model::EventConnection const connection =
        boxes[0]->Delegate().Connect<Model::Events::TextEditedArgs>([&](Model::Events::TextEditedArgs const& p_event) {
            told.push_back(p_event.Former() + L">" + p_event.Text());
            pane->Remove(boxes[0]);
        });
    boxes[0]->SetText(L"1");
    window.Frame();
    window.Do("+");
    for (int i = 0; i < 3; ++i)
        window.Do("type");
    EXPECT_TRUE(input.KeyOffered('C', Render::EventInformation::ModifierControl));
    EXPECT_FALSE(input.KeyOffered('S', Render::EventInformation::ModifierControl)) << "a shortcut of the program's";
    std::uint64_t const picks = input.PickCount();
    input.TextComposed(L"\u4F60", L"h");
    EXPECT_EQ(input.PickCount(), picks);
    EXPECT_EQ(boxes[0]->Text(), L"1");
    boxes[0]->SetWidth(120);
    window.Frame();
    window.Do("b");
    EXPECT_EQ(boxes[0]->Text(), L"ooo\u4F60");
    EXPECT_THAT(told, testing::ElementsAre(L"1>ooo\u4F60"));
    EXPECT_EQ(window.Focused(), "b");
    window.Do("type");
    boxes[1]->SetText(L"another");
    window.Frame();
    window.Do("elsewhere");
    EXPECT_EQ(boxes[1]->Text(), L"another");
    EXPECT_TRUE(window.scene.Dispatcher().Reports().empty());
}

} // namespace
} // namespace Qor::Chart::Host
