#include "korvel/region/junctions.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "korvel/base/indices.h"
#include "korvel/base/shell_sort.h"

namespace korvel {
namespace {

constexpr int hub_size = 32; ///< from so many curves on, sorting them once pays
constexpr int no_node = -1;

double angle_between(PlanePoint u, PlanePoint v);
int turn_sense(int turn);

} // namespace

int Junctions::next(int curve_id, int turn) {
    const int node = node_after(curve_id);
    if (node == no_node) {
        return 0;
    }
    const PlanePoint back = way_back(curve_id);
    const bool is_hub = region_.node_to_curve[node].curve_ids.GetSize() >= hub_size;
    const int id = is_hub ? choose_at_hub(node, -curve_id, back, turn) : 0;
    return id != 0 ? id : choose_of_all(node, -curve_id, back, turn);
}

/// The node at the end of a walk over a curve; `no_node` where the record of either is missing.
int Junctions::node_after(int curve_id) const {
    const int curve = curve_of(curve_id);
    if (!has_element(region_.curve_to_node, curve) || !has_direction(curve)) {
        return no_node;
    }
    const CREGION::CURVE_NODE& ends = region_.curve_to_node[curve];
    const int node = walked_backwards(curve_id) ? ends.start_node : ends.end_node;
    return has_element(region_.node_to_curve, node) ? node : no_node;
}

/// The unit vector from the end of a walk over a curve back along it.
PlanePoint Junctions::way_back(int curve_id) const {
    const PlanePoint back = direction(-curve_id);
    const double length = std::sqrt(back.x * back.x + back.y * back.y);
    return {back.x / length, back.y / length};
}

/// The choice among many curves: of all departures by bearing only those next to the way back are
/// measured, clockwise or counter-clockwise. 0 where two of them measure the same, which the sort
/// of all would decide, and where none is left.
int Junctions::choose_at_hub(int node, int arrival, PlanePoint back, int turn) {
    // Measured angles are off by less, even where the arc sine is steep.
    constexpr double slack = 1e-6;
    constexpr double full_turn = 2 * std::numbers::pi;
    const std::vector<Departure>& around = departures_of(node);
    const int count = static_cast<int>(around.size());
    const int sense = turn_sense(turn);
    const double start = std::remainder(std::atan2(back.y, back.x) - sense * slack, full_turn);
    const auto first = std::partition_point(around.begin(), around.end(),
                                            [&](const Departure& d) { return d.bearing < start; });
    int at = static_cast<int>(first - around.begin()) - (turn == sharpest_right ? 0 : 1);
    int best = 0;
    bool is_tied = false;
    double smallest = 2 * full_turn;
    for (int seen = 0; seen < count; ++seen, at += sense) {
        const Departure& departure = around[(at + count) % count];
        double past_start = sense * (departure.bearing - start);
        past_start += past_start < 0 ? full_turn : 0;
        if (past_start > smallest + 2 * slack) {
            break;
        }
        if (departure.id == arrival) {
            continue;
        }
        const double angle = angle_between(back, direction(departure.id));
        const double past_back = turn == sharpest_right ? angle : full_turn - angle;
        if (std::isnan(past_back)) {
            return 0;
        }
        is_tied = past_back == smallest || (is_tied && past_back > smallest);
        if (past_back < smallest) {
            smallest = past_back;
            best = departure.id;
        }
    }
    return is_tied ? 0 : best;
}

/// The live departures at a node, sorted by bearing.
const std::vector<Junctions::Departure>& Junctions::departures_of(int node) {
    std::vector<Departure>& around = departures_[node];
    if (around.empty()) {
        for (const int id : region_.node_to_curve[node].curve_ids) {
            if (is_live(id)) {
                const PlanePoint way = direction(id);
                around.push_back({std::atan2(way.y, way.x), id});
            }
        }
        std::sort(around.begin(), around.end(),
                  [](const Departure& a, const Departure& b) { return a.bearing < b.bearing; });
    }
    return around;
}

/// The choice by the angles of all curves at the node. Which of two equal angles comes first is the
/// sort's doing, and part of the result.
int Junctions::choose_of_all(int node, int arrival, PlanePoint back, int turn) {
    candidates_.clear();
    for (const int id : region_.node_to_curve[node].curve_ids) {
        if (id != arrival && is_live(id)) {
            candidates_.push_back({angle_between(back, direction(id)), id});
        }
    }
    if (candidates_.empty()) {
        return 0;
    }
    shell_sort(candidates_, static_cast<int>(candidates_.size()),
               [](const Candidate& x, const Candidate& key) { return x.angle > key.angle; });
    return turn == sharpest_right ? candidates_.front().id : candidates_.back().id;
}

bool Junctions::is_live(int id) const {
    const int curve = curve_of(id);
    return has_element(region_.curve_to_node, curve) && has_direction(curve) &&
           region_.curve_to_node[curve].oc_flag != 0;
}

bool Junctions::has_direction(int curve) const {
    return curve < curves_.size() && curves_.count(curve) >= 2;
}

/// From the point at which a walk over this id starts to the next point of the curve.
PlanePoint Junctions::direction(int id) const {
    return departure(curves_, curve_of(id), walked_backwards(id));
}

namespace {

/// The counter-clockwise angle (y axis up) from the unit vector u to v, in [0, 2π). By arc sine
/// alone: the last digits decide between nearly equal directions.
double angle_between(PlanePoint u, PlanePoint v) {
    const double a = u.x * v.x + u.y * v.y;
    const double b = u.x * v.y - u.y * v.x;
    const double len = std::sqrt(a * a + b * b);
    if (a >= 0) {
        return b >= 0 ? std::asin(b / len) : 4 * std::asin(1.0) - std::asin(-b / len);
    }
    return b >= 0 ? 2 * std::asin(1.0) - std::asin(b / len)
                  : 2 * std::asin(1.0) + std::asin(-b / len);
}

/// The sense in which bearings are searched from the way back on: 1 counter-clockwise.
int turn_sense(int turn) {
    return turn == sharpest_right ? 1 : -1;
}

} // namespace
} // namespace korvel
