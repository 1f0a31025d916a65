// Curve networks and the results of the library in the form of the plain analysis.

#include "tests/region/plain_region.h"

#include <cstdio>

namespace korvel::test {
namespace {

Pts points_in(const CArray<tagPOINT>& list) {
    Pts pts;
    for (const tagPOINT& pt : list) {
        pts.push_back({pt.x, pt.y});
    }
    return pts;
}

template <class Record, class Value>
std::vector<Value> field(const CArray<Record>& records, Value Record::*member) {
    std::vector<Value> values;
    for (const Record& record : records) {
        values.push_back(record.*member);
    }
    return values;
}
template <class Record>
Lists field(const CArray<Record>& records, CArray<int> Record::*member) {
    Lists lists;
    for (const Record& record : records) {
        lists.emplace_back((record.*member).begin(), (record.*member).end());
    }
    return lists;
}

} // namespace

Analysis analysis_of(const CREGION& r) {
    Analysis a;
    a.cleaned = curves_in(*r.input_pts, *r.input_counts);
    a.split = curves_in(r.curve_pts, r.curve_counts);
    a.nodes = points_in(r.node_pts);
    for (const CREGION::CURVE_NODE& c : r.curve_to_node) {
        a.curve_to_node.push_back({c.start_node, c.end_node, c.oc_flag, c.ring_dir, c.ring_turn});
    }
    a.curve_num = field(r.node_to_curve, &CREGION::NODE_CURVE::curve_num);
    a.curve_ids = field(r.node_to_curve, &CREGION::NODE_CURVE::curve_ids);
    a.rings = field(r.rings, &CREGION::tagRToC::curve_ids);
    a.areas = field(r.rings, &CREGION::tagRToC::ring_area);
    a.in_rings = field(r.in_rings, &CREGION::tagRToC::curve_ids);
    a.ex_rings = field(r.ex_rings, &CREGION::tagRToC::curve_ids);
    a.unique_pts = points_in(r.unique_pts);
    a.pt_index.assign(r.pt_index.begin(), r.pt_index.end());
    a.ring_pts = field(r.ring_pts, &CREGION::RToPt::pts);
    a.kept_areas = field(r.ring_pts, &CREGION::RToPt::ring_area);
    a.is_hole = field(r.ring_pts, &CREGION::RToPt::is_hole);
    for (const CREGION::RING_SIDE& side : r.sides) {
        a.sides.emplace_back(side.p0, side.p1);
    }
    a.rings_at = field(r.pt_links, &CREGION::PT_LINK::rings);
    a.sides_at = field(r.pt_links, &CREGION::PT_LINK::sides);
    a.regions = field(r.regions, &CREGION::PyToRg::rings);
    return a;
}

Curves curves_from(const char* text) {
    Curves curves(*text == 0 ? 0 : 1);
    for (; *text != 0; text += *text == ' ' ? 1 : 0) {
        int used = 0;
        Pt pt{};
        if (*text == ';') {
            curves.emplace_back();
            ++text;
        } else if (std::sscanf(text, "%d,%d%n", &pt.x, &pt.y, &used) == 2) {
            curves.back().push_back(pt);
            text += used;
        }
    }
    return curves;
}

Network::Network(const Curves& curves) {
    for (const Pts& curve : curves) {
        for (const Pt pt : curve) {
            this->pts.Add({pt.x, pt.y});
        }
        counts.Add(static_cast<int>(curve.size()));
    }
}

Curves curves_in(const CArray<tagPOINT>& pts, const CArray<int>& counts) {
    const Pts all = points_in(pts);
    Curves curves;
    auto start = all.begin();
    for (const int count : counts) {
        curves.emplace_back(start, start + count);
        start += count;
    }
    return curves;
}

} // namespace korvel::test
