#include "render/context/AutoDiscontinuity.h"

#include "render/context/DrawContext.h"
#include "render/context/EventDispatcher.h"
#include "render/core/Vis.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Exception.h"

#include <boost/shared_ptr.hpp>

#include <utility>

namespace Qor::Chart::Render {

struct AutoDiscontinuity::Pending {
    Pending(boost::shared_ptr<EventDispatcher> p_dispatcher, DrawContext const& p_source, ContextRootStack* p_roots)
        : dispatcher(std::move(p_dispatcher)), context(p_source, *dispatcher), roots(p_roots) {}
    ~Pending() {
        if (roots)
            roots->pop();
    }
    Pending(Pending const&) = delete;
    Pending& operator=(Pending const&) = delete;

    boost::shared_ptr<EventDispatcher> dispatcher;
    DrawContext context;
    ContextRootStack* roots; ///< null when somebody else takes the node off the stack
};

namespace {

boost::shared_ptr<EventDispatcher> DispatcherFor(DrawContext const& p_outer, Core::WeakPtr<Vis> const& p_node) {
    boost::shared_ptr<EventDispatcher> dispatcher = p_outer.Dispatcher().DispatcherOf(p_node);
    if (QOR_ENSURE(dispatcher))
        return dispatcher;
    return {boost::shared_ptr<void>(), &p_outer.Dispatcher()};
}

} // namespace

AutoDiscontinuity::AutoDiscontinuity() noexcept = default;

AutoDiscontinuity::AutoDiscontinuity(DrawContext const& p_outer, ContextRootStack& p_roots, Vis& p_node) {
    Open(p_outer, p_roots, p_node);
}

AutoDiscontinuity::~AutoDiscontinuity() = default;

void AutoDiscontinuity::Open(DrawContext const& p_outer, ContextRootStack& p_roots, Vis& p_node) {
    Core::WeakPtr<Vis> const node(&p_node);
    (void)QOR_ENSURE(!_pending);
    _pending.reset();
    _pending = std::make_unique<Pending>(DispatcherFor(p_outer, node), p_outer, nullptr);
    p_roots.push(node);
    _pending->roots = &p_roots;
}

DrawContext& AutoDiscontinuity::CurrentDrawContext() const {
    if (!QOR_ENSURE(_pending))
        throw Utility::Exception("There is no drawing context here: none was opened for a context root.");
    return _pending->context;
}

void AutoDiscontinuity::TransferOwnershipFrom(AutoDiscontinuity& p_other) {
    if (&p_other == this)
        return;
    (void)QOR_ENSURE(!_pending);
    _pending.reset();
    if (!p_other._pending)
        return;
    _pending = std::make_unique<Pending>(
        p_other._pending->dispatcher, p_other._pending->context, std::exchange(p_other._pending->roots, nullptr));
    p_other._pending.reset();
}

} // namespace Qor::Chart::Render
