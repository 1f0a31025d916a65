#include "apps/command/region_input.h"

#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/placement_report.h"
#include "apps/command/report.h"

namespace korvel::command {

void RegionInput::add_options(Options options, SourceOptions::Default projection) {
    options
        .add("INPUT", file_, "FILE",
             "Curve file, polygon-region file, GeoJSON or another file of features")
        .required();
    curve_input_.add_options(options, projection);
}

kit::Map RegionInput::load() {
    if (holds_features(file_)) {
        curve_input_.load_features(file_);
        return selected_of_curves();
    }
    const kit::TextFile file = read_input(file_);
    return kit::read_expecting({kit::FileKind::curves, kit::FileKind::regions}, file, [&] {
        if (kit::holds_regions(file)) {
            return load_region_set(file);
        }
        curve_input_.load(file);
        return selected_of_curves();
    });
}

kit::Map RegionInput::selected_of_curves() {
    return has_selection() ? curve_input_.map().kept(curve_input_.select())
                           : curve_input_.take_map();
}

kit::Map RegionInput::load_region_set(const kit::TextFile& file) {
    kit::Map map = load_regions(file);
    print("%s: %s, %s", file.name.c_str(), counted(map.size(), "region").c_str(),
          counted(map.point_count(), "point").c_str());
    facts().set("regions", map.size()).set("points", map.point_count());
    curve_input_.source().project(map);
    report_placement(map.placement());
    curve_input_.source().label(map, nullptr);
    return has_selection() ? map.kept(curve_input_.selection().regions(map, file.name)) : map;
}

std::string RegionInput::name(const kit::Region& region) {
    const kit::Rectangle box = region.bounds();
    return "region " + std::to_string(region.number()) + " (" + number_text(box.left) + "," +
           number_text(box.top) + " to " + number_text(box.right) + "," + number_text(box.bottom) +
           ")";
}

} // namespace korvel::command
