#include "framework/utility/TypeInfo.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <ostream>

namespace Qor::Chart::Utility {

std::string TypeInfo::Name() const {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> const name(
        abi::__cxa_demangle(_info->name(), nullptr, nullptr, &status), &std::free);
    return name ? name.get() : _info->name();
}

std::ostream& operator<<(std::ostream& p_stream, TypeInfo const& p_type) {
    return p_stream << p_type.Name();
}

} // namespace Qor::Chart::Utility
