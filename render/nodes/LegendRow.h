#pragma once

#include "framework/core/Node.h"
#include "framework/core/Reference.h"
#include "framework/model/LegendEntry.h"
#include "render/nodes/LegendScale.h"

#include <QColor>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Qor::Chart::Render {

class LoadedSymbol;
class UpdateContext;
class Vis;

/// What a legend shows of one entry. It listens to its entry and puts itself on a list when that changes, so that an
/// update of a legend costs what has changed.
class LegendRow : public Core::Node {
public:
    using List = std::vector<Core::Ptr<LegendRow>>;

    struct Look {
        std::wstring text; ///< with the unit of a bar
        Model::LegendSwatch swatch = Model::LegendSwatch::Blank;
        std::optional<QColor> color; ///< nothing takes that of the schema
        std::shared_ptr<LoadedSymbol const> symbol; ///< null while there is none that can be drawn
        std::shared_ptr<LegendScale const> scale; ///< of a bar; null for one that has no colours
        bool isShown = false;

        bool operator==(Look const&) const = default;

        bool HasBar() const { return swatch == Model::LegendSwatch::ColorMap; }
        bool HasSwatch() const { return !HasBar() && swatch != Model::LegendSwatch::Blank; }
    };

    /// @param p_changed  takes the row when its entry changes; outlives the row's last handle
    explicit LegendRow(List& p_changed);
    ~LegendRow() override;

    /// Mirrors an entry from now on.
    void Attach(Core::Ptr<Model::LegendEntry> const& p_entry);
    Core::WeakPtr<Model::LegendEntry> const& Entry() const noexcept { return _entry.Get(); }

    void TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
        Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) override;

    /// Takes up what has changed; true when it makes a difference to what is seen.
    /// @param p_legend  is named in warnings
    bool Update(UpdateContext const& p_context, Vis const& p_legend);
    Look const& GetLook() const noexcept { return _look; }
    /// Whether the target does not show now: it is gone, or it or all that it hangs below is hidden. Nobody is told of
    /// that. It looks at no more than some hundred nodes, and takes a target with more above it for one that shows.
    bool IsDimmed() const;

    std::size_t index = 0; ///< of the entry among the legend's entries

private:
    std::shared_ptr<LoadedSymbol const> LoadSymbol(UpdateContext const& p_context, Model::LegendEntry const& p_entry);
    std::shared_ptr<LegendScale const> MakeScale(UpdateContext const& p_context, Model::LegendEntry const& p_entry);
    void TakeText(Model::LegendEntry const& p_entry, Look& p_look) const;

    List& _changed;
    Core::WeakRef<Model::LegendEntry> _entry;
    Core::WeakPtr<Model::ModelNode> _target;
    Look _look;
    std::string _failure; ///< what keeps the swatch from being shown; empty when nothing does
    std::string _reported;
    bool _isListed = false;
};

} // namespace Qor::Chart::Render
