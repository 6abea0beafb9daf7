#pragma once

#include "framework/assets/FontFile.h"

#include <string>
#include <vector>

namespace Qor::Chart::Assets {

/// The fonts that are installed on this machine.
class InstalledFonts {
public:
    /// The family of that name, or what comes nearest to it, followed by fonts that have the characters it lacks; an empty
    /// name stands for the default family. Only fonts with outlines. Empty, and reported to the log, when there are none.
    static std::vector<FontFile> Find(std::string const& p_family);
};

} // namespace Qor::Chart::Assets
