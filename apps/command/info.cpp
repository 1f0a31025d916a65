#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/report.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class InfoCommand {
public:
    explicit InfoCommand(Options options);
    void run() const;

private:
    std::string input_;
};

void print_curves(const kit::Network& network);
void print_regions(const kit::Map& map);
void print_triangles(const PLYDT& set, std::size_t regions);
void print_section(const TMOD2D& section);
void print_model(const kit::Solids& solids);
void print_body(const kit::Body& body, const kit::Surface& surface);
void print_bounds(const kit::Rectangle& box);

void InfoCommand::run() const {
    const kit::TextFile file(input_);
    const kit::FileKind kind = kit::kind_of(file);
    kit::FileContents contents;
    kit::WordReader words(file);
    kit::read_as(kind, words, contents);
    print("%s: %s", shown(input_).c_str(), kit::kind_name(kind));
    switch (kind) {
    case kit::FileKind::curves:
        print_curves(kit::Network::read(file));
        break;
    case kit::FileKind::regions:
        print_regions(kit::Map(contents.regions));
        break;
    case kit::FileKind::model:
        print_model(kit::Solids::read(file, {.on_warning = warn}));
        break;
    case kit::FileKind::section:
    case kit::FileKind::written_section:
        print_section(contents.section);
        break;
    case kit::FileKind::triangles:
        print_triangles(contents.triangles, contents.lines.wholes.size());
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
    options.footer("For each body of a model it lists the faces, edges and vertices, the Euler\n"
                   "characteristic (vertices - edges + faces: 2 for a ball, 0 for a ring), the\n"
                   "volume and colour, whether the body is closed, and the bodies that share a\n"
                   "face with it.\n"
                   "\n"
                   "Example:\n"
                   "  korvel info states.model");
}

void print_curves(const kit::Network& network) {
    int closed = 0;
    for (int i = 0; i < network.curve_count(); ++i) {
        closed += network.is_closed(i) ? 1 : 0;
    }
    print("%s, %d of them closed, %s", counted(network.curve_count(), "curve").c_str(), closed,
          counted(network.point_count(), "point").c_str());
    print_bounds(network.bounds());
}

void print_regions(const kit::Map& map) {
    int holes = 0;
    for (const kit::Region region : map) {
        holes += region.hole_count();
    }
    print("%s with %s, %s, %s, area %s", counted(map.size(), "region").c_str(),
          counted(holes, "hole").c_str(),
          counted(map.regions().ring_list.GetSize(), "ring").c_str(),
          counted(map.point_count(), "point").c_str(), number_text(map.area()).c_str());
    print_bounds(map.bounds());
}

void print_triangles(const PLYDT& set, std::size_t regions) {
    kit::Rectangle box;
    for (const VERT2D& point : set.pt_list) {
        box.take_in(point.x, point.y);
    }
    print("%s of %s, %s", counted(set.trg_list.GetSize(), "triangle").c_str(),
          counted(static_cast<int>(regions), "region").c_str(),
          counted(set.pt_list.GetSize(), "point").c_str());
    print_bounds(box);
}

void print_section(const TMOD2D& section) {
    print("%s, %s, %s", counted(section.verts.GetSize(), "vertex", "vertices").c_str(),
          counted(section.polys.GetSize(), "face").c_str(),
          counted(section.groups.GetSize(), "group").c_str());
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
}

void print_model(const kit::Solids& solids) {
    const std::vector<kit::Surface> surfaces = solids.surfaces();
    const auto open =
        std::count_if(surfaces.begin(), surfaces.end(),
                      [](const kit::Surface& surface) { return !surface.is_closed(); });
    print("%s, %d of them open, %s", counted(solids.size(), "body", "bodies").c_str(),
          static_cast<int>(open), model_figures(solids).c_str());
    print("bounds %s", bounds_text(solids).c_str());
    print("  body   faces   edges  vertices  Euler              volume  colour   state");
    for (const kit::Body body : solids) {
        print_body(body, surfaces[body.index()]);
    }
}

void print_body(const kit::Body& body, const kit::Surface& surface) {
    const kit::Colour colour = body.colour().rgb();
    std::string neighbours;
    for (const int neighbour : body.neighbours()) {
        neighbours +=
            (neighbours.empty() ? ", shares faces with " : " ") + std::to_string(neighbour);
    }
    print("%6d %7d %7d %9d %6d %19s  #%02x%02x%02x  %s%s", body.index(), surface.faces,
          surface.edges, surface.vertices, surface.euler_characteristic(),
          number_text(body.volume()).c_str(), colour.red, colour.green, colour.blue,
          kit::state_text(surface).c_str(), neighbours.c_str());
}

void print_bounds(const kit::Rectangle& box) {
    if (!box.is_empty()) {
        const double pairs[] = {box.left, box.right, box.top, box.bottom};
        print("bounds %s", bounds_text(pairs, 2).c_str());
    }
}

} // namespace
} // namespace korvel::command
