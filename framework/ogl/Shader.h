#pragma once

#include "framework/Export.h"
#include "framework/ogl/DeviceResource.h"
#include "framework/ogl/ShaderSource.h"

#include <cstdint>
#include <string>

namespace Qor::Chart::Ogl {

/// A shader that primitives can be drawn with, bound with `Bind<Shader>`. Made by `Agl::GenShader` and its siblings, which
/// share equal ones, and shared by handle. The programs behind it are compiled when they are first needed. One that does
/// not compile makes the shader invalid, leaves the driver's words in the log, reports them once through
/// `Agl::CheckError`, and draws in the plain colour of the vertices instead.
class QOR_FRAMEWORK_API Shader : public DeviceResource {
public:
    /// p_options are the bits that the source reads as `options`.
    explicit Shader(ShaderSource const& p_source, std::uint32_t p_options = 0);
    virtual ~Shader();

    /// False once a program of this shader did not compile.
    bool IsValid() const { return _log.empty(); }
    /// The driver's words about a program that did not compile; else empty.
    std::string const& Log() const { return _log; }
    ShaderSource const& Source() const { return _source; }
    std::uint32_t Options() const { return _options; }

    /// Called by the back end when a program did not compile.
    void Fail(std::string const& p_log) const;

private:
    ShaderSource _source;
    std::uint32_t _options;
    mutable std::string _log;
};

} // namespace Qor::Chart::Ogl
