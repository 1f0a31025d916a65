#include "apps/workbench/document/curves.h"

#include <iterator>
#include <utility>

namespace korvel::workbench {

Curves::Curves(const kit::Network& network)
    : points_(network.point_count()), placement_(network.placement()) {
    curves_.reserve(static_cast<std::size_t>(network.curve_count()));
    for (int i = 0; i < network.curve_count(); ++i) {
        const std::span<const kit::GridPoint> points = network.curve(i);
        curves_.emplace_back(points.begin(), points.end());
    }
}

kit::Rectangle Curves::bounds() const {
    kit::Rectangle box;
    for (const Curve& curve : curves_) {
        for (const kit::GridPoint& point : curve) {
            const kit::Point2 user = to_user(point);
            box.take_in(user[0], user[1]);
        }
    }
    return box;
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
    const auto from = curves_.begin() + first;
    std::vector<Curve> replaced(std::make_move_iterator(from),
                                std::make_move_iterator(from + count));
    for (const Curve& curve : replaced) {
        points_ -= static_cast<int>(curve.size());
    }
    for (const Curve& curve : by) {
        points_ += static_cast<int>(curve.size());
    }
    const auto place = curves_.erase(from, from + count);
    curves_.insert(place, std::make_move_iterator(by.begin()), std::make_move_iterator(by.end()));
    return replaced;
}

std::size_t bytes_of(std::span<const Curve> curves) {
    std::size_t bytes = 0;
    for (const Curve& curve : curves) {
        bytes += sizeof(Curve) + curve.size() * sizeof(kit::GridPoint);
    }
    return bytes;
}

} // namespace korvel::workbench
