// A gear wheel on its shaft: drawn in code, raised, shown and cut aslant.

#include <cmath>
#include <cstdio>
#include <numbers>

#include "kit/kit.h"

using namespace korvel::kit;

/// Adds a circle of 96 corners. Of every four corners two are moved outward by `tooth`.
static void add_circle(Network& network, double radius, double tooth) {
    constexpr int corners = 96;
    std::vector<GridPoint> points;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * i / corners;
        const double r = 100 * (radius + (i % 4 < 2 ? tooth : 0)); // on a grid of a hundredth
        points.push_back(
            {static_cast<int>(r * std::cos(angle)), static_cast<int>(r * std::sin(angle))});
    }
    points.push_back(points.front());
    network.add_curve(points);
}

/// The region at x = `inside`, y = 0 between two levels, as a body.
static Solids raised(Network network, double inside, double low, double high, double hue) {
    const Map map = find_regions(std::move(network)).take_map();
    const int region = map.region_at({100 * inside, 0}).value();
    const RaiseOptions levels = {.low = low, .high = high, .unit = {100, 100}};
    Solids solids = raise(map.kept(std::array{region}), levels).solids;
    solids.set_colour(0, {.hue = hue});
    return solids;
}

int main(int argc, char** argv) try {
    if (argc != 4) {
        throw input_error("usage: raise_and_cut MODEL VIEW SECTION");
    }
    Network wheel;
    add_circle(wheel, 32, 0); // a hole comes before what is around it
    add_circle(wheel, 90, 14);
    Network shaft;
    add_circle(shaft, 30, 0);
    Solids gear = raised(wheel, 60, -20, 20, 40);
    gear.add(raised(shaft, 0, -60, 90, 210));
    for (const Body body : gear) {
        std::printf("body %d: volume %.1f\n", body.index(), body.volume());
    }
    gear.write(argv[1]);
    gear.set_view({.turn = 30, .tilt = -55});
    write_picture(gear, argv[2], {.size = {800, 800}});

    const Section section = gear.cut({.a = 0.125, .b = 0.05, .c = 1, .d = -3});
    std::printf("%d polygons, area %.1f\n", section.size(), section.area());
    write_picture(section, argv[3], {.size = {800, 800}, .title = "x/8 + y/20 + z = 3"});
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
