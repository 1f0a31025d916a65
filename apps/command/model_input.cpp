#include "apps/command/model_input.h"

#include <algorithm>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"

namespace korvel::command {

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

Record model_record(const kit::Solids& solids) {
    Record record;
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
    const kit::Box box = solids.bounds();
    double extent = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        extent = std::max(extent, box.high[k] - box.low[k]);
    }
    if (change > 1e-5 * extent) {
        warn("the file holds six decimals and is read in single precision, which moves vertices by "
             "up to " +
             number_text(change) + advice);
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

} // namespace korvel::command
