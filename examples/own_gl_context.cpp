// Solids drawn in an OpenGL context of the program's own. Here it has no window, and the pixels are
// written as PPM; a window calls `draw_view` when it paints.

#include <EGL/egl.h>
#include <EGL/eglext.h> // EGL_PLATFORM_SURFACELESS_MESA
#include <GL/gl.h>

#include <cstdio>

#include "kit/kit.h"

using namespace korvel::kit;

/// Makes a context current that draws on a page of the given size.
static void make_context(PictureSize size) {
    EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_DEPTH_SIZE, 24, EGL_NONE};
    const EGLint page[] = {EGL_WIDTH, size.width, EGL_HEIGHT, size.height, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    eglInitialize(display, nullptr, nullptr);
    eglBindAPI(EGL_OPENGL_API);
    eglChooseConfig(display, wanted, &config, 1, &found);
    EGLSurface surface = eglCreatePbufferSurface(display, config, page);
    EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    if (eglMakeCurrent(display, surface, surface, context) == EGL_FALSE) {
        throw output_error("there is no OpenGL to draw with");
    }
}

int main(int argc, char** argv) try {
    if (argc != 2) {
        throw input_error("usage: own_gl_context PICTURE.ppm");
    }
    Solids solids = make_ball({0, 0, 0}, 10, 3);
    solids.set_colour(0, {.hue = 210});
    solids.add(make_cuboid({0, 0, -12}, {30, 30, 4}));
    solids.set_view({.turn = 30, .tilt = -65});

    ViewOptions options = {.size = {800, 600}};
    make_context(options.size);
    const ViewFrame frame = view_frame(solids, options);
    options.marked = solids.pick(frame.u_of(400), frame.v_of(200)); // a click
    draw_view(solids, frame, options);
    const auto [width, height] = options.size;
    std::vector<unsigned char> pixels(3UL * width * height);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    OutputFile file(argv[1]);
    std::fprintf(file.stream(), "P6 %d %d 255\n", width, height);
    for (int row = height - 1; row >= 0; --row) { // OpenGL counts from the bottom
        std::fwrite(&pixels[3UL * width * row], 3, width, file.stream());
    }
    file.replace();
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
