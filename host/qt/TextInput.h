#pragma once

#include "host/WindowPixels.h"
#include "host/qt/Export.h"
#include "render/events/TextInputHost.h"

#include <QVariant>
#include <Qt>

#include <functional>

namespace Qor::Chart::Host {

/// What nodes that take text need of the toolkit: its clipboard, and its input method, which is asked to compose text
/// only while a node wants that.
class QOR_HOSTQT_API TextInput : public Render::TextInputHost {
public:
    /// @param p_pixels  of the surface; must outlive it
    /// @param p_enable  called when composed text is wanted from now on, or no longer; may be empty
    TextInput(WindowPixels const& p_pixels, std::function<void(bool)> p_enable);
    ~TextInput() override;

    std::wstring ClipboardText() override;
    void SetClipboardText(std::wstring const& p_text) override;
    void BeginTextInput(Types::Viewport<0> const& p_caret) override;
    void EndTextInput() override;
    int CaretFlashTime() const override;

    bool IsActive() const noexcept { return _isActive; }
    /// What the input method asks of the surface; invalid for what the toolkit knows itself.
    QVariant Query(::Qt::InputMethodQuery p_query) const;

private:
    WindowPixels const& _pixels;
    std::function<void(bool)> _enable;
    Types::Viewport<0> _caret;
    bool _isActive = false;
};

} // namespace Qor::Chart::Host
