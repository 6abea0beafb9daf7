#include "host/EventTargets.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace Qor::Chart::Host {

EventTargets::EventTargets() : EventTargets(std::vector<Render::HitRecord>()) {}

EventTargets::EventTargets(std::vector<Render::HitRecord> p_hits)
    : _hits(std::make_shared<std::vector<Render::HitRecord> const>(std::move(p_hits))) {
    std::unordered_set<Core::WeakPtr<Render::Vis>> known; // thousands of symbols may lie under one pixel
    for (Render::HitRecord const& hit : *_hits) {
        if (known.insert(hit.node).second)
            _targets.push_back({hit.node, &hit});
    }
    for (Render::HitRecord const& hit : *_hits) {
        if (!hit.hitRoot.IsEmpty() && known.insert(hit.hitRoot).second)
            _targets.push_back({hit.hitRoot, nullptr});
    }
}

void EventTargets::AddRoot(Core::WeakPtr<Render::Vis> const& p_root) {
    if (!p_root.IsEmpty() && !Find(p_root))
        _targets.push_back({p_root, nullptr});
}

EventTarget const* EventTargets::Find(Core::WeakPtr<Render::Vis> const& p_node) const noexcept {
    auto const found = std::find_if(
        _targets.begin(), _targets.end(), [&](EventTarget const& p_target) { return p_target.node == p_node; });
    return found != _targets.end() ? &*found : nullptr;
}

} // namespace Qor::Chart::Host
