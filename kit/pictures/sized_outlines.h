#pragma once

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Draws into another device context, and outlines each polygon by its size there: an outline is a
/// small fraction of the polygon's width, so that the colours of many small ones stay visible.
/// Where that is thinner than the device draws, the outline takes on the colour of the polygon.
class SizedOutlines final : public CDC {
public:
    /// No outline is wider than `widest` device units, or one. A pixel has `units_per_pixel`.
    SizedOutlines(CDC& dc, COLORREF colour, int widest, int units_per_pixel);

    // For lines alone.
    CPen* SelectObject(CPen* pen) override { return dc_.SelectObject(pen); }
    POINT MoveTo(int x, int y) override { return dc_.MoveTo(x, y); }
    BOOL LineTo(int x, int y) override { return dc_.LineTo(x, y); }

    CBrush* SelectObject(CBrush* brush) override;
    int SetPolyFillMode(int mode) override { return dc_.SetPolyFillMode(mode); }
    COLORREF GetBkColor() const override { return dc_.GetBkColor(); }
    COLORREF SetBkColor(COLORREF colour) override { return dc_.SetBkColor(colour); }
    BOOL Polygon(const POINT* points, int count) override;
    BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) override;

private:
    CPen outline(const POINT* points, const int* counts, int polygons) const;

    CDC& dc_;
    COLORREF colour_;
    int widest_;
    int units_per_pixel_;
    COLORREF fill_ = 0;
};

} // namespace korvel::kit
