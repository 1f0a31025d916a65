// A network of curves of any 32-bit integers, then everything that can be asked of its regions; and
// the steps of the analysis one by one on what a host has written into the region builder.

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "tests/fuzz/exercise.h"

namespace korvel::test {
namespace {

constexpr int most_crossings = 2000;

/// Coordinates on a small lattice, where curves meet, or anywhere.
void take_network(CArray<tagPOINT>& pts, CArray<int>& counts, Bytes& bytes) {
    const int scale = bytes.chance(4) ? 1 << bytes.choice(25) : 1;
    const int points = bytes.choice(128);
    for (int i = 0; i < points && !bytes.is_empty(); ++i) {
        tagPOINT point{};
        const bool is_anywhere = bytes.chance(32);
        point.x = is_anywhere ? bytes.word() : bytes.choice(16) * scale;
        point.y = is_anywhere ? bytes.word() : bytes.choice(16) * scale;
        pts.Add(point);
    }
    int left = points;
    while (left > 0 && counts.GetSize() < 32) {
        const int count = bytes.chance(32) ? bytes.integer() : bytes.choice(12);
        counts.Add(count);
        left -= count > 0 && count <= left ? count : 1;
    }
}

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

void ask(CREGION& region, Bytes& bytes) {
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

void edit(CREGION& region, Bytes& bytes) {
    const int curves = region.curve_counts.GetSize();
    const int points = region.unique_pts.GetSize();
    const int rings = region.ring_pts.GetSize();
    const auto any = [&](auto& records, auto change) {
        if (!records.IsEmpty()) {
            change(records[bytes.choice(records.GetSize())]);
        }
    };
    const auto id = [&] {
        const int curve = bytes.index(curves + 1);
        return bytes.chance(2) ? curve : ~curve;
    };
    switch (bytes.choice(12)) {
    case 0:
        any(region.curve_counts, [&](int& count) { count = bytes.integer(); });
        break;
    case 1:
        any(region.curve_to_node, [&](CREGION::CURVE_NODE& ends) {
            ends.start_node = bytes.index(region.node_pts.GetSize());
            ends.end_node = bytes.index(region.node_pts.GetSize());
            ends.oc_flag = bytes.choice(3);
            ends.ring_dir = bytes.integer();
        });
        break;
    case 2:
        any(region.node_to_curve, [&](CREGION::NODE_CURVE& node) {
            node.curve_num = bytes.integer();
            node.curve_ids.Add(bytes.chance(8) ? bytes.integer() : id());
        });
        break;
    case 3:
        any(region.rings,
            [&](auto& ring) { ring.curve_ids.Add(bytes.chance(8) ? bytes.integer() : id()); });
        break;
    case 4:
        any(region.pt_index, [&](int& index) { index = bytes.index(points); });
        break;
    case 5:
        any(region.ring_pts, [&](auto& ring) { edit(ring.pts, points, bytes); });
        break;
    case 6:
        any(region.ring_pts, [&](auto& ring) { ring.pts.SetSize(bytes.choice(4)); });
        break;
    case 7:
        any(region.regions, [&](auto& one) { edit(one.rings, rings, bytes); });
        break;
    case 8:
        region.unique_pts.SetSize(bytes.choice(points + 2));
        break;
    case 9:
        region.curve_pts.SetSize(bytes.choice(region.curve_pts.GetSize() + 2));
        break;
    case 10:
        region.node_pts.SetSize(bytes.choice(region.node_pts.GetSize() + 2));
        region.curve_to_node.SetSize(bytes.choice(curves + 2));
        region.node_to_curve.SetSize(bytes.choice(region.node_to_curve.GetSize() + 2));
        break;
    default:
        region.ring_pts.SetSize(bytes.choice(rings + 2));
        region.regions.SetSize(bytes.choice(region.regions.GetSize() + 2));
        region.is_calculated = bytes.choice(2);
        break;
    }
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
    take_network(pts, counts, bytes);
    CREGION region;
    region.SetTolerance(bytes.chance(4) ? bytes.real() : 1.0);
    region.SetPtsInfo(pts, counts);
    if (!is_sound(region)) {
        std::abort();
    }
    ask(region, bytes);
    for (int step = 0; step < 16 && !bytes.is_empty(); ++step) {
        edit(region, bytes);
        take_step(region, bytes);
        if (bytes.chance(4)) {
            ask(region, bytes);
        }
    }
    return 0;
}
