#include "korvel/polyregion/triangulation/advancing_front.h"

#include <algorithm>
#include <cmath>

#include "korvel/base/ring_sides.h"
#include "korvel/polyregion/side_topology.h"

namespace korvel {
AdvancingFront::AdvancingFront(PLYDT& set, ListedTriangles& listed)
    : set_(set), listed_(listed), sides_(region_points_), guide_(region_points_),
      search_(region_points_, sides_, guide_, indices_, listed) {}

bool AdvancingFront::close(const PLYDT::PyToRg& region) {
    number_vertices(region);
    // A point with a coordinate that is not a number turns away from every edge and counts as
    // inside of every triangle: with one of them there are none.
    const bool has_triangles = std::none_of(points_.begin(), points_.end(), [](PlanePoint p) {
        return std::isnan(p.x) || std::isnan(p.y);
    });
    const bool can_serve = !has_triangles || is_ordinary(region);
    if (has_triangles && can_serve) {
        region_points_.start(points_);
        sides_.start();
        guide_.start();
        hints_.clear();
        search_.start();
        progress_ = FrontProgress(set_, region);
        close_boundary(region);
        close_front();
    }
    return can_serve;
}

/// Each distinct point gets the number of its position in the order in which the rings list them,
/// so that the first of several equals is the one with the smallest number.
void AdvancingFront::number_vertices(const PLYDT::PyToRg& region) {
    indices_.clear();
    points_.clear();
    int entries = 0;
    for (const int ring : region.rings) {
        entries += set_.ring_list[ring].pts.GetSize();
    }
    vertex_of_ = KeyIndex(entries);
    for (const int ring : region.rings) {
        for (const int pt : set_.ring_list[ring].pts) {
            const int next = static_cast<int>(indices_.size());
            if (vertex_of_.find_or_add(static_cast<std::uint32_t>(pt), next) == next) {
                indices_.push_back(pt);
                points_.push_back(plane_point(set_.pt_list[pt]));
            }
        }
    }
}

/// Whether magnitudes neither overflow nor vanish in products, and every side has the direction
/// that its ends give it. One between coincident points has none and is never crossed. How far off
/// the points lie does not matter: tests and searches work on differences alone, and each of these
/// is as exact there as anywhere.
bool AdvancingFront::is_ordinary(const PLYDT::PyToRg& region) const {
    if (points_.empty()) {
        return false;
    }
    PlanePoint low = points_.front();
    PlanePoint high = low;
    for (const PlanePoint& p : points_) {
        if (!(std::fabs(p.x) < tolerance::largest && std::fabs(p.y) < tolerance::largest)) {
            return false;
        }
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    const double extent = std::max(high.x - low.x, high.y - low.y);
    if (!(extent > tolerance::shortest)) {
        return false;
    }
    const auto direction = [&](int from, int to) {
        return direction_between(plane_point(set_.pt_list[from]), plane_point(set_.pt_list[to]));
    };
    const auto is_long_enough = [&](double length) {
        return length == 0 || length > tolerance::shortest;
    };
    bool is_sound = true;
    for (const int ring : region.rings) {
        const CArray<int>& pts = set_.ring_list[ring].pts;
        for_each_side(pts, pts.GetSize(), [&](int, int from, int to) {
            is_sound = is_sound && is_long_enough(direction(from, to).len);
        });
        for (const int number : set_.ring_list[ring].sides) {
            const PLYDT::SIDE& side = set_.side_list[number];
            const Direction along = direction(side.p0, side.p1);
            const bool is_derived = along.len == 0 ? std::isnan(side.ux) && std::isnan(side.uy)
                                                   : along.ux == side.ux && along.uy == side.uy;
            is_sound = is_sound && vertex_of(side.p0) >= 0 && vertex_of(side.p1) >= 0 &&
                       is_long_enough(along.len) && is_derived && along.len == side.len;
        }
    }
    return is_sound;
}

/// Closes the edges of the region, holes backwards.
void AdvancingFront::close_boundary(const PLYDT::PyToRg& region) {
    for (const int ring : region.rings) {
        for (const int number : set_.ring_list[ring].sides) {
            const PLYDT::SIDE& side = set_.side_list[number];
            const int p0 = vertex_of(side.p0);
            const int p1 = vertex_of(side.p1);
            if (p0 != p1 && sides_.find(p0, p1, Kind::boundary) == RegionPoints::none) {
                add_side(p0, p1, {side.ux, side.uy, side.len}, Kind::boundary);
            }
        }
    }
    first_front_ = sides_.count();
    is_open_.clear();
    for (int i = 0; i < region.rings.GetSize(); ++i) {
        const CArray<int>& pts = set_.ring_list[region.rings[i]].pts;
        for_each_side(pts, pts.GetSize(), [&](int, int from, int to) {
            const int a = vertex_of(i == 0 ? from : to);
            const int b = vertex_of(i == 0 ? to : from);
            const int side = sides_.find(a, b, Kind::boundary);
            if (side == RegionPoints::none) {
                close_edge(a, b, RegionPoints::none, RegionPoints::none);
            } else {
                close_edge(a, b, sides_.apex(side, a), hint(side));
            }
        });
    }
}

/// Closes, pass by pass, the sides that the passes before have opened. A side that is open has no
/// triangle on its inner side yet.
void AdvancingFront::close_front() {
    for (std::size_t next = 0; next < is_open_.size(); ++next) {
        if (is_open_[next] != 0) {
            is_open_[next] = 0;
            const int number = first_front_ + static_cast<int>(next);
            const SideTree::ListedSide& side = sides_.side(number);
            close_edge(side.p1, side.p0, RegionPoints::none, hint(number));
        }
    }
}

void AdvancingFront::close_edge(int a, int b, int apex, int hint) {
    progress_.edge_is_closed(set_, 16);
    const int c = search_.choose(a, b, apex, hint);
    if (c == RegionPoints::none) {
        return;
    }
    PLYDT::TRG triangle;
    triangle.radius = search_.radius(a, b, c);
    triangle.va = index(a);
    triangle.vb = index(b);
    triangle.vc = index(c);
    set_.trg_list.Add(triangle);
    listed_.add_new_triangles();
    // A triangle excludes what lies behind it only where all three of its edges are sides that
    // nothing may cross. The base is no side where a host has edited `RING::sides`.
    const int base = sides_.find(a, b, Kind::boundary);
    const bool has_sides =
        base != RegionPoints::none || sides_.find(a, b, Kind::front) != RegionPoints::none;
    const bool is_apex = has_sides && turn_sign(region_points_.at(a), region_points_.at(b),
                                                region_points_.at(c)) == 1;
    if (is_apex && base != RegionPoints::none) {
        sides_.set_apex(base, a, c);
    }
    open_or_close(b, c, a, is_apex);
    open_or_close(c, a, b, is_apex);
}

/// A side of a new triangle opens the front, or closes it where another triangle has opened it.
void AdvancingFront::open_or_close(int p0, int p1, int opposite, bool is_apex) {
    const int boundary = sides_.find(p0, p1, Kind::boundary);
    if (boundary != RegionPoints::none) {
        if (is_apex) {
            sides_.set_apex(boundary, p0, opposite);
        }
        return;
    }
    const int known = sides_.find(p0, p1, Kind::front);
    if (known != RegionPoints::none) {
        is_open_[known - first_front_] = 0;
        return;
    }
    add_side(p0, p1, direction_between(region_points_.at(p0), region_points_.at(p1)), Kind::front);
    is_open_.push_back(1);
}

void AdvancingFront::add_side(int p0, int p1, Direction direction, Kind kind) {
    sides_.add(p0, p1, direction, kind);
    hints_.push_back(guide_.add_side(p0, p1));
}

} // namespace korvel
