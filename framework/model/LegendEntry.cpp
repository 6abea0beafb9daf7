#include "framework/model/LegendEntry.h"

#include "framework/model/PropertyChecks.h"
#include "framework/model/SimpleObject.h"

#include <cmath>

namespace Qor::Chart::Model {

namespace {

std::string CheckRange(double const& p_value) {
    return std::isfinite(p_value) ? "" : "the value is infinite or not a number; give a finite one.";
}

std::string CheckSteps(int const& p_steps) {
    return p_steps >= 0 && p_steps <= LegendEntry::MostSteps
        ? ""
        : "the number is not between 0 and " + std::to_string(LegendEntry::MostSteps) + "; give one that is.";
}

SimpleObject const* ObjectOf(Core::WeakPtr<ModelNode> const& p_target) {
    return dynamic_cast<SimpleObject const*>(p_target.Peek());
}

} // namespace

Property<LegendEntry, std::wstring> const LegendEntry::TextProperty(
    Field<&LegendEntry::_text>, {1, "text", "What the entry says."}, std::wstring());

Property<LegendEntry, LegendSwatch> const LegendEntry::SwatchProperty(
    Field<&LegendEntry::_swatch>, {2, "swatch", "What stands beside the text."}, LegendSwatch::Automatic);

Property<LegendEntry, std::optional<QColor>> const LegendEntry::ColorProperty(Field<&LegendEntry::_color>,
    {3, "color", "The colour of the swatch; without one it is that of the target."}, std::nullopt,
    Detail::CheckOptionalColor);

Property<LegendEntry, std::string> const LegendEntry::ColorMapProperty(
    Field<&LegendEntry::_colorMap>, {4, "colorMap", "The name of the colour map of the bar."}, std::string());

Property<LegendEntry, double> const LegendEntry::RangeFirstProperty(Field<&LegendEntry::_rangeFirst>,
    {5, "rangeFirst", "The value of the first colour, in the entry's unit."}, 0.0, CheckRange);

Property<LegendEntry, double> const LegendEntry::RangeLastProperty(Field<&LegendEntry::_rangeLast>,
    {6, "rangeLast", "The value of the last colour, in the entry's unit."}, 1.0, CheckRange);

Property<LegendEntry, bool> const LegendEntry::LogarithmicProperty(
    Field<&LegendEntry::_logarithmic>, {7, "logarithmic", "Whether equal ratios of values get equal lengths."}, false);

Property<LegendEntry, int> const LegendEntry::StepsProperty(Field<&LegendEntry::_steps>,
    {8, "steps", "Into how many even colours the range is divided; 0 makes smooth transitions."}, 0, CheckSteps);

Property<LegendEntry, std::wstring> const LegendEntry::QuantityProperty(
    Field<&LegendEntry::_quantity>, {9, "quantity", "What the values measure, such as Length."}, std::wstring());

Property<LegendEntry, std::wstring> const LegendEntry::UnitProperty(
    Field<&LegendEntry::_unit>, {10, "unit", "The unit in which the values are given, such as m."}, std::wstring());

Property<LegendEntry, bool> const LegendEntry::ClickTogglesProperty(Field<&LegendEntry::_clickToggles>,
    {11, "clickToggles", "Whether a click shows and hides the target, if the legend allows it too."}, true);

bool LegendEntry::SetRange(double p_first, double p_last) {
    if (!std::isfinite(p_last)) // refused before the other one is written
        return RangeLastProperty.Set(*this, p_last);
    return RangeFirstProperty.Set(*this, p_first) && RangeLastProperty.Set(*this, p_last);
}

PropertyList const& LegendEntry::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&TextProperty, &SwatchProperty, &ColorProperty, &ColorMapProperty, &RangeFirstProperty, &RangeLastProperty,
            &LogarithmicProperty, &StepsProperty, &QuantityProperty, &UnitProperty, &ClickTogglesProperty});
    return properties;
}

LegendEntry::LegendEntry() : _symbol(*this, "symbol"), _target(*this, "target") {}

LegendEntry::LegendEntry(std::wstring p_text, Core::Ptr<ModelNode> const& p_target) : LegendEntry() {
    SetText(std::move(p_text));
    if (p_target)
        SetTarget(p_target);
}

LegendEntry::~LegendEntry() = default;

LegendSwatch LegendEntry::ShownSwatch() const {
    if (_swatch != LegendSwatch::Automatic)
        return _swatch;
    if (!_colorMap.empty())
        return LegendSwatch::ColorMap;
    return ShownSymbol() ? LegendSwatch::Symbol : LegendSwatch::Color;
}

Core::Ptr<Symbol> LegendEntry::ShownSymbol() const {
    if (GetSymbol())
        return GetSymbol();
    SimpleObject const* const object = ObjectOf(Target());
    return object ? object->GetSymbol() : Core::Ptr<Symbol>();
}

std::optional<QColor> LegendEntry::ShownColor() const {
    if (_color)
        return _color;
    SimpleObject const* const object = ObjectOf(Target());
    return object && object->IsSet(SimpleObject::ColorProperty) ? std::optional(object->Color()) : std::nullopt;
}

Core::Ptr<ModelNode> LegendEntry::NewOfSameClass() const {
    return Core::MakeNode<LegendEntry>();
}

void LegendEntry::CopyTo(ModelNode& p_clone) const {
    auto& clone = dynamic_cast<LegendEntry&>(p_clone);
    clone.SetSymbol(GetSymbol());
    clone.SetTarget(Target().Lock());
}

} // namespace Qor::Chart::Model
