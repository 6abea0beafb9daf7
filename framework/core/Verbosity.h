#pragma once

namespace Qor::Chart::Core {

/// How much a node says of itself when it is dumped.
enum class Verbosity {
    Quiet, ///< type, name and identifier
    Normal, ///< and its own state
    Verbose, ///< and everything below it
};

} // namespace Qor::Chart::Core
