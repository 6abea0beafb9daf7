#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <typeinfo>

namespace Qor::Chart::Core {

/// Numbers the classes of nodes, from 1 on, in the order in which they are first asked for.
class QOR_FRAMEWORK_API TypeNumbers {
public:
    /// The number of a class; a new class is registered. Throws `std::overflow_error` after 65,535 classes.
    static std::uint16_t NumberOf(std::type_info const& p_type);
};

} // namespace Qor::Chart::Core
