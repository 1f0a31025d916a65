#include <optional>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/report.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class InsideCommand {
public:
    explicit InsideCommand(Options options);
    void run() const;

private:
    std::string input_;
    std::vector<std::string> points_;
};

void warn_of_open_bodies(const std::string& file, const kit::Solids& solids);

void InsideCommand::run() const {
    std::vector<kit::Point3> points;
    for (const std::string& text : points_) {
        points.push_back(parse_point3("POINTS", text));
    }
    const kit::Solids solids = load_solids(input_);
    warn_of_open_bodies(input_, solids);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::optional<int> body = solids.body_at(points[i]);
        const std::string answer = body ? std::to_string(*body) : "none";
        print("%s %s", points_[i].c_str(), answer.c_str());
    }
}

} // namespace

void add_inside_command(Program& program) {
    add_command<InsideCommand>(program, "inside", "Find the body that contains a point");
}

namespace {

InsideCommand::InsideCommand(Options options) {
    options.add("MODEL", input_, "FILE", "Body model file").required();
    options.add("POINTS", points_, "X,Y,Z", "Points to look up").required();
    options.footer("One line for each point: the point and the number of the first body that\n"
                   "contains it, or 'none'. A point on a surface may count as either side. The\n"
                   "answers for an open body are uncertain; a warning names such bodies.\n"
                   "\n"
                   "Example:\n"
                   "  korvel inside states.model 20000,60000,1500 0,0,0");
}

void warn_of_open_bodies(const std::string& file, const kit::Solids& solids) {
    for (const kit::Body body : solids) {
        const kit::Surface surface = body.surface();
        if (surface.open_edges > 0) {
            warn(file + ": body " + std::to_string(body.index()) + " is " +
                 kit::state_text(surface) + ", the answers for it are uncertain");
        }
    }
}

} // namespace
} // namespace korvel::command
