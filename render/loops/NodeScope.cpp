#include "render/loops/NodeScope.h"

#include "render/loops/FailureReport.h"
#include "render/core/Vis.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

namespace Qor::Chart::Render {

NodeScope::NodeScope(Vis& p_node, DrawContext& p_outer, ContextRootStack& p_roots) : _node(p_node), _context(&p_outer) {
    if (!p_node.IsFlagged(Vis::VisFlagContextRoot))
        return;
    _own.Open(p_outer, p_roots, p_node);
    _context = &_own.CurrentDrawContext();
}

void NodeScope::ReportCaught(Vis& p_node, DrawContext const& p_context, Stage const& p_stage) noexcept {
    p_node.SetInvalid();
    FailureReport::Caught(p_node, p_context.Dispatcher(), p_context.Verbosity(), p_stage.text,
        Utility::AtLine(p_stage.signature, p_stage.line));
}

void NodeScope::RestoreGraphics(Ogl::Agl& p_agl, Ogl::StackDepths const& p_depths) {
    p_agl.RestoreDepths(p_depths);
    p_agl.MatrixMode(Ogl::Tokens::AGL_MODELVIEW);
}

void NodeScope::RestoreInUnwinding() noexcept {
    try {
        CloseCheckPoint();
    } catch (...) {
        Utility::GetLogger().error("A value of the drawing context could not be applied again after a failure.");
    }
}

} // namespace Qor::Chart::Render
