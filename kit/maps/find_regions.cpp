#include "kit/maps/find_regions.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <unordered_map>

#include "kit/base/error.h"
#include "kit/maps/curve_index.h"

namespace korvel::kit {
namespace {

int crossings_in(std::uint64_t memory);
void add_curves_without_length(const Network& network, std::vector<Dropped>& out);
void add_equal_curves(const Network& network, std::vector<Dropped>& out);
void add_loose_ends(const CREGION& builder, const CurveIndex& index, std::vector<Dropped>& out);
void add_ring_that_touches_itself(const CREGION& builder, std::vector<Dropped>& out);
std::vector<GridPoint> without_repetitions(std::span<const GridPoint> points);
std::vector<GridPoint> corners_of(const CREGION& builder, const std::vector<int>& starts,
                                  const CREGION::tagRToC& ring);

} // namespace

FoundRegions find_regions(Network network, const FindOptions& options, const Context& context) {
    const auto state = std::make_shared<FoundRegions::State>();
    state->network = std::move(network);
    for (int i = 0; i < state->network.curve_count(); ++i) {
        state->counts.Add(static_cast<int>(state->network.curve(i).size()));
    }
    const std::span<const GridPoint> points = state->network.points();
    state->points.SetSize(static_cast<int>(points.size()));
    std::copy(points.begin(), points.end(), state->points.begin());

    const int most_crossings = crossings_in(options.memory);
    state->builder.SetTolerance(options.tolerance);
    {
        const CrossingLimitOverride limit(most_crossings);
        const CheckPointScope progress = context.follow_calls();
        state->builder.SetPtsInfo(state->points, state->counts);
    }
    if (state->builder.has_exceeded_crossing_limit()) {
        // The limit counts a crossing on each of its two segments.
        const std::string advice = "split the file, or remove curves that cross many others";
        throw input_error(state->network.name() + ": the curves have more than " +
                              std::to_string(most_crossings / 2) +
                              " crossings, for which there is not enough memory: " + advice,
                          {.file = state->network.name(), .advice = advice});
    }
    auto regions = std::make_unique<CCPloy2DRg>();
    state->builder.GetAllRegion(*regions);
    FoundRegions found;
    found.map_ = Map(std::move(regions));
    found.state_ = state;
    return found;
}

std::vector<Dropped> FoundRegions::dropped() const {
    std::vector<Dropped> dropped;
    add_curves_without_length(state_->network, dropped);
    add_equal_curves(state_->network, dropped);
    add_loose_ends(state_->builder, CurveIndex(state_->network), dropped);
    std::stable_sort(dropped.begin(), dropped.end(),
                     [](const Dropped& a, const Dropped& b) { return a.curve < b.curve; });
    add_ring_that_touches_itself(state_->builder, dropped);
    return dropped;
}

std::vector<std::vector<int>> FoundRegions::curves_of_rings() const {
    const CurveIndex index(state_->network);
    const CREGION& builder = state_->builder;
    std::vector<std::vector<int>> curves(static_cast<std::size_t>(builder.ring_pts.GetSize()));
    for (int ring = 0; ring < builder.ring_pts.GetSize(); ++ring) {
        const CArray<int>& corners = builder.ring_pts[ring].pts;
        std::vector<int>& list = curves[static_cast<std::size_t>(ring)];
        for (int k = 0; k < corners.GetSize(); ++k) {
            const int next = k + 1 < corners.GetSize() ? k + 1 : 0;
            list.push_back(index.nearest_curve(to_point(builder.unique_pts[corners[k]]),
                                               to_point(builder.unique_pts[corners[next]])));
        }
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    }
    return curves;
}

Map FoundRegions::around(const GridPoint& seed) const {
    // The search needs the split curves and their rings, and changes nothing of them.
    CREGION search;
    search.curve_pts.Copy(state_->builder.curve_pts);
    search.curve_counts.Copy(state_->builder.curve_counts);
    search.pt_index.Copy(state_->builder.pt_index);
    search.rings.Copy(state_->builder.rings);
    search.is_calculated = 1;
    search.SetSeedPt(seed);
    CArray<GridPoint> no_points;
    CArray<int> no_counts;
    CArray<int> no_holes;
    search.GetRegion(no_points, no_counts, no_holes);
    CArray<int> corners;
    CArray<int> counts;
    const int rings = search.GetRegionPts(corners, counts);

    auto set = std::make_unique<CCPloy2DRg>();
    set->region_list.SetSize(rings > 0 ? 1 : 0);
    set->ring_list.SetSize(rings);
    set->pt_list.SetSize(corners.GetSize());
    int next = 0;
    for (int i = 0; i < rings; ++i) {
        set->region_list[0].rings.Add(i);
        for (int k = 0; k < counts[i]; ++k, ++next) {
            const GridPoint& point = state_->builder.unique_pts[corners[next]];
            set->pt_list[next].x = point.x;
            set->pt_list[next].y = point.y;
            set->ring_list[i].pts.Add(next);
        }
    }
    return Map(std::move(set));
}

std::string text(const Dropped& dropped) {
    const auto at = [](const GridPoint& point) {
        return std::to_string(point.x) + "," + std::to_string(point.y);
    };
    const std::string curve = "curve " + std::to_string(dropped.curve);
    switch (dropped.reason) {
    case Dropped::Reason::no_length:
        return curve + " has no length";
    case Dropped::Reason::equal_curve:
        return curve + " equals an earlier one";
    case Dropped::Reason::loose_end:
        return curve + " is on no closed ring between " + at(dropped.from) + " and " +
               at(dropped.to);
    case Dropped::Reason::touching_itself:
        return "a ring touches itself at " + at(dropped.from);
    }
    return {};
}

namespace {

int crossings_in(std::uint64_t memory) {
    // For a crossing on one segment, measured on grids, with copies of the regions.
    constexpr std::uint64_t bytes_of_crossing = 350;
    constexpr std::uint64_t most = CREGION::no_crossing_limit;
    return static_cast<int>(std::min(memory / bytes_of_crossing, most));
}

void add_curves_without_length(const Network& network, std::vector<Dropped>& out) {
    for (int i = 0; i < network.curve_count(); ++i) {
        const std::span<const GridPoint> points = network.curve(i);
        if (without_repetitions(points).size() < 2) {
            const GridPoint at = points.empty() ? GridPoint{} : points.front();
            out.push_back({Dropped::Reason::no_length, i, at, at});
        }
    }
}

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
            out.push_back({Dropped::Reason::equal_curve, i, points.front(), points.back()});
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
                out.push_back({Dropped::Reason::loose_end, curve, from, to});
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
            out.push_back({Dropped::Reason::touching_itself, -1, *twice, *twice});
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
