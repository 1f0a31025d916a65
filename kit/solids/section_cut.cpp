#include "kit/solids/section_cut.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korvel::kit {
namespace {

Plane beside_vertices(const Plane& plane, const TMOD3D& model);
void cut_by_body(TMOD3D& model, Cut& cut);
void measure(Cut& cut, PlaneAxes axes);
double area_seen(const TMOD2D& section, int polygon, PlaneAxes axes);
int depth(const TMOD2D& section, const std::vector<int>& polygons, std::size_t which,
          PlaneAxes axes);
int count_loose_points(const TMOD2D& section);
double length_of_normal(const Plane& plane);
double distance(const Plane& plane, const double* point);

} // namespace

PlaneAxes::PlaneAxes(const Plane& plane) {
    const auto* const largest =
        std::max_element(plane.begin(), plane.begin() + 3,
                         [](double a, double b) { return std::abs(a) < std::abs(b); });
    away = static_cast<int>(largest - plane.begin());
    u = away == 0 ? 1 : 0;
    v = away == 2 ? 1 : 2;
}

Cut cut_model(TMOD3D& model, const Plane& plane) {
    Cut cut;
    cut.plane = beside_vertices(plane, model);
    cut_by_body(model, cut);
    measure(cut, PlaneAxes(plane));
    cut.loose_points = count_loose_points(cut.section);
    return cut;
}

std::array<double, 2> distances_from(const Plane& plane, const TMOD3D& model) {
    std::array<double, 2> range = {std::numeric_limits<double>::infinity(),
                                   -std::numeric_limits<double>::infinity()};
    for (const VERT3D& vertex : model.verts) {
        const double apart = distance(plane, vertex.model_xyz);
        range = {std::min(range[0], apart), std::max(range[1], apart)};
    }
    return range;
}

Plane moved(const Plane& plane, double distance) {
    return {plane[0], plane[1], plane[2], plane[3] - distance * length_of_normal(plane)};
}

namespace {

// Tries offsets on both sides with growing distance, the side of the model's middle first.
Plane beside_vertices(const Plane& plane, const TMOD3D& model) {
    constexpr int most_steps = 1000;
    double size = std::abs(plane[3]) / length_of_normal(plane);
    double middle[3] = {};
    for (int k = 0; k < 3; ++k) {
        size = std::max({size, std::abs(model.cuboid_min[k]), std::abs(model.cuboid_max[k])});
        middle[k] = (model.cuboid_min[k] + model.cuboid_max[k]) / 2;
    }
    const double clearance = 1e-11 * size;
    std::vector<double> near;
    for (const VERT3D& vertex : model.verts) {
        const double apart = distance(plane, vertex.model_xyz);
        if (std::abs(apart) <= (2 * most_steps + 2) * clearance) {
            near.push_back(apart);
        }
    }
    const double towards_middle = distance(plane, middle) < 0 ? -1 : 1;
    for (int step = 0; step < most_steps; ++step) {
        for (const double side : {towards_middle, -towards_middle}) {
            const double offset = side * step * 2 * clearance;
            if (std::none_of(near.begin(), near.end(),
                             [&](double apart) { return std::abs(apart - offset) <= clearance; })) {
                return step == 0 ? plane : moved(plane, offset);
            }
        }
    }
    return plane;
}

// Only its colour relates a polygon of a section to its body, so for the length of the cut
// the hue of each body is its number.
void cut_by_body(TMOD3D& model, Cut& cut) {
    std::vector<double> hues;
    for (BODY3D& body : model.bodies) {
        hues.push_back(body.hue);
        body.hue = static_cast<double>(hues.size() - 1);
    }
    model.get_section(cut.plane.data(), cut.section);
    for (std::size_t body = 0; body < hues.size(); ++body) {
        model.bodies[static_cast<int>(body)].hue = hues[body];
    }
    for (POLY3D_CPLX& group : cut.section.groups) {
        const int body = static_cast<int>(group.hue);
        group.hue = hues[body];
        group.rgb_color();
        if (cut.bodies.empty() || cut.bodies.back().body != body) {
            cut.bodies.push_back({body, {}, 0});
        }
        cut.bodies.back().polygons.push_back(group.polys[0]);
    }
}

void measure(Cut& cut, PlaneAxes axes) {
    const double stretch = length_of_normal(cut.plane) / std::abs(cut.plane[axes.away]);
    for (BodyCut& body : cut.bodies) {
        for (std::size_t i = 0; i < body.polygons.size(); ++i) {
            const double area = stretch * area_seen(cut.section, body.polygons[i], axes);
            const bool is_hole = depth(cut.section, body.polygons, i, axes) % 2 != 0;
            cut.section.polys[body.polygons[i]].area = area;
            body.area += is_hole ? -area : area;
        }
        cut.area += body.area;
    }
}

// From the first corner on, which keeps the products small far from the origin.
double area_seen(const TMOD2D& section, int polygon, PlaneAxes axes) {
    const CArray<int>& corners = section.polys[polygon].verts;
    const double* const origin = section.verts[corners[0]].model_xyz;
    double sum = 0;
    for (int k = 1; k + 1 < corners.GetSize(); ++k) {
        const double* const a = section.verts[corners[k]].model_xyz;
        const double* const b = section.verts[corners[k + 1]].model_xyz;
        sum += (a[axes.u] - origin[axes.u]) * (b[axes.v] - origin[axes.v]) -
               (a[axes.v] - origin[axes.v]) * (b[axes.u] - origin[axes.u]);
    }
    return std::abs(sum) / 2;
}

// In how many others of a body's polygons one lies. Loops may touch at corners, so the middle of a
// side represents the polygon.
int depth(const TMOD2D& section, const std::vector<int>& polygons, std::size_t which,
          PlaneAxes axes) {
    const CArray<int>& corners = section.polys[polygons[which]].verts;
    const double* const a = section.verts[corners[0]].model_xyz;
    const double* const b = section.verts[corners[1]].model_xyz;
    int others = 0;
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        others += i != which && contains(section, polygons[i], axes, (a[axes.u] + b[axes.u]) / 2,
                                         (a[axes.v] + b[axes.v]) / 2)
                      ? 1
                      : 0;
    }
    return others;
}

int count_loose_points(const TMOD2D& section) {
    std::vector<bool> is_used(section.verts.GetSize(), false);
    for (const POLY3D& polygon : section.polys) {
        for (const int v : polygon.verts) {
            is_used[v] = true;
        }
    }
    return static_cast<int>(std::count(is_used.begin(), is_used.end(), false));
}

double length_of_normal(const Plane& plane) {
    return std::hypot(plane[0], plane[1], plane[2]);
}

double distance(const Plane& plane, const double* point) {
    return (plane[0] * point[0] + plane[1] * point[1] + plane[2] * point[2] + plane[3]) /
           length_of_normal(plane);
}

} // namespace

// Even-odd along a ray towards smaller u.
bool contains(const TMOD2D& section, int polygon, PlaneAxes axes, double u, double v) {
    const CArray<int>& corners = section.polys[polygon].verts;
    bool is_inside = false;
    for (int k = 0; k < corners.GetSize(); ++k) {
        const double* const a = section.verts[corners[k]].model_xyz;
        const double* const b = section.verts[corners[(k + 1) % corners.GetSize()]].model_xyz;
        if ((a[axes.v] > v) != (b[axes.v] > v)) {
            const double t = (v - a[axes.v]) / (b[axes.v] - a[axes.v]);
            is_inside = is_inside != (a[axes.u] + t * (b[axes.u] - a[axes.u]) < u);
        }
    }
    return is_inside;
}

} // namespace korvel::kit
