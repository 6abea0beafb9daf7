// Rectangles against geometry: what a rectangle picks in random scenes is compared with what the triangles of all symbols
// say, each one projected and cut on its own.

#include "host/Picker.h"

#include "tests/host/RandomScene.h"
#include "host/FrameDriver.h"
#include "render/nodes/PaneLayout.h"
#include "framework/ogl/RecorderBackend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <optional>
#include <vector>

namespace Qor::Chart::Host {
namespace {

using namespace Ogl::Tokens;
using Render::LayerBase;
using Render::LayerOverlay;
using Rectangle = Types::Viewport<0>;
using Types::Matrix4;
using Vector = Types::Vector3_Base<double>;
using Vector4 = Types::Vector4_Base<double>;

constexpr int Scenes = 20;
constexpr int BoxesPerScene = 100;
Rectangle const Window(7, 3, 640, 480);

/// The part of a triangle that lies in a view volume and a rectangle of it is a convex polygon in the plane of the
/// triangle. Its corners are where two of its borders meet; all such places are tried.
class TriangleCut {
public:
    /// @param p_low, p_high  corners of the rectangle in normalised device coordinates
    /// @param p_margin       that all borders of the volume are moved outwards
    TriangleCut(std::array<Vector4, 3> const& p_corners, Vector const& p_low, Vector const& p_high, double p_margin)
        : _corners(p_corners) {
        auto const add = [&](auto const& p_distance) {
            _borders.push_back({p_distance(p_corners[0]), p_distance(p_corners[1]), p_distance(p_corners[2])});
        };
        add([&](Vector4 const& p) { return p.x - (p_low.x - p_margin) * p.w; });
        add([&](Vector4 const& p) { return (p_high.x + p_margin) * p.w - p.x; });
        add([&](Vector4 const& p) { return p.y - (p_low.y - p_margin) * p.w; });
        add([&](Vector4 const& p) { return (p_high.y + p_margin) * p.w - p.y; });
        add([&](Vector4 const& p) { return p.z + (1 + p_margin) * p.w; });
        add([&](Vector4 const& p) { return (1 + p_margin) * p.w - p.z; });
        for (int corner = 0; corner < 3; ++corner) {
            std::array<double, 3> border{};
            border[corner] = 1;
            _borders.push_back(border);
        }
    }

    /// The least depth in the window, or infinity when nothing is left.
    double Depth() const {
        double depth = std::numeric_limits<double>::infinity();
        auto const isBeyond = [](auto const& p_border) { return std::ranges::max(p_border) < 0; };
        if (std::ranges::any_of(_borders, isBeyond))
            return depth;
        for (std::size_t i = 0; i < _borders.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                auto const [a, b, c] = Cross(_borders[i], _borders[j]);
                double const sum = a + b + c;
                if (sum == 0 || !IsIn(a / sum, b / sum, c / sum))
                    continue;
                Vector4 const place = (_corners[0] * a + _corners[1] * b + _corners[2] * c) / sum;
                depth = std::min(depth, (place.z / place.w + 1) / 2);
            }
        }
        return depth;
    }

private:
    using Row = std::array<double, 3>; ///< of the distance at the three corners

    static Row Cross(Row const& p_a, Row const& p_b) {
        return {
            p_a[1] * p_b[2] - p_a[2] * p_b[1], p_a[2] * p_b[0] - p_a[0] * p_b[2], p_a[0] * p_b[1] - p_a[1] * p_b[0]};
    }
    bool IsIn(double p_a, double p_b, double p_c) const {
        return std::ranges::all_of(_borders,
            [&](Row const& p_border) { return p_border[0] * p_a + p_border[1] * p_b + p_border[2] * p_c > -1e-12; });
    }

    std::array<Vector4, 3> const& _corners;
    std::vector<Row> _borders;
};

/// Least depths of a symbol in a rectangle made a little larger, and a little smaller.
struct Depths {
    double least = std::numeric_limits<double>::infinity();
    double most = std::numeric_limits<double>::infinity();

    bool IsHit() const { return most <= 1.1; }
    bool IsBorderline() const { return least <= 1.1 && !IsHit(); }
};

Depths DepthsOf(
    Ogl::PrimitiveBuffer const& p_shape, Matrix4 const& p_matrix, Vector const& p_low, Vector const& p_high) {
    constexpr double margin = 1e-7;
    Depths depths;
    std::vector<Vector4> places;
    for (auto const& position : p_shape.Vertices()->Data().positions)
        places.push_back(p_matrix * Vector4(position.x, position.y, position.z, 1));
    std::vector<std::uint32_t> const& indices = p_shape.Indices()->Indices();
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        std::array const corners{places[indices[i]], places[indices[i + 1]], places[indices[i + 2]]};
        double const least = TriangleCut(corners, p_low, p_high, margin).Depth();
        depths.least = std::min(depths.least, least);
        if (least <= 1.1)
            depths.most = std::min(depths.most, TriangleCut(corners, p_low, p_high, -margin).Depth());
    }
    return depths;
}

struct BoxGeometryTest : testing::Test {
    void Fill(unsigned p_seed) {
        scene.SetModel(Core::MakeNode<Model::Group>());
        random.emplace(scene, p_seed, RandomScene::Kind::Mixed);
        driver.Update();
        random->Fit(scene, Window);
        driver.Draw(random->camera, Window);
        nodes.clear();
        Collect(scene.Visual());
    }
    void Collect(Core::Ptr<Render::Vis> const& p_node) {
        if (!p_node->Empty() || random->OneIn(8))
            nodes.emplace_back(p_node);
        for (Core::Ptr<Render::Vis> const& child : *p_node)
            Collect(child);
    }

    /// Quarters of a pixel, so that no arithmetic rounds.
    Render::BoxSelection RandomBox() {
        static constexpr double reaches[] = {2, 60, 300, 900};
        double const reach = reaches[random->Whole(4)];
        auto const quarters = [](double p_value) { return static_cast<float>(std::floor(p_value * 4) / 4); };
        Rectangle const box(quarters(random->Number(-30, 660)), quarters(random->Number(-30, 500)),
            quarters(random->Number(-reach, reach)), quarters(random->Number(-reach, reach)));
        using Operation = Render::BoxSelection::Operation;
        return {random->OneIn(5) ? Core::WeakPtr<Render::Vis>() : nodes[random->Whole(static_cast<int>(nodes.size()))],
            box, false, Operation::Replace};
    }

    // What is to be found.

    /// Where a node stands.
    struct Place {
        Rectangle viewport, box;
        Matrix4 camera, projection, modelView;
        Render::Layer layer = LayerBase;
        bool isInside = false;

        Types::Pos Center() const {
            return {static_cast<int>(box.x + 1 + box.width / 2), static_cast<int>(box.y + 1 + box.height / 2)};
        }
        bool Cut() {
            float const right = std::min(box.Right(), viewport.Right()), top = std::min(box.Top(), viewport.Top());
            box.x = std::max(box.x, viewport.x);
            box.y = std::max(box.y, viewport.y);
            box.width = right - box.x;
            box.height = top - box.y;
            return !box.IsEmpty();
        }
    };

    void Expect(Render::Vis const& p_node, Place p_place, Core::WeakPtr<Render::Vis> const& p_scope) {
        Core::Ptr<Model::ModelNode> const model = p_node.SourceModel().Lock();
        auto const* const pane = dynamic_cast<Model::Pane const*>(model.Get());
        if (p_place.isInside && pane)
            return;
        p_place.isInside = p_place.isInside || p_scope.IsEmpty() || p_scope.Peek() == &p_node;
        if (auto const* const view = dynamic_cast<CameraNode const*>(model.Get()); view && p_place.layer == LayerBase) {
            p_place.camera = view->GetCamera().Matrix((*p_node.begin())->BoundingBox());
            if (!p_place.Cut())
                return;
        }
        if (pane && !EnterPane(p_node, *pane, p_place))
            return;
        auto const* const object = dynamic_cast<Model::SimpleObject const*>(model.Get());
        if (object && p_place.layer == LayerBase)
            ExpectSymbol(p_node, *object, p_place);
        for (Core::Ptr<Render::Vis> const& child : p_node)
            Expect(*child, p_place, p_scope);
    }
    bool EnterPane(Render::Vis const& p_node, Model::Pane const& p_pane, Place& p_place) {
        Rectangle const inParent = Render::PaneLayout::Place(p_pane.GetViewport(), p_place.viewport);
        p_place.viewport =
            p_pane.IsKeptInsideParent() ? Render::PaneLayout::FittedInto(p_place.viewport, inParent) : inParent;
        if (!p_place.Cut())
            return false;
        bool const isOrtho = p_pane.GetProjectionMode() == Model::Pane::ProjectionMode::Orthographic;
        agl.MatrixMode(AGL_PROJECTION);
        agl.LoadIdentity();
        (agl.*(isOrtho ? &Ogl::Agl::Ortho : &Ogl::Agl::Perspective))(
            p_place.viewport, p_node.BoundingBox(), p_place.camera);
        p_place.projection = agl.Get(AGL_PROJECTION_MATRIX);
        p_place.modelView = Matrix4();
        if (!p_place.isInside || !p_pane.IsBackgroundPickable())
            return true;
        if (p_place.layer == LayerOverlay && p_place.viewport.Contains(p_place.Center()))
            panes[&p_node] = p_place.Center();
        return p_place.viewport.Contains(p_place.Center());
    }
    void ExpectSymbol(Render::Vis const& p_node, Model::SimpleObject const& p_object, Place& p_place) {
        p_place.modelView *= *p_object.Transform();
        if (!p_place.Cut() || !p_place.isInside || !p_object.IsPickable())
            return;
        Types::Pos const center = p_place.Center();
        double const halfWidth = std::max(1, static_cast<int>((p_place.box.width + 1) / 2));
        double const halfHeight = std::max(1, static_cast<int>((p_place.box.height + 1) / 2));
        Rectangle const& viewport = p_place.viewport;
        auto const device = [](double p_pixel, double p_start, double p_length) {
            return std::clamp((p_pixel - p_start) / p_length * 2 - 1, -1.0, 1.0);
        };
        Vector const low(device(center.x - halfWidth, viewport.x, viewport.width),
            device(center.y - halfHeight, viewport.y, viewport.height), 0);
        Vector const high(device(center.x + halfWidth, viewport.x, viewport.width),
            device(center.y + halfHeight, viewport.y, viewport.height), 0);
        auto const shape = static_cast<Library::Shape>(static_cast<int>(p_object.GetSymbol()->GetShape()) - 1);
        Ogl::PrimitiveBuffer const& buffer = *scene.Geometry().Buffer(shape);
        ASSERT_EQ(buffer.Kind(), AGL_TRIANGLES);
        Matrix4 const matrix = p_place.projection * p_place.modelView;
        symbols[&p_node] = {DepthsOf(buffer, matrix, low, high), center};
    }

    void Compare(Render::BoxSelection const& p_box) {
        panes.clear();
        symbols.clear();
        Place place;
        place.viewport = Window;
        place.box = p_box.Rectangle();
        place.camera = random->camera.Matrix(scene.Bounds());
        place.projection = driver.SceneToDevice();
        for (Render::Layer const layer : {LayerBase, LayerOverlay}) {
            place.layer = layer;
            Expect(*scene.Visual(), place, p_box.Scope());
        }

        auto const found = Picker(scene).Pick(random->camera, Window, p_box);
        EXPECT_TRUE(std::ranges::is_sorted(found, &Render::HitRecord::IsBefore));
        for (Render::HitRecord const& record : found) {
            Render::Vis const* const node = record.node.Peek();
            auto const pane = panes.find(node);
            auto const symbol = symbols.find(node);
            if (pane != panes.end()) {
                EXPECT_EQ(record.screenPos, pane->second);
                panes.erase(pane);
                continue;
            }
            ASSERT_NE(symbol, symbols.end()) << "outside the scope, or found twice: " << record;
            auto const& [depths, center] = symbol->second;
            double const depth = record.result.records.front().depth;
            EXPECT_EQ(record.screenPos, center);
            EXPECT_GE(depth, depths.least - 1e-6) << record;
            EXPECT_TRUE(depths.IsBorderline() || depth <= depths.most + 1e-6)
                << depths.most << " instead of " << record;
            symbols.erase(symbol);
        }
        EXPECT_TRUE(panes.empty()) << "of panes that are missing";
        for (auto const& [node, expected] : symbols)
            EXPECT_FALSE(expected.first.IsHit()) << "missing: depth " << expected.first.most;
        records += found.size();
    }

    std::optional<RandomScene> random;
    Scene scene{std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters)};
    FrameDriver driver{scene};
    Ogl::Agl agl{std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters)};
    std::vector<Core::WeakPtr<Render::Vis>> nodes;
    std::map<Render::Vis const*, Types::Pos> panes; ///< whose background is to be found, and where it is looked for
    std::map<Render::Vis const*, std::pair<Depths, Types::Pos>> symbols; ///< that were asked
    std::size_t records = 0;
};

TEST_F(BoxGeometryTest, findsExactlyWhatHasSomethingInTheRectangle) {
    int boxes = 0;
    for (unsigned seed = 1; seed <= Scenes; ++seed) {
        Fill(seed);
        for (int i = 0; i < BoxesPerScene; ++i, ++boxes) {
            Render::BoxSelection const box = RandomBox();
            Compare(box);
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", box " << i << " at " << box.Rectangle() << ", after "
                                       << boxes << " boxes with " << records << " records";
        }
    }
    EXPECT_GT(records, 1000U) << "in " << boxes << " boxes";
}

} // namespace
} // namespace Qor::Chart::Host
