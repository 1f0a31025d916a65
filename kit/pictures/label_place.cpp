#include "kit/pictures/label_place.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <queue>

namespace korvel::kit {
namespace {

using Ring = std::vector<Point2>;

/// A square of positions.
struct Cell {
    Point2 middle;
    double half;
    double most_room; ///< that a position in it may have

    bool operator<(const Cell& other) const { return most_room < other.most_room; }
};

/// Searches in units of half the label's width and height, in which the room is the distance to
/// the nearest side, the distance of two points being the larger one of those along x and y.
class PlaceSearch {
public:
    explicit PlaceSearch(const std::vector<Ring>& rings);
    LabelPlace run(double least);

private:
    void add_cells(const Rectangle& box);
    void try_cell(const Point2& middle, double half);
    double room_at(const Point2& point, double needed) const;
    /// What more room than the best position so far has to have.
    double needed() const { return std::max(least_, 1.1 * best_.room); }

    const std::vector<Ring>& rings_;
    std::priority_queue<Cell> cells_;
    LabelPlace best_;
    double least_ = 0;
    int tried_ = 0;
};

std::vector<Ring> scaled(const std::vector<Ring>& rings, double unit_x, double unit_y);
double distance(const Point2& from, const Point2& start, const Point2& end);
Point2 centroid_of_largest(const std::vector<Ring>& rings);
Rectangle box_of(const std::vector<Ring>& rings);

} // namespace

std::optional<LabelPlace> find_label_place(const std::vector<std::vector<Point2>>& rings,
                                           double width, double height, double least) {
    const std::vector<Ring> in_halves = scaled(rings, width / 2, height / 2);
    if (in_halves.empty()) {
        return {};
    }
    LabelPlace place = PlaceSearch(in_halves).run(least);
    place.middle = {place.middle[0] * width / 2, place.middle[1] * height / 2};
    return place.room >= least ? std::optional(place) : std::nullopt;
}

namespace {

// Without corners that are nearer to the one before than the room is looked for, which makes the
// rings of dense outlines as short as the picture is fine.
std::vector<Ring> scaled(const std::vector<Ring>& rings, double unit_x, double unit_y) {
    constexpr double nearest = 0.05;
    std::vector<Ring> result;
    for (const Ring& ring : rings) {
        Ring kept;
        for (const Point2& corner : ring) {
            const Point2 at = {corner[0] / unit_x, corner[1] / unit_y};
            if (kept.empty() || std::abs(at[0] - kept.back()[0]) > nearest ||
                std::abs(at[1] - kept.back()[1]) > nearest) {
                kept.push_back(at);
            }
        }
        if (kept.size() > 2) {
            result.push_back(std::move(kept));
        }
    }
    return result;
}

PlaceSearch::PlaceSearch(const std::vector<Ring>& rings) : rings_(rings) {}

// Divides the square with the most room possible until no other can have clearly more than the best
// position found.
LabelPlace PlaceSearch::run(double least) {
    constexpr double plenty = 1.3;
    constexpr int most_tried = 2000;
    least_ = least;
    const Rectangle box = box_of(rings_);
    if (std::min(box.right - box.left, box.bottom - box.top) < 2 * least) {
        return {};
    }
    try_cell(centroid_of_largest(rings_), 0);
    if (best_.room >= plenty) {
        return best_;
    }
    add_cells(box);
    while (!cells_.empty() && cells_.top().most_room > needed() && tried_ < most_tried) {
        const Cell cell = cells_.top();
        cells_.pop();
        const double half = cell.half / 2;
        for (const double dx : {-half, half}) {
            for (const double dy : {-half, half}) {
                try_cell({cell.middle[0] + dx, cell.middle[1] + dy}, half);
            }
        }
    }
    return best_;
}

// Squares that cover the rings.
void PlaceSearch::add_cells(const Rectangle& box) {
    const double width = box.right - box.left;
    const double height = box.bottom - box.top;
    const double side = std::min(width, height);
    for (double x = side / 2; x < width + side / 2; x += side) {
        for (double y = side / 2; y < height + side / 2; y += side) {
            try_cell({box.left + x, box.top + y}, side / 2);
        }
    }
}

void PlaceSearch::try_cell(const Point2& middle, double half) {
    ++tried_;
    const double room = room_at(middle, needed() - half);
    if (room > 1.1 * best_.room) { // those tried first are more in the middle
        best_ = {middle, room};
    }
    if (room + half > needed()) {
        cells_.push({middle, half, room + half});
    }
}

// Negative outside. Ends as soon as it is clear that the position is not farther than `needed` from
// the nearest side.
double PlaceSearch::room_at(const Point2& point, double needed) const {
    double room = std::numeric_limits<double>::infinity();
    bool is_inside = false;
    for (const Ring& ring : rings_) {
        const Point2* a = &ring.back();
        for (const Point2& b : ring) {
            room = std::min(room, distance(point, *a, b));
            if (room < needed) {
                return -room;
            }
            if (((*a)[1] > point[1]) != (b[1] > point[1])) {
                const double part = (point[1] - (*a)[1]) / (b[1] - (*a)[1]);
                is_inside = is_inside != ((*a)[0] + part * (b[0] - (*a)[0]) < point[0]);
            }
            a = &b;
        }
    }
    return is_inside ? room : -room;
}

// The larger of |x| and |y| is least at an end of the segment or where both are equal.
double distance(const Point2& from, const Point2& start, const Point2& end) {
    const double x0 = start[0] - from[0];
    const double y0 = start[1] - from[1];
    const double x1 = end[0] - from[0];
    const double y1 = end[1] - from[1];
    double least =
        std::min(std::max(std::abs(x0), std::abs(y0)), std::max(std::abs(x1), std::abs(y1)));
    for (const double sign : {-1.0, 1.0}) {
        const double a = x0 + sign * y0;
        const double b = x1 + sign * y1;
        if ((a < 0) != (b < 0)) {
            least = std::min(least, std::abs(x0 + a / (a - b) * (x1 - x0)));
        }
    }
    return least;
}

Point2 centroid_of_largest(const std::vector<Ring>& rings) {
    double largest = -1;
    Point2 centroid = {};
    for (const Ring& ring : rings) {
        const Point2 first = ring[0];
        double sum = 0;
        Point2 moment = {};
        for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
            const Point2 a = {ring[i][0] - first[0], ring[i][1] - first[1]};
            const Point2 b = {ring[i + 1][0] - first[0], ring[i + 1][1] - first[1]};
            const double cross = a[0] * b[1] - a[1] * b[0];
            sum += cross;
            moment = {moment[0] + cross * (a[0] + b[0]), moment[1] + cross * (a[1] + b[1])};
        }
        if (std::abs(sum) > largest) {
            largest = std::abs(sum);
            centroid = {first[0] + moment[0] / sum / 3, first[1] + moment[1] / sum / 3};
        }
    }
    return centroid;
}

Rectangle box_of(const std::vector<Ring>& rings) {
    Rectangle box;
    for (const Ring& ring : rings) {
        for (const Point2& corner : ring) {
            box.take_in(corner[0], corner[1]);
        }
    }
    return box;
}

} // namespace

bool TakenPlaces::take(const Rectangle& place) {
    const auto overlaps = [&](const Rectangle& other) {
        return other.left < place.right && place.left < other.right && other.top < place.bottom &&
               place.top < other.bottom;
    };
    const int row = static_cast<int>(std::floor(place.top / row_height_));
    for (const int beside : {row - 1, row, row + 1}) {
        const auto found = rows_.find(beside);
        if (found != rows_.end() &&
            std::any_of(found->second.begin(), found->second.end(), overlaps)) {
            return false;
        }
    }
    rows_[row].push_back(place);
    return true;
}

} // namespace korvel::kit
