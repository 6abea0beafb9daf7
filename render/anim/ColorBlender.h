#pragma once

#include "render/Export.h"

#include <QColor>

namespace Qor::Chart::Render {

/// Gives the colours on the way from one to another, each of the four channels on its own.
class QOR_VIS_API ColorBlender {
public:
    /// The colour p_step of p_of steps on the way; a channel never leaves its range.
    QColor operator()(QColor const& p_from, QColor const& p_to, unsigned p_step, unsigned p_of) const;
};

} // namespace Qor::Chart::Render
