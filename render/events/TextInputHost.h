#pragma once

#include "framework/types/Viewport.h"
#include "render/Export.h"

#include <string>

namespace Qor::Chart::Render {

/// What a node that takes text needs of the window: the clipboard, and an input method for scripts that are composed.
/// It lives until those who have the focus were told that they lost it.
class QOR_VIS_API TextInputHost {
public:
    virtual ~TextInputHost();

    /// Empty when the clipboard holds no text.
    virtual std::wstring ClipboardText() = 0;
    virtual void SetClipboardText(std::wstring const& p_text) = 0;

    /// Composed text is wanted from now on, or at another place: the input method shows its candidates beside the
    /// caret.
    /// @param p_caret  in framebuffer pixels of the window, origin in the lower left corner
    virtual void BeginTextInput(Types::Viewport<0> const& p_caret) = 0;
    /// No composed text is wanted any more.
    virtual void EndTextInput() = 0;

    /// In how many milliseconds a caret comes and goes once, as the user likes it; 0 for one that stays.
    virtual int CaretFlashTime() const;

protected:
    TextInputHost() = default;
    TextInputHost(TextInputHost const&) = default;
    TextInputHost& operator=(TextInputHost const&) = default;
};

} // namespace Qor::Chart::Render
