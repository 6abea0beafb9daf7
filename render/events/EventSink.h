#pragma once

#include "framework/core/Ptr.h"
#include "framework/core/WeakPtr.h"
#include "framework/types/Size.h"
#include "render/Export.h"

#include <functional>
#include <vector>

namespace Qor::Chart::Model {
class ModelNode;
}

namespace Qor::Chart::Render {

class BoxSelection;
class SelectRecord;
class TextInputHost;
class Vis;

/// Opens windows for content that leaves its pane.
class QOR_VIS_API PopOutHost {
public:
    using Content = std::vector<Core::Ptr<Model::ModelNode>>;
    /// Makes the root of the new window's model out of the content; empty when it cannot.
    using Factory = std::function<Core::Ptr<Model::ModelNode>(Content const&)>;
    using Restore = std::function<void()>;

    virtual ~PopOutHost();

    /// @param p_size     of the new window in pixels
    /// @param p_restore  called when the window is closed; may be empty
    virtual void PopOut(
        Factory const& p_factory, Types::Size const& p_size, Restore const& p_restore, Content const& p_content) = 0;
};

/// What an event handler may ask of the host that sent the event.
class QOR_VIS_API EventSink {
public:
    /// What becomes of the keys that a node has taken.
    enum class FocusChange {
        WindowLeft, ///< the user types elsewhere for now; the node still is who gets the window's keys
        WindowEntered, ///< and again here
        Lost, ///< another node took them, the user clicked elsewhere, or the node or the window goes
    };

    virtual ~EventSink();

    /// Asks for another frame; requests that fall together make one frame.
    virtual void RequestRedraw() = 0;
    /// Asks for an update of the visual tree and another frame.
    virtual void RequestUpdate() = 0;
    /// Hands over a rubber band that the user has finished.
    virtual void SelectBox(BoxSelection const& p_box) = 0;
    /// Says that a node is about to be moved by the user, once per drag, before it moves.
    virtual void AboutToMove(Core::WeakPtr<Model::ModelNode> const& p_node) = 0;
    /// Says what the pointer is over from now on.
    virtual void Hover(SelectRecord const& p_record) = 0;
    /// Says that the pointer has left what `Hover` named.
    virtual void EndHover(Core::WeakPtr<Model::ModelNode> const& p_node) = 0;
    /// Null where the host has no windows to open.
    virtual PopOutHost* GetPopOutHost() = 0;

    // A host without keys does nothing here; who takes the focus loses it at once.

    /// From now on keys and text go to a node first, wherever the pointer is. Who had them before is told. For a node
    /// that has them already nothing happens.
    /// @param p_changed  told what becomes of them, as long as the node lives; `Lost` comes once and is the last. May be empty
    virtual void TakeFocus(Core::WeakPtr<Vis> const& p_node, std::function<void(FocusChange)> const& p_changed);
    /// Gives the keys up, if the node has them.
    virtual void LeaveFocus(Core::WeakPtr<Vis> const& p_node);
    /// Null where the host has neither clipboard nor input method.
    virtual TextInputHost* GetTextInputHost();

protected:
    EventSink() = default;
    EventSink(EventSink const&) = default;
    EventSink& operator=(EventSink const&) = default;
};

} // namespace Qor::Chart::Render
