#include <algorithm>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/info_list.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/placement_report.h"
#include "apps/command/report.h"
#include "apps/command/source_options.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class InfoCommand {
public:
    explicit InfoCommand(Options options);
    void run() const;

private:
    kit::AnyFile read() const;
    void describe_mesh() const;
    void describe_features() const;

    std::string input_;
    InfoListOptions list_;
    ModelReader reader_;
};

void describe_curves(const kit::Network& network);
void describe_triangles(const kit::TriangleSet& set);
void describe_section(const TMOD2D& section);

void InfoCommand::run() const {
    if (holds_mesh(input_)) {
        describe_mesh();
        return;
    }
    reader_.check(false);
    if (holds_features(input_)) {
        describe_features();
        return;
    }
    const kit::AnyFile file = read();
    list_.check(file.kind);
    facts().set("input", shown(input_)).set("kind", kit::kind_word(file.kind));
    if (!list_.is_csv) {
        print("%s: %s", shown(input_).c_str(), kit::kind_name(file.kind));
        if (!file.placement.is_plain()) {
            print("%s", placement_text(file.placement).c_str());
        }
    }
    set_placement(file.placement);
    switch (file.kind) {
    case kit::FileKind::curves:
        describe_curves(std::get<kit::Network>(file.contents));
        break;
    case kit::FileKind::regions: {
        const auto& map = std::get<kit::Map>(file.contents);
        const std::optional<kit::Map> measured = SourceOptions().measured(map, !list_.is_csv);
        describe_regions(map, measured ? *measured : map, list_);
        break;
    }
    case kit::FileKind::model:
        describe_model(std::get<kit::Solids>(file.contents), list_);
        break;
    case kit::FileKind::section:
    case kit::FileKind::written_section:
        describe_section(std::get<TMOD2D>(file.contents));
        break;
    case kit::FileKind::triangles:
        describe_triangles(std::get<kit::TriangleSet>(file.contents));
        break;
    }
}

} // namespace

void add_info_command(Program& program) {
    add_command<InfoCommand>(program, "info", "Describe a file and its contents");
}

namespace {

InfoCommand::InfoCommand(Options options) {
    options.add("FILE", input_, "FILE", "Any file that korvel reads or writes").required();
    list_.add_options(options);
    reader_.add_option(options);
    options.footer(
        "Up to 20 bodies or regions are listed, more are summed up. For each body: its\n"
        "faces, edges and vertices, the Euler characteristic (vertices - edges + faces:\n"
        "2 for a ball, 0 for a ring), volume and colour, whether it is closed, and the\n"
        "bodies that share a face with it.\n"
        "\n"
        "Examples:\n"
        "  korvel info states.model --sort volume\n"
        "  korvel info states.regions --csv > states.csv");
}

kit::AnyFile InfoCommand::read() const {
    const kit::TextFile file = read_input(input_);
    Task task("reading " + file.name);
    return kit::read_any(file, task.context());
}

void InfoCommand::describe_mesh() const {
    list_.check(kit::FileKind::model);
    facts().set("input", shown(input_)).set("kind", "mesh");
    const kit::Solids solids = reader_.read(input_, facts(), !list_.is_csv);
    set_placement(solids.placement());
    describe_model(solids, list_);
}

void InfoCommand::describe_features() const {
    if (list_.is_csv || !list_.sort.empty()) {
        throw kit::input_error(std::string(list_.is_csv ? "--csv" : "--sort") +
                               ": a file of features contains no bodies or regions");
    }
    const kit::Features features = [&] {
        Task task("reading " + shown(input_));
        return read_features(input_, {}, task.context());
    }();
    kit::Rectangle box;
    for (const auto& [x, y] : features.points) {
        box.take_in(x, y);
    }
    std::string fields;
    for (const kit::Field& field : features.fields) {
        fields.append(fields.empty() ? "" : ", ").append(field.name);
    }
    const auto count = [](std::size_t number) { return static_cast<int>(number); };
    print("%s: features", shown(input_).c_str());
    print("%s, %s, %s", counted(count(features.features.size()), "feature").c_str(),
          counted(count(features.paths.size()), "path").c_str(),
          counted(count(features.points.size()), "point").c_str());
    print("reference system: %s", features.reference.empty()
                                      ? "not known"
                                      : kit::reference_name(features.reference).c_str());
    print("attributes: %s", fields.empty() ? "none" : fields.c_str());
    facts()
        .set("input", shown(input_))
        .set("kind", "features")
        .set("features", count(features.features.size()))
        .set("points", count(features.points.size()))
        .set("heights", count(features.heights))
        .set("reference", features.reference);
    print_bounds(box);
    set_bounds(box);
}

void describe_curves(const kit::Network& network) {
    int closed = 0;
    for (int i = 0; i < network.curve_count(); ++i) {
        closed += network.is_closed(i) ? 1 : 0;
    }
    print("%s, %d of them closed, %s", counted(network.curve_count(), "curve").c_str(), closed,
          counted(network.point_count(), "point").c_str());
    facts()
        .set("curves", network.curve_count())
        .set("closed", closed)
        .set("points", network.point_count());
    print_bounds(network.bounds());
    set_bounds(network.bounds());
}

void describe_triangles(const kit::TriangleSet& set) {
    kit::Rectangle box;
    for (const VERT2D& point : set.triangles.pt_list) {
        box.take_in(point.x, point.y);
    }
    const int triangles = set.triangles.trg_list.GetSize();
    const int points = set.triangles.pt_list.GetSize();
    print("%s of %s, %s", counted(triangles, "triangle").c_str(),
          counted(set.regions, "region").c_str(), counted(points, "point").c_str());
    facts().set("triangles", triangles).set("regions", set.regions).set("points", points);
    print_bounds(box);
    set_bounds(box);
}

void describe_section(const TMOD2D& section) {
    print("%s, %s, %s", counted(section.verts.GetSize(), "vertex", "vertices").c_str(),
          counted(section.polys.GetSize(), "face").c_str(),
          counted(section.groups.GetSize(), "group").c_str());
    facts()
        .set("vertices", section.verts.GetSize())
        .set("faces", section.polys.GetSize())
        .set("groups", section.groups.GetSize());
    if (section.verts.IsEmpty()) {
        return;
    }
    double pairs[6] = {};
    for (int k = 0; k < 3; ++k) {
        const auto [least, greatest] = std::minmax_element(
            section.verts.begin(), section.verts.end(),
            [&](const VERT3D& a, const VERT3D& b) { return a.model_xyz[k] < b.model_xyz[k]; });
        pairs[2 * k] = least->model_xyz[k];
        pairs[2 * k + 1] = greatest->model_xyz[k];
    }
    print("bounds %s", bounds_text(pairs, 3).c_str());
    facts().set("bounds", bounds_record(pairs, 3));
}

} // namespace
} // namespace korvel::command
