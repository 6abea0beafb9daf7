#pragma once

#include "framework/ogl/PrimitiveAssembly.h"
#include "framework/ogl/Shader.h"

#include <epoxy/gl.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace Qor::Chart::Ogl {

/// Places of the vertex attributes of all programs.
namespace AttributeLocation {
inline constexpr GLuint Position = 0;
inline constexpr GLuint Normal = 1;
inline constexpr GLuint Color = 2;
inline constexpr GLuint TexCoord0 = 3; ///< and one more for each further texture unit
inline constexpr GLuint Row0 = 7; ///< and the next two: the model-view matrix of the instance
inline constexpr GLuint CurrentColor = 10;
inline constexpr GLuint StippleStart = 11;
} // namespace AttributeLocation

/// What a program is specialised for, so that common draws carry no code for rare states.
struct ProgramVariant {
    Pipeline pipeline = Pipeline::Triangles;
    bool immediate = false; ///< vertices are in eye coordinates already
    bool normals = false;
    bool colors = false;
    bool lighting = false;
    bool twoSide = false;
    bool flat = false;
    std::uint8_t units = 0; ///< texture units that are read, counted from the first
    bool combined = false; ///< some of them combine
    bool clipped = false;
    bool stippled = false; ///< polygon or line stipple
    bool offset = false; ///< polygon offset of outlines and corners
    bool expanded = false; ///< lines are drawn as areas
    bool smooth = false; ///< round points, or lines with soft sides

    std::uint32_t Key() const;
};

struct GlProgram {
    GLuint name = 0;
    GLint faces = -1; ///< location: bit 0 front faces are drawn, bit 1 back faces, bit 2 fronts are clockwise
    GLint triangles = -1; ///< location: how many triangles show their backs before the rest show their fronts
};

/// The programs of a context: made of a shader's source and what surrounds it, compiled when first asked for and kept until
/// the shader is gone. Needs its context to be current.
class GlPrograms {
public:
    /// The program, or one that draws plain colours when the shader does not compile: then the shader is marked, and
    /// p_errors gets a sentence. The name is 0 when even that fails.
    GlProgram const& Find(Shader const& p_shader, ProgramVariant const& p_variant, std::vector<std::string>& p_errors);
    bool Knows(std::uint64_t p_shaderId) const { return _programs.contains(p_shaderId); }
    /// Deletes what was made for a shader.
    void Delete(std::uint64_t p_shaderId);
    void DeleteAll();
    std::size_t Count() const;

private:
    using Variants = std::unordered_map<std::uint32_t, GlProgram>;
    std::unordered_map<std::uint64_t, Variants> _programs;
};

} // namespace Qor::Chart::Ogl
