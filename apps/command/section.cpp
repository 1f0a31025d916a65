#include <filesystem>
#include <string>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "apps/command/plane_argument.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class SectionCommand {
public:
    explicit SectionCommand(Options options);
    void run();

private:
    kit::Plane requested_plane() const;
    void cut_once();
    void report(const kit::Section& cut) const;
    void warn_of_nothing(const kit::Section& cut) const;
    void sweep();
    kit::Section cut_of_sweep(int number, const kit::Plane& plane) const;
    void paint(const kit::Section& cut, const kit::Plane& plane, const kit::Rectangle& box,
               kit::PictureCanvas& canvas) const;
    kit::Rectangle model_box() const;
    std::string picture_of(int cut) const;

    static constexpr int most_cuts = 10000;

    ModelInput input_;
    std::string plane_text_;
    std::string x_;
    std::string y_;
    std::string part_;
    int sweep_ = 0;
    Outputs outputs_;
    kit::Plane plane_;
    kit::Solids solids_;
};

Record plane_record(const kit::Plane& plane);

void SectionCommand::run() {
    plane_ = requested_plane();
    if (!part_.empty()) {
        parse_box("--view", part_);
    }
    if (sweep_ > 0 && outputs_.picture() == "-") {
        throw kit::input_error("--sweep numbers its pictures, which standard output does not take");
    }
    outputs_.check();
    solids_ = input_.load();
    report_bodies(shown(input_.file()), solids_);
    facts().set("plane", plane_record(plane_));
    if (sweep_ > 0) {
        sweep();
    } else {
        cut_once();
    }
}

} // namespace

void add_section_command(Program& program) {
    add_command<SectionCommand>(program, "section", "Cut a model by a plane");
}

namespace {

SectionCommand::SectionCommand(Options options) {
    input_.add_options(options);
    options.add("--plane", plane_text_, "PLANE",
                "Cut by the plane x=V, y=V, z=V, or A,B,C,D for A x + B y + C z + D = 0");
    // Named for the axis that runs along the cut, not for the one that the plane fixes.
    options.add("--x", x_, "V", "y=V").hidden();
    options.add("--y", y_, "V", "x=V").hidden();
    outputs_.add_file(options, "Write a section file, or its polygons: .geojson, .gpkg, …",
                      Outputs::Formats::features);
    outputs_.add_picture(options);
    options.add("--view", part_, "U,V,U,V", "Two opposite corners of what the picture shows")
        .needs(options.option("--picture"));
    options
        .add("--sweep", sweep_, "N",
             "Cut N times, evenly spaced through the whole model, parallel to the plane")
        .from_to(1, most_cuts)
        .excludes(options.option("--output"));
    options.footer(
        "The picture shows the plane in true lengths: y and z for x=V, x and z for y=V, x and y\n"
        "for z=V, each upward or to the right. For other planes U and V are distances in the\n"
        "plane from its point nearest to 0,0,0: U level and V upward, or as seen from above where\n"
        "the plane is nearly level. Where vertices of the model are on the plane, the cut is made\n"
        "just beside it. With --sweep the pictures are numbered: FILE-001.png and so on.\n"
        "\n"
        "Examples:\n"
        "  korvel section states.model --plane y=60000 --picture section.png\n"
        "  korvel section states.model --plane z=1500 -o level.section\n"
        "  korvel section states.model --plane z=1500 -o level.geojson\n"
        "  korvel section states.model --plane 1,1,0,-80000 --picture aslant.png\n"
        "  korvel section states.model --plane x=0 --sweep 20 --picture slices.png");
}

kit::Plane SectionCommand::requested_plane() const {
    const int given = (x_.empty() ? 0 : 1) + (y_.empty() ? 0 : 1) + (plane_text_.empty() ? 0 : 1);
    if (given != 1) {
        throw kit::input_error(given == 0 ? "--plane is required" : "more than one plane is given");
    }
    if (!x_.empty()) {
        return kit::Plane::at_y(parse_reals("--x", x_, "V")[0]);
    }
    if (!y_.empty()) {
        return kit::Plane::at_x(parse_reals("--y", y_, "V")[0]);
    }
    return parse_plane("--plane", plane_text_);
}

void SectionCommand::cut_once() {
    const kit::Section cut = [&] {
        const Task task("cutting");
        return solids_.cut(plane_);
    }();
    std::string where = plane_text(plane_);
    if (cut.plane() != plane_) {
        where += ", cut beside the corners that lie there: " + plane_text(cut.plane());
        facts().set("cut_plane", plane_record(cut.plane()));
    }
    print("%s", where.c_str());
    print("%d of %s cut, %s, area %s", static_cast<int>(cut.bodies().size()),
          counted(solids_.size(), "body", "bodies").c_str(), counted(cut.size(), "polygon").c_str(),
          number_text(cut.area()).c_str());
    report(cut);
    const kit::Rectangle box = cut.empty() ? model_box() : cut.bounds();
    outputs_.write(
        {[&](kit::OutputFile& out) { cut.write(out); }, [&] { return kit::features_of(cut); }},
        [&](kit::PictureCanvas& canvas) { paint(cut, plane_, box, canvas); });
}

void SectionCommand::report(const kit::Section& cut) const {
    if (!cut.empty()) {
        print("  body  polygons                area  colour");
    }
    std::vector<Record> bodies;
    for (const kit::SectionBody& body : cut.bodies()) {
        const int polygons = static_cast<int>(body.polygons.size());
        const std::string colour = colour_text(cut[body.polygons[0]].colour());
        print("%6d  %8d  %18s  %s", body.body, polygons, number_text(body.area).c_str(),
              colour.c_str());
        bodies.push_back(Record()
                             .set("body", body.body)
                             .set("polygons", polygons)
                             .set("area", body.area)
                             .set("colour", colour));
    }
    const int loose = static_cast<int>(cut.loose_points().size());
    facts()
        .set("bodies", bodies)
        .set("polygons", cut.size())
        .set("area", cut.area())
        .set("loose_points", loose);
    if (loose > 0) {
        warn(counted(loose, "crossed edge") +
             " on no closed polygon: a body is open there, 'korvel info' lists the open bodies");
    } else if (cut.empty()) {
        warn_of_nothing(cut);
    }
}

void SectionCommand::warn_of_nothing(const kit::Section& cut) const {
    const auto [least, greatest] = solids_.distances_from(cut.plane());
    const std::string plane = "the plane " + plane_text(plane_);
    warn(least > 0 || greatest < 0
             ? plane + " does not meet the model: " + extent_text(solids_, plane_)
             : plane + " meets no body");
}

// In the middle of N slices, so that the areas add up to the volume.
void SectionCommand::sweep() {
    const auto [least, greatest] = solids_.distances_from(plane_);
    const double spacing = (greatest - least) / sweep_;
    double area = 0;
    int empty = 0;
    std::vector<Record> cuts;
    {
        Task task("cutting");
        for (int i = 0; i < sweep_; ++i) {
            task.update(i, sweep_);
            const kit::Section cut = cut_of_sweep(i + 1, plane_.moved(least + (i + 0.5) * spacing));
            area += cut.area();
            empty += cut.empty() ? 1 : 0;
            cuts.push_back(Record()
                               .set("plane", plane_record(cut.plane()))
                               .set("bodies", static_cast<int>(cut.bodies().size()))
                               .set("polygons", cut.size())
                               .set("area", cut.area()));
        }
    }
    const double volume = solids_.volume();
    print("areas times their spacing of %s: %s, volume of the bodies: %s",
          number_text(spacing).c_str(), number_text(area * spacing).c_str(),
          number_text(volume).c_str());
    facts()
        .set("cuts", cuts)
        .set("spacing", spacing)
        .set("volume_by_areas", area * spacing)
        .set("volume", volume);
    if (empty > 0) {
        warn(std::to_string(empty) + " of " + counted(sweep_, "cut") + " meet no body");
    }
    if (!outputs_.picture().empty()) {
        print("wrote %s to %s", picture_of(1).c_str(), picture_of(sweep_).c_str());
    }
}

kit::Section SectionCommand::cut_of_sweep(int number, const kit::Plane& plane) const {
    kit::Section cut = solids_.cut(plane);
    print("%5d  %s: %s, %s, area %s", number, plane_text(cut.plane()).c_str(),
          counted(static_cast<int>(cut.bodies().size()), "body", "bodies").c_str(),
          counted(cut.size(), "polygon").c_str(), number_text(cut.area()).c_str());
    if (!outputs_.picture().empty()) {
        const kit::Rectangle box = model_box();
        outputs_.write_picture(picture_of(number), [&](kit::PictureCanvas& canvas) {
            paint(cut, cut.plane(), box, canvas);
        });
        note_output(picture_of(number));
    }
    return cut;
}

void SectionCommand::paint(const kit::Section& cut, const kit::Plane& plane,
                           const kit::Rectangle& box, kit::PictureCanvas& canvas) const {
    const int bodies = static_cast<int>(cut.bodies().size());
    kit::draw(cut, canvas,
              {.part = part_.empty() ? box : parse_box("--view", part_),
               .title = kit::text_of(kit::path_of(shown(input_.file())).filename()) + "   " +
                        plane_text(plane),
               .remark = counted(bodies, "body", "bodies") + ", area " + number_text(cut.area())});
}

// As it is seen along the plane's axes.
kit::Rectangle SectionCommand::model_box() const {
    const kit::PlaneAxes axes(plane_);
    kit::Rectangle box;
    for (int v = 0; v < solids_.vertex_count(); ++v) {
        const kit::Point2 at = axes.seen(solids_.vertex(v));
        box.take_in(at[0], at[1]);
    }
    return box;
}

Record plane_record(const kit::Plane& plane) {
    return Record()
        .set("text", plane_text(plane))
        .set("coefficients", std::vector<double>{plane.a, plane.b, plane.c, plane.d});
}

std::string SectionCommand::picture_of(int cut) const {
    constexpr int digits = 3;
    return kit::text_of(kit::numbered_file(kit::path_of(outputs_.picture()), cut, digits));
}

} // namespace
} // namespace korvel::command
