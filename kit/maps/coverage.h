#pragma once

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// How well triangles cover a region.
struct Coverage {
    double region_area = 0;
    double triangle_area = 0; ///< sum over the triangles
    bool is_same_area = false;
    /// The triangles cover every point of the region once and nothing else.
    bool is_tiling = false;
    /// Each side of the region's rings is the side of one triangle and each other side that of two:
    /// no corner of a triangle lies within the side of another.
    bool meets_sides = false;
};

/// Measures the triangles `first` to `end` − 1 of a set against one of its regions. Rings must have
/// positive area and all indices must be valid.
///
/// Areas that fit do not rule out an overlap beside a gap of the same size. Triangles tile a region
/// exactly when all turn the same way and the sum of their boundaries is the boundary of the
/// region, each side taken with its direction; both are checked. With lattice points (see
/// `are_lattice_points`) all of it is exact; else areas may differ by 1e-9 of the region's.
Coverage measure_coverage(const PLYDT& set, const PLYDT::PyToRg& region, int first, int end,
                          bool lattice);

} // namespace korvel::kit
