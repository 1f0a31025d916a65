#include "kit/maps/delaunay_mesh.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace korvel::kit {

DelaunayMesh::DelaunayMesh(std::vector<PlanePoint> points)
    : points_(std::move(points)), out_of_(points_.size(), -1) {
    halves_.reserve(6 * points_.size());
    outside_ = triangulate(0, static_cast<int>(points_.size())).left ^ 1;
    for (int half = 0; half < half_count(); ++half) {
        if (is_edge(half)) {
            out_of_[static_cast<std::size_t>(origin(half))] = half;
        }
    }
}

// On a common circle the greatest point is raised above the paraboloid of the others, by so little
// that this decides nothing else.
bool DelaunayMesh::is_in_circle(int a, int b, int c, int d) const {
    const int side = side_of_circle(point(a), point(b), point(c), point(d));
    if (side != 0) {
        return side > 0;
    }
    if (d == a || d == b || d == c || d == std::max({a, b, c, d})) {
        return false;
    }
    const int greatest = std::max({a, b, c});
    return (greatest == a   ? turn_of(b, c, d)
            : greatest == b ? turn_of(c, a, d)
                            : turn_of(a, b, d)) > 0;
}

// An edge that is not attached to others.
int DelaunayMesh::add_edge(int from, int to) {
    int half = half_count();
    if (free_.empty()) {
        halves_.resize(halves_.size() + 2);
    } else {
        half = free_.back();
        free_.pop_back();
    }
    at(half) = {from, half, half, 0};
    at(half ^ 1) = {to, half ^ 1, half ^ 1, 0};
    return half;
}

// Puts a half behind another one around their origin.
void DelaunayMesh::attach(int half, int before) {
    const int after = at(before).next;
    at(half).previous = before;
    at(half).next = after;
    at(after).previous = half;
    at(before).next = half;
}

// Adds an edge from the end of a half to the origin of another half around the same face, and
// returns the half of it that has the others on its left.
int DelaunayMesh::connect(int half, int other) {
    const int added = add_edge(end(half), origin(other));
    attach(added, next_in_face(half));
    attach(added ^ 1, other);
    return added;
}

void DelaunayMesh::remove(int half) {
    for (const int h : {half, half ^ 1}) {
        const auto point = static_cast<std::size_t>(origin(h));
        if (out_of_[point] == h) {
            out_of_[point] = at(h).next;
        }
        at(at(h).previous).next = at(h).next;
        at(at(h).next).previous = at(h).previous;
        at(h).origin = -1;
    }
    free_.push_back(half & ~1);
}

DelaunayMesh::Hull DelaunayMesh::triangulate(int first, int end) {
    if (end - first <= 3) {
        return triangulate_few(first, end);
    }
    const int middle = first + (end - first) / 2;
    const Hull low = triangulate(first, middle);
    const Hull high = triangulate(middle, end);
    return merge(low, high);
}

DelaunayMesh::Hull DelaunayMesh::triangulate_few(int first, int end) {
    const int a = add_edge(first, first + 1);
    if (end - first == 2) {
        return {a, a ^ 1};
    }
    const int b = add_edge(first + 1, first + 2);
    attach(b, a ^ 1);
    const int turned = turn_of(first, first + 1, first + 2);
    if (turned == 0) {
        return {a, b ^ 1};
    }
    const int c = connect(b, a);
    return turned > 0 ? Hull{a, b ^ 1} : Hull{c ^ 1, c};
}

DelaunayMesh::Hull DelaunayMesh::merge(Hull low, Hull high) {
    int left = low.right;
    int right = high.left;
    find_lower_tangent(left, right);
    const int base = connect(right ^ 1, left);
    if (origin(left) == origin(low.left)) {
        low.left = base ^ 1;
    }
    if (origin(right) == origin(high.right)) {
        high.right = base;
    }
    close_gap(base);
    return {low.left, high.right};
}

void DelaunayMesh::find_lower_tangent(int& low, int& high) const {
    while (true) {
        if (turn_of(origin(low), end(low), origin(high)) > 0) {
            low = next_in_face(low);
        } else if (turn_of(origin(high), end(high), origin(low)) < 0) {
            high = next_around(high ^ 1);
        } else {
            return;
        }
    }
}

// Climbs from the lower common tangent, a half from right to left, to the upper one.
void DelaunayMesh::close_gap(int base) {
    while (true) {
        const int left = left_candidate(base);
        const int right = right_candidate(base);
        const bool has_left = is_above(left, base);
        const bool has_right = is_above(right, base);
        if (!has_left && !has_right) {
            return;
        }
        if (!has_left ||
            (has_right && is_in_circle(end(left), origin(left), origin(right), end(right)))) {
            base = connect(right, base ^ 1);
        } else {
            base = connect(base ^ 1, left ^ 1);
        }
    }
}

bool DelaunayMesh::is_above(int half, int base) const {
    return turn_of(end(half), end(base), origin(base)) > 0;
}

int DelaunayMesh::left_candidate(int base) {
    int candidate = next_around(base ^ 1);
    if (is_above(candidate, base)) {
        while (is_in_circle(end(base), origin(base), end(candidate), end(next_around(candidate)))) {
            remove(std::exchange(candidate, next_around(candidate)));
        }
    }
    return candidate;
}

int DelaunayMesh::right_candidate(int base) {
    int candidate = previous_around(base);
    if (is_above(candidate, base)) {
        while (is_in_circle(end(base), origin(base), end(candidate),
                            end(previous_around(candidate)))) {
            remove(std::exchange(candidate, previous_around(candidate)));
        }
    }
    return candidate;
}

int DelaunayMesh::force(int from, int to, signed char difference) {
    int half = edge_towards(from, to);
    if (half < 0) {
        Crossed crossed;
        if (!cross(from, to, crossed)) {
            return -1;
        }
        for (const int each : crossed.halves) {
            remove(each);
        }
        half = connect(crossed.into_start, crossed.out_of_end);
        fill(half);
        fill(half ^ 1);
    }
    if (at(half).difference != 0) {
        return -1;
    }
    at(half).difference = difference;
    at(half ^ 1).difference = static_cast<signed char>(-difference);
    return end(half);
}

// The edge that leaves a point in the direction of another, or -1.
int DelaunayMesh::edge_towards(int from, int to) const {
    const int first = out_of_[static_cast<std::size_t>(from)];
    int half = first;
    do {
        if (end(half) == to) {
            return half;
        }
        half = next_around(half);
    } while (half != first);
    do {
        // The order of the points is monotone along a line.
        if ((end(half) > from) == (to > from) && turn_of(from, to, end(half)) == 0) {
            return half;
        }
        half = next_around(half);
    } while (half != first);
    return -1;
}

// The last half out of a point before the direction to another point.
int DelaunayMesh::half_before(int from, int to) const {
    int half = out_of_[static_cast<std::size_t>(from)];
    while (turn_of(from, to, end(half)) > 0) {
        half = previous_around(half);
    }
    while (turn_of(from, to, end(next_around(half))) <= 0) {
        half = next_around(half);
    }
    return half;
}

// Walks from triangle to triangle. False at an edge that has been forced.
bool DelaunayMesh::cross(int from, int to, Crossed& crossed) const {
    const int start = half_before(from, to);
    crossed.into_start = half_before_in_face(start);
    int half = next_in_face(start); // from the line's right to its left
    while (true) {
        if (difference(half) != 0) {
            return false;
        }
        crossed.halves.push_back(half);
        const int to_right = half ^ 1;
        const int from_right = next_in_face(to_right);
        const int to_left = next_in_face(from_right);
        const int side = turn_of(from, to, end(from_right));
        if (side == 0) {
            crossed.out_of_end = to_left;
            return true;
        }
        half = side > 0 ? from_right : to_left;
    }
}

// Divides the face on the left of a half into triangles (M. V. Anglada, An improved incremental
// algorithm for constructing restricted Delaunay triangulations, 1997).
void DelaunayMesh::fill(int base) {
    std::vector<int> bases = {base};
    while (!bases.empty()) {
        const int half = bases.back();
        bases.pop_back();
        const int first = next_in_face(half);
        const int last = half_before_in_face(half);
        const int to_apex = half_to_apex(half);
        const int from_apex = next_in_face(to_apex);
        if (to_apex != first) {
            bases.push_back(connect(to_apex, first));
        }
        if (from_apex != last) {
            bases.push_back(connect(last, from_apex));
        }
    }
}

// The half that ends at the point whose circle with the base contains no other.
int DelaunayMesh::half_to_apex(int base) const {
    const int a = origin(base);
    const int b = end(base);
    const int last = half_before_in_face(base);
    int best = -1;
    for (int half = next_in_face(base); half != last; half = next_in_face(half)) {
        const int p = end(half);
        const bool is_better = best < 0 ? turn_of(a, b, p) > 0
                                        : is_in_circle(a, b, end(best), p) && turn_of(a, b, p) > 0;
        if (is_better && is_in_corner(half, a) && is_in_corner(half, b)) {
            best = half;
        }
    }
    if (best < 0) {
        throw std::logic_error("a triangle of a Delaunay mesh has no third corner");
    }
    return best;
}

// Whether a point lies in the direction of the face where a half ends. A face that has an edge on
// both sides passes one of its ends twice, and just one of the two corners can see the base.
bool DelaunayMesh::is_in_corner(int half, int p) const {
    const int before = origin(half);
    const int corner = end(half);
    const int after = end(next_in_face(half));
    if (p == before || p == after || before == after) {
        return true;
    }
    const bool is_after_first = turn_of(before, corner, p) > 0;
    const bool is_before_last = turn_of(corner, after, p) > 0;
    return turn_of(before, corner, after) >= 0 ? is_after_first && is_before_last
                                               : is_after_first || is_before_last;
}

} // namespace korvel::kit
