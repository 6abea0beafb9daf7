#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"

namespace Qor::Chart::Model {

/// The root of a three-dimensional scene: what is below it shares one space of coordinates.
class QOR_FRAMEWORK_API SceneGraph : public ModelNode {
public:
    SceneGraph() = default;

protected:
    ~SceneGraph() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
};

} // namespace Qor::Chart::Model
