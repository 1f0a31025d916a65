#include <cmath>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/fill_choice.h"
#include "apps/command/heights.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "apps/command/region_input.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class SolidCommand {
public:
    explicit SolidCommand(Options options);
    void run();

private:
    void read_arguments();
    void read_units();
    void read_heights(const kit::Map& map);
    kit::Raised raise(const kit::Map& map) const;
    void report_left_out(const kit::Map& map, const kit::Raised& raised) const;

    RegionInput input_;
    std::string levels_;
    std::string heights_;
    std::string height_field_;
    int axis_ = 1;
    std::string unit_ = "1";
    std::string level_unit_;
    std::string origin_ = "0,0";
    FillChoice fill_;
    bool y_down_ = false;
    bool shows_notices_ = false;
    bool is_strict_ = false;
    Outputs outputs_;

    kit::RaiseOptions options_;
    double level_scale_ = 1; // units of the levels to a unit of the model
};

std::string why_nothing_is_raised(const kit::Map& map, const kit::Raised& raised);
std::string reason_text(const kit::Map& map, const kit::LeftOut& left_out);
const char* summary_text(kit::LeftOut::Reason reason);
void report(const kit::Raised& raised);

void SolidCommand::run() {
    input_.check();
    read_arguments();
    outputs_.check();
    const kit::Map map = input_.load();
    read_heights(map);
    const kit::Raised raised = raise(map);
    report_left_out(map, raised);
    if (outputs_.is_model_file()) {
        refuse_collapse(
            raised.solids, input_.file(),
            "levels farther apart, a smaller --unit or an --origin on the map keep them apart");
        warn_of_rounding(raised.solids, "; --origin and --unit bring the model closer to 0,0");
    }
    report(raised);
    outputs_.write_model(raised.solids);
}

} // namespace

void add_solid_command(Program& program) {
    add_command<SolidCommand>(program, "solid", "Raise regions to bodies");
}

namespace {

SolidCommand::SolidCommand(Options options) {
    input_.add_options(options, SourceOptions::Default::automatic);
    options.add("--levels", levels_, "LO,HI",
                "The lower and the upper level of the bodies without other ones");
    options.add("--heights", heights_, "FILE",
                "Levels of single regions: lines of a region's number, or a point x,y inside it, "
                "and LO HI");
    options
        .add("--height-field", height_field_, "FIELD",
             "Raise each region by its value of this attribute, from the level LO of\n"
             "--levels LO or from 0")
        .excludes(options.option("--heights"));
    options
        .add("--axis", axis_, "1|2|3",
             "Map x,y and level become: 1 x,y,level  2 x,level,y  3 level,x,y")
        .from_to(1, 3)
        .with_default();
    options
        .add("--unit", unit_, "S|SX,SY",
             "Units of the map to a unit of the model, along x and y; a negative one mirrors")
        .with_default();
    options.add("--level-unit", level_unit_, "S",
                "The same for levels; those of --unit if not given");
    options.add_flag("--y-down", y_down_, "The map's y grows downward: mirror it");
    options.add("--origin", origin_, "X,Y", "The point of the map that becomes 0,0").with_default();
    fill_.add_option(options, "How the caps are triangulated");
    options.add_flag("--separate", options_.separate,
                     "Give each body vertices and walls of its own");
    add_threads_option(options, options_.threads);
    options.add_flag("--strict", is_strict_, "Exit status 3 when a region is left out");
    options.add_flag("--notices", shows_notices_,
                     "Print the notices of the library's triangulation on standard error");
    outputs_.add_model(options);
    options.footer(
        "Each region becomes one closed body in a hue of its own. Bodies of neighbours share\n"
        "vertices, edges and walls. Regions that cannot be raised are left out and counted,\n"
        "with --fill front also those that the library's own triangles do not fit; auto uses\n"
        "constrained Delaunay triangles for these.\n"
        "--verbose names each region left out.\n"
        "\n"
        "Examples:\n"
        "  korvel solid states.curves --levels 0,3000 -o states.model\n"
        "  korvel solid lands.gpkg --height-field thickness -o ground.model\n"
        "  korvel solid states.regions --select 20000,60000 --levels 0,5000 --unit 1000 \\\n"
        "      --origin 20000,60000 -o one.model");
}

void SolidCommand::read_arguments() {
    if (levels_.empty() && heights_.empty() && height_field_.empty()) {
        throw kit::input_error("--levels, --heights or --height-field is required");
    }
    if (!height_field_.empty()) {
        if (!levels_.empty()) {
            options_.low = parse_reals("--levels", levels_, "LO")[0];
        }
        options_.high = options_.low + 1; // of no region
    } else if (!levels_.empty()) {
        const std::vector<double> levels = parse_reals("--levels", levels_, "LO,HI");
        if (!(levels[0] < levels[1])) {
            refuse("--levels", levels_, "LO,HI with LO below HI");
        }
        options_.low = levels[0];
        options_.high = levels[1];
    }
    options_.only_listed = levels_.empty() || !height_field_.empty();
    read_units();
    const RealPoint origin = parse_real_point("--origin", origin_);
    options_.origin = {origin.x, origin.y};
    options_.axis = axis_ == 1   ? kit::LevelAxis::z
                    : axis_ == 2 ? kit::LevelAxis::y
                                 : kit::LevelAxis::x;
    options_.fill = fill_.fill();
    if (shows_notices_) {
        options_.on_notice = [](const std::string& text) { std::fputs(text.c_str(), stderr); };
    }
}

void SolidCommand::read_units() {
    std::vector<double> unit = parse_reals("--unit", unit_, "S[,SY]");
    unit.push_back(unit[0]);
    if (unit[0] == 0 || unit[1] == 0) {
        refuse("--unit", unit_, "S or SX,SY other than 0");
    }
    options_.unit = {unit[0], y_down_ ? -unit[1] : unit[1]};
    level_scale_ = std::abs(unit[0]);
    if (!level_unit_.empty()) {
        level_scale_ = parse_reals("--level-unit", level_unit_, "S")[0];
    } else if (level_scale_ != std::abs(unit[1])) {
        throw kit::input_error("--unit: " + unit_ +
                               " has two scales: --level-unit is required for that of the levels");
    }
    if (!(level_scale_ > 0)) {
        refuse("--level-unit", level_unit_, "S above 0");
    }
    options_.low /= level_scale_;
    options_.high /= level_scale_;
}

void SolidCommand::read_heights(const kit::Map& map) {
    if (!height_field_.empty()) {
        const double low = options_.low * level_scale_;
        options_.levels_of_region = levels_by_field(map, height_field_, low);
    } else if (!heights_.empty()) {
        options_.levels_of_region = command::read_heights(heights_, map, input_.has_selection());
    }
    for (std::optional<kit::Levels>& levels : options_.levels_of_region) {
        if (levels) {
            levels = {levels->low / level_scale_, levels->high / level_scale_};
        }
    }
}

kit::Raised SolidCommand::raise(const kit::Map& map) const {
    Task task("raising regions");
    return kit::raise(map, options_, task.context());
}

void SolidCommand::report_left_out(const kit::Map& map, const kit::Raised& raised) const {
    std::map<kit::LeftOut::Reason, int> counts;
    std::vector<Record> records;
    for (const kit::LeftOut& left_out : raised.left_out) {
        ++counts[left_out.reason];
        records.push_back(Record()
                              .set("region", map[left_out.region].number())
                              .set("reason", reason_text(map, left_out)));
        if (is_verbose()) {
            warn(RegionInput::name(map[left_out.region]) + ": left out, " +
                 reason_text(map, left_out));
        }
    }
    facts().set("left_out", records);
    if (raised.solids.empty()) {
        throw kit::input_error(shown(input_.file()) + ": " + why_nothing_is_raised(map, raised));
    }
    if (!counts.empty()) {
        std::string reasons;
        for (const auto& [reason, count] : counts) {
            reasons +=
                (reasons.empty() ? "" : ", ") + std::to_string(count) + " " + summary_text(reason);
        }
        warn(shown(input_.file()) + ": " +
             counted(static_cast<int>(raised.left_out.size()), "region") + " left out: " + reasons +
             (is_verbose()                  ? ""
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

void report(const kit::Raised& raised) {
    print("%s: %s", counted(raised.solids.size(), "body", "bodies").c_str(),
          model_figures(raised.solids).c_str());
    print("caps: %d by the front, %d by Delaunay triangles", raised.caps_by_front,
          raised.caps_by_delaunay);
    if (raised.welded.faces_shared > 0) {
        print("%s", weld_text(raised.welded).c_str());
    }
    print("bounds %s", bounds_text(raised.solids).c_str());
    facts()
        .set("model", model_record(raised.solids))
        .set("caps_by_front", raised.caps_by_front)
        .set("caps_by_delaunay", raised.caps_by_delaunay)
        .set("welded", weld_record(raised.welded));
}

} // namespace
} // namespace korvel::command
