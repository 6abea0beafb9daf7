#include "render/nodes/RenderStyle.h"

#include "tests/render/nodes/SceneFixture.h"
#include "framework/core/Reference.h"
#include "framework/library/Style.h"
#include "framework/model/Light.h"
#include "framework/model/RenderStyle.h"
#include "framework/qordebug/CaptureScope.h"
#include "framework/utility/Logger.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <stdexcept>

namespace Qor::Chart::Render {
namespace {

using namespace Ogl::Tokens;
using Mode = DrawContext::DrawMode;
using Ogl::RecordedCommand;
using Style = Model::RenderStyle;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

/// Leaves something on a stack, and then fails.
class FaultyVis : public Vis {
public:
    FaultyVis() : _model(*this, "model") {
        RegisterCB(HandledDraw);
        RegisterCB(HandledBoundingBox);
    }
    void Attach(Core::Ptr<Model::ModelNode> const& p_model) { _model.Attach(p_model); }
    Core::WeakPtr<Model::ModelNode> SourceModel() const override { return _model.Get(); }

private:
    DrawResult DoDraw(DrawContext const& p_context) override {
        p_context.Graphics().Get()->PushAttrib(AGL_ALL_ATTRIB_BITS);
        throw std::runtime_error("faulty");
    }

    Types::BoundingBox_Base<double> DoBoundingBox(Types::BoundingBox_Base<double> const&) override {
        return {{0, 0, 0}, {1, 1, 1}};
    }

    Core::WeakRef<Model::Light> _model;
};

std::string WriteImage(char const* p_name, int p_alpha) {
    QImage image(2, 2, QImage::Format_RGBA8888);
    image.fill(QColor(255, 0, 0, p_alpha));
    std::string const path = (std::filesystem::path(::testing::TempDir()) / p_name).string();
    image.save(QString::fromStdString(path));
    return path;
}

struct RenderStyleTest : ::testing::Test, Fixtures::SceneFixture {
    RenderStyleTest() {
        generator.Register<Model::Light>([](Core::Ptr<Model::ModelNode> const& p_model) -> Core::Ptr<Vis> {
            auto vis = Core::MakeNode<FaultyVis>();
            vis->Attach(p_model);
            return vis;
        });
    }

    static Core::Ptr<Model::SimpleObject> Cube(double p_z = 0) {
        auto cube = Core::MakeNode<Model::SimpleObject>(Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube));
        cube->SetTransform(Types::Matrix4::Translation({0, 0, p_z}));
        return cube;
    }
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
    auto const enabled = [](Ogl::EnableBit::Type p_bit) {
        return [p_bit](RecordedCommand const& p) { return double(p.state.IsEnabled(p_bit)); };
    };
    auto const options = [](std::uint32_t p_bits) {
        return [p_bits](RecordedCommand const& p) { return double(p.shader->Options() & p_bits); };
    };
    auto const textures = [](RecordedCommand const& p) { return double(p.state.UsedTextureUnits()); };
    for (Case const& c : {
             Case{"line width", [](Style& p) { p.SetLineWidth(3); }, [](Style& p) { p.SetLineWidth(1); },
                 [](RecordedCommand const& p) { return double(p.state.line.width); }, 1, 6, 2, AGL_LINE},
             Case{"point size", [](Style& p) { p.SetPointSize(4); }, [](Style& p) { p.SetPointSize(5); },
                 [](RecordedCommand const& p) { return double(p.state.point.size); }, 1, 8, 10, AGL_POINT},
             Case{"pattern", [](Style& p) { p.SetLinePattern(Style::LinePattern::Dotted); },
                 [](Style& p) { p.SetLinePattern(Style::LinePattern::Solid); }, enabled(Ogl::EnableBit::LineStipple), 0,
                 1, 0},
             Case{"smooth lines", [](Style& p) { p.SetSmoothLines(true); }, [](Style& p) { p.SetSmoothLines(false); },
                 enabled(Ogl::EnableBit::LineSmooth), 0, 1, 0},
             Case{"round points", [](Style& p) { p.SetRoundPoints(true); }, [](Style& p) { p.SetRoundPoints(false); },
                 enabled(Ogl::EnableBit::PointSmooth), 0, 1, 0},
             Case{"culling", [](Style& p) { p.SetCulling(Style::Culling::Front); },
                 [](Style& p) { p.SetCulling(Style::Culling::None); }, enabled(Ogl::EnableBit::CullFace), 0, 1, 0},
             Case{"polygon mode", [](Style& p) { p.SetPolygonMode(Style::PolygonMode::Outlines); },
                 [](Style& p) { p.SetPolygonMode(Style::PolygonMode::Filled); },
                 [](RecordedCommand const& p) { return double(p.state.polygon.frontMode); }, AGL_FILL, AGL_LINE,
                 AGL_FILL},
             Case{"lighting", [](Style& p) { p.SetLighting(false); }, [](Style& p) { p.SetLighting(true); }, options(1),
                 1, 0, 1},
             Case{"cutout",
                 [](Style& p) {
                     p.SetAlphaMode(Style::AlphaMode::Cutout);
                     p.SetAlphaCutoff(1);
                 },
                 [](Style& p) { p.SetAlphaMode(Style::AlphaMode::Opaque); }, options(0xFFF8), 0, 0xFF08, 16},
             Case{"opacity", [](Style& p) { p.SetOpacity(0.5); }, [](Style& p) { p.SetOpacity(0.25); },
                 [](RecordedCommand const& p) { return double(p.instances[0].color.alpha); }, 1, 0.5, 0.25},
             Case{"foreground", [](Style& p) { p.SetForegroundColor(QColor(255, 0, 0)); },
                 [](Style& p) { p.SetForegroundColor(QColor(0, 0, 0)); },
                 [](RecordedCommand const& p) { return double(p.instances[0].color.green); }, double(200 / 255.0F), 0,
                 0},
             Case{"texture", [&](Style& p) { p.SetTexture(image); }, [](Style& p) { p.SetTexture(""); }, textures, 0, 1,
                 0},
             Case{"textured colour", [&](Style& p) { p.SetTexture(image); }, [](Style& p) { p.SetTexture(""); },
                 [](RecordedCommand const& p) { return double(p.instances[0].color.green); }, double(200 / 255.0F), 1,
                 double(200 / 255.0F)},
             Case{"second texture", [&](Style& p) { p.SetSecondTexture(image); },
                 [](Style& p) { p.SetSecondTexture(""); }, textures, 0, 2, 0},
             Case{"environment", [](Style& p) { p.SetTextureEnvironment(Style::Environment::Add); },
                 [](Style& p) { p.SetTextureEnvironment(Style::Environment::Decal); },
                 [](RecordedCommand const& p) { return double(p.state.textures[0].environment); }, AGL_MODULATE,
                 AGL_ADD, AGL_DECAL},
             Case{"scale",
                 [](Style& p) {
                     p.SetTextureScale({2, 3});
                 },
                 [](Style& p) {
                     p.SetTextureOffset({0.5, 7});
                 },
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
        inner->Add(Cube(3));
        nothing->Add(Cube(2));
        outer->Add(Cube(1));
        outer->Add(nothing);
        outer->Add(inner);
        outer->Add(Cube(4));
        scene->Add(outer);
        scene->Add(Cube(5));
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
    style->Add(Cube());
    Update();
    for (Layer const layer : {LayerBase, LayerOverlay}) {
        DrawContext context = MakeContext(Mode::Draw);
        Types::Schema expected = context.Schema().Top();
        expected.textColor = QColor(1, 2, 3);
        expected.fontSize = 17;
        expected.highlightColor = QColor(4, 5, 6);
        struct Reach : VisHooks {
            static void Call(Vis& p_vis, DrawContext& p_context, Layer p_layer, Ogl::Agl& p_agl) {
                Utility::Scoped<Ogl::Agl> scope{Utility::Unscoped<Ogl::Agl>(p_agl)};
                p_layer == LayerBase ? Setup(p_vis, p_context, scope) : SetupOverlay(p_vis, p_context, scope);
                if (p_layer == LayerBase)
                    Teardown(p_vis, p_context, scope);
            }
        };
        context.CreateCheckPoint();
        Reach::Call(Child(), context, layer, agl);
        EXPECT_EQ(context.Schema().Top(), expected);
        context.RestoreCheckPoint();
    }
}

TEST_F(RenderStyleTest, transparentObjectsAreDrawnLastWithoutDepthWhateverMakesThemSo) {
    std::string const glass = WriteImage("qor-style-glass.png", 100);
    std::string const solid = WriteImage("qor-style-solid.png", 255);
    struct Case {
        std::function<void(Style&)> set;
        int alpha; ///< of the cube's own colour
        bool isTransparent;
    };
    for (Case const& c : {Case{[](Style&) {}, 255, false}, Case{[](Style&) {}, 254, true},
             Case{[](Style& p) { p.SetOpacity(0.99); }, 255, true},
             Case{[&](Style& p) { p.SetTexture(glass); }, 255, true},
             Case{[&](Style& p) { p.SetTexture(solid); }, 255, false},
             Case{[&](Style& p) { p.SetTexture(glass), p.SetTextureEnvironment(Style::Environment::Decal); }, 255,
                 false},
             Case{[&](Style& p) { p.SetTexture(glass), p.SetAlphaMode(Style::AlphaMode::Cutout); }, 255, false},
             Case{[&](Style& p) { p.SetAlphaMode(Style::AlphaMode::Opaque); }, 100, false},
             Case{[&](Style& p) { p.SetAlphaMode(Style::AlphaMode::Opaque), p.SetOpacity(0.5); }, 255, true},
             Case{[&](Style& p) { p.SetAlphaMode(Style::AlphaMode::Blended); }, 255, true}}) {
        scene = Core::MakeNode<Model::SceneGraph>();
        root = {};
        auto const style = StyleWith(c.set);
        auto const cube = Cube(1);
        cube->SetColor(QColor(10, 20, 30, c.alpha));
        style->Add(cube);
        scene->Add(style);
        auto const other = Cube(-7);
        other->SetColor(QColor(1, 1, 1));
        scene->Add(other);
        std::vector<RecordedCommand> const commands = UpdateAndDraw();
        RecordedCommand const& last = commands.back();
        EXPECT_EQ(last.instances.back().rows[2][3], c.isTransparent ? 1 : -7) << c.alpha;
        EXPECT_EQ(last.state.depth.mask, c.isTransparent ? 0U : 1U);
        EXPECT_EQ(last.state.IsEnabled(Ogl::EnableBit::Blend), c.isTransparent);
    }
    auto const invisible = StyleWith([](Style& p) { p.SetOpacity(0); });
    scene = Core::MakeNode<Model::SceneGraph>();
    root = {};
    invisible->Add(Cube());
    scene->Add(invisible);
    EXPECT_TRUE(UpdateAndDraw().empty());
}

TEST_F(RenderStyleTest, anImageThatCannotBeHadIsReportedOnceAndTheRestIsDrawn) {
    std::string const broken = (std::filesystem::path(::testing::TempDir()) / "qor-style-broken.png").string();
    std::ofstream(broken) << "no image";
    auto const first = StyleWith([&](Style& p) { p.SetTexture("missing.png"), p.SetSecondTexture(broken); });
    auto const second = StyleWith([](Style& p) { p.SetTexture("missing.png"), p.SetLineWidth(4); });
    for (auto const& style : {first, second}) {
        style->Add(Cube());
        scene->Add(style);
    }
    auto const commands = UpdateAndDraw();
    EXPECT_THAT(dispatcher.warnings,
        ElementsAre(Pair(1, HasSubstr("missing.png")), Pair(1, HasSubstr("qor-style-broken.png"))));
    std::size_t drawnCubes = 0;
    for (RecordedCommand const& command : commands) {
        drawnCubes += command.instances.size();
        EXPECT_EQ(command.state.UsedTextureUnits(), 0U);
    }
    EXPECT_EQ(drawnCubes, 2U);
    dispatcher.warnings.clear();
    second->SetTexture(WriteImage("qor-style-found.png", 255));
    EXPECT_EQ(UpdateAndDraw().back().state.UsedTextureUnits(), 1U);
    EXPECT_THAT(dispatcher.warnings, ::testing::IsEmpty());
}

TEST_F(RenderStyleTest, aFailureInTheSubtreeLeavesNothingBehind) {
    std::string const image = WriteImage("qor-style-failure.png", 255);
    auto const style = StyleWith([&](Style& p) {
        p.SetTexture(image);
        p.SetTextureScale({2, 2});
        p.SetLineWidth(9);
        p.SetOpacity(0.5);
    });
    style->Add(Cube());
    style->Add(Core::MakeNode<Model::Light>());
    scene->Add(style);
    scene->Add(Cube(5));
    auto const commands = UpdateAndDraw();
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_EQ(commands[0].instances[0].rows[2][3], 5);
    EXPECT_EQ(commands[0].state.line.width, 1);
    EXPECT_EQ(commands[0].state.textureMatrices[0].matrix[0], 1);
    EXPECT_EQ(commands[1].state.UsedTextureUnits(), 1U);
    EXPECT_EQ(dispatcher.exceptions.size(), 1U);
}

TEST_F(RenderStyleTest, sizesThatAreNoneAreRefused) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    double const infinity = std::numeric_limits<double>::infinity();
    auto const style = Core::MakeNode<Style>();
    qordebug::CaptureScope const capture(Utility::GetLogger());
    std::size_t refused = 0;
    for (double const bad : {nan, infinity, -infinity, -1.0, 1e9}) {
        for (bool const isTaken : {style->SetOpacity(bad), style->SetAlphaCutoff(bad), style->SetFontSize(bad),
                 style->SetLineWidth(bad), style->SetPointSize(bad)}) {
            EXPECT_FALSE(isTaken) << bad;
            ++refused;
        }
    }
    EXPECT_FALSE(style->SetTextureScale({1, nan}));
    EXPECT_FALSE(style->SetSecondTextureOffset({infinity, 0}));
    EXPECT_FALSE(style->SetLineWidth(0));
    EXPECT_FALSE(style->SetTextureEnvironment(Style::Environment::Combine));
    EXPECT_FALSE(style->SetTextureFilters(
        {Model::TextureFilters::Filter::Linear, Model::TextureFilters::Filter::LinearMipmapLinear}));
    EXPECT_FALSE(style->SetTextColor(QColor()));
    EXPECT_EQ(capture.entries().size(), refused + 6);
    for (Model::PropertyInfo const* const property : Style::ClassProperties()) {
        EXPECT_FALSE(style->IsSet(*property)) << property->Name();
        property->SetText(*style, property->DefaultText()); // what is written can be read
        EXPECT_EQ(property->Text(*style), property->DefaultText());
    }
    Style::TextureFiltersProperty.SetText(*style, "nearestmipmaplinear");
    EXPECT_EQ(Style::TextureFiltersProperty.Text(*style), "NearestMipmapLinear Nearest");
    Style::TextureWrapsProperty.SetText(*style, " Repeat  ClampToEdge ");
    EXPECT_EQ(Style::TextureWrapsProperty.Text(*style), "Repeat ClampToEdge");
}

} // namespace
} // namespace Qor::Chart::Render
