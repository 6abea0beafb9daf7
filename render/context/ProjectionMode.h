#pragma once

namespace Qor::Chart::Render {

/// How the enclosing viewport projects its scene; the numbers are those of the model's panes.
enum class ProjectionMode {
    Orthographic = 0,
    Perspective = 1,
};

} // namespace Qor::Chart::Render
