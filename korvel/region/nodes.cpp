// Nodes where curve ends meet, the graph of curves and nodes, and the pruning of what dangles.

#include <cmath>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/base/packed_lists.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"
#include "korvel/region/node_finder.h"

using korvel::CurveSpans;

void CREGION::CalcNodePts() {
    FilterNonLenSegment(&curve_pts, &curve_counts);
    FilterRedundantCurve(&curve_pts, &curve_counts);

    constexpr double radius_for_no_tolerance = 3.0;
    double radius = std::fabs(tolerance * 0.5);
    if (radius == 0) {
        radius = radius_for_no_tolerance;
    }

    const CurveSpans curves(curve_pts, curve_counts);
    korvel::NodeFinder finder(radius, curves.size());
    bool has_moved = false;
    for (int curve = 0; curve < curves.size(); ++curve) {
        const int ahead = curve + korvel::KeyIndex::prefetch_distance / 2;
        if (ahead < curves.size() && !curves.is_empty(ahead)) {
            finder.prefetch(curves.point(ahead, 0));
            finder.prefetch(curves.point(ahead, 0, true));
        }
        if (!curves.is_empty(curve)) {
            has_moved |= finder.snap(curve_pts[curves.start(curve)]);
            has_moved |= finder.snap(curve_pts[curves.end(curve) - 1]);
        }
    }
    node_pts.SetSize(0, 50);
    korvel::assign_list(node_pts, finder.nodes());
    node_pts.FreeExtra();

    // Snapping can leave repeated points, one-point curves and duplicates.
    if (has_moved) {
        FilterNonLenSegment(&curve_pts, &curve_counts);
        FilterRedundantCurve(&curve_pts, &curve_counts);
    }
}

void CREGION::CalcCurveToNode() {
    korvel::KeyIndex node_at(node_pts.GetSize());
    for (int node = 0; node < node_pts.GetSize(); ++node) {
        const int ahead = node + korvel::KeyIndex::prefetch_distance;
        if (ahead < node_pts.GetSize()) {
            node_at.prefetch(korvel::point_key(node_pts[ahead]));
        }
        node_at.find_or_add(korvel::point_key(node_pts[node]), node);
    }
    const CurveSpans curves(curve_pts, curve_counts);
    curve_to_node.SetSize(0, 50);
    curve_to_node.SetSize(curves.size());
    for (int curve = 0; curve < curves.size(); ++curve) {
        const int ahead = curve + korvel::KeyIndex::prefetch_distance / 2;
        if (ahead < curves.size() && !curves.is_empty(ahead)) {
            node_at.prefetch(korvel::point_key(curves.point(ahead, 0)));
            node_at.prefetch(korvel::point_key(curves.point(ahead, 0, true)));
        }
        CURVE_NODE record{-1, -1, 1, 0, 0};
        if (!curves.is_empty(curve)) {
            record.start_node = node_at.find(korvel::point_key(curves.point(curve, 0)));
            record.end_node = node_at.find(korvel::point_key(curves.point(curve, 0, true)));
        }
        curve_to_node[curve] = record;
    }
    curve_to_node.FreeExtra();
}

void CREGION::CalcNodeToCurve() {
    node_to_curve.SetSize(0, 50);
    node_to_curve.SetSize(node_pts.GetSize());
    node_to_curve.FreeExtra();
    const auto each_end = [&](auto add) {
        for (int curve = 0; curve < curve_to_node.GetSize(); ++curve) {
            const CURVE_NODE& ends = curve_to_node[curve];
            if (korvel::has_element(node_to_curve, ends.start_node)) {
                add(ends.start_node, curve + 1);
            }
            if (korvel::has_element(node_to_curve, ends.end_node)) {
                add(ends.end_node, -(curve + 1));
            }
        }
    };
    korvel::distribute(node_to_curve.GetSize(), each_end,
                       [&](int node) -> CArray<int>& { return node_to_curve[node].curve_ids; });
    for (NODE_CURVE& node : node_to_curve) {
        node.curve_num = node.curve_ids.GetSize();
    }
}

void CREGION::MarkCurveOCFlag() {
    // Whatever the order in which loose ends are peeled, the same curves remain; a list of the
    // nodes with one live end left does it without walking all nodes again and again.
    std::vector<int> loose_nodes;
    for (int node = 0; node < node_to_curve.GetSize(); ++node) {
        if (node_to_curve[node].curve_num == 1) {
            loose_nodes.push_back(node);
        }
    }
    const auto take_end_off = [&](int node) {
        // A count that a host has lowered is not counted down further.
        if (korvel::has_element(node_to_curve, node) && node_to_curve[node].curve_num > 0 &&
            --node_to_curve[node].curve_num == 1) {
            loose_nodes.push_back(node);
        }
    };
    while (!loose_nodes.empty()) {
        const NODE_CURVE& node = node_to_curve[loose_nodes.back()];
        loose_nodes.pop_back();
        if (node.curve_num != 1) {
            continue;
        }
        for (const int id : node.curve_ids) {
            const int curve = korvel::curve_of(id);
            if (korvel::has_element(curve_to_node, curve) && curve_to_node[curve].oc_flag == 1) {
                curve_to_node[curve].oc_flag = 0;
                take_end_off(curve_to_node[curve].start_node);
                take_end_off(curve_to_node[curve].end_node);
                break;
            }
        }
    }
}
