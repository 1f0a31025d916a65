#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/curve_input.h"
#include "apps/command/input.h"
#include "apps/command/map_view.h"
#include "apps/command/messages.h"
#include "apps/command/outputs.h"
#include "apps/command/report.h"
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
    double area_of(const kit::Region& region) const {
        return measured_ ? (*measured_)[region.index()].area() : region.area();
    }

    std::string input_;
    std::string seed_;
    CurveInput curve_input_;
    Outputs outputs_;
    MapView view_;
    kit::Map map_;
    std::optional<kit::Map> measured_; // where areas are not those of the map's own coordinates
};

void RegionsCommand::run() {
    curve_input_.check();
    view_.check();
    outputs_.check();
    if (!seed_.empty()) {
        parse_real_point("--seed", seed_);
    }
    if (holds_features(input_)) {
        curve_input_.load_features(input_);
    } else {
        curve_input_.load(read_input(input_));
    }
    if (!seed_.empty()) {
        take_region_around_seed();
    } else if (!curve_input_.selection().empty()) {
        take_selected_regions();
    } else {
        map_ = curve_input_.take_map();
        measured_ = curve_input_.source().measured(map_);
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
    options.add("CURVES", input_, "FILE", "Curve file, GeoJSON or another file of features")
        .required();
    curve_input_.add_options(options);
    options
        .add("--seed", seed_, "X,Y",
             "Only the region around this point, with the rings directly inside it as holes")
        .excludes(options.option("--select"));
    outputs_.add_file(options, "Write a polygon-region file, .geojson, .gpkg, .shp, …",
                      Outputs::Formats::features);
    outputs_.add_leftover(options);
    outputs_.add_picture(options);
    view_.add_options(options);
    options.footer(
        "Curves are split where they cross or overlap. Inside a hole are regions of their own.\n"
        "Slivers are regions of less area than their perimeter times a unit of the map.\n"
        "\n"
        "Examples:\n"
        "  korvel regions states.curves -o states.regions --picture states.png\n"
        "  korvel regions states.curves --select 20000,60000 --picture one.svg\n"
        "  korvel regions states.curves --seed 20000,60000");
}

void RegionsCommand::take_selected_regions() {
    map_ = curve_input_.map().kept(curve_input_.select());
    measured_ = curve_input_.source().measured(map_);
    std::vector<Record> records;
    for (const kit::Region region : map_) {
        print("region %d: %s, %s, area %s", region.number(),
              counted(region.point_count(), "point").c_str(),
              counted(region.hole_count(), "hole").c_str(), number_text(area_of(region)).c_str());
        records.push_back(Record()
                              .set("region", region.number())
                              .set("points", region.point_count())
                              .set("holes", region.hole_count())
                              .set("area", area_of(region)));
    }
    facts().set("kept", records);
}

void RegionsCommand::take_region_around_seed() {
    const RealPoint seed = parse_real_point("--seed", seed_);
    map_ = curve_input_.around({seed.x, seed.y});
    measured_ = curve_input_.source().measured(map_);
    if (map_.empty()) {
        throw kit::input_error(shown(input_) + ": no ring surrounds the seed " + seed_);
    }
    const kit::Region region = (measured_ ? *measured_ : map_)[0];
    std::vector<Record> rings;
    for (int i = 0; i < region.ring_count(); ++i) {
        print("%s: %s, area %s", i == 0 ? "ring around the seed" : "ring inside it",
              counted(region.ring(i).size(), "point").c_str(),
              number_text(region.ring_area(i)).c_str());
        rings.push_back(Record()
                            .set("points", static_cast<int>(region.ring(i).size()))
                            .set("area", region.ring_area(i)));
    }
    facts().set("seed_rings", rings).set("area", region.area());
    print("%s, area between them %s", counted(region.ring_count(), "ring").c_str(),
          number_text(region.area()).c_str());
}

void RegionsCommand::print_areas() const {
    std::vector<double> areas;
    for (const kit::Region region : map_) {
        areas.push_back(area_of(region));
    }
    if (areas.empty()) {
        return;
    }
    const double total = (measured_ ? *measured_ : map_).area();
    const auto [smallest, largest] = std::minmax_element(areas.begin(), areas.end());
    print("area %s in all, smallest region %d with %s, largest region %d with %s",
          number_text(total).c_str(), static_cast<int>(smallest - areas.begin()),
          number_text(*smallest).c_str(), static_cast<int>(largest - areas.begin()),
          number_text(*largest).c_str());
    const auto record = [&](auto area) {
        return Record().set("region", static_cast<int>(area - areas.begin())).set("area", *area);
    };
    facts().set("area", total).set("smallest", record(smallest)).set("largest", record(largest));
}

void RegionsCommand::write() {
    const SourceOptions& source = curve_input_.source();
    const auto leftover = [&] { return curve_input_.found().leftover(); };
    outputs_.write({[&](kit::OutputFile& out) { map_.write(out); },
                    [&] {
                        return source.in_input_system(
                            kit::features_of(map_, measured_ ? &*measured_ : nullptr));
                    }},
                   [&](kit::PictureCanvas& canvas) {
                       kit::draw(map_, canvas, view_.options());
                       view_.report_left_out(map_, canvas.size());
                   },
                   {[&](kit::OutputFile& out) { leftover().write(out); },
                    [&] { return source.in_input_system(kit::features_of(leftover())); }});
}

} // namespace
} // namespace korvel::command
