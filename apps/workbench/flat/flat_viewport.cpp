#include "apps/workbench/flat/flat_viewport.h"

#include <algorithm>

namespace korvel::workbench {

QPointF FlatViewport::to_screen(const kit::Point2& point) const {
    return {size_.width() / 2.0 + (point[0] - middle_[0]) / unit_,
            size_.height() / 2.0 - (point[1] - middle_[1]) / unit_};
}

kit::Point2 FlatViewport::from_screen(const QPointF& pixel) const {
    return {middle_[0] + (pixel.x() - size_.width() / 2.0) * unit_,
            middle_[1] - (pixel.y() - size_.height() / 2.0) * unit_};
}

void FlatViewport::resize(const QSize& size) {
    size_ = size.expandedTo({1, 1});
    if (shown_) {
        show(*shown_);
    }
}

void FlatViewport::show(const kit::Rectangle& part) {
    constexpr double margin = 1.1;
    if (part.is_empty()) {
        return;
    }
    shown_ = part;
    middle_ = {(part.left + part.right) / 2, (part.top + part.bottom) / 2};
    const double unit = margin * std::max((part.right - part.left) / size_.width(),
                                          (part.bottom - part.top) / size_.height());
    if (unit > 0) {
        unit_ = unit;
    }
}

void FlatViewport::zoom(double factor, const QPointF& pixel) {
    shown_.reset();
    constexpr double finest = 1e-12;
    constexpr double coarsest = 1e12;
    const kit::Point2 before = from_screen(pixel);
    unit_ = std::clamp(unit_ / factor, finest, coarsest);
    const kit::Point2 after = from_screen(pixel);
    middle_[0] += before[0] - after[0];
    middle_[1] += before[1] - after[1];
}

void FlatViewport::pan(const QPointF& pixels) {
    shown_.reset();
    middle_[0] -= pixels.x() * unit_;
    middle_[1] += pixels.y() * unit_;
}

kit::Rectangle FlatViewport::part() const {
    const kit::Point2 upper_left = from_screen({0, 0});
    const kit::Point2 lower_right =
        from_screen({static_cast<double>(size_.width()), static_cast<double>(size_.height())});
    kit::Rectangle part;
    part.take_in(upper_left[0], upper_left[1]);
    part.take_in(lower_right[0], lower_right[1]);
    return part;
}

} // namespace korvel::workbench
