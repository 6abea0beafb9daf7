#pragma once

#include "framework/core/Ptr.h"
#include "framework/types/Viewport.h"
#include "host/EventCaller.h"
#include "host/HoverTracker.h"
#include "host/InputEvent.h"
#include "render/pick/BoxSelection.h"
#include "render/pick/HitRecord.h"

#include <functional>
#include <optional>
#include <vector>

namespace Qor::Chart::Render {
class SelectionList;
}

namespace Qor::Chart::Host {

class Scene;

/// Hands clicks, rubber bands and the Escape key to the selection list that serves the place they are for: the one
/// closest above the foremost thing there, or above the pane that shows there.
class SelectionInput {
public:
    using Hits = std::vector<Render::HitRecord>;

    struct ClickState {
        bool isTaken; ///< by a node
        bool isSecond; ///< of a double click
        int threshold; ///< how far the pointer may move until it counts as somewhere else, in pixels
    };

    /// @param p_window  that the scene is drawn into; it outlives this
    SelectionInput(
        Scene& p_scene, EventCaller& p_caller, HoverTracker& p_hover, Types::Viewport<0> const& p_window) noexcept
        : _scene(p_scene), _caller(p_caller), _hover(p_hover), _window(p_window) {}

    /// Whether a list has taken a click that the nodes have been offered. What a node has taken beside everything that
    /// can be selected is not for lists.
    bool Click(InputEvent const& p_input, Hits const& p_hits, ClickState const& p_state);

    /// The same for a rubber band; what lies in it is asked for when there is a list at all.
    bool SelectBox(Render::BoxSelection const& p_box, std::function<Hits()> const& p_pick);

    /// Whether a list has taken a key that nodes did not want.
    bool PressKey(InputEvent const& p_input, Hits const& p_hits, bool p_isInside);

private:
    using List = Core::Ptr<Render::SelectionList>;

    /// Empty when there is none, and while nodes are not to change anything.
    /// @param p_position  of the pointer, which has hit these; nothing outside the window
    List ListAt(Hits const& p_hits, std::optional<Types::Pos> const& p_position) const;
    List Ready(List p_list) const;
    Core::Ptr<Render::Vis> PaneAt(Types::Pos const& p_position) const;

    Scene& _scene;
    EventCaller& _caller;
    HoverTracker& _hover;
    Types::Viewport<0> const& _window;
};

} // namespace Qor::Chart::Host
