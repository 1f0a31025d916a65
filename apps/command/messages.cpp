#include "apps/command/messages.h"

#include <cstdio>

namespace korvel::command {
namespace {

bool& incomplete() {
    static bool state = false;
    return state;
}

} // namespace

std::string counted(int number, const char* thing) {
    return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

std::string counted(int number, const char* thing, const char* things) {
    return std::to_string(number) + " " + (number == 1 ? thing : things);
}

std::string number_text(double area) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.15g", area);
    return digits;
}

std::string bounds_text(const double* pairs, int axes) {
    std::string text;
    for (int axis = 0; axis < axes; ++axis) {
        text += axis == 0 ? "" : ", ";
        text += "xyz"[axis];
        text.append(" ").append(number_text(pairs[2 * axis]));
        text.append(" to ").append(number_text(pairs[2 * axis + 1]));
    }
    return text;
}

void warn(const std::string& message) {
    // Keeps the order of lines when standard output and standard error are the same file.
    std::fflush(stdout);
    std::fprintf(stderr, "warning: %s\n", message.c_str());
}

void note_incomplete() {
    incomplete() = true;
}

bool is_incomplete() {
    return incomplete();
}

} // namespace korvel::command
