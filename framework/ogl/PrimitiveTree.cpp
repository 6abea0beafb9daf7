#include "framework/ogl/PrimitiveTree.h"

#include "framework/ogl/PickVolume.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Qor::Chart::Ogl {

namespace {

using Position = Types::Vector3_Base<float>;
using Vector4 = PickVolume::Vector4;

/// Bits of each coordinate in the place on the space-filling curve, and of the digits by which places are sorted.
constexpr unsigned CoordinateBits = 14;
constexpr unsigned DigitBits = 11;
constexpr unsigned DigitCount = 4;
static_assert(DigitBits * DigitCount >= 3 * CoordinateBits);
constexpr std::size_t DigitValues = std::size_t(1) << DigitBits;
/// Fewer primitives are sorted faster without digits.
constexpr std::size_t FewPrimitives = 2048;

/// A primitive and its place on the curve.
struct Placed {
    std::uint64_t place;
    std::uint32_t number;
};

/// Moves each bit to three times its place.
std::uint64_t Spread(std::uint64_t p_bits) {
    p_bits = (p_bits | p_bits << 16) & 0x0000FF0000FF;
    p_bits = (p_bits | p_bits << 8) & 0x00F00F00F00F;
    p_bits = (p_bits | p_bits << 4) & 0x0C30C30C30C3;
    p_bits = (p_bits | p_bits << 2) & 0x249249249249;
    return p_bits;
}

void SortByPlace(std::vector<Placed>& p_placed) {
    if (p_placed.size() < FewPrimitives) {
        std::stable_sort(p_placed.begin(), p_placed.end(),
            [](Placed const& p_a, Placed const& p_b) { return p_a.place < p_b.place; });
        return;
    }
    std::vector<Placed> other(p_placed.size());
    std::vector<std::size_t> begins(DigitValues);
    for (unsigned shift = 0; shift < DigitBits * DigitCount; shift += DigitBits) {
        auto const digit = [shift](Placed const& p) { return (p.place >> shift) & (DigitValues - 1); };
        std::fill(begins.begin(), begins.end(), 0);
        for (Placed const& placed : p_placed) {
            ++begins[digit(placed)];
        }
        std::size_t sum = 0;
        for (std::size_t& begin : begins) {
            sum += std::exchange(begin, sum);
        }
        for (Placed const& placed : p_placed) {
            other[begins[digit(placed)]++] = placed;
        }
        p_placed.swap(other);
    }
}

/// Twice the middle of the box around the corners: not finite if a corner is not.
Position TwiceMiddle(PrimitiveTree::Shape const& p_shape, std::size_t p_primitive) {
    auto const corners = p_shape.indices.subspan(p_primitive * p_shape.corners, p_shape.corners);
    Position low = p_shape.positions[corners[0]];
    Position high = low;
    Position sum = low;
    for (std::uint32_t const corner : corners.subspan(1)) {
        Position const& position = p_shape.positions[corner];
        low = ComponentMin(low, position);
        high = ComponentMax(high, position);
        sum += position;
    }
    bool const isFinite = IsFinite(sum);
    return isFinite ? low + high : sum;
}

std::array<double, 4> Elements(Vector4 const& p_plane) {
    return {p_plane.x, p_plane.y, p_plane.z, p_plane.w};
}

} // namespace

PrimitiveTree::Box PrimitiveTree::EmptyBox() {
    constexpr float most = std::numeric_limits<float>::max();
    return {{most, most, most}, {-most, -most, -most}};
}

void PrimitiveTree::Add(Box& p_box, Position const& p_position) {
    p_box.min = ComponentMin(p_box.min, p_position);
    p_box.max = ComponentMax(p_box.max, p_position);
}

PrimitiveTree::Box PrimitiveTree::BoxOf(Node const& p_node) {
    auto const low = [&](std::size_t p_axis) { return *std::ranges::min_element(p_node.sides[p_axis][0]); };
    auto const high = [&](std::size_t p_axis) { return *std::ranges::max_element(p_node.sides[p_axis][1]); };
    return {{low(0), low(1), low(2)}, {high(0), high(1), high(2)}};
}

void PrimitiveTree::Place(std::vector<Node>& p_level, std::size_t p_child, Box const& p_box) {
    auto& sides = p_level[p_child / FanOut].sides;
    std::size_t const lane = p_child % FanOut;
    sides[0][0][lane] = p_box.min.x;
    sides[1][0][lane] = p_box.min.y;
    sides[2][0][lane] = p_box.min.z;
    sides[0][1][lane] = p_box.max.x;
    sides[1][1][lane] = p_box.max.y;
    sides[2][1][lane] = p_box.max.z;
}

PrimitiveTree::PrimitiveTree(Shape const& p_shape) {
    Sort(p_shape);
    if (!_order.empty()) {
        BuildLeaves(p_shape);
        BuildLevels();
    }
}

void PrimitiveTree::Sort(Shape const& p_shape) {
    std::size_t const count = p_shape.indices.size() / p_shape.corners;
    std::vector<Position> middles(count);
    Box bounds = EmptyBox();
    for (std::size_t i = 0; i < count; ++i) {
        middles[i] = TwiceMiddle(p_shape, i);
        if (IsFinite(middles[i])) {
            Add(bounds, middles[i]);
        }
    }
    Position const extents = bounds.max - bounds.min;
    float const extent = std::max({extents.x, extents.y, extents.z});
    constexpr float cells = static_cast<float>((1U << CoordinateBits) - 1);
    float const scale = extent > 0 ? cells / extent : 0;
    auto const cell = [scale](float p_offset) { return Spread(static_cast<std::uint64_t>(p_offset * scale)); };
    std::vector<Placed> placed;
    placed.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (IsFinite(middles[i])) {
            Position const offset = middles[i] - bounds.min;
            std::uint64_t const place = cell(offset.x) | cell(offset.y) << 1 | cell(offset.z) << 2;
            placed.push_back({place, static_cast<std::uint32_t>(i)});
        }
    }
    middles = {};
    SortByPlace(placed);
    _order.resize(placed.size());
    std::transform(placed.begin(), placed.end(), _order.begin(), [](Placed const& p) { return p.number; });
}

void PrimitiveTree::BuildLeaves(Shape const& p_shape) {
    std::size_t const leaves = (_order.size() + FanOut - 1) / FanOut;
    std::vector<Node>& level = _levels.emplace_back((leaves + FanOut - 1) / FanOut);
    for (std::size_t leaf = 0; leaf < level.size() * FanOut; ++leaf) {
        Box box = EmptyBox();
        std::size_t const end = std::min(_order.size(), (leaf + 1) * FanOut);
        for (std::size_t i = leaf * FanOut; i < end; ++i) {
            for (std::size_t corner = 0; corner < p_shape.corners; ++corner) {
                Add(box, p_shape.positions[p_shape.indices[_order[i] * p_shape.corners + corner]]);
            }
        }
        Place(level, leaf, box);
    }
}

void PrimitiveTree::BuildLevels() {
    while (_levels.back().size() > 1) {
        std::vector<Node> const& children = _levels.back();
        std::vector<Node> level((children.size() + FanOut - 1) / FanOut);
        for (std::size_t child = 0; child < level.size() * FanOut; ++child) {
            Place(level, child, child < children.size() ? BoxOf(children[child]) : EmptyBox());
        }
        _levels.push_back(std::move(level));
    }
}

/// One pick: depth first, the nearest child first, leaving out what is outside or behind the nearest hit so far.
struct PrimitiveTree::Search {
    PrimitiveTree const& tree;
    Shape const& shape;
    PickVolume const& volume;
    double nearest;
    double hit = PickVolume::NoHit;
    std::array<Vector4, PickVolume::MaxPlanes> planes{};
    std::size_t planeCount = 0;

    /// The most that a linear function reaches in each of the children's boxes.
    static std::array<double, FanOut> Most(Node const& p_node, Vector4 const& p_plane) {
        auto const plane = Elements(p_plane);
        std::array<double, FanOut> most;
        most.fill(plane[3]);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            auto const& side = p_node.sides[axis][plane[axis] > 0 ? 1 : 0];
            for (std::size_t lane = 0; lane < FanOut; ++lane) {
                most[lane] += plane[axis] * static_cast<double>(side[lane]);
            }
        }
        return most;
    }
    static double Least(Box const& p_box, Vector4 const& p_plane) {
        return p_plane.x * static_cast<double>(p_plane.x > 0 ? p_box.min.x : p_box.max.x) +
            p_plane.y * static_cast<double>(p_plane.y > 0 ? p_box.min.y : p_box.max.y) +
            p_plane.z * static_cast<double>(p_plane.z > 0 ? p_box.min.z : p_box.max.z) + p_plane.w;
    }
    /// Planes that have the whole shape on their positive side need no more tests.
    void TakePlanes() {
        Box const box = BoxOf(tree._levels.back().front());
        for (Vector4 const& plane : volume.Planes()) {
            if (Least(box, plane) < 0) {
                planes[planeCount++] = plane;
            }
        }
    }
    double MiddleDepth(Node const& p_node, std::size_t p_lane) const {
        auto const middle = [&](std::size_t p_axis) {
            return (static_cast<double>(p_node.sides[p_axis][0][p_lane]) +
                       static_cast<double>(p_node.sides[p_axis][1][p_lane])) /
                2;
        };
        Vector4 const position(middle(0), middle(1), middle(2), 1);
        // Behind the eye depths mean nothing; such a box comes first.
        return volume.W(position) > 0 ? volume.WindowDepth(position) : 0;
    }
    void PickLeaf(std::size_t p_leaf) {
        std::size_t const end = std::min(tree._order.size(), (p_leaf + 1) * FanOut);
        for (std::size_t i = p_leaf * FanOut; i < end; ++i) {
            std::array<Vector4, 3> corners;
            for (std::size_t corner = 0; corner < shape.corners; ++corner) {
                std::uint32_t const index = shape.indices[tree._order[i] * shape.corners + corner];
                corners[corner] = {Types::Vector3_Base<double>(shape.positions[index]), 1};
            }
            double const depth = volume.Depth(std::span(corners).first(shape.corners), nearest);
            if (depth < nearest) {
                nearest = hit = depth;
            }
        }
    }
    struct Child {
        std::size_t lane;
        double depth;
    };
    /// The children that may hold a nearer hit, the farthest first; gives their number.
    std::size_t Candidates(Node const& p_node, std::array<Child, FanOut>& p_children) const {
        std::array<double, FanOut> least = Most(p_node, volume.NearerThan(nearest));
        for (std::size_t i = 0; i < planeCount; ++i) {
            auto const most = Most(p_node, planes[i]);
            for (std::size_t lane = 0; lane < FanOut; ++lane) {
                least[lane] = most[lane] < least[lane] ? most[lane] : least[lane];
            }
        }
        std::size_t count = 0;
        for (std::size_t lane = 0; lane < FanOut; ++lane) {
            if (least[lane] >= 0 && p_node.sides[0][0][lane] <= p_node.sides[0][1][lane]) {
                Child const child{lane, MiddleDepth(p_node, lane)};
                std::size_t place = count++;
                for (; place > 0 && p_children[place - 1].depth < child.depth; --place) {
                    p_children[place] = p_children[place - 1];
                }
                p_children[place] = child;
            }
        }
        return count;
    }
    void Run() {
        struct Place {
            std::size_t level;
            std::size_t node;
        };
        // Sixteen levels hold all primitives that 32 bits can number; each leaves at most three waiting.
        std::array<Place, 64> waiting;
        std::size_t waitingCount = 0;
        waiting[waitingCount++] = {tree._levels.size() - 1, 0};
        while (waitingCount > 0) {
            Place const place = waiting[--waitingCount];
            std::array<Child, FanOut> children;
            std::size_t count = Candidates(tree._levels[place.level][place.node], children);
            if (place.level > 0) {
                for (std::size_t i = 0; i < count; ++i) {
                    waiting[waitingCount++] = {place.level - 1, place.node * FanOut + children[i].lane};
                }
                continue;
            }
            while (count > 0) {
                PickLeaf(place.node * FanOut + children[--count].lane);
            }
        }
    }
};

double PrimitiveTree::Pick(Shape const& p_shape, PickVolume const& p_volume, double p_nearest) const {
    if (_order.empty() || p_volume.IsEmpty()) {
        return PickVolume::NoHit;
    }
    // No depth is above 1.
    Search search{*this, p_shape, p_volume, std::min(p_nearest, 1.0 + 1e-9)};
    search.TakePlanes();
    search.Run();
    return search.hit;
}

std::size_t PrimitiveTree::Memory() const {
    std::size_t bytes = sizeof(*this) + _order.capacity() * sizeof(_order[0]);
    for (std::vector<Node> const& level : _levels) {
        bytes += level.capacity() * sizeof(Node);
    }
    return bytes;
}

} // namespace Qor::Chart::Ogl
