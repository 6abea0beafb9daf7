#pragma once

#include "framework/Export.h"

#include <QImage>

#include <string>
#include <string_view>

namespace Qor::Chart::Assets {

/// The images that come with the library: white signs on nothing, to be coloured by whoever draws them. They are PopOut,
/// Detach, Ortho and Perspective.
class QOR_FRAMEWORK_API BuiltInImages {
public:
    /// The path under which an image is known; empty when there is none of that name.
    static std::string PathOf(std::string_view p_name);
    /// True for a path that `PathOf` gives.
    static bool IsBuiltIn(std::string_view p_path);
    /// The image, 64 by 64 pixels; null for a path of none.
    static QImage Draw(std::string_view p_path);
};

} // namespace Qor::Chart::Assets
