#pragma once

#include <vector>

#include "kit/base/rectangle.h"
#include "kit/maps/network.h"

namespace korvel::kit {

/// Finds the curve of a network that a segment lies on: a static tree of boxes over the segments
/// of all curves, which are sorted into leaves by halving (J. L. Bentley, 1975). Building it takes
/// n log n.
class CurveIndex {
public:
    explicit CurveIndex(const Network& network);

    /// The curve with the segment that is nearest to both of two points: whose distance to the
    /// farther of them is least. Of equally near ones the first curve. −1 if no curve has a
    /// segment. Near-logarithmic where curves are short of overlaps.
    int nearest_curve(const Point2& a, const Point2& b) const;

private:
    struct Segment {
        Point2 from;
        Point2 to;
        int curve;
    };
    struct Nearest {
        double distance;
        int curve;
    };

    void build(std::size_t node, std::size_t first, std::size_t last);
    void search(std::size_t node, std::size_t first, std::size_t last, const Point2& a,
                const Point2& b, Nearest& best) const;

    std::vector<Segment> segments_;
    std::vector<Rectangle> boxes_; // of the nodes; the root is 1, the children of k are 2k, 2k + 1
};

} // namespace korvel::kit
