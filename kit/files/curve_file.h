#pragma once

#include <span>
#include <vector>

#include "kit/base/grid.h"
#include "kit/base/points.h"
#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Curves in the form in which `CREGION::SetPtsInfo` takes them.
struct CurveNetwork {
    CArray<tagPOINT> pts; ///< the points of all curves, one after another
    CArray<int> counts;   ///< the number of points of each curve

    /// The points as a file contains them, if a coordinate in it is no integer of 32 bits.
    std::vector<Point2> decimals;

    Grid grid;                ///< of `pts`
    double largest_shift = 0; ///< by which the grid moved a point, in units of the file
};

/// Reads a curve file: the number of curves, then for each curve its number of points and that many
/// `x y` pairs of numbers; `#` begins a comment up to the end of the line. Points with decimals
/// take the nearest place on a grid (`grid_for`); without a choice a file of integers keeps them.
/// Throws an input error at the first thing that does not fit.
CurveNetwork read_curves(const TextFile& file, const GridChoice& choice = {});

/// Puts points on a grid: `pts` become the nearest points of it.
void place_on_grid(std::span<const Point2> points, const GridChoice& choice, CurveNetwork& out);

/// Reads the same from words, without a grid; `lines`, if given, receives the line of each curve's
/// count.
void read_curves(WordReader& words, CurveNetwork& out, std::vector<int>* lines = nullptr);

} // namespace korvel::kit
