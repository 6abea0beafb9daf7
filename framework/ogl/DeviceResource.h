#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace Qor::Chart::Ogl {

/// Where resources that died leave their numbers for a back end, which frees what it made for them when its context is
/// next current. Shared by the back end and the resources, so that either may go first. Thread-safe.
class QOR_FRAMEWORK_API Graveyard {
public:
    void Bury(std::uint64_t p_id);
    /// Moves the numbers of all dead resources to the end of p_ids.
    void Empty(std::vector<std::uint64_t>& p_ids);

private:
    std::mutex _mutex;
    std::vector<std::uint64_t> _ids;
};

/// Base of everything that a back end keeps a device-side object for: vertices, indices, textures, programs. It holds no
/// device object itself, only a number that is unique in the process and the graveyards to leave it in.
class QOR_FRAMEWORK_API DeviceResource {
public:
    DeviceResource(DeviceResource const&) = delete;
    DeviceResource& operator=(DeviceResource const&) = delete;

    /// Never 0 and never used twice.
    std::uint64_t Id() const { return _id; }
    /// Called by a back end that made a device object for this resource.
    void NotifyWhenGone(std::shared_ptr<Graveyard> const& p_graveyard) const;

protected:
    DeviceResource();
    ~DeviceResource();

private:
    std::uint64_t const _id;
    mutable std::vector<std::weak_ptr<Graveyard>> _graveyards;
};

} // namespace Qor::Chart::Ogl
