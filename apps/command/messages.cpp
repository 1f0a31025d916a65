#include "apps/command/messages.h"

#include <array>
#include <vector>

namespace korvel::command {

std::string counted(int number, const char* thing) {
    return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

std::string counted(int number, const char* thing, const char* things) {
    return std::to_string(number) + " " + (number == 1 ? thing : things);
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

Record bounds_record(const double* pairs, int axes) {
    constexpr std::array<const char*, 3> names = {"x", "y", "z"};
    Record record;
    for (int axis = 0; axis < axes; ++axis) {
        record.set(names[axis], std::vector<double>{pairs[2 * axis], pairs[2 * axis + 1]});
    }
    return record;
}

} // namespace korvel::command
