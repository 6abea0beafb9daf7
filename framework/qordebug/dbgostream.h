#pragma once

#include "framework/Export.h"
#include "framework/qordebug/severity.h"

#include <ostream>
#include <string_view>
#include <utility>

namespace qordebug {

class logger;

/// A stream into one channel of a logger. What is written is collected; std::endl, std::flush or the end of the stream
/// sends it as one message. The stream of a disabled channel formats nothing and costs no allocation; test it with
/// `if (out)` before computing what would be written.
class QOR_FRAMEWORK_API dbgostream {
public:
    /// A disabled stream.
    dbgostream() noexcept = default;
    /// A stream that sends to p_logger, which must outlive it. When there is no memory for it, it is disabled.
    dbgostream(logger& p_logger, severity p_severity, std::string_view p_channel) noexcept;
    /// Leaves p_other disabled.
    dbgostream(dbgostream&& p_other) noexcept : _stream(std::exchange(p_other._stream, nullptr)) {}
    dbgostream& operator=(dbgostream&& p_other) noexcept {
        std::swap(_stream, p_other._stream);
        return *this;
    }
    ~dbgostream() {
        if (_stream) {
            finish();
        }
    }

    explicit operator bool() const noexcept { return _stream != nullptr; }

    template <class T>
    dbgostream& operator<<(T const& p_value) {
        if (_stream) {
            *_stream << p_value;
        }
        return *this;
    }
    dbgostream& operator<<(std::ostream& (*p_manipulator)(std::ostream&)) {
        if (_stream) {
            p_manipulator(*_stream);
        }
        return *this;
    }

    /// The standard stream behind it, for functions that print to one; a stream that discards everything when disabled.
    std::ostream& stream() const noexcept;

private:
    void finish() noexcept;

    std::ostream* _stream = nullptr;
};

} // namespace qordebug
