#pragma once

#include <cstdio>
#include <vector>

#include "kit/base/grid.h"
#include "kit/files/records.h"
#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Writes the triangles of a set as plain text: the number of points and their coordinates, with as
/// many digits as read back as the same value; the number of regions; for each region its number of
/// triangles and the three point indices of each.
///
/// `ends[k]` is the index in `trg_list` after the last triangle of region k. Points are in steps of
/// the grid, and are written in the user's coordinates.
void write_triangles(const PLYDT& set, const std::vector<int>& ends, FILE* out,
                     const Grid& grid = {});

/// Reads what `write_triangles` writes: points and triangles, and the lines of the regions' counts.
/// Indices may come out as -1 where problems are collected.
RecordLines read_triangles(WordReader& words, PLYDT& out);

} // namespace korvel::kit
