#include "framework/model/Events.h"

#include "framework/model/LegendEntry.h"
#include "framework/model/ModelNode.h"

#include <utility>

namespace Qor::Chart::Model::Events {

Event::Event(Core::WeakPtr<ModelNode> p_node) noexcept : _node(std::move(p_node)) {}

Event::~Event() = default;

PickedArgs::PickedArgs(Core::WeakPtr<ModelNode> p_node) noexcept : Event(std::move(p_node)) {}

PickedArgs::PickedArgs(Core::WeakPtr<ModelNode> p_node, Types::Vector3_Base<double> const& p_position,
    Types::Pos const& p_screenPosition, Core::NodePath p_path) noexcept
    : Event(std::move(p_node)), _position(p_position), _screenPosition(p_screenPosition), _path(std::move(p_path)) {}

PickedArgs::~PickedArgs() = default;

PendingUpdateCompletedArgs::PendingUpdateCompletedArgs(
    Core::WeakPtr<ModelNode> p_node, Types::BoundingBox_Base<double> const& p_boundingBox) noexcept
    : Event(std::move(p_node)), _boundingBox(p_boundingBox) {}

PendingUpdateCompletedArgs::~PendingUpdateCompletedArgs() = default;

ColorPickedArgs::ColorPickedArgs(Core::WeakPtr<ModelNode> p_node, QColor const& p_color) noexcept
    : Event(std::move(p_node)), _color(p_color) {}

ColorPickedArgs::~ColorPickedArgs() = default;

SelectionChangedArgs::SelectionChangedArgs(Core::WeakPtr<ModelNode> p_node, Entries p_added, Entries p_removed) noexcept
    : Event(std::move(p_node)), _added(std::move(p_added)), _removed(std::move(p_removed)) {}

SelectionChangedArgs::~SelectionChangedArgs() = default;

LegendEntryArgs::LegendEntryArgs(Core::WeakPtr<LegendEntry> p_entry, Types::Pos const& p_screenPosition)
    : Event(p_entry), _entry(std::move(p_entry)), _screenPosition(p_screenPosition) {}

LegendEntryArgs::~LegendEntryArgs() = default;

LegendEntryHoveredArgs::LegendEntryHoveredArgs(Core::WeakPtr<LegendEntry> p_entry, Types::Pos const& p_screenPosition)
    : LegendEntryArgs(std::move(p_entry), p_screenPosition) {}

LegendEntryHoveredArgs::~LegendEntryHoveredArgs() = default;

LegendEntryHoverEndedArgs::LegendEntryHoverEndedArgs(
    Core::WeakPtr<LegendEntry> p_entry, Types::Pos const& p_screenPosition)
    : LegendEntryArgs(std::move(p_entry), p_screenPosition) {}

LegendEntryHoverEndedArgs::~LegendEntryHoverEndedArgs() = default;

LegendEntryClickedArgs::LegendEntryClickedArgs(Core::WeakPtr<LegendEntry> p_entry, Types::Pos const& p_screenPosition)
    : LegendEntryArgs(std::move(p_entry), p_screenPosition) {}

LegendEntryClickedArgs::~LegendEntryClickedArgs() = default;

TextEditedArgs::TextEditedArgs(Core::WeakPtr<ModelNode> p_node, std::wstring p_text, std::wstring p_former) noexcept
    : Event(std::move(p_node)), _text(std::move(p_text)), _former(std::move(p_former)) {}

TextEditedArgs::~TextEditedArgs() = default;

} // namespace Qor::Chart::Model::Events
