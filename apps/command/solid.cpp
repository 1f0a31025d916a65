#include <cstdio>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
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
    kit::Raised raise(const kit::Map& map) const;
    void leave_out(const kit::Map& map, const kit::LeftOut& left_out) const;

    RegionInput input_;
    std::string levels_;
    int axis_ = 1;
    std::string unit_ = "1,1";
    std::string origin_ = "0,0";
    std::string fill_name_ = "auto";
    bool is_verbose_ = false;
    Outputs outputs_;

    kit::RaiseOptions options_;
};

void report(const kit::Raised& raised, double milliseconds);

void SolidCommand::run() {
    input_.check();
    read_arguments();
    outputs_.check();
    const kit::Map map = input_.load();
    const Stopwatch time;
    const kit::Raised raised = raise(map);
    warn_of_rounding(raised.solids, "; --origin and --unit bring the model closer to 0,0");
    report(raised, time.milliseconds());
    outputs_.write([&](kit::OutputFile& out) { raised.solids.write(out); });
}

} // namespace

void add_solid_command(Program& program) {
    add_command<SolidCommand>(program, "solid", "Raise regions to bodies");
}

namespace {

SolidCommand::SolidCommand(Options options) {
    input_.add_options(options);
    options.add("--levels", levels_, "LO,HI", "The lower and the upper level of the bodies")
        .required();
    options
        .add("--axis", axis_, "1|2|3",
             "Map x,y and level become: 1 x,y,level  2 x,level,y  3 level,x,y")
        .from_to(1, 3)
        .with_default();
    options.add("--unit", unit_, "SX,SY", "Units of the map to a unit of the model, along x and y")
        .with_default();
    options.add("--origin", origin_, "X,Y", "The point of the map that becomes 0,0").with_default();
    options.add("--fill", fill_name_, "front|delaunay|auto", "How the caps are triangulated")
        .one_of({"front", "delaunay", "auto"})
        .with_default();
    options.add_flag("--verbose", is_verbose_, "Show the library's notices on standard error");
    outputs_.add_file(options, "Write the model").required();
    options.footer(
        "Each region becomes one closed body in a hue of its own. --fill front takes the\n"
        "library's own triangles and leaves out, with a warning, regions that they do not\n"
        "fit; auto uses constrained Delaunay triangles for those.\n"
        "A map whose y grows downward comes out the right way up with --unit 1,-1.\n"
        "\n"
        "Examples:\n"
        "  korvel solid states.curves --levels 0,3000 -o states.model\n"
        "  korvel solid states.regions --select 20000,-60000 --levels 0,1 --unit 1000,1000 \\\n"
        "      --origin 20000,-60000 -o one.model");
}

void SolidCommand::read_arguments() {
    const std::vector<double> levels = parse_reals("--levels", levels_, "LO,HI");
    if (!(levels[0] < levels[1])) {
        refuse("--levels", levels_, "LO,HI with LO below HI");
    }
    const std::vector<double> unit = parse_reals("--unit", unit_, "SX,SY");
    if (unit[0] == 0 || unit[1] == 0) {
        refuse("--unit", unit_, "SX,SY, neither of them 0");
    }
    options_.low = levels[0];
    options_.high = levels[1];
    options_.unit = {unit[0], unit[1]};
    options_.origin = parse_lattice_point("--origin", origin_);
    options_.axis = axis_ == 1   ? kit::LevelAxis::z
                    : axis_ == 2 ? kit::LevelAxis::y
                                 : kit::LevelAxis::x;
    options_.fill = fill_name_ == "front"      ? kit::Fill::front
                    : fill_name_ == "delaunay" ? kit::Fill::delaunay
                                               : kit::Fill::automatic;
    if (is_verbose_) {
        options_.on_notice = [](const std::string& text) { std::fputs(text.c_str(), stderr); };
    }
}

kit::Raised SolidCommand::raise(const kit::Map& map) const {
    ProgressLine progress("raising regions");
    kit::RaiseOptions options = options_;
    options.on_left_out = [&](const kit::LeftOut& left_out) { leave_out(map, left_out); };
    kit::Raised raised = kit::raise(map, options, progress.context());
    if (raised.solids.empty()) {
        throw kit::input_error(input_.file() + ": there is no region to raise");
    }
    return raised;
}

void SolidCommand::leave_out(const kit::Map& map, const kit::LeftOut& left_out) const {
    const std::string name = RegionInput::name(map[left_out.region]);
    switch (left_out.reason) {
    case kit::LeftOut::Reason::front_does_not_fit:
        warn(name + ": left out, " + kit::text(left_out));
        return;
    case kit::LeftOut::Reason::unsound_rings:
        throw kit::input_error(input_.file() + ": " + name +
                               ": cannot be raised: " + kit::text(left_out));
    case kit::LeftOut::Reason::unsound_body:
        throw kit::input_error(input_.file() + ": " + name + ": " + kit::text(left_out));
    }
}

void report(const kit::Raised& raised, double milliseconds) {
    std::printf("%s in %.1f ms: %s\n", counted(raised.solids.size(), "body", "bodies").c_str(),
                milliseconds, model_figures(raised.solids).c_str());
    std::printf("caps: %d by the front, %d by Delaunay triangles\n", raised.caps_by_front,
                raised.caps_by_delaunay);
    std::printf("bounds %s\n", bounds_text(raised.solids).c_str());
}

} // namespace
} // namespace korvel::command
