// The second half of the plain analysis: from rings of curves to regions.

#include "tests/region/plain_steps.h"

#include <algorithm>
#include <utility>

namespace korvel::test {

void list_ring_points(Analysis& a) {
    for (const Pts& curve : a.split) {
        for (const Pt pt : curve) {
            if (!contains(a.unique_pts, pt)) {
                a.unique_pts.push_back(pt);
            }
            a.pt_index.push_back(index_in(a.unique_pts, pt));
        }
    }
    for (const Ints& ring : a.rings) {
        Ints& list = a.ring_pts.emplace_back();
        for (const int id : ring) {
            for (const Pt pt : walked(a, id)) {
                list.push_back(index_in(a.unique_pts, pt));
            }
            list.pop_back(); // the first point of the next curve, or of the ring
        }
    }
    a.kept_areas = a.areas;
}

namespace {

void remove_ring(Analysis& a, std::ptrdiff_t ring) {
    a.ring_pts.erase(a.ring_pts.begin() + ring);
    a.kept_areas.erase(a.kept_areas.begin() + ring);
}

} // namespace

void list_sides(Analysis& a) {
    const auto touches_itself = [](Ints ring) {
        std::sort(ring.begin(), ring.end());
        return std::adjacent_find(ring.begin(), ring.end()) != ring.end();
    };
    const auto first = std::find_if(a.ring_pts.begin(), a.ring_pts.end(), touches_itself);
    if (first != a.ring_pts.end()) {
        remove_ring(a, first - a.ring_pts.begin());
    }
    for (const Ints& ring : a.ring_pts) {
        for (int k = 0; k < count_of(ring); ++k) {
            const std::pair side{at(ring, k), at(ring, (k + 1) % count_of(ring))};
            if (!contains(a.sides, side) &&
                !contains(a.sides, std::pair{side.second, side.first})) {
                a.sides.push_back(side);
            }
        }
    }
}

namespace {

bool encloses(const Analysis& a, const Ints& ring, int point) {
    Pts corners;
    for (const int corner : ring) {
        corners.push_back(at(a.unique_pts, corner));
    }
    return winds_around(corners, at(a.unique_pts, point));
}

} // namespace

void drop_envelopes(Analysis& a) {
    a.rings_at.resize(a.unique_pts.size());
    a.sides_at.resize(a.unique_pts.size());
    for (int u = 0; u < count_of(a.unique_pts); ++u) {
        for (int k = 0; k < count_of(a.ring_pts); ++k) {
            if (contains(at(a.ring_pts, k), u)) {
                at(a.rings_at, u).push_back(k);
            }
        }
        for (int k = 0; k < count_of(a.sides); ++k) {
            if (at(a.sides, k).first == u || at(a.sides, k).second == u) {
                at(a.sides_at, u).push_back(k);
            }
        }
    }
    std::vector<bool> visited(a.unique_pts.size());
    std::vector<bool> claimed(a.ring_pts.size());
    Ints envelopes;
    for (int u = 0; u < count_of(a.unique_pts); ++u) {
        const Ints& through = at(a.rings_at, u);
        if (visited[std::size_t(u)] || through.size() < 3) {
            continue;
        }
        const int largest = *std::max_element(through.begin(), through.end(), [&](int x, int y) {
            return at(a.kept_areas, x) < at(a.kept_areas, y);
        });
        Ints points;
        for (const int ring : through) {
            points.insert(points.end(), at(a.ring_pts, ring).begin(), at(a.ring_pts, ring).end());
        }
        const Ints& outline = at(a.ring_pts, largest);
        const auto off = std::find_if(points.begin(), points.end(),
                                      [&](int pt) { return !contains(outline, pt); });
        if (!claimed[std::size_t(largest)] && (off == points.end() || encloses(a, outline, *off))) {
            envelopes.push_back(largest);
            for (const int ring : through) {
                claimed[std::size_t(ring)] = true;
            }
            for (const int pt : points) {
                visited[std::size_t(pt)] = true;
            }
        }
    }
    std::sort(envelopes.rbegin(), envelopes.rend());
    for (const int ring : envelopes) {
        remove_ring(a, ring);
    }
}

void nest(Analysis& a) {
    a.is_hole.assign(a.ring_pts.size(), 0);
    for (int i = 0; i < count_of(a.ring_pts); ++i) {
        a.regions.push_back({i});
        const Ints& outer = at(a.ring_pts, i);
        for (int j = 0; j < i; ++j) {
            const Ints& inner = at(a.ring_pts, j);
            const bool meet = std::any_of(outer.begin(), outer.end(),
                                          [&](int pt) { return contains(inner, pt); });
            if (at(a.is_hole, j) == 0 && !meet && encloses(a, outer, inner[0])) {
                at(a.regions, i).push_back(j);
                at(a.is_hole, j) = 1;
            }
        }
    }
}

} // namespace korvel::test
