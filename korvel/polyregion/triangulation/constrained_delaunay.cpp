// The Delaunay triangulation of the vertices, by insertion.

#include "korvel/polyregion/triangulation/constrained_delaunay.h"

#include <algorithm>
#include <bit>
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
        int start = count; // the last vertex inserted, or a corner of the wide triangle
        for (int p = 0; p < count && is_usable_; ++p) {
            if (rounds_[p] == round) {
                insert(p, start);
            }
            start = rounds_[p] <= round ? p : start;
        }
    }
}

/// Locates a new vertex from the triangles around one that has been inserted, and inserts it.
void ConstrainedDelaunay::insert(int p, int start) {
    int on_edge = none;
    const int h = edge_or_triangle_at(p, start, on_edge);
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
int ConstrainedDelaunay::edge_or_triangle_at(int p, int start, int& on_edge) const {
    int h = first_[start];
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

void ConstrainedDelaunay::link(int h, int other) {
    twin_[h] = other;
    if (other != none) {
        twin_[other] = h;
    }
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

double ConstrainedDelaunay::twice_area(int a, int b, int c) const {
    return (at(b).x - at(a).x) * (at(c).y - at(a).y) - (at(b).y - at(a).y) * (at(c).x - at(a).x);
}

} // namespace korvel
