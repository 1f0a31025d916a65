#pragma once

#include <vector>

#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Curves in the form in which `CREGION::SetPtsInfo` takes them.
struct CurveNetwork {
    CArray<tagPOINT> pts; ///< the points of all curves, one after another
    CArray<int> counts;   ///< the number of points of each curve
};

/// Reads a curve file: the number of curves, then for each curve its number of points and that many
/// `x y` pairs of integers; `#` begins a comment up to the end of the line. Throws an input error
/// at the first thing that does not fit.
CurveNetwork read_curves(const TextFile& file);

/// The same from words; `lines`, if given, receives the line of each curve's count.
void read_curves(WordReader& words, CurveNetwork& out, std::vector<int>* lines = nullptr);

} // namespace korvel::kit
