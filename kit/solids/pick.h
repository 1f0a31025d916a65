#pragma once

#include <optional>
#include <set>

#include "kit/base/points.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// What lies under a click.
struct Pick {
    int face = 0;
    int body = 0;
    int vertex = 0; ///< of the face, nearest to the click as seen
    int edge = 0;   ///< of the face, nearest to the click as seen
    double u = 0;   ///< the click …
    double v = 0;
    double depth = 0;    ///< … and its w on the face
    Point3 point = {};   ///< where the click meets the face, in model coordinates
    Point3 on_edge = {}; ///< the point that the library gives for the edge, likewise
};

/// Picks with `TMOD3D::get_point_xyz` at u,v in view coordinates; empty where nothing is hit. The
/// view and the relations must be current. Of a `const` model what was picked before stays stored
/// as it was.
std::optional<Pick> pick(TMOD3D& model, double u, double v);
std::optional<Pick> pick(const TMOD3D& model, double u, double v);

/// The same, through the faces of which every body is hidden.
std::optional<Pick> pick(TMOD3D& model, double u, double v, const std::set<int>& hidden);

} // namespace korvel::kit
