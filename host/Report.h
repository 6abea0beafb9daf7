#pragma once

#include <cstdint>
#include <string>

namespace Qor::Chart::Host {

/// Something that went wrong in a node, however often it did.
struct Report {
    enum class Kind {
        Warning, ///< a node says that something is odd, or that it needs the user
        Exception, ///< a hook of a node threw
    };

    Kind kind = Kind::Warning;
    int level = 2; ///< 1 is worth knowing, 2 keeps the node out of the picture until it is changed
    std::string text; ///< the node and what happened
    std::string location; ///< the function that noticed, and the line
    std::uint64_t count = 0; ///< how often it was reported
};

} // namespace Qor::Chart::Host
