#pragma once

#include "framework/Export.h"
#include "framework/utility/Exception.h"

#include <memory>
#include <string>

namespace Qor::Chart::Ogl {

/// A context or a target could not be made; the text is one sentence that says why.
class QOR_FRAMEWORK_API ContextError : public Utility::Exception {
public:
    using Exception::Exception;
    ~ContextError() override;
};

/// An OpenGL context without a window or a display, through EGL. For offscreen hosts and tests; hosts with a window bring
/// the context of their toolkit and don't need this class.
class QOR_FRAMEWORK_API Context {
public:
    enum class Profile { Core, Compatibility };

    /// Makes a context of OpenGL 3.3 or later and makes it current. Throws ContextError when the machine has no EGL or no
    /// driver that can.
    explicit Context(Profile p_profile = Profile::Core);
    ~Context();
    Context(Context const&) = delete;
    Context& operator=(Context const&) = delete;

    /// Throws ContextError when the system refuses.
    void MakeCurrent();
    /// Leaves the thread without a context, if this one is current.
    void DoneCurrent();
    bool IsCurrent() const;

    Profile GetProfile() const;
    /// Driver and device, for messages.
    std::string Description() const;

    /// Which context is current on this thread, whoever made it; nullptr when none is. Calls nothing that could end the
    /// program on a machine without OpenGL.
    static void const* CurrentIdentity();

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace Qor::Chart::Ogl
