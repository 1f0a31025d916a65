#include "apps/workbench/desktop/icon.h"

#include <array>
#include <vector>

#include <QPainter>

#include "apps/workbench/flat/painter_canvas.h"
#include "kit/kit.h"

namespace korvel::workbench {
namespace {

kit::Map cut_cube();

} // namespace

QImage icon_image(int pixels) {
    constexpr int units_per_pixel = 16;
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    PainterCanvas canvas(painter, units_per_pixel);
    kit::draw(cut_cube(), canvas,
              {.size = {pixels, pixels},
               .colours = kit::RegionColours::own,
               .units_per_pixel = units_per_pixel});
    return image;
}

namespace {

// Seen from above and in front, with a level cut below the middle.
kit::Map cut_cube() {
    using Line = std::vector<kit::GridPoint>;
    kit::Network network;
    network.add_curve(
        Line{{128, 240}, {225, 184}, {225, 72}, {128, 16}, {31, 72}, {31, 184}, {128, 240}});
    network.add_curve(Line{{31, 184}, {128, 128}, {225, 184}});
    network.add_curve(Line{{128, 128}, {128, 16}});
    network.add_curve(Line{{31, 110}, {128, 54}, {225, 110}});

    struct Painted {
        kit::Point2 place;
        kit::Colour colour;
    };
    constexpr std::array faces = {
        Painted{{128, 184}, {140, 205, 190}}, // the top
        Painted{{80, 120}, {70, 150, 150}},   // left and right above the cut, and below it
        Painted{{176, 120}, {50, 115, 125}},  Painted{{80, 65}, {235, 165, 85}},
        Painted{{176, 65}, {205, 130, 60}},
    };
    kit::Map map = kit::find_regions(network).take_map();
    for (const Painted& face : faces) {
        if (const auto region = map.region_at(face.place)) {
            map.set_colour(*region, face.colour);
        }
    }
    return map;
}

} // namespace
} // namespace korvel::workbench
