#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "kit/base/error.h"
#include "kit/solids/moving.h"

namespace korvel::command {
namespace {

class MoveCommand {
public:
    explicit MoveCommand(CLI::App& command);
    void run();

private:
    void read_arguments();
    void turn();
    void take();
    void check_range() const;
    void check_collisions();
    std::string collision_text(const kit::Collision& collision) const;
    void report() const;

    static constexpr int most_depth = 1000;

    std::string input_;
    int body_ = -1;
    int vertex_ = -1;
    int depth_ = 0;
    std::string by_;
    std::string angles_ = "0,0";
    Outputs outputs_;

    CLI::Option* body_option_ = nullptr;
    std::array<double, 3> shift_ = {};
    std::vector<double> turn_and_tilt_;
    TMOD3D model_;
};

void MoveCommand::run() {
    read_arguments();
    outputs_.check();
    load_model(input_, model_);
    turn();
    take();
    kit::move_selected(model_, shift_);
    check_range();
    check_collisions();
    model_.comput_mode_aux_parm();
    model_.rotate_model();
    report();
    outputs_.write([&](kit::OutputFile& out) { model_.write_mode(out.stream()); });
}

} // namespace

void add_move_command(CLI::App& program) {
    add_command<MoveCommand>(program, "move", "Move a body, or a vertex with what is around it");
}

namespace {

MoveCommand::MoveCommand(CLI::App& command) {
    command.add_option("MODEL", input_, "Body model file")->required()->type_name("FILE");
    CLI::Option_group* const things = command.add_option_group("What moves", "One of:");
    body_option_ = things->add_option("--body", body_, "This body, as it is")->type_name("BODY");
    things->add_option("--vertex", vertex_, "This vertex, and those within --depth")
        ->type_name("VERTEX");
    things->require_option(1);
    command.add_option("--depth", depth_, "Also move the vertices that are at most L edges away")
        ->type_name("L")
        ->check(CLI::Range(0, most_depth).description("0 to 1000"))
        ->excludes(body_option_)
        ->capture_default_str();
    command.add_option("--by", by_, "How far, along the axes u, v and w of the view")
        ->required()
        ->type_name("DX,DY[,DZ]");
    command
        .add_option("--angles", angles_,
                    "The view in degrees: turned by A about z, then tilted by B about x")
        ->type_name("A,B")
        ->capture_default_str();
    outputs_.add_file(command, "Write the model")->required();
    command.footer(
        "In the view u runs to the right, v up and w towards the viewer. With --angles 0,0\n"
        "they are the model's x, y and z; with 0,90 they are x, -z and y; with 90,0 they\n"
        "are y, -x and z. Tilted by B and turned by A:\n"
        "  u = x cos A + y sin A\n"
        "  v = (y cos A - x sin A) cos B - z sin B\n"
        "  w = (y cos A - x sin A) sin B + z cos B\n"
        "\n"
        "Around a vertex DX and DY fade out, with the number of edges and the root of the\n"
        "distance from the vertex; DZ does not and moves all of them alike.\n"
        "A move is refused when it leaves an edge that moved passing through or touching\n"
        "a face other than those at its ends. Edges that did not move are not checked, nor is\n"
        "the path of the move.\n"
        "\n"
        "Examples:\n"
        "  korvel move both.model --body 1 --by 0,0,25 -o moved.model\n"
        "  korvel move ball.model --vertex 12 --depth 3 --by 0,-5 --angles 0,90 -o bump.model");
}

void MoveCommand::read_arguments() {
    const std::vector<double> by = parse_reals("--by", by_, "DX,DY[,DZ]");
    std::copy(by.begin(), by.end(), shift_.begin());
    turn_and_tilt_ = parse_reals("--angles", angles_, "A,B");
}

void MoveCommand::turn() {
    model_.vis_angle_1 = turn_and_tilt_[0];
    model_.vis_angle_2 = turn_and_tilt_[1];
    model_.change_vis_parm();
}

void MoveCommand::take() {
    if (body_option_->count() > 0) {
        check_number("--body", body_, model_.bodies.GetSize(), "body", input_);
        if (model_.bodies[body_].verts.IsEmpty()) {
            throw kit::input_error(input_ + ": body " + std::to_string(body_) +
                                   " has no face, there is nothing to move");
        }
        kit::select_body(model_, body_);
    } else {
        check_number("--vertex", vertex_, model_.verts.GetSize(), "vertex", input_);
        kit::select_vertex(model_, vertex_, depth_);
    }
    if (!kit::can_move(model_)) {
        throw kit::input_error(input_ + ": all vertices within " + counted(depth_, "edge") +
                               " of vertex " + std::to_string(vertex_) +
                               " have the same position, a move cannot fade out over them");
    }
}

// Throws when a moved coordinate does not fit the file.
void MoveCommand::check_range() const {
    constexpr double largest = std::numeric_limits<float>::max();
    for (const int v : model_.relat_list_2) {
        for (const double coordinate : model_.verts[v].model_xyz) {
            if (!(std::abs(coordinate) <= largest)) {
                throw kit::input_error(input_ + ": --by " + by_ + " takes vertex " +
                                       std::to_string(v) + " to " + number_text(coordinate) +
                                       ", which does not fit single precision");
            }
        }
    }
}

void MoveCommand::check_collisions() {
    if (const auto collision = kit::first_collision(model_)) {
        throw kit::input_error(input_ + ": --by " + by_ + ": " + collision_text(*collision));
    }
}

std::string MoveCommand::collision_text(const kit::Collision& collision) const {
    const LINE3D& edge = model_.lines[collision.edge];
    const POLY3D& face = model_.polys[collision.face];
    const std::string edge_name = "the edge between vertices " + std::to_string(edge.start_vert) +
                                  " and " + std::to_string(edge.end_vert);
    std::string face_name = "face " + std::to_string(collision.face);
    if (!face.bodies.IsEmpty()) {
        face_name += " of body " + std::to_string(face.bodies[0]);
    }
    if (!(edge.length > 0)) {
        return edge_name + " would have no length";
    }
    if (!std::isfinite(face.plane[3])) {
        return face_name + " would have no area, and a move cannot be checked beside such a face";
    }
    return edge_name + " would pass through " + face_name + " or touch it";
}

void MoveCommand::report() const {
    std::printf("%s: %s moved\n", input_.c_str(),
                counted(model_.relat_list_2.GetSize(), "vertex", "vertices").c_str());
    std::printf("%s, %s\n", counted(model_.bodies.GetSize(), "body", "bodies").c_str(),
                model_figures(model_).c_str());
    std::printf("bounds %s\n", bounds_text(model_.wrap_cuboid, 3).c_str());
    warn_of_rounding(model_);
}

} // namespace
} // namespace korvel::command
