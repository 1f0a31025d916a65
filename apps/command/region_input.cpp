#include "apps/command/region_input.h"

#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"

namespace korvel::command {

void RegionInput::add_options(Options options) {
    options.add("INPUT", file_, "FILE", "Curve file or polygon-region file").required();
    curve_input_.add_options(options);
}

kit::Map RegionInput::load() {
    const kit::TextFile file = read_input(file_);
    return kit::read_expecting({kit::FileKind::curves, kit::FileKind::regions}, file, [&] {
        return kit::holds_regions(file) ? load_region_set(file) : load_curves(file);
    });
}

kit::Map RegionInput::load_curves(const kit::TextFile& file) {
    curve_input_.load(file);
    return has_selection() ? curve_input_.found().map().kept(curve_input_.select())
                           : curve_input_.found().take_map();
}

kit::Map RegionInput::load_region_set(const kit::TextFile& file) {
    const kit::Map map = load_regions(file);
    print("%s: %s, %s", file.name.c_str(), counted(map.size(), "region").c_str(),
          counted(map.point_count(), "point").c_str());
    facts().set("regions", map.size()).set("points", map.point_count());
    return has_selection() ? map.kept(curve_input_.selection().regions(map, file.name)) : map;
}

std::string RegionInput::name(const kit::Region& region) {
    const kit::Rectangle box = region.bounds();
    return "region " + std::to_string(region.number()) + " (" + number_text(box.left) + "," +
           number_text(box.top) + " to " + number_text(box.right) + "," + number_text(box.bottom) +
           ")";
}

} // namespace korvel::command
