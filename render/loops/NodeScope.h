#pragma once

#include "framework/core/Exceptions.h"
#include "framework/ogl/Agl.h"
#include "framework/ogl/StackDepths.h"
#include "framework/utility/Scoped.h"
#include "render/Export.h"
#include "render/context/AutoDiscontinuity.h"
#include "render/context/DrawContext.h"

namespace Qor::Chart::Render {

class Vis;

/// What surrounds a node in a draw or a pick: its own context where it is a context root, a check point of the context,
/// and the node's setup and teardown. When the scope ends the context is what it was before, and the stacks of the
/// graphics are as deep as before the node's setup, whatever the node did and threw. It stands in the frame that a
/// traversal repeats at every level of the tree, so it is small, and copies no handle.
class QOR_VIS_API NodeScope {
public:
    using SetupFunction = void (*)(Vis&, DrawContext&, Utility::Scoped<Ogl::Agl>&);
    using TeardownFunction = void (*)(Vis&, DrawContext const&, Utility::Scoped<Ogl::Agl>&);

    /// What is reported with an exception: the stage, such as "RenderLoop-Draw", and where it was caught.
    struct Stage {
        char const* text;
        char const* signature;
        int line;
    };

    /// Opens a context of the node's own if it is a context root; it then stands on the stack of context roots.
    NodeScope(Vis& p_node, DrawContext& p_outer, ContextRootStack& p_roots);
    ~NodeScope() {
        if (_hasCheckPoint)
            RestoreInUnwinding();
    }
    NodeScope(NodeScope const&) = delete;
    NodeScope& operator=(NodeScope const&) = delete;

    /// The context for the node and its subtree.
    DrawContext& Context() const noexcept { return *_context; }

    /// Opens the check point, once. What the node writes to the context from now on is undone by `CloseCheckPoint`, or at
    /// the latest at the scope's end.
    void OpenCheckPoint() {
        _context->CreateCheckPoint();
        _hasCheckPoint = true;
    }
    /// Restores the check point; throws what an apply function of the context throws.
    void CloseCheckPoint() {
        _hasCheckPoint = false;
        _context->RestoreCheckPoint();
    }

    /// Runs setup, body and teardown, each where there is one, in one graphics scope. What leaves any of them skips the
    /// rest and is reported; only `Core::TreeTooDeepExcept` goes through.
    template <class Body>
    void Run(SetupFunction p_setup, TeardownFunction p_teardown, Body const& p_body, Stage const& p_stage) {
        Utility::Scoped<Ogl::Agl> agl(_context->Graphics());
        Ogl::StackDepths const depths = agl->Depths();
        try {
            if (p_setup)
                p_setup(_node, *_context, agl);
            p_body();
            if (p_teardown)
                p_teardown(_node, *_context, agl);
            agl->RestoreDepths(depths);
        } catch (Core::TreeTooDeepExcept const&) {
            RestoreGraphics(*agl, depths);
            throw;
        } catch (...) {
            RestoreGraphics(*agl, depths);
            ReportCaught(_node, *_context, p_stage);
        }
    }

    /// Reports the exception that is being handled, whatever its type, and makes the node invalid, so that it is left out
    /// until it is changed. Nothing leaves this operation.
    [[gnu::cold, gnu::noinline]] static void ReportCaught(
        Vis& p_node, DrawContext const& p_context, Stage const& p_stage) noexcept;

    /// Brings the graphics back to where a hook found it, after the hook failed.
    [[gnu::cold, gnu::noinline]] static void RestoreGraphics(Ogl::Agl& p_agl, Ogl::StackDepths const& p_depths);

private:
    [[gnu::cold, gnu::noinline]] void RestoreInUnwinding() noexcept;

    Vis& _node;
    DrawContext* _context;
    AutoDiscontinuity _own;
    bool _hasCheckPoint = false;
};

} // namespace Qor::Chart::Render
