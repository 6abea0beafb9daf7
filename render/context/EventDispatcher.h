#pragma once

#include "framework/core/WeakPtr.h"
#include "render/Export.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>

namespace Qor::Chart::Model {
class ModelNode;
namespace Events {
class Event;
}
} // namespace Qor::Chart::Model

namespace Qor::Chart::Render {

class Vis;

/// What contexts, traversals and nodes ask of the host: to take reports, to pass events on to the model's listeners and
/// to draw again. The host implements it, once for the window and, where it likes, once more for single panes. Everything
/// is called on the rendering thread, often in the middle of a traversal: an implementation keeps what it is told and
/// acts on it afterwards; in particular it delivers events only when no traversal runs.
class QOR_VIS_API EventDispatcher {
public:
    virtual ~EventDispatcher();
    EventDispatcher(EventDispatcher const&) = delete;
    EventDispatcher& operator=(EventDispatcher const&) = delete;

    /// The dispatcher that serves a context root and its subtree. It may be this one, held by a pointer that owns
    /// nothing; it is never empty, and lives at least as long as the pointer.
    virtual boost::shared_ptr<EventDispatcher> DispatcherOf(Core::WeakPtr<Vis> const& p_node) = 0;

    /// Takes the report of an exception that left a node's hook; the node is invalid from now on.
    /// @param p_text      the node and the stage, as one line
    /// @param p_location  the signature of the function that caught it, and the line
    virtual void ReportException(std::string const& p_text, std::string const& p_location) = 0;

    /// Takes a warning about a node.
    /// @param p_level  1 is worth knowing, 2 needs the user: the node stays out of the picture until it is changed
    virtual void ReportWarning(
        Vis const& p_node, std::string const& p_text, std::string const& p_location, int p_level) = 0;

    /// Passes an event on to those who listen to a model node, after the traversal that is under way.
    virtual void DispatchEvent(
        Core::WeakPtr<Model::ModelNode> const& p_node, std::shared_ptr<Model::Events::Event const> p_event) = 0;

    /// Asks for another frame. Requests that fall together make one frame.
    /// @param p_milliseconds  how long it may take until then; 0 means with the next frame
    virtual void RequestRedraw(int p_milliseconds) = 0;

    /// Asks for an update of the visual tree before the next frame.
    virtual void RequestUpdate() = 0;

protected:
    EventDispatcher();
};

} // namespace Qor::Chart::Render
