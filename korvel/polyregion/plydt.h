#pragma once

#include <cstdio>

#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"
#include "korvel/polyregion/ring.h"
#include "korvel/polyregion/vert2d.h"

/// Plane polygonal regions over one list of points, together with the triangles that cover them and
/// the points lifted into two parallel planes. `CREGION` fills points, rings and regions; the rest
/// is derived.
///
/// Indices are 0-based and belong to the array that is named.
class KORVEL_API PLYDT {
public:
    using RING = ::RING;

    /// Two points that follow one another on a ring, stored once however many rings run along them.
    struct KORVEL_API SIDE {
        int p0 = 0; ///< point indices, in the direction in which the side was first met
        int p1 = 0;
        CArray<int> list_a; ///< carried along by copies; the library never fills them
        CArray<int> list_b;
        int flags = 0; ///< bit 8: the triangulation has opened this side and not yet closed it
        double ux = 0; ///< unit direction from `p0` to `p1`; not finite for a side of length 0
        double uy = 0;
        double len = 0;

        SIDE() = default;
        SIDE(const SIDE& src) { *this = src; }
        SIDE(SIDE&&) noexcept = default;
        SIDE& operator=(SIDE&&) noexcept = default;
        ~SIDE() = default;
        SIDE& operator=(const SIDE& src);
    };

    /// A region: `rings[0]` is its outer ring, every further one a hole.
    struct KORVEL_API PyToRg {
        int tag0 = 0; ///< carried along by copies
        int tag1 = 0;
        double spare = 0; ///< without meaning; assignment leaves the target's value alone
        CArray<int> rings;

        PyToRg() = default;
        PyToRg(const PyToRg& src) { *this = src; }
        PyToRg(PyToRg&&) noexcept = default;
        PyToRg& operator=(PyToRg&&) noexcept = default;
        ~PyToRg() = default;
        PyToRg& operator=(const PyToRg& src);
    };

    /// A triangle: corners `va`, `vb`, `vc`, where `va` → `vb` is the edge that it was found for.
    struct TRG {
        double res0 = 0; ///< carried along by copies
        double res1 = 0;
        double radius = 0; ///< of the circumscribed circle; 0 for a region that is a lone triangle
        int va = 0;
        int vb = 0;
        int vc = 0;
    };

    /// A point lifted into space.
    struct PRISM_PT {
        double x = 0;
        double y = 0;
        double z = 0;
        int word = 0; ///< always 0
    };

    CArray<VERT2D> pt_list;
    CArray<SIDE> side_list;
    CArray<RING> ring_list;
    CArray<PyToRg> region_list;
    CArray<TRG> trg_list;
    CArray<PRISM_PT> prism_pts;

    /// Six empty lists.
    PLYDT() = default;
    PLYDT(const PLYDT& src);
    virtual ~PLYDT();

    /// Empties this set, then copies the source's records, with three exceptions that hosts count
    /// on: rings arrive with `sides` but without `pts`, sides without their two lists, and
    /// `prism_pts` stays what it was.
    PLYDT& operator=(const PLYDT& src);
    void Copy(const PLYDT& src);

    /// Empties all lists but `prism_pts`.
    void RemoveAll();

    /// Derives `side_list`, `RING::sides` and `VERT2D::side_refs` from the rings.
    ///
    /// `side_list` is added to, never emptied: each call first appends ring 0's first side once
    /// more. Without rings nothing happens. Linear in points, sides and ring entries.
    void creat_top_rel();

    /// Lifts every point into two planes: X = (x − ox) / sx + x0 and Y = (y − oy) / sy + y0 are
    /// laid into the plane across `axis` at `lo` (entry i of `prism_pts`) and at `hi` (entry N +
    /// i). Axis 1 gives (X, Y, level), 2 gives (X, level, Y), 3 gives (level, X, Y), any other
    /// zeros. Fewer than two points leave `prism_pts` empty; a zero `sx` or `sy` gives infinities.
    void CoordinatesTrans(int axis, int ox, int oy, double x0, double y0, double sx, double sy,
                          double lo, double hi);

    /// Paints the triangles from green (first) to red (last), points taken as device coordinates
    /// and outlined by the pen that is selected in `dc`.
    void Draw_Trgls(CDC* dc);

    /// Rebuilds the topology and `trg_list`: the triangles of every region, by an advancing front
    /// that closes each edge with the triangle of the smallest circumscribed circle. Only ring
    /// points are used. Simple regions in general position are covered exactly; where a point lies
    /// exactly on a diagonal, or in line with two others, triangles may overlap or leave a gap.
    ///
    /// With trace files on (the default) every test is made and written to "trg.dat" and
    /// "wwwtrg.dat" in the current directory, at a cost that grows with the cube of a region's
    /// points. With traces off the same triangles, in the same order, come from spatial indices.
    void region_tranglate();

    /// Appends the triangles of one region to `trg_list`. Sides must have been derived.
    void poly_tranglate(PyToRg& rg);

    /// Switches the trace files of every triangulation on (the start) or off; off, no file is made
    /// or truncated.
    static void set_trace_files(bool on);

    /// Whether since the last `set_trace_files` a trace file could not be opened, or was not
    /// written to its end. A later triangulation may have written it anew.
    static bool has_lost_trace();

private:
    void write_summary(FILE* summary);

    // The exhaustive form of one region's triangulation; a null trace is not written. Only with
    // trace files on does it make tests that can decide nothing.
    static bool makes_all_tests();
    void close_front_exhaustively(FILE* trace, PyToRg& rg);
    void gather_candidates(FILE* trace, PyToRg& rg, int a, int b, CArray<TRG>& candidates);
    void select_trangle(FILE* trace, PyToRg& rg, CArray<TRG>& candidates, CArray<SIDE>& bund,
                        CArray<SIDE>& front);
    int choose_by_all_tests(FILE* trace, PyToRg& rg, CArray<TRG>& candidates, CArray<SIDE>& bund,
                            CArray<SIDE>& front);
    int choose_by_radius(PyToRg& rg, CArray<TRG>& candidates, CArray<SIDE>& bund,
                         CArray<SIDE>& front);
    bool turns_away(const TRG& t);
    bool has_crossed_side(FILE* trace, const TRG& t, CArray<SIDE>& bund, CArray<SIDE>& front);
    void set_radius(TRG& t);
    bool crosses_bund_or_front(FILE* trace, SIDE& s, CArray<SIDE>& bund, CArray<SIDE>& front,
                               int test);
    void add_a_line(CArray<SIDE>& list, SIDE& s);
    bool line_cross_poly_bund(FILE* trace, CArray<SIDE>& list, SIDE& s);
    bool line_cross(FILE* trace, SIDE& e, SIDE& s);
    void line_2d_equation(double* a, double* b, double* out);
    bool coline(double* a, double* b, double* c);
    int vert_beside_s(double* a, double* b, double* p);
    bool contian_pt(PyToRg& rg, TRG& t);
    bool pt_intrangle(int k, TRG& t);
    double circum_radius(double* a, double* b, double* c);
    bool atsidelist(CArray<SIDE>& list, SIDE& s);
    bool attrglist(CArray<TRG>& list, TRG& t);
};
