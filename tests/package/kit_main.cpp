// A host of the kit that uses its parts for pictures, and its modules where they are installed. The
// argument is the picture to write.

#include <cmath>
#include <cstdio>
#include <string>

#include <kit/kit.h>

int main(int, char** arguments) {
    using namespace korvel::kit;
    OutputFile out(arguments[1]);
    PictureCanvas canvas(out, PictureFormat::png, {40, 30});
    canvas.Polygon(std::array<POINT, 3>{POINT{5, 5}, {35, 5}, {20, 25}}.data(), 3);
    canvas.finish();
    out.close();
    const OffscreenRenderer renderer({64, 64});
#if defined(WITH_MODULES)
    std::array<Point2, 1> point = {Point2{9, 0}};
    projection("EPSG:4326", "EPSG:32632")->forward(point);
    Features place;
    place.points = {point[0]};
    place.paths = {{1, true}};
    place.features = {{Shape::points, 1, {}}};
    const std::string file = std::string(arguments[1]) + ".gpkg";
    write_features(place, file);
    if (std::abs(point[0][0] - 500000) > 1e-6 || read_features(file).points != place.points) {
        std::puts("the modules do not work");
        return 1;
    }
#endif
    std::puts("korvel " KORVEL_VERSION);
}
