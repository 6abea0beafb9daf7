#pragma once

#include "framework/core/Ptr.h"
#include "render/core/Vis.h"

#include <cstddef>
#include <iosfwd>

namespace Qor::Chart::QorView {

/// Writes a visual tree, one line a node: class, name, path from the root, layer, flags, box and the passes that have work
/// at the node or below it. Children are indented below their parents.
class TreePrinter {
public:
    explicit TreePrinter(std::ostream& p_stream) : _stream(p_stream) {}

    void Print(Core::Ptr<Render::Vis> const& p_root);

    /// Number of nodes in a tree.
    static std::size_t Count(Core::Ptr<Render::Vis> const& p_root);

private:
    void PrintNode(Render::Vis const& p_node, std::size_t p_depth);

    std::ostream& _stream;
};

} // namespace Qor::Chart::QorView
