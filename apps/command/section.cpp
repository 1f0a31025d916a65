#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
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

class SectionCommand {
public:
    explicit SectionCommand(Options options);
    void run();

private:
    kit::Plane plane() const;
    std::string text(const kit::Plane& plane) const;
    void cut_once();
    void sweep();
    void report(const kit::Section& cut) const;
    kit::SectionPictureOptions view(const kit::Section& cut, const kit::Rectangle& box) const;
    kit::Rectangle model_box(kit::PlaneAxes axes) const;
    std::string picture_of(int cut) const;

    static constexpr int most_cuts = 10000;

    std::string input_;
    std::string x_;
    std::string y_;
    std::string plane_;
    int sweep_ = 0;
    Outputs outputs_;
    kit::Solids solids_;
};

void SectionCommand::run() {
    plane();
    outputs_.check();
    solids_ = load_solids(input_);
    print("%s: %s, bounds %s", shown(input_).c_str(),
          counted(solids_.size(), "body", "bodies").c_str(), bounds_text(solids_).c_str());
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
    options.add("MODEL", input_, "FILE", "Body model file").required();
    Options planes = options.one_of("Plane");
    planes.add("--x", x_, "V", "Cut along x: by the plane y = V");
    planes.add("--y", y_, "V", "Cut along y: by the plane x = V");
    planes.add("--plane", plane_, "A,B,C,D", "Cut by the plane A x + B y + C z + D = 0");
    outputs_.add_file(options, "Write a section file");
    outputs_.add_picture(options);
    options
        .add("--sweep", sweep_, "N",
             "Cut N times, evenly spaced through the whole model, parallel to the plane")
        .from_to(1, most_cuts)
        .excludes(options.option("--output"));
    options.footer(
        "--x and --y are named for the axis that runs along the cut, not for the one that the\n"
        "plane fixes. Where vertices of the model are on the plane, the cut is made just beside\n"
        "it. With --sweep the pictures are numbered: FILE-001.png and so on.\n"
        "\n"
        "Examples:\n"
        "  korvel section states.model --x 60000 --picture section.png\n"
        "  korvel section states.model --plane 0,0,1,-1500 -o level.section\n"
        "  korvel section states.model --y 0 --sweep 20 --picture slices.png");
}

kit::Plane SectionCommand::plane() const {
    if (!x_.empty()) {
        return kit::Plane::at_y(parse_reals("--x", x_, "V")[0]);
    }
    if (!y_.empty()) {
        return kit::Plane::at_x(parse_reals("--y", y_, "V")[0]);
    }
    const std::vector<double> given = parse_reals("--plane", plane_, "A,B,C,D");
    const double length = std::hypot(given[0], given[1], given[2]);
    if (!(length > 1e-100 && length < 1e100)) {
        refuse("--plane", plane_, "A,B,C,D with A, B and C not all 0");
    }
    return {given[0], given[1], given[2], given[3]};
}

std::string SectionCommand::text(const kit::Plane& plane) const {
    if (plane_.empty()) {
        return (x_.empty() ? "x = " : "y = ") + number_text(0 - plane.d);
    }
    const std::array<double, 4> factors = plane.coefficients();
    std::string sum;
    for (int k = 0; k < 4; ++k) {
        if (factors[k] == 0) {
            continue;
        }
        const bool is_first = sum.empty();
        sum += factors[k] < 0 ? (is_first ? "-" : " - ") : (is_first ? "" : " + ");
        const double factor = std::abs(factors[k]);
        sum += factor != 1 || k == 3 ? number_text(factor) : "";
        sum += k == 3 ? "" : std::string(1, "xyz"[k]);
    }
    return sum + " = 0";
}

void SectionCommand::cut_once() {
    const kit::Section cut = [&] {
        const Task task("cutting");
        return solids_.cut(plane());
    }();
    print("%s%s", text(plane()).c_str(),
          cut.plane() == plane()
              ? ""
              : (", cut beside the corners that lie there: " + text(cut.plane())).c_str());
    print("%d of %s cut, %s, area %s", static_cast<int>(cut.bodies().size()),
          counted(solids_.size(), "body", "bodies").c_str(), counted(cut.size(), "polygon").c_str(),
          number_text(cut.area()).c_str());
    report(cut);
    const kit::Rectangle box = cut.empty() ? model_box(cut.axes()) : cut.bounds();
    outputs_.write([&](kit::OutputFile& out) { cut.write(out); },
                   [&](kit::PictureCanvas& canvas) { kit::draw(cut, canvas, view(cut, box)); });
}

void SectionCommand::report(const kit::Section& cut) const {
    if (!cut.empty()) {
        print("  body  polygons                area  colour");
    }
    for (const kit::SectionBody& body : cut.bodies()) {
        const kit::Colour colour = cut[body.polygons[0]].colour();
        print("%6d  %8zu  %18s  #%02x%02x%02x", body.body, body.polygons.size(),
              number_text(body.area).c_str(), colour.red, colour.green, colour.blue);
    }
    if (!cut.loose_points().empty()) {
        warn(counted(static_cast<int>(cut.loose_points().size()), "crossed edge") +
             " on no closed polygon: a body is open there, 'korvel info' lists the open bodies");
    }
}

// In the middle of N slices, so that the areas add up to the volume.
void SectionCommand::sweep() {
    const auto [least, greatest] = solids_.distances_from(plane());
    const double spacing = (greatest - least) / sweep_;
    double area = 0;
    for (int i = 0; i < sweep_; ++i) {
        const kit::Section cut = solids_.cut(plane().moved(least + (i + 0.5) * spacing));
        area += cut.area();
        print("%*d  %s: %s, %s, area %s", 5, i + 1, text(cut.plane()).c_str(),
              counted(static_cast<int>(cut.bodies().size()), "body", "bodies").c_str(),
              counted(cut.size(), "polygon").c_str(), number_text(cut.area()).c_str());
        if (!outputs_.picture().empty()) {
            outputs_.write_picture(picture_of(i + 1), [&](kit::PictureCanvas& canvas) {
                const kit::Rectangle box = model_box(cut.axes());
                kit::draw(cut, canvas, view(cut, box));
            });
        }
    }
    print("areas times their spacing of %s: %s, volume of the bodies: %s",
          number_text(spacing).c_str(), number_text(area * spacing).c_str(),
          number_text(solids_.volume()).c_str());
    if (!outputs_.picture().empty()) {
        print("wrote %s to %s", picture_of(1).c_str(), picture_of(sweep_).c_str());
    }
}

kit::SectionPictureOptions SectionCommand::view(const kit::Section& cut,
                                                const kit::Rectangle& box) const {
    const kit::PlaneAxes axes = cut.axes();
    std::string title = std::filesystem::path(input_).filename().string();
    title.append("   ").append(text(sweep_ > 0 ? cut.plane() : plane()));
    const std::array<double, 4> factors = cut.plane().coefficients();
    if (factors[axes.u] != 0 || factors[axes.v] != 0) {
        title.append(", seen along ").append(1, "xyz"[axes.away]);
    }
    char area[40];
    std::snprintf(area, sizeof area, ", area %.9g", cut.area());
    return {.part = box,
            .title = title,
            .remark = counted(static_cast<int>(cut.bodies().size()), "body", "bodies") + area};
}

kit::Rectangle SectionCommand::model_box(kit::PlaneAxes axes) const {
    const kit::Box bounds = solids_.bounds();
    kit::Rectangle box;
    for (const kit::Point3& corner : {bounds.low, bounds.high}) {
        const kit::Point2 at = axes.seen(corner);
        box.take_in(at[0], at[1]);
    }
    return box;
}

std::string SectionCommand::picture_of(int cut) const {
    constexpr int digits = 3;
    return kit::numbered_file(outputs_.picture(), cut, digits).string();
}

} // namespace
} // namespace korvel::command
