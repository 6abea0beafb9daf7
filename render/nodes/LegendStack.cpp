#include "render/nodes/LegendStack.h"

#include "render/nodes/Legend.h"
#include "render/core/SharedUnique.h"

#include <algorithm>
#include <utility>

namespace Qor::Chart::Render {

std::shared_ptr<LegendStack> LegendStack::Of(Registrar& p_registrar) {
    return SharedUnique<LegendStack>::Get(p_registrar);
}

LegendStack::LegendStack(Registrar::Handle p_registration) : _registration(std::move(p_registration)) {}

LegendStack::Taken LegendStack::Before(Legend const& p_legend) const {
    Taken taken;
    Vis const* const parent = _legends.size() > 1 ? p_legend.Parent() : nullptr;
    for (Legend const* const other : _legends) {
        bool const isBefore = parent && other != &p_legend && other->IsActive() && other->IsEnabled() &&
            parent->Precedes(*other, p_legend);
        if (!isBefore)
            continue;
        Taken const its = other->Takes();
        taken = {std::max(taken.above, its.above), std::max(taken.right, its.right)};
    }
    return taken;
}

} // namespace Qor::Chart::Render
