#include "apps/command/model_input.h"

#include <algorithm>
#include <cmath>

#include "apps/command/arguments.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"
#include "apps/command/task.h"

namespace korvel::command {
namespace {

double extent_of(const kit::Box& box);

} // namespace

void ModelReader::add_option(Options options) {
    weld_ = options
                .add("--weld", options_.weld, "T",
                     "Join points of a mesh that are no farther apart; 0: those at one place")
                .with_default();
}

void ModelReader::check(bool is_mesh) const {
    if (options_.weld < 0 || !std::isfinite(options_.weld)) {
        refuse("--weld", kit::number_text(options_.weld), "a distance of 0 or more");
    }
    if (!is_mesh && weld_.is_given()) {
        throw kit::input_error("--weld joins points of a mesh, and there is none; 'korvel weld' "
                               "joins bodies");
    }
}

kit::Solids ModelReader::read(const std::string& name, Record& record, bool is_printed) const {
    const bool is_mesh = holds_mesh(name, true);
    check(is_mesh);
    if (is_mesh) {
        const kit::Mesh mesh = [&] {
            Task task("reading " + shown(name));
            return read_mesh(name, {}, task.context());
        }();
        return solids_of(name, mesh, record, is_printed);
    }
    const kit::TextFile file = read_input(name);
    Task task("reading the model");
    return kit::Solids::read(file, task.context());
}

kit::Solids ModelReader::solids_of(const std::string& name, const kit::Mesh& mesh, Record& record,
                                   bool is_printed) const {
    kit::MeshReport report;
    kit::Solids solids = [&] {
        Task task("finding bodies");
        try {
            return kit::solids_of(mesh, options_, &report, task.context());
        } catch (const kit::Error& error) {
            throw kit::Error(error.kind(), shown(name) + ": " + error.what(),
                             {.file = shown(name)});
        }
    }();
    if (is_printed) {
        print("%s", mesh_text(shown(name), mesh).c_str());
        print("%s", mesh_text(report).c_str());
    }
    record.set("mesh", mesh_record(report, mesh_record(mesh)));
    return solids;
}

void ModelInput::add_options(Options options) {
    options.add("MODEL", file_, "FILE", "Body model file, or a mesh: .stl, .ply, .obj, .off, .glb")
        .required();
    reader_.add_option(options);
}

kit::Solids ModelInput::load() const {
    facts().set("input", shown(file_));
    return reader_.read(file_, facts());
}

void check_number(const std::string& option, int number, int size, const std::string& thing,
                  const std::string& file) {
    if (number < 0 || number >= size) {
        refuse(option, std::to_string(number),
               "a " + thing + " of " + file + ", they go from 0 to " + std::to_string(size - 1));
    }
}

std::string model_figures(const kit::Solids& solids) {
    return counted(solids.vertex_count(), "vertex", "vertices") + ", " +
           counted(solids.edge_count(), "edge") + ", " + counted(solids.face_count(), "face") +
           ", volume " + number_text(solids.volume());
}

Record model_record(const kit::Solids& solids, Record record) {
    record.set("bodies", solids.size())
        .set("vertices", solids.vertex_count())
        .set("edges", solids.edge_count())
        .set("faces", solids.face_count())
        .set("volume", solids.volume())
        .set("bounds", bounds_record(solids.model().wrap_cuboid, 3));
    return record;
}

std::string bounds_text(const kit::Solids& solids) {
    return bounds_text(solids.model().wrap_cuboid, 3);
}

void report_bodies(const std::string& name, const kit::Solids& solids) {
    print("%s: %s, bounds %s", name.c_str(), counted(solids.size(), "body", "bodies").c_str(),
          bounds_text(solids).c_str());
    facts().set("model", Record()
                             .set("bodies", solids.size())
                             .set("bounds", bounds_record(solids.model().wrap_cuboid, 3)));
}

void refuse_collapse(const kit::Solids& solids, const std::string& subject,
                     const std::string& advice) {
    if (const auto collapse = kit::collapse_in_file(solids)) {
        throw kit::input_error(subject + ": " + kit::text(*collapse) + "; " + advice);
    }
}

void warn_of_rounding(const kit::Solids& solids, const std::string& advice) {
    const double change = solids.change_by_file();
    if (change > 1e-5 * extent_of(solids.bounds())) {
        warn("the file holds six decimals and is read in single precision, which moves vertices by "
             "up to " +
             number_text(change) + advice);
    }
}

void warn_of_precision(const kit::Mesh& mesh, const std::string& file,
                       std::optional<kit::MeshFormat> format) {
    const double change = format ? kit::change_by_format(mesh, *format) : 0;
    kit::Box box;
    for (const kit::Point3& point : mesh.points) {
        box.take_in(point);
    }
    if (change > 0 && change > 1e-5 * extent_of(box)) {
        warn(file + ": single precision moves vertices by up to " + number_text(change) +
             "; .ply, .obj and .glb keep them");
    }
}

std::string weld_text(const kit::WeldReport& report) {
    return "welded: " + counted(report.vertices_joined, "vertex", "vertices") + " joined, " +
           counted(report.faces_shared, "face") + " shared, " +
           counted(report.walls_split, "wall") + " split, " + counted(report.walls_turned, "wall") +
           " turned";
}

Record weld_record(const kit::WeldReport& report) {
    Record record;
    record.set("vertices_joined", report.vertices_joined)
        .set("faces_shared", report.faces_shared)
        .set("walls_split", report.walls_split)
        .set("walls_turned", report.walls_turned);
    return record;
}

std::string mesh_text(const std::string& file, const kit::Mesh& mesh) {
    return file + ": mesh of " + counted(static_cast<int>(mesh.face_count()), "face") + " and " +
           counted(static_cast<int>(mesh.points.size()), "point");
}

Record mesh_record(const kit::Mesh& mesh) {
    return Record()
        .set("faces", static_cast<int>(mesh.face_count()))
        .set("points", static_cast<int>(mesh.points.size()));
}

std::string mesh_text(const kit::MeshReport& report) {
    std::string text;
    const auto note = [&](int count, const std::string& counted_text) {
        if (count > 0) {
            text.append(counted_text).append(", ");
        }
    };
    note(report.points_joined, counted(report.points_joined, "point") + " joined");
    note(report.faces_degenerate, counted(report.faces_degenerate, "face") + " without area");
    note(report.faces_doubled, counted(report.faces_doubled, "doubled face"));
    note(report.faces_divided, counted(report.faces_divided, "face") + " divided");
    note(report.cavities, counted(report.cavities, "cavity", "cavities"));
    return text.append(counted(report.faces_turned, "face"))
        .append(" turned, ")
        .append(counted(report.open_edges, "open edge"))
        .append(", ")
        .append(counted(report.crowded_edges, "edge"))
        .append(" with more than two faces");
}

Record mesh_record(const kit::MeshReport& report, Record record) {
    record.set("points_joined", report.points_joined)
        .set("faces_degenerate", report.faces_degenerate)
        .set("faces_doubled", report.faces_doubled)
        .set("faces_divided", report.faces_divided)
        .set("faces_turned", report.faces_turned)
        .set("open_edges", report.open_edges)
        .set("crowded_edges", report.crowded_edges)
        .set("shells", report.shells)
        .set("cavities", report.cavities);
    return record;
}

namespace {

double extent_of(const kit::Box& box) {
    double extent = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        extent = std::max(extent, box.high[k] - box.low[k]);
    }
    return extent;
}

} // namespace
} // namespace korvel::command
