#include "tests/framework/ogl/referee/Generator.h"

#include <array>
#include <cmath>
#include <numbers>

namespace Qor::Chart::Ogl::Referee {

namespace {

using namespace Tokens;
using Vector3 = Agl::Vector3;

class Generator {
public:
    Generator(unsigned p_seed, Content p_content)
        : _random(p_seed), _hasLines(p_content != Content::Polygons), _hasDashes(p_content == Content::DashedLines) {}

    Program Make() {
        Frame();
        if (_hasDashes)
            Dashes();
        for (int i = _random.Index(6); i >= 0; --i)
            ChangeState();
        for (int i = (_hasLines ? 5 : 3) + _random.Index(5); i >= 0; --i)
            Item();
        return std::move(_program);
    }

private:
    void Add(std::string_view p_name, std::vector<double> p_arguments = {}) {
        _program.Add(p_name, std::move(p_arguments));
    }
    double In(double p_low, double p_high) { return _random.In(p_low, p_high); }
    bool Chance(double p_share) { return _random.Chance(p_share); }
    double OneOf(std::vector<Token> const& p_tokens) { return _random.OneOf(p_tokens); }
    double Face() { return OneOf({AGL_FRONT, AGL_BACK, AGL_FRONT_AND_BACK, AGL_FRONT_AND_BACK}); }
    double Light() {
        return AGL_LIGHT0 + static_cast<double>(Chance(0.7) ? _random.Index(3) : _random.Index(LightCount));
    }
    double Unit() { return AGL_TEXTURE0 + static_cast<double>(_random.Index(TextureUnitCount)); }
    std::vector<double> Color(double p_low = 0, std::vector<double> p_before = {}) {
        for (int i = 0; i < 3; ++i)
            p_before.push_back(In(p_low, 1));
        p_before.push_back(Chance(0.5) ? 1 : In(0.3, 1));
        return p_before;
    }
    static std::vector<double> With(std::vector<double> p_before, Vector3 const& p_vector) {
        p_before.insert(p_before.end(), {p_vector.x, p_vector.y, p_vector.z});
        return p_before;
    }

    /// Viewport, clear, and matrices that show what lies between -2 and 2.
    void Frame() {
        if (Chance(0.3))
            Add("Viewport",
                {std::floor(In(0, 12)), std::floor(In(0, 12)), std::floor(In(75, 84)), std::floor(In(75, 84))});
        Add("ClearColor", {_random.Index(50) / 255.0, _random.Index(50) / 255.0, _random.Index(50) / 255.0, 1});
        Add("Clear", {AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT | AGL_STENCIL_BUFFER_BIT});
        bool const isPerspective = Chance(0.6);
        Types::Matrix4 const projection =
            isPerspective ? Types::Matrix4::Perspective(45, 1, 1, 10) : Types::Matrix4::Ortho(-2, 2, -2, 2, -4, 4);
        Add("MatrixMode", {AGL_PROJECTION});
        Add("LoadMatrix", {projection.Data(), projection.Data() + 16});
        Add("MatrixMode", {AGL_MODELVIEW});
        if (isPerspective)
            Add("Translate", {0, 0, -4.5});
        Add("LineWidth", {In(0.5, 10)});
        Add("PointSize", {In(0.5, 20)});
    }

    /// Something drawn, with state of its own that mostly is brought back afterwards.
    void Item() {
        bool const hasAttribs = Chance(0.6) && _attribDepth < 12;
        bool const hasMatrix = Chance(0.8) && _matrixDepth < 25;
        if (hasAttribs) {
            Add("PushAttrib", {Chance(0.5) ? AGL_ALL_ATTRIB_BITS : OneOf(AttribBits) + OneOf(AttribBits)});
            ++_attribDepth;
        }
        if (hasMatrix) {
            Add("PushMatrix");
            ++_matrixDepth;
        }
        for (int i = _random.Index(7); i > 0; --i)
            ChangeState();
        Add("Translate", With({}, _random.Point(0.7)));
        Add("Rotate", With({In(0, 360)}, _random.Direction()));
        if (Chance(0.3))
            Add("Scale", {In(0.6, 1.4), In(0.6, 1.4), Chance(0.2) ? -1.0 : 1.0});
        Add("Color", Color(0.3));
        Add("Normal", With({}, _random.Direction()));
        Draw();
        if (hasMatrix || Chance(0.05)) {
            Add("PopMatrix");
            _matrixDepth -= hasMatrix ? 1 : 0;
        }
        if (hasAttribs ? Chance(0.9) : Chance(0.05)) {
            Add("PopAttrib");
            _attribDepth -= hasAttribs ? 1 : 0;
        }
    }

    void ChangeState() {
        using G = Generator;
        static constexpr std::array<void (G::*)(), 31> changes = {&G::Switch, &G::Switch, &G::Switch, &G::SwitchLight,
            &G::LightUp, &G::Textured, &G::LightColor, &G::MoveLight, &G::AimLight, &G::Attenuate, &G::LightModel,
            &G::MaterialColor, &G::Shininess, &G::ColorMaterial, &G::Clip, &G::Cull, &G::Stipple, &G::ShadeModel,
            &G::Blend, &G::Depth, &G::Stencil, &G::Scissor, &G::ColorMask, &G::DepthRange, &G::TextureMatrix,
            &G::Environment, &G::ActiveTexture, &G::ColorOrOffset, &G::PolygonMode, &G::LineWidth, &G::PointSize};
        (this->*changes[static_cast<std::size_t>(_random.Index(_hasLines ? 31 : 28))])();
    }

    void Switch() { Add(Chance(0.7) ? "Enable" : "Disable", {OneOf(Capabilities)}); }
    void SwitchLight() { Add(Chance(0.8) ? "Enable" : "Disable", {Light()}); }
    void LightColor() { Add("Light", Color(0, {Light(), OneOf({AGL_AMBIENT, AGL_DIFFUSE, AGL_SPECULAR})})); }
    void MoveLight() { Position(Light()); }
    void AimLight() { Spot(Light()); }
    void Attenuate() {
        Add("Light",
            {Light(), OneOf({AGL_CONSTANT_ATTENUATION, AGL_LINEAR_ATTENUATION, AGL_QUADRATIC_ATTENUATION}),
                In(0.1, 1)});
    }
    void LightModel() {
        if (Chance(0.5))
            return Add("LightModel", Color(0, {AGL_LIGHT_MODEL_AMBIENT}));
        Add("LightModel", {OneOf({AGL_LIGHT_MODEL_LOCAL_VIEWER, AGL_LIGHT_MODEL_TWO_SIDE}), Chance(0.7) ? 1.0 : 0.0});
    }
    void MaterialColor() { Add("Material", Color(0, {Face(), OneOf(MaterialColors)})); }
    void Shininess() { Add("Material", {Face(), AGL_SHININESS, Chance(0.2) ? 0 : In(0, 128)}); }
    void ColorMaterial() { Add("ColorMaterial", {Face(), OneOf(MaterialColors)}); }
    void ShadeModel() { Add("ShadeModel", {OneOf({AGL_FLAT, AGL_SMOOTH})}); }
    void ColorMask() {
        Add("ColorMask", {Chance(0.8) ? 1.0 : 0.0, Chance(0.8) ? 1.0 : 0.0, Chance(0.8) ? 1.0 : 0.0, 1});
    }
    void DepthRange() { Add("DepthRange", {In(0, 0.4), In(0.6, 1)}); }
    void ActiveTexture() { Add("ActiveTexture", {Unit()}); }
    void ColorOrOffset() { Chance(0.5) ? Add("Color", Color()) : Offset(); }
    void PolygonMode() { Add("PolygonMode", {Face(), OneOf({AGL_POINT, AGL_LINE, AGL_LINE, AGL_FILL})}); }
    void LineWidth() { Add("LineWidth", {Chance(0.3) ? 1 : In(0.5, 12)}); }
    void PointSize() { Add("PointSize", {Chance(0.2) ? 1 : In(0.5, 20)}); }
    void LightUp() {
        double const light = Light();
        Position(light);
        Add("Light", Color(0.4, {light, AGL_DIFFUSE}));
        Add("Light", Color(0, {light, AGL_SPECULAR}));
        Add("Enable", {light});
        Add("Enable", {AGL_LIGHTING});
    }
    void Position(double p_light) {
        Add("Light", {p_light, AGL_POSITION, In(-2, 2), In(-2, 2), In(0, 4), Chance(0.5) ? 1.0 : 0.0});
    }
    void Spot(double p_light) {
        Add("Light", {p_light, AGL_POSITION, In(-1, 1), In(-1, 1), In(1, 3), 1});
        Add("Light", {p_light, AGL_SPOT_DIRECTION, In(-0.5, 0.5), In(-0.5, 0.5), -1});
        Add("Light", {p_light, AGL_SPOT_CUTOFF, Chance(0.2) ? 180 : In(10, 90)});
        Add("Light", {p_light, AGL_SPOT_EXPONENT, Chance(0.3) ? 0 : In(0, 20)});
    }
    void Textured() {
        Add("ActiveTexture", {Unit()});
        Add("BindTexture", {Chance(0.1) ? -1.0 : _random.Index(TestTextureCount)});
        Add("Enable", {AGL_TEXTURE_2D});
    }
    void TextureMatrix() {
        Add("MatrixMode", {AGL_TEXTURE});
        switch (_random.Index(3)) {
        case 0:
            Add("Rotate", {In(0, 360), 0, 0, 1});
            break;
        case 1:
            Add("Scale", {In(0.5, 2), In(0.5, 2), 1});
            break;
        default:
            Add("Translate", {In(-1, 1), In(-1, 1), 0});
        }
        Add("MatrixMode", {AGL_MODELVIEW});
    }
    void Environment() {
        Add("TexEnv", Color(0, {AGL_TEXTURE_ENV_COLOR}));
        if (Chance(0.4))
            return Combine();
        Add("TexEnv", {AGL_TEXTURE_ENV_MODE, OneOf({AGL_MODULATE, AGL_REPLACE, AGL_DECAL, AGL_BLEND, AGL_ADD})});
    }
    void Clip() {
        double const plane = AGL_CLIP_PLANE0 + static_cast<double>(_random.Index(ClipPlaneCount));
        auto equation = With({plane}, _random.Direction());
        equation.push_back(In(0, 1.2));
        Add("ClipPlane", equation);
        Add("Enable", {plane});
    }
    void Cull() {
        Add("CullFace", {Chance(0.9) ? OneOf({AGL_FRONT, AGL_BACK}) : AGL_FRONT_AND_BACK});
        Add("FrontFace", {OneOf({AGL_CW, AGL_CCW})});
        if (Chance(0.5))
            Add("Enable", {AGL_CULL_FACE});
    }
    void Stipple() {
        std::vector<double> rows;
        for (int i = 0; i < 32; ++i)
            rows.push_back(_random.Bits() | _random.Bits());
        Add("PolygonStipple", rows);
        Add("Enable", {AGL_POLYGON_STIPPLE});
    }
    void Dashes() {
        Add("LineStipple", {1.0 + _random.Index(4), static_cast<double>((_random.Bits() | _random.Bits()) & 0xFFFF)});
        Add("Enable", {AGL_LINE_STIPPLE});
    }
    void Combine() {
        static std::vector<Token> const functions = {
            AGL_REPLACE, AGL_MODULATE, AGL_ADD, AGL_ADD_SIGNED, AGL_INTERPOLATE, AGL_SUBTRACT};
        Add("TexEnv", {AGL_TEXTURE_ENV_MODE, AGL_COMBINE});
        Add("TexEnv", {AGL_COMBINE_RGB, Chance(0.2) ? OneOf({AGL_DOT3_RGB, AGL_DOT3_RGBA}) : OneOf(functions)});
        Add("TexEnv", {AGL_COMBINE_ALPHA, OneOf(functions)});
        for (Token argument = 0; argument < 3; ++argument) {
            for (Token const base : {AGL_SOURCE0_RGB, AGL_SOURCE0_ALPHA})
                Add("TexEnv",
                    {double(base + argument), OneOf({AGL_TEXTURE, AGL_CONSTANT, AGL_PRIMARY_COLOR, AGL_PREVIOUS})});
            Add("TexEnv",
                {double(AGL_OPERAND0_RGB + argument),
                    OneOf({AGL_SRC_COLOR, AGL_ONE_MINUS_SRC_COLOR, AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA})});
            Add("TexEnv", {double(AGL_OPERAND0_ALPHA + argument), OneOf({AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA})});
        }
    }
    /// Mesa moves filled polygons with any of the three.
    void Offset() {
        Add("PolygonOffset", {In(-3, 3), In(-50, 50)});
        Add("Enable", {AGL_POLYGON_OFFSET_FILL});
        if (_hasLines) {
            Add("Enable", {AGL_POLYGON_OFFSET_LINE});
            Add("Enable", {AGL_POLYGON_OFFSET_POINT});
        }
    }
    void Blend() {
        static std::vector<Token> const factors = {AGL_ZERO, AGL_ONE, AGL_SRC_COLOR, AGL_ONE_MINUS_SRC_COLOR,
            AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA, AGL_DST_ALPHA, AGL_ONE_MINUS_DST_ALPHA, AGL_DST_COLOR,
            AGL_ONE_MINUS_DST_COLOR};
        Chance(0.4) ? Add("BlendFunc", {AGL_SRC_ALPHA, AGL_ONE_MINUS_SRC_ALPHA})
                    : Add("BlendFunc", {Chance(0.1) ? AGL_SRC_ALPHA_SATURATE : OneOf(factors), OneOf(factors)});
        Add("BlendEquation",
            {Chance(0.6) ? AGL_FUNC_ADD : OneOf({AGL_FUNC_SUBTRACT, AGL_FUNC_REVERSE_SUBTRACT, AGL_MIN, AGL_MAX})});
        Add("Enable", {AGL_BLEND});
    }
    void Depth() {
        Add("DepthFunc", {OneOf({AGL_LESS, AGL_LESS, AGL_LEQUAL, AGL_GREATER, AGL_GEQUAL, AGL_NOTEQUAL, AGL_ALWAYS})});
        Add("DepthMask", {Chance(0.8) ? 1.0 : 0.0});
        Add("Enable", {AGL_DEPTH_TEST});
        if (Chance(0.1)) {
            Add("ClearDepth", {In(0, 1)});
            Add("Clear", {AGL_DEPTH_BUFFER_BIT});
        }
    }
    void Stencil() {
        static std::vector<Token> const operations = {
            AGL_KEEP, AGL_ZERO, AGL_REPLACE, AGL_INCR, AGL_DECR, AGL_INVERT, AGL_INCR_WRAP, AGL_DECR_WRAP};
        Add("StencilFunc",
            {OneOf({AGL_LESS, AGL_LEQUAL, AGL_EQUAL, AGL_NOTEQUAL, AGL_GEQUAL, AGL_ALWAYS, AGL_ALWAYS}),
                double(_random.Index(3)), Chance(0.5) ? 255 : 3.0});
        Add("StencilOp", {OneOf(operations), OneOf(operations), OneOf(operations)});
        if (Chance(0.3))
            Add("StencilMask", {double(_random.Index(256))});
        Add("Enable", {AGL_STENCIL_TEST});
    }
    void Scissor() {
        if (Chance(0.3)) {
            Add("PopScissor");
        } else if (Chance(0.5)) {
            Add("PushScissor");
        }
        Add("Scissor", {std::floor(In(0, 30)), std::floor(In(0, 30)), std::floor(In(40, 80)), std::floor(In(40, 80))});
        Add("Enable", {AGL_SCISSOR_TEST});
    }

    /// A primitive of one to three parts, immediate or buffered. Quads and polygons are flat and convex.
    void Draw() {
        Token const kind = _hasLines && Chance(0.6)
            ? _random.OneOf({AGL_POINTS, AGL_LINES, AGL_LINE_LOOP, AGL_LINE_STRIP})
            : static_cast<Token>(AGL_TRIANGLES + _random.Index(6));
        if (kind == AGL_QUADS || kind == AGL_QUAD_STRIP) {
            Add("ShadeModel", {AGL_FLAT}); // else Mesa cuts them along either diagonal
        }
        int const count = kind == AGL_QUADS ? 4 * (1 + _random.Index(2)) : 3 + _random.Index(6);
        std::vector<Vector3> const points = MakeRandomPoints(_random, kind, count);
        bool const isBuffered = Chance(0.5);
        bool const hasColors = Chance(isBuffered ? 0.4 : 0.6);
        bool const hasNormals = Chance(isBuffered ? 0.7 : 0.6);
        bool const hasTexCoords = !isBuffered || Chance(0.8);
        VertexData vertices;
        for (Vector3 const& point : points) {
            vertices.positions.emplace_back(point);
            if (hasColors) {
                auto const color = isBuffered ? std::vector{In(0, 1), In(0, 1), In(0, 1), In(0.4, 1)} : Color(0.2);
                vertices.colors.emplace_back(float(color[0]), float(color[1]), float(color[2]), float(color[3]));
            }
            if (hasNormals)
                vertices.normals.emplace_back(_random.Direction());
            for (auto& texCoords : vertices.texCoords) {
                if (hasTexCoords)
                    texCoords.push_back({float(In(-1, 2)), float(In(-1, 2)), 0, 1});
            }
        }
        _program.AddPrimitive(kind, std::move(vertices), isBuffered);
    }

    static inline std::vector<Token> const AttribBits = {AGL_CURRENT_BIT, AGL_POINT_BIT, AGL_LINE_BIT, AGL_POLYGON_BIT,
        AGL_POLYGON_STIPPLE_BIT, AGL_LIGHTING_BIT, AGL_DEPTH_BUFFER_BIT, AGL_STENCIL_BUFFER_BIT, AGL_VIEWPORT_BIT,
        AGL_TRANSFORM_BIT, AGL_ENABLE_BIT, AGL_COLOR_BUFFER_BIT, AGL_TEXTURE_BIT, AGL_SCISSOR_BIT};
    static inline std::vector<Token> const Capabilities = {AGL_LIGHTING, AGL_LIGHTING, AGL_COLOR_MATERIAL,
        AGL_NORMALIZE, AGL_RESCALE_NORMAL, AGL_CULL_FACE, AGL_POLYGON_STIPPLE, AGL_DEPTH_TEST, AGL_STENCIL_TEST,
        AGL_SCISSOR_TEST, AGL_BLEND, AGL_TEXTURE_2D, AGL_CLIP_PLANE0, AGL_CLIP_PLANE0 + 5};
    static inline std::vector<Token> const MaterialColors = {
        AGL_AMBIENT, AGL_DIFFUSE, AGL_AMBIENT_AND_DIFFUSE, AGL_SPECULAR, AGL_EMISSION};

    Random _random;
    bool _hasLines;
    bool _hasDashes;
    Program _program;
    int _attribDepth = 0;
    int _matrixDepth = 0;
};

} // namespace

std::vector<Vector3> MakeRandomPoints(Random& p_random, Token p_kind, int p_count) {
    Vector3 const across = p_random.Direction() * p_random.In(1.2, 2);
    Vector3 const other = p_random.Direction() * p_random.In(1.2, 2);
    Vector3 const along = other - across * (0.7 * Dot(other, across) / Dot(across, across));
    Vector3 center = p_random.Point(0.4);
    std::vector<Vector3> points;
    for (int i = 0; i < p_count; ++i) {
        double const angle = 2 * std::numbers::pi * i / (p_kind == AGL_QUADS ? 4 : p_count);
        if (p_kind == AGL_QUADS && i == 4)
            center = center + p_random.Point(0.6);
        if (p_kind <= AGL_TRIANGLES || p_kind == AGL_TRIANGLE_STRIP) {
            points.push_back(p_random.Point(1.9));
        } else if (p_kind == AGL_QUAD_STRIP) {
            points.push_back(center + across * (0.7 * (i / 2) - 1) + along * (i % 2 - 0.5));
        } else {
            points.push_back(center + across * std::cos(angle) + along * std::sin(angle));
        }
    }
    return points;
}

Program MakeRandomProgram(unsigned p_seed, Content p_content) {
    return Generator(p_seed, p_content).Make();
}

} // namespace Qor::Chart::Ogl::Referee
