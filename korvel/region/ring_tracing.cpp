// Tracing of rings: walks along live curves that turn as sharply as they can at every node.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <span>
#include <unordered_map>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/base/shell_sort.h"
#include "korvel/plane/plane_point.h"
#include "korvel/platform/prefetch.h"
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
            const Departure& departure = around[(at + count) % count];
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

/// The choices at all nodes at once, where no two curves leave a node in nearly the same direction:
/// there the next curve is the neighbour in a round by bearing. A table, since each choice is asked
/// for about once and finding the records of a node's curves costs most of it.
class Successors {
public:
    Successors(const CREGION& region, const CurveSpans& curves)
        : ends_(2 * static_cast<std::size_t>(region.curve_to_node.GetSize())) {
        const int known = std::min(region.curve_to_node.GetSize(), curves.size());
        for (int curve = 0; curve < known; ++curve) {
            const CREGION::CURVE_NODE& nodes = region.curve_to_node[curve];
            if (nodes.oc_flag != 0 && curves.count(curve) >= 2) {
                for (const bool backwards : {false, true}) {
                    End& end = ends_[2 * static_cast<std::size_t>(curve) + (backwards ? 1 : 0)];
                    end.node = backwards ? nodes.end_node : nodes.start_node;
                    end.bearing = rough_bearing(vector_between(curves.point(curve, 0, backwards),
                                                               curves.point(curve, 1, backwards)));
                }
            }
        }
        for (int node = 0; node < region.node_to_curve.GetSize(); ++node) {
            constexpr int nodes_ahead = 8;
            if (node + nodes_ahead < region.node_to_curve.GetSize()) {
                for (const int id : region.node_to_curve[node + nodes_ahead].curve_ids) {
                    if (has_place(id)) {
                        korvel::prefetch(&ends_[place_of(id)]);
                    }
                }
            }
            choose_at(node, region.node_to_curve[node].curve_ids);
        }
    }

    /// The id of the curve that a walk over `curve_id` takes next, or 0 where it takes a closer
    /// look. The id must name a record of `curve_to_node`.
    int next(int curve_id, int turn) const {
        const End& end = ends_[place_of(-curve_id)];
        return turn == sharpest_right ? end.right : end.left;
    }

private:
    static constexpr int not_live = std::numeric_limits<int>::min();

    /// A curve end, and the ids by which a walk leaves its node that has arrived there.
    struct End {
        float bearing = 0;
        int node = not_live;
        int right = 0;
        int left = 0;
    };
    struct Departure {
        float bearing;
        int id;
    };

    /// Grows with the angle from 0 to 4 for a full turn. Not a number for a vector of no length.
    static float rough_bearing(PlanePoint v) {
        const double sine = v.y / (std::fabs(v.x) + std::fabs(v.y));
        return static_cast<float>(v.x >= 0 ? (v.y >= 0 ? sine : 4 + sine) : 2 - sine);
    }

    bool has_place(int id) const {
        const int curve = curve_of(id);
        return curve >= 0 && static_cast<std::size_t>(curve) < ends_.size() / 2;
    }
    static std::size_t place_of(int id) {
        return 2 * static_cast<std::size_t>(curve_of(id)) + (walked_backwards(id) ? 1 : 0);
    }

    void choose_at(int node, const CArray<int>& ids) {
        around_.clear();
        for (const int id : ids) {
            if (has_place(id) && ends_[place_of(id)].node != not_live) {
                around_.push_back({ends_[place_of(id)].bearing, id});
            }
        }
        const std::size_t count = around_.size();
        if (count == 2 && around_[0].id != around_[1].id) {
            set_at(node, around_[0].id, around_[1].id, around_[1].id);
            set_at(node, around_[1].id, around_[0].id, around_[0].id);
        }
        if (count < 3 || std::any_of(around_.begin(), around_.end(),
                                     [](const Departure& d) { return std::isnan(d.bearing); })) {
            return;
        }
        std::sort(around_.begin(), around_.end(),
                  [](const Departure& a, const Departure& b) { return a.bearing < b.bearing; });
        // Bearings and measured angles are off by less; neither then misjudges an order.
        constexpr float slack = 1e-5F;
        const auto at = [&](std::size_t k) { return around_[k % count]; };
        const auto is_clear = [&](std::size_t k) { // of the one after it
            const float gap = at(k + 1).bearing - at(k).bearing;
            return (k % count == count - 1 ? gap + 4 : gap) > slack;
        };
        for (std::size_t k = count; k < 2 * count; ++k) {
            if (is_clear(k - 1) && is_clear(k)) {
                set_at(node, at(k).id, is_clear(k + 1) ? at(k + 1).id : 0,
                       is_clear(k - 2) ? at(k - 1).id : 0);
            }
        }
    }

    void set_at(int node, int way_back, int right, int left) {
        End& end = ends_[place_of(way_back)];
        if (end.node == node) {
            end.right = right;
            end.left = left;
        }
    }

    std::vector<End> ends_; ///< of each curve its first and its last point
    std::vector<Departure> around_;
};

/// Rings of curve ids, one after another.
class FoundRings {
public:
    int size() const { return static_cast<int>(starts_.size()) - 1; }
    std::span<const int> operator[](int ring) const {
        const auto at = static_cast<std::size_t>(ring);
        return {ids_.data() + starts_[at], starts_[at + 1] - starts_[at]};
    }

    // The ring in hand, behind the others.
    std::size_t open_size() const { return ids_.size() - starts_.back(); }
    int open_id(std::size_t k) const { return ids_[starts_.back() + k]; }
    void add(int id) { ids_.push_back(id); }
    void close() { starts_.push_back(ids_.size()); }
    void discard() { ids_.resize(starts_.back()); }

private:
    std::vector<int> ids_;
    std::vector<std::size_t> starts_{0};
};

/// The rings without those that are made of the same curves in the same senses as an earlier one.
std::vector<int> distinct_rings(const FoundRings& rings) {
    const auto sorted = [&](int ring) {
        std::vector<int> ids(rings[ring].begin(), rings[ring].end());
        std::sort(ids.begin(), ids.end());
        return ids;
    };
    const auto same = [&](int a, int b) {
        return rings[a].size() == rings[b].size() && sorted(a) == sorted(b);
    };
    std::vector<int> distinct;
    korvel::KeyIndex seen(rings.size());
    for (int ring = 0; ring < rings.size(); ++ring) {
        std::uint64_t key = 0; // the same in whatever order the curves are walked
        for (const int id : rings[ring]) {
            key += korvel::mix_bits(static_cast<std::uint32_t>(id));
        }
        if (korvel::first_equal(seen, key, ring, same) == ring) {
            distinct.push_back(ring);
        }
    }
    return distinct;
}

} // namespace

void CREGION::CalcRingToCurve() {
    const CurveSpans curves(curve_pts, curve_counts);
    const Successors successors(*this, curves);
    Junctions junctions(*this, curves);
    const auto next = [&](int id, int turn) {
        const int successor = successors.next(id, turn);
        return successor != 0 ? successor : junctions.next(id, turn);
    };
    FoundRings found;

    // Walks until it comes back to its start; one that runs longer than there are curves is
    // dropped. Such a walk goes round a loop beside its start, and once it has been round twice it
    // changes nothing any more; it is told by an id that it kept (R. P. Brent, 1980).
    const auto closes = [&](int start, int turn) {
        found.add(start);
        auto most = static_cast<std::size_t>(curves.size());
        std::size_t kept_at = 1;
        for (int id = next(start, turn); id != start; id = next(id, turn)) {
            if (id == 0) {
                return false;
            }
            found.add(id);
            CURVE_NODE& curve = curve_to_node[curve_of(id)];
            if (curve.ring_dir == 0) {
                curve.ring_dir = walked_backwards(id) ? -1 : 1;
                curve.ring_turn = turn;
            } else {
                curve.ring_dir = 2;
            }
            const std::size_t walked = found.open_size();
            if (walked > most) {
                return false;
            }
            if (id == found.open_id(kept_at - 1)) {
                const std::size_t loop = walked - kept_at;
                most = std::min(most, walked + loop);
            }
            if (walked == 2 * kept_at) {
                kept_at = walked;
            }
        }
        return true;
    };
    const auto walk = [&](int start, int turn) {
        if (closes(start, turn)) {
            found.close();
        } else {
            found.discard();
        }
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

    const std::vector<int> distinct = distinct_rings(found);
    rings.SetSize(0, 50);
    rings.SetSize(static_cast<int>(distinct.size()));
    for (int ring = 0; ring < rings.GetSize(); ++ring) {
        korvel::assign_list(rings[ring].curve_ids, found[distinct[ring]]);
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
