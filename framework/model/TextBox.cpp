#include "framework/model/TextBox.h"

#include "framework/model/PropertyChecks.h"

#include <array>

namespace Qor::Chart::Model {

namespace {

std::string CheckLength(int const& p_length) {
    return p_length >= 0 ? std::string() : "a length is not negative; give a number of characters, or 0 for no limit.";
}

} // namespace

Property<TextBox, std::wstring> const TextBox::TextProperty(
    Field<&TextBox::_text>, {1, "text", "The text."}, std::wstring());

Property<TextBox, TextBox::Mode> const TextBox::ModeProperty(
    Field<&TextBox::_mode>, {2, "mode", "What the user may do with the text."}, Mode::Label);

Property<TextBox, std::wstring> const TextBox::PlaceholderProperty(
    Field<&TextBox::_placeholder>, {3, "placeholder", "What a field shows while it is empty."}, std::wstring());

Property<TextBox, int> const TextBox::MaxLengthProperty(Field<&TextBox::_maxLength>,
    {4, "maxLength", "How many characters the user can enter; 0 for no limit."}, 0, CheckLength);

Property<TextBox, bool> const TextBox::FramedProperty(
    Field<&TextBox::_framed>, {5, "framed", "Whether a field has a ground and a frame."}, true);

Property<TextBox, bool> const TextBox::CenteredProperty(
    Field<&TextBox::_centered>, {6, "centered", "Whether the text stands in the middle."}, false);

Property<TextBox, Types::XPosition> const TextBox::XPositionProperty(Field<&TextBox::_x>,
    {7, "x", "How far the box lies from the left or right side of its pane."}, Types::XPosition(),
    Detail::CheckPosition<Types::XPosition>);

Property<TextBox, Types::YPosition> const TextBox::YPositionProperty(Field<&TextBox::_y>,
    {8, "y", "How far the box lies from the lower or upper side of its pane."}, Types::YPosition(),
    Detail::CheckPosition<Types::YPosition>);

Property<TextBox, double> const TextBox::WidthProperty(Field<&TextBox::_width>,
    {9, "width", "How wide the box is, in pixels; 0 is as wide as needed."}, 0, Detail::CheckSide);

Property<TextBox, double> const TextBox::HeightProperty(Field<&TextBox::_height>,
    {10, "height", "How high the box is, in pixels; 0 is as high as needed."}, 0, Detail::CheckSide);

PropertyList const& TextBox::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(),
        {&TextProperty, &ModeProperty, &PlaceholderProperty, &MaxLengthProperty, &FramedProperty, &CenteredProperty,
            &XPositionProperty, &YPositionProperty, &WidthProperty, &HeightProperty});
    return properties;
}

TextBox::TextBox(std::wstring p_text, Mode p_mode) {
    SetText(std::move(p_text));
    SetMode(p_mode);
}

TextBox::~TextBox() = default;

Core::Ptr<ModelNode> TextBox::NewOfSameClass() const {
    return Core::MakeNode<TextBox>();
}

std::span<std::string_view const> NamesOf(TextBox::Mode) noexcept {
    static constexpr std::array<std::string_view, 3> names{"Label", "Editable", "ReadOnly"};
    return names;
}

} // namespace Qor::Chart::Model
