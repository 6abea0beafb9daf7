#pragma once

#include "framework/Export.h"
#include "framework/types/Vector3.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Qor::Chart::Ogl {

class PickVolume;

/// A hierarchy of bounding boxes over the points, lines or triangles of a shape. The primitives are sorted along a
/// space-filling curve and taken four a leaf, leaves four a node and so on, so that a node's place says which ones belong
/// to it and no pointers are needed: about 12 bytes a primitive. It keeps no vertices; each call gets those it was made of.
class QOR_FRAMEWORK_API PrimitiveTree {
public:
    /// The primitives that the tree is made of.
    struct Shape {
        std::span<Types::Vector3_Base<float> const> positions;
        std::span<std::uint32_t const> indices; ///< p_corners for each primitive, all below positions.size()
        std::size_t corners = 3; ///< 1 for points, 2 for lines, 3 for triangles
    };

    /// Primitives with an infinite or undefined coordinate are left out.
    explicit PrimitiveTree(Shape const& p_shape);

    /// The nearest window depth of all primitives inside the volume, or PickVolume::NoHit. Only depths below p_nearest
    /// are looked for.
    double Pick(Shape const& p_shape, PickVolume const& p_volume, double p_nearest) const;

    /// Bytes that the tree holds.
    std::size_t Memory() const;

private:
    static constexpr std::size_t FanOut = 4;

    /// The boxes of up to four children: for each axis all lower, then all upper sides.
    struct Node {
        std::array<std::array<std::array<float, FanOut>, 2>, 3> sides;
    };
    struct Box {
        Types::Vector3_Base<float> min;
        Types::Vector3_Base<float> max;
    };
    struct Search;

    static Box EmptyBox();
    static void Add(Box& p_box, Types::Vector3_Base<float> const& p_position);
    static Box BoxOf(Node const& p_node);
    void Sort(Shape const& p_shape);
    void BuildLeaves(Shape const& p_shape);
    void BuildLevels();
    static void Place(std::vector<Node>& p_level, std::size_t p_child, Box const& p_box);

    std::vector<std::uint32_t> _order; ///< numbers of the primitives
    std::vector<std::vector<Node>> _levels; ///< the parents of the leaves first, the root last
};

} // namespace Qor::Chart::Ogl
