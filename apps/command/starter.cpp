#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class StarterCommand {
public:
    explicit StarterCommand(Options options);
    void run();

private:
    std::vector<double> parse_size() const;

    static constexpr int most_rounds = 7; // 400 000 faces, a second of work

    std::string kind_;
    std::string center_ = "0,0,0";
    std::string size_;
    int rounds_ = 0;
    Outputs outputs_;
};

void StarterCommand::run() {
    const kit::Point3 center = parse_point3("--center", center_);
    const std::vector<double> size = parse_size();
    outputs_.check();
    const kit::Solids solids = [&] {
        Task task("dividing faces");
        return kind_ == "cube"
                   ? kit::make_cuboid(center, {size[0], size[1], size[2]}, rounds_, task.context())
                   : kit::make_ball(center, size[0], rounds_, task.context());
    }();
    if (outputs_.is_model_file()) {
        refuse_collapse(solids, "--size",
                        "a larger size or a --center nearer to 0,0,0 keeps them apart");
    }
    print("%s, %s", model_figures(solids).c_str(), kit::state_text(solids[0].surface()).c_str());
    facts().set("model", model_record(solids));
    outputs_.write_model(solids);
}

} // namespace

void add_starter_command(Program& program) {
    add_command<StarterCommand>(program, "starter", "Make a cuboid or a ball");
}

namespace {

StarterCommand::StarterCommand(Options options) {
    options.add("SHAPE", kind_, "cube|ball", "cube: a cuboid of 24 faces, ball: one of 20")
        .required()
        .one_of({"cube", "ball"});
    options.add("--center", center_, "X,Y,Z", "The middle").with_default();
    options
        .add("--size", size_, "X,Y,Z|R", "Of a cube the three edge lengths, of a ball the radius")
        .required();
    options.add("--rounds", rounds_, "N", "How often each face is divided into four")
        .from_to(0, most_rounds, "0 to 7")
        .with_default();
    outputs_.add_model(options);
    options.footer("Examples:\n"
                   "  korvel starter cube --size 10,20,5 -o box.model\n"
                   "  korvel starter ball --center 0,0,100 --size 50 --rounds 4 -o ball.model");
}

std::vector<double> StarterCommand::parse_size() const {
    const char* const form = kind_ == "cube" ? "X,Y,Z" : "R";
    std::vector<double> size = parse_reals("--size", size_, form);
    for (const double length : size) {
        if (!(length > 0)) {
            refuse("--size", size_, std::string(form) + " above 0");
        }
    }
    return size;
}

} // namespace
} // namespace korvel::command
