#pragma once

#include "bench/compare/table.h"

// The comparisons, one function for a group of jobs. A quick run takes small inputs.

namespace korvel::bench {

void compare_regions(Table& table, bool is_quick);
void compare_triangles(Table& table, bool is_quick);
void compare_models(Table& table, bool is_quick);
void compare_merging(Table& table, bool is_quick);

/// The most memory, in KiB, that this process had when it has read a model. Whatever it did before
/// counts too: the option runs the call in a process that does nothing else.
long peak_memory_of_reading(const char* model);
constexpr const char* peak_memory_option = "--peak-memory";

} // namespace korvel::bench
