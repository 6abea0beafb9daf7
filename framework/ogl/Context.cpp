#include "framework/ogl/Context.h"

#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include <array>
#include <dlfcn.h>
#include <vector>

namespace Qor::Chart::Ogl {

namespace {

using IdentityFunction = void* (*)();

/// The current context of the X window system, whose library is asked only if some part of the program has loaded it.
void const* CurrentGlxContext() {
    static IdentityFunction function = nullptr;
    for (char const* const library : {"libGLX.so.0", "libGL.so.1"}) {
        void* const handle = function == nullptr ? dlopen(library, RTLD_LAZY | RTLD_NOLOAD) : nullptr;
        if (handle != nullptr) {
            function = reinterpret_cast<IdentityFunction>(dlsym(handle, "glXGetCurrentContext"));
        }
    }
    return function == nullptr ? nullptr : function();
}

bool HasExtension(EGLDisplay p_display, char const* p_name) {
    return epoxy_has_egl_extension(p_display, p_name);
}

/// Displays to try, best first: one that needs no window system, then whatever the machine takes for its own.
std::vector<EGLDisplay> Displays() {
    std::vector<EGLDisplay> displays;
    if (HasExtension(EGL_NO_DISPLAY, "EGL_MESA_platform_surfaceless")) {
        displays.push_back(eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    }
    if (HasExtension(EGL_NO_DISPLAY, "EGL_EXT_platform_device")) {
        EGLDeviceEXT device = nullptr;
        EGLint count = 0;
        if (eglQueryDevicesEXT(1, &device, &count) == EGL_TRUE && count > 0) {
            displays.push_back(eglGetPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, device, nullptr));
        }
    }
    displays.push_back(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    return displays;
}

} // namespace

struct Context::Impl {
    Profile profile = Profile::Core;
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
    EGLSurface surface = EGL_NO_SURFACE;
    std::string description;

    /// True when the display gives a context that can be made current; else nothing is left behind.
    bool Open(EGLDisplay p_display);
    void Close();
};

ContextError::~ContextError() = default;

bool Context::Impl::Open(EGLDisplay p_display) {
    display = p_display;
    if (display == EGL_NO_DISPLAY || eglInitialize(display, nullptr, nullptr) != EGL_TRUE) {
        return false;
    }
    constexpr std::array<EGLint, 13> configAttributes = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE,
        EGL_OPENGL_BIT, EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_ALPHA_SIZE, 8, EGL_NONE};
    constexpr std::array<EGLint, 5> surfaceAttributes = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
    std::array<EGLint, 7> const contextAttributes = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 3,
        EGL_CONTEXT_OPENGL_PROFILE_MASK,
        profile == Profile::Core ? EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT : EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT,
        EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (eglBindAPI(EGL_OPENGL_API) != EGL_TRUE ||
        eglChooseConfig(display, configAttributes.data(), &config, 1, &count) != EGL_TRUE || count == 0) {
        return false;
    }
    context = eglCreateContext(display, config, EGL_NO_CONTEXT, contextAttributes.data());
    if (context == EGL_NO_CONTEXT) {
        return false;
    }
    surface = eglCreatePbufferSurface(display, config, surfaceAttributes.data());
    if (eglMakeCurrent(display, surface, surface, context) != EGL_TRUE) {
        Close();
        return false;
    }
    return true;
}

// The display stays initialised: it is shared by all contexts of the process.
void Context::Impl::Close() {
    if (surface != EGL_NO_SURFACE) {
        eglDestroySurface(display, surface);
        surface = EGL_NO_SURFACE;
    }
    if (context != EGL_NO_CONTEXT) {
        eglDestroyContext(display, context);
        context = EGL_NO_CONTEXT;
    }
}

Context::Context(Profile p_profile) : _impl(std::make_unique<Impl>()) {
    _impl->profile = p_profile;
    if (!epoxy_has_egl()) {
        throw ContextError("This machine has no EGL, which drawing without a window takes; install libegl1.");
    }
    bool isOpen = false;
    for (EGLDisplay const display : Displays()) {
        isOpen = isOpen || _impl->Open(display);
    }
    if (!isOpen) {
        throw ContextError("No driver of this machine gives an OpenGL 3.3 context without a window; install "
                           "libgl1-mesa-dri or a driver for the graphics device.");
    }
    auto const text = [](GLenum p_name) {
        auto const* const string = reinterpret_cast<char const*>(glGetString(p_name));
        return std::string(string == nullptr ? "unknown" : string);
    };
    _impl->description = text(GL_RENDERER) + ", OpenGL " + text(GL_VERSION);
}

Context::~Context() {
    DoneCurrent();
    _impl->Close();
}

void Context::MakeCurrent() {
    eglBindAPI(EGL_OPENGL_API);
    if (eglMakeCurrent(_impl->display, _impl->surface, _impl->surface, _impl->context) != EGL_TRUE) {
        throw ContextError("The OpenGL context cannot be made current; it may be current on another thread.");
    }
}

void Context::DoneCurrent() {
    if (IsCurrent()) {
        eglMakeCurrent(_impl->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
}

bool Context::IsCurrent() const {
    return _impl->context != EGL_NO_CONTEXT && eglGetCurrentContext() == _impl->context;
}

Context::Profile Context::GetProfile() const {
    return _impl->profile;
}

std::string Context::Description() const {
    return _impl->description;
}

void const* Context::CurrentIdentity() {
    static bool const hasEgl = epoxy_has_egl();
    if (hasEgl) {
        if (void const* const context = eglGetCurrentContext()) {
            return context;
        }
    }
    return CurrentGlxContext();
}

} // namespace Qor::Chart::Ogl
