#include "kit/solids/section.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "kit/solids/placed_model.h"
#include "kit/solids/touching_loops.h"

namespace korvel::kit {
namespace {

Plane beside_vertices(const Plane& plane, const TMOD3D& model);
std::vector<int> section_vertices(const TMOD3D& model, const Plane& plane);
double area_seen(const SectionPolygon& polygon, const PlaneAxes& axes);
Rectangle bounds_seen(const SectionPolygon& polygon, const PlaneAxes& axes);

/// Gives each body its number as its hue while the object exists: only its colour relates a polygon
/// of a section to its body.
class NumberedHues {
public:
    explicit NumberedHues(CArray<BODY3D, BODY3D&>& bodies) : bodies_(bodies) {
        hues_.reserve(static_cast<std::size_t>(bodies.GetSize()));
        for (BODY3D& body : bodies) {
            hues_.push_back(body.hue);
            body.hue = static_cast<double>(hues_.size() - 1);
        }
    }
    ~NumberedHues() {
        int body = 0;
        for (const double hue : hues_) {
            bodies_[body++].hue = hue;
        }
    }
    NumberedHues(const NumberedHues&) = delete;
    NumberedHues& operator=(const NumberedHues&) = delete;

private:
    CArray<BODY3D, BODY3D&>& bodies_;
    std::vector<double> hues_;
};

} // namespace

Section cut_model(TMOD3D& model, const Plane& plane) {
    Section section(beside_vertices(plane, model));
    section.cut_by_body(model);
    section.find_holes();
    section.measure();
    section.find_loose_points();
    return section;
}

namespace {

// Tries offsets on both sides with growing distance, the side of the model's middle first.
Plane beside_vertices(const Plane& plane, const TMOD3D& model) {
    constexpr int most_steps = 1000;
    const double length = plane.normal_length();
    const auto scaled_distance = [&](const double* point) {
        return plane.a * point[0] + plane.b * point[1] + plane.c * point[2] + plane.d;
    };
    double size = std::abs(plane.d) / length;
    double middle[3] = {};
    for (int k = 0; k < 3; ++k) {
        size = std::max({size, std::abs(model.cuboid_min[k]), std::abs(model.cuboid_max[k])});
        middle[k] = (model.cuboid_min[k] + model.cuboid_max[k]) / 2;
    }
    const double clearance = 1e-11 * size;
    const double reach = (2 * most_steps + 2) * clearance;
    const double scaled_reach = reach * length * (1 + 1e-9); // saves the division for most
    std::vector<double> distances;
    for (const VERT3D& vertex : model.verts) {
        const double scaled = scaled_distance(vertex.model_xyz);
        if (std::abs(scaled) <= scaled_reach && std::abs(scaled / length) <= reach) {
            distances.push_back(scaled / length);
        }
    }
    const double towards_middle = scaled_distance(middle) < 0 ? -1 : 1;
    for (int step = 0; step < most_steps; ++step) {
        for (const double side : {towards_middle, -towards_middle}) {
            const double offset = side * step * 2 * clearance;
            if (std::none_of(distances.begin(), distances.end(),
                             [&](double apart) { return std::abs(apart - offset) <= clearance; })) {
                return step == 0 ? plane : plane.moved(offset);
            }
        }
    }
    return plane;
}

// For each edge its vertex of the section, −1 if it is not cut, as the exact class numbers them.
std::vector<int> section_vertices(const TMOD3D& model, const Plane& plane) {
    std::vector<bool> is_above;
    for (const VERT3D& vertex : model.verts) {
        is_above.push_back(plane.distance(to_point(vertex.model_xyz)) > 0);
    }
    std::vector<int> vertex_of;
    int next = 0;
    for (const LINE3D& edge : model.lines) {
        vertex_of.push_back(is_above[edge.start_vert] != is_above[edge.end_vert] ? next++ : -1);
    }
    return vertex_of;
}

} // namespace

void Section::cut_by_body(TMOD3D& model) {
    std::array<double, 4> coefficients = plane_.coefficients();
    {
        const NumberedHues numbers(model.bodies);
        model.get_section(coefficients.data(), model_);
        trace_touching_bodies(model);
    }
    body_of_.resize(static_cast<std::size_t>(size()));
    for (POLY3D_CPLX& group : model_.groups) {
        const int body = static_cast<int>(group.hue);
        const int polygon = group.polys[0];
        group.hue = model.bodies[body].hue;
        group.rgb_color();
        if (bodies_.empty() || bodies_.back().body != body) {
            bodies_.push_back({body, {}, 0});
        }
        bodies_.back().polygons.push_back(polygon);
        body_of_[static_cast<std::size_t>(polygon)] = body;
    }
}

// Replaces the polygons of the bodies that touch themselves at an edge that is cut.
void Section::trace_touching_bodies(TMOD3D& model) {
    const std::vector<int> vertex_of = section_vertices(model, plane_);
    std::vector<bool> is_cut(vertex_of.size());
    std::transform(vertex_of.begin(), vertex_of.end(), is_cut.begin(),
                   [](int vertex) { return vertex >= 0; });
    const std::vector<int> touching = bodies_touching_themselves(model, is_cut);
    const auto cuts = std::count(is_cut.begin(), is_cut.end(), true);
    if (touching.empty() || cuts != model_.verts.GetSize()) { // else vertices are on the plane
        return;
    }
    TMOD2D traced;
    const auto add = [&](POLY3D_CPLX& group, POLY3D& polygon) {
        group.polys[0] = traced.polys.GetSize();
        traced.polys.Add(polygon);
        traced.groups.Add(group);
    };
    int next = 0; // of the polygons of the exact class
    for (int body = 0; body < model.bodies.GetSize(); ++body) {
        const bool is_touching = std::binary_search(touching.begin(), touching.end(), body);
        for (; next < size() && static_cast<int>(model_.groups[next].hue) == body; ++next) {
            if (!is_touching) {
                add(model_.groups[next], model_.polys[next]);
            }
        }
        for (const CutLoop& loop :
             is_touching ? cut_loops(model, body, is_cut) : std::vector<CutLoop>()) {
            POLY3D polygon;
            for (const int edge : loop) {
                polygon.verts.Add(vertex_of[edge]);
            }
            POLY3D_CPLX group;
            group.polys.Add(0);
            group.hue = model.bodies[body].hue; // its number for now
            group.saturation = model.bodies[body].saturation;
            group.lightness = model.bodies[body].lightness;
            add(group, polygon);
        }
    }
    model_.polys.Copy(traced.polys);
    model_.groups.Copy(traced.groups);
}

// By the number of others of its body's polygons in which each one lies. Polygons may touch at
// corners, so the middle of a side represents one.
void Section::find_holes() {
    const PlaneAxes axes(plane_);
    is_hole_.resize(static_cast<std::size_t>(size()));
    for (const SectionBody& body : bodies_) {
        std::vector<Rectangle> boxes;
        for (const int polygon : body.polygons) {
            boxes.push_back(bounds_seen((*this)[polygon], axes));
        }
        for (const int polygon : body.polygons) {
            const auto corners = (*this)[polygon].points();
            const Point2 a = axes.seen(corners[0]);
            const Point2 b = axes.seen(corners[1]);
            const Point2 middle = {(a[0] + b[0]) / 2, (a[1] + b[1]) / 2};
            int around = 0;
            for (std::size_t i = 0; i < boxes.size(); ++i) {
                const int other = body.polygons[i];
                around += other != polygon && boxes[i].contains(middle[0], middle[1]) &&
                                  (*this)[other].contains(middle)
                              ? 1
                              : 0;
            }
            is_hole_[static_cast<std::size_t>(polygon)] = around % 2 != 0;
        }
    }
}

void Section::measure() {
    const PlaneAxes axes(plane_);
    for (SectionBody& body : bodies_) {
        for (const int polygon : body.polygons) {
            const double area = area_seen((*this)[polygon], axes);
            model_.polys[polygon].area = area;
            body.area += (*this)[polygon].is_hole() ? -area : area;
        }
        area_ += body.area;
    }
}

void Section::find_loose_points() {
    std::vector<bool> is_used(static_cast<std::size_t>(model_.verts.GetSize()), false);
    for (const POLY3D& polygon : model_.polys) {
        for (const int v : polygon.verts) {
            is_used[static_cast<std::size_t>(v)] = true;
        }
    }
    for (int v = 0; v < model_.verts.GetSize(); ++v) {
        if (!is_used[static_cast<std::size_t>(v)]) {
            loose_points_.push_back(to_point(model_.verts[v].model_xyz));
        }
    }
}

namespace {

// From the first corner on, which keeps the products small far from the origin.
double area_seen(const SectionPolygon& polygon, const PlaneAxes& axes) {
    const auto corners = polygon.points();
    const Point3 first = corners[0];
    const auto seen_from_first = [&](int k) {
        const Point3 corner = corners[k];
        return axes.seen({corner[0] - first[0], corner[1] - first[1], corner[2] - first[2]});
    };
    double sum = 0;
    for (int k = 1; k + 1 < corners.size(); ++k) {
        const Point2 a = seen_from_first(k);
        const Point2 b = seen_from_first(k + 1);
        sum += a[0] * b[1] - a[1] * b[0];
    }
    return std::abs(sum) / 2;
}

Rectangle bounds_seen(const SectionPolygon& polygon, const PlaneAxes& axes) {
    Rectangle box;
    for (const Point3& corner : polygon.points()) {
        const Point2 at = axes.seen(corner);
        box.take_in(at[0], at[1]);
    }
    return box;
}

} // namespace

std::pair<double, double> distances_from(const Plane& plane, const TMOD3D& model) {
    std::pair<double, double> range = {std::numeric_limits<double>::infinity(),
                                       -std::numeric_limits<double>::infinity()};
    for (const VERT3D& vertex : model.verts) {
        const double apart = plane.distance(to_point(vertex.model_xyz));
        range = {std::min(range.first, apart), std::max(range.second, apart)};
    }
    return range;
}

Rectangle Section::bounds() const {
    const PlaneAxes seen_along = axes();
    Rectangle box;
    for (const VERT3D& vertex : model_.verts) {
        const Point2 at = seen_along.seen(to_point(vertex.model_xyz));
        box.take_in(at[0], at[1]);
    }
    return box;
}

void Section::write(const std::filesystem::path& file) const {
    write_completely(*this, file);
}

void Section::write(OutputFile& out) const {
    write_placed_section(model_, placement_, out.stream());
}

int SectionPolygon::body() const {
    return section_->body_of_[static_cast<std::size_t>(index_)];
}

bool SectionPolygon::is_hole() const {
    return section_->is_hole_[static_cast<std::size_t>(index_)];
}

double SectionPolygon::area() const {
    return section_->model_.polys[index_].area;
}

// A polygon and its group have the same number.
Colour SectionPolygon::colour() const {
    const auto rgb = static_cast<COLORREF>(section_->model_.groups[index_].rgb);
    return {GetRValue(rgb), GetGValue(rgb), GetBValue(rgb)};
}

IndexedRange<SectionPolygon::Corner> SectionPolygon::points() const {
    const CArray<int>& corners = section_->model_.polys[index_].verts;
    return {corners.GetSize(), Corner{&section_->model_, &corners}};
}

// Even-odd along a ray towards smaller u.
bool SectionPolygon::contains(const Point2& seen) const {
    const PlaneAxes axes = section_->axes();
    const auto corners = points();
    bool is_inside = false;
    Point2 a = axes.seen(corners[corners.size() - 1]);
    for (const Point3& corner : corners) {
        const Point2 b = axes.seen(corner);
        if ((a[1] > seen[1]) != (b[1] > seen[1])) {
            const double t = (seen[1] - a[1]) / (b[1] - a[1]);
            is_inside = is_inside != (a[0] + t * (b[0] - a[0]) < seen[0]);
        }
        a = b;
    }
    return is_inside;
}

} // namespace korvel::kit
