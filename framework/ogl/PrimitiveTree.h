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

/// A hierarchy of bounding boxes over the points, lines or triangles of a shape. The primitives are halved across the
/// longest side of the box around their middles until four are left for a leaf; eight leaves make a node, eight nodes
/// the next one, so that a node's place says which ones belong to it and no pointers are needed. A triangle takes 19
/// bytes, the indices of its corners included, which lie in the order of the leaves. The tree keeps no vertices: each
/// pick gets those that it was made of.
class QOR_FRAMEWORK_API PrimitiveTree {
public:
    using Position = Types::Vector3_Base<float>;

    /// The primitives that the tree is made of.
    struct Shape {
        std::span<Position const> positions;
        std::span<std::uint32_t const> indices; ///< as many as corners for each primitive, all below positions.size()
        std::size_t corners = 3; ///< 1 for points, 2 for lines, 3 for triangles
    };

    /// Primitives with an infinite or undefined coordinate are left out.
    explicit PrimitiveTree(Shape const& p_shape);

    /// The nearest window depth of all primitives inside the volume, or PickVolume::NoHit. Only depths below p_nearest
    /// are looked for.
    /// @param p_positions those of the shape
    double Pick(std::span<Position const> p_positions, PickVolume const& p_volume, double p_nearest) const;

    /// Bytes that the tree holds.
    std::size_t Memory() const;

private:
    static constexpr std::size_t FanOut = 8;
    static constexpr std::size_t LeafSize = 4;

    struct Box;
    struct Item;
    class Search;

    /// The boxes of the children: for each axis all lower, then all upper sides.
    struct alignas(64) Node {
        std::array<std::array<std::array<float, FanOut>, 2>, 3> sides;
    };

    static std::vector<Item> ItemsOf(Shape const& p_shape);
    static void Halve(std::span<Item> p_items);
    void TakeIndices(std::span<std::uint32_t const> p_indices, std::span<Item const> p_items);
    void BuildLeaves(std::span<Position const> p_positions);
    void BuildLevels();
    void Place(std::size_t p_level, std::size_t p_child, Box const& p_box);
    static Box BoxOf(Node const& p_node);
    std::span<std::uint32_t const> Leaf(std::size_t p_leaf) const {
        return std::span(_indices).subspan(p_leaf * LeafSize * _corners, LeafSize * _corners);
    }
    std::size_t LeafCount() const { return _indices.size() / (LeafSize * _corners); }

    std::size_t _corners;
    std::vector<std::uint32_t> _indices; ///< of the corners; the last primitive repeats until its leaf is full
    std::vector<std::vector<Node>> _levels; ///< the parents of the leaves first, the root last
};

} // namespace Qor::Chart::Ogl
