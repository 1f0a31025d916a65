#pragma once

#include <string>

#include "apps/command/record.h"
#include "kit/kit.h"

namespace korvel::command {

/// "1 region", "2 regions".
std::string counted(int number, const char* thing);
/// "1 body", "2 bodies".
std::string counted(int number, const char* thing, const char* things);

using kit::number_text;

/// "x 0 to 10, y -5 to 5, z 1 to 2" from pairs of minimum and maximum for each of the first axes.
std::string bounds_text(const double* pairs, int axes);

/// {"x": [0, 10], "y": [-5, 5], "z": [1, 2]} likewise.
Record bounds_record(const double* pairs, int axes);

} // namespace korvel::command
