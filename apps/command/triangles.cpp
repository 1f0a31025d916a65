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
#include "kit/base/areas.h"
#include "kit/files/triangle_file.h"
#include "kit/maps/coverage.h"
#include "kit/maps/region_sets.h"
#include "kit/pictures/picture_fit.h"

namespace korvel::command {
namespace {

class TrianglesCommand {
public:
    explicit TrianglesCommand(CLI::App& command);
    void run();

private:
    void write_traces();
    void triangulate();
    void report_coverage() const;
    void write();
    void paint(CDC& dc, const kit::PictureFit& fit) const;

    RegionInput input_;
    std::string trace_directory_;
    std::optional<TraceFiles> traces_;
    Outputs outputs_;
    MapView view_;
    PLYDT set_;
    std::vector<int> ends_; // for each region the index after its last triangle
};

void TrianglesCommand::run() {
    input_.check();
    view_.check();
    outputs_.check();
    input_.load(set_);
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

void add_triangles_command(CLI::App& program) {
    add_command<TrianglesCommand>(program, "triangles", "Cover regions with triangles");
}

namespace {

TrianglesCommand::TrianglesCommand(CLI::App& command) {
    input_.add_options(command);
    command
        .add_option(
            "--trace", trace_directory_,
            "Write every step into trg.dat and wwwtrg.dat in this directory; slow and large")
        ->type_name("DIR");
    outputs_.add_file(command, "Write the points and triangles");
    outputs_.add_picture(command);
    view_.add_options(command);
    command.footer("A region that its triangles do not cover is named in a warning.\n"
                   "--tolerance applies to curve files only. The trace of a region grows with the "
                   "cube of its\n"
                   "points: --select a small one.\n"
                   "\n"
                   "Examples:\n"
                   "  korvel triangles states.curves -o states.triangles --picture mesh.png\n"
                   "  korvel triangles states.regions --select 20000,-60000 --picture one.pdf");
}

void TrianglesCommand::write_traces() {
    traces_.emplace(trace_directory_);
    traces_->write(set_);
    set_.trg_list.RemoveAll();
    set_.side_list.RemoveAll();
}

// Region by region, to know which triangles belong to which.
void TrianglesCommand::triangulate() {
    const Stopwatch time;
    {
        PLYDT::set_trace_files(false);
        ProgressLine progress("triangulating regions");
        set_.creat_top_rel();
        for (PLYDT::PyToRg& region : set_.region_list) {
            set_.poly_tranglate(region);
            ends_.push_back(set_.trg_list.GetSize());
            progress.update(static_cast<int>(ends_.size()), set_.region_list.GetSize());
        }
    }
    std::printf("%s in %.1f ms\n", counted(set_.trg_list.GetSize(), "triangle").c_str(),
                time.milliseconds());
}

void TrianglesCommand::report_coverage() const {
    const bool lattice = kit::are_lattice_points(set_.pt_list);
    double region_area = 0;
    double triangle_area = 0;
    int covered = 0;
    int first = 0;
    for (int i = 0; i < set_.region_list.GetSize(); ++i) {
        const PLYDT::PyToRg& region = set_.region_list[i];
        const kit::Coverage coverage =
            kit::measure_coverage(set_, region, first, ends_[i], lattice);
        region_area += coverage.region_area;
        triangle_area += coverage.triangle_area;
        first = ends_[i];
        if (coverage.is_tiling) {
            ++covered;
            continue;
        }
        if (coverage.is_same_area) {
            warn(input_.name(set_, i) + ": triangles overlap and leave a gap of the same size");
        } else {
            warn(input_.name(set_, i) + ": triangles cover " + number_text(coverage.triangle_area) +
                 " of " + number_text(coverage.region_area));
        }
    }
    std::printf("%d of %s covered, area of triangles %s, of regions %s\n", covered,
                counted(set_.region_list.GetSize(), "region").c_str(),
                number_text(triangle_area).c_str(), number_text(region_area).c_str());
}

void TrianglesCommand::write() {
    outputs_.write([&](FILE* out) { kit::write_triangles(set_, ends_, out); },
                   [&](kit::PictureCanvas& canvas, kit::PictureSize size) {
                       paint(canvas, view_.fit(kit::box_of_regions(set_), size));
                   });
}

// Triangles are drawn where their points lie, so a copy of the points is brought to the picture.
void TrianglesCommand::paint(CDC& dc, const kit::PictureFit& fit) const {
    PLYDT picture;
    picture.pt_list.SetSize(set_.pt_list.GetSize());
    for (int i = 0; i < set_.pt_list.GetSize(); ++i) {
        picture.pt_list[i].x = (set_.pt_list[i].x - fit.x0) / fit.sx * fit.scale + fit.ox;
        picture.pt_list[i].y = (set_.pt_list[i].y - fit.y0) / fit.sy * fit.scale + fit.oy;
    }
    picture.trg_list.Copy(set_.trg_list);
    CPen outline(PS_SOLID, fit.outline_width(picture.trg_list.GetSize()), RGB(60, 60, 60));
    CPen* const previous = dc.SelectObject(&outline);
    picture.Draw_Trgls(&dc);
    dc.SelectObject(previous);
}

} // namespace
} // namespace korvel::command
