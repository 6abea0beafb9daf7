#pragma once

#include "framework/types/Pos.h"
#include "render/pick/HitRecord.h"
#include "render/pick/SelectRecord.h"

#include <nlohmann/json_fwd.hpp>

#include <iosfwd>
#include <optional>
#include <vector>

namespace Qor::Chart::QorView {

/// What lies under a pixel of the picture, to be told as text or as JSON.
struct PickReport {
    Types::Pos pixel; ///< from the upper left corner of the picture
    std::vector<Render::HitRecord> hits; ///< best first
    std::optional<Render::SelectRecord> selection; ///< of the best hit that selects something
    unsigned visited = 0;
    unsigned tested = 0;

    void WriteText(std::ostream& p_stream) const;
    nlohmann::json Json() const;
};

} // namespace Qor::Chart::QorView
