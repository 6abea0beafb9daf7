#pragma once

#include "framework/Export.h"

namespace qordebug {

struct entry;

/// Takes messages from a logger, for instance to a file or to a list on screen. Messages may come from several threads
/// at once. What a sink throws is swallowed; what it logs while it writes is dropped.
class QOR_FRAMEWORK_API sink {
public:
    virtual ~sink();

    virtual void write(entry const& p_entry) = 0;

protected:
    sink() = default;
    sink(sink const&) = default;
    sink& operator=(sink const&) = default;
};

} // namespace qordebug
