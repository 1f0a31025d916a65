#pragma once

#include <type_traits>
#include <utility>
#include <vector>

#include "korvel/module/korvel.h"
#include "tests/support/streams.h"

// What a host brings along.

namespace korvel::test {

/// The value, whose type has to be the one that hosts count on.
template <class Type, class Actual>
Type as(Actual value) {
    static_assert(std::is_same_v<Type, Actual>);
    return value;
}

/// Counts what is drawn.
class Device : public CDC {
public:
    int lines = 0;
    int areas = 0;
    int fill_mode = 0;
    COLORREF fill = 0;
    std::vector<POINT> corners;

    CPen* SelectObject(CPen* pen) override { return std::exchange(pen_, pen); }
    CBrush* SelectObject(CBrush* brush) override { return std::exchange(brush_, brush); }
    int SetPolyFillMode(int mode) override { return std::exchange(fill_mode, mode); }
    COLORREF GetBkColor() const override { return 0; }
    COLORREF SetBkColor(COLORREF colour) override { return colour; }
    POINT MoveTo(int, int) override { return {}; }
    BOOL LineTo(int, int) override { return ++lines; }
    BOOL Polygon(const POINT* points, int count) override { return PolyPolygon(points, &count, 1); }
    BOOL PolyPolygon(const POINT* points, const int* counts, int polygons) override {
        for (int i = 0; i < polygons; points += counts[i++]) {
            corners.insert(corners.end(), points, points + counts[i]);
        }
        fill = brush_->colour;
        return ++areas;
    }

private:
    CPen own_pen_;
    CBrush own_brush_;
    CPen* pen_ = &own_pen_;
    CBrush* brush_ = &own_brush_;
};

} // namespace korvel::test
