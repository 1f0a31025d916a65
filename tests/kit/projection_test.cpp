// Reference systems by the module of PROJ. Expected coordinates are those of gdaltransform.

#include <cmath>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kit/base/module.h"
#include "kit/kit.h"

namespace korvel::test {
namespace {

using kit::Point2;
using testing::HasSubstr;

template <class Call>
std::string message_of(Call call) {
    try {
        call();
    } catch (const kit::Error& error) { // which has crossed the border of a shared library
        EXPECT_EQ(error.kind(), kit::Error::Kind::input);
        return error.what();
    }
    return "no error";
}

TEST(Projection, TransformsAsDefinedAndBack) {
    ASSERT_TRUE(kit::has_projections());
    struct {
        const char* from;
        const char* to;
        Point2 degrees;
        Point2 metres;
    } const cases[] = {
        {"EPSG:4326", "EPSG:32632", {9, 50}, {500000, 5538630.7024}},
        {"EPSG:4326", "EPSG:3857", {-180, 0}, {-20037508.3428, 0}},
        {"OGC:CRS84", "EPSG:25832", {10.5, 51.25}, {604685.1831, 5678695.2355}},
        {"EPSG:4258", "+proj=laea +lat_0=52 +lon_0=10 +ellps=GRS80", {10, 52}, {0, 0}},
    };
    for (const auto& [from, to, degrees, metres] : cases) {
        SCOPED_TRACE(std::string(from) + " " + to);
        const auto way = kit::projection(from, to);
        std::vector<Point2> points(1000, degrees);
        way->forward(points);
        EXPECT_NEAR(points.back()[0], metres[0], 1e-3);
        EXPECT_NEAR(points.back()[1], metres[1], 1e-3);
        way->back(points);
        EXPECT_NEAR(points.back()[0], degrees[0], 1e-9);
        EXPECT_NEAR(points.back()[1], degrees[1], 1e-9);
    }
}

TEST(Projection, IsTheSameInSeveralThreads) {
    const auto way = kit::projection("EPSG:4326", "EPSG:32632");
    std::vector<std::vector<Point2>> results(4);
    std::vector<std::thread> threads;
    for (std::vector<Point2>& points : results) {
        threads.emplace_back([&] {
            for (int i = 0; i < 2000; ++i) {
                points.push_back({6 + i * 1e-3, 48 + i * 1e-3});
            }
            way->forward(points);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(results[1], results[0]);
    EXPECT_EQ(results[3], results[0]);
}

TEST(Projection, NamesWhatDoesNotFit) {
    EXPECT_THAT(message_of([] { kit::projection("EPSG:99999", "EPSG:4326"); }),
                HasSubstr("EPSG:99999: not a reference system that PROJ knows"));
    EXPECT_THAT(message_of([] { kit::is_geographic("nonsense"); }), HasSubstr("nonsense: not a"));
    EXPECT_THAT(message_of([] { kit::is_geographic("+proj=nonsense"); }),
                HasSubstr("not a reference system"));
    for (const Point2& outside : {Point2{10, 91}, Point2{std::nan(""), 0}, Point2{1e308, 0}}) {
        EXPECT_THAT(message_of([&] {
                        std::vector<Point2> points(300, Point2{10, 50});
                        points.push_back(outside);
                        kit::projection("EPSG:4326", "EPSG:32632")->forward(points);
                    }),
                    HasSubstr("the point " + kit::number_text(outside[0]) + "," +
                              kit::number_text(outside[1]) + " has no position in EPSG:32632"));
    }
}

TEST(Projection, KnowsReferenceSystems) {
    EXPECT_TRUE(kit::is_geographic("EPSG:4326"));
    EXPECT_TRUE(kit::is_geographic("EPSG:4258"));
    EXPECT_TRUE(kit::is_geographic("EPSG:9518")); // with heights
    EXPECT_FALSE(kit::is_geographic("EPSG:25832"));
    EXPECT_FALSE(kit::is_geographic("EPSG:4807")); // in grads
    EXPECT_FALSE(kit::is_geographic(""));

    EXPECT_EQ(kit::short_reference(""), "");
    EXPECT_EQ(kit::short_reference("urn:ogc:def:crs:OGC:1.3:CRS84"), "EPSG:4326");
    EXPECT_EQ(kit::short_reference("urn:ogc:def:crs:EPSG::25832"), "EPSG:25832");
    // As .prj files have it.
    EXPECT_EQ(kit::short_reference("GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",\n SPHEROID["
                                   "\"WGS_1984\",6378137.0,298.257223563]],PRIMEM[\"Greenwich\","
                                   "0.0],UNIT[\"Degree\",0.0174532925199433]]\n"),
              "EPSG:4326");
    const std::string own = kit::short_reference("+proj=laea +lat_0=7 +lon_0=3 +ellps=GRS80");
    EXPECT_THAT(own, testing::StartsWith("PROJCRS["));
    EXPECT_EQ(own.find('\n'), std::string::npos);
    EXPECT_EQ(kit::short_reference(own), own);

    EXPECT_EQ(kit::reference_name("EPSG:32632"), "WGS 84 / UTM zone 32N (EPSG:32632)");
    EXPECT_EQ(kit::reference_name(""), "");
}

TEST(Projection, KeepsAreas) {
    const kit::Rectangle germany{.left = 5.87, .top = 47.27, .right = 15.04, .bottom = 55.06};
    const std::string about = kit::equal_area_about("EPSG:4326", germany);
    EXPECT_EQ(about, "+proj=laea +lat_0=51.2 +lon_0=10.5 +datum=WGS84 +units=m +type=crs");
    EXPECT_EQ(kit::equal_area_about("EPSG:4258", germany),
              "+proj=laea +lat_0=51.2 +lon_0=10.5 +ellps=GRS80 +units=m +type=crs");
    const kit::Rectangle world{.left = -180, .top = -90, .right = 180, .bottom = 90};
    const std::string of_world = kit::equal_area_about("EPSG:4326", world);
    EXPECT_EQ(of_world, "+proj=eqearth +lon_0=0 +datum=WGS84 +units=m +type=crs");

    // A thousandth of a degree in both directions, at 60° north: its area on the ellipsoid.
    const double radians = 3.14159265358979323846 / 180;
    const double e2 = 0.00669437999014;
    const double w2 = 1 - e2 * std::pow(std::sin(60 * radians), 2);
    const double expected =
        std::pow(6378137 * 0.001 * radians / w2, 2) * (1 - e2) * std::cos(60 * radians);
    for (const std::string& projection : {about, of_world}) {
        std::vector<Point2> ring = {
            {20, 59.9995}, {20.001, 59.9995}, {20.001, 60.0005}, {20, 60.0005}};
        kit::projection("EPSG:4326", projection)->forward(ring);
        double twice = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            const Point2& a = ring[i];
            const Point2& b = ring[(i + 1) % 4];
            twice += (a[0] - ring[0][0]) * (b[1] - ring[0][1]) -
                     (b[0] - ring[0][0]) * (a[1] - ring[0][1]);
        }
        EXPECT_NEAR(twice / 2 / expected, 1, 1e-7) << projection;
    }
}

TEST(Module, NamesWhatIsMissing) {
    EXPECT_THAT(kit::load_module("korvel-none").missing,
                HasSubstr("which is not installed: libkorvel-none.so"));
    EXPECT_EQ(kit::load_module("korvel-none").implementation, nullptr);
    EXPECT_EQ(kit::load_module("korvel-proj").missing, "");
}

} // namespace
} // namespace korvel::test
