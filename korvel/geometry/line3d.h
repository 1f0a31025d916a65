#pragma once

#include "korvel/geometry/vert3d.h"

class POLY3D;

/// An edge between two vertices. The lists are derived by the model's relation pass, the equations
/// by the calls below.
class KORVEL_API LINE3D {
public:
    int start_vert = 0;
    int end_vert = 0;
    int state_flags = 0; ///< marks of the model's walks: 2 gathered, 16 placed in a list or cut
    double direction[3] = {};   ///< unit vector from start to end; not finite for a length of 0
    double length = 0;          ///< in model coordinates
    double line_2d_eqt[3] = {}; ///< line a·u + b·v + c = 0 in the view, a² + b² + c² = 1
    int main_axis = 0;  ///< axis of the largest component of `direction`, the first of equals
    CArray<int> faces;  ///< faces whose edge list contains this edge, ascending
    CArray<int> bodies; ///< bodies whose edge list contains this edge, ascending

    LINE3D() = default;
    LINE3D(const LINE3D& src);
    LINE3D(LINE3D&&) noexcept = default;
    LINE3D& operator=(LINE3D&&) noexcept = default;
    virtual ~LINE3D() = default;

    LINE3D& operator=(const LINE3D& src);
    void Copy(const LINE3D& src);

    /// Empties both lists and frees their storage.
    void RemoveAll();

    void set_line_point(int a, int b);

    /// Computes `direction`, `length` and `main_axis`. An end that is no vertex leaves them alone.
    void set_line_eqt(CArray<VERT3D, VERT3D&>& verts);

    /// Computes `line_2d_eqt` from the ends' u and v. An end that is no vertex leaves it alone.
    void set_line_2d_eqt(CArray<VERT3D, VERT3D&>& verts);

    /// The other end of the edge when v is one of its ends, else −1.
    int det_vert_at(int v);

    /// Whether the edge, ends included, meets the face's plane in a point inside the face. Uses
    /// `direction`, `length` and the face's `plane`.
    bool detect_line_cross_poly(POLY3D& face, CArray<VERT3D, VERT3D&>& verts);
};
