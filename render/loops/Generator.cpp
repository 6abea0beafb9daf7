#include "render/loops/Generator.h"

#include "framework/algorithms/DepthFirstSearch.h"
#include "framework/core/Exceptions.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

namespace Qor::Chart::Render {

using ModelIterator = Core::NodeList<Model::ModelNode>::Iterator;

namespace {

[[gnu::noinline, gnu::cold]] void ReportMissingFactory(Model::ModelNode const& p_model) {
    Utility::GetLogger().err("cerr") << "WARNING: Generator - Node: \"" << p_model.TypeName() << "\" no factory found!";
}

} // namespace

Core::Ptr<Vis> Generator::operator()(Core::Ptr<Model::ModelNode> const& p_model) const {
    std::vector<Core::Ptr<Vis>> parents;
    auto const generateBranch = [&](Core::Ptr<Model::ModelNode> const& p_node, auto const& p_visitChildren) {
        return GenerateBranch(p_node, p_visitChildren, parents);
    };
    auto search = Algorithms::DepthFirstSearch<Core::Ptr<Model::ModelNode>, ModelIterator>::Make(
        "generating a scene graph", generateBranch, &CycleDetection);
    search(p_model);
    if (!QOR_ENSURE(parents.size() == 1))
        return {};
    return parents.back();
}

template <class ChildrenVisitor>
bool Generator::GenerateBranch(Core::Ptr<Model::ModelNode> const& p_model, ChildrenVisitor const& p_visitChildren,
    std::vector<Core::Ptr<Vis>>& p_parents) const {
    Core::Ptr<Vis> const vis = MakeNode(p_model, p_parents);
    if (!vis)
        return true;
    if (!vis->IsFlagged(Vis::VisFlagSelfManaged) && !p_model->Empty())
        p_visitChildren(p_model->begin(), p_model->end());
    if (p_parents.size() > 1)
        p_parents.pop_back();
    return true;
}

/// Makes the visual node of one model node, hangs it under its parent and makes it the parent of what follows.
Core::Ptr<Vis> Generator::MakeNode(
    Core::Ptr<Model::ModelNode> const& p_model, std::vector<Core::Ptr<Vis>>& p_parents) const {
    Factory const& factory = Find(p_model);
    if (!factory) {
        ReportMissingFactory(*p_model);
        return {};
    }
    Core::Ptr<Vis> vis = factory(p_model);
    if (!QOR_ENSURE(vis))
        return {};
    vis->SetName(p_model->Name());
    if (!p_parents.empty())
        p_parents.back()->Add(vis);
    p_parents.push_back(vis);
    return vis;
}

bool Generator::CycleDetection(Core::Ptr<Model::ModelNode> const&) {
    throw Core::CyclicDependencyFoundExcept("while generating a scene graph");
}

} // namespace Qor::Chart::Render
