#include "render/nodes/Widget.h"

#include "framework/algorithms/Hit.h"

namespace Qor::Chart::Render {

Widget::~Widget() = default;

void Widget::SetRectangle(Types::Viewport<0> const& p_rectangle) {
    _rectangle = p_rectangle;
    RectangleChanged();
}

void Widget::Set(Flag p_flag, bool p_on) {
    _flags = p_on ? _flags | p_flag : _flags & ~static_cast<std::uint32_t>(p_flag);
    FlagChanged(p_flag);
}

bool Widget::IsHit(Types::Pos const& p_pos) const {
    return Algorithms::Hit::IsHit(_rectangle, p_pos);
}

bool Widget::Press(Types::Pos const&, EventInformation&) {
    return false;
}

void Widget::Drag(Types::Pos const&, EventInformation&) {}

void Widget::Release(Types::Pos const&, EventInformation&) {}

bool Widget::DoublePress(Types::Pos const&, EventInformation&) {
    return false;
}

bool Widget::Key(EventInformation&) {
    return false;
}

void Widget::TabbedInto(EventInformation&) {}

void Widget::WindowChanged(bool) {}

bool Widget::IsFocusable() const {
    return !Has(FlagDisabled);
}

void Widget::FlagChanged(Flag) {}

void Widget::RectangleChanged() {}

} // namespace Qor::Chart::Render
