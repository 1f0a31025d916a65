#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "kit/base/points.h"
#include "kit/base/rectangle.h"

namespace korvel::kit {

/// A position for a label within polygons.
struct LabelPlace {
    Point2 middle;
    double room = 0; ///< how many times as wide and high the label may be before it meets a side
};

/// Where a label of a width and a height has most room within rings, holes among them: the centroid
/// of the largest ring where a label 1.3 times as large fits there, otherwise a position with at
/// least nine tenths of the most room there is. Nothing where the room is less than `least`. The
/// number of positions that are tried is limited, and each costs a pass over the rings at most.
std::optional<LabelPlace> find_label_place(const std::vector<std::vector<Point2>>& rings,
                                           double width, double height, double least);

/// The places of the labels that are in a picture already.
class TakenPlaces {
public:
    /// No label is higher.
    explicit TakenPlaces(double greatest_height) : row_height_(greatest_height) {}

    /// Takes a place unless a part of it is taken.
    bool take(const Rectangle& place);

private:
    double row_height_;
    std::map<int, std::vector<Rectangle>> rows_;
};

} // namespace korvel::kit
