#pragma once

#include <string>

#include "bench/compare/table.h"

// The comparisons, one function for each group of jobs. A quick run uses small inputs.

namespace korvel::bench {

void compare_regions(Table& table, bool is_quick);
void compare_triangles(Table& table, bool is_quick);
void compare_map_triangles(Table& table, bool is_quick);
void compare_models(Table& table, bool is_quick);
void compare_merging(Table& table, bool is_quick);
void compare_convert(Table& table, bool is_quick);
void compare_meshes(Table& table, bool is_quick);

/// The peak memory of this process in KiB after reading a model. It includes everything before the
/// call, so the option runs the call in a process that does nothing else.
long peak_memory_of_reading(const char* model);
constexpr const char* peak_memory_option = "--peak-memory";

/// Converts a file of features, in a process that does nothing else; the rest is likewise.
long peak_memory_of_converting(const char* from, const char* to);
constexpr const char* convert_option = "--convert";

long peak_memory_of_reading_mesh(const char* mesh);
constexpr const char* mesh_option = "--mesh";

/// The peak memory of this process so far, in KiB.
long peak_memory();

/// What this program prints when it is called with these arguments.
double number_from_new_process(const std::string& arguments);

} // namespace korvel::bench
