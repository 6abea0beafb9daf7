#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"

namespace Qor::Chart::Model {

/// Nodes that belong together, so that they can be moved, enabled and removed as one. A group has no transform and no look of
/// its own.
class QOR_FRAMEWORK_API Group : public ModelNode {
public:
    Group() = default;

protected:
    ~Group() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
};

} // namespace Qor::Chart::Model
