// The library's analysis against its plain form, field by field, on random networks.

#include <random>

#include <gtest/gtest.h>

#include "tests/region/plain_region.h"

using korvel::test::Analysis;
using korvel::test::Curves;
using korvel::test::Network;
using korvel::test::Pt;
using korvel::test::Pts;

namespace {

/// Random numbers that are the same with every standard library.
class Dice {
public:
    explicit Dice(unsigned seed) : engine_(seed) {}
    int operator()(int from, int to) {
        const auto faces = static_cast<unsigned>(to) - static_cast<unsigned>(from) + 1;
        return static_cast<int>(from + static_cast<long long>(engine_() % faces));
    }
    Pt point(int reach) { return {(*this)(-reach, reach), (*this)(-reach, reach)}; }

private:
    std::mt19937 engine_;
};

/// Straight strokes, which cross.
Curves strokes(Dice& dice, int count, int reach) {
    Curves curves;
    for (int i = 0; i < count; ++i) {
        curves.push_back({dice.point(reach), dice.point(reach)});
    }
    return curves;
}

/// Long curves that cross themselves and repeat points.
Curves scribbles(Dice& dice, int count, int reach) {
    Curves curves(static_cast<std::size_t>(count));
    for (Pts& curve : curves) {
        for (int k = dice(0, 9); k > 0; --k) {
            curve.push_back(dice.point(reach));
        }
    }
    return curves;
}

/// Axis-parallel walks on a grid: nearly every meeting is a tie.
Curves grid_walks(Dice& dice, int count, int cells, int step) {
    Curves curves;
    for (int i = 0; i < count; ++i) {
        Pts& curve =
            curves.emplace_back(Pts{{dice(-cells, cells) * step, dice(-cells, cells) * step}});
        for (int k = dice(1, 6); k > 0; --k) {
            const int along = dice(-2, 2) * step;
            const bool level = dice(0, 1) == 0;
            const Pt at = curve.back();
            curve.push_back({at.x + (level ? along : 0), at.y + (level ? 0 : along)});
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

/// Strokes that leave a few busy points, some of them in equal directions.
Curves hubs(Dice& dice, int count, int reach) {
    const Pts centres{dice.point(reach), dice.point(reach), dice.point(reach)};
    const auto centre = [&] { return centres[static_cast<std::size_t>(dice(0, 2))]; };
    Curves curves;
    for (int i = 0; i < count; ++i) {
        curves.push_back({centre(), dice.point(2), dice.point(reach), centre()});
    }
    return curves;
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
    constexpr int far = 1 << 30;
    const int count = dice(0, 40) == 0 ? 24 : dice(1, 12);
    switch (dice(0, 11)) {
    case 0:
        return strokes(dice, 2 * count, 6);
    case 1:
        return strokes(dice, 2 * count, 1000);
    case 2:
        return strokes(dice, count, dice(0, 1) == 0 ? far : 40'000'000);
    case 3:
        return scribbles(dice, count, 5);
    case 4:
        return scribbles(dice, count, 500'000);
    case 5:
        return grid_walks(dice, 2 * count, 3, 1);
    case 6:
        return grid_walks(dice, 2 * count, 4, 50);
    case 7:
        return grid_walks(dice, count, 4, far / 16);
    case 8:
        return loops(dice, count, dice(4, 60));
    case 9:
        return hubs(dice, count, 12);
    case 10:
        return redrawn(dice, strokes(dice, count, 20));
    default:
        return redrawn(dice, scribbles(dice, count / 2, 8));
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

TEST(PlainForm, GivesTheSameAnalysis) {
    constexpr double tolerances[] = {1, 1, 0, 5, -8, 100};
    std::size_t rings = 0;
    std::size_t holes = 0;
    std::size_t envelopes = 0;
    CREGION region; // used again and again, as hosts do
    for (unsigned seed = 0; seed < 4000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        const Curves curves = random_network(dice);
        const double tolerance = tolerances[dice(0, 5)];
        const Pt at = dice.point(20);
        const Analysis plain = korvel::test::analyse_plainly(curves, at, tolerance);
        if (plain.unique_pts.empty()) {
            region.RemoveAll(); // or the distinct points of the network before would stay
        }
        Network network(curves);
        region.SetTolerance(tolerance);
        region.SetSeedPt({at.x, at.y});
        region.SetPtsInfo(network.pts, network.counts);
        expect_equal(korvel::test::analysis_of(region), plain);
        rings += plain.ring_pts.size();
        envelopes += plain.rings.size() - plain.ring_pts.size();
        holes +=
            static_cast<std::size_t>(std::count(plain.is_hole.begin(), plain.is_hole.end(), 1));
    }
    // The networks are worth the work.
    EXPECT_GT(rings, 40'000U);
    EXPECT_GT(holes, 200U);
    EXPECT_GT(envelopes, 2'000U);
}

} // namespace
