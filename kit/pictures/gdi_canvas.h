#pragma once

#include <string>
#include <vector>

#include "kit/pictures/label_writer.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Creates and deletes the GDI objects of a `GdiCanvas`. A host that counts or shares them derives
/// its own.
class GdiObjects {
public:
    virtual ~GdiObjects() = default;
    virtual HPEN create_pen(int style, int width, COLORREF colour);
    virtual HBRUSH create_brush(COLORREF colour);
    virtual HFONT create_font(const LOGFONTW& font);
    virtual void remove(HGDIOBJ object);
};

/// Draws into a device context of Windows that the host keeps: of a window, a bitmap, a printer, a
/// metafile. Text is written in the font of Windows for plain texts.
///
/// Until a pen or a brush is selected, and after null is selected, those of the device context
/// itself are used. At most one pen, one brush and one font are kept, and created anew where
/// another is needed. At the end of the canvas they are deleted, and the device context has all
/// that was selected and set in it before. Results are 0 where Windows refuses.
class GdiCanvas final : public CDC, public LabelWriter {
public:
    /// Coordinates and pen widths are divided by `units_per_pixel`, which is above 0; coordinates
    /// are limited to a million pixels from the origin. The device context, and `objects` if given,
    /// must outlive the canvas; the mapping mode is MM_TEXT. Without a device context nothing is
    /// drawn.
    explicit GdiCanvas(HDC device, int units_per_pixel = 1, GdiObjects* objects = nullptr);
    ~GdiCanvas() override;
    GdiCanvas(const GdiCanvas&) = delete;
    GdiCanvas& operator=(const GdiCanvas&) = delete;

    void write_text(const std::string& text, double x, double y, double size,
                    Anchor anchor) override;
    double text_width(const std::string& text, double size) override;

    CPen* SelectObject(CPen* pen) override;
    CBrush* SelectObject(CBrush* brush) override;
    int SetPolyFillMode(int mode) override;
    COLORREF GetBkColor() const override;
    COLORREF SetBkColor(COLORREF colour) override;
    POINT MoveTo(int x, int y) override;
    BOOL LineTo(int x, int y) override;
    BOOL Polygon(const POINT* points, int count) override;
    BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) override;

private:
    bool select_pen();
    bool select_brush();
    bool select_font(double size);
    bool select_made(HGDIOBJ made, HGDIOBJ& kept);
    int pixel(int unit) const;
    void take_points(const POINT* points, const int* counts, int polygons);

    HDC device_;
    int units_per_pixel_;
    GdiObjects own_objects_;
    GdiObjects& objects_;
    int saved_state_;
    HGDIOBJ first_pen_;
    HGDIOBJ first_brush_;

    CPen* pen_ = nullptr;
    CBrush* brush_ = nullptr;
    HGDIOBJ kept_pen_ = nullptr;
    HGDIOBJ kept_brush_ = nullptr;
    HGDIOBJ kept_font_ = nullptr;
    CPen pen_of_kept_; // what they were created for
    CBrush brush_of_kept_;
    LONG height_of_kept_ = 0;
    POINT position_ = {};
    std::vector<POINT> points_; // of the polygons that are drawn, in pixels
    std::vector<int> counts_;
};

} // namespace korvel::kit
