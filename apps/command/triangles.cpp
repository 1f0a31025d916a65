#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/map_view.h"
#include "apps/command/messages.h"
#include "apps/command/outputs.h"
#include "apps/command/progress_line.h"
#include "apps/command/region_input.h"
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
    void report_coverage() const;
    void write();

    RegionInput input_;
    std::string trace_directory_;
    std::optional<TraceFiles> traces_;
    Outputs outputs_;
    MapView view_;
    kit::TriangulateOptions options_;
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
    report_coverage();
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
    outputs_.add_file(options, "Write the points and triangles");
    outputs_.add_picture(options);
    view_.add_options(options);
    options.footer("A region that its triangles do not cover is named in a warning.\n"
                   "--tolerance applies to curve files only. The trace of a region grows with the "
                   "cube of its\n"
                   "points: --select a small one.\n"
                   "\n"
                   "Examples:\n"
                   "  korvel triangles states.curves -o states.triangles --picture mesh.png\n"
                   "  korvel triangles states.regions --select 20000,-60000 --picture one.pdf");
}

void TrianglesCommand::write_traces() {
    PLYDT set;
    kit::copy_oriented(map_, set);
    traces_.emplace(trace_directory_);
    traces_->write(set);
}

void TrianglesCommand::triangulate() {
    const Stopwatch time;
    {
        ProgressLine progress("triangulating regions");
        triangulation_ = kit::triangulate(map_, options_, progress.context());
    }
    std::printf("%s in %.1f ms\n", counted(triangulation_.triangle_count(), "triangle").c_str(),
                time.milliseconds());
}

void TrianglesCommand::report_coverage() const {
    double region_area = 0;
    double triangle_area = 0;
    int covered = 0;
    for (const kit::Region region : map_) {
        const kit::Coverage coverage = triangulation_.coverage(region.index());
        region_area += coverage.region_area;
        triangle_area += coverage.triangle_area;
        if (coverage.is_tiling) {
            ++covered;
        } else if (coverage.is_same_area) {
            warn(RegionInput::name(region) +
                 ": triangles overlap and leave a gap of the same size");
        } else {
            warn(RegionInput::name(region) + ": triangles cover " +
                 number_text(coverage.triangle_area) + " of " + number_text(coverage.region_area));
        }
    }
    std::printf("%d of %s covered, area of triangles %s, of regions %s\n", covered,
                counted(map_.size(), "region").c_str(), number_text(triangle_area).c_str(),
                number_text(region_area).c_str());
}

void TrianglesCommand::write() {
    outputs_.write(
        [&](kit::OutputFile& out) { triangulation_.write(out); },
        [&](kit::PictureCanvas& canvas) { kit::draw(triangulation_, canvas, view_.options()); });
}

} // namespace
} // namespace korvel::command
