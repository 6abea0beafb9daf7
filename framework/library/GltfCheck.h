#pragma once

#include <string>

namespace Qor::Chart::Library {

/// Looks whether the views into the buffers of a glTF file begin and end where memory can be, before the importer
/// library adds up their numbers, which overflow for some.
class GltfCheck {
public:
    /// True for the name of such a file, in capitals or not.
    static bool IsGltf(std::string const& p_path);
    /// What is wrong with the file, binary or not, as a phrase; empty when nothing is. Of a binary one the part that
    /// describes the rest is read alone.
    static std::string Examine(std::string const& p_path);
};

} // namespace Qor::Chart::Library
