#include "host/EventTargets.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Host {

EventTargets::EventTargets() : EventTargets(std::vector<Render::HitRecord>()) {}

EventTargets::EventTargets(std::vector<Render::HitRecord> p_hits)
    : _hits(std::make_shared<std::vector<Render::HitRecord> const>(std::move(p_hits))) {
    for (Render::HitRecord const& hit : *_hits) {
        if (!Find(hit.node))
            _targets.push_back({hit.node, &hit});
    }
    for (Render::HitRecord const& hit : *_hits)
        AddRoot(hit.hitRoot);
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
