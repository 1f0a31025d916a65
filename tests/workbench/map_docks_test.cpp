#include <algorithm>
#include <set>
#include <utility>

#include <QDialog>
#include <QDockWidget>
#include <QLineEdit>
#include <QListView>
#include <QTableView>
#include <QTemporaryDir>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include "apps/workbench/map/background_dialog.h"
#include "apps/workbench/map/map_actions.h"
#include "apps/workbench/map/region_model.h"
#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

using workbench::RegionModel;

QTableView& region_table(ShownWindow& window) {
    return *window.map().docks()[0]->findChild<QTableView*>();
}

QModelIndex cell(ShownWindow& window, int row, int column) {
    return region_table(window).model()->index(row, column);
}

TEST(RegionTable, SortsByNumbersAndSelectsInBothDirections) {
    ShownWindow window;
    window.open("us-states.curves");
    const workbench::MapModel& map = window.document().map();
    QTableView& table = region_table(window);
    ASSERT_EQ(table.model()->rowCount(), map.found()->map.size());
    table.sortByColumn(RegionModel::area, Qt::DescendingOrder);
    const auto& areas = map.found()->areas;
    const auto largest =
        static_cast<int>(std::max_element(areas.begin(), areas.end()) - areas.begin());
    EXPECT_EQ(cell(window, 0, RegionModel::number).data().toInt(), largest);
    ShownWindow::click(*table.viewport(), table.visualRect(cell(window, 0, 0)).center());
    EXPECT_EQ(map.selected(), (std::set{largest}));
    window.document().map().select({largest, 0});
    std::set<int> rows;
    for (const QModelIndex& row : table.selectionModel()->selectedRows()) {
        rows.insert(row.data().toInt());
    }
    EXPECT_EQ(rows, (std::set{0, largest}));
    EXPECT_EQ(map.found()->neighbours, map.found()->map.neighbours());
}

TEST(RegionTable, NamesAndLevelsAreStepsOfTheHistory) {
    ShownWindow window;
    window.open("us-states.curves");
    QAbstractItemModel& model = *region_table(window).model();
    EXPECT_FALSE(model.setData(cell(window, 3, RegionModel::high), "tall"));
    EXPECT_FALSE(model.flags(cell(window, 3, RegionModel::area)) & Qt::ItemIsEditable);
    ASSERT_TRUE(model.setData(cell(window, 3, RegionModel::name), "Ohio"));
    window.wait();
    ASSERT_TRUE(model.setData(cell(window, 3, RegionModel::high), "2.5"));
    window.wait();
    EXPECT_EQ(cell(window, 3, RegionModel::name).data(), "Ohio");
    EXPECT_EQ(cell(window, 3, RegionModel::low).data(), "0");
    EXPECT_EQ(cell(window, 3, RegionModel::high).data(), "2.5");
    window.document().history().undo();
    window.wait();
    EXPECT_EQ(cell(window, 3, RegionModel::high).data(), "");
    EXPECT_EQ(cell(window, 3, RegionModel::name).data(), "Ohio");
}

TEST(ProblemList, ListsGapsWithinTheToleranceAndShowsTheOneThatIsClicked) {
    ShownWindow window;
    workbench::MapModel& map = window.document().map();
    map.start_curves("Draw", {}, {{0, 0}, {1000, 0}, {1000, 1000}, {0, 1000}, {0, 0}});
    map.change_curves("Draw", 1, 0, {{{500, 0}, {500, 990}}});
    window.map().show_all();
    window.wait();
    auto& list = *window.map().docks()[1]->findChild<QListView*>();
    auto& tolerance = *window.map().docks()[1]->findChild<QLineEdit*>();
    EXPECT_EQ(list.model()->rowCount(), 1); // the loose end
    window.map().docks()[1]->raise();
    tolerance.setText("15");
    QTest::keyClick(&tolerance, Qt::Key_Return);
    window.wait();
    ASSERT_EQ(list.model()->rowCount(), 2);
    EXPECT_EQ(list.model()->index(0, 0).data(), "curve 1 ends 10 before a line");
    const QPointF gap = window.map().viewport().to_screen({500, 995});
    const QImage picture = ShownWindow::picture(window.map());
    int marked = 0;
    for (int x = -12; x <= 12; ++x) {
        const QColor colour = picture.pixelColor(gap.toPoint() + QPoint(x, 0));
        marked += colour.red() > 200 && colour.green() < 120 && colour.blue() < 90 ? 1 : 0;
    }
    EXPECT_GT(marked, 1);
    const double before = window.map().viewport().unit();
    ShownWindow::click(*list.viewport(), list.visualRect(list.model()->index(0, 0)).center());
    EXPECT_LT(window.map().viewport().unit(), before / 5);
    EXPECT_TRUE(window.map().viewport().part().contains(500, 995));
    tolerance.setText("wide");
    QTest::keyClick(&tolerance, Qt::Key_Return);
    EXPECT_EQ(map.tolerance(), 15);
    window.document().history().undo();
    EXPECT_FALSE(map.tolerance());
    EXPECT_EQ(tolerance.text(), "");
    window.wait();
}

TEST(BackgroundTool, TwoPlacesGetTheCoordinatesThatWereTyped) {
    const QTemporaryDir directory;
    const QString file = directory.filePath("scan.png");
    QImage scan(200, 100, QImage::Format_RGB32);
    scan.fill(Qt::blue);
    for (int i = 0; i < 100; ++i) {
        scan.setPixelColor(45 + i % 10, 15 + i / 10, Qt::red);
    }
    ASSERT_TRUE(scan.save(file));
    ShownWindow window;
    workbench::MapView& map = window.map();
    workbench::take_background_file(map, file);
    const workbench::Background before = window.document().map().background();
    const auto pixel = [&](double column, double row) {
        return map.viewport().to_screen(window.document().map().background().user({column, row}));
    };
    const QPointF first = pixel(20, 80);
    const QPointF second = pixel(180, 80);
    map.actions_of_map().place_background->trigger();
    ShownWindow::click(map, first);
    QTest::qWait(QApplication::doubleClickInterval() + 1);
    ShownWindow::click(map, second);
    auto* dialog = map.findChild<QDialog*>("places");
    ASSERT_NE(dialog, nullptr);
    for (const auto& [name, text] : {std::pair("number0", "1000"),
                                     {"number1", "2000"},
                                     {"number2", "1320"},
                                     {"number3", "2000"}}) {
        dialog->findChild<QLineEdit*>(name)->setText(text);
    }
    dialog->accept();
    const kit::Point2 red = window.document().map().background().user({50, 20});
    EXPECT_NEAR(red[0], 1060, 4); // clicks are whole pixels of the screen
    EXPECT_NEAR(red[1], 2120, 4);
    map.show_all();
    const QImage picture = ShownWindow::picture(map);
    const QColor shown = picture.pixelColor(pixel(50, 20).toPoint());
    EXPECT_GT(shown.red(), shown.blue());
    EXPECT_EQ(picture.pixelColor(pixel(120, 50).toPoint()), QColor(Qt::blue));
    window.document().history().undo();
    EXPECT_EQ(window.document().map().background(), before);
    window.document().history().undo();
    EXPECT_TRUE(window.document().map().background().file.isEmpty());
}

TEST(MapView, KeysAndTheMiddleButtonMoveThePictureAndTrianglesCoverIt) {
    ShownWindow window;
    window.open("us-states.curves");
    workbench::MapView& map = window.map();
    const auto moved_by = [&](auto act) {
        const QPointF before = map.viewport().to_screen({50000, 50000});
        act();
        return map.viewport().to_screen({50000, 50000}) - before;
    };
    const double unit = map.viewport().unit();
    EXPECT_GT(moved_by([&] { QTest::keyClick(&map, Qt::Key_Left); }).x(), 10);
    EXPECT_LT(moved_by([&] { QTest::keyClick(&map, Qt::Key_Down); }).y(), -10);
    EXPECT_EQ(moved_by([&] {
                  ShownWindow::drag(map, {100, 100}, {140, 90}, 5, Qt::MiddleButton);
              }).toPoint(),
              QPoint(40, -10));
    map.actions_of_map().edit->trigger();
    EXPECT_EQ(moved_by([&] {
                  QTest::keyPress(&map, Qt::Key_Space);
                  ShownWindow::drag(map, {100, 100}, {120, 100});
                  QTest::keyRelease(&map, Qt::Key_Space);
              }).toPoint(),
              QPoint(20, 0));
    QTest::keyClick(&map, Qt::Key_Plus);
    EXPECT_NEAR(map.viewport().unit(), unit / 1.25, 1e-9 * unit);
    map.setFocus();
    QTest::keyClick(&map, Qt::Key_Home);
    EXPECT_NEAR(map.viewport().unit(), unit, 1e-9 * unit);
    const QImage before = ShownWindow::picture(map);
    map.actions_of_map().shows_triangles->trigger();
    window.wait();
    ASSERT_TRUE(map.triangles());
    const auto found = window.document().map().found();
    EXPECT_EQ(map.triangles()->triangle_count(), kit::triangulate(found->map).triangle_count());
    EXPECT_NE(ShownWindow::picture(map), before);
    map.actions_of_map().shows_triangles->trigger();
    EXPECT_EQ(ShownWindow::picture(map), before);
}

TEST(MapView, TheWheelZoomsAsFarAsNumbersReachAndHomeShowsTheMapAgain) {
    ShownWindow window;
    window.open("us-states.curves");
    workbench::MapView& map = window.map();
    const QPointF beside(200, 150);
    const auto turn = [&](int angle, int times) {
        for (int i = 0; i < times; ++i) {
            QWheelEvent event(beside, map.mapToGlobal(beside), {}, {0, angle}, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&map, &event);
        }
        map.grab();
    };
    const double unit = map.viewport().unit();
    const kit::Rectangle part = map.viewport().part();
    const kit::Point2 place = map.viewport().from_screen(beside);
    turn(120, 1);
    EXPECT_NEAR(map.viewport().unit(), unit / 1.2, 1e-9 * unit);
    EXPECT_NEAR(map.viewport().from_screen(beside)[0], place[0], 1e-6);
    EXPECT_NEAR(map.viewport().from_screen(beside)[1], place[1], 1e-6);
    turn(120, 500);
    EXPECT_EQ(map.viewport().unit(), 1e-12);
    EXPECT_NEAR(map.viewport().from_screen(beside)[0], place[0], 1e-6);
    QTest::mouseMove(&map, {50, 50});
    turn(-120, 1000);
    EXPECT_EQ(map.viewport().unit(), 1e12);
    QTest::mouseMove(&map, {60, 60});
    map.setFocus();
    QTest::keyClick(&map, Qt::Key_Home);
    EXPECT_EQ(map.viewport().unit(), unit);
    EXPECT_EQ(map.viewport().part().left, part.left);
    EXPECT_EQ(map.viewport().part().bottom, part.bottom);
}

} // namespace
} // namespace korvel::test
