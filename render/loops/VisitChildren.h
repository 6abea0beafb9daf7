#pragma once

#include "render/core/Vis.h"

namespace Qor::Chart::Render {

/// Calls a visitor for each active child, in order, until it answers false. The children's memory may be anywhere, so that
/// of the next ones is fetched ahead. A visitor may remove any child.
template <class Visitor>
[[gnu::always_inline]] inline void VisitChildren(Vis const& p_node, Visitor const& p_visit) {
    constexpr int Distance = 6; // siblings from the one that is visited to the one that is fetched
    auto ahead = p_node.begin();
    for (int step = 0; step < Distance; ++step)
        ++ahead;
    ActiveIterator const end = p_node.ActiveEnd();
    for (ActiveIterator child = p_node.ActiveBegin(); !(child == end); ++child) {
        if (Vis const* const next = ahead->Get())
            next->Prefetch();
        ++ahead;
        if (!p_visit(*child))
            return;
    }
}

} // namespace Qor::Chart::Render
