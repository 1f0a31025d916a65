#include "kit/files/curve_file.h"

#include <string>

namespace korvel::kit {

CurveNetwork read_curves(const TextFile& file) {
    CurveNetwork network;
    WordReader words(file);
    read_curves(words, network);
    return network;
}

void read_curves(WordReader& words, CurveNetwork& out, std::vector<int>* lines) {
    words.skip_comments();
    const int curves = words.next_count("the number of curves");
    for (int curve = 0; curve < curves; ++curve) {
        if (words.at_end()) {
            words.fail_short(curve, curves, "curves");
        }
        const int points = words.next_count("the number of points of a curve");
        const int count_line = words.line();
        for (int point = 0; point < points; ++point) {
            if (words.at_end()) {
                words.fail_short(point, points,
                                 "points of curve " + std::to_string(curve + 1) +
                                     ", whose count is in line " + std::to_string(count_line));
            }
            tagPOINT place = {};
            place.x = words.next_integer("the x of a point");
            place.y = words.next_integer("the y of a point");
            out.pts.Add(place);
        }
        out.counts.Add(points);
        if (lines != nullptr) {
            lines->push_back(count_line);
        }
    }
    words.need_end("the last curve, curve " + std::to_string(curves));
}

} // namespace korvel::kit
