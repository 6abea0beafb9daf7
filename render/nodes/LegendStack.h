#pragma once

#include "render/core/Registrar.h"

#include <memory>
#include <vector>

namespace Qor::Chart::Render {

class Legend;

/// The legends of a scene, so that those that find their own places in one node do not cover each other: each stands
/// below those that come before it among the children, or beside them where there is too little space.
class LegendStack {
public:
    /// What is taken of a pane, in pixels from its upper and its right side; 0 when nothing is.
    struct Taken {
        float above = 0;
        float right = 0;

        bool operator==(Taken const&) const = default;
    };

    static std::shared_ptr<LegendStack> Of(Registrar& p_registrar);

    explicit LegendStack(Registrar::Handle p_registration);

    /// A legend takes part from now on; it leaves before it is gone.
    void Join(Legend const& p_legend) { _legends.push_back(&p_legend); }
    void Leave(Legend const& p_legend) { std::erase(_legends, &p_legend); }

    /// What those take that come before a legend in its parent, as they were laid out last: an earlier child is set up
    /// before a later one. Costs a look at each legend of the scene.
    Taken Before(Legend const& p_legend) const;

private:
    Registrar::Handle _registration;
    std::vector<Legend const*> _legends;
};

} // namespace Qor::Chart::Render
