// Rings as lists of shared points, and the sides between these points.

#include "korvel/region/ring_points.h"

#include <algorithm>

#include "korvel/base/key_index.h"
#include "korvel/base/ring_sides.h"

namespace {

void mark_first_self_touching(CArray<CREGION::RToPt>& rings, int points);
std::vector<CREGION::RING_SIDE> distinct_sides(const CArray<CREGION::RToPt>& rings, int points);

} // namespace

/// Turns each ring of curves into a ring of indices into `unique_pts`.
void CREGION::GetAllRingInex() {
    const korvel::CurveSpans curves(curve_pts, curve_counts);
    ring_pts.SetSize(0);
    ring_pts.SetSize(rings.GetSize());
    std::vector<int> points;
    for (int r = 0; r < rings.GetSize(); ++r) {
        korvel::collect_ring_points(curves, rings[r].curve_ids, points);
        RToPt& ring = ring_pts[r];
        ring.ring_area = rings[r].ring_area;
        ring.pts.SetSize(static_cast<int>(points.size()));
        std::transform(points.begin(), points.end(), begin(ring.pts),
                       [&](int point) { return pt_index[point]; });
    }
}

/// Drops the first ring that touches itself and lists the distinct sides of the others.
void CREGION::GetAllSideInex() {
    mark_first_self_touching(ring_pts, unique_pts.GetSize());
    korvel::remove_marked_rings(ring_pts);
    korvel::assign_list(sides, distinct_sides(ring_pts, unique_pts.GetSize()));
}

namespace {

/// Marks the first ring that passes a point twice. Further ones stay, on purpose.
void mark_first_self_touching(CArray<CREGION::RToPt>& rings, int points) {
    korvel::FirstTimes first_times(points);
    for (int r = 0; r < rings.GetSize(); ++r) {
        const auto is_repeated = [&](int pt) { return !first_times.is_first(pt, r); };
        if (std::any_of(begin(rings[r].pts), end(rings[r].pts), is_repeated)) {
            rings[r].is_removed = 1;
            return;
        }
    }
}

/// The sides of all rings, each in the sense and the order in which it is met first.
std::vector<CREGION::RING_SIDE> distinct_sides(const CArray<CREGION::RToPt>& rings, int points) {
    std::vector<CREGION::RING_SIDE> found;
    korvel::KeyIndex seen(points);
    for (const CREGION::RToPt& ring : rings) {
        korvel::for_each_side(ring.pts, ring.pts.GetSize(), [&](int, int a, int b) {
            const int next = static_cast<int>(found.size());
            if (seen.find_or_add(korvel::side_key(a, b), next) == next) {
                found.push_back({a, b});
            }
        });
    }
    return found;
}

} // namespace

int CREGION::PointAtRing(int pt_index, RToPt& ring) {
    return std::find(begin(ring.pts), end(ring.pts), pt_index) != end(ring.pts) ? 1 : 0;
}

int CREGION::IsComPointRing(RToPt& a, RToPt& b) {
    const auto on_b = [&](int pt) { return PointAtRing(pt, b) == 1; };
    return std::any_of(begin(a.pts), end(a.pts), on_b) ? 1 : 0;
}
