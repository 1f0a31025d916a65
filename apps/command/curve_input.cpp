#include "apps/command/curve_input.h"

#include <cstdio>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"
#include "apps/command/progress_line.h"
#include "kit/maps/find_regions.h"

namespace korvel::command {

void CurveInput::add_options(CLI::App& command) {
    command
        .add_option("--tolerance", tolerance_,
                    "Curve ends closer than half of this are joined; 0 joins within 3")
        ->type_name("T")
        ->capture_default_str();
    command.add_option("--select", select_, "Only the region under this point; may be repeated")
        ->type_name("X,Y")
        ->allow_extra_args(false);
}

void CurveInput::check() const {
    check_tolerance(tolerance_);
}

void CurveInput::load(const kit::TextFile& file) {
    for (const std::string& text : select_) {
        points_.push_back(parse_lattice_point("--select", text));
    }
    const Stopwatch reading;
    curves_ = kit::read_curves(file);
    const double read_time = reading.milliseconds();
    std::printf("%s: %s, %s\n", file.name.c_str(),
                counted(curves_.counts.GetSize(), "curve").c_str(),
                counted(curves_.pts.GetSize(), "point").c_str());

    const Stopwatch finding;
    {
        const ProgressLine progress("finding regions");
        builder_.SetTolerance(tolerance_);
        kit::find_regions(curves_, file.name, builder_);
    }
    int holes = 0;
    for (const CREGION::PyToRg& region : builder_.regions) {
        holes += region.rings.GetSize() - 1;
    }
    std::printf("%s with %s, %s\n", counted(builder_.regions.GetSize(), "region").c_str(),
                counted(holes, "hole").c_str(),
                counted(builder_.unique_pts.GetSize(), "distinct point").c_str());
    std::printf("reading %.1f ms, finding regions %.1f ms\n", read_time, finding.milliseconds());
}

std::vector<int> CurveInput::select() {
    for (std::size_t i = 0; i < points_.size(); ++i) {
        builder_.SetSelectRegion(points_[i]);
        const std::vector<int> found = selected_regions();
        if (found.empty()) {
            warn(select_[i] + ": no region contains this point");
        } else {
            std::printf("%s: region %d\n", select_[i].c_str(), found.front());
        }
    }
    for (const tagPOINT point : points_) {
        builder_.AddSelectRegion(point);
    }
    return selected_regions();
}

std::vector<int> CurveInput::selected_regions() const {
    std::vector<int> selected;
    for (int i = 0; i < builder_.regions.GetSize(); ++i) {
        if (builder_.regions[i].is_select != 0) {
            selected.push_back(i);
        }
    }
    return selected;
}

} // namespace korvel::command
