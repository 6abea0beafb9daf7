#include "render/nodes/ColorPickerWidget.h"

#include "render/nodes/ColorText.h"
#include "render/nodes/OverlayShapes.h"
#include "render/events/EventInformation.h"
#include "render/events/EventSink.h"
#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/context/SceneCapabilities.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using Part = ColorPickerLayout::Part;
using Info = EventInformation;

constexpr std::array Parts{Part::Area, Part::Hue, Part::Alpha, Part::Text, Part::Former, Part::Recent};

constexpr std::size_t LongestText = 64;
constexpr double FullCircle = 360;
constexpr double FullAlpha = 255;

// What a key moves, of the whole.
constexpr double SmallPart = 0.01;
constexpr double LargePart = 0.1;
constexpr double SmallAngle = 1 / FullCircle;
constexpr double LargeAngle = 10 / FullCircle;
constexpr double SmallAlpha = 1 / FullAlpha;
constexpr double LargeAlpha = 16 / FullAlpha;

QColor EightBits(QColor const& p_color) {
    return QColor::fromRgba(p_color.rgba());
}

double Moved(double p_value, double p_step) {
    return std::clamp(p_value + p_step, 0.0, 1.0);
}

/// A list without what stands in it twice, as long as there is room for.
std::vector<QColor> Kept(std::vector<QColor> const& p_colors) {
    std::vector<QColor> kept;
    for (QColor const& color : p_colors) {
        bool const isNew = std::find(kept.begin(), kept.end(), color) == kept.end();
        if (isNew && kept.size() < ColorPickerWidget::MostRecentColors)
            kept.push_back(color);
    }
    return kept;
}

} // namespace

ColorPickerWidget::ColorPickerWidget() : _opacity(TextureWidget::FadeCriteria()) {
    _text.SetMode(TextWidget::Mode::Editable).SetCentered(true).SetMaxLength(LongestText).SetChanged([this] {
        _isTextRefused = false;
    });
    ShowColorAsText();
}

ColorPickerWidget::~ColorPickerWidget() = default;

bool ColorPickerWidget::SetColor(QColor const& p_color) {
    if (!p_color.isValid()) {
        Utility::GetLogger().error("A colour picker keeps its colour " + _color.name(QColor::HexArgb).toStdString() +
            ": the new one is invalid; give a valid one.");
        return false;
    }
    QColor const color = EightBits(p_color);
    if (color == _color)
        return true;
    _hsv = HsvColor::Of(color, _hsv);
    _color = color;
    _former = color;
    _recentBeforeKeys.reset();
    _begin = {_color, _hsv};
    ShowColorAsText();
    return true;
}

void ColorPickerWidget::SetAlphaShown(bool p_shown) {
    if (p_shown == _isAlphaShown)
        return;
    _isAlphaShown = p_shown;
    if (!p_shown && _part == Part::Alpha)
        FocusPart(Part::Hue);
    if (_pressed == Part::Alpha)
        _pressed.reset();
    LayOut();
    ShowColorAsText();
}

void ColorPickerWidget::SetRecentColors(std::vector<QColor> const& p_colors) {
    std::vector<QColor> colors;
    for (QColor const& color : p_colors) {
        if (QOR_ENSURE_TEXT(color.isValid(), "every recent colour is valid"))
            colors.push_back(EightBits(color));
    }
    colors = Kept(colors);
    if (colors == _recent)
        return;
    _recent = std::move(colors);
    _recentAt = 0;
    _recentBeforeKeys.reset();
}

void ColorPickerWidget::SetPixelRatio(float p_ratio) {
    if (p_ratio == _ratio || !QOR_ENSURE(p_ratio > 0 && std::isfinite(p_ratio)))
        return;
    _ratio = p_ratio;
    LayOut();
}

void ColorPickerWidget::RectangleChanged() {
    LayOut();
}

void ColorPickerWidget::LayOut() {
    _layout = ColorPickerLayout(Rectangle(), _ratio, _isAlphaShown);
    _text.SetRectangle(_layout.text);
}

void ColorPickerWidget::FlagChanged(Flag p_flag) {
    _opacity.SetTarget(Has(FlagShown) ? 1.0F : 0.0F, Has(FlagAnimated));
    if (p_flag == FlagFocus) {
        if (_part == Part::Text && !Has(FlagFocus))
            LeaveText();
        _showsFocus = _showsFocus || !Has(FlagFocus);
        _recentBeforeKeys.reset();
        _text.Set(FlagFocus, Has(FlagFocus) && _part == Part::Text);
    } else if (p_flag != FlagHover) {
        _text.Set(p_flag, Has(p_flag));
    }
    if (p_flag == FlagDisabled)
        _pressed.reset();
}

bool ColorPickerWidget::IsThere(Part p_part) const {
    return !_layout.PlaceOf(p_part).IsEmpty() && (p_part != Part::Recent || !_recent.empty());
}

void ColorPickerWidget::FocusPart(Part p_part) {
    if (p_part == _part)
        return;
    if (_part == Part::Text)
        LeaveText();
    _part = p_part;
    _recentAt = 0;
    _recentBeforeKeys.reset();
    _text.Set(FlagFocus, Has(FlagFocus) && p_part == Part::Text);
}

bool ColorPickerWidget::FocusNextPart(EventInformation& p_event) {
    bool const isBackwards = (p_event.modifiers & Info::ModifierShift) != 0;
    auto at = static_cast<std::ptrdiff_t>(_part) + (isBackwards ? -1 : 1);
    while (at >= 0 && at < std::ssize(Parts) && !IsThere(Parts.at(static_cast<std::size_t>(at))))
        at += isBackwards ? -1 : 1;
    if (at < 0 || at >= std::ssize(Parts))
        return false;
    FocusPart(Parts.at(static_cast<std::size_t>(at)));
    if (_part == Part::Text)
        _text.TabbedInto(p_event);
    return true;
}

void ColorPickerWidget::TabbedInto(EventInformation& p_event) {
    bool const isBackwards = (p_event.modifiers & Info::ModifierShift) != 0;
    FocusPart(isBackwards ? (IsThere(Part::Recent) ? Part::Recent : Part::Former) : Part::Area);
    _showsFocus = true;
    p_event.Sink().RequestRedraw();
}

void ColorPickerWidget::WindowChanged(bool p_isEntered) {
    if (_part == Part::Text)
        _text.WindowChanged(p_isEntered);
}

void ColorPickerWidget::Change(HsvColor const& p_hsv, int p_alpha) {
    _hsv = p_hsv;
    QColor const color = _hsv.Rgb(p_alpha);
    if (color == _color)
        return;
    _color = color;
    ShowColorAsText();
    if (_changed)
        _changed(_color);
}

void ColorPickerWidget::Pick(QColor const& p_color) {
    QColor color = p_color;
    if (!_isAlphaShown)
        color.setAlpha(_color.alpha());
    if (color != _color) {
        Change(HsvColor::Of(color, _hsv), color.alpha());
        Commit(false);
    }
    ShowColorAsText();
}

void ColorPickerWidget::Commit(bool p_isKey) {
    if (!p_isKey)
        _recentBeforeKeys.reset();
    else if (!_recentBeforeKeys)
        _recentBeforeKeys = _recent;
    std::vector<QColor> colors = _recentBeforeKeys ? *_recentBeforeKeys : _recent;
    colors.insert(colors.begin(), _color);
    _recent = Kept(colors);
    _recentAt = 0;
    if (_committed)
        _committed(_color);
}

bool ColorPickerWidget::Press(Types::Pos const& p_pos, EventInformation& p_event) {
    if (Has(FlagDisabled) || !IsHit(p_pos))
        return false;
    _pressed = _layout.PartAt(p_pos);
    _pressedRecent = _layout.RecentAt(p_pos).value_or(0);
    _showsFocus = false;
    _recentBeforeKeys.reset();
    if (_pressed && IsThere(*_pressed))
        FocusPart(*_pressed);
    _begin = {_color, _hsv}; // with a text that has been entered by leaving the field
    p_event.Sink().RequestRedraw();
    if (_pressed == Part::Text)
        _text.Press(p_pos, p_event);
    DragTo(p_pos);
    return true;
}

bool ColorPickerWidget::DoublePress(Types::Pos const& p_pos, EventInformation& p_event) {
    if (Has(FlagDisabled) || _layout.PartAt(p_pos) != Part::Text)
        return false;
    _showsFocus = false;
    FocusPart(Part::Text);
    return _text.DoublePress(p_pos, p_event);
}

void ColorPickerWidget::DragTo(Types::Pos const& p_pos) {
    HsvColor hsv = _hsv;
    int alpha = _color.alpha();
    if (_pressed == Part::Area) {
        hsv.saturation = ColorPickerLayout::RightOf(_layout.area, p_pos);
        hsv.value = ColorPickerLayout::UpOf(_layout.area, p_pos);
    } else if (_pressed == Part::Hue) {
        hsv.hue = ColorPickerLayout::RightOf(_layout.hue, p_pos) * FullCircle;
    } else if (_pressed == Part::Alpha) {
        alpha = static_cast<int>(std::lround(ColorPickerLayout::RightOf(_layout.alpha, p_pos) * FullAlpha));
    } else {
        return;
    }
    Change(hsv, alpha);
}

void ColorPickerWidget::Drag(Types::Pos const& p_pos, EventInformation& p_event) {
    if (!_pressed)
        return;
    if (_pressed == Part::Text)
        _text.Drag(p_pos, p_event);
    DragTo(p_pos);
    p_event.Sink().RequestRedraw();
}

void ColorPickerWidget::Release(Types::Pos const& p_pos, EventInformation& p_event) {
    if (!_pressed)
        return;
    p_event.Sink().RequestRedraw();
    Part const part = *std::exchange(_pressed, std::nullopt);
    bool const isBrokenOff = (p_event.buttons & Info::ButtonMaskPrimary) != 0;
    if (part == Part::Text)
        return _text.Release(p_pos, p_event);
    if (isBrokenOff) {
        Change(_begin.hsv, _begin.color.alpha());
    } else if (part == Part::Former || part == Part::Recent) {
        Click(part, p_pos);
    } else if (_color != _begin.color) {
        Commit(false);
    }
}

void ColorPickerWidget::Click(Part p_part, Types::Pos const& p_pos) {
    if (_layout.PartAt(p_pos) != p_part)
        return;
    if (p_part == Part::Former)
        Pick(_former);
    else if (_layout.RecentAt(p_pos) == _pressedRecent && _pressedRecent < _recent.size())
        Pick(QColor(_recent[_pressedRecent]));
}

bool ColorPickerWidget::Key(EventInformation& p_event) {
    if (Has(FlagDisabled))
        return false;
    bool const isUsed = p_event.key == Info::KeyTab ? FocusNextPart(p_event) : KeyInPart(p_event);
    if (isUsed) {
        _showsFocus = true;
        p_event.Sink().RequestRedraw();
    }
    return isUsed;
}

bool ColorPickerWidget::KeyInPart(EventInformation& p_event) {
    bool const isLarge = (p_event.modifiers & Info::ModifierShift) != 0;
    bool const isTaken = p_event.key == Info::KeyReturn || p_event.key == Info::KeySpace;
    switch (_part) {
    case Part::Area:
        return KeyInArea(p_event.key, isLarge);
    case Part::Hue:
    case Part::Alpha:
        return KeyInSlider(p_event.key, isLarge);
    case Part::Text:
        return KeyInText(p_event);
    case Part::Recent:
        return KeyInRecent(p_event.key);
    case Part::Former:
        break;
    }
    if (isTaken)
        Pick(_former);
    return isTaken;
}

void ColorPickerWidget::ChangeByKey(HsvColor const& p_hsv, int p_alpha) {
    QColor const before = _color;
    Change(p_hsv, p_alpha);
    if (_color != before)
        Commit(true);
}

bool ColorPickerWidget::KeyInArea(int p_key, bool p_isLarge) {
    double const step = p_isLarge ? LargePart : SmallPart;
    HsvColor hsv = _hsv;
    switch (p_key) {
    case Info::KeyLeft:
        hsv.saturation = Moved(hsv.saturation, -step);
        break;
    case Info::KeyRight:
        hsv.saturation = Moved(hsv.saturation, step);
        break;
    case Info::KeyHome:
        hsv.saturation = 0;
        break;
    case Info::KeyEnd:
        hsv.saturation = 1;
        break;
    case Info::KeyDown:
        hsv.value = Moved(hsv.value, -step);
        break;
    case Info::KeyUp:
        hsv.value = Moved(hsv.value, step);
        break;
    case Info::KeyPageDown:
        hsv.value = Moved(hsv.value, -LargePart);
        break;
    case Info::KeyPageUp:
        hsv.value = Moved(hsv.value, LargePart);
        break;
    default:
        return false;
    }
    ChangeByKey(hsv, _color.alpha());
    return true;
}

bool ColorPickerWidget::KeyInSlider(int p_key, bool p_isLarge) {
    bool const isHue = _part == Part::Hue;
    double const large = isHue ? LargeAngle : LargeAlpha;
    double const small = isHue ? SmallAngle : SmallAlpha;
    double const step = p_isLarge ? large : small;
    double value = isHue ? _hsv.hue / FullCircle : _color.alpha() / FullAlpha;
    switch (p_key) {
    case Info::KeyLeft:
    case Info::KeyDown:
        value = Moved(value, -step);
        break;
    case Info::KeyRight:
    case Info::KeyUp:
        value = Moved(value, step);
        break;
    case Info::KeyPageDown:
        value = Moved(value, -large);
        break;
    case Info::KeyPageUp:
        value = Moved(value, large);
        break;
    case Info::KeyHome:
        value = 0;
        break;
    case Info::KeyEnd:
        value = 1;
        break;
    default:
        return false;
    }
    HsvColor const hsv{isHue ? value * FullCircle : _hsv.hue, _hsv.saturation, _hsv.value};
    ChangeByKey(hsv, isHue ? _color.alpha() : static_cast<int>(std::lround(value * FullAlpha)));
    return true;
}

bool ColorPickerWidget::KeyInRecent(int p_key) {
    if (_recent.empty())
        return false;
    std::size_t const last = _recent.size() - 1;
    _recentAt = std::min(_recentAt, last);
    switch (p_key) {
    case Info::KeyLeft:
        _recentAt -= _recentAt > 0 ? 1 : 0;
        return true;
    case Info::KeyRight:
        _recentAt += _recentAt < last ? 1 : 0;
        return true;
    case Info::KeyHome:
        _recentAt = 0;
        return true;
    case Info::KeyEnd:
        _recentAt = last;
        return true;
    case Info::KeyReturn:
    case Info::KeySpace:
        Pick(QColor(_recent[_recentAt]));
        return true;
    default:
        return false;
    }
}

bool ColorPickerWidget::KeyInText(EventInformation& p_event) {
    if (p_event.key == Info::KeyReturn) {
        EnterText();
        return true;
    }
    if (p_event.key == Info::KeyEscape && _text.Text() != WrittenColor()) {
        ShowColorAsText();
        return true;
    }
    return _text.Key(p_event);
}

void ColorPickerWidget::EnterText() {
    std::optional<QColor> const color = ColorText::Read(_text.Text());
    _isTextRefused = !color;
    if (color)
        Pick(*color);
}

void ColorPickerWidget::LeaveText() {
    EnterText();
    if (_isTextRefused)
        ShowColorAsText();
}

std::wstring ColorPickerWidget::WrittenColor() const {
    return ColorText::Write(_isAlphaShown ? _color : OverlayShapes::WithAlpha(_color, 255));
}

void ColorPickerWidget::ShowColorAsText() {
    _isTextRefused = false;
    _text.SetText(WrittenColor());
}

ColorPickerPainter::Content ColorPickerWidget::Shown(float p_opacity) const {
    ColorPickerPainter::Content content{
        _hsv, _color, _former, _recent, std::nullopt, _recentAt, _isTextRefused, !Has(FlagDisabled), p_opacity};
    if (Has(FlagFocus) && _showsFocus && _part != Part::Text)
        content.focused = _part;
    return content;
}

void ColorPickerWidget::Draw(DrawContext const& p_context) {
    SetPixelRatio(OverlayShapes::PixelRatio(p_context));
    if (!p_context.Capabilities().AnimationsOn())
        _opacity.Jump();
    if (!_opacity.IsComplete())
        p_context.Dispatcher().RequestRedraw(TextureWidget::RedrawMilliseconds);
    float const opacity = _opacity.Value();
    if (opacity <= 0 || _layout.panel.IsEmpty())
        return;
    ColorPickerPainter::Content const content = Shown(opacity);
    _painter.Draw(p_context, _layout, content);
    _text.Draw(p_context);
    _painter.DrawMarks(p_context, _layout, content);
}

} // namespace Qor::Chart::Render
