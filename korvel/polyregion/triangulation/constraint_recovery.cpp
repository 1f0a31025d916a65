// Makes the sides of a region edges of its Delaunay triangulation.

#include <limits>

#include "korvel/polyregion/triangulation/constrained_delaunay.h"
#include "korvel/polyregion/triangulation/delaunay_walk.h"

namespace korvel {

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

int ConstrainedDelaunay::mark_side(int h) {
    is_side_[h] = 1;
    is_side_[twin(h)] = 1;
    return h;
}

} // namespace korvel
