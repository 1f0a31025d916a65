#pragma once

#include <array>
#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The plane a·x + b·y + c·z + d = 0; a, b and c are not all 0.
using Plane = std::array<double, 4>;

/// The axes of the model along which a plane is seen: those other than the axis of the largest
/// component of the plane's normal, the first of equals.
struct PlaneAxes {
    int u;
    int v;
    int away; ///< the third one

    explicit PlaneAxes(const Plane& plane);
};

/// Where a plane cuts one body.
struct BodyCut {
    int body = 0;
    std::vector<int> polygons; ///< faces of the section
    double area = 0;           ///< of the polygons, those inside others taken as holes
};

/// A section of a model and what it consists of.
struct Cut {
    Plane plane = {};            ///< where the cut was made
    TMOD2D section;              ///< as the library hands it out
    std::vector<BodyCut> bodies; ///< those that were cut, ascending
    double area = 0;
    int loose_points = 0; ///< of the section, on no polygon: the bodies are open there
};

/// Cuts a model whose relations are current.
///
/// Through a vertex the library takes every edge that ends there as crossed, and loops may stay
/// open. Where vertices lie on the plane, the cut is made beside it, by a distance just above what
/// rounding may hide.
Cut cut_model(TMOD3D& model, const Plane& plane);

/// The least and the greatest distance of the model's vertices from a plane, along its normal.
std::array<double, 2> distances_from(const Plane& plane, const TMOD3D& model);

/// The plane moved along its normal.
Plane moved(const Plane& plane, double distance);

/// Whether a polygon of a section contains a point, seen along the plane's axes.
bool contains(const TMOD2D& section, int polygon, PlaneAxes axes, double u, double v);

} // namespace korvel::kit
