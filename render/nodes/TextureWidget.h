#pragma once

#include "framework/library/Texture.h"
#include "framework/types/Pos.h"
#include "framework/types/Viewport.h"
#include "render/Export.h"
#include "render/anim/Blender.h"

#include <QColor>

#include <cstdint>
#include <memory>

namespace Qor::Chart::Render {

class DrawContext;

/// An image on the screen that can be pointed at: a button of a title bar or of a toolbar. It is no node: a node owns it,
/// gives it a place, sets its flags, draws it in an overlay pass and asks it whether it is hit. Places are in the pixels in
/// which the owner draws, the origin in the lower left corner.
class QOR_VIS_API TextureWidget {
public:
    enum Flag : std::uint32_t {
        FlagHover = 0x4, ///< the pointer is over it: it stands on a lit background
        FlagAnimated = 0x10, ///< it fades in and out instead of coming and going at once
        FlagShown = 0x40,
    };

    /// Where its colours come from.
    enum class TextureMode {
        Image = 0, ///< the image as it is
        Tinted = 1, ///< the image multiplied with the widget's colour: for white signs
    };

    /// In how many milliseconds the next frame of a running animation is wanted.
    static constexpr int RedrawMilliseconds = 41;
    /// How long a widget fades, and in how many steps; what slides open around it takes the same.
    static TimedCompletionCriteria FadeCriteria() { return {300, 10}; }

    /// Not shown at first. Without a texture only the background of the hovered widget is drawn.
    explicit TextureWidget(std::shared_ptr<Library::Texture const> p_texture);

    /// The place and the size of the widget; empty at first.
    void SetRectangle(Types::Viewport<0> const& p_rectangle) noexcept { _rectangle = p_rectangle; }
    Types::Viewport<0> const& Rectangle() const noexcept { return _rectangle; }

    void Set(Flag p_flag, bool p_on);
    bool Has(Flag p_flag) const noexcept { return (_flags & p_flag) != 0; }

    void SetTextureMode(TextureMode p_mode) noexcept { _mode = p_mode; }
    TextureMode GetTextureMode() const noexcept { return _mode; }
    /// Black at first.
    void SetColor(QColor const& p_color) { _color = p_color; }
    QColor const& Color() const noexcept { return _color; }

    /// True inside the rectangle, whether or not the widget is shown: a place is known before it opens under the pointer.
    bool IsHit(Types::Pos const& p_pos) const;

    /// Draws the widget in pixels as after `Agl::Ortho2D`, as far as it is shown, and asks for another frame while it
    /// fades. The depth test is the caller's.
    void Draw(DrawContext const& p_context);

private:
    std::shared_ptr<Library::Texture const> _texture;
    Types::Viewport<0> _rectangle;
    std::uint32_t _flags = 0;
    TextureMode _mode = TextureMode::Image;
    QColor _color{0, 0, 0};
    FloatAnimation _opacity;
};

} // namespace Qor::Chart::Render
