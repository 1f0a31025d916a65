// Bounds and clearances on which the searches of the triangulation rely, against exact tests on
// points that are nearly in line, close together or far from the origin.

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/polyregion/triangulation/constrained_delaunay.h"
#include "korvel/polyregion/triangulation/edge_frame.h"
#include "korvel/polyregion/triangulation/point_tree.h"
#include "tests/support/dice.h"

namespace {

using korvel::ConstrainedDelaunay;
using korvel::EdgeFrame;
using korvel::PlanePoint;
using korvel::RegionPoints;
using korvel::test::Dice;

/// Points at distances of all magnitudes from a few others, from their lines and from their
/// circles.
std::vector<PlanePoint> hard_points(unsigned seed, int count) {
    Dice dice(seed);
    const double offset = seed % 3 == 0 ? dice.up_to(1e6) : 0;
    const auto tiny = [&] {
        const double size = std::pow(10, -dice.up_to(12));
        return size * dice.between(-0.5, 0.5);
    };
    std::vector<PlanePoint> points;
    for (int i = 0; i < count; ++i) {
        PlanePoint p{offset + dice.up_to(100), offset + dice.up_to(100)};
        if (i >= 4 && i % 4 != 0) {
            const PlanePoint a = dice.pick(points);
            const PlanePoint b = dice.pick(points);
            const double along = i % 4 == 1 ? 0 : i % 4 == 2 ? dice.up_to(1.5) : tiny();
            p = {a.x + along * (b.x - a.x) + 10 * tiny(), a.y + along * (b.y - a.y) + 10 * tiny()};
        }
        points.push_back(p);
    }
    return points;
}

bool is_within(const korvel::Disk& disk, PlanePoint p) {
    return std::hypot(p.x - disk.centre.x, p.y - disk.centre.y) <= disk.radius;
}

double distance_to_segment(PlanePoint a, PlanePoint b, PlanePoint p) {
    const double length2 = (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y);
    const double along = ((p.x - a.x) * (b.x - a.x) + (p.y - a.y) * (b.y - a.y)) / length2;
    const double part = std::clamp(along, 0.0, 1.0);
    return std::hypot(p.x - a.x - part * (b.x - a.x), p.y - a.y - part * (b.y - a.y));
}

TEST(TriangulationEngine, BoundsStayBelowComputedRadii) {
    constexpr int count = 40;
    int flat = 0;
    for (unsigned seed = 0; seed < 60; ++seed) {
        RegionPoints points;
        points.start(hard_points(seed, count));
        for (int edge = 0; edge < count * count; ++edge) {
            const int a = edge / count;
            const int b = edge % count;
            const double length = korvel::direction_between(points.at(a), points.at(b)).len;
            if (!(length >= 1e-7 * points.extent())) {
                continue;
            }
            const EdgeFrame frame(points, a, b);
            for (int p = 0; p < count; ++p) {
                const double r = korvel::circumradius(points.at(a), points.at(b), points.at(p));
                if (p == a || p == b || !(r >= 0 && r < 1e300) ||
                    korvel::turn_sign(points.at(a), points.at(b), points.at(p)) == -1) {
                    continue;
                }
                const PlanePoint at = points.local(p);
                flat += r > 1e4 * length ? 1 : 0;
                ASSERT_LE(frame.bound(at, frame.height.at(at)), r * r)
                    << "seed " << seed << ", triangle " << a << ' ' << b << ' ' << p;
                ASSERT_TRUE(is_within(frame.disk(r), at) || is_within(frame.flat_disk(r), at) ||
                            is_within(frame.end_disk(a), at) || is_within(frame.end_disk(b), at))
                    << "seed " << seed << ", triangle " << a << ' ' << b << ' ' << p;
                korvel::Coordinates two;
                two.resize(2);
                two.set(0, at);
                two.set(1, points.local((p + 1) % count));
                const korvel::OrientedBox box =
                    korvel::box_around(two, 0, 2, korvel::tolerance::box * points.extent());
                const double in_box =
                    frame.bound(box, frame.height.at(box.centre), box.spread(frame.height));
                ASSERT_LE(in_box, r * r)
                    << "seed " << seed << ", box of " << p << " over " << a << ' ' << b;
            }
        }
    }
    EXPECT_GT(flat, 1000); // the hard ones are among them
}

TEST(TriangulationEngine, ClearEdgesHaveNothingNear) {
    constexpr int count = 60;
    int clear = 0;
    for (unsigned seed = 0; seed < 60; ++seed) {
        RegionPoints points;
        points.start(hard_points(seed, count));
        ConstrainedDelaunay guide(points);
        guide.start();
        for (int edge = 0; edge < count * count; ++edge) {
            const int a = edge / count;
            const int b = edge % count;
            for (const double part : {1e-10, 1e-6, 1e-3}) {
                const double distance = part * points.extent();
                if (a == b || !guide.is_clear_edge(a, b, ConstrainedDelaunay::none, distance)) {
                    continue;
                }
                ++clear;
                for (int p = 0; p < count; ++p) {
                    ASSERT_TRUE(p == a || p == b ||
                                distance_to_segment(points.at(a), points.at(b), points.at(p)) >=
                                    distance * 0.999)
                        << "seed " << seed << ", edge " << a << ' ' << b << ", vertex " << p;
                }
            }
        }
    }
    EXPECT_GT(clear, 1000);
}

TEST(TriangulationEngine, ConstraintsAreEdgesAndTrianglesAreEmpty) {
    constexpr int count = 80;
    for (unsigned seed = 0; seed < 20; ++seed) {
        Dice dice(seed);
        std::vector<PlanePoint> ring;
        for (int k = 0; k < count; ++k) {
            const double angle = 2 * 3.141592653589793 * k / count;
            const double distance = dice.between(10, 100);
            ring.push_back({distance * std::cos(angle), distance * std::sin(angle)});
        }
        RegionPoints points;
        points.start(ring);
        ConstrainedDelaunay guide(points);
        guide.start();
        std::vector<int> hints;
        for (int k = 0; k < count; ++k) {
            hints.push_back(guide.add_side(k, (k + 1) % count));
        }
        for (int a = 0; a < count; ++a) {
            const int b = (a + 1) % count;
            const int c = guide.apex(a, b, hints[a]); // the ring runs anticlockwise
            ASSERT_NE(c, ConstrainedDelaunay::none) << "seed " << seed << ", side " << a;
            for (int p = 0; p < count; ++p) {
                EXPECT_FALSE(points.is_inside(a, b, c, p)) << "seed " << seed << ", triangle " << a
                                                           << ' ' << b << ' ' << c << " has " << p;
            }
        }
    }
}

} // namespace
