#pragma once

#include "framework/Export.h"
#include "framework/library/Pattern.h"
#include "framework/ogl/Agl.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Color4f.h"
#include "framework/types/Viewport.h"
#include "framework/utility/Unscoped.h"

#include <QColor>

namespace Qor::Chart::Library {

/// Draws frames: around a rectangle in pixels, with the rectangle filled if a second colour is given, and around a
/// bounding box in object coordinates, as its twelve edges. A plain value; draw it as often as you like. Lighting and
/// textures don't matter; depth test, stencil test and scissor box are the caller's; all state is brought back. Works in
/// a hit scope as in a picture.
///
///     Library::Box const frame(Qt::darkGray, titleColor);
///     frame(context.AglHandle(), titleBar);
class QOR_FRAMEWORK_API Box {
public:
    /// A colour that is invalid or has alpha 0 draws nothing.
    explicit Box(QColor const& p_outline, QColor const& p_fill = {});

    /// Pixels; 1 at first. Anything but a positive number is reported and changes nothing.
    void SetLineWidth(float p_pixels);
    float LineWidth() const { return _lineWidth; }

    /// Draws the rectangle in pixels as after `Agl::Ortho2D`, at a depth between -1 (far) and 1 (near). The frame goes
    /// through the pixels x and x + width, y and y + height: a rectangle of (0, 0, width - 1, height - 1) frames a whole
    /// viewport from within. A wider frame grows inwards. The filling covers everything inside the frame. Negative sides
    /// are turned around; what is not finite draws nothing.
    void Draw(Ogl::Agl& p_agl, Types::Viewport<0> const& p_rectangle, double p_depth = 0) const;
    void operator()(
        Utility::Unscoped<Ogl::Agl> const& p_agl, Types::Viewport<0> const& p_rectangle, double p_depth = 0) const;

    /// Draws the twelve edges, and the six sides if there is a filling; the far ones first, so that all shine through.
    /// Boxes with an outline alone that follow each other reach the device as one draw. An undefined box draws nothing;
    /// a flat one is a rectangle or a line; one without any extent draws nothing.
    void Draw(Ogl::Agl& p_agl, Types::BoundingBox_Base<double> const& p_box) const;
    void operator()(Utility::Unscoped<Ogl::Agl> const& p_agl, Types::BoundingBox_Base<double> const& p_box) const;

protected:
    /// Fills through a pattern, which must outlive this.
    Box(QColor const& p_outline, QColor const& p_fill, Pattern::Stipple const* p_pattern);

private:
    void SetFillState(Ogl::Agl& p_agl) const;

    Types::Color4f _outline;
    Types::Color4f _fill;
    Pattern::Stipple const* _pattern = nullptr;
    float _lineWidth = 1;
};

} // namespace Qor::Chart::Library
