#pragma once

#include "bench/compare/table.h"

// The comparisons, one function for each group of jobs. A quick run uses small inputs.

namespace korvel::bench {

void compare_regions(Table& table, bool is_quick);
void compare_triangles(Table& table, bool is_quick);
void compare_map_triangles(Table& table, bool is_quick);
void compare_models(Table& table, bool is_quick);
void compare_merging(Table& table, bool is_quick);

/// The peak memory of this process in KiB after reading a model. It includes everything before the
/// call, so the option runs the call in a process that does nothing else.
long peak_memory_of_reading(const char* model);
constexpr const char* peak_memory_option = "--peak-memory";

} // namespace korvel::bench
