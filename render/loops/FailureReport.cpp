#include "render/loops/FailureReport.h"

#include "render/context/EventDispatcher.h"
#include "render/core/Vis.h"
#include "framework/utility/Logger.h"

#include <algorithm>
#include <exception>
#include <sstream>

namespace Qor::Chart::Render {

namespace {

std::string TextOf(Vis const& p_node, Core::Verbosity p_verbosity) {
    std::ostringstream stream;
    p_node.Dump(stream, std::min(p_verbosity, Core::Verbosity::Normal), 0);
    std::string text = stream.str();
    while (text.ends_with('\n'))
        text.pop_back();
    return text;
}

/// What the exception that is being handled says.
std::string CaughtText() {
    try {
        throw;
    } catch (std::exception const& failure) {
        return failure.what();
    } catch (...) {
        return "an exception that is no std::exception";
    }
}

void LogLostReport() noexcept {
    Utility::GetLogger().error(
        "The report of a failed node could not be handed to the host; see that its dispatcher takes reports without "
        "throwing.");
}

} // namespace

void FailureReport::Caught(Vis const& p_node, EventDispatcher& p_dispatcher, Core::Verbosity p_verbosity,
    char const* p_stage, std::string const& p_location) noexcept {
    try {
        std::string const text = TextOf(p_node, p_verbosity) + " caught exception in " + p_stage + ": " + CaughtText();
        p_dispatcher.ReportException(text, p_location);
    } catch (...) {
        LogLostReport();
    }
}

void FailureReport::Invalid(Vis const& p_node, EventDispatcher& p_dispatcher, std::string const& p_location) noexcept {
    try {
        p_dispatcher.ReportWarning(p_node,
            "The last change on this node left the node in an invalid state. "
            "Please read any earlier error messages or verify the last change "
            "and correct the problem, the node will revert to a valid state "
            "once the problem is corrected.\n",
            p_location, 2);
    } catch (...) {
        LogLostReport();
    }
}

} // namespace Qor::Chart::Render
