#pragma once

#include "tests/render/DrawFixture.h"
#include "render/context/UpdateContext.h"
#include "render/core/Registrar.h"
#include "render/loops/Generator.h"
#include "render/loops/UpdateLoop.h"
#include "render/units/UnitSystemConverter.h"
#include "framework/library/SymbolRegistry.h"

namespace Qor::Chart::Render::Fixtures {

/// Everything that an update context refers to, beside what drawing needs.
struct UpdateFixture : DrawFixture {
    struct Counts {
        unsigned visited = 0;
        unsigned updated = 0;
        bool operator==(Counts const&) const = default;
    };
    using DrawFixture::DrawFixture;

    UpdateContext MakeUpdateContext() {
        return {handle, resource, imageCache, schema, numberFormat, registrar, geometry, symbols, generator, dispatcher,
            units, Core::Verbosity::Quiet, capabilities};
    }
    Counts Update(Core::Ptr<Vis> const& p_root) {
        Counts counts;
        UpdateLoop()(p_root, MakeUpdateContext(), counts.visited, counts.updated);
        return counts;
    }

    Registrar registrar;
    Library::SymbolRegistry symbols;
    Generator generator;
    Core::Ptr<UnitSystemConverter> units = Core::MakeNode<UnitSystemConverter>();
};

} // namespace Qor::Chart::Render::Fixtures
