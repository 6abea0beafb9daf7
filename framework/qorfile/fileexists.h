#pragma once

#include "framework/Export.h"

namespace qorfile {

class filepath;

/// True when the path leads to something that can be read as a file: a folder, a dangling link, an empty path or one
/// that may not be looked at are no files.
QOR_FRAMEWORK_API bool fileexists(filepath const& p_path) noexcept;

/// True when the path leads to a folder.
QOR_FRAMEWORK_API bool folderexists(filepath const& p_path) noexcept;

} // namespace qorfile
