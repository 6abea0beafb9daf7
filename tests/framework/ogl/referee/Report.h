#pragma once

#include <cstdlib>
#include <fstream>
#include <string>

namespace Qor::Chart::Ogl::Referee {

/// The folder that reports are wanted in, from the environment; empty when none are.
inline std::string ReportFolder() {
    char const* const folder = std::getenv("QOR_REFEREE_REPORT");
    return folder == nullptr ? "" : folder;
}

/// Writes a piece of a report, if reports are wanted.
inline void Report(std::string const& p_name, std::string const& p_text) {
    if (!ReportFolder().empty())
        std::ofstream(ReportFolder() + "/" + p_name + ".md") << p_text;
}

/// The software driver compiles shaders in a fraction of the time without optimising them; each is used for a few
/// pixels only. To be called before the first context is made.
inline void UseFastShaderCompiler() {
    setenv("GALLIVM_PERF", "nopt", 0);
}

} // namespace Qor::Chart::Ogl::Referee
