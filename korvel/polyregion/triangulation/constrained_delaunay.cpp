#include "korvel/polyregion/triangulation/constrained_delaunay.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "korvel/base/key_index.h"

namespace korvel {

void ConstrainedDelaunay::start() {
    const int count = points_.count();
    const double extent = points_.extent();
    margin_ = tolerance::guide_area * extent * extent;
    clear_ = tolerance::clear * extent;
    at_.clear();
    PlanePoint low = points_.local(0);
    PlanePoint high = low;
    for (int p = 0; p < count; ++p) {
        const PlanePoint pt = points_.local(p);
        at_.push_back(pt);
        low = {std::min(low.x, pt.x), std::min(low.y, pt.y)};
        high = {std::max(high.x, pt.x), std::max(high.y, pt.y)};
    }
    const PlanePoint middle{(low.x + high.x) / 2, (low.y + high.y) / 2};
    at_.push_back({middle.x - 6 * extent, middle.y - 2 * extent});
    at_.push_back({middle.x + 6 * extent, middle.y - 2 * extent});
    at_.push_back({middle.x, middle.y + 5 * extent});

    from_.clear();
    twin_.clear();
    first_.assign(at_.size(), none);
    clearance2_.assign(at_.size(), std::numeric_limits<double>::infinity());
    is_side_.clear();
    last_ = 0;
    is_usable_ = true;
    add_triangle(count, count + 1, count + 2);
    insert_in_rounds();
    is_side_.assign(from_.size(), 0);
    for (int h = 0; is_usable_ && h < static_cast<int>(from_.size()); h += 3) {
        limit_clearances(h);
    }
}

/// About half of the points wait for the last round, half of the others for the one before, and so
/// on, by chance: so no order of theirs makes one point after another take over the same triangles
/// (N. Amenta, S. Choi and G. Rote, 2003). Within a round neighbours on a ring follow one another.
void ConstrainedDelaunay::insert_in_rounds() {
    constexpr int first_round_points = 8;
    const int count = points_.count();
    const int rounds = std::bit_width(static_cast<unsigned>(count / first_round_points));
    rounds_.clear();
    for (int p = 0; p < count; ++p) {
        rounds_.push_back(static_cast<char>(
            std::max(rounds - std::countr_zero(mix_bits(static_cast<std::uint64_t>(p))), 0)));
    }
    for (int round = 0; round <= rounds; ++round) {
        int near = count; // the last vertex inserted, or a corner of the wide triangle
        for (int p = 0; p < count && is_usable_; ++p) {
            if (rounds_[p] == round) {
                insert(p, near);
            }
            near = rounds_[p] <= round ? p : near;
        }
    }
}

double ConstrainedDelaunay::twice_area(int a, int b, int c) const {
    return (at(b).x - at(a).x) * (at(c).y - at(a).y) - (at(b).y - at(a).y) * (at(c).x - at(a).x);
}

void ConstrainedDelaunay::limit_clearances(int h) {
    const std::array<int, 3> corners{from(h), to(h), from(previous(h))};
    const double area = twice_area(corners[0], corners[1], corners[2]);
    for (std::size_t i = 0; i < 3; ++i) {
        const double opposite2 = squared_length(at(corners[(i + 1) % 3]), at(corners[(i + 2) % 3]));
        double& clearance2 = clearance2_[corners[i]];
        clearance2 = std::min(clearance2, area * area / opposite2);
    }
}

void ConstrainedDelaunay::link(int h, int other) {
    twin_[h] = other;
    if (other != none) {
        twin_[other] = h;
    }
}

/// The first half-edge of a new triangle without neighbours.
int ConstrainedDelaunay::add_triangle(int a, int b, int c) {
    const int h = static_cast<int>(from_.size());
    for (const int p : {a, b, c}) {
        first_[p] = static_cast<int>(from_.size());
        from_.push_back(p);
        twin_.push_back(none);
    }
    return h;
}

/// Locates a new vertex from the triangles around one that has been inserted, and inserts it.
void ConstrainedDelaunay::insert(int p, int near) {
    int on_edge = none;
    const int h = edge_or_triangle_at(p, near, on_edge);
    if (h == none) {
        is_usable_ = false;
    } else if (on_edge == none) {
        divide_triangle(h, p);
    } else {
        divide_edge(on_edge, p);
    }
    if (is_usable_) {
        make_delaunay_around(p);
    }
}

/// A half-edge of the triangle that holds the point, and the edge of it on which the point lies, if
/// any; or `none` for a point where a vertex is.
int ConstrainedDelaunay::edge_or_triangle_at(int p, int near, int& on_edge) const {
    int h = first_[near];
    for (std::size_t steps = 0; steps <= from_.size(); ++steps) {
        int beyond = none;
        int on = 0;
        for (int i = 0; i < 3; ++i, h = next(h)) {
            const double area = twice_area(from(h), to(h), p);
            if (area < -margin_) {
                beyond = twin(h);
                break;
            }
            if (area <= margin_) {
                on_edge = h;
                ++on;
            }
        }
        if (beyond == none) {
            on_edge = on == 0 ? none : on_edge;
            return on < 2 ? h : none;
        }
        h = beyond;
    }
    return none;
}

void ConstrainedDelaunay::divide_triangle(int h, int p) {
    const int a = from(h);
    const int b = to(h);
    const int c = from(previous(h));
    const int beyond_b = twin(next(h));
    const int beyond_c = twin(previous(h));
    const int second = add_triangle(b, c, p);
    const int third = add_triangle(c, a, p);
    from_[previous(h)] = p;
    link(second, beyond_b);
    link(third, beyond_c);
    link(next(h), previous(second));
    link(next(second), previous(third));
    link(next(third), previous(h));
    first_[a] = h;
    first_[p] = previous(h);
    to_check_.assign({h, second, third});
}

void ConstrainedDelaunay::divide_edge(int h, int p) {
    const int g = twin(h);
    const int a = from(h);
    const int b = to(h);
    const int c = from(previous(h));
    const int d = from(previous(g));
    if (!is_sound(p, b, c) || !is_sound(a, p, c) || !is_sound(p, a, d) || !is_sound(b, p, d)) {
        is_usable_ = false;
        return;
    }
    // h becomes a → p of a-p-c, g becomes p → a of p-a-d.
    const int beyond_b = twin(next(h));
    const int beyond_d = twin(previous(g));
    const int upper = add_triangle(p, b, c);
    const int lower = add_triangle(b, p, d);
    from_[next(h)] = p;
    from_[g] = p;
    link(upper, lower);
    link(next(upper), beyond_b);
    link(previous(upper), next(h));
    link(previous(lower), beyond_d);
    link(next(lower), previous(g));
    first_[a] = h;
    first_[p] = g;
    to_check_.assign({previous(h), next(upper), next(g), previous(lower)});
}

/// Flips edges opposite a new point until all circles around it are empty (C. L. Lawson, 1977).
void ConstrainedDelaunay::make_delaunay_around(int p) {
    while (!to_check_.empty()) {
        const int h = to_check_.back(); // of a triangle with p
        const int g = twin(h);
        if (g != none && is_in_circle(from(h), to(h), p, from(previous(g))) && may_flip(h)) {
            flip(h);
            to_check_.push_back(next(g));
        } else {
            to_check_.pop_back();
        }
    }
}

bool ConstrainedDelaunay::is_in_circle(int a, int b, int c, int p) const {
    const PlanePoint to_a{at(a).x - at(p).x, at(a).y - at(p).y};
    const PlanePoint to_b{at(b).x - at(p).x, at(b).y - at(p).y};
    const PlanePoint to_c{at(c).x - at(p).x, at(c).y - at(p).y};
    const auto square = [](PlanePoint v) { return v.x * v.x + v.y * v.y; };
    const auto cross = [](PlanePoint u, PlanePoint v) { return u.x * v.y - u.y * v.x; };
    return square(to_a) * cross(to_b, to_c) + square(to_b) * cross(to_c, to_a) +
               square(to_c) * cross(to_a, to_b) >
           0;
}

/// Whether the triangles on both sides of an edge make a quadrilateral whose other diagonal leaves
/// two sound triangles.
bool ConstrainedDelaunay::may_flip(int h) const {
    const int apex = from(previous(h));
    const int opposite = from(previous(twin(h)));
    return is_sound(apex, from(h), opposite) && is_sound(opposite, to(h), apex);
}

/// Gives the two triangles at an edge their other diagonal. h and its twin g become edges that went
/// round them, next to the diagonal.
void ConstrainedDelaunay::flip(int h) {
    const int g = twin(h);
    const int apex = from(previous(h));
    const int opposite = from(previous(g));
    const int beyond_h = twin(previous(g));
    const int beyond_g = twin(previous(h));
    first_[from(h)] = next(g);
    first_[from(g)] = next(h);
    first_[apex] = previous(h);
    first_[opposite] = previous(g);
    from_[h] = opposite;
    from_[g] = apex;
    if (!is_side_.empty()) {
        is_side_[h] = is_side_[previous(g)];
        is_side_[g] = is_side_[previous(h)];
        is_side_[previous(g)] = 0;
        is_side_[previous(h)] = 0;
    }
    link(h, beyond_h);
    link(g, beyond_g);
    link(previous(h), previous(g));
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

int ConstrainedDelaunay::apex(int a, int b, int hint) {
    const int h = is_usable_ ? half_edge(a, b, hint) : none;
    if (h == none) {
        return none;
    }
    last_ = h;
    const int corner = from(previous(h));
    return corner < points_.count() ? corner : none;
}

int ConstrainedDelaunay::add_side(int p0, int p1) {
    int hint = none;
    for (int p = p0; is_usable_ && p != p1;) {
        const auto [end, h] = add_piece(p, p1);
        // Among points as near to one another as rounding the way could lead back.
        is_usable_ = is_usable_ && squared_length(at(end), at(p1)) < squared_length(at(p), at(p1));
        p = end;
        hint = h;
    }
    return hint;
}

int ConstrainedDelaunay::mark_side(int h) {
    is_side_[h] = 1;
    is_side_[twin(h)] = 1;
    return h;
}

/// Makes the part of a side up to the next vertex on it an edge. Returns that vertex, and the half
/// edge to it.
std::array<int, 2> ConstrainedDelaunay::add_piece(int u, int v) {
    const int known = half_edge(u, v, none);
    if (known != none) {
        return {v, mark_side(known)};
    }
    const int end = find_crossed(u, v);
    if (end == none || !remove_crossed(u, end)) {
        is_usable_ = false;
        return {v, none};
    }
    if (end != v) {
        clearance2_[end] = 0;
    }
    return {end, mark_side(half_edge(u, end))};
}

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

/// As long as all vertices on the left and on the right of the triangles on the way are not near,
/// whatever is lies in these triangles, so there is nothing; but next to v they are narrower.
bool ConstrainedDelaunay::is_free_beyond(int u, int v, double distance, double slope) const {
    if (!is_usable_) {
        return false;
    }
    const PlanePoint from_v = at(v);
    const PlanePoint along{from_v.x - at(u).x, from_v.y - at(u).y};
    const double length2 = along.x * along.x + along.y * along.y;
    // Offsets and distances along the way, both times |u − v|.
    const auto side_of = [&](int p) {
        return along.x * (at(p).y - from_v.y) - along.y * (at(p).x - from_v.x);
    };
    const auto beyond_v = [&](int p) {
        return along.x * (at(p).x - from_v.x) + along.y * (at(p).y - from_v.y);
    };
    const double least = distance * std::sqrt(length2) + slope * length2;
    const auto is_off = [&](int p) {
        return std::fabs(side_of(p)) > least + slope * std::fabs(beyond_v(p));
    };
    // Up to its clearance v has nothing around it, and from there to p the edge leads off the way.
    const auto leads_off = [&](int p) {
        const double part = std::sqrt(clearance2(v) / squared_length(from_v, at(p)));
        return is_off(p) &&
               std::fabs(side_of(p)) * part > least + slope * std::fabs(beyond_v(p)) * part;
    };
    const auto blocks = [&](int h) {
        const double apart = side_of(to(h)) - side_of(from(h));
        return is_side(h) && has_room(from(h), to(h), clear_) &&
               apart * apart > tolerance::blocking_sine * tolerance::blocking_sine * length2 *
                                   squared_length(at(from(h)), at(to(h)));
    };
    const int first = first_[v];
    int h = first;
    int turns = most_turns;
    while (!(side_of(to(h)) < 0 && side_of(from(previous(h))) > 0)) {
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
        if (g == none || blocks(h)) {
            return true;
        }
        const int p = from(previous(g));
        if (!is_off(p)) {
            return false;
        }
        h = side_of(p) < 0 ? previous(g) : next(g);
    }
    return false;
}

/// Lists the edges that the side from u to v crosses up to the next vertex on it, and returns
/// that vertex; or `none` where it crosses another side.
int ConstrainedDelaunay::find_crossed(int u, int v) {
    crossed_.clear();
    return walk(u, v, std::numeric_limits<int>::max(), [&](int h) {
        crossed_.push_back({from(h), to(h)});
        return is_side(h);
    });
}

/// Flips what the edge from u to v is to cross, and later what cannot be flipped yet (S. W. Sloan,
/// 1993). False where that comes to no end soon.
bool ConstrainedDelaunay::remove_crossed(int u, int v) {
    const std::size_t most = 16 * crossed_.size() + 16;
    flipped_.clear();
    for (std::size_t i = 0; i < crossed_.size(); ++i) {
        const auto [p, q] = crossed_[i];
        const int h = half_edge(p, q);
        if (i > most || h == none) {
            return false;
        }
        if (!may_flip(h)) {
            crossed_.push_back({p, q});
            continue;
        }
        const int apex = from(previous(h));
        const int opposite = from(previous(twin(h)));
        flip(h);
        const bool joins_end = apex == u || apex == v || opposite == u || opposite == v;
        const bool crosses =
            !joins_end && (twice_area(u, v, apex) > 0) != (twice_area(u, v, opposite) > 0);
        (crosses ? crossed_ : flipped_).push_back({apex, opposite});
    }
    for (const auto& [p, q] : flipped_) {
        const int h = half_edge(p, q);
        if (h == none) {
            continue;
        }
        const int g = twin(h);
        const bool is_new_side = (p == u && q == v) || (p == v && q == u);
        if (!is_new_side && is_in_circle(from(h), to(h), from(previous(h)), from(previous(g))) &&
            may_flip(h)) {
            flip(h);
        }
        limit_clearances(h);
        limit_clearances(g);
    }
    return half_edge(u, v) != none;
}

} // namespace korvel
