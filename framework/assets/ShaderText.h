#pragma once

#include <string>

namespace Qor::Chart::Assets {

/// The two pieces of a shader as text, under the name that messages give them.
struct ShaderText {
    std::string name;
    std::string vertex;
    std::string fragment;
};

} // namespace Qor::Chart::Assets
