#include <cstdlib>
#include <string>
#include <vector>

#include <QDockWidget>
#include <gtest/gtest.h>

#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

// The pictures of the documents: written where KORVEL_SCREENSHOTS names a directory.
void keep_picture(ShownWindow& window, const std::string& name) {
    window.wait();
    const QImage picture = ShownWindow::picture(*window.operator->());
    if (const char* folder = std::getenv("KORVEL_SCREENSHOTS")) {
        EXPECT_TRUE(picture.save(QString::fromStdString(folder + ("/" + name))));
    }
}

// How many of the pixels of a view have another colour than the one in its corner.
double painted_share(QWidget& view) {
    const QImage picture = ShownWindow::picture(view);
    int painted = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            painted += picture.pixel(x, y) != picture.pixel(1, 1) ? 1 : 0;
        }
    }
    return painted / (double(picture.width()) * picture.height());
}

TEST(Screenshots, AMapRaisedAndCut) {
    ShownWindow window;
    window->resize(1280, 800);
    window.open("us-states.geojson");
    const auto found = window.document().map().found();
    ASSERT_NE(found, nullptr);
    const auto low = found->map.bounds().top;
    window.document().solids().start(
        "Raise", [found, low](const kit::Solids& /*before*/, const kit::Context& context) {
            kit::RaiseOptions options{.low = 0, .high = 1};
            for (const kit::Region region : found->map) { // the farther north, the higher
                const double north = region.bounds().top - low;
                options.levels_of_region.push_back(kit::Levels{0, 1.5 + north / 5});
            }
            return kit::raise(found->map, options, context).solids;
        });
    window.wait();
    window.document().solids().set_view({.turn = 10, .tilt = -55});
    window.solids().fit();
    window.document().section().set_plane(kit::Plane::at_y(40));
    window.wait();
    std::set<int> chosen;
    for (const kit::Region region : found->map) {
        if (region.name() == "Colorado" || region.name() == "Kansas") {
            chosen.insert(region.index());
        }
    }
    window.document().map().select(chosen);
    keep_picture(window, "workbench-map.png");
    for (QWidget* view :
         std::vector<QWidget*>{&window.map(), &window.solids(), &window.section()}) {
        EXPECT_GT(painted_share(*view), 0.05) << view->accessibleName().toStdString();
    }
}

TEST(Screenshots, ABallInASmallWindow) {
    ShownWindow window;
    window.document().solids().start(
        "Ball", [](const kit::Solids& /*before*/, const kit::Context& context) {
            return kit::make_ball({0, 0, 0}, 10, 4, context);
        });
    window.wait();
    window.document().section().set_plane(kit::Plane::at_x(2));
    window.wait();
    for (QDockWidget* dock : window.solids().docks()) {
        dock->raise();
    }
    keep_picture(window, "workbench-ball.png");
    EXPECT_FALSE(window.map().isVisible());
    EXPECT_GT(painted_share(window.solids()), 0.1);
    EXPECT_GT(painted_share(window.section()), 0.1);
}

} // namespace
} // namespace korvel::test
