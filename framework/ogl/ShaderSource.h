#pragma once

#include "framework/Export.h"

#include <memory>
#include <string>

namespace Qor::Chart::Ogl {

/// The part of a shader that decides about colours, as two pieces of GLSL 3.30. Everything else (transformation, instances,
/// clip planes, stipple, wide lines, round points) is the same for all shaders and is put around them. A cheap handle on
/// texts that never change; copies are the same source and share compiled programs.
///
/// The vertex piece defines
///     void Shade(vec4 eye, vec3 normal, vec4 color, out vec4 front, out vec4 back)
/// which gives the colours of the two faces from the vertex in eye coordinates, its normal there (already of length 1 where
/// normalisation is on) and its own colour. The fragment piece defines
///     vec4 Surface(vec4 color)
/// which gives the final colour from the interpolated one. Both may call what the fixed-function source is built from:
///     Material MaterialOf(int face, vec4 color)           the material in force; face 0 is the front
///     vec4 Lit(vec4 eye, vec3 normal, Material material)  the light equation
///     vec4 Textured(vec4 color)                           the texture units in force
/// and read the constants OPTIONS (the option bits of the shader), HAS_NORMALS and HAS_COLORS (whether the vertices have
/// some of their own), LIGHTING (whether it is on), TWO_SIDE (whether the colours of back faces are used), and
/// `currentColor`, `vertexColor`, `lightMask` (a bit for each light that is on) and `viewer` (the eye in eye coordinates,
/// homogeneous). A `Material` has ambient, diffuse, specular, emission and shininess.
class QOR_FRAMEWORK_API ShaderSource {
public:
    /// p_name tells the source in messages.
    ShaderSource(std::string p_name, std::string p_vertex, std::string p_fragment);

    /// The fixed-function pipeline: lights, materials and texture units as the state says.
    static ShaderSource const& FixedFunction();
    /// What simple objects are drawn with; see `GenericShader`.
    static ShaderSource const& Generic();

    std::string const& Name() const { return _texts->name; }
    std::string const& Vertex() const { return _texts->vertex; }
    std::string const& Fragment() const { return _texts->fragment; }

    /// True for copies of one source.
    bool operator==(ShaderSource const& p_other) const { return _texts == p_other._texts; }

private:
    struct Texts {
        std::string name;
        std::string vertex;
        std::string fragment;
    };
    std::shared_ptr<Texts const> _texts;
};

} // namespace Qor::Chart::Ogl
