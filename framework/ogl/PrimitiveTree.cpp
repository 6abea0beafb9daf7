#include "framework/ogl/PrimitiveTree.h"

#include "framework/ogl/Lanes.h"
#include "framework/ogl/PickVolume.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace Qor::Chart::Ogl {

namespace {

using Position = PrimitiveTree::Position;
using Vector4 = PickVolume::Vector4;

/// Three coordinates of four points.
struct Position4 {
    Lanes x;
    Lanes y;
    Lanes z;
};

/// A half-space as the search looks at it, four points at once in single precision: nothing that lies inside is ever
/// found outside. Its linear function is scaled, so that it reaches no more than 1 within the shape, and raised by more
/// than all roundings come to.
class Halfspace {
public:
    Halfspace() = default;
    /// @param p_reach the highest absolute coordinates of the shape, none of them 0
    Halfspace(Vector4 const& p_plane, Position const& p_reach) {
        double const most = std::abs(p_plane.x) * static_cast<double>(p_reach.x) +
            std::abs(p_plane.y) * static_cast<double>(p_reach.y) +
            std::abs(p_plane.z) * static_cast<double>(p_reach.z) + std::abs(p_plane.w);
        double const scale = 1 / most;
        if (!(most > 0) || !std::isfinite(scale)) {
            return;
        }
        auto const scaled = [scale](double p_coefficient) { return static_cast<float>(p_coefficient * scale); };
        constexpr float roundings = 10 * std::numeric_limits<float>::epsilon();
        _slope = {Lanes(scaled(p_plane.x)), Lanes(scaled(p_plane.y)), Lanes(scaled(p_plane.z))};
        _offset = Lanes(scaled(p_plane.w) + roundings);
        _upper = {p_plane.x > 0, p_plane.y > 0, p_plane.z > 0};
    }

    /// For each axis 1 if the upper side of a box lies further inside than the lower, else 0.
    std::array<std::size_t, 3> const& InnerSides() const { return _upper; }
    /// Not negative inside.
    Lanes At(Position4 const& p_positions) const {
        return p_positions.x * _slope.x + p_positions.y * _slope.y + p_positions.z * _slope.z + _offset;
    }

private:
    Position4 _slope;
    Lanes _offset;
    std::array<std::size_t, 3> _upper{};
};

} // namespace

struct PrimitiveTree::Box {
    static constexpr float Most = std::numeric_limits<float>::max();
    Position min{Most, Most, Most};
    Position max{-Most, -Most, -Most};

    void Add(Position const& p_position) {
        min = ComponentMin(min, p_position);
        max = ComponentMax(max, p_position);
    }
};

/// A primitive on its way into the tree.
struct PrimitiveTree::Item {
    Position middle;
    std::uint32_t number;
};

PrimitiveTree::PrimitiveTree(Shape const& p_shape) : _corners(p_shape.corners) {
    std::vector<Item> items = ItemsOf(p_shape);
    if (items.empty()) {
        return;
    }
    Halve(items);
    TakeIndices(p_shape.indices, items);
    BuildLeaves(p_shape.positions);
    BuildLevels();
}

std::vector<PrimitiveTree::Item> PrimitiveTree::ItemsOf(Shape const& p_shape) {
    std::size_t const count = p_shape.indices.size() / p_shape.corners;
    std::vector<Item> items;
    items.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        Box box;
        bool isFinite = true;
        for (std::uint32_t const index : p_shape.indices.subspan(i * p_shape.corners, p_shape.corners)) {
            Position const& position = p_shape.positions[index];
            isFinite = isFinite && IsFinite(position);
            box.Add(position);
        }
        if (isFinite) {
            items.push_back({box.min * 0.5F + box.max * 0.5F, static_cast<std::uint32_t>(i)});
        }
    }
    return items;
}

void PrimitiveTree::Halve(std::span<Item> p_items) {
    if (p_items.size() <= LeafSize) {
        return;
    }
    Box box;
    for (Item const& item : p_items) {
        box.Add(item.middle);
    }
    Position const extents = box.max - box.min;
    float Position::*axis = extents.y > extents.x ? &Position::y : &Position::x;
    axis = extents.z > extents.*axis ? &Position::z : axis;
    // The first part is the largest whole subtree that leaves something for the second.
    std::size_t const half = std::bit_ceil((p_items.size() + LeafSize - 1) / LeafSize) / 2 * LeafSize;
    std::nth_element(p_items.begin(), p_items.begin() + static_cast<std::ptrdiff_t>(half), p_items.end(),
        [axis](Item const& p_a, Item const& p_b) { return p_a.middle.*axis < p_b.middle.*axis; });
    Halve(p_items.first(half));
    Halve(p_items.subspan(half));
}

void PrimitiveTree::TakeIndices(std::span<std::uint32_t const> p_indices, std::span<Item const> p_items) {
    std::size_t const whole = (p_items.size() + LeafSize - 1) / LeafSize * LeafSize;
    _indices.reserve(whole * _corners);
    for (std::size_t i = 0; i < whole; ++i) {
        std::size_t const number = p_items[std::min(i, p_items.size() - 1)].number;
        auto const corners = p_indices.subspan(number * _corners, _corners);
        _indices.insert(_indices.end(), corners.begin(), corners.end());
    }
}

void PrimitiveTree::BuildLeaves(std::span<Position const> p_positions) {
    std::size_t const leaves = LeafCount();
    _levels.emplace_back((leaves + FanOut - 1) / FanOut);
    for (std::size_t leaf = 0; leaf < leaves; ++leaf) {
        Box box;
        for (std::uint32_t const index : Leaf(leaf)) {
            box.Add(p_positions[index]);
        }
        Place(0, leaf, box);
    }
}

void PrimitiveTree::BuildLevels() {
    for (std::size_t level = 0; _levels[level].size() > 1; ++level) {
        std::size_t const children = _levels[level].size();
        _levels.emplace_back((children + FanOut - 1) / FanOut);
        for (std::size_t child = 0; child < children; ++child) {
            Place(level + 1, child, BoxOf(_levels[level][child]));
        }
    }
}

void PrimitiveTree::Place(std::size_t p_level, std::size_t p_child, Box const& p_box) {
    auto& sides = _levels[p_level][p_child / FanOut].sides;
    // Until the children after it have come, their boxes are like this one.
    for (std::size_t lane = p_child % FanOut; lane < FanOut; ++lane) {
        sides[0][0][lane] = p_box.min.x;
        sides[1][0][lane] = p_box.min.y;
        sides[2][0][lane] = p_box.min.z;
        sides[0][1][lane] = p_box.max.x;
        sides[1][1][lane] = p_box.max.y;
        sides[2][1][lane] = p_box.max.z;
    }
}

PrimitiveTree::Box PrimitiveTree::BoxOf(Node const& p_node) {
    auto const low = [&](std::size_t p_axis) { return *std::ranges::min_element(p_node.sides[p_axis][0]); };
    auto const high = [&](std::size_t p_axis) { return *std::ranges::max_element(p_node.sides[p_axis][1]); };
    return {{low(0), low(1), low(2)}, {high(0), high(1), high(2)}};
}

/// One pick: depth first, the nearest child first, leaving out what is outside or behind the nearest hit so far. Boxes
/// and leaves are looked at in single precision and generously; the volume itself decides on the few primitives left.
class PrimitiveTree::Search {
public:
    Search(PrimitiveTree const& p_tree, std::span<Position const> p_positions, PickVolume const& p_volume,
        double p_nearest)
        : _tree(p_tree), _positions(p_positions), _volume(p_volume) {
        Box const box = BoxOf(p_tree._levels.back().front());
        auto const reach = [](float p_low, float p_high) {
            constexpr float least = 1e-30F;
            return std::max({std::abs(p_low), std::abs(p_high), least});
        };
        _reach = {reach(box.min.x, box.max.x), reach(box.min.y, box.max.y), reach(box.min.z, box.max.z)};
        // Planes that have the whole shape on their positive side need no tests.
        for (Vector4 const& plane : p_volume.Planes()) {
            if (Least(box, plane) < 0) {
                _halfspaces[_halfspaceCount++] = Halfspace(plane, _reach);
            }
        }
        SetNearest(p_nearest);
    }

    /// The nearest depth or PickVolume::NoHit.
    double Run() {
        struct Place {
            std::size_t level;
            std::size_t node;
        };
        // Ten levels hold all primitives that 32 bits can number; each leaves at most seven waiting.
        std::array<Place, 80> waiting;
        std::size_t waitingCount = 0;
        waiting[waitingCount++] = {_tree._levels.size() - 1, 0};
        while (waitingCount > 0 && _nearest > 0) {
            auto const [level, node] = waiting[--waitingCount];
            std::size_t const first = node * FanOut;
            std::size_t const all = level > 0 ? _tree._levels[level - 1].size() : _tree.LeafCount();
            std::array<Child, FanOut> children;
            std::size_t count = Candidates(_tree._levels[level][node], std::min(FanOut, all - first), children);
            if (level == 0) {
                PickLeaves(first, std::span(children).first(count));
                continue;
            }
            for (std::size_t i = 0; i < count; ++i) {
                std::size_t const child = first + children[i].lane;
                Prefetch(_tree._levels[level - 1][child]);
                waiting[waitingCount++] = {level - 1, child};
            }
        }
        return _hit;
    }

private:
    struct Child {
        std::size_t lane;
        float nearness;
    };

    static double Least(Box const& p_box, Vector4 const& p_plane) {
        return p_plane.x * static_cast<double>(p_plane.x > 0 ? p_box.min.x : p_box.max.x) +
            p_plane.y * static_cast<double>(p_plane.y > 0 ? p_box.min.y : p_box.max.y) +
            p_plane.z * static_cast<double>(p_plane.z > 0 ? p_box.min.z : p_box.max.z) + p_plane.w;
    }
    static void Prefetch(Node const& p_node) {
        for (auto const& axis : p_node.sides) {
            __builtin_prefetch(&axis);
        }
    }
    void SetNearest(double p_nearest) {
        _nearest = p_nearest;
        _nearer = Halfspace(_volume.NearerThan(p_nearest), _reach);
    }

    /// The most that the half-space's function reaches in each of four children's boxes.
    static Lanes Most(Node const& p_node, std::size_t p_firstLane, Halfspace const& p_halfspace) {
        auto const& inner = p_halfspace.InnerSides();
        auto const side = [&](std::size_t p_axis) {
            return Lanes::Load(&p_node.sides[p_axis][inner[p_axis]][p_firstLane]);
        };
        return p_halfspace.At({side(0), side(1), side(2)});
    }
    /// Those of the first p_count children that may hold a nearer hit, the farthest first; gives their number.
    std::size_t Candidates(Node const& p_node, std::size_t p_count, std::array<Child, FanOut>& p_result) const {
        std::array<float, FanOut> nearness;
        unsigned remaining = 0;
        for (std::size_t lane = 0; lane < FanOut; lane += 4) {
            Lanes least = Most(p_node, lane, _nearer);
            least.Store(&nearness[lane]);
            for (std::size_t i = 0; i < _halfspaceCount; ++i) {
                least = Min(least, Most(p_node, lane, _halfspaces[i]));
            }
            remaining |= least.NotNegative() << lane;
        }
        std::size_t count = 0;
        for (remaining &= (1U << p_count) - 1; remaining != 0; remaining &= remaining - 1) {
            auto const lane = static_cast<std::size_t>(std::countr_zero(remaining));
            std::size_t place = count++;
            for (; place > 0 && p_result[place - 1].nearness > nearness[lane]; --place) {
                p_result[place] = p_result[place - 1];
            }
            p_result[place] = {lane, nearness[lane]};
        }
        return count;
    }

    /// The last one first.
    void PickLeaves(std::size_t p_first, std::span<Child const> p_children) {
        for (Child const& child : p_children) {
            __builtin_prefetch(_tree.Leaf(p_first + child.lane).data());
        }
        for (std::size_t i = p_children.size(); i > 0; --i) {
            PickLeaf(_tree.Leaf(p_first + p_children[i - 1].lane));
        }
    }
    void PickLeaf(std::span<std::uint32_t const> p_indices) {
        std::size_t const corners = _tree._corners;
        std::array<Position4, 3> positions;
        for (std::size_t corner = 0; corner < corners; ++corner) {
            std::array<std::array<float, LeafSize>, 3> numbers;
            for (std::size_t lane = 0; lane < LeafSize; ++lane) {
                Position const& position = _positions[p_indices[lane * corners + corner]];
                numbers[0][lane] = position.x;
                numbers[1][lane] = position.y;
                numbers[2][lane] = position.z;
            }
            positions[corner] = {
                Lanes::Load(numbers[0].data()), Lanes::Load(numbers[1].data()), Lanes::Load(numbers[2].data())};
        }
        auto const most = [&](Halfspace const& p_halfspace) {
            Lanes result = p_halfspace.At(positions[0]);
            for (std::size_t corner = 1; corner < corners; ++corner) {
                result = Max(result, p_halfspace.At(positions[corner]));
            }
            return result;
        };
        Lanes least = most(_nearer);
        for (std::size_t i = 0; i < _halfspaceCount; ++i) {
            least = Min(least, most(_halfspaces[i]));
        }
        for (unsigned remaining = least.NotNegative(); remaining != 0; remaining &= remaining - 1) {
            auto const lane = static_cast<std::size_t>(std::countr_zero(remaining));
            PickPrimitive(p_indices.subspan(lane * corners, corners));
        }
    }
    void PickPrimitive(std::span<std::uint32_t const> p_indices) {
        std::array<Vector4, 3> corners;
        for (std::size_t corner = 0; corner < p_indices.size(); ++corner) {
            corners[corner] = {Types::Vector3_Base<double>(_positions[p_indices[corner]]), 1};
        }
        double const depth = _volume.Depth(std::span(corners).first(p_indices.size()), _nearest);
        if (depth < _nearest) {
            _hit = depth;
            SetNearest(depth);
        }
    }

    PrimitiveTree const& _tree;
    std::span<Position const> _positions;
    PickVolume const& _volume;
    Position _reach;
    std::array<Halfspace, PickVolume::MaxPlanes> _halfspaces;
    std::size_t _halfspaceCount = 0;
    Halfspace _nearer;
    double _nearest = 0;
    double _hit = PickVolume::NoHit;
};

double PrimitiveTree::Pick(std::span<Position const> p_positions, PickVolume const& p_volume, double p_nearest) const {
    if (_levels.empty() || p_volume.IsEmpty()) {
        return PickVolume::NoHit;
    }
    // No depth is above 1.
    return Search(*this, p_positions, p_volume, std::min(p_nearest, 1.0 + 1e-9)).Run();
}

std::size_t PrimitiveTree::Memory() const {
    std::size_t bytes = sizeof(*this) + _indices.capacity() * sizeof(_indices[0]);
    for (std::vector<Node> const& level : _levels) {
        bytes += level.capacity() * sizeof(Node);
    }
    return bytes;
}

} // namespace Qor::Chart::Ogl
