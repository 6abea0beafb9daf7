#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/model/SelectionList.h"

#include <string>

namespace Qor::Chart::QorView {

/// How many things are selected, and the names of the first of them.
std::string SelectionText(Model::SelectionList const& p_list);

/// A model node with what it is in, as in "rotor (turbine, demo.glb)"; empty when it is gone.
std::string NameInTree(Core::WeakPtr<Model::ModelNode> const& p_node);

} // namespace Qor::Chart::QorView
