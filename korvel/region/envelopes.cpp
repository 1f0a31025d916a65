// Envelopes: walks around the outside of a group of faces, which bound no region.

#include <algorithm>

#include "korvel/base/packed_lists.h"
#include "korvel/plane/live_points.h"
#include "korvel/platform/check_point.h"
#include "korvel/platform/prefetch.h"
#include "korvel/region/ring_points.h"

namespace {

class EnvelopeFinder {
public:
    explicit EnvelopeFinder(CREGION& region)
        : rings_(region.ring_pts), pts_(region.unique_pts), links_(region.pt_links),
          is_visited_(static_cast<std::size_t>(pts_.GetSize()), 0),
          boxes_(static_cast<std::size_t>(rings_.GetSize())) {}

    void prefetch_rings_at(int point) const;
    void mark_at(int point);

private:
    int largest_of(const CArray<int>& rings) const;
    bool encloses_others(int largest, const CArray<int>& rings);
    bool lies_on(int point, int ring) const;
    const korvel::IntBox& box_of(int ring);
    void claim(const CArray<int>& rings);

    CArray<CREGION::RToPt>& rings_;
    const CArray<tagPOINT>& pts_;
    const CArray<CREGION::PT_LINK>& links_;
    std::vector<char> is_visited_;      ///< by point
    std::vector<korvel::IntBox> boxes_; ///< by ring; empty until asked for
};

void link_points(CREGION& region);

} // namespace

/// Drops envelopes: where three or more rings meet in a point, the largest of them is one if it
/// encloses the others.
void CREGION::GetRStoPt() {
    link_points(*this);
    EnvelopeFinder envelopes(*this);
    for (int point = 0; point < pt_links.GetSize(); ++point) {
        constexpr int points_ahead = 8;
        envelopes.prefetch_rings_at(point + points_ahead);
        envelopes.mark_at(point);
        korvel::check_point_after(point, pt_links.GetSize(), 1024, "finding envelopes");
    }
    korvel::remove_marked_rings(ring_pts);
    ring_pts.FreeExtra();
}

namespace {

/// Lists for each point the rings and the sides that pass through it.
void link_points(CREGION& region) {
    const int points = region.unique_pts.GetSize();
    CArray<CREGION::PT_LINK>& links = region.pt_links;
    links.SetSize(0);
    links.SetSize(points);
    const auto each_ring = [&](auto add) {
        korvel::for_each_ring_at_point(region.ring_pts, points, add);
    };
    const auto each_side = [&](auto add) {
        for (int side = 0; side < region.sides.GetSize(); ++side) {
            const CREGION::RING_SIDE& ends = region.sides[side];
            add(ends.p0, side);
            if (ends.p1 != ends.p0) {
                add(ends.p1, side);
            }
        }
    };
    korvel::distribute(points, each_ring, [&](int pt) -> CArray<int>& { return links[pt].rings; });
    korvel::distribute(points, each_side, [&](int pt) -> CArray<int>& { return links[pt].sides; });
}

void EnvelopeFinder::prefetch_rings_at(int point) const {
    if (point < links_.GetSize()) {
        for (const int ring : links_[point].rings) {
            korvel::prefetch(&rings_[ring]);
        }
    }
}

/// Marks the envelope at a point, if there is one, and claims all rings of its group.
void EnvelopeFinder::mark_at(int point) {
    const CArray<int>& rings = links_[point].rings;
    if (is_visited_[point] != 0 || rings.GetSize() < 3) {
        return;
    }
    const int largest = largest_of(rings);
    CREGION::RToPt& ring = rings_[largest];
    if (ring.is_hole == 0 && ring.is_removed == 0 && encloses_others(largest, rings)) {
        ring.is_removed = 1;
        claim(rings);
    }
}

/// Of rings with equal areas the first one.
int EnvelopeFinder::largest_of(const CArray<int>& rings) const {
    return *std::max_element(begin(rings), end(rings), [&](int a, int b) {
        return rings_[a].ring_area < rings_[b].ring_area;
    });
}

/// The first point of the other rings that is not on the largest decides; without such a point they
/// count as enclosed.
bool EnvelopeFinder::encloses_others(int largest, const CArray<int>& rings) {
    for (const int other : rings) {
        if (other == largest) {
            continue;
        }
        for (const int pt : rings_[other].pts) {
            if (!lies_on(pt, largest)) {
                return box_of(largest).contains(pts_[pt]) &&
                       korvel::ring_encloses(rings_[largest], pts_, pts_[pt]);
            }
        }
    }
    return true;
}

bool EnvelopeFinder::lies_on(int point, int ring) const {
    constexpr int few = 64; // are searched faster than another record is fetched
    const CArray<int>& pts = rings_[ring].pts;
    if (pts.GetSize() <= few) {
        return std::find(begin(pts), end(pts), point) != end(pts);
    }
    const CArray<int>& through = links_[point].rings;
    return std::binary_search(begin(through), end(through), ring);
}

/// The box around a ring, which spares most points the winding test.
const korvel::IntBox& EnvelopeFinder::box_of(int ring) {
    korvel::IntBox& box = boxes_[ring];
    if (box.x_min > box.x_max) {
        for (const int pt : rings_[ring].pts) {
            box.include(pts_[pt]);
        }
    }
    return box;
}

void EnvelopeFinder::claim(const CArray<int>& rings) {
    for (const int ring : rings) {
        rings_[ring].is_hole = 1;
        for (const int pt : rings_[ring].pts) {
            is_visited_[pt] = 1;
        }
    }
}

} // namespace
