#pragma once

#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/placement.h"
#include "kit/files/text_file.h"
#include "kit/solids/box.h"
#include "korvel/module/korvel.h"

// Models and sections in memory are in the user's coordinates, their files in steps of a grid.

namespace korvel::kit {

/// Reads a body model file as `read_model` does, and turns the model into the user's coordinates
/// by the placement that the file stores. Relations and the orientation of the faces are those of
/// the steps; equations, volumes, bounds and the view are derived anew, unless the grid is the
/// identity. The result is that of `read_model`.
std::optional<std::string> read_placed_model(const TextFile& file, TMOD3D& out,
                                             Placement& placement);

/// Writes a model in steps, the names that its bodies have, and the placement.
void write_placed_model(const TMOD3D& model, const Placement& placement, FILE* out,
                        std::span<const std::string> names = {});

/// Turns a model in steps, with everything derived, into the user's coordinates. Relations and the
/// orientation of the faces stay; equations, volumes, bounds and the view are derived anew.
void to_user(const Grid& grid, TMOD3D& model);

/// The same where the vertices' coordinates are known, which then are the user's to the last digit.
void to_user(const Grid& grid, std::span<const Point3> vertices, TMOD3D& model);

/// Turns the vertices of a section that was read into the user's coordinates.
void to_user(const Grid& grid, TMOD2D& section);

/// Writes a section in steps, and the placement.
void write_placed_section(const TMOD2D& section, const Placement& placement, FILE* out);

/// A placement and what it is to hold.
struct PlacedBox {
    Placement placement;
    Box box; ///< in the user's coordinates; empty if it does not count
};

/// The placement for models that become one: the first known reference system, and the grid with
/// the finest step, its origin moved near the middle where another is too far away for files. Warns
/// when the reference systems differ.
Placement common_placement(const std::vector<PlacedBox>& parts, const Context& context);

} // namespace korvel::kit
