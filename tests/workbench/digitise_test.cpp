#include <algorithm>
#include <set>
#include <utility>
#include <vector>

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
    const auto at = [&](int x, int y) {
        const workbench::Curves& curves = window.document().map().curves();
        const kit::GridPoint point =
            curves.nearest(window.map().viewport().from_screen(QPointF(x, y)));
        return std::pair<int, int>(point.x, point.y);
    };
    EXPECT_EQ(drawn(window), (std::vector<Points>{{at(100, 100), at(200, 100), at(200, 200)}}));
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

TEST(EditTool, MovesAllPointsAtAPlaceOrWithAltOneInsertsAndDeletes) {
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
