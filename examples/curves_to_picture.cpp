// From hand-digitised curves to a map that shows the region under a click and its neighbours.

#include <cstdio>

#include "kit/kit.h"

using namespace korvel::kit;

static Colour mixed(Colour a, Colour b) {
    const auto mean = [](int x, int y) { return static_cast<unsigned char>((x + y) / 2); };
    return {mean(a.red, b.red), mean(a.green, b.green), mean(a.blue, b.blue)};
}

int main(int argc, char** argv) try {
    double x = 0;
    double y = 0;
    if (argc != 4 || std::sscanf(argv[3], "%lf,%lf", &x, &y) != 2) {
        throw input_error("usage: curves_to_picture CURVES PICTURE X,Y");
    }
    FoundRegions found = find_regions(Network::read(argv[1]));
    for (const Dropped& dropped : found.dropped()) {
        std::printf("left out: %s\n", text(dropped).c_str());
    }
    Map map = found.take_map();
    const std::optional<int> chosen = map.region_at({x, y});
    if (!chosen) {
        throw input_error(std::string(argv[3]) + ": no region contains this point");
    }
    const std::vector<int> around = map.neighbours(*chosen);
    std::printf("region %d: area %.1f, %zu neighbours\n", *chosen, map[*chosen].area(),
                around.size());

    map.colour_distinctly(); // regions that share a side get different colours
    for (const Region region : map) {
        const bool is_neighbour = std::binary_search(around.begin(), around.end(), region.index());
        if (!is_neighbour) {
            map.set_colour(region.index(), mixed(region.colour(), {255, 255, 255}));
        }
    }
    map.set_colour(*chosen, {200, 40, 60});

    auto part = map[*chosen].bounds();
    const double width = part.right - part.left;
    const double height = part.bottom - part.top;
    part = {part.left - width, part.top - height, part.right + width, part.bottom + height};
    write_picture(map, argv[2],
                  {.size = {1200, 750},
                   .part = part,
                   .stretch = 3.3, // the grid of the sample squeezes x about that much
                   .colours = RegionColours::own});
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
