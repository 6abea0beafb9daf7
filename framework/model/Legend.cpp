#include "framework/model/Legend.h"

#include "framework/model/PropertyChecks.h"

namespace Qor::Chart::Model {

namespace {

std::string CheckColumns(int const& p_columns) {
    return p_columns >= 0 && p_columns <= Legend::MostColumns
        ? ""
        : "the number is not between 0 and " + std::to_string(Legend::MostColumns) + "; give one that is.";
}

} // namespace

Property<Legend, std::wstring> const Legend::TitleProperty(
    Field<&Legend::_title>, {1, "title", "What stands above the entries; empty shows nothing."}, std::wstring());

Property<Legend, std::optional<QColor>> const Legend::BackgroundColorProperty(Field<&Legend::_backgroundColor>,
    {2, "backgroundColor", "The colour of the ground; without one it is that of the schema."}, std::nullopt,
    Detail::CheckOptionalColor);

Property<Legend, std::optional<QColor>> const Legend::BorderColorProperty(Field<&Legend::_borderColor>,
    {3, "borderColor", "The colour of the frame; without one it is that of the schema."}, std::nullopt,
    Detail::CheckOptionalColor);

Property<Legend, bool> const Legend::AutomaticPlacementProperty(Field<&Legend::_automaticPlacement>,
    {4, "automaticPlacement",
        "Whether the legend finds its own place; unless this is set, it does so until a position is."},
    true);

Property<Legend, Types::XPosition> const Legend::XPositionProperty(Field<&Legend::_x>,
    {5, "x", "How far the legend lies from the left or right side of its pane."}, Types::XPosition(),
    Detail::CheckPosition<Types::XPosition>);

Property<Legend, Types::YPosition> const Legend::YPositionProperty(Field<&Legend::_y>,
    {6, "y", "How far the legend lies from the lower or upper side of its pane."}, Types::YPosition(),
    Detail::CheckPosition<Types::YPosition>);

Property<Legend, int> const Legend::ColumnsProperty(Field<&Legend::_columns>,
    {7, "columns", "In how many columns the entries stand; 0 takes as many as are needed and fit."}, 0, CheckColumns);

Property<Legend, bool> const Legend::ClickTogglesProperty(Field<&Legend::_clickToggles>,
    {8, "clickToggles", "Whether a click on an entry shows and hides its target, if the entry allows it too."}, true);

PropertyList const& Legend::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&TitleProperty, &BackgroundColorProperty, &BorderColorProperty, &AutomaticPlacementProperty,
            &XPositionProperty, &YPositionProperty, &ColumnsProperty, &ClickTogglesProperty});
    return properties;
}

Legend::~Legend() = default;

std::vector<Core::Ptr<LegendEntry>> Legend::Entries() const {
    std::vector<Core::Ptr<LegendEntry>> entries;
    for (Core::Ptr<ModelNode> const& child : *this) {
        if (auto entry = Core::DynamicCast<LegendEntry>(child))
            entries.push_back(std::move(entry));
    }
    return entries;
}

Core::Ptr<ModelNode> Legend::NewOfSameClass() const {
    return Core::MakeNode<Legend>();
}

} // namespace Qor::Chart::Model
