#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/Bind.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;

TEST(AglMerge, drawsThatDifferInMatrixAndColorAloneAreOne) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const square = MakeSquare(agl);
    for (int i = 0; i < 1000; ++i) {
        agl.PushAttrib(AGL_ALL_ATTRIB_BITS);
        agl.PushMatrix();
        agl.Disable(AGL_LIGHTING);
        agl.Enable(AGL_BLEND);
        agl.LineWidth(4);
        agl.Normal({1, 0, 0});
        agl.Translate(i, 2 * i, 3 * i);
        agl.Color(float(i), 0, 0, 0.5F);
        agl.Draw(square);
        agl.PopMatrix();
        agl.PopAttrib();
        agl.LineWidth(float(i + 1));
        agl.LineWidth(1);
    }
    auto const commands = recorded.Take();
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_TRUE(commands[0].state.IsEnabled(EnableBit::Blend));
    EXPECT_EQ(commands[0].state.line.width, 4.0F);
    ASSERT_EQ(commands[0].instances.size(), 1000U);
    EXPECT_EQ(commands[0].instances[7].rows[1][3], 14.0F);
    EXPECT_EQ(commands[0].instances[7].color, Types::Color4f(7, 0, 0, 0.5F));
    EXPECT_EQ(agl.GetStatistics().draws, 1000U);
    EXPECT_EQ(agl.GetStatistics().drawCalls, 1U);
    EXPECT_EQ(agl.GetStatistics().primitives, 2000U);
}

TEST(AglMerge, anythingElseThatDiffersKeepsThemApart) {
    std::vector<std::pair<char const*, std::function<void(Agl&)>>> const changes = {
        {"enable", [](Agl& p) { p.Enable(AGL_BLEND); }},
        {"projection",
            [](Agl& p) {
                p.MatrixMode(AGL_PROJECTION);
                p.Scale(2, 1, 1);
                p.MatrixMode(AGL_MODELVIEW);
            }},
        {"projective model-view", [](Agl& p) { p.LoadMatrix(Types::Matrix4::Perspective(45, 1, 1, 10)); }},
        {"light", [](Agl& p) { p.Light(AGL_LIGHT0, AGL_DIFFUSE, Types::Color4f(1, 0, 0)); }},
        {"viewport",
            [](Agl& p) {
                p.Viewport({0, 0, 10, 10});
            }},
        {"scissor",
            [](Agl& p) {
                p.Scissor({0, 0, 10, 10});
            }},
        {"polygon mode", [](Agl& p) { p.PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE); }},
        {"shader", [](Agl& p) { p.Exchange(p.GenShader(ShaderSource::Generic(), 0)); }},
        {"clear", [](Agl& p) { p.Clear(AGL_DEPTH_BUFFER_BIT); }},
        {"immediate",
            [](Agl& p) {
                p.Begin(AGL_POINTS);
                p.Vertex(0, 0);
                p.End();
            }},
    };
    for (auto const& [name, change] : changes) {
        RecordedAgl recorded;
        auto const square = MakeSquare(recorded.agl);
        recorded.agl.Draw(square);
        change(recorded.agl);
        recorded.agl.Draw(square);
        auto const commands = recorded.Take();
        ASSERT_GE(commands.size(), 2U) << name;
        EXPECT_EQ(commands.front().instances.size(), 1U) << name;
        EXPECT_EQ(commands.back().instances.size(), 1U) << name;
    }
}

TEST(AglMerge, orderIsKeptBetweenShapesStatesAndPrimitives) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const square = MakeSquare(agl);
    auto const cube = MakeCube(agl);
    std::string expected;
    std::string actual;
    auto const draw = [&](char p_what) {
        expected += p_what;
        switch (p_what) {
        case 's':
            agl.Draw(square);
            break;
        case 'c':
            agl.Draw(cube);
            break;
        case 'x':
            agl.Clear(AGL_DEPTH_BUFFER_BIT);
            break;
        default:
            agl.Begin(AGL_LINES);
            agl.Vertex(0, 0);
            agl.Vertex(1, 0);
            agl.End();
        }
    };
    for (char const what : std::string("sscsxssiiscicxx")) {
        draw(what);
    }
    for (RecordedCommand const& command : recorded.Take()) {
        if (command.kind == Command::Kind::Clear) {
            actual += 'x';
        } else if (command.kind == Command::Kind::Immediate) {
            actual += std::string(command.vertices.size() / 2, 'i');
        } else {
            actual += std::string(command.instances.size(), command.buffer == square.get() ? 's' : 'c');
        }
    }
    EXPECT_EQ(actual, expected);
}

TEST(AglMerge, aHundredThousandDrawsOfAShapeTakeFewCallsAndAllArrive) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const cube = MakeCube(agl);
    agl.BeginFrame();
    for (int i = 0; i < 100000; ++i) {
        agl.Color(float(i), 0, 0);
        agl.Draw(cube);
    }
    agl.EndFrame();
    EXPECT_LT(agl.GetStatistics().drawCalls, 20U);
    float next = 0;
    for (RecordedCommand const& command : recorded.recorder->Commands()) {
        for (Instance const& instance : command.instances) {
            ASSERT_EQ(instance.color.red, next++);
        }
    }
    EXPECT_EQ(next, 100000.0F);
}

TEST(AglMerge, immediatePrimitivesMergeAcrossMatricesAndKinds) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    agl.Translate(10, 0, 0);
    agl.Begin(AGL_QUADS);
    for (int i = 0; i < 4; ++i) {
        agl.Normal({0, double(i), 1});
        agl.Color(float(i), 0, 0);
        agl.Vertex(i, 0);
    }
    agl.End();
    agl.LoadIdentity();
    agl.Scale(2, 2, 2);
    agl.Begin(AGL_TRIANGLE_FAN);
    for (int i = 0; i < 5; ++i) {
        agl.Vertex(i, 1);
    }
    agl.End();
    auto const commands = recorded.Take();
    ASSERT_EQ(commands.size(), 1U);
    ASSERT_EQ(commands[0].vertices.size(), 6U + 9U);
    EXPECT_EQ(commands[0].vertices[0].position.x, 10.0F);
    EXPECT_EQ(commands[0].vertices[2].color.red, 3.0F) << "a triangle ends with the vertex that gives flat colours";
    EXPECT_EQ(commands[0].vertices[14].position.x, 8.0F);
    EXPECT_EQ(commands[0].vertices[14].normal.z, 0.5F) << "normals go through the inverse transpose";
}

TEST(AglMerge, polygonModesAndCullingDecideWhatIsDrawn) {
    struct Case {
        Token front, back, cull;
        std::vector<std::pair<Pipeline, std::uint8_t>> passes;
    };
    std::vector<Case> const cases = {
        {AGL_FILL, AGL_FILL, AGL_NONE, {{Pipeline::Triangles, FaceBit::Both}}},
        {AGL_FILL, AGL_FILL, AGL_BACK, {{Pipeline::Triangles, FaceBit::Front}}},
        {AGL_LINE, AGL_LINE, AGL_FRONT, {{Pipeline::Edges, FaceBit::Back}}},
        {AGL_POINT, AGL_FILL, AGL_NONE, {{Pipeline::Corners, FaceBit::Front}, {Pipeline::Triangles, FaceBit::Back}}},
        {AGL_POINT, AGL_FILL, AGL_FRONT, {{Pipeline::Triangles, FaceBit::Back}}},
        {AGL_FILL, AGL_FILL, AGL_FRONT_AND_BACK, {}},
    };
    for (Case const& test : cases) {
        RecordedAgl recorded;
        Agl& agl = recorded.agl;
        agl.PolygonMode(AGL_FRONT, test.front);
        agl.PolygonMode(AGL_BACK, test.back);
        if (test.cull != AGL_NONE) {
            agl.Enable(AGL_CULL_FACE);
            agl.CullFace(test.cull);
        }
        agl.Draw(MakeSquare(agl));
        std::vector<std::pair<Pipeline, std::uint8_t>> passes;
        for (RecordedCommand const& command : recorded.Take()) {
            passes.emplace_back(command.pipeline, command.faces);
        }
        EXPECT_EQ(passes, test.passes);
    }
}

TEST(AglMerge, equalBuffersAndShadersAreSharedWhileInUse) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const indices = std::make_shared<IndexBuffer>(AGL_POINTS, std::vector<std::uint32_t>{0});
    VertexData data;
    data.positions = {{1, 2, 3}};
    auto const vertices = std::make_shared<VertexBuffer>(data);
    auto buffer = agl.CreatePrimitiveBuffer(indices, vertices);
    EXPECT_EQ(buffer, agl.CreatePrimitiveBuffer(indices, vertices));
    EXPECT_EQ(agl.GenGenericShader(), agl.GenGenericShader());
    auto const headlight = agl.GenGenericShader();
    auto const colored = agl.GenGenericShader(ShaderSource::Generic(), GenericShader::State(std::bitset<2>(3)));
    EXPECT_NE(headlight, colored);
    EXPECT_EQ(colored->CurrentState().Options().to_ulong(), 3U);

    std::weak_ptr<PrimitiveBuffer const> const weak = buffer;
    agl.Draw(buffer);
    buffer.reset();
    EXPECT_FALSE(weak.expired()) << "a recorded draw keeps its shape";
    agl.Flush();
    EXPECT_TRUE(weak.expired());
}

TEST(AglMerge, texturesLiveAsLongAsTheyAreDrawn) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const square = MakeSquare(agl);
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    auto texture = std::make_shared<Texture const>(image);
    std::uint64_t const id = texture->Id();
    agl.Enable(AGL_TEXTURE_2D);
    agl.BindTexture(texture);
    agl.Draw(square);
    texture.reset();
    auto commands = recorded.Take();
    EXPECT_EQ(commands.back().state.textures[0].texture, id);
    agl.Draw(square);
    commands = recorded.Take();
    EXPECT_EQ(commands.back().state.textures[0].texture, 0U) << "a texture that is gone is no texture";
}

} // namespace
} // namespace Qor::Chart::Ogl
