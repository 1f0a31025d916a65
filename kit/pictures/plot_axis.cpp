#include "kit/pictures/plot_axis.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "kit/base/number_text.h"
#include "kit/solids/plane.h"

namespace korvel::kit {

double PlotAxis::pixels_per_unit() const {
    return std::abs(end - start) / (to - from);
}

std::string PlotAxis::name(const Point3& axis) const {
    std::string name = axis_name(axis);
    if (exaggeration > 1) {
        name += " \u00d7 " + number_text(exaggeration);
    }
    return name;
}

std::string PlotAxis::label(double value) const {
    const int decimals = std::clamp(static_cast<int>(-std::floor(std::log10(step) + 1e-9)), 0, 15);
    char digits[400];
    std::snprintf(digits, sizeof digits, "%.*f", decimals, value);
    return digits;
}

std::vector<double> PlotAxis::ticks() const {
    std::vector<double> values;
    for (double n = std::ceil(from / step); n * step <= to && values.size() < 1000; ++n) {
        values.push_back(n * step + 0.0); // no minus before a 0
    }
    return values;
}

double round_below(double value) {
    const double power = std::pow(10, std::floor(std::log10(value) + 1e-9));
    const double part = value / power * (1 + 1e-9);
    return part >= 5 ? 5 * power : part >= 2 ? 2 * power : power;
}

} // namespace korvel::kit
