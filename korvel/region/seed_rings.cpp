// The ring around the seed point and the rings directly inside it.

#include <algorithm>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/base/shell_sort.h"
#include "korvel/plane/live_points.h"
#include "korvel/plane/winding.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"

using korvel::curve_of;
using korvel::CurveSpans;

namespace {

/// The points of a ring, with what it takes to ask for points on and in it.
class Outline {
public:
    Outline(const CArray<tagPOINT>& pts, const CurveSpans& curves, const CREGION::tagRToC& ring);

    bool has_corner(const tagPOINT& pt) const;
    bool encloses(const tagPOINT& pt) const;
    bool encloses(const Outline& smaller) const;

private:
    std::vector<tagPOINT> corners_;
    korvel::IntBox box_;
    korvel::KeyIndex corners_at_;
};

using Rings = CArray<CREGION::tagRToC>;

std::vector<char> mark_curves_of(const Rings& rings, const CurveSpans& curves);
bool has_marked_curve(const CREGION::tagRToC& ring, const CurveSpans& curves,
                      const std::vector<char>& marks);

} // namespace

void CREGION::CalcInExRing() {
    const CurveSpans curves(curve_pts, curve_counts);
    const auto outline = [&](const tagRToC& ring) { return Outline(curve_pts, curves, ring); };

    in_rings.SetSize(0, 50);
    ex_rings.SetSize(0, 50);
    for (const tagRToC& ring : rings) {
        (outline(ring).encloses(seed_pt) ? in_rings : ex_rings).Add(ring);
    }
    korvel::shell_sort(in_rings, in_rings.GetSize(), [](const tagRToC& x, const tagRToC& key) {
        return x.ring_area > key.ring_area;
    });
    if (in_rings.IsEmpty()) {
        ex_rings.RemoveAll();
        return;
    }

    // Inside the smallest ring around the seed, without a curve of any ring around it.
    const std::vector<char> is_around_seed = mark_curves_of(in_rings, curves);
    const Outline smallest = outline(in_rings[0]);
    korvel::remove_elements(ex_rings, [&](const tagRToC& ring) {
        const int first = ring.curve_ids.IsEmpty() ? -1 : curve_of(ring.curve_ids[0]);
        // The curve's stored first point decides, whatever the sense in which the ring walks it.
        return !curves.has_points(first) || has_marked_curve(ring, curves, is_around_seed) ||
               !smallest.encloses(curves.point(first, 0));
    });
    in_rings.SetSize(1);

    korvel::shell_sort(ex_rings, ex_rings.GetSize(), [](const tagRToC& x, const tagRToC& key) {
        return x.ring_area < key.ring_area;
    });
    // A ring inside another kept ring is not directly inside the seed's ring.
    std::vector<Outline> kept;
    korvel::remove_elements(ex_rings, [&](const tagRToC& ring) {
        Outline candidate = outline(ring);
        const auto encloses_it = [&](const Outline& larger) { return larger.encloses(candidate); };
        if (std::any_of(kept.begin(), kept.end(), encloses_it)) {
            return true;
        }
        kept.push_back(std::move(candidate));
        return false;
    });
}

namespace {

Outline::Outline(const CArray<tagPOINT>& pts, const CurveSpans& curves,
                 const CREGION::tagRToC& ring)
    : corners_at_(0) {
    for (const int point : korvel::ring_points(curves, ring.curve_ids)) {
        corners_.push_back(pts[point]);
        box_.include(pts[point]);
        corners_at_.find_or_add(korvel::point_key(pts[point]), 0);
    }
}

bool Outline::has_corner(const tagPOINT& pt) const {
    return corners_at_.find(korvel::point_key(pt)) >= 0;
}

bool Outline::encloses(const tagPOINT& pt) const {
    const auto corner = [&](int k) { return korvel::vector_between(pt, corners_[k]); };
    return box_.contains(pt) && korvel::winding_encloses(static_cast<int>(corners_.size()), corner);
}

/// Whether a ring no larger than this one lies inside: its first point off this ring decides, and a
/// ring with no such point counts as inside.
bool Outline::encloses(const Outline& smaller) const {
    if (!box_.meets(smaller.box_)) {
        return false;
    }
    const auto off = std::find_if(smaller.corners_.begin(), smaller.corners_.end(),
                                  [&](const tagPOINT& pt) { return !has_corner(pt); });
    return off == smaller.corners_.end() || encloses(*off);
}

std::vector<char> mark_curves_of(const Rings& rings, const CurveSpans& curves) {
    std::vector<char> marks(static_cast<std::size_t>(curves.size()), 0);
    for (const CREGION::tagRToC& ring : rings) {
        for (const int id : ring.curve_ids) {
            if (curves.has_points(curve_of(id))) {
                marks[curve_of(id)] = 1;
            }
        }
    }
    return marks;
}

bool has_marked_curve(const CREGION::tagRToC& ring, const CurveSpans& curves,
                      const std::vector<char>& marks) {
    return std::any_of(begin(ring.curve_ids), end(ring.curve_ids), [&](int id) {
        return curves.has_points(curve_of(id)) && marks[curve_of(id)] != 0;
    });
}

} // namespace

int CREGION::IsPtInRing(tagPOINT pt, const tagRToC& ring) {
    return Outline(curve_pts, CurveSpans(curve_pts, curve_counts), ring).encloses(pt) ? 1 : 0;
}

int CREGION::GetRegionPts(CArray<int>& pts, CArray<int>& counts) {
    CArray<tagPOINT> unused_pts;
    CArray<int> unused_counts;
    CArray<int> unused_holes;
    GetRegion(unused_pts, unused_counts, unused_holes);
    if (pt_index.GetSize() != curve_pts.GetSize()) {
        FilterSmaePoint(); // `GetRegion` alone does not need the distinct points
    }

    const CurveSpans curves(curve_pts, curve_counts);
    std::vector<int> all_points;
    std::vector<int> all_counts;
    const auto add_ring = [&](const tagRToC& ring) {
        const std::vector<int> points = korvel::ring_points(curves, ring.curve_ids);
        for (const int point : points) {
            all_points.push_back(pt_index[point]);
        }
        all_counts.push_back(static_cast<int>(points.size()));
    };
    std::for_each(begin(in_rings), end(in_rings), add_ring);
    std::for_each(begin(ex_rings), end(ex_rings), add_ring);
    korvel::assign_list(pts, all_points);
    korvel::assign_list(counts, all_counts);
    return counts.GetSize();
}
