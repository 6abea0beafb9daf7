#pragma once

#include "framework/algorithms/StrategyBuilder.h"
#include "framework/core/Ptr.h"
#include "framework/model/ModelNode.h"
#include "render/Export.h"
#include "render/core/Vis.h"

#include <vector>

namespace Qor::Chart::Render {

/// Turns a model subtree into a visual subtree. It holds one factory per class of model node; a class without one is
/// skipped with all that is below it, and reported.
///
///     Generator generator;
///     generator.Register<Model::Group>([](Core::Ptr<Model::ModelNode> const& p_model) { ... return vis; });
///     Core::Ptr<Vis> const root = generator(model);
///
/// Look-up is by exact class: a derived class needs a factory of its own. When generators are merged, a class that is
/// registered in both keeps the factory of the one that is merged into.
class QOR_VIS_API Generator : public Algorithms::StrategyBuilder<Model::ModelNode, Vis, Core::Ptr<Model::ModelNode>,
                                  Algorithms::Detail::TypeInfoFromPtr> {
public:
    /// Takes over the factories of classes that are not registered here yet.
    Generator& operator+=(Generator const& p_other) {
        Merge(p_other);
        return *this;
    }

    /// Builds the visual subtree of a model subtree; an empty handle when the model's class has no factory.
    /// @throws Core::CyclicDependencyFoundExcept when a model node is its own ancestor
    /// @throws Core::TreeTooDeepExcept when the stack does not suffice
    /// @throws whatever a factory throws; nothing is built then
    Core::Ptr<Vis> operator()(Core::Ptr<Model::ModelNode> const& p_model) const;

private:
    template <class ChildrenVisitor>
    bool GenerateBranch(Core::Ptr<Model::ModelNode> const& p_model, ChildrenVisitor const& p_visitChildren,
        std::vector<Core::Ptr<Vis>>& p_parents) const;
    Core::Ptr<Vis> MakeNode(Core::Ptr<Model::ModelNode> const& p_model, std::vector<Core::Ptr<Vis>>& p_parents) const;
    static bool CycleDetection(Core::Ptr<Model::ModelNode> const& p_model);
};

} // namespace Qor::Chart::Render
