#pragma once

#include "render/Export.h"
#include "render/pick/SelectRecord.h"

#include <cstdint>

namespace Qor::Chart::Render {

/// One line of a list of what is selected: the record, and how much of the node it stands for.
struct QOR_VIS_API SelectRecordEntry {
    enum class SelectionType : std::uint32_t {
        Node = 0, ///< the node as a whole
        Element = 1, ///< the one thing in it that the record's index names
    };

    SelectRecord record;
    SelectionType type;

    SelectRecordEntry(SelectRecord const& p_record, SelectionType p_type);
};

} // namespace Qor::Chart::Render
