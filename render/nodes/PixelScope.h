#pragma once

#include "framework/ogl/Agl.h"
#include "framework/ogl/PushAttribScope.h"
#include "framework/types/Viewport.h"
#include "framework/utility/Scoped.h"
#include "render/Export.h"

namespace Qor::Chart::Render {

/// For as long as it lives, coordinates are pixels from the lower left corner of a viewport, as after `Agl::Ortho2D`,
/// and depths are not tested. So a node that is drawn over the scene has its place also where there is no pane around
/// it.
class QOR_VIS_API PixelScope {
public:
    PixelScope(Utility::Scoped<Ogl::Agl>& p_agl, Types::Viewport<0> const& p_viewport);
    ~PixelScope();
    PixelScope(PixelScope const&) = delete;
    PixelScope& operator=(PixelScope const&) = delete;

private:
    Ogl::Agl& _agl;
    Ogl::PushAttribScope _saved;
};

} // namespace Qor::Chart::Render
