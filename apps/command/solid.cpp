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
#include "kit/base/error.h"
#include "kit/files/model_file.h"
#include "kit/maps/cap.h"
#include "kit/maps/region_colours.h"
#include "kit/maps/region_sets.h"
#include "kit/solids/join.h"
#include "kit/solids/surface.h"

namespace korvel::command {
namespace {

class SolidCommand {
public:
    explicit SolidCommand(CLI::App& command);
    void run();

private:
    void read_arguments();
    void raise_regions();
    bool raise(int region);
    void leave_out(int region) const;
    void colour_bodies();
    void check_bodies() const;
    void report(double milliseconds) const;

    RegionInput input_;
    std::string levels_;
    int axis_ = 1;
    std::string unit_ = "1,1";
    std::string origin_ = "0,0";
    std::string fill_name_ = "auto";
    bool is_verbose_ = false;
    Outputs outputs_;

    std::vector<double> lo_hi_;
    std::vector<double> scale_; // map units to a model unit, along x and y
    tagPOINT zero_ = {};        // of the map, comes to 0,0
    kit::Fill fill_ = kit::Fill::automatic;

    kit::Map map_;
    PLYDT set_;
    TMOD3D model_;
    std::vector<int> raised_; // the region of each body
    int by_front_ = 0;
};

// The notice that the library shows for each body: on standard error, or not at all.
class Notices {
public:
    explicit Notices(bool are_shown)
        : former_(set_message_box_handler([are_shown](const char* text, unsigned) {
              if (are_shown) {
                  std::fputs(text, stderr);
              }
              return IDOK;
          })) {}
    ~Notices() { set_message_box_handler(former_); }
    Notices(const Notices&) = delete;
    Notices& operator=(const Notices&) = delete;

private:
    message_box_handler former_;
};

void SolidCommand::run() {
    input_.check();
    read_arguments();
    outputs_.check();
    map_ = input_.load();
    kit::copy_oriented(map_, set_);
    const Stopwatch time;
    raise_regions();
    colour_bodies();
    check_bodies();
    report(time.milliseconds());
    outputs_.write([&](kit::OutputFile& out) { kit::write_model(model_, out.stream()); });
}

} // namespace

void add_solid_command(CLI::App& program) {
    add_command<SolidCommand>(program, "solid", "Raise regions to bodies");
}

namespace {

SolidCommand::SolidCommand(CLI::App& command) {
    input_.add_options(command);
    command.add_option("--levels", levels_, "The lower and the upper level of the bodies")
        ->required()
        ->type_name("LO,HI");
    command
        .add_option("--axis", axis_,
                    "Map x,y and level become: 1 x,y,level  2 x,level,y  3 level,x,y")
        ->type_name("1|2|3")
        ->check(CLI::Range(1, 3).description(""))
        ->capture_default_str();
    command.add_option("--unit", unit_, "Units of the map to a unit of the model, along x and y")
        ->type_name("SX,SY")
        ->capture_default_str();
    command.add_option("--origin", origin_, "The point of the map that becomes 0,0")
        ->type_name("X,Y")
        ->capture_default_str();
    command.add_option("--fill", fill_name_, "How the caps are triangulated")
        ->type_name("front|delaunay|auto")
        ->check(CLI::IsMember({"front", "delaunay", "auto"}).description(""))
        ->capture_default_str();
    command.add_flag("--verbose", is_verbose_, "Show the library's notices on standard error");
    outputs_.add_file(command, "Write the model")->required();
    command.footer(
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
    lo_hi_ = parse_reals("--levels", levels_, "LO,HI");
    if (!(lo_hi_[0] < lo_hi_[1])) {
        refuse("--levels", levels_, "LO,HI with LO below HI");
    }
    scale_ = parse_reals("--unit", unit_, "SX,SY");
    if (scale_[0] == 0 || scale_[1] == 0) {
        refuse("--unit", unit_, "SX,SY, neither of them 0");
    }
    zero_ = parse_lattice_point("--origin", origin_);
    fill_ = fill_name_ == "front"      ? kit::Fill::front
            : fill_name_ == "delaunay" ? kit::Fill::delaunay
                                       : kit::Fill::automatic;
}

void SolidCommand::raise_regions() {
    const Notices notices(is_verbose_);
    ProgressLine progress("raising regions");
    const int regions = set_.region_list.GetSize();
    for (int region = 0; region < regions; ++region) {
        if (raise(region)) {
            raised_.push_back(region);
        } else {
            leave_out(region);
        }
        progress.update(region + 1, regions);
    }
    if (raised_.empty()) {
        throw kit::input_error(input_.file() + ": there is no region to raise");
    }
    kit::derive(model_);
}

bool SolidCommand::raise(int region) {
    PLYDT cap;
    const kit::Filled filled = kit::make_cap(set_, set_.region_list[region], fill_, cap);
    if (filled == kit::Filled::not_at_all) {
        return false;
    }
    by_front_ += filled == kit::Filled::by_front ? 1 : 0;
    cap.CoordinatesTrans(axis_, zero_.x, zero_.y, 0, 0, scale_[0], scale_[1], lo_hi_[0], lo_hi_[1]);
    TMOD3D body;
    body.create3dmode(cap);
    kit::append_bodies(body, model_);
    return true;
}

void SolidCommand::leave_out(int region) const {
    const std::string name = RegionInput::name(map_[region]);
    if (fill_ != kit::Fill::front) {
        throw kit::input_error(
            input_.file() + ": " + name +
            ": cannot be raised: its rings cross, overlap, cut it apart or have no area");
    }
    warn(name + ": left out, the front's triangles do not fit its outline");
}

void SolidCommand::colour_bodies() {
    constexpr double saturation = 0.55;
    constexpr double lightness = 0.6;
    const std::vector<double> hues = map_.distinct_hues();
    for (int body = 0; body < model_.bodies.GetSize(); ++body) {
        model_.bodies[body].hue = hues[raised_[body]];
        model_.bodies[body].saturation = saturation;
        model_.bodies[body].lightness = lightness;
    }
}

void SolidCommand::check_bodies() const {
    const std::vector<kit::Surface> all = kit::surfaces(model_);
    for (std::size_t body = 0; body < all.size(); ++body) {
        if (!all[body].is_clean()) {
            throw kit::input_error(input_.file() + ": " + RegionInput::name(map_[raised_[body]]) +
                                   ": its body would be " + kit::state_text(all[body]));
        }
    }
    warn_of_rounding(model_, "; --origin and --unit bring the model closer to 0,0");
}

void SolidCommand::report(double milliseconds) const {
    std::printf("%s in %.1f ms: %s\n", counted(model_.bodies.GetSize(), "body", "bodies").c_str(),
                milliseconds, model_figures(model_).c_str());
    std::printf("caps: %d by the front, %d by Delaunay triangles\n", by_front_,
                model_.bodies.GetSize() - by_front_);
    std::printf("bounds %s\n", bounds_text(model_.wrap_cuboid, 3).c_str());
}

} // namespace
} // namespace korvel::command
