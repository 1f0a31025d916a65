// Tracing of rings: walks along live curves that turn as sharply as they can at every node.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/plane/winding.h"
#include "korvel/platform/check_point.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"
#include "korvel/region/junctions.h"
#include "korvel/region/successors.h"

using korvel::curve_of;
using korvel::CurveSpans;
using korvel::PlanePoint;
using korvel::sharpest_left;
using korvel::sharpest_right;
using korvel::vector_between;
using korvel::walked_backwards;

namespace {

/// Rings of curve ids in one array: one allocation, however many rings there are.
class FoundRings {
public:
    int size() const { return static_cast<int>(starts_.size()) - 1; }
    std::span<const int> operator[](int ring) const {
        const auto at = static_cast<std::size_t>(ring);
        return {ids_.data() + starts_[at], starts_[at + 1] - starts_[at]};
    }
    void add(const std::vector<int>& ring) {
        ids_.insert(ids_.end(), ring.begin(), ring.end());
        starts_.push_back(ids_.size());
    }

private:
    std::vector<int> ids_;
    std::vector<std::size_t> starts_{0};
};

class RingTracer {
public:
    RingTracer(CREGION& region, const CurveSpans& curves)
        : curve_to_node_(region.curve_to_node), most_curves_(curves.size()),
          successors_(region, curves), junctions_(region, curves) {}

    void trace_both_sides(int curve);
    const FoundRings& found() const { return found_; }

private:
    void walk(int start, int turn);
    bool closes(int start, int turn);
    int next(int id, int turn);
    void mark_walked(int id, int turn);

    CArray<CREGION::CURVE_NODE>& curve_to_node_;
    int most_curves_;
    korvel::Successors successors_;
    korvel::Junctions junctions_;
    std::vector<int> walked_;
    FoundRings found_;
};

std::vector<int> distinct_rings(const FoundRings& rings);

} // namespace

void CREGION::CalcRingToCurve() {
    const CurveSpans curves(curve_pts, curve_counts);
    RingTracer tracer(*this, curves);
    for (int curve = 0; curve < curve_to_node.GetSize(); ++curve) {
        tracer.trace_both_sides(curve);
        korvel::check_point_after(curve, curve_to_node.GetSize(), 1024, "tracing rings");
    }
    const std::vector<int> distinct = distinct_rings(tracer.found());
    rings.SetSize(0, 50);
    rings.SetSize(static_cast<int>(distinct.size()));
    for (int ring = 0; ring < rings.GetSize(); ++ring) {
        korvel::assign_list(rings[ring].curve_ids, tracer.found()[distinct[ring]]);
    }
}

namespace {

/// Traces the rings on those sides of a live curve along which no walk has gone yet.
void RingTracer::trace_both_sides(int curve) {
    CREGION::CURVE_NODE& state = curve_to_node_[curve];
    const int id = curve + 1;
    if (state.oc_flag == 0) {
        return;
    }
    if (state.ring_dir == 0) {
        state.ring_dir = 1;
        state.ring_turn = sharpest_right;
        walk(id, sharpest_right);
        walk(id, sharpest_left);
    } else if (state.ring_dir == 1 || state.ring_dir == -1) {
        walk(state.ring_dir * id,
             state.ring_turn == sharpest_right ? sharpest_left : sharpest_right);
    } else {
        return;
    }
    state.ring_dir = 2;
}

void RingTracer::walk(int start, int turn) {
    if (closes(start, turn)) {
        found_.add(walked_);
    }
}

/// Walks until it comes back to its start. A walk that runs longer than there are curves is
/// dropped: it goes round a loop beside its start, and once it has been round twice it changes
/// nothing any more. The loop is recognised by an id kept at every power of two (R. P. Brent,
/// 1980).
bool RingTracer::closes(int start, int turn) {
    walked_.assign(1, start);
    auto most = static_cast<std::size_t>(most_curves_);
    std::size_t kept_at = 1;
    for (int id = next(start, turn); id != start; id = next(id, turn)) {
        if (id == 0) {
            return false;
        }
        walked_.push_back(id);
        mark_walked(id, turn);
        const std::size_t walked = walked_.size();
        if (walked > most) {
            return false;
        }
        if (id == walked_[kept_at - 1]) {
            const std::size_t loop = walked - kept_at;
            most = std::min(most, walked + loop);
        }
        if (walked == 2 * kept_at) {
            kept_at = walked;
        }
    }
    return true;
}

int RingTracer::next(int id, int turn) {
    const int successor = successors_.next(id, turn);
    return successor != 0 ? successor : junctions_.next(id, turn);
}

void RingTracer::mark_walked(int id, int turn) {
    CREGION::CURVE_NODE& curve = curve_to_node_[curve_of(id)];
    if (curve.ring_dir == 0) {
        curve.ring_dir = walked_backwards(id) ? -1 : 1;
        curve.ring_turn = turn;
    } else {
        curve.ring_dir = 2;
    }
}

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

int CREGION::GetNextCurve(int curve_id, int turn) {
    const CurveSpans curves(curve_pts, curve_counts);
    return korvel::Junctions(*this, curves).next(curve_id, turn);
}

/// The shoelace formula over the pairs inside each curve, relative to the seed point.
void CREGION::CalcRingArea() {
    const CurveSpans curves(curve_pts, curve_counts);
    for (tagRToC& ring : rings) {
        double sum = 0;
        for (const int id : ring.curve_ids) {
            const int curve = curve_of(id);
            if (!curves.has_points(curve)) {
                continue;
            }
            const bool backwards = walked_backwards(id);
            PlanePoint p = vector_between(seed_pt, curves.point(curve, 0, backwards));
            for (int k = 1; k < curves.count(curve); ++k) {
                const PlanePoint q = vector_between(seed_pt, curves.point(curve, k, backwards));
                sum += korvel::cross_product(p, q);
                p = q;
            }
        }
        ring.ring_area = std::fabs(sum) * 0.5;
    }
}
