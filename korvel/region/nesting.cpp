// Rings as lists of shared points, the rings that bound no region, and the nesting of the others.

#include <memory>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/plane/live_points.h"
#include "korvel/plane/winding.h"
#include "korvel/platform/prefetch.h"
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
            if (pt >= 0 && pt < points && std::exchange(last_ring[pt], ring) != ring) {
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
            if (std::exchange(last_ring_[pt], ring) == ring) {
                return true;
            }
        }
        return false;
    }

private:
    std::vector<int> last_ring_;
};

/// Whether two rings share a point. Cheap where one ring is asked about several others in a row.
class TouchingRings {
public:
    TouchingRings(const CArray<CREGION::RToPt>& rings, int points)
        : rings_(rings), points_(points) {}

    bool operator()(int ring, int other) {
        if (at_points_ == nullptr) {
            at_points_ = std::make_unique<korvel::PackedLists>(
                points_, [&](auto add) { for_each_ring_at_point(rings_, points_, add); });
            touched_by_.assign(static_cast<std::size_t>(rings_.GetSize()), -1);
        }
        if (std::exchange(last_, ring) != ring) {
            for (const int pt : rings_[ring].pts) {
                for (const int neighbour : (*at_points_)[pt]) {
                    touched_by_[neighbour] = ring;
                }
            }
        }
        return touched_by_[other] == ring;
    }

private:
    const CArray<CREGION::RToPt>& rings_;
    int points_;
    std::unique_ptr<korvel::PackedLists> at_points_; ///< the rings through each point, once needed
    std::vector<int> touched_by_; ///< of each ring the last one asked about that touches it
    int last_ = -1;               ///< the last ring asked about
};

} // namespace

/// Turns each ring of curves into a ring of indices into `unique_pts`.
void CREGION::GetAllRingInex() {
    const CurveSpans curves(curve_pts, curve_counts);
    ring_pts.SetSize(0);
    ring_pts.SetSize(rings.GetSize());
    std::vector<int> places;
    for (int r = 0; r < rings.GetSize(); ++r) {
        korvel::find_ring_places(curves, rings[r].curve_ids, places);
        RToPt& ring = ring_pts[r];
        ring.ring_area = rings[r].ring_area;
        ring.pts.SetSize(static_cast<int>(places.size()));
        std::transform(places.begin(), places.end(), ring.pts.begin(),
                       [&](int place) { return pt_index[place]; });
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
    korvel::KeyIndex seen(unique_pts.GetSize());
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
        constexpr int few = 64; // may be looked through sooner than another list is found
        if (ring_pts[ring].pts.GetSize() <= few) {
            return PointAtRing(pt, ring_pts[ring]) == 1;
        }
        const CArray<int>& through = pt_links[pt].rings;
        return std::binary_search(through.begin(), through.end(), ring);
    };
    std::vector<korvel::IntBox> boxes(static_cast<std::size_t>(ring_pts.GetSize()));
    const auto box_of = [&](int ring) -> const korvel::IntBox& {
        korvel::IntBox& box = boxes[ring];
        if (box.x_min > box.x_max) {
            for (const int pt : ring_pts[ring].pts) {
                box.include(unique_pts[pt]);
            }
        }
        return box;
    };
    // The first point of the other rings that is not on the largest decides.
    const auto encloses_the_others = [&](int largest, const CArray<int>& through) {
        for (const int other : through) {
            if (other == largest) {
                continue;
            }
            for (const int pt : ring_pts[other].pts) {
                if (!lies_on(pt, largest)) {
                    return box_of(largest).contains(unique_pts[pt]) &&
                           PtInRing(unique_pts[pt], ring_pts[largest], unique_pts) == 1;
                }
            }
        }
        return true;
    };

    std::vector<char> visited(static_cast<std::size_t>(unique_pts.GetSize()), 0);
    for (int u = 0; u < pt_links.GetSize(); ++u) {
        constexpr int points_ahead = 8;
        if (u + points_ahead < pt_links.GetSize()) {
            for (const int ring : pt_links[u + points_ahead].rings) {
                korvel::prefetch(&ring_pts[ring]);
            }
        }
        const CArray<int>& through = pt_links[u].rings;
        if (visited[u] != 0 || through.GetSize() < 3) {
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
                visited[pt] = 1;
            }
        }
    }
    remove_marked(ring_pts);
    ring_pts.FreeExtra();
}

void CREGION::SearchAllRegion() {
    const int count = ring_pts.GetSize();
    regions.SetSize(count);
    // A ring that a host has emptied, or given points that do not exist, lies nowhere.
    std::vector<char> has_place(static_cast<std::size_t>(count));
    std::vector<POINT> first_points(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        RToPt& ring = ring_pts[i];
        ring.is_hole = 0;
        regions[i].is_select = 0;
        regions[i].rings.RemoveAll();
        regions[i].rings.Add(i);
        if (!ring.pts.IsEmpty() && korvel::has_elements(unique_pts, ring.pts)) {
            has_place[i] = 1;
            first_points[i] = unique_pts[ring.pts[0]];
        }
    }

    // Alive are the first points of the rings before ring i that no ring has claimed yet.
    korvel::LivePoints unclaimed(first_points);
    std::vector<int> inside_box;
    std::vector<POINT> corners;
    TouchingRings touching(ring_pts, unique_pts.GetSize());
    for (int i = 0; i < count; ++i) {
        if (has_place[i] == 0) {
            continue;
        }
        constexpr std::size_t rings_ahead = 2;
        const std::size_t ahead = static_cast<std::size_t>(i) + rings_ahead;
        if (ahead < has_place.size() && has_place[ahead] != 0) {
            for (const int pt : ring_pts[static_cast<int>(ahead)].pts) {
                korvel::prefetch(&unique_pts[pt]);
            }
        }
        corners.clear();
        korvel::IntBox box;
        for (const int pt : ring_pts[i].pts) {
            corners.push_back(unique_pts[pt]);
            box.include(corners.back());
        }
        // A point outside the box is outside the ring.
        unclaimed.collect(box, inside_box);
        // Rings that touch ring i are found at a cost, saved where there are few to look at.
        constexpr std::size_t few = 8;
        const bool are_many = inside_box.size() > few;
        for (const int j : inside_box) {
            if (are_many && touching(i, j)) {
                continue;
            }
            const auto corner = [&](int k) {
                return korvel::vector_between(first_points[j], corners[k]);
            };
            if (korvel::winding_encloses(ring_pts[i].pts.GetSize(), corner) && !touching(i, j)) {
                regions[i].rings.Add(j);
                ring_pts[j].is_hole = 1;
                unclaimed.set_alive(j, false);
            }
        }
        unclaimed.set_alive(i, true);
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
