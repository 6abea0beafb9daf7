#include "render/pick/SelectRecordEntry.h"

namespace Qor::Chart::Render {

SelectRecordEntry::SelectRecordEntry(SelectRecord const& p_record, SelectionType p_type)
    : record(p_record), type(p_type) {}

} // namespace Qor::Chart::Render
