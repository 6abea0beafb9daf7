#pragma once

#include "framework/Export.h"

#include <memory>

namespace Qor::Chart::Model {

namespace Detail {
struct EventSlot;
}

/// A subscription to events of a node: it ends when this object is destroyed or assigned to. It may outlive the node.
class QOR_FRAMEWORK_API EventConnection {
public:
    /// No subscription.
    EventConnection() noexcept = default;
    explicit EventConnection(std::weak_ptr<Detail::EventSlot> p_slot) noexcept;
    EventConnection(EventConnection&& p_other) noexcept = default;
    EventConnection& operator=(EventConnection&& p_other) noexcept;
    ~EventConnection();

    /// Ends the subscription; the callback is not called again, not even by an event that is being raised.
    void Disconnect() noexcept;
    /// False also when the node is gone.
    bool IsConnected() const noexcept;

private:
    std::weak_ptr<Detail::EventSlot> _slot;
};

} // namespace Qor::Chart::Model
