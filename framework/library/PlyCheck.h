#pragma once

#include <string>
#include <string_view>

namespace Qor::Chart::Library {

/// Looks whether a file in the PLY format has all that its header promises, before the importer library, which would take
/// any promise for granted, reads it.
class PlyCheck {
public:
    /// True for what begins as a PLY file does.
    static bool IsPly(std::string_view p_content);
    /// What is wrong with the content, as a phrase; empty when nothing is.
    static std::string Examine(std::string_view p_content);
};

} // namespace Qor::Chart::Library
