#pragma once

#include "framework/Export.h"

#include <compare>
#include <cstdint>
#include <iosfwd>

namespace Qor::Chart::Core {

/// When something last changed, as a count of changes in this process. A default stamp means "never"; no touched stamp
/// ever equals it, and no two touches give the same stamp.
class QOR_FRAMEWORK_API TimeStamp {
public:
    constexpr TimeStamp() noexcept = default;

    /// A stamp that is later than every stamp given out before.
    static TimeStamp Now() noexcept;

    /// Makes this stamp later than every stamp given out before.
    void Touch() noexcept { *this = Now(); }

    constexpr std::uint64_t Value() const noexcept { return _value; }

    constexpr auto operator<=>(TimeStamp const&) const noexcept = default;

private:
    std::uint64_t _value = 0;
};

QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, TimeStamp p_stamp);

} // namespace Qor::Chart::Core
