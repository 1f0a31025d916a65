#pragma once

#include "kit/base/points.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The first body of a model that contains a point, or -1 if none does.
///
/// The library counts the faces that one ray meets, and a ray through an edge or a vertex, or along
/// a face, may count wrongly. So rays go in directions along which no usual model has anything, and
/// the first answer that three of them give is returned. Near an open body they may disagree, and
/// the most frequent answer of all rays is taken. A point on a surface belongs to either side.
///
/// Takes three rays against every face, as a rule.
int body_at(const TMOD3D& model, const Point3& point);

} // namespace korvel::kit
