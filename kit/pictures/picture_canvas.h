#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "kit/files/output_file.h"
#include "kit/pictures/label_writer.h"
#include "kit/pictures/picture_size.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

enum class PictureFormat { png, svg, pdf };

/// Whether this kit paints a format: all with Cairo, PNG alone with GDI.
bool is_painted(PictureFormat format);

/// The format that a file's extension selects, in upper or lower case. Throws an input error for
/// any other, and for one that is not painted.
PictureFormat picture_format(const std::filesystem::path& file);

/// A device context that paints a picture, with Cairo, or with GDI on Windows, which paints PNG
/// only. The page is white at the start; a black pen of width 1 and a white brush are selected.
///
/// With more than one device unit to a pixel the library's integer coordinates place lines between
/// pixels. Pen widths count in device units too, but no line gets thinner than a quarter of a
/// pixel, so that width 0 gives the thinnest line that can still be seen.
class PictureCanvas final : public CDC, public LabelWriter {
public:
    /// The picture goes to `out`, which must outlive the canvas and which the caller closes. Throws
    /// an input error for a format that is not painted here, and an output error when there is not
    /// enough memory for the page.
    PictureCanvas(OutputFile& out, PictureFormat format, PictureSize size, int units_per_pixel = 1);
    ~PictureCanvas() override;
    PictureCanvas(const PictureCanvas&) = delete;
    PictureCanvas& operator=(const PictureCanvas&) = delete;

    PictureSize size() const { return size_; }
    int units_per_pixel() const { return units_per_pixel_; }

    /// Completes the picture. Throws an output error when painting or writing failed. Without this
    /// call the picture is incomplete.
    void finish();

    void write_text(const std::string& text, double x, double y, double size,
                    Anchor anchor) override;
    double text_width(const std::string& text, double size) override;

    CPen* SelectObject(CPen* pen) override;
    CBrush* SelectObject(CBrush* brush) override;
    int SetPolyFillMode(int mode) override;
    COLORREF GetBkColor() const override { return background_; }
    COLORREF SetBkColor(COLORREF colour) override;
    POINT MoveTo(int x, int y) override;
    BOOL LineTo(int x, int y) override;
    BOOL Polygon(const POINT* points, int count) override;
    BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) override;

private:
    struct Page; // what Cairo or GDI paints on: hosts need no header of theirs

    PictureFormat format_;
    PictureSize size_;
    int units_per_pixel_;
    std::unique_ptr<Page> page_;

    CPen default_pen_{PS_SOLID, 1, RGB(0, 0, 0)};
    CBrush default_brush_{RGB(255, 255, 255)};
    CPen* pen_ = &default_pen_;
    CBrush* brush_ = &default_brush_;
    int fill_mode_ = ALTERNATE;
    COLORREF background_ = RGB(255, 255, 255);
    POINT position_ = {};
};

} // namespace korvel::kit
