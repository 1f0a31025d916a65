#include <optional>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "apps/workbench/document/curve_edits.h"
#include "apps/workbench/document/curve_finder.h"
#include "apps/workbench/document/history.h"
#include "apps/workbench/document/map_model.h"
#include "apps/workbench/document/worker.h"

namespace korvel::test {
namespace {

using workbench::Curve;
using workbench::CurveChange;
using workbench::CurvePlace;
using workbench::Curves;
using workbench::Find;

using Numbers = std::vector<std::vector<std::pair<int, int>>>;

Numbers numbers(const std::vector<Curve>& curves) {
    Numbers all;
    for (const Curve& curve : curves) {
        auto& line = all.emplace_back();
        for (const kit::GridPoint& point : curve) {
            line.emplace_back(point.x, point.y);
        }
    }
    return all;
}

Numbers numbers(const Curves& curves) {
    return numbers(std::vector<Curve>(curves.begin(), curves.end()));
}

Curves curves_of(std::vector<Curve> list) {
    Curves curves;
    curves.replace(0, 0, std::move(list));
    return curves;
}

const Curve bend = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
const Curve ring = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}};

TEST(CurveEdits, CutsReversesJoinsAndLeavesPointsOut) {
    using workbench::cut;
    EXPECT_EQ(numbers(cut(bend, 2)), (Numbers{{{0, 0}, {10, 0}, {10, 10}}, {{10, 10}, {0, 10}}}));
    EXPECT_EQ(numbers(cut(bend, 0)), numbers({bend}));
    EXPECT_EQ(numbers(cut(bend, {1, 2, 3})),
              (Numbers{{{0, 0}, {10, 0}}, {{10, 0}, {10, 10}}, {{10, 10}, {0, 10}}}));
    EXPECT_EQ(numbers(cut(ring, 2)), (Numbers{{{10, 10}, {0, 10}, {0, 0}, {10, 0}, {10, 10}}}));
    EXPECT_EQ(numbers(cut(ring, {1, 3})),
              (Numbers{{{10, 0}, {10, 10}, {0, 10}}, {{0, 10}, {0, 0}, {10, 0}}}));
    EXPECT_EQ(numbers(cut(ring, {0, 2, 4})),
              (Numbers{{{0, 0}, {10, 0}, {10, 10}}, {{10, 10}, {0, 10}, {0, 0}}}));
    using workbench::without;
    EXPECT_EQ(numbers({*without(bend, {0, 2})}), (Numbers{{{10, 0}, {0, 10}}}));
    EXPECT_FALSE(without(bend, {0, 1, 2}));
    for (const std::set<int>& ends : {std::set{0}, std::set{4}, std::set{0, 4}}) {
        EXPECT_EQ(numbers({*without(ring, ends)}),
                  (Numbers{{{10, 0}, {10, 10}, {0, 10}, {10, 0}}}));
    }
    const Curve other = {{0, 10}, {0, 20}};
    EXPECT_EQ(numbers({workbench::joined(bend, true, other, false)}),
              (Numbers{{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 20}}}));
    EXPECT_EQ(numbers({workbench::joined(bend, false, other, true)}),
              (Numbers{{{0, 10}, {10, 10}, {10, 0}, {0, 0}, {0, 20}, {0, 10}}}));
    EXPECT_EQ(numbers({workbench::closed(bend)}), numbers({ring}));
}

TEST(CurveEdits, SeveralChangesGoBackAndForth) {
    Curves curves = curves_of({bend, ring, {{5, 5}, {6, 6}}, {{7, 7}, {8, 8}}});
    const Numbers before = numbers(curves);
    std::vector<CurveChange> changes = {{0, 1, {}},
                                        {1, 1, workbench::cut(ring, {1, 3})},
                                        {2, 0, {{{1, 1}, {2, 2}}}},
                                        {3, 1, {bend}}};
    std::vector<CurveChange> back = curves.replace(std::move(changes));
    const Numbers after = {{{10, 0}, {10, 10}, {0, 10}},
                           {{0, 10}, {0, 0}, {10, 0}},
                           {{1, 1}, {2, 2}},
                           {{5, 5}, {6, 6}},
                           {{0, 0}, {10, 0}, {10, 10}, {0, 10}}};
    EXPECT_EQ(numbers(curves), after);
    EXPECT_EQ(curves.point_count(), 14);
    EXPECT_EQ(curves.box(4).right, 10);
    back = curves.replace(std::move(back));
    EXPECT_EQ(numbers(curves), before);
    EXPECT_EQ(curves.point_count(), 13);
    curves.replace(std::move(back));
    EXPECT_EQ(numbers(curves), after);
}

TEST(CurveEdits, MovesEndsOfAClosedCurveTogetherAndStaysWithinTheGrid) {
    const Curves curves = curves_of({ring, {{2147483000, 0}, {0, 0}}});
    const auto changes = moved(curves, {{0, {4}}, {1, {0}}}, {1000, -5});
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(numbers(changes[0].by),
              (Numbers{{{1000, -5}, {10, 0}, {10, 10}, {0, 10}, {1000, -5}}}));
    EXPECT_EQ(numbers(changes[1].by), (Numbers{{{2147483647, -5}, {0, 0}}}));
}

TEST(CurveFinder, EndsWinOverPointsAndPointsOverLines) {
    const Curves curves = curves_of({bend, ring, {{20, 0}, {20, 1}, {20, 20}}});
    struct Case {
        kit::Point2 at;
        double radius;
        Find find;
        CurvePlace::Kind kind;
        workbench::CurvePoint point;
    };
    for (const Case& c : {
             Case{{1, 1}, 2, Find::places, CurvePlace::Kind::end, {0, 0}},
             Case{{10, 2}, 3, Find::places, CurvePlace::Kind::point, {0, 1}},
             Case{{10, 5}, 3, Find::places, CurvePlace::Kind::line, {0, 1}},
             Case{{20, 1.1}, 3, Find::places, CurvePlace::Kind::end, {2, 0}},
             Case{{20, 1.1}, 0.5, Find::places, CurvePlace::Kind::point, {2, 1}},
             Case{{0, 9}, 3, Find::ends, CurvePlace::Kind::end, {0, 3}},
         }) {
        const auto found = find_place(curves, c.at, c.radius, c.find);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->kind, c.kind) << c.at[0] << "," << c.at[1];
        EXPECT_EQ(found->at, c.point) << c.at[0] << "," << c.at[1];
    }
    EXPECT_FALSE(find_place(curves, {5, 5}, 3, Find::places));
    EXPECT_FALSE(find_place(curves, {10, 5}, 3, Find::points));
    const auto other = find_place(curves, {0.2, 0}, 1, Find::places, {{0, {}}});
    ASSERT_TRUE(other);
    EXPECT_EQ(other->at, (workbench::CurvePoint{1, 0})); // a closed curve has points only
    const workbench::PointSet at_corner = {{0, {0}}, {1, {0, 4}}};
    EXPECT_EQ(with_others_there(curves, {{0, {0}}}), at_corner);
}

TEST(MapModel, FindsTheRegionsOfTheLastChangeAndKeepsWhatBelongsToPlaces) {
    workbench::Worker worker;
    workbench::History history;
    workbench::MapModel map(history, worker);
    map.start_curves("Draw", {.grid = kit::Grid(1, 10)},
                     {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 0}});
    worker.wait();
    ASSERT_EQ(map.found()->map.size(), 1);
    EXPECT_EQ(map.found()->areas[0], 100);
    map.set_note(0, "old", kit::Levels{2, 3});
    map.select({0});
    map.change_curves("Draw", 1, 0, {{{150, 20}, {90, 20}, {90, 0}}});
    map.change_curves("Draw", 0, 0, {{{-50, -50}, {-40, -50}, {-40, -40}, {-50, -50}}});
    worker.wait();
    ASSERT_EQ(map.found()->map.size(), 3);
    const int kept = *map.found()->locator.region_at({5, 5});
    EXPECT_EQ(map.selected(), std::set{kept});
    EXPECT_EQ(map.found()->map[kept].name(), "old");
    EXPECT_EQ(map.found()->levels[static_cast<std::size_t>(kept)]->high, 3);
    EXPECT_EQ(map.found()->areas[static_cast<std::size_t>(kept)], 98);
    ASSERT_EQ(map.found()->problems.size(), 1U);
    EXPECT_EQ(map.found()->problems[0].kind, workbench::Problem::Kind::loose_end);
    while (history.can_undo()) {
        history.undo();
    }
    worker.wait();
    EXPECT_TRUE(map.curves().empty());
    EXPECT_EQ(map.found()->map.size(), 0);
}

} // namespace
} // namespace korvel::test
