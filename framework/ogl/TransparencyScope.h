#pragma once

#include "framework/ogl/Agl.h"

namespace Qor::Chart::Ogl {

/// Lets transparent draws wait for each other until the scope ends; see `Agl::BeginTransparency`. The `Agl` must
/// outlive it; without one the scope does nothing.
class TransparencyScope {
public:
    explicit TransparencyScope(Agl* p_agl) : _agl(p_agl) {
        if (_agl)
            _agl->BeginTransparency();
    }
    ~TransparencyScope() {
        if (_agl)
            _agl->EndTransparency();
    }
    TransparencyScope(TransparencyScope const&) = delete;
    TransparencyScope& operator=(TransparencyScope const&) = delete;

private:
    Agl* _agl;
};

} // namespace Qor::Chart::Ogl
