#pragma once

#include "render/Export.h"

#include <functional>

namespace Qor::Chart::Render {

class EventInformation;

/// When a tool tip is to be seen: some time after the pointer has come to rest on something, until it leaves that or
/// something is done with it. What the tip says, and drawing it, is its owner's; `ToolbarPainter` has the look.
class QOR_VIS_API ToolTip {
public:
    /// How long the pointer rests until the tip comes.
    static constexpr int RestMilliseconds = 600;

    bool IsShown() const noexcept { return _isShown; }

    /// The pointer has come to something. The tip of what it was on before goes.
    /// @param p_event  of the node that this is a member of
    /// @param p_shown  called when the tip is to be seen from now on, to have the node drawn again
    void Await(EventInformation& p_event, std::function<void()> p_shown);
    /// The tip goes, and does not come before the next `Await`.
    void Hide() noexcept;
    /// The same, and the window is drawn again if the tip was to be seen.
    void Hide(EventInformation& p_event);

private:
    bool _isShown = false;
    unsigned _number = 0; ///< counted up when the tip that is waited for is no longer wanted
};

} // namespace Qor::Chart::Render
