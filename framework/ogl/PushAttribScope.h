#pragma once

#include "framework/ogl/Agl.h"
#include "framework/utility/Scoped.h"

namespace Qor::Chart::Ogl {

/// Pushes attribute groups for a scope: `PushAttribScope saved(agl, AGL_CURRENT_BIT);`. The `Agl` must outlive it.
class PushAttribScope {
public:
    PushAttribScope(Agl& p_agl, Token p_mask) : _agl(p_agl) { _agl.PushAttrib(p_mask); }
    PushAttribScope(Utility::Scoped<Agl>& p_agl, Token p_mask) : PushAttribScope(*p_agl, p_mask) {}
    ~PushAttribScope() { _agl.PopAttrib(); }
    PushAttribScope(PushAttribScope const&) = delete;
    PushAttribScope& operator=(PushAttribScope const&) = delete;

private:
    Agl& _agl;
};

} // namespace Qor::Chart::Ogl
