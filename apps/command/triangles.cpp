#include <optional>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/fill_choice.h"
#include "apps/command/map_view.h"
#include "apps/command/messages.h"
#include "apps/command/outputs.h"
#include "apps/command/region_input.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "apps/command/trace_files.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class TrianglesCommand {
public:
    explicit TrianglesCommand(Options options);
    void run();

private:
    void write_traces();
    void triangulate();
    void report() const;
    void name_uncovered() const;
    std::string reason(int region) const;
    kit::Coverage coverage(int region) const { return triangulation_.coverage(region); }
    bool is_covered(int region) const {
        return triangulation_.filled(region) != kit::Filled::not_at_all;
    }
    void write();

    RegionInput input_;
    std::string trace_directory_;
    std::optional<TraceFiles> traces_;
    Outputs outputs_;
    MapView view_;
    FillChoice fill_;
    kit::TriangulateOptions options_;
    bool is_strict_ = false;
    kit::Map map_;
    kit::Triangulation triangulation_;
};

void TrianglesCommand::run() {
    input_.check();
    view_.check();
    outputs_.check();
    map_ = input_.load();
    if (!trace_directory_.empty()) {
        write_traces();
    }
    triangulate();
    report();
    name_uncovered();
    write();
    if (traces_) {
        traces_->replace();
    }
}

} // namespace

void add_triangles_command(Program& program) {
    add_command<TrianglesCommand>(program, "triangles", "Cover regions with triangles");
}

namespace {

TrianglesCommand::TrianglesCommand(Options options) {
    input_.add_options(options);
    options.add("--trace", trace_directory_, "DIR",
                "Write every step into trg.dat and wwwtrg.dat in this directory; slow and large");
    outputs_.add_file(options, "Write the points and triangles: a triangle file, .gpkg, …",
                      Outputs::Formats::features);
    outputs_.add_picture(options);
    view_.add_options(options);
    fill_.add_option(options, "How regions are triangulated");
    add_threads_option(options, options_.threads);
    options.add_flag("--strict", is_strict_, "Exit status 3 when a region is not covered");
    options.footer(
        "--fill front takes the library's own triangles, which do not cover every region; auto\n"
        "takes constrained Delaunay triangles for those. Regions that are not covered are\n"
        "named in warnings and marked in the picture.\n"
        "--tolerance applies to curve files only. The trace of a region grows with the "
        "cube of its\n"
        "points: --select a small one.\n"
        "\n"
        "Examples:\n"
        "  korvel triangles states.curves -o states.triangles --picture mesh.png\n"
        "  korvel triangles states.regions --select 20000,60000 --picture one.pdf");
}

void TrianglesCommand::write_traces() {
    PLYDT set;
    kit::copy_oriented(map_, set);
    traces_.emplace(trace_directory_);
    traces_->write(set);
}

void TrianglesCommand::triangulate() {
    options_.fill = fill_.fill();
    Task task("triangulating regions");
    triangulation_ = kit::triangulate(map_, options_, task.context());
}

void TrianglesCommand::report() const {
    print("%s", counted(triangulation_.triangle_count(), "triangle").c_str());
    double region_area = 0;
    double triangle_area = 0;
    const std::optional<kit::Map> measured = input_.source().measured(map_);
    for (const kit::Region region : map_) {
        const double area = (measured ? *measured : map_)[region.index()].area();
        region_area += area;
        const double share = measured ? area / region.area() : 1;
        triangle_area +=
            is_covered(region.index()) ? area : coverage(region.index()).triangle_area * share;
    }
    const int by_front = triangulation_.count(kit::Filled::by_front);
    const int by_delaunay = triangulation_.count(kit::Filled::by_delaunay);
    print("filled: %d by the front, %d by Delaunay triangles", by_front, by_delaunay);
    print("%d of %s covered, area of triangles %s, of regions %s", by_front + by_delaunay,
          counted(map_.size(), "region").c_str(), number_text(triangle_area).c_str(),
          number_text(region_area).c_str());
    facts()
        .set("regions", map_.size())
        .set("triangles", triangulation_.triangle_count())
        .set("by_front", by_front)
        .set("by_delaunay", by_delaunay)
        .set("triangle_area", triangle_area)
        .set("region_area", region_area);
}

void TrianglesCommand::name_uncovered() const {
    std::vector<int> uncovered;
    for (const kit::Region region : map_) {
        if (!is_covered(region.index())) {
            warn(RegionInput::name(region) + ": " + reason(region.index()));
            uncovered.push_back(region.number());
        }
    }
    facts().set("uncovered", uncovered);
    if (is_strict_ && !uncovered.empty()) {
        note_incomplete();
    }
}

std::string TrianglesCommand::reason(int region) const {
    if (const std::optional<kit::Flaw> flaw = kit::flaw_of(map_, region)) {
        return "not covered, " + kit::text(*flaw);
    }
    const kit::Coverage found = coverage(region);
    return found.is_same_area ? "triangles overlap and leave a gap of the same size"
                              : "triangles cover " + number_text(found.triangle_area) + " of " +
                                    number_text(found.region_area);
}

void TrianglesCommand::write() {
    outputs_.write(
        {[&](kit::OutputFile& out) { triangulation_.write(out); },
         [&] { return input_.source().in_input_system(kit::features_of(triangulation_)); }},
        [&](kit::PictureCanvas& canvas) {
            kit::draw(triangulation_, canvas, view_.options());
            view_.report_left_out(map_, canvas.size());
        });
}

} // namespace
} // namespace korvel::command
