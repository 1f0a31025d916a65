#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/error.h"
#include "kit/base/points.h"
#include "kit/maps/network.h"

namespace korvel::kit {

/// A straight piece of a curve between two points, by their indices.
struct NodedSegment {
    int from = 0;
    int to = 0;
    int curve = 0; ///< of the network
};

/// A network cut into segments that share end points at most: no two cross, touch otherwise,
/// overlap or are equal.
struct NodedNetwork {
    std::vector<GridPoint> points;        ///< distinct, as the curves reach them, crossings last
    std::vector<NodedSegment> segments;   ///< in the order of the curves, each as its curve runs
    std::vector<NodedSegment> duplicates; ///< left out because an earlier one is the same
    int crossings = 0;                    ///< points where no curve has one, at which some were cut
};

/// Nodes a network on the grid of its integer coordinates, by snap rounding: each crossing moves to
/// the nearest point of the grid, and each segment to the points that it passes at most half a unit
/// away in x and in y (J. D. Hobby, Practical segment intersection with finite precision output,
/// 1999). Segments move by at most half a unit in each direction, and all results are exact, so
/// that one pass is enough. Segments without length disappear.
///
/// Throws an `Error` when there are more different crossings than `most_crossings`, or four times
/// as many cuts at other points. n log n in the number of segments, crossings and cuts.
NodedNetwork node(const Network& network, const Context& context = {},
                  std::size_t most_crossings = std::numeric_limits<std::size_t>::max());

/// "FILE: the curves have more than 99 crossings, for which there is not enough memory: …"
Error too_many_crossings(const std::string& network, std::size_t most);

} // namespace korvel::kit
