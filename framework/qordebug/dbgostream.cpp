#include "framework/qordebug/dbgostream.h"

#include "framework/qordebug/logger.h"

#include <sstream>
#include <string>

namespace qordebug {

namespace {

/// Collects text and sends it to the logger when the stream is flushed.
class linebuffer : public std::stringbuf {
public:
    linebuffer(logger& p_logger, severity p_severity, std::string_view p_channel)
        : std::stringbuf(std::ios_base::out), _logger(p_logger), _severity(p_severity), _channel(p_channel) {}

    void send() {
        std::string_view text = view();
        if (text.empty()) {
            return;
        }
        if (text.back() == '\n') {
            text.remove_suffix(1);
        }
        _logger.write(_severity, _channel, text);
        str(std::string());
    }

protected:
    int sync() override {
        send();
        return 0;
    }

private:
    logger& _logger;
    severity const _severity;
    std::string const _channel;
};

class linestream : private linebuffer, public std::ostream {
public:
    linestream(logger& p_logger, severity p_severity, std::string_view p_channel)
        : linebuffer(p_logger, p_severity, p_channel), std::ostream(static_cast<linebuffer*>(this)) {}
    using linebuffer::send;
};

} // namespace

dbgostream::dbgostream(logger& p_logger, severity p_severity, std::string_view p_channel) noexcept {
    try {
        _stream = new linestream(p_logger, p_severity, p_channel);
    } catch (...) {
        _stream = nullptr;
    }
}

std::ostream& dbgostream::stream() const noexcept {
    static thread_local std::ostream discarding(nullptr);
    return _stream ? *_stream : discarding;
}

void dbgostream::finish() noexcept {
    auto* const stream = static_cast<linestream*>(_stream);
    try {
        stream->send();
    } catch (...) {
        // There is no memory for the text: the message is lost.
    }
    delete stream;
    _stream = nullptr;
}

} // namespace qordebug
