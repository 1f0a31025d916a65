#pragma once

#include "kit/base/points.h"
#include "kit/files/glb_json.h"

namespace korvel::kit {

/// The affine map of a node of a glTF: columns of its linear part, and where the origin goes.
struct GlbTransform {
    Point3 x = {1, 0, 0};
    Point3 y = {0, 1, 0};
    Point3 z = {0, 0, 1};
    Point3 origin = {};

    Point3 operator()(const Point3& point) const;

    /// What maps as `inner` does first, and then as this.
    GlbTransform after(const GlbTransform& inner) const;

    bool is_mirroring() const;
};

/// The transform of a node in that of its parent: a matrix, or scale, rotation and translation.
GlbTransform glb_transform(const GlbValue& node);

} // namespace korvel::kit
