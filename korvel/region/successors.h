#pragma once

#include <limits>
#include <vector>

#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"
#include "korvel/region/junctions.h"

namespace korvel {

/// The next curves of all walks at once, wherever no two curves leave a node in nearly the same
/// direction: there the next curve is the neighbour in the order of bearings. Saves the walks the
/// angles, of which they would measure each about once for each curve at the node.
class Successors {
public:
    /// Sorts the live curves around every node by bearing: linear but for these sorts.
    Successors(const CREGION& region, const CurveSpans& curves);

    /// The id by which a walk that arrives over `curve_id` goes on, or 0 where the angles must be
    /// measured. The id must name a record of `curve_to_node`.
    int next(int curve_id, int turn) const {
        const End& end = ends_[end_of(-curve_id)];
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

    void prefetch_ends(const CArray<int>& ids) const;
    void list_live_ends(const CREGION& region, const CurveSpans& curves);
    void choose_at(int node, const CArray<int>& ids);
    void list_departures(const CArray<int>& ids);
    void choose_of_two(int node);
    void choose_by_bearing(int node);
    void set_next(int node, int arrival, int right, int left);

    bool is_known(int id) const;
    static std::size_t end_of(int id) {
        return 2 * static_cast<std::size_t>(curve_of(id)) + (walked_backwards(id) ? 1 : 0);
    }

    std::vector<End> ends_; ///< of each curve its first and its last point
    std::vector<Departure> around_;
};

} // namespace korvel
