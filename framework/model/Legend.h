#pragma once

#include "framework/Export.h"
#include "framework/model/LegendEntry.h"
#include "framework/model/ModelNode.h"
#include "framework/types/XPosition.h"
#include "framework/types/YPosition.h"

#include <QColor>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Qor::Chart::Model {

/// A panel in a pane that explains what is to be seen: a title and one line for each of its entries. The entries are
/// the children of the legend, in their order; children of other classes show nothing. The delegate of the legend
/// raises the events of all its entries, beside those of the entries.
class QOR_FRAMEWORK_API Legend : public ModelNode {
public:
    static Property<Legend, std::wstring> const TitleProperty;
    static Property<Legend, std::optional<QColor>> const BackgroundColorProperty;
    static Property<Legend, std::optional<QColor>> const BorderColorProperty;
    static Property<Legend, bool> const AutomaticPlacementProperty;
    static Property<Legend, Types::XPosition> const XPositionProperty;
    static Property<Legend, Types::YPosition> const YPositionProperty;
    static Property<Legend, int> const ColumnsProperty;
    static Property<Legend, bool> const ClickTogglesProperty;
    static PropertyList const& ClassProperties();

    static constexpr int MostColumns = 100;

    Legend() = default;

    /// Empty shows none.
    std::wstring const& Title() const noexcept { return _title; }
    void SetTitle(std::wstring p_title) { TitleProperty.Set(*this, std::move(p_title)); }

    /// Nothing takes the colours of the schema; a colour of alpha 0 leaves ground or border out.
    std::optional<QColor> const& BackgroundColor() const noexcept { return _backgroundColor; }
    bool SetBackgroundColor(std::optional<QColor> const& p_color) {
        return BackgroundColorProperty.Set(*this, p_color);
    }
    std::optional<QColor> const& BorderColor() const noexcept { return _borderColor; }
    bool SetBorderColor(std::optional<QColor> const& p_color) { return BorderColorProperty.Set(*this, p_color); }

    /// Whether the legend finds its own place, in the upper right corner of its pane, clear of the legends before it
    /// among the children. As long as this was never set, it does so until a position is set.
    bool IsAutomaticallyPlaced() const noexcept {
        if (IsSet(AutomaticPlacementProperty))
            return _automaticPlacement;
        return !IsSet(XPositionProperty) && !IsSet(YPositionProperty);
    }
    void SetAutomaticPlacement(bool p_automatic) { AutomaticPlacementProperty.Set(*this, p_automatic); }
    /// Where the legend lies inside its pane. A distance that is not finite is refused with a message to the logger.
    Types::XPosition const& GetXPosition() const noexcept { return _x; }
    bool SetXPosition(Types::XPosition const& p_position) { return XPositionProperty.Set(*this, p_position); }
    Types::YPosition const& GetYPosition() const noexcept { return _y; }
    bool SetYPosition(Types::YPosition const& p_position) { return YPositionProperty.Set(*this, p_position); }

    /// In how many columns the entries stand, filled line by line; 0 takes as many as are needed to show all of them,
    /// as far as they fit. Fewer are shown where there is no space.
    int Columns() const noexcept { return _columns; }
    bool SetColumns(int p_columns) { return ColumnsProperty.Set(*this, p_columns); }

    /// Whether a click on an entry shows and hides the target of the entry, if that allows it too.
    bool ClickToggles() const noexcept { return _clickToggles; }
    void SetClickToggles(bool p_toggles) { ClickTogglesProperty.Set(*this, p_toggles); }

    /// The entries among the children.
    std::vector<Core::Ptr<LegendEntry>> Entries() const;

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~Legend() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    bool _automaticPlacement = true;
    bool _clickToggles = true;
    int _columns = 0;
    std::optional<QColor> _backgroundColor;
    std::optional<QColor> _borderColor;
    Types::XPosition _x;
    Types::YPosition _y;
    std::wstring _title;
};

} // namespace Qor::Chart::Model
