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
    mat4 textureMatrices[2];
    uvec4 stipple[8];
};
layout(std140) uniform Draw {
    MaterialBlock materials[2];
    vec4 sceneAmbient;
    vec4 perspectiveRow;
    vec4 sizes;
    vec4 environmentColors[2];
    ivec4 modes;
    ivec4 colorFaces;
    ivec4 environment;
};
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
#ifdef TEXTURED
#define TEXTURE_VARYINGS vec4 tex0; vec4 tex1;
#else
#define TEXTURE_VARYINGS
#endif
#define FRAGMENT_VARYINGS SHADING vec4 front; SHADING vec4 back; TEXTURE_VARYINGS
#ifdef CLIPPED
#define CLIP_VARYINGS vec4 clip0; vec4 clip1;
#else
#define CLIP_VARYINGS
#endif
#ifdef GEOMETRY
#define FIRST_VARYINGS FRAGMENT_VARYINGS CLIP_VARYINGS
#else
#define FIRST_VARYINGS FRAGMENT_VARYINGS
#endif
)";

constexpr char const* VertexFrame = R"(
layout(location = 0) in vec4 position;
layout(location = 1) in vec3 vertexNormal;
layout(location = 2) in vec4 vertexColor;
layout(location = 3) in vec4 texCoord0;
layout(location = 4) in vec4 texCoord1;
layout(location = 5) in vec4 row0;
layout(location = 6) in vec4 row1;
layout(location = 7) in vec4 row2;
layout(location = 8) in vec4 currentColor;
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
#ifdef TEXTURED
    result.tex0 = textureMatrices[0] * texCoord0;
    result.tex1 = textureMatrices[1] * texCoord1;
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
#else
layout(triangle_strip, max_vertices = 4) out;
#endif
in FIRST_BLOCK { FIRST_VARYINGS } source[];
out Rasterised { FRAGMENT_VARYINGS } result;
#ifdef SMOOTH
noperspective out float across;
#endif
uniform int faces;

// Positive for counter-clockwise corners, also when some are behind the eye.
float Winding(vec4 a, vec4 b, vec4 c) {
    return determinant(mat3(a.xyw, b.xyw, c.xyw));
}

bool IsFront(float winding) {
    return (faces & 4) != 0 ? winding <= 0.0 : winding >= 0.0;
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
#ifdef SMOOTH
    gl_PointSize = sizes.x + 2.0;
    across = 0.0;
#else
    gl_PointSize = max(floor(sizes.x + 0.5), 1.0);
#endif
    result.front = ColorOf(0, isFront);
    result.back = result.front;
#ifdef TEXTURED
    result.tex0 = source[0].tex0;
    result.tex1 = source[0].tex1;
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

void Emit(float t, vec2 offset, float side, bool isFront) {
    vec4 end = mix(gl_in[A].gl_Position, gl_in[B].gl_Position, t);
    gl_Position = vec4(end.xy + offset * end.w, end.zw);
    result.front = mix(ColorOf(A, isFront), ColorOf(B, isFront), t);
    result.back = result.front;
#ifdef TEXTURED
    result.tex0 = mix(source[A].tex0, source[B].tex0, t);
    result.tex1 = mix(source[A].tex1, source[B].tex1, t);
#endif
#ifdef CLIPPED
    Clip(mix(source[A].clip0, source[B].clip0, t), mix(source[A].clip1, source[B].clip1, t));
#endif
#ifdef SMOOTH
    across = side;
#endif
    EmitVertex();
}

void main() {
    bool isFront = true;
#ifndef LINES
    isFront = IsFront(Winding(gl_in[A].gl_Position, gl_in[B].gl_Position, gl_in[0].gl_Position));
    if ((faces & (isFront ? 1 : 2)) == 0) { return; }
#endif
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
#ifdef SMOOTH
    float extent = 0.5 * sizes.y + 0.5;
    vec2 unit = length(along) > 0.0 ? normalize(along) : vec2(1.0, 0.0);
    vec2 offset = vec2(-unit.y, unit.x) * extent * pixel;
#else
    // As wide in y as the line is, or in x where it is steep: that is how OpenGL rasterises wide lines.
    float extent = 0.5 * max(floor(sizes.y + 0.5), 1.0);
    vec2 offset = (abs(along.x) > abs(along.y) ? vec2(0.0, extent) : vec2(extent, 0.0)) * pixel;
#endif
    Emit(t.x, offset, extent, isFront);
    Emit(t.x, -offset, -extent, isFront);
    Emit(t.y, offset, extent, isFront);
    Emit(t.y, -offset, -extent, isFront);
    EndPrimitive();
}
#endif
)";

constexpr char const* FragmentFrame = R"(
in Rasterised { FRAGMENT_VARYINGS } source;
#if defined(SMOOTH) && defined(GEOMETRY)
noperspective in float across;
#endif
out vec4 fragment;
uniform sampler2D texture0;
uniform sampler2D texture1;

vec4 Environment(int mode, vec4 color, vec4 texel, vec4 constant) {
    if (mode == 0x2100) { return color * texel; }
    if (mode == 0x1E01) { return texel; }
    if (mode == 0x2101) { return vec4(mix(color.rgb, texel.rgb, texel.a), color.a); }
    if (mode == 0x0BE2) { return vec4(mix(color.rgb, constant.rgb, texel.rgb), color.a * texel.a); }
    if (mode == 0x0104) { return vec4(min(color.rgb + texel.rgb, 1.0), color.a * texel.a); }
    return color;
}

vec4 Textured(vec4 color) {
#ifdef TEXTURED
    if (environment.x != 0) {
        color = Environment(environment.x, color, textureProj(texture0, source.tex0.xyw), environmentColors[0]);
    }
    if (environment.y != 0) {
        color = Environment(environment.y, color, textureProj(texture1, source.tex1.xyw), environmentColors[1]);
    }
#endif
    return color;
}
)";

constexpr char const* FragmentMain = R"(
void main() {
#ifdef STIPPLED
    ivec2 cell = ivec2(gl_FragCoord.xy) & 31;
    uint row = stipple[cell.y >> 2][cell.y & 3];
    if (((row >> uint(31 - cell.x)) & 1u) == 0u) { discard; }
#endif
    vec4 color = TWO_SIDE && !gl_FrontFacing ? source.back : source.front;
    color = Surface(color);
#if defined(SMOOTH) && (defined(POINTS) || defined(CORNERS))
    float away = length(gl_PointCoord - 0.5) * (sizes.x + 2.0);
    float coverage = clamp(0.5 * sizes.x + 0.5 - away, 0.0, 1.0);
#elif defined(SMOOTH)
    float coverage = clamp(0.5 * sizes.y + 0.5 - abs(across), 0.0, 1.0);
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
    return p_variant.expanded || p_variant.pipeline == Pipeline::Edges || p_variant.pipeline == Pipeline::Corners;
}

std::string Defines(ProgramVariant const& p_variant, std::uint32_t p_options) {
    constexpr std::array<char const*, PipelineCount> names = {"POINTS", "LINES", "TRIANGLES", "EDGES", "CORNERS"};
    std::string text;
    auto const flag = [&text](bool p_on, char const* p_name) {
        text += p_on ? "#define " + std::string(p_name) + "\n" : std::string();
    };
    auto const constant = [&text](bool p_on, char const* p_name) {
        text += "#define " + std::string(p_name) + (p_on ? " true\n" : " false\n");
    };
    flag(true, names[static_cast<std::size_t>(p_variant.pipeline)]);
    flag(HasGeometryStage(p_variant), "GEOMETRY");
    flag(p_variant.immediate, "IMMEDIATE");
    flag(p_variant.flat, "FLAT");
    flag(p_variant.textured, "TEXTURED");
    flag(p_variant.clipped, "CLIPPED");
    flag(p_variant.stippled, "STIPPLED");
    flag(p_variant.smooth, "SMOOTH");
    constant(p_variant.normals, "HAS_NORMALS");
    constant(p_variant.colors, "HAS_COLORS");
    constant(p_variant.lighting, "LIGHTING");
    constant(p_variant.twoSide, "TWO_SIDE");
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
    constexpr std::array<char const*, 2> blocks = {"Scene", "Draw"};
    for (GLuint i = 0; i < blocks.size(); ++i) {
        GLuint const index = glGetUniformBlockIndex(name, blocks[i]);
        if (index != GL_INVALID_INDEX) {
            glUniformBlockBinding(name, index, i);
        }
    }
    glUseProgram(name);
    glUniform1i(glGetUniformLocation(name, "texture0"), 0);
    glUniform1i(glGetUniformLocation(name, "texture1"), 1);
    p_program = {name, glGetUniformLocation(name, "faces")};
    return std::nullopt;
}

} // namespace

std::uint32_t ProgramVariant::Key() const {
    std::uint32_t key = static_cast<std::uint32_t>(pipeline);
    for (bool const bit :
        {immediate, normals, colors, lighting, twoSide, flat, textured, clipped, stippled, expanded, smooth}) {
        key = (key << 1) | (bit ? 1U : 0U);
    }
    return key;
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
