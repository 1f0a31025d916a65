#include <set>

#include <gtest/gtest.h>

#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

TEST(SelectTool, ClicksSelectRegionsAndCtrlClicksAddThem) {
    ShownWindow window;
    window.open("us-states.curves");
    workbench::MapModel& map = window.document().map();
    ASSERT_NE(map.found(), nullptr);
    const auto pixel_of = [&](int region) {
        return window.map().viewport().to_screen(*map.found()->map[region].inner_point());
    };
    const auto large = [&] {
        std::vector<int> regions;
        for (const kit::Region region : map.found()->map) {
            if (region.area() > 1e6) {
                regions.push_back(region.index());
            }
        }
        return regions;
    }();
    ASSERT_GT(large.size(), 2U);
    const QImage before = ShownWindow::picture(window.map());
    ShownWindow::click(window.map(), pixel_of(large[0]));
    EXPECT_EQ(map.selected(), (std::set{large[0]}));
    const QImage after = ShownWindow::picture(window.map());
    const QPoint at = pixel_of(large[0]).toPoint();
    EXPECT_LT(qGray(after.pixel(at)), qGray(before.pixel(at)));
    ShownWindow::click(window.map(), pixel_of(large[1]), Qt::ControlModifier);
    EXPECT_EQ(map.selected(), (std::set{large[0], large[1]}));
    ShownWindow::click(window.map(), pixel_of(large[0]), Qt::ControlModifier);
    EXPECT_EQ(map.selected(), (std::set{large[1]}));
    ShownWindow::click(window.map(), {2, 2});
    EXPECT_TRUE(map.selected().empty());
}

} // namespace
} // namespace korvel::test
