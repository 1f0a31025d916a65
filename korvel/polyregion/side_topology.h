#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/base/packed_lists.h"
#include "korvel/base/ring_sides.h"
#include "korvel/plane/plane_point.h"
#include "korvel/polyregion/ring.h"
#include "korvel/polyregion/vert2d.h"

namespace korvel {

inline PlanePoint plane_point(const VERT2D& vertex) {
    return {vertex.x, vertex.y};
}

/// Whether every point index of the ring names a point.
inline bool has_all_points(const RING& ring, const CArray<VERT2D>& points) {
    return std::all_of(begin(ring.pts), end(ring.pts),
                       [&](int pt) { return has_element(points, pt); });
}

/// Derives the sides of the rings of a `CCPloy2DRg` or a `PLYDT`, the sides of each ring and the
/// sides at each point. `make_side(a, b)` returns the side from point a to point b. Where a ring
/// has an index outside the points, nothing changes.
template <class RegionSet, class MakeSide>
void derive_sides(RegionSet& set, MakeSide make_side) {
    const auto is_sound = [&](const RING& ring) { return has_all_points(ring, set.pt_list); };
    if (set.ring_list.IsEmpty() ||
        !std::all_of(begin(set.ring_list), end(set.ring_list), is_sound)) {
        return;
    }

    KeyIndex known(set.side_list.GetSize() + set.pt_list.GetSize());
    for (int side = 0; side < set.side_list.GetSize(); ++side) {
        known.find_or_add(side_key(set.side_list[side].p0, set.side_list[side].p1), side);
    }
    std::vector<std::pair<int, int>> added;
    const auto next_side = [&] { return set.side_list.GetSize() + static_cast<int>(added.size()); };
    // Ring 0's first side is appended whether it is known or not, once more with every call.
    const CArray<int>& first_ring = set.ring_list[0].pts;
    if (!first_ring.IsEmpty()) {
        const int a = first_ring[0];
        const int b = first_ring[first_ring.GetSize() > 1 ? 1 : 0];
        known.find_or_add(side_key(a, b), next_side());
        added.emplace_back(a, b);
    }
    for (RING& ring : set.ring_list) {
        const int n = ring.pts.GetSize();
        ring.sides.SetSize(n);
        for_each_side(ring.pts, n, [&](int k, int a, int b) {
            ring.sides[k] = known.find_or_add(side_key(a, b), next_side());
            if (ring.sides[k] == next_side()) {
                added.emplace_back(a, b);
            }
        });
    }
    int slot = set.side_list.GetSize();
    set.side_list.SetSize(next_side());
    for (const auto& [a, b] : added) {
        set.side_list[slot++] = make_side(a, b);
    }

    const auto each_end = [&](auto add) {
        for (int side = 0; side < set.side_list.GetSize(); ++side) {
            const int p0 = set.side_list[side].p0;
            const int p1 = set.side_list[side].p1;
            if (has_element(set.pt_list, p0)) {
                add(p0, side);
            }
            if (p1 != p0 && has_element(set.pt_list, p1)) {
                add(p1, side);
            }
        }
    };
    distribute(set.pt_list.GetSize(), each_end,
               [&](int pt) -> CArray<int>& { return set.pt_list[pt].side_refs; });
}

} // namespace korvel
