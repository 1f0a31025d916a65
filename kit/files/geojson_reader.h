#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "kit/base/context.h"
#include "kit/files/features.h"

namespace korvel::kit {

/// Reads GeoJSON from a stream, a block at a time. `name` is that in messages; `size` is the number
/// of bytes, for the progress, 0 if it is not known. The layer has the name in the text, or none.
/// Nothing for TopoJSON, which is read up to its type. Throws an input error for anything else,
/// "FILE:LINE: …". Linear.
std::optional<Features> read_geojson(FILE* stream, const std::string& name, long long size,
                                     const Context& context = {});

} // namespace korvel::kit
