#include "kit/maps/noding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <utility>

#include "kit/base/areas.h"
#include "kit/base/box_tree.h"

namespace korvel::kit {
namespace {

struct Segment {
    GridPoint from;
    GridPoint to;
    int curve;
};

std::vector<Segment> segments_of(const Network& network);
std::vector<GridPoint> ends_of(const std::vector<Segment>& segments);
void add_crossings(const std::vector<Segment>& segments, const Context& context,
                   std::vector<GridPoint>& points);
std::vector<NodedSegment> pieces_of(const std::vector<Segment>& segments,
                                    const std::vector<GridPoint>& points, const Context& context);
int leave_out_equal_ones(std::vector<NodedSegment>& segments);

void sort_distinct(std::vector<GridPoint>& points) {
    std::sort(points.begin(), points.end(), is_before);
    points.erase(std::unique(points.begin(), points.end(), is_same), points.end());
}

} // namespace

NodedNetwork node(const Network& network, const Context& context) {
    const std::vector<Segment> segments = segments_of(network);
    NodedNetwork noded;
    noded.points = ends_of(segments);
    const std::size_t ends = noded.points.size();
    add_crossings(segments, context, noded.points);
    sort_distinct(noded.points);
    noded.crossings = static_cast<int>(noded.points.size() - ends);
    noded.segments = pieces_of(segments, noded.points, context);
    noded.overlaps = leave_out_equal_ones(noded.segments);
    return noded;
}

namespace {

BoxTree::Box box_of(const Segment& segment);
bool cross(const Segment& s, const Segment& t);
GridPoint rounded_crossing(const Segment& s, const Segment& t);
bool passes(const Segment& segment, const GridPoint& point);
WideInteger dot(const Segment& segment, const GridPoint& point);

std::vector<Segment> segments_of(const Network& network) {
    std::vector<Segment> segments;
    for (int curve = 0; curve < network.curve_count(); ++curve) {
        const std::span<const GridPoint> points = network.curve(curve);
        for (std::size_t k = 1; k < points.size(); ++k) {
            if (!is_same(points[k - 1], points[k])) {
                segments.push_back({points[k - 1], points[k], curve});
            }
        }
    }
    return segments;
}

std::vector<GridPoint> ends_of(const std::vector<Segment>& segments) {
    std::vector<GridPoint> points;
    points.reserve(2 * segments.size());
    for (const Segment& segment : segments) {
        points.push_back(segment.from);
        points.push_back(segment.to);
    }
    sort_distinct(points);
    return points;
}

void add_crossings(const std::vector<Segment>& segments, const Context& context,
                   std::vector<GridPoint>& points) {
    constexpr std::size_t step = 1 << 14;
    const BoxTree tree(segments.size(), [&](std::size_t i) { return box_of(segments[i]); });
    for (std::size_t i = 0; i < segments.size(); ++i) {
        tree.for_each_at(box_of(segments[i]), [&](std::size_t j) {
            if (i < j && cross(segments[i], segments[j])) {
                points.push_back(rounded_crossing(segments[i], segments[j]));
            }
        });
        if (i % step == 0) {
            context.report("finding crossings", static_cast<long long>(i),
                           static_cast<long long>(segments.size()));
        }
    }
}

// Each segment runs through the points that it passes, in their order along it.
std::vector<NodedSegment> pieces_of(const std::vector<Segment>& segments,
                                    const std::vector<GridPoint>& points, const Context& context) {
    constexpr std::size_t step = 1 << 14;
    const BoxTree tree(points.size(), [&](std::size_t i) {
        return BoxTree::Box{points[i].x, points[i].y, points[i].x, points[i].y};
    });
    std::vector<NodedSegment> pieces;
    pieces.reserve(segments.size());
    std::vector<std::pair<WideInteger, int>> passed;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const Segment& segment = segments[i];
        passed.clear();
        tree.for_each_at(box_of(segment), [&](std::size_t point) {
            if (passes(segment, points[point])) {
                passed.emplace_back(dot(segment, points[point]), static_cast<int>(point));
            }
        });
        std::sort(passed.begin(), passed.end());
        for (std::size_t k = 1; k < passed.size(); ++k) {
            pieces.push_back({passed[k - 1].second, passed[k].second, segment.curve});
        }
        if (i % step == 0) {
            context.report("cutting segments", static_cast<long long>(i),
                           static_cast<long long>(segments.size()));
        }
    }
    return pieces;
}

int leave_out_equal_ones(std::vector<NodedSegment>& segments) {
    std::vector<std::size_t> order(segments.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto ends = [&](std::size_t i) { return std::minmax(segments[i].from, segments[i].to); };
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const auto ends_a = ends(a);
        const auto ends_b = ends(b);
        return ends_a != ends_b ? ends_a < ends_b : a < b;
    });
    std::vector<bool> is_repeated(segments.size(), false);
    for (std::size_t k = 1; k < order.size(); ++k) {
        is_repeated[order[k]] = ends(order[k]) == ends(order[k - 1]);
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (!is_repeated[i]) {
            segments[kept++] = segments[i];
        }
    }
    const std::size_t left_out = segments.size() - kept;
    segments.resize(kept);
    return static_cast<int>(left_out);
}

BoxTree::Box box_of(const Segment& segment) {
    const auto [left, right] = std::minmax(segment.from.x, segment.to.x);
    const auto [bottom, top] = std::minmax(segment.from.y, segment.to.y);
    return {left, bottom, right, top};
}

// Coordinates have 32 bits, so that products need 66 bits with their sign.
WideInteger wide(std::int64_t value) {
    return value;
}
WideInteger cross_product(const GridPoint& a, const GridPoint& b, const GridPoint& c,
                          const GridPoint& d) { // of b - a and d - c
    return wide(std::int64_t{b.x} - a.x) * wide(std::int64_t{d.y} - c.y) -
           wide(std::int64_t{b.y} - a.y) * wide(std::int64_t{d.x} - c.x);
}

// Where an end of one is on the other, that end is a point already.
bool cross(const Segment& s, const Segment& t) {
    const auto are_apart = [](const Segment& line, const GridPoint& a, const GridPoint& b) {
        const WideInteger side_a = cross_product(line.from, line.to, line.from, a);
        const WideInteger side_b = cross_product(line.from, line.to, line.from, b);
        return (side_a < 0 && side_b > 0) || (side_a > 0 && side_b < 0);
    };
    return are_apart(s, t.from, t.to) && are_apart(t, s.from, s.to);
}

// s.from + (s.to - s.from) · share / whole. Halves are rounded up; division truncates, so that a
// quotient below 0 may be one above the floor.
GridPoint rounded_crossing(const Segment& s, const Segment& t) {
    WideInteger whole = cross_product(s.from, s.to, t.from, t.to);
    WideInteger share = cross_product(s.from, t.from, t.from, t.to);
    if (whole < 0) {
        whole = -whole;
        share = -share;
    }
    const auto rounded = [&](std::int64_t from, std::int64_t to) {
        const WideInteger numerator = 2 * wide(to - from) * share + whole;
        const WideInteger quotient = numerator / (2 * whole);
        const bool is_above = numerator % (2 * whole) < 0;
        return static_cast<int>(from + static_cast<std::int64_t>(quotient) - (is_above ? 1 : 0));
    };
    return {rounded(s.from.x, s.to.x), rounded(s.from.y, s.to.y)};
}

/// A bound of the part of a segment, as a fraction with a positive denominator.
struct Bound {
    std::int64_t numerator;
    std::int64_t denominator;
    bool is_open;
};

// Whether a part of the segment is in the square [x - 1/2, x + 1/2) × [y - 1/2, y + 1/2).
bool passes(const Segment& segment, const GridPoint& point) {
    std::array<Bound, 3> lower = {{{0, 1, false}}};
    std::array<Bound, 3> upper = {{{1, 1, false}}};
    std::size_t bounds = 1;
    // Twice the distances, from the start of the segment, to both sides of the square.
    const auto clip = [&](std::int64_t from, std::int64_t to, std::int64_t middle) {
        const std::int64_t along = 2 * (to - from);
        const std::int64_t near = 2 * (middle - from) - 1;
        const std::int64_t far = near + 2;
        if (along > 0) {
            lower[bounds] = {near, along, false};
            upper[bounds++] = {far, along, true};
        } else if (along < 0) {
            lower[bounds] = {-far, -along, true};
            upper[bounds++] = {-near, -along, false};
        }
        return along != 0 || (near <= 0 && 0 < far);
    };
    if (!clip(segment.from.x, segment.to.x, point.x) ||
        !clip(segment.from.y, segment.to.y, point.y)) {
        return false;
    }
    for (std::size_t i = 0; i < bounds; ++i) {
        for (std::size_t k = 0; k < bounds; ++k) {
            const WideInteger low = wide(lower[i].numerator) * wide(upper[k].denominator);
            const WideInteger high = wide(upper[k].numerator) * wide(lower[i].denominator);
            if (low > high || (low == high && (lower[i].is_open || upper[k].is_open))) {
                return false;
            }
        }
    }
    return true;
}

WideInteger dot(const Segment& segment, const GridPoint& point) {
    return wide(std::int64_t{segment.to.x} - segment.from.x) *
               wide(std::int64_t{point.x} - segment.from.x) +
           wide(std::int64_t{segment.to.y} - segment.from.y) *
               wide(std::int64_t{point.y} - segment.from.y);
}

} // namespace
} // namespace korvel::kit
