#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/types/TextureUnit.h"

#include <functional>
#include <random>
#include <string>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using testing::HasSubstr;

/// A piece of state: how it is written, how it is read as text, and the groups that save it.
struct Attribute {
    char const* name;
    Token bits;
    std::function<void(Agl&, int)> write;
    std::function<float(State const&)> read;
};

std::vector<Attribute> Attributes() {
    auto const enable = [](Token p_capability) {
        return [p_capability](Agl& p_agl, int p_value) {
            p_value % 2 != 0 ? p_agl.Enable(p_capability) : p_agl.Disable(p_capability);
        };
    };
    auto const enabled = [](EnableBit::Type p_bit) {
        return [p_bit](State const& p) { return p.IsEnabled(p_bit) ? 1.0F : 0.0F; };
    };
    auto const value = [](int p_value) { return static_cast<float>(p_value % 50 + 1); };
    return {
        {"color", AGL_CURRENT_BIT, [=](Agl& p, int v) { p.Color(value(v), 0, 0); },
            [](State const& p) { return p.currentColor.color.red; }},
        {"line width", AGL_LINE_BIT, [=](Agl& p, int v) { p.LineWidth(value(v)); },
            [](State const& p) { return p.line.width; }},
        {"line stipple", AGL_LINE_BIT, [](Agl& p, int v) { p.LineStipple(v % 256 + 1, 0xFF); },
            [](State const& p) { return float(p.line.stippleFactor); }},
        {"polygon offset", AGL_POLYGON_BIT, [=](Agl& p, int v) { p.PolygonOffset(value(v), 0); },
            [](State const& p) { return p.polygon.offsetFactor; }},
        {"polygon mode", AGL_POLYGON_BIT, [](Agl& p, int v) { p.PolygonMode(AGL_BACK, AGL_POINT + Token(v) % 3); },
            [](State const& p) { return float(p.polygon.backMode); }},
        {"light 3", AGL_LIGHTING_BIT, [=](Agl& p, int v) { p.Light(AGL_LIGHT0 + 3, AGL_LINEAR_ATTENUATION, value(v)); },
            [](State const& p) { return p.lights[3].linearAttenuation; }},
        {"depth function", AGL_DEPTH_BUFFER_BIT, [](Agl& p, int v) { p.DepthFunc(AGL_NEVER + Token(v) % 8); },
            [](State const& p) { return float(p.depth.function); }},
        {"stencil mask", AGL_STENCIL_BUFFER_BIT, [](Agl& p, int v) { p.StencilMask(Token(v)); },
            [](State const& p) { return float(p.stencil.writeMask); }},
        {"viewport", AGL_VIEWPORT_BIT, [=](Agl& p, int v) { p.Viewport(Types::Viewport<0>(0, 0, value(v), 5)); },
            [](State const& p) { return float(p.viewport.rectangle.width); }},
        {"matrix mode", AGL_TRANSFORM_BIT, [](Agl& p, int v) { p.MatrixMode(AGL_MODELVIEW + Token(v) % 3); },
            [](State const& p) { return float(p.transform.matrixMode); }},
        {"clear colour", AGL_COLOR_BUFFER_BIT, [=](Agl& p, int v) { p.ClearColor(Types::Color4f(value(v), 0, 0)); },
            [](State const& p) { return p.colorBuffer.clearColor.red; }},
        {"scissor", AGL_SCISSOR_BIT, [=](Agl& p, int v) { p.Scissor(Types::Viewport<0>(0, 0, value(v), 5)); },
            [](State const& p) { return float(p.scissor.box.width); }},
        {"texture environment", AGL_TEXTURE_BIT,
            [](Agl& p, int v) { p.TexEnv(AGL_TEXTURE_ENV_COLOR, Types::Color4f(float(v), 0, 0)); },
            [](State const& p) { return p.textures[0].environmentColor.red; }},
        {"combiner", AGL_TEXTURE_BIT,
            [](Agl& p, int v) { p.TexEnv(AGL_SOURCE1_RGB, Token(v % 2 != 0 ? AGL_CONSTANT : AGL_TEXTURE0)); },
            [](State const& p) { return float(p.textures[0].combineRgb.sources[1]); }},
        {"texture unit 3", AGL_TEXTURE_BIT | AGL_ENABLE_BIT,
            [](Agl& p, int v) {
                Types::TextureUnit unit;
                unit.enabled = v % 2 != 0;
                p.Apply(AGL_TEXTURE3, unit, nullptr);
            },
            enabled(EnableBit::Texture0 << 3)},
        {"dashes", AGL_LINE_BIT | AGL_ENABLE_BIT, enable(AGL_LINE_STIPPLE), enabled(EnableBit::LineStipple)},
        {"offset", AGL_POLYGON_BIT | AGL_ENABLE_BIT, enable(AGL_POLYGON_OFFSET_LINE), enabled(EnableBit::OffsetLine)},
        {"lighting", AGL_LIGHTING_BIT | AGL_ENABLE_BIT, enable(AGL_LIGHTING), enabled(EnableBit::Lighting)},
        {"depth test", AGL_DEPTH_BUFFER_BIT | AGL_ENABLE_BIT, enable(AGL_DEPTH_TEST), enabled(EnableBit::DepthTest)},
        {"blend", AGL_COLOR_BUFFER_BIT | AGL_ENABLE_BIT, enable(AGL_BLEND), enabled(EnableBit::Blend)},
        {"clip plane 7", AGL_TRANSFORM_BIT | AGL_ENABLE_BIT, enable(AGL_CLIP_PLANE0 + 7),
            enabled(EnableBit::ClipPlane0 << 7)},
    };
}

// Random pushes, pops and writes against a stack that copies everything on every push.
TEST(AglState, pushAndPopSaveExactlyTheGroupsOfTheMask) {
    std::vector<Attribute> const attributes = Attributes();
    std::vector<Token> const masks = {AGL_ALL_ATTRIB_BITS, 0, AGL_CURRENT_BIT, AGL_ENABLE_BIT,
        AGL_LIGHTING_BIT | AGL_POINT_BIT, AGL_POLYGON_BIT | AGL_ENABLE_BIT, AGL_DEPTH_BUFFER_BIT | AGL_COLOR_BUFFER_BIT,
        AGL_TRANSFORM_BIT | AGL_VIEWPORT_BIT | AGL_SCISSOR_BIT, AGL_TEXTURE_BIT | AGL_LINE_BIT};
    std::mt19937 random(1);
    Agl agl(std::make_unique<RecorderBackend>());
    std::vector<std::pair<Token, std::vector<float>>> stack;
    for (int step = 0; step < 12'000; ++step) {
        std::vector<float> expected;
        for (Attribute const& attribute : attributes) {
            expected.push_back(attribute.read(agl.Current()));
        }
        auto const action = random() % 6;
        if (action == 0 && stack.size() < 100) {
            stack.emplace_back(masks[random() % masks.size()], expected);
            agl.PushAttrib(stack.back().first);
        } else if (action == 1 && !stack.empty()) {
            for (std::size_t i = 0; i < attributes.size(); ++i) {
                if ((attributes[i].bits & stack.back().first) != 0) {
                    expected[i] = stack.back().second[i];
                }
            }
            stack.pop_back();
            agl.PopAttrib();
        } else {
            std::size_t const i = random() % attributes.size();
            attributes[i].write(agl, int(random() % 1000));
            expected[i] = attributes[i].read(agl.Current());
        }
        for (std::size_t i = 0; i < attributes.size(); ++i) {
            ASSERT_EQ(attributes[i].read(agl.Current()), expected[i]) << attributes[i].name << ", step " << step;
        }
    }
    EXPECT_EQ(agl.CheckError(), "");
}

TEST(AglState, mistakesAreReportedInWordsAndChangeNothing) {
    std::vector<std::pair<char const*, std::function<void(Agl&)>>> const mistakes = {
        {"PopAttrib: there is no PushAttrib", [](Agl& p) { p.PopAttrib(); }},
        {"PopMatrix: there is no PushMatrix", [](Agl& p) { p.PopMatrix(); }},
        {"PopLayerId: there is no PushLayerId", [](Agl& p) { p.PopLayerId(); }},
        {"EndFrame: no frame was begun", [](Agl& p) { p.EndFrame(); }},
        {"Vertex: only allowed between", [](Agl& p) { p.Vertex(1, 2); }},
        {"Enable: 0x1234 is not a constant", [](Agl& p) { p.Enable(0x1234); }},
        {"Light: the value is out of range", [](Agl& p) { p.Light(AGL_LIGHT0, AGL_SPOT_CUTOFF, 91.0F); }},
        {"LineWidth: the width must be greater", [](Agl& p) { p.LineWidth(0); }},
        {"TexEnv: the scale must be", [](Agl& p) { p.TexEnv(AGL_RGB_SCALE, 3.0F); }},
        {"TexEnv: 0x86AE", [](Agl& p) { p.TexEnv(AGL_COMBINE_ALPHA, AGL_DOT3_RGB); }},
        {"TexSampling: a filter", [](Agl& p) { p.TexSampling(TextureSampling{AGL_REPEAT}); }},
        {"ActiveTexture: 0x84C4", [](Agl& p) { p.ActiveTexture(AGL_TEXTURE3 + 1); }},
        {"PolygonMode: 0x0000", [](Agl& p) { p.PolygonMode(AGL_FRONT, 0); }},
        {"ClipPlane: the model-view matrix has no inverse",
            [](Agl& p) { p.Scale(0, 1, 1), p.ClipPlane(AGL_CLIP_PLANE0, Agl::Vector4(1, 0, 0, 0)); }},
        {"Enable: not allowed between Begin and End", [](Agl& p) { p.Begin(AGL_LINES), p.Enable(AGL_BLEND), p.End(); }},
        {"BeginFrame: the frame before was not ended", [](Agl& p) { p.BeginFrame(), p.BeginFrame(), p.EndFrame(); }},
        {"Every push needs its pop", [](Agl& p) { p.BeginFrame(), p.PushAttrib(AGL_ALL_ATTRIB_BITS), p.EndFrame(); }},
        {"ReadPixels: there is nothing to read", [](Agl& p) { p.ReadPixels(0, 0, 1, 1); }},
    };
    for (auto const& [words, make] : mistakes) {
        qordebug::CaptureScope const capture(Utility::GetLogger());
        RecordedAgl recorded;
        make(recorded.agl);
        EXPECT_TRUE(recorded.agl.Current().enables == 0 && recorded.agl.Current().line.width == 1.0F) << words;
        EXPECT_EQ(recorded.agl.Depths(), StackDepths()) << words;
        EXPECT_THAT(recorded.agl.CheckError(), HasSubstr(words));
        EXPECT_TRUE(capture.contains(words));
        EXPECT_EQ(recorded.agl.CheckError(), "") << "reported twice: " << words;
        EXPECT_TRUE(recorded.Take().empty()) << words;
    }
}

TEST(AglState, restoringDepthsUndoesWhatWasLeftBehind) {
    qordebug::CaptureScope const capture(Utility::GetLogger());
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
    StackDepths const before = agl.Depths();
    agl.PushAttrib(AGL_LINE_BIT);
    agl.LineWidth(9);
    agl.MatrixMode(AGL_PROJECTION);
    agl.PushMatrix();
    agl.Translate(5, 0, 0);
    agl.PushScissor();
    agl.PushLayerId(7);
    agl.Begin(AGL_LINES);
    agl.RestoreDepths(before);
    EXPECT_EQ(agl.Depths(), before);
    EXPECT_TRUE(agl.Current().line.width == 1.0F && agl.LayerId() == 0U);
    EXPECT_TRUE(agl.Get(AGL_PROJECTION_MATRIX).IsIdentity());
    EXPECT_TRUE(agl.CheckError().empty() && recorded.Take().empty());
    agl.PopAttrib();
    agl.RestoreDepths(before);
    EXPECT_EQ(agl.Depths(), before);
    EXPECT_THAT(agl.CheckError(), HasSubstr("RestoreDepths: more was popped than pushed"));
}

TEST(AglState, materialKeepsTheColorThatItFollowed) {
    Agl agl(std::make_unique<RecorderBackend>());
    agl.ColorMaterial(AGL_FRONT, AGL_DIFFUSE);
    agl.Enable(AGL_COLOR_MATERIAL);
    agl.Color(0.25F, 0.5F, 0.75F);
    agl.PushAttrib(AGL_LIGHTING_BIT);
    agl.Disable(AGL_COLOR_MATERIAL);
    EXPECT_EQ(agl.Current().material.front.diffuse, Types::Color4f(0.25F, 0.5F, 0.75F));
    agl.PopAttrib();
    agl.Disable(AGL_COLOR_MATERIAL);
    agl.PushAttrib(AGL_ENABLE_BIT);
    agl.Enable(AGL_COLOR_MATERIAL);
    agl.Color(1, 0, 0);
    agl.PopAttrib();
    EXPECT_EQ(agl.Current().material.front.diffuse, Types::Color4f(1, 0, 0)) << "the pop ended it like a Disable";
}

TEST(AglState, scopesGiveBackWhatWasBound) {
    RecordedAgl recorded;
    Utility::Scoped<Agl> scope{Utility::Unscoped<Agl>(recorded.agl)};
    auto const outer = scope->GenFixedFunctionShader();
    auto const inner = scope->GenGenericShader();
    {
        Bind<Shader> const outerBind(scope, outer);
        Bind<PrimitiveBuffer> const shape(scope, MakeSquare(*scope));
        {
            Bind<Shader> const innerBind(scope, inner);
            scope->Draw();
        }
        scope->Draw();
    }
    auto const commands = recorded.Take();
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_TRUE(commands[0].shader == inner.get() && commands[1].shader == outer.get());
    qordebug::CaptureScope const capture(Utility::GetLogger());
    inner->Fail("no");
    Bind<Shader> const invalid(scope, inner);
    scope->Draw();
    EXPECT_TRUE(capture.contains("\"_instance.IsValid()\" - "));
    EXPECT_TRUE(capture.contains("\"_boundBuffer\" - "));
}

} // namespace
} // namespace Qor::Chart::Ogl
