#pragma once

#include "render/Export.h"

namespace Qor::Chart::Render {

class Generator;

/// Makes all classes of model nodes that this library can show known to a generator. Those that are registered there
/// already keep their factories, so a host registers its own before.
QOR_VIS_API void RegisterNodeFactories(Generator& p_generator);

} // namespace Qor::Chart::Render
