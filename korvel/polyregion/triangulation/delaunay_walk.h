#pragma once

#include <cmath>
#include <cstddef>

#include "korvel/polyregion/triangulation/constrained_delaunay.h"

namespace korvel {

/// Calls `visit(h)` for each edge that the way from u to v crosses, h running from its right to its
/// left, until a call returns true or there is a vertex on the way. Returns that vertex, or `none`.
/// Looks for the start of the way in so many triangles around u.
template <class Visit>
int ConstrainedDelaunay::walk(int u, int v, int turns, Visit visit) const {
    const PlanePoint from_u = at(u);
    const PlanePoint along{at(v).x - from_u.x, at(v).y - from_u.y};
    const auto side_of = [&](int p) {
        return along.x * (at(p).y - from_u.y) - along.y * (at(p).x - from_u.x);
    };
    const auto is_on_way = [&](int p) {
        return std::fabs(side_of(p)) <= margin_ &&
               along.x * (at(p).x - from_u.x) + along.y * (at(p).y - from_u.y) > 0;
    };
    const auto vertex_before_v = [&](int p) {
        return p == v || squared_length(from_u, at(p)) < squared_length(from_u, at(v)) ? p : none;
    };
    const int first = first_[u];
    int h = first;
    while (!is_on_way(to(h)) && !(side_of(to(h)) < 0 && side_of(from(previous(h))) > 0)) {
        h = next_around(h);
        if (h == first || --turns == 0) {
            return none;
        }
    }
    if (is_on_way(to(h))) {
        return vertex_before_v(to(h));
    }
    h = next(h);
    for (std::size_t steps = 0; steps < from_.size() && !visit(h); ++steps) {
        const int g = twin(h);
        const int p = from(previous(g));
        const double side = side_of(p);
        if (p == v || std::fabs(side) <= margin_) {
            return vertex_before_v(p);
        }
        h = side < 0 ? previous(g) : next(g);
    }
    return none;
}

} // namespace korvel
