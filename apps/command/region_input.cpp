#include "apps/command/region_input.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"
#include "kit/base/rectangle.h"
#include "kit/files/region_file.h"
#include "kit/maps/region_sets.h"

namespace korvel::command {

void RegionInput::add_options(CLI::App& command) {
    command.add_option("INPUT", file_, "Curve file or polygon-region file")
        ->required()
        ->type_name("FILE");
    curve_input_.add_options(command);
}

void RegionInput::load(PLYDT& set) {
    const kit::TextFile file(file_);
    if (kit::holds_regions(file)) {
        load_region_set(file, set);
    } else {
        load_curves(file, set);
    }
    // Rings in a file may turn either way. Of a network the region builder leaves a ring as it was
    // traced when rounding spoils the angles that it sums up, with points in line with the last
    // one.
    kit::orient_rings(set);
}

void RegionInput::load_curves(const kit::TextFile& file, PLYDT& set) {
    curve_input_.load(file);
    if (curve_input_.has_selection()) {
        numbers_ = curve_input_.select();
        curve_input_.builder().GetSelectRegion(set);
    } else {
        curve_input_.builder().GetAllRegion(set);
    }
}

void RegionInput::load_region_set(const kit::TextFile& file, PLYDT& set) {
    std::vector<RealPoint> places;
    for (const std::string& text : curve_input_.selection()) {
        places.push_back(parse_real_point("--select", text));
    }
    CCPloy2DRg regions;
    if (const auto note = kit::read_regions(file, regions)) {
        warn(*note);
    }
    std::printf("%s: %s, %s\n", file.name.c_str(),
                counted(regions.region_list.GetSize(), "region").c_str(),
                counted(regions.pt_list.GetSize(), "point").c_str());
    kit::copy_regions(regions, set);
    if (curve_input_.has_selection()) {
        numbers_ = select(regions, places);
        kit::keep_regions(set, numbers_);
    }
}

std::vector<int> RegionInput::select(CCPloy2DRg& regions,
                                     const std::vector<RealPoint>& places) const {
    std::vector<int> selected;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::string& text = curve_input_.selection()[i];
        double place[] = {places[i].x, places[i].y};
        const int found = regions.search_pt_polyrg(place);
        if (found >= 0) {
            std::printf("%s: region %d\n", text.c_str(), found);
            selected.push_back(found);
        } else {
            warn(text + ": no region contains this point");
        }
    }
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    return selected;
}

std::string RegionInput::name(const PLYDT& set, int region) const {
    kit::Rectangle box;
    kit::take_in_region(box, set, set.region_list[region]);
    const int number = numbers_.empty() ? region : numbers_[region];
    return "region " + std::to_string(number) + " (" + number_text(box.left) + "," +
           number_text(box.top) + " to " + number_text(box.right) + "," + number_text(box.bottom) +
           ")";
}

} // namespace korvel::command
