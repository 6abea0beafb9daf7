#pragma once

#include "framework/Export.h"

namespace Qor::Chart::Ogl {
class Agl;
}

namespace Qor::Chart::Library {

/// Puts an `Agl` into the state in which areas show their current colour, transparent ones what lies behind, whatever the
/// caller had set for objects: no lighting, textures, stipple and culling; polygons filled; blending by alpha. Texture unit 0
/// is the active one. To be called within a `PushAttrib` of all groups.
QOR_FRAMEWORK_API void SetPlainState(Ogl::Agl& p_agl);

} // namespace Qor::Chart::Library
