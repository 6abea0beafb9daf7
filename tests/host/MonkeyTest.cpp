// A monkey at pointer, keyboard and window frame, while a program keeps changing the model. What it leaves behind is
// compared with a visual tree that knows nothing of all that.

#include "host/InputDispatcher.h"

#include "host/CameraNode.h"
#include "host/FrameDriver.h"
#include "host/PaneFinder.h"
#include "host/Scene.h"
#include "tests/host/HostileValues.h"
#include "render/nodes/PaneLayout.h"
#include "render/nodes/TextBox.h"
#include "render/nodes/Toolbar.h"
#include "render/events/EventInformation.h"
#include "render/events/TextInputHost.h"
#include "framework/model/ColorPicker.h"
#include "framework/model/EventDelegate.h"
#include "framework/model/Events.h"
#include "framework/model/Group.h"
#include "framework/model/ImageButton.h"
#include "framework/model/Legend.h"
#include "framework/model/NodeTypes.h"
#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SelectionList.h"
#include "framework/model/SimpleObject.h"
#include "framework/model/Statistics.h"
#include "framework/model/TextBox.h"
#include "framework/ogl/RecorderBackend.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Logger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace Qor::Chart::Host {
namespace {

using Rectangle = Types::Viewport<0>;
using Render::PaneLayout;
using Nodes = std::vector<Core::Ptr<Model::ModelNode>>;
using Factory = Core::Ptr<Model::ModelNode> (*)();

constexpr char const* Planted = "planted";

void Collect(Core::Ptr<Model::ModelNode> const& p_node, Nodes& p_nodes) {
    p_nodes.push_back(p_node);
    for (Core::Ptr<Model::ModelNode> const& child : *p_node)
        Collect(child, p_nodes);
}

/// Opens no windows, but keeps what would be in them.
struct Windows : Render::PopOutHost {
    void PopOut(
        Factory const& p_factory, Types::Size const&, Restore const& p_restore, Content const& p_content) override {
        open.emplace_back(p_factory(p_content), p_restore);
    }
    std::vector<std::pair<Core::Ptr<Model::ModelNode>, Restore>> open;
};

/// The clipboard of a computer, and an input method that knows whether it is wanted.
struct Clipboard : Render::TextInputHost {
    std::wstring ClipboardText() override { return text; }
    void SetClipboardText(std::wstring const& p_text) override { text = p_text; }
    void BeginTextInput(Rectangle const&) override { isComposing = true; }
    void EndTextInput() override { isComposing = false; }
    std::wstring text = L"clip\nboard \x05e9\xd800";
    bool isComposing = false;
};

/// What a listener was told, to be compared with what is.
struct Told {
    Core::WeakPtr<Model::ModelNode> node;
    Model::SelectionList::Entries selected;
    int hovers = 0;
    bool mayMissEnd = false;
    std::vector<Model::EventConnection> connections;
};

/// A scene as a window shows it.
struct Shown {
    explicit Shown(Core::Ptr<Model::ModelNode> const& p_model) { scene.SetModel(p_model); }
    void Frame(Camera const& p_camera, Rectangle const& p_window) {
        for (int updates = 0; updates == 0 || (updates < 10 && scene.Dispatcher().UpdateRequested()); ++updates)
            driver.Update();
        driver.Draw(p_camera, p_window);
    }

    Scene scene{std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters)};
    FrameDriver driver{scene};
};

class Monkey {
public:
    explicit Monkey(unsigned p_seed) : _random(p_seed) {
        _input.SetPopOutHost(&_windows);
        _input.SetTextInputHost(&_clipboard);
        _input.Callbacks().click = [this](auto const&, auto const&, bool) { Interfere(); };
        _input.Callbacks().selectBox = [this](auto const&, bool) { Interfere(); };
        _input.Callbacks().aboutToMove = [this](Core::WeakPtr<Model::ModelNode> const& p_node) {
            _dragged = Core::DynamicCast<Model::Pane>(p_node.Lock());
            _before = _dragged ? _dragged->GetViewport() : Types::Viewport<1>();
            for (PaneView const& view : PaneFinder::All(_shown.scene.Visual(), _window)) {
                if (view.pane.Lock()->SourceModel() == p_node)
                    _dragger = view.pane;
            }
        };
        for (int i = 0; i < 12; ++i)
            Edit();
        _camera.Look(30, 20);
        Frame();
    }

    void Step() {
        static constexpr std::pair<int, void (Monkey::*)()> steps[] = {{40, &Monkey::Point}, {14, &Monkey::Press},
            {14, &Monkey::Release}, {12, &Monkey::Edit}, {10, &Monkey::Frame}, {8, &Monkey::Key}, {8, &Monkey::Type},
            {4, &Monkey::Carry}, {3, &Monkey::Wait}, {5, &Monkey::Interrupt}, {2, &Monkey::Resize},
            {1, &Monkey::CloseWindow}};
        int sum = 0;
        for (auto const& step : steps)
            sum += step.first;
        int turn = Whole(sum);
        for (auto const& [weight, step] : steps) {
            if (turn >= 0 && turn < weight)
                (this->*step)();
            turn -= weight;
        }
        CheckModel();
    }
    /// The program alone.
    void StepOfProgram() {
        for (int count = 1 + Whole(4); count > 0; --count)
            Edit();
        Frame();
        CheckModel();
    }

    /// Lets go of everything and compares; gives what is wrong.
    std::string Check() {
        _input.FocusLost();
        _input.PointerLeft();
        for (int i = 0; i < 200 && _input.HasFocus(); ++i)
            _input.KeyPressed(Render::EventInformation::KeyTab);
        _input.FocusGained();
        Expect("focus behind the last node", _input.HasFocus(), false);
        Expect("composing", _clipboard.isComposing, false);
        _root->SetEnabled(true); // a legend may have hidden it, and then there is nothing to compare
        for (Core::Ptr<Model::ModelNode> const& node : All()) {
            if (auto const pane = Core::DynamicCast<Model::Pane>(node)) // a bar that was hidden again is still there
                pane->SetToolbarShown(true);
        }
        _clock.advance(1000);
        _input.RunDue();
        Expect("dragging", _input.IsDragging(), false);
        Expect("hits outside the window", _input.Hits().size(), 0U);
        for (Report const& report : _shown.scene.Dispatcher().Reports())
            Expect(report.text.c_str(),
                report.kind == Report::Kind::Warning || report.text.find(Planted) != std::string::npos, true);
        CheckModel();
        for (Told const& told : _told) {
            if (Nodes const nodes = All(); std::find(nodes.begin(), nodes.end(), told.node.Lock()) != nodes.end())
                Expect("entries hovered", told.mayMissEnd ? 0 : told.hovers, 0);
        }
        RenewWhatRemembers();
        _isComparing = true;
        Shown fresh(_root);
        for (Shown* const shown : {&_shown, &fresh})
            shown->Frame(_camera, _window);
        Compare(*_shown.scene.Visual(), *fresh.scene.Visual());
        for (Shown* const shown : {&_shown, &fresh}) {
            shown->scene.Capabilities().animations = false;
            shown->driver.Draw(_camera, _window);
            shown->scene.Capabilities().animations = true;
        }
        // not the draws: which texts share one depends on when their glyphs came into the atlas
        Expect("primitives", _shown.driver.Statistics().graphics.primitives,
            fresh.driver.Statistics().graphics.primitives);
        for (int i = 0; i < 30; ++i) {
            Types::Pos const place = Somewhere();
            std::ostringstream where;
            where << "picked at " << place.x << ", " << place.y;
            Expect(where.str().c_str(), PickAt(_shown.scene, place), PickAt(fresh.scene, place));
        }
        _isComparing = false;
        return _wrong.str();
    }
    bool IsWrong() const { return !_wrong.str().empty(); }

private:
    int Whole(int p_below) { return static_cast<int>(_random() % static_cast<unsigned>(p_below)); }
    bool OneIn(int p_count) { return Whole(p_count) == 0; }
    double Number(double p_low, double p_high) { return p_low + (p_high - p_low) * Whole(1000) / 1000; }
    Nodes All() const {
        Nodes nodes;
        Collect(_root, nodes);
        return nodes;
    }

    // The user.

    /// Mostly on a part of a pane that does something.
    Types::Pos Somewhere() {
        auto const panes = PaneFinder::All(_shown.scene.Visual(), _window);
        int const x = Whole(static_cast<int>(_window.width) + 40) - 20;
        int const y = Whole(static_cast<int>(_window.height) + 40) - 20;
        if (panes.empty() || OneIn(4))
            return {x, y};
        Rectangle const& pane = panes[Whole(static_cast<int>(panes.size()))].rectangle;
        Types::Pos const low = pane.Origin();
        Types::Pos const high = low + Types::Pos(pane.Extent().width - 1, pane.Extent().height - 1);
        Types::Pos const inside =
            low + Types::Pos(x % std::max(pane.Extent().width, 1), y % std::max(pane.Extent().height, 1));
        Types::Pos const places[] = {low, {low.x, high.y}, {high.x, low.y}, high, {inside.x, high.y - 10},
            {high.x - 22, high.y - 9}, {high.x - 43, high.y - 9}, {high.x - 12, high.y - 30}, inside, inside,
            low + Types::Pos(x % 80, y % 30), high - Types::Pos(x % 120, 20 + y % 80)};
        return places[Whole(static_cast<int>(std::size(places)))];
    }
    std::uint32_t Modifiers() { return OneIn(2) ? 0 : static_cast<std::uint32_t>(Whole(8)); }
    std::uint32_t Button() { return OneIn(6) ? 1 : 0; }

    void Point() { _input.PointerMoved(Somewhere(), _modifiers); }
    void Press() {
        _modifiers = Modifiers();
        EndDrag([&] { _input.PointerPressed(Somewhere(), Button(), _modifiers); });
    }
    void Release() {
        EndDrag([&] { _input.PointerReleased(Somewhere(), Button(), _modifiers); });
    }
    void Key() {
        static constexpr int keys[] = {'O', 'P', 'F', Render::EventInformation::KeyEscape};
        int const key = keys[Whole(4)];
        if (key == Render::EventInformation::KeyEscape && BoxWithFocus())
            TakeBack();
        EndDrag([&] { _input.KeyPressed(key, OneIn(4) ? Modifiers() : 0); });
        if (OneIn(2))
            _input.KeyReleased(key);
    }
    /// The Escape key ends composing, then an edit, then the focus; it does nothing while a button is down.
    void TakeBack() {
        Core::WeakPtr<Model::ModelNode> const weak = BoxWithFocus()->SourceModel();
        auto const model = Core::DynamicCast<Model::TextBox>(weak.Lock());
        std::wstring const before = model ? model->Text() : std::wstring();
        for (int i = 0; i < 3 && _input.HasFocus(); ++i)
            EndDrag([&] { _input.KeyPressed(Render::EventInformation::KeyEscape); });
        if (!model || _input.HasFocus())
            return;
        Expect("text of the model after Escape", model->Text() == before, true);
        if (Render::TextBox const* const box = FindBox(*_shown.scene.Visual(), model.Get())) {
            Render::TextWidget field; // which shows blanks for control characters
            field.SetMode(box->Field().GetMode()).SetText(before);
            Expect("text shown after Escape", box->Field().Text() == field.Text(), true);
        }
    }
    /// What a field for text understands, most of it beside the point for whoever has the focus.
    void Type() {
        using Info = Render::EventInformation;
        static constexpr int keys[] = {Info::KeyTab, Info::KeyTab, Info::KeyTab, Info::KeyReturn, Info::KeyBackspace,
            Info::KeyDelete, Info::KeyLeft, Info::KeyRight, Info::KeyUp, Info::KeyDown, Info::KeyHome, Info::KeyEnd,
            Info::KeyPageUp, Info::KeyPageDown, Info::KeySpace, 'A', 'C', 'V', 'X', 'Y', 'Z'};
        static std::wstring const texts[] = {L"", L"a", L"7", L"#80ff00", L"e\x0301", L"\x05e9\x05dc", L"\x6f22",
            std::wstring(1, L'\xd800'), std::wstring(1, L'\0'), L"\t\n", std::wstring(5000, L'W')};
        for (int count = 1 + Whole(6); count > 0; --count) {
            std::wstring const& text = texts[Whole(static_cast<int>(std::size(texts)))];
            int const key = keys[Whole(static_cast<int>(std::size(keys)))];
            EndDrag([&] {
                if (OneIn(5))
                    return _input.TextComposed(OneIn(2) ? text : L"", texts[Whole(8)]);
                if (OneIn(3))
                    return _input.KeyPressed('A', 0, text);
                _input.KeyPressed(key, key >= 'A' ? Info::ModifierControl : OneIn(3) ? Modifiers() : 0);
                return _input.KeyReleased(key);
            });
        }
    }
    void Interrupt() {
        EndDrag([&] {
            switch (Whole(7)) {
            case 5:
                return _input.FocusGained();
            case 0:
                return _input.PointerLeft();
            case 1:
                return _input.PointerCancelled();
            case 2:
                return _input.CaptureLost();
            case 3:
                return _input.FocusLost();
            case 4:
                return _input.Scrolled(Somewhere(), Number(-2, 2), Modifiers());
            default:
                _input.Tapped(Somewhere(), Modifiers());
                return _input.SetTouch(false);
            }
        });
    }
    void Carry() {
        if (OneIn(2))
            _input.DragMoved(Somewhere(), 7);
        else if (OneIn(2))
            _input.Dropped(Somewhere(), 7);
        else
            _input.DragLeft();
    }
    void Wait() {
        _clock.advance(static_cast<std::uint64_t>(Whole(700)));
        _input.RunDue();
    }
    void Resize() {
        _window = Rectangle(0, 0, static_cast<float>(1 + Whole(800)), static_cast<float>(1 + Whole(600)));
        Frame();
    }
    void CloseWindow() {
        if (_windows.open.empty())
            return;
        auto const restore = _windows.open.back().second;
        _windows.open.pop_back();
        if (restore)
            restore();
    }
    void Frame() {
        _input.SetView(_camera, _window);
        _shown.Frame(_camera, _window);
        _input.FrameDone();
        Expect("stacks", _shown.scene.Graphics().Depths() == Ogl::StackDepths(), true);
        if (BoxWithFocus())
            Expect("a box has the focus", _input.HasFocus(), true);
    }

    /// The node that shows a text box and, without one, any that has the focus; null when there is none.
    static Render::TextBox const* FindBox(Render::Vis const& p_node, Model::ModelNode const* p_model) {
        auto const* const box = dynamic_cast<Render::TextBox const*>(&p_node);
        if (box && (p_model ? box->SourceModel().Peek() == p_model : box->Field().Has(Render::Widget::FlagFocus)))
            return box;
        for (auto child = p_node.ActiveBegin(); !(child == p_node.ActiveEnd()); ++child) {
            if (Render::TextBox const* const found = FindBox(**child, p_model))
                return found;
        }
        return nullptr;
    }
    Render::TextBox const* BoxWithFocus() const { return FindBox(*_shown.scene.Visual(), nullptr); }

    /// A pane that was moved or resized is not too small, and lies in its parent as far as it can.
    template <class Input>
    void EndDrag(Input const& p_input) {
        if (_input.IsDragging())
            Frame();
        bool const wasDragging = _input.IsDragging() && !_dragger.Expired();
        int const edits = _edits;
        p_input();
        if (_input.IsDragging())
            return;
        Core::Ptr<Model::Pane> const pane = std::exchange(_dragged, {});
        bool const isUndisturbed = edits == _edits; // what a callback changed came after the drag
        if (wasDragging && pane && isUndisturbed && !(pane->GetViewport() == _before))
            CheckDragged(*_shown.scene.Visual(), _window, *pane);
    }
    void CheckDragged(Render::Vis const& p_node, Rectangle p_place, Model::Pane const& p_dragged) {
        if (auto const pane = Core::DynamicCast<Model::Pane>(p_node.SourceModel().Lock())) {
            Rectangle const placed = PaneLayout::Place(pane->GetViewport(), p_place);
            Rectangle const fitted = PaneLayout::FittedInto(p_place, placed);
            if (pane.Get() == &p_dragged) {
                ExpectSide(placed.x, placed.width, p_place.x, p_place.width, PaneLayout::LeastWidth);
                ExpectSide(placed.y, placed.height, p_place.y, p_place.height, PaneLayout::LeastHeight);
            }
            p_place = pane->IsKeptInsideParent() ? fitted : placed;
            if (p_place.IsEmpty())
                return;
        }
        for (auto child = p_node.ActiveBegin(); !(child == p_node.ActiveEnd()); ++child)
            CheckDragged(**child, p_place, p_dragged);
    }

    /// One that is as long as its parent, or that was made longer to be long enough, may stick out at the far end.
    void ExpectSide(float p_start, float p_length, float p_parent, float p_parentLength, float p_least) {
        Expect("dragged pane begins inside", p_start >= p_parent, true);
        Expect("length of a dragged pane", p_length, std::clamp(p_length, p_least, std::max(p_parentLength, p_least)));
        bool const isInside = p_start + p_length <= p_parent + p_parentLength;
        bool const mayStickOut = p_length >= p_parentLength || p_length == p_least;
        Expect("dragged pane ends inside", isInside || mayStickOut, true);
    }

    // The program.

    void Interfere() {
        if (OneIn(4))
            Edit();
        if (OneIn(8))
            throw std::runtime_error(Planted);
    }
    void Edit() {
        ++_edits;
        Nodes const nodes = All();
        int const count = static_cast<int>(nodes.size());
        Core::Ptr<Model::ModelNode> const node = nodes[Whole(count)];
        int const turn = Whole(12);
        if (count < 10 || (turn < 3 && count < 50))
            AddTo(node);
        else if (node == _root)
            return;
        else if (turn < 3)
            Unlink(node);
        else if (turn == 3)
            node->SetEnabled(!node->IsEnabled());
        else if (turn == 4)
            Carry(node, nodes[Whole(count)]);
        else
            Change(node);
    }
    void AddTo(Core::Ptr<Model::ModelNode> p_parent) {
        if (Core::DynamicCast<Model::Toolbar>(p_parent) || Core::DynamicCast<Model::Action>(p_parent))
            p_parent = _root;
        if (OneIn(2))
            return AddPane(*p_parent);
        if (OneIn(6)) {
            auto const bar = Core::MakeNode<Model::Toolbar>();
            auto const action = Core::MakeNode<Model::Action>("a", L"A");
            action->SetExecute([this] { Interfere(); });
            bar->Add(action);
            p_parent->Add(bar);
            return;
        }
        if (OneIn(4)) {
            p_parent->Add(Core::MakeNode<Model::Group>());
            return;
        }
        if (OneIn(2))
            return AddAny(*p_parent);
        auto const object =
            Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
        Change(object);
        object->SetPickable(true);
        p_parent->Add(object);
    }
    void AddAny(Model::ModelNode& p_parent) {
        static constexpr std::string_view types[] = {"RenderStyle", "Legend", "LegendEntry", "LegendEntry",
            "SelectionList", "Statistics", "Bitmap", "ColorPicker", "ImageButton", "TextBox", "TextBox"};
        auto const node = Model::FindNodeType(types[Whole(static_cast<int>(std::size(types)))])->make();
        Nodes const nodes = All();
        Core::Ptr<Model::ModelNode> const other = nodes[Whole(static_cast<int>(nodes.size()))];
        if (auto const picker = Core::DynamicCast<Model::ColorPicker>(node)) {
            if (auto const object = Core::DynamicCast<Model::SimpleObject>(other))
                picker->SetTarget(object, Model::SimpleObject::ColorProperty);
        } else if (auto const button = Core::DynamicCast<Model::ImageButton>(node)) {
            button->GetAction()->SetExecute([this] { Interfere(); });
        } else if (auto const box = Core::DynamicCast<Model::TextBox>(node)) {
            box->SetEditable(!OneIn(5));
        } else if (auto const legend = Core::DynamicCast<Model::Legend>(node)) {
            for (int i = Whole(30); i > 0; --i)
                legend->Add(Core::MakeNode<Model::LegendEntry>(std::to_wstring(i), nodes[Whole(i) % nodes.size()]));
        }
        Listen(node);
        for (int i = Whole(4); i > 0; --i)
            Change(node);
        p_parent.Add(node);
    }
    void Listen(Core::Ptr<Model::ModelNode> const& p_node) {
        Told& told = _told.emplace_back();
        told.node = p_node;
        auto const listen = [&]<class Event>(Event const*, auto p_note) {
            told.connections.push_back(p_node->Delegate().Connect<Event>([this, p_note](Event const& p_event) {
                p_note(p_event);
                if (!_isComparing && OneIn(30))
                    Edit();
            }));
        };
        namespace Events = Model::Events;
        listen(static_cast<Events::LegendEntryHoveredArgs*>(nullptr), [&told](auto const&) { ++told.hovers; });
        listen(static_cast<Events::LegendEntryHoverEndedArgs*>(nullptr), [&told](auto const&) { --told.hovers; });
        listen(static_cast<Events::TextEditedArgs*>(nullptr), [](auto const&) {});
        listen(static_cast<Events::ColorPickedArgs*>(nullptr), [](auto const&) {});
        listen(
            static_cast<Events::SelectionChangedArgs*>(nullptr), [&told](Events::SelectionChangedArgs const& p_event) {
                for (Model::SelectionEntry const& entry : p_event.Removed())
                    std::erase(told.selected, entry);
                told.selected.insert(told.selected.end(), p_event.Added().begin(), p_event.Added().end());
            });
    }
    void AddPane(Model::ModelNode& p_parent) {
        auto const pane = Core::MakeNode<Model::Pane>();
        for (int i = 0; i < 6; ++i)
            Change(pane);
        pane->SetMovable(true);
        pane->SetResizable(OneIn(2));
        Core::Ptr<Model::ModelNode> child = pane;
        if (OneIn(3)) {
            child = Core::MakeNode<CameraNode>();
            child->Add(pane);
        }
        p_parent.Add(child);
    }
    /// A legend that goes, or moves, does not tell that its entry is no longer hovered.
    void ExcuseHovers() {
        for (Told& told : _told)
            told.mayMissEnd = told.mayMissEnd || told.hovers > 0;
    }
    void Unlink(Core::Ptr<Model::ModelNode> const& p_node) {
        ExcuseHovers();
        for (Model::ModelNode* const parent : p_node->Parents())
            parent->Remove(*p_node);
    }
    void Carry(Core::Ptr<Model::ModelNode> const& p_node, Core::Ptr<Model::ModelNode> const& p_parent) {
        Nodes below;
        Collect(p_node, below);
        ExcuseHovers();
        bool const isBar = Core::DynamicCast<Model::Toolbar>(p_parent) || Core::DynamicCast<Model::Action>(p_parent);
        if (!isBar && std::find(below.begin(), below.end(), p_parent) == below.end())
            p_parent->Adopt(p_node);
    }
    void Change(Core::Ptr<Model::ModelNode> const& p_node) {
        bool const isOn = OneIn(2);
        if (auto const pane = Core::DynamicCast<Model::Pane>(p_node)) {
            static constexpr void (Model::Pane::*flags[])(bool) = {&Model::Pane::SetMovable, &Model::Pane::SetResizable,
                &Model::Pane::SetBackgroundPickable, &Model::Pane::SetButtonsShown, &Model::Pane::SetTitlePinned,
                &Model::Pane::SetKeepInsideParent, &Model::Pane::SetToolbarShown};
            if (OneIn(3) && pane != _dragged)
                pane->SetViewport({Length(-0.1, 0.6), Length(-0.1, 0.6), Length(0, 0.9), Length(0, 0.9)});
            else
                (*pane.*flags[Whole(static_cast<int>(std::size(flags)))])(isOn);
        } else if (auto const object = Core::DynamicCast<Model::SimpleObject>(p_node)) {
            static constexpr void (Model::SimpleObject::*flags[])(bool) = {
                &Model::SimpleObject::SetPickable, &Model::SimpleObject::SetFront, &Model::SimpleObject::SetPulse};
            (*object.*flags[Whole(3)])(isOn);
            object->SetTransform(Types::Matrix4::Translation({Number(-2, 2), Number(-2, 2), Number(-2, 2)}));
        } else if (auto const bar = Core::DynamicCast<Model::Toolbar>(p_node)) {
            bar->SetVertical(isOn);
            bar->SetXPosition({Types::DefinedAs::Pixels, Types::XEdge::Right, Number(0, 200)});
        } else if (auto const list = Core::DynamicCast<Model::SelectionList>(p_node); list && !OneIn(5)) {
            Nodes nodes = All();
            std::shuffle(nodes.begin(), nodes.end(), _random);
            nodes.resize(std::min<std::size_t>(nodes.size(), 6));
            OneIn(2) ? list->Toggle(nodes[0]) : OneIn(2) ? list->Replace(nodes) : list->Deselect(nodes[0]);
        } else if (p_node->Properties().Size() > 1) {
            auto const& properties = p_node->Properties();
            int const count = static_cast<int>(properties.Size()) - 1; // without the one of all nodes
            Model::PropertyInfo const& property = properties[1 + static_cast<std::size_t>(Whole(count))];
            std::vector<std::string> const texts = TextsFor(property);
            if (OneIn(6))
                p_node->Reset(property);
            for (int i = 0; i < 10 && !Write(*p_node, property, texts[_random() % texts.size()]).empty(); ++i)
                continue;
        }
    }
    Types::RelativeLength Length(double p_low, double p_high) {
        double const fraction = Number(p_low, p_high);
        return OneIn(3) ? Types::RelativeLength::Pixels(fraction * 400) : Types::RelativeLength::Fraction(fraction);
    }

    // What is left.

    /// Legends, which may have been scrolled, get new visual nodes. Colour pickers get another colour and theirs back,
    /// which is then the former one, too. Figures of past frames are left out.
    void RenewWhatRemembers() {
        std::vector<std::pair<Core::Ptr<Model::ModelNode>, Core::Ptr<Model::ModelNode>>> places;
        std::vector<std::pair<Core::Ptr<Model::ColorPicker>, QColor>> colors;
        for (Core::Ptr<Model::ModelNode> const& node : All()) {
            if (auto const figures = Core::DynamicCast<Model::Statistics>(node))
                figures->SetVisible(false);
            if (auto const picker = Core::DynamicCast<Model::ColorPicker>(node)) {
                colors.emplace_back(picker, picker->Color());
                picker->SetColor(picker->Color() == QColor(Qt::black) ? Qt::white : Qt::black);
            }
            if (!Core::DynamicCast<Model::Legend>(node))
                continue;
            for (Model::ModelNode* const parent : node->Parents())
                places.emplace_back(parent, node);
            Unlink(node);
        }
        Frame();
        for (auto const& [parent, node] : places)
            parent->Add(node);
        for (auto const& [picker, color] : colors)
            picker->SetColor(color);
        Frame();
    }
    void CheckModel() {
        for (Core::Ptr<Model::ModelNode> const& node : All()) {
            if (auto const picker = Core::DynamicCast<Model::ColorPicker>(node)) {
                Expect("valid colour", picker->Color().isValid(), true);
                Expect("recent colours", picker->RecentColors().size() <= Model::ColorPicker::MostRecentColors, true);
            } else if (auto const box = Core::DynamicCast<Model::TextBox>(node)) {
                std::wstring const& text = box->Text();
                bool const isValid = std::none_of(text.begin(), text.end(), [](wchar_t p_sign) {
                    auto const code = static_cast<std::uint32_t>(p_sign);
                    return code > 0x10ffff || (code >= 0xd800 && code < 0xe000);
                });
                Expect("valid text", isValid, true);
            }
        }
        for (Told const& told : _told) {
            if (auto const list = Core::DynamicCast<Model::SelectionList>(told.node.Lock()))
                CheckSelection(*list, told.selected);
        }
    }
    /// What the list has is what its listener was told, apart from what has gone since.
    void CheckSelection(Model::SelectionList const& p_list, Model::SelectionList::Entries p_told) {
        std::erase_if(p_told, [](auto const& p_entry) { return p_entry.node.Expired(); });
        Model::SelectionList::Entries const selected = p_list.Selected();
        Expect("selected", selected.size(), p_told.size());
        for (Model::SelectionEntry const& entry : selected) {
            Expect("told", std::count(p_told.begin(), p_told.end(), entry), 1);
            Expect("alive", entry.node.Expired(), false);
        }
    }

    template <class Left, class Right>
    void Expect(char const* p_what, Left const& p_actual, Right const& p_expected) {
        if (!(p_actual == p_expected))
            _wrong << p_what << ": " << p_actual << " instead of " << p_expected << '\n';
    }

    /// By model node; a pane's own projection toolbar, which is not in the model, has none.
    std::map<Model::ModelNode const*, Render::Vis const*> ChildrenOf(Render::Vis const& p_node) {
        std::map<Model::ModelNode const*, Render::Vis const*> children;
        Nodes const inModel = All();
        for (Core::Ptr<Render::Vis> const& child : p_node) {
            Core::Ptr<Model::ModelNode> const model = child->SourceModel().Lock();
            bool const isKnown = std::find(inModel.begin(), inModel.end(), model) != inModel.end();
            children[isKnown ? model.Get() : nullptr] = child.Get();
        }
        return children;
    }
    void Compare(Render::Vis const& p_vis, Render::Vis const& p_fresh) {
        std::ostringstream name;
        p_vis.Dump(name, Core::Verbosity::Normal, 0);
        std::string const text = name.str();
        char const* const where = text.c_str();
        Expect(where, p_vis.BoundingBox(), p_fresh.BoundingBox());
        Expect(where, p_vis.GetLayer(), p_fresh.GetLayer());
        Expect(where, p_vis.OptimalPaths(), p_fresh.OptimalPaths());
        Expect(where, p_vis.Handled().Word(), p_fresh.Handled().Word());
        auto const mine = ChildrenOf(p_vis);
        auto const theirs = ChildrenOf(p_fresh);
        Expect(where, p_vis.Size(), p_fresh.Size());
        Expect(where, mine.size(), theirs.size());
        for (auto const& [model, child] : mine) {
            auto const other = theirs.find(model);
            Expect(where, other != theirs.end(), true);
            if (other == theirs.end())
                continue;
            Expect(where, child->IsActive(), other->second->IsActive());
            if (child->IsActive() && other->second->IsActive())
                Compare(*child, *other->second);
        }
    }
    std::string PickAt(Scene& p_scene, Types::Pos const& p_place) const {
        std::multiset<std::string> hits;
        Nodes const inModel = All();
        for (Render::HitRecord const& hit : Picker(p_scene).Pick(_camera, _window, {p_place, {2, 2}})) {
            Core::Ptr<Model::ModelNode> const model = hit.node.Lock()->SourceModel().Lock();
            std::ostringstream text;
            text << model;
            for (Ogl::HitRecord const& part : hit.result.records)
                text << ' ' << part;
            if (std::find(inModel.begin(), inModel.end(), model) != inModel.end())
                hits.insert(text.str());
        }
        std::string all;
        for (std::string const& hit : hits)
            all += hit + "; ";
        return all;
    }

    std::mt19937 _random;
    qordebug::manualclock _clock;
    Windows _windows;
    Clipboard _clipboard;
    std::deque<Told> _told;
    bool _isComparing = false; ///< the model is to stay as it is
    int _edits = 0; ///< changes by the program so far
    Core::Ptr<Model::ModelNode> _root = Core::MakeNode<Model::SceneGraph>();
    Shown _shown{_root};
    InputDispatcher _input{_shown.scene};
    Camera _camera;
    Rectangle _window{0, 0, 640, 480};
    std::uint32_t _modifiers = 0;
    Core::Ptr<Model::Pane> _dragged; ///< the pane that the drag in progress may move
    Core::WeakPtr<Render::Vis> _dragger; ///< what shows it; without that the drag is over
    Types::Viewport<1> _before; ///< where it was
    std::ostringstream _wrong;
};

/// QOR_MONKEY_RUNS asks for another number of runs, QOR_MONKEY_SEED for the seed of the first.
unsigned FromEnvironment(char const* p_name, unsigned p_default) {
    char const* const text = std::getenv(p_name);
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : p_default;
}

TEST(MonkeyTest, noInputAndNoChangeOfTheModelLeavesAnythingBehind) {
    unsigned const first = FromEnvironment("QOR_MONKEY_SEED", 1);
    unsigned const count = FromEnvironment("QOR_MONKEY_RUNS", 20);
    constexpr int events = 500;
    for (unsigned seed = first; seed < first + count; ++seed) {
        qordebug::CaptureScope const quiet(Utility::GetLogger());
        Monkey monkey(seed);
        int event = 0;
        while (event < events && !monkey.IsWrong()) {
            monkey.Step();
            ++event;
        }
        ASSERT_EQ(monkey.Check(), "") << "seed " << seed << ", event " << event;
        ASSERT_TRUE(quiet.texts(qordebug::severity::ensure).empty())
            << "seed " << seed << ": " << testing::PrintToString(quiet.texts(qordebug::severity::ensure));
    }
}

TEST(MonkeyTest, anyEditsOfNodesOfAllClassesLeaveTheTreeThatTheModelAsksFor) {
    unsigned const first = FromEnvironment("QOR_MONKEY_SEED", 1);
    unsigned const count = FromEnvironment("QOR_MONKEY_RUNS", 20);
    for (unsigned seed = first; seed < first + count; ++seed) {
        qordebug::CaptureScope const quiet(Utility::GetLogger());
        Monkey monkey(seed);
        for (int round = 0; round < 15; ++round) {
            monkey.StepOfProgram();
            ASSERT_EQ(monkey.Check(), "") << "seed " << seed << ", round " << round;
        }
        ASSERT_TRUE(quiet.texts(qordebug::severity::ensure).empty())
            << "seed " << seed << ": " << testing::PrintToString(quiet.texts(qordebug::severity::ensure));
    }
}

} // namespace
} // namespace Qor::Chart::Host
