#include "framework/model/ColorPicker.h"

#include "framework/model/PropertyChecks.h"

#include <string>

namespace Qor::Chart::Model {

namespace {

std::string CheckColors(std::vector<QColor> const& p_colors) {
    if (p_colors.size() > ColorPicker::MostRecentColors)
        return "there are " + std::to_string(p_colors.size()) + " colours; give at most " +
            std::to_string(ColorPicker::MostRecentColors) + ".";
    for (QColor const& color : p_colors) {
        if (std::string objection = Detail::CheckColor(color); !objection.empty())
            return objection;
    }
    return {};
}

} // namespace

Property<ColorPicker, QColor> const ColorPicker::ColorProperty(Field<&ColorPicker::_color>,
    {1, "color", "The colour that is picked now."}, QColor(255, 255, 255), Detail::CheckColor);

Property<ColorPicker, bool> const ColorPicker::AlphaShownProperty(
    Field<&ColorPicker::_alphaShown>, {2, "alphaShown", "Whether the user may change the alpha."}, true);

Property<ColorPicker, std::vector<QColor>> const ColorPicker::RecentColorsProperty(Field<&ColorPicker::_recentColors>,
    {3, "recentColors", "Colours that were picked before, most recent first."}, std::vector<QColor>(), CheckColors);

Property<ColorPicker, Types::XPosition> const ColorPicker::XPositionProperty(Field<&ColorPicker::_x>,
    {4, "x", "How far the panel lies from the left or right side of its pane."}, Types::XPosition(),
    Detail::CheckPosition<Types::XPosition>);

Property<ColorPicker, Types::YPosition> const ColorPicker::YPositionProperty(Field<&ColorPicker::_y>,
    {5, "y", "How far the panel lies from the lower or upper side of its pane."}, Types::YPosition(),
    Detail::CheckPosition<Types::YPosition>);

PropertyList const& ColorPicker::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&ColorProperty, &AlphaShownProperty, &RecentColorsProperty, &XPositionProperty, &YPositionProperty});
    return properties;
}

ColorPicker::~ColorPicker() = default;

bool ColorPicker::SetColor(QColor const& p_color) {
    if (!ColorProperty.Set(*this, p_color))
        return false;
    auto const follow = _follow; // it may be given another target
    if (follow)
        follow(_color);
    return true;
}

Core::Ptr<ModelNode> ColorPicker::NewOfSameClass() const {
    return Core::MakeNode<ColorPicker>();
}

void ColorPicker::CopyTo(ModelNode& p_clone) const {
    dynamic_cast<ColorPicker&>(p_clone)._follow = _follow;
}

} // namespace Qor::Chart::Model
