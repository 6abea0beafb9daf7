#include "host/qt/TextInput.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethod>
#include <QRectF>
#include <QStyleHints>

#include <utility>

namespace Qor::Chart::Host {

TextInput::TextInput(WindowPixels const& p_pixels, std::function<void(bool)> p_enable)
    : _pixels(p_pixels), _enable(std::move(p_enable)) {}

TextInput::~TextInput() = default;

std::wstring TextInput::ClipboardText() {
    return QGuiApplication::clipboard()->text().toStdWString();
}

void TextInput::SetClipboardText(std::wstring const& p_text) {
    QGuiApplication::clipboard()->setText(QString::fromStdWString(p_text));
}

void TextInput::BeginTextInput(Types::Viewport<0> const& p_caret) {
    _caret = p_caret;
    bool const isNew = !std::exchange(_isActive, true);
    if (isNew && _enable)
        _enable(true);
    QGuiApplication::inputMethod()->update(::Qt::ImCursorRectangle | ::Qt::ImEnabled);
}

void TextInput::EndTextInput() {
    if (!std::exchange(_isActive, false))
        return;
    QGuiApplication::inputMethod()->reset();
    if (_enable)
        _enable(false);
    QGuiApplication::inputMethod()->update(::Qt::ImEnabled);
}

int TextInput::CaretFlashTime() const {
    return QGuiApplication::styleHints()->cursorFlashTime();
}

QVariant TextInput::Query(::Qt::InputMethodQuery p_query) const {
    if (p_query == ::Qt::ImEnabled)
        return _isActive;
    if (p_query != ::Qt::ImCursorRectangle || !_isActive)
        return {};
    double const ratio = _pixels.ratio;
    double const top = _pixels.framebuffer.height - static_cast<double>(_caret.Top());
    return QRectF(_caret.x / ratio, top / ratio, _caret.width / ratio, _caret.height / ratio);
}

} // namespace Qor::Chart::Host
