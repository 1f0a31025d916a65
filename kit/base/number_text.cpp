#include "kit/base/number_text.h"

#include <array>
#include <cstdio>

namespace korvel::kit {

std::string number_text(double value) {
    std::array<char, 32> digits = {};
    std::snprintf(digits.data(), digits.size(), "%.15g", value + 0.0); // no minus before a 0
    return digits.data();
}

} // namespace korvel::kit
