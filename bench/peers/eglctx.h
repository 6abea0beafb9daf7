// An offscreen OpenGL compatibility context: EGL on Mesa's surfaceless platform, 256x256 pbuffer.
#pragma once
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <cstdio>
#include <cstdlib>
inline void makeGlContext(int size) {
    auto getDpy = (PFNEGLGETPLATFORMDISPLAYEXTPROC)eglGetProcAddress("eglGetPlatformDisplayEXT");
    EGLDisplay d = getDpy ? getDpy(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr) : EGL_NO_DISPLAY;
    EGLint ma, mi, n = 0;
    if (d == EGL_NO_DISPLAY || !eglInitialize(d, &ma, &mi)) {
        std::fprintf(stderr, "EGL: no display\n");
        std::exit(2);
    }
    eglBindAPI(EGL_OPENGL_API);
    const EGLint ca[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_RED_SIZE, 8,
        EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_ALPHA_SIZE, 8, EGL_DEPTH_SIZE, 24, EGL_STENCIL_SIZE, 8, EGL_NONE};
    EGLConfig c;
    if (!eglChooseConfig(d, ca, &c, 1, &n) || n < 1) {
        std::fprintf(stderr, "EGL: no config\n");
        std::exit(2);
    }
    const EGLint pa[] = {EGL_WIDTH, size, EGL_HEIGHT, size, EGL_NONE};
    EGLSurface s = eglCreatePbufferSurface(d, c, pa);
    EGLContext x = eglCreateContext(d, c, EGL_NO_CONTEXT, nullptr);
    if (!s || !x || !eglMakeCurrent(d, s, s, x)) {
        std::fprintf(stderr, "EGL: no context\n");
        std::exit(2);
    }
}
