#include "apps/command/curve_input.h"

#include <algorithm>
#include <cmath>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"
#include "apps/command/task.h"

namespace korvel::command {

void CurveInput::add_options(Options options) {
    options
        .add("--tolerance", options_.tolerance, "T",
             "Curve ends closer than half of this are joined; 0 joins within 3")
        .with_default();
    options.add_flag(
        "--as-traced", options_.as_traced,
        "The library's own answer: overlaps stay, holes depend on the order of curves");
    options.add("--min-area", options_.min_area, "A",
                "Merge smaller regions into the neighbour with the longest common border");
    selection_.add_option(options);
}

void CurveInput::check() {
    selection_.check();
    check_tolerance(options_.tolerance);
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
        return kit::Network::read(file);
    }();
    print("%s: %s, %s", file_.c_str(), counted(network.curve_count(), "curve").c_str(),
          counted(network.point_count(), "point").c_str());
    facts()
        .set("input", file_)
        .set("curves", network.curve_count())
        .set("points", network.point_count());
    {
        Task task("finding regions");
        found_ = kit::find_regions(std::move(network), options_, task.context());
    }
    report();
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
        report_slivers();
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
    const std::vector<int> slivers = found_->map().slivers();
    facts().set("slivers", slivers);
    if (slivers.empty()) {
        return;
    }
    constexpr std::size_t most_named = 10;
    std::string text = counted(static_cast<int>(slivers.size()), "sliver") + ":";
    for (std::size_t i = 0; i < std::min(slivers.size(), most_named); ++i) {
        text.append(i == 0 ? " region " : ", ").append(std::to_string(slivers[i]));
    }
    if (slivers.size() > most_named) {
        text += " and " + std::to_string(slivers.size() - most_named) + " more";
    }
    warn(text + "; --min-area merges small regions");
}

std::vector<int> CurveInput::select() const {
    return selection_.regions(found_->map(), file_, options_.as_traced);
}

} // namespace korvel::command
