#include "render/pick/Selector.h"

#include "framework/utility/Logger.h"

#include <exception>
#include <sstream>

namespace Qor::Chart::Render {

namespace {

/// Runs a node's hook; false, and reported, when it throws.
template <class Hook>
bool Guarded(Vis const& p_node, Hook const& p_hook) {
    std::ostringstream text;
    try {
        p_hook();
        return true;
    } catch (std::exception const& error) {
        text << static_cast<Core::Node const&>(p_node) << " caught exception in Selector: " << error.what();
    } catch (...) {
        text << static_cast<Core::Node const&>(p_node) << " caught exception in Selector";
    }
    Utility::GetLogger().error(text.str());
    return false;
}

} // namespace

std::list<SelectRecord> Selector::RecordsOf(HitRecord const& p_hit) {
    std::list<SelectRecord> records;
    Core::Ptr<Vis> const node = p_hit.node.Lock();
    if (node && !Guarded(*node, [&] { GetSelectRecords(*node, p_hit, records); }))
        records.clear();
    return records;
}

bool Selector::Select(SelectRecord const& p_record, bool p_selected) {
    Core::Ptr<Vis> const handler = p_record.Handler().Lock();
    if (!handler)
        return false;
    Guarded(*handler, [&] { VisHooks::Select(*handler, p_record, p_record.Path(), p_selected); });
    return true;
}

} // namespace Qor::Chart::Render
