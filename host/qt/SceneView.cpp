#include "host/qt/SceneView.h"

#include "framework/ogl/OpenGlBackend.h"
#include "framework/utility/Logger.h"
#include "host/PaneFinder.h"
#include "render/events/EventInformation.h"
#include "render/nodes/Viewport.h"

#include <QDropEvent>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineF>
#include <QMimeData>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QTouchEvent>
#include <QUrl>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <exception>

namespace Qor::Chart::Host {

namespace {

using Render::EventInformation;

constexpr double DegreesPerNotch = 120.0; ///< in eighths of a degree

std::uint32_t ModifiersOf(::Qt::KeyboardModifiers p_modifiers) {
    std::uint32_t modifiers = 0;
    if (p_modifiers.testFlag(::Qt::AltModifier))
        modifiers |= EventInformation::ModifierAlt;
    if (p_modifiers.testFlag(::Qt::ControlModifier))
        modifiers |= EventInformation::ModifierControl;
    if (p_modifiers.testFlag(::Qt::ShiftModifier))
        modifiers |= EventInformation::ModifierShift;
    return modifiers;
}

/// The toolkit numbers buttons as bits, in the order primary, secondary, middle.
std::uint32_t ButtonOf(::Qt::MouseButton p_button) {
    return static_cast<std::uint32_t>(std::countr_zero(static_cast<std::uint32_t>(p_button)));
}

/// What the toolkit's keys are called here. Letters and digits have the same codes here and there.
int KeyOf(int p_key) {
    constexpr std::array<std::pair<int, EventInformation::KeyCode>, 15> Codes{{
        {::Qt::Key_Escape, EventInformation::KeyEscape},
        {::Qt::Key_Tab, EventInformation::KeyTab},
        {::Qt::Key_Backtab, EventInformation::KeyTab},
        {::Qt::Key_Backspace, EventInformation::KeyBackspace},
        {::Qt::Key_Return, EventInformation::KeyReturn},
        {::Qt::Key_Enter, EventInformation::KeyReturn},
        {::Qt::Key_Delete, EventInformation::KeyDelete},
        {::Qt::Key_Home, EventInformation::KeyHome},
        {::Qt::Key_End, EventInformation::KeyEnd},
        {::Qt::Key_Left, EventInformation::KeyLeft},
        {::Qt::Key_Up, EventInformation::KeyUp},
        {::Qt::Key_Right, EventInformation::KeyRight},
        {::Qt::Key_Down, EventInformation::KeyDown},
        {::Qt::Key_PageUp, EventInformation::KeyPageUp},
        {::Qt::Key_PageDown, EventInformation::KeyPageDown},
    }};
    auto const* const found = std::ranges::find(Codes, p_key, &std::pair<int, EventInformation::KeyCode>::first);
    if (found != Codes.end())
        return found->second;
    bool const isSign = p_key > ::Qt::Key_Space && p_key < ::Qt::Key_nobreakspace &&
        !QChar::isLetterOrNumber(static_cast<char32_t>(p_key));
    return isSign ? EventInformation::KeySign + p_key : p_key;
}

/// What stays the same from the press of a key to its release, unlike its code, which depends on Shift.
std::pair<std::uint32_t, int> PlaceOnKeyboard(QKeyEvent const& p_event) {
    std::uint32_t const place = p_event.nativeScanCode();
    return {place, place == 0 ? p_event.key() : 0};
}

/// A key as nodes are to understand it: whatever the desktop uses to copy and paste is the same to them.
struct KeyStroke {
    explicit KeyStroke(QKeyEvent const& p_event)
        : key(KeyOf(p_event.key())), modifiers(ModifiersOf(p_event.modifiers())) {
        constexpr std::array<std::pair<QKeySequence::StandardKey, int>, 4> Commands{{{QKeySequence::Copy, 'C'},
            {QKeySequence::Cut, 'X'}, {QKeySequence::Paste, 'V'}, {QKeySequence::SelectAll, 'A'}}};
        for (auto const& [command, letter] : Commands) {
            if (p_event.matches(command)) {
                key = letter;
                modifiers = EventInformation::ModifierControl;
            }
        }
        if (p_event.key() == ::Qt::Key_Backtab)
            modifiers |= EventInformation::ModifierShift;
    }

    int key;
    std::uint32_t modifiers;
};

std::vector<std::string> FilesOf(QMimeData const& p_data) {
    std::vector<std::string> files;
    for (QUrl const& url : p_data.urls()) {
        if (url.isLocalFile())
            files.push_back(url.toLocalFile().toStdString());
    }
    return files;
}

} // namespace

SceneView::SceneView(std::function<void()> p_schedule, std::function<void(bool)> p_takeText)
    : SceneView(std::move(p_schedule), std::move(p_takeText), std::make_unique<Ogl::OpenGlBackend>()) {}

SceneView::SceneView(std::function<void()> p_schedule, std::function<void(bool)> p_takeText,
    std::unique_ptr<Ogl::OpenGlBackend> p_backend)
    : _schedule(std::move(p_schedule))
    , _backend(p_backend.get())
    , _scene(std::move(p_backend))
    , _driver(_scene)
    , _textInput(_pixels, std::move(p_takeText))
    , _input(_scene)
    , _navigator(_scene, _input, _camera)
    , _popOuts([this](SceneView& p_view) { SetUpPopOut(p_view); })
    , _listener(Core::MakeNode<ChangeListener>([this] {
        if (!_isInFrame)
            _scene.Dispatcher().RequestUpdate();
    })) {
    for (QTimer* const timer : {&_frameTimer, &_inputTimer}) {
        timer->setSingleShot(true);
        timer->setTimerType(::Qt::PreciseTimer);
    }
    QObject::connect(&_frameTimer, &QTimer::timeout, [this] { _schedule(); });
    QObject::connect(&_inputTimer, &QTimer::timeout, [this] { _input.RunDue(); });
    _scene.Dispatcher().SetWakeUp([this](int p_milliseconds) { ScheduleFrameIn(p_milliseconds); });
    _input.Callbacks().wakeUp = [this](int p_milliseconds) { _inputTimer.start(p_milliseconds); };
    _input.Callbacks().keyPress = [this](InputEvent const& p_event) {
        _isKeyTaken = _navigator.PressKey(p_event) || (_keyCallback && _keyCallback(p_event));
    };
    _input.SetPopOutHost(&_popOuts);
    _input.SetTextInputHost(&_textInput);
    _listener->ListenTo(_scene.Visual());
}

// Windows of popped-out content give it back while everything is still there; frames are not wanted any more.
SceneView::~SceneView() {
    ClosePopOuts();
    _scene.Dispatcher().SetWakeUp({});
    _input.Callbacks() = {};
}

void SceneView::SetModel(Core::Ptr<Model::ModelNode> p_root) {
    _scene.SetModel(std::move(p_root));
    _listener->ListenTo(_scene.Visual());
    FitAll();
}

void SceneView::FitAll() {
    _isFitWanted = true;
    Refresh();
}

void SceneView::Refresh() {
    _navigator.SetWindow(_pixels.Viewport());
    _scene.Dispatcher().RequestUpdate();
}

PaneView SceneView::ActiveView() const {
    Types::Size const& size = _pixels.framebuffer;
    bool const isInside = _pixels.Viewport().Contains(_pointer);
    return _navigator.ViewAt(isInside ? _pointer : Types::Pos(size.width / 2, size.height / 2));
}

// Panes may lie over the button that was clicked: what was hit tells whose it is.
PaneView SceneView::PaneToPopOut() const {
    std::vector<PaneView> const panes = PaneFinder::All(_scene.Visual(), _pixels.Viewport());
    for (Render::HitRecord const& hit : _input.Hits()) {
        bool const isButton = std::ranges::any_of(hit.result.records, [](Ogl::HitRecord const& p_record) {
            return p_record.name == Render::Viewport::PartPopOutButton ||
                p_record.name == Render::Viewport::PartDetachButton;
        });
        auto const pane = std::ranges::find(panes, hit.node, &PaneView::pane);
        if (isButton && pane != panes.end())
            return *pane;
    }
    return ActiveView();
}

void SceneView::SetUpPopOut(SceneView& p_view) {
    p_view._camera = _navigator.CameraOf(PaneToPopOut());
    p_view._scene.Schema() = _scene.Schema();
    if (_popOutCallback)
        _popOutCallback(p_view);
}

void SceneView::Resize(Types::Size const& p_size, double p_ratio) {
    Types::Size const pixels(static_cast<int>(std::lround(std::max(p_size.width, 0) * p_ratio)),
        static_cast<int>(std::lround(std::max(p_size.height, 0) * p_ratio)));
    if (pixels == _pixels.framebuffer && p_ratio == _pixels.ratio)
        return;
    _pixels = {pixels, p_ratio};
    _scene.Capabilities().pixelRatio = static_cast<float>(p_ratio);
    _navigator.SetWindow(_pixels.Viewport());
}

void SceneView::Paint() {
    if (_pixels.framebuffer.IsEmpty() || _isInFrame)
        return;
    _frameTimer.stop();
    _scene.Dispatcher().TakeRedrawRequest();
    bool isGood = DrawGuarded();
    if (_scene.Dispatcher().UpdateRequested()) // listeners changed the model after the update
        _scene.Dispatcher().RequestUpdate();
    _input.FrameDone();
    if (_frameCallback)
        isGood = Guarded("follow the frame", _frameCallback) && isGood;
    if (isGood)
        _lastFailure.clear();
    if (std::optional<int> const due = _scene.Dispatcher().RedrawDueIn())
        ScheduleFrameIn(*due);
}

bool SceneView::DrawGuarded() {
    struct InFrame {
        explicit InFrame(bool& p_flag) noexcept : flag(p_flag) { flag = true; }
        ~InFrame() { flag = false; }
        bool& flag;
    } const inFrame(_isInFrame);
    try {
        UpdateAndDraw();
        return true;
    } catch (std::exception const& error) {
        Failed(error.what());
    } catch (...) {
        Failed("The scene could not be drawn: something was thrown that says nothing of its cause. "
               "Derive what your nodes throw from std::exception.");
    }
    return false;
}

// The toolkit cannot have anything thrown through it.
bool SceneView::Guarded(std::string const& p_task, std::function<void()> const& p_callback) {
    try {
        p_callback();
        return true;
    } catch (std::exception const& error) {
        Failed("The program could not " + p_task + ": " + error.what());
    } catch (...) {
        Failed("The program could not " + p_task + ": something was thrown that says nothing of its cause. " +
            "Derive what your callbacks throw from std::exception.");
    }
    return false;
}

// Fitting takes the boxes of the first update, and the second one takes the cameras up. Whatever the nodes that were updated
// asked to have drawn is drawn at once.
void SceneView::UpdateAndDraw() {
    _listener->ListenTo(_scene.Visual());
    if (std::exchange(_isFitWanted, false)) {
        _driver.Update();
        _navigator.FitAll();
    }
    _driver.Update();
    _scene.Dispatcher().TakeRedrawRequest();
    _driver.Draw(_camera, _pixels.Viewport());
}

void SceneView::ReleaseDevice() {
    _backend->Release();
}

void SceneView::Failed(std::string const& p_sentence) {
    if (p_sentence == _lastFailure)
        return;
    _lastFailure = p_sentence;
    try {
        if (_errorCallback) {
            _errorCallback(p_sentence);
            return;
        }
    } catch (...) { // the log has to do
    }
    Utility::GetLogger().error(p_sentence);
}

void SceneView::ScheduleFrameIn(int p_milliseconds) {
    if (_isInFrame) // Paint asks again at its end
        return;
    if (p_milliseconds <= 0)
        _schedule();
    else
        _frameTimer.start(p_milliseconds);
}

bool SceneView::Handle(QEvent& p_event) {
    switch (p_event.type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        Mouse(static_cast<QMouseEvent&>(p_event));
        return true;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        return Touch(static_cast<QTouchEvent&>(p_event));
    case QEvent::TouchCancel:
        _fingerDistance = 0;
        _input.PointerCancelled();
        return true;
    case QEvent::NativeGesture: {
        auto const& gesture = static_cast<QNativeGestureEvent const&>(p_event);
        if (gesture.gestureType() != ::Qt::ZoomNativeGesture)
            return false;
        Pinch(ToPixel(gesture.position()), 1.0 + gesture.value());
        return true;
    }
    case QEvent::Wheel:
        Wheel(static_cast<QWheelEvent&>(p_event));
        return true;
    case QEvent::Enter:
        _input.PointerMoved(ToPixel(static_cast<QEnterEvent const&>(p_event).position()),
            ModifiersOf(QGuiApplication::keyboardModifiers())); // the event has none
        return false;
    case QEvent::Leave:
        _input.PointerLeft();
        return false;
    case QEvent::UngrabMouse:
        _input.CaptureLost();
        return false;
    case QEvent::FocusIn:
        _input.FocusGained();
        return false;
    case QEvent::FocusOut:
        _input.FocusLost();
        return false;
    case QEvent::ShortcutOverride:
        return OverrideShortcut(static_cast<QKeyEvent&>(p_event));
    case QEvent::InputMethod:
        Compose(static_cast<QInputMethodEvent&>(p_event));
        return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return Key(static_cast<QKeyEvent&>(p_event));
    case QEvent::DragEnter:
    case QEvent::DragMove:
        DragOver(static_cast<QDropEvent&>(p_event));
        return true;
    case QEvent::DragLeave:
        _input.DragLeft();
        return true;
    case QEvent::Drop:
        Drop(static_cast<QDropEvent&>(p_event));
        return true;
    case QEvent::Show:
        _scene.Capabilities().Resume(Render::SceneCapabilities::SuppressionHidden);
        Refresh();
        return false;
    case QEvent::Hide:
        _scene.Capabilities().Suppress(Render::SceneCapabilities::SuppressionHidden);
        _input.CaptureLost(); // a press would hold the pointer inside
        _input.PointerLeft();
        return false;
    default:
        return false;
    }
}

Types::Pos SceneView::ToPixel(QPointF const& p_position) const {
    return _pixels.ToFramebuffer(p_position.x(), p_position.y());
}

void SceneView::Mouse(QMouseEvent& p_event) {
    Types::Pos const position = ToPixel(p_event.position());
    _pointer = position;
    std::uint32_t const modifiers = ModifiersOf(p_event.modifiers());
    _input.SetTouch(false);
    if (p_event.type() == QEvent::MouseMove)
        _input.PointerMoved(position, modifiers);
    else if (p_event.type() == QEvent::MouseButtonRelease)
        _input.PointerReleased(position, ButtonOf(p_event.button()), modifiers);
    else
        _input.PointerPressed(position, ButtonOf(p_event.button()), modifiers);
    p_event.accept();
}

/// One finger is a pointer; two zoom by their distance.
bool SceneView::Touch(QTouchEvent& p_event) {
    auto const& points = p_event.points();
    if (points.empty())
        return false;
    QPointF const first = points.front().position();
    Types::Pos const position = ToPixel(first);
    std::uint32_t const modifiers = ModifiersOf(p_event.modifiers());
    _pointer = position;
    if (points.size() > 1) {
        double const distance = QLineF(first, points[1].position()).length();
        if (_fingerDistance > 0 && distance > 0)
            Pinch(position, distance / _fingerDistance);
        else
            _input.PointerCancelled();
        _fingerDistance = p_event.type() == QEvent::TouchEnd ? 0 : distance;
        return true;
    }
    bool const wasPinch = std::exchange(_fingerDistance, 0) > 0;
    _input.SetTouch(true);
    if (p_event.type() == QEvent::TouchBegin)
        _input.PointerPressed(position, 0, modifiers);
    else if (p_event.type() == QEvent::TouchUpdate && !wasPinch)
        _input.PointerMoved(position, modifiers);
    else if (p_event.type() == QEvent::TouchEnd)
        _input.PointerReleased(position, 0, modifiers);
    return true;
}

void SceneView::Pinch(Types::Pos const& p_position, double p_factor) {
    if (std::isfinite(p_factor) && p_factor > 0)
        _input.Scrolled(p_position, std::log(p_factor) / std::log(Navigator::ZoomPerNotch));
}

void SceneView::Wheel(QWheelEvent& p_event) {
    Types::Pos const position = ToPixel(p_event.position());
    QPoint const turn = p_event.angleDelta();
    int const along = turn.y() != 0 ? turn.y() : turn.x(); // with Alt held, the toolkit takes it for sideways
    _input.Scrolled(position, along / DegreesPerNotch, ModifiersOf(p_event.modifiers()));
    p_event.accept();
}

/// A key that nobody wants goes on to whoever is around the surface.
bool SceneView::Key(QKeyEvent& p_event) {
    auto const [key, modifiers] = KeyStroke(p_event);
    if (p_event.type() == QEvent::KeyRelease) {
        if (p_event.isAutoRepeat())
            return false;
        auto const pressed = _pressedKeys.extract(PlaceOnKeyboard(p_event));
        _input.KeyReleased(pressed.empty() ? key : pressed.mapped(), modifiers);
        return false;
    }
    _pressedKeys.insert_or_assign(PlaceOnKeyboard(p_event), key);
    if (std::exchange(_overriddenKey, std::nullopt) == p_event.key())
        return true;
    _isKeyTaken = true; // unless the dispatcher finds nobody and hands it on
    _input.KeyPressed(key, modifiers, p_event.text().toStdWString());
    return std::exchange(_isKeyTaken, false);
}

bool SceneView::OverrideShortcut(QKeyEvent& p_event) {
    _overriddenKey.reset(); // the press of an earlier one may have gone elsewhere
    auto const [key, modifiers] = KeyStroke(p_event);
    bool const isTab = key == EventInformation::KeyTab; // goes on to the next one, which has no shortcut
    bool const isAlt = p_event.modifiers().testFlag(::Qt::AltModifier);
    bool const isControl = p_event.modifiers().testFlag(::Qt::ControlModifier);
    // Menus go before; where a sign is typed with such a key, it comes as a press. AltGr is Alt with Control on some systems.
    bool const isMenus = p_event.modifiers().testFlag(::Qt::MetaModifier) || (isAlt && !isControl);
    if (isTab || isMenus || !_input.KeyOffered(key, modifiers, p_event.text().toStdWString()))
        return false;
    _overriddenKey = p_event.key();
    p_event.accept();
    return true;
}

void SceneView::Compose(QInputMethodEvent& p_event) {
    if (_textInput.IsActive()) // else it is what was given up
        _input.TextComposed(p_event.commitString().toStdWString(), p_event.preeditString().toStdWString());
    p_event.accept();
}

bool SceneView::TakesFiles(QDropEvent const& p_event) const {
    return _filesCallback && p_event.mimeData() && !FilesOf(*p_event.mimeData()).empty();
}

void SceneView::DragOver(QDropEvent& p_event) {
    Types::Pos const position = ToPixel(p_event.position());
    bool const isTaken = _input.DragMoved(position, boost::any(p_event.mimeData()), ModifiersOf(p_event.modifiers()));
    if (isTaken || TakesFiles(p_event))
        p_event.acceptProposedAction();
    else
        p_event.ignore();
}

void SceneView::Drop(QDropEvent& p_event) {
    Types::Pos const position = ToPixel(p_event.position());
    if (_input.Dropped(position, boost::any(p_event.mimeData()), ModifiersOf(p_event.modifiers()))) {
        p_event.acceptProposedAction();
    } else if (TakesFiles(p_event)) {
        p_event.acceptProposedAction();
        QTimer::singleShot(0, &_inputTimer, [this, files = FilesOf(*p_event.mimeData())] {
            if (_filesCallback)
                Guarded("open the files", [&] { _filesCallback(files); });
        });
    } else {
        p_event.ignore();
    }
}

} // namespace Qor::Chart::Host
