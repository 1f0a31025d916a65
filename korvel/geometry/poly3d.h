#pragma once

#include "korvel/geometry/line3d.h"
#include "korvel/geometry/vert3d.h"

/// A face bounded by a closed chain of vertices. The predicates take it for convex.
class KORVEL_API POLY3D {
public:
    CArray<int> verts;           ///< vertex numbers in boundary order
    CArray<int> lines;           ///< edge numbers; entry i joins `verts[i]` and `verts[i + 1]`
    CArray<int> neighbour_faces; ///< other faces that share an edge, each once
    CArray<int> bodies;          ///< bodies whose face list contains this face, ascending
    double area = 0;             ///< summed by `POLY3D_CPLX::cpgn_area`; computed by nothing here
    double plane[4] = {}; ///< a·x + b·y + c·z + d = 0, (a, b, c) of unit length; seen from
                          ///< its tip the first three vertices run counter-clockwise
    int main_axis = 0;    ///< axis of the normal's largest component, the first of equals
    double rotated_plane[4] = {}; ///< the plane in view coordinates
    int state_flags = 0;          ///< 16 faces the viewer; 2, 32 and 64 are marks of the walks

    POLY3D() = default;
    POLY3D(const POLY3D& src);
    POLY3D(POLY3D&&) noexcept = default;
    POLY3D& operator=(POLY3D&&) noexcept = default;
    virtual ~POLY3D() = default;

    POLY3D& operator=(const POLY3D& src);
    void Copy(const POLY3D& src);

    /// Empties the four lists and frees their storage.
    void RemoveAll();

    void add_a_vert(int v);
    void add_a_line(int e);

    /// Appends to `lines` the boundary edges that it lacks, then rebuilds this face's edge list.
    /// Cost: the whole edge array; a model with many faces shares one table instead.
    void find_side(CArray<LINE3D, LINE3D&>& lines);

    /// Rebuilds the edge list from `verts`. Of several edges between two vertices the last one
    /// wins; a pair without an edge leaves its entry as it is. Cost: the whole edge array.
    void vert_to_line(CArray<LINE3D, LINE3D&>& lines);

    /// Rewrites `verts` from the edge list. A triangle whose first edge runs s → t comes out as
    /// (s, u, t), u being the third vertex, whatever order it had.
    void line_to_vert(CArray<LINE3D, LINE3D&>& lines);

    /// Computes `plane` and `main_axis` from the first three vertices' model coordinates. Faces of
    /// fewer vertices keep theirs; vertices in line give values that are not finite.
    void set_poly_eql(CArray<VERT3D, VERT3D&>& verts);

    /// Computes `rotated_plane` the same way from view coordinates.
    void get_rotated_poly_eql(CArray<VERT3D, VERT3D&>& verts);

    /// Sets or clears flag 16 by the sign of `rotated_plane`'s third component; p is not read.
    void detect_rotated_poly_vis(double* p);

    /// 1 when the boundary runs from p[0] to p[1], −1 when it runs from p[1] to p[0], else 0.
    int det_poly_include_line(int* p);

    /// Position of v in `verts`, or −1.
    int point_range_in_poly(int v);

    /// Reverses `verts` and leaves the edge list alone.
    void invert_poly_range();

    bool detect_line_in(int e);
    bool is_composed_vert(int v);

    /// Whether p = (u, v) lies in the face as seen, borders included. Only faces that run
    /// counter-clockwise in the view hold anything; fewer than three vertices hold nothing.
    bool det_point_in_con_poly(double* p, CArray<VERT3D, VERT3D&>* verts);

    /// Whether p, a point of the face's plane, lies in the face, however it is turned. Points on
    /// the border are inside when the projection along `main_axis` runs counter-clockwise, else
    /// outside.
    bool det_3dpoint_in_con_poly(double* p, CArray<VERT3D, VERT3D&>& verts);

    /// Six times the signed volume of the tetrahedron that the first three vertices form with the
    /// origin; 0 for fewer vertices.
    double poly_volume(CArray<VERT3D, VERT3D&>& verts);

    /// The face's vertex nearest to p = (u, v), the first of equals; 0 for an empty face.
    int get_uvw_near_point(CArray<VERT3D, VERT3D&>& verts, double* p);

    /// Issues the vertices, in order, into the OpenGL primitive that the caller has begun:
    /// `gl_draw_poly` in view coordinates, `gl_draw_orig_poly` in model coordinates.
    void gl_draw_poly(CArray<VERT3D, VERT3D&>* verts);
    void gl_draw_orig_poly(CArray<VERT3D, VERT3D&>* verts);

    /// The face's edge whose line is nearest to p = (u, v), the first of equals; q receives a point
    /// of that edge in model coordinates, always on the end side of its start. A face without edges
    /// gives 0 and leaves q alone.
    int get_uvw_near_side(CArray<VERT3D, VERT3D&>& verts, CArray<LINE3D, LINE3D&>& lines, double* p,
                          double* q);
};
