#include "kit/files/repair.h"

#include <cstdio>
#include <cstdlib>

namespace korvel::kit {

std::string file_digits(double value) {
    char digits[400]; // holds the largest number
    std::snprintf(digits, sizeof digits, "%.6f", value);
    return std::strtod(digits, nullptr) == value ? digits : shortest_digits(value);
}

} // namespace korvel::kit
