#include "kit/maps/flaw.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "kit/base/box_tree.h"
#include "kit/base/disjoint_sets.h"
#include "kit/base/number_text.h"
#include "kit/maps/delaunay.h"
#include "kit/maps/outline.h"

namespace korvel::kit {
namespace {

using FlawReason = Flaw::Reason;

std::optional<Flaw> flaw_in_steps(const CCPloy2DRg& set, int region);
std::optional<Flaw> flaw_without_area(const CCPloy2DRg& set, int region);
bool is_in_line(const Outline& outline, const std::vector<int>& ring);
std::optional<Flaw> meeting_of_sides(const Outline& outline);
Flaw misplaced_ring(const Outline& outline, const DelaunayTriangles& triangles);
int first_repeated(const std::vector<int>& ring);
std::optional<Flaw> cut(const Outline& outline, const DelaunayTriangles& triangles);

} // namespace

std::optional<Flaw> flaw_of(const Map& map, int region) {
    std::optional<Flaw> flaw = flaw_in_steps(map.regions(), region);
    if (flaw) {
        flaw->place = map.placement().grid.to_user(flaw->place);
    }
    return flaw;
}

namespace {

std::optional<Flaw> flaw_in_steps(const CCPloy2DRg& set, int region) {
    const Outline outline = outline_of(set, set.region_list[region]);
    if (outline.rings.empty() || is_in_line(outline, outline.rings.front())) {
        return flaw_without_area(set, region);
    }
    const DelaunayTriangles triangles = delaunay_triangles(outline);
    if (!triangles.corners.empty()) {
        return cut(outline, triangles);
    }
    return triangles.misplaced ? misplaced_ring(outline, triangles) : meeting_of_sides(outline);
}

std::optional<Flaw> flaw_without_area(const CCPloy2DRg& set, int region) {
    Flaw flaw;
    const CArray<int>& rings = set.region_list[region].rings;
    const auto corner_at = [&](int point) {
        return Point2{set.pt_list[point].x, set.pt_list[point].y};
    };
    for (int ring = 0; ring < rings.GetSize(); ++ring) {
        for (const int point : set.ring_list[rings[ring]].pts) {
            const Point2 corner = corner_at(point);
            if (!is_usable_coordinate(corner[0]) || !is_usable_coordinate(corner[1])) {
                return Flaw{FlawReason::out_of_range, corner, ring, ring};
            }
        }
    }
    if (!rings.IsEmpty() && !set.ring_list[rings[0]].pts.IsEmpty()) {
        flaw.place = corner_at(set.ring_list[rings[0]].pts[0]);
    }
    return flaw;
}

// Whether all places of a ring are on one line.
bool is_in_line(const Outline& outline, const std::vector<int>& ring) {
    const auto place = [&](int number) { return outline.places[static_cast<std::size_t>(number)]; };
    const auto [least, greatest] = std::minmax_element(ring.begin(), ring.end());
    return std::all_of(ring.begin(), ring.end(), [&, a = *least, b = *greatest](int number) {
        return turn(place(a), place(b), place(number)) == 0;
    });
}

PlanePoint place_of(const Outline& outline, int number) {
    return outline.places[static_cast<std::size_t>(number)];
}

Point2 in_doubles(PlanePoint p) {
    return {p.x, p.y};
}

// The sides of an outline.
struct OutlineSide {
    int from;
    int to;
    int ring; // of the region
};

std::vector<OutlineSide> sides_of(const Outline& outline) {
    std::vector<OutlineSide> sides;
    for (std::size_t i = 0; i < outline.rings.size(); ++i) {
        const std::vector<int>& ring = outline.rings[i];
        for (std::size_t k = 0; k < ring.size(); ++k) {
            sides.push_back({ring[k], ring[(k + 1) % ring.size()], outline.numbers[i]});
        }
    }
    return sides;
}

// Boxes of integers that contain those of the sides.
class SideBoxes {
public:
    explicit SideBoxes(const Outline& outline) : outline_(outline) {
        low_ = high_ = outline.places.front();
        for (const PlanePoint p : outline.places) {
            low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y)};
            high_ = {std::max(high_.x, p.x), std::max(high_.y, p.y)};
        }
    }

    BoxTree::Box operator()(const OutlineSide& side) const {
        BoxTree::Box box;
        for (const int end : {side.from, side.to}) {
            const PlanePoint p = place_of(outline_, end);
            const std::int32_t x = cell(p.x, low_.x, high_.x);
            const std::int32_t y = cell(p.y, low_.y, high_.y);
            box.take_in({x - 1, y - 1, x + 1, y + 1});
        }
        return box;
    }

private:
    static std::int32_t cell(double v, double low, double high) {
        constexpr double cells = 1 << 30;
        return low < high
                   ? static_cast<std::int32_t>(cells * (v / 2 - low / 2) / (high / 2 - low / 2))
                   : 0;
    }

    const Outline& outline_;
    PlanePoint low_;
    PlanePoint high_;
};

// Where two sides have more in common than a point that is an end of one.
std::optional<std::pair<FlawReason, Point2>> meeting(const Outline& outline, const OutlineSide& s,
                                                     const OutlineSide& t) {
    const PlanePoint a = place_of(outline, s.from);
    const PlanePoint b = place_of(outline, s.to);
    const PlanePoint c = place_of(outline, t.from);
    const PlanePoint d = place_of(outline, t.to);
    const int c_side = turn(a, b, c);
    const int d_side = turn(a, b, d);
    if (c_side == 0 && d_side == 0) {
        // Places are in order along a line.
        const int first = std::max(std::min(s.from, s.to), std::min(t.from, t.to));
        const int last = std::min(std::max(s.from, s.to), std::max(t.from, t.to));
        return first < last ? std::optional(std::pair(FlawReason::rings_overlap,
                                                      in_doubles(place_of(outline, first))))
                            : std::nullopt;
    }
    if (c_side * d_side >= 0 || turn(c, d, a) * turn(c, d, b) >= 0) {
        return std::nullopt;
    }
    const double before = std::abs((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x));
    const double behind = std::abs((b.x - a.x) * (d.y - a.y) - (b.y - a.y) * (d.x - a.x));
    const double share = before + behind > 0 ? before / (before + behind) : 0.5;
    return std::pair(FlawReason::rings_cross,
                     Point2{c.x + share * (d.x - c.x), c.y + share * (d.y - c.y)});
}

// The first side that meets a later one wrongly.
std::optional<Flaw> meeting_of_sides(const Outline& outline) {
    const std::vector<OutlineSide> sides = sides_of(outline);
    const SideBoxes box(outline);
    const BoxTree tree(sides.size(), [&](std::size_t i) { return box(sides[i]); });
    for (std::size_t i = 0; i < sides.size(); ++i) {
        std::size_t least = sides.size();
        Flaw flaw;
        tree.for_each_at(box(sides[i]), [&](std::size_t k) {
            if (k <= i || k >= least) {
                return;
            }
            if (const auto met = meeting(outline, sides[i], sides[k])) {
                least = k;
                flaw = {met->first, met->second, sides[i].ring, sides[k].ring};
            }
        });
        if (least < sides.size()) {
            return flaw;
        }
    }
    return std::nullopt;
}

bool is_in_ring(const Outline& outline, const std::vector<int>& ring, Point2 p) {
    bool inside = false;
    for (std::size_t k = 0; k < ring.size(); ++k) {
        const PlanePoint a = place_of(outline, ring[k]);
        const PlanePoint b = place_of(outline, ring[(k + 1) % ring.size()]);
        if ((a.y > p[1]) != (b.y > p[1]) && (turn(a, b, {p[0], p[1]}) > 0) == (b.y > a.y)) {
            inside = !inside;
        }
    }
    return inside;
}

// A ring that crosses another one, or itself, does so in a point where both have a corner; else the
// side's middle is on one side of each other ring.
Flaw misplaced_ring(const Outline& outline, const DelaunayTriangles& triangles) {
    const std::array<int, 2> side = *triangles.misplaced;
    const PlanePoint a = place_of(outline, side[0]);
    const PlanePoint b = place_of(outline, side[1]);
    const Point2 middle = {a.x / 2 + b.x / 2, a.y / 2 + b.y / 2};
    std::size_t of_side = 0;
    for (std::size_t i = 0; i < triangles.rings.size(); ++i) {
        const std::vector<int>& ring = triangles.rings[i];
        for (std::size_t k = 0; k < ring.size(); ++k) {
            if (std::minmax(side[0], side[1]) ==
                std::minmax(ring[k], ring[(k + 1) % ring.size()])) {
                of_side = i;
            }
        }
    }
    const std::vector<int>& ring = triangles.rings[of_side];
    const int number = outline.numbers[of_side];
    const Point2 first = in_doubles(place_of(outline, ring.front()));
    if (of_side > 0 && !is_in_ring(outline, outline.rings.front(), middle)) {
        return {FlawReason::hole_outside, first, number, 0};
    }
    for (std::size_t i = 1; i < outline.rings.size(); ++i) {
        if (i != of_side && is_in_ring(outline, outline.rings[i], middle)) {
            return {of_side == 0 ? FlawReason::hole_outside : FlawReason::holes_overlap, first,
                    std::min(outline.numbers[i], number), std::max(outline.numbers[i], number)};
        }
    }
    return {FlawReason::rings_cross, in_doubles(place_of(outline, first_repeated(ring))), number,
            number};
}

// The first place that a ring passes more than once, or its first place.
int first_repeated(const std::vector<int>& ring) {
    std::vector<int> sorted = ring;
    std::sort(sorted.begin(), sorted.end());
    const auto is_repeated = [&](int place) {
        const auto [begin, end] = std::equal_range(sorted.begin(), sorted.end(), place);
        return end - begin > 1;
    };
    const auto found = std::find_if(ring.begin(), ring.end(), is_repeated);
    return found != ring.end() ? *found : ring.front();
}

std::optional<Flaw> cut(const Outline& outline, const DelaunayTriangles& triangles) {
    std::vector<std::array<int, 3>> sides; // by their ends, and the triangle
    for (std::size_t i = 0; i < triangles.corners.size(); ++i) {
        const auto& corners = triangles.corners[i];
        for (std::size_t k = 0; k < 3; ++k) {
            const auto [low, high] = std::minmax(corners[k], corners[(k + 1) % 3]);
            sides.push_back({low, high, static_cast<int>(i)});
        }
    }
    std::sort(sides.begin(), sides.end());
    DisjointSets pieces(static_cast<int>(triangles.corners.size()));
    for (std::size_t i = 1; i < sides.size(); ++i) {
        if (sides[i][0] == sides[i - 1][0] && sides[i][1] == sides[i - 1][1]) {
            pieces.join(sides[i - 1][2], sides[i][2]);
        }
    }
    if (pieces.count() == 1) {
        return std::nullopt;
    }
    // A place where two pieces touch.
    std::vector<int> piece_at(outline.places.size(), -1);
    Flaw flaw{FlawReason::cut_apart, in_doubles(outline.places.front()), 0, 0};
    for (std::size_t i = 0; i < triangles.corners.size(); ++i) {
        const int piece = pieces.root(static_cast<int>(i));
        for (const int place : triangles.corners[i]) {
            int& known = piece_at[static_cast<std::size_t>(place)];
            if (known >= 0 && known != piece) {
                flaw.place = in_doubles(place_of(outline, place));
            }
            known = piece;
        }
    }
    return flaw;
}

std::string ring_name(int ring) {
    return ring == 0 ? "the outer ring" : "hole " + std::to_string(ring);
}

std::string rings_text(const Flaw& flaw, const char* itself) {
    if (flaw.ring == flaw.other_ring) {
        return ring_name(flaw.ring) + itself;
    }
    if (flaw.ring == 0) {
        return "the outer ring and " + ring_name(flaw.other_ring);
    }
    return "holes " + std::to_string(flaw.ring) + " and " + std::to_string(flaw.other_ring);
}

} // namespace

std::string text(const Flaw& flaw) {
    const std::string place =
        " at " + number_text(flaw.place[0]) + "," + number_text(flaw.place[1]);
    switch (flaw.reason) {
    case FlawReason::no_area:
        return "it has no area";
    case FlawReason::out_of_range:
        return ring_name(flaw.ring) + " has a coordinate out of range";
    case FlawReason::rings_cross:
        return rings_text(flaw, " crosses itself") +
               (flaw.ring == flaw.other_ring ? place : std::string(" cross") + place);
    case FlawReason::rings_overlap:
        return rings_text(flaw, " runs along itself") +
               (flaw.ring == flaw.other_ring ? place : std::string(" overlap") + place);
    case FlawReason::hole_outside:
        return ring_name(std::max(flaw.ring, flaw.other_ring)) + " is outside the outer ring" +
               place;
    case FlawReason::holes_overlap:
        return rings_text(flaw, "") + " overlap" + place;
    case FlawReason::cut_apart:
        return std::string("its rings cut it apart") + place;
    }
    return {};
}

} // namespace korvel::kit
