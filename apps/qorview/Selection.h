#pragma once

#include "render/pick/HitRecord.h"
#include "render/pick/SelectRecord.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace Qor::Chart::QorView {

/// What the user has selected. The nodes are told, and show it with the next frame.
class Selection {
public:
    /// What the best of the hits selects, one thing at most; nothing where a part of a pane is in front.
    static std::vector<Render::SelectRecord> BestOf(std::vector<Render::HitRecord> const& p_hits);
    /// What all of the hits select.
    static std::vector<Render::SelectRecord> AllOf(std::vector<Render::HitRecord> const& p_hits);

    /// Takes these in place of the present ones, or as well.
    void Select(std::vector<Render::SelectRecord> const& p_records, bool p_adds);
    /// Takes these, and gives those up that were selected before.
    void Toggle(std::vector<Render::SelectRecord> const& p_records);
    void Clear();

    /// Gives up what is not there any more.
    void Forget();

    std::size_t Count() const noexcept { return _records.size(); }
    /// A few names, and how many there are.
    std::string Text() const;

private:
    std::set<Render::SelectRecord> _records;
};

/// A model node with what it is in, as in "rotor (turbine, demo.glb)".
std::string NameInTree(Core::WeakPtr<Model::ModelNode> const& p_node);

} // namespace Qor::Chart::QorView
