#pragma once

#include <string>

#include <QPainter>

#include "kit/kit.h"

namespace korvel::workbench {

/// A device context that draws with QPainter: all flat pictures of the library and the kit go
/// through it. A black pen of width 1 and a white brush are selected at the start.
///
/// With more than one device unit to a pixel, integer coordinates place lines between pixels. Pen
/// widths count in device units too; no line gets thinner than a quarter of a pixel.
class PainterCanvas final : public CDC, public kit::LabelWriter {
public:
    /// The painter has to be active as long as the canvas draws.
    explicit PainterCanvas(QPainter& painter, int units_per_pixel = 1);

    void write_text(const std::string& text, double x, double y, double size,
                    kit::Anchor anchor) override;
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
    QPointF place(const POINT& point) const;
    QPen line() const;
    QFont font(double size) const;

    QPainter& painter_;
    double units_per_pixel_;
    CPen default_pen_{PS_SOLID, 1, RGB(0, 0, 0)};
    CBrush default_brush_{RGB(255, 255, 255)};
    CPen* pen_ = &default_pen_;
    CBrush* brush_ = &default_brush_;
    int fill_mode_ = ALTERNATE;
    COLORREF background_ = RGB(255, 255, 255);
    POINT position_ = {};
};

} // namespace korvel::workbench
