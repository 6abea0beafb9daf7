#include "tests/framework/ogl/RecordedAgl.h"

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <tuple>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using testing::HasSubstr;

// Random pushes, pops and writes against a stack that copies the whole state on every push.
TEST(AglState, pushAndPopSaveExactlyTheGroupsOfTheMask) {
    struct Attribute {
        Token bits; ///< the groups that save it
        std::size_t item;
        std::function<void(Agl&, float)> write;
    };
    std::vector<Attribute> const attributes = {
        {AGL_CURRENT_BIT, StateItem::CurrentColor, [](Agl& p, float v) { p.Color(v, 0, 0); }},
        {AGL_LINE_BIT, StateItem::Line, [](Agl& p, float v) { p.LineWidth(v); }},
        {AGL_LINE_BIT, StateItem::Line, [](Agl& p, float v) { p.LineStipple(1, static_cast<std::uint16_t>(v)); }},
        {AGL_POLYGON_BIT, StateItem::Polygon, [](Agl& p, float v) { p.PolygonOffset(v, 0); }},
        {AGL_LIGHTING_BIT, StateItem::Light0 + 3,
            [](Agl& p, float v) { p.Light(AGL_LIGHT0 + 3, AGL_LINEAR_ATTENUATION, v); }},
        {AGL_DEPTH_BUFFER_BIT, StateItem::Depth, [](Agl& p, float v) { p.DepthFunc(AGL_NEVER + Token(v) % 8); }},
        {AGL_STENCIL_BUFFER_BIT, StateItem::Stencil, [](Agl& p, float v) { p.StencilMask(Token(v)); }},
        {AGL_VIEWPORT_BIT, StateItem::Viewport,
            [](Agl& p, float v) {
                p.Viewport({0, 0, v, 5});
            }},
        {AGL_TRANSFORM_BIT, StateItem::Transform, [](Agl& p, float v) { p.MatrixMode(AGL_MODELVIEW + Token(v) % 3); }},
        {AGL_TRANSFORM_BIT, StateItem::ClipPlanes,
            [](Agl& p, float v) {
                p.ClipPlane(AGL_CLIP_PLANE0 + 2, {v, 0, 0, 1});
            }},
        {AGL_COLOR_BUFFER_BIT, StateItem::ColorBuffer, [](Agl& p, float v) { p.ClearColor(Types::Color4f(v, 0, 0)); }},
        {AGL_SCISSOR_BIT, StateItem::Scissor,
            [](Agl& p, float v) {
                p.Scissor({0, 0, v, 5});
            }},
        {AGL_TEXTURE_BIT, StateItem::Texture0,
            [](Agl& p, float v) { p.TexEnv(AGL_TEXTURE_ENV_COLOR, Types::Color4f(v, 0, 0)); }},
    };
    std::vector<std::tuple<Token, Token, EnableBit::Type>> const switches = {
        {AGL_LINE_BIT, AGL_LINE_STIPPLE, EnableBit::LineStipple},
        {AGL_POLYGON_BIT, AGL_POLYGON_OFFSET_LINE, EnableBit::OffsetLine},
        {AGL_LIGHTING_BIT, AGL_LIGHTING, EnableBit::Lighting},
        {AGL_DEPTH_BUFFER_BIT, AGL_DEPTH_TEST, EnableBit::DepthTest},
        {AGL_COLOR_BUFFER_BIT, AGL_BLEND, EnableBit::Blend}, {AGL_TEXTURE_BIT, AGL_TEXTURE_2D, EnableBit::Texture0},
        {AGL_TRANSFORM_BIT, AGL_CLIP_PLANE0 + 7, EnableBit::ClipPlane0 << 7}};
    std::mt19937 random(1);
    Agl agl(std::make_unique<RecorderBackend>());
    std::vector<std::pair<Token, State>> stack;
    for (int step = 0; step < 12'000; ++step) {
        State expected = agl.Current();
        auto const take = [&](std::size_t p_item, State const& p_from) {
            std::memcpy(expected.Item(p_item), p_from.Item(p_item), State::ItemSize(p_item));
        };
        auto const action = random() % 6;
        if (action == 0 && stack.size() < 100) {
            Token const some = (1U << random() % 20) | (1U << random() % 20) | (1U << random() % 20);
            stack.emplace_back(random() % 8 == 0 ? AGL_ALL_ATTRIB_BITS : some, expected);
            agl.PushAttrib(stack.back().first);
        } else if (action == 1 && !stack.empty()) {
            auto const& [mask, saved] = stack.back();
            for (auto const& [bits, item, write] : attributes) {
                if ((bits & mask) != 0)
                    take(item, saved);
            }
            for (auto const& [bits, capability, bit] : switches) {
                if (((bits | AGL_ENABLE_BIT) & mask) != 0)
                    expected.enables = (expected.enables & ~bit) | (saved.enables & bit);
            }
            stack.pop_back();
            agl.PopAttrib();
        } else if (action == 2) {
            auto const& [bits, capability, bit] = switches[random() % switches.size()];
            expected.enables ^= bit;
            agl.IsEnabled(capability) ? agl.Disable(capability) : agl.Enable(capability);
        } else {
            auto const& [bits, item, write] = attributes[random() % attributes.size()];
            write(agl, static_cast<float>(1 + random() % 1000));
            take(item, agl.Current());
        }
        EXPECT_EQ(agl.Current().enables, expected.enables);
        for (auto const& [bits, item, write] : attributes)
            ASSERT_EQ(std::memcmp(agl.Current().Item(item), expected.Item(item), State::ItemSize(item)), 0) << step;
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
        {"RestoreDepths: more was popped than pushed",
            [](Agl& p) {
                p.PushMatrix();
                StackDepths const pushed = p.Depths();
                p.PopMatrix();
                p.RestoreDepths(pushed);
                p.PopMatrix();
            }},
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

TEST(AglState, wrongBuffersAreReportedAndNeverDrawn) {
    qordebug::CaptureScope capture(Utility::GetLogger());
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    VertexData data;
    data.positions = {{0, 0, 0}, {1, 0, 0}};
    data.normals = {{0, 0, 1}};
    auto const outOfRange = MakeShape(agl, AGL_LINES, data, {0, 2});
    EXPECT_FALSE(outOfRange->IsValid());
    EXPECT_TRUE(capture.contains("\"attribute.size() == positions.size()\""));
    EXPECT_TRUE(capture.contains("\"index < vertices.Size()\""));
    agl.Draw(outOfRange);
    agl.Draw(MakeShape(agl, AGL_LINES, {}, {}));
    agl.Draw(nullptr);
    EXPECT_EQ(agl.CreatePrimitiveBuffer(nullptr, nullptr), nullptr);
    EXPECT_TRUE(capture.contains("\"p_indices && p_vertices\""));
    EXPECT_TRUE(MakeShape(agl, 77, data, {0, 1})->Indices()->Indices().empty());
    EXPECT_TRUE(recorded.Take().empty());
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
