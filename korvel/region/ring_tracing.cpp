// Tracing of rings: walks along live curves that turn as sharply as they can at every node.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <unordered_map>

#include "korvel/geometry/first_index.h"
#include "korvel/geometry/list_index.h"
#include "korvel/geometry/plane_point.h"
#include "korvel/geometry/shell_sort.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"

using korvel::curve_of;
using korvel::CurveSpans;
using korvel::PlanePoint;
using korvel::vector_between;
using korvel::walked_backwards;

namespace {

constexpr int sharpest_right = -1;
constexpr int sharpest_left = 1;

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

/// Chooses, at the node that a walk arrives at, the curve by which it leaves.
class Junctions {
public:
    Junctions(const CREGION& region, const CurveSpans& curves) : region_(region), curves_(curves) {}

    /// The id of the next curve, or 0 where the walk cannot go on.
    int next(int curve_id, int turn) {
        const int curve = curve_of(curve_id);
        if (!korvel::has_element(region_.curve_to_node, curve) || !has_direction(curve)) {
            return 0;
        }
        const CREGION::CURVE_NODE& ends = region_.curve_to_node[curve];
        const int node = walked_backwards(curve_id) ? ends.start_node : ends.end_node;
        if (!korvel::has_element(region_.node_to_curve, node)) {
            return 0;
        }

        PlanePoint back = departure(-curve_id);
        const double length = std::sqrt(back.x * back.x + back.y * back.y);
        back = {back.x / length, back.y / length};
        if (region_.node_to_curve[node].curve_ids.GetSize() >= hub_size) {
            const int id = next_at_hub(node, -curve_id, back, turn);
            if (id != 0) {
                return id;
            }
        }
        candidates_.clear();
        for (const int id : region_.node_to_curve[node].curve_ids) {
            if (id != -curve_id && is_live(id)) {
                candidates_.push_back({angle_between(back, departure(id)), id});
            }
        }
        if (candidates_.empty()) {
            return 0;
        }
        // Which of two equal directions comes first is the sort's doing.
        korvel::shell_sort(
            candidates_, static_cast<int>(candidates_.size()),
            [](const Candidate& x, const Candidate& key) { return x.angle > key.angle; });
        return turn == sharpest_right ? candidates_.front().id : candidates_.back().id;
    }

private:
    struct Candidate {
        double angle;
        int id;
    };
    struct Departure {
        double bearing;
        int id;
    };
    static constexpr int hub_size = 32;

    /// The choice among many curves: of all departures by bearing only those next to the way back
    /// are measured, on the one hand or the other. 0 where two of them measure the same, which the
    /// sort of all would decide, and where none is left.
    int next_at_hub(int node, int way_back, PlanePoint back, int turn) {
        // Measured angles are off by less, even where the arc sine is steep.
        constexpr double slack = 1e-6;
        constexpr double full_turn = 2 * std::numbers::pi;
        const std::vector<Departure>& around = departures_of(node);
        const int count = static_cast<int>(around.size());
        const double start =
            std::remainder(std::atan2(back.y, back.x) - turn_sense(turn) * slack, full_turn);
        const auto first = std::partition_point(
            around.begin(), around.end(), [&](const Departure& d) { return d.bearing < start; });
        int at = static_cast<int>(first - around.begin()) - (turn == sharpest_right ? 0 : 1);
        int best = 0;
        bool is_tied = false;
        double smallest = 2 * full_turn;
        for (int seen = 0; seen < count; ++seen, at += turn_sense(turn)) {
            const Departure& departure = around[static_cast<std::size_t>((at + count) % count)];
            double past_start = turn_sense(turn) * (departure.bearing - start);
            past_start += past_start < 0 ? full_turn : 0;
            if (past_start > smallest + 2 * slack) {
                break;
            }
            if (departure.id == way_back) {
                continue;
            }
            const double angle = angle_between(back, this->departure(departure.id));
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

    static int turn_sense(int turn) { return turn == sharpest_right ? 1 : -1; }

    /// The live departures at a node, sorted by bearing.
    const std::vector<Departure>& departures_of(int node) {
        std::vector<Departure>& around = departures_[node];
        if (around.empty()) {
            for (const int id : region_.node_to_curve[node].curve_ids) {
                if (is_live(id)) {
                    const PlanePoint way = departure(id);
                    around.push_back({std::atan2(way.y, way.x), id});
                }
            }
            std::sort(around.begin(), around.end(),
                      [](const Departure& a, const Departure& b) { return a.bearing < b.bearing; });
        }
        return around;
    }

    bool has_direction(int curve) const {
        return curve < curves_.size() && curves_.count(curve) >= 2;
    }
    bool is_live(int id) const {
        const int curve = curve_of(id);
        return korvel::has_element(region_.curve_to_node, curve) && has_direction(curve) &&
               region_.curve_to_node[curve].oc_flag != 0;
    }
    /// From the end at which a walk over this id starts to the curve's next point.
    PlanePoint departure(int id) const {
        const bool backwards = walked_backwards(id);
        return vector_between(curves_.point(curve_of(id), 0, backwards),
                              curves_.point(curve_of(id), 1, backwards));
    }

    const CREGION& region_;
    const CurveSpans& curves_;
    std::vector<Candidate> candidates_;
    std::unordered_map<int, std::vector<Departure>> departures_; ///< of hubs, as they are met
};

using IdList = std::vector<int>;

/// Removes rings that are made of the same curves in the same senses as an earlier one.
void drop_repeated_rings(std::vector<IdList>& rings) {
    std::vector<IdList> sorted = rings;
    std::vector<IdList> kept;
    korvel::FirstIndex seen(static_cast<int>(rings.size()));
    for (std::size_t ring = 0; ring < rings.size(); ++ring) {
        std::sort(sorted[ring].begin(), sorted[ring].end());
        std::uint64_t key = 0;
        for (const int id : sorted[ring]) {
            key = korvel::mix_bits(key ^ static_cast<std::uint32_t>(id));
        }
        const int self = static_cast<int>(ring);
        const int first = korvel::first_equal(seen, key, self, [&](int a, int b) {
            return sorted[static_cast<std::size_t>(a)] == sorted[static_cast<std::size_t>(b)];
        });
        if (first == self) {
            kept.push_back(std::move(rings[ring]));
        }
    }
    rings = std::move(kept);
}

} // namespace

void CREGION::CalcRingToCurve() {
    const CurveSpans curves(curve_pts, curve_counts);
    Junctions junctions(*this, curves);
    std::vector<IdList> found;

    // Walks until it comes back to its start; one that runs longer than there are curves is
    // dropped. Such a walk goes round a loop beside its start, and once it has been round twice it
    // changes nothing any more; it is told by an id that it kept (R. P. Brent, 1980).
    const auto walk = [&](int start, int turn) {
        IdList ids{start};
        auto most = static_cast<std::size_t>(curves.size());
        std::size_t kept_at = 1;
        for (int id = junctions.next(start, turn); id != start; id = junctions.next(id, turn)) {
            if (id == 0) {
                return;
            }
            ids.push_back(id);
            CURVE_NODE& curve = curve_to_node[curve_of(id)];
            if (curve.ring_dir == 0) {
                curve.ring_dir = walked_backwards(id) ? -1 : 1;
                curve.ring_turn = turn;
            } else {
                curve.ring_dir = 2;
            }
            if (ids.size() > most) {
                return;
            }
            if (id == ids[kept_at - 1]) {
                const std::size_t loop = ids.size() - kept_at;
                most = std::min(most, ids.size() + loop);
            }
            if (ids.size() == 2 * kept_at) {
                kept_at = ids.size();
            }
        }
        found.push_back(std::move(ids));
    };

    for (int i = 0; i < curve_to_node.GetSize(); ++i) {
        CURVE_NODE& curve = curve_to_node[i];
        if (curve.oc_flag == 0) {
            continue;
        }
        if (curve.ring_dir == 0) {
            curve.ring_dir = 1;
            curve.ring_turn = sharpest_right;
            walk(i + 1, sharpest_right);
            walk(i + 1, sharpest_left);
        } else if (curve.ring_dir == 1 || curve.ring_dir == -1) {
            const int other_turn =
                curve.ring_turn == sharpest_right ? sharpest_left : sharpest_right;
            walk(curve.ring_dir * (i + 1), other_turn);
        } else {
            continue;
        }
        curve.ring_dir = 2;
    }
    drop_repeated_rings(found);

    rings.SetSize(0, 50);
    rings.SetSize(static_cast<int>(found.size()));
    for (int ring = 0; ring < rings.GetSize(); ++ring) {
        korvel::assign_list(rings[ring].curve_ids, found[static_cast<std::size_t>(ring)]);
    }
}

int CREGION::GetNextCurve(int curve_id, int turn) {
    const CurveSpans curves(curve_pts, curve_counts);
    return Junctions(*this, curves).next(curve_id, turn);
}

/// The shoelace formula over the pairs inside each curve, relative to the seed point.
void CREGION::CalcRingArea() {
    const CurveSpans curves(curve_pts, curve_counts);
    for (tagRToC& ring : rings) {
        double sum = 0;
        for (const int id : ring.curve_ids) {
            const int curve = curve_of(id);
            if (curve < 0 || curve >= curves.size() || curves.is_empty(curve)) {
                continue;
            }
            const bool backwards = walked_backwards(id);
            PlanePoint p = vector_between(seed_pt, curves.point(curve, 0, backwards));
            for (int k = 1; k < curves.count(curve); ++k) {
                const PlanePoint q = vector_between(seed_pt, curves.point(curve, k, backwards));
                sum += p.x * q.y - p.y * q.x;
                p = q;
            }
        }
        ring.ring_area = std::fabs(sum) * 0.5;
    }
}
