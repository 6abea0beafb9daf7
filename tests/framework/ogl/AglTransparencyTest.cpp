#include "tests/framework/ogl/RecordedAgl.h"

#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/TransparencyScope.h"

#include <algorithm>
#include <array>
#include <random>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;

/// One draw: its number, which is its colour, and the state that it was made in.
struct Drawn {
    float number;
    float lineWidth;
    bool isBlended;
    double depth = 0;

    bool operator==(Drawn const& p_other) const {
        return number == p_other.number && lineWidth == p_other.lineWidth && isBlended == p_other.isBlended;
    }
};
void PrintTo(Drawn const& p_drawn, std::ostream* p_stream) {
    *p_stream << p_drawn.number << '/' << p_drawn.lineWidth << '/' << p_drawn.isBlended;
}

std::vector<Drawn> Flatten(std::vector<RecordedCommand> const& p_commands) {
    std::vector<Drawn> drawn;
    for (RecordedCommand const& command : p_commands) {
        auto const add = [&](float p_number) {
            drawn.push_back({p_number, command.state.line.width, command.state.IsEnabled(EnableBit::Blend)});
        };
        for (Instance const& instance : command.instances)
            add(instance.color.red);
        for (std::size_t i = 0; i < command.vertices.size(); i += 2)
            add(command.vertices[i].color.red);
        if (command.kind == Command::Kind::Clear)
            add(-1);
    }
    return drawn;
}

/// Draws in any order and state, with scopes, clears and flushes anywhere, against a list that is sorted by hand.
TEST(AglTransparency, drawsThatWaitComeOutInTheirStateFarthestFirst) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        RecordedAgl recorded;
        Agl& agl = recorded.agl;
        std::array const shapes{MakeSquare(agl), MakeSquare(agl)};
        std::mt19937 random(seed);
        auto const dice = [&](unsigned p_sides) { return static_cast<int>(random() % p_sides); };
        std::vector<Drawn> expected;
        std::vector<Drawn> waiting;
        auto const carryOut = [&] {
            std::stable_sort(
                waiting.begin(), waiting.end(), [](auto const& a, auto const& b) { return a.depth < b.depth; });
            expected.insert(expected.end(), waiting.begin(), waiting.end());
            waiting.clear();
        };
        int scopes = 0;
        agl.PolygonMode(AGL_FRONT_AND_BACK, AGL_LINE); // so that the line width belongs to the state of squares
        int const steps = seed == 1 ? 80'000 : 1200;
        for (int number = 0; number < steps; ++number) {
            switch (dice(seed == 1 ? 2000 : 40)) {
            case 0:
                agl.BeginTransparency();
                carryOut();
                ++scopes;
                break;
            case 1:
                if (scopes > 0) {
                    agl.EndTransparency();
                    carryOut();
                    --scopes;
                }
                break;
            case 2:
                agl.Clear(AGL_DEPTH_BUFFER_BIT);
                carryOut();
                expected.push_back({-1, agl.Current().line.width, agl.IsEnabled(AGL_BLEND)});
                break;
            case 3:
                EXPECT_EQ(agl.CheckError(), "");
                break;
            case 4:
            case 5:
                agl.LineWidth(static_cast<float>(1 + dice(3)));
                break;
            default:
                break;
            }
            PushAttribScope const saved(agl, dice(2) != 0 ? AGL_ENABLE_BIT : AGL_COLOR_BUFFER_BIT);
            bool const waits = dice(2) != 0;
            if (dice(4) == 0)
                agl.Enable(AGL_BLEND);
            waits ? agl.Enable(AGL_TRANSPARENCY) : agl.Disable(AGL_TRANSPARENCY);
            double const z = dice(50);
            agl.LoadMatrix(Types::Matrix4::Translation({0, 0, z}));
            agl.Color(static_cast<float>(number), 0, 0);
            if (dice(3) == 0) {
                agl.Begin(AGL_LINES);
                agl.Vertex(0, 0);
                agl.Vertex(1, 0);
                agl.End();
            } else {
                agl.Draw(shapes[static_cast<std::size_t>(dice(2))]);
            }
            Drawn const drawn{static_cast<float>(number), agl.Current().line.width, agl.IsEnabled(AGL_BLEND), z};
            (waits && scopes > 0 ? waiting : expected).push_back(drawn);
        }
        for (; scopes > 0; --scopes)
            agl.EndTransparency();
        carryOut();
        std::vector<Drawn> const drawn = Flatten(recorded.Take());
        auto const [at, wanted] = std::mismatch(drawn.begin(), drawn.end(), expected.begin(), expected.end());
        ASSERT_EQ(drawn.size(), expected.size()) << seed;
        ASSERT_TRUE(at == drawn.end()) << seed << ", place " << at - drawn.begin() << ": "
                                       << ::testing::PrintToString(*at) << " for " << ::testing::PrintToString(*wanted);
    }
}

TEST(AglTransparency, neighboursOfOneShapeMergeAndShowTheirBacksFirst) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const square = MakeSquare(agl);
    {
        TransparencyScope const scope(&agl);
        for (int i = 0; i < 5000; ++i) {
            agl.Disable(AGL_TRANSPARENCY);
            agl.Draw(square);
            PushAttribScope const saved(agl, AGL_COLOR_BUFFER_BIT);
            agl.Enable(AGL_TRANSPARENCY);
            agl.Enable(AGL_BLEND);
            agl.Draw(square);
        }
        agl.Enable(AGL_TRANSPARENCY);
        agl.Enable(AGL_CULL_FACE);
        agl.Draw(square);
    }
    auto const commands = recorded.Take();
    ASSERT_EQ(commands.size(), 3U);
    EXPECT_EQ(commands[0].pipeline, Pipeline::Triangles);
    EXPECT_EQ(commands[0].instances.size(), 5000U);
    EXPECT_EQ(commands[1].pipeline, Pipeline::BackThenFront);
    EXPECT_EQ(commands[1].instances.size(), 5000U);
    EXPECT_EQ(commands[2].pipeline, Pipeline::Triangles) << "a face that is not seen needs no order";
    EXPECT_EQ(agl.GetStatistics().triangles, 2U * 10'001U);
}

TEST(AglTransparency, facesOfTwoModesAllComeOutAndOnlyThoseThatWaitShowTheirBacksFirst) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto const square = MakeSquare(agl);
    {
        TransparencyScope const scope(&agl);
        agl.Enable(AGL_TRANSPARENCY);
        agl.Draw(square);
        PushAttribScope const saved(agl, AGL_POLYGON_BIT | AGL_ENABLE_BIT | AGL_LIGHTING_BIT);
        agl.PolygonMode(AGL_BACK, AGL_LINE);
        agl.Enable(AGL_LINE_STIPPLE);
        agl.LineStipple(1, 0x0F0F);
        agl.LoadMatrix(Types::Matrix4::Translation({0, 0, 5}));
        agl.Draw(square);
        agl.PolygonMode(AGL_FRONT_AND_BACK, AGL_FILL);
        agl.ShadeModel(AGL_FLAT);
        agl.LoadMatrix(Types::Matrix4::Translation({0, 0, 6}));
        agl.Draw(square);
    }
    agl.Disable(AGL_TRANSPARENCY);
    agl.Draw(square);
    auto const commands = recorded.Take();
    ASSERT_EQ(commands.size(), 6U);
    EXPECT_EQ(commands[0].pipeline, Pipeline::BackThenFront);
    EXPECT_EQ(commands[1].pipeline, Pipeline::Triangles);
    EXPECT_EQ(commands[1].faces, FaceBit::Front);
    EXPECT_EQ(commands[2].faces, FaceBit::Back);
    EXPECT_FALSE(commands[2].vertices.empty()) << "dashes along the square";
    EXPECT_EQ(commands[3].pipeline, Pipeline::FlatTriangles);
    EXPECT_EQ(commands[3].faces, FaceBit::Back);
    EXPECT_EQ(commands[4].faces, FaceBit::Front);
    EXPECT_EQ(commands[5].pipeline, Pipeline::Triangles);
    EXPECT_EQ(commands[5].faces, FaceBit::Both);
}

TEST(AglTransparency, whatWaitsKeepsItsResourcesAndAFrameEndsIt) {
    RecordedAgl recorded;
    Agl& agl = recorded.agl;
    auto square = MakeSquare(agl);
    auto texture = std::make_shared<Texture const>(QImage(2, 2, QImage::Format_RGBA8888));
    std::weak_ptr<Texture const> const weakTexture = texture;
    std::weak_ptr<PrimitiveBuffer const> const weak = square;
    agl.EndTransparency();
    EXPECT_NE(agl.CheckError(), "");
    agl.BeginFrame();
    agl.BeginTransparency();
    agl.Enable(AGL_TRANSPARENCY);
    agl.Enable(AGL_TEXTURE_2D);
    agl.BindTexture(texture);
    agl.Draw(square);
    square.reset();
    texture.reset();
    agl.Flush();
    EXPECT_FALSE(weak.expired() || weakTexture.expired());
    agl.EndFrame();
    EXPECT_NE(agl.CheckError(), "") << "a scope was left open";
    EXPECT_TRUE(weak.expired() && weakTexture.expired());
    EXPECT_NE(recorded.Take().at(0).state.textures[0].texture, 0U);
}

} // namespace
} // namespace Qor::Chart::Ogl
