#include "korvel/region/successors.h"

#include <algorithm>
#include <cmath>

#include "korvel/platform/prefetch.h"

namespace korvel {
namespace {

float rough_bearing(PlanePoint v);

} // namespace

Successors::Successors(const CREGION& region, const CurveSpans& curves)
    : ends_(2 * static_cast<std::size_t>(region.curve_to_node.GetSize())) {
    list_live_ends(region, curves);
    for (int node = 0; node < region.node_to_curve.GetSize(); ++node) {
        constexpr int nodes_ahead = 8;
        if (node + nodes_ahead < region.node_to_curve.GetSize()) {
            prefetch_ends(region.node_to_curve[node + nodes_ahead].curve_ids);
        }
        choose_at(node, region.node_to_curve[node].curve_ids);
    }
}

/// The ends around a node lie far apart in the table.
void Successors::prefetch_ends(const CArray<int>& ids) const {
    for (const int id : ids) {
        if (is_known(id)) {
            prefetch(&ends_[end_of(id)]);
        }
    }
}

void Successors::list_live_ends(const CREGION& region, const CurveSpans& curves) {
    const int known = std::min(size_of(region.curve_to_node), curves.size());
    for (int curve = 0; curve < known; ++curve) {
        const CREGION::CURVE_NODE& nodes = region.curve_to_node[curve];
        if (nodes.oc_flag != 0 && curves.count(curve) >= 2) {
            End& first = ends_[end_of(curve + 1)];
            first.node = nodes.start_node;
            first.bearing = rough_bearing(departure(curves, curve, false));
            End& last = ends_[end_of(-(curve + 1))];
            last.node = nodes.end_node;
            last.bearing = rough_bearing(departure(curves, curve, true));
        }
    }
}

void Successors::choose_at(int node, const CArray<int>& ids) {
    list_departures(ids);
    if (around_.size() == 2) {
        choose_of_two(node);
    } else if (around_.size() > 2) {
        choose_by_bearing(node);
    }
}

void Successors::list_departures(const CArray<int>& ids) {
    around_.clear();
    for (const int id : ids) {
        if (is_known(id) && ends_[end_of(id)].node != not_live) {
            around_.push_back({ends_[end_of(id)].bearing, id});
        }
    }
}

void Successors::choose_of_two(int node) {
    const int a = around_[0].id;
    const int b = around_[1].id;
    if (a != b) {
        set_next(node, a, b, b);
        set_next(node, b, a, a);
    }
}

/// Leaves a choice open where bearings are too close to tell directions apart.
void Successors::choose_by_bearing(int node) {
    if (std::any_of(around_.begin(), around_.end(),
                    [](const Departure& d) { return std::isnan(d.bearing); })) {
        return;
    }
    std::sort(around_.begin(), around_.end(),
              [](const Departure& a, const Departure& b) { return a.bearing < b.bearing; });
    const std::size_t count = around_.size();
    const auto at = [&](std::size_t k) { return around_[k % count]; };
    const auto is_before_a_gap = [&](std::size_t k) {
        // Bearings and measured angles are off by less; neither then misjudges an order.
        constexpr float slack = 1e-5F;
        constexpr float full_turn = 4;
        const float gap = at(k + 1).bearing - at(k).bearing;
        return (k % count == count - 1 ? gap + full_turn : gap) > slack;
    };
    // Counted from one round on, so that two back from the first one is not negative.
    for (std::size_t k = count; k < 2 * count; ++k) {
        if (is_before_a_gap(k - 1) && is_before_a_gap(k)) {
            set_next(node, at(k).id, is_before_a_gap(k + 1) ? at(k + 1).id : 0,
                     is_before_a_gap(k - 2) ? at(k - 1).id : 0);
        }
    }
}

/// Stores where a walk goes on that has arrived over the curve of `arrival`, whose id is that of
/// the way back.
void Successors::set_next(int node, int arrival, int right, int left) {
    End& end = ends_[end_of(arrival)];
    if (end.node == node) {
        end.right = right;
        end.left = left;
    }
}

bool Successors::is_known(int id) const {
    const int curve = curve_of(id);
    return curve >= 0 && static_cast<std::size_t>(curve) < ends_.size() / 2;
}

namespace {

/// Grows with the angle from 0 to 4 for a full turn. Not a number for a vector of no length.
float rough_bearing(PlanePoint v) {
    const double sine = v.y / (std::fabs(v.x) + std::fabs(v.y));
    return static_cast<float>(v.x >= 0 ? (v.y >= 0 ? sine : 4 + sine) : 2 - sine);
}

} // namespace
} // namespace korvel
