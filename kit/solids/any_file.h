#pragma once

#include <optional>
#include <variant>

#include "kit/base/context.h"
#include "kit/base/placement.h"
#include "kit/files/file_kind.h"
#include "kit/maps/map.h"
#include "kit/maps/network.h"
#include "kit/solids/solids.h"

namespace korvel::kit {

/// The triangles of a triangle file.
struct TriangleSet {
    PLYDT triangles;
    int regions = 0;
};

/// What a file of any kind contains. Regions keep the coordinates of the file in double precision.
struct AnyFile {
    FileKind kind = FileKind::curves;
    std::variant<Network, Map, Solids, TMOD2D, TriangleSet> contents;
    Placement placement = {}; ///< what the file stores; a section is in the user's coordinates
};

/// Reads a file of the kind that `kind_of` detects, once if it is sound: what is read to detect the
/// kind is what is returned. Warns of coordinates that `Solids::read` changes. Throws an `Error`
/// that names the line of the first thing that does not fit.
AnyFile read_any(const TextFile& file, const Context& context = {});

} // namespace korvel::kit
