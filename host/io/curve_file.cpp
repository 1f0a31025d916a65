#include "host/io/curve_file.h"

#include <string>

namespace korvel::host {
namespace {

std::string counted(int done, int all, const char* things) {
    return std::to_string(done) + " of " + std::to_string(all) + " " + things;
}

} // namespace

CurveNetwork read_curves(const TextFile& file) {
    CurveNetwork network;
    WordReader words(file);
    const int curves = words.next_count("the number of curves");
    for (int curve = 0; curve < curves; ++curve) {
        if (words.at_end()) {
            words.fail("the file ends after " + counted(curve, curves, "curves"));
        }
        const int points = words.next_count("the number of points of a curve");
        const int count_line = words.line();
        for (int point = 0; point < points; ++point) {
            if (words.at_end()) {
                words.fail("the file ends after " + counted(point, points, "points") +
                           " of curve " + std::to_string(curve + 1) +
                           ", whose count stands in line " + std::to_string(count_line));
            }
            tagPOINT place = {};
            place.x = words.next_integer("the x of a point");
            place.y = words.next_integer("the y of a point");
            network.pts.Add(place);
        }
        network.counts.Add(points);
    }
    if (!words.at_end()) {
        const std::string extra = shown(words.next());
        words.fail(extra + " stands after the last curve, curve " + std::to_string(curves));
    }
    return network;
}

} // namespace korvel::host
