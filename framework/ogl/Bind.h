#pragma once

#include "framework/ogl/Agl.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Scoped.h"

#include <memory>
#include <utility>

namespace Qor::Chart::Ogl {

/// Binds a shader or a primitive buffer for a scope and gives back what was bound before at its end:
///
///     Ogl::Bind<Ogl::Shader> shader(agl, agl->GenFixedFunctionShader());
///     Ogl::Bind<Ogl::PrimitiveBuffer> shape(agl, _shape);
///     agl->Draw();
///
/// An instance that is not valid is reported to the logger and drawn with its fallback. The `Agl` must outlive the scope.
template <class T>
class Bind {
public:
    Bind(Agl& p_agl, std::shared_ptr<T const> p_instance) : _agl(p_agl), _previous(p_agl.Exchange(p_instance)) {
        (void)QOR_ENSURE_TEXT(p_instance == nullptr || p_instance->IsValid(), "_instance.IsValid()");
    }
    Bind(Utility::Scoped<Agl>& p_agl, std::shared_ptr<T const> p_instance) : Bind(*p_agl, std::move(p_instance)) {}
    ~Bind() { _agl.Exchange(std::move(_previous)); }
    Bind(Bind const&) = delete;
    Bind& operator=(Bind const&) = delete;

private:
    Agl& _agl;
    std::shared_ptr<T const> _previous;
};

} // namespace Qor::Chart::Ogl
