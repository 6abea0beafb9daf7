#pragma once

#include "framework/Export.h"
#include "framework/qordebug/entry.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qordebug {

class logger;

/// Collects what a logger gets while the scope is alive, in place of the logger's sinks, so that tests can read
/// messages and standard error stays quiet. Of nested scopes the innermost collects. Scopes of one logger end in the
/// reverse order of their beginning.
class QOR_FRAMEWORK_API CaptureScope {
public:
    /// Also enables the named debug channels for as long as the scope lives.
    explicit CaptureScope(logger& p_logger, std::initializer_list<std::string_view> p_channels = {});
    ~CaptureScope();
    CaptureScope(CaptureScope const&) = delete;
    CaptureScope& operator=(CaptureScope const&) = delete;

    /// Everything collected so far, oldest first.
    std::vector<entry> entries() const;
    /// The texts of everything collected so far, oldest first.
    std::vector<std::string> texts() const;
    /// The texts of one kind of message.
    std::vector<std::string> texts(severity p_severity) const;
    /// The texts of one channel.
    std::vector<std::string> texts(std::string_view p_channel) const;
    /// True when some text contains the given one.
    bool contains(std::string_view p_part) const;
    bool empty() const;
    void clear();

private:
    class collector;

    logger& _logger;
    std::shared_ptr<collector> _collector;
    std::vector<std::string> _channels;
};

} // namespace qordebug
