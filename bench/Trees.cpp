#include "bench/Trees.h"

#include "bench/peers/common.h"
#include "framework/model/Group.h"
#include "framework/model/SceneGraph.h"
#include "framework/model/Symbol.h"
#include "framework/ogl/RecorderBackend.h"
#include "render/context/UpdateContext.h"
#include "render/loops/UpdateLoop.h"

#include <benchmark/benchmark.h>

#include <QColor>

#include <malloc.h>

namespace Bench {

namespace {

Core::Ptr<Model::SimpleObject> MakeLeaf(peer::Leaf const& p_leaf, Core::Ptr<Model::Symbol> const& p_symbol) {
    auto leaf = Core::MakeNode<Model::SimpleObject>(p_symbol);
    leaf->SetTransform(Types::Matrix4::Translation({p_leaf.x, p_leaf.y, p_leaf.z}) *
        Types::Matrix4::Scaling({2 * peer::kHalf, 2 * peer::kHalf, 2 * peer::kHalf}));
    leaf->SetColor(QColor::fromRgbF(p_leaf.r, p_leaf.g, p_leaf.b));
    return leaf;
}

/// Hangs nodes under groups, and these under groups, until the root can take what is left.
void Hang(std::vector<Core::Ptr<Model::ModelNode>> p_nodes, std::size_t p_fanOut, Model::ModelNode& p_root) {
    while (p_nodes.size() > p_fanOut) {
        std::vector<Core::Ptr<Model::ModelNode>> groups;
        for (std::size_t position = 0; position < p_nodes.size(); ++position) {
            if (position % p_fanOut == 0)
                groups.emplace_back(Core::MakeNode<Model::Group>());
            groups.back()->Add(p_nodes[position]);
        }
        p_nodes = std::move(groups);
    }
    for (Core::Ptr<Model::ModelNode> const& node : p_nodes)
        p_root.Add(node);
}

} // namespace

Tree MakeTree(std::size_t p_leaves, std::size_t p_fanOut) {
    Tree tree{Core::MakeNode<Model::SceneGraph>(), {}};
    auto const symbol = Core::MakeNode<Model::Symbol>(Model::SymbolShape::Cube);
    tree.leaves.reserve(p_leaves);
    for (peer::Leaf const& leaf : peer::makeLeaves(p_leaves))
        tree.leaves.push_back(MakeLeaf(leaf, symbol));
    Hang({tree.leaves.begin(), tree.leaves.end()}, p_fanOut, *tree.root);
    return tree;
}

Tree MakeFlatTree(std::size_t p_leaves) {
    return MakeTree(p_leaves, p_leaves);
}

Tree MakePeerTree(std::size_t p_leaves) {
    return MakeTree(p_leaves, (p_leaves + peer::kGroups - 1) / peer::kGroups);
}

std::unique_ptr<Host::Scene> MakeScene(Tree const& p_tree) {
    auto scene =
        std::make_unique<Host::Scene>(std::make_unique<Ogl::RecorderBackend>(Ogl::RecorderBackend::Keep::Counters));
    scene->SetModel(p_tree.root);
    return scene;
}

unsigned Update(Host::Scene& p_scene, Render::UpdateContext const& p_context) {
    unsigned visited = 0;
    unsigned updated = 0;
    Render::UpdateLoop()(p_scene.Visual(), p_context, visited, updated);
    return visited;
}

Types::BoundingBox_Base<double> PassOverChildren(Render::Vis& p_parent) {
    for (Core::Ptr<Render::Vis> const& child : p_parent)
        child->SetActive(child->IsEnabled());
    unsigned changed = 0;
    for (Core::Ptr<Render::Vis> const& child : p_parent)
        changed += child->IsActive() && child->IsEnabled() && child->Tracker().Modified() ? 1 : 0;
    benchmark::DoNotOptimize(changed);
    Types::BoundingBox_Base<double> box;
    bool isSorted = true;
    int layer = Render::Vis::LowestLayer;
    for (Core::Ptr<Render::Vis> const& child : p_parent) {
        child->SetActive(child->IsValid() && !child->IsPending() && child->IsEnabled());
        box.Add(child->BoundingBox());
        isSorted = isSorted && layer <= child->GetLayer();
        layer = child->GetLayer();
    }
    benchmark::DoNotOptimize(isSorted);
    return box;
}

std::size_t HeapInUse() {
    struct mallinfo2 const info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace Bench
