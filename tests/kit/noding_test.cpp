// Noding and faces against slow, plain forms and against GEOS.

#include <algorithm>
#include <cmath>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include <geos_c.h>
#include <gtest/gtest.h>

#include "kit/base/areas.h"
#include "kit/maps/faces.h"
#include "kit/maps/find_regions.h"
#include "kit/maps/noding.h"
#include "tests/support/dice.h"

namespace korvel::test {
namespace {

using kit::GridPoint;
using kit::NodedNetwork;

kit::Network network_of(const std::vector<std::vector<GridPoint>>& curves) {
    kit::Network network;
    for (const std::vector<GridPoint>& curve : curves) {
        network.add_curve(curve);
    }
    return network;
}

/// Curves of a few points each on a small grid: they cross, overlap, touch and repeat one another.
std::vector<std::vector<GridPoint>> random_curves(Dice& dice, int curves, int size) {
    std::vector<std::vector<GridPoint>> made(static_cast<std::size_t>(curves));
    for (std::vector<GridPoint>& curve : made) {
        const int points = dice(2, 5);
        for (int i = 0; i < points; ++i) {
            curve.push_back({dice(0, size), dice(0, size)});
        }
        if (dice(0, 2) == 0) {
            curve.push_back(curve.front());
        }
    }
    if (curves > 2) { // a copy, backwards
        made.back().assign(made.front().rbegin(), made.front().rend());
    }
    return made;
}

long long side(const GridPoint& a, const GridPoint& b, const GridPoint& c) {
    return 1LL * (b.x - a.x) * (c.y - a.y) - 1LL * (b.y - a.y) * (c.x - a.x);
}

/// Whether c is on the segment ab.
bool is_on(const GridPoint& a, const GridPoint& b, const GridPoint& c) {
    return side(a, b, c) == 0 && std::min(a.x, b.x) <= c.x && c.x <= std::max(a.x, b.x) &&
           std::min(a.y, b.y) <= c.y && c.y <= std::max(a.y, b.y);
}

/// Whether two segments have a point in common that is not an end of both.
bool meet_wrongly(const GridPoint& a, const GridPoint& b, const GridPoint& c, const GridPoint& d) {
    const auto sign = [](long long v) { return (v > 0) - (v < 0); };
    if (sign(side(a, b, c)) * sign(side(a, b, d)) < 0 &&
        sign(side(c, d, a)) * sign(side(c, d, b)) < 0) {
        return true;
    }
    const auto is_same = [](const GridPoint& p, const GridPoint& q) {
        return p.x == q.x && p.y == q.y;
    };
    const auto is_inside = [&](const GridPoint& p, const GridPoint& q, const GridPoint& r) {
        return is_on(p, q, r) && !is_same(p, r) && !is_same(q, r);
    };
    return is_inside(a, b, c) || is_inside(a, b, d) || is_inside(c, d, a) || is_inside(c, d, b);
}

void expect_noded(const NodedNetwork& noded) {
    std::set<std::pair<int, int>> seen;
    for (std::size_t i = 0; i < noded.segments.size(); ++i) {
        const kit::NodedSegment& s = noded.segments[i];
        ASSERT_TRUE(seen.insert(std::minmax(s.from, s.to)).second) << "equal ones";
        for (std::size_t k = 0; k < i; ++k) {
            const kit::NodedSegment& t = noded.segments[k];
            ASSERT_FALSE(meet_wrongly(noded.points[s.from], noded.points[s.to],
                                      noded.points[t.from], noded.points[t.to]))
                << i << ' ' << k;
        }
    }
}

/// Curves along the axes and their diagonals between points with even coordinates, which cross at
/// points of the grid: walks, nested squares, and some of both again, also backwards.
std::vector<std::vector<GridPoint>> random_curves_of_eight_directions(Dice& dice) {
    std::vector<std::vector<GridPoint>> made;
    const int walks = dice(1, 8);
    for (int i = 0; i < walks; ++i) {
        std::vector<GridPoint>& curve = made.emplace_back();
        curve.push_back({2 * dice(0, 12), 2 * dice(0, 12)});
        for (int step = dice(1, 9); step > 0; --step) {
            const int length = 2 * dice(1, 6);
            const GridPoint& from = curve.back();
            curve.push_back({from.x + length * dice(-1, 1), from.y + length * dice(-1, 1)});
        }
    }
    const GridPoint corner = {2 * dice(0, 12), 2 * dice(0, 12)};
    for (int depth = dice(0, 10); depth > 0; --depth) {
        const int near = -2 * depth;
        const int far = 2 * depth + 2;
        std::vector<GridPoint>& square = made.emplace_back();
        for (const auto& [x, y] : {std::pair(near, near), {far, near}, {far, far}, {near, far}}) {
            square.push_back({corner.x + x, corner.y + y});
        }
        square.push_back(square.front());
    }
    for (int again = dice(0, 3); again > 0; --again) {
        const auto& curve =
            made[static_cast<std::size_t>(dice(0, static_cast<int>(made.size()) - 1))];
        made.emplace_back(curve.rbegin(), curve.rend());
    }
    return made;
}

struct GeosFace {
    double area;
    kit::Point2 inside;
};

/// The polygons that GEOS makes of lines, which it nodes first unless they are; by area.
std::vector<GeosFace> faces_by_geos(const std::vector<std::vector<GridPoint>>& lines,
                                    bool are_noded) {
    GEOSContextHandle_t geos = GEOS_init_r();
    std::vector<GEOSGeometry*> parts;
    for (const std::vector<GridPoint>& line : lines) {
        std::vector<double> corners;
        for (const GridPoint& point : line) {
            corners.insert(corners.end(), {1.0 * point.x, 1.0 * point.y});
        }
        if (std::any_of(line.begin(), line.end(), [&](const GridPoint& point) {
                return !kit::is_same(point, line.front());
            })) {
            parts.push_back(GEOSGeom_createLineString_r(
                geos, GEOSCoordSeq_copyFromBuffer_r(geos, corners.data(),
                                                    static_cast<unsigned>(line.size()), 0, 0)));
        }
    }
    GEOSGeometry* all = GEOSGeom_createCollection_r(geos, GEOS_MULTILINESTRING, parts.data(),
                                                    static_cast<unsigned>(parts.size()));
    if (!are_noded) {
        GEOSGeometry* const noded = GEOSUnaryUnion_r(geos, all);
        GEOSGeom_destroy_r(geos, std::exchange(all, noded));
    }
    GEOSGeometry* const polygons = GEOSPolygonize_r(geos, &all, 1);
    std::vector<GeosFace> faces;
    for (int i = 0; i < GEOSGetNumGeometries_r(geos, polygons); ++i) {
        const GEOSGeometry* const polygon = GEOSGetGeometryN_r(geos, polygons, i);
        GEOSGeometry* const point = GEOSPointOnSurface_r(geos, polygon);
        GeosFace& face = faces.emplace_back();
        GEOSArea_r(geos, polygon, &face.area);
        GEOSGeomGetX_r(geos, point, face.inside.data());
        GEOSGeomGetY_r(geos, point, &face.inside[1]);
        GEOSGeom_destroy_r(geos, point);
    }
    GEOSGeom_destroy_r(geos, polygons);
    GEOSGeom_destroy_r(geos, all);
    GEOS_finish_r(geos);
    std::sort(faces.begin(), faces.end(),
              [](const GeosFace& a, const GeosFace& b) { return a.area < b.area; });
    return faces;
}

/// The areas of the polygons that GEOS makes of noded segments, ascending.
std::vector<double> areas_by_geos(const NodedNetwork& noded) {
    std::vector<std::vector<GridPoint>> lines;
    for (const kit::NodedSegment& segment : noded.segments) {
        lines.push_back({noded.points[segment.from], noded.points[segment.to]});
    }
    std::vector<double> areas;
    for (const GeosFace& face : faces_by_geos(lines, true)) {
        areas.push_back(face.area);
    }
    return areas;
}

std::vector<double> areas_of(const CCPloy2DRg& set) {
    std::vector<double> areas;
    for (const CCPloy2DRg::PyToRg& region : set.region_list) {
        areas.push_back(kit::region_area(set, region, true));
    }
    std::sort(areas.begin(), areas.end());
    return areas;
}

TEST(Noding, CutsOverlapsAndCrossings) {
    // Two borders along a stretch, a line across both, and one that is there twice.
    const NodedNetwork noded = node(
        network_of({{{0, 0}, {10, 0}}, {{8, 0}, {4, 0}}, {{5, -5}, {6, 4}}, {{6, 4}, {5, -5}}}));
    expect_noded(noded);
    EXPECT_EQ(noded.segments.size(), 6U) << "0 4 6 8 10 along the first, two across";
    EXPECT_EQ(noded.duplicates.size(), 4U) << "4 to 6 and 6 to 8, and the second way across";
    EXPECT_EQ(noded.crossings, 1) << "5.56, 0 moves to 6, 0";
}

TEST(Noding, IsCompleteOnRandomNetworks) {
    Dice dice(14);
    for (int i = 0; i < 1500; ++i) {
        const int size = dice(2, i % 2 == 0 ? 12 : 1000);
        const auto curves = random_curves(dice, dice(1, 9), size);
        const NodedNetwork noded = node(network_of(curves));
        expect_noded(noded);
        for (const std::vector<GridPoint>& curve : curves) {
            for (const GridPoint& point : curve) { // unless the curve has no length
                const bool is_kept =
                    std::any_of(noded.points.begin(), noded.points.end(), [&](const GridPoint& p) {
                        return p.x == point.x && p.y == point.y;
                    });
                const bool has_length =
                    std::any_of(curve.begin(), curve.end(), [&](const GridPoint& p) {
                        return p.x != point.x || p.y != point.y;
                    });
                ASSERT_TRUE(is_kept || !has_length);
            }
        }
        const kit::Faces faces = faces_of(noded);
        ASSERT_EQ(areas_of(*faces.regions), areas_by_geos(noded)) << i;
    }
}

TEST(Noding, AgreesWithGeosWhereNothingIsRounded) {
    Dice dice(8);
    for (int i = 0; i < 3000; ++i) {
        const auto curves = random_curves_of_eight_directions(dice);
        const kit::Map map = kit::find_regions(network_of(curves)).take_map();
        const std::vector<GeosFace> faces = faces_by_geos(curves, false);
        ASSERT_EQ(map.size(), static_cast<int>(faces.size())) << i;
        for (const GeosFace& face : faces) {
            const std::optional<int> region = map.region_at(face.inside);
            ASSERT_TRUE(region.has_value()) << i;
            ASSERT_EQ(map[*region].area(), face.area) << i;
        }
    }
}

TEST(Noding, IsExactAtTheEndsOfTheGrid) {
    constexpr int most = 2147483647;
    constexpr int least = -most - 1;
    const NodedNetwork noded = node(network_of(
        {{{least, least}, {most, most}}, {{least, most}, {most, least}}, {{least, 0}, {most, 1}}}));
    // At -1/2, -1/2, just above 1/2, 1/2 and just right of -3/2, 1/2: three squares.
    EXPECT_EQ(noded.crossings, 3);
    const kit::Faces faces = faces_of(noded);
    EXPECT_EQ(faces.regions->region_list.GetSize(), 1);
}

TEST(Faces, NestsToAnyDepthInAnyOrder) {
    std::vector<std::vector<GridPoint>> squares;
    for (int depth = 0; depth < 12; ++depth) {
        const int near = 10 * depth;
        const int far = 1000 - near;
        squares.push_back({{near, near}, {far, near}, {far, far}, {near, far}, {near, near}});
    }
    Dice dice(3);
    for (int round = 0; round < 10; ++round) {
        for (std::size_t i = squares.size() - 1; i > 0; --i) {
            std::swap(squares[i], squares[static_cast<std::size_t>(dice(0, static_cast<int>(i)))]);
        }
        const kit::Faces faces = faces_of(node(network_of(squares)));
        ASSERT_EQ(faces.regions->region_list.GetSize(), 12);
        EXPECT_EQ(faces.components, 12);
        int with_one_hole = 0;
        for (const CCPloy2DRg::PyToRg& region : faces.regions->region_list) {
            with_one_hole += region.rings.GetSize() == 2 ? 1 : 0;
        }
        EXPECT_EQ(with_one_hole, 11);
    }
}

TEST(Faces, KeepsRingsThatTouchThemselves) {
    // A square whose hole touches a corner, an island in the hole, a bridge to it and a loose end.
    const NodedNetwork noded = node(network_of({{{0, 0}, {12, 0}, {12, 12}, {0, 12}, {0, 0}},
                                                {{0, 0}, {9, 2}, {2, 9}, {0, 0}},
                                                {{3, 3}, {4, 3}, {3, 4}, {3, 3}},
                                                {{3, 3}, {2, 2}, {0, 0}},
                                                {{12, 12}, {15, 15}}}));
    const kit::Faces faces = faces_of(noded);
    const auto count = [&](kit::SegmentKind kind) {
        return std::count(faces.kinds.begin(), faces.kinds.end(), kind);
    };
    EXPECT_EQ(count(kit::SegmentKind::border), 4 + 3 + 3);
    EXPECT_EQ(count(kit::SegmentKind::bridge), 2);
    EXPECT_EQ(count(kit::SegmentKind::dangling), 1);
    EXPECT_EQ(areas_of(*faces.regions), (std::vector<double>{0.5, 38, 105.5}));
    for (const RING& ring : faces.regions->ring_list) {
        const std::set<int> points(ring.pts.begin(), ring.pts.end());
        EXPECT_EQ(static_cast<int>(points.size()), ring.pts.GetSize());
    }
}

} // namespace
} // namespace korvel::test
