#pragma once

#include <optional>
#include <vector>

#include <QPolygonF>

#include "apps/workbench/flat/flat_viewport.h"

namespace korvel::workbench {

/// Lines and rings as a widget shows them: without what is outside, and without points that are at
/// the same pixel as the one before, so that what a picture costs depends on what is seen of it.
class ScreenLines {
public:
    explicit ScreenLines(const FlatViewport& viewport);

    /// Whether a part of a rectangle of the plane is seen, and how many pixels its larger side has.
    bool is_seen(const kit::Rectangle& part) const;
    double size(const kit::Rectangle& part) const;

    // A line, point by point; the next one begins after `end_line`.

    void add(const kit::Point2& point);
    void end_line();

    /// The lines so far, which are taken away.
    std::vector<QPolygonF> take();

    /// A ring, of which corners are added by `add`: the part of its area that is seen.
    QPolygonF take_ring();

private:
    void add_segment(const QPointF& from, const QPointF& to);

    const FlatViewport& viewport_;
    QRectF seen_;
    QPolygonF points_; // of the line or ring so far
    std::optional<QPointF> left_out_;
    std::vector<QPolygonF> lines_;
};

} // namespace korvel::workbench
