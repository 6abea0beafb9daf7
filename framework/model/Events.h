#pragma once

#include "framework/Export.h"
#include "framework/core/NodePath.h"
#include "framework/core/WeakPtr.h"
#include "framework/model/SelectionEntry.h"
#include "framework/types/BoundingBox.h"
#include "framework/types/Pos.h"
#include "framework/types/Vector3.h"

#include <QColor>

#include <optional>
#include <string>
#include <vector>

namespace Qor::Chart::Model {

class LegendEntry;
class ModelNode;

namespace Events {

/// Something that happened to a model node, told to who subscribed at the node's `EventDelegate`.
class QOR_FRAMEWORK_API Event {
public:
    virtual ~Event();

    /// The node that the event is about; it may be gone.
    Core::WeakPtr<ModelNode> const& Node() const noexcept { return _node; }

protected:
    explicit Event(Core::WeakPtr<ModelNode> p_node) noexcept;
    Event(Event const&) = default;
    Event& operator=(Event const&) = default;

private:
    Core::WeakPtr<ModelNode> _node;
};

/// The user clicked on a node.
class QOR_FRAMEWORK_API PickedArgs : public Event {
public:
    explicit PickedArgs(Core::WeakPtr<ModelNode> p_node) noexcept;
    /// @param p_position        where the node was hit, in scene coordinates
    /// @param p_screenPosition  the pointer, in pixels of the window, origin bottom left
    /// @param p_path            which use of the node was hit; may be undefined
    PickedArgs(Core::WeakPtr<ModelNode> p_node, Types::Vector3_Base<double> const& p_position,
        Types::Pos const& p_screenPosition, Core::NodePath p_path) noexcept;
    ~PickedArgs() override;

    std::optional<Types::Vector3_Base<double>> const& Position() const noexcept { return _position; }
    std::optional<Types::Pos> const& ScreenPosition() const noexcept { return _screenPosition; }
    Core::NodePath const& Path() const noexcept { return _path; }

private:
    std::optional<Types::Vector3_Base<double>> _position;
    std::optional<Types::Pos> _screenPosition;
    Core::NodePath _path;
};

/// The visual node of a model node was waiting for something and has now been brought up to date.
class QOR_FRAMEWORK_API PendingUpdateCompletedArgs : public Event {
public:
    PendingUpdateCompletedArgs(
        Core::WeakPtr<ModelNode> p_node, Types::BoundingBox_Base<double> const& p_boundingBox) noexcept;
    ~PendingUpdateCompletedArgs() override;

    /// The box around what the node shows now; undefined when it shows nothing.
    Types::BoundingBox_Base<double> const& BoundingBox() const noexcept { return _boundingBox; }

private:
    Types::BoundingBox_Base<double> _boundingBox;
};

/// The user has picked a colour and let go.
class QOR_FRAMEWORK_API ColorPickedArgs : public Event {
public:
    ColorPickedArgs(Core::WeakPtr<ModelNode> p_node, QColor const& p_color) noexcept;
    ~ColorPickedArgs() override;

    QColor const& Color() const noexcept { return _color; }

private:
    QColor _color;
};

/// The entries of a selection list have changed. Both lists are empty when only the order has.
class QOR_FRAMEWORK_API SelectionChangedArgs : public Event {
public:
    using Entries = std::vector<SelectionEntry>;

    /// @param p_node  the list
    SelectionChangedArgs(Core::WeakPtr<ModelNode> p_node, Entries p_added, Entries p_removed) noexcept;
    ~SelectionChangedArgs() override;

    /// In the order in which they stood in the list after this change.
    Entries const& Added() const noexcept { return _added; }
    /// In the order in which they stood in the list; nodes that are gone are among them, as expired handles.
    Entries const& Removed() const noexcept { return _removed; }

private:
    Entries _added;
    Entries _removed;
};

/// What the pointer does with an entry of a legend. It is about the entry, and raised at the legend too.
class QOR_FRAMEWORK_API LegendEntryArgs : public Event {
public:
    ~LegendEntryArgs() override;

    /// It may be gone.
    Core::WeakPtr<LegendEntry> const& Entry() const noexcept { return _entry; }
    /// The pointer, in pixels of the window, origin bottom left.
    Types::Pos const& ScreenPosition() const noexcept { return _screenPosition; }

protected:
    LegendEntryArgs(Core::WeakPtr<LegendEntry> p_entry, Types::Pos const& p_screenPosition);

private:
    Core::WeakPtr<LegendEntry> _entry;
    Types::Pos _screenPosition;
};

/// The pointer has come over an entry.
class QOR_FRAMEWORK_API LegendEntryHoveredArgs : public LegendEntryArgs {
public:
    LegendEntryHoveredArgs(Core::WeakPtr<LegendEntry> p_entry, Types::Pos const& p_screenPosition);
    ~LegendEntryHoveredArgs() override;
};

/// The pointer has left an entry, or the entry under it is gone; the latter is told to the legend alone. Nothing is told
/// when the legend itself is taken out of the scene.
class QOR_FRAMEWORK_API LegendEntryHoverEndedArgs : public LegendEntryArgs {
public:
    LegendEntryHoverEndedArgs(Core::WeakPtr<LegendEntry> p_entry, Types::Pos const& p_screenPosition);
    ~LegendEntryHoverEndedArgs() override;
};

/// The user has clicked on an entry. Its target has been shown or hidden by now, if the click does that.
class QOR_FRAMEWORK_API LegendEntryClickedArgs : public LegendEntryArgs {
public:
    LegendEntryClickedArgs(Core::WeakPtr<LegendEntry> p_entry, Types::Pos const& p_screenPosition);
    ~LegendEntryClickedArgs() override;
};

/// The user has settled for another text in a text box.
class QOR_FRAMEWORK_API TextEditedArgs : public Event {
public:
    /// @param p_former  the text before the edit
    TextEditedArgs(Core::WeakPtr<ModelNode> p_node, std::wstring p_text, std::wstring p_former) noexcept;
    ~TextEditedArgs() override;

    std::wstring const& Text() const noexcept { return _text; }
    std::wstring const& Former() const noexcept { return _former; }

private:
    std::wstring _text;
    std::wstring _former;
};

} // namespace Events

} // namespace Qor::Chart::Model
