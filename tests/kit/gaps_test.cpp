#include <algorithm>
#include <cmath>
#include <optional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "kit/kit.h"

namespace korvel::test {
namespace {

using Line = std::vector<kit::GridPoint>;

kit::Network network_of_lines(const std::vector<Line>& lines) {
    kit::Network network;
    for (const Line& line : lines) {
        network.add_curve(line);
    }
    return network;
}

TEST(Gaps, AreEndsThatComeCloseToALineOrAnEndWithoutMeetingIt) {
    const Line base = {{0, 0}, {100, 0}, {200, 10}};
    struct Case {
        std::vector<Line> lines;
        double reach;
        std::vector<std::pair<kit::GridPoint, kit::GridPoint>> gaps;
    };
    for (const Case& c : {
             Case{{base, {{50, 50}, {50, 3}}}, 3, {{{50, 3}, {50, 0}}}},
             Case{{base, {{50, 50}, {50, 3}}}, 2.9, {}},
             Case{{base, {{50, 50}, {50, 0}}}, 5, {}},                    // meets it
             Case{{base, {{50, 50}, {50, -2}}}, 5, {}},                   // crosses it: a loose end
             Case{{base, {{97, 50}, {97, 3}}}, 5, {{{97, 3}, {100, 0}}}}, // a corner within reach
             Case{{base, {{-4, 3}, {-50, 50}}}, 5, {{{0, 0}, {-4, 3}}}},  // two ends, once
             Case{{{{0, 0}, {90, 0}, {90, 90}, {2, 2}}}, 5, {{{0, 0}, {2, 2}}}},
             Case{{{{0, 0}, {90, 0}, {90, 90}, {0, 0}}}, 5, {}},  // closed
             Case{{{{0, 0}, {0, 0}}, {{1, 1}, {50, 50}}}, 5, {}}, // without length
             Case{{{{0, 0}, {3, 0}}}, 2, {}},
         }) {
        const auto gaps = kit::find_gaps(network_of_lines(c.lines), c.reach);
        ASSERT_EQ(gaps.size(), c.gaps.size()) << c.lines.size() << " lines, reach " << c.reach;
        for (std::size_t i = 0; i < gaps.size(); ++i) {
            EXPECT_TRUE(kit::is_same(gaps[i].end, c.gaps[i].first));
            EXPECT_TRUE(kit::is_same(gaps[i].to, c.gaps[i].second));
        }
    }
}

TEST(Gaps, AreNotWhereEndsAreJoinedAndCountInUnitsOfTheMap) {
    kit::Network network = network_of_lines({{{0, 0}, {100, 0}}, {{104, 0}, {200, 0}}});
    network.set_placement({.grid = kit::Grid(1, 10)});
    EXPECT_EQ(kit::find_gaps(network, 0.4).size(), 1U);
    EXPECT_EQ(kit::find_gaps(network, 0.4)[0].length(), 4);
    EXPECT_TRUE(kit::find_gaps(network, 0.39).empty());
    EXPECT_TRUE(kit::find_gaps(network, 0.4, 0.9).empty());
    EXPECT_EQ(kit::find_gaps(network, 0.4, 0.8).size(), 1U);
}

double turn_of(const kit::Point2& a, const kit::Point2& b, const kit::Point2& c) {
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

bool do_cross(const Line& s, const Line& t) {
    const kit::Point2 a = kit::to_point(s[0]);
    const kit::Point2 b = kit::to_point(s[1]);
    const kit::Point2 c = kit::to_point(t[0]);
    const kit::Point2 d = kit::to_point(t[1]);
    return turn_of(a, b, c) * turn_of(a, b, d) < 0 && turn_of(c, d, a) * turn_of(c, d, b) < 0;
}

// Against a pass over many places of all lines.
TEST(Gaps, OfRandomLinesAreThoseOfAPlainSearch) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> place(0, 1000);
    std::vector<Line> lines;
    for (int i = 0; i < 60; ++i) {
        lines.push_back({{place(random), place(random)}, {place(random), place(random)}});
    }
    constexpr double reach = 20;
    const auto gaps = kit::find_gaps(network_of_lines(lines), reach, 0.0);
    std::size_t close = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        for (const kit::GridPoint& end : lines[i]) {
            double least = reach + 1;
            for (std::size_t k = 0; k < lines.size(); ++k) {
                const kit::Point2 a = kit::to_point(lines[k][0]);
                const kit::Point2 b = kit::to_point(lines[k][1]);
                for (int share = 0; share <= 2000 && k != i && !do_cross(lines[i], lines[k]);
                     ++share) {
                    least =
                        std::min(least, std::hypot(a[0] + (b[0] - a[0]) * share / 2000 - end.x,
                                                   a[1] + (b[1] - a[1]) * share / 2000 - end.y));
                }
            }
            close += least <= reach ? 1 : 0;
            const bool is_listed = std::ranges::any_of(gaps, [&](const kit::Gap& gap) {
                return kit::is_same(gap.end, end) || kit::is_same(gap.to, end);
            });
            EXPECT_TRUE(least < 1 || is_listed == (least <= reach)) // closer ones may meet it
                << end.x << "," << end.y << ": " << least;
        }
    }
    EXPECT_GT(close, 10U);
}

} // namespace
} // namespace korvel::test
