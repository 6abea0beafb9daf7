#pragma once

namespace Qor::Chart::Render {

/// The six passes that draw or pick. The codes also serve as kinds of change when a node takes up or gives up such a
/// pass.
enum CallbackType : int {
    CallbackHit = 1001,
    CallbackHitOverlay = 1002,
    CallbackDraw = 1003,
    CallbackDrawOverlay = 1004,
    CallbackHighlight = 1005,
    CallbackHighlightOverlay = 1006,
};

} // namespace Qor::Chart::Render
