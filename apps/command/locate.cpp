#include <string>

#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/point_input.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class LocateCommand {
public:
    explicit LocateCommand(Options options);
    void run();

private:
    kit::Map load_map() const;

    std::string input_;
    PointInput points_{"X,Y"};
};

void LocateCommand::run() {
    points_.load(input_, "REGIONS");
    const kit::Map map = load_map();
    const kit::RegionLocator locator(map);
    points_.answer("region", [&](const double* xy) { return locator.region_at({xy[0], xy[1]}); });
}

kit::Map LocateCommand::load_map() const {
    if (!holds_features(input_)) {
        return load_regions(read_input(input_));
    }
    facts().set("input", shown(input_));
    Task task("finding regions");
    return kit::regions_of(read_features(input_, {}, task.context()), task.context());
}

} // namespace

void add_locate_command(Program& program) {
    add_command<LocateCommand>(program, "locate", "Find the region that contains a point");
}

namespace {

LocateCommand::LocateCommand(Options options) {
    options.add("REGIONS", input_, "FILE", "Polygon-region file, or polygons or lines of features")
        .required();
    points_.add_options(options);
    options.footer(
        "One line for each point: the point and the index of the first region that\n"
        "contains it, or 'none'. Holes do not belong to a region, but a hole that is a region of\n"
        "its own is found.\n"
        "\n"
        "Examples:\n"
        "  korvel locate states.regions 20000,60000 0,0\n"
        "  korvel locate states.regions < places.txt");
}

} // namespace
} // namespace korvel::command
