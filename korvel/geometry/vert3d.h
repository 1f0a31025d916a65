#pragma once

#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"

/// A vertex of a body model or a section model.
///
/// The four lists are derived by the model's relation pass (`TMOD3D::found_top_rel`).
class KORVEL_API VERT3D {
public:
    double model_xyz[3] = {};     ///< model coordinates x, y, z: edited and stored
    double backup_xyz[3] = {};    ///< saved copy of `model_xyz`
    double temp_view_xyz[3] = {}; ///< saved copy of `view_xyz`
    double view_xyz[3] = {};      ///< view coordinates u, v, w: `model_xyz` turned into the view
    int spare_int_1 = 0;          ///< carried along by copies
    int spare_int_2 = 0;          ///< carried along by copies
    int state_flags = 0;          ///< marks of the model's walks: 4 gathered into a neighbourhood,
                                  ///< 16 placed in a body's vertex list
    int spare_int_3 = 0;          ///< carried along by copies
    CArray<int> faces;            ///< faces that contain this vertex, ascending
    CArray<int> lines;            ///< edges that end here, ascending
    CArray<int> neighbours;       ///< other end of each entry of `lines`
    CArray<int> bodies;           ///< bodies whose vertex list contains this vertex, ascending

    VERT3D() = default;
    VERT3D(const VERT3D& src);
    VERT3D(VERT3D&&) noexcept = default;
    VERT3D& operator=(VERT3D&&) noexcept = default;
    virtual ~VERT3D() = default;

    VERT3D& operator=(const VERT3D& src);
    void Copy(const VERT3D& src);

    /// Empties the four lists and frees their storage.
    void RemoveAll();

    void backvert();     ///< saves `model_xyz` into `backup_xyz`
    void restorvert();   ///< restores `model_xyz` from `backup_xyz`
    void backtempvert(); ///< saves `view_xyz` into `temp_view_xyz`
    void copytemvert();  ///< restores `view_xyz` from `temp_view_xyz`

    /// `view_xyz` = `model_xyz` turned by the matrix m; see `rotate_point`.
    void rotate(double* m);
    /// `model_xyz` = (`view_xyz` + org) turned by the matrix m.
    void ant_rotate(double* m, double* org);
    /// Moves the origin of `view_xyz` to org.
    void trans_uvw_org(double* org);
};
