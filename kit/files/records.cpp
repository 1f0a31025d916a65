#include "kit/files/records.h"

#include <cmath>
#include <cstdio>

namespace korvel::kit {

std::vector<int> read_plane_points(WordReader& words, CArray<VERT2D>& out) {
    std::vector<int> lines;
    const int points = words.next_count("the number of points");
    for (int i = 0; i < points; ++i) {
        if (words.at_end()) {
            words.fail_short(i, points, "points");
        }
        VERT2D& point = next_record(out, i, points);
        point.x = words.next_real("the x of a point");
        lines.push_back(words.line());
        point.y = words.next_real("the y of a point");
    }
    return lines;
}

std::optional<Finding> change_by_reading(double coordinate, int line) {
    const double held = static_cast<float>(coordinate);
    if (held == coordinate || coordinate != std::trunc(coordinate)) {
        return {};
    }
    char numbers[128];
    std::snprintf(numbers, sizeof numbers, "%.0f becomes %.0f", coordinate, held);
    return Finding{line, std::string(numbers) + ": coordinates are read in single precision"};
}

std::optional<std::string> message(const TextFile& file, const std::optional<Finding>& finding) {
    if (!finding) {
        return {};
    }
    return file.name + ":" + std::to_string(finding->line) + ": " + finding->message;
}

} // namespace korvel::kit
