#pragma once

#include <cstdio>

#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"
#include "korvel/polyregion/line2d.h"
#include "korvel/polyregion/ring.h"
#include "korvel/polyregion/vert2d.h"

/// A set of plane polygonal regions over one list of points: drawn, stored in a text file, and
/// asked which region contains a point. `CREGION::GetAllRegion` or `readpolyrg` fills it; sides are
/// derived.
///
/// Indices are 0-based and belong to the array that is named. Index lists that point outside their
/// array are kept as they are; whatever would need the missing record is left out.
class KORVEL_API CCPloy2DRg {
public:
    using RING = ::RING;

    /// A region: `rings[0]` is its outer ring, every further one a hole.
    struct KORVEL_API PyToRg {
        int tag0 = 0; ///< carried along by copies
        int tag1 = 0;
        int attr[6] = {};      ///< carried along by copies, without meaning here
        unsigned char red = 0; ///< fill colour
        unsigned char green = 0;
        unsigned char blue = 0;
        CArray<int> rings;

        PyToRg() = default;
        PyToRg(const PyToRg& src) { *this = src; }
        PyToRg(PyToRg&&) noexcept = default;
        PyToRg& operator=(PyToRg&&) noexcept = default;
        ~PyToRg() = default;
        PyToRg& operator=(const PyToRg& src);
    };

    CArray<VERT2D> pt_list;
    CArray<LINE2D> side_list;
    CArray<RING> ring_list;
    CArray<PyToRg> region_list;

    /// Four empty lists.
    CCPloy2DRg() = default;
    CCPloy2DRg(const CCPloy2DRg& src);
    virtual ~CCPloy2DRg();

    /// Empties this set, then copies every record of the source.
    CCPloy2DRg& operator=(const CCPloy2DRg& src);
    void Copy(const CCPloy2DRg& src);

    /// Empties all four lists and frees their storage.
    void RemoveAll();

    /// Turns every point from device into world coordinates, in place:
    /// x ← (x − ox)·sx / s + x0, and y alike. It undoes the mapping of the drawing calls.
    void translate_cood(int ox, int oy, double x0, double y0, double sx, double sy, double s);

    /// Derives `side_list`, `RING::sides` and `VERT2D::side_refs` from the rings. Call it after
    /// filling the set by hand, before drawing sides.
    ///
    /// `side_list` is added to, never emptied: each call first appends ring 0's first side once
    /// more. A side keeps the direction of its first walk; a one-point ring has the side (p, p).
    /// Without rings nothing happens. Linear in points, sides and ring entries.
    void creat_top_rel();

    /// Reads a polygon-region file from an open text stream and derives the sides. Coordinates pass
    /// through single precision. The set is not emptied first: call `RemoveAll` on a used one.
    ///
    /// Each list is sized to the count in the file. In a file that ends early, or contains
    /// something else than a number, what cannot be read keeps its previous value, or is zero. A
    /// count of more than 65,536 is believed only as far as the file has records. A point count
    /// that is missing or below 1 changes nothing.
    void readpolyrg(FILE* stream);

    /// Writes points ("%f %f", six decimals), rings and regions to an open text stream. A set
    /// without points writes only "0". Sides, tags, attributes and colours are not stored.
    void writepolyrg(FILE* stream);

    // The drawing calls map world to device coordinates, x first:
    // X = trunc((x − x0) / sx · s) + ox, Y = trunc((y − y0) / sy · s) + oy.

    /// Draws every side once, in list order, with a solid red pen of width 1.
    void Draw_Poly_Line(int ox, int oy, double x0, double y0, double sx, double sy, double s,
                        CDC* dc);

    /// Fills one region with its colour in a single `PolyPolygon` call, outlined by the pen that is
    /// selected in `dc`; holes stay open in the alternate fill mode.
    void Draw_Poly(int ox, int oy, double x0, double y0, double sx, double sy, double s, PyToRg& rg,
                   CDC* dc);

    /// Sets the alternate fill mode, then fills every region; later ones paint over earlier ones.
    void Draw_Regon(int ox, int oy, double x0, double y0, double sx, double sy, double s, CDC* dc);

    /// Index of the first region that contains the point p = (x, y), or −1. Linear in ring entries.
    int search_pt_polyrg(double* p);

    /// 1 when p lies inside the region's outer ring and in none of its holes, else 0; 0 for a
    /// region without rings.
    int ptInPlyRegen(double* p, PyToRg& rg);

    /// 1 when the ring winds around p by more than one radian, else 0. Rings of fewer than three
    /// points contain nothing, and a point on a corner is outside.
    int PtInRing(double* p, RING& ring);
};
