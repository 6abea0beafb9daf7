#include "framework/core/TimeStamp.h"

#include <atomic>
#include <ostream>

namespace Qor::Chart::Core {

TimeStamp TimeStamp::Now() noexcept {
    static std::atomic<std::uint64_t> last{0};
    TimeStamp stamp;
    stamp._value = last.fetch_add(1, std::memory_order_relaxed) + 1;
    return stamp;
}

std::ostream& operator<<(std::ostream& p_stream, TimeStamp p_stamp) {
    return p_stream << p_stamp.Value();
}

} // namespace Qor::Chart::Core
