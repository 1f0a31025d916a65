#include "kit/pictures/png_file.h"

#include <cairo.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace korvel::kit {

struct PngPage::Surface {
    explicit Surface(PictureSize size)
        : page(cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height)) {}
    ~Surface() { cairo_surface_destroy(page); }
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    cairo_surface_t* page;
};

PngPage::PngPage(OutputFile& out, PictureSize size)
    : out_(out), surface_(std::make_unique<Surface>(size)) {
    if (const auto status = cairo_surface_status(surface_->page); status != CAIRO_STATUS_SUCCESS) {
        out.fail(cairo_status_to_string(status));
    }
}

PngPage::~PngPage() = default;

int PngPage::stride() const {
    return cairo_image_surface_get_stride(surface_->page);
}

unsigned char* PngPage::pixels() {
    return cairo_image_surface_get_data(surface_->page);
}

void PngPage::write() {
    cairo_surface_mark_dirty(surface_->page);
    const auto write = [](void* file, const unsigned char* data, unsigned size) {
        return std::fwrite(data, 1, size, static_cast<FILE*>(file)) == size
                   ? CAIRO_STATUS_SUCCESS
                   : CAIRO_STATUS_WRITE_ERROR;
    };
    errno = 0;
    const cairo_status_t status =
        cairo_surface_write_to_png_stream(surface_->page, write, out_.stream());
    if (status != CAIRO_STATUS_SUCCESS) {
        out_.fail(errno != 0 ? std::generic_category().message(errno)
                             : cairo_status_to_string(status));
    }
}

} // namespace korvel::kit
