#pragma once

#include "framework/Export.h"
#include "framework/library/Mesh.h"

namespace Qor::Chart::Library {

/// Gives normals to meshes that come without.
class QOR_FRAMEWORK_API Normals {
public:
    /// Edges between faces that are turned by more than this stay sharp.
    static constexpr double DefaultCrease = 40; ///< degrees

    /// Replaces the normals of a mesh of triangles. Where the surface bends gently, vertices at the same place get the same
    /// normal; at sharp edges vertices are doubled. Vertices that no triangle uses go.
    static void Generate(Mesh& p_mesh, double p_crease = DefaultCrease);
};

} // namespace Qor::Chart::Library
