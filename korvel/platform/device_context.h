#pragma once

#include "korvel/platform/export.h"
#include "korvel/platform/types.h"

/// What lines are drawn with. A default pen draws solid black lines, as thin as the device can.
class CPen {
public:
    int style = PS_SOLID;
    int width = 0; ///< in device units; 0 draws the thinnest line that the device has
    COLORREF colour = 0;

    CPen() = default;
    CPen(int pen_style, int pen_width, COLORREF pen_colour)
        : style(pen_style), width(pen_width), colour(pen_colour) {}

    BOOL CreatePen(int pen_style, int pen_width, COLORREF pen_colour) {
        *this = CPen(pen_style, pen_width, pen_colour);
        return 1;
    }

    /// Back to the default pen.
    BOOL DeleteObject() {
        *this = CPen();
        return 1;
    }
};

/// What areas are filled with: one even colour, white by default.
class CBrush {
public:
    COLORREF colour = RGB(255, 255, 255);

    CBrush() = default;
    explicit CBrush(COLORREF brush_colour) : colour(brush_colour) {}

    BOOL CreateSolidBrush(COLORREF brush_colour) {
        *this = CBrush(brush_colour);
        return 1;
    }

    /// Back to the default brush.
    BOOL DeleteObject() {
        *this = CBrush();
        return 1;
    }
};

/// A 2-D drawing surface. The host derives its own from it; the library draws only through these
/// calls. Coordinates are device units.
///
/// A device keeps pointers to the selected pen and brush. The library selects its own for the
/// length of a drawing call and then selects the former ones again.
class KORVEL_PLATFORM_API CDC {
public:
    CDC() = default;
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    virtual ~CDC();

    /// Both return what was selected before: null when nothing was, which may be selected again.
    virtual CPen* SelectObject(CPen* pen) = 0;
    virtual CBrush* SelectObject(CBrush* brush) = 0;

    /// Sets the rule by which `Polygon` and `PolyPolygon` decide what is inside, such as ALTERNATE;
    /// returns the former one.
    virtual int SetPolyFillMode(int mode) = 0;

    virtual COLORREF GetBkColor() const = 0;
    /// Returns the former background colour.
    virtual COLORREF SetBkColor(COLORREF colour) = 0;

    /// Moves the pen without drawing; returns its former position.
    virtual POINT MoveTo(int x, int y) = 0;
    /// Draws from the pen's position to `(x, y)` with the selected pen and leaves the pen there.
    virtual BOOL LineTo(int x, int y) = 0;

    /// Fills a polygon with the selected brush and outlines it with the selected pen. The last of
    /// the `count` points is joined to the first.
    virtual BOOL Polygon(const POINT* points, int count) = 0;
    /// The same for several polygons filled as one area. Polygon `i` has the next `counts[i]`
    /// points.
    virtual BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) = 0;
};
