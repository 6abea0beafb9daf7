#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/WeakPtr.h"
#include "render/Export.h"
#include "render/core/Registrar.h"
#include "render/core/Vis.h"
#include "render/pick/HitRecord.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace Qor::Chart::Render {

class SelectionList;
class SelectionView;

/// Knows the selection lists of a visual tree, and which of them serves which nodes: of the enabled lists the one whose
/// parent is closest above a node, or is the node itself; of several below one parent the first made. It also has what
/// the lists select shown. A host keeps the selection in step around its updates:
///
///     auto const lists = Render::SelectionLists::Of(registrar); // null while there is no list
///     ... update ...
///     if (lists && lists->Show())
///         ... update again: nodes take up and give up their highlight ...
class QOR_VIS_API SelectionLists {
public:
    /// Null while no list has joined.
    static std::shared_ptr<SelectionLists> Of(Registrar const& p_registrar);
    /// Makes what there is not yet.
    static std::shared_ptr<SelectionLists> MakeOf(Registrar& p_registrar);

    explicit SelectionLists(Registrar::Handle p_registration);
    ~SelectionLists();

    /// Takes part from now on until the list is gone; what it shows is then taken back by the next `Show`.
    void Join(SelectionList& p_list, std::shared_ptr<SelectionView> p_view);

    /// The list that serves a node of the tree; empty when none does. Costs as many steps as the node is deep.
    Core::Ptr<SelectionList> ListOf(Vis const& p_node) const;

    /// Hits by the list that serves the node, each list with its hits in the order in which they come; without those
    /// that no list serves.
    std::vector<std::pair<Core::Ptr<SelectionList>, std::vector<HitRecord>>> ByList(
        std::vector<HitRecord> const& p_hits) const;

    /// Tells the visual nodes what is selected and what no longer is, and the models what of their selection is gone.
    /// Costs next to nothing while nothing in the tree has changed, and a look at each selected node otherwise. Gives
    /// whether the tree may have to be updated: a node or a model was told something. Not to be called while a
    /// traversal runs.
    bool Show();

private:
    struct Member {
        Core::WeakPtr<SelectionList> list;
        std::shared_ptr<SelectionView> view;
    };
    /// Where an enabled list stands.
    struct Place {
        std::uint32_t list; ///< by its identifier
        std::uint32_t parent;
        bool operator==(Place const&) const = default;
    };
    class Areas;

    std::vector<Place> Places() const;
    Core::Ptr<SelectionList> Find(std::uint32_t p_id) const;

    Registrar::Handle _registration;
    std::vector<Member> _members;
    std::vector<Place> _places; ///< when the selection was last shown
};

} // namespace Qor::Chart::Render
