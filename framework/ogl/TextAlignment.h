#pragma once

namespace Qor::Chart::Ogl {

/// Where the lines of a text lie between the left and the right side of its rectangle: the sides that they keep to, as
/// bits; between both sides they are centred.
enum class HorizontalAlignment : int {
    Start = 0, ///< where reading begins: on the left, for right-to-left text on the right
    Left = 1,
    Right = 2,
    Center = 3,
};

/// Where a text lies between the lower and the upper side of its rectangle: the sides that it keeps to, as bits; between
/// both sides it is centred.
enum class VerticalAlignment : int {
    Bottom = 1,
    Top = 2,
    Center = 3,
};

} // namespace Qor::Chart::Ogl
