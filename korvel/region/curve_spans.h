#pragma once

#include <algorithm>
#include <limits>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/plane/plane_point.h"
#include "korvel/platform/framework.h"

namespace korvel {

/// The range of each curve of a network in its point array. A count that is negative, or larger
/// than the number of points that are left, is cut to what is there, so that no step leaves the
/// array.
class CurveSpans {
public:
    CurveSpans(const CArray<tagPOINT>& pts, const CArray<int>& counts) : pts_(&pts) {
        starts_.reserve(static_cast<std::size_t>(counts.GetSize()) + 1);
        starts_.push_back(0);
        for (const int count : counts) {
            const int left = pts.GetSize() - starts_.back();
            starts_.push_back(starts_.back() + std::clamp(count, 0, left));
        }
    }

    int size() const { return static_cast<int>(starts_.size()) - 1; }
    int start(int curve) const { return starts_[curve]; }
    int end(int curve) const { return starts_[curve + 1]; }
    int count(int curve) const { return end(curve) - start(curve); }
    bool is_empty(int curve) const { return count(curve) == 0; }

    /// Whether the index, which may be any number, names a curve with points.
    bool has_points(int curve) const { return curve >= 0 && curve < size() && !is_empty(curve); }

    /// Point k of the curve, counted from its last point when `backwards`.
    const tagPOINT& point(int curve, int k, bool backwards = false) const {
        return (*pts_)[index(curve, k, backwards)];
    }
    /// Its index in the point array.
    int index(int curve, int k, bool backwards = false) const {
        return backwards ? end(curve) - 1 - k : start(curve) + k;
    }

private:
    const CArray<tagPOINT>* pts_;
    std::vector<int> starts_;
};

/// The curve that a signed, 1-based id names, and the sense in which it is walked.
inline int curve_of(int curve_id) {
    return (curve_id < 0 ? -(curve_id + 1) : curve_id - 1);
}
inline bool walked_backwards(int curve_id) {
    return curve_id < 0;
}

/// Fills `points` with the indices in the point array of the points of a ring of signed curve ids,
/// in walking order. Each curve starts at the last point of the one before it, and the last curve
/// ends at the ring's first point; such points are taken once. Ids without a curve are passed over.
inline void collect_ring_points(const CurveSpans& curves, const CArray<int>& curve_ids,
                                std::vector<int>& points) {
    points.clear();
    for (const int id : curve_ids) {
        const int curve = curve_of(id);
        if (!curves.has_points(curve)) {
            continue;
        }
        for (int k = points.empty() ? 0 : 1; k < curves.count(curve); ++k) {
            points.push_back(curves.index(curve, k, walked_backwards(id)));
        }
    }
    if (!points.empty()) {
        points.pop_back();
    }
}
inline std::vector<int> ring_points(const CurveSpans& curves, const CArray<int>& curve_ids) {
    std::vector<int> points;
    collect_ring_points(curves, curve_ids, points);
    return points;
}

inline PlanePoint vector_between(const tagPOINT& from, const tagPOINT& to) {
    return {static_cast<double>(to.x) - from.x, static_cast<double>(to.y) - from.y};
}

/// From a point to the one that `index` names among `pts`; not a number where it names none, which
/// makes every angle sum that it enters not a number either.
inline PlanePoint vector_to(const CArray<tagPOINT>& pts, int index, const tagPOINT& from) {
    if (!has_element(pts, index)) {
        constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
        return {nowhere, nowhere};
    }
    return vector_between(from, pts[index]);
}

/// From an end of a curve of two points or more, its last when `backwards`, to the point next to
/// it.
inline PlanePoint departure(const CurveSpans& curves, int curve, bool backwards) {
    return vector_between(curves.point(curve, 0, backwards), curves.point(curve, 1, backwards));
}

inline bool same_point(const tagPOINT& a, const tagPOINT& b) {
    return a.x == b.x && a.y == b.y;
}

} // namespace korvel
