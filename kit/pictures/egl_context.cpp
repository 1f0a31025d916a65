#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstdio>
#include <cstring>

#include "kit/pictures/gl_context.h"

namespace korvel::kit {
namespace {

EGLDisplay open_display();
std::string egl_error();

} // namespace

/// The connection to EGL. A member left empty has not been made.
struct GlContext::System {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;

    ~System();
    void open();
};

GlContext::GlContext() : system_(std::make_unique<System>()) {
    system_->open();
}

GlContext::~GlContext() = default;

GlContext::Function GlContext::function(const char* name) {
    return eglGetProcAddress(name);
}

void GlContext::System::open() {
    display = open_display();
    if (eglBindAPI(EGL_OPENGL_API) == EGL_FALSE) {
        fail(egl_error());
    }
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                             EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    if (eglChooseConfig(display, wanted, &config, 1, &found) == EGL_FALSE || found == 0) {
        fail("no configuration draws without a window");
    }
    // A context needs a surface to be current. The drawing goes to a framebuffer, which may be
    // larger than any surface.
    const EGLint one_pixel[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
    surface = eglCreatePbufferSurface(display, config, one_pixel);
    context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    if (surface == EGL_NO_SURFACE || context == EGL_NO_CONTEXT ||
        eglMakeCurrent(display, surface, surface, context) == EGL_FALSE) {
        fail(egl_error());
    }
}

// The display stays open: it belongs to the process, and others may be using it.
GlContext::System::~System() {
    if (display == EGL_NO_DISPLAY) {
        return;
    }
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (context != EGL_NO_CONTEXT) {
        eglDestroyContext(display, context);
    }
    if (surface != EGL_NO_SURFACE) {
        eglDestroySurface(display, surface);
    }
    eglReleaseThread();
}

namespace {

// Mesa's display without a window system where there is one, since the other needs a running
// window system on some machines.
EGLDisplay open_display() {
    const char* const extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (extensions != nullptr &&
        std::strstr(extensions, "EGL_MESA_platform_surfaceless") != nullptr) {
        const auto platform_display = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
            eglGetProcAddress("eglGetPlatformDisplayEXT"));
        EGLDisplay display =
            platform_display == nullptr
                ? EGL_NO_DISPLAY
                : platform_display(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) == EGL_TRUE) {
            return display;
        }
    }
    EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    if (display == EGL_NO_DISPLAY) {
        GlContext::fail("no display");
    }
    if (eglInitialize(display, nullptr, nullptr) == EGL_FALSE) {
        GlContext::fail(egl_error());
    }
    return display;
}

std::string egl_error() {
    char code[24];
    std::snprintf(code, sizeof code, "EGL error 0x%04x", eglGetError());
    return code;
}

} // namespace
} // namespace korvel::kit
