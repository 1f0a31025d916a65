// A gear wheel on its shaft: drawn in code, triangulated, raised and cut aslant.

#include <cmath>
#include <cstdio>
#include <numbers>
#include <stdexcept>

#include "kit/pictures/picture_fit.h"
#include "korvel/module/korvel.h"

using namespace korvel::kit;

/// Adds a ring to the set's one region. Of every four corners two are moved outward by `tooth`.
static void add_ring(PLYDT& set, double radius, double tooth) {
    constexpr int corners = 96;
    RING ring;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * i / corners;
        const double r = radius + (i % 4 < 2 ? tooth : 0);
        VERT2D corner;
        corner.x = r * std::cos(angle);
        corner.y = r * std::sin(angle);
        ring.pts.Add(set.pt_list.GetSize());
        set.pt_list.Add(corner);
    }
    set.region_list.SetSize(1);
    set.region_list[0].rings.Add(set.ring_list.GetSize());
    set.ring_list.Add(ring);
}

/// Adds a body: the set's region between the levels `lo` and `hi` of z.
static void raise(PLYDT& set, double lo, double hi, double hue, TMOD3D& model) {
    set.region_tranglate();
    set.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, lo, hi);
    model.create3dmode(set);
    BODY3D& body = model.bodies[model.bodies.GetUpperBound()];
    body.hue = hue;
    std::printf("%d faces, volume %.1f\n", body.polys.GetSize(), body.volume);
}

int main(int argc, char** argv) try {
    if (argc != 3) {
        throw std::runtime_error("usage: solid_and_section SECTION PICTURE");
    }
    PLYDT::set_trace_files(false);
    korvel::set_message_box_handler([](const char*, unsigned) { return IDOK; });
    PLYDT wheel;
    add_ring(wheel, 90, 14);
    add_ring(wheel, 32, 0);
    PLYDT shaft;
    add_ring(shaft, 30, 0);
    TMOD3D model;
    raise(wheel, -20, 20, 40, model);
    raise(shaft, -60, 90, 210, model);

    double aslant[] = {0.25, 0.1, 1, -3}; // the plane x/4 + y/10 + z = 3
    TMOD2D section;
    model.get_section(aslant, section);
    // Each loop is a group of its own. As one group, the wheel's outline leaves its hole open.
    section.groups[0].polys.Append(section.groups[1].polys);
    section.groups.RemoveAt(1);
    OutputFile file(argv[1]);
    section.writedate(file.stream());

    const PictureFit fit({-105, -105, 105, 105}, {800, 800}, 1); // seen along z
    OutputFile picture(argv[2]);
    PictureCanvas canvas(picture, picture_format(argv[2]), fit.page, PictureFit::units_per_pixel);
    CPen outline(PS_SOLID, 2 * PictureFit::units_per_pixel, RGB(70, 60, 50));
    canvas.SelectObject(&outline);
    section.draw_filled_model(0, 1, fit.ox, fit.oy, fit.x0, fit.y0, fit.sx, fit.sy, fit.scale,
                              &canvas);
    canvas.finish();
    file.replace(); // the name appears once the file is complete
    picture.replace();
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
