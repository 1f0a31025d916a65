// Constrained Delaunay triangles of random regions, beside GEOS's opinion of what is valid.

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "kit/base/areas.h"
#include "kit/base/exact_predicates.h"
#include "kit/maps/coverage.h"
#include "kit/maps/delaunay.h"
#include "kit/maps/faces.h"
#include "kit/maps/noding.h"
#include "kit/maps/region_sets.h"
#include "tests/kit/geos_validity.h"
#include "tests/kit/rings.h"
#include "tests/support/dice.h"

namespace korvel::test {
namespace {

using kit::PlanePoint;

PlanePoint at(const PLYDT& set, int point) {
    return {set.pt_list[point].x, set.pt_list[point].y};
}

/// Adds the triangles and checks that they tile the region, and that no circle of a triangle
/// contains the point opposite to a side that is no ring side. Returns how many there are.
int expect_delaunay(PLYDT& set, const char* what) {
    kit::orient_rings(set);
    kit::add_delaunay_triangles(set, set.region_list[0]);
    const int count = set.trg_list.GetSize();
    EXPECT_TRUE(kit::measure_coverage(set, set.region_list[0], 0, count,
                                      kit::are_lattice_points(set.pt_list))
                    .is_tiling)
        << what << ": " << count << " triangles";
    std::map<std::array<int, 2>, int> opposite;
    for (const PLYDT::TRG& t : set.trg_list) {
        EXPECT_EQ(kit::turn(at(set, t.va), at(set, t.vb), at(set, t.vc)), 1) << what;
        opposite[{t.va, t.vb}] = t.vc;
        opposite[{t.vb, t.vc}] = t.va;
        opposite[{t.vc, t.va}] = t.vb;
    }
    EXPECT_EQ(opposite.size(), 3 * static_cast<std::size_t>(count)) << what;
    for (const auto& [side, corner] : opposite) {
        const auto other = opposite.find({side[1], side[0]});
        if (other != opposite.end()) {
            EXPECT_LE(kit::side_of_circle(at(set, side[0]), at(set, side[1]), at(set, corner),
                                          at(set, other->second)),
                      0)
                << what;
        }
    }
    return count;
}

/// The faces of a random network as rings, stretched by `scale`.
std::vector<Rings> random_regions(Dice& dice, int curves, int size, double scale) {
    kit::Network network;
    for (int i = 0; i < curves; ++i) {
        // Long ones, and small loops, which become holes.
        std::vector<kit::GridPoint> curve = {{dice(0, size), dice(0, size)}};
        const bool is_small = i > 1 && !dice.one_in(4);
        const int reach = is_small ? 2 : size;
        const int points = is_small ? 3 : dice(2, 6);
        while (static_cast<int>(curve.size()) < points) {
            curve.push_back({std::clamp(curve[0].x + dice(-reach, reach), 0, size),
                             std::clamp(curve[0].y + dice(-reach, reach), 0, size)});
        }
        curve.push_back(curve.front());
        network.add_curve(curve);
    }
    const auto faces = kit::faces_of(kit::node(network));
    std::vector<Rings> regions;
    for (const CCPloy2DRg::PyToRg& region : faces.regions->region_list) {
        Rings& rings = regions.emplace_back();
        for (const int ring : region.rings) {
            rings.emplace_back();
            for (const int point : faces.regions->ring_list[ring].pts) {
                const VERT2D& p = faces.regions->pt_list[point];
                rings.back().push_back({(p.x - size / 2) * scale, (p.y - size / 2) * scale});
            }
        }
    }
    return regions;
}

/// Joins a hole that touches the outer ring in a corner with it, so that the ring touches itself.
bool join_touching_hole(Rings& rings) {
    const auto is_same = [](PlanePoint a, PlanePoint b) { return a.x == b.x && a.y == b.y; };
    for (std::size_t hole = 1; hole < rings.size(); ++hole) {
        for (std::size_t k = 0; k < rings[hole].size(); ++k) {
            const auto touched = std::find_if(rings[0].begin(), rings[0].end(), [&](PlanePoint p) {
                return is_same(p, rings[hole][k]);
            });
            if (touched != rings[0].end()) {
                std::rotate(rings[hole].begin(),
                            rings[hole].begin() + static_cast<std::ptrdiff_t>(k),
                            rings[hole].end());
                rings[0].insert(touched, rings[hole].begin(), rings[hole].end());
                rings.erase(rings.begin() + static_cast<std::ptrdiff_t>(hole));
                return true;
            }
        }
    }
    return false;
}

TEST(Delaunay, TilesTheFacesOfRandomNetworks) {
    int joined = 0;
    int holes = 0;
    int regions = 0;
    for (unsigned seed = 1; seed <= 600; ++seed) {
        Dice dice(seed);
        // Up to the ends of 32 bits, and off the lattice.
        const double scale = seed % 3 == 0 ? 1 : seed % 3 == 1 ? 71582788 : 0.1;
        for (Rings& rings : random_regions(dice, dice(2, 14), dice.one_in(2) ? 12 : 60, scale)) {
            PLYDT set;
            fill(set, rings, true);
            const int count = expect_delaunay(set, "as traced");
            holes += static_cast<int>(rings.size()) - 1;
            ++regions;
            if (join_touching_hole(rings)) {
                ++joined;
                PLYDT touching;
                fill(touching, rings, true);
                EXPECT_EQ(expect_delaunay(touching, "joined"), count);
                PLYDT apart;
                fill(apart, rings, false);
                EXPECT_EQ(expect_delaunay(apart, "points of their own"), count);
            }
        }
    }
    EXPECT_GT(regions, 5000);
    EXPECT_GT(holes, 100);
    EXPECT_GT(joined, 50);
}

// Sides that cross thousands of edges of the triangulation without them, points in line, and points
// on a circle.
TEST(Delaunay, TilesLargeRegions) {
    Dice dice;
    for (int corners = 1000; corners <= 16000; corners *= 4) {
        Rings star(1);
        Rings comb(1);
        for (int k = 0; k < corners; ++k) {
            const double angle = 2 * std::numbers::pi * k / corners;
            const double radius = dice.one_in(20) ? 1e9 : 4e8 + dice(0, 1000);
            star[0].push_back({std::round(radius * std::cos(angle)), radius * std::sin(angle)});
            comb[0].push_back({double(k), k % 2 == 0 ? 0.0 : k % 4 == 1 ? 1e6 : 7.0});
        }
        comb[0].push_back({double(corners), -1e6});
        comb[0].push_back({0, -1e6});
        Rings circle(1);
        for (const auto& [x, y] : {std::pair(63, 16), {16, 63}, {33, 56}, {56, 33}, {60, 25}}) {
            for (const auto& [p, q] : {std::pair(x, y), {-y, x}, {-x, -y}, {y, -x}}) {
                circle[0].push_back({double(p), double(q)});
            }
        }
        std::sort(circle[0].begin(), circle[0].end(), [](PlanePoint a, PlanePoint b) {
            return std::atan2(a.y, a.x) < std::atan2(b.y, b.x);
        });
        for (const Rings& rings : {star, comb, circle}) {
            PLYDT set;
            fill(set, rings, true);
            EXPECT_EQ(expect_delaunay(set, "large"), static_cast<int>(rings[0].size()) - 2);
        }
    }
}

TEST(Delaunay, TilesWhateverIsValidAndNothingElse) {
    int valid = 0;
    int filled = 0;
    for (unsigned seed = 1; seed <= 20000; ++seed) {
        Dice dice(seed);
        Rings rings(static_cast<std::size_t>(dice(1, 3)));
        for (std::vector<PlanePoint>& ring : rings) {
            const int size = &ring == &rings.front() ? 6 : 3;
            const int points = dice(3, 5);
            for (int k = 0; k < points; ++k) {
                ring.push_back({double(dice(0, size)), double(dice(0, size))});
            }
        }
        PLYDT set;
        fill(set, rings, false);
        kit::orient_rings(set);
        kit::add_delaunay_triangles(set, set.region_list[0]);
        const bool tiles =
            set.trg_list.GetSize() > 0 &&
            kit::measure_coverage(set, set.region_list[0], 0, set.trg_list.GetSize(), true)
                .is_tiling;
        const bool should = is_valid(rings);
        EXPECT_TRUE(tiles || !should) << seed;
        EXPECT_TRUE(tiles || set.trg_list.IsEmpty()) << seed;
        valid += should ? 1 : 0;
        filled += tiles ? 1 : 0;
    }
    EXPECT_GT(valid, 1000);
    EXPECT_LT(filled, 18000);
}

} // namespace
} // namespace korvel::test
