#pragma once

#include <QString>

namespace korvel::workbench {

/// A coordinate or length to the power of ten that is no wider than `precision`, which is above 0:
/// "12.3" for 12.345 and a pixel of 0.2.
QString number_shown(double value, double precision);

/// The power of ten that is no wider than a number above 0.
double power_of_ten_in(double value);

} // namespace korvel::workbench
