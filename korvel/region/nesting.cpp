// Rings as lists of shared points, the rings that bound no region, and the nesting of the others.

#include "korvel/geometry/first_index.h"
#include "korvel/geometry/list_index.h"
#include "korvel/geometry/live_points.h"
#include "korvel/geometry/winding.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"

using korvel::CurveSpans;

namespace {

/// Calls `add(point, ring)` once for each ring through each point, in ring order.
template <class Add>
void for_each_ring_at_point(const CArray<CREGION::RToPt>& rings, int points, Add add) {
    std::vector<int> last_ring(static_cast<std::size_t>(points), -1);
    for (int ring = 0; ring < rings.GetSize(); ++ring) {
        for (const int pt : rings[ring].pts) {
            if (pt >= 0 && pt < points &&
                std::exchange(last_ring[static_cast<std::size_t>(pt)], ring) != ring) {
                add(pt, ring);
            }
        }
    }
}

void remove_marked(CArray<CREGION::RToPt>& rings) {
    korvel::remove_elements(rings, [](const CREGION::RToPt& ring) { return ring.is_removed == 1; });
}

/// Finds a point that a ring passes twice, in time linear in the ring.
class SelfTouch {
public:
    explicit SelfTouch(int points) : last_ring_(static_cast<std::size_t>(points), -1) {}

    bool operator()(const CArray<CREGION::RToPt>& rings, int ring) {
        for (const int pt : rings[ring].pts) {
            if (std::exchange(last_ring_[static_cast<std::size_t>(pt)], ring) == ring) {
                return true;
            }
        }
        return false;
    }

private:
    std::vector<int> last_ring_;
};

} // namespace

/// Turns each ring of curves into a ring of indices into `unique_pts`.
void CREGION::GetAllRingInex() {
    const CurveSpans curves(curve_pts, curve_counts);
    ring_pts.SetSize(0);
    ring_pts.SetSize(rings.GetSize());
    std::vector<int> walk;
    for (int r = 0; r < rings.GetSize(); ++r) {
        walk.clear();
        for (const int place : korvel::ring_places(curves, rings[r].curve_ids)) {
            walk.push_back(pt_index[place]);
        }
        ring_pts[r].ring_area = rings[r].ring_area;
        korvel::assign_list(ring_pts[r].pts, walk);
    }
}

/// Drops the first ring that touches itself and lists the distinct sides of the others.
void CREGION::GetAllSideInex() {
    SelfTouch touches_itself(unique_pts.GetSize());
    for (int r = 0; r < ring_pts.GetSize(); ++r) {
        if (touches_itself(ring_pts, r)) {
            // The scan stops at the first one on purpose; further ones stay.
            ring_pts[r].is_removed = 1;
            break;
        }
    }
    remove_marked(ring_pts);

    std::vector<RING_SIDE> found;
    korvel::FirstIndex seen(unique_pts.GetSize());
    for (const RToPt& ring : ring_pts) {
        for (int k = 0; k < ring.pts.GetSize(); ++k) {
            const int a = ring.pts[k];
            const int b = ring.pts[k + 1 < ring.pts.GetSize() ? k + 1 : 0];
            const int next = static_cast<int>(found.size());
            if (seen.find_or_add(korvel::side_key(a, b), next) == next) {
                found.push_back({a, b});
            }
        }
    }
    korvel::assign_list(sides, found);
}

/// Drops envelopes: where three or more rings meet in a point, the largest of them, if it encloses
/// the others, is the walk around the outside of the group.
void CREGION::GetRStoPt() {
    pt_links.SetSize(0);
    pt_links.SetSize(unique_pts.GetSize());
    const auto each_ring = [&](auto add) {
        for_each_ring_at_point(ring_pts, unique_pts.GetSize(), add);
    };
    const auto each_side = [&](auto add) {
        for (int side = 0; side < sides.GetSize(); ++side) {
            add(sides[side].p0, side);
            if (sides[side].p1 != sides[side].p0) {
                add(sides[side].p1, side);
            }
        }
    };
    korvel::distribute(pt_links.GetSize(), each_ring,
                       [&](int pt) -> CArray<int>& { return pt_links[pt].rings; });
    korvel::distribute(pt_links.GetSize(), each_side,
                       [&](int pt) -> CArray<int>& { return pt_links[pt].sides; });

    const auto lies_on = [&](int pt, int ring) {
        const CArray<int>& through = pt_links[pt].rings;
        return std::binary_search(through.begin(), through.end(), ring);
    };
    // The first point of the other rings that is not on the largest decides.
    const auto encloses_the_others = [&](int largest, const CArray<int>& through) {
        for (const int other : through) {
            for (const int pt : ring_pts[other].pts) {
                if (!lies_on(pt, largest)) {
                    return PtInRing(unique_pts[pt], ring_pts[largest], unique_pts) == 1;
                }
            }
        }
        return true;
    };

    std::vector<char> visited(static_cast<std::size_t>(unique_pts.GetSize()), 0);
    for (int u = 0; u < pt_links.GetSize(); ++u) {
        const CArray<int>& through = pt_links[u].rings;
        if (visited[static_cast<std::size_t>(u)] != 0 || through.GetSize() < 3) {
            continue;
        }
        int largest = through[0];
        for (const int ring : through) {
            if (ring_pts[ring].ring_area > ring_pts[largest].ring_area) {
                largest = ring;
            }
        }
        if (ring_pts[largest].is_hole != 0 || ring_pts[largest].is_removed != 0 ||
            !encloses_the_others(largest, through)) {
            continue;
        }
        ring_pts[largest].is_removed = 1;
        for (const int ring : through) {
            ring_pts[ring].is_hole = 1;
            for (const int pt : ring_pts[ring].pts) {
                visited[static_cast<std::size_t>(pt)] = 1;
            }
        }
    }
    remove_marked(ring_pts);
    ring_pts.FreeExtra();
}

void CREGION::SearchAllRegion() {
    // A ring that a host has emptied, or given points that do not exist, lies nowhere.
    const auto has_place = [&](const RToPt& ring) {
        return !ring.pts.IsEmpty() && korvel::has_elements(unique_pts, ring.pts);
    };
    const int count = ring_pts.GetSize();
    regions.SetSize(0);
    regions.SetSize(count);
    std::vector<POINT> first_points(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        RToPt& ring = ring_pts[i];
        ring.is_hole = 0;
        regions[i].rings.Add(i);
        if (has_place(ring)) {
            first_points[static_cast<std::size_t>(i)] = unique_pts[ring.pts[0]];
        }
    }
    if (count == 0) {
        return;
    }
    std::vector<CArray<int>> rings_at(static_cast<std::size_t>(unique_pts.GetSize()));
    korvel::distribute(
        unique_pts.GetSize(),
        [&](auto add) { for_each_ring_at_point(ring_pts, unique_pts.GetSize(), add); },
        [&](int pt) -> CArray<int>& { return rings_at[static_cast<std::size_t>(pt)]; });

    // Alive are the first points of the rings before ring i that no ring has claimed yet.
    korvel::LivePoints unclaimed(std::move(first_points));
    std::vector<int> inside_box;
    std::vector<int> neighbour_of(static_cast<std::size_t>(count), -1);
    for (int i = 1; i < count; ++i) {
        unclaimed.set_alive(i - 1, has_place(ring_pts[i - 1]));
        if (!has_place(ring_pts[i])) {
            continue;
        }
        korvel::IntBox box;
        for (const int pt : ring_pts[i].pts) {
            box.include(unique_pts[pt]);
        }
        // A point outside the box is outside the ring.
        unclaimed.collect(box, inside_box);
        if (inside_box.empty()) {
            continue;
        }
        for (const int pt : ring_pts[i].pts) {
            for (const int neighbour : rings_at[static_cast<std::size_t>(pt)]) {
                neighbour_of[static_cast<std::size_t>(neighbour)] = i;
            }
        }
        for (const int j : inside_box) {
            if (neighbour_of[static_cast<std::size_t>(j)] != i &&
                PtInRing(unique_pts[ring_pts[j].pts[0]], ring_pts[i], unique_pts) == 1) {
                regions[i].rings.Add(j);
                ring_pts[j].is_hole = 1;
                unclaimed.set_alive(j, false);
            }
        }
    }
}

int CREGION::PtInRing(tagPOINT pt, const RToPt& ring, CArray<tagPOINT>& pts) {
    const auto corner = [&](int k) { return korvel::vector_to(pts, ring.pts[k], pt); };
    return korvel::winding_encloses(ring.pts.GetSize(), corner) ? 1 : 0;
}

int CREGION::PointAtRing(int pt_index, RToPt& ring) {
    return std::find(ring.pts.begin(), ring.pts.end(), pt_index) != ring.pts.end() ? 1 : 0;
}

int CREGION::IsComPointRing(RToPt& a, RToPt& b) {
    const auto on_b = [&](int pt) { return PointAtRing(pt, b) == 1; };
    return std::any_of(a.pts.begin(), a.pts.end(), on_b) ? 1 : 0;
}
