// From hand-digitised curves to a map that shows the region under a click and what lies around it.

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>

#include "kit/maps/region_colours.h"
#include "kit/maps/region_sets.h"
#include "kit/pictures/picture_fit.h"
#include "korvel/module/korvel.h"

using namespace korvel::kit;

/// Reads the number of curves, then for each its number of points and the points.
static void read_curves(const std::string& name, CArray<tagPOINT>& points, CArray<int>& counts) {
    std::ifstream file(name);
    int curves = 0;
    int count = 0;
    tagPOINT point = {};
    file >> curves;
    while (counts.GetSize() < curves && file >> count) {
        counts.Add(count);
        for (; count > 0 && file >> point.x >> point.y; --count) {
            points.Add(point);
        }
    }
    if (!file) {
        throw std::runtime_error(name + ": cannot be read as a curve file");
    }
}

int main(int argc, char** argv) try {
    tagPOINT click = {};
    if (argc != 4 || std::sscanf(argv[3], "%d,%d", &click.x, &click.y) != 2) {
        throw std::runtime_error("usage: regions_to_picture CURVES PICTURE X,Y");
    }
    CArray<tagPOINT> points;
    CArray<int> counts;
    read_curves(argv[1], points, counts);

    CREGION builder;
    builder.SetPtsInfo(points, counts);
    CCPloy2DRg map;
    builder.GetAllRegion(map);
    PLYDT chosen;
    builder.SetSelectRegion(click);
    builder.GetSelectRegion(chosen);
    std::printf("%d curves, %d regions\n", counts.GetSize(), map.region_list.GetSize());
    if (chosen.region_list.IsEmpty()) {
        throw std::runtime_error(std::string(argv[3]) + ": no region contains this point");
    }
    map.creat_top_rel(); // regions that share a side need different colours
    colour_regions(map);
    for (int i = 0; i < map.region_list.GetSize(); ++i) {
        CCPloy2DRg::PyToRg& region = map.region_list[i];
        for (unsigned char* const channel : {&region.red, &region.green, &region.blue}) {
            *channel = static_cast<unsigned char>(170 + *channel / 3);
        }
        if (builder.regions[i].is_select != 0) {
            region.red = 200, region.green = 40, region.blue = 60;
        }
    }

    Rectangle box = korvel::kit::box_of_regions(chosen);
    const double width = box.right - box.left;
    const double height = box.bottom - box.top;
    box = {box.left - width, box.top - height, box.right + width, box.bottom + height};
    const PictureFit fit(box, {1200, 750}, 3.3); // the sample's grid squeezes x about that much
    OutputFile out(argv[2]);
    PictureCanvas canvas(out, picture_format(argv[2]), fit.page, PictureFit::units_per_pixel);
    CPen outline(PS_SOLID, fit.outline_width(map.region_list.GetSize()), RGB(90, 90, 90));
    canvas.SelectObject(&outline);
    map.Draw_Regon(fit.ox, fit.oy, fit.x0, fit.y0, fit.sx, fit.sy, fit.scale, &canvas);
    canvas.finish();
    out.replace(); // the name appears once the picture is complete
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
