#pragma once

#include "framework/core/Ptr.h"
#include "framework/model/ModelNode.h"
#include "framework/model/SimpleObject.h"
#include "framework/types/BoundingBox.h"
#include "host/Scene.h"
#include "render/core/Vis.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Bench {

using namespace Qor::Chart;

/// A model with its leaves at hand.
struct Tree {
    Core::Ptr<Model::ModelNode> root;
    std::vector<Core::Ptr<Model::SimpleObject>> leaves;
};

/// So many cubes, each with a place and a colour of its own, in groups of at most so many nodes.
Tree MakeTree(std::size_t p_leaves, std::size_t p_fanOut);
/// The same cubes in one group.
Tree MakeFlatTree(std::size_t p_leaves);
/// The same cubes in a hundred groups, as the programs in bench/peers have them.
Tree MakePeerTree(std::size_t p_leaves);

/// A scene on a back end that only counts.
std::unique_ptr<Host::Scene> MakeScene(Tree const& p_tree);

/// Updates the scene's visual tree; gives the number of nodes that were visited.
unsigned Update(Host::Scene& p_scene, Render::UpdateContext const& p_context);

/// What any update of a changed node has to do with its children, as plain loops: find out who takes part, look for
/// changes, gather boxes, see that the order is right.
Types::BoundingBox_Base<double> PassOverChildren(Render::Vis& p_parent);

/// Bytes on the heap that this process has in use.
std::size_t HeapInUse();

} // namespace Bench
