#include <cairo.h>

#include <cstdint>

#include "tests/support/pixels.h"

namespace korvel::test {

Pixels::Pixels(const std::filesystem::path& file) {
    cairo_surface_t* const surface = cairo_image_surface_create_from_png(file.c_str());
    width_ = cairo_image_surface_get_width(surface);
    height_ = cairo_image_surface_get_height(surface);
    for (int y = 0; y < height_; ++y) {
        const auto* const row = reinterpret_cast<const std::uint32_t*>(
            cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface));
        for (int x = 0; x < width_; ++x) {
            colours_.push_back(RGB(row[x] >> 16 & 255, row[x] >> 8 & 255, row[x] & 255));
        }
    }
    cairo_surface_destroy(surface);
}

} // namespace korvel::test
