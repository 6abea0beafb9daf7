#pragma once

#include "framework/Export.h"
#include "framework/library/Box.h"

namespace Qor::Chart::Library {

/// A box that is filled, evenly or hatched: rubber bands, marks over a picture. Translucent colours let through what lies
/// behind.
class QOR_FRAMEWORK_API FilledBox : public Box {
public:
    enum class Mode {
        Solid = 0,
        Hatched = 1, ///< diagonal stripes, which stay in place in the window while the box moves
    };

    /// A colour that is invalid or has alpha 0 draws nothing. A value that is no mode is reported and counts as Solid.
    FilledBox(QColor const& p_outline, QColor const& p_fill, Mode p_mode = Mode::Solid);
};

} // namespace Qor::Chart::Library
