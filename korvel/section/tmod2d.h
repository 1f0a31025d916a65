#pragma once

#include <cstdio>

#include "korvel/geometry/line3d.h"
#include "korvel/geometry/poly3d.h"
#include "korvel/geometry/poly3d_cplx.h"
#include "korvel/geometry/vert3d.h"

/// A section model: the cut of a body model by a plane, as vertices, faces and filled face groups.
class KORVEL_API TMOD2D {
public:
    CArray<VERT3D, VERT3D&> verts; ///< only `model_xyz` is used
    CArray<LINE3D, LINE3D&> lines;
    CArray<POLY3D, POLY3D&> polys;
    CArray<POLY3D_CPLX, POLY3D_CPLX&> groups;

    /// Four empty arrays.
    TMOD2D() = default;
    TMOD2D(const TMOD2D& src);
    TMOD2D(TMOD2D&&) noexcept = default;
    TMOD2D& operator=(TMOD2D&&) noexcept = default;
    virtual ~TMOD2D();

    TMOD2D& operator=(const TMOD2D& src);
    void Copy(const TMOD2D& src);

    /// Empties the four arrays and frees their storage.
    void RemoveAll();

    /// Appends the default content: two nested squares, drawn as a frame. Its indices count from 0,
    /// so it belongs into an empty model.
    void intlmode();

    /// Writes the vertex and edge numbers of faces 0 and 1 into a file "ttty" in the current
    /// directory. A model of fewer faces writes what it has.
    void set_poly_at_grow();

    /// Reads a section file from an open text stream: two coordinates for each vertex, along the
    /// two axes that the file names, then faces and groups. Reals pass through single precision. It
    /// does not read what `writedate` writes. Every list gets the size that the file declares (at
    /// most 65,536 where the file is too short for more); what is not read keeps its value, or is
    /// zero.
    void readdate(FILE* stream);

    /// Writes vertices (three coordinates), faces and groups to an open text stream.
    void writedate(FILE* stream);

    /// Fills every group in order in the alternate fill mode; see `POLY3D_CPLX::draw_a_fill_poly`.
    void draw_filled_model(int ax_u, int ax_v, int dev_x, int dev_y, double org_u, double org_v,
                           double unit_u, double unit_v, double scale, CDC* dc);
};
