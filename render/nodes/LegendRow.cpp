#include "render/nodes/LegendRow.h"

#include "render/nodes/LoadedSymbol.h"
#include "render/nodes/ShortText.h"
#include "render/nodes/SymbolCache.h"
#include "render/context/EventDispatcher.h"
#include "render/context/UpdateContext.h"
#include "render/core/Vis.h"
#include "framework/library/ModelFileError.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Unicode.h"

#include <boost/any.hpp>

#include <cmath>
#include <utility>

namespace Qor::Chart::Render {

namespace {

using Converter = UnitSystemConverter::Converter;
using Model::LegendSwatch;

/// How many dependents of a target, and of what is above it, are looked at.
constexpr int MostDependents = 256;

std::string NameOf(Model::LegendEntry const& p_entry) {
    return "The entry \"" + Utility::ToUtf8(ShortText::Of(p_entry.Text())) + "\" of a legend ";
}

bool IsUsable(Converter const& p_converter) {
    return std::isfinite(p_converter.factor) && p_converter.factor != 0 && std::isfinite(p_converter.offset);
}

/// Whether a node and, on one way up at least, all that is above it are visible. Gives up with true after so many
/// dependents.
bool IsSeen(Model::ModelNode const& p_node, int& p_dependents) {
    if (!p_node.IsVisible())
        return false;
    bool isBelow = false;
    for (Core::Dependencies::Entry const& entry : p_node.Deps().Entries()) {
        if (--p_dependents < 0)
            return true;
        auto const* const parent =
            entry.children > 0 ? dynamic_cast<Model::ModelNode const*>(entry.dependent) : nullptr;
        if (parent && IsSeen(*parent, p_dependents))
            return true;
        isBelow = isBelow || parent;
    }
    return !isBelow;
}

/// The unit in which values are shown; fills in how they get there.
std::wstring DisplayUnit(UnitSystemConverter* p_units, Types::QuantityUnit const& p_given, Converter& p_converter) {
    if (!p_units || p_given.quantity.empty() || p_given.unit.empty())
        return p_given.unit;
    std::wstring display = p_units->GetDisplayUnit(p_given.quantity, p_given.unit);
    if (display.empty() || !p_units->AreConvertable(p_given.unit, display))
        return p_given.unit;
    Converter const converter = p_units->ToUnit(p_given.unit, display);
    if (!IsUsable(converter))
        return p_given.unit;
    p_converter = converter;
    return display;
}

} // namespace

LegendRow::LegendRow(List& p_changed) : _changed(p_changed), _entry(*this, "entry") {}

LegendRow::~LegendRow() = default;

void LegendRow::Attach(Core::Ptr<Model::LegendEntry> const& p_entry) {
    _entry.Attach(p_entry);
}

void LegendRow::TouchThis(ModifiableType p_type, Change p_change, Relationship p_relationship,
    Core::WeakPtr<Core::Node> const& p_node, std::string const& p_name, boost::any const& p_data) {
    if (!_isListed && !IsDying()) {
        _changed.emplace_back(this);
        _isListed = true;
    }
    Node::TouchThis(p_type, p_change, p_relationship, p_node, p_name, p_data);
}

bool LegendRow::IsDimmed() const {
    if (_target.IsEmpty())
        return false;
    Core::Ptr<Model::ModelNode> const target = _target.Lock();
    int dependents = MostDependents;
    return !target || !IsSeen(*target, dependents);
}

bool LegendRow::Update(UpdateContext const& p_context, Vis const& p_legend) {
    _isListed = false;
    Core::Ptr<Model::LegendEntry> const entry = _entry.Lock();
    if (!entry)
        return false;
    _failure.clear();
    _target = entry->Target();
    Look look;
    look.swatch = entry->ShownSwatch();
    look.isShown = entry->IsVisible();
    look.color = entry->ShownColor();
    if (look.swatch == LegendSwatch::Symbol)
        look.symbol = LoadSymbol(p_context, *entry);
    if (look.HasBar())
        look.scale = MakeScale(p_context, *entry);
    TakeText(*entry, look);
    if (!_failure.empty() && _failure != _reported)
        p_context.Dispatcher().ReportWarning(
            p_legend, NameOf(*entry) + _failure, Utility::AtLine(__PRETTY_FUNCTION__, __LINE__), 1);
    _reported = _failure;
    bool const isChanged = !(look == _look);
    _look = std::move(look);
    return isChanged;
}

std::shared_ptr<LoadedSymbol const> LegendRow::LoadSymbol(
    UpdateContext const& p_context, Model::LegendEntry const& p_entry) {
    Core::Ptr<Model::Symbol> const source = p_entry.ShownSymbol();
    if (!source || source->Source() == Model::Symbol::SourceKind::Unset) {
        _failure = "has no symbol to show; give it one with a shape or a file.";
        return {};
    }
    if (_look.symbol && _look.symbol->IsUpToDate(*source))
        return _look.symbol;
    try {
        auto symbol = SymbolCache::Of(p_context.Registrar())->Load(p_context, *source);
        if (!symbol)
            _failure = "has a symbol in which there is nothing to draw; give it another shape or file.";
        return symbol;
    } catch (Library::ModelFileError const& error) {
        _failure = "cannot show its symbol: " + std::string(error.what());
        return {};
    }
}

std::shared_ptr<LegendScale const> LegendRow::MakeScale(
    UpdateContext const& p_context, Model::LegendEntry const& p_entry) {
    using Scale = Library::ColorMap::Scale;
    std::optional<Library::ColorMap> const map = Library::ColorMap::Named(p_entry.ColorMap());
    if (!map) {
        std::string const name = Utility::ToUtf8(ShortText::Of(Utility::FromUtf8(p_entry.ColorMap())));
        _failure = "names the colour map \"" + name + "\", which there is not; give it one such as \"" +
            Library::ColorMap::Names().front() + "\".";
        return {};
    }
    LegendScale scale{*map, {}, {}};
    bool const mayBeLogarithmic = p_entry.RangeFirst() > 0 && p_entry.RangeLast() > 0;
    if (p_entry.IsLogarithmic() && !mayBeLogarithmic)
        _failure = "cannot spread its colours by magnitude and spreads them evenly; give it a range in which both ends "
                   "are greater than 0.";
    scale.map.SetRange(p_entry.RangeFirst(), p_entry.RangeLast(),
        p_entry.IsLogarithmic() && mayBeLogarithmic ? Scale::Logarithmic : Scale::Linear);
    scale.map.SetSteps(static_cast<std::size_t>(p_entry.Steps()));
    scale.unit = DisplayUnit(p_context.Units().Get(), p_entry.Unit(), scale.toDisplay);
    if (_look.scale && *_look.scale == scale)
        return _look.scale;
    return std::make_shared<LegendScale const>(std::move(scale));
}

/// A unit stands in brackets after the text, or alone.
void LegendRow::TakeText(Model::LegendEntry const& p_entry, Look& p_look) const {
    p_look.text = ShortText::Of(p_entry.Text());
    std::wstring const unit = p_look.scale ? ShortText::Of(p_look.scale->unit) : std::wstring();
    if (!unit.empty())
        p_look.text = p_look.text.empty() ? unit : p_look.text + L" [" + unit + L"]";
}

} // namespace Qor::Chart::Render
