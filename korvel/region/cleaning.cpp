// Cleaning of a curve network, the caller's or the split one, and the table of distinct points.

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"

using korvel::CurveSpans;

namespace {

/// Moves the points of a network down over removed ones, curve by curve.
class Compaction {
public:
    Compaction(CArray<tagPOINT>& pts, CArray<int>& counts) : pts_(pts), counts_(counts) {}

    void keep_point(tagPOINT pt) { pts_[points_++] = pt; }
    void drop_last_point() { --points_; }
    void keep_curve(int count) { counts_[curves_++] = count; }

    /// Points behind the last curve stay behind it; both arrays are cut to their exact sizes.
    void finish(int first_point_behind) {
        for (int p = first_point_behind; p < pts_.GetSize(); ++p) {
            keep_point(pts_[p]);
        }
        pts_.SetSize(points_);
        pts_.FreeExtra();
        counts_.SetSize(curves_);
        counts_.FreeExtra();
    }

private:
    CArray<tagPOINT>& pts_;
    CArray<int>& counts_;
    int points_ = 0;
    int curves_ = 0;
};

bool same_curve(const CurveSpans& curves, int a, int b);
std::vector<char> mark_first_of_same(const CurveSpans& curves);

} // namespace

/// Removes points equal to the one before them on their curve, then curves left with one point. A
/// curve of no points stays.
void CREGION::FilterNonLenSegment(CArray<tagPOINT>* pts, CArray<int>* counts) {
    if (pts == nullptr || counts == nullptr) {
        return;
    }
    const CurveSpans curves(*pts, *counts);
    Compaction kept(*pts, *counts);
    for (int curve = 0; curve < curves.size(); ++curve) {
        int count = 0;
        tagPOINT last{};
        for (int p = curves.start(curve); p < curves.end(curve); ++p) {
            const tagPOINT pt = (*pts)[p];
            if (count == 0 || !korvel::same_point(pt, last)) {
                kept.keep_point(pt);
                last = pt;
                ++count;
            }
        }
        if (count == 1) {
            kept.drop_last_point();
        } else {
            kept.keep_curve(count);
        }
    }
    kept.finish(curves.end(curves.size() - 1));
}

/// Removes every curve that is the same as an earlier one, forwards or backwards.
void CREGION::FilterRedundantCurve(CArray<tagPOINT>* pts, CArray<int>* counts) {
    if (pts == nullptr || counts == nullptr) {
        return;
    }
    const CurveSpans curves(*pts, *counts);
    // Found before anything moves: sameness is transitive, so the earlier one may itself be
    // removed.
    const std::vector<char> is_first = mark_first_of_same(curves);
    Compaction kept(*pts, *counts);
    for (int curve = 0; curve < curves.size(); ++curve) {
        if (is_first[curve] != 0) {
            for (int p = curves.start(curve); p < curves.end(curve); ++p) {
                kept.keep_point((*pts)[p]);
            }
            kept.keep_curve(curves.count(curve));
        }
    }
    kept.finish(curves.end(curves.size() - 1));
}

namespace {

std::uint64_t curve_key(const CurveSpans& curves, int curve);
bool same_in_order(const CurveSpans& curves, int a, int b, bool b_backwards);

/// Marks the curves that are not the same as an earlier one.
std::vector<char> mark_first_of_same(const CurveSpans& curves) {
    std::vector<std::uint64_t> keys;
    keys.reserve(static_cast<std::size_t>(curves.size()));
    for (int curve = 0; curve < curves.size(); ++curve) {
        keys.push_back(curve_key(curves, curve));
    }
    std::vector<char> is_first;
    is_first.reserve(keys.size());
    korvel::KeyIndex seen(curves.size());
    const auto same = [&](int a, int b) { return same_curve(curves, a, b); };
    for (int curve = 0; curve < curves.size(); ++curve) {
        const int ahead = curve + korvel::KeyIndex::prefetch_distance;
        if (ahead < curves.size()) {
            seen.prefetch(keys[ahead]);
        }
        const int first = korvel::first_equal(seen, keys[curve], curve, same);
        is_first.push_back(static_cast<char>(first == curve));
    }
    return is_first;
}

/// A key that a curve shares with its reverse: two polynomials in the points, one for each sense.
std::uint64_t curve_key(const CurveSpans& curves, int curve) {
    constexpr std::uint64_t factor = 0x9e3779b97f4a7c15U;
    std::uint64_t forwards = 0;
    std::uint64_t backwards = 0;
    std::uint64_t power = 1;
    for (int k = 0; k < curves.count(curve); ++k) {
        const std::uint64_t point = korvel::mix_bits(korvel::point_key(curves.point(curve, k)));
        forwards = forwards * factor + point;
        backwards += point * power;
        power *= factor;
    }
    return korvel::mix_bits(forwards) + korvel::mix_bits(backwards);
}

bool same_curve(const CurveSpans& curves, int a, int b) {
    return curves.count(a) == curves.count(b) &&
           (same_in_order(curves, a, b, false) || same_in_order(curves, a, b, true));
}

bool same_in_order(const CurveSpans& curves, int a, int b, bool b_backwards) {
    for (int k = 0; k < curves.count(a); ++k) {
        if (!korvel::same_point(curves.point(a, k), curves.point(b, k, b_backwards))) {
            return false;
        }
    }
    return true;
}

} // namespace

int CREGION::IsCurveSame(CArray<tagPOINT>* pts, CArray<int>* counts, int a, int b) {
    if (pts == nullptr || counts == nullptr || !korvel::has_element(*counts, a) ||
        !korvel::has_element(*counts, b)) {
        return 0;
    }
    return same_curve(CurveSpans(*pts, *counts), a, b) ? 1 : 0;
}

/// Fills `unique_pts` with the distinct points of the split curves, in the order in which they are
/// met, and `pt_index` with the index of each point among them.
void CREGION::FilterSmaePoint() {
    pt_index.SetSize(curve_pts.GetSize());
    if (curve_pts.IsEmpty()) {
        // A quirk: `unique_pts` keeps the points of the network before.
        return;
    }
    std::vector<tagPOINT> distinct;
    // Both ends of a curve usually meet another curve.
    korvel::KeyIndex seen(curve_pts.GetSize() - curve_counts.GetSize());
    for (int p = 0; p < curve_pts.GetSize(); ++p) {
        const int ahead = p + korvel::KeyIndex::prefetch_distance;
        if (ahead < curve_pts.GetSize()) {
            seen.prefetch(korvel::point_key(curve_pts[ahead]));
        }
        const int next = static_cast<int>(distinct.size());
        pt_index[p] = seen.find_or_add(korvel::point_key(curve_pts[p]), next);
        if (pt_index[p] == next) {
            distinct.push_back(curve_pts[p]);
        }
    }
    korvel::assign_list(unique_pts, distinct);
    unique_pts.FreeExtra();
}
