#pragma once

#include <string>
#include <vector>

#include "kit/base/points.h"

namespace korvel::kit {

/// One axis of a plot: a range of the model on a range of pixels.
struct PlotAxis {
    double from = 0; ///< in the model
    double to = 0;
    double start = 0; ///< in pixels; of a vertical axis the lower end, with the greater y
    double end = 0;
    double exaggeration = 1; ///< against the other axis
    double step = 1;         ///< from tick to tick

    double pixels_per_unit() const;
    double place(double value) const {
        return start + (value - from) * (end - start) / (to - from);
    }

    /// A value with the decimals of the step.
    std::string label(double value) const;

    /// That of the direction, with the exaggeration if there is any.
    std::string name(const Point3& axis) const;

    std::vector<double> ticks() const;
};

/// The largest of 1, 2 and 5 times a power of ten that is not above a value.
double round_below(double value);

} // namespace korvel::kit
