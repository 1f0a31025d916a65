#include "kit/pictures/flat_picture.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "kit/base/areas.h"
#include "kit/maps/region_colours.h"
#include "kit/maps/region_sets.h"
#include "kit/pictures/sized_outlines.h"

namespace korvel::kit {
namespace {

constexpr COLORREF outline_colour = RGB(60, 60, 60);

MapPictureOptions on_grid(MapPictureOptions options, const Grid& grid);
template <class Set>
Rectangle most_of(const Set& set);
SizedOutlines outlined(CDC& dc, const PictureFit& fit, int shapes);
void mark_uncovered(const Triangulation& triangles, CDC& dc, const PictureFit& fit);
std::vector<int> largest_first(const CCPloy2DRg& map);

} // namespace

PictureFit MapPictureOptions::fit(const Rectangle& whole_map) const {
    return {part.value_or(whole_map), size, stretch, units_per_pixel, y_down};
}

PictureFit MapPictureOptions::fit(const CCPloy2DRg& map) const {
    return fit(extent == Extent::all || part ? box_of_regions(map) : most_of(map));
}

PictureFit MapPictureOptions::fit(const PLYDT& triangles) const {
    return fit(extent == Extent::all || part ? box_of_regions(triangles) : most_of(triangles));
}

int regions_left_out(const Map& map, const MapPictureOptions& options) {
    const Grid& grid = map.placement().grid;
    const Rectangle page =
        in_user_units(on_grid(options, grid).fit(map.regions()).page_in_map(), grid);
    return static_cast<int>(std::count_if(map.begin(), map.end(), [&](const Region& region) {
        const Rectangle box = region.bounds();
        return !box.is_empty() &&
               !(page.contains(box.left, box.top) && page.contains(box.right, box.bottom));
    }));
}

void draw(const Map& map, CDC& dc, const MapPictureOptions& options) {
    draw(map.regions(), dc, on_grid(options, map.placement().grid));
}

void draw(const Triangulation& triangles, CDC& dc, const MapPictureOptions& options) {
    const MapPictureOptions shown = on_grid(options, triangles.placement().grid);
    draw(triangles.triangles(), dc, shown);
    mark_uncovered(triangles, dc, shown.fit(triangles.triangles()));
}

void draw(const CCPloy2DRg& map, CDC& dc, const MapPictureOptions& options) {
    CCPloy2DRg picture = map;
    if (options.colours == RegionColours::distinct) {
        picture.creat_top_rel();
        colour_regions(picture);
    }
    const PictureFit fit = options.fit(map);
    SizedOutlines device = outlined(dc, fit, map.region_list.GetSize());
    dc.SetPolyFillMode(ALTERNATE);
    for (const int region : largest_first(map)) {
        picture.Draw_Poly(fit.ox, fit.oy, fit.x0, fit.y0, fit.sx, fit.sy, fit.scale,
                          picture.region_list[region], &device);
    }
}

// Triangles are drawn where their points lie, so a copy of the points is brought to the picture.
void draw(const PLYDT& triangles, CDC& dc, const MapPictureOptions& options) {
    const PictureFit fit = options.fit(triangles);
    PLYDT picture;
    picture.pt_list.SetSize(triangles.pt_list.GetSize());
    for (int i = 0; i < triangles.pt_list.GetSize(); ++i) {
        picture.pt_list[i].x = (triangles.pt_list[i].x - fit.x0) / fit.sx * fit.scale + fit.ox;
        picture.pt_list[i].y = (triangles.pt_list[i].y - fit.y0) / fit.sy * fit.scale + fit.oy;
    }
    picture.trg_list.Copy(triangles.trg_list);
    SizedOutlines device = outlined(dc, fit, triangles.trg_list.GetSize());
    picture.Draw_Trgls(&device);
}

namespace {

// The options for points in steps of a grid.
MapPictureOptions on_grid(MapPictureOptions options, const Grid& grid) {
    if (options.part) {
        options.part = in_steps(*options.part, grid);
    }
    options.y_down = options.y_down != grid.is_y_down();
    return options;
}

template <class Set>
Rectangle most_of(const Set& set) {
    std::vector<double> xs;
    std::vector<double> ys;
    for (const auto& region : set.region_list) {
        for (const int ring : region.rings) {
            for (const int point : set.ring_list[ring].pts) {
                xs.push_back(set.pt_list[point].x);
                ys.push_back(set.pt_list[point].y);
            }
        }
    }
    return main_extent(std::move(xs), std::move(ys));
}

SizedOutlines outlined(CDC& dc, const PictureFit& fit, int shapes) {
    return {dc, outline_colour, fit.outline_width(shapes), fit.device_units};
}

// Paints the regions that are not covered over their triangles, with a wide outline.
void mark_uncovered(const Triangulation& triangles, CDC& dc, const PictureFit& fit) {
    if (triangles.count(Filled::not_at_all) == 0) {
        return;
    }
    CCPloy2DRg marked;
    copy_regions(triangles.triangles(), marked);
    CPen outline(PS_SOLID, 2 * fit.device_units, RGB(120, 0, 120));
    CPen* const previous = dc.SelectObject(&outline);
    dc.SetPolyFillMode(ALTERNATE);
    for (int region = 0; region < triangles.region_count(); ++region) {
        if (triangles.filled(region) == Filled::not_at_all) {
            CCPloy2DRg::PyToRg& record = marked.region_list[region];
            record.red = record.blue = 255;
            record.green = 0;
            marked.Draw_Poly(fit.ox, fit.oy, fit.x0, fit.y0, fit.sx, fit.sy, fit.scale, record,
                             &dc);
        }
    }
    dc.SelectObject(previous);
}

std::vector<int> largest_first(const CCPloy2DRg& map) {
    std::vector<int> order(static_cast<std::size_t>(map.region_list.GetSize()));
    std::iota(order.begin(), order.end(), 0);
    const auto sort = [&](auto area_of) {
        std::vector<decltype(area_of(0))> areas;
        std::transform(order.begin(), order.end(), std::back_inserter(areas), area_of);
        std::stable_sort(order.begin(), order.end(),
                         [&](int a, int b) { return areas[a] > areas[b]; });
    };
    if (are_lattice_points(map.pt_list)) {
        sort([&](int region) { return twice_area<WideInteger>(map, map.region_list[region]); });
    } else {
        sort([&](int region) { return twice_area<double>(map, map.region_list[region]); });
    }
    return order;
}

} // namespace
} // namespace korvel::kit
