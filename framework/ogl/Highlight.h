#pragma once

#include "framework/Export.h"

#include <QColor>

namespace Qor::Chart::Ogl {

/// How highlighted objects look. The host owns one, changes it as it likes and shares it with the contexts that it draws
/// with; nodes read it in their highlight pass.
class QOR_FRAMEWORK_API Highlight {
public:
    Highlight() = default;
    /// An invalid colour is replaced by the default one.
    explicit Highlight(QColor const& p_color, float p_lineWidth = 2.0F);

    /// The colour of the highlight, its alpha being the strength at full pulse.
    QColor const& Color() const { return _color; }
    void SetColor(QColor const& p_color);

    /// Width of outlines, in pixels; at least 1.
    float LineWidth() const { return _lineWidth; }
    void SetLineWidth(float p_pixels);

    /// The colour of an object that is highlighted by p_amount, from 0 (its own colour) to 1 (highlighted in full, as far
    /// as the alpha of the highlight colour goes). The alpha of the object is kept.
    QColor Blend(QColor const& p_object, float p_amount) const;

private:
    QColor _color{255, 176, 32, 204};
    float _lineWidth = 2.0F;
};

} // namespace Qor::Chart::Ogl
