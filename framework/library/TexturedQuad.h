#pragma once

#include "framework/Export.h"
#include "framework/library/Texture.h"
#include "framework/ogl/Agl.h"
#include "framework/types/Color4f.h"
#include "framework/types/Viewport.h"
#include "framework/utility/Unscoped.h"

#include <QColor>

namespace Qor::Chart::Library {

/// A rectangle that shows a texture, in the plane z = depth: pixels after `Agl::Ortho2D`, object coordinates otherwise. A
/// plain value. Transparent parts of the image let through what lies behind; lighting, culling and stipple don't matter;
/// depth test, stencil test and scissor box are the caller's; all state is brought back.
class QOR_FRAMEWORK_API TexturedQuad {
public:
    /// A rectangle with its lower left corner at the origin.
    TexturedQuad(double p_width, double p_height);
    explicit TexturedQuad(Types::Viewport<0> const& p_rectangle);

    TexturedQuad& SetPosition(double p_x, double p_y);
    /// 0 at first.
    TexturedQuad& SetDepth(double p_depth);
    /// Multiplied with the image; opaque white at first. Colours white signs; its alpha fades any image.
    TexturedQuad& SetColor(QColor const& p_color);
    /// The part of the image to be shown, in texture coordinates: (0, 0) is its lower left corner, (1, 1) its upper right.
    /// The whole at first.
    TexturedQuad& SetPart(double p_left, double p_bottom, double p_right, double p_top);

    double Width() const { return _width; }
    double Height() const { return _height; }

    /// Draws the rectangle, unless the texture is not valid or a side is not a positive number.
    void operator()(Utility::Unscoped<Ogl::Agl> const& p_agl, Texture const& p_texture) const;
    void Draw(Ogl::Agl& p_agl, Texture const& p_texture) const;

private:
    struct Corner {
        double s;
        double t;
    };

    double _x = 0;
    double _y = 0;
    double _width;
    double _height;
    double _depth = 0;
    Types::Color4f _color{1, 1, 1, 1};
    Corner _lowerLeft{0, 0};
    Corner _upperRight{1, 1};
};

} // namespace Qor::Chart::Library
