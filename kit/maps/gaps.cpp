#include "kit/maps/gaps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <set>
#include <span>

#include "kit/base/box_tree.h"
#include "kit/maps/grid_segment.h"
#include "kit/maps/join_ends.h"

namespace korvel::kit {
namespace {

struct CurveEnd {
    int curve;
    std::size_t segment; // the only one of its curve that it belongs to
    GridPoint place;
    GridPoint other; // end of the curve
};

// The segments of a network, and where curves end.
struct GapLines {
    std::vector<GridSegment> segments;
    std::vector<int> curves; // of the segments
    std::vector<CurveEnd> ends;

    explicit GapLines(const Network& network);
};

std::optional<Gap> gap_at(const CurveEnd& end, const GapLines& lines, const BoxTree& tree,
                          double reach);
bool is_last_of(const CurveEnd& end, std::size_t segment);
BoxTree::Box box_around(const GridPoint& point, double reach);
std::int32_t whole(double value);
std::optional<Point2> place_within(const CurveEnd& end, const GridSegment& segment, double reach);
Point2 nearest_on(const GridSegment& segment, const GridPoint& point);
double steps_between(const Point2& a, const Point2& b);
void list_once(std::vector<Gap>& gaps);

} // namespace

double Gap::length() const {
    return steps_between(to_point(end), to_point(to));
}

std::vector<Gap> find_gaps(const Network& network, double reach, std::optional<double> tolerance,
                           const Context& context) {
    const double step = network.placement().grid.step();
    const std::optional<JoinedEnds> joined = join_ends(network, tolerance ? *tolerance / step : 1);
    const GapLines lines(joined ? joined->network : network);
    const BoxTree tree(lines.segments.size(),
                       [&](std::size_t i) { return widened(box_of(lines.segments[i])); });
    std::vector<Gap> gaps;
    for (std::size_t i = 0; i < lines.ends.size(); ++i) {
        context.report("finding gaps", static_cast<long long>(i),
                       static_cast<long long>(lines.ends.size()));
        if (const auto gap = gap_at(lines.ends[i], lines, tree, reach / step)) {
            gaps.push_back(*gap);
        }
    }
    list_once(gaps);
    return gaps;
}

namespace {

// Segments of no length are none, and closed curves have no ends.
GapLines::GapLines(const Network& network) {
    const auto most = static_cast<std::size_t>(network.point_count());
    segments.reserve(most);
    curves.reserve(most);
    for (int curve = 0; curve < network.curve_count(); ++curve) {
        const std::span<const GridPoint> points = network.curve(curve);
        const std::size_t first = segments.size();
        for (std::size_t k = 1; k < points.size(); ++k) {
            if (!is_same(points[k - 1], points[k])) {
                segments.push_back({points[k - 1], points[k]});
                curves.push_back(curve);
            }
        }
        if (segments.size() > first && !is_same(points.front(), points.back())) {
            ends.push_back({curve, first, points.front(), points.back()});
            ends.push_back({curve, segments.size() - 1, points.back(), points.front()});
        }
    }
}

// None where a line passes the end: the network is split there. Most ends are so, for which few
// segments are looked at. What the end goes across has been met before it.
std::optional<Gap> gap_at(const CurveEnd& end, const GapLines& lines, const BoxTree& tree,
                          double reach) {
    bool is_met = false;
    tree.for_each_in(
        [&](const BoxTree::Box& box) { return !is_met && box.meets(box_around(end.place, 0)); },
        [&](std::size_t i) {
            is_met = is_met || (!is_last_of(end, i) && passes(lines.segments[i], end.place));
        });
    if (is_met) {
        return std::nullopt;
    }
    double shortest = reach;
    std::optional<Point2> to;
    const auto offer = [&](const std::optional<Point2>& place) {
        const double length = place ? steps_between(*place, to_point(end.place)) : 0;
        if (place && (length < shortest || (length == shortest && (!to || *place < *to)))) {
            shortest = length;
            to = place;
        }
    };
    tree.for_each_at(box_around(end.place, reach), [&](std::size_t i) {
        const GridSegment& segment = lines.segments[i];
        if (lines.curves[i] != end.curve && !cross(segment, lines.segments[end.segment])) {
            offer(place_within(end, segment, reach));
        }
    });
    offer(to_point(end.other));
    if (!to) {
        return std::nullopt;
    }
    return Gap{end.curve, end.place, {whole((*to)[0]), whole((*to)[1])}};
}

// Whether a segment is the one of the curve that ends there.
bool is_last_of(const CurveEnd& end, std::size_t segment) {
    return segment == end.segment;
}

BoxTree::Box box_around(const GridPoint& point, double reach) {
    const double steps = std::ceil(reach);
    return {whole(point.x - steps), whole(point.y - steps), whole(point.x + steps),
            whole(point.y + steps)};
}

// The nearest whole number of 32 bits.
std::int32_t whole(double value) {
    constexpr double greatest = std::numeric_limits<std::int32_t>::max();
    constexpr double least = std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(std::clamp(std::floor(value + 0.5), least, greatest));
}

// The nearer end of the segment if it is within reach.
std::optional<Point2> place_within(const CurveEnd& end, const GridSegment& segment, double reach) {
    const Point2 from = to_point(end.place);
    const Point2 a = to_point(segment.from);
    const Point2 b = to_point(segment.to);
    const Point2 corner = steps_between(from, a) <= steps_between(from, b) ? a : b;
    const Point2 place =
        steps_between(from, corner) <= reach ? corner : nearest_on(segment, end.place);
    return steps_between(from, place) <= reach ? std::optional(place) : std::nullopt;
}

Point2 nearest_on(const GridSegment& segment, const GridPoint& point) {
    const Point2 a = to_point(segment.from);
    const double x = to_point(segment.to)[0] - a[0];
    const double y = to_point(segment.to)[1] - a[1];
    const double along =
        ((to_point(point)[0] - a[0]) * x + (to_point(point)[1] - a[1]) * y) / (x * x + y * y);
    const double share = std::clamp(along, 0.0, 1.0);
    return {a[0] + share * x, a[1] + share * y};
}

double steps_between(const Point2& a, const Point2& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1]);
}

void list_once(std::vector<Gap>& gaps) {
    std::set<std::array<std::int32_t, 4>> listed;
    std::erase_if(gaps, [&](const Gap& gap) {
        listed.insert({gap.end.x, gap.end.y, gap.to.x, gap.to.y});
        return listed.contains({gap.to.x, gap.to.y, gap.end.x, gap.end.y});
    });
}

} // namespace
} // namespace korvel::kit
