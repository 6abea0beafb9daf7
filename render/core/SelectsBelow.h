#pragma once

#include "render/Export.h"

namespace Qor::Chart::Render {

/// Marks the visual nodes that have no look to show a selection with, such as groups: when their model node is
/// selected, the nodes closest below them that have one show it. All others are told by `Vis::DoSelect`.
class QOR_VIS_API SelectsBelow {
protected:
    SelectsBelow() = default;
};

} // namespace Qor::Chart::Render
