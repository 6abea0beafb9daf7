#include "framework/ogl/GlProgram.h"

#include <array>
#include <optional>

namespace Qor::Chart::Ogl {

namespace {

constexpr char const* Version = "#version 330 core\n";

// The uniform blocks of GlUniforms.h.
constexpr char const* Uniforms = R"(
struct LightSource { vec4 ambient; vec4 diffuse; vec4 specular; vec4 position; vec4 spot; vec4 attenuation; };
struct MaterialBlock { vec4 ambient; vec4 diffuse; vec4 specular; vec4 emission; vec4 shininess; };
layout(std140) uniform Scene {
    mat4 projection;
    vec4 viewer;
    vec4 eyePoint;
    vec4 viewport;
    vec4 clipPlanes[8];
    LightSource lights[8];
    uvec4 stipple[8];
};
layout(std140) uniform Draw {
    MaterialBlock materials[2];
    vec4 sceneAmbient;
    vec4 perspectiveRow;
    vec4 sizes;
    vec4 offset;
    ivec4 modes;
    ivec4 colorFaces;
};
#if UNITS > 0
layout(std140) uniform Texturing {
    mat4 textureMatrices[4];
    vec4 environmentColors[4];
    ivec4 environment;
    uvec4 combineRgb;
    uvec4 combineAlpha;
};
#endif
)";

// What goes from stage to stage. Flat colours need no interpolation when the geometry stage has picked them.
constexpr char const* Varyings = R"(
#ifdef GEOMETRY
#define FIRST_BLOCK Assembled
#else
#define FIRST_BLOCK Rasterised
#endif
#if defined(FLAT) && !defined(GEOMETRY)
#define SHADING flat
#else
#define SHADING smooth
#endif
#if UNITS > 0
#define TEXTURE_VARYINGS vec4 tex[UNITS];
#else
#define TEXTURE_VARYINGS
#endif
#ifdef BACK_FIRST
#define MIRROR_VARYINGS flat float mirrored;
#else
#define MIRROR_VARYINGS
#endif
#define FRAGMENT_VARYINGS SHADING vec4 front; SHADING vec4 back; TEXTURE_VARYINGS MIRROR_VARYINGS
#ifdef CLIPPED
#define CLIP_VARYINGS vec4 clip0; vec4 clip1;
#else
#define CLIP_VARYINGS
#endif
#if defined(STIPPLED) && !defined(TRIANGLES)
#define DASHED
#define DASH_VARYINGS float dashStart;
#else
#define DASH_VARYINGS
#endif
#ifdef GEOMETRY
#define FIRST_VARYINGS FRAGMENT_VARYINGS CLIP_VARYINGS DASH_VARYINGS
#else
#define FIRST_VARYINGS FRAGMENT_VARYINGS
#endif
)";

constexpr char const* VertexFrame = R"(
layout(location = 0) in vec4 position;
layout(location = 1) in vec3 vertexNormal;
layout(location = 2) in vec4 vertexColor;
layout(location = 3) in vec4 texCoord[4];
layout(location = 7) in vec4 row0;
layout(location = 8) in vec4 row1;
layout(location = 9) in vec4 row2;
layout(location = 10) in vec4 currentColor;
layout(location = 11) in float stippleStart;
out FIRST_BLOCK { FIRST_VARYINGS } result;
#if defined(CLIPPED) && !defined(GEOMETRY)
out float gl_ClipDistance[8];
#endif

#define lightMask modes.x
#define enabled modes.y
const int EnabledNormalize = 4;
const int EnabledRescaleNormal = 8;

struct Material { vec4 ambient; vec4 diffuse; vec4 specular; vec4 emission; float shininess; };

Material MaterialOf(int face, vec4 color) {
    MaterialBlock block = materials[face];
    Material material = Material(block.ambient, block.diffuse, block.specular, block.emission, block.shininess.x);
    if (colorFaces[face] != 0) {
        int mode = modes.w;
        if (mode == 0x1200 || mode == 0x1602) { material.ambient = color; }
        if (mode == 0x1201 || mode == 0x1602) { material.diffuse = color; }
        if (mode == 0x1202) { material.specular = color; }
        if (mode == 0x1600) { material.emission = color; }
    }
    return material;
}

vec4 Lit(vec4 eye, vec3 normal, Material material) {
    vec3 point = eye.w != 0.0 ? eye.xyz / eye.w : eye.xyz;
    vec3 sum = material.emission.rgb + sceneAmbient.rgb * material.ambient.rgb;
    for (int i = 0; i < 8; ++i) {
        if ((lightMask >> i) == 0) { break; }
        if ((lightMask & (1 << i)) == 0) { continue; }
        LightSource light = lights[i];
        vec3 toLight = light.position.xyz;
        float strength = 1.0;
        if (light.position.w != 0.0) {
            toLight = light.position.xyz / light.position.w - point;
            float far = length(toLight);
            strength = 1.0 / (light.attenuation.x + far * (light.attenuation.y + far * light.attenuation.z));
        }
        float size = length(toLight);
        toLight = size > 0.0 ? toLight / size : vec3(0.0);
        if (light.spot.w > -1.5) {
            float along = dot(-toLight, light.spot.xyz);
            strength *= along < light.spot.w ? 0.0 : (light.attenuation.w == 0.0 ? 1.0 : pow(max(along, 0.0), light.attenuation.w));
        }
        float diffuse = max(dot(normal, toLight), 0.0);
        vec3 color = light.ambient.rgb * material.ambient.rgb + diffuse * light.diffuse.rgb * material.diffuse.rgb;
        if (diffuse > 0.0) {
            vec3 toViewer = modes.z != 0 ? normalize(eyePoint.xyz - point) : vec3(0.0, 0.0, 1.0);
            float shine = max(dot(normal, normalize(toLight + toViewer)), 0.0);
            shine = material.shininess == 0.0 ? 1.0 : pow(shine, material.shininess);
            color += shine * light.specular.rgb * material.specular.rgb;
        }
        sum += strength * color;
    }
    return clamp(vec4(sum, material.diffuse.a), 0.0, 1.0);
}

// The inverse transpose of the instance's matrix takes normals to eye coordinates, under any affine matrix.
vec3 EyeNormal() {
#ifdef IMMEDIATE
    vec3 normal = vertexNormal;
#else
    vec3 c0 = cross(row1.xyz, row2.xyz);
    vec3 c1 = cross(row2.xyz, row0.xyz);
    vec3 c2 = cross(row0.xyz, row1.xyz);
    float determinant = dot(row0.xyz, c0);
    vec3 normal = vec3(dot(c0, vertexNormal), dot(c1, vertexNormal), dot(c2, vertexNormal));
    normal *= determinant < 0.0 ? -1.0 : 1.0;
    if ((enabled & EnabledNormalize) == 0) {
        float scale = abs(determinant);
        if ((enabled & EnabledRescaleNormal) != 0) {
            scale = length(vec3(c0.z, c1.z, c2.z));
        }
        normal /= scale > 0.0 ? scale : 1.0;
    }
#endif
    if ((enabled & EnabledNormalize) != 0) {
        float size = length(normal);
        normal = size > 0.0 ? normal / size : normal;
    }
    return normal;
}
)";

constexpr char const* VertexMain = R"(
float PointExtent() {
#ifdef SMOOTH
    return sizes.x + 2.0;
#else
    return max(floor(sizes.x + 0.5), 1.0);
#endif
}

void main() {
    vec4 eye = vec4(dot(row0, position), dot(row1, position), dot(row2, position), dot(perspectiveRow, position));
    gl_Position = projection * eye;
    vec4 front;
    vec4 back;
    Shade(eye, EyeNormal(), HAS_COLORS ? vertexColor : currentColor, front, back);
    result.front = front;
    result.back = back;
#if UNITS > 0
    for (int i = 0; i < UNITS; ++i) { result.tex[i] = textureMatrices[i] * texCoord[i]; }
#endif
#ifdef DASHED
    result.dashStart = stippleStart;
#endif
#ifdef BACK_FIRST
    result.mirrored = dot(row0.xyz, cross(row1.xyz, row2.xyz));
#endif
#ifdef CLIPPED
    float distances[8];
    for (int i = 0; i < 8; ++i) {
        distances[i] = (colorFaces.z & (1 << i)) != 0 ? dot(clipPlanes[i], eye) : 0.0;
    }
#ifdef GEOMETRY
    result.clip0 = vec4(distances[0], distances[1], distances[2], distances[3]);
    result.clip1 = vec4(distances[4], distances[5], distances[6], distances[7]);
#else
    for (int i = 0; i < 8; ++i) { gl_ClipDistance[i] = distances[i]; }
#endif
#endif
#ifdef POINTS
    gl_PointSize = PointExtent();
#endif
}
)";

// Wide lines, outlines of polygons and corners of polygons. Input: two ends of a line; or another corner, two ends and the
// provoking vertex; or a corner, its neighbours and the provoking vertex.
constexpr char const* GeometryMain = R"(
#ifdef LINES
layout(lines) in;
#define PROVOKING 1
#else
layout(lines_adjacency) in;
#define PROVOKING 3
#endif
#ifdef CORNERS
layout(points, max_vertices = 1) out;
#elif !defined(EXPANDED)
layout(line_strip, max_vertices = 2) out;
#else
layout(triangle_strip, max_vertices = 4) out;
#endif
in FIRST_BLOCK { FIRST_VARYINGS } source[];
out Rasterised { FRAGMENT_VARYINGS } result;
#ifdef SMOOTH
noperspective out vec3 away; // pixels from the line to the side, and from its two ends
#endif
#ifdef DASHED
flat out vec4 dash;
#endif
uniform int faces;

// Positive for counter-clockwise corners, also when some are behind the eye.
float Winding(vec4 a, vec4 b, vec4 c) {
    return determinant(mat3(a.xyw, b.xyw, c.xyw));
}

bool IsFront(float winding) {
    return (faces & 4) != 0 ? winding <= 0.0 : winding >= 0.0;
}

// What a polygon's offset adds to its device depths: the larger of its slopes, and a constant.
float Offset(vec4 a, vec4 b, vec4 c) {
#ifdef OFFSET
    if (min(a.w, min(b.w, c.w)) <= 0.0) { return 0.0; }
    vec3 origin = a.xyz / a.w;
    vec3 normal = cross(b.xyz / b.w - origin, c.xyz / c.w - origin);
    vec2 slope = normal.z != 0.0 ? abs(normal.xy / normal.z) * 2.0 / viewport.zw : vec2(0.0);
    return offset.x * max(slope.x, slope.y) + offset.y;
#else
    return 0.0;
#endif
}

#ifdef CLIPPED
void Clip(vec4 clip0, vec4 clip1) {
    gl_ClipDistance[0] = clip0.x; gl_ClipDistance[1] = clip0.y;
    gl_ClipDistance[2] = clip0.z; gl_ClipDistance[3] = clip0.w;
    gl_ClipDistance[4] = clip1.x; gl_ClipDistance[5] = clip1.y;
    gl_ClipDistance[6] = clip1.z; gl_ClipDistance[7] = clip1.w;
}
#endif

vec4 ColorOf(int index, bool isFront) {
#ifdef FLAT
    index = PROVOKING;
#endif
    return isFront ? source[index].front : source[index].back;
}

#ifdef CORNERS
void main() {
    bool isFront = IsFront(Winding(gl_in[0].gl_Position, gl_in[1].gl_Position, gl_in[2].gl_Position));
    if ((faces & (isFront ? 1 : 2)) == 0) { return; }
    gl_Position = gl_in[0].gl_Position;
    gl_Position.z += gl_Position.w * Offset(gl_in[0].gl_Position, gl_in[1].gl_Position, gl_in[2].gl_Position);
#ifdef SMOOTH
    gl_PointSize = sizes.x + 2.0;
    away = vec3(0.0);
#else
    gl_PointSize = max(floor(sizes.x + 0.5), 1.0);
#endif
    result.front = ColorOf(0, isFront);
    result.back = result.front;
#if UNITS > 0
    result.tex = source[0].tex;
#endif
#ifdef CLIPPED
    Clip(source[0].clip0, source[0].clip1);
#endif
    EmitVertex();
    EndPrimitive();
}
#else

#ifdef LINES
const int A = 0;
const int B = 1;
#else
const int A = 1;
const int B = 2;
#endif

// Cuts [t.x, t.y] of the line to where a plane's distance is not negative.
void Cut(float a, float b, inout vec2 t) {
    if (a < 0.0 && b < 0.0) { t = vec2(1.0, 0.0); }
    else if (a < 0.0) { t.x = max(t.x, a / (a - b)); }
    else if (b < 0.0) { t.y = min(t.y, a / (a - b)); }
}

void Emit(float t, vec2 shift, float depth, vec3 from, bool isFront) {
    vec4 end = mix(gl_in[A].gl_Position, gl_in[B].gl_Position, t);
    gl_Position = vec4(end.xy + shift * end.w, end.z + depth * end.w, end.w);
    result.front = mix(ColorOf(A, isFront), ColorOf(B, isFront), t);
    result.back = result.front;
#if UNITS > 0
    for (int i = 0; i < UNITS; ++i) { result.tex[i] = mix(source[A].tex[i], source[B].tex[i], t); }
#endif
#ifdef CLIPPED
    Clip(mix(source[A].clip0, source[B].clip0, t), mix(source[A].clip1, source[B].clip1, t));
#endif
#ifdef SMOOTH
    away = from;
#endif
    EmitVertex();
}

// A point of the window as if the line ran flat and towards growing x.
vec2 Turned(vec2 point, vec2 along) {
    bool isSteep = abs(along.x) < abs(along.y);
    vec2 turned = isSteep ? point.yx : point;
    turned.x *= (isSteep ? along.y : along.x) < 0.0 ? -1.0 : 1.0;
    return turned;
}

// The first column that a line towards growing x draws when it comes by a point: that of the point, unless the line has left
// the diamond in it already.
float FirstColumn(vec2 point) {
    vec2 beyond = fract(point) - 0.5;
    return floor(point.x) + (beyond.x <= 0.0 || beyond.x + abs(beyond.y) < 0.5 ? 0.0 : 1.0);
}

// How fragments find their place along a line: the product of the first two components with their window position, less the
// third, plus the fourth.
vec4 Dash(vec2 start, vec2 along) {
#ifdef DASHED
#ifdef SMOOTH
    vec2 unit = length(along) > 0.0 ? normalize(along) : vec2(1.0, 0.0);
    return vec4(unit, dot(unit, start), source[A].dashStart);
#else
    bool isSteep = abs(along.x) < abs(along.y);
    float direction = (isSteep ? along.y : along.x) < 0.0 ? -1.0 : 1.0;
    return vec4(isSteep ? vec2(0.0, direction) : vec2(direction, 0.0), FirstColumn(Turned(start, along)),
        source[A].dashStart);
#endif
#else
    return vec4(0.0);
#endif
}

void main() {
    bool isFront = true;
    float depth = 0.0;
#ifndef LINES
    isFront = IsFront(Winding(gl_in[A].gl_Position, gl_in[B].gl_Position, gl_in[0].gl_Position));
    if ((faces & (isFront ? 1 : 2)) == 0) { return; }
    depth = Offset(gl_in[A].gl_Position, gl_in[B].gl_Position, gl_in[0].gl_Position);
#endif
#if !defined(EXPANDED) && !defined(DASHED)
    Emit(0.0, vec2(0.0), depth, vec3(0.0), isFront);
    Emit(1.0, vec2(0.0), depth, vec3(0.0), isFront);
    EndPrimitive();
#else
    vec4 a = gl_in[A].gl_Position;
    vec4 b = gl_in[B].gl_Position;
    vec2 t = vec2(0.0, 1.0);
    Cut(a.z + a.w, b.z + b.w, t);
    Cut(a.w - a.z, b.w - b.z, t);
    if (t.x > t.y) { return; }
    vec4 first = mix(a, b, t.x);
    vec4 last = mix(a, b, t.y);
    if (first.w <= 0.0 || last.w <= 0.0) { return; }
    vec2 pixel = 2.0 / viewport.zw;
    vec2 along = (last.xy / last.w - first.xy / first.w) / pixel;
#ifdef DASHED
    vec4 place = Dash(viewport.xy + (first.xy / first.w + 1.0) / pixel, along);
    #define EMIT(t, shift, from) dash = place; Emit(t, shift, depth, from, isFront)
#else
    #define EMIT(t, shift, from) Emit(t, shift, depth, from, isFront)
#endif
#ifdef EXPANDED
    vec2 ends;
    float size = length(along);
#ifdef SMOOTH
    float extent = 0.5 * sizes.y + 0.5;
    vec2 unit = size > 0.0 ? along / size : vec2(1.0, 0.0);
    vec2 shift = vec2(-unit.y, unit.x) * extent * pixel;
    ends = size > 0.0 ? vec2(-0.5, size + 0.5) / size : vec2(0.0, 1.0);
#else
    // As wide in y as the line is, or in x where it is steep, and whole columns long: that is how OpenGL rasterises wide
    // lines.
    float extent = 0.5 * max(floor(sizes.y + 0.5), 1.0);
    bool isSteep = abs(along.x) < abs(along.y);
    vec2 shift = (isSteep ? vec2(extent, 0.0) : vec2(0.0, extent)) * pixel;
    vec2 start = viewport.xy + (first.xy / first.w + 1.0) / pixel;
    float low = FirstColumn(Turned(start, along));
    float high = FirstColumn(Turned(start + along, along));
    if (high <= low) { return; }
    ends = (vec2(low, high) - Turned(start, along).x) / max(abs(along.x), abs(along.y));
#endif
    // From places in the window to places between the two ends of the line, which perspective moves.
    ends = ends * first.w / (ends * first.w + (1.0 - ends) * last.w);
    t = mix(t.xx, t.yy, ends);
    EMIT(t.x, shift, vec3(extent, -0.5, size + 0.5));
    EMIT(t.x, -shift, vec3(-extent, -0.5, size + 0.5));
    EMIT(t.y, shift, vec3(extent, size + 0.5, -0.5));
    EMIT(t.y, -shift, vec3(-extent, size + 0.5, -0.5));
#else
    EMIT(0.0, vec2(0.0), vec3(0.0));
    EMIT(1.0, vec2(0.0), vec3(0.0));
#endif
    EndPrimitive();
#endif
}
#endif
)";

constexpr char const* FragmentFrame = R"(
in Rasterised { FRAGMENT_VARYINGS } source;
#if defined(SMOOTH) && defined(GEOMETRY)
noperspective in vec3 away;
#endif
#ifdef DASHED
flat in vec4 dash;
#endif
out vec4 fragment;
#ifdef BACK_FIRST
uniform int triangles;
#endif

#if UNITS > 0
uniform sampler2D samplers[UNITS];

vec4 Environment(int mode, vec4 color, vec4 texel, vec4 constant) {
    if (mode == 0x2100) { return color * texel; }
    if (mode == 0x1E01) { return texel; }
    if (mode == 0x2101) { return vec4(mix(color.rgb, texel.rgb, texel.a), color.a); }
    if (mode == 0x0BE2) { return vec4(mix(color.rgb, constant.rgb, texel.rgb), color.a * texel.a); }
    if (mode == 0x0104) { return vec4(min(color.rgb + texel.rgb, 1.0), color.a * texel.a); }
    return color;
}

#ifdef COMBINED
// Sources: the textures of all units, then the unit's own texture, its constant, the first colour and the one of the unit
// before.
vec4 Argument(uint bits, vec4 sources[8]) {
    vec4 color = sources[bits & 7u];
    uint operand = (bits >> 3) & 3u;
    color = operand < 2u ? color : color.aaaa;
    return (operand & 1u) != 0u ? 1.0 - color : color;
}

vec4 Combine(uint bits, vec4 sources[8]) {
    vec4 a = Argument(bits >> 3, sources);
    vec4 b = Argument(bits >> 8, sources);
    vec4 c = Argument(bits >> 13, sources);
    uint function = bits & 7u;
    vec4 color = a;
    if (function == 1u) { color = a * b; }
    if (function == 2u) { color = a + b; }
    if (function == 3u) { color = a + b - 0.5; }
    if (function == 4u) { color = mix(b, a, c); }
    if (function == 5u) { color = a - b; }
    if (function >= 6u) { color = vec4(4.0 * dot(a.rgb - 0.5, b.rgb - 0.5)); }
    return color;
}

vec4 Combined(int unit, vec4 sources[8]) {
    uint rgb = combineRgb[unit];
    uint alpha = combineAlpha[unit];
    vec4 color = Combine(rgb, sources);
    if ((rgb & 7u) != 7u) { color.a = Combine(alpha, sources).a; }
    vec2 scales = vec2(1 << int((rgb >> 18) & 3u), 1 << int((alpha >> 18) & 3u));
    return clamp(color * scales.xxxy, 0.0, 1.0);
}
#endif
#endif

vec4 Textured(vec4 color) {
#if UNITS > 0
    vec4 texels[4] = vec4[4](vec4(1.0), vec4(1.0), vec4(1.0), vec4(1.0));
    if (environment[0] != 0) { texels[0] = textureProj(samplers[0], source.tex[0].xyw); }
#if UNITS > 1
    if (environment[1] != 0) { texels[1] = textureProj(samplers[1], source.tex[1].xyw); }
#endif
#if UNITS > 2
    if (environment[2] != 0) { texels[2] = textureProj(samplers[2], source.tex[2].xyw); }
#endif
#if UNITS > 3
    if (environment[3] != 0) { texels[3] = textureProj(samplers[3], source.tex[3].xyw); }
#endif
    vec4 first = color;
    for (int i = 0; i < UNITS; ++i) {
        int mode = environment[i];
        if (mode == 0) { continue; }
#ifdef COMBINED
        if (mode == 0x8570) {
            color = Combined(i, vec4[8](texels[0], texels[1], texels[2], texels[3],
                texels[i], environmentColors[i], first, color));
            continue;
        }
#endif
        color = Environment(mode, color, texels[i], environmentColors[i]);
    }
#endif
    return color;
}

#ifdef DASHED
float Shows(float pixels) {
    int bit = int(floor(max(pixels, 0.0) / sizes.z)) & 15;
    return float((int(sizes.w) >> bit) & 1);
}
#endif
)";

constexpr char const* FragmentMain = R"(
void main() {
#ifdef BACK_FIRST
    bool isFront = gl_FrontFacing != (source.mirrored < 0.0);
    if ((gl_PrimitiveID >= triangles) != isFront) { discard; }
#endif
#if defined(STIPPLED) && defined(TRIANGLES)
    ivec2 cell = ivec2(gl_FragCoord.xy) & 31;
    uint row = stipple[cell.y >> 2][cell.y & 3];
    if (((row >> uint(31 - cell.x)) & 1u) == 0u) { discard; }
#endif
#ifdef DASHED
    float along = dot(dash.xy, gl_FragCoord.xy);
#ifdef SMOOTH
    along += dash.w - dash.z - 0.5;
    float shown = mix(Shows(floor(along)), Shows(floor(along) + 1.0), fract(along));
#else
    float shown = Shows(dash.w + floor(along) - dash.z);
#endif
    if (shown <= 0.0) { discard; }
#endif
    vec4 color = TWO_SIDE && !gl_FrontFacing ? source.back : source.front;
    color = Surface(color);
#if defined(SMOOTH) && (defined(POINTS) || defined(CORNERS))
    float away = length(gl_PointCoord - 0.5) * (sizes.x + 2.0);
    float coverage = clamp(0.5 * sizes.x + 0.5 - away, 0.0, 1.0);
#elif defined(SMOOTH)
    float coverage = clamp(0.5 * sizes.y + 0.5 - abs(away.x), 0.0, 1.0) * clamp(min(away.y, away.z) + 0.5, 0.0, 1.0);
#endif
#if defined(SMOOTH) && defined(DASHED)
    coverage *= shown;
#endif
#ifdef SMOOTH
    if (coverage <= 0.0) { discard; }
    color.a *= coverage;
#endif
    fragment = color;
}
)";

ShaderSource const& PlainSource() {
    static ShaderSource const source("plain",
        "void Shade(vec4 eye, vec3 normal, vec4 color, out vec4 front, out vec4 back) {\n"
        "    front = clamp(color, 0.0, 1.0);\n    back = front;\n}\n",
        "vec4 Surface(vec4 color) { return color; }\n");
    return source;
}

bool HasGeometryStage(ProgramVariant const& p_variant) {
    bool const isDashed = p_variant.stippled && p_variant.pipeline == Pipeline::Lines;
    return p_variant.expanded || isDashed || p_variant.pipeline == Pipeline::Edges ||
        p_variant.pipeline == Pipeline::Corners;
}

std::string Defines(ProgramVariant const& p_variant, std::uint32_t p_options) {
    constexpr std::array<char const*, PipelineCount> names = {
        "POINTS", "LINES", "TRIANGLES", "EDGES", "CORNERS", "TRIANGLES", "TRIANGLES"};
    std::string text;
    auto const flag = [&text](bool p_on, char const* p_name) {
        text += p_on ? "#define " + std::string(p_name) + "\n" : std::string();
    };
    auto const constant = [&text](bool p_on, char const* p_name) {
        text += "#define " + std::string(p_name) + (p_on ? " true\n" : " false\n");
    };
    flag(true, names[static_cast<std::size_t>(p_variant.pipeline)]);
    flag(p_variant.pipeline == Pipeline::BackThenFront, "BACK_FIRST");
    flag(HasGeometryStage(p_variant), "GEOMETRY");
    flag(p_variant.immediate, "IMMEDIATE");
    flag(p_variant.flat, "FLAT");
    flag(p_variant.combined, "COMBINED");
    flag(p_variant.clipped, "CLIPPED");
    flag(p_variant.stippled, "STIPPLED");
    flag(p_variant.offset, "OFFSET");
    flag(p_variant.expanded, "EXPANDED");
    flag(p_variant.smooth, "SMOOTH");
    constant(p_variant.normals, "HAS_NORMALS");
    constant(p_variant.colors, "HAS_COLORS");
    constant(p_variant.lighting, "LIGHTING");
    constant(p_variant.twoSide, "TWO_SIDE");
    text += "#define UNITS " + std::to_string(p_variant.units) + "\n";
    return text + "#define OPTIONS " + std::to_string(p_options) + "\n";
}

template <class GetLength, class GetLog>
std::string ReadLog(GLuint p_object, GetLength const& p_getLength, GetLog const& p_getLog) {
    GLint length = 0;
    p_getLength(p_object, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(length > 0 ? length : 0), '\0');
    p_getLog(p_object, length, nullptr, log.data());
    while (!log.empty() && (log.back() == '\0' || log.back() == '\n')) {
        log.pop_back();
    }
    return log;
}

/// Compiles one stage and attaches it; the program keeps it. Returns the log when it fails.
std::optional<std::string> Attach(GLuint p_program, GLenum p_stage, std::string const& p_text) {
    GLuint const shader = glCreateShader(p_stage);
    char const* const text = p_text.c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    std::optional<std::string> log;
    if (compiled == GL_FALSE) {
        log = ReadLog(shader, glGetShaderiv, glGetShaderInfoLog);
    }
    glAttachShader(p_program, shader);
    glDeleteShader(shader);
    return log;
}

/// Fills p_program; returns the driver's log when that fails.
std::optional<std::string> Build(
    ShaderSource const& p_source, std::uint32_t p_options, ProgramVariant const& p_variant, GlProgram& p_program) {
    std::string const head = Version + Defines(p_variant, p_options) + Uniforms + Varyings;
    GLuint const name = glCreateProgram();
    auto log = Attach(name, GL_VERTEX_SHADER, head + VertexFrame + p_source.Vertex() + VertexMain);
    if (!log && HasGeometryStage(p_variant)) {
        log = Attach(name, GL_GEOMETRY_SHADER, head + GeometryMain);
    }
    if (!log) {
        log = Attach(name, GL_FRAGMENT_SHADER, head + FragmentFrame + p_source.Fragment() + FragmentMain);
    }
    if (!log) {
        glLinkProgram(name);
        GLint linked = GL_FALSE;
        glGetProgramiv(name, GL_LINK_STATUS, &linked);
        if (linked == GL_FALSE) {
            log = ReadLog(name, glGetProgramiv, glGetProgramInfoLog);
        }
    }
    if (log) {
        glDeleteProgram(name);
        return log;
    }
    constexpr std::array<char const*, 3> blocks = {"Scene", "Draw", "Texturing"};
    for (GLuint i = 0; i < blocks.size(); ++i) {
        GLuint const index = glGetUniformBlockIndex(name, blocks[i]);
        if (index != GL_INVALID_INDEX) {
            glUniformBlockBinding(name, index, i);
        }
    }
    glUseProgram(name);
    if (p_variant.units != 0) {
        constexpr std::array<GLint, 4> units = {0, 1, 2, 3};
        glUniform1iv(glGetUniformLocation(name, "samplers"), p_variant.units, units.data());
    }
    p_program = {name, glGetUniformLocation(name, "faces"), glGetUniformLocation(name, "triangles")};
    return std::nullopt;
}

} // namespace

std::uint32_t ProgramVariant::Key() const {
    std::uint32_t key = static_cast<std::uint32_t>(pipeline);
    for (bool const bit :
        {immediate, normals, colors, lighting, twoSide, flat, combined, clipped, stippled, offset, expanded, smooth}) {
        key = (key << 1) | (bit ? 1U : 0U);
    }
    return (key << 3) | units;
}

GlProgram const& GlPrograms::Find(
    Shader const& p_shader, ProgramVariant const& p_variant, std::vector<std::string>& p_errors) {
    auto const [entry, isNew] = _programs[p_shader.Id()].try_emplace(p_variant.Key());
    GlProgram& program = entry->second;
    if (!isNew) {
        return program;
    }
    auto const log = Build(p_shader.Source(), p_shader.Options(), p_variant, program);
    if (!log) {
        return program;
    }
    p_shader.Fail(*log);
    p_errors.push_back("The shader \"" + p_shader.Source().Name() +
        "\" does not compile; what uses it is drawn in plain colours. The driver says: " + p_shader.Log());
    if (auto const plainLog = Build(PlainSource(), 0, p_variant, program)) {
        p_errors.push_back("Not even plain colours can be drawn with this driver, which says: " + *plainLog);
    }
    return program;
}

void GlPrograms::Delete(std::uint64_t p_shaderId) {
    auto const found = _programs.find(p_shaderId);
    if (found == _programs.end()) {
        return;
    }
    for (auto const& [key, program] : found->second) {
        glDeleteProgram(program.name);
    }
    _programs.erase(found);
}

void GlPrograms::DeleteAll() {
    while (!_programs.empty()) {
        Delete(_programs.begin()->first);
    }
}

std::size_t GlPrograms::Count() const {
    std::size_t count = 0;
    for (auto const& [id, variants] : _programs) {
        count += variants.size();
    }
    return count;
}

} // namespace Qor::Chart::Ogl
