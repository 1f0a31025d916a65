#pragma once

#include "kit/kit.h"

namespace korvel::test {

/// A cuboid, and a ball above it that it does not touch, turned in the view.
inline kit::Solids cuboid_and_ball() {
    kit::Solids both = kit::make_cuboid({0, 0, 0}, {6, 4, 2}, 1);
    both.set_name(0, "box");
    both.add(kit::make_ball({0, 0, 4}, 2, 2));
    both.set_colour(1, {200, 0.25, 0.75});
    both.set_view({25, -65});
    return both;
}

} // namespace korvel::test
