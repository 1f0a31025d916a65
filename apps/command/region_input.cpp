#include "apps/command/region_input.h"

#include <cstdio>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"

namespace korvel::command {

void RegionInput::add_options(Options options) {
    options.add("INPUT", file_, "FILE", "Curve file or polygon-region file").required();
    curve_input_.add_options(options);
}

kit::Map RegionInput::load() {
    const kit::TextFile file(file_);
    return kit::holds_regions(file) ? load_region_set(file) : load_curves(file);
}

kit::Map RegionInput::load_curves(const kit::TextFile& file) {
    curve_input_.load(file);
    if (curve_input_.has_selection()) {
        return curve_input_.found().map().kept(curve_input_.select());
    }
    return curve_input_.found().take_map();
}

kit::Map RegionInput::load_region_set(const kit::TextFile& file) {
    for (const std::string& text : curve_input_.selection()) {
        parse_real_point("--select", text);
    }
    kit::Map map = kit::Map::read(file, {.on_warning = warn});
    std::printf("%s: %s, %s\n", file.name.c_str(), counted(map.size(), "region").c_str(),
                counted(map.point_count(), "point").c_str());
    return curve_input_.has_selection() ? map.kept(select(map)) : map;
}

std::vector<int> RegionInput::select(const kit::Map& map) const {
    std::vector<int> regions;
    for (const std::string& text : curve_input_.selection()) {
        const RealPoint point = parse_real_point("--select", text);
        if (const std::optional<int> region = map.region_at({point.x, point.y})) {
            std::printf("%s: region %d\n", text.c_str(), *region);
            regions.push_back(*region);
        } else {
            warn(text + ": no region contains this point");
        }
    }
    return regions;
}

std::string RegionInput::name(const kit::Region& region) {
    const kit::Rectangle box = region.bounds();
    return "region " + std::to_string(region.number()) + " (" + number_text(box.left) + "," +
           number_text(box.top) + " to " + number_text(box.right) + "," + number_text(box.bottom) +
           ")";
}

} // namespace korvel::command
