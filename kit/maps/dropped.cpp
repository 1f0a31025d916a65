#include "kit/maps/dropped.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <unordered_map>

#include "kit/maps/curve_index.h"

namespace korvel::kit {
namespace {

void add_equal_curves(const Network& network, std::vector<Dropped>& out);
void add_loose_ends(const CREGION& builder, const CurveIndex& index, std::vector<Dropped>& out);
void add_ring_that_touches_itself(const CREGION& builder, std::vector<Dropped>& out);
std::vector<GridPoint> without_repetitions(std::span<const GridPoint> points);
std::vector<GridPoint> corners_of(const CREGION& builder, const std::vector<int>& starts,
                                  const CREGION::tagRToC& ring);

} // namespace

double Dropped::length() const {
    double length = 0;
    for (std::size_t k = 1; k < line.size(); ++k) {
        length += std::hypot(static_cast<double>(line[k].x) - line[k - 1].x,
                             static_cast<double>(line[k].y) - line[k - 1].y);
    }
    return length;
}

std::string text(const Dropped& dropped) {
    const auto at = [](const GridPoint& point) {
        return std::to_string(point.x) + "," + std::to_string(point.y);
    };
    std::string text = "curve " + std::to_string(dropped.curve);
    switch (dropped.reason) {
    case Dropped::Reason::no_length:
        return text + " has no length";
    case Dropped::Reason::duplicate:
        text += " repeats an earlier line";
        break;
    case Dropped::Reason::dangling:
        text += " ends loosely";
        break;
    case Dropped::Reason::bridge:
        text += " has the same region on both sides";
        break;
    case Dropped::Reason::touching_itself:
        return "a ring touches itself at " + at(dropped.line.front());
    }
    return text.append(" from ").append(at(dropped.line.front())) + " to " +
           at(dropped.line.back());
}

void add_curves_without_length(const Network& network, std::vector<Dropped>& out) {
    for (int i = 0; i < network.curve_count(); ++i) {
        const std::span<const GridPoint> points = network.curve(i);
        if (without_repetitions(points).size() < 2) {
            const GridPoint at = points.empty() ? GridPoint{} : points.front();
            out.push_back({Dropped::Reason::no_length, i, {at}});
        }
    }
}

// Successive segments of a curve are one line.
void add_leftover_lines(const NodedNetwork& noded, const std::vector<SegmentKind>& kinds,
                        std::vector<Dropped>& out) {
    int end = -1; // the point where the last line ends, −1 for none
    const auto add = [&](const NodedSegment& segment, Dropped::Reason reason) {
        if (end != segment.from || out.back().curve != segment.curve ||
            out.back().reason != reason) {
            out.push_back({reason, segment.curve, {noded.points[segment.from]}});
        }
        out.back().line.push_back(noded.points[segment.to]);
        end = segment.to;
    };
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (kinds[i] == SegmentKind::border) {
            end = -1;
        } else {
            add(noded.segments[i], kinds[i] == SegmentKind::bridge ? Dropped::Reason::bridge
                                                                   : Dropped::Reason::dangling);
        }
    }
    end = -1;
    for (const NodedSegment& segment : noded.duplicates) {
        add(segment, Dropped::Reason::duplicate);
    }
}

void add_what_is_not_traced(const Network& network, const CREGION& builder,
                            std::vector<Dropped>& out) {
    add_equal_curves(network, out);
    add_loose_ends(builder, CurveIndex(network), out);
    add_ring_that_touches_itself(builder, out);
}

namespace {

void add_equal_curves(const Network& network, std::vector<Dropped>& out) {
    // Equal curves have equal keys; the direction that is first in order represents a curve.
    const auto normal_form = [&](int curve) {
        std::vector<GridPoint> points = without_repetitions(network.curve(curve));
        if (std::lexicographical_compare(points.rbegin(), points.rend(), points.begin(),
                                         points.end(), is_before)) {
            std::reverse(points.begin(), points.end());
        }
        return points;
    };
    std::unordered_multimap<std::uint64_t, int> curves_of_key;
    for (int i = 0; i < network.curve_count(); ++i) {
        const std::vector<GridPoint> points = normal_form(i);
        if (points.size() < 2) {
            continue;
        }
        std::uint64_t key = points.size();
        for (const GridPoint& point : points) {
            for (const int coordinate : {point.x, point.y}) {
                key = (key ^ static_cast<std::uint32_t>(coordinate)) * 0x9e3779b97f4a7c15U;
                key ^= key >> 29U;
            }
        }
        const auto [first, last] = curves_of_key.equal_range(key);
        const bool is_repeated = std::any_of(first, last, [&](const auto& entry) {
            const std::vector<GridPoint> other = normal_form(entry.second);
            return std::equal(points.begin(), points.end(), other.begin(), other.end(), is_same);
        });
        if (is_repeated) {
            out.push_back({Dropped::Reason::duplicate, i, points});
        } else {
            curves_of_key.emplace(key, i);
        }
    }
}

// Pieces of split curves that pruning has marked.
void add_loose_ends(const CREGION& builder, const CurveIndex& index, std::vector<Dropped>& out) {
    int start = 0;
    for (int piece = 0; piece < builder.curve_counts.GetSize(); ++piece) {
        const int end = start + builder.curve_counts[piece];
        if (end - start > 1 && builder.curve_to_node[piece].oc_flag == 0) {
            const GridPoint& from = builder.curve_pts[start];
            const GridPoint& to = builder.curve_pts[end - 1];
            const int curve =
                index.nearest_curve(to_point(from), to_point(builder.curve_pts[start + 1]));
            if (end - start > 2 || !is_same(from, to)) {
                out.push_back(
                    {Dropped::Reason::dangling,
                     curve,
                     {builder.curve_pts.begin() + start, builder.curve_pts.begin() + end}});
            }
        }
        start = end;
    }
}

// Rings by their curves and rings by their points have the same order; the outlines of groups of
// faces are missing among the latter as well.
void add_ring_that_touches_itself(const CREGION& builder, std::vector<Dropped>& out) {
    std::vector<int> starts = {0};
    for (const int count : builder.curve_counts) {
        starts.push_back(starts.back() + count);
    }
    int kept = 0;
    for (const CREGION::tagRToC& ring : builder.rings) {
        std::vector<GridPoint> corners = corners_of(builder, starts, ring);
        if (kept < builder.ring_pts.GetSize() &&
            builder.ring_pts[kept].ring_area == ring.ring_area &&
            builder.ring_pts[kept].pts.GetSize() == static_cast<int>(corners.size())) {
            ++kept;
            continue;
        }
        std::sort(corners.begin(), corners.end(), is_before);
        const auto twice = std::adjacent_find(corners.begin(), corners.end(), is_same);
        if (twice != corners.end()) {
            out.push_back({Dropped::Reason::touching_itself, -1, {*twice}});
            return;
        }
    }
}

std::vector<GridPoint> without_repetitions(std::span<const GridPoint> points) {
    std::vector<GridPoint> distinct;
    std::unique_copy(points.begin(), points.end(), std::back_inserter(distinct), is_same);
    return distinct;
}

// Each curve starts where the one before it ends, and the last one ends at the first corner.
std::vector<GridPoint> corners_of(const CREGION& builder, const std::vector<int>& starts,
                                  const CREGION::tagRToC& ring) {
    std::vector<GridPoint> corners;
    for (const int id : ring.curve_ids) {
        const int curve = std::abs(id) - 1;
        const GridPoint* const first = builder.curve_pts.begin() + starts[curve];
        const GridPoint* const last = first + builder.curve_counts[curve];
        corners.resize(corners.empty() ? 0 : corners.size() - 1);
        if (id > 0) {
            corners.insert(corners.end(), first, last);
        } else {
            corners.insert(corners.end(), std::reverse_iterator(last),
                           std::reverse_iterator(first));
        }
    }
    corners.resize(corners.empty() ? 0 : corners.size() - 1);
    return corners;
}

} // namespace
} // namespace korvel::kit
