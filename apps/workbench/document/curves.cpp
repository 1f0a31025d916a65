#include "apps/workbench/document/curves.h"

#include <iterator>
#include <utility>

namespace korvel::workbench {
namespace {

kit::BoxTree::Box box_around(const Curve& curve) {
    kit::BoxTree::Box box;
    for (const kit::GridPoint& point : curve) {
        box.take_in({point.x, point.y, point.x, point.y});
    }
    return box;
}

} // namespace

Curves::Curves(const kit::Network& network)
    : points_(network.point_count()), placement_(network.placement()) {
    curves_.reserve(static_cast<std::size_t>(network.curve_count()));
    boxes_.reserve(static_cast<std::size_t>(network.curve_count()));
    for (int i = 0; i < network.curve_count(); ++i) {
        const std::span<const kit::GridPoint> points = network.curve(i);
        curves_.emplace_back(points.begin(), points.end());
        boxes_.push_back(box_around(curves_.back()));
    }
}

kit::Rectangle Curves::bounds() const {
    kit::Rectangle bounds;
    for (std::size_t i = 0; i < curves_.size(); ++i) {
        if (!curves_[i].empty()) {
            for (const kit::GridPoint& corner : {kit::GridPoint{boxes_[i].left, boxes_[i].bottom},
                                                 kit::GridPoint{boxes_[i].right, boxes_[i].top}}) {
                const kit::Point2 user = to_user(corner);
                bounds.take_in(user[0], user[1]);
            }
        }
    }
    return bounds;
}

kit::Network Curves::network() const {
    kit::Network network;
    network.set_placement(placement_);
    for (const Curve& curve : curves_) {
        network.add_curve(curve);
    }
    return network;
}

std::vector<Curve> Curves::replace(int first, int count, std::vector<Curve> by) {
    std::vector<CurveChange> changes;
    changes.push_back({first, count, std::move(by)});
    return std::move(replace(std::move(changes)).front().by);
}

std::vector<CurveChange> Curves::replace(std::vector<CurveChange> changes) {
    std::vector<Curve> curves;
    std::vector<kit::BoxTree::Box> boxes;
    curves.reserve(curves_.size());
    boxes.reserve(curves_.size());
    auto next = curves_.begin();
    const auto keep_before = [&](auto end) {
        const auto box = boxes_.begin() + (next - curves_.begin());
        boxes.insert(boxes.end(), box, box + (end - next));
        curves.insert(curves.end(), std::make_move_iterator(next), std::make_move_iterator(end));
    };
    for (CurveChange& change : changes) {
        const auto from = curves_.begin() + change.first;
        keep_before(from);
        next = from + change.count;
        std::vector<Curve> replaced(std::make_move_iterator(from), std::make_move_iterator(next));
        change.first = static_cast<int>(curves.size());
        change.count = static_cast<int>(change.by.size());
        for (Curve& curve : change.by) {
            points_ += static_cast<int>(curve.size());
            boxes.push_back(box_around(curve));
            curves.push_back(std::move(curve));
        }
        for (const Curve& curve : replaced) {
            points_ -= static_cast<int>(curve.size());
        }
        change.by = std::move(replaced);
    }
    keep_before(curves_.end());
    curves_ = std::move(curves);
    boxes_ = std::move(boxes);
    return changes;
}

bool is_closed(const Curve& curve) {
    return curve.size() > 2 && kit::is_same(curve.front(), curve.back());
}

std::size_t bytes_of(std::span<const Curve> curves) {
    std::size_t bytes = 0;
    for (const Curve& curve : curves) {
        bytes += sizeof(Curve) + curve.size() * sizeof(kit::GridPoint);
    }
    return bytes;
}

} // namespace korvel::workbench
