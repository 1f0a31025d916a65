// A network of curves with any 32-bit coordinates and every call on its regions; then single steps
// of the analysis after changes to the region builder's public members.

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "tests/fuzz/curves.h"
#include "tests/fuzz/exercise.h"

namespace korvel::test {
namespace {

constexpr int most_crossings = 2000;

tagPOINT take_point(Bytes& bytes) {
    tagPOINT point{};
    point.x = bytes.integer();
    point.y = bytes.integer();
    return point;
}

bool names(const CArray<int>& indices, int size) {
    return std::all_of(indices.begin(), indices.end(),
                       [&](int index) { return index >= 0 && index < size; });
}

/// Whether regions name rings, and rings points.
bool is_sound(const CREGION& region) {
    return std::all_of(region.regions.begin(), region.regions.end(),
                       [&](const CREGION::PyToRg& one) {
                           return names(one.rings, region.ring_pts.GetSize());
                       }) &&
           std::all_of(region.ring_pts.begin(), region.ring_pts.end(),
                       [&](const CREGION::RToPt& ring) {
                           return names(ring.pts, region.unique_pts.GetSize());
                       });
}

void call_all(CREGION& region, Bytes& bytes) {
    PLYDT triangles;
    CCPloy2DRg polygons;
    region.GetAllRegion(triangles);
    region.GetAllRegion(polygons);
    exercise(polygons, bytes);
    exercise(triangles, bytes);
    region.SetSelectRegion(take_point(bytes));
    region.AddSelectRegion(take_point(bytes));
    region.GetSelectRegion(triangles);
    exercise(triangles, bytes);

    region.SetSeedPt(take_point(bytes));
    CArray<tagPOINT> no_points;
    CArray<int> pts;
    CArray<int> counts;
    region.GetRegion(no_points, pts, counts);
    region.GetRegionPts(pts, counts);
    if (!region.rings.IsEmpty()) {
        region.IsPtInRing(take_point(bytes), region.rings[0]);
    }
    region.GetNextCurve(bytes.index(region.curve_counts.GetSize() + 1), bytes.integer());
    CREGION copy(region);
    copy.Copy(region);
    copy.RemoveAll();
    copy.GetAllRegion(polygons);
    copy.GetRegionPts(pts, counts);
}

template <class Records, class Change>
void change_one(Records& records, Bytes& bytes, Change change) {
    if (!records.IsEmpty()) {
        change(records[bytes.choice(records.GetSize())]);
    }
}

void edit_graph(CREGION& region, Bytes& bytes) {
    const int nodes = region.node_pts.GetSize();
    const auto id = [&] {
        const int curve = bytes.index(region.curve_counts.GetSize() + 1);
        return bytes.chance(2) ? curve : ~curve;
    };
    switch (bytes.choice(4)) {
    case 0:
        change_one(region.curve_counts, bytes, [&](int& count) { count = bytes.integer(); });
        break;
    case 1:
        change_one(region.curve_to_node, bytes, [&](CREGION::CURVE_NODE& ends) {
            ends.start_node = bytes.index(nodes);
            ends.end_node = bytes.index(nodes);
            ends.oc_flag = bytes.choice(3);
            ends.ring_dir = bytes.integer();
        });
        break;
    case 2:
        change_one(region.node_to_curve, bytes, [&](CREGION::NODE_CURVE& node) {
            node.curve_num = bytes.integer();
            node.curve_ids.Add(bytes.chance(8) ? bytes.integer() : id());
        });
        break;
    default:
        change_one(region.rings, bytes, [&](CREGION::tagRToC& ring) {
            ring.curve_ids.Add(bytes.chance(8) ? bytes.integer() : id());
        });
        break;
    }
}

void edit_rings(CREGION& region, Bytes& bytes) {
    const int points = region.unique_pts.GetSize();
    const int rings = region.ring_pts.GetSize();
    switch (bytes.choice(4)) {
    case 0:
        change_one(region.pt_index, bytes, [&](int& index) { index = bytes.index(points); });
        break;
    case 1:
        change_one(region.ring_pts, bytes, [&](auto& ring) { edit(ring.pts, points, bytes); });
        break;
    case 2:
        change_one(region.ring_pts, bytes, [&](auto& ring) { ring.pts.SetSize(bytes.choice(4)); });
        break;
    default:
        change_one(region.regions, bytes, [&](auto& one) { edit(one.rings, rings, bytes); });
        break;
    }
}

void resize_lists(CREGION& region, Bytes& bytes) {
    const auto resize = [&](auto& list) { list.SetSize(bytes.choice(list.GetSize() + 2)); };
    switch (bytes.choice(4)) {
    case 0:
        resize(region.unique_pts);
        break;
    case 1:
        resize(region.curve_pts);
        break;
    case 2:
        resize(region.node_pts);
        resize(region.curve_to_node);
        resize(region.node_to_curve);
        break;
    default:
        resize(region.ring_pts);
        resize(region.regions);
        region.is_calculated = bytes.choice(2);
        break;
    }
}

void edit(CREGION& region, Bytes& bytes) {
    constexpr void (*kinds[])(CREGION&, Bytes&) = {edit_graph, edit_rings, resize_lists};
    kinds[bytes.choice(3)](region, bytes);
}

void take_step(CREGION& region, Bytes& bytes) {
    using Step = void (CREGION::*)();
    constexpr Step steps[] = {
        &CREGION::SplitPureCurve,  &CREGION::CalcNodePts,     &CREGION::CalcCurveToNode,
        &CREGION::CalcNodeToCurve, &CREGION::MarkCurveOCFlag, &CREGION::CalcRingToCurve,
        &CREGION::CalcRingArea,    &CREGION::SearchAllRegion, &CREGION::CalcInExRing};
    (region.*steps[bytes.choice(static_cast<int>(std::size(steps)))])();
}

} // namespace
} // namespace korvel::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace korvel::test;
    CREGION::set_crossing_limit(most_crossings);
    Bytes bytes(data, size);
    CArray<tagPOINT> pts;
    CArray<int> counts;
    load_curves(pts, counts, bytes);
    CREGION region;
    region.SetTolerance(bytes.chance(4) ? bytes.real() : 1.0);
    region.SetPtsInfo(pts, counts);
    if (!is_sound(region)) {
        std::abort();
    }
    call_all(region, bytes);
    for (int step = 0; step < 16 && !bytes.is_empty(); ++step) {
        edit(region, bytes);
        take_step(region, bytes);
        if (bytes.chance(4)) {
            call_all(region, bytes);
        }
    }
    return 0;
}
