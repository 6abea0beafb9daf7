// Picks against pictures: what a pick finds first is what one sees. Each node is drawn in a colour of its own, unlit and
// without smoothing, by the ordinary draw traversal, and the picture is asked what shows at random pixels.

#include "host/Picker.h"

#include "host/CameraNode.h"
#include "host/FrameDriver.h"
#include "host/Scene.h"
#include "render/loops/RenderLoop.h"
#include "framework/model/Pane.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/SimpleObject.h"
#include "framework/ogl/Context.h"
#include "framework/ogl/OffscreenTarget.h"
#include "framework/ogl/OpenGlBackend.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/ogl/RecorderBackend.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <numbers>
#include <random>
#include <sstream>

namespace Qor::Chart::Host {
namespace {

using namespace Ogl::Tokens;
using Render::HitRecord;
using Vector = Types::Vector3_Base<double>;

constexpr int Width = 640;
constexpr int Height = 480;
constexpr int Scenes = 12;
constexpr int PixelsPerScene = 10000;
Types::Viewport<0> const Window(0, 0, Width, Height);

/// Symbols and nested panes at random, the same ones for the same seed.
class RandomScene {
public:
    RandomScene(Scene& p_scene, unsigned p_seed, bool p_isPlain) : _random(p_seed), _isPlain(p_isPlain) {
        AddSymbols(*p_scene.Model(), 150);
        AddPanes(*p_scene.Model(), 3);
        camera = RandomCamera();
    }

    double Number(double p_low, double p_high) {
        return p_low + (p_high - p_low) * (static_cast<double>(_random()) / 4294967295.0);
    }
    /// Looks at the scene so that it fills the window and goes beyond it.
    void Fit(Scene const& p_scene) {
        camera.Fit(p_scene.Bounds(), Window, p_scene.Parts());
        camera.ZoomAbout(1.7, {Width / 2.0, Height / 2.0}, Window);
    }
    int Whole(int p_below) { return static_cast<int>(_random() % static_cast<unsigned>(p_below)); }

    /// By colour as it is drawn; the background of a pane has none.
    std::map<QRgb, Model::ModelNode const*> nodes;
    std::size_t panes = 0;
    Camera camera;

private:
    bool OneIn(int p_count) { return Whole(p_count) == 0; }

    Camera RandomCamera() {
        Camera result;
        result.SetProjectionMode(OneIn(2) ? Render::ProjectionMode::Perspective : Render::ProjectionMode::Orthographic);
        result.Look(Number(-180, 180), Number(-90, 90));
        return result;
    }

    void AddSymbols(Model::ModelNode& p_parent, int p_count) {
        Core::Ptr<Model::Symbol> symbol;
        Types::Matrix4 place;
        for (int i = 0; i < p_count; ++i) {
            if (i == 0 || !OneIn(8)) { // else the same again, in the very same place
                symbol = Core::MakeNode<Model::Symbol>(static_cast<Model::SymbolShape>(1 + Whole(8)));
                auto const extent = [&] { return Number(0.3, 2.5) * (OneIn(4) ? -1 : 1); };
                place = Types::Matrix4::Translation({Number(-4, 4), Number(-4, 4), Number(-4, 4)}) *
                    Types::Matrix4::Rotation(Number(0, 360), Normalized(Vector(Number(-1, 1), Number(-1, 1), 1))) *
                    Types::Matrix4::Scaling({extent(), extent(), extent()});
            }
            auto const object = Core::MakeNode<Model::SimpleObject>(symbol);
            object->SetTransform(place);
            auto const id = static_cast<int>(nodes.size()) + 1;
            QColor const color(40 + id % 200, id / 200, 0);
            object->SetColor(color);
            object->SetFront(!_isPlain && OneIn(4));
            nodes[color.rgb()] = object.Get();
            p_parent.Add(object);
        }
    }

    void AddPanes(Model::ModelNode& p_parent, int p_levels) {
        for (int i = 0; p_levels > 0 && i < 1 + Whole(3); ++i) {
            auto const pane = Core::MakeNode<Model::Pane>();
            pane->SetViewport({Number(-0.1, 0.6), Number(-0.1, 0.6), Number(0.3, 0.7), Number(0.3, 0.7)});
            pane->SetProjectionMode(static_cast<Model::Pane::ProjectionMode>(Whole(2)));
            pane->SetBackgroundColor(QColor(0, 0, 255, OneIn(2) ? 255 : 0));
            pane->SetKeepInsideParent(OneIn(3));
            if (!_isPlain) {
                pane->SetBackgroundPickable(OneIn(2));
                pane->SetMovable(OneIn(2));
                pane->SetResizable(OneIn(2));
            }
            AddSymbols(*pane, 25);
            AddPanes(*pane, p_levels - 1);
            ++panes;
            if (OneIn(2)) {
                auto const view = Core::MakeNode<CameraNode>();
                view->SetCamera(RandomCamera());
                view->Add(pane);
                p_parent.Add(view);
            } else {
                p_parent.Add(pane);
            }
        }
    }

    std::mt19937 _random;
    bool _isPlain;
};

/// The base layer in plain colours.
void DrawColors(Scene& p_scene, Camera const& p_camera) {
    Ogl::Agl& agl = p_scene.Graphics();
    Render::DrawContext context(Utility::Unscoped<Ogl::Agl>(agl), p_scene.Resource(), p_scene.Images(),
        p_scene.Dispatcher(), p_scene.Schema(), p_scene.NumberFormat(), p_scene.Geometry(),
        Render::DrawContext::DrawMode::Draw, std::bitset<2>(), Core::Verbosity::Quiet, p_scene.Capabilities(),
        boost::make_shared<Ogl::Highlight>());
    agl.BeginFrame();
    {
        Ogl::PushAttribScope const saved(agl, AGL_ALL_ATTRIB_BITS);
        Types::Matrix4 const camera = p_camera.Matrix(p_scene.Bounds());
        agl.MatrixMode(AGL_PROJECTION);
        agl.LoadIdentity();
        if (p_camera.GetProjectionMode() == Render::ProjectionMode::Perspective)
            agl.Perspective(Window, p_scene.Bounds(), camera);
        else
            agl.Ortho(Window, p_scene.Bounds(), camera);
        context.Viewport().Set(Window);
        context.Camera().Set(camera);
        context.Projection().Set(agl.Get(AGL_PROJECTION_MATRIX));
        agl.MatrixMode(AGL_MODELVIEW);
        agl.LoadIdentity();
        agl.Viewport(Window);
        agl.ClearColor(QColor(0, 0, 128));
        agl.Clear(AGL_COLOR_BUFFER_BIT | AGL_DEPTH_BUFFER_BIT);
        agl.Enable(AGL_DEPTH_TEST);
        agl.DepthFunc(AGL_LEQUAL);
        Render::RenderLoop(Render::LayerBase, Render::DrawContext::DrawMode::Draw)(p_scene.Visual(), context);
    }
    agl.EndFrame();
}

/// Whether the picture shows one colour where a pick of the pixel looks, and one pixel around that. The least pick area has
/// two pixels a side, with the pixel's lower left corner in its middle.
bool IsInside(QImage const& p_picture, int p_x, int p_row) {
    for (int x = p_x - 2; x <= p_x + 1; ++x) {
        for (int row = p_row - 1; row <= p_row + 2; ++row) {
            if (!p_picture.valid(x, row) || p_picture.pixel(x, row) != p_picture.pixel(p_x, p_row))
                return false;
        }
    }
    return true;
}

/// Whether a node shows next to the pixel: then a part of it that is thinner than the pixels may lie in between.
bool ShowsNear(
    QImage const& p_picture, RandomScene const& p_random, Model::ModelNode const* p_node, int p_x, int p_row) {
    for (int x = p_x - 8; x <= p_x + 8; ++x) {
        for (int row = p_row - 8; row <= p_row + 8; ++row) {
            auto const found =
                p_picture.valid(x, row) ? p_random.nodes.find(p_picture.pixel(x, row)) : p_random.nodes.end();
            if (found != p_random.nodes.end() && found->second == p_node)
                return true;
        }
    }
    return false;
}

struct Counts {
    int pixels = 0;
    int edges = 0;
    int backgrounds = 0;
    int slivers = 0;
    int empty = 0; ///< compared, with nothing there
    int compared = 0;
    int agreeing = 0;

    void Write(std::ostream& p_stream, std::string const& p_name, std::size_t p_objects, std::size_t p_panes) const {
        p_stream << "| " << p_name << " | " << p_objects << " | " << p_panes << " | " << pixels << " | " << edges
                 << " | " << backgrounds << " | " << slivers << " | " << compared << " | " << empty << " | " << agreeing
                 << " |\n";
    }
    Counts& operator+=(Counts const& p_other) {
        pixels += p_other.pixels;
        edges += p_other.edges;
        backgrounds += p_other.backgrounds;
        slivers += p_other.slivers;
        empty += p_other.empty;
        compared += p_other.compared;
        agreeing += p_other.agreeing;
        return *this;
    }
};

Counts Compare(Scene& p_scene, RandomScene& p_random, QImage const& p_picture) {
    Counts counts;
    Picker picker(p_scene);
    for (; counts.pixels < PixelsPerScene; ++counts.pixels) {
        int const x = p_random.Whole(Width);
        int const row = p_random.Whole(Height);
        QRgb const color = p_picture.pixel(x, row);
        if (!IsInside(p_picture, x, row)) {
            ++counts.edges;
            continue;
        }
        if (qBlue(color) == 255) {
            ++counts.backgrounds;
            continue;
        }
        auto const found = p_random.nodes.find(color);
        Model::ModelNode const* const seen = found == p_random.nodes.end() ? nullptr : found->second;
        auto const hits = picker.Pick(p_random.camera, Window, {{x, Height - 1 - row}, {1, 1}}, Render::LayerBase);
        Core::Ptr<Render::Vis> const first = hits.empty() ? nullptr : hits.front().node.Lock();
        Model::ModelNode const* const picked = first ? first->SourceModel().Peek() : nullptr;
        if (seen != picked && picked && ShowsNear(p_picture, p_random, picked, x, row)) {
            ++counts.slivers;
            continue;
        }
        ++counts.compared;
        counts.empty += seen ? 0 : 1;
        counts.agreeing += seen == picked ? 1 : 0;
        if (seen != picked && counts.compared - counts.agreeing < 4)
            ADD_FAILURE() << "at " << x << ',' << row << " shows " << (seen ? seen->Id() : 0) << ", but the pick gives "
                          << (picked ? picked->Id() : 0) << '\n'
                          << hits;
    }
    return counts;
}

/// With QOR_PICK_REPORT naming a folder, the table and the pictures are written there.
std::string ReportFolder() {
    char const* const folder = std::getenv("QOR_PICK_REPORT");
    return folder ? std::string(folder) + "/" : std::string();
}

TEST(PickPictureTest, firstRecordIsTheNodeThatOneSees) {
    std::unique_ptr<Ogl::Context> context;
    try {
        context = std::make_unique<Ogl::Context>();
    } catch (Ogl::ContextError const& error) {
        GTEST_SKIP() << error.what();
    }
    context->MakeCurrent();
    Ogl::OffscreenTarget target(Width, Height, 0);
    std::ostringstream table;
    table << "| scene | symbols | panes | pixels | left out: edges | left out: backgrounds | left out: slivers "
             "| compared | of these empty | agreeing |\n|---|---|---|---|---|---|---|---|---|---|\n";
    Counts sum;
    std::size_t objects = 0, panes = 0;
    for (int i = 1; i <= Scenes; ++i) {
        Scene scene(std::make_unique<Ogl::OpenGlBackend>());
        RandomScene random(scene, static_cast<unsigned>(i), true);
        FrameDriver(scene).Update();
        random.Fit(scene);
        target.Bind();
        DrawColors(scene, random.camera);
        target.Release();
        QImage const picture = target.Read().convertToFormat(QImage::Format_RGB32);
        if (!ReportFolder().empty())
            picture.save(QString::fromStdString(ReportFolder() + "pick-" + std::to_string(i) + ".png"));
        Counts const counts = Compare(scene, random, picture);
        counts.Write(table, std::to_string(i), random.nodes.size(), random.panes);
        sum += counts;
        objects += random.nodes.size();
        panes += random.panes;
        EXPECT_GT(counts.compared, PixelsPerScene / 4) << "too little is left to compare in scene " << i;
    }
    sum.Write(table, "all", objects, panes);
    EXPECT_EQ(sum.agreeing, sum.compared);
    EXPECT_LE(sum.slivers, sum.compared / 5000);
    if (!ReportFolder().empty())
        std::ofstream(ReportFolder() + "picking.table.md") << table.str();
}

/// Where a record belongs, by rules of its own: panes that are met later, higher layers, nearer hits, later finds.
struct Place {
    std::size_t pane;
    int layer;
    double depth;
    std::size_t found;

    bool operator<(Place const& p_other) const {
        if (pane != p_other.pane)
            return pane > p_other.pane;
        if (layer != p_other.layer)
            return layer > p_other.layer;
        if (depth != p_other.depth)
            return depth < p_other.depth;
        return found > p_other.found;
    }
};

/// The visual nodes in the order in which traversals meet them, counted from 1.
void Number(Render::Vis const& p_node, std::map<Render::Vis const*, std::size_t>& p_numbers) {
    p_numbers.emplace(&p_node, p_numbers.size() + 1);
    for (Render::ActiveIterator child = p_node.ActiveBegin(); child != p_node.ActiveEnd(); ++child)
        Number(**child, p_numbers);
}

TEST(PickPictureTest, frontSymbolsPickablePanesAndDecorationsComeInTheOrderOfAPlainSort) {
    std::size_t records = 0, longest = 0, overlays = 0, fronts = 0;
    for (unsigned seed = 100; seed < 112; ++seed) {
        Scene scene(std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters));
        RandomScene random(scene, seed, false);
        FrameDriver(scene).Update();
        random.Fit(scene);
        std::map<Render::Vis const*, std::size_t> numbers;
        Number(*scene.Visual(), numbers);
        Picker picker(scene);
        for (int i = 0; i < 500; ++i) {
            Types::Pos const position(random.Whole(Width), random.Whole(Height));
            auto const hits = picker.Pick(random.camera, Window, {position, {1, 1}});
            std::vector<Place> places;
            for (HitRecord const& hit : hits) {
                Render::Vis const* const node = hit.node.Peek();
                Render::Vis const* const pane = hit.hitRoot.Peek();
                bool const isOverlay = node->IsFlagged(Render::Vis::VisFlagContextRoot);
                std::size_t const found = numbers.at(node) + (isOverlay ? numbers.size() : 0);
                places.push_back(
                    {pane ? numbers.at(pane) : 0, node->GetLayer(), hit.result.records.front().depth, found});
                EXPECT_EQ(isOverlay, pane == node);
                overlays += isOverlay ? 1 : 0;
                fronts += node->GetLayer() == Render::Vis::HighestLayer ? 1 : 0;
            }
            EXPECT_TRUE(std::is_sorted(places.begin(), places.end())) << hits;
            records += hits.size();
            longest = std::max(longest, hits.size());
        }
    }
    EXPECT_GT(records, 10000U);
    EXPECT_GT(overlays, 1000U);
    EXPECT_GT(fronts, 1000U);
    EXPECT_GT(longest, 8U);
    if (!ReportFolder().empty())
        std::ofstream(ReportFolder() + "order.txt")
            << records << " records of 6,000 picks, " << overlays << " of panes, " << fronts
            << " of front symbols, up to " << longest << " in one list\n";
}

} // namespace
} // namespace Qor::Chart::Host
