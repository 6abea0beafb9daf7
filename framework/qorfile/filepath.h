#pragma once

#include "framework/Export.h"

#include <compare>
#include <iosfwd>
#include <string>
#include <string_view>

namespace qorfile {

/// The path of a file or a folder, in UTF-8, with "/" between its parts. A plain value: nothing is looked up on disk
/// except by absolute().
class QOR_FRAMEWORK_API filepath {
public:
    filepath() = default;
    filepath(std::string p_path);
    filepath(std::string_view p_path);
    filepath(char const* p_path);

    std::string const& string() const noexcept { return _path; }
    char const* c_str() const noexcept { return _path.c_str(); }
    bool empty() const noexcept { return _path.empty(); }

    /// The last part, with extension.
    std::string filename() const;
    /// The last part without its extension.
    std::string stem() const;
    /// The extension with its dot, as written; empty when there is none.
    std::string extension() const;
    /// The folder that holds the last part; empty for a path of one part.
    filepath parent() const;
    bool is_absolute() const;
    /// The path from the root of the file system, without "." and ".."; relative ones start at the working directory.
    /// The path unchanged when the working directory cannot be told.
    filepath absolute() const;
    /// The same path with another extension; a missing dot is added, an empty one takes the extension away.
    filepath with_extension(std::string_view p_extension) const;

    /// Appends a part; an absolute one replaces the path.
    friend QOR_FRAMEWORK_API filepath operator/(filepath const& p_folder, filepath const& p_part);

    bool operator==(filepath const&) const = default;
    std::strong_ordering operator<=>(filepath const&) const = default;

private:
    std::string _path;
};

/// Writes the path as it is.
QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, filepath const& p_path);

} // namespace qorfile
