#pragma once

#include "framework/core/Node.h"
#include "framework/core/Ptr.h"
#include "framework/core/Reference.h"
#include "host/Export.h"
#include "render/core/Vis.h"

#include <functional>
#include <utility>

namespace Qor::Chart::Host {

/// Tells of every change in a visual tree and its model, so that a window can schedule a frame without asking. It is called
/// in the middle of the change: note it, and act later.
class QOR_HOST_API ChangeListener : public Core::Node {
public:
    explicit ChangeListener(std::function<void()> p_callback) : _callback(std::move(p_callback)) {}

    /// Listens to this tree from now on. The same tree again costs nothing.
    void ListenTo(Core::Ptr<Render::Vis> const& p_root) { _root.Attach(p_root); }

    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
        Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) override;

protected:
    ~ChangeListener() override;

private:
    std::function<void()> _callback;
    Core::WeakRef<Render::Vis> _root{*this, "root"};
};

} // namespace Qor::Chart::Host
