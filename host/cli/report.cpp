#include "host/cli/report.h"

#include <cstdio>

namespace korvel::host {

std::string counted(int number, const char* thing) {
    return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

std::string area_text(double area) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.15g", area);
    return digits;
}

void warn(const std::string& message) {
    // Keeps the report on standard output in step when both go to the same place.
    std::fflush(stdout);
    std::fprintf(stderr, "warning: %s\n", message.c_str());
}

} // namespace korvel::host
