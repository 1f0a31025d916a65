#include "apps/workbench/flat/screen_lines.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace korvel::workbench {
namespace {

std::optional<std::pair<QPointF, QPointF>> clipped(const QPointF& from, const QPointF& to,
                                                   const QRectF& box);
template <class IsInside, class Crossing>
QPolygonF cut_ring(const QPolygonF& ring, IsInside is_inside, Crossing crossing);
QPointF at_x(const QPointF& a, const QPointF& b, double x);
QPointF at_y(const QPointF& a, const QPointF& b, double y);

} // namespace

// Wide lines reach into the picture from outside.
ScreenLines::ScreenLines(const FlatViewport& viewport) : viewport_(viewport) {
    constexpr double margin = 8;
    seen_ = QRectF(QPointF(), QSizeF(viewport.size())).adjusted(-margin, -margin, margin, margin);
}

bool ScreenLines::is_seen(const kit::Rectangle& part) const {
    const QPointF a = viewport_.to_screen({part.left, part.bottom});
    const QPointF b = viewport_.to_screen({part.right, part.top});
    return !part.is_empty() && a.x() <= seen_.right() && b.x() >= seen_.left() &&
           a.y() <= seen_.bottom() && b.y() >= seen_.top();
}

double ScreenLines::size(const kit::Rectangle& part) const {
    return std::max(part.right - part.left, part.bottom - part.top) / viewport_.unit();
}

void ScreenLines::add(const kit::Point2& point) {
    constexpr double least = 0.5;
    const QPointF place = viewport_.to_screen(point);
    if (!points_.empty() && (place - points_.back()).manhattanLength() < least) {
        left_out_ = place;
        return;
    }
    left_out_.reset();
    points_.append(place);
}

void ScreenLines::end_line() {
    if (left_out_) {
        points_.append(*std::exchange(left_out_, std::nullopt));
    }
    for (qsizetype k = 1; k < points_.size(); ++k) {
        add_segment(points_[k - 1], points_[k]);
    }
    points_.clear();
}

std::vector<QPolygonF> ScreenLines::take() {
    return std::exchange(lines_, {});
}

QPolygonF ScreenLines::take_ring() {
    left_out_.reset();
    QPolygonF ring = std::exchange(points_, {});
    if (seen_.contains(ring.boundingRect())) {
        return ring;
    }
    ring = cut_ring(
        ring, [&](const QPointF& p) { return p.x() >= seen_.left(); },
        [&](const QPointF& a, const QPointF& b) { return at_x(a, b, seen_.left()); });
    ring = cut_ring(
        ring, [&](const QPointF& p) { return p.x() <= seen_.right(); },
        [&](const QPointF& a, const QPointF& b) { return at_x(a, b, seen_.right()); });
    ring = cut_ring(
        ring, [&](const QPointF& p) { return p.y() >= seen_.top(); },
        [&](const QPointF& a, const QPointF& b) { return at_y(a, b, seen_.top()); });
    return cut_ring(
        ring, [&](const QPointF& p) { return p.y() <= seen_.bottom(); },
        [&](const QPointF& a, const QPointF& b) { return at_y(a, b, seen_.bottom()); });
}

// What is seen of a segment continues the last line or begins another.
void ScreenLines::add_segment(const QPointF& from, const QPointF& to) {
    const auto part = clipped(from, to, seen_);
    if (!part) {
        return;
    }
    if (lines_.empty() || lines_.back().back() != part->first) {
        lines_.push_back({part->first});
    }
    lines_.back().append(part->second);
}

namespace {

// Liang and Barsky's: the shares of the segment at which it enters and leaves.
std::optional<std::pair<QPointF, QPointF>> clipped(const QPointF& from, const QPointF& to,
                                                   const QRectF& box) {
    if (box.contains(from) && box.contains(to)) {
        return std::pair(from, to);
    }
    double enters = 0;
    double leaves = 1;
    const auto limit = [&](double along, double room) {
        if (along == 0) {
            return room >= 0;
        }
        if (along < 0) {
            enters = std::max(enters, room / along);
        } else {
            leaves = std::min(leaves, room / along);
        }
        return enters <= leaves;
    };
    const QPointF way = to - from;
    if (!limit(-way.x(), from.x() - box.left()) || !limit(way.x(), box.right() - from.x()) ||
        !limit(-way.y(), from.y() - box.top()) || !limit(way.y(), box.bottom() - from.y())) {
        return std::nullopt;
    }
    return std::pair(enters > 0 ? from + enters * way : from,
                     leaves < 1 ? from + leaves * way : to);
}

// Sutherland and Hodgman's for one side.
template <class IsInside, class Crossing>
QPolygonF cut_ring(const QPolygonF& ring, IsInside is_inside, Crossing crossing) {
    QPolygonF kept;
    kept.reserve(ring.size());
    for (qsizetype k = 0; k < ring.size(); ++k) {
        const QPointF& from = ring[k > 0 ? k - 1 : ring.size() - 1];
        const QPointF& to = ring[k];
        if (is_inside(from) != is_inside(to)) {
            kept.append(crossing(from, to));
        }
        if (is_inside(to)) {
            kept.append(to);
        }
    }
    return kept;
}

QPointF at_x(const QPointF& a, const QPointF& b, double x) {
    return {x, a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x())};
}

QPointF at_y(const QPointF& a, const QPointF& b, double y) {
    return {a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()), y};
}

} // namespace
} // namespace korvel::workbench
