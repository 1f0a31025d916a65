#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/fill_choice.h"
#include "apps/command/heights.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "apps/command/progress_line.h"
#include "apps/command/region_input.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class SolidCommand {
public:
    explicit SolidCommand(Options options);
    void run();

private:
    void read_arguments();
    void read_heights(const kit::Map& map);
    kit::Raised raise(const kit::Map& map) const;
    void report_left_out(const kit::Map& map, const kit::Raised& raised) const;

    RegionInput input_;
    std::string levels_;
    std::string heights_;
    int axis_ = 1;
    std::string unit_ = "1,1";
    std::string origin_ = "0,0";
    FillChoice fill_;
    bool is_verbose_ = false;
    bool is_strict_ = false;
    Outputs outputs_;

    kit::RaiseOptions options_;
};

std::string why_nothing_is_raised(const kit::Map& map, const kit::Raised& raised);
std::string reason_text(const kit::Map& map, const kit::LeftOut& left_out);
const char* summary_text(kit::LeftOut::Reason reason);
void report(const kit::Raised& raised, double milliseconds);

void SolidCommand::run() {
    input_.check();
    read_arguments();
    outputs_.check();
    const kit::Map map = input_.load();
    read_heights(map);
    const Stopwatch time;
    const kit::Raised raised = raise(map);
    const double milliseconds = time.milliseconds();
    report_left_out(map, raised);
    refuse_collapse(
        raised.solids, input_.file(),
        "levels farther apart, a smaller --unit or an --origin on the map keep them apart");
    warn_of_rounding(raised.solids, "; --origin and --unit bring the model closer to 0,0");
    report(raised, milliseconds);
    outputs_.write([&](kit::OutputFile& out) { raised.solids.write(out); });
}

} // namespace

void add_solid_command(Program& program) {
    add_command<SolidCommand>(program, "solid", "Raise regions to bodies");
}

namespace {

SolidCommand::SolidCommand(Options options) {
    input_.add_options(options);
    options.add("--levels", levels_, "LO,HI",
                "The lower and the upper level of the bodies without other ones");
    options.add("--heights", heights_, "FILE",
                "Levels of single regions: lines of a region's number, or a point x,y inside it, "
                "and LO HI");
    options
        .add("--axis", axis_, "1|2|3",
             "Map x,y and level become: 1 x,y,level  2 x,level,y  3 level,x,y")
        .from_to(1, 3)
        .with_default();
    options.add("--unit", unit_, "SX,SY", "Units of the map to a unit of the model, along x and y")
        .with_default();
    options.add("--origin", origin_, "X,Y", "The point of the map that becomes 0,0").with_default();
    fill_.add_option(options, "How the caps are triangulated");
    options.add_flag("--separate", options_.separate,
                     "Give each body vertices and walls of its own");
    add_threads_option(options, options_.threads);
    options.add_flag("--strict", is_strict_, "Exit status 3 when a region is left out");
    options.add_flag("--verbose", is_verbose_,
                     "Show the library's notices and the regions left out on standard error");
    outputs_.add_file(options, "Write the model").required();
    options.footer(
        "Each region becomes one closed body in a hue of its own. Bodies of neighbours share\n"
        "vertices, edges and walls. Regions that cannot be raised are left out and counted,\n"
        "with --fill front also those that the library's own triangles do not fit; auto uses\n"
        "constrained Delaunay triangles for these.\n"
        "A map whose y grows downward comes out the right way up with --unit 1,-1.\n"
        "\n"
        "Examples:\n"
        "  korvel solid states.curves --levels 0,3000 -o states.model\n"
        "  korvel solid states.regions --select 20000,-60000 --levels 0,1 --unit 1000,1000 \\\n"
        "      --origin 20000,-60000 -o one.model");
}

void SolidCommand::read_arguments() {
    if (levels_.empty() && heights_.empty()) {
        throw kit::input_error("korvel: --levels or --heights is required");
    }
    if (!levels_.empty()) {
        const std::vector<double> levels = parse_reals("--levels", levels_, "LO,HI");
        if (!(levels[0] < levels[1])) {
            refuse("--levels", levels_, "LO,HI with LO below HI");
        }
        options_.low = levels[0];
        options_.high = levels[1];
    }
    options_.only_listed = levels_.empty();
    const std::vector<double> unit = parse_reals("--unit", unit_, "SX,SY");
    if (unit[0] == 0 || unit[1] == 0) {
        refuse("--unit", unit_, "SX,SY, neither of them 0");
    }
    options_.unit = {unit[0], unit[1]};
    options_.origin = parse_lattice_point("--origin", origin_);
    options_.axis = axis_ == 1   ? kit::LevelAxis::z
                    : axis_ == 2 ? kit::LevelAxis::y
                                 : kit::LevelAxis::x;
    options_.fill = fill_.fill();
    if (is_verbose_) {
        options_.on_notice = [](const std::string& text) { std::fputs(text.c_str(), stderr); };
    }
}

void SolidCommand::read_heights(const kit::Map& map) {
    if (!heights_.empty()) {
        options_.levels_of_region = command::read_heights(heights_, map, input_.has_selection());
    }
}

kit::Raised SolidCommand::raise(const kit::Map& map) const {
    ProgressLine progress("raising regions");
    return kit::raise(map, options_, progress.context());
}

void SolidCommand::report_left_out(const kit::Map& map, const kit::Raised& raised) const {
    std::map<kit::LeftOut::Reason, int> counts;
    for (const kit::LeftOut& left_out : raised.left_out) {
        ++counts[left_out.reason];
        if (is_verbose_) {
            warn(RegionInput::name(map[left_out.region]) + ": left out, " +
                 reason_text(map, left_out));
        }
    }
    if (raised.solids.empty()) {
        throw kit::input_error(input_.file() + ": " + why_nothing_is_raised(map, raised));
    }
    if (!counts.empty()) {
        std::string reasons;
        for (const auto& [reason, count] : counts) {
            reasons +=
                (reasons.empty() ? "" : ", ") + std::to_string(count) + " " + summary_text(reason);
        }
        warn(input_.file() + ": " + counted(static_cast<int>(raised.left_out.size()), "region") +
             " left out: " + reasons +
             (is_verbose_                   ? ""
              : raised.left_out.size() == 1 ? " (--verbose names it)"
                                            : " (--verbose names them)"));
    }
    if (is_strict_ && !counts.empty()) {
        note_incomplete();
    }
}

std::string why_nothing_is_raised(const kit::Map& map, const kit::Raised& raised) {
    if (raised.left_out.empty()) {
        return "there is no region to raise";
    }
    const kit::LeftOut& first = raised.left_out.front();
    return "no region can be raised; " + RegionInput::name(map[first.region]) + ": " +
           reason_text(map, first);
}

std::string reason_text(const kit::Map& map, const kit::LeftOut& left_out) {
    if (left_out.reason == kit::LeftOut::Reason::unsound_rings) {
        if (const auto flaw = kit::flaw_of(map, left_out.region)) {
            return kit::text(*flaw);
        }
    }
    return kit::text(left_out);
}

const char* summary_text(kit::LeftOut::Reason reason) {
    switch (reason) {
    case kit::LeftOut::Reason::front_does_not_fit:
        return "that the front's triangles do not fit";
    case kit::LeftOut::Reason::unsound_rings:
        return "with rings that enclose no sound area";
    case kit::LeftOut::Reason::unsound_body:
        return "without a closed body";
    case kit::LeftOut::Reason::no_levels:
        break;
    }
    return "without levels";
}

void report(const kit::Raised& raised, double milliseconds) {
    std::printf("%s in %.1f ms: %s\n", counted(raised.solids.size(), "body", "bodies").c_str(),
                milliseconds, model_figures(raised.solids).c_str());
    std::printf("caps: %d by the front, %d by Delaunay triangles\n", raised.caps_by_front,
                raised.caps_by_delaunay);
    if (raised.welded.faces_shared > 0) {
        std::printf("%s\n", weld_text(raised.welded).c_str());
    }
    std::printf("bounds %s\n", bounds_text(raised.solids).c_str());
}

} // namespace
} // namespace korvel::command
