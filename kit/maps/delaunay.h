#pragma once

#include <array>
#include <optional>
#include <vector>

#include "kit/maps/outline.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The constrained Delaunay triangles of an outline: every ring point is a corner, every ring side
/// a side of one triangle or, where it passes ring points, several.
struct DelaunayTriangles {
    std::vector<std::array<int, 3>> corners; ///< by places; from the x towards the y axis
    std::vector<std::vector<int>> rings;     ///< with the ring points that their sides pass

    /// Where rings neither cross within sides nor run along one another, but there are no
    /// triangles: a side whose ring is outside of the outer ring or in another hole, or turns the
    /// wrong way there.
    std::optional<std::array<int, 2>> misplaced;

    /// The triangles between points of a set, those at the places of the outline.
    std::vector<PLYDT::TRG> between(const std::vector<int>& points) const;
};

/// Triangulates an outline, exactly: its rings must not cross one another or themselves, but may
/// touch in points. Neither how they turn nor in which order they are matters to the triangles,
/// which depend on the positions alone, except for their order. Nothing where the rings cross, run
/// along one another, or where a hole is outside of the outer ring or in another hole. n log n for
/// most inputs.
DelaunayTriangles delaunay_triangles(const Outline& outline);

/// Appends those of a region to `trg_list`, between its points. Of points at the same place the
/// least is used.
void add_delaunay_triangles(PLYDT& set, const PLYDT::PyToRg& region);

} // namespace korvel::kit
