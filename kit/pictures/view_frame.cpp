#include "kit/pictures/view_frame.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "kit/base/points.h"

namespace korvel::kit {
namespace {

/// A box in view coordinates.
struct ViewBox {
    double least[3];
    double greatest[3];

    void take_in(const double* point) {
        for (int k = 0; k < 3; ++k) {
            least[k] = std::min(least[k], point[k]);
            greatest[k] = std::max(greatest[k], point[k]);
        }
    }
};

ViewBox view_extent(const TMOD3D& model, bool with_box);
ViewFrame frame_around(const ViewBox& extent, PictureSize size);
bool meets(const std::vector<Point2>& a, const std::vector<Point2>& b);

} // namespace

float ViewFrame::line_width() const {
    constexpr float usual_height = 1000;
    return std::max(1.0F, static_cast<float>(std::min(size.width, size.height)) / usual_height);
}

bool ViewFrame::is_drawable() const {
    const auto fits = [](double length) { return length >= 1e-30 && length <= 1e30; };
    return fits(right() - left) && fits(top() - bottom) && fits(nearest - farthest);
}

ViewFrame whole_view(const TMOD3D& model, bool with_box, PictureSize size) {
    return frame_around(view_extent(model, with_box), size);
}

ViewFrame part_of_view(const TMOD3D& model, const Rectangle& part, PictureSize size) {
    ViewBox extent = view_extent(model, true);
    extent.least[0] = part.left;
    extent.greatest[0] = part.right;
    extent.least[1] = part.top;
    extent.greatest[1] = part.bottom;
    return frame_around(extent, size);
}

bool shows_nothing(const ViewFrame& frame, const TMOD3D& model) {
    const std::vector<Point2> page = {{frame.left, frame.bottom},
                                      {frame.right(), frame.bottom},
                                      {frame.right(), frame.top()},
                                      {frame.left, frame.top()}};
    std::vector<Point2> corners;
    return std::none_of(model.polys.begin(), model.polys.end(), [&](const POLY3D& face) {
        corners.clear();
        for (const int corner : face.verts) {
            const double* const at = model.verts[corner].view_xyz;
            corners.push_back({at[0], at[1]});
        }
        return meets(page, corners) && meets(corners, page);
    });
}

// A vertex runs round on a circle, which the view shows as an ellipse.
ViewFrame turning_view(const TMOD3D& model, bool with_box, PictureSize size) {
    const double cosine = std::abs(model.rot_matrix[10]);
    const double sine = std::abs(model.rot_matrix[9]);
    double reach[3] = {};
    const auto take_in = [&](const double* point) {
        double from_middle[3];
        for (int k = 0; k < 3; ++k) {
            from_middle[k] = point[k] - (model.cuboid_min[k] + model.cuboid_max[k]) / 2;
        }
        const double radius = std::hypot(from_middle[0], from_middle[1]);
        const double height = std::abs(from_middle[2]);
        reach[0] = std::max(reach[0], radius);
        reach[1] = std::max(reach[1], cosine * radius + sine * height);
        reach[2] = std::max(reach[2], sine * radius + cosine * height);
    };
    for (const VERT3D& vertex : model.verts) {
        take_in(vertex.model_xyz);
    }
    if (with_box) {
        std::for_each(std::begin(model.cuboid_corners), std::end(model.cuboid_corners), take_in);
    }
    ViewBox extent = {};
    for (int k = 0; k < 3; ++k) {
        const double middle = (model.rotated_corners[0][k] + model.rotated_corners[7][k]) / 2;
        extent.least[k] = middle - reach[k];
        extent.greatest[k] = middle + reach[k];
    }
    return frame_around(extent, size);
}

namespace {

ViewBox view_extent(const TMOD3D& model, bool with_box) {
    const double* const b = model.view_bounds;
    ViewBox extent = {{b[0], b[2], b[4]}, {b[1], b[3], b[5]}};
    if (with_box) {
        for (const auto& corner : model.rotated_corners) {
            extent.take_in(corner);
        }
    }
    return extent;
}

ViewFrame frame_around(const ViewBox& extent, PictureSize size) {
    const double margin = std::max(2.0, 0.02 * std::min(size.width, size.height));
    const double across = extent.greatest[0] - extent.least[0];
    const double upward = extent.greatest[1] - extent.least[1];
    const double depth = extent.greatest[2] - extent.least[2];
    ViewFrame frame;
    frame.size = size;
    frame.unit = std::max(across / (size.width - 2 * margin), upward / (size.height - 2 * margin));
    if (!(frame.unit > 0)) {
        frame.unit = 1; // a single point
    }
    frame.left = (extent.least[0] + extent.greatest[0]) / 2 - frame.unit * size.width / 2;
    frame.bottom = (extent.least[1] + extent.greatest[1]) / 2 - frame.unit * size.height / 2;
    // Lines are in front of the faces by a two-hundredth of the depth.
    const double room = 0.02 * depth + frame.unit;
    frame.nearest = extent.greatest[2] + room;
    frame.farthest = extent.least[2] - room;
    return frame;
}

// Whether no side of a convex polygon separates it from another one.
bool meets(const std::vector<Point2>& a, const std::vector<Point2>& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        const Point2& start = a[i];
        const Point2& end = a[(i + 1) % a.size()];
        const auto range_across = [&](const std::vector<Point2>& points) {
            std::pair<double, double> range = {HUGE_VAL, -HUGE_VAL};
            for (const Point2& point : points) {
                const double across = (end[0] - start[0]) * (point[1] - start[1]) -
                                      (end[1] - start[1]) * (point[0] - start[0]);
                range = {std::min(range.first, across), std::max(range.second, across)};
            }
            return range;
        };
        const auto [a_least, a_most] = range_across(a);
        const auto [b_least, b_most] = range_across(b);
        if (a_least > b_most || b_least > a_most) {
            return false;
        }
    }
    return !a.empty();
}

} // namespace
} // namespace korvel::kit
