// The library's analysis against its plain form, field by field, on random networks.

#include <gtest/gtest.h>

#include "tests/region/plain_region.h"
#include "tests/support/dice.h"

using namespace korvel::test;

namespace {

Pt random_point(Dice& dice, int reach) {
    const int x = dice(-reach, reach);
    return {x, dice(-reach, reach)};
}

/// Curves of random points `step` apart, which cross each other and themselves, overlap, repeat
/// points and, on a narrow reach, meet in ties nearly everywhere.
Curves scribbles(Dice& dice, int count, int most_points, int reach, int step = 1) {
    Curves curves(static_cast<std::size_t>(count));
    for (Pts& curve : curves) {
        for (int k = dice(most_points == 2 ? 2 : 0, most_points); k > 0; --k) {
            const Pt at = random_point(dice, reach);
            curve.push_back({at.x * step, at.y * step});
        }
    }
    return curves;
}

/// Segments beside one long line, with directions that differ by less than rounding: far ones can
/// come out as crossing.
Curves slivers(Dice& dice, int count) {
    // Two steps that span a parallelogram without another integer point.
    const auto point = [](int wide, int along) {
        return Pt{wide * 2178309 + along * 3524578, wide * 1346269 + along * 2178309};
    };
    Curves curves(static_cast<std::size_t>(count));
    for (Pts& curve : curves) {
        for (int k = 0; k < 2; ++k) {
            curve.push_back(point(dice(-2, 2), dice(-300, 300)));
        }
    }
    return curves;
}

/// Closed boxes and diamonds around few centres, either way round: nested, touching, overlapping.
Curves loops(Dice& dice, int count, int reach) {
    Curves curves;
    for (int i = 0; i < count; ++i) {
        const Pt c{dice(0, 2) * 2 * reach, dice(0, 1) * reach};
        const int r = dice(1, reach);
        Pts loop{{c.x - r, c.y - r}, {c.x + r, c.y - r}, {c.x + r, c.y + r}, {c.x - r, c.y + r}};
        if (dice(0, 2) == 0) {
            loop = {{c.x - r, c.y}, {c.x, c.y - r}, {c.x + r, c.y}, {c.x, c.y + r}};
        }
        if (dice(0, 1) == 0) {
            loop = Pts(loop.rbegin(), loop.rend());
        }
        loop.push_back(loop.front());
        curves.push_back(loop);
    }
    return curves;
}

/// Every curve starts and ends in one of three busy points, some in equal directions.
Curves hubs(Dice& dice, Curves curves) {
    const Pts centres{random_point(dice, 9), random_point(dice, 9), random_point(dice, 2)};
    for (Pts& curve : curves) {
        curve.insert(curve.begin(), centres[static_cast<std::size_t>(dice(0, 2))]);
        curve.push_back(centres[static_cast<std::size_t>(dice(0, 2))]);
    }
    return curves;
}

/// Many petals around one point, far out with steps too small for the arc sine, or close by with
/// equal directions.
Curves flower(Dice& dice) {
    constexpr int sizes[] = {4, 60, 5000, 1'000'000'000};
    const int size = sizes[dice(0, 3)];
    Curves petals;
    for (int k = 0; k < 40; ++k) {
        const int step = size < 100 ? dice(-size, size) : dice(0, 1) * 20 + k;
        const Pt axes[] = {{size, step}, {step, size}, {-size, step}, {step, -size}};
        const Pt at = axes[dice(0, 3)];
        petals.push_back({{0, 0}, at, {at.x + dice(0, 1), at.y + dice(0, 1)}, {0, 0}});
    }
    return petals;
}

/// Every curve a few times, forwards and backwards, with its ends a little off.
Curves redrawn(Dice& dice, const Curves& curves) {
    Curves all;
    for (const Pts& curve : curves) {
        all.push_back(curve);
        for (int k = dice(0, 2); k > 0 && !curve.empty(); --k) {
            Pts again = dice(0, 1) == 0 ? curve : Pts(curve.rbegin(), curve.rend());
            again.back().x += dice(-1, 1);
            all.push_back(again);
        }
    }
    return all;
}

Curves random_network(Dice& dice) {
    constexpr int widest = 1 << 30;
    const int count = dice(0, 40) == 0 ? 24 : dice(1, 12);
    if (dice(0, 49) == 0) {
        return flower(dice);
    }
    switch (dice(0, 9)) {
    case 0:
        return scribbles(dice, 2 * count, 2, 6);
    case 1:
        return scribbles(dice, 2 * count, 2, 1000);
    case 2:
        if (dice(0, 2) == 0) {
            return slivers(dice, 3 * count);
        }
        return scribbles(dice, count, 2, dice(0, 1) == 0 ? widest : 40'000'000);
    case 3:
        return scribbles(dice, count, 9, 5);
    case 4:
        return scribbles(dice, count, 7, 500'000);
    case 5:
        return scribbles(dice, count, 5, 1 + count / 6, dice(0, 1) == 0 ? 50 : widest / 4);
    case 6:
    case 7:
        return loops(dice, count, dice(4, 60));
    case 8:
        return hubs(dice, scribbles(dice, count, 3, 3));
    default:
        return redrawn(dice, scribbles(dice, count, 4, 12));
    }
}

void expect_equal(const Analysis& found, const Analysis& plain) {
    EXPECT_EQ(found.cleaned, plain.cleaned);
    EXPECT_EQ(found.split, plain.split);
    EXPECT_EQ(found.nodes, plain.nodes);
    EXPECT_EQ(found.curve_to_node, plain.curve_to_node);
    EXPECT_EQ(found.curve_num, plain.curve_num);
    EXPECT_EQ(found.curve_ids, plain.curve_ids);
    EXPECT_EQ(found.rings, plain.rings);
    EXPECT_EQ(found.areas, plain.areas);
    EXPECT_EQ(found.in_rings, plain.in_rings);
    EXPECT_EQ(found.ex_rings, plain.ex_rings);
    EXPECT_EQ(found.unique_pts, plain.unique_pts);
    EXPECT_EQ(found.pt_index, plain.pt_index);
    EXPECT_EQ(found.ring_pts, plain.ring_pts);
    EXPECT_EQ(found.kept_areas, plain.kept_areas);
    EXPECT_EQ(found.is_hole, plain.is_hole);
    EXPECT_EQ(found.sides, plain.sides);
    EXPECT_EQ(found.rings_at, plain.rings_at);
    EXPECT_EQ(found.sides_at, plain.sides_at);
    EXPECT_EQ(found.regions, plain.regions);
}

TEST(PlainForm, AgreesWithTheLibrary) {
    constexpr double tolerances[] = {1, 1, 0, 5, -8, 100};
    std::size_t rings = 0;
    std::size_t holes = 0;
    std::size_t envelopes = 0;
    std::size_t around_seeds = 0;
    std::size_t inside_them = 0;
    CREGION region; // used again and again, as hosts do
    for (unsigned seed = 0; seed < 4000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        const Curves curves = random_network(dice);
        const double tolerance = tolerances[dice(0, 5)];
        const Pt at = random_point(dice, 20);
        const Analysis plain = analyse_plainly(curves, at, tolerance);
        if (plain.unique_pts.empty()) {
            region.RemoveAll(); // or the distinct points of the network before would stay
        }
        Network network(curves);
        region.SetTolerance(tolerance);
        region.SetSeedPt({at.x, at.y});
        region.SetPtsInfo(network.pts, network.counts);
        region.CalcInExRing();
        expect_equal(analysis_of(region), plain);
        rings += plain.ring_pts.size();
        around_seeds += plain.in_rings.size();
        inside_them += plain.ex_rings.size();
        envelopes += plain.rings.size() - plain.ring_pts.size();
        holes +=
            static_cast<std::size_t>(std::count(plain.is_hole.begin(), plain.is_hole.end(), 1));
    }
    // All of these occur often enough.
    EXPECT_GT(rings, 40'000U);
    EXPECT_GT(holes, 200U);
    EXPECT_GT(envelopes, 2'000U);
    EXPECT_GT(around_seeds, 500U);
    EXPECT_GT(inside_them, 100U);
}

} // namespace
