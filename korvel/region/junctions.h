#pragma once

#include <unordered_map>
#include <vector>

#include "korvel/plane/plane_point.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"

namespace korvel {

/// The turn rules of a walk, y axis up.
constexpr int sharpest_right = -1;
constexpr int sharpest_left = 1;

/// Chooses the curve by which a walk leaves a node, measuring the directions of the curves there.
/// Refers to the region and its curves, which must not change meanwhile.
class Junctions {
public:
    Junctions(const CREGION& region, const CurveSpans& curves) : region_(region), curves_(curves) {}

    /// The id by which a walk that arrives over `curve_id` goes on, or 0 where it cannot. Linear in
    /// the curves at the node; at a hub logarithmic, once the curves there have been sorted.
    int next(int curve_id, int turn);

private:
    struct Candidate {
        double angle;
        int id;
    };
    struct Departure {
        double bearing;
        int id;
    };

    int node_after(int curve_id) const;
    PlanePoint way_back(int curve_id) const;
    int choose_at_hub(int node, int arrival, PlanePoint back, int turn);
    int choose_of_all(int node, int arrival, PlanePoint back, int turn);
    const std::vector<Departure>& departures_of(int node);

    bool is_live(int id) const;
    bool has_direction(int curve) const;
    PlanePoint direction(int id) const;

    const CREGION& region_;
    const CurveSpans& curves_;
    std::vector<Candidate> candidates_;
    std::unordered_map<int, std::vector<Departure>> departures_; ///< of the hubs met so far
};

} // namespace korvel
