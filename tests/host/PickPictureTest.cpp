// Picks against pictures: what a pick finds first is what one sees. Each node is drawn in a colour of its own, unlit and
// without smoothing, by the ordinary draw traversal, and the picture is asked what shows at random pixels.

#include "host/Picker.h"

#include "tests/host/RandomScene.h"
#include "host/FrameDriver.h"
#include "host/Offscreen.h"
#include "framework/model/RenderStyle.h"
#include "framework/ogl/Context.h"
#include "framework/ogl/RecorderBackend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <sstream>

namespace Qor::Chart::Host {
namespace {

using Render::HitRecord;

constexpr int Width = 640;
constexpr int Height = 480;
constexpr int Scenes = 12;
constexpr int PixelsPerScene = 10000;
Types::Viewport<0> const Window(0, 0, Width, Height);

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

enum Count {
    Pixels,
    Edges,
    Backgrounds,
    Slivers,
    Compared,
    Empty /* compared, with nothing there */,
    Agreeing,
    CountCount
};
using Counts = std::array<int, CountCount>;

void WriteRow(std::ostream& p_stream, std::string const& p_name, std::size_t p_objects, std::size_t p_panes,
    Counts const& p_counts) {
    p_stream << "| " << p_name << " | " << p_objects << " | " << p_panes << " |";
    for (int const count : p_counts)
        p_stream << ' ' << count << " |";
    p_stream << '\n';
}

Counts Compare(Scene& p_scene, RandomScene& p_random, QImage const& p_picture) {
    Counts counts{};
    Picker picker(p_scene);
    for (; counts[Pixels] < PixelsPerScene; ++counts[Pixels]) {
        int const x = p_random.Whole(Width);
        int const row = p_random.Whole(Height);
        QRgb const color = p_picture.pixel(x, row);
        if (!IsInside(p_picture, x, row)) {
            ++counts[Edges];
            continue;
        }
        if (qBlue(color) == 255) {
            ++counts[Backgrounds];
            continue;
        }
        auto const found = p_random.nodes.find(color);
        Model::ModelNode const* const seen = found == p_random.nodes.end() ? nullptr : found->second;
        auto const hits = picker.Pick(p_random.camera, Window, {{x, Height - 1 - row}, {1, 1}}, Render::LayerBase);
        Core::Ptr<Render::Vis> const first = hits.empty() ? nullptr : hits.front().node.Lock();
        Model::ModelNode const* const picked = first ? first->SourceModel().Peek() : nullptr;
        if (seen != picked && picked && ShowsNear(p_picture, p_random, picked, x, row)) {
            ++counts[Slivers];
            continue;
        }
        ++counts[Compared];
        counts[Empty] += seen ? 0 : 1;
        counts[Agreeing] += seen == picked ? 1 : 0;
        if (seen != picked && counts[Compared] - counts[Agreeing] < 4)
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
    std::ostringstream table;
    table << "| scene | symbols | panes | pixels | left out: edges | left out: backgrounds | left out: slivers "
             "| compared | of these empty | agreeing |\n|---|---|---|---|---|---|---|---|---|---|\n";
    Counts sum{};
    std::size_t objects = 0, panes = 0;
    for (int i = 1; i <= Scenes; ++i) {
        std::optional<Offscreen> offscreen;
        try {
            offscreen.emplace(Types::Size(Width, Height), 0);
        } catch (Ogl::ContextError const& error) {
            GTEST_SKIP() << error.what();
        }
        Scene& scene = offscreen->GetScene();
        auto const plain = Core::MakeNode<Model::RenderStyle>();
        plain->SetLighting(false);
        scene.SetModel(plain);
        scene.Schema().clearColor = QColor(0, 0, 128);
        RandomScene random(scene, static_cast<unsigned>(i), RandomScene::Kind::Plain);
        offscreen->Fit();
        random.Fit(scene, Window);
        offscreen->GetCamera() = random.camera;
        QImage const picture = offscreen->Render().convertToFormat(QImage::Format_RGB32);
        if (!ReportFolder().empty())
            picture.save(QString::fromStdString(ReportFolder() + "pick-" + std::to_string(i) + ".png"));
        Counts const counts = Compare(scene, random, picture);
        WriteRow(table, std::to_string(i), random.nodes.size(), random.panes, counts);
        std::ranges::transform(sum, counts, sum.begin(), std::plus());
        objects += random.nodes.size();
        panes += random.panes;
        EXPECT_GT(counts[Compared], PixelsPerScene / 4) << "too little is left to compare in scene " << i;
    }
    WriteRow(table, "all", objects, panes, sum);
    EXPECT_EQ(sum[Agreeing], sum[Compared]);
    EXPECT_LE(sum[Slivers], sum[Compared] / 5000);
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
        RandomScene random(scene, seed, RandomScene::Kind::Decorated);
        FrameDriver(scene).Update();
        random.Fit(scene, Window);
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
