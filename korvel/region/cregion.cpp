#include "korvel/region/cregion.h"

#include "korvel/base/members.h"
#include "korvel/platform/check_point.h"

// The life of the object and the order of the analysis; each step has a file of its own.

void CREGION::SetPtsInfo(CArray<tagPOINT>& pts, CArray<int>& counts) {
    input_pts = &pts;
    input_counts = &counts;
    rings.RemoveAll();
    is_calculated = 0;

    find_rings();

    constexpr int steps = 3;
    FilterSmaePoint();
    korvel::check_point("indexing rings", 1, steps);
    GetAllRingInex();
    korvel::check_point("indexing rings", 2, steps);
    GetAllSideInex();
    korvel::check_point("indexing rings", 3, steps);
    GetRStoPt();
    SearchAllRegion();
}

int CREGION::GetRegion(CArray<tagPOINT>& /*pts*/, CArray<int>& /*counts*/, CArray<int>& /*holes*/) {
    if (is_calculated == 0) {
        find_rings();
    }
    CalcInExRing();
    return 0;
}

void CREGION::find_rings() {
    constexpr int steps = 4;
    SplitPureCurve();
    CalcNodePts();
    korvel::check_point("finding nodes", 1, steps);
    CalcCurveToNode();
    korvel::check_point("finding nodes", 2, steps);
    CalcNodeToCurve();
    korvel::check_point("finding nodes", 3, steps);
    MarkCurveOCFlag();
    korvel::check_point("finding nodes", 4, steps);
    CalcRingToCurve();
    CalcRingArea();
    is_calculated = 1;
}

CREGION::CREGION() = default;

CREGION::CREGION(CArray<tagPOINT>& pts, CArray<int>& counts, tagPOINT seed, double tolerance)
    : input_pts(&pts), input_counts(&counts), seed_pt(seed), tolerance(tolerance) {}

CREGION::CREGION(const CREGION& src) {
    *this = src;
}

CREGION::~CREGION() {
    RemoveAll();
}

CREGION& CREGION::operator=(const CREGION& src) {
    if (this == &src) { // emptying it first would lose everything
        return *this;
    }
    RemoveAll();
    korvel::copy_members(*this, src, &CREGION::input_pts, &CREGION::input_counts, &CREGION::seed_pt,
                         &CREGION::tolerance, &CREGION::is_calculated, &CREGION::curve_pts,
                         &CREGION::curve_counts, &CREGION::node_pts, &CREGION::curve_to_node,
                         &CREGION::node_to_curve, &CREGION::rings, &CREGION::ex_rings,
                         &CREGION::in_rings, &CREGION::unique_pts, &CREGION::pt_index,
                         &CREGION::ring_pts, &CREGION::sides, &CREGION::pt_links, &CREGION::regions,
                         &CREGION::is_over_crossing_limit_);
    return *this;
}

void CREGION::Copy(const CREGION& src) {
    *this = src;
}

void CREGION::RemoveAll() {
    is_calculated = 0;
    is_over_crossing_limit_ = false;
    korvel::remove_lists(*this, &CREGION::curve_pts, &CREGION::curve_counts, &CREGION::node_pts,
                         &CREGION::curve_to_node, &CREGION::node_to_curve, &CREGION::rings,
                         &CREGION::ex_rings, &CREGION::in_rings, &CREGION::unique_pts,
                         &CREGION::pt_index, &CREGION::ring_pts, &CREGION::sides,
                         &CREGION::pt_links, &CREGION::regions);
}

void CREGION::SetTolerance(double t) {
    tolerance = t;
}

void CREGION::GetTolerance(double& t) {
    t = tolerance;
}

void CREGION::SetSeedPt(tagPOINT pt) {
    seed_pt = pt;
}

void CREGION::GetSeedPt(tagPOINT& pt) {
    pt = seed_pt;
}

CREGION::NODE_CURVE& CREGION::NODE_CURVE::operator=(const NODE_CURVE& src) {
    if (this != &src) {
        korvel::copy_members(*this, src, &NODE_CURVE::curve_num, &NODE_CURVE::curve_ids);
    }
    return *this;
}

CREGION::tagRToC& CREGION::tagRToC::operator=(const tagRToC& src) {
    if (this != &src) {
        korvel::copy_members(*this, src, &tagRToC::ring_area, &tagRToC::curve_ids);
    }
    return *this;
}

CREGION::RToPt& CREGION::RToPt::operator=(const RToPt& src) {
    if (this != &src) {
        korvel::copy_members(*this, src, &RToPt::ring_area, &RToPt::is_hole, &RToPt::is_removed,
                             &RToPt::pts);
    }
    return *this;
}

CREGION::PT_LINK& CREGION::PT_LINK::operator=(const PT_LINK& src) {
    if (this != &src) {
        korvel::copy_members(*this, src, &PT_LINK::rings, &PT_LINK::sides);
    }
    return *this;
}

CREGION::PyToRg& CREGION::PyToRg::operator=(const PyToRg& src) {
    if (this != &src) {
        korvel::copy_members(*this, src, &PyToRg::tag0, &PyToRg::tag1, &PyToRg::is_select,
                             &PyToRg::rings);
    }
    return *this;
}
