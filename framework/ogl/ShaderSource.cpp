#include "framework/ogl/ShaderSource.h"

#include <utility>

namespace Qor::Chart::Ogl {

namespace {

constexpr char const* FixedFunctionVertex = R"(
void Shade(vec4 eye, vec3 normal, vec4 color, out vec4 front, out vec4 back) {
    if (!LIGHTING) {
        front = clamp(color, 0.0, 1.0);
        back = front;
        return;
    }
    front = Lit(eye, normal, MaterialOf(0, color));
    back = TWO_SIDE ? Lit(eye, -normal, MaterialOf(1, color)) : front;
}
)";

constexpr char const* FixedFunctionFragment = R"(
vec4 Surface(vec4 color) {
    return Textured(color);
}
)";

constexpr char const* GenericVertex = R"(
const int OptionHeadlight = 1;
const int OptionVertexColors = 2;
const int OptionCutout = 8;
const int OptionOpaque = 16;

// The surface as it is seen from here, with light from the viewer.
float Headlight(vec4 eye, vec3 normal) {
    vec3 toViewer = viewer.xyz * eye.w - eye.xyz * viewer.w;
    float facing = abs(dot(normal, normalize(toViewer)));
    return 0.3 + 0.7 * facing;
}

void Shade(vec4 eye, vec3 normal, vec4 color, out vec4 front, out vec4 back) {
    vec4 own = currentColor;
    if ((OPTIONS & OptionVertexColors) != 0 && HAS_COLORS) {
        own *= vertexColor;
    }
    front = clamp(own, 0.0, 1.0);
    float size = length(normal);
    if (HAS_NORMALS && size > 0.0) {
        // Faces that are seen are lit, wherever their normals point and whatever their winding is.
        vec3 unit = normal / size;
        vec3 toViewer = viewer.xyz * eye.w - eye.xyz * viewer.w;
        unit = dot(unit, toViewer) < 0.0 ? -unit : unit;
        if (LIGHTING && lightMask != 0) {
            front = Lit(eye, unit, Material(own, own, vec4(0.0, 0.0, 0.0, 1.0), vec4(0.0, 0.0, 0.0, 1.0), 0.0));
        } else if ((OPTIONS & OptionHeadlight) != 0) {
            front.rgb *= Headlight(eye, unit);
        }
    }
    back = front;
    if ((OPTIONS & (OptionCutout | OptionOpaque)) != 0) {
        back.a = clamp(currentColor.a, 0.0, 1.0);
    }
}
)";

// Where the alpha of textures and vertices does not blend, that of the current colour stands in that of the back.
constexpr char const* GenericFragment = R"(
vec4 Surface(vec4 color) {
    if ((OPTIONS & 6) != 0) { color = Textured(color); }
    if ((OPTIONS & 24) != 0) {
        float cutoff = (float((OPTIONS >> 8) & 255) - 0.5) / 255.0;
        if ((OPTIONS & 8) != 0 && color.a < cutoff * source.back.a) { discard; }
        color.a = source.back.a;
    }
    return color;
}
)";

} // namespace

ShaderSource::ShaderSource(std::string p_name, std::string p_vertex, std::string p_fragment)
    : _texts(std::make_shared<Texts const>(Texts{std::move(p_name), std::move(p_vertex), std::move(p_fragment)})) {}

ShaderSource const& ShaderSource::FixedFunction() {
    static ShaderSource const source("fixed-function", FixedFunctionVertex, FixedFunctionFragment);
    return source;
}

ShaderSource const& ShaderSource::Generic() {
    static ShaderSource const source("generic", GenericVertex, GenericFragment);
    return source;
}

} // namespace Qor::Chart::Ogl
