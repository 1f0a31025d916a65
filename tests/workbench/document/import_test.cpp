#include <algorithm>
#include <filesystem>
#include <set>

#include <gtest/gtest.h>

#include "apps/workbench/document/document.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using workbench::Document;

const std::filesystem::path samples = KORVEL_DATA_DIR;

class Import : public Scratch {};

TEST_F(Import, OpensMapsOfEachKindWithTheirRegionsAndNames) {
    Document document;
    document.open(samples / "us-states.curves");
    document.worker().wait();
    const kit::Network network = kit::Network::read(samples / "us-states.curves");
    EXPECT_EQ(document.map().curves().point_count(), network.point_count());
    const kit::Map expected = kit::find_regions(network).take_map();
    ASSERT_NE(document.map().found(), nullptr);
    EXPECT_TRUE(document.map().is_current());
    EXPECT_EQ(document.map().found()->map.size(), expected.size());
    EXPECT_EQ(document.map().found()->map.area(), expected.area());

    // Borders that two polygons share come in once, names go to the regions.
    document.open(samples / "us-states.geojson");
    document.worker().wait();
    const kit::Map& states = document.map().found()->map;
    std::set<std::string> names;
    for (const kit::Region region : states) {
        names.insert(region.name());
    }
    EXPECT_TRUE(names.contains("Colorado"));
    EXPECT_EQ(document.map().found()->report.duplicates, 0);
    EXPECT_EQ(document.map().curves().placement().reference, "EPSG:4326");

    states.write(path("states.regions"));
    const double area = states.area();
    document.open(path("states.regions"));
    document.worker().wait();
    EXPECT_NEAR(document.map().found()->map.area(), area, 1e-9); // regions in another order

    // Each is a step.
    document.history().undo();
    document.history().undo();
    document.worker().wait();
    EXPECT_EQ(document.map().found()->map.area(), expected.area());
}

TEST_F(Import, OpensSolidsAndAddsThem) {
    kit::make_ball({0, 0, 0}, 10, 2).write(path("ball.model"));
    kit::write_solids(kit::make_cuboid({30, 0, 0}, {4, 5, 6}), path("cuboid.stl"));
    Document document;
    document.open(path("ball.model"));
    document.worker().wait();
    EXPECT_EQ(document.solids().solids().size(), 1);
    document.open(path("cuboid.stl"), {.adds = true});
    document.worker().wait();
    ASSERT_EQ(document.solids().solids().size(), 2);
    EXPECT_NEAR(document.solids().solids()[1].volume(), 120, 1e-9);
    document.history().undo();
    EXPECT_EQ(document.solids().solids().size(), 1);
}

TEST_F(Import, NamesWhatCannotBeOpenedAndChangesNothing) {
    write("broken.curves", "1\n3\n0 0\n5 x\n9 9\n");
    Document document;
    QString message;
    QObject::connect(&document.worker(), &workbench::Worker::failed,
                     [&](const QString& /*title*/, const QString& text) { message = text; });
    document.open(path("broken.curves"));
    document.worker().wait();
    EXPECT_TRUE(message.contains("broken.curves:4")) << message.toStdString();
    EXPECT_TRUE(message.contains("x"));
    message.clear();
    document.open(path("absent.stl"));
    document.worker().wait();
    EXPECT_TRUE(message.contains("absent.stl")) << message.toStdString();
    EXPECT_FALSE(document.history().can_undo());
}

} // namespace
} // namespace korvel::test
