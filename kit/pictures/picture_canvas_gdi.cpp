#include "kit/pictures/picture_canvas.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "kit/base/error.h"
#include "kit/pictures/gdi_canvas.h"
#include "kit/pictures/png_file.h"

namespace korvel::kit {
namespace {

int samples_for(PictureSize size);

} // namespace

/// GDI draws hard edges. It paints on a page with `samples` times the width and the height, and the
/// picture takes the means.
struct PictureCanvas::Page {
    /// A bitmap in memory that GDI paints on, white at the start.
    struct Bitmap {
        HDC device = CreateCompatibleDC(nullptr);
        HBITMAP bitmap = nullptr; // null where there is not enough memory
        HGDIOBJ first = nullptr;
        const std::uint32_t* pixels = nullptr;

        Bitmap(int width, int height);
        ~Bitmap();
        Bitmap(const Bitmap&) = delete;
        Bitmap& operator=(const Bitmap&) = delete;
    };

    OutputFile& out;
    PictureSize size;
    int units_per_pixel;
    int samples;
    Bitmap bitmap;
    GdiCanvas canvas;
    CPen pen;
    std::vector<POINT> points;
    bool has_failed = false;

    Page(OutputFile& file, PictureSize page, int units);
    int at(int device) const;
    void select(const CPen& wanted);
    void take_means(int y, unsigned char* row) const;
};

bool is_painted(PictureFormat format) {
    return format == PictureFormat::png;
}

PictureCanvas::PictureCanvas(OutputFile& out, PictureFormat format, PictureSize size,
                             int units_per_pixel)
    : format_(format), size_(size), units_per_pixel_(units_per_pixel) {
    if (!is_painted(format)) {
        throw input_error("this korvel paints pictures as PNG only");
    }
    page_ = std::make_unique<Page>(out, size, units_per_pixel);
}

PictureCanvas::~PictureCanvas() = default;

void PictureCanvas::finish() {
    GdiFlush();
    if (page_->has_failed) {
        page_->out.fail("GDI could not paint the picture");
    }
    PngPage page(page_->out, size_);
    for (int y = 0; y < size_.height; ++y) {
        page_->take_means(y, page.row(y));
    }
    page.write();
}

void PictureCanvas::write_text(const std::string& text, double x, double y, double size,
                               Anchor anchor) {
    page_->select(*pen_);
    const int samples = page_->samples;
    page_->canvas.write_text(text, x * samples, y * samples, size * samples, anchor);
}

double PictureCanvas::text_width(const std::string& text, double size) {
    return page_->canvas.text_width(text, size * page_->samples) / page_->samples;
}

BOOL PictureCanvas::LineTo(int x, int y) {
    page_->select(*pen_);
    page_->canvas.MoveTo(page_->at(position_.x), page_->at(position_.y));
    if (page_->canvas.LineTo(page_->at(x), page_->at(y)) == 0) {
        page_->has_failed = true;
    }
    position_ = {x, y};
    return 1;
}

BOOL PictureCanvas::PolyPolygon(const POINT* points, const int* counts, int polygons) {
    page_->points.clear();
    for (int polygon = 0; polygon < polygons; ++polygon) {
        for (int i = 0; i < counts[polygon]; ++i, ++points) {
            page_->points.push_back({page_->at(points->x), page_->at(points->y)});
        }
    }
    page_->select(*pen_);
    page_->canvas.SelectObject(brush_);
    page_->canvas.SetPolyFillMode(fill_mode_);
    if (page_->canvas.PolyPolygon(page_->points.data(), counts, polygons) == 0) {
        page_->has_failed = true;
    }
    return 1;
}

PictureCanvas::Page::Page(OutputFile& file, PictureSize page, int units)
    : out(file), size(page), units_per_pixel(units), samples(samples_for(page)),
      bitmap(page.width * samples, page.height * samples), canvas(bitmap.device, units) {
    if (bitmap.bitmap == nullptr) {
        out.fail("out of memory");
    }
}

// Samples instead of pixels: `units_per_pixel` units of the canvas make a sample. Device
// coordinates are the middles of pixels.
int PictureCanvas::Page::at(int device) const {
    constexpr int farthest = 1'000'000; // so that the product is not too large
    const int limit = farthest / samples * units_per_pixel;
    return std::clamp(device, -limit, limit) * samples + samples / 2;
}

void PictureCanvas::Page::select(const CPen& wanted) {
    pen = CPen(wanted.style, std::max(units_per_pixel, wanted.width * samples), wanted.colour);
    canvas.SelectObject(&pen);
}

void PictureCanvas::Page::take_means(int y, unsigned char* row) const {
    const std::size_t width = std::size_t(size.width) * samples;
    for (int x = 0; x < size.width; ++x) {
        std::array<unsigned, 3> sums = {};
        for (int i = 0; i < samples * samples; ++i) {
            const std::uint32_t sample =
                bitmap.pixels[(std::size_t(y) * samples + i / samples) * width +
                              std::size_t(x) * samples + i % samples];
            for (unsigned channel = 0; channel < 3; ++channel) {
                sums[channel] += sample >> 8 * channel & 255;
            }
        }
        for (const unsigned sum : sums) {
            *row++ =
                static_cast<unsigned char>((sum + samples * samples / 2) / (samples * samples));
        }
        ++row; // without meaning
    }
}

PictureCanvas::Page::Bitmap::Bitmap(int width, int height) {
    BITMAPINFO format = {};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = width;
    format.bmiHeader.biHeight = -height; // rows from the top
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    format.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    bitmap = CreateDIBSection(device, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (bitmap != nullptr) {
        pixels = static_cast<const std::uint32_t*>(bits);
        first = ::SelectObject(device, bitmap);
        PatBlt(device, 0, 0, width, height, WHITENESS);
    }
}

PictureCanvas::Page::Bitmap::~Bitmap() {
    if (bitmap != nullptr) {
        ::SelectObject(device, first);
        DeleteObject(bitmap);
    }
    DeleteDC(device);
}

namespace {

// As many as fit into half a gigabyte.
int samples_for(PictureSize size) {
    constexpr long long most = 1LL << 27;
    int samples = 4;
    while (samples > 1 && 1LL * size.width * size.height * samples * samples > most) {
        samples /= 2;
    }
    return samples;
}

} // namespace
} // namespace korvel::kit
