#include <cstdio>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/messages.h"
#include "kit/base/error.h"
#include "kit/files/region_file.h"

namespace korvel::command {
namespace {

class LocateCommand {
public:
    explicit LocateCommand(CLI::App& command);
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
    CCPloy2DRg regions;
    const kit::TextFile file(input_);
    if (const auto note = kit::read_regions(file, regions)) {
        warn(*note);
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
        double place[] = {points[i].x, points[i].y};
        const int found = regions.search_pt_polyrg(place);
        const std::string answer = found >= 0 ? std::to_string(found) : "none";
        std::printf("%s %s\n", points_[i].c_str(), answer.c_str());
    }
}

} // namespace

void add_locate_command(CLI::App& program) {
    add_command<LocateCommand>(program, "locate", "Find the region that contains a point");
}

namespace {

LocateCommand::LocateCommand(CLI::App& command) {
    command.add_option("REGIONS", input_, "Polygon-region file")->required()->type_name("FILE");
    command.add_option("POINTS", points_, "Points to look up")->required()->type_name("X,Y");
    command.footer(
        "One line for each point: the point and the index of the first region that\n"
        "contains it, or 'none'. Holes do not belong to a region, but a hole that is a region of\n"
        "its own is found.\n"
        "\n"
        "Example:\n"
        "  korvel locate states.regions 20000,-60000 0,0");
}

} // namespace
} // namespace korvel::command
