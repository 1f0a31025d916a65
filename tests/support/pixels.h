#pragma once

#include <cairo.h>

#include <cstdint>
#include <filesystem>

#include "korvel/module/korvel.h"

namespace korvel::test {

inline constexpr COLORREF white = RGB(255, 255, 255);
inline constexpr COLORREF black = RGB(0, 0, 0);

/// A PNG read back.
class Pixels {
public:
    explicit Pixels(const std::filesystem::path& file)
        : surface_(cairo_image_surface_create_from_png(file.c_str())) {}
    ~Pixels() { cairo_surface_destroy(surface_); }
    Pixels(const Pixels&) = delete;
    Pixels& operator=(const Pixels&) = delete;

    int width() const { return cairo_image_surface_get_width(surface_); }
    int height() const { return cairo_image_surface_get_height(surface_); }

    COLORREF at(int x, int y) const {
        const unsigned char* row =
            cairo_image_surface_get_data(surface_) + y * cairo_image_surface_get_stride(surface_);
        const auto argb = reinterpret_cast<const std::uint32_t*>(row)[x];
        return RGB(argb >> 16 & 255, argb >> 8 & 255, argb & 255);
    }

private:
    cairo_surface_t* surface_;
};

} // namespace korvel::test
