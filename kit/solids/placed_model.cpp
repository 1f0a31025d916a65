#include "kit/solids/placed_model.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "kit/files/body_names.h"
#include "kit/files/model_file.h"
#include "kit/files/placement_line.h"
#include "kit/solids/exact.h"

namespace korvel::kit {
namespace {

// Files in single precision hold whole numbers up to here.
constexpr double most_in_file = 1 << 24;

std::unique_ptr<TMOD3D> in_steps(const TMOD3D& model, const Grid& grid);
bool holds(const Grid& grid, const Box& box);

template <class Vertices, class Convert>
void convert_vertices(Vertices& vertices, Convert convert) {
    for (VERT3D& vertex : vertices) {
        const Point3 point = convert(to_point(vertex.model_xyz));
        std::copy(point.begin(), point.end(), vertex.model_xyz);
    }
}

} // namespace

std::optional<std::string> read_placed_model(const TextFile& file, TMOD3D& out,
                                             Placement& placement) {
    auto change = read_model(file, out);
    placement = read_placement(file);
    if (!placement.grid.is_identity()) {
        to_user(placement.grid, out);
    }
    return change;
}

void write_placed_model(const TMOD3D& model, const Placement& placement, FILE* out,
                        std::span<const std::string> names) {
    if (placement.grid.is_identity()) {
        operand(model).write_mode(out);
    } else {
        in_steps(model, placement.grid)->write_mode(out);
    }
    std::fputs(body_name_lines(names).c_str(), out);
    std::fputs(placement_line(placement).c_str(), out);
}

void to_user(const Grid& grid, TMOD2D& section) {
    convert_vertices(section.verts, [&](const Point3& steps) { return grid.to_user(steps); });
}

void write_placed_section(const TMOD2D& section, const Placement& placement, FILE* out) {
    if (placement.grid.is_identity()) {
        const_cast<TMOD2D&>(section).writedate(out); // which changes nothing
    } else {
        TMOD2D steps(section);
        convert_vertices(steps.verts,
                         [&](const Point3& user) { return placement.grid.to_grid(user); });
        steps.writedate(out);
    }
    std::fputs(placement_line(placement).c_str(), out);
}

Placement common_placement(const std::vector<PlacedBox>& parts, const Context& context) {
    std::optional<Placement> common;
    Box whole;
    bool is_same_grid = true;
    bool has_warned = false;
    for (const auto& [placement, box] : parts) {
        if (box.is_empty()) {
            continue;
        }
        whole.take_in(box.low);
        whole.take_in(box.high);
        if (!common) {
            common = placement;
            continue;
        }
        is_same_grid = is_same_grid && placement.grid == common->grid;
        if (placement.grid.step() < common->grid.step()) {
            common->grid = placement.grid;
        }
        if (common->reference.empty()) {
            common->reference = placement.reference;
        } else if (!has_warned && !placement.reference.empty() &&
                   placement.reference != common->reference) {
            has_warned = true;
            context.warn("the models are in different reference systems, " + common->reference +
                         " and " + placement.reference + "; coordinates are taken as they are");
        }
    }
    if (common && !is_same_grid && !holds(common->grid, whole)) {
        const Point2 size = {whole.high[0] - whole.low[0], whole.high[1] - whole.low[1]};
        if (std::max(size[0], size[1]) <= 2 * most_in_file * common->grid.step()) {
            common->grid = grid_for(
                std::vector<Point2>{{whole.low[0], whole.low[1]}, {whole.high[0], whole.high[1]}},
                {.step = common->grid});
        }
    }
    return common.value_or(parts.empty() ? Placement() : parts.front().placement);
}

// Orientation by volumes in the user's coordinates would fail for small bodies far from 0.
void to_user(const Grid& grid, TMOD3D& model) {
    std::vector<Point3> vertices;
    vertices.reserve(static_cast<std::size_t>(model.verts.GetSize()));
    for (const VERT3D& vertex : model.verts) {
        vertices.push_back(grid.to_user(to_point(vertex.model_xyz)));
    }
    to_user(grid, vertices, model);
}

void to_user(const Grid& grid, std::span<const Point3> vertices, TMOD3D& model) {
    auto next = vertices.begin();
    convert_vertices(model.verts, [&](const Point3& /*steps*/) { return *next++; });
    if (grid.is_y_down()) {
        for (POLY3D& face : model.polys) {
            face.invert_poly_range();
        }
        model.found_top_rel(); // relations are listed in the order of the faces' vertices
    }
    for (BODY3D& body : model.bodies) {
        body.volume *= grid.step() * grid.step() * grid.step();
    }
    for (LINE3D& edge : model.lines) {
        edge.set_line_eqt(model.verts);
    }
    for (POLY3D& face : model.polys) {
        face.set_poly_eql(model.verts);
    }
    model.model_wrap_cuboid();
    model.change_vis_parm();
    for (int body = 0; body < model.bodies.GetSize(); ++body) {
        model.get_body_span(body);
    }
}

namespace {

// What a file contains of a model: a fraction of its memory.
std::unique_ptr<TMOD3D> in_steps(const TMOD3D& model, const Grid& grid) {
    auto steps = std::make_unique<TMOD3D>();
    steps->verts.SetSize(model.verts.GetSize());
    for (int v = 0; v < model.verts.GetSize(); ++v) {
        Point3 user = to_point(model.verts[v].model_xyz);
        for (std::size_t k = 0; k < user.size(); ++k) {
            user[k] += model.orig[k]; // as `write_mode` does
        }
        const Point3 point = grid.to_grid(user);
        std::copy(point.begin(), point.end(), steps->verts[v].model_xyz);
    }
    steps->polys.SetSize(model.polys.GetSize());
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        steps->polys[f].verts.Copy(model.polys[f].verts);
        if (grid.is_y_down()) {
            steps->polys[f].invert_poly_range();
        }
    }
    steps->bodies.SetSize(model.bodies.GetSize());
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        steps->bodies[b].param_1 = model.bodies[b].param_1;
        steps->bodies[b].param_2 = model.bodies[b].param_2;
        steps->bodies[b].param_3 = model.bodies[b].param_3;
        steps->bodies[b].polys.Copy(model.bodies[b].polys);
    }
    return steps;
}

bool holds(const Grid& grid, const Box& box) {
    const auto is_near = [&](const Point3& point) {
        const Point3 steps = grid.to_grid(point);
        return std::abs(steps[0]) <= most_in_file && std::abs(steps[1]) <= most_in_file;
    };
    return is_near(box.low) && is_near(box.high);
}

} // namespace
} // namespace korvel::kit
