#include "apps/command/curve_input.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"
#include "apps/command/progress_line.h"

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
    options.add("--select", select_, "X,Y", "Only the region under this point; may be repeated")
        .repeated();
}

void CurveInput::check() const {
    check_tolerance(options_.tolerance);
    if (!(options_.min_area >= 0) || !std::isfinite(options_.min_area)) {
        refuse("--min-area", number_text(options_.min_area), "a finite area, 0 or more");
    }
    if (options_.as_traced && options_.min_area > 0) {
        throw kit::input_error("korvel: --min-area excludes --as-traced");
    }
}

void CurveInput::load(const kit::TextFile& file) {
    for (const std::string& text : select_) {
        points_.push_back(parse_lattice_point("--select", text));
    }
    const Stopwatch reading;
    kit::Network network = kit::Network::read(file);
    const double read_time = reading.milliseconds();
    std::printf("%s: %s, %s\n", file.name.c_str(), counted(network.curve_count(), "curve").c_str(),
                counted(network.point_count(), "point").c_str());

    const Stopwatch finding;
    {
        ProgressLine progress("finding regions");
        found_ = kit::find_regions(std::move(network), options_, progress.context());
    }
    report();
    std::printf("reading %.1f ms, finding regions %.1f ms\n", read_time, finding.milliseconds());
}

void CurveInput::report() const {
    const kit::Map& map = found_->map();
    const kit::NetworkReport& report = found_->report();
    if (report.crossings + report.duplicates + report.joined_ends > 0) {
        std::printf("%s split, %s resolved, %s joined\n",
                    counted(report.crossings, "crossing").c_str(),
                    counted(report.duplicates, "overlap").c_str(),
                    counted(report.joined_ends, "end").c_str());
    }
    int holes = 0;
    for (const kit::Region region : map) {
        holes += region.hole_count();
    }
    std::printf("%s with %s, %s\n", counted(map.size(), "region").c_str(),
                counted(holes, "hole").c_str(), counted(report.points, "distinct point").c_str());
    if (!options_.as_traced) {
        report_leftover();
        report_slivers();
    }
}

void CurveInput::report_leftover() const {
    const kit::NetworkReport& report = found_->report();
    if (report.segments != report.borders) {
        std::printf("%s: %s, %d dangling, %s, %s\n", counted(report.segments, "segment").c_str(),
                    counted(report.borders, "border").c_str(), report.dangling,
                    counted(report.bridges, "bridge").c_str(),
                    counted(report.duplicates, "duplicate").c_str());
    }
    if (options_.min_area > 0) {
        std::printf("%s merged into neighbours\n", counted(report.merged, "region").c_str());
    }
}

void CurveInput::report_slivers() const {
    const std::vector<int> slivers = found_->map().slivers();
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
    std::vector<int> regions;
    for (std::size_t i = 0; i < points_.size(); ++i) {
        const kit::Point2 point = kit::to_point(points_[i]);
        const kit::Map& map = found_->map();
        const std::optional<int> region =
            options_.as_traced ? map.outline_at(point) : map.region_at(point);
        if (region) {
            std::printf("%s: region %d\n", select_[i].c_str(), *region);
            regions.push_back(*region);
        } else {
            warn(select_[i] + ": no region contains this point");
        }
    }
    return regions;
}

} // namespace korvel::command
