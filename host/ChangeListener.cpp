#include "host/ChangeListener.h"

namespace Qor::Chart::Host {

ChangeListener::~ChangeListener() = default;

void ChangeListener::TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
    Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) {
    Node::TouchThis(p_type, p_change, p_relationship, p_node, p_name, p_data);
    if (_callback)
        _callback();
}

} // namespace Qor::Chart::Host
