#pragma once

#include <cstddef>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/grid.h"
#include "kit/files/features.h"
#include "kit/maps/map.h"
#include "kit/maps/network.h"

// Maps from features: their lines and rings become curves, and what regions lie in polygons or
// contain points take the attributes of those.

namespace korvel::kit {

/// The curves of features on a grid: each line, and each ring of a polygon, in their order. Points
/// are no curves, but the grid is made for them too. Throws an `Error` as `grid_for` does.
Network network_of(const Features& features, const GridChoice& choice = {});

/// Whether any feature is of a shape.
bool has_shape(const Features& features, Shape shape);

/// How regions relate to the polygons of which their borders are.
struct SourceReport {
    int gaps = 0;              ///< regions inside no polygon
    std::vector<int> overlaps; ///< regions of the result inside more than one feature
};

/// The regions that are inside polygons, with the attributes of the first feature that contains
/// them, and those inside none if `keeps_gaps`. Regions come from the network of the same features,
/// so that each lies inside a polygon or beside it. Names are the values of the field `name_field`
/// finds. Near-linear.
Map with_sources(const Map& map, const Features& polygons, bool keeps_gaps, SourceReport& report,
                 const Context& context = {});

/// What became of labels.
struct LabelReport {
    int used = 0;
    int outside = 0;  ///< in no region
    int repeated = 0; ///< in a region that has an earlier one
};

/// Gives each region the name and the attributes of the first point feature inside it, which must
/// be in the coordinates of the map; attributes of the same name that the map has are kept where
/// there is no label. Features of other shapes do not count. Near-linear.
LabelReport take_labels(Map& map, const Features& labels);

/// The regions of features with the tolerance and the grid of default: found in their lines and
/// rings, with the attributes of their polygons, gaps left out, and of their points. Throws an
/// `Error` for features without lines and polygons.
Map regions_of(const Features& features, const Context& context = {});

/// The field whose values are names: "name" in any case, else "label", "title", "id", else the
/// first field of text; the number of fields if there is none.
std::size_t name_field(const std::vector<Field>& fields);

} // namespace korvel::kit
