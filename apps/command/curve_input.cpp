#include "apps/command/curve_input.h"

#include <cstdio>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"
#include "apps/command/progress_line.h"

namespace korvel::command {

void CurveInput::add_options(Options options) {
    options
        .add("--tolerance", tolerance_, "T",
             "Curve ends closer than half of this are joined; 0 joins within 3")
        .with_default();
    options.add("--select", select_, "X,Y", "Only the region under this point; may be repeated")
        .repeated();
}

void CurveInput::check() const {
    check_tolerance(tolerance_);
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
        found_ =
            kit::find_regions(std::move(network), {.tolerance = tolerance_}, progress.context());
    }
    const kit::Map& map = found_->map();
    int holes = 0;
    for (const kit::Region region : map) {
        holes += region.hole_count();
    }
    std::printf("%s with %s, %s\n", counted(map.size(), "region").c_str(),
                counted(holes, "hole").c_str(),
                counted(found_->builder().unique_pts.GetSize(), "distinct point").c_str());
    std::printf("reading %.1f ms, finding regions %.1f ms\n", read_time, finding.milliseconds());
}

std::vector<int> CurveInput::select() const {
    std::vector<int> regions;
    for (std::size_t i = 0; i < points_.size(); ++i) {
        const std::optional<int> region = found_->map().outline_at(kit::to_point(points_[i]));
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
