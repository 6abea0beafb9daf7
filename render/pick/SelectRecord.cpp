#include "render/pick/SelectRecord.h"

#include "framework/ogl/HitRecord.h"

#include <compare>
#include <ostream>

namespace Qor::Chart::Render {

SelectRecord::SelectRecord(
    Core::Ptr<Vis> const& p_handler, Core::Ptr<Model::ModelNode> const& p_selection, Core::NodePath const& p_path)
    : _handler(p_handler), _selection(p_selection), _path(p_path) {}

SelectRecord::SelectRecord(Core::Ptr<Vis> const& p_handler, Core::Ptr<Model::ModelNode> const& p_selection,
    std::uint64_t p_index, Core::NodePath const& p_path)
    : SelectRecord(p_handler, p_selection, p_path) {
    _subordinate = p_index;
}

SelectRecord::SelectRecord(Core::Ptr<Vis> const& p_handler, Core::Ptr<Model::ModelNode> const& p_selection,
    Types::Vector3_Base<double> const& p_location, Types::Pos const& p_screenPos, Core::NodePath const& p_path)
    : SelectRecord(p_handler, p_selection, p_path) {
    _location = p_location;
    _screenPos = p_screenPos;
}

SelectRecord::SelectRecord(Core::Ptr<Vis> const& p_handler, Core::Ptr<Model::ModelNode> const& p_selection,
    std::uint64_t p_index, Types::Vector3_Base<double> const& p_location, Types::Pos const& p_screenPos,
    Core::NodePath const& p_path)
    : SelectRecord(p_handler, p_selection, p_location, p_screenPos, p_path) {
    _subordinate = p_index;
}

bool SelectRecord::IsSubordinateValid() const noexcept {
    return _subordinate && *_subordinate != Ogl::HitRecord::NameInvalid;
}

bool SelectRecord::IsValid() const {
    return !_handler.Expired() && !_selection.Expired();
}

bool SelectRecord::operator==(SelectRecord const& p_other) const {
    return _handler == p_other._handler && _selection == p_other._selection;
}

bool SelectRecord::operator<(SelectRecord const& p_other) const {
    if (auto const order = _selection <=> p_other._selection; order != 0)
        return order < 0;
    if (auto const order = _handler <=> p_other._handler; order != 0)
        return order < 0;
    std::uint64_t const index = _subordinate.value_or(0);
    std::uint64_t const otherIndex = p_other._subordinate.value_or(0);
    return index != otherIndex ? index < otherIndex : _secondIndex.value_or(0) < p_other._secondIndex.value_or(0);
}

std::ostream& operator<<(std::ostream& p_stream, SelectRecord const& p_record) {
    Core::Ptr<Core::Node> const selection = p_record.Selection().Lock();
    if (!selection)
        return p_stream << "**select record selection expired**";
    Core::Ptr<Core::Node> const handler = p_record.Handler().Lock();
    if (!handler)
        return p_stream << "**select record handler expired**";
    p_stream << "handler(" << handler << ") selection(" << selection << ')';
    if (p_record.Subordinate())
        p_stream << " subordinate(" << *p_record.Subordinate() << ')';
    if (p_record.Location())
        p_stream << " location(" << *p_record.Location() << ')';
    if (p_record.Path().IsDefined())
        p_stream << " path(" << p_record.Path() << ')';
    return p_stream;
}

} // namespace Qor::Chart::Render
