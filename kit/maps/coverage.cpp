#include "kit/maps/coverage.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "kit/base/areas.h"

namespace korvel::kit {
namespace {

template <class Number>
Coverage measure(const PLYDT& set, const PLYDT::PyToRg& region, int first, int end);
bool agree(WideInteger region, WideInteger triangles);
bool agree(double region, double triangles);
bool is_reversed(WideInteger triangle, WideInteger region);
bool is_reversed(double triangle, double region);

// Directed segments between points, summed: a segment and its reverse cancel out.
class Chain {
public:
    // The boundary of the triangles less the boundary of the region, and the region's points.
    static Chain difference(const PLYDT& set, const PLYDT::PyToRg& region, int first, int end,
                            std::vector<int>& points);

    void add(int from, int to, int times) {
        if (from < to) {
            segments_.push_back({from, to, times});
        } else if (to < from) {
            segments_.push_back({to, from, -times});
        }
    }

    // Merges equal segments and drops those that cancel out. True when nothing is left.
    bool cancel();

    // Splits every segment at those of the points that lie on it. Points of equal coordinates
    // become one.
    template <class Number>
    Chain split_at(const PLYDT& set, const std::vector<int>& points) const;

private:
    struct Segment {
        int low;
        int high;
        int times; // negative: from high to low
    };
    std::vector<Segment> segments_;
};

} // namespace

Coverage measure_coverage(const PLYDT& set, const PLYDT::PyToRg& region, int first, int end,
                          bool lattice) {
    return lattice ? measure<WideInteger>(set, region, first, end)
                   : measure<double>(set, region, first, end);
}

namespace {

template <class Number>
Coverage measure(const PLYDT& set, const PLYDT::PyToRg& region, int first, int end) {
    const auto region_area = twice_area<Number>(set, region);
    Number triangle_area = 0;
    bool turn_alike = true;
    for (int i = first; i < end; ++i) {
        const PLYDT::TRG& triangle = set.trg_list[i];
        const auto area = twice_area<Number>(set.pt_list[triangle.va], set.pt_list[triangle.vb],
                                             set.pt_list[triangle.vc]);
        turn_alike = turn_alike && !is_reversed(area, region_area);
        triangle_area += area < 0 ? -area : area;
    }
    Coverage coverage;
    coverage.region_area = static_cast<double>(region_area) / 2;
    coverage.triangle_area = static_cast<double>(triangle_area) / 2;
    coverage.is_same_area = agree(region_area, triangle_area);
    if (coverage.is_same_area && turn_alike) {
        std::vector<int> points;
        Chain difference = Chain::difference(set, region, first, end, points);
        coverage.meets_sides = difference.cancel();
        // Two short sides may face one long side where a point lies on the side between two others.
        coverage.is_tiling =
            coverage.meets_sides || difference.split_at<Number>(set, points).cancel();
    }
    return coverage;
}

bool agree(WideInteger region, WideInteger triangles) {
    return region == triangles;
}

bool agree(double region, double triangles) {
    return std::abs(triangles - region) <= 1e-9 * std::abs(region);
}

bool is_reversed(WideInteger triangle, WideInteger /*region*/) {
    return triangle < 0;
}

// Rounding may turn a flat triangle over.
bool is_reversed(double triangle, double region) {
    return triangle < -1e-9 * std::abs(region);
}

Chain Chain::difference(const PLYDT& set, const PLYDT::PyToRg& region, int first, int end,
                        std::vector<int>& points) {
    Chain difference;
    for (int i = first; i < end; ++i) {
        const PLYDT::TRG& triangle = set.trg_list[i];
        difference.add(triangle.va, triangle.vb, 1);
        difference.add(triangle.vb, triangle.vc, 1);
        difference.add(triangle.vc, triangle.va, 1);
    }
    // All rings turn alike, so the region is on the other side of a hole's sides.
    for (int i = 0; i < region.rings.GetSize(); ++i) {
        const CArray<int>& ring = set.ring_list[region.rings[i]].pts;
        for (int k = 0; k < ring.GetSize(); ++k) {
            difference.add(ring[k], ring[(k + 1) % ring.GetSize()], i == 0 ? -1 : 1);
            points.push_back(ring[k]);
        }
    }
    return difference;
}

bool Chain::cancel() {
    std::sort(segments_.begin(), segments_.end(), [](const Segment& a, const Segment& b) {
        return std::tie(a.low, a.high) < std::tie(b.low, b.high);
    });
    std::vector<Segment> merged;
    for (const Segment& segment : segments_) {
        if (!merged.empty() && merged.back().low == segment.low &&
            merged.back().high == segment.high) {
            merged.back().times += segment.times;
        } else {
            merged.push_back(segment);
        }
    }
    std::erase_if(merged, [](const Segment& segment) { return segment.times == 0; });
    segments_ = std::move(merged);
    return segments_.empty();
}

// 0 for lattice points; else the error that rounding may add to the distance of a point from a line
// through two others, relative to the distance of those two.
template <class Number>
constexpr double line_slack = 0;
template <>
constexpr double line_slack<double> = 1e-9;

template <class Number>
Chain Chain::split_at(const PLYDT& set, const std::vector<int>& points) const {
    const auto place = [&](int i) { return std::tie(set.pt_list[i].x, set.pt_list[i].y); };
    std::vector<int> places = points;
    std::sort(places.begin(), places.end(), [&](int a, int b) { return place(a) < place(b); });
    places.erase(std::unique(places.begin(), places.end(),
                             [&](int a, int b) { return place(a) == place(b); }),
                 places.end());

    Chain split;
    for (const Segment& segment : segments_) {
        const VERT2D& from = set.pt_list[segment.low];
        const VERT2D& to = set.pt_list[segment.high];
        const double dx = to.x - from.x;
        const double dy = to.y - from.y;
        const double slack = line_slack<Number> * (dx * dx + dy * dy);
        // Points on a line follow one another in the order of `places` or in its reverse.
        const bool forwards = place(segment.low) < place(segment.high);
        const auto& [first, last] = forwards ? std::tie(from, to) : std::tie(to, from);
        int previous = -1;
        auto next =
            std::lower_bound(places.begin(), places.end(), std::tie(first.x, first.y),
                             [&](int i, const std::tuple<const double&, const double&>& start) {
                                 return place(i) < start;
                             });
        for (; next != places.end() && place(*next) <= std::tie(last.x, last.y); ++next) {
            const int i = *next;
            const VERT2D& point = set.pt_list[i];
            if (std::abs(static_cast<double>(twice_area<Number>(from, to, point))) <= slack) {
                if (previous >= 0) {
                    split.add(previous, i, forwards ? segment.times : -segment.times);
                }
                previous = i;
            }
        }
    }
    return split;
}

} // namespace
} // namespace korvel::kit
