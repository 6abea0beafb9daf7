#pragma once

#include "render/Export.h"

#include <cstdint>
#include <string>

namespace Qor::Chart::Render {

/// A figure as people read it at a glance, with three digits or so: "12.3" and "k", "48.2" and "MB", "0.42" and "ms".
/// The decimal sign is a point whatever the locale.
struct QOR_VIS_API CompactNumber {
    std::string digits; ///< with their decimal point; or a word
    std::string unit; ///< what they are multiplied with and measured in; may be empty

    /// 0 to 999, then in k, M, G, T and so on, powers of 1000.
    static CompactNumber Count(std::uint64_t p_count);
    /// In B, kB, MB and so on, powers of 1000.
    static CompactNumber Bytes(std::uint64_t p_bytes);
    /// In hundredths of a millisecond, from a second on in seconds. A value that is negative or not finite is a dash.
    static CompactNumber Milliseconds(double p_milliseconds);
    /// Frames a second, in tenths below 100. Without any the word is "idle".
    static CompactNumber Rate(double p_perSecond);
    /// What is not known.
    static CompactNumber Dash();

    bool operator==(CompactNumber const&) const = default;
};

} // namespace Qor::Chart::Render
