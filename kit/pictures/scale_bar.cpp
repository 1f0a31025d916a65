#include "kit/pictures/scale_bar.h"

#include <array>

namespace korvel::kit {
namespace {

void fill_box(CDC& dc, const ScaleBar& bar, double left, double top, double right, double bottom);

} // namespace

void paint_scale_bar(CDC& dc, LabelWriter& labels, const ScaleBar& bar, const std::string& length) {
    const double air = bar.font / 2;
    const double height = bar.font / 2;
    const double left = bar.right - bar.width;
    const double top = bar.bottom - height;
    CPen page(PS_SOLID, 1, RGB(255, 255, 255));
    CPen ink(PS_SOLID, bar.units_per_pixel, RGB(0, 0, 0));
    CBrush white(RGB(255, 255, 255));
    CBrush black(RGB(0, 0, 0));
    CPen* const former_pen = dc.SelectObject(&page);
    CBrush* const former_brush = dc.SelectObject(&white);
    constexpr double ground = 1.65; // above the bar: its length, but not what is written above that
    fill_box(dc, bar, left - air, top - ground * bar.font, bar.right + air, bar.bottom + air);
    dc.SelectObject(&ink);
    fill_box(dc, bar, left, top, bar.right, bar.bottom);
    dc.SelectObject(&black);
    fill_box(dc, bar, left, top, left + bar.width / 2, bar.bottom);
    labels.write_text(length, left + bar.width / 2, top - bar.font, bar.font, Anchor::middle);
    dc.SelectObject(former_brush);
    dc.SelectObject(former_pen);
}

namespace {

void fill_box(CDC& dc, const ScaleBar& bar, double left, double top, double right, double bottom) {
    const auto device = [&](double pixel) { return static_cast<int>(pixel * bar.units_per_pixel); };
    const std::array<POINT, 4> corners = {{{device(left), device(top)},
                                           {device(right), device(top)},
                                           {device(right), device(bottom)},
                                           {device(left), device(bottom)}}};
    dc.Polygon(corners.data(), static_cast<int>(corners.size()));
}

} // namespace
} // namespace korvel::kit
