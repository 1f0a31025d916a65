#pragma once

#include "korvel/plane/plane_point.h"

namespace korvel {

struct Disk {
    PlanePoint centre;
    double radius = 0;
};

} // namespace korvel
