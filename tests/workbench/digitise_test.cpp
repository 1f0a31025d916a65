#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QPushButton>
#include <gtest/gtest.h>

#include "apps/workbench/map/map_actions.h"
#include "apps/workbench/map/measure_tool.h"
#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

using Points = std::vector<std::pair<int, int>>;

// The points of the map's curves in steps.
std::vector<Points> drawn(ShownWindow& window) {
    std::vector<Points> curves;
    for (const workbench::Curve& curve : window.document().map().curves()) {
        Points& points = curves.emplace_back();
        for (const kit::GridPoint& point : curve) {
            points.emplace_back(point.x, point.y);
        }
    }
    return curves;
}

// Moves the mouse there first, as people do.
void click_at(ShownWindow& window, const QPointF& at, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseMove(&window.map(), at.toPoint());
    ShownWindow::click(window.map(), at, modifiers);
}

void draw(ShownWindow& window, const std::vector<QPointF>& pixels, bool ends = true) {
    for (const QPointF& pixel : pixels) {
        click_at(window, pixel);
    }
    if (ends) {
        QTest::keyClick(&window.map(), Qt::Key_Return);
    }
    QTest::qWait(QApplication::doubleClickInterval() + 1); // the next click is one of its own
}

// Undoes everything and does it again: the curves are the same each time.
void go_back_and_forth(ShownWindow& window, int steps) {
    const std::vector<Points> after = drawn(window);
    workbench::History& history = window.document().history();
    for (int step = 0; step < steps; ++step) {
        history.undo();
    }
    const std::vector<Points> before = drawn(window);
    EXPECT_NE(before, after);
    for (int step = 0; step < steps; ++step) {
        history.redo();
    }
    EXPECT_EQ(drawn(window), after);
    for (int step = 0; step < steps; ++step) {
        history.undo();
    }
    EXPECT_EQ(drawn(window), before);
    for (int step = 0; step < steps; ++step) {
        history.redo();
    }
}

// The place of the grid that is nearest to a pixel.
std::pair<int, int> steps_at(ShownWindow& window, const QPointF& pixel) {
    const kit::GridPoint point =
        window.document().map().curves().nearest(window.map().viewport().from_screen(pixel));
    return {point.x, point.y};
}

// A frame, a line across it, lines from it to the frame, and an island.
void digitise_five_regions(ShownWindow& window) {
    window.map().actions_of_map().draw->trigger();
    draw(window, {{100, 100}, {300, 100}, {300, 300}, {100, 300}, {102, 101}}, false);
    draw(window, {{101, 202}, {200, 210}, {298, 201}});
    draw(window, {{200, 208}, {200, 299}});
    draw(window, {{201, 211}, {180, 150}, {200, 101}});
    draw(window, {{120, 230}, {150, 230}, {150, 270}, {121, 231}}, false);
}

TEST(DrawTool, AMapOfFiveRegionsHasTheRegionsThatTheKitFinds) {
    ShownWindow window;
    digitise_five_regions(window);
    window.wait();
    const workbench::MapModel& map = window.document().map();
    ASSERT_EQ(map.curves().size(), 5);
    const kit::FoundRegions expected = kit::find_regions(map.curves().network());
    ASSERT_EQ(expected.map().size(), 5);
    ASSERT_EQ(map.found()->map.size(), 5);
    EXPECT_EQ(expected.report().dangling, 0);
    EXPECT_TRUE(map.found()->problems.empty());
    const kit::FoundRegions again = kit::find_regions(map.curves().network());
    for (int region = 0; region < 5; ++region) {
        const kit::Region a = map.found()->map[region];
        const kit::Region b = again.map()[region];
        EXPECT_EQ(a.area(), b.area());
        ASSERT_EQ(a.ring_count(), b.ring_count());
        for (int ring = 0; ring < a.ring_count(); ++ring) {
            EXPECT_TRUE(std::ranges::equal(a.ring(ring), b.ring(ring)));
        }
    }
    // Frame and island as they were clicked, to a pixel.
    const double unit = window.map().viewport().unit();
    EXPECT_NEAR(map.found()->map.area(), 200 * 200 * unit * unit, 400 * unit * unit);
    const QImage picture = ShownWindow::picture(window.map());
    EXPECT_NE(picture.pixelColor(140, 140), picture.pixelColor(250, 140)); // neighbours
    EXPECT_EQ(picture.pixelColor(310, 140), window.map().palette().color(QPalette::Base));
    go_back_and_forth(window, 5);
}

TEST(DrawTool, BackspaceRemovesThePointBeforeEscapeAllADoubleClickEnds) {
    ShownWindow window;
    window.map().actions_of_map().draw->trigger();
    draw(window, {{100, 100}, {200, 100}, {250, 250}}, false);
    QTest::keyClick(&window.map(), Qt::Key_Backspace);
    click_at(window, {200, 200});
    QTest::mouseDClick(&window.map(), Qt::LeftButton, {}, QPoint(200, 200));
    EXPECT_EQ(drawn(window),
              (std::vector<Points>{{steps_at(window, {100, 100}), steps_at(window, {200, 100}),
                                    steps_at(window, {200, 200})}}));
    draw(window, {{300, 100}, {350, 100}}, false);
    QTest::keyClick(&window.map(), Qt::Key_Escape);
    QTest::keyClick(&window.map(), Qt::Key_Return);
    EXPECT_EQ(window.document().map().curves().size(), 1);
}

TEST(DrawTool, TheFirstCurveOfAMapGetsAGridAsFineAsAPixel) {
    ShownWindow window;
    window.map().zoom(1000);
    window.map().actions_of_map().draw->trigger();
    draw(window, {{100, 100}, {101, 100}, {101, 101}});
    const workbench::Curves& curves = window.document().map().curves();
    ASSERT_EQ(curves.size(), 1);
    ASSERT_EQ(curves[0].size(), 3U);
    EXPECT_LE(curves.placement().grid.step(), window.map().viewport().unit());
    for (std::size_t k = 0; k < 3; ++k) {
        const QPointF clicked(k == 0 ? 100 : 101, k == 2 ? 101 : 100);
        const QPointF shown = window.map().to_screen(curves[0][k]);
        EXPECT_LT((shown - clicked).manhattanLength(), 1.01);
    }
}

TEST(SnappingDistance, IsSetInPixelsOrInUnitsOfTheMap) {
    ShownWindow window;
    workbench::MapView& map = window.map();
    map.actions_of_map().draw->trigger();
    draw(window, {{100, 100}, {200, 100}});
    const auto set_distance = [&](const char* distance, int unit, auto button) {
        for (QAction* action : map.actions()) {
            if (action->text() == "Sna&pping Distance…") {
                action->trigger();
            }
        }
        auto* dialog = map.findChild<QDialog*>("snapping");
        ASSERT_NE(dialog, nullptr);
        auto* number = dialog->findChild<QDoubleSpinBox*>();
        number->selectAll();
        QTest::keyClicks(number, distance);
        dialog->findChild<QComboBox*>()->setCurrentIndex(unit);
        QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
        QTest::qWait(1); // deleted
    };
    const auto drawn_to = [&](const QPointF& pixel) {
        draw(window, {{100, 300}, pixel});
        const std::pair<int, int> end = drawn(window).back().back();
        window.document().history().undo();
        return end;
    };
    const std::pair<int, int> corner = drawn(window)[0][1];
    const QPointF beside(225, 100);
    const std::pair<int, int> apart = steps_at(window, beside);
    set_distance("30", 0, QDialogButtonBox::Ok);
    EXPECT_EQ(drawn_to(beside), corner);
    set_distance("20", 0, QDialogButtonBox::Ok);
    EXPECT_EQ(drawn_to(beside), apart);
    set_distance("30", 0, QDialogButtonBox::Cancel);
    EXPECT_EQ(map.snapping().distance, 20);
    const double way = 25 * map.viewport().unit();
    set_distance(std::to_string(1.2 * way).c_str(), 1, QDialogButtonBox::Ok);
    EXPECT_EQ(drawn_to(beside), corner);
    set_distance(std::to_string(0.8 * way).c_str(), 1, QDialogButtonBox::Ok);
    EXPECT_EQ(drawn_to(beside), apart);
}

TEST(EditTool, MovesAllPointsAtAPlaceInsertsAndDeletes) {
    ShownWindow window;
    workbench::MapView& map = window.map();
    map.actions_of_map().draw->trigger();
    draw(window, {{100, 100}, {200, 100}});
    draw(window, {{200, 100}, {200, 200}, {300, 250}});
    map.actions_of_map().snaps->setChecked(false);
    map.actions_of_map().edit->trigger();
    const auto screen = [&](int curve, std::size_t point) {
        return map.to_screen(window.document().map().curves()[curve][point]);
    };
    const auto is_at = [](const QPointF& a, const QPointF& b) {
        return (a - b).manhattanLength() < 2;
    };
    ShownWindow::drag(map, {200, 100}, {240, 130});
    EXPECT_TRUE(is_at(screen(0, 1), {240, 130}));
    EXPECT_EQ(screen(0, 1), screen(1, 0));
    go_back_and_forth(window, 1);
    click_at(window, {270, 235}); // a line: the whole curve
    EXPECT_EQ(map.chosen(), (workbench::PointSet{{1, {0, 1, 2}}}));
    QTest::mouseDClick(&map, Qt::LeftButton, {}, QPoint(250, 225));
    ASSERT_EQ(drawn(window)[1].size(), 4U);
    EXPECT_TRUE(is_at(screen(1, 2), {250, 225}));
    go_back_and_forth(window, 1);
    ShownWindow::drag(map, {280, 270}, {320, 235}); // a rectangle around the last point
    EXPECT_EQ(map.chosen(), (workbench::PointSet{{1, {3}}}));
    map.setFocus();
    QTest::keyClick(&map, Qt::Key_Delete);
    EXPECT_EQ(drawn(window)[1].size(), 3U);
    go_back_and_forth(window, 1);
    click_at(window, {240, 130});
    map.actions_of_map().reverse->trigger();
    const std::vector<Points> before = drawn(window);
    map.actions_of_map().remove_curves->trigger();
    EXPECT_EQ(drawn(window), (std::vector<Points>{before[1]}));
    go_back_and_forth(window, 2);
}

TEST(EditTool, WithAltOneEndMovesAndTheOthersAtItsPlaceStay) {
    ShownWindow window;
    workbench::MapView& map = window.map();
    map.actions_of_map().draw->trigger();
    draw(window, {{100, 100}, {200, 100}});
    draw(window, {{200, 100}, {200, 200}});
    draw(window, {{300, 50}, {200, 100}});
    map.actions_of_map().snaps->setChecked(false);
    map.actions_of_map().edit->trigger();
    std::vector<Points> expected = drawn(window);
    const std::pair<int, int> shared = expected[1][0];
    EXPECT_EQ(expected[0][1], shared);
    EXPECT_EQ(expected[2][1], shared);
    ShownWindow::drag(map, {200, 100}, {240, 130}, 5, Qt::LeftButton, Qt::AltModifier);
    ASSERT_EQ(map.chosen().size(), 1U);
    const auto& [curve, points] = *map.chosen().begin();
    ASSERT_EQ(points.size(), 1U);
    expected[static_cast<std::size_t>(curve)][static_cast<std::size_t>(*points.begin())] =
        steps_at(window, {240, 130});
    EXPECT_EQ(drawn(window), expected);
    go_back_and_forth(window, 1);
}

TEST(MapActions, ChangeTheCurvesOfThePointsInARectangle) {
    ShownWindow window;
    workbench::MapView& map = window.map();
    workbench::MapActions& actions = map.actions_of_map();
    actions.draw->trigger();
    draw(window, {{100, 100}, {200, 100}});
    draw(window, {{300, 100}, {300, 200}});
    draw(window, {{100, 300}, {300, 300}});
    const std::vector<Points> lines = drawn(window);
    actions.edit->trigger();
    EXPECT_FALSE(actions.join_ends->isEnabled());
    ShownWindow::drag(map, {180, 80}, {320, 220}); // three ends
    EXPECT_EQ(map.chosen(), (workbench::PointSet{{0, {1}}, {1, {0, 1}}}));
    actions.join_ends->trigger();
    EXPECT_EQ(drawn(window), lines);
    ShownWindow::drag(map, {180, 80}, {320, 120});
    EXPECT_EQ(map.chosen(), (workbench::PointSet{{0, {1}}, {1, {0}}}));
    actions.join_ends->trigger();
    const Points joined = {lines[0][0], lines[0][1], lines[1][0], lines[1][1]};
    EXPECT_EQ(drawn(window), (std::vector<Points>{joined, lines[2]}));
    go_back_and_forth(window, 1);

    ShownWindow::drag(map, {180, 80}, {320, 120});
    actions.reverse->trigger();
    EXPECT_EQ(drawn(window), (std::vector<Points>{{joined.rbegin(), joined.rend()}, lines[2]}));
    EXPECT_EQ(map.chosen(), (workbench::PointSet{{0, {1, 2}}}));
    go_back_and_forth(window, 1);
    ShownWindow::drag(map, {320, 120}, {180, 80}); // from the other corner
    actions.cut_at_points->trigger();
    EXPECT_EQ(
        drawn(window),
        (std::vector<Points>{
            {joined[3], joined[2]}, {joined[2], joined[1]}, {joined[1], joined[0]}, lines[2]}));
    go_back_and_forth(window, 1);
    ShownWindow::drag(map, {180, 80}, {320, 120}); // the ends of three parts
    EXPECT_EQ(map.chosen(), (workbench::PointSet{{0, {1}}, {1, {0, 1}}, {2, {0}}}));
    map.setFocus();
    QTest::keyClick(&map, Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(drawn(window), (std::vector<Points>{lines[2]}));
    go_back_and_forth(window, 1);
}

TEST(CutAndJoinTools, CutALineInTwoAndJoinItAgain) {
    ShownWindow window;
    workbench::MapView& map = window.map();
    map.actions_of_map().draw->trigger();
    draw(window, {{100, 100}, {300, 100}, {300, 200}});
    const std::vector<Points> before = drawn(window);
    map.actions_of_map().cut->trigger();
    click_at(window, {300, 101});
    const std::vector<Points> parts = drawn(window);
    EXPECT_EQ(parts,
              (std::vector<Points>{{before[0][0], before[0][1]}, {before[0][1], before[0][2]}}));
    go_back_and_forth(window, 1);
    map.actions_of_map().join->trigger();
    click_at(window, {300, 100});
    QTest::qWait(QApplication::doubleClickInterval() + 1);
    click_at(window, {300, 100}); // the other curve's end there
    EXPECT_EQ(drawn(window), before);
    go_back_and_forth(window, 1);
    click_at(window, {100, 100});
    click_at(window, {300, 200});
    EXPECT_EQ(drawn(window)[0].size(), 4U);
    EXPECT_EQ(drawn(window)[0].back(), before[0][0]); // closed
    go_back_and_forth(window, 1);
}

TEST(MeasureTool, MeasuresTheLengthAndTheAreaOfTheClickedPoints) {
    ShownWindow window;
    workbench::MapView& map = window.map();
    map.actions_of_map().measure->trigger();
    for (const QPointF& at : {QPointF(100, 100), QPointF(200, 100), QPointF(200, 200)}) {
        click_at(window, at);
    }
    const auto& tool = dynamic_cast<const workbench::MeasureTool&>(map.tool());
    const double unit = map.viewport().unit();
    EXPECT_NEAR(tool.length(), 200 * unit, 3 * unit);
    EXPECT_NEAR(tool.area(), 5000 * unit * unit, 200 * unit * unit);
    const QImage picture = ShownWindow::picture(map);
    EXPECT_NE(picture.pixelColor(190, 130), picture.pixelColor(110, 150)); // inside and outside
    EXPECT_TRUE(window.document().map().curves().empty());
}

} // namespace
} // namespace korvel::test
