// Regions that triangulations find hard: each valid one is covered exactly and becomes a closed
// body, each invalid one is named with the reason and the place.

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kit/maps/find_regions.h"
#include "kit/maps/flaw.h"
#include "kit/maps/triangulation.h"
#include "kit/solids/raise.h"
#include "tests/kit/rings.h"
#include "tests/support/dice.h"

namespace korvel::test {
namespace {

using kit::PlanePoint;
using Ring = std::vector<PlanePoint>;

struct Polygon {
    std::string name;
    Rings rings;
};

kit::Map map_of(const Rings& rings, bool is_shared) {
    CCPloy2DRg set;
    fill(set, rings, is_shared);
    return kit::Map(set);
}

Ring box(double left, double bottom, double right, double top) {
    return {{left, bottom}, {right, bottom}, {right, top}, {left, top}};
}

/// A square on its corner.
Ring diamond(double x, double y, double reach) {
    return {{x - reach, y}, {x, y - reach}, {x + reach, y}, {x, y + reach}};
}

/// Corners around the origin, the k-th at a distance of `radius(k)`, rounded to the lattice.
template <class Radius>
Ring around(int corners, Radius radius) {
    Ring ring;
    for (int k = 0; k < corners; ++k) {
        const double angle = 2 * std::numbers::pi * k / corners;
        const double distance = radius(k);
        ring.push_back(
            {std::round(distance * std::cos(angle)), std::round(distance * std::sin(angle))});
    }
    return ring;
}

/// From left to right at the heights `top(k)`, and back at `bottom(k)`.
template <class Top, class Bottom>
Ring band(int steps, double step, Top top, Bottom bottom) {
    Ring ring;
    for (int k = 0; k <= steps; ++k) {
        ring.push_back({k * step, double(bottom(k))});
    }
    for (int k = steps; k >= 0; --k) {
        ring.push_back({k * step, double(top(k))});
    }
    return ring;
}

/// A corridor of width 1 that winds inward.
Ring spiral(int turns) {
    Ring outer;
    Ring inner;
    for (int k = 0; k < 4 * turns; ++k) {
        const double reach = 4.0 * turns - k;
        const double sx = k % 4 == 0 || k % 4 == 3 ? -1 : 1;
        const double sy = k % 4 < 2 ? -1 : 1;
        outer.push_back({sx * reach, sy * reach});
        inner.push_back({sx * (reach - 1), sy * (reach - 1)});
    }
    inner.front().x -= 1; // the mouth
    outer.insert(outer.end(), inner.rbegin(), inner.rend());
    return outer;
}

Rings with_holes(Ring outer, std::vector<Ring> holes) {
    Rings rings = {std::move(outer)};
    rings.insert(rings.end(), holes.begin(), holes.end());
    return rings;
}

Rings scaled(Rings rings, double factor, double x, double y) {
    for (Ring& ring : rings) {
        for (PlanePoint& p : ring) {
            p = {p.x * factor + x, p.y * factor + y};
        }
    }
    return rings;
}

std::vector<Ring> rows_of_holes(int rows, int columns) {
    std::vector<Ring> holes;
    for (int i = 0; i < rows; ++i) {
        for (int k = 0; k < columns; ++k) {
            holes.push_back(box(4 * k + 1, 4 * i + 1, 4 * k + 3, 4 * i + 3));
        }
    }
    return holes;
}

std::vector<Ring> chain(int diamonds, double x) {
    std::vector<Ring> holes;
    for (int k = 0; k < diamonds; ++k) {
        holes.push_back(diamond(x + 4 * k, 0, 2));
    }
    return holes;
}

std::vector<Polygon> shapes() {
    Dice dice;
    const auto none = [](int) { return 0; };
    return {
        {"comb",
         {band(
             80, 1, [](int k) { return k % 2 == 0 ? 2 : 50; }, [](int) { return 0; })}},
        {"two combs",
         {band(
             60, 2, [](int k) { return k % 2 == 0 ? 1 : 40; },
             [](int k) { return k % 2 == 0 ? -40 : 0; })}},
        {"thin saw",
         {band(
             200, 1000, [](int k) { return 2 + k % 2; }, [](int k) { return k % 2; })}},
        {"corridor",
         {band(
             50, 3, [](int k) { return k % 2 == 0 ? 1 : 31; },
             [](int k) { return k % 2 == 0 ? 0 : 30; })}},
        {"spiral", {spiral(12)}},
        {"star of five", {around(10, [](int k) { return k % 2 == 0 ? 1000 : 382; })}},
        {"spikes", {around(400, [](int k) { return k % 2 == 0 ? 1e6 : 900; })}},
        {"random star", {around(1000, [&](int) { return dice(20000, 900000); })}},
        {"noise of 10,000 corners", {around(10000, [&](int) { return dice(900000, 1000000); })}},
        {"circles of lattice points",
         {{{25, 0},
           {24, 7},
           {20, 15},
           {15, 20},
           {7, 24},
           {0, 25},
           {-7, 24},
           {-15, 20},
           {-20, 15},
           {-24, 7},
           {-25, 0},
           {-20, -15},
           {-15, -20},
           {0, -25},
           {15, -20},
           {20, -15}},
          {{5, 0}, {4, 3}, {3, 4}, {0, 5}, {-3, 4}, {-5, 0}, {0, -5}, {4, -3}}}},
        {"all sides in line", with_holes(band(
                                             10, 1, [](int) { return 5; }, none),
                                         {box(2, 1, 8, 4)})},
        {"staircase",
         {band(
             40, 5, [](int k) { return 7 * k + 9; }, [](int k) { return 7 * k; })}},
        {"fan", {{{0, 0}, {100, -3}, {99, -1}, {100, 0}, {99, 1}, {100, 2}, {98, 4}, {99, 7}}}},
        {"hole touches a corner", with_holes(box(0, 0, 9, 9), {{{0, 0}, {5, 2}, {2, 5}}})},
        {"hole touches a side", with_holes(box(0, 0, 9, 9), {{{0, 4}, {5, 2}, {5, 6}}})},
        {"side touches a corner of the outer ring",
         with_holes({{0, 0}, {9, 0}, {9, 9}, {4, 5}, {0, 9}}, {{{2, 1}, {6, 1}, {4, 3}}})},
        {"hole touches a side that points divide",
         with_holes(band(
                        9, 1, [](int) { return 9; }, none),
                    {{{5, 0}, {7, 4}, {3, 4}}})},
        {"hole touches the side of a hole",
         with_holes(box(0, 0, 20, 20), {box(4, 4, 12, 12), {{12, 8}, {16, 6}, {16, 10}}})},
        {"chain of holes", with_holes(box(-5, -9, 50, 9), chain(10, 0))},
        {"chain from the outer ring", with_holes(box(-2, -9, 50, 9), chain(10, 0))},
        {"chains from both ends", with_holes(box(-2, -9, 82, 9),
                                             [] {
                                                 std::vector<Ring> holes = chain(9, 0);
                                                 const std::vector<Ring> others = chain(9, 48);
                                                 holes.insert(holes.end(), others.begin(),
                                                              others.end());
                                                 return holes;
                                             }())},
        {"holes around a point", with_holes(box(-9, -9, 9, 9), {{{0, 0}, {5, 1}, {5, 3}},
                                                                {{0, 0}, {-1, 5}, {-3, 5}},
                                                                {{0, 0}, {-5, -1}, {-5, -3}},
                                                                {{0, 0}, {1, -5}, {3, -5}}})},
        {"ring touches itself from inside",
         {{{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 4}, {5, 6}, {5, 2}, {0, 4}}}},
        {"ring passes a point three times",
         {{{0, 0},
           {20, 0},
           {20, 20},
           {0, 20},
           {0, 10},
           {6, 14},
           {8, 12},
           {0, 10},
           {8, 8},
           {6, 6},
           {0, 10}}}},
        {"hole touches itself",
         with_holes(box(-9, -9, 20, 9),
                    {{{0, 0}, {3, 3}, {6, 0}, {9, 3}, {12, 0}, {9, -3}, {6, 0}, {3, -3}}})},
        {"holes in a row", with_holes(box(0, 0, 160, 4), rows_of_holes(1, 40))},
        {"holes in rows", with_holes(box(0, 0, 48, 48), rows_of_holes(12, 12))},
        {"hole beside a corner",
         with_holes({{0, 0}, {9, 0}, {9, 4}, {4, 4}, {4, 9}, {0, 9}}, {{{1, 1}, {3, 3}, {1, 3}}})},
        {"sliver", {{{0, 0}, {1000000, 1}, {2000000, 1}}}},
        {"sliver of quadrilaterals",
         {band(
             30, 100000, [](int k) { return k + 1; }, [](int k) { return k; })}},
        {"sliver beside a hole", with_holes({{0, 0}, {16777215, 0}, {16777215, 3}, {0, 3}},
                                            {{{1, 1}, {16777214, 1}, {16777213, 2}}})},
        {"24 bits", {around(300, [&](int) { return dice(8000000, 8388607); })}},
        {"32 bits", with_holes(box(-2147483648.0, -2147483648.0, 2147483647, 2147483647),
                               {around(64, [](int) { return 2147483646; })})},
        {"32 bits, nearly flat",
         {{{-2147483648.0, -2147483648.0}, {0, -1}, {2147483647, 2147483647}, {1, 1}, {0, 0}}}},
        {"off the lattice", scaled({around(40, [](int k) { return k % 2 == 0 ? 90 : 50; }),
                                    around(7, [](int) { return 10; })},
                                   0.1, 1.0 / 3, 1e4)},
        {"points twice and spikes",
         {{{0, 0}, {0, 0}, {9, 0}, {12, 0}, {9, 0}, {9, 9}, {5, 9}, {5, 12}, {5, 9}, {0, 9}}}},
    };
}

void expect_covered_and_raised(const Polygon& polygon, bool is_shared) {
    const kit::Map map = map_of(polygon.rings, is_shared);
    if (const auto flaw = kit::flaw_of(map, 0)) {
        ADD_FAILURE() << polygon.name << ": " << kit::text(*flaw);
    }
    for (const kit::Fill fill : {kit::Fill::automatic, kit::Fill::delaunay}) {
        const kit::Triangulation triangles = kit::triangulate(map, {.fill = fill, .threads = 1});
        EXPECT_NE(triangles.filled(0), kit::Filled::not_at_all) << polygon.name;
        EXPECT_TRUE(triangles.coverage(0).is_tiling) << polygon.name;
    }
    const kit::Raised raised = kit::raise(map, {.low = 0, .high = 1000, .separate = true});
    ASSERT_EQ(raised.solids.size(), 1) << polygon.name;
    EXPECT_TRUE(raised.solids[0].surface().is_clean()) << polygon.name;
    EXPECT_NEAR(std::abs(raised.solids[0].volume()) / (1000 * map.area()), 1, 1e-9) << polygon.name;
}

TEST(HardPolygons, ValidOnesAreCoveredAndRaised) {
    EXPECT_GE(shapes().size(), 32U);
    for (const Polygon& polygon : shapes()) {
        for (const bool is_shared : {true, false}) {
            expect_covered_and_raised(polygon, is_shared);
        }
    }
}

struct InvalidPolygon {
    std::string text;
    Rings rings;
    int faces; // of its outlines as curves
};

TEST(HardPolygons, InvalidOnesAreNamed) {
    const Ring square = box(0, 0, 9, 9);
    const InvalidPolygon polygons[] = {
        {"the outer ring crosses itself at 4.5,4.5", {{{0, 0}, {9, 9}, {9, 0}, {0, 9}}}, 2},
        {"the outer ring crosses itself at 4,4",
         {{{0, 0}, {4, 4}, {8, 8}, {8, 0}, {4, 4}, {0, 8}}},
         2},
        {"the outer ring and hole 1 cross at 9,3", {square, box(3, 3, 12, 6)}, 3},
        {"holes 1 and 2 cross at 5,4", {square, box(1, 1, 5, 5), box(4, 4, 8, 8)}, 4},
        {"hole 1 is outside the outer ring at 20,0", {square, box(20, 0, 25, 5)}, 2},
        {"hole 1 is outside the outer ring at 9,0", {square, {{9, 0}, {12, 0}, {12, 5}}}, 2},
        {"hole 1 is outside the outer ring at -3,-3", {square, box(-3, -3, 12, 12)}, 2},
        {"holes 1 and 2 overlap at 3,3", {square, box(2, 2, 7, 7), box(3, 3, 5, 5)}, 3},
        {"holes 1 and 2 overlap at 2,2", {square, box(2, 2, 5, 5), box(2, 2, 5, 5)}, 2},
        {"the outer ring and hole 1 overlap at 2,0", {square, box(2, 0, 5, 5)}, 2},
        {"its rings cut it apart at 9,5", {square, {{0, 5}, {5, 3}, {9, 5}, {5, 7}}}, 3},
        {"it has no area", {{{0, 0}, {5, 5}, {9, 9}}}, 0},
        {"the outer ring has a coordinate out of range",
         {{{0, 0}, {9, std::numeric_limits<double>::infinity()}, {9, 0}}},
         0},
    };
    for (const InvalidPolygon& polygon : polygons) {
        for (const bool is_shared : {true, false}) {
            const kit::Map map = map_of(polygon.rings, is_shared);
            const std::optional<kit::Flaw> flaw = kit::flaw_of(map, 0);
            EXPECT_EQ(flaw ? kit::text(*flaw) : "valid", polygon.text);
            const kit::Triangulation triangles = kit::triangulate(map);
            EXPECT_EQ(triangles.filled(0) == kit::Filled::not_at_all,
                      !flaw || flaw->reason != kit::Flaw::Reason::cut_apart)
                << polygon.text;
        }
        kit::Network outlines;
        for (const Ring& ring : polygon.rings) {
            std::vector<kit::GridPoint> curve;
            for (std::size_t k = 0; k <= ring.size(); ++k) {
                const PlanePoint p = ring[k % ring.size()];
                curve.push_back(
                    {static_cast<int>(std::min(p.x, 1e9)), static_cast<int>(std::min(p.y, 1e9))});
            }
            outlines.add_curve(curve);
        }
        if (polygon.faces > 0) {
            EXPECT_EQ(kit::find_regions(outlines).map().size(), polygon.faces) << polygon.text;
        }
    }
}

} // namespace
} // namespace korvel::test
