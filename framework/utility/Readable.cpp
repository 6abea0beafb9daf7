#include "framework/utility/Readable.h"

#include <algorithm>
#include <cstddef>

namespace Qor::Chart::Utility {

std::string Readable(std::string p_text) {
    constexpr std::size_t longest = 2000;
    constexpr std::size_t kept = 600; // at each end
    std::replace(p_text.begin(), p_text.end(), '\0', '?');
    if (p_text.size() <= longest) {
        return p_text;
    }
    auto const isWithinCharacter = [&](std::size_t p_place) {
        return (static_cast<unsigned char>(p_text[p_place]) & 0xC0U) == 0x80U;
    };
    std::size_t first = kept;
    std::size_t last = p_text.size() - kept;
    while (first > 0 && isWithinCharacter(first)) {
        --first;
    }
    while (last < p_text.size() && isWithinCharacter(last)) {
        ++last;
    }
    return p_text.replace(first, last - first, "...");
}

} // namespace Qor::Chart::Utility
