#include "apps/command/curve_input.h"

#include <algorithm>
#include <cmath>

#include "apps/command/arguments.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/placement_report.h"
#include "apps/command/report.h"
#include "apps/command/task.h"

namespace korvel::command {
namespace {

std::string listed(const std::vector<int>& regions);

} // namespace

void CurveInput::add_options(Options options, SourceOptions::Default projection) {
    tolerance_option_ =
        options.add("--tolerance", tolerance_, "T",
                    "Curve ends closer than half of this are joined; 0 joins within 3\n"
                    "steps of the grid; one step if not given");
    options.add_flag(
        "--as-traced", options_.as_traced,
        "The library's own answer: overlaps stay, holes depend on the order of curves");
    options.add("--min-area", options_.min_area, "A",
                "Merge smaller regions into the neighbour with the longest common border");
    selection_.add_option(options);
    source_.add_options(options, projection);
}

void CurveInput::check() {
    selection_.check();
    source_.check();
    check_tolerance(tolerance_);
    if (tolerance_option_.is_given()) {
        options_.tolerance = tolerance_;
    }
    if (!(options_.min_area >= 0) || !std::isfinite(options_.min_area)) {
        refuse("--min-area", number_text(options_.min_area), "a finite area, 0 or more");
    }
    if (options_.as_traced && options_.min_area > 0) {
        throw kit::input_error("--min-area excludes --as-traced");
    }
}

void CurveInput::load(const kit::TextFile& file) {
    file_ = file.name;
    kit::Network network = [&] {
        const Task task("reading curves");
        return kit::Network::read(file, source_.may_project() ? kit::GridChoice() : source_.grid());
    }();
    if (source_.is_projected()) {
        kit::Features curves = kit::features_of(network);
        source_.project(curves);
        network = kit::network_of(curves, source_.grid());
    }
    find(std::move(network), nullptr);
}

void CurveInput::load_features(const std::string& name) {
    file_ = shown(name);
    kit::Features features = source_.read(name);
    source_.project(features);
    kit::Network network = [&] {
        try {
            return kit::network_of(features, source_.grid());
        } catch (const kit::Error& error) {
            throw kit::input_error(file_ + ": " + error.what(), {.file = file_});
        }
    }();
    if (network.curve_count() == 0) {
        throw kit::input_error(file_ + ": contains neither lines nor polygons", {.file = file_});
    }
    if (features.heights > 0) {
        print("%zu heights left out", features.heights);
        facts().set("heights", static_cast<int>(features.heights));
    }
    find(std::move(network), &features);
}

void CurveInput::find(kit::Network network, const kit::Features* features) {
    print("%s: %s, %s", file_.c_str(), counted(network.curve_count(), "curve").c_str(),
          counted(network.point_count(), "point").c_str());
    facts()
        .set("input", file_)
        .set("curves", network.curve_count())
        .set("points", network.point_count());
    report_placement(network.placement(), network.largest_shift());
    {
        Task task("finding regions");
        found_ = kit::find_regions(std::move(network), options_, task.context());
    }
    report();
    map_ = found_->take_map();
    if (features != nullptr) {
        take_attributes(*features);
    }
    source_.label(map_, features);
    if (!options_.as_traced) {
        report_slivers();
    }
}

void CurveInput::take_attributes(const kit::Features& features) {
    if (!kit::has_shape(features, kit::Shape::polygons)) {
        return;
    }
    Task task("finding source polygons");
    kit::SourceReport report;
    map_ = kit::with_sources(map_, features, source_.keeps_gaps(), report, task.context());
    report_sources(report, features);
}

void CurveInput::report_sources(const kit::SourceReport& report,
                                const kit::Features& features) const {
    const auto polygons = std::count_if(
        features.features.begin(), features.features.end(),
        [](const kit::Feature& feature) { return feature.shape == kit::Shape::polygons; });
    facts()
        .set("polygons", static_cast<int>(polygons))
        .set("gaps", report.gaps)
        .set("in_several_polygons", report.overlaps);
    if (report.gaps > 0) {
        print("%s between the polygons %s", counted(report.gaps, "region").c_str(),
              source_.keeps_gaps() ? "kept" : "left out; --keep-gaps keeps them");
    }
    if (report.overlaps.empty()) {
        return;
    }
    warn(counted(static_cast<int>(report.overlaps.size()), "region") +
         " inside more than one polygon, the first of which counts: " + listed(report.overlaps));
}

void CurveInput::report() const {
    const kit::Map& map = found_->map();
    const kit::NetworkReport& report = found_->report();
    if (report.crossings + report.duplicates + report.joined_ends > 0) {
        print("%s split, %s resolved, %s joined", counted(report.crossings, "crossing").c_str(),
              counted(report.duplicates, "overlap").c_str(),
              counted(report.joined_ends, "end").c_str());
    }
    int holes = 0;
    for (const kit::Region region : map) {
        holes += region.hole_count();
    }
    facts()
        .set("crossings", report.crossings)
        .set("overlaps", report.duplicates)
        .set("joined_ends", report.joined_ends)
        .set("regions", map.size())
        .set("holes", holes)
        .set("distinct_points", report.points);
    print("%s with %s, %s", counted(map.size(), "region").c_str(), counted(holes, "hole").c_str(),
          counted(report.points, "distinct point").c_str());
    if (!options_.as_traced) {
        report_leftover();
    }
}

void CurveInput::report_leftover() const {
    const kit::NetworkReport& report = found_->report();
    facts()
        .set("segments", report.segments)
        .set("borders", report.borders)
        .set("dangling", report.dangling)
        .set("bridges", report.bridges)
        .set("duplicates", report.duplicates)
        .set("merged", report.merged);
    if (report.segments != report.borders) {
        print("%s: %s, %d dangling, %s, %s", counted(report.segments, "segment").c_str(),
              counted(report.borders, "border").c_str(), report.dangling,
              counted(report.bridges, "bridge").c_str(),
              counted(report.duplicates, "duplicate").c_str());
    }
    if (options_.min_area > 0) {
        print("%s merged into neighbours", counted(report.merged, "region").c_str());
    }
}

void CurveInput::report_slivers() const {
    const std::vector<int> slivers = map_.slivers();
    facts().set("slivers", slivers);
    if (slivers.empty()) {
        return;
    }
    warn(counted(static_cast<int>(slivers.size()), "sliver") + ": " + listed(slivers) +
         "; --min-area merges small regions");
}

kit::Map CurveInput::around(const kit::Point2& seed) const {
    if (options_.as_traced) {
        return found_->around(seed);
    }
    const std::optional<int> region = map_.region_at(seed);
    return region ? map_.kept(std::vector<int>{*region}) : kit::Map();
}

std::vector<int> CurveInput::select() const {
    return selection_.regions(map_, file_, options_.as_traced);
}

namespace {

// "region 3, 7 and 2 more".
std::string listed(const std::vector<int>& regions) {
    constexpr std::size_t most_named = 10;
    std::string text;
    for (std::size_t i = 0; i < std::min(regions.size(), most_named); ++i) {
        text.append(i == 0 ? "region " : ", ").append(std::to_string(regions[i]));
    }
    if (regions.size() > most_named) {
        text.append(" and ").append(std::to_string(regions.size() - most_named)).append(" more");
    }
    return text;
}

} // namespace

} // namespace korvel::command
