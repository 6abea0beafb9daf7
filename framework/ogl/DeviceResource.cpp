#include "framework/ogl/DeviceResource.h"

#include <algorithm>
#include <atomic>

namespace Qor::Chart::Ogl {

namespace {

std::atomic<std::uint64_t> nextId{1};

} // namespace

void Graveyard::Bury(std::uint64_t p_id) {
    std::lock_guard const lock(_mutex);
    _ids.push_back(p_id);
}

void Graveyard::Empty(std::vector<std::uint64_t>& p_ids) {
    std::lock_guard const lock(_mutex);
    p_ids.insert(p_ids.end(), _ids.begin(), _ids.end());
    _ids.clear();
}

DeviceResource::DeviceResource() : _id(nextId.fetch_add(1, std::memory_order_relaxed)) {}

DeviceResource::~DeviceResource() {
    for (std::weak_ptr<Graveyard> const& weak : _graveyards) {
        if (std::shared_ptr<Graveyard> const graveyard = weak.lock()) {
            graveyard->Bury(_id);
        }
    }
}

void DeviceResource::NotifyWhenGone(std::shared_ptr<Graveyard> const& p_graveyard) const {
    std::erase_if(_graveyards, [](std::weak_ptr<Graveyard> const& p_weak) { return p_weak.expired(); });
    bool const known = std::any_of(_graveyards.begin(), _graveyards.end(),
        [&](std::weak_ptr<Graveyard> const& p_weak) { return p_weak.lock() == p_graveyard; });
    if (!known) {
        _graveyards.emplace_back(p_graveyard);
    }
}

} // namespace Qor::Chart::Ogl
