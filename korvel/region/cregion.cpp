#include "korvel/region/cregion.h"

// The life of the object and the order of the analysis; each step has a file of its own.

void CREGION::SetPtsInfo(CArray<tagPOINT>& pts, CArray<int>& counts) {
    input_pts = &pts;
    input_counts = &counts;
    rings.RemoveAll();
    is_calculated = 0;

    find_rings();

    FilterSmaePoint();
    GetAllRingInex();
    GetAllSideInex();
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
    SplitPureCurve();
    CalcNodePts();
    CalcCurveToNode();
    CalcNodeToCurve();
    MarkCurveOCFlag();
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
    if (this == &src) {
        return *this;
    }
    RemoveAll();
    input_pts = src.input_pts;
    input_counts = src.input_counts;
    seed_pt = src.seed_pt;
    tolerance = src.tolerance;
    is_calculated = src.is_calculated;
    curve_pts.Copy(src.curve_pts);
    curve_counts.Copy(src.curve_counts);
    node_pts.Copy(src.node_pts);
    curve_to_node.Copy(src.curve_to_node);
    node_to_curve.Copy(src.node_to_curve);
    rings.Copy(src.rings);
    ex_rings.Copy(src.ex_rings);
    in_rings.Copy(src.in_rings);
    unique_pts.Copy(src.unique_pts);
    pt_index.Copy(src.pt_index);
    ring_pts.Copy(src.ring_pts);
    sides.Copy(src.sides);
    pt_links.Copy(src.pt_links);
    regions.Copy(src.regions);
    is_over_crossing_limit_ = src.is_over_crossing_limit_;
    return *this;
}

void CREGION::Copy(const CREGION& src) {
    *this = src;
}

void CREGION::RemoveAll() {
    is_calculated = 0;
    is_over_crossing_limit_ = false;
    curve_pts.RemoveAll();
    curve_counts.RemoveAll();
    node_pts.RemoveAll();
    curve_to_node.RemoveAll();
    node_to_curve.RemoveAll();
    rings.RemoveAll();
    ex_rings.RemoveAll();
    in_rings.RemoveAll();
    unique_pts.RemoveAll();
    pt_index.RemoveAll();
    ring_pts.RemoveAll();
    sides.RemoveAll();
    pt_links.RemoveAll();
    regions.RemoveAll();
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
        curve_num = src.curve_num;
        curve_ids.Copy(src.curve_ids);
    }
    return *this;
}

CREGION::tagRToC& CREGION::tagRToC::operator=(const tagRToC& src) {
    if (this != &src) {
        ring_area = src.ring_area;
        curve_ids.Copy(src.curve_ids);
    }
    return *this;
}

CREGION::RToPt& CREGION::RToPt::operator=(const RToPt& src) {
    if (this != &src) {
        ring_area = src.ring_area;
        is_hole = src.is_hole;
        is_removed = src.is_removed;
        pts.Copy(src.pts);
    }
    return *this;
}

CREGION::PT_LINK& CREGION::PT_LINK::operator=(const PT_LINK& src) {
    if (this != &src) {
        rings.Copy(src.rings);
        sides.Copy(src.sides);
    }
    return *this;
}

CREGION::PyToRg& CREGION::PyToRg::operator=(const PyToRg& src) {
    if (this != &src) {
        tag0 = src.tag0;
        tag1 = src.tag1;
        is_select = src.is_select;
        rings.Copy(src.rings);
    }
    return *this;
}
