#include "kit/pictures/picture_fit.h"

#include <algorithm>
#include <cmath>

namespace korvel::kit {

PictureFit::PictureFit(const Rectangle& box, PictureSize size, double stretch, int device_units,
                       bool y_down)
    : sx(1 / stretch), sy(y_down ? 1 : -1), page(size), device_units(device_units) {
    if (box.is_empty()) {
        return;
    }
    x0 = box.left;
    y0 = y_down ? box.top : box.bottom;
    const double width = (box.right - box.left) / sx;
    const double height = box.bottom - box.top;

    const double margin = std::max(2.0, 0.02 * std::min(size.width, size.height));
    const double room_x = (size.width - 2 * margin) * device_units;
    const double room_y = (size.height - 2 * margin) * device_units;
    // A box without width or height does not limit the scale.
    const double fit_x = width > 0 ? room_x / width : HUGE_VAL;
    const double fit_y = height > 0 ? room_y / height : HUGE_VAL;
    scale = std::min(fit_x, fit_y);
    scale = std::isfinite(scale) ? scale : 1;

    const double rest_x = size.width * device_units - width * scale;
    const double rest_y = size.height * device_units - height * scale;
    ox = static_cast<int>(rest_x / 2);
    oy = static_cast<int>(rest_y / 2);
}

Rectangle PictureFit::page_in_map() const {
    Rectangle shown;
    for (const int corner : {0, 1}) {
        shown.take_in((corner * page.width * device_units - ox) / scale * sx + x0,
                      (corner * page.height * device_units - oy) / scale * sy + y0);
    }
    return shown;
}

int PictureFit::outline_width(int shapes) const {
    const double area = static_cast<double>(page.width) * page.height;
    const double spacing = std::sqrt(area / std::max(shapes, 1));
    const double widest = std::max(1.0, page.width / 1600.0);
    const double pixels = std::clamp(spacing / 60, 0.25, widest);
    return static_cast<int>(pixels * device_units);
}

} // namespace korvel::kit
