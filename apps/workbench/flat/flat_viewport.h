#pragma once

#include <QPointF>
#include <QSize>

#include "kit/kit.h"

namespace korvel::workbench {

/// What part of a plane a widget shows: x to the right and y upward, a unit as long in both.
class FlatViewport {
public:
    QPointF to_screen(const kit::Point2& point) const;
    kit::Point2 from_screen(const QPointF& pixel) const;

    /// Units of the plane to a pixel.
    double unit() const { return unit_; }

    void resize(const QSize& size); ///< keeps the middle where it is
    QSize size() const { return size_; }

    /// Shows a rectangle with a margin; one without extent, or an empty one, at the unit that it
    /// has.
    void show(const kit::Rectangle& part);

    /// Keeps the place under a pixel.
    void zoom(double factor, const QPointF& pixel);
    void pan(const QPointF& pixels);

    /// What is seen.
    kit::Rectangle part() const;

private:
    QSize size_{1, 1};
    kit::Point2 middle_ = {};
    double unit_ = 1;
};

} // namespace korvel::workbench
