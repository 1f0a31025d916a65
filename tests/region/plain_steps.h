#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "tests/region/plain_region.h"

namespace korvel::test {

// The second half of the plain analysis, from rings of curves to regions.

void list_ring_points(Analysis& a);
void list_sides(Analysis& a);
void drop_envelopes(Analysis& a);
void nest(Analysis& a);

// What both halves use.

struct Vec {
    double x;
    double y;
};
inline Vec from_to(Pt a, Pt b) {
    return {double(b.x) - a.x, double(b.y) - a.y};
}
inline double dot(Vec a, Vec b) {
    return a.x * b.x + a.y * b.y;
}
inline double cross(Vec a, Vec b) {
    return a.x * b.y - a.y * b.x;
}
inline double length(Vec a) {
    return std::sqrt(dot(a, a));
}

template <class List>
int count_of(const List& list) {
    return static_cast<int>(list.size());
}
template <class List>
auto& at(List& list, int index) {
    return list[static_cast<std::size_t>(index)];
}
template <class List, class Entry>
int index_in(const List& list, const Entry& entry) {
    const auto found = std::find(list.begin(), list.end(), entry);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}
template <class List, class Entry>
bool contains(const List& list, const Entry& entry) {
    return index_in(list, entry) >= 0;
}
template <class List>
List reversed(const List& list) {
    return List(list.rbegin(), list.rend());
}

/// The element of a signed, 1-based curve id.
template <class List>
auto& named(List& list, int id) {
    return at(list, std::abs(id) - 1);
}
inline Pts walked(const Analysis& a, int id) {
    return id > 0 ? named(a.split, id) : reversed(named(a.split, id));
}

/// Whether the angles at the point from corner to corner add up to a turn.
bool winds_around(const Pts& ring, Pt pt);

} // namespace korvel::test
