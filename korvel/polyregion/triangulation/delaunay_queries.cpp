// What the constrained Delaunay triangulation answers about edges, sides and clearances.

#include <cmath>

#include "korvel/polyregion/triangulation/constrained_delaunay.h"
#include "korvel/polyregion/triangulation/delaunay_walk.h"

namespace korvel {

int ConstrainedDelaunay::apex(int a, int b, int hint) {
    const int h = is_usable_ ? half_edge(a, b, hint) : none;
    if (h == none) {
        return none;
    }
    last_ = h;
    const int corner = from(previous(h));
    return corner < points_.count() ? corner : none;
}

/// Looks at the hint first and along the triangle that was asked for last, one of whose sides may
/// be new.
int ConstrainedDelaunay::half_edge(int a, int b, int hint) const {
    for (const int h : {hint, last_, next(last_), previous(last_)}) {
        if (h != none && from(h) == a && to(h) == b) {
            return h;
        }
        if (h != none && from(h) == b && to(h) == a) {
            return twin(h);
        }
    }
    return half_edge(a, b);
}

/// The half-edge from one vertex to another, or `none`. Looks around both ends in turn, so that one
/// of few neighbours is enough; there is no way round a corner of the wide triangle.
int ConstrainedDelaunay::half_edge(int a, int b) const {
    const bool round_a = a < points_.count();
    const bool round_b = b < points_.count();
    const int first_a = first_[a];
    const int first_b = first_[b];
    for (int at_a = first_a, at_b = first_b; round_a || round_b;) {
        if (round_a) {
            if (to(at_a) == b) {
                return at_a;
            }
            at_a = next_around(at_a);
            if (at_a == first_a) {
                break;
            }
        }
        if (round_b) {
            if (to(at_b) == a) {
                return twin(at_b);
            }
            at_b = next_around(at_b);
            if (at_b == first_b) {
                break;
            }
        }
    }
    return none;
}

std::optional<std::array<int, 2>> ConstrainedDelaunay::side_across(int u, int v) const {
    std::optional<std::array<int, 2>> across;
    if (is_usable_) {
        walk(u, v, most_turns, [&](int h) {
            if (is_side(h)) {
                across = {from(h), to(h)};
            }
            return is_side(h);
        });
    }
    return across;
}

/// The ray from u through v, beyond v, with offsets and distances times |u − v|.
struct ConstrainedDelaunay::RayBeyond {
    RayBeyond(PlanePoint u, PlanePoint v, double distance, double slope_of_cone)
        : from_v(v), along{v.x - u.x, v.y - u.y}, length2(along.x * along.x + along.y * along.y),
          slope(slope_of_cone), least(distance * std::sqrt(length2) + slope * length2) {}

    double side_of(PlanePoint p) const {
        return along.x * (p.y - from_v.y) - along.y * (p.x - from_v.x);
    }
    double beyond_v(PlanePoint p) const {
        return along.x * (p.x - from_v.x) + along.y * (p.y - from_v.y);
    }
    /// Whether the point at a part of the way from v to p is not near the ray.
    bool is_off(PlanePoint p, double part) const {
        return std::fabs(side_of(p)) * part > least + slope * std::fabs(beyond_v(p)) * part;
    }

    PlanePoint from_v;
    PlanePoint along;
    double length2;
    double slope;
    double least;
};

/// As long as all vertices on the left and on the right of the triangles on the ray are not near,
/// whatever is near lies in these triangles, so there is nothing; but next to v they are narrower.
bool ConstrainedDelaunay::is_free_beyond(int u, int v, double distance, double slope) const {
    if (!is_usable_) {
        return false;
    }
    const RayBeyond ray(at(u), at(v), distance, slope);
    // Up to its clearance v has nothing around it, and from there to p the edge leads off the ray.
    const auto leads_off = [&](int p) {
        const double part = std::sqrt(clearance2(v) / squared_length(at(v), at(p)));
        return ray.is_off(at(p), 1) && ray.is_off(at(p), part);
    };
    const int first = first_[v];
    int h = first;
    int turns = most_turns;
    while (!(ray.side_of(at(to(h))) < 0 && ray.side_of(at(from(previous(h)))) > 0)) {
        h = next_around(h);
        if (h == first || --turns == 0) {
            return false;
        }
    }
    if (!leads_off(to(h)) || !leads_off(from(previous(h)))) {
        return false;
    }
    h = next(h);
    for (int steps = 0; steps < most_steps; ++steps) {
        const int g = twin(h);
        if (g == none || blocks(h, ray)) {
            return true;
        }
        const int p = from(previous(g));
        if (!ray.is_off(at(p), 1)) {
            return false;
        }
        h = ray.side_of(at(p)) < 0 ? previous(g) : next(g);
    }
    return false;
}

/// Whether an edge is a side that certainly crosses every segment along the ray to beyond it.
bool ConstrainedDelaunay::blocks(int h, const RayBeyond& ray) const {
    const double apart = ray.side_of(at(to(h))) - ray.side_of(at(from(h)));
    return is_side(h) && has_room(from(h), to(h), clear_) &&
           apart * apart > tolerance::blocking_sine * tolerance::blocking_sine * ray.length2 *
                               squared_length(at(from(h)), at(to(h)));
}

} // namespace korvel
