#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/Bind.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"
#include "framework/utility/Scoped.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
        {"normal", AGL_CURRENT_BIT,
            [=](Agl& p, int v) {
                p.Normal({0, double(v), 0});
            },
            [](State const& p) { return p.currentVertex.normal.y; }},
        {"point size", AGL_POINT_BIT, [=](Agl& p, int v) { p.PointSize(value(v)); },
            [](State const& p) { return p.point.size; }},
        {"line width", AGL_LINE_BIT, [=](Agl& p, int v) { p.LineWidth(value(v)); },
            [](State const& p) { return p.line.width; }},
        {"polygon mode", AGL_POLYGON_BIT, [](Agl& p, int v) { p.PolygonMode(AGL_BACK, AGL_POINT + Token(v) % 3); },
            [](State const& p) { return float(p.polygon.backMode); }},
        {"light 3", AGL_LIGHTING_BIT, [=](Agl& p, int v) { p.Light(AGL_LIGHT0 + 3, AGL_LINEAR_ATTENUATION, value(v)); },
            [](State const& p) { return p.lights[3].linearAttenuation; }},
        {"material", AGL_LIGHTING_BIT, [=](Agl& p, int v) { p.Material(AGL_FRONT, AGL_SHININESS, value(v)); },
            [](State const& p) { return p.material.front.shininess; }},
        {"shade model", AGL_LIGHTING_BIT, [](Agl& p, int v) { p.ShadeModel(AGL_FLAT + Token(v) % 2); },
            [](State const& p) { return float(p.lightModel.shadeModel); }},
        {"depth function", AGL_DEPTH_BUFFER_BIT, [](Agl& p, int v) { p.DepthFunc(AGL_NEVER + Token(v) % 8); },
            [](State const& p) { return float(p.depth.function); }},
        {"stencil mask", AGL_STENCIL_BUFFER_BIT, [](Agl& p, int v) { p.StencilMask(Token(v)); },
            [](State const& p) { return float(p.stencil.writeMask); }},
        {"viewport", AGL_VIEWPORT_BIT,
            [=](Agl& p, int v) {
                p.Viewport({0, 0, value(v), 5});
            },
            [](State const& p) { return float(p.viewport.rectangle.width); }},
        {"matrix mode", AGL_TRANSFORM_BIT, [](Agl& p, int v) { p.MatrixMode(AGL_MODELVIEW + Token(v) % 3); },
            [](State const& p) { return float(p.transform.matrixMode); }},
        {"clear colour", AGL_COLOR_BUFFER_BIT, [=](Agl& p, int v) { p.ClearColor(Types::Color4f(value(v), 0, 0)); },
            [](State const& p) { return p.colorBuffer.clearColor.red; }},
        {"scissor", AGL_SCISSOR_BIT,
            [=](Agl& p, int v) {
                p.Scissor({0, 0, value(v), 5});
            },
            [](State const& p) { return float(p.scissor.box.width); }},
        {"texture environment", AGL_TEXTURE_BIT,
            [](Agl& p, int v) { p.TexEnv(AGL_TEXTURE_ENV_COLOR, Types::Color4f(float(v), 0, 0)); },
            [](State const& p) { return p.textures[0].environmentColor.red; }},
        {"lighting", AGL_LIGHTING_BIT | AGL_ENABLE_BIT, enable(AGL_LIGHTING), enabled(EnableBit::Lighting)},
        {"light 1 on", AGL_LIGHTING_BIT | AGL_ENABLE_BIT, enable(AGL_LIGHT0 + 1), enabled(EnableBit::Light0 << 1)},
        {"cull face", AGL_POLYGON_BIT | AGL_ENABLE_BIT, enable(AGL_CULL_FACE), enabled(EnableBit::CullFace)},
        {"smooth points", AGL_POINT_BIT | AGL_ENABLE_BIT, enable(AGL_POINT_SMOOTH), enabled(EnableBit::PointSmooth)},
        {"depth test", AGL_DEPTH_BUFFER_BIT | AGL_ENABLE_BIT, enable(AGL_DEPTH_TEST), enabled(EnableBit::DepthTest)},
        {"blend", AGL_COLOR_BUFFER_BIT | AGL_ENABLE_BIT, enable(AGL_BLEND), enabled(EnableBit::Blend)},
        {"clip plane 7", AGL_TRANSFORM_BIT | AGL_ENABLE_BIT, enable(AGL_CLIP_PLANE0 + 7),
            enabled(EnableBit::ClipPlane0 << 7)},
        {"scissor test", AGL_SCISSOR_BIT | AGL_ENABLE_BIT, enable(AGL_SCISSOR_TEST), enabled(EnableBit::ScissorTest)},
    };
}

// Random pushes, pops and writes against a stack that copies everything on every push.
TEST(AglState, pushAndPopSaveExactlyTheGroupsOfTheMask) {
    std::vector<Attribute> const attributes = Attributes();
    std::vector<Token> const masks = {AGL_ALL_ATTRIB_BITS, 0, AGL_CURRENT_BIT, AGL_ENABLE_BIT,
        AGL_LIGHTING_BIT | AGL_POINT_BIT, AGL_POLYGON_BIT | AGL_ENABLE_BIT, AGL_DEPTH_BUFFER_BIT | AGL_COLOR_BUFFER_BIT,
        AGL_TRANSFORM_BIT | AGL_VIEWPORT_BIT | AGL_SCISSOR_BIT, AGL_TEXTURE_BIT | AGL_LINE_BIT};
    struct Frame {
        Token mask;
        std::vector<float> values;
    };
    for (unsigned seed = 0; seed < 20; ++seed) {
        std::mt19937 random(seed);
        Agl agl(std::make_unique<RecorderBackend>());
        std::vector<Frame> stack;
        auto const readAll = [&] {
            std::vector<float> values;
            values.reserve(attributes.size());
            for (Attribute const& attribute : attributes) {
                values.push_back(attribute.read(agl.Current()));
            }
            return values;
        };
        for (int step = 0; step < 600; ++step) {
            std::vector<float> expected = readAll();
            auto const action = static_cast<unsigned>(random() % 6);
            if (action == 0) {
                stack.push_back({masks[random() % masks.size()], expected});
                agl.PushAttrib(stack.back().mask);
            } else if (action == 1 && !stack.empty()) {
                for (std::size_t i = 0; i < attributes.size(); ++i) {
                    bool const isSaved = (attributes[i].bits & stack.back().mask) != 0;
                    expected[i] = isSaved ? stack.back().values[i] : expected[i];
                }
                stack.pop_back();
                agl.PopAttrib();
            } else {
                std::size_t const i = random() % attributes.size();
                attributes[i].write(agl, int(random() % 1000));
                expected[i] = attributes[i].read(agl.Current());
            }
            std::vector<float> const actual = readAll();
            for (std::size_t i = 0; i < attributes.size(); ++i) {
                ASSERT_EQ(actual[i], expected[i]) << attributes[i].name << ", seed " << seed << ", step " << step;
            }
        }
        EXPECT_EQ(agl.CheckError(), "");
    }
}

TEST(AglState, stacksHaveNoLimit) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    constexpr int depth = 100000;
    for (int i = 0; i < depth; ++i) {
        agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
        agl.PushMatrix();
        agl.LineWidth(float(i + 2));
        agl.Translate(1, 0, 0);
    }
    EXPECT_EQ(agl.Depths().attrib, unsigned(depth));
    for (int i = depth; i > 0; --i) {
        ASSERT_EQ(agl.Current().line.width, float(i + 1));
        ASSERT_EQ(agl.Get(AGL_MODELVIEW_MATRIX).TranslationPart().x, i);
        agl.PopMatrix();
        agl.PopAttrib();
    }
    EXPECT_EQ(agl.Current().line.width, 1.0F);
    EXPECT_EQ(agl.CheckError(), "");
}

TEST(AglState, mistakesAreReportedInWordsAndChangeNothing) {
    struct Mistake {
        char const* words;
        std::function<void(Agl&)> make;
    };
    std::vector<Mistake> const mistakes = {
        {"PopAttrib: there is no PushAttrib", [](Agl& p) { p.PopAttrib(); }},
        {"PopMatrix: there is no PushMatrix", [](Agl& p) { p.PopMatrix(); }},
        {"PopScissor: there is no PushScissor", [](Agl& p) { p.PopScissor(); }},
        {"PopLayerId: there is no PushLayerId", [](Agl& p) { p.PopLayerId(); }},
        {"EndFrame: no frame was begun", [](Agl& p) { p.EndFrame(); }},
        {"End: there is no Begin", [](Agl& p) { p.End(); }},
        {"Vertex: only allowed between", [](Agl& p) { p.Vertex(1, 2); }},
        {"Enable: 0x1234 is not a constant", [](Agl& p) { p.Enable(0x1234); }},
        {"Light: 0x4008 is not a constant", [](Agl& p) { p.Light(AGL_LIGHT0 + 8, AGL_DIFFUSE, Types::Color4f()); }},
        {"Light: the value is out of range", [](Agl& p) { p.Light(AGL_LIGHT0, AGL_SPOT_CUTOFF, 91.0F); }},
        {"LineWidth: the width must be greater", [](Agl& p) { p.LineWidth(0); }},
        {"PolygonMode: 0x0000", [](Agl& p) { p.PolygonMode(AGL_FRONT, 0); }},
        {"Clear: 0x0001", [](Agl& p) { p.Clear(1); }},
        {"Begin: 0x000A", [](Agl& p) { p.Begin(AGL_POLYGON + 1); }},
        {"ClipPlane: the model-view matrix has no inverse",
            [](Agl& p) {
                p.PushMatrix();
                p.Scale(0, 1, 1);
                p.ClipPlane(AGL_CLIP_PLANE0, {1, 0, 0, 0});
                p.PopMatrix();
            }},
        {"Enable: not allowed between Begin and End",
            [](Agl& p) {
                p.Begin(AGL_LINES);
                p.Enable(AGL_BLEND);
                p.End();
            }},
        {"ReadPixels: there is nothing to read", [](Agl& p) { p.ReadPixels(0, 0, 1, 1); }},
    };
    for (Mistake const& mistake : mistakes) {
        qordebug::CaptureScope const capture(Utility::GetLogger());
        RecordedAgl recorded;
        mistake.make(recorded.agl);
        State const& state = recorded.agl.Current();
        EXPECT_EQ(state.enables, 0U) << mistake.words;
        EXPECT_EQ(state.line.width, 1.0F);
        EXPECT_EQ(recorded.agl.Depths(), StackDepths()) << mistake.words;
        EXPECT_THAT(recorded.agl.CheckError(), HasSubstr(mistake.words));
        EXPECT_TRUE(capture.contains(mistake.words));
        EXPECT_EQ(recorded.agl.CheckError(), "") << "reported twice: " << mistake.words;
        EXPECT_TRUE(recorded.Take().empty()) << mistake.words;
    }
}

TEST(AglState, restoringDepthsUndoesWhatWasLeftBehind) {
    qordebug::CaptureScope const capture(Utility::GetLogger());
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
    agl.PushMatrix();
    agl.LineWidth(3);
    StackDepths const before = agl.Depths();

    agl.PushAttrib(AGL_LINE_BIT);
    agl.LineWidth(9);
    agl.MatrixMode(AGL_PROJECTION);
    agl.PushMatrix();
    agl.Translate(5, 0, 0);
    agl.MatrixMode(AGL_MODELVIEW);
    agl.PushMatrix();
    agl.PushScissor();
    agl.PushLayerId(7);
    agl.Begin(AGL_LINES);
    agl.Vertex(0, 0);
    agl.RestoreDepths(before);

    EXPECT_EQ(agl.Depths(), before);
    EXPECT_EQ(agl.Current().line.width, 3.0F);
    EXPECT_TRUE(agl.Get(AGL_PROJECTION_MATRIX).IsIdentity());
    EXPECT_EQ(agl.LayerId(), 0U);
    EXPECT_EQ(agl.CheckError(), "");
    EXPECT_TRUE(recorded.Take().empty());
    EXPECT_EQ(agl.GetStatistics().pushes, agl.GetStatistics().pops + 2);

    agl.PopMatrix();
    agl.PopAttrib();
    agl.RestoreDepths(before);
    EXPECT_EQ(agl.Depths(), before);
    EXPECT_THAT(agl.CheckError(), HasSubstr("RestoreDepths: more was popped than pushed"));
}

TEST(AglState, framesBringStacksBackAndCloseProperly) {
    qordebug::CaptureScope const capture(Utility::GetLogger());
    RecordedAgl recorded;
    recorded.agl.BeginFrame();
    recorded.agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
    recorded.agl.BeginFrame();
    recorded.agl.EndFrame();
    EXPECT_EQ(recorded.agl.Depths(), StackDepths());
    EXPECT_EQ(recorded.recorder->Frames(), 1U);
    std::string const errors = recorded.agl.CheckError();
    EXPECT_THAT(errors, HasSubstr("BeginFrame: the frame before was not ended"));
    EXPECT_THAT(errors, HasSubstr("Every push needs its pop"));
}

TEST(AglState, nestedScissorsCutEachOther) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    agl.PushScissor();
    agl.Scissor({10, 10, 100, 100});
    agl.PushScissor();
    agl.Scissor({50, 0, 100, 50.4F});
    EXPECT_EQ(agl.Current().scissor.box, (PixelRectangle{50, 10, 60, 40}));
    agl.Scissor({0, 0, 500, 500});
    EXPECT_EQ(agl.Current().scissor.box, (PixelRectangle{10, 10, 100, 100}))
        << "cut by the enclosing box, not the last";
    agl.PushScissor();
    agl.Scissor({500, 500, 10, 10});
    EXPECT_EQ(agl.Current().scissor.box.width, 0);
    EXPECT_EQ(agl.Current().scissor.box.height, 0);
    agl.PopScissor();
    agl.PopScissor();
    EXPECT_EQ(agl.Current().scissor.box, (PixelRectangle{10, 10, 100, 100}));
    agl.PopScissor();
    EXPECT_EQ(agl.Current().scissor.defined, 0U);
}

TEST(AglState, lightsAndClipPlanesAreTakenIntoEyeCoordinates) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    agl.Translate(0, 0, -5);
    agl.Rotate(90, {0, 0, 1});
    agl.Light(AGL_LIGHT0, AGL_POSITION, Agl::Vector4(1, 0, 0, 1));
    agl.Light(AGL_LIGHT0, AGL_SPOT_DIRECTION, Agl::Vector3(1, 0, 0));
    agl.ClipPlane(AGL_CLIP_PLANE0, {1, 0, 0, 0});
    agl.LoadIdentity();
    LightState const& light = agl.Current().lights[0];
    EXPECT_NEAR(light.position.y, 1, 1e-6);
    EXPECT_NEAR(light.position.z, -5, 1e-6);
    EXPECT_NEAR(light.spotDirection.y, 1, 1e-6);
    EXPECT_NEAR(agl.Current().clipPlanes.planes[0].y, 1, 1e-12);
    EXPECT_NEAR(agl.Current().clipPlanes.planes[0].w, 0, 1e-12);
}

TEST(AglState, materialKeepsTheColorThatItFollowed) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    agl.ColorMaterial(AGL_FRONT, AGL_DIFFUSE);
    agl.Enable(AGL_COLOR_MATERIAL);
    agl.Color(0.25F, 0.5F, 0.75F);
    agl.PushAttrib(AGL_LIGHTING_BIT);
    agl.Disable(AGL_COLOR_MATERIAL);
    EXPECT_EQ(agl.Current().material.front.diffuse, Types::Color4f(0.25F, 0.5F, 0.75F));
    EXPECT_EQ(agl.Current().material.back.diffuse, Types::Color4f(0.8F, 0.8F, 0.8F));
    agl.PopAttrib();
    EXPECT_TRUE(agl.IsEnabled(AGL_COLOR_MATERIAL));

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
    auto const square = MakeSquare(*scope);
    {
        Bind<Shader> const outerBind(scope, outer);
        Bind<PrimitiveBuffer> const shape(scope, square);
        PushAttribScope const saved(scope, AGL_CURRENT_BIT);
        scope->Color(QColor(255, 0, 0));
        {
            Bind<Shader> const innerBind(scope, inner);
            scope->Draw();
        }
        scope->Draw();
    }
    auto const commands = recorded.Take();
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_EQ(commands[0].shader, inner.get());
    EXPECT_EQ(commands[1].shader, outer.get());
    EXPECT_EQ(recorded.agl.Current().currentColor.color, Types::Color4f(1, 1, 1, 1));

    qordebug::CaptureScope const capture(Utility::GetLogger());
    inner->Fail("no");
    Bind<Shader> const invalid(scope, inner);
    scope->Draw();
    EXPECT_TRUE(capture.contains("\"_instance.IsValid()\" - "));
    EXPECT_TRUE(capture.contains("\"_boundBuffer\" - "));
}

} // namespace
} // namespace Qor::Chart::Ogl
