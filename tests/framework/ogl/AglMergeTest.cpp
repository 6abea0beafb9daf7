#include "tests/framework/ogl/RecordedAgl.h"

#include <functional>
#include <string>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;

TEST(AglMerge, drawsThatDifferInMatrixAndColorAloneTakeFewCallsAndAllArrive) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const square = MakeSquare(agl);
    for (int i = 0; i < 100'000; ++i) {
        agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
        agl.PushMatrix();
        agl.Enable(AGL_BLEND);
        agl.LineWidth(4);
        agl.Translate(i, 2 * i, 3 * i);
        agl.Color(float(i), 0, 0, 0.5F);
        agl.Draw(square);
        agl.PopMatrix();
        agl.PopAttrib();
    }
    float next = 0;
    for (RecordedCommand const& command : recorded.Take()) {
        EXPECT_TRUE(command.state.IsEnabled(EnableBit::Blend) && command.state.line.width == 4.0F);
        for (Instance const& instance : command.instances) {
            ASSERT_EQ(instance.rows[1][3], 2 * next);
            ASSERT_EQ(instance.color, Types::Color4f(next, 0, 0, 0.5F));
            ++next;
        }
    }
    EXPECT_EQ(next, 100'000.0F);
    EXPECT_LT(agl.GetStatistics().drawCalls, 20U);
    EXPECT_EQ(agl.GetStatistics().draws, 100'000U);
    EXPECT_EQ(agl.GetStatistics().primitives, 200'000U);
}

TEST(AglMerge, anythingElseThatDiffersKeepsThemApart) {
    std::vector<std::pair<char const*, std::function<void(Agl&)>>> const changes = {
        {"enable", [](Agl& p) { p.Enable(AGL_BLEND); }},
        {"projection", [](Agl& p) { p.MatrixMode(AGL_PROJECTION), p.Scale(2, 1, 1), p.MatrixMode(AGL_MODELVIEW); }},
        {"projective model-view", [](Agl& p) { p.LoadMatrix(Types::Matrix4::Perspective(45, 1, 1, 10)); }},
        {"light", [](Agl& p) { p.Light(AGL_LIGHT0, AGL_DIFFUSE, Types::Color4f(1, 0, 0)); }},
        {"viewport", [](Agl& p) { p.Viewport(Types::Viewport<0>(0, 0, 10, 10)); }},
        {"scissor", [](Agl& p) { p.Scissor(Types::Viewport<0>(0, 0, 10, 10)); }},
        {"polygon mode", [](Agl& p) { p.PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE); }},
        {"shader", [](Agl& p) { p.Exchange(p.GenShader(ShaderSource::Generic(), 0)); }},
        {"clear", [](Agl& p) { p.Clear(AGL_DEPTH_BUFFER_BIT); }},
    };
    for (auto const& [name, change] : changes) {
        RecordedAgl recorded;
        auto const square = MakeSquare(recorded.agl);
        recorded.agl.Draw(square);
        change(recorded.agl);
        recorded.agl.Draw(square);
        auto const commands = recorded.Take();
        EXPECT_EQ(commands.front().instances.size(), 1U) << name;
        EXPECT_EQ(commands.back().instances.size(), 1U) << name;
    }
}

TEST(AglMerge, equalBuffersAndShadersAreSharedWhileInUse) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto buffer = MakeSquare(agl);
    EXPECT_EQ(buffer, agl.CreatePrimitiveBuffer(buffer->Indices(), buffer->Vertices()));
    auto const lit = GenericShader::State(std::bitset<2>(3));
    EXPECT_EQ(agl.GenGenericShader(), agl.GenGenericShader());
    EXPECT_NE(agl.GenGenericShader(), agl.GenGenericShader(ShaderSource::Generic(), lit));
    std::weak_ptr<PrimitiveBuffer const> const weak = buffer;
    agl.Draw(buffer);
    buffer.reset();
    EXPECT_FALSE(weak.expired()) << "a recorded draw keeps its shape";
    agl.Flush();
    EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace Qor::Chart::Ogl
