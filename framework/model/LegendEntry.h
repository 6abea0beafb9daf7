#pragma once

#include "framework/Export.h"
#include "framework/core/Ref.h"
#include "framework/core/WeakRef.h"
#include "framework/model/LegendSwatch.h"
#include "framework/model/ModelNode.h"
#include "framework/model/Symbol.h"
#include "framework/types/QuantityUnit.h"

#include <QColor>

#include <optional>
#include <string>
#include <utility>

namespace Qor::Chart::Model {

/// One line of a legend: a text, and a swatch that shows a colour, a symbol, a line, a point or the bar of a colour
/// map. It may name a node as its target: then it shows whether that is visible, looks like it where it has no look of
/// its own, and a click on it shows and hides the target. An entry that is not visible itself takes no place.
class QOR_FRAMEWORK_API LegendEntry : public ModelNode {
public:
    static Property<LegendEntry, std::wstring> const TextProperty;
    static Property<LegendEntry, LegendSwatch> const SwatchProperty;
    static Property<LegendEntry, std::optional<QColor>> const ColorProperty;
    static Property<LegendEntry, std::string> const ColorMapProperty;
    static Property<LegendEntry, double> const RangeFirstProperty;
    static Property<LegendEntry, double> const RangeLastProperty;
    static Property<LegendEntry, bool> const LogarithmicProperty;
    static Property<LegendEntry, int> const StepsProperty;
    static Property<LegendEntry, std::wstring> const QuantityProperty;
    static Property<LegendEntry, std::wstring> const UnitProperty;
    static Property<LegendEntry, bool> const ClickTogglesProperty;
    static PropertyList const& ClassProperties();

    static constexpr int MostSteps = 256;

    LegendEntry();
    /// @param p_target  may be empty
    explicit LegendEntry(std::wstring p_text, Core::Ptr<ModelNode> const& p_target = {});

    std::wstring const& Text() const noexcept { return _text; }
    void SetText(std::wstring p_text) { TextProperty.Set(*this, std::move(p_text)); }

    LegendSwatch Swatch() const noexcept { return _swatch; }
    void SetSwatch(LegendSwatch p_swatch) { SwatchProperty.Set(*this, p_swatch); }

    /// The colour of the swatch; without one it is that of the target, if this is a simple object, else that of the
    /// schema.
    std::optional<QColor> const& Color() const noexcept { return _color; }
    bool SetColor(std::optional<QColor> const& p_color) { return ColorProperty.Set(*this, p_color); }

    /// What the swatch shows in small; without one it is the symbol of the target, if this is a simple object.
    Core::Ptr<Symbol> const& GetSymbol() const noexcept { return _symbol.Get(); }
    void SetSymbol(Core::Ptr<Symbol> p_symbol) { _symbol.Attach(std::move(p_symbol)); }

    /// \name Colour map
    /// @{
    /// The name of a `Library::ColorMap`.
    std::string const& ColorMap() const noexcept { return _colorMap; }
    void SetColorMap(std::string p_name) { ColorMapProperty.Set(*this, std::move(p_name)); }
    /// The values of the first and the last colour, in the entry's unit. Values that are not both finite are refused
    /// with a message to the logger.
    double RangeFirst() const noexcept { return _rangeFirst; }
    double RangeLast() const noexcept { return _rangeLast; }
    bool SetRange(double p_first, double p_last);
    /// Whether equal ratios of values get equal lengths; both ends of the range must be greater than 0 then.
    bool IsLogarithmic() const noexcept { return _logarithmic; }
    void SetLogarithmic(bool p_logarithmic) { LogarithmicProperty.Set(*this, p_logarithmic); }
    /// Into how many even colours the range is divided; 0 makes smooth transitions.
    int Steps() const noexcept { return _steps; }
    bool SetSteps(int p_steps) { return StepsProperty.Set(*this, p_steps); }
    /// What the values measure, and the unit in which they are given. They are shown in the unit that the host's
    /// converter has for the quantity. Either may be empty: then they are shown as they are.
    Types::QuantityUnit Unit() const { return {_quantity, _unit}; }
    void SetUnit(Types::QuantityUnit const& p_unit) {
        QuantityProperty.Set(*this, p_unit.quantity);
        UnitProperty.Set(*this, p_unit.unit);
    }
    /// @}

    /// What the entry explains. It is not kept alive.
    Core::WeakPtr<ModelNode> const& Target() const noexcept { return _target.Get(); }
    void SetTarget(Core::Ptr<ModelNode> const& p_target) { _target.Attach(p_target); }
    /// Whether a click on the entry shows and hides the target, if the legend allows it too.
    bool ClickToggles() const noexcept { return _clickToggles; }
    void SetClickToggles(bool p_toggles) { ClickTogglesProperty.Set(*this, p_toggles); }

    /// What the swatch comes to after `Automatic` is resolved.
    LegendSwatch ShownSwatch() const;
    /// The symbol of the entry or of its target; may be empty.
    Core::Ptr<Symbol> ShownSymbol() const;
    /// The colour of the entry or of its target; nothing where neither has one.
    std::optional<QColor> ShownColor() const;

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~LegendEntry() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
    void CopyTo(ModelNode& p_clone) const override;

private:
    bool _logarithmic = false;
    bool _clickToggles = true;
    LegendSwatch _swatch = LegendSwatch::Automatic;
    int _steps = 0;
    double _rangeFirst = 0;
    double _rangeLast = 1;
    std::optional<QColor> _color;
    std::wstring _text;
    std::string _colorMap;
    std::wstring _quantity;
    std::wstring _unit;
    Core::Ref<Symbol> _symbol;
    Core::WeakRef<ModelNode> _target;
};

} // namespace Qor::Chart::Model
