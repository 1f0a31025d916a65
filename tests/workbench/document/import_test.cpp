#include <algorithm>
#include <filesystem>
#include <set>

#include <gtest/gtest.h>

#include "apps/workbench/document/document.h"
#include "apps/workbench/document/reference_systems.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using workbench::Document;

const std::filesystem::path samples = KORVEL_DATA_DIR;

class Import : public Scratch {
protected:
    // What the kit makes of features in another system.
    static kit::Network transformed(kit::Features features, const std::string& from,
                                    const std::string& to, const kit::GridChoice& grid) {
        kit::projection(from, to)->forward(features.points);
        features.reference = to;
        return kit::find_regions(kit::network_of(features, grid)).noded();
    }

    static void expect_curves(const workbench::Curves& curves, const kit::Network& network) {
        EXPECT_EQ(curves.placement(), network.placement());
        ASSERT_EQ(curves.size(), network.curve_count());
        for (int i = 0; i < curves.size(); ++i) {
            const auto equal = [](const kit::GridPoint& a, const kit::GridPoint& b) {
                return a.x == b.x && a.y == b.y;
            };
            EXPECT_TRUE(std::ranges::equal(curves[i], network.curve(i), equal)) << i;
        }
    }
};

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

    // Decimals without a grid get one.
    kit::Map plain = document.map().found()->map;
    plain.move_points(plain.points(), {});
    plain.write(path("plain.regions"));
    document.open(path("plain.regions"));
    document.worker().wait();
    EXPECT_EQ(document.map().curves().placement().grid.step_text(), "0.0001");
    EXPECT_EQ(document.map().found()->map.size(), plain.size());
    EXPECT_NEAR(document.map().found()->map.area(), area, 1e-4);

    // Each is a step.
    document.history().undo();
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

TEST_F(Import, TransformsCoordinatesAsTheKitDoes) {
    if (!kit::has_projections()) {
        GTEST_SKIP() << "without PROJ";
    }
    const kit::Features states = kit::read_features(samples / "us-states.geojson");
    const kit::GridChoice by_ten = {.step = kit::Grid(10, 1), .origin = kit::Point2{5, -5}};
    const std::string keeps_areas =
        kit::equal_area_about("EPSG:4326", {.left = -172, .top = 17, .right = -65, .bottom = 71});
    struct {
        const char* to;
        const char* reference;
        kit::GridChoice grid;
        const char* step;
    } const cases[] = {{"EPSG:3857", "", {}, "1"},
                       {"EPSG:3857", "EPSG:4269", by_ten, "10"},
                       {keeps_areas.c_str(), "", {}, "1"}};
    Document document;
    for (const auto& [to, reference, grid, step] : cases) {
        SCOPED_TRACE(to);
        const std::string from = *reference == '\0' ? "EPSG:4326" : reference;
        document.open(samples / "us-states.geojson",
                      {.grid = grid, .reference = reference, .project = to});
        document.worker().wait();
        expect_curves(document.map().curves(), transformed(states, from, to, grid));
        EXPECT_EQ(document.map().curves().placement().grid.step_text(), step);
        const kit::Map& map = document.map().found()->map;
        EXPECT_TRUE(std::ranges::any_of(
            map, [](const kit::Region& region) { return region.name() == "Colorado"; }));
    }

    // Curves have no system of their own, regions keep that of their map.
    write("decimals.curves", "1\n4 7.25 50 7.5 50 7.25 50.125 7.25 50\n");
    const kit::GridChoice centimetres = {.step = kit::Grid(1, 100)};
    document.open(path("decimals.curves"),
                  {.grid = centimetres, .reference = "EPSG:4326", .project = "EPSG:32632"});
    document.worker().wait();
    const kit::Features triangle = kit::features_of(kit::Network::read(path("decimals.curves")));
    expect_curves(document.map().curves(),
                  transformed(triangle, "EPSG:4326", "EPSG:32632", centimetres));
    const kit::Map zone = document.map().found()->map;
    ASSERT_EQ(zone.placement().reference, "EPSG:32632");
    zone.write(path("zone.regions"));
    document.open(path("zone.regions"), {.grid = centimetres, .project = "EPSG:25833"});
    document.worker().wait();
    expect_curves(document.map().curves(),
                  transformed(kit::features_of(kit::Map::read(path("zone.regions"))), "EPSG:32632",
                              "EPSG:25833", centimetres));
    document.open(path("decimals.curves"), {.reference = "EPSG:4326"});
    document.worker().wait();
    EXPECT_EQ(document.map().curves().placement(),
              (kit::Placement{kit::Grid(1, 1000), "EPSG:4326"}));
}

TEST_F(Import, RefusesWhatCannotBeTransformedAndChangesNothing) {
    if (!kit::has_projections()) {
        GTEST_SKIP() << "without PROJ";
    }
    write("plain.curves", "1\n4 0 0 500 0 0 500 0 0\n");
    write("points.geojson", R"({"type": "Point", "coordinates": [1, 2]})");
    struct {
        const char* file;
        const char* reference;
        const char* to;
        const char* message;
    } const cases[] = {
        {"plain.curves", "", "EPSG:3857", "the file does not name its reference system"},
        {"plain.curves", "", "mercator", "mercator: not a reference system that PROJ knows"},
        {"plain.curves", "EPSG:0", "", "EPSG:0: not a reference system that PROJ knows"},
        {"plain.curves", "EPSG:4326", "EPSG:3857", "the point 0,500 has no position in EPSG:3857"},
        {"points.geojson", "", "", "points.geojson: contains neither lines nor polygons"},
    };
    Document document;
    std::string message;
    QObject::connect(
        &document.worker(), &workbench::Worker::failed,
        [&](const QString& /*title*/, const QString& text) { message = text.toStdString(); });
    for (const auto& [file, reference, to, expected] : cases) {
        document.open(path(file), {.reference = reference, .project = to});
        document.worker().wait();
        EXPECT_TRUE(message.find(expected) != std::string::npos) << message;
        EXPECT_FALSE(document.history().can_undo());
        EXPECT_TRUE(document.map().curves().empty());
    }
}

TEST(ReferenceSystems, ThoseOfferedAreMadeForTheCoordinates) {
    if (!kit::has_projections()) {
        GTEST_SKIP() << "without PROJ";
    }
    using Names = std::vector<std::string>;
    const auto offered = [](const char* reference, const kit::Rectangle& bounds) {
        Names systems;
        for (const workbench::SystemChoice& choice : workbench::usual_systems(reference, bounds)) {
            EXPECT_EQ(choice.name, kit::reference_name(choice.reference));
            systems.push_back(choice.reference);
        }
        return systems;
    };
    const kit::Rectangle rhine = {.left = 6.5, .top = 49.5, .right = 8.5, .bottom = 51};
    const std::string about = "+proj=laea +lat_0=50.3 +lon_0=7.5 ";
    EXPECT_EQ(offered("EPSG:4326", rhine),
              (Names{"EPSG:32632", "EPSG:3857", about + "+datum=WGS84 +units=m +type=crs"}));
    EXPECT_EQ(offered("EPSG:4258", rhine)[0], "EPSG:25832");
    const kit::Rectangle tasmania = {.left = 144, .top = -44, .right = 149, .bottom = -40};
    EXPECT_EQ(offered("EPSG:4326", tasmania)[0], "EPSG:32755");
    const kit::Rectangle colorado = {.left = -109, .top = 37, .right = -102, .bottom = 41};
    EXPECT_EQ(offered("EPSG:4269", colorado)[0], "EPSG:26913");
    const kit::Rectangle world = {.left = -180, .top = -85, .right = 180, .bottom = 85};
    EXPECT_EQ(offered("EPSG:4326", world)[0], "EPSG:3857"); // no zone
    const kit::Rectangle metres = {.left = 3e5, .top = 55e5, .right = 4e5, .bottom = 56e5};
    const Names of_metres = offered("EPSG:32632", metres);
    ASSERT_EQ(of_metres.size(), 3U);
    EXPECT_EQ(of_metres[1], "EPSG:4326");
    EXPECT_TRUE(offered("", rhine).empty());
    EXPECT_TRUE(offered("nonsense", rhine).empty());
    EXPECT_TRUE(offered("EPSG:4326", {}).empty());
    EXPECT_EQ(workbench::shown_reference("nonsense"), "nonsense");
}

} // namespace
} // namespace korvel::test
