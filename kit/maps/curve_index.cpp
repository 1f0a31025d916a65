#include "kit/maps/curve_index.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace korvel::kit {
namespace {

constexpr std::size_t most_in_leaf = 8;

double squared_distance(const Point2& point, const Rectangle& box);
double squared_distance(const Point2& point, const Point2& from, const Point2& to);

} // namespace

CurveIndex::CurveIndex(const Network& network) {
    for (int curve = 0; curve < network.curve_count(); ++curve) {
        const std::span<const GridPoint> points = network.curve(curve);
        for (std::size_t k = 1; k < points.size(); ++k) {
            segments_.push_back({to_point(points[k - 1]), to_point(points[k]), curve});
        }
    }
    if (!segments_.empty()) {
        boxes_.resize(4 * std::bit_ceil(segments_.size() / most_in_leaf + 1));
        build(1, 0, segments_.size());
    }
}

int CurveIndex::nearest_curve(const Point2& a, const Point2& b) const {
    Nearest best = {std::numeric_limits<double>::infinity(), -1};
    if (!segments_.empty()) {
        search(1, 0, segments_.size(), a, b, best);
    }
    return best.curve;
}

void CurveIndex::build(std::size_t node, std::size_t first, std::size_t last) {
    const auto begin = segments_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = segments_.begin() + static_cast<std::ptrdiff_t>(last);
    Rectangle& box = boxes_[node];
    std::for_each(begin, end, [&](const Segment& segment) {
        box.take_in(segment.from[0], segment.from[1]);
        box.take_in(segment.to[0], segment.to[1]);
    });
    if (last - first <= most_in_leaf) {
        return;
    }
    const std::size_t axis = box.right - box.left >= box.bottom - box.top ? 0 : 1;
    const std::size_t middle = first + (last - first) / 2;
    std::nth_element(begin, segments_.begin() + static_cast<std::ptrdiff_t>(middle), end,
                     [&](const Segment& s, const Segment& t) {
                         return s.from[axis] + s.to[axis] < t.from[axis] + t.to[axis];
                     });
    build(2 * node, first, middle);
    build(2 * node + 1, middle, last);
}

void CurveIndex::search(std::size_t node, std::size_t first, std::size_t last, const Point2& a,
                        const Point2& b, Nearest& best) const {
    const auto bound = [&](std::size_t of) {
        return std::max(squared_distance(a, boxes_[of]), squared_distance(b, boxes_[of]));
    };
    if (bound(node) > best.distance) {
        return;
    }
    if (last - first <= most_in_leaf) {
        for (std::size_t i = first; i < last; ++i) {
            const Segment& segment = segments_[i];
            const double distance = std::max(squared_distance(a, segment.from, segment.to),
                                             squared_distance(b, segment.from, segment.to));
            if (distance < best.distance ||
                (distance == best.distance && segment.curve < best.curve)) {
                best = {distance, segment.curve};
            }
        }
        return;
    }
    const std::size_t middle = first + (last - first) / 2;
    const auto search_low = [&] { search(2 * node, first, middle, a, b, best); };
    const auto search_high = [&] { search(2 * node + 1, middle, last, a, b, best); };
    if (bound(2 * node) <= bound(2 * node + 1)) {
        search_low();
        search_high();
    } else {
        search_high();
        search_low();
    }
}

namespace {

double squared_distance(const Point2& point, const Rectangle& box) {
    const double dx = std::max({box.left - point[0], 0.0, point[0] - box.right});
    const double dy = std::max({box.top - point[1], 0.0, point[1] - box.bottom});
    return dx * dx + dy * dy;
}

double squared_distance(const Point2& point, const Point2& from, const Point2& to) {
    const Point2 along = {to[0] - from[0], to[1] - from[1]};
    const Point2 apart = {point[0] - from[0], point[1] - from[1]};
    const double length = along[0] * along[0] + along[1] * along[1];
    const double dot = apart[0] * along[0] + apart[1] * along[1];
    const double t = length > 0 ? std::clamp(dot / length, 0.0, 1.0) : 0.0;
    const double dx = apart[0] - t * along[0];
    const double dy = apart[1] - t * along[1];
    return dx * dx + dy * dy;
}

} // namespace
} // namespace korvel::kit
