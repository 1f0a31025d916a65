#include "apps/workbench/document/curve_finder.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korvel::workbench {
namespace {

// The best place so far.
class NearestPlace {
public:
    NearestPlace(const kit::Point2& point, double radius, Find find)
        : point_(point), radius_(radius), find_(find) {}

    bool is_close(const kit::BoxTree::Box& box) const;
    void look_at(int index, const Curve& curve);
    const std::optional<CurvePlace>& best() const { return best_; }

private:
    void look_at_line(const CurvePoint& at, const kit::GridPoint& from, const kit::GridPoint& to);
    void offer(CurvePlace::Kind kind, const CurvePoint& at, const kit::Point2& place);

    kit::Point2 point_;
    double radius_;
    Find find_;
    std::optional<CurvePlace> best_;
};

kit::GridPoint whole(const kit::Point2& place);
kit::BoxTree::Box box_of_point(const kit::GridPoint& point);

template <class Fits>
PointSet points_where(const Curves& curves, const kit::BoxTree::Box& box, Fits fits) {
    PointSet points;
    for (int index = 0; index < curves.size(); ++index) {
        if (!curves.box(index).meets(box)) {
            continue;
        }
        const Curve& curve = curves[index];
        for (std::size_t k = 0; k < curve.size(); ++k) {
            if (fits(curve[k])) {
                points[index].insert(points[index].end(), static_cast<int>(k));
            }
        }
    }
    return points;
}

} // namespace

// Boxes exclude nearly all curves, and the points of the others are next to each other in memory:
// 100,000 points take less than a millisecond, without an index that each change would have to
// mend.
std::optional<CurvePlace> find_place(const Curves& curves, const kit::Point2& point, double radius,
                                     Find find, const PointSet& except) {
    NearestPlace nearest(point, radius, find);
    for (int index = 0; index < curves.size(); ++index) {
        if (nearest.is_close(curves.box(index)) && !except.contains(index)) {
            nearest.look_at(index, curves[index]);
        }
    }
    return nearest.best();
}

PointSet with_others_there(const Curves& curves, const PointSet& points) {
    std::vector<kit::GridPoint> places;
    kit::BoxTree::Box box;
    for (const auto& [curve, numbers] : points) {
        for (const int number : numbers) {
            places.push_back(curves[curve][static_cast<std::size_t>(number)]);
            box.take_in(box_of_point(places.back()));
        }
    }
    std::ranges::sort(places, kit::is_before);
    return points_where(curves, box, [&](const kit::GridPoint& point) {
        return std::ranges::binary_search(places, point, kit::is_before);
    });
}

PointSet points_in(const Curves& curves, const kit::BoxTree::Box& box) {
    return points_where(
        curves, box, [&](const kit::GridPoint& point) { return box.meets(box_of_point(point)); });
}

namespace {

bool NearestPlace::is_close(const kit::BoxTree::Box& box) const {
    return box.left - radius_ <= point_[0] && point_[0] <= box.right + radius_ &&
           box.bottom - radius_ <= point_[1] && point_[1] <= box.top + radius_;
}

void NearestPlace::look_at(int index, const Curve& curve) {
    const bool has_ends = !is_closed(curve);
    for (std::size_t k = 0; k < curve.size(); ++k) {
        const CurvePoint at = {index, static_cast<int>(k)};
        const bool is_end = has_ends && (k == 0 || k + 1 == curve.size());
        if (is_end || find_ != Find::ends) {
            offer(is_end ? CurvePlace::Kind::end : CurvePlace::Kind::point, at,
                  kit::to_point(curve[k]));
        }
        if (find_ == Find::places && k + 1 < curve.size()) {
            look_at_line(at, curve[k], curve[k + 1]);
        }
    }
}

void NearestPlace::look_at_line(const CurvePoint& at, const kit::GridPoint& from,
                                const kit::GridPoint& to) {
    const kit::Point2 a = kit::to_point(from);
    const double x = kit::to_point(to)[0] - a[0];
    const double y = kit::to_point(to)[1] - a[1];
    const double square = x * x + y * y;
    if (square > 0) {
        const double along = ((point_[0] - a[0]) * x + (point_[1] - a[1]) * y) / square;
        const double share = std::clamp(along, 0.0, 1.0);
        offer(CurvePlace::Kind::line, at, {a[0] + share * x, a[1] + share * y});
    }
}

void NearestPlace::offer(CurvePlace::Kind kind, const CurvePoint& at, const kit::Point2& place) {
    const double distance = std::hypot(place[0] - point_[0], place[1] - point_[1]);
    if (distance > radius_) {
        return;
    }
    if (!best_ || kind < best_->kind || (kind == best_->kind && distance < best_->distance)) {
        best_ = {kind, at, whole(place), distance};
    }
}

kit::BoxTree::Box box_of_point(const kit::GridPoint& point) {
    return {point.x, point.y, point.x, point.y};
}

kit::GridPoint whole(const kit::Point2& place) {
    static constexpr double least = std::numeric_limits<std::int32_t>::min();
    static constexpr double most = std::numeric_limits<std::int32_t>::max();
    const auto rounded = [](double value) {
        return static_cast<std::int32_t>(std::clamp(std::floor(value + 0.5), least, most));
    };
    return {rounded(place[0]), rounded(place[1])};
}

} // namespace
} // namespace korvel::workbench
