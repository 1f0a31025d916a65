#include "apps/workbench/flat/number_shown.h"

#include <algorithm>
#include <cmath>

#include "kit/kit.h"

namespace korvel::workbench {

QString number_shown(double value, double precision) {
    constexpr int most_decimals = 15;
    const int decimals =
        std::clamp(static_cast<int>(-std::floor(std::log10(precision))), 0, most_decimals);
    const double parts = std::pow(10.0, decimals);
    const double rounded =
        std::abs(value) * parts < 1e15 ? std::round(value * parts) / parts : value;
    return QString::fromStdString(kit::number_text(rounded));
}

double power_of_ten_in(double value) {
    return std::pow(10.0, std::floor(std::log10(value)));
}

} // namespace korvel::workbench
