#include "render/loops/UpdateRun.h"

#include "render/core/Vis.h"
#include "render/loops/FailureReport.h"
#include "render/loops/NodeScope.h"

#include "framework/utility/Ensure.h"
#include "framework/utility/Logger.h"

#include <string>

namespace Qor::Chart::Render {

namespace {

qordebug::channel const& NodeChannel() {
    static qordebug::channel const& channel = Utility::GetLogger().get_channel("UpdateLoop");
    return channel;
}

} // namespace

UpdateRun::UpdateRun(UpdateContext const& p_context, unsigned& p_visited, unsigned& p_updated)
    : context(p_context)
    , visited(p_visited)
    , updated(p_updated)
    , _agl(p_context.Graphics())
    , _isLogged(NodeChannel().enabled()) {
    _agl->PushAttrib(Ogl::Tokens::AGL_ALL_ATTRIB_BITS);
    _depths = _agl->Depths();
}

UpdateRun::~UpdateRun() {
    _agl->RestoreDepths(_depths);
    _agl->PopAttrib();
}

void UpdateRun::Caught(Vis const& p_vis, char const* p_stage, char const* p_signature, int p_line) {
    NodeScope::RestoreGraphics(*_agl, _depths);
    std::string const stage = std::string("UpdateLoop-") + p_stage;
    FailureReport::Caught(
        p_vis, context.Dispatcher(), context.Verbosity(), stage.c_str(), Utility::AtLine(p_signature, p_line));
}

void UpdateRun::Log(Vis const& p_vis) {
    _typePath.push_back(p_vis.TypeNumber());
    auto stream = Utility::GetLogger().out(NodeChannel());
    stream << "\ttype-path: ";
    for (std::uint16_t const type : _typePath)
        stream << '/' << type;
    stream << "\n\tname-path: " << p_vis.GetPath();
}

} // namespace Qor::Chart::Render
