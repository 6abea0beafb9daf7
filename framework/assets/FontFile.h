#pragma once

#include "framework/qorfile/filepath.h"

namespace Qor::Chart::Assets {

/// One font: a file, and which of the fonts in it.
struct FontFile {
    qorfile::filepath file;
    int index = 0;

    bool operator==(FontFile const&) const = default;
};

} // namespace Qor::Chart::Assets
