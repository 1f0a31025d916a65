#include "kit/solids/body_locator.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "kit/base/box_tree.h"
#include "kit/base/grid_scale.h"
#include "kit/base/rectangle.h"
#include "kit/solids/exact.h"
#include "kit/solids/solids.h"
#include "kit/solids/vectors.h"

namespace korvel::kit {
namespace {

double norm(const Point3& vector);
bool is_met_ahead(const TMOD3D& model, int face, const Point3& from, const Point3& direction);
int first_odd(std::vector<int>& numbers);

} // namespace

// The faces as seen along a ray, which is a place there. The ray meets no face but those whose box
// contains the place, and those without a box.
class BodyLocator::View {
public:
    View(const TMOD3D& model, const Point3& direction);

    const Point3& direction() const { return direction_; }

    template <class Found>
    void for_each_face_at(const Point3& point, Found found) const;

private:
    std::optional<Rectangle> box_of(const TMOD3D& model, int face, double size) const;
    Point2 place_of(const Point3& point) const;

    Point3 direction_;
    Point3 across_;
    Point3 up_;
    GridScale columns_;
    GridScale rows_;
    std::vector<int> faces_; // as numbered in the tree
    std::vector<int> without_box_;
    BoxTree boxes_;
};

BodyLocator::BodyLocator(const Solids& solids)
    : model_(&solids.model()), ends_(static_cast<std::size_t>(model_->polys.GetSize()) + 1, 0) {
    const auto for_each_use = [&](auto visit) {
        for (int body = 0; body < model_->bodies.GetSize(); ++body) {
            for (const int face : model_->bodies[body].polys) {
                visit(body, static_cast<std::size_t>(face));
            }
        }
    };
    for_each_use([&](int /*body*/, std::size_t face) { ++ends_[face + 1]; });
    for (std::size_t face = 1; face < ends_.size(); ++face) {
        ends_[face] += ends_[face - 1];
    }
    bodies_.resize(ends_.back());
    // What was the start of a face's bodies becomes their end.
    for_each_use([&](int body, std::size_t face) { bodies_[ends_[face]++] = body; });
}

BodyLocator::~BodyLocator() = default;

std::optional<int> BodyLocator::body_at(const Point3& point) const {
    if (!std::all_of(point.begin(), point.end(), [](double at) { return std::isfinite(at); })) {
        const int body = kit::body_at(*model_, point);
        return body < 0 ? std::nullopt : std::optional(body);
    }
    // The library's bounds are pairs of minimum and maximum.
    for (std::size_t k = 0; k < 3; ++k) {
        if (point[k] < model_->wrap_cuboid[2 * k] || point[k] > model_->wrap_cuboid[2 * k + 1]) {
            return std::nullopt;
        }
    }
    const int body = vote_of_rays([&](int ray) { return first_body_met(ray, point); });
    return body < 0 ? std::nullopt : std::optional(body);
}

// The answer of `TMOD3D::detect_a_point_in_body`: the first body of which the ray meets an odd
// number of faces.
int BodyLocator::first_body_met(int ray, const Point3& point) const {
    const View& view = this->view(ray);
    std::vector<int> met;
    view.for_each_face_at(point, [&](int face) {
        if (is_met_ahead(*model_, face, point, view.direction())) {
            const auto index = static_cast<std::size_t>(face);
            met.insert(met.end(),
                       bodies_.begin() +
                           static_cast<std::ptrdiff_t>(index > 0 ? ends_[index - 1] : 0),
                       bodies_.begin() + static_cast<std::ptrdiff_t>(ends_[index]));
        }
    });
    return first_odd(met);
}

const BodyLocator::View& BodyLocator::view(int ray) const {
    const auto index = static_cast<std::size_t>(ray);
    std::call_once(is_built_[index],
                   [&] { views_[index] = std::make_unique<View>(*model_, direction_of_ray(ray)); });
    return *views_[index];
}

BodyLocator::View::View(const TMOD3D& model, const Point3& direction) : direction_(direction) {
    // Along the axis that is the farthest from the ray.
    const auto least = std::min_element(direction.begin(), direction.end(), [](double a, double b) {
        return std::abs(a) < std::abs(b);
    });
    Point3 axis = {};
    axis[static_cast<std::size_t>(least - direction.begin())] = 1;
    across_ = cross(direction, axis);
    const double length = norm(across_);
    for (double& part : across_) {
        part /= length;
    }
    up_ = cross(direction, across_);

    double size = 0;
    for (const VERT3D& vertex : model.verts) {
        for (const double at : vertex.model_xyz) {
            size = std::max(size, std::abs(at));
        }
    }
    std::vector<Rectangle> boxes;
    Rectangle bounds;
    for (int face = 0; face < model.polys.GetSize(); ++face) {
        if (const auto box = box_of(model, face, size)) {
            boxes.push_back(*box);
            faces_.push_back(face);
            bounds.take_in(box->left, box->top);
            bounds.take_in(box->right, box->bottom);
        } else {
            without_box_.push_back(face);
        }
    }
    columns_ = GridScale(bounds.left, bounds.right);
    rows_ = GridScale(bounds.top, bounds.bottom);
    boxes_ = BoxTree(boxes.size(), [&](std::size_t i) {
        return BoxTree::Box{columns_(boxes[i].left), rows_(boxes[i].top), columns_(boxes[i].right),
                            rows_(boxes[i].bottom)};
    });
}

// Around all places where rounding may let a ray meet the face. The library finds where the ray
// meets the plane of the face, and compares that with the sides, both rounded. So the box exceeds
// the face by what its vertices are off its plane, by a multiple of the rounding of the largest
// coordinate, and by a part of its size. For a face next to the ray's direction, and for one so
// narrow that rounding decides on which side of it a distant point is, there is no such bound.
std::optional<Rectangle> BodyLocator::View::box_of(const TMOD3D& model, int face,
                                                   double size) const {
    constexpr double least_slope = 1e-9;
    constexpr double epsilon = std::numeric_limits<double>::epsilon();
    constexpr double share_of_size = 0.05;
    const POLY3D& record = model.polys[face];
    const Point3 normal = {record.plane[0], record.plane[1], record.plane[2]};
    if (record.verts.GetSize() != 3 || record.main_axis < 0 || record.main_axis > 2 ||
        !(std::abs(dot(normal, direction_)) > least_slope)) {
        return std::nullopt;
    }
    std::array<Point3, 3> corners;
    double off_plane = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        corners[k] = to_point(model.verts[record.verts[static_cast<int>(k)]].model_xyz);
        off_plane = std::max(off_plane, std::abs(dot(normal, corners[k]) + record.plane[3]));
    }
    double longest = 0;
    double shortest = std::numeric_limits<double>::infinity();
    double narrowest = std::numeric_limits<double>::infinity(); // sine of an angle
    for (std::size_t k = 0; k < 3; ++k) {
        const Point3 side = apart(corners[k], corners[(k + 1) % 3]);
        const Point3 other = apart(corners[k], corners[(k + 2) % 3]);
        const double length = norm(side);
        longest = std::max(longest, length);
        shortest = std::min(shortest, length);
        narrowest = std::min(narrowest, norm(cross(side, other)) / (length * norm(other)));
    }
    const double main = std::abs(normal[static_cast<std::size_t>(record.main_axis)]);
    if (!(narrowest > 1e-8 + 1024 * epsilon * size / shortest) || !(main > 0.5)) {
        return std::nullopt;
    }
    const double margin = off_plane / main + 1024 * epsilon * size + share_of_size * longest;
    Rectangle box;
    for (const Point3& corner : corners) {
        const Point2 place = place_of(corner);
        box.take_in(place[0] - margin, place[1] - margin);
        box.take_in(place[0] + margin, place[1] + margin);
    }
    return std::isfinite(box.left + box.right + box.top + box.bottom) ? std::optional(box)
                                                                      : std::nullopt;
}

Point2 BodyLocator::View::place_of(const Point3& point) const {
    return {dot(across_, point), dot(up_, point)};
}

template <class Found>
void BodyLocator::View::for_each_face_at(const Point3& point, Found found) const {
    const Point2 place = place_of(point);
    const std::int32_t column = columns_(place[0]);
    const std::int32_t row = rows_(place[1]);
    boxes_.for_each_at({column, row, column, row}, [&](std::size_t i) { found(faces_[i]); });
    std::for_each(without_box_.begin(), without_box_.end(), found);
}

namespace {

double norm(const Point3& vector) {
    return std::sqrt(dot(vector, vector));
}

// In the order of operations of `TMOD3D::detect_a_point_in_body`, so that both round alike.
bool is_met_ahead(const TMOD3D& model, int face, const Point3& from, const Point3& direction) {
    POLY3D& record = operand(model).polys[face];
    const double* const plane = record.plane;
    const double t = -(plane[0] * from[0] + plane[1] * from[1] + plane[2] * from[2] + plane[3]) /
                     (plane[0] * direction[0] + plane[1] * direction[1] + plane[2] * direction[2]);
    if (!(t > 0)) {
        return false;
    }
    double point[3] = {from[0] + t * direction[0], from[1] + t * direction[1],
                       from[2] + t * direction[2]};
    return record.det_3dpoint_in_con_poly(point, operand(model).verts);
}

// The least number that occurs an odd number of times, or -1.
int first_odd(std::vector<int>& numbers) {
    std::sort(numbers.begin(), numbers.end());
    for (auto first = numbers.begin(); first != numbers.end();) {
        const auto end = std::upper_bound(first, numbers.end(), *first);
        if ((end - first) % 2 == 1) {
            return *first;
        }
        first = end;
    }
    return -1;
}

} // namespace
} // namespace korvel::kit
