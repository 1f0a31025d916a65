#pragma once

#include <vector>

#include "korvel/platform/framework.h"

namespace korvel {

/// The library's ramp from green (0) over grey to red (255): RGB(c, 255 − c, 127), c being the low
/// byte of the index.
inline COLORREF ramp_colour(int index) {
    const int red = index & 255;
    return RGB(red, 255 - red, 127);
}

/// A solid brush that is selected into a device context for the length of a scope.
class SelectedBrush {
public:
    SelectedBrush(CDC& dc, COLORREF colour)
        : dc_(dc), brush_(colour), previous_(dc.SelectObject(&brush_)) {}
    ~SelectedBrush() { dc_.SelectObject(previous_); }
    SelectedBrush(const SelectedBrush&) = delete;
    SelectedBrush& operator=(const SelectedBrush&) = delete;
    SelectedBrush(SelectedBrush&&) = delete;
    SelectedBrush& operator=(SelectedBrush&&) = delete;

private:
    CDC& dc_;
    CBrush brush_;
    CBrush* previous_;
};

/// Rings for one `PolyPolygon` call.
struct PolygonGroup {
    std::vector<POINT> points;
    std::vector<int> counts;

    /// Fills all rings at once, so that holes stay open in the alternate fill mode.
    void fill(CDC& dc, COLORREF colour) const {
        const SelectedBrush brush(dc, colour);
        dc.PolyPolygon(points.data(), counts.data(), static_cast<int>(counts.size()));
    }
};

} // namespace korvel
