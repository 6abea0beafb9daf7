#include "render/loops/NodeScope.h"

#include "render/context/EventDispatcher.h"
#include "render/core/Vis.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

#include <exception>
#include <sstream>
#include <string>

namespace Qor::Chart::Render {

namespace {

std::string TextOf(Vis const& p_node, Core::Verbosity p_verbosity) {
    std::ostringstream stream;
    p_node.Dump(stream, p_verbosity, 0);
    std::string text = stream.str();
    while (text.ends_with('\n'))
        text.pop_back();
    return text;
}

/// What the exception that is being handled says.
std::string CaughtText() {
    try {
        throw;
    } catch (std::exception const& failure) {
        return failure.what();
    } catch (...) {
        return "an exception that is no std::exception";
    }
}

} // namespace

NodeScope::NodeScope(Vis& p_node, DrawContext& p_outer, ContextRootStack& p_roots) : _node(p_node), _context(&p_outer) {
    if (!p_node.IsFlagged(Vis::VisFlagContextRoot))
        return;
    _own.Open(p_outer, p_roots, p_node);
    _context = &_own.CurrentDrawContext();
}

void NodeScope::ReportCaught(Vis& p_node, DrawContext const& p_context, Stage const& p_stage) noexcept {
    p_node.SetInvalid();
    try {
        std::string const text =
            TextOf(p_node, p_context.Verbosity()) + " caught exception in " + p_stage.text + ": " + CaughtText();
        p_context.Dispatcher().ReportException(text, Utility::AtLine(p_stage.signature, p_stage.line));
    } catch (...) {
        Utility::GetLogger().error(
            "The report of a failed node could not be handed to the host; see that its dispatcher takes reports "
            "without throwing.");
    }
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
