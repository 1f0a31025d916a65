#include "kit/maps/noding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>

#include "kit/base/box_tree.h"
#include "kit/base/error.h"
#include "kit/base/radix_sort.h"
#include "kit/maps/equal_segments.h"
#include "kit/maps/grid_segment.h"

namespace korvel::kit {
namespace {

// Segments are numbered by the positions of their first points among the points of the network.
class Noding {
public:
    Noding(const Network& network, const Context& context, std::size_t most_crossings)
        : network_(network), points_(network.points()), context_(context),
          most_crossings_(most_crossings) {}

    void number_points();
    void divide_into_runs();
    void compare_runs();
    void add_crossings(); // as points, and where segments pass them
    NodedNetwork take_pieces();

private:
    static constexpr int longest_run = 12;

    // Successive segments of a curve, `first` to `end` − 1.
    struct Run {
        int first;
        int end;
    };
    // A point at which a segment is cut.
    struct Cut {
        int segment;
        int point;
    };

    GridSegment segment(int k) const { return {points_[k], points_[k + 1]}; }
    bool has_length(int k) const { return !is_same(points_[k], points_[k + 1]); }
    BoxTree::Box box_of(const Run& run) const;
    void compare(const Run& run, const Run& other);
    void compare(int s, int t);
    void compare_at_shared_end(int s, int t, int end_of_s, int end_of_t);
    void cut_where_passed(int s, int position);
    void cut(int segment, int point);
    void sort_distinct_cuts();
    void find_crossing(const GridPoint& point);
    void add_crossing(const GridPoint& point, const std::vector<int>& nearby);
    void report(std::string_view stage, std::size_t done, std::size_t all) const;

    const Network& network_;
    std::span<const GridPoint> points_;
    const Context& context_;
    std::size_t most_crossings_;
    std::vector<int> numbers_; // of the points by their positions, −1 for one without a segment
    std::vector<Run> runs_;
    BoxTree tree_; // of the runs with a margin
    std::vector<GridPoint> crossings_;
    std::size_t crossings_to_sort_ = 1024;
    std::vector<Cut> cuts_;
    std::size_t cuts_to_sort_ = 1024;
    NodedNetwork noded_;
};

} // namespace

NodedNetwork node(const Network& network, const Context& context, std::size_t most_crossings) {
    Noding noding(network, context, most_crossings);
    noding.number_points();
    noding.divide_into_runs();
    noding.compare_runs();
    noding.add_crossings();
    NodedNetwork noded = noding.take_pieces();
    leave_out_equal_segments(noded);
    return noded;
}

Error too_many_crossings(const std::string& network, std::size_t most) {
    const std::string advice = "split the file, or remove curves that cross many others";
    return input_error(network + ": the curves have more than " + std::to_string(most) +
                           " crossings, for which there is not enough memory: " + advice,
                       {.file = network, .advice = advice});
}

namespace {

void sort_distinct(std::vector<GridPoint>& points) {
    std::sort(points.begin(), points.end(), is_before);
    points.erase(std::unique(points.begin(), points.end(), is_same), points.end());
}

// In the order in which the curves reach them, so that neighbours are close in memory.
void Noding::number_points() {
    struct Place {
        std::uint64_t key;
        int position;
    };
    std::vector<Place> places;
    places.reserve(points_.size());
    int start = 0;
    for (int curve = 0; curve < network_.curve_count(); ++curve) {
        const int end = start + static_cast<int>(network_.curve(curve).size());
        for (int k = start; k < end; ++k) {
            if ((k > start && has_length(k - 1)) || (k + 1 < end && has_length(k))) {
                places.push_back({std::uint64_t{static_cast<std::uint32_t>(points_[k].x)} << 32U |
                                      static_cast<std::uint32_t>(points_[k].y),
                                  k});
            }
        }
        start = end;
    }
    radix_sort(places, [](const Place& place) { return place.key; });
    numbers_.assign(points_.size(), -1); // at first the position where a point is reached first
    for (std::size_t i = 0; i < places.size(); ++i) {
        const bool is_first = i == 0 || places[i].key != places[i - 1].key;
        numbers_[places[i].position] =
            is_first ? places[i].position : numbers_[places[i - 1].position];
    }
    for (std::size_t k = 0; k < numbers_.size(); ++k) {
        if (numbers_[k] == static_cast<int>(k)) {
            numbers_[k] = static_cast<int>(noded_.points.size());
            noded_.points.push_back(points_[k]);
        } else if (numbers_[k] >= 0) {
            numbers_[k] = numbers_[numbers_[k]];
        }
    }
}

// A tree of runs is as good as one of segments, because runs are short, and is built much sooner.
void Noding::divide_into_runs() {
    int start = 0;
    for (int curve = 0; curve < network_.curve_count(); ++curve) {
        const int last = start + static_cast<int>(network_.curve(curve).size()) - 1;
        for (; start < last; start = std::min(start + longest_run, last)) {
            runs_.push_back({start, std::min(start + longest_run, last)});
        }
        start = last + 1;
    }
    tree_ = BoxTree(runs_.size(), [&](std::size_t i) { return widened(box_of(runs_[i])); });
}

BoxTree::Box Noding::box_of(const Run& run) const {
    BoxTree::Box box;
    for (int k = run.first; k <= run.end; ++k) {
        box.take_in({points_[k].x, points_[k].y, points_[k].x, points_[k].y});
    }
    return box;
}

void Noding::compare_runs() {
    constexpr std::size_t step = 1 << 12;
    std::size_t done = 0; // runs compared with themselves
    std::size_t pairs = 0;
    tree_.for_each_pair([&](std::size_t i, std::size_t j) {
        compare(runs_[std::min(i, j)], runs_[std::max(i, j)]);
        done += i == j ? 1 : 0;
        if (++pairs % step == 0) {
            report("finding crossings", done, runs_.size());
        }
    });
}

void Noding::compare(const Run& run, const Run& other) {
    std::array<BoxTree::Box, longest_run> boxes; // of the other's segments, with a margin
    BoxTree::Box around;
    for (int t = other.first; t < other.end; ++t) {
        BoxTree::Box& box = boxes[t - other.first];
        box = widened(kit::box_of(segment(t)));
        around.take_in(box);
    }
    for (int s = run.first; s < run.end; ++s) {
        const BoxTree::Box box = kit::box_of(segment(s));
        if (!box.meets(around) || !has_length(s)) {
            continue;
        }
        for (int t = std::max(other.first, s + 1); t < other.end; ++t) {
            if (boxes[t - other.first].meets(box) && has_length(t)) {
                compare(s, t);
            }
        }
    }
}

void Noding::compare(int s, int t) {
    for (const int end_of_s : {s, s + 1}) {
        for (const int end_of_t : {t, t + 1}) {
            if (numbers_[end_of_s] == numbers_[end_of_t]) {
                compare_at_shared_end(s, t, end_of_s, end_of_t);
                return;
            }
        }
    }
    const GridSegment a = segment(s);
    const GridSegment b = segment(t);
    const WideInteger from = side(a.from, a.to, b.from);
    const WideInteger to = side(a.from, a.to, b.to);
    const WideInteger reach = reach_of(a);
    if (std::min(from, to) > reach || std::max(from, to) < -reach) {
        return; // one is too far from the line through the other
    }
    for (const int end : {t, t + 1}) {
        cut_where_passed(s, end);
    }
    for (const int end : {s, s + 1}) {
        cut_where_passed(t, end);
    }
    if (cross(a, b)) {
        find_crossing(rounded_crossing(a, b));
    }
}

// The area between the other two ends is too large, as a rule, for one to be near the other
// segment.
void Noding::compare_at_shared_end(int s, int t, int end_of_s, int end_of_t) {
    const int other_of_s = end_of_s == s ? s + 1 : s;
    const int other_of_t = end_of_t == t ? t + 1 : t;
    const WideInteger area = side(points_[s], points_[s + 1], points_[other_of_t]);
    const WideInteger size = area < 0 ? -area : area;
    if (size <= reach_of(segment(s))) {
        cut_where_passed(s, other_of_t);
    }
    if (size <= reach_of(segment(t))) {
        cut_where_passed(t, other_of_s);
    }
}

void Noding::cut_where_passed(int s, int position) {
    const int point = numbers_[position];
    if (point != numbers_[s] && point != numbers_[s + 1] && passes(segment(s), points_[position])) {
        cut(s, point);
    }
}

// Many cuts may be the same: pairs of segments are compared wherever their runs are.
void Noding::cut(int segment, int point) {
    cuts_.push_back({segment, point});
    if (cuts_.size() < cuts_to_sort_) {
        return;
    }
    sort_distinct_cuts();
    constexpr std::size_t cuts_of_crossing = 4;
    if (cuts_.size() / cuts_of_crossing > most_crossings_) {
        throw too_many_crossings(network_.name(), most_crossings_);
    }
    cuts_to_sort_ = 2 * cuts_.size() + 1024;
}

// By segments.
void Noding::sort_distinct_cuts() {
    const auto key = [](const Cut& cut) {
        return std::uint64_t{static_cast<std::uint32_t>(cut.segment)} << 32U |
               static_cast<std::uint32_t>(cut.point);
    };
    radix_sort(cuts_, key);
    cuts_.erase(std::unique(cuts_.begin(), cuts_.end(),
                            [&](const Cut& a, const Cut& b) { return key(a) == key(b); }),
                cuts_.end());
}

// Many may be the same.
void Noding::find_crossing(const GridPoint& point) {
    crossings_.push_back(point);
    if (crossings_.size() < crossings_to_sort_) {
        return;
    }
    sort_distinct(crossings_);
    if (crossings_.size() > most_crossings_) {
        throw too_many_crossings(network_.name(), most_crossings_);
    }
    crossings_to_sort_ = 2 * crossings_.size() + 1024;
}

void Noding::add_crossings() {
    sort_distinct(crossings_);
    if (crossings_.size() > most_crossings_) {
        throw too_many_crossings(network_.name(), most_crossings_);
    }
    constexpr std::size_t step = 1 << 12;
    std::vector<int> nearby; // segments
    for (std::size_t i = 0; i < crossings_.size(); ++i) {
        const GridPoint& point = crossings_[i];
        const BoxTree::Box box = widened({point.x, point.y, point.x, point.y});
        nearby.clear();
        tree_.for_each_at(box, [&](std::size_t run) {
            for (int s = runs_[run].first; s < runs_[run].end; ++s) {
                if (kit::box_of(segment(s)).meets(box) && has_length(s)) {
                    nearby.push_back(s);
                }
            }
        });
        add_crossing(point, nearby);
        if (i % step == 0) {
            report("rounding crossings", i, crossings_.size());
        }
    }
}

// As a point, unless it is one, and where segments pass it.
void Noding::add_crossing(const GridPoint& point, const std::vector<int>& nearby) {
    for (const int s : nearby) {
        if (is_same(points_[s], point) || is_same(points_[s + 1], point)) {
            return; // segments that pass it have been cut
        }
    }
    const int number = static_cast<int>(noded_.points.size());
    noded_.points.push_back(point);
    ++noded_.crossings;
    for (const int s : nearby) {
        if (passes(segment(s), point)) {
            cut(s, number);
        }
    }
}

// A segment runs through the points that it passes, in their order along it.
NodedNetwork Noding::take_pieces() {
    sort_distinct_cuts();
    noded_.segments.reserve(points_.size() + cuts_.size());
    auto next = cuts_.begin();
    std::vector<std::pair<WideInteger, int>> along;
    int start = 0;
    for (int curve = 0; curve < network_.curve_count(); ++curve) {
        const int last = start + static_cast<int>(network_.curve(curve).size()) - 1;
        for (int s = start; s < last; ++s) {
            if (!has_length(s)) {
                continue;
            }
            along.clear();
            for (; next != cuts_.end() && next->segment == s; ++next) {
                along.emplace_back(place_along(segment(s), noded_.points[next->point]),
                                   next->point);
            }
            std::sort(along.begin(), along.end());
            int from = numbers_[s];
            for (const auto& [place, point] : along) {
                noded_.segments.push_back({std::exchange(from, point), point, curve});
            }
            noded_.segments.push_back({from, numbers_[s + 1], curve});
        }
        start = last + 1;
    }
    return std::move(noded_);
}

void Noding::report(std::string_view stage, std::size_t done, std::size_t all) const {
    context_.report(stage, static_cast<long long>(done), static_cast<long long>(all));
}

} // namespace
} // namespace korvel::kit
