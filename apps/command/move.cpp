#include <string>
#include <utility>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class MoveCommand {
public:
    explicit MoveCommand(Options options);
    void run();

private:
    void read_arguments();
    void gather(kit::SolidsEditor& editor) const;
    void check(const kit::Verdict& verdict) const;
    void report(kit::SolidsEditor& editor) const;

    static constexpr int most_depth = 1000;

    ModelInput input_;
    int body_ = -1;
    int vertex_ = -1;
    int depth_ = 0;
    std::string by_;
    std::string by_view_;
    std::string angles_ = default_angles;
    Outputs outputs_;

    Option body_option_;
    kit::Point3 shift_ = {};
    kit::ViewAngles view_;
};

void MoveCommand::run() {
    read_arguments();
    outputs_.check();
    kit::Solids solids = input_.load();
    solids.set_view(view_);
    kit::SolidsEditor editor(std::move(solids));
    gather(editor);
    editor.move(shift_);
    {
        Task task("checking the move");
        check(editor.judge(task.context()));
    }
    report(editor);
    outputs_.write_model(editor.solids());
}

} // namespace

void add_move_command(Program& program) {
    add_command<MoveCommand>(program, "move", "Move a body, or a vertex with what is around it");
}

namespace {

MoveCommand::MoveCommand(Options options) {
    input_.add_options(options);
    Options things = options.one_of("What moves");
    body_option_ = things.add("--body", body_, "BODY", "This body, as it is");
    things.add("--vertex", vertex_, "VERTEX", "This vertex, and those within --depth");
    options.add("--depth", depth_, "L", "Also move the vertices that are at most L edges away")
        .from_to(0, most_depth, "0 to 1000")
        .excludes(body_option_)
        .with_default();
    Options shifts = options.one_of("How far");
    shifts.add("--by", by_, "DX,DY[,DZ]", "Along the axes x, y and z of the model");
    const Option by_view =
        shifts.add("--by-view", by_view_, "DU,DV[,DW]", "Along the axes u, v and w of the view");
    options
        .add("--angles", angles_, "A,B",
             "Degrees by which the model is turned about z, then tilted about x")
        .needs(by_view)
        .with_default();
    outputs_.add_model(options);
    options.footer(
        "The view is that of 'korvel view': u runs to the right, v up and w towards the viewer.\n"
        "With --angles 0,0 they are the model's x, y and z; with 0,90 they are x, -z and y;\n"
        "with 90,0 they are y, -x and z. Tilted by B and turned by A:\n"
        "  u = x cos A + y sin A\n"
        "  v = (y cos A - x sin A) cos B - z sin B\n"
        "  w = (y cos A - x sin A) sin B + z cos B\n"
        "\n"
        "Around a vertex the first two shifts fade out, with the number of edges and the root of\n"
        "the distance from the vertex; the third does not and moves all of them alike.\n"
        "A move is refused when it leaves an edge that moved passing through or touching\n"
        "a face other than those at its ends. Edges that did not move are not checked, nor is\n"
        "the path of the move.\n"
        "\n"
        "Examples:\n"
        "  korvel move both.model --body 1 --by 0,0,25 -o moved.model\n"
        "  korvel move ball.model --vertex 12 --depth 3 --by-view 0,-5 --angles 0,90 \\\n"
        "      -o bump.model");
}

void MoveCommand::read_arguments() {
    const std::vector<double> by = by_.empty() ? parse_reals("--by-view", by_view_, "DU,DV[,DW]")
                                               : parse_reals("--by", by_, "DX,DY[,DZ]");
    shift_ = {by[0], by[1], by.size() > 2 ? by[2] : 0};
    const std::vector<double> angles = parse_reals("--angles", angles_, "A,B");
    view_ = by_.empty() ? kit::ViewAngles{angles[0], angles[1]} : kit::ViewAngles{0, 0};
}

void MoveCommand::gather(kit::SolidsEditor& editor) const {
    const kit::Solids& solids = editor.solids();
    if (body_option_.is_given()) {
        check_number("--body", body_, solids.size(), "body", input_.file());
        if (solids[body_].vertices().empty()) {
            throw kit::input_error(shown(input_.file()) + ": body " + std::to_string(body_) +
                                   " has no face, there is nothing to move");
        }
        editor.gather_body(body_);
    } else {
        check_number("--vertex", vertex_, solids.vertex_count(), "vertex", input_.file());
        editor.gather_vertex(vertex_, depth_);
    }
    if (!editor.can_fade()) {
        throw kit::input_error(shown(input_.file()) + ": all vertices within " +
                               counted(depth_, "edge") + " of vertex " + std::to_string(vertex_) +
                               " have the same position, a move cannot fade out over them");
    }
}

void MoveCommand::check(const kit::Verdict& verdict) const {
    const std::string move =
        shown(input_.file()) + (by_.empty() ? ": --by-view " + by_view_ : ": --by " + by_);
    if (verdict.kind == kit::Verdict::Kind::out_of_range) {
        throw kit::input_error(move + " takes vertex " + std::to_string(verdict.vertex) + " to " +
                               number_text(verdict.coordinate) +
                               ", which does not fit single precision");
    }
    if (!verdict.is_legal()) {
        throw kit::input_error(move + ": " + kit::text(verdict));
    }
}

void MoveCommand::report(kit::SolidsEditor& editor) const {
    const kit::Solids& solids = editor.solids();
    print("%s: %s moved", shown(input_.file()).c_str(),
          counted(static_cast<int>(editor.vertices().size()), "vertex", "vertices").c_str());
    print("%s, %s", counted(solids.size(), "body", "bodies").c_str(),
          model_figures(solids).c_str());
    print("bounds %s", bounds_text(solids).c_str());
    facts()
        .set("vertices_moved", static_cast<int>(editor.vertices().size()))
        .set("model", model_record(solids));
    if (outputs_.is_model_file()) {
        warn_of_rounding(solids);
    }
}

} // namespace
} // namespace korvel::command
