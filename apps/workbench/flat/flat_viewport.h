#pragma once

#include <optional>

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

    /// Keeps in sight what was shown last; after that was zoomed or moved, only the middle.
    void resize(const QSize& size);
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
    std::optional<kit::Rectangle> shown_; // by `show`, and not moved since
};

} // namespace korvel::workbench
