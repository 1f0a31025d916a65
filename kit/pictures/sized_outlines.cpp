#include "kit/pictures/sized_outlines.h"

#include <algorithm>
#include <cmath>

namespace korvel::kit {
namespace {

double mean_width(const POINT* points, const int* counts, int polygons);
COLORREF mixed(COLORREF a, COLORREF b, double part_of_b);

} // namespace

SizedOutlines::SizedOutlines(CDC& dc, COLORREF colour, int widest, int units_per_pixel)
    : dc_(dc), colour_(colour), widest_(std::max(widest, 1)), units_per_pixel_(units_per_pixel) {}

CBrush* SizedOutlines::SelectObject(CBrush* brush) {
    fill_ = brush != nullptr ? brush->colour : fill_;
    return dc_.SelectObject(brush);
}

BOOL SizedOutlines::Polygon(const POINT* points, int count) {
    CPen pen = outline(points, &count, 1);
    CPen* const previous = dc_.SelectObject(&pen);
    const BOOL done = dc_.Polygon(points, count);
    dc_.SelectObject(previous);
    return done;
}

BOOL SizedOutlines::PolyPolygon(const POINT* points, const int* counts, int polygons) {
    CPen pen = outline(points, counts, polygons);
    CPen* const previous = dc_.SelectObject(&pen);
    const BOOL done = dc_.PolyPolygon(points, counts, polygons);
    dc_.SelectObject(previous);
    return done;
}

CPen SizedOutlines::outline(const POINT* points, const int* counts, int polygons) const {
    constexpr double part_of_width = 0.1;
    constexpr double thinnest = 0.25; // pixels
    const double wanted = part_of_width * mean_width(points, counts, polygons);
    const double width = std::min(double(widest_), wanted);
    const double drawn = std::max({width, thinnest * units_per_pixel_, 1.0});
    return {PS_SOLID, static_cast<int>(drawn), mixed(fill_, colour_, width / drawn)};
}

namespace {

// The area divided by half the outline: the width of a strip, the radius of a circle. The first
// polygon is the outer one, the others are holes.
double mean_width(const POINT* points, const int* counts, int polygons) {
    double area = 0;
    double length = 0;
    for (int i = 0; i < polygons; points += counts[i++]) {
        double twice_area = 0;
        for (int k = 0; k < counts[i]; ++k) {
            const POINT& a = points[k];
            const POINT& b = points[k + 1 < counts[i] ? k + 1 : 0];
            twice_area += (double(a.x) - points[0].x) * (double(b.y) - points[0].y) -
                          (double(b.x) - points[0].x) * (double(a.y) - points[0].y);
            length += std::hypot(double(b.x) - a.x, double(b.y) - a.y);
        }
        area += (i == 0 ? 0.5 : -0.5) * std::abs(twice_area);
    }
    return length > 0 ? std::max(0.0, 2 * area / length) : 0;
}

COLORREF mixed(COLORREF a, COLORREF b, double part_of_b) {
    const auto part = [&](int from, int to) {
        return static_cast<int>(from + part_of_b * (to - from));
    };
    return RGB(part(GetRValue(a), GetRValue(b)), part(GetGValue(a), GetGValue(b)),
               part(GetBValue(a), GetBValue(b)));
}

} // namespace
} // namespace korvel::kit
