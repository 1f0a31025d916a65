#include "kit/pictures/offscreen_renderer.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>

#include "kit/base/error.h"
#include "kit/pictures/gl_context.h"
#include "kit/pictures/gl_view.h"
#include "kit/pictures/png_file.h"

namespace korvel::kit {
namespace {

void check_size(PictureSize size);
void forget_errors();

} // namespace

/// What the context draws on: a frame with several samples for each pixel and one that takes their
/// means. Inside of a face the samples agree, so its colour comes through as it is.
struct OffscreenRenderer::Page {
    enum { drawn, shown };

    PFNGLGENFRAMEBUFFERSPROC generate_frames = nullptr;
    PFNGLDELETEFRAMEBUFFERSPROC delete_frames = nullptr;
    PFNGLBINDFRAMEBUFFERPROC bind_frame = nullptr;
    PFNGLCHECKFRAMEBUFFERSTATUSPROC frame_status = nullptr;
    PFNGLBLITFRAMEBUFFERPROC copy_frame = nullptr;
    PFNGLFRAMEBUFFERRENDERBUFFERPROC attach_buffer = nullptr;
    PFNGLGENRENDERBUFFERSPROC generate_buffers = nullptr;
    PFNGLDELETERENDERBUFFERSPROC delete_buffers = nullptr;
    PFNGLBINDRENDERBUFFERPROC bind_buffer = nullptr;
    PFNGLRENDERBUFFERSTORAGEMULTISAMPLEPROC size_buffer = nullptr;
    GLuint frames[2] = {};
    GLuint buffers[3] = {}; // colour and depth to draw, colour to show

    Page();
    ~Page();
    bool make(PictureSize size, int samples);
    void add_buffer(GLuint buffer, GLenum part, GLenum format, PictureSize size, int samples);
    void take_means(PictureSize size) const;
};

OffscreenRenderer::OffscreenRenderer(PictureSize size)
    : size_(size), context_(std::make_unique<GlContext>()) {
    // Larger pages need no smoothing, and several samples of each pixel would take gigabytes.
    constexpr long long most_sampled_pixels = 1LL << 24;
    check_size(size);
    page_ = std::make_unique<Page>();
    GLint samples = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &samples);
    samples = std::min(samples, 4);
    if (static_cast<long long>(size.width) * size.height > most_sampled_pixels) {
        samples = 0;
    }
    if (!page_->make(size, samples) && !page_->make(size, 0)) {
        throw output_error("OpenGL has no memory for a picture of this size");
    }
}

OffscreenRenderer::~OffscreenRenderer() = default;

void OffscreenRenderer::bind() {
    page_->bind_frame(GL_FRAMEBUFFER, page_->frames[Page::drawn]);
}

void OffscreenRenderer::begin(const ViewFrame& frame) {
    bind();
    begin_view(frame);
}

void OffscreenRenderer::write_png(OutputFile& out) {
    page_->take_means(size_);
    PngPage page(out, size_);
    glPixelStorei(GL_PACK_ROW_LENGTH, page.stride() / 4);
    glReadPixels(0, 0, size_.width, size_.height, GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV,
                 page.pixels());
    if (const GLenum error = glGetError(); error != GL_NO_ERROR) {
        char code[40];
        std::snprintf(code, sizeof code, "OpenGL error 0x%04x", error);
        out.fail(code);
    }
    // OpenGL counts rows from the bottom.
    for (int row = 0; row < size_.height / 2; ++row) {
        unsigned char* const upper = page.row(row);
        std::swap_ranges(upper, upper + page.stride(), page.row(size_.height - 1 - row));
    }
    page.write();
}

OffscreenRenderer::Page::Page() {
    const auto find = [](const char* name, auto& function) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
            GlContext::function(name));
        if (function == nullptr) {
            GlContext::fail(std::string(name) + " is missing");
        }
    };
    const char* const version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    if (version == nullptr || std::atoi(version) < 3) {
        GlContext::fail(std::string("version 3 is needed, this is ") +
                        (version != nullptr ? version : "none"));
    }
    find("glGenFramebuffers", generate_frames);
    find("glDeleteFramebuffers", delete_frames);
    find("glBindFramebuffer", bind_frame);
    find("glCheckFramebufferStatus", frame_status);
    find("glBlitFramebuffer", copy_frame);
    find("glFramebufferRenderbuffer", attach_buffer);
    find("glGenRenderbuffers", generate_buffers);
    find("glDeleteRenderbuffers", delete_buffers);
    find("glBindRenderbuffer", bind_buffer);
    find("glRenderbufferStorageMultisample", size_buffer);
    generate_frames(2, frames);
    generate_buffers(3, buffers);
}

OffscreenRenderer::Page::~Page() {
    delete_frames(2, frames);
    delete_buffers(3, buffers);
}

/// Returns false when there is not enough memory.
bool OffscreenRenderer::Page::make(PictureSize size, int samples) {
    forget_errors();
    bind_frame(GL_FRAMEBUFFER, frames[shown]);
    add_buffer(buffers[2], GL_COLOR_ATTACHMENT0, GL_RGBA8, size, 0);
    bool is_complete = frame_status(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    bind_frame(GL_FRAMEBUFFER, frames[drawn]);
    add_buffer(buffers[0], GL_COLOR_ATTACHMENT0, GL_RGBA8, size, samples);
    add_buffer(buffers[1], GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24, size, samples);
    is_complete = frame_status(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE && is_complete;
    return glGetError() == GL_NO_ERROR && is_complete;
}

void OffscreenRenderer::Page::add_buffer(GLuint buffer, GLenum part, GLenum format,
                                         PictureSize size, int samples) {
    bind_buffer(GL_RENDERBUFFER, buffer);
    size_buffer(GL_RENDERBUFFER, samples, format, size.width, size.height);
    attach_buffer(GL_FRAMEBUFFER, part, GL_RENDERBUFFER, buffer);
}

void OffscreenRenderer::Page::take_means(PictureSize size) const {
    bind_frame(GL_READ_FRAMEBUFFER, frames[drawn]);
    bind_frame(GL_DRAW_FRAMEBUFFER, frames[shown]);
    copy_frame(0, 0, size.width, size.height, 0, 0, size.width, size.height, GL_COLOR_BUFFER_BIT,
               GL_NEAREST);
    bind_frame(GL_READ_FRAMEBUFFER, frames[shown]);
}

namespace {

void check_size(PictureSize size) {
    GLint largest[2] = {};
    GLint buffer = 0;
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, largest);
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &buffer);
    const int width = std::min(largest[0], buffer);
    const int height = std::min(largest[1], buffer);
    if (size.width > width || size.height > height) {
        throw input_error("a picture of " + std::to_string(size.width) + "x" +
                          std::to_string(size.height) + " is larger than the " +
                          std::to_string(width) + "x" + std::to_string(height) +
                          " that OpenGL draws here");
    }
}

void forget_errors() {
    constexpr int most_flags = 16; // a context that is lost reports errors for ever
    for (int i = 0; i < most_flags && glGetError() != GL_NO_ERROR; ++i) {
    }
}

} // namespace
} // namespace korvel::kit
