#include "korvel/polyregion/advancing_front.h"

#include <array>
#include <limits>

#include "korvel/polyregion/front_index.h"
#include "korvel/polyregion/side_topology.h"

namespace korvel {
namespace {

constexpr int none = -1;

/// The distinct points of a region, each named by its place in the order in which the rings list
/// them, so that the first of several equals is the one with the smallest name.
struct RegionPoints {
    RegionPoints(const PLYDT& set, const PLYDT::PyToRg& region);

    int place_of(int index) const { return places.find(pair_key(0, index)); }

    std::vector<int> indices; ///< point index of each place
    std::vector<PlanePoint> at;
    FirstIndex places{64};
};

/// A candidate for the third corner of an edge's triangle.
struct Candidate {
    double radius;
    int point;
};

/// The last few finds, the newest first asked.
class RecentFinds {
public:
    template <class Test>
    bool any(Test test) const {
        for (std::size_t i = 0; i < count_; ++i) {
            if (test(finds_[(next_ + most - 1 - i) % most])) {
                return true;
            }
        }
        return false;
    }
    void add(int find) {
        finds_[next_] = find;
        next_ = (next_ + 1) % most;
        count_ = std::min(count_ + 1, most);
    }

private:
    static constexpr std::size_t most = 8;
    std::array<int, most> finds_{};
    std::size_t next_ = 0;
    std::size_t count_ = 0;
};

/// One region's front.
class Front {
public:
    Front(PLYDT& set, const PLYDT::PyToRg& region, ListedTriangles& listed, RegionPoints points);

    void close_all();

private:
    using Kind = SideIndex::Kind;

    struct FrontSide {
        int p0;
        int p1;
        bool is_open;
    };

    struct FlatSurvivors {
        int undefined = none; ///< with a radius that is not a number
        int below_all = none; ///< with a radius of −∞, from a radicand of −0
    };

    PlanePoint at(int p) const { return points_.at[static_cast<std::size_t>(p)]; }
    int index(int p) const { return points_.indices[static_cast<std::size_t>(p)]; }
    int count() const { return static_cast<int>(points_.at.size()); }
    double length(int a, int b) const { return direction_between(at(a), at(b)).len; }
    double radius(int a, int b, int p) const { return circumradius(at(a), at(b), at(p)); }

    void close_edge(int a, int b);
    void open_or_close(int p0, int p1);

    int choose(int a, int b) const;
    int choose_in_the_open(int a, int b) const;
    int choose_behind(int a, int b, int apex) const;
    int choose_exhaustively(int a, int b) const;
    int choose_among(int a, int b, const std::vector<int>& ascending) const;
    int nearest_survivor(int a, int b) const;
    FlatSurvivors first_flat_survivors(int a, int b) const;

    bool may_close(int a, int b, int p) const;
    bool survives(int a, int b, int p) const;
    bool is_inside(int a, int b, int c, int p) const;
    int point_inside(int a, int b, int c) const;
    void collect_near_line(int u, int v, double base, double slope, std::vector<int>& found) const;

    PLYDT& set_;
    const PLYDT::PyToRg& region_;
    ListedTriangles& listed_;
    RegionPoints points_;
    CellGrid grid_;
    PointIndex point_index_;
    SideIndex sides_;
    std::vector<FrontSide> front_;
    FirstIndex front_at_{64};
    FirstIndex apexes_{64}; ///< third corner of the triangle on the inner side of a directed edge
    mutable RecentFinds last_blockers_;     ///< sides that new sides have crossed
    mutable RecentFinds last_inner_points_; ///< points that stood inside triangles
    bool exact_turns_; ///< turn signs are exact: integer points that are not far apart
};

bool is_ordinary(const PLYDT& set, const PLYDT::PyToRg& region, const RegionPoints& points);
bool has_exact_turns(const std::vector<PlanePoint>& pts, double extent);

} // namespace

bool close_front(PLYDT& set, const PLYDT::PyToRg& region, ListedTriangles& listed) {
    RegionPoints points(set, region);
    if (!is_ordinary(set, region, points)) {
        return false;
    }
    Front(set, region, listed, std::move(points)).close_all();
    return true;
}

namespace {

/// Closes the edges of the region, holes backwards, and then, pass by pass, the sides that the
/// passes before have opened.
void Front::close_all() {
    for (int i = 0; i < region_.rings.GetSize(); ++i) {
        const CArray<int>& pts = set_.ring_list[region_.rings[i]].pts;
        for (int k = 0; k < pts.GetSize(); ++k) {
            const int p = points_.place_of(pts[k]);
            const int next = points_.place_of(pts[k + 1 < pts.GetSize() ? k + 1 : 0]);
            if (i == 0) {
                close_edge(p, next);
            } else {
                close_edge(next, p);
            }
        }
    }
    for (std::size_t start = 0, end = front_.size(); start < end;
         start = end, end = front_.size()) {
        for (std::size_t j = start; j < end; ++j) {
            if (front_[j].is_open) {
                front_[j].is_open = false;
                close_edge(front_[j].p1, front_[j].p0);
            }
        }
    }
}

void Front::close_edge(int a, int b) {
    const int c = choose(a, b);
    if (c == none) {
        return;
    }
    PLYDT::TRG triangle;
    triangle.radius = radius(a, b, c);
    triangle.va = index(a);
    triangle.vb = index(b);
    triangle.vc = index(c);
    set_.trg_list.Add(triangle);
    listed_.add_new_triangles();
    if (turn_sign(at(a), at(b), at(c)) == 1) {
        apexes_.find_or_add(pair_key(a, b), c);
        apexes_.find_or_add(pair_key(b, c), a);
        apexes_.find_or_add(pair_key(c, a), b);
    }
    open_or_close(b, c);
    open_or_close(c, a);
}

/// A side of a new triangle opens the front, or closes it where another triangle has opened it.
void Front::open_or_close(int p0, int p1) {
    if (sides_.has(p0, p1, Kind::boundary)) {
        return;
    }
    const int next = static_cast<int>(front_.size());
    const int known = front_at_.find_or_add(side_key(p0, p1), next);
    if (known != next) {
        front_[static_cast<std::size_t>(known)].is_open = false;
        return;
    }
    front_.push_back({p0, p1, true});
    sides_.add(p0, p1, direction_between(at(p0), at(p1)), Kind::front);
}

/// The third corner of the edge's triangle, or `none`: among the points that survive all tests the
/// first with the smallest radius, unless the very first survivor has a radius that is not a
/// number, which nothing beats.
int Front::choose(int a, int b) const {
    // From here on a bound on the radius by the distance of the point holds in spite of rounding.
    constexpr double shortest_edge = 1e-7;
    if (!(length(a, b) >= shortest_edge * grid_.extent())) {
        return choose_exhaustively(a, b);
    }
    const int apex = apexes_.find(pair_key(a, b));
    return apex >= 0 ? choose_behind(a, b, apex) : choose_in_the_open(a, b);
}

int Front::choose_in_the_open(int a, int b) const {
    const FlatSurvivors flat = first_flat_survivors(a, b);
    const int best = flat.below_all != none ? flat.below_all : nearest_survivor(a, b);
    if (flat.undefined == none || (best != none && best < flat.undefined)) {
        return best;
    }
    for (int p = 0; p < flat.undefined; ++p) {
        if (may_close(a, b, p) && survives(a, b, p)) {
            return best;
        }
    }
    return flat.undefined;
}

/// The survivor with the smallest radius from 0 on, looked for in growing boxes around the
/// edge. The radius is at least half the distance to the farther end of the edge, so a box is
/// complete up to about half its size.
int Front::nearest_survivor(int a, int b) const {
    constexpr double first_box = 1.1; // the smallest radius is half the edge
    constexpr double complete = 0.49;
    const PlanePoint middle{(at(a).x + at(b).x) / 2, (at(a).y + at(b).y) / 2};
    std::vector<Candidate> candidates;
    double tested = -1;
    for (double reach = first_box * length(a, b);; reach *= 2) {
        const PlanePoint low{middle.x - reach, middle.y - reach};
        const PlanePoint high{middle.x + reach, middle.y + reach};
        const bool is_last = grid_.is_covered_by(low, high);
        const double limit = is_last ? std::numeric_limits<double>::infinity() : complete * reach;
        candidates.clear();
        grid_.any_cell_in_box(low, high, [&](std::size_t cell) {
            return point_index_.any_point_in_cell(cell, [&](int p) {
                if (may_close(a, b, p)) {
                    const double r = radius(a, b, p);
                    if (r > tested && r <= limit) {
                        candidates.push_back({r, p});
                    }
                }
                return false;
            });
        });
        std::sort(candidates.begin(), candidates.end(), [](const Candidate& x, const Candidate& y) {
            return x.radius != y.radius ? x.radius < y.radius : x.point < y.point;
        });
        for (const Candidate& candidate : candidates) {
            if (survives(a, b, candidate.point)) {
                return candidate.point;
            }
        }
        if (is_last) {
            return none;
        }
        tested = limit;
    }
}

/// The first survivors whose triangles are so flat that rounding makes Heron's radicand negative or
/// 0/0, or a zero of either sign. They lie in a narrow wedge along the line of the edge.
Front::FlatSurvivors Front::first_flat_survivors(int a, int b) const {
    constexpr double flat_base = 1e-7; // of the edge
    const double edge = length(a, b);
    // The height below which (sum of two sides − third side) drowns in the rounding of the lengths.
    const double slope = 2 * std::sqrt(4e-15 * grid_.extent() / edge) + 1e-9;
    std::vector<int> near_line;
    collect_near_line(a, b, flat_base * edge, slope, near_line);
    FlatSurvivors first;
    for (const int p : near_line) {
        if (may_close(a, b, p)) {
            const double r = radius(a, b, p);
            int* const slot = std::isnan(r) ? &first.undefined : &first.below_all;
            if ((std::isnan(r) || r < 0) && *slot == none && survives(a, b, p)) {
                *slot = p;
            }
        }
    }
    return first;
}

/// The choice for an edge that has a triangle on its inner side already. Every other point either
/// has a side across that triangle's or has the apex inside its own triangle, but for those that
/// lie nearly on one of the triangle's lines, and those joined to the edge by a side that is part
/// of the boundary or the front: only these need the tests.
int Front::choose_behind(int a, int b, int apex) const {
    constexpr double clear = 4e-5;     // of the triangle's size
    constexpr double clear_far = 1e-7; // of the distance
    constexpr double widest_slope = 0.01;
    const double size = std::max({length(a, b), length(b, apex), length(apex, a)});
    const double left = (at(b).y - at(apex).y) * (at(a).x - at(apex).x);
    const double right = (at(a).y - at(apex).y) * (at(b).x - at(apex).x);
    const double height = (left - right) / size;
    if (!(height > clear * size && height > clear_far * grid_.extent())) {
        return choose_exhaustively(a, b);
    }
    std::vector<int> suspects;
    for (const auto& [u, v] : {std::pair{a, b}, std::pair{b, apex}, std::pair{a, apex}}) {
        const double slope = (clear * size + clear_far * grid_.extent()) / length(u, v);
        if (slope > widest_slope) {
            return choose_exhaustively(a, b);
        }
        collect_near_line(u, v, clear * size, slope, suspects);
    }
    sides_.for_each_neighbour(a, [&](int p) { suspects.push_back(p); });
    sides_.for_each_neighbour(b, [&](int p) { suspects.push_back(p); });
    std::sort(suspects.begin(), suspects.end());
    return choose_among(a, b, suspects);
}

int Front::choose_exhaustively(int a, int b) const {
    std::vector<int> everything(points_.at.size());
    for (int p = 0; p < count(); ++p) {
        everything[static_cast<std::size_t>(p)] = p;
    }
    return choose_among(a, b, everything);
}

int Front::choose_among(int a, int b, const std::vector<int>& ascending) const {
    Candidate best{0, none};
    for (const int p : ascending) {
        if (may_close(a, b, p)) {
            const double r = radius(a, b, p);
            if ((best.point == none || r < best.radius) && survives(a, b, p)) {
                best = {r, p};
            }
        }
    }
    return best.point;
}

bool Front::may_close(int a, int b, int p) const {
    return p != a && p != b && turn_sign(at(a), at(b), at(p)) != -1;
}

/// The tests beyond orientation: the triangle is new, its new sides cross nothing, and it holds no
/// point of the region. What has stopped one candidate mostly stops the next, so that is asked
/// first.
bool Front::survives(int a, int b, int p) const {
    const auto blocks = [&](int side) {
        return sides_.is_crossed(b, p, side) || sides_.is_crossed(p, a, side);
    };
    const auto stands_inside = [&](int inner) { return is_inside(a, b, p, inner); };
    if (last_blockers_.any(blocks) || last_inner_points_.any(stands_inside) ||
        listed_.contains(index(a), index(b), index(p))) {
        return false;
    }
    const int inner = point_inside(a, b, p);
    if (inner != none) {
        last_inner_points_.add(inner);
        return false;
    }
    for (const auto& [from, to] : {std::pair{b, p}, std::pair{p, a}}) {
        const int blocker = sides_.find_crossed(from, to);
        if (blocker != none) {
            last_blockers_.add(blocker);
            return false;
        }
    }
    return true;
}

bool Front::is_inside(int a, int b, int c, int p) const {
    return p != a && p != b && p != c && strictly_inside(at(a), at(b), at(c), at(p));
}

/// A point of the region strictly inside a triangle, or `none`.
int Front::point_inside(int a, int b, int c) const {
    constexpr double flat = 1e-6;      // of the triangle's size
    constexpr double flat_far = 1e-12; // of the region's
    PlanePoint low{std::min({at(a).x, at(b).x, at(c).x}), std::min({at(a).y, at(b).y, at(c).y})};
    PlanePoint high{std::max({at(a).x, at(b).x, at(c).x}), std::max({at(a).y, at(b).y, at(c).y})};
    if (!exact_turns_) {
        // Rounded turn signs can put a point into a flat triangle that lies well outside of it.
        const double size = std::max(high.x - low.x, high.y - low.y);
        const double left = (at(b).y - at(c).y) * (at(a).x - at(c).x);
        const double right = (at(a).y - at(c).y) * (at(b).x - at(c).x);
        const double height = std::fabs(left - right) / size;
        if (!(height > flat * size && height > flat_far * grid_.extent())) {
            for (int p = 0; p < count(); ++p) {
                if (is_inside(a, b, c, p)) {
                    return p;
                }
            }
            return none;
        }
        const double margin = 1e-3 * size;
        low = {low.x - margin, low.y - margin};
        high = {high.x + margin, high.y + margin};
    }
    int inner = none;
    grid_.any_cell_in_box(low, high, [&](std::size_t cell) {
        return point_index_.any_point_in_cell(cell, [&](int p) {
            inner = is_inside(a, b, c, p) ? p : none;
            return inner != none;
        });
    });
    return inner;
}

/// Adds the points near the line through u and v, those near its part outside u-v in a wedge.
void Front::collect_near_line(int u, int v, double base, double slope,
                              std::vector<int>& found) const {
    const Direction along = direction_between(at(u), at(v));
    const double reach = 3 * grid_.extent();
    const std::size_t before = found.size();
    for (const double sense : {1.0, -1.0}) {
        const PlanePoint end{at(u).x + sense * reach * along.ux,
                             at(u).y + sense * reach * along.uy};
        grid_.any_cell_in_band(at(u), end, base, slope, [&](std::size_t cell) {
            return point_index_.any_point_in_cell(cell, [&](int p) {
                found.push_back(p);
                return false;
            });
        });
    }
    std::sort(found.begin() + static_cast<std::ptrdiff_t>(before), found.end());
}

Front::Front(PLYDT& set, const PLYDT::PyToRg& region, ListedTriangles& listed, RegionPoints points)
    : set_(set), region_(region), listed_(listed), points_(std::move(points)), grid_(points_.at),
      point_index_(grid_, points_.at), sides_(grid_, points_.at),
      exact_turns_(has_exact_turns(points_.at, grid_.extent())) {
    for (const int ring : region.rings) {
        for (const int side : set.ring_list[ring].sides) {
            const PLYDT::SIDE& from = set.side_list[side];
            sides_.add(points_.place_of(from.p0), points_.place_of(from.p1),
                       {from.ux, from.uy, from.len}, Kind::boundary);
        }
    }
}

RegionPoints::RegionPoints(const PLYDT& set, const PLYDT::PyToRg& region) {
    for (const int ring : region.rings) {
        for (const int pt : set.ring_list[ring].pts) {
            const int next = static_cast<int>(indices.size());
            if (places.find_or_add(pair_key(0, pt), next) == next) {
                indices.push_back(pt);
                at.push_back(plane_point(set.pt_list[pt]));
            }
        }
    }
}

/// Whether the indices can serve a region: every edge has a direction, magnitudes neither overflow
/// nor vanish in products, and the points do not lie so far out that cells lose their digits.
bool is_ordinary(const PLYDT& set, const PLYDT::PyToRg& region, const RegionPoints& points) {
    constexpr double largest = 1e+60;
    constexpr double shortest = 1e-60;
    constexpr double farthest = 1e+5; // of the extent
    if (points.at.empty()) {
        return false;
    }
    double magnitude = 0;
    for (const PlanePoint& p : points.at) {
        if (!(std::fabs(p.x) < largest && std::fabs(p.y) < largest)) {
            return false;
        }
        magnitude = std::max({magnitude, std::fabs(p.x), std::fabs(p.y)});
    }
    for (const int ring : region.rings) {
        const CArray<int>& pts = set.ring_list[ring].pts;
        for (int k = 0; k < pts.GetSize(); ++k) {
            const int next = pts[k + 1 < pts.GetSize() ? k + 1 : 0];
            const double edge =
                direction_between(plane_point(set.pt_list[pts[k]]), plane_point(set.pt_list[next]))
                    .len;
            if (!(edge > shortest)) {
                return false;
            }
        }
        for (const int side : set.ring_list[ring].sides) {
            if (points.place_of(set.side_list[side].p0) < 0 ||
                points.place_of(set.side_list[side].p1) < 0) {
                return false;
            }
        }
    }
    // With an edge of some length the extent is not 0.
    return magnitude <= farthest * CellGrid(points.at).extent();
}

bool has_exact_turns(const std::vector<PlanePoint>& pts, double extent) {
    constexpr double exact_extent = 33'554'432;             // 2^25: products stay below 2^53
    constexpr double exact_integer = 4'503'599'627'370'496; // 2^52
    return extent <= exact_extent && std::all_of(pts.begin(), pts.end(), [](PlanePoint p) {
               return std::fabs(p.x) < exact_integer && std::fabs(p.y) < exact_integer &&
                      p.x == std::floor(p.x) && p.y == std::floor(p.y);
           });
}

} // namespace
} // namespace korvel
