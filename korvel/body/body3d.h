#pragma once

#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"

/// A body of a body model: the faces that bound it, its colour, and what is derived from them.
class KORVEL_API BODY3D {
public:
    CArray<int> polys;            ///< the faces that bound the body
    CArray<int> lines;            ///< edges of those faces, in order of first appearance
    CArray<int> verts;            ///< vertices of those faces, in order of first appearance
    CArray<int> neighbour_bodies; ///< bodies that share a face with this one
    double volume = 0;
    double param_1 = 0; ///< with param_2 and param_3: stored in the file, read by no operation
    int body_flags = 0; ///< marks of the model's walks, see `korvel/geometry/marks.h`
    double hue = 80.0;  ///< degrees
    double saturation = 0.5;
    double lightness = 0.5;
    double alpha = 1.0; ///< opacity when drawn
    double param_2 = 0;
    double param_3 = 0;
    double model_min[3] = {}; ///< extents in model coordinates, see `TMOD3D::get_body_span`
    double model_max[3] = {};
    double view_mid[3] = {}; ///< extents in view coordinates
    double view_span[3] = {};
    double view_min[3] = {};
    double view_max[3] = {};
    int change_dirt = 0; ///< quadrant of the view box grabbed for scaling, 1 to 4

    BODY3D() = default;
    BODY3D(const BODY3D& src);
    BODY3D(BODY3D&&) noexcept = default;
    BODY3D& operator=(BODY3D&&) noexcept = default;
    virtual ~BODY3D() = default;

    /// Copies every member. Self-assignment keeps the object.
    BODY3D& operator=(const BODY3D& src);
    void Copy(const BODY3D& src);

    /// Empties the four lists and frees their storage.
    void RemoveAll();
};
