#include "render/nodes/TextWidget.h"

#include "render/nodes/OverlayShapes.h"
#include "render/nodes/TextBoundaries.h"
#include "render/nodes/TextureWidget.h"
#include "render/nodes/ToolbarLayout.h"
#include "render/events/EventInformation.h"
#include "render/events/EventSink.h"
#include "render/events/TextInputHost.h"
#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/SceneCapabilities.h"
#include "framework/assets/TextDecoder.h"
#include "framework/assets/TextLayout.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/Text.h"
#include "framework/qordebug/highrestimer.h"
#include "framework/utility/Scoped.h"

#include <QString>

#include <algorithm>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using Agl = Utility::Scoped<Ogl::Agl>;
using Key = EventInformation::KeyCode;

// Lengths at pixel ratio 1.
constexpr float PaddingX = 5;
constexpr float PaddingY = 4;
constexpr float CaretWidth = 1;
constexpr float FocusLine = 2;
constexpr int FieldWidthInSizes = 14; ///< the width of a field that names none

constexpr int SelectionAlpha = 90;
constexpr std::uint64_t NanosecondsPerMillisecond = 1'000'000;
constexpr std::uint64_t PlaceholderId = std::uint64_t{1} << 63; ///< tells placeholders from revisions

bool IsControl(char32_t p_character) {
    return p_character < 0x20 || (p_character >= 0x7F && p_character < 0xA0) || p_character == 0x2028 ||
        p_character == 0x2029;
}

/// A text for one line.
std::u32string InOneLine(std::u32string p_text) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < p_text.size(); ++i) {
        bool const isSecondOfTwo = p_text[i] == U'\n' && i > 0 && length > 0 && p_text[i - 1] == U'\r';
        if (!isSecondOfTwo)
            p_text[length++] = p_text[i];
    }
    p_text.resize(length);
    std::ranges::replace_if(p_text, &IsControl, U' ');
    return p_text;
}

std::u32string Decoded(std::wstring_view p_text) {
    return Assets::TextDecoder::Wide(p_text);
}

std::wstring Encoded(std::u32string const& p_text) {
    if constexpr (sizeof(wchar_t) == sizeof(char32_t))
        return {p_text.begin(), p_text.end()};
    else
        return QString::fromUcs4(p_text.data(), static_cast<qsizetype>(p_text.size())).toStdWString();
}

bool HasModifier(EventInformation const& p_event, EventInformation::ModifierMask p_modifier) {
    return (p_event.modifiers & p_modifier) != 0;
}

/// Ctrl alone; with Alt it makes further signs of a keyboard.
bool IsCommand(EventInformation const& p_event) {
    return HasModifier(p_event, EventInformation::ModifierControl) &&
        !HasModifier(p_event, EventInformation::ModifierAlt);
}

/// Whether a key types something, by itself or with others.
bool IsSign(int p_key) {
    constexpr int LastSign = Key::KeySign + 0x7F;
    return p_key == Key::KeySpace || (p_key >= '0' && p_key <= '9') || (p_key >= 'A' && p_key <= 'Z') ||
        (p_key > Key::KeySign && p_key < LastSign);
}

bool IsTyped(EventInformation const& p_event) {
    return !p_event.text.empty() && !IsControl(static_cast<char32_t>(p_event.text.front())) && !IsCommand(p_event);
}

} // namespace

struct TextWidget::LaidOut {
    std::uint64_t id;
    int width;
    int height;
    float size;
    float ratio;
    Assets::TextLayout layout;
};

TextWidget::TextWidget() : _opacity(TextureWidget::FadeCriteria()) {}

TextWidget::~TextWidget() {
    EndInput();
}

TextWidget& TextWidget::SetMode(Mode p_mode) {
    if (_mode != p_mode)
        EndInput();
    _mode = p_mode;
    if (_mode != Mode::Label && std::ranges::any_of(_edit.Text(), &IsControl))
        _edit.SetText(InOneLine(_edit.Text()));
    return *this;
}

TextWidget& TextWidget::SetText(std::wstring_view p_text) {
    EndComposition();
    std::u32string text = Decoded(p_text);
    if (_mode != Mode::Label)
        text = InOneLine(std::move(text));
    if (text != _edit.Text())
        _edit.SetText(std::move(text));
    else
        _edit.Commit();
    return *this;
}

std::wstring TextWidget::Text() const {
    return Encoded(_edit.Text());
}

TextWidget& TextWidget::SetPlaceholder(std::wstring p_text) {
    _placeholder = std::move(p_text);
    _placeholderShown = InOneLine(Decoded(_placeholder));
    ++_placeholderNumber;
    return *this;
}

TextWidget& TextWidget::SetMaxLength(std::size_t p_length) {
    _edit.SetMaxLength(p_length);
    return *this;
}

TextWidget& TextWidget::SetFilter(Filter p_filter) {
    _filter = std::move(p_filter);
    return *this;
}

TextWidget& TextWidget::SetFramed(bool p_framed) noexcept {
    _isFramed = p_framed;
    return *this;
}

TextWidget& TextWidget::SetCentered(bool p_centered) noexcept {
    _isCentered = p_centered;
    return *this;
}

TextWidget& TextWidget::SetChanged(Callback p_changed) {
    _changed = std::move(p_changed);
    return *this;
}

TextWidget& TextWidget::SetCommitted(Callback p_committed) {
    _committed = std::move(p_committed);
    return *this;
}

TextWidget& TextWidget::SetCancelled(Callback p_cancelled) {
    _cancelled = std::move(p_cancelled);
    return *this;
}

void TextWidget::Select(std::size_t p_anchor, std::size_t p_caret) {
    _edit.Select(p_anchor, p_caret);
}

void TextWidget::SelectAll() {
    _edit.Select(0, _edit.Text().size());
}

std::wstring TextWidget::SelectedText() const {
    return Encoded(_edit.Selected());
}

// What a callback does may put another in its place, or destroy the widget: it is the last thing that happens.

void TextWidget::Commit() {
    bool const isTold = _edit.IsEdited();
    _edit.Commit();
    Callback const committed = isTold ? _committed : Callback();
    if (committed)
        committed();
}

void TextWidget::Cancel() {
    EndComposition();
    bool const isTold = _edit.IsEdited();
    _edit.Revert();
    Callback const cancelled = isTold ? _cancelled : Callback();
    if (cancelled)
        cancelled();
}

bool TextWidget::IsFocusable() const {
    return _mode != Mode::Label && !Has(FlagDisabled);
}

bool TextWidget::IsHit(Types::Pos const& p_pos) const {
    return _mode != Mode::Label && Widget::IsHit(p_pos);
}

void TextWidget::FlagChanged(Flag p_flag) {
    _opacity.SetTarget(Has(FlagShown) ? 1.0F : 0.0F, Has(FlagAnimated));
    if (Has(FlagDisabled) || !Has(FlagShown))
        EndInput();
    if (p_flag != FlagFocus)
        return;
    _lastAction = qordebug::now();
    _isWindowHere = true;
    if (Has(FlagFocus))
        return;
    EndInput();
    _host = nullptr;
    _isSelecting = false;
    _edit.MoveTo(_edit.Caret(), false);
    if (Has(FlagDisabled))
        Cancel();
    else
        Commit();
}

void TextWidget::WindowChanged(bool p_isEntered) {
    _isWindowHere = p_isEntered;
    _lastAction = qordebug::now();
    if (!p_isEntered)
        EndInput();
}

void TextWidget::EndInput() {
    _composition.clear();
    if (std::exchange(_toldCaret, std::nullopt) && _host)
        _host->EndTextInput();
}

/// The input method stays on for what comes next.
void TextWidget::EndComposition() {
    if (!_composition.empty())
        EndInput();
}

// What the user does.

void TextWidget::Show(EventInformation& p_event) {
    _host = p_event.Sink().GetTextInputHost();
    _lastAction = qordebug::now();
    p_event.Sink().RequestRedraw();
}

void TextWidget::TabbedInto(EventInformation& p_event) {
    SelectAll();
    Show(p_event);
}

/// The pointer is over what was drawn last, wherever the caret has gone since.
int TextWidget::InLine(Types::Pos const& p_pos) {
    LayOutAround(_shown ? std::optional(std::min(*_shown, _edit.Text().size())) : std::nullopt);
    return p_pos.x - static_cast<int>(Inside().x);
}

bool TextWidget::Press(Types::Pos const& p_pos, EventInformation& p_event) {
    if (!IsFocusable() || !IsHit(p_pos))
        return false;
    EndComposition();
    _edit.MoveTo(_line.PlaceAt(InLine(p_pos)), HasModifier(p_event, EventInformation::ModifierShift));
    _isSelecting = true;
    Show(p_event);
    return true;
}

void TextWidget::Drag(Types::Pos const& p_pos, EventInformation& p_event) {
    if (!_isSelecting)
        return;
    _edit.MoveTo(_line.PlaceAt(InLine(p_pos)), true);
    Show(p_event);
}

void TextWidget::Release(Types::Pos const&, EventInformation&) {
    _isSelecting = false;
}

bool TextWidget::DoublePress(Types::Pos const& p_pos, EventInformation& p_event) {
    if (!IsFocusable() || !IsHit(p_pos))
        return false;
    EndComposition();
    _edit.SelectWordAt(_line.CharacterAt(InLine(p_pos)));
    Show(p_event);
    return true;
}

bool TextWidget::Key(EventInformation& p_event) {
    if (!IsFocusable())
        return false;
    std::uint64_t const before = _edit.Revision();
    bool isUsed = true;
    if (p_event.composition || (p_event.key == Key::KeyNone && IsTyped(p_event))) {
        Compose(p_event);
    } else {
        if (p_event.key == Key::KeyEscape || p_event.key == Key::KeyReturn)
            return EndKey(p_event);
        isUsed = IsCommand(p_event) && Command(p_event);
        isUsed = isUsed || MoveKey(p_event) || EditKey(p_event);
    }
    if (isUsed)
        Show(p_event);
    Callback const changed = _edit.Revision() != before ? _changed : Callback();
    if (changed)
        changed();
    return isUsed;
}

bool TextWidget::EndKey(EventInformation& p_event) {
    if (!IsEditable())
        return false;
    bool const isReturn = p_event.key == Key::KeyReturn;
    bool const isUsed = isReturn || !_composition.empty() || _edit.IsEdited();
    bool const isComposing = !_composition.empty();
    EndInput();
    if (isUsed)
        Show(p_event);
    if (isReturn)
        Commit();
    else if (!isComposing)
        Cancel();
    return isUsed;
}

void TextWidget::Compose(EventInformation const& p_event) {
    if (!IsEditable())
        return;
    _composition.clear();
    if (!p_event.text.empty())
        Insert(InOneLine(Decoded(p_event.text)), true);
    if (p_event.composition)
        _composition = InOneLine(Decoded(*p_event.composition));
}

bool TextWidget::IsAccepted(std::u32string const& p_inserted) const {
    if (!_filter)
        return true;
    std::u32string text = _edit.Text();
    text.replace(_edit.SelectionBegin(), _edit.SelectionEnd() - _edit.SelectionBegin(), p_inserted);
    return _filter(Encoded(text));
}

bool TextWidget::Insert(std::u32string p_text, bool p_joins) {
    std::u32string text = _edit.Fitting(std::move(p_text));
    return IsAccepted(text) && _edit.Insert(std::move(text), p_joins);
}

bool TextWidget::Command(EventInformation& p_event) {
    TextInputHost* const host = p_event.Sink().GetTextInputHost();
    switch (p_event.key) {
    case 'A':
        SelectAll();
        return true;
    case 'C':
    case 'X':
        if (host && _edit.HasSelection())
            host->SetClipboardText(SelectedText());
        if (host && p_event.key == 'X' && IsEditable() && _edit.HasSelection())
            _edit.Remove(_edit.Caret());
        return true;
    case 'V':
        if (host && IsEditable())
            Insert(InOneLine(Decoded(host->ClipboardText())), false);
        return true;
    case 'Y':
    case 'Z': {
        bool const isBack = p_event.key == 'Z' && !HasModifier(p_event, EventInformation::ModifierShift);
        if (IsEditable())
            isBack ? _edit.Undo() : _edit.Redo();
        return IsEditable();
    }
    default:
        return false;
    }
}

bool TextWidget::MoveKey(EventInformation const& p_event) {
    bool const extends = HasModifier(p_event, EventInformation::ModifierShift);
    bool const isByWord = HasModifier(p_event, EventInformation::ModifierControl);
    std::u32string const& text = _edit.Text();
    switch (p_event.key) {
    case Key::KeyHome:
    case Key::KeyEnd:
        _edit.MoveTo(p_event.key == Key::KeyHome ? 0 : text.size(), extends);
        break;
    case Key::KeyLeft:
    case Key::KeyRight: {
        bool const isForward = (p_event.key == Key::KeyRight) != TextBoundaries::IsRightToLeft(text);
        std::size_t const at = _edit.Caret();
        std::size_t to = isForward ? TextBoundaries::Next(text, at) : TextBoundaries::Previous(text, at);
        if (isByWord)
            to = isForward ? TextBoundaries::NextWord(text, at) : TextBoundaries::PreviousWord(text, at);
        else if (_edit.HasSelection() && !extends)
            to = isForward ? _edit.SelectionEnd() : _edit.SelectionBegin();
        _edit.MoveTo(to, extends);
        break;
    }
    case Key::KeyUp:
    case Key::KeyDown: // whoever is in a field does not mean to move anything else
        break;
    default:
        return false;
    }
    EndComposition();
    return true;
}

bool TextWidget::EditKey(EventInformation& p_event) {
    if (!IsEditable())
        return false;
    bool const isByWord = IsCommand(p_event);
    std::u32string const& text = _edit.Text();
    std::size_t const at = _edit.Caret();
    switch (p_event.key) {
    case Key::KeyBackspace:
        _edit.Remove(isByWord ? TextBoundaries::PreviousWord(text, at) : TextBoundaries::Previous(text, at));
        return true;
    case Key::KeyDelete:
        _edit.Remove(isByWord ? TextBoundaries::NextWord(text, at) : TextBoundaries::Next(text, at));
        return true;
    default:
        break;
    }
    if (IsTyped(p_event)) {
        Insert(InOneLine(Decoded(p_event.text)), true);
        return true;
    }
    return IsSign(p_event.key) && !IsCommand(p_event) &&
        !HasModifier(p_event, EventInformation::ModifierAlt); // one that waits for another key to type something
}

// The picture.

Types::Viewport<0> TextWidget::Inside() const {
    bool const isField = _mode != Mode::Label && _isFramed;
    return isField
        ? OverlayShapes::Inset(Rectangle(), ToolbarLayout::Scaled(PaddingX, _ratio), ToolbarLayout::Scaled(1, _ratio))
        : Rectangle();
}

void TextWidget::TakeFont(DrawContext const& p_context) {
    _ratio = OverlayShapes::PixelRatio(p_context);
    if (!_font.Take(p_context))
        return;
    _line = TextLine();
    _block.reset();
    _measured.reset();
}

/// Without the focus the beginning is seen.
void TextWidget::LayOut() {
    LayOutAround(Has(FlagFocus) ? std::optional(CaretShown()) : std::nullopt);
}

void TextWidget::LayOutAround(std::optional<std::size_t> p_shown) {
    if (!_font)
        return;
    _shown = p_shown;
    int const caret = static_cast<int>(ToolbarLayout::Scaled(CaretWidth, _ratio));
    _line.LayOut(*_font, {_edit.Text(), _edit.Revision(), _edit.SelectionBegin(), _edit.SelectionEnd(), _composition},
        p_shown, static_cast<int>(Inside().width), caret, _isCentered);
}

/// Of a long text no more is laid out than can be seen.
Assets::TextLayout const& TextWidget::Block(
    std::u32string const& p_text, std::uint64_t p_id, int p_width, int p_height) {
    bool const isSame = _block && _block->id == p_id && _block->width == p_width && _block->height == p_height &&
        _block->size == _font->Size() && _block->ratio == _font->PixelRatio();
    if (isSame)
        return _block->layout;
    constexpr std::int64_t SmallestPart = 4; // of a size, as the side of a character
    auto const size = std::max<std::int64_t>(1, static_cast<std::int64_t>(_font->Size() * _font->PixelRatio()));
    std::int64_t const most = (SmallestPart * p_width / size + 1) * (p_height / size + 1) + size;
    std::size_t const length = std::min<std::size_t>(p_text.size(), static_cast<std::size_t>(most));
    Assets::TextLayout::Options options;
    options.width = p_width;
    options.height = p_height;
    options.breaksLines = _mode == Mode::Label;
    _block = std::make_unique<LaidOut>(LaidOut{p_id, p_width, p_height, _font->Size(), _font->PixelRatio(),
        _font->LayOut(length < p_text.size() ? p_text.substr(0, length) : p_text, options)});
    return _block->layout;
}

Types::Size TextWidget::PreferredSize(DrawContext const& p_context, int p_width) {
    TakeFont(p_context);
    if (_mode == Mode::Label) {
        constexpr int Highest = 1 << 14;
        Measured now{_edit.Revision(), std::max(p_width, 1), _font->Size(), _font->PixelRatio(), {}};
        bool const isSame = _measured && _measured->id == now.id && _measured->width == now.width &&
            _measured->size == now.size && _measured->ratio == now.ratio;
        if (!isSame) {
            Assets::TextLayout const& layout = Block(_edit.Text(), now.id, now.width, Highest);
            now.needed = {layout.Width(), layout.Height()};
            _measured = now;
        }
        return _measured->needed;
    }
    LayOut();
    int const padding = _isFramed ? 2 * static_cast<int>(ToolbarLayout::Scaled(PaddingY, _ratio)) : 0;
    int const width = static_cast<int>(FieldWidthInSizes * _font->Size() * _ratio) + padding;
    return {std::min(width, std::max(p_width, 1)), _line.Height() + padding};
}

void TextWidget::Draw(DrawContext const& p_context) {
    if (!p_context.Capabilities().AnimationsOn())
        _opacity.Jump();
    if (!_opacity.IsComplete())
        p_context.Dispatcher().RequestRedraw(TextureWidget::RedrawMilliseconds);
    float const opacity = _opacity.Value();
    TakeFont(p_context);
    if (opacity <= 0 || Rectangle().IsEmpty())
        return;
    if (_mode == Mode::Label) {
        DrawLabel(p_context, opacity);
        return;
    }
    if (_isFramed)
        DrawGround(p_context, opacity);
    DrawField(p_context, opacity);
}

void TextWidget::DrawGround(DrawContext const& p_context, float p_opacity) const {
    using Shapes = OverlayShapes;
    Types::Schema const& schema = p_context.Schema().Top();
    bool const hasFocus = Has(FlagFocus) && _isWindowHere;
    bool const isLit = Has(FlagHover) && !Has(FlagDisabled);
    QColor const frame = hasFocus ? schema.selectionColor : isLit ? schema.highlightColor : schema.borderColor;
    bool const isOpen = IsEditable();
    Shapes::DrawFrame(p_context, Rectangle(), Shapes::Faded(frame, p_opacity),
        Shapes::Faded(isOpen ? Shapes::ReadableGround(schema) : schema.titleColor, p_opacity),
        ToolbarLayout::Scaled(hasFocus ? FocusLine : 1, _ratio));
}

void TextWidget::DrawLabel(DrawContext const& p_context, float p_opacity) {
    Types::Schema const& schema = p_context.Schema().Top();
    Types::Viewport<0> const place = Rectangle();
    Types::Size const size = place.Extent();
    _font->SetHorizontalAlignment(_isCentered ? Ogl::HorizontalAlignment::Center : Ogl::HorizontalAlignment::Start);
    _font->SetVerticalAlignment(_isCentered ? Ogl::VerticalAlignment::Center : Ogl::VerticalAlignment::Top);
    _font->SetColor(OverlayShapes::Faded(Has(FlagDisabled) ? schema.disabledColor : schema.textColor, p_opacity));
    Agl agl(p_context.Graphics());
    _font->Draw(*agl, Block(_edit.Text(), _edit.Revision(), size.width, size.height), place, place);
}

void TextWidget::DrawField(DrawContext const& p_context, float p_opacity) {
    Types::Schema const& schema = p_context.Schema().Top();
    Types::Viewport<0> const inside = Inside();
    LayOut();
    QColor const color = OverlayShapes::Faded(Has(FlagDisabled) ? schema.disabledColor : schema.textColor, p_opacity);
    Agl agl(p_context.Graphics());
    if (_edit.Text().empty() && _composition.empty()) {
        _font->SetHorizontalAlignment(_isCentered ? Ogl::HorizontalAlignment::Center : Ogl::HorizontalAlignment::Start);
        _font->SetVerticalAlignment(Ogl::VerticalAlignment::Center);
        _font->SetColor(OverlayShapes::Faded(schema.disabledColor, p_opacity));
        _font->Draw(*agl,
            Block(_placeholderShown, PlaceholderId | _placeholderNumber, inside.Extent().width, _line.Height()), inside,
            inside);
    } else {
        DrawSelection(p_context, p_opacity);
        _font->SetColor(color);
        _line.Draw(*agl, *_font, inside);
        DrawComposition(p_context, color);
    }
    DrawCaret(p_context, color);
}

void TextWidget::DrawBar(DrawContext const& p_context, Types::Viewport<0> const& p_bar, QColor const& p_color) const {
    Types::Viewport<0> const bar = p_bar.Clamped(Inside());
    if (!bar.IsEmpty())
        OverlayShapes::DrawFrame(p_context, bar, QColor(), p_color);
}

Types::Viewport<0> TextWidget::LineBar(int p_left, int p_right) const {
    Types::Viewport<0> const inside = Inside();
    auto const height = static_cast<float>(_line.Height());
    int const above = (static_cast<int>(inside.height) - _line.Height()) / 2;
    return {inside.x + static_cast<float>(p_left), inside.Top() - static_cast<float>(above) - height,
        static_cast<float>(p_right - p_left), height};
}

void TextWidget::DrawSelection(DrawContext const& p_context, float p_opacity) const {
    if (!Has(FlagFocus) || !_edit.HasSelection() || !_composition.empty())
        return;
    Types::Schema const& schema = p_context.Schema().Top();
    QColor const color = OverlayShapes::Faded(
        OverlayShapes::WithAlpha(_isWindowHere ? schema.selectionColor : schema.disabledColor, SelectionAlpha),
        p_opacity);
    _line.ForEachStretch(_edit.SelectionBegin(), _edit.SelectionEnd(),
        [&](int p_left, int p_right) { DrawBar(p_context, LineBar(p_left, p_right), color); });
}

void TextWidget::DrawComposition(DrawContext const& p_context, QColor const& p_color) const {
    if (_composition.empty())
        return;
    _line.ForEachStretch(_edit.SelectionBegin(), CaretShown(), [&](int p_left, int p_right) {
        Types::Viewport<0> bar = LineBar(p_left, p_right);
        bar.height = ToolbarLayout::Scaled(1, _ratio);
        DrawBar(p_context, bar, p_color);
    });
}

bool TextWidget::IsCaretOn(DrawContext const& p_context) const {
    if (!Has(FlagFocus) || !IsEditable() || !_isWindowHere)
        return false;
    constexpr int DefaultFlashTime = 1000;
    auto const half = static_cast<std::uint64_t>(std::max(_host ? _host->CaretFlashTime() : DefaultFlashTime, 0) / 2);
    std::uint64_t const passed = (qordebug::now() - _lastAction) / NanosecondsPerMillisecond;
    if (half == 0 || !p_context.Capabilities().AnimationsOn() || passed >= BlinkMilliseconds)
        return true;
    p_context.Dispatcher().RequestRedraw(static_cast<int>(half - passed % half));
    return passed / half % 2 == 0;
}

/// The input method shows its candidates beside the caret, whether or not that is to be seen just now.
void TextWidget::DrawCaret(DrawContext const& p_context, QColor const& p_color) {
    int const width = static_cast<int>(ToolbarLayout::Scaled(CaretWidth, _ratio));
    int const x = _line.XOf(CaretShown());
    _caretPlace = LineBar(x, x + width);
    if (IsCaretOn(p_context))
        DrawBar(p_context, _caretPlace, p_color);
    if (!Has(FlagFocus) || !IsEditable() || !_isWindowHere || !_host)
        return;
    Types::Viewport<0> const& pane = p_context.Viewport().Top();
    Types::Viewport<0> const place = Types::Viewport<0>(_caretPlace).Translate(pane.x, pane.y);
    if (_toldCaret == place)
        return;
    _toldCaret = place;
    _host->BeginTextInput(place);
}

} // namespace Qor::Chart::Render
