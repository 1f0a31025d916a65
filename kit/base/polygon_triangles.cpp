#include "kit/base/polygon_triangles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "kit/base/exact_predicates.h"
#include "kit/base/vectors.h"

namespace korvel::kit {
namespace {

Point3 area_vector(std::span<const Point3> points, std::span<const int> polygon);
std::vector<PlanePoint> flattened(std::span<const Point3> points, std::span<const int> polygon);

// Cuts off corners of a polygon in the plane, which turns positively, until three are left.
class EarClipping {
public:
    explicit EarClipping(std::vector<PlanePoint> corners);

    // By positions in the polygon.
    std::vector<std::array<int, 3>> run();

private:
    bool is_ear(int corner);
    bool is_in_triangle(int other, int a, int b, int c) const;
    int turn_at(int corner) const {
        return turn(corners_[before_[corner]], corners_[corner], corners_[after_[corner]]);
    }
    void cut_off(int corner);

    // Along the longer axis.
    double place_of(int corner) const { return is_tall_ ? corners_[corner].y : corners_[corner].x; }

    std::vector<PlanePoint> corners_;
    std::vector<int> before_;
    std::vector<int> after_;
    std::vector<int> reflex_;     // those of the polygon by their places, and corners in line
    std::vector<char> is_reflex_; // and not cut off
    bool is_tall_ = false;
    std::size_t tests_left_; // of corners in triangles
    std::vector<std::array<int, 3>> triangles_;
};

} // namespace

std::vector<std::array<int, 3>> polygon_triangles(std::span<const Point3> points,
                                                  std::span<const int> polygon) {
    if (polygon.size() < 3) {
        return {};
    }
    if (polygon.size() == 3) {
        return {{polygon[0], polygon[1], polygon[2]}};
    }
    std::vector<std::array<int, 3>> triangles = EarClipping(flattened(points, polygon)).run();
    for (std::array<int, 3>& corners : triangles) {
        for (int& corner : corners) {
            corner = polygon[corner];
        }
    }
    return triangles;
}

namespace {

// Two of the three coordinates, in the order in which the polygon turns positively.
std::vector<PlanePoint> flattened(std::span<const Point3> points, std::span<const int> polygon) {
    const Point3 normal = area_vector(points, polygon);
    const auto axis = static_cast<std::size_t>(
        std::max_element(normal.begin(), normal.end(),
                         [](double a, double b) { return std::abs(a) < std::abs(b); }) -
        normal.begin());
    const std::size_t first = (axis + (normal[axis] < 0 ? 2 : 1)) % 3;
    const std::size_t second = (axis + (normal[axis] < 0 ? 1 : 2)) % 3;
    std::vector<PlanePoint> corners;
    corners.reserve(polygon.size());
    for (const int corner : polygon) {
        corners.push_back({points[corner][first], points[corner][second]});
    }
    return corners;
}

// Perpendicular to the polygon, of twice the length of its area (M. E. Newell, 1972), seen from
// its first corner.
Point3 area_vector(std::span<const Point3> points, std::span<const int> polygon) {
    const Point3& origin = points[polygon[0]];
    Point3 sum = {};
    for (std::size_t k = 1; k + 1 < polygon.size(); ++k) {
        const Point3 part =
            cross(apart(origin, points[polygon[k]]), apart(origin, points[polygon[k + 1]]));
        for (std::size_t i = 0; i < sum.size(); ++i) {
            sum[i] += part[i];
        }
    }
    return sum;
}

EarClipping::EarClipping(std::vector<PlanePoint> corners)
    : corners_(std::move(corners)), before_(corners_.size()), after_(corners_.size()),
      is_reflex_(corners_.size(), 0), tests_left_(2000 * corners_.size()) {
    const auto count = static_cast<int>(corners_.size());
    for (int corner = 0; corner < count; ++corner) {
        before_[corner] = corner > 0 ? corner - 1 : count - 1;
        after_[corner] = corner + 1 < count ? corner + 1 : 0;
    }
    for (int corner = 0; corner < count; ++corner) {
        if (turn_at(corner) <= 0) {
            is_reflex_[corner] = 1;
            reflex_.push_back(corner);
        }
    }
    const auto [left, right] =
        std::minmax_element(corners_.begin(), corners_.end(),
                            [](const PlanePoint& a, const PlanePoint& b) { return a.x < b.x; });
    const auto [low, high] =
        std::minmax_element(corners_.begin(), corners_.end(),
                            [](const PlanePoint& a, const PlanePoint& b) { return a.y < b.y; });
    is_tall_ = high->y - low->y > right->x - left->x;
    std::sort(reflex_.begin(), reflex_.end(),
              [&](int a, int b) { return place_of(a) < place_of(b); });
}

// Goes on behind the next corner after each ear, which makes fewer narrow triangles than a fan.
// When a round finds no ear, because the polygon crosses itself, any corner is one, as are all when
// there were too many tests.
std::vector<std::array<int, 3>> EarClipping::run() {
    triangles_.reserve(corners_.size() - 2);
    int corner = 0;
    std::size_t left = corners_.size();
    for (std::size_t refused = 0; left > 3;) {
        if (refused < left && tests_left_ > 0 && !is_ear(corner)) {
            ++refused;
            --tests_left_;
            corner = after_[corner];
            continue;
        }
        cut_off(corner);
        refused = 0;
        --left;
        corner = after_[after_[corner]];
    }
    triangles_.push_back({before_[corner], corner, after_[corner]});
    return std::move(triangles_);
}

void EarClipping::cut_off(int corner) {
    const int before = before_[corner];
    const int after = after_[corner];
    triangles_.push_back({before, corner, after});
    after_[before] = after;
    before_[after] = before;
    is_reflex_[corner] = 0;
    for (const int other : {before, after}) {
        if (turn_at(other) > 0) {
            is_reflex_[other] = 0;
        }
    }
}

// Only reflex corners can be in the triangle of a convex one, and none becomes reflex.
bool EarClipping::is_ear(int corner) {
    if (turn_at(corner) <= 0) {
        return false;
    }
    const int a = before_[corner];
    const int c = after_[corner];
    const auto [least, most] = std::minmax({place_of(a), place_of(corner), place_of(c)});
    auto reflex =
        std::partition_point(reflex_.begin(), reflex_.end(),
                             [this, from = least](int other) { return place_of(other) < from; });
    for (; reflex != reflex_.end() && place_of(*reflex) <= most && tests_left_ > 0; ++reflex) {
        --tests_left_;
        if (is_reflex_[*reflex] != 0 && *reflex != a && *reflex != c &&
            is_in_triangle(*reflex, a, corner, c)) {
            return false;
        }
    }
    return true;
}

bool EarClipping::is_in_triangle(int other, int a, int b, int c) const {
    const PlanePoint& p = corners_[other];
    const auto is_at = [&](int corner) {
        return p.x == corners_[corner].x && p.y == corners_[corner].y;
    };
    return !is_at(a) && !is_at(b) && !is_at(c) && turn(corners_[a], corners_[b], p) >= 0 &&
           turn(corners_[b], corners_[c], p) >= 0 && turn(corners_[c], corners_[a], p) >= 0;
}

} // namespace
} // namespace korvel::kit
