#include "tests/framework/ogl/referee/Table.h"

#include "framework/library/Shapes.h"

#include <array>
#include <cmath>
#include <numbers>
#include <tuple>

namespace Qor::Chart::Ogl::Referee {

namespace {

using namespace Tokens;
using Library::Shape;
using Calls = std::vector<Call>;

struct Named {
    char const* name;
    Token token;
};

ShapeData FromMesh(Shape p_shape) {
    Library::Mesh const mesh = Library::Shapes::Build(p_shape);
    return {AGL_TRIANGLES, mesh.vertices, mesh.indices};
}

/// Corners on a circle, or for strips on a zigzag, each of another colour.
Program Primitive(Token p_kind, bool p_isBuffered) {
    int const count = p_kind == AGL_TRIANGLES ? 9 : 8;
    Program program;
    program.Add("LineWidth", {p_kind == AGL_LINES ? 15.0 : 9});
    program.Add("PointSize", {18});
    if (p_kind == AGL_QUADS || p_kind == AGL_QUAD_STRIP) {
        program.Add("ShadeModel", {AGL_FLAT}); // else Mesa cuts them along either diagonal
    }
    VertexData vertices;
    bool const isStrip = p_kind == AGL_TRIANGLE_STRIP || p_kind == AGL_QUAD_STRIP;
    for (int i = 0; i < count; ++i) {
        int const turns = p_kind == AGL_LINES ? 3 : p_kind == AGL_TRIANGLES ? 4 : 1;
        double const angle = 2 * std::numbers::pi * turns * i / count;
        double const x = isStrip ? -0.9 + 0.5 * (i / 2) : 0.9 * std::cos(angle);
        double const y = isStrip ? (i % 2 == 0 ? -0.6 : 0.7) : 0.9 * std::sin(angle);
        vertices.positions.emplace_back(Agl::Vector3(x, y, 0));
        vertices.colors.emplace_back(
            0.3F + 0.1F * static_cast<float>(i), static_cast<float>(i % 3) * 0.4F, 1 - 0.12F * static_cast<float>(i));
    }
    program.AddPrimitive(p_kind, std::move(vertices), p_isBuffered);
    return program;
}

/// A rectangle of one colour with texture coordinates; a negative width shows its back.
Calls Rectangle(double p_left, double p_bottom, double p_right, double p_top, std::array<double, 4> p_color,
    double p_leftDepth = 0, double p_rightDepth = 0) {
    Calls calls = {{"Color", {p_color[0], p_color[1], p_color[2], p_color[3]}}, {"Begin", {AGL_QUADS}}};
    for (auto const& [x, y, z, s, t] :
        {std::tuple(p_left, p_bottom, p_leftDepth, -0.2, -0.2), {p_right, p_bottom, p_rightDepth, 1.4, -0.2},
            {p_right, p_top, p_rightDepth, 1.4, 1.4}, {p_left, p_top, p_leftDepth, -0.2, 1.4}}) {
        for (std::size_t unit = 0; unit < TextureUnitCount; ++unit)
            calls.push_back({"MultiTexCoord", {AGL_TEXTURE0 + static_cast<double>(unit), s, t, 0, 1}});
        calls.push_back({"Vertex", {x, y, z}});
    }
    calls.push_back({"End", {}});
    return calls;
}

/// Two translucent rectangles that overlap and cut through each other, and a third one that shows its back.
Calls Rectangles() {
    Calls calls = Rectangle(-0.9, -0.8, 0.5, 0.6, {0.9, 0.3, 0.1, 0.6}, -0.5, 0.5);
    for (Calls const& more : {Rectangle(-0.4, -0.5, 0.9, 0.9, {0.2, 0.5, 0.9, 0.7}, 0.4, -0.6),
             Rectangle(0.95, -0.95, 0.1, -0.2, {0.4, 0.9, 0.3, 0.5}, 0.1, 0.2)}) {
        calls.insert(calls.end(), more.begin(), more.end());
    }
    return calls;
}

/// Lines in all directions.
Calls Star() {
    Calls calls;
    for (int i = 0; i < 8; ++i) {
        double const angle = 0.1 + std::numbers::pi * i / 8;
        Calls const line = {{"Color", {0.2 + 0.1 * i, 1 - 0.1 * i, 0.5, 1}}, {"Begin", {AGL_LINES}},
            {"Vertex", {-0.95 * std::cos(angle), -0.95 * std::sin(angle), 0}},
            {"Vertex", {0.95 * std::cos(angle), 0.95 * std::sin(angle), 0}}, {"End", {}}};
        calls.insert(calls.end(), line.begin(), line.end());
    }
    return calls;
}

Calls Dots() {
    Calls calls = {{"Begin", {AGL_POINTS}}};
    for (int i = 0; i < 16; ++i) {
        calls.push_back({"Color", {0.2 + 0.05 * i, 1 - 0.05 * i, 0.5, 1}});
        calls.push_back({"Vertex", {-0.73 + 0.493 * (i % 4), -0.71 + 0.487 * (i / 4), 0}});
    }
    calls.push_back({"End", {}});
    return calls;
}

/// A shape in the light, seen from its front, above and the side.
Program Lit(Calls p_state, Shape p_shape = Shape::Torus) {
    Program program;
    program.calls = {{"Enable", {AGL_DEPTH_TEST}}, {"Enable", {AGL_LIGHTING}}, {"Enable", {AGL_LIGHT0}},
        {"Enable", {AGL_NORMALIZE}}, {"Light", {AGL_LIGHT0, AGL_POSITION, 1, 2, -3, 0}},
        {"Material", {AGL_FRONT_AND_BACK, AGL_AMBIENT_AND_DIFFUSE, 0.3, 0.6, 0.8, 1}}, {"Color", {0.8, 0.5, 0.2, 1}}};
    program.calls.insert(program.calls.end(), p_state.begin(), p_state.end());
    program.Add("Rotate", {-50, 1, 0.2, 0.3});
    program.Add("Scale", {1.55, 1.55, -1});
    program.Add("FrontFace", {AGL_CW});
    program.Add("Draw", {0});
    program.shapes.push_back(FromMesh(p_shape));
    return program;
}

/// Sets everything that a group of the attribute stack covers to something else.
Calls ChangeEverything() {
    Calls calls = {{"Color", {0.1, 0.9, 0.9, 1}}, {"Normal", {1, 0, 0}}, {"PointSize", {3}}, {"LineWidth", {3}},
        {"LineStipple", {2, 0x3FFF}}, {"CullFace", {AGL_FRONT}}, {"FrontFace", {AGL_CW}},
        {"PolygonStipple", {0xFFFFFFF0, 0xFFFFFF00}}, {"Light", {AGL_LIGHT0, AGL_DIFFUSE, 1, 0.2, 0.2, 1}},
        {"Material", {AGL_FRONT_AND_BACK, AGL_EMISSION, 0, 0.3, 0, 1}}, {"ShadeModel", {AGL_FLAT}},
        {"DepthFunc", {AGL_GREATER}}, {"ClearDepth", {0.3}}, {"StencilFunc", {AGL_ALWAYS, 1, 255}},
        {"StencilOp", {AGL_KEEP, AGL_KEEP, AGL_INVERT}}, {"Viewport", {10, 10, 80, 80}}, {"DepthRange", {0.2, 0.7}},
        {"ClipPlane", {AGL_CLIP_PLANE0, 1, 0, 0, 0.6}}, {"ColorMask", {1, 1, 0, 1}},
        {"BlendFunc", {AGL_ONE, AGL_SRC_ALPHA}}, {"BindTexture", {1}}, {"TexEnv", {AGL_TEXTURE_ENV_MODE, AGL_REPLACE}},
        {"Scissor", {5, 5, 70, 80}}};
    for (Token const capability : {AGL_POLYGON_STIPPLE, AGL_CULL_FACE, AGL_LIGHTING, AGL_LIGHT0, AGL_DEPTH_TEST,
             AGL_CLIP_PLANE0, AGL_BLEND, AGL_TEXTURE_2D, AGL_SCISSOR_TEST}) {
        calls.push_back({"Enable", {static_cast<double>(capability)}});
    }
    calls.push_back({"MatrixMode", {AGL_TEXTURE}});
    return calls;
}

class Builder {
public:
    std::vector<TableRow> Build() {
        Primitives();
        Polygons();
        Lights();
        Textures();
        Fragments();
        Stacks();
        for (Shape const shape : Library::AllShapes)
            _rows.push_back({std::string(NameOf(shape)), Lit({}, shape)});
        return std::move(_rows);
    }

private:
    void Row(std::string p_label, std::vector<Calls> const& p_parts, double p_agreement = 0.99) {
        TableRow row{std::move(p_label), {}, p_agreement};
        for (Calls const& part : p_parts)
            row.program.calls.insert(row.program.calls.end(), part.begin(), part.end());
        _rows.push_back(std::move(row));
    }
    void Light(std::string p_label, Calls p_state) { _rows.push_back({std::move(p_label), Lit(std::move(p_state))}); }

    void Primitives() {
        static constexpr std::array<char const*, 10> kinds = {"points", "lines", "line loop", "line strip", "triangles",
            "triangle strip", "triangle fan", "quads", "quad strip", "polygon"};
        for (bool const isBuffered : {false, true}) {
            for (Token kind = AGL_POINTS; kind <= AGL_POLYGON; ++kind)
                _rows.push_back(
                    {std::string(kinds[kind]) + (isBuffered ? ", buffer" : ""), Primitive(kind, isBuffered)});
        }
        Program flat = Primitive(AGL_TRIANGLES, true);
        flat.calls.insert(
            flat.calls.begin(), {{"ShadeModel", {AGL_FLAT}}, {"PolygonMode", {AGL_FRONT_AND_BACK, AGL_LINE}}});
        _rows.push_back({"flat outlines", std::move(flat)});
        Row("line width 1", {{{"LineWidth", {1}}}, Star(), Rectangle(-0.4, -0.4, 0.6, 0.4, {0.1, 0.1, 0.4, 1})});
        Row("line width 7.6", {{{"LineWidth", {7.6F}}}, Star()});
        Row("line stipple",
            {{{"LineWidth", {8}}, {"LineStipple", {1, 0xF0F6}}, {"Enable", {AGL_LINE_STIPPLE}}}, Star()}, 0.75);
        Row("line stipple x3",
            {{{"LineWidth", {8}}, {"LineStipple", {3, 0x5B5B}}, {"Enable", {AGL_LINE_STIPPLE}}}, Star()}, 0.75);
        Calls const smooth = {{"Enable", {AGL_BLEND}}, {"BlendFunc", {AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA}}};
        Row("line smooth", {smooth, {{"LineWidth", {6}}, {"Enable", {AGL_LINE_SMOOTH}}}, Star()}, 0.8);
        Row("point size 13", {{{"PointSize", {13}}}, Dots()});
        Row("point size 12.4", {{{"PointSize", {12.4F}}}, Dots()});
        Row("point smooth", {smooth, {{"PointSize", {16}}, {"Enable", {AGL_POINT_SMOOTH}}}, Dots()}, 0.6);
    }

    void Polygons() {
        for (auto const& [name, front, back] : {std::tuple("line", AGL_LINE, AGL_LINE), {"point", AGL_POINT, AGL_POINT},
                 {"front line", AGL_LINE, AGL_FILL}, {"back line", AGL_FILL, AGL_LINE}}) {
            Row(std::string("mode ") + name,
                {{{"LineWidth", {9}}, {"PointSize", {22}}, {"PolygonMode", {AGL_FRONT, double(front)}},
                     {"PolygonMode", {AGL_BACK, double(back)}}},
                    Rectangles()});
        }
        Row("cull front", {{{"Enable", {AGL_CULL_FACE}}, {"CullFace", {AGL_BACK}}}, Rectangles()});
        Row("cull, clockwise",
            {{{"Enable", {AGL_CULL_FACE}}, {"FrontFace", {AGL_CW}}, {"CullFace", {AGL_FRONT}}}, Rectangles()});
        Row("polygon stipple",
            {{{"Enable", {AGL_POLYGON_STIPPLE}}, {"PolygonStipple", {0xFFFF0000, 0xF0F0F0F3, 0xFF}}}, Rectangles()});
        Calls const depth = {{"Enable", {AGL_DEPTH_TEST}}, {"DepthFunc", {AGL_LESS}}};
        Row("offset fill",
            {depth, {{"PolygonOffset", {8, 4e6}}, {"Enable", {AGL_POLYGON_OFFSET_FILL}}},
                Rectangle(-0.9, -0.8, 0.5, 0.6, {0.9, 0.3, 0.1, 1}, -0.5, 0.5),
                {{"Disable", {AGL_POLYGON_OFFSET_FILL}}},
                Rectangle(-0.4, -0.5, 0.9, 0.9, {0.2, 0.5, 0.9, 1}, 0.4, -0.6)});
        Row("dashed front, filled back",
            {{{"Enable", {AGL_LINE_STIPPLE}}, {"LineStipple", {8, 0x0FFF}}, {"LineWidth", {5}},
                 {"PolygonMode", {AGL_FRONT, AGL_LINE}}},
                Rectangle(-0.9, -0.8, 0.1, 0.6, {0.9, 0.3, 0.1, 1}, 0, 0),
                Rectangle(0.9, -0.5, 0.2, 0.9, {0.2, 0.5, 0.9, 1}, 0, 0)},
            0.8);
        Calls const clip = {{"ClipPlane", {AGL_CLIP_PLANE0, 1, 0.5, 0, 0.2}}, {"Enable", {AGL_CLIP_PLANE0}}};
        Row("clip plane", {clip, Rectangles()});
        Row("clip plane, lines", {clip, Rectangles(), {{"LineWidth", {1}}}, Star(), {{"PointSize", {5}}}, Dots()});
        Row("clip plane, wide lines", {clip, {{"LineWidth", {11}}}, Star()}, 0.95);
        Row("clip planes 0, 5, 7",
            {{{"ClipPlane", {AGL_CLIP_PLANE0, 1, 0, 0, 0.5}}, {"ClipPlane", {AGL_CLIP_PLANE0 + 5, -1, 0.4, 0, 0.6}},
                 {"ClipPlane", {AGL_CLIP_PLANE0 + 7, 0, 0, 1, 0.3}}, {"Enable", {AGL_CLIP_PLANE0}},
                 {"Enable", {AGL_CLIP_PLANE0 + 5}}, {"Enable", {AGL_CLIP_PLANE0 + 7}}},
                Rectangles()});
        Row("viewport", {{{"Viewport", {20, 10, 70, 80}}}, Rectangles()});
    }

    void Lights() {
        Calls const local = {{"Light", {AGL_LIGHT0, AGL_POSITION, 0.5, 0.6, -1, 1}}};
        auto const with = [](Calls p_calls, Calls const& p_more) {
            p_calls.insert(p_calls.end(), p_more.begin(), p_more.end());
            return p_calls;
        };
        Calls const shiny = {{"Light", {AGL_LIGHT0, AGL_SPECULAR, 1, 1, 1, 1}},
            {"Material", {AGL_FRONT, AGL_SPECULAR, 0.9, 0.8, 0.7, 1}}, {"Material", {AGL_FRONT, AGL_SHININESS, 12}}};
        Light("light, directional", {});
        Light("light, positional", local);
        Light("light, spot",
            with(local,
                {{"Light", {AGL_LIGHT0, AGL_SPOT_DIRECTION, -0.3, -0.3, 1}},
                    {"Light", {AGL_LIGHT0, AGL_SPOT_CUTOFF, 35}}, {"Light", {AGL_LIGHT0, AGL_SPOT_EXPONENT, 4}}}));
        Light("light, attenuation",
            with(local,
                {{"Light", {AGL_LIGHT0, AGL_CONSTANT_ATTENUATION, 0.3}},
                    {"Light", {AGL_LIGHT0, AGL_LINEAR_ATTENUATION, 0.3}},
                    {"Light", {AGL_LIGHT0, AGL_QUADRATIC_ATTENUATION, 0.7}}}));
        Light("light, specular", shiny);
        Light("local viewer", with(shiny, {{"LightModel", {AGL_LIGHT_MODEL_LOCAL_VIEWER, 1}}}));
        Light("light, ambient", {{"Light", {AGL_LIGHT0, AGL_AMBIENT, 0.5, 0, 0.2, 1}}});
        Light("model ambient", {{"LightModel", {AGL_LIGHT_MODEL_AMBIENT, 0.1, 0.9, 0.3, 1}}});
        Light("emission", {{"Material", {AGL_FRONT, AGL_EMISSION, 0.4, 0, 0.1, 1}}});
        Light("color material", {{"ColorMaterial", {AGL_FRONT, AGL_DIFFUSE}}, {"Enable", {AGL_COLOR_MATERIAL}}});
        Light("flat shading", {{"ShadeModel", {AGL_FLAT}}});
        Light("not normalized", {{"Disable", {AGL_NORMALIZE}}});
        Light("sheared", {{"Scale", {1, 0.9, 0.4}}});
        Light("rescale normal", {{"Disable", {AGL_NORMALIZE}}, {"Enable", {AGL_RESCALE_NORMAL}}});
        Light("two sides",
            {{"LightModel", {AGL_LIGHT_MODEL_TWO_SIDE, 1}}, {"ClipPlane", {AGL_CLIP_PLANE0, 0, 0.3, 1, 0.3}},
                {"Enable", {AGL_CLIP_PLANE0}}, {"Material", {AGL_BACK, AGL_DIFFUSE, 0.9, 0.2, 0.1, 1}}});
        Calls eight;
        for (int i = 0; i < static_cast<int>(LightCount); ++i) {
            double const light = AGL_LIGHT0 + static_cast<double>(i);
            double const angle = 0.8 * i;
            eight.push_back({"Enable", {light}});
            eight.push_back({"Light", {light, AGL_POSITION, std::cos(angle), std::sin(angle), -0.7, double(i % 2)}});
            eight.push_back({"Light", {light, AGL_DIFFUSE, 0.1 * i, 0.5 - 0.06 * i, 0.3, 1}});
        }
        Light("eight lights", eight);
    }

    void Textures() {
        Calls const on = {{"BindTexture", {3}}, {"Enable", {AGL_TEXTURE_2D}}};
        Calls const constant = {{"TexEnv", {AGL_TEXTURE_ENV_COLOR, 0.9, 0.6, 0.1, 0.8}}};
        for (Named const& mode : {Named{"modulate", AGL_MODULATE}, {"replace", AGL_REPLACE}, {"decal", AGL_DECAL},
                 {"blend", AGL_BLEND}, {"add", AGL_ADD}}) {
            Row(std::string("texture, ") + mode.name,
                {on, constant, {{"TexEnv", {AGL_TEXTURE_ENV_MODE, double(mode.token)}}}, Rectangles()});
        }
        for (Named const& function : {Named{"replace", AGL_REPLACE}, {"modulate", AGL_MODULATE}, {"add", AGL_ADD},
                 {"add signed", AGL_ADD_SIGNED}, {"interpolate", AGL_INTERPOLATE}, {"subtract", AGL_SUBTRACT},
                 {"dot3", AGL_DOT3_RGB}, {"dot3 rgba", AGL_DOT3_RGBA}}) {
            Row(std::string("combine ") + function.name,
                {on, constant,
                    {{"TexEnv", {AGL_TEXTURE_ENV_MODE, AGL_COMBINE}},
                        {"TexEnv", {AGL_COMBINE_RGB, double(function.token)}}, {"TexEnvf", {AGL_RGB_SCALE, 2}}},
                    Rectangles()});
        }
        for (int i = 0; i < static_cast<int>(TestTextureCount); ++i)
            Row("sampling " + std::to_string(i),
                {{{"BindTexture", {double(i)}}, {"Enable", {AGL_TEXTURE_2D}}}, Rectangles()});
        Row("all texture units",
            {on, constant,
                {{"ActiveTexture", {AGL_TEXTURE0 + 1}}, {"BindTexture", {0}}, {"Enable", {AGL_TEXTURE_2D}},
                    {"TexEnv", {AGL_TEXTURE_ENV_MODE, AGL_ADD}},
                    {"ActiveTexture", {AGL_TEXTURE0 + TextureUnitCount - 1}}, {"BindTexture", {2}},
                    {"Enable", {AGL_TEXTURE_2D}}},
                Rectangles()});
        Row("texture matrix",
            {on, {{"MatrixMode", {AGL_TEXTURE}}, {"Rotate", {30, 0, 0, 1}}, {"Scale", {2, 0.7, 1}}}, Rectangles()});
    }

    void Fragments() {
        Calls const blend = {{"Enable", {AGL_BLEND}}};
        for (Named const& f : {Named{"zero", AGL_ZERO}, {"one", AGL_ONE}, {"src color", AGL_SRC_COLOR},
                 {"1 - src color", AGL_ONE_MINUS_SRC_COLOR}, {"src alpha", AGL_SRC_ALPHA},
                 {"1 - src alpha", AGL_ONE_MINUS_SRC_ALPHA}, {"dst alpha", AGL_DST_ALPHA},
                 {"1 - dst alpha", AGL_ONE_MINUS_DST_ALPHA}, {"dst color", AGL_DST_COLOR},
                 {"1 - dst color", AGL_ONE_MINUS_DST_COLOR}}) {
            Row(std::string("to ") + f.name, {blend, {{"BlendFunc", {AGL_SRC_ALPHA, double(f.token)}}}, Rectangles()});
        }
        Row("from saturate",
            {{{"ClearColor", {0.2, 0.2, 0.3, 0.4}}, {"Clear", {AGL_COLOR_BUFFER_BIT}}}, blend,
                {{"BlendFunc", {AGL_SRC_ALPHA_SATURATE, AGL_ONE}}}, Rectangles()});
        for (Named const& equation : {Named{"subtract", AGL_FUNC_SUBTRACT},
                 {"reverse subtract", AGL_FUNC_REVERSE_SUBTRACT}, {"min", AGL_MIN}, {"max", AGL_MAX}}) {
            Row(std::string("blend ") + equation.name,
                {{{"ClearColor", {0.5, 0.6, 0.4, 1}}, {"Clear", {AGL_COLOR_BUFFER_BIT}}}, blend,
                    {{"BlendFunc", {AGL_SRC_ALPHA, AGL_ONE}}, {"BlendEquation", {double(equation.token)}}},
                    Rectangles()});
        }
        Row("color mask", {{{"ColorMask", {1, 0, 1, 1}}}, Rectangles()});
        Row("scissor", {{{"Scissor", {15, 20, 60, 55}}, {"Enable", {AGL_SCISSOR_TEST}}}, Rectangles()});
        Row("nested scissor",
            {{{"Scissor", {15, 10, 60, 75}}, {"PushScissor", {}}, {"Scissor", {5, 25, 60, 90}},
                 {"Enable", {AGL_SCISSOR_TEST}}},
                Rectangles()});
        for (Named const& f :
            {Named{"less", AGL_LESS}, {"equal", AGL_EQUAL}, {"lequal", AGL_LEQUAL}, {"greater", AGL_GREATER},
                {"notequal", AGL_NOTEQUAL}, {"gequal", AGL_GEQUAL}, {"always", AGL_ALWAYS}, {"never", AGL_NEVER}}) {
            Row(std::string("depth ") + f.name,
                {Rectangle(-0.9, -0.95, 0.1, 0.1, {0.3, 0.3, 0.3, 1}),
                    {{"ClearDepth", {0.45}}, {"Clear", {AGL_DEPTH_BUFFER_BIT}}, {"Enable", {AGL_DEPTH_TEST}},
                        {"DepthFunc", {double(f.token)}}},
                    Rectangles()});
        }
        Row("depth mask", {{{"Enable", {AGL_DEPTH_TEST}}, {"DepthMask", {0}}}, Rectangles()});
        Row("depth range", {{{"Enable", {AGL_DEPTH_TEST}}, {"DepthRange", {0.8, 0.2}}}, Rectangles()});
        for (Named const& op : {Named{"keep", AGL_KEEP}, {"zero", AGL_ZERO}, {"replace", AGL_REPLACE},
                 {"incr", AGL_INCR}, {"decr", AGL_DECR}, {"invert", AGL_INVERT}, {"incr wrap", AGL_INCR_WRAP},
                 {"decr wrap", AGL_DECR_WRAP}}) {
            Row(std::string("stencil ") + op.name,
                {{{"ClearStencil", {3}}, {"Clear", {AGL_STENCIL_BUFFER_BIT}}, {"Enable", {AGL_STENCIL_TEST}},
                     {"StencilFunc", {AGL_LEQUAL, 3, 255}}, {"StencilOp", {AGL_INCR, AGL_KEEP, double(op.token)}}},
                    Rectangles(), {{"StencilFunc", {AGL_EQUAL, 3, 255}}},
                    Rectangle(-0.95, -0.95, 0.95, 0.95, {0.6, 0.6, 0.1, 1})});
        }
        Row("stencil mask",
            {{{"Enable", {AGL_STENCIL_TEST}}, {"StencilOp", {AGL_KEEP, AGL_KEEP, AGL_INVERT}}, {"StencilMask", {2}}},
                Rectangles(), {{"StencilFunc", {AGL_NOTEQUAL, 2, 255}}},
                Rectangle(-0.95, -0.95, 0.95, 0.95, {0.6, 0.6, 0.1, 1})});
    }

    void Stacks() {
        for (Named const& group : {Named{"current", AGL_CURRENT_BIT}, {"point", AGL_POINT_BIT}, {"line", AGL_LINE_BIT},
                 {"polygon", AGL_POLYGON_BIT}, {"stipple", AGL_POLYGON_STIPPLE_BIT}, {"lighting", AGL_LIGHTING_BIT},
                 {"depth", AGL_DEPTH_BUFFER_BIT}, {"stencil", AGL_STENCIL_BUFFER_BIT}, {"viewport", AGL_VIEWPORT_BIT},
                 {"transform", AGL_TRANSFORM_BIT}, {"enable", AGL_ENABLE_BIT}, {"color buffer", AGL_COLOR_BUFFER_BIT},
                 {"texture", AGL_TEXTURE_BIT}, {"scissor", AGL_SCISSOR_BIT}, {"all", AGL_ALL_ATTRIB_BITS}}) {
            Calls scene = Rectangles();
            scene.erase(scene.begin()); // the first takes the current colour
            Row(std::string("group ") + group.name,
                {{{"ClearDepth", {0}}, {"Clear", {AGL_DEPTH_BUFFER_BIT}}, {"Color", {0.9, 0.3, 0.1, 0.6}},
                     {"PushAttrib", {double(group.token)}}},
                    ChangeEverything(), {{"PopAttrib", {}}, {"Rotate", {20, 0, 0, 1}}}, scene, Star()});
        }
        Row("matrix stacks",
            {{{"PushMatrix", {}}, {"Scale", {0.5, 1, 1}}, {"MatrixMode", {AGL_PROJECTION}}, {"PushMatrix", {}},
                 {"Rotate", {30, 0, 0, 1}}, {"MatrixMode", {AGL_MODELVIEW}}, {"PopMatrix", {}}},
                Rectangles(), {{"MatrixMode", {AGL_PROJECTION}}, {"PopMatrix", {}}, {"Scale", {0.5, 0.5, 1}}},
                Rectangles()});
        Row("pops too many", {{{"PopMatrix", {}}, {"PopAttrib", {}}, {"PopScissor", {}}}, Rectangles()});
    }

    std::vector<TableRow> _rows;
};

} // namespace

std::vector<TableRow> StateTable() {
    return Builder().Build();
}

} // namespace Qor::Chart::Ogl::Referee
