#include "apps/command/source_options.h"

#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"
#include "apps/command/task.h"

namespace korvel::command {
namespace {

kit::Rectangle bounds_of(const std::vector<kit::Point2>& points);

} // namespace

void SourceOptions::add_options(Options options, Default projection) {
    default_ = projection;
    options.add("--grid", grid_, "STEP",
                "Put points on a grid of this step, 0.001 or 1/3600;\n"
                "chosen from the coordinates if not given");
    options.add("--grid-origin", grid_origin_, "X,Y",
                "The point of the grid that has the steps 0,0");
    options.add("--reference", reference_, "EPSG:CODE",
                "The reference system of a file that does not name it");
    options.add("--project", project_, "none|auto|EPSG:CODE",
                projection == Default::none
                    ? "Work in this reference system; auto: a local one in metres that\n"
                      "keeps areas. Reported areas are in such a one if not given"
                    : "Work in this reference system; auto, for longitude and latitude if\n"
                      "not given: a local one in metres that keeps areas");
    options.add("--layer", layer_, "NAME", "The layer of the file that is read, else the first");
    options.add("--where", where_, "CONDITION", "Only the features for which this is true (GDAL)");
    options.add("--labels", labels_, "FILE",
                "Points that give their attributes to the regions around them");
    options.add_flag("--keep-gaps", keeps_gaps_, "Keep regions between the polygons of the file");
}

void SourceOptions::check() const {
    grid();
    if (!project_.empty() && project_ != "none" && project_ != "auto") {
        kit::reference_name(project_);
    }
    if (!reference_.empty()) {
        kit::reference_name(reference_);
    }
}

kit::GridChoice SourceOptions::grid() const {
    kit::GridChoice choice;
    if (!grid_.empty()) {
        choice.step = kit::Grid::parse(grid_);
        if (!choice.step) {
            refuse("--grid", grid_, "a step above 0, such as 0.001 or 1/3600");
        }
    }
    if (!grid_origin_.empty()) {
        const RealPoint origin = parse_real_point("--grid-origin", grid_origin_);
        choice.origin = kit::Point2{origin.x, origin.y};
    }
    return choice;
}

kit::Features SourceOptions::read(const std::string& name) const {
    Task task("reading features");
    kit::Features features =
        read_features(name, {.layer = layer_, .where = where_}, task.context());
    if (features.reference.empty()) {
        features.reference = reference_;
    }
    return features;
}

void SourceOptions::project(kit::Features& features) {
    if (features.reference.empty()) {
        features.reference = reference_;
    }
    input_reference_ = features.reference;
    const std::string to = target(features.reference, bounds_of(features.points));
    if (!to.empty()) {
        note_projection(features.reference, to);
        projection_->forward(features.points);
        features.reference = to;
    }
}

void SourceOptions::project(kit::Map& map) {
    if (map.placement().reference.empty() && !reference_.empty()) {
        map.set_placement({map.placement().grid, reference_});
    }
    input_reference_ = map.placement().reference;
    const std::string to = target(input_reference_, map.bounds());
    if (!to.empty()) {
        note_projection(input_reference_, to);
        std::vector<kit::Point2> points = map.points();
        projection_->forward(points);
        map.move_points(points, {kit::grid_for(points, grid()), to});
    }
}

// Empty where nothing is projected.
std::string SourceOptions::target(const std::string& reference,
                                  const kit::Rectangle& bounds) const {
    const bool is_default = project_.empty();
    const bool is_automatic = is_default ? default_ == Default::automatic : project_ == "auto";
    if (is_automatic) {
        if (bounds.is_empty() || !kit::is_geographic(reference)) {
            return {};
        }
        if (is_default && !kit::has_projections()) {
            warn("coordinates stay longitude and latitude: this korvel has no PROJ");
            return {};
        }
        return kit::equal_area_about(reference, bounds);
    }
    if (is_default || project_ == "none" || project_ == reference) {
        return {};
    }
    if (reference.empty()) {
        throw kit::input_error(
            "--project: the file does not name its reference system; --reference "
            "does");
    }
    return project_;
}

void SourceOptions::note_projection(const std::string& from, const std::string& to) {
    projection_ = kit::projection(from, to);
    print("projected: %s", kit::reference_name(to).c_str());
    facts().set("projection", to);
}

kit::Features SourceOptions::in_input_system(kit::Features features) const {
    if (projection_) {
        projection_->back(features.points);
        features.reference = input_reference_;
    }
    return features;
}

std::optional<kit::Map> SourceOptions::measured(const kit::Map& map, bool is_printed) const {
    const std::string& reference = map.placement().reference;
    if (!project_.empty() || map.empty() || !kit::is_geographic(reference)) {
        return {};
    }
    if (!kit::has_projections()) {
        warn("areas are in square degrees: this korvel has no PROJ");
        return {};
    }
    const std::string to = kit::equal_area_about(reference, map.bounds());
    std::vector<kit::Point2> points = map.points();
    kit::projection(reference, to)->forward(points);
    kit::Map measured = map;
    measured.move_points(points, {{}, to});
    if (is_printed) {
        print("areas in square metres: %s", kit::reference_name(to).c_str());
    }
    facts().set("area_projection", to);
    return measured;
}

void SourceOptions::label(kit::Map& map, const kit::Features* input) const {
    if (input != nullptr && kit::has_shape(*input, kit::Shape::points)) {
        report_labels("the file's points", kit::take_labels(map, *input));
    }
    if (labels_.empty()) {
        return;
    }
    kit::Features labels = read_features(labels_, {});
    const std::string& reference = map.placement().reference;
    if (!labels.reference.empty() && !reference.empty() && labels.reference != reference) {
        kit::projection(labels.reference, reference)->forward(labels.points);
    }
    if (!kit::has_shape(labels, kit::Shape::points)) {
        throw kit::input_error(shown(labels_) + ": contains no points, which --labels reads");
    }
    report_labels(shown(labels_), kit::take_labels(map, labels));
}

void SourceOptions::report_labels(const std::string& file, const kit::LabelReport& report) const {
    print("%s: %s used, %d outside all regions, %d in regions that have one", file.c_str(),
          counted(report.used, "label").c_str(), report.outside, report.repeated);
    facts().set("labels", Record()
                              .set("used", report.used)
                              .set("outside", report.outside)
                              .set("repeated", report.repeated));
}

namespace {

kit::Rectangle bounds_of(const std::vector<kit::Point2>& points) {
    kit::Rectangle box;
    for (const auto& [x, y] : points) {
        box.take_in(x, y);
    }
    return box;
}

} // namespace
} // namespace korvel::command
