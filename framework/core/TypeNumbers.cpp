#include "framework/core/TypeNumbers.h"

#include <limits>
#include <mutex>
#include <stdexcept>
#include <typeindex>
#include <unordered_map>

namespace Qor::Chart::Core {

std::uint16_t TypeNumbers::NumberOf(std::type_info const& p_type) {
    static std::mutex mutex;
    static std::unordered_map<std::type_index, std::uint16_t> numbers;
    std::lock_guard const lock(mutex);
    if (auto const known = numbers.find(p_type); known != numbers.end())
        return known->second;
    if (numbers.size() == std::numeric_limits<std::uint16_t>::max())
        throw std::overflow_error("There are more than 65,535 classes of nodes.");
    return numbers.emplace(p_type, static_cast<std::uint16_t>(numbers.size() + 1)).first->second;
}

} // namespace Qor::Chart::Core
