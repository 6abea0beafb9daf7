#pragma once

#include "framework/library/Texture.h"
#include "framework/types/Schema.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"

#include <QColor>

namespace Qor::Chart::Render {

class DrawContext;

/// Small pieces that things in front of a scene are put together of, in pixels as after `Agl::Ortho2D`. All graphics
/// state is brought back.
struct QOR_VIS_API OverlayShapes {
    using Rectangle = Types::Viewport<0>;

    /// A frame along the inside of a rectangle, and what is in it; a colour that is invalid or has alpha 0 draws
    /// nothing.
    /// @param p_lineWidth  of the frame, in pixels
    static void DrawFrame(DrawContext const& p_context, Rectangle const& p_place, QColor const& p_outline,
        QColor const& p_fill, float p_lineWidth = 1);

    /// How a button is.
    struct ButtonState {
        bool isEnabled = true;
        bool isChecked = false;
        bool isHovered = false; ///< the pointer is over it
        float pressed = 0; ///< from 0, let go, to 1, pressed down
        float opacity = 1;
    };
    /// What lies below the sign of a button, in the colours of the context's schema; nothing for one that is at rest.
    static void DrawButtonGround(DrawContext const& p_context, Rectangle const& p_place, ButtonState const& p_state);
    /// How much is left of an image that is no sign on a button that is disabled, as an alpha.
    static constexpr int DisabledImageAlpha = 90;

    /// The background of the scene, or black or white where the schema's texts are hard to read on that.
    static QColor ReadableGround(Types::Schema const& p_schema);

    /// The colour with another alpha, 0 to 255.
    static QColor WithAlpha(QColor p_color, int p_alpha);
    /// The colour with its alpha multiplied.
    static QColor Faded(QColor p_color, float p_opacity);

    /// The rectangle with its sides moved inwards; a length never becomes negative.
    static Rectangle Inset(Rectangle const& p_place, float p_x, float p_y);
    /// The part of a rectangle that an image takes when it is as large as fits, in its own proportions.
    static Rectangle Fitted(Library::Texture const& p_texture, Rectangle const& p_place);

    /// The pixel ratio of the context's window, 1 when that is no positive number.
    static float PixelRatio(DrawContext const& p_context);
};

} // namespace Qor::Chart::Render
