#include "kit/pictures/picture_canvas.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace korvel::kit {

struct PictureCanvas::Page {
    struct Destroy {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
        void operator()(cairo_t* context) const { cairo_destroy(context); }
    };

    Page(OutputFile& file, int units) : out(file), units_per_pixel(units) {}
    double at(int device) const;
    void set_source(COLORREF colour);
    void stroke(const CPen& pen);
    void check(cairo_status_t status) const;
    static cairo_status_t write(void* page, const unsigned char* data, unsigned size);

    OutputFile& out;
    int units_per_pixel;
    int write_error = 0;
    std::unique_ptr<cairo_surface_t, Destroy> surface;
    std::unique_ptr<cairo_t, Destroy> context;
};

bool is_painted(PictureFormat /*format*/) {
    return true;
}

PictureCanvas::PictureCanvas(OutputFile& out, PictureFormat format, PictureSize size,
                             int units_per_pixel)
    : format_(format), size_(size), units_per_pixel_(units_per_pixel),
      page_(std::make_unique<Page>(out, units_per_pixel)) {
    switch (format) {
    case PictureFormat::png:
        page_->surface.reset(
            cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height));
        break;
    case PictureFormat::svg:
        page_->surface.reset(
            cairo_svg_surface_create_for_stream(Page::write, page_.get(), size.width, size.height));
        break;
    case PictureFormat::pdf:
        page_->surface.reset(
            cairo_pdf_surface_create_for_stream(Page::write, page_.get(), size.width, size.height));
        break;
    }
    page_->context.reset(cairo_create(page_->surface.get()));
    page_->check(cairo_status(page_->context.get()));
    cairo_set_line_join(page_->context.get(), CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(page_->context.get(), CAIRO_LINE_CAP_ROUND);
    page_->set_source(background_);
    cairo_paint(page_->context.get());
}

PictureCanvas::~PictureCanvas() = default;

void PictureCanvas::finish() {
    page_->check(cairo_status(page_->context.get()));
    if (format_ == PictureFormat::png) {
        page_->check(
            cairo_surface_write_to_png_stream(page_->surface.get(), Page::write, page_.get()));
    }
    page_->context.reset();
    cairo_surface_finish(page_->surface.get());
    page_->check(cairo_surface_status(page_->surface.get()));
}

void PictureCanvas::write_text(const std::string& text, double x, double y, double size,
                               Anchor anchor) {
    const double width = text_width(text, size);
    cairo_font_extents_t font = {};
    cairo_font_extents(page_->context.get(), &font);
    const double part = anchor == Anchor::start ? 0 : anchor == Anchor::middle ? 0.5 : 1;
    page_->set_source(pen_->colour);
    cairo_move_to(page_->context.get(), x - part * width, y + (font.ascent - font.descent) / 2);
    cairo_show_text(page_->context.get(), text.c_str());
    cairo_new_path(page_->context.get());
}

double PictureCanvas::text_width(const std::string& text, double size) {
    cairo_select_font_face(page_->context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(page_->context.get(), size);
    cairo_text_extents_t extents = {};
    cairo_text_extents(page_->context.get(), text.c_str(), &extents);
    return extents.x_advance;
}

BOOL PictureCanvas::LineTo(int x, int y) {
    cairo_move_to(page_->context.get(), page_->at(position_.x), page_->at(position_.y));
    cairo_line_to(page_->context.get(), page_->at(x), page_->at(y));
    page_->stroke(*pen_);
    position_ = {x, y};
    return 1;
}

BOOL PictureCanvas::PolyPolygon(const POINT* points, const int* counts, int polygons) {
    for (int polygon = 0; polygon < polygons; ++polygon) {
        cairo_new_sub_path(page_->context.get());
        for (int i = 0; i < counts[polygon]; ++i, ++points) {
            cairo_line_to(page_->context.get(), page_->at(points->x), page_->at(points->y));
        }
        cairo_close_path(page_->context.get());
    }
    cairo_set_fill_rule(page_->context.get(), fill_mode_ == ALTERNATE ? CAIRO_FILL_RULE_EVEN_ODD
                                                                      : CAIRO_FILL_RULE_WINDING);
    page_->set_source(brush_->colour);
    cairo_fill_preserve(page_->context.get());
    page_->stroke(*pen_);
    return 1;
}

// Device coordinates are the middles of pixels, so that a line of one pixel's width fills exactly
// that pixel.
double PictureCanvas::Page::at(int device) const {
    // Farther out Cairo's fixed-point coordinates would wrap around.
    constexpr double farthest = 1e6;
    return std::clamp((device + 0.5) / units_per_pixel, -farthest, farthest);
}

void PictureCanvas::Page::set_source(COLORREF colour) {
    cairo_set_source_rgb(context.get(), GetRValue(colour) / 255.0, GetGValue(colour) / 255.0,
                         GetBValue(colour) / 255.0);
}

void PictureCanvas::Page::stroke(const CPen& pen) {
    constexpr double thinnest = 0.25;
    set_source(pen.colour);
    cairo_set_line_width(context.get(), std::max(thinnest, pen.width / double(units_per_pixel)));
    cairo_stroke(context.get());
}

// Cairo reports that a write failed, not why; `write` has stored the system's reason.
void PictureCanvas::Page::check(cairo_status_t status) const {
    if (status == CAIRO_STATUS_SUCCESS) {
        return;
    }
    out.fail(write_error != 0 ? std::generic_category().message(write_error)
                              : cairo_status_to_string(status));
}

cairo_status_t PictureCanvas::Page::write(void* page, const unsigned char* data, unsigned size) {
    auto& self = *static_cast<Page*>(page);
    if (std::fwrite(data, 1, size, self.out.stream()) == size) {
        return CAIRO_STATUS_SUCCESS;
    }
    self.write_error = self.write_error != 0 ? self.write_error : errno;
    return CAIRO_STATUS_WRITE_ERROR;
}

} // namespace korvel::kit
