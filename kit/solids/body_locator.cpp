#include "kit/solids/body_locator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "kit/base/rectangle.h"
#include "kit/base/vectors.h"
#include "kit/solids/exact.h"
#include "kit/solids/solids.h"

namespace korvel::kit {
namespace {

double norm(const Point3& vector);
bool is_met_ahead(const TMOD3D& model, int face, const Point3& from, const Point3& direction);
int first_odd(std::vector<int>& numbers);

} // namespace

// The faces as seen along a ray, which is a place there, sorted into a grid of cells. The ray meets
// no face but those near its cell, and those that nothing bounds.
class BodyLocator::View {
public:
    View(const TMOD3D& model, const Point3& direction);

    const Point3& direction() const { return direction_; }

    template <class Found>
    void for_each_face_at(const Point3& point, Found found) const;

private:
    /// A face in the view. Rounding may let a ray meet it up to `margin` beside it.
    struct Outline {
        int face = 0;
        std::array<Point2, 3> corners = {};
        double margin = 0;
    };

    std::optional<double> margin_of(const TMOD3D& model, int face, double size) const;
    void sort_into_cells(const std::vector<Outline>& outlines);
    template <class Visit>
    void for_each_cell(const Outline& outline, Visit visit) const;
    Point2 place_of(const Point3& point) const;
    int column_of(double u) const;
    int row_of(double v) const;

    Point3 direction_;
    Point3 across_;
    Point3 up_;
    Rectangle bounds_;
    double cell_ = 1; // the length of its sides
    int columns_ = 1;
    int rows_ = 1;
    std::vector<int> faces_;        // of the first cell, the second, …
    std::vector<std::size_t> ends_; // of each cell in `faces_`
    std::vector<int> unbounded_;
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
    const auto* const least =
        std::min_element(direction.begin(), direction.end(),
                         [](double a, double b) { return std::abs(a) < std::abs(b); });
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
    std::vector<Outline> outlines;
    for (int face = 0; face < model.polys.GetSize(); ++face) {
        const auto margin = margin_of(model, face, size);
        if (!margin) {
            unbounded_.push_back(face);
            continue;
        }
        Outline& outline = outlines.emplace_back();
        outline.face = face;
        outline.margin = *margin;
        for (std::size_t k = 0; k < 3; ++k) {
            const int vertex = model.polys[face].verts[static_cast<int>(k)];
            outline.corners[k] = place_of(to_point(model.verts[vertex].model_xyz));
            bounds_.take_in(outline.corners[k][0], outline.corners[k][1]);
        }
    }
    sort_into_cells(outlines);
}

// The library finds where the ray meets the plane of the face, and compares that with the sides,
// both rounded. So the margin is what the vertices are off the plane, and a multiple of the
// rounding of the largest coordinate; and since the narrower a face, the farther from it rounding
// can decide on which side of it a point is, a share of its size. For a face along the ray, and for
// a still narrower one, there is no such bound.
std::optional<double> BodyLocator::View::margin_of(const TMOD3D& model, int face,
                                                   double size) const {
    constexpr double least_slope = 1e-9;
    constexpr double epsilon = std::numeric_limits<double>::epsilon();
    constexpr double largest_share = 0.05;
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
    const double share = std::min(largest_share, 4096 * epsilon / (narrowest * narrowest));
    const double margin = off_plane / main + 1024 * epsilon * size + share * longest;
    return std::isfinite(margin) ? std::optional(margin) : std::nullopt;
}

// About two cells for each face; fewer where faces meet many of them.
void BodyLocator::View::sort_into_cells(const std::vector<Outline>& outlines) {
    constexpr std::size_t most_cells_of_a_face = 32; // on average
    constexpr double most_along_an_axis = 1 << 14;
    const double width = bounds_.is_empty() ? 0 : bounds_.right - bounds_.left;
    const double height = bounds_.is_empty() ? 0 : bounds_.bottom - bounds_.top;
    const double share = 0.5 / static_cast<double>(std::max<std::size_t>(outlines.size(), 1));
    cell_ = std::max({std::sqrt(width * height * share), width / most_along_an_axis,
                      height / most_along_an_axis, std::numeric_limits<double>::min()});
    for (bool is_done = false; !is_done; cell_ *= is_done ? 1 : 2) {
        columns_ = static_cast<int>(width / cell_) + 1;
        rows_ = static_cast<int>(height / cell_) + 1;
        ends_.assign(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_) + 1, 0);
        std::size_t all = 0;
        for (const Outline& outline : outlines) {
            for_each_cell(outline, [&](std::size_t cell) {
                ++ends_[cell + 1];
                ++all;
            });
        }
        is_done = all <= most_cells_of_a_face * outlines.size() || ends_.size() == 2;
    }
    std::partial_sum(ends_.begin(), ends_.end(), ends_.begin());
    faces_.resize(ends_.back());
    for (const Outline& outline : outlines) {
        // What was the start of a cell becomes its end.
        for_each_cell(outline, [&](std::size_t cell) { faces_[ends_[cell]++] = outline.face; });
    }
}

// Row by row those between the outermost places of the triangle there.
template <class Visit>
void BodyLocator::View::for_each_cell(const Outline& outline, Visit visit) const {
    const auto& corners = outline.corners;
    const auto [lowest, highest] = std::minmax({corners[0][1], corners[1][1], corners[2][1]});
    const int last_row = row_of(highest + outline.margin);
    for (int row = row_of(lowest - outline.margin); row <= last_row; ++row) {
        const double low = bounds_.top + row * cell_ - outline.margin - 1e-6 * cell_;
        const double high = low + cell_ * (1 + 2e-6) + 2 * outline.margin;
        double left = std::numeric_limits<double>::infinity();
        double right = -left;
        for (std::size_t k = 0; k < 3; ++k) {
            const Point2& a = corners[k];
            const Point2& b = corners[(k + 1) % 3];
            if (std::max(a[1], b[1]) < low || std::min(a[1], b[1]) > high) {
                continue;
            }
            for (const double v : {std::clamp(a[1], low, high), std::clamp(b[1], low, high)}) {
                const double u =
                    a[1] == b[1] ? a[0] : std::lerp(a[0], b[0], (v - a[1]) / (b[1] - a[1]));
                left = std::min(left, u);
                right = std::max(right, u);
            }
            if (a[1] == b[1]) {
                left = std::min(left, b[0]);
                right = std::max(right, b[0]);
            }
        }
        const double beside = outline.margin + 1e-6 * cell_;
        const int last = column_of(right + beside);
        for (int column = column_of(left - beside); left <= right && column <= last; ++column) {
            visit(static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                  static_cast<std::size_t>(column));
        }
    }
}

int BodyLocator::View::column_of(double u) const {
    return static_cast<int>(std::clamp((u - bounds_.left) / cell_, 0.0, columns_ - 1.0));
}

int BodyLocator::View::row_of(double v) const {
    return static_cast<int>(std::clamp((v - bounds_.top) / cell_, 0.0, rows_ - 1.0));
}

Point2 BodyLocator::View::place_of(const Point3& point) const {
    return {dot(across_, point), dot(up_, point)};
}

template <class Found>
void BodyLocator::View::for_each_face_at(const Point3& point, Found found) const {
    if (!faces_.empty()) {
        const Point2 place = place_of(point);
        const std::size_t cell =
            static_cast<std::size_t>(row_of(place[1])) * static_cast<std::size_t>(columns_) +
            static_cast<std::size_t>(column_of(place[0]));
        const auto first = faces_.begin();
        std::for_each(first + static_cast<std::ptrdiff_t>(cell > 0 ? ends_[cell - 1] : 0),
                      first + static_cast<std::ptrdiff_t>(ends_[cell]), found);
    }
    std::for_each(unbounded_.begin(), unbounded_.end(), found);
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
