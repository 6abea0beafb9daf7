#include "framework/ogl/OffscreenTarget.h"

#include "framework/ogl/Context.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <string>

namespace Qor::Chart::Ogl {

namespace {

/// Which buffers are bound to be drawn into and read from.
struct Binding {
    GLint draw = 0;
    GLint read = 0;

    static Binding Current() {
        Binding binding;
        glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &binding.draw);
        glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &binding.read);
        return binding;
    }
    void Bind() const {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(draw));
        glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(read));
    }
};

/// A frame buffer with its storage.
struct Surface {
    GLuint target = 0;
    GLuint colors = 0;
    GLuint depths = 0;

    /// Makes the buffers and leaves them bound; false when the device refuses.
    bool Make(int p_width, int p_height, int p_samples, bool p_withDepth) {
        glGenFramebuffers(1, &target);
        glBindFramebuffer(GL_FRAMEBUFFER, target);
        colors = Attach(GL_COLOR_ATTACHMENT0, GL_RGBA8, p_width, p_height, p_samples);
        if (p_withDepth) {
            depths = Attach(GL_DEPTH_STENCIL_ATTACHMENT, GL_DEPTH24_STENCIL8, p_width, p_height, p_samples);
        }
        return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }
    void Delete() {
        glDeleteFramebuffers(1, &target);
        glDeleteRenderbuffers(1, &colors);
        glDeleteRenderbuffers(1, &depths);
        *this = {};
    }

private:
    static GLuint Attach(GLenum p_point, GLenum p_format, int p_width, int p_height, int p_samples) {
        GLuint storage = 0;
        glGenRenderbuffers(1, &storage);
        glBindRenderbuffer(GL_RENDERBUFFER, storage);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, p_samples, p_format, p_width, p_height);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, p_point, GL_RENDERBUFFER, storage);
        return storage;
    }
};

GLint Limit(GLenum p_name) {
    GLint limit = 0;
    glGetIntegerv(p_name, &limit);
    return limit;
}

} // namespace

struct OffscreenTarget::Impl {
    void const* context = nullptr;
    int width = 0;
    int height = 0;
    int samples = 0;
    Surface surface;
    Surface resolved; ///< only with several samples a pixel
    Binding previous;

    void RequireContext() const {
        if (Context::CurrentIdentity() != context) {
            throw ContextError("The picture belongs to an OpenGL context that is not current; make it current first.");
        }
    }
};

OffscreenTarget::OffscreenTarget(int p_width, int p_height, int p_samples) : _impl(std::make_unique<Impl>()) {
    _impl->context = Context::CurrentIdentity();
    if (_impl->context == nullptr) {
        throw ContextError("A picture in memory takes an OpenGL context, and none is current; make one current first.");
    }
    int const limit = std::min(Limit(GL_MAX_RENDERBUFFER_SIZE), Limit(GL_MAX_TEXTURE_SIZE));
    std::string const size = std::to_string(p_width) + " by " + std::to_string(p_height);
    if (p_width < 1 || p_height < 1 || p_width > limit || p_height > limit) {
        throw ContextError("A picture of " + size + " pixels cannot be made; each side must lie between 1 and " +
            std::to_string(limit) + ".");
    }
    _impl->width = p_width;
    _impl->height = p_height;
    _impl->samples = p_samples > 1 ? std::min(p_samples, Limit(GL_MAX_SAMPLES)) : 0;
    _impl->samples = _impl->samples > 1 ? _impl->samples : 0;
    Binding const before = Binding::Current();
    bool isMade = _impl->surface.Make(p_width, p_height, _impl->samples, true);
    if (_impl->samples > 0) {
        isMade = _impl->resolved.Make(p_width, p_height, 0, false) && isMade;
    }
    before.Bind();
    if (!isMade) {
        _impl->surface.Delete();
        _impl->resolved.Delete();
        throw ContextError("The device refuses a picture of " + size + " pixels with " +
            std::to_string(_impl->samples) + " samples each.");
    }
}

OffscreenTarget::~OffscreenTarget() {
    if (Context::CurrentIdentity() == _impl->context) {
        _impl->surface.Delete();
        _impl->resolved.Delete();
    }
}

int OffscreenTarget::Width() const {
    return _impl->width;
}

int OffscreenTarget::Height() const {
    return _impl->height;
}

int OffscreenTarget::Samples() const {
    return _impl->samples;
}

void OffscreenTarget::Bind() {
    _impl->RequireContext();
    _impl->previous = Binding::Current();
    glBindFramebuffer(GL_FRAMEBUFFER, _impl->surface.target);
}

void OffscreenTarget::Release() {
    _impl->RequireContext();
    _impl->previous.Bind();
}

QImage OffscreenTarget::Read() {
    _impl->RequireContext();
    Binding const before = Binding::Current();
    GLboolean const scissor = glIsEnabled(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, _impl->surface.target);
    if (_impl->samples > 0) {
        glDisable(GL_SCISSOR_TEST);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, _impl->resolved.target);
        glBlitFramebuffer(
            0, 0, _impl->width, _impl->height, 0, 0, _impl->width, _impl->height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, _impl->resolved.target);
    }
    QImage image(_impl->width, _impl->height, QImage::Format_RGBA8888);
    GLint const packBuffer = Limit(GL_PIXEL_PACK_BUFFER_BINDING);
    GLint const alignment = Limit(GL_PACK_ALIGNMENT);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, _impl->width, _impl->height, GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    glPixelStorei(GL_PACK_ALIGNMENT, alignment);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, static_cast<GLuint>(packBuffer));
    before.Bind();
    if (scissor == GL_TRUE) {
        glEnable(GL_SCISSOR_TEST);
    }
    return image.mirrored();
}

} // namespace Qor::Chart::Ogl
