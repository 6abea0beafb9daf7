#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/TimeStamp.h"
#include "framework/core/WeakPtr.h"
#include "framework/model/SelectionList.h"
#include "render/core/Vis.h"

#include <boost/container/small_vector.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

namespace Qor::Chart::Render {

/// What one selection list shows in a visual tree: which visual nodes were told that what they mirror is selected. It
/// is told what has changed, and brings the nodes in line with the model at the cost of that. The visual nodes of a
/// model node are found among its dependents; where one has no look to show a selection with (`SelectsBelow`), those
/// below it show it.
class SelectionView {
public:
    /// Whether the list is the one that a visual node shows.
    using Serves = std::function<bool(Vis const&)>;

    struct Outcome {
        bool hasTold = false; ///< a visual node was told something
        bool hasGone = false; ///< the model holds entries of nodes that are gone
    };

    /// A node came to the selection, left it, or got another index.
    void MarkChanged(Core::WeakPtr<Model::ModelNode> const& p_node);
    /// Anything may be shown elsewhere than it should be.
    void MarkAll() noexcept { _isAllChanged = true; }

    /// Tells the visual nodes what they are to show now.
    /// @param p_model  whose selection is shown; null shows nothing
    /// @param p_time   when the tree around the list last changed
    Outcome Show(Model::SelectionList const* p_model, Core::TimeStamp p_time, Serves const& p_serves);

    /// Takes back what is shown on nodes that the list does not serve any more, before another list shows its own on
    /// them. Gives whether there were any.
    bool Withdraw(Serves const& p_serves);

    /// The first visual node that shows a model node as selected; empty when none does.
    Core::Ptr<Vis> HandlerOf(Core::WeakPtr<Model::ModelNode> const& p_node) const;

private:
    using Node = Core::WeakPtr<Model::ModelNode>;
    using Indices = std::vector<std::optional<std::uint64_t>>;
    using Handler = Core::WeakPtr<Vis>;
    using Handlers = boost::container::small_vector<Handler, 1>;

    struct Shown {
        Indices indices; ///< sorted
        Handlers handlers; ///< sorted
        std::uint32_t newest = 0; ///< dependent of the model node by its identifier, when its handlers were looked for
        Core::TimeStamp
            below; ///< when what its handlers were looked for in had last changed; never where that was no need

        bool IsShownBelow() const noexcept { return below != Core::TimeStamp(); }
    };

    static void FindHandlers(Model::ModelNode const& p_node, Serves const& p_serves, Shown& p_shown);
    static Core::TimeStamp TimeBelow(Model::ModelNode const& p_node);
    static std::uint32_t NewestDependent(Model::ModelNode const& p_node);
    static bool IsOutOfDate(Node const& p_node, Shown const& p_shown);
    static bool Tell(Vis& p_handler, Node const& p_node, Indices const& p_indices, bool p_selected);
    static bool TellDifference(Vis& p_handler, Node const& p_node, Indices const& p_before, Indices const& p_now);
    std::vector<Node> TakeChanged(Model::SelectionList const* p_model, Core::TimeStamp p_time);
    bool ShowNode(Node const& p_node, Indices p_indices, Serves const& p_serves);
    bool TakeBack(Node const& p_node, Shown const& p_before, Handlers const& p_kept);
    void TellAgain(Node const& p_node, Handler const& p_handler);
    void TellStillSelected();

    static constexpr std::size_t FewChanged = 1024;

    std::unordered_map<Node, Shown> _shown;
    std::set<Node> _shownBelow; ///< those of the shown that nodes below them show
    std::vector<Handler>
        _takenBack; ///< handlers that may show another node as well, and were told that one is not selected
    std::vector<Node> _changed;
    std::size_t _mostChanged = FewChanged; ///< from then on duplicates are looked for
    bool _isAllChanged = true;
    Core::TimeStamp _seen;
};

} // namespace Qor::Chart::Render
