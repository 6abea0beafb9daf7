#pragma once

#include "framework/Export.h"

#include <QColor>

#include <iosfwd>
#include <string>

namespace Qor::Chart::Types {

/// The look that a whole scene shares: colours and sizes that nodes use where the model says nothing of its own. A
/// plain value; nodes may hand a changed copy to their subtree. Lengths are in pixels.
struct QOR_FRAMEWORK_API Schema {
    int titleBarHeight = 20;
    int rubberBandMargin = 1; ///< by how much a selection rectangle is drawn larger than what it selects
    int fontSize = 10; ///< height of texts that name no size
    float lineWidth = 1.0F; ///< width of lines that name none
    float pointSize = 3.0F; ///< diameter of points that name none
    std::string fontFamily; ///< UTF-8; empty takes the system's default font

    QColor clearColor{255, 255, 255}; ///< the background behind everything
    QColor titleColor{198, 208, 220}; ///< title bars
    QColor highlightColor{255, 160, 0}; ///< what the pointer is over, grips and rubber bands
    QColor selectionColor{0, 110, 220}; ///< what the user has selected
    QColor textColor{0, 0, 0}; ///< labels and titles
    QColor foregroundColor{60, 60, 60}; ///< lines, axes and symbols that name no colour
    QColor gridColor{200, 200, 200}; ///< grid lines
    QColor borderColor{128, 128, 128}; ///< frames
    QColor disabledColor{160, 160, 160}; ///< what cannot be used now

    bool operator==(Schema const&) const = default;

    /// The same sizes with light texts and lines on a dark background.
    static Schema Dark();
};

/// Writes every field as "name: value", separated by commas; colours as "#aarrggbb".
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, Schema const& p_schema);

} // namespace Qor::Chart::Types
