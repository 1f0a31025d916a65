#include <cstdio>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "kit/solids/inside.h"
#include "kit/solids/surface.h"

namespace korvel::command {
namespace {

class InsideCommand {
public:
    explicit InsideCommand(CLI::App& command);
    void run() const;

private:
    std::string input_;
    std::vector<std::string> points_;
};

void warn_of_open_bodies(const std::string& file, const TMOD3D& model);

void InsideCommand::run() const {
    std::vector<std::vector<double>> points;
    for (const std::string& text : points_) {
        points.push_back(parse_reals("POINTS", text, "X,Y,Z"));
    }
    TMOD3D model;
    load_model(input_, model);
    warn_of_open_bodies(input_, model);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const int body = kit::body_at(model, points[i].data());
        const std::string answer = body >= 0 ? std::to_string(body) : "none";
        std::printf("%s %s\n", points_[i].c_str(), answer.c_str());
    }
}

} // namespace

void add_inside_command(CLI::App& program) {
    add_command<InsideCommand>(program, "inside", "Find the body that contains a point");
}

namespace {

InsideCommand::InsideCommand(CLI::App& command) {
    command.add_option("MODEL", input_, "Body model file")->required()->type_name("FILE");
    command.add_option("POINTS", points_, "Points to look up")->required()->type_name("X,Y,Z");
    command.footer("One line for each point: the point and the number of the first body that\n"
                   "contains it, or 'none'. A point on a surface may count as either side. The\n"
                   "answers for an open body are uncertain; a warning names such bodies.\n"
                   "\n"
                   "Example:\n"
                   "  korvel inside states.model 20000,-60000,1500 0,0,0");
}

void warn_of_open_bodies(const std::string& file, const TMOD3D& model) {
    const std::vector<kit::Surface> all = kit::surfaces(model);
    for (std::size_t body = 0; body < all.size(); ++body) {
        if (all[body].open_edges > 0) {
            warn(file + ": body " + std::to_string(body) + " is " + kit::state_text(all[body]) +
                 ", the answers for it are uncertain");
        }
    }
}

} // namespace
} // namespace korvel::command
