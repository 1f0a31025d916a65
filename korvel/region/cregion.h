#pragma once

#include <limits>

#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"

class CCPloy2DRg;
class PLYDT;

/// Turns a network of hand-digitised curves into closed regions with holes.
///
/// A network is two arrays that the caller owns: the points of all curves one after another, and
/// the number of points of each curve. `SetPtsInfo` cleans it, splits the curves where they meet,
/// snaps their ends into nodes, prunes what dangles, traces the rings and nests them into regions.
/// The result is read with `GetAllRegion` or, after clicks, with `GetSelectRegion`.
///
/// Coordinates are integers and points are the same only when they are equal; `tolerance` serves
/// the snapping of curve ends alone. Results come in a fixed order that follows the order of the
/// curves. Nothing reports an error: an empty or inconsistent network gives empty results.
class KORVEL_API CREGION {
public:
    /// The nodes of one split curve, and the state of its pruning and tracing.
    struct CURVE_NODE {
        int start_node = 0; ///< node at the curve's first point, or −1
        int end_node = 0;   ///< node at the curve's last point, or −1
        int oc_flag = 0;    ///< 1 while the curve may lie on a closed loop, 0 once pruned
        int ring_dir = 0;   ///< ring tracing: 0 not walked, ±1 walked once that way, 2 finished
        int ring_turn = 0;  ///< ring tracing: turn rule of the walk that set `ring_dir` to ±1
    };

    /// The curve ends that meet at one node. A curve id is 1-based and signed: `+(i + 1)` leaves
    /// the node at the first point of curve i, `-(i + 1)` leaves it at the last point.
    struct KORVEL_API NODE_CURVE {
        int curve_num = 0; ///< live curve ends at the node
        CArray<int> curve_ids;

        NODE_CURVE() = default;
        NODE_CURVE(const NODE_CURVE& src) { *this = src; }
        NODE_CURVE(NODE_CURVE&&) noexcept = default;
        NODE_CURVE& operator=(NODE_CURVE&&) noexcept = default;
        ~NODE_CURVE() = default;
        NODE_CURVE& operator=(const NODE_CURVE& src);
    };

    /// A ring as signed curve ids in walking order; a negative id is walked from last point to
    /// first.
    struct KORVEL_API tagRToC {
        double ring_area = 0; ///< enclosed area in square point units, never negative
        CArray<int> curve_ids;

        tagRToC() = default;
        tagRToC(const tagRToC& src) { *this = src; }
        tagRToC(tagRToC&&) noexcept = default;
        tagRToC& operator=(tagRToC&&) noexcept = default;
        ~tagRToC() = default;
        tagRToC& operator=(const tagRToC& src);
    };

    /// A ring as point indices; the last point is joined to the first.
    struct KORVEL_API RToPt {
        double ring_area = 0;
        int is_hole = 0;    ///< 1 once the ring has been claimed; see the operations that use it
        int is_removed = 0; ///< 1 when the ring is to be dropped
        CArray<int> pts;    ///< indices into `unique_pts`

        RToPt() = default;
        RToPt(const RToPt& src) { *this = src; }
        RToPt(RToPt&&) noexcept = default;
        RToPt& operator=(RToPt&&) noexcept = default;
        ~RToPt() = default;
        RToPt& operator=(const RToPt& src);
    };

    /// A ring side, stored once whatever its direction; ends are indices into `unique_pts`.
    struct RING_SIDE {
        int p0 = 0;
        int p1 = 0;
    };

    /// What passes through one distinct point.
    struct KORVEL_API PT_LINK {
        CArray<int> rings; ///< indices into `ring_pts`, ascending, each once
        CArray<int> sides; ///< indices into `sides`, ascending

        PT_LINK() = default;
        PT_LINK(const PT_LINK& src) { *this = src; }
        PT_LINK(PT_LINK&&) noexcept = default;
        PT_LINK& operator=(PT_LINK&&) noexcept = default;
        ~PT_LINK() = default;
        PT_LINK& operator=(const PT_LINK& src);
    };

    /// A region: `rings[0]` is its outer ring, every further one a hole.
    struct KORVEL_API PyToRg {
        int tag0 = 0; ///< free for the host; an analysis keeps both tags of a region by its index
        int tag1 = 0;
        int is_select = 0; ///< 1 while the region is selected
        CArray<int> rings; ///< indices into `ring_pts`

        PyToRg() = default;
        PyToRg(const PyToRg& src) { *this = src; }
        PyToRg(PyToRg&&) noexcept = default;
        PyToRg& operator=(PyToRg&&) noexcept = default;
        ~PyToRg() = default;
        PyToRg& operator=(const PyToRg& src);
    };

    CArray<tagPOINT>* input_pts = nullptr; ///< the caller's network, not owned, cleaned in place
    CArray<int>* input_counts = nullptr;
    tagPOINT seed_pt = {};  ///< the point whose enclosing rings `GetRegion` looks for
    double tolerance = 1.0; ///< curve ends closer than half of it share a node; 0 acts like 6
    int is_calculated = 0;  ///< 1 once graph and rings are computed

    CArray<tagPOINT> curve_pts; ///< the split curves, in the same form as the input
    CArray<int> curve_counts;
    CArray<tagPOINT> node_pts;
    CArray<CURVE_NODE> curve_to_node; ///< one record per split curve
    CArray<NODE_CURVE> node_to_curve; ///< one record per node
    CArray<tagRToC> rings;
    CArray<tagRToC> ex_rings;    ///< rings directly inside the seed point's ring
    CArray<tagRToC> in_rings;    ///< the ring around the seed point
    CArray<tagPOINT> unique_pts; ///< the distinct points of the split curves
    CArray<int> pt_index;        ///< for each entry of `curve_pts` its index in `unique_pts`
    CArray<RToPt> ring_pts;
    CArray<RING_SIDE> sides;
    CArray<PT_LINK> pt_links; ///< one record per distinct point
    CArray<PyToRg> regions;

    CREGION();
    /// Remembers the network; nothing is computed until `SetPtsInfo` or `GetRegion` runs.
    CREGION(CArray<tagPOINT>& pts, CArray<int>& counts, tagPOINT seed, double tolerance);
    CREGION(const CREGION& src);
    virtual ~CREGION();

    /// Empties this object, then copies everything, the pointers to the caller's network included.
    CREGION& operator=(const CREGION& src);
    void Copy(const CREGION& src);

    /// Empties every owned array and forgets that anything was computed. The network, the seed
    /// point and the tolerance stay.
    void RemoveAll();

    /// Runs the whole analysis on a network, whose arrays come back cleaned: repeated points,
    /// one-point curves and duplicate curves are gone. Close to linear in points plus crossings.
    void SetPtsInfo(CArray<tagPOINT>& pts, CArray<int>& counts);

    /// The crossing limit at the start, with which no network is refused.
    static constexpr int no_crossing_limit = std::numeric_limits<int>::max();

    /// Sets, for all objects, how many crossings a network may have; one with more gives empty
    /// results. A thread with a `korvel::CrossingLimitOverride` has its own limit. A crossing
    /// counts once on each of its two segments; at 0 or less any crossing is too many. Returns the
    /// limit before. Regions of 10,000,000 crossings take about 3 GB.
    static int set_crossing_limit(int crossings);

    /// Whether the last analysis was given up because the network had more crossings than the limit
    /// allowed, or than an `int` can count. False on an object that is new or was emptied.
    bool has_exceeded_crossing_limit() const;

    /// These set and get the value only; nothing is computed again.
    void SetTolerance(double t);
    void GetTolerance(double& t);
    void SetSeedPt(tagPOINT pt);
    void GetSeedPt(tagPOINT& pt);

    /// Finds the rings around the seed point and those directly inside it (`in_rings`, `ex_rings`),
    /// computing graph and rings first if that has not been done. Returns 0 and never touches its
    /// arguments; `GetRegionPts` returns the points of what was found.
    int GetRegion(CArray<tagPOINT>& pts, CArray<int>& counts, CArray<int>& holes);

    /// Fills the points (indices into `unique_pts`) of the ring around the seed point and then of
    /// each ring directly inside it, one after another, and the point count of each. Returns the
    /// number of rings, 0 when no ring surrounds the seed point.
    int GetRegionPts(CArray<int>& pts, CArray<int>& counts);

    /// Writes points, rings and regions, all rings turned the same way, and leaves every region
    /// selected. Each ring has a region of its own, holes included. The target keeps its contents
    /// when nothing has been computed or no region was found.
    void GetAllRegion(PLYDT& out);
    void GetAllRegion(CCPloy2DRg& out);

    /// Writes the selected regions with the rings and points that they use, renumbered densely.
    /// With rings but no selection the target ends empty; without rings it keeps its contents.
    void GetSelectRegion(PLYDT& out);

    /// Selects the first region whose outer ring encloses the point, whether or not it lies in a
    /// hole.
    void AddSelectRegion(tagPOINT pt);
    /// Deselects every region, then selects as `AddSelectRegion` does.
    void SetSelectRegion(tagPOINT pt);

    /// Fills each selected region, from green (first) to red (last), holes left open.
    void Draw_Regon(CDC* dc);
    /// Fills one region with RGB(c, 255 − c, 127), c being the low byte of the colour index,
    /// outlined by the pen that is selected in `dc`.
    void Draw_Poly(int colour_index, PyToRg& region, CDC* dc);

    // The steps of the analysis, in the order in which `SetPtsInfo` runs them. Each rebuilds its
    // own arrays from those of the steps before.

    /// Cleans the caller's network in place and splits every curve at every point where one of its
    /// segments meets another, of its own curve too; split points are truncated toward zero.
    void SplitPureCurve();
    /// Where the lines p1-p2 and p3-p4 cross, as ratios of their segments (0 at p1 and p3, 1 at p2
    /// and p4). Returns 1, or 0 with the ratios untouched for parallel lines.
    int CalcSegmentIntersectRatio(tagPOINT p1, tagPOINT p2, double& r1, tagPOINT p3, tagPOINT p4,
                                  double& r2);
    /// Moves each curve end onto the first node within |tolerance / 2|, or makes it a new node.
    void CalcNodePts();
    void CalcCurveToNode();
    void CalcNodeToCurve();
    /// Sets `oc_flag` to 0 for every curve with a loose end, and for what becomes loose without it.
    void MarkCurveOCFlag();
    /// Traces the rings on both sides of every live curve; a ring found twice is kept once.
    void CalcRingToCurve();
    /// Returns the id by which a walk that arrives over `curve_id` goes on: the sharpest turn to
    /// the right (y axis up) for turn −1, to the left for turn 1. 0 when the walk cannot go on.
    int GetNextCurve(int curve_id, int turn);
    void CalcRingArea();
    /// Gives each ring of `ring_pts` a region, and each region the earlier rings that lie directly
    /// inside its outer ring as holes. All regions are deselected; those whose index remains keep
    /// `tag0` and `tag1`.
    void SearchAllRegion();

    /// Sorts `rings` into those around the seed point and those directly inside the smallest of
    /// them.
    void CalcInExRing();
    /// 1 when the ring winds around the point by more than one radian, else 0.
    int IsPtInRing(tagPOINT pt, const tagRToC& ring);

private:
    void find_rings();
    void orient_and_select_all();

    void FilterNonLenSegment(CArray<tagPOINT>* pts, CArray<int>* counts);
    void FilterRedundantCurve(CArray<tagPOINT>* pts, CArray<int>* counts);
    int IsCurveSame(CArray<tagPOINT>* pts, CArray<int>* counts, int a, int b);
    void FilterSmaePoint();

    void GetAllRingInex();
    void GetAllSideInex();
    void GetRStoPt();
    int PtInRing(tagPOINT pt, const RToPt& ring, CArray<tagPOINT>& pts);
    int PointAtRing(int pt_index, RToPt& ring);
    int IsComPointRing(RToPt& a, RToPt& b);

    void ClockwiseRing(RToPt& ring, CArray<tagPOINT>& pts);

    bool is_over_crossing_limit_ = false;
};
