#pragma once

#include "korvel/geometry/poly3d.h"

/// A group of faces that is filled as one area in one colour, as the sections of bodies are.
class KORVEL_API POLY3D_CPLX {
public:
    CArray<int> polys;  ///< numbers of the group's faces in their owner's face array
    CArray<int> list_2; ///< carried along by copies, as are list_3 and list_4
    CArray<int> list_3;
    CArray<int> list_4;
    double area = 0;
    int rgb = 0;          ///< red + 256 · green + 65536 · blue
    double aux_value = 0; ///< carried along by copies
    int aux_int = 0;      ///< carried along by copies
    double hue = 80.0;    ///< degrees
    double saturation = 0.5;
    double lightness = 0.6;
    double aux_xyz_1[3] = {}; ///< carried along by copies
    double aux_xyz_2[3] = {}; ///< carried along by copies

    POLY3D_CPLX() = default;
    POLY3D_CPLX(const POLY3D_CPLX& src);
    POLY3D_CPLX(POLY3D_CPLX&&) noexcept = default;
    POLY3D_CPLX& operator=(POLY3D_CPLX&&) noexcept = default;
    virtual ~POLY3D_CPLX() = default;

    POLY3D_CPLX& operator=(const POLY3D_CPLX& src);
    void Copy(const POLY3D_CPLX& src);

    /// Empties the four lists and frees their storage.
    void RemoveAll();

    /// Sums the `area` of every face of the array, whether the group lists it or not.
    void cpgn_area(CArray<POLY3D, POLY3D&>& polys);

    /// Computes `rgb` from hue and saturation at lightness 0.6, which it also stores, at single
    /// precision.
    void rgb_color();

    /// Fills all faces of the group in one `PolyPolygon` call, so that holes stay open, outlined by
    /// the pen that is selected in `dc`. `ax_u` and `ax_v` pick the model axes (0 x, 1 y, 2 z) to
    /// draw along; the device point of p is trunc((p[ax_u] − org_u) / unit_u · scale) + dev_x,
    /// and the same for y with ax_v. Faces with an index outside the vertices are left out.
    void draw_a_fill_poly(int ax_u, int ax_v, CArray<POLY3D, POLY3D&>& polys,
                          CArray<VERT3D, VERT3D&>& verts, int dev_x, int dev_y, double org_u,
                          double org_v, double unit_u, double unit_v, double scale, CDC* dc);
};
