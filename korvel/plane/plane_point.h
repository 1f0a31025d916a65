#pragma once

namespace korvel {

/// A point or a vector of the plane.
struct PlanePoint {
    double x = 0;
    double y = 0;
};

} // namespace korvel
