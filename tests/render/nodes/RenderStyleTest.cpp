#include "render/nodes/RenderStyle.h"

#include "tests/render/nodes/SceneFixture.h"
#include "tests/render/support/Models.h"
#include "framework/model/RenderStyle.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <functional>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Mode = DrawContext::DrawMode;
using Fixtures::MakeCube;
using Ogl::RecordedCommand;
using Style = Model::RenderStyle;

std::string WriteImage(char const* p_name, int p_alpha) {
    QImage image(2, 2, QImage::Format_RGBA8888);
    image.fill(QColor(255, 0, 0, p_alpha));
    std::string const path = (std::filesystem::path(::testing::TempDir()) / p_name).string();
    image.save(QString::fromStdString(path));
    return path;
}

struct RenderStyleTest : ::testing::Test, Fixtures::SceneFixture {
    static Core::Ptr<Style> StyleWith(std::function<void(Style&)> const& p_set) {
        auto style = Core::MakeNode<Style>();
        p_set(*style);
        return style;
    }
    std::vector<RecordedCommand> UpdateAndDraw() {
        Update();
        auto commands = Draw();
        EXPECT_EQ(agl.GetStatistics().pushes, agl.GetStatistics().pops);
        EXPECT_EQ(agl.CheckError(), "");
        return commands;
    }
};

/// What one property does, set by a style around a cube and one that sets nothing around another one, and taken back by
/// a further style.
TEST_F(RenderStyleTest, eachPropertyHoldsForItsSubtreeUntilAnInnerStyleOverridesIt) {
    std::string const image = WriteImage("qor-style-opaque.png", 255);
    struct Case {
        char const* name;
        std::function<void(Style&)> outer;
        std::function<void(Style&)> inner;
        std::function<double(RecordedCommand const&)> read;
        double outside, within, overridden;
        Ogl::Token mode = AGL_FILL;
    };
    auto const set = [](auto p_setter, auto p_value) { return [=](Style& p) { (p.*p_setter)(p_value); }; };
    auto const enabled = [](Ogl::EnableBit::Type p_bit) {
        return [p_bit](RecordedCommand const& p) { return double(p.state.IsEnabled(p_bit)); };
    };
    auto const options = [](std::uint32_t p_bits) {
        return [p_bits](RecordedCommand const& p) { return double(p.shader->Options() & p_bits); };
    };
    auto const textures = [](RecordedCommand const& p) { return double(p.state.UsedTextureUnits()); };
    auto const green = [](RecordedCommand const& p) { return double(p.instances[0].color.green); };
    double const own = double(200 / 255.0F);
    std::string const none;
    for (Case const& c : {
             Case{"line width", set(&Style::SetLineWidth, 3), set(&Style::SetLineWidth, 1),
                 [](RecordedCommand const& p) { return double(p.state.line.width); }, 1, 6, 2, AGL_LINE},
             Case{"point size", set(&Style::SetPointSize, 4), set(&Style::SetPointSize, 5),
                 [](RecordedCommand const& p) { return double(p.state.point.size); }, 1, 8, 10, AGL_POINT},
             Case{"pattern", set(&Style::SetLinePattern, Style::LinePattern::Dotted),
                 set(&Style::SetLinePattern, Style::LinePattern::Solid), enabled(Ogl::EnableBit::LineStipple), 0, 1, 0},
             Case{"smooth lines", set(&Style::SetSmoothLines, true), set(&Style::SetSmoothLines, false),
                 enabled(Ogl::EnableBit::LineSmooth), 0, 1, 0},
             Case{"round points", set(&Style::SetRoundPoints, true), set(&Style::SetRoundPoints, false),
                 enabled(Ogl::EnableBit::PointSmooth), 0, 1, 0},
             Case{"culling", set(&Style::SetCulling, Style::Culling::Front),
                 set(&Style::SetCulling, Style::Culling::None), enabled(Ogl::EnableBit::CullFace), 0, 1, 0},
             Case{"polygon mode", set(&Style::SetPolygonMode, Style::PolygonMode::Outlines),
                 set(&Style::SetPolygonMode, Style::PolygonMode::Filled),
                 [](RecordedCommand const& p) { return double(p.state.polygon.frontMode); }, AGL_FILL, AGL_LINE,
                 AGL_FILL},
             Case{"lighting", set(&Style::SetLighting, false), set(&Style::SetLighting, true), options(1), 1, 0, 1},
             Case{"cutout", [](Style& p) { p.SetAlphaMode(Style::AlphaMode::Cutout), p.SetAlphaCutoff(1); },
                 set(&Style::SetAlphaMode, Style::AlphaMode::Opaque), options(0xFFF8), 0, 0xFF08, 16},
             Case{"opacity", set(&Style::SetOpacity, 0.5), set(&Style::SetOpacity, 0.25),
                 [](RecordedCommand const& p) { return double(p.instances[0].color.alpha); }, 1, 0.5, 0.25},
             Case{"foreground", set(&Style::SetForegroundColor, QColor(255, 0, 0)),
                 set(&Style::SetForegroundColor, QColor(0, 0, 0)), green, own, 0, 0},
             Case{"texture", set(&Style::SetTexture, image), set(&Style::SetTexture, none), textures, 0, 1, 0},
             Case{"textured colour", set(&Style::SetTexture, image), set(&Style::SetTexture, none), green, own, 1, own},
             Case{"second texture", set(&Style::SetSecondTexture, image), set(&Style::SetSecondTexture, none), textures,
                 0, 2, 0},
             Case{"environment", set(&Style::SetTextureEnvironment, Style::Environment::Add),
                 set(&Style::SetTextureEnvironment, Style::Environment::Decal),
                 [](RecordedCommand const& p) { return double(p.state.textures[0].environment); }, AGL_MODULATE,
                 AGL_ADD, AGL_DECAL},
             Case{"scale", set(&Style::SetTextureScale, Types::Vector2_Base<double>(2, 3)),
                 set(&Style::SetTextureOffset, Types::Vector2_Base<double>(0.5, 7)),
                 [](RecordedCommand const& p) {
                     return double(p.state.textureMatrices[0].matrix[5] + p.state.textureMatrices[0].matrix[13]);
                 },
                 1, 3, 10},
         }) {
        capabilities.pixelRatio = 2;
        scene = Core::MakeNode<Model::SceneGraph>();
        root = {};
        auto const outer = StyleWith(c.outer);
        auto const nothing = Core::MakeNode<Style>();
        auto const inner = StyleWith(c.inner);
        inner->Add(MakeCube({0, 0, 3}));
        nothing->Add(MakeCube({0, 0, 2}));
        outer->Add(MakeCube({0, 0, 1}));
        outer->Add(nothing);
        outer->Add(inner);
        outer->Add(MakeCube({0, 0, 4}));
        scene->Add(outer);
        scene->Add(MakeCube({0, 0, 5}));
        // What is filled takes no notice of the look of lines and points.
        agl.PolygonMode(AGL_FRONT_AND_BACK, c.mode);
        auto const check = [&](char const* p_what, std::array<double, 5> const& p_expected) {
            unsigned met = 0;
            for (RecordedCommand const& command : UpdateAndDraw()) {
                for (Ogl::Instance const& instance : command.instances) {
                    RecordedCommand one = command;
                    one.instances = {instance};
                    auto const place = static_cast<std::size_t>(instance.rows[2][3]) - 1;
                    EXPECT_FLOAT_EQ(static_cast<float>(c.read(one)), static_cast<float>(p_expected.at(place)))
                        << c.name << ", " << p_what << ", cube " << place + 1;
                    ++met;
                }
            }
            EXPECT_EQ(met, 5U) << c.name;
        };
        check("set", {c.within, c.within, c.overridden, c.within, c.outside});
        for (Model::PropertyInfo const* const property : Style::ClassProperties())
            inner->Reset(*property);
        check("inner reset", {c.within, c.within, c.within, c.within, c.outside});
        for (Model::PropertyInfo const* const property : Style::ClassProperties())
            outer->Reset(*property);
        check("reset", {c.outside, c.outside, c.outside, c.outside, c.outside});
        EXPECT_THAT(dispatcher.warnings, ::testing::IsEmpty()) << c.name;
    }
}

TEST_F(RenderStyleTest, theSchemaIsHandedDownInBothLayers) {
    auto const style = StyleWith([](Style& p) {
        p.SetTextColor(QColor(1, 2, 3));
        p.SetFontSize(17.4);
        p.SetHighlightColor(QColor(4, 5, 6));
    });
    scene->Add(style);
    style->Add(MakeCube());
    Update();
    struct Hooks : VisHooks {
        using VisHooks::Setup;
        using VisHooks::SetupOverlay;
        using VisHooks::Teardown;
        using VisHooks::TeardownOverlay;
    };
    Utility::Scoped<Ogl::Agl> scope(handle);
    for (Layer const layer : {LayerBase, LayerOverlay}) {
        DrawContext context = MakeContext(Mode::Draw);
        Types::Schema expected = context.Schema().Top();
        expected.textColor = QColor(1, 2, 3);
        expected.fontSize = 17;
        expected.highlightColor = QColor(4, 5, 6);
        context.CreateCheckPoint();
        (layer == LayerBase ? Hooks::Setup : Hooks::SetupOverlay)(Child(), context, scope);
        EXPECT_EQ(context.Schema().Top(), expected);
        (layer == LayerBase ? Hooks::Teardown : Hooks::TeardownOverlay)(Child(), context, scope);
        context.RestoreCheckPoint();
    }
}

} // namespace
} // namespace Qor::Chart::Render
