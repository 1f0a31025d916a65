// A host of the kit that uses its parts for pictures. The argument is the picture to write.

#include <cstdio>

#include <kit/kit.h>

int main(int, char** arguments) {
    using namespace korvel::kit;
    OutputFile out(arguments[1]);
    PictureCanvas canvas(out, PictureFormat::png, {40, 30});
    canvas.Polygon(std::array<POINT, 3>{POINT{5, 5}, {35, 5}, {20, 25}}.data(), 3);
    canvas.finish();
    out.close();
    const OffscreenRenderer renderer({64, 64});
    std::puts("korvel " KORVEL_VERSION);
}
