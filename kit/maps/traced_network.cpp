#include "kit/maps/traced_network.h"

#include <algorithm>
#include <utility>

#include "kit/maps/noding.h"

namespace korvel::kit {

void TracedNetwork::trace(const Network& network, double tolerance, std::size_t most_crossings,
                          const Context& context) {
    for (int i = 0; i < network.curve_count(); ++i) {
        counts.Add(static_cast<int>(network.curve(i).size()));
    }
    points.SetSize(network.point_count());
    std::copy(network.points().begin(), network.points().end(), points.begin());
    builder.SetTolerance(tolerance);
    // The limit counts a crossing on each of its two segments.
    constexpr std::size_t no_limit = CREGION::no_crossing_limit;
    const std::size_t most = std::min(most_crossings, no_limit / 2) * 2;
    const CrossingLimitOverride limit(static_cast<int>(most));
    const CheckPointScope progress = context.follow_calls();
    builder.SetPtsInfo(points, counts);
    if (builder.has_exceeded_crossing_limit()) {
        throw too_many_crossings(network.name(), most_crossings);
    }
}

std::unique_ptr<CCPloy2DRg> TracedNetwork::regions() const {
    auto regions = std::make_unique<CCPloy2DRg>();
    auto& queried = const_cast<CREGION&>(builder); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    queried.GetAllRegion(*regions);
    return regions;
}

std::unique_ptr<CCPloy2DRg> TracedNetwork::around(const GridPoint& seed) const {
    // The search needs the split curves and their rings, and changes nothing of them.
    CREGION search;
    search.curve_pts.Copy(builder.curve_pts);
    search.curve_counts.Copy(builder.curve_counts);
    search.pt_index.Copy(builder.pt_index);
    search.rings.Copy(builder.rings);
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
            const GridPoint& point = builder.unique_pts[corners[next]];
            set->pt_list[next].x = point.x;
            set->pt_list[next].y = point.y;
            set->ring_list[i].pts.Add(next);
        }
    }
    return set;
}

} // namespace korvel::kit
