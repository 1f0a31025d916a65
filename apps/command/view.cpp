#include <array>
#include <optional>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class ViewCommand {
public:
    explicit ViewCommand(Options options);
    void run();

private:
    void check() const;
    void load();
    void look(kit::ViewOptions options);
    void turn_round(const kit::ViewOptions& options);
    kit::ViewOptions view_options(kit::OffscreenRenderer* screen) const;
    std::optional<double> crease_angle() const;
    void check_frame(const kit::ViewFrame& frame) const;
    std::optional<kit::Pick> pick_requested_point(const kit::ViewFrame& frame);
    bool is_picking() const { return !pick_.empty() || !click_.empty(); }
    kit::PictureSize size() const { return parse_picture_size("--size", size_); }

    static constexpr int most_frames = 1000;

    ModelInput input_;
    std::string angles_ = default_angles;
    bool with_edges_ = false;
    bool with_outlines_ = false;
    std::string creases_;
    bool with_box_ = false;
    std::string part_;
    std::string picture_;
    std::string size_ = default_picture_size;
    Option size_option_;
    int turntable_ = 0;
    std::string pick_;
    std::string click_;
    kit::Solids solids_;
};

void report_bounds(const kit::Solids& solids, const kit::ViewFrame& frame);
std::string bounds_in_view(const double* pairs, int axes);
void report_pick(const std::string& place, const kit::Solids& solids, const kit::Pick& pick);
std::string point_text(const kit::Point3& point);

void ViewCommand::run() {
    check();
    std::optional<kit::OffscreenRenderer> screen;
    if (!picture_.empty()) {
        screen.emplace(size());
    }
    load();
    const kit::ViewOptions options = view_options(screen ? &*screen : nullptr);
    if (turntable_ > 0) {
        turn_round(options);
    } else {
        look(options);
    }
}

} // namespace

void add_view_command(Program& program) {
    add_command<ViewCommand>(program, "view", "Paint a model, or report what is under a click");
}

namespace {

ViewCommand::ViewCommand(Options options) {
    input_.add_options(options);
    options
        .add("--angles", angles_, "A,B",
             "Degrees by which the model is turned about z, then tilted about x")
        .with_default();
    options.add_flag("--outlines", with_outlines_,
                     "Draw the edges where bodies end or bend sharply");
    options.add("--creases", creases_, "ANGLE",
                "Draw the edges at which faces turn by more degrees than this");
    options.add_flag("--edges", with_edges_, "Draw all edges in white");
    options.add_flag("--box", with_box_, "Draw the box around the model in black");
    const Option picture = options.add("--picture", picture_, "FILE", "Paint a picture: .png");
    size_option_ =
        options.add("--size", size_, "WxH", "Size of the picture in pixels, 16 to 20000 each")
            .with_default();
    const Option part =
        options.add("--view", part_, "U,V,U,V", "Two opposite corners of what the picture shows");
    const Option turntable =
        options
            .add("--turntable", turntable_, "N",
                 "Paint N pictures of the model as it turns about z once, all in one scale")
            .from_to(1, most_frames)
            .needs(picture)
            .excludes(part);
    const Option pick =
        options.add("--pick", pick_, "U,V", "Report what is at this position and mark it")
            .excludes(turntable);
    options.add("--click", click_, "X,Y", "The same for a pixel of the picture")
        .excludes(turntable)
        .excludes(pick);
    options.footer(
        "U and V are positions in the view, in units of the model: after turning, U runs to the\n"
        "right and V upward from the middle of the model's extent in the view. X and Y count\n"
        "pixels from the upper left corner of a picture of the given size. At angles 0,0 the\n"
        "model is seen from above, x to the right and y upward; at 0,-90 from the front, z\n"
        "upward. A face is the lighter the more it faces the viewer.\n"
        "\n"
        "What is picked is marked: the face yellow, its nearest edge red, its nearest vertex by\n"
        "a blue dot, the position by a white one. Where there is nothing the answer is 'none'.\n"
        "With --turntable the pictures are numbered: FILE-00.png and so on.\n"
        "\n"
        "Examples:\n"
        "  korvel view states.model --outlines --picture states.png\n"
        "  korvel view ball.model --edges --picture ball.png\n"
        "  korvel view ball.model --turntable 24 --size 600x600 --picture ball.png\n"
        "  korvel view ball.model --click 800,500 --picture picked.png");
}

// Everything that would fail at the end of a long run.
void ViewCommand::check() const {
    parse_reals("--angles", angles_, "A,B");
    crease_angle();
    if (!part_.empty()) {
        parse_box("--view", part_);
    }
    if (!pick_.empty()) {
        parse_real_point("--pick", pick_);
    }
    if (!click_.empty()) {
        const tagPOINT click = parse_lattice_point("--click", click_);
        if (click.x < 0 || click.x >= size().width || click.y < 0 || click.y >= size().height) {
            refuse("--click", click_, "a pixel of a picture of " + size_);
        }
    }
    size();
    if (picture_.empty()) {
        if (click_.empty() && size_option_.is_given()) {
            throw kit::input_error("--size is of no use without --picture or --click");
        }
        if (!is_picking()) {
            throw kit::input_error("--picture, --pick or --click is required");
        }
        return;
    }
    if (picture_ == "-" && turntable_ == 0) {
        report_to_standard_error();
    } else if (turntable_ > 0) {
        kit::check_turntable_files(kit::path_of(picture_), turntable_);
    } else {
        kit::check_view_file(kit::path_of(picture_));
    }
}

void ViewCommand::load() {
    solids_ = input_.load();
    report_bodies(shown(input_.file()), solids_);
    const std::vector<double> angles = parse_reals("--angles", angles_, "A,B");
    solids_.set_view({.turn = angles[0], .tilt = angles[1]});
}

void ViewCommand::look(kit::ViewOptions options) {
    const kit::ViewFrame frame = kit::view_frame(solids_, options);
    check_frame(frame);
    options.marked = pick_requested_point(frame);
    if (picture_.empty()) {
        return;
    }
    const bool to_standard_output = picture_ == "-";
    {
        const Task task("painting");
        if (to_standard_output) {
            kit::OutputFile out(kit::standard_output);
            options.screen->bind();
            kit::draw_view(solids_, frame, options);
            options.screen->write_png(out);
            out.replace();
        } else {
            kit::write_picture(solids_, kit::path_of(picture_), options);
        }
    }
    const std::string name = to_standard_output ? "standard output" : picture_;
    note_output(name);
    print("wrote %s", name.c_str());
}

void ViewCommand::turn_round(const kit::ViewOptions& options) {
    check_frame(kit::turntable_frame(solids_, options));
    {
        Task task("painting");
        kit::write_turntable(solids_, kit::path_of(picture_), turntable_, options, task.context());
    }
    const auto files = kit::turntable_files(kit::path_of(picture_), turntable_);
    for (const auto& file : files) {
        note_output(kit::text_of(file));
    }
    print("wrote %s to %s", kit::text_of(files.front()).c_str(),
          kit::text_of(files.back()).c_str());
}

kit::ViewOptions ViewCommand::view_options(kit::OffscreenRenderer* screen) const {
    kit::ViewOptions options;
    options.size = size();
    if (!part_.empty()) {
        options.part = parse_box("--view", part_);
    }
    options.edges = with_edges_;
    options.outlines = with_outlines_;
    options.creases = crease_angle();
    options.box = with_box_;
    options.screen = screen;
    return options;
}

std::optional<double> ViewCommand::crease_angle() const {
    if (creases_.empty()) {
        return {};
    }
    const double angle = parse_reals("--creases", creases_, "ANGLE").front();
    if (!(angle >= 0 && angle <= 180)) {
        refuse("--creases", creases_, "an angle from 0 to 180");
    }
    return angle;
}

void ViewCommand::check_frame(const kit::ViewFrame& frame) const {
    if (!frame.is_drawable()) {
        throw kit::input_error(shown(input_.file()) + ": a picture " +
                               number_text(frame.right() - frame.left) + " wide cannot be drawn");
    }
    report_bounds(solids_, frame);
    if (!part_.empty() && kit::shows_nothing(frame, solids_.model())) {
        warn("--view shows no part of the model, which extends over " +
             bounds_in_view(solids_.model().view_bounds, 2));
    }
}

std::optional<kit::Pick> ViewCommand::pick_requested_point(const kit::ViewFrame& frame) {
    if (!is_picking()) {
        return {};
    }
    RealPoint at;
    if (click_.empty()) {
        at = parse_real_point("--pick", pick_);
    } else {
        const tagPOINT click = parse_lattice_point("--click", click_);
        at = {frame.u_of(click.x), frame.v_of(click.y)};
    }
    std::string place = pick_;
    if (!click_.empty()) {
        place = "pixel " + click_ + " at " + number_text(at.x) + "," + number_text(at.y);
    }
    const std::optional<kit::Pick> found = solids_.pick(at.x, at.y);
    if (found) {
        report_pick(place, solids_, *found);
    } else {
        print_answer(place + ": none");
        facts().set("pick",
                    Record().set("u", at.x).set("v", at.y).set("body", std::optional<int>()));
    }
    return found;
}

void report_bounds(const kit::Solids& solids, const kit::ViewFrame& frame) {
    const double* const model = solids.model().view_bounds;
    const double picture[] = {frame.left, frame.right(), frame.bottom, frame.top()};
    print_detail("view: model %s", bounds_in_view(model, 3).c_str());
    print_detail("view: picture %s", bounds_in_view(picture, 2).c_str());
    const auto record = [](const double* pairs, int axes) {
        constexpr std::array<const char*, 3> names = {"u", "v", "w"};
        Record bounds;
        for (int axis = 0; axis < axes; ++axis) {
            bounds.set(names[axis], std::vector<double>{pairs[2 * axis], pairs[2 * axis + 1]});
        }
        return bounds;
    };
    facts().set("view", Record().set("model", record(model, 3)).set("picture", record(picture, 2)));
}

/// "u -3 to 3, v 0 to 5".
std::string bounds_in_view(const double* pairs, int axes) {
    std::string text;
    for (int axis = 0; axis < axes; ++axis) {
        text.append(axis == 0 ? "" : ", ").append(1, "uvw"[axis]).append(" ");
        text.append(number_text(pairs[2 * axis])).append(" to ");
        text.append(number_text(pairs[2 * axis + 1]));
    }
    return text;
}

void report_pick(const std::string& place, const kit::Solids& solids, const kit::Pick& pick) {
    const auto [start, end] = solids.edge(pick.edge);
    const auto list = [](const kit::Point3& point) {
        return std::vector<double>(point.begin(), point.end());
    };
    const kit::Point3 vertex = solids.vertex(pick.vertex);
    print_answer(place + ": face " + std::to_string(pick.face) + " of body " +
                 std::to_string(pick.body) + ", point " + point_text(pick.point) + ", depth " +
                 number_text(pick.depth));
    print_answer("nearest vertex " + std::to_string(pick.vertex) + " at " + point_text(vertex));
    print_answer("nearest edge " + std::to_string(pick.edge) + " between vertices " +
                 std::to_string(start) + " and " + std::to_string(end) + ", point on it " +
                 point_text(pick.on_edge));
    facts().set("pick", Record()
                            .set("u", pick.u)
                            .set("v", pick.v)
                            .set("body", pick.body)
                            .set("face", pick.face)
                            .set("point", list(pick.point))
                            .set("depth", pick.depth)
                            .set("vertex", pick.vertex)
                            .set("vertex_point", list(vertex))
                            .set("edge", pick.edge)
                            .set("edge_vertices", std::vector<int>{start, end})
                            .set("edge_point", list(pick.on_edge)));
}

std::string point_text(const kit::Point3& point) {
    return number_text(point[0]) + "," + number_text(point[1]) + "," + number_text(point[2]);
}

} // namespace
} // namespace korvel::command
