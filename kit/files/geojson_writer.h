#pragma once

#include "kit/files/features.h"
#include "kit/files/output_file.h"

namespace korvel::kit {

/// Writes a layer into a stream as GeoJSON, a line for each feature. Rings are turned as RFC 7946
/// requires: outer rings counter-clockwise, holes clockwise. `decimals` is the most digits after
/// the point of a coordinate, 0 to 17; −1: as many as read back the same.
///
/// A feature without a value has null in its place. The reference system is named unless it is
/// WGS 84 or has no code, "EPSG:25832", by which GeoJSON could name it. Throws an `Error` for a
/// coordinate that is not finite.
void write_geojson(const Features& features, OutputFile& out, int decimals = -1);

} // namespace korvel::kit
