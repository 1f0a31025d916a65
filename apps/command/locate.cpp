#include <optional>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class LocateCommand {
public:
    explicit LocateCommand(Options options);
    void run() const;

private:
    std::string input_;
    std::vector<std::string> points_;
};

void LocateCommand::run() const {
    std::vector<RealPoint> points;
    for (const std::string& text : points_) {
        points.push_back(parse_real_point("POINTS", text));
    }
    const kit::Map map = kit::Map::read(input_, {.on_warning = warn});
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::optional<int> region = map.region_at({points[i].x, points[i].y});
        const std::string answer = region ? std::to_string(*region) : "none";
        print("%s %s", points_[i].c_str(), answer.c_str());
    }
}

} // namespace

void add_locate_command(Program& program) {
    add_command<LocateCommand>(program, "locate", "Find the region that contains a point");
}

namespace {

LocateCommand::LocateCommand(Options options) {
    options.add("REGIONS", input_, "FILE", "Polygon-region file").required();
    options.add("POINTS", points_, "X,Y", "Points to look up").required();
    options.footer(
        "One line for each point: the point and the index of the first region that\n"
        "contains it, or 'none'. Holes do not belong to a region, but a hole that is a region of\n"
        "its own is found.\n"
        "\n"
        "Example:\n"
        "  korvel locate states.regions 20000,60000 0,0");
}

} // namespace
} // namespace korvel::command
