#pragma once

#include "framework/core/WeakPtr.h"
#include "framework/types/Pos.h"
#include "render/pick/HitRecord.h"

#include <boost/any.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Qor::Chart::Model {
class ModelNode;
}

namespace Qor::Chart::Render {
class BoxSelection;
class SelectRecord;
} // namespace Qor::Chart::Render

namespace Qor::Chart::Host {

/// One piece of input, as nodes and the program are told of it. The fields mean what they mean in
/// `Render::EventInformation`.
struct InputEvent {
    Types::Pos position; ///< of the pointer, in framebuffer pixels of the window, origin in the lower left corner
    Types::Pos pressed; ///< where the button went down that a click or drag is made with
    std::uint32_t button = 0; ///< 0 primary, 1 secondary, 2 middle
    std::uint32_t buttons = 0; ///< all that are down; bit i is button i
    std::uint32_t modifiers = 0;
    int key = 0;
    std::wstring text;
    std::optional<std::wstring> composition;
    double scroll = 0.0;
    boost::any dragged;
};

/// Numbers that windows and people differ in; lengths are in logical pixels, times in milliseconds.
struct InputSettings {
    double dragThreshold = 4.0; ///< how far a pressed pointer moves until it drags
    double tolerance = 2.0; ///< how far around the pointer counts as under it
    double touchTolerance = 8.0; ///< the same for a finger
    int doubleClickTime = 500; ///< from one press to the next
};

/// What a program wants to hear of; any of them may be empty. One that throws is reported and counts as done.
struct InputCallbacks {
    using Hits = std::vector<Render::HitRecord>;

    enum class DragPhase {
        Begin, ///< at the place of the press
        Move,
        End,
        Cancel, ///< it is to be taken back; nothing follows
    };

    /// A click, and the second click of a double click, after the nodes: with everything that was under the pointer,
    /// best first, and whether a node, or a selection list, has handled or stopped it.
    std::function<void(InputEvent const&, Hits const&, bool p_isTaken)> click;
    std::function<void(InputEvent const&, Hits const&, bool p_isTaken)> doubleClick;
    /// A drag that no node wanted, such as one that turns the camera.
    std::function<void(InputEvent const&, DragPhase)> drag;
    /// A turn of the wheel, and a key, that no node wanted.
    std::function<void(InputEvent const&)> scroll;
    std::function<void(InputEvent const&)> keyPress;

    /// A rubber band that the user has finished, and whether a selection list has taken it.
    std::function<void(Render::BoxSelection const&, bool p_isTaken)> selectBox;
    /// The user is about to move a node: the place to remember how it was, for an undo.
    std::function<void(Core::WeakPtr<Model::ModelNode> const&)> aboutToMove;
    /// What the pointer is over, until `endHover` names the same. They come in pairs.
    std::function<void(Render::SelectRecord const&)> hover;
    std::function<void(Core::WeakPtr<Model::ModelNode> const&)> endHover;

    /// Time-outs and call-backs are due in that many milliseconds, earlier than before: the window sets a timer, and then
    /// calls `InputDispatcher::RunDue`.
    std::function<void(int)> wakeUp;
};

} // namespace Qor::Chart::Host
