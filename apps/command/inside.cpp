#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/model_input.h"
#include "apps/command/point_input.h"
#include "apps/command/report.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class InsideCommand {
public:
    explicit InsideCommand(Options options);
    void run();

private:
    ModelInput input_;
    PointInput points_{"X,Y,Z"};
};

void warn_of_open_bodies(const std::string& file, const kit::Solids& solids);

void InsideCommand::run() {
    points_.load(input_.file(), "MODEL");
    const kit::Solids solids = input_.load();
    warn_of_open_bodies(shown(input_.file()), solids);
    const kit::BodyLocator locator(solids);
    points_.answer("body", [&](const double* xyz) { return locator.body_at(kit::to_point(xyz)); });
}

} // namespace

void add_inside_command(Program& program) {
    add_command<InsideCommand>(program, "inside", "Find the body that contains a point");
}

namespace {

InsideCommand::InsideCommand(Options options) {
    input_.add_options(options);
    points_.add_options(options);
    options.footer("One line for each point: the point and the number of the first body that\n"
                   "contains it, or 'none'. A point on a surface may count as either side. The\n"
                   "answers for an open body are uncertain; a warning names such bodies.\n"
                   "\n"
                   "Examples:\n"
                   "  korvel inside states.model 20000,60000,1500 0,0,0\n"
                   "  korvel inside states.model --points places.txt");
}

void warn_of_open_bodies(const std::string& file, const kit::Solids& solids) {
    const std::vector<kit::Surface> surfaces = solids.surfaces();
    for (std::size_t body = 0; body < surfaces.size(); ++body) {
        if (surfaces[body].open_edges > 0) {
            warn(file + ": body " + std::to_string(body) + " is " +
                 kit::state_text(surfaces[body]) + ", the answers for it are uncertain");
        }
    }
}

} // namespace
} // namespace korvel::command
