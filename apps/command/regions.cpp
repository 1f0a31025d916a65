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
#include "kit/kit.h"

namespace korvel::command {
namespace {

class RegionsCommand {
public:
    explicit RegionsCommand(Options options);
    void run();

private:
    void take_selected_regions();
    void take_region_around_seed();
    void print_areas() const;
    void write();

    std::string input_;
    std::string seed_;
    CurveInput curve_input_;
    Outputs outputs_;
    MapView view_;
    kit::Map map_;
};

void RegionsCommand::run() {
    curve_input_.check();
    view_.check();
    outputs_.check();
    if (!seed_.empty()) {
        parse_lattice_point("--seed", seed_);
    }
    curve_input_.load(kit::TextFile(input_));
    if (!seed_.empty()) {
        take_region_around_seed();
    } else if (curve_input_.has_selection()) {
        take_selected_regions();
    } else {
        map_ = curve_input_.found().take_map();
        print_areas();
    }
    write();
}

} // namespace

void add_regions_command(Program& program) {
    add_command<RegionsCommand>(program, "regions",
                                "Find the closed regions of a network of curves");
}

namespace {

RegionsCommand::RegionsCommand(Options options) {
    options.add("CURVES", input_, "FILE", "Curve file").required();
    curve_input_.add_options(options);
    options
        .add("--seed", seed_, "X,Y",
             "Only the region around this point, with the rings directly inside it as holes")
        .excludes(options.option("--select"));
    outputs_.add_file(options, "Write a polygon-region file");
    outputs_.add_leftover(options);
    outputs_.add_picture(options);
    view_.add_options(options);
    options.footer(
        "Curves are split where they cross or overlap. Inside a hole are regions of their own.\n"
        "Slivers are regions of less area than their perimeter times a unit of the map.\n"
        "\n"
        "Examples:\n"
        "  korvel regions states.curves -o states.regions --picture states.png\n"
        "  korvel regions states.curves --select 20000,-60000 --picture one.svg\n"
        "  korvel regions states.curves --seed 20000,-60000");
}

void RegionsCommand::take_selected_regions() {
    map_ = curve_input_.found().map().kept(curve_input_.select());
    for (const kit::Region region : map_) {
        std::printf("region %d: %s, %s, area %s\n", region.number(),
                    counted(region.point_count(), "point").c_str(),
                    counted(region.hole_count(), "hole").c_str(),
                    number_text(region.area()).c_str());
    }
}

void RegionsCommand::take_region_around_seed() {
    map_ = curve_input_.found().around(parse_lattice_point("--seed", seed_));
    if (map_.empty()) {
        warn(seed_ + ": no ring surrounds this point");
        return;
    }
    const kit::Region region = map_[0];
    for (int i = 0; i < region.ring_count(); ++i) {
        std::printf("%s: %s, area %s\n", i == 0 ? "ring around the seed" : "ring inside it",
                    counted(region.ring(i).size(), "point").c_str(),
                    number_text(region.ring_area(i)).c_str());
    }
    std::printf("%s, area between them %s\n", counted(region.ring_count(), "ring").c_str(),
                number_text(region.area()).c_str());
}

void RegionsCommand::print_areas() const {
    std::vector<double> areas;
    for (const kit::Region region : map_) {
        areas.push_back(region.area());
    }
    if (areas.empty()) {
        return;
    }
    const auto [smallest, largest] = std::minmax_element(areas.begin(), areas.end());
    std::printf("area %s in all, smallest region %d with %s, largest region %d with %s\n",
                number_text(map_.area()).c_str(), static_cast<int>(smallest - areas.begin()),
                number_text(*smallest).c_str(), static_cast<int>(largest - areas.begin()),
                number_text(*largest).c_str());
}

void RegionsCommand::write() {
    outputs_.write([&](kit::OutputFile& out) { map_.write(out); },
                   [&](kit::PictureCanvas& canvas) { kit::draw(map_, canvas, view_.options()); },
                   [&](kit::OutputFile& out) { curve_input_.found().leftover().write(out); });
}

} // namespace
} // namespace korvel::command
