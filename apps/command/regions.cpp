#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/curve_input.h"
#include "apps/command/map_view.h"
#include "apps/command/messages.h"
#include "apps/command/outputs.h"
#include "kit/base/areas.h"
#include "kit/maps/region_colours.h"
#include "kit/maps/region_sets.h"
#include "kit/pictures/picture_fit.h"

namespace korvel::command {
namespace {

class RegionsCommand {
public:
    explicit RegionsCommand(CLI::App& command);
    void run();

private:
    void take_selected_regions();
    void print_region(int number, const CCPloy2DRg::PyToRg& region) const;
    void take_region_around_seed();
    void print_areas() const;
    void write();
    void paint(CDC& dc, const kit::PictureFit& fit) const;

    std::string input_;
    std::string seed_;
    CurveInput curve_input_;
    Outputs outputs_;
    MapView view_;
    CCPloy2DRg regions_;
};

void RegionsCommand::run() {
    curve_input_.check();
    view_.check();
    outputs_.check();
    if (!seed_.empty()) {
        curve_input_.builder().SetSeedPt(parse_lattice_point("--seed", seed_));
    }
    curve_input_.load(kit::TextFile(input_));
    if (!seed_.empty()) {
        take_region_around_seed();
    } else if (curve_input_.has_selection()) {
        take_selected_regions();
    } else {
        curve_input_.builder().GetAllRegion(regions_);
        print_areas();
    }
    write();
}

} // namespace

void add_regions_command(CLI::App& program) {
    add_command<RegionsCommand>(program, "regions",
                                "Find the closed regions of a network of curves");
}

namespace {

RegionsCommand::RegionsCommand(CLI::App& command) {
    command.add_option("CURVES", input_, "Curve file")->required()->type_name("FILE");
    curve_input_.add_options(command);
    command
        .add_option("--seed", seed_,
                    "Only the ring around this point, with the rings directly inside it as holes")
        ->type_name("X,Y")
        ->excludes(command.get_option("--select"));
    outputs_.add_file(command, "Write a polygon-region file");
    outputs_.add_picture(command);
    view_.add_options(command);
    command.footer("Holes are regions of their own as well. Where regions lie inside one another,\n"
                   "--select takes the first one found whose outline contains the point.\n"
                   "\n"
                   "Examples:\n"
                   "  korvel regions states.curves -o states.regions --picture states.png\n"
                   "  korvel regions states.curves --select 20000,-60000 --picture one.svg\n"
                   "  korvel regions states.curves --seed 20000,-60000");
}

void RegionsCommand::take_selected_regions() {
    const std::vector<int> numbers = curve_input_.select();
    PLYDT selected;
    curve_input_.builder().GetSelectRegion(selected);
    kit::copy_regions(selected, regions_);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        print_region(numbers[i], regions_.region_list[static_cast<int>(i)]);
    }
}

void RegionsCommand::print_region(int number, const CCPloy2DRg::PyToRg& region) const {
    int points = 0;
    for (const int ring : region.rings) {
        points += regions_.ring_list[ring].pts.GetSize();
    }
    std::printf("region %d: %s, %s, area %s\n", number, counted(points, "point").c_str(),
                counted(region.rings.GetSize() - 1, "hole").c_str(),
                number_text(kit::region_area(regions_, region, true)).c_str());
}

// One region out of the rings that the seed search hands out: the ring around the point comes
// first, those inside it follow.
void RegionsCommand::take_region_around_seed() {
    CREGION& builder = curve_input_.builder();
    CArray<tagPOINT> no_points;
    CArray<int> no_counts;
    CArray<int> no_holes;
    builder.GetRegion(no_points, no_counts, no_holes);
    CArray<int> ring_points;
    CArray<int> counts;
    const int rings = builder.GetRegionPts(ring_points, counts);

    if (rings == 0) {
        warn(seed_ + ": no ring surrounds this point");
        return;
    }
    regions_.region_list.SetSize(1);
    regions_.ring_list.SetSize(rings);
    int next = 0;
    for (int i = 0; i < rings; ++i) {
        RING& ring = regions_.ring_list[i];
        for (int k = 0; k < counts[i]; ++k, ++next) {
            const tagPOINT& point = builder.unique_pts[ring_points[next]];
            const int index = regions_.pt_list.GetSize();
            regions_.pt_list.SetSize(index + 1);
            regions_.pt_list[index].x = point.x;
            regions_.pt_list[index].y = point.y;
            ring.pts.Add(index);
        }
        regions_.region_list[0].rings.Add(i);
        const auto area =
            static_cast<double>(kit::twice_area<kit::WideInteger>(regions_.pt_list, ring)) / 2;
        std::printf("%s: %s, area %s\n", i == 0 ? "ring around the seed" : "ring inside it",
                    counted(counts[i], "point").c_str(), number_text(std::abs(area)).c_str());
    }
    std::printf("%s, area between them %s\n", counted(rings, "ring").c_str(),
                number_text(kit::region_area(regions_, regions_.region_list[0], true)).c_str());
}

void RegionsCommand::print_areas() const {
    std::vector<double> areas;
    double sum = 0;
    for (const CCPloy2DRg::PyToRg& region : regions_.region_list) {
        areas.push_back(kit::region_area(regions_, region, true));
        sum += areas.back();
    }
    if (areas.empty()) {
        return;
    }
    const auto [smallest, largest] = std::minmax_element(areas.begin(), areas.end());
    std::printf("area %s in all, smallest region %d with %s, largest region %d with %s\n",
                number_text(sum).c_str(), static_cast<int>(smallest - areas.begin()),
                number_text(*smallest).c_str(), static_cast<int>(largest - areas.begin()),
                number_text(*largest).c_str());
}

void RegionsCommand::write() {
    outputs_.write([&](FILE* out) { regions_.writepolyrg(out); },
                   [&](kit::PictureCanvas& canvas, kit::PictureSize size) {
                       paint(canvas, view_.fit(kit::box_of_regions(regions_), size));
                   });
}

// Large regions first: what lies inside a region that does not have it as a hole stays visible.
void RegionsCommand::paint(CDC& dc, const kit::PictureFit& fit) const {
    CCPloy2DRg picture = regions_;
    picture.creat_top_rel();
    kit::colour_regions(picture);
    std::stable_sort(picture.region_list.begin(), picture.region_list.end(),
                     [&](const auto& a, const auto& b) {
                         return kit::twice_area<kit::WideInteger>(picture, a) >
                                kit::twice_area<kit::WideInteger>(picture, b);
                     });
    CPen outline(PS_SOLID, fit.outline_width(picture.region_list.GetSize()), RGB(60, 60, 60));
    CPen* const previous = dc.SelectObject(&outline);
    picture.Draw_Regon(fit.ox, fit.oy, fit.x0, fit.y0, fit.sx, fit.sy, fit.scale, &dc);
    dc.SelectObject(previous);
}

} // namespace
} // namespace korvel::command
