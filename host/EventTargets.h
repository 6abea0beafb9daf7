#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/ogl/HitRecord.h"
#include "host/Export.h"
#include "render/pick/HitRecord.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Qor::Chart::Host {

/// Somebody who may be offered an event: a node, and what was hit of it.
struct EventTarget {
    Core::WeakPtr<Render::Vis> node;
    Render::HitRecord const* hit = nullptr; ///< null for a node around the hits that was not hit itself
    std::vector<Render::HitRecord> const* hits = nullptr; ///< all that is under the pointer, for a selection list

    /// Of the part of the node that was hit best; `NameInvalid` when nothing was.
    std::uint64_t Name() const noexcept {
        return hit && !hit->result.records.empty() ? hit->result.records.front().name : Ogl::HitRecord::NameInvalid;
    }
    bool IsSamePart(Core::WeakPtr<Render::Vis> const& p_node, std::uint64_t p_name) const noexcept {
        return node == p_node && Name() == p_name;
    }
};

/// Everybody who may be offered an event at one place, in order: the nodes that were hit, best first and each once, then
/// the context roots around them that were not hit themselves. Copies share the hits, which so live as long as any copy.
class QOR_HOST_API EventTargets {
public:
    EventTargets();
    explicit EventTargets(std::vector<Render::HitRecord> p_hits);

    std::vector<Render::HitRecord> const& Hits() const noexcept { return *_hits; }
    bool IsEmpty() const noexcept { return _targets.empty(); }
    std::vector<EventTarget>::const_iterator begin() const noexcept { return _targets.begin(); }
    std::vector<EventTarget>::const_iterator end() const noexcept { return _targets.end(); }

    /// Puts a node around the place at the end, unless it is among them or the handle is empty.
    void AddRoot(Core::WeakPtr<Render::Vis> const& p_root);

    /// Takes those out for which a condition holds.
    template <class Condition>
    void RemoveIf(Condition const& p_condition) {
        std::erase_if(_targets, p_condition);
    }

    /// Null when the node is none of them.
    EventTarget const* Find(Core::WeakPtr<Render::Vis> const& p_node) const noexcept;

private:
    std::shared_ptr<std::vector<Render::HitRecord> const> _hits;
    std::vector<EventTarget> _targets;
};

} // namespace Qor::Chart::Host
