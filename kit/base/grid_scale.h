#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace korvel::kit {

/// Maps the numbers of a range to integers without changing their order; numbers outside go to its
/// ends. For trees of boxes over real coordinates.
class GridScale {
public:
    GridScale() = default;
    GridScale(double least, double greatest)
        : least_(least), scale_(greatest > least ? steps / (greatest - least) : 0) {}

    std::int32_t operator()(double value) const {
        const double step = (value - least_) * scale_;
        return step > 0 ? static_cast<std::int32_t>(std::min(step, steps)) : 0;
    }

private:
    static constexpr double steps = 1 << 30;

    double least_ = 0;
    double scale_ = 0;
};

} // namespace korvel::kit
