#include "kit/files/curve_file.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

#include "kit/base/error.h"

namespace korvel::kit {
namespace {

void read_points(WordReader& words, int points, CurveNetwork& out);
void add_point(const Point2& point, bool is_integer, CurveNetwork& out);

} // namespace

CurveNetwork read_curves(const TextFile& file, const GridChoice& choice) {
    CurveNetwork network;
    WordReader words(file);
    read_curves(words, network);
    if (network.decimals.empty() && (choice.step || choice.origin)) {
        std::transform(begin(network.pts), end(network.pts), std::back_inserter(network.decimals),
                       [](const tagPOINT& point) { return to_point(point); });
    }
    if (!network.decimals.empty()) {
        try {
            place_on_grid(network.decimals, choice, network);
        } catch (const Error& error) {
            throw input_error(file.name + ": " + error.what(), {.file = file.name});
        }
    }
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
        read_points(words, points, out);
        out.counts.Add(points);
        if (lines != nullptr) {
            lines->push_back(count_line);
        }
    }
    words.need_end("the last curve, curve " + std::to_string(curves));
}

void place_on_grid(std::span<const Point2> points, const GridChoice& choice, CurveNetwork& out) {
    out.grid = grid_for(points, choice);
    out.pts.SetSize(static_cast<int>(points.size()));
    out.largest_shift = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const GridPoint place = out.grid.nearest(points[i]);
        const Point2 moved = out.grid.to_user(place);
        out.pts[static_cast<int>(i)] = place;
        out.largest_shift = std::max({out.largest_shift, std::abs(moved[0] - points[i][0]),
                                      std::abs(moved[1] - points[i][1])});
    }
}

namespace {

void read_points(WordReader& words, int points, CurveNetwork& out) {
    const std::string curve = std::to_string(out.counts.GetSize() + 1);
    const int count_line = words.line();
    for (int point = 0; point < points; ++point) {
        if (words.at_end()) {
            words.fail_short(point, points,
                             "points of curve " + curve + ", whose count is in line " +
                                 std::to_string(count_line));
        }
        bool is_integer = true;
        const double x = words.next_coordinate("the x of a point", is_integer);
        const double y = words.next_coordinate("the y of a point", is_integer);
        add_point({x, y}, is_integer, out);
    }
}

// The first point that is none of integers makes decimals of all before it.
void add_point(const Point2& point, bool is_integer, CurveNetwork& out) {
    if (is_integer && out.decimals.empty()) {
        out.pts.Add({static_cast<int>(point[0]), static_cast<int>(point[1])});
        return;
    }
    if (out.decimals.empty()) {
        std::transform(begin(out.pts), end(out.pts), std::back_inserter(out.decimals),
                       [](const tagPOINT& before) { return to_point(before); });
        out.pts.RemoveAll();
    }
    out.decimals.push_back(point);
}

} // namespace
} // namespace korvel::kit
