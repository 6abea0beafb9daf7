#pragma once

#include "apps/qorview/PickReport.h"
#include "framework/types/Size.h"
#include "render/context/FrameStatistics.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Qor::Chart::QorView {

/// What the program did, to be told as text or as JSON.
struct Summary {
    struct File {
        std::string path;
        std::size_t groups = 0;
        std::size_t objects = 0;
        std::size_t styles = 0;
        std::size_t triangles = 0;
        std::size_t lines = 0;
        std::size_t points = 0;
        std::size_t dropped = 0; ///< primitives that could not be drawn
        double milliseconds = 0; ///< to read it
    };

    std::vector<File> files;
    std::vector<Render::FrameStatistics> frames; ///< at least one
    std::size_t nodes = 0; ///< of the visual tree
    std::uint64_t reports = 0; ///< errors and warnings of nodes
    std::string device;
    Types::Size size;
    std::string picture; ///< empty when none was written
    bool listFrames = false;
    std::optional<PickReport> pick;

    void WriteText(std::ostream& p_stream) const;
    void WriteJson(std::ostream& p_stream) const;
};

} // namespace Qor::Chart::QorView
