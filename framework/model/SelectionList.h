#pragma once

#include "framework/Export.h"
#include "framework/core/Ptr.h"
#include "framework/core/WeakPtr.h"
#include "framework/model/ModelNode.h"
#include "framework/model/SelectionEntry.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace Qor::Chart::Model {

/// What the user has selected, in the order in which it was: nodes, or single things in them. Programs read it and
/// change it here; the visual layer shows it on everything below the list's parent, and lets clicks and selection
/// rectangles there change it. A list below a pane serves that pane, one at the root everything that has no list closer
/// to it. The same list may stand in several trees, such as those of two windows, which then show one selection.
///
///     auto const list = Core::MakeNode<Model::SelectionList>();
///     scene.Add(list);
///     auto const connection = list->Delegate().Connect<Model::Events::SelectionChangedArgs>(
///         [](auto const& p_event) { ... p_event.Added() ... p_event.Removed() ... });
///     list->Select(node);
///
/// Each change is told to the list's listeners once, with all that came and went, before the call returns; a call that
/// changes nothing tells nothing. Listeners may change the list again; that is told after the change that they hear of.
///
/// The list keeps no node alive: what is gone no longer counts as selected, and is told as removed when `ForgetGone` is
/// next called, as the host does after each update in which something was changed. A node that only leaves the scene
/// stays selected, and shows it when it comes back. What has no look of its own, such as a group, shows it by what is
/// in it.
///
/// Selecting, deselecting and asking take constant time on average per entry. Not to be changed while a traversal runs.
class QOR_FRAMEWORK_API SelectionList : public ModelNode {
public:
    using Entry = SelectionEntry;
    using Entries = std::vector<Entry>;

    static Property<SelectionList, bool> const ClickSelectsProperty;
    static Property<SelectionList, bool> const BoxSelectsProperty;
    static Property<SelectionList, bool> const ClickBesideClearsProperty;
    static Property<SelectionList, bool> const EscapeClearsProperty;
    static PropertyList const& ClassProperties();

    SelectionList();

    /// \name Changing
    /// They give whether anything changed. Nodes that are gone and empty handles are passed over; what is named several
    /// times in one call counts once.
    /// @{
    /// Puts what is not selected yet at the end.
    bool Select(Core::Ptr<ModelNode> const& p_node, std::optional<std::uint64_t> p_index = {});
    bool Select(std::span<Entry const> p_entries);
    bool Deselect(Core::Ptr<ModelNode> const& p_node, std::optional<std::uint64_t> p_index = {});
    bool Deselect(std::span<Entry const> p_entries);
    /// Takes out what is selected, and puts the others at the end.
    bool Toggle(Core::Ptr<ModelNode> const& p_node, std::optional<std::uint64_t> p_index = {});
    bool Toggle(std::span<Entry const> p_entries);
    /// Makes this the selection, in this order. Another order of the same entries is a change, with nothing added or
    /// removed.
    bool Replace(std::span<Entry const> p_entries);
    bool Replace(std::vector<Core::Ptr<ModelNode>> const& p_nodes);
    /// Selects nothing. The children of the node, which a list has no use for, are another matter: see `Clear`.
    bool DeselectAll();
    /// Takes out what is gone.
    bool ForgetGone();
    /// @}

    /// \name Asking
    /// @{
    /// What is selected and not gone, in order; the first of them where there are more than so many.
    Entries Selected(std::size_t p_most = std::numeric_limits<std::size_t>::max()) const;
    /// How many these are; looks at each of them.
    std::size_t Count() const noexcept;
    bool IsSelected(Core::WeakPtr<ModelNode> const& p_node, std::optional<std::uint64_t> p_index = {}) const noexcept;
    /// The indices under which a node is selected, from the lowest on, the node as a whole before all others.
    std::vector<std::optional<std::uint64_t>> IndicesOf(Core::WeakPtr<ModelNode> const& p_node) const;
    /// @}

    /// Whether a click selects what is under the pointer.
    bool ClickSelects() const noexcept { return _clickSelects; }
    void SetClickSelects(bool p_selects) { ClickSelectsProperty.Set(*this, p_selects); }

    /// Whether a selection rectangle selects what lies in it.
    bool BoxSelects() const noexcept { return _boxSelects; }
    void SetBoxSelects(bool p_selects) { BoxSelectsProperty.Set(*this, p_selects); }

    /// Whether a click beside everything, without Ctrl and Shift, deselects all.
    bool ClickBesideClears() const noexcept { return _clickBesideClears; }
    void SetClickBesideClears(bool p_clears) { ClickBesideClearsProperty.Set(*this, p_clears); }

    /// Whether the Escape key deselects all.
    bool EscapeClears() const noexcept { return _escapeClears; }
    void SetEscapeClears(bool p_clears) { EscapeClearsProperty.Set(*this, p_clears); }

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~SelectionList() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
    /// The clone has the same selection.
    void CopyTo(ModelNode& p_clone) const override;

private:
    struct Storage;

    bool Report(Entries p_added, Entries p_removed, bool p_isReordered = false);

    std::unique_ptr<Storage> _storage;
    bool _clickSelects = true;
    bool _boxSelects = true;
    bool _clickBesideClears = true;
    bool _escapeClears = true;
};

} // namespace Qor::Chart::Model
