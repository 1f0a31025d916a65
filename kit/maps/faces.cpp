#include "kit/maps/faces.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <stdexcept>
#include <utility>

#include "kit/base/areas.h"
#include "kit/base/disjoint_sets.h"
#include "kit/maps/border_index.h"
#include "kit/maps/grid_segment.h"
#include "kit/maps/regions_of_rings.h"

namespace korvel::kit {
namespace {

// Segment i is the half-edges 2i, as it runs, and 2i + 1, against it. Each has a face on its left.
class Tracing {
public:
    explicit Tracing(const NodedNetwork& network);

    void mark_dangling();
    void trace_cycles(); // along the segments that are borders so far
    bool mark_bridges(); // of which both half-edges are in one cycle; false for none
    void find_components();
    void nest_components();
    Faces take_faces();

private:
    struct Cycle {
        int first = 0; // half-edge
        WideInteger twice_area = 0;
        std::vector<int> inside; // of a face: the outlines of the components directly inside
    };
    using Ring = PointRing;

    int origin(int half_edge) const;
    int target(int half_edge) const { return origin(half_edge ^ 1); }
    bool is_border(int half_edge) const {
        return kinds_[static_cast<std::size_t>(half_edge / 2)] == SegmentKind::border;
    }
    bool is_face(int cycle) const { return cycles_[cycle].twice_area > 0; }
    const GridPoint& point(int index) const { return network_.points[index]; }
    WideInteger turn(int a, int b, int c) const { return side(point(a), point(b), point(c)); }
    void sort_around_points();
    WideInteger twice_area(int first) const;
    void nest(int component, int below);
    std::vector<Ring> simple_rings(int cycle);
    WideInteger twice_area(const Ring& ring) const;
    void check() const;
    std::vector<std::array<int, 2>> sides() const;
    void free_what_is_done();

    const NodedNetwork& network_;
    std::vector<SegmentKind> kinds_;
    std::vector<int> around_;     // the half-edges that leave a point, counter-clockwise, by points
    std::vector<int> first_at_;   // of each point in `around_`, and the end
    std::vector<int> next_;       // half-edge along the same face
    std::vector<int> cycle_of_;   // of each half-edge, −1 for none
    std::vector<Cycle> cycles_;   // in the order of their first half-edges
    std::vector<int> component_;  // of each point
    std::vector<int> outline_of_; // of each component: its cycle of negative area
    std::vector<int> face_around_; // of each component: the cycle directly around it, −1 for none
    std::vector<int> place_;       // of each point in the ring that is traced, −1 for none
};

} // namespace

Faces faces_of(const NodedNetwork& network, const Context& context) {
    constexpr int steps = 3;
    Tracing tracing(network);
    context.report("tracing faces", 0, steps);
    tracing.mark_dangling();
    tracing.trace_cycles();
    context.report("tracing faces", 1, steps);
    if (tracing.mark_bridges()) {
        tracing.trace_cycles();
    }
    tracing.find_components();
    tracing.nest_components();
    context.report("tracing faces", 2, steps);
    return tracing.take_faces();
}

namespace {

Tracing::Tracing(const NodedNetwork& network)
    : network_(network), kinds_(network.segments.size(), SegmentKind::border),
      place_(network.points.size(), -1) {}

void Tracing::mark_dangling() {
    std::vector<int> degrees(network_.points.size(), 0);
    for (const NodedSegment& segment : network_.segments) {
        ++degrees[segment.from];
        ++degrees[segment.to];
    }
    // A point's segments that are left, combined bit by bit: once one is left, that one.
    std::vector<int> left(network_.points.size(), 0);
    for (std::size_t i = 0; i < network_.segments.size(); ++i) {
        left[network_.segments[i].from] ^= static_cast<int>(i);
        left[network_.segments[i].to] ^= static_cast<int>(i);
    }
    for (std::size_t start = 0; start < degrees.size(); ++start) {
        for (std::size_t point = start; degrees[point] == 1;) {
            const auto i = static_cast<std::size_t>(left[point]);
            const NodedSegment& segment = network_.segments[i];
            kinds_[i] = SegmentKind::dangling;
            for (const int end : {segment.from, segment.to}) {
                --degrees[end];
                left[end] ^= static_cast<int>(i);
            }
            point = static_cast<std::size_t>(segment.from) == point ? segment.to : segment.from;
        }
    }
}

int Tracing::origin(int half_edge) const {
    const NodedSegment& segment = network_.segments[static_cast<std::size_t>(half_edge / 2)];
    return half_edge % 2 == 0 ? segment.from : segment.to;
}

void Tracing::sort_around_points() {
    first_at_.assign(network_.points.size() + 1, 0);
    const int half_edges = 2 * static_cast<int>(network_.segments.size());
    for (int h = 0; h < half_edges; ++h) {
        first_at_[origin(h) + 1] += is_border(h) ? 1 : 0;
    }
    std::partial_sum(first_at_.begin(), first_at_.end(), first_at_.begin());
    around_.resize(static_cast<std::size_t>(first_at_.back()));
    std::vector<int> ends(first_at_.begin(), first_at_.end() - 1);
    for (int h = 0; h < half_edges; ++h) {
        if (is_border(h)) {
            around_[ends[origin(h)]++] = h;
        }
    }
    // Those to the right, or straight up, come first.
    const auto is_first = [&](int a, int b) {
        const bool is_right_a = is_before(point(origin(a)), point(target(a)));
        const bool is_right_b = is_before(point(origin(b)), point(target(b)));
        return is_right_a != is_right_b ? is_right_a : turn(origin(a), target(a), target(b)) > 0;
    };
    for (std::size_t point = 0; point < network_.points.size(); ++point) {
        if (first_at_[point + 1] - first_at_[point] > 2) { // two are in order either way
            std::sort(around_.begin() + first_at_[point], around_.begin() + first_at_[point + 1],
                      is_first);
        }
    }
}

void Tracing::trace_cycles() {
    sort_around_points();
    next_.assign(2 * network_.segments.size(), -1);
    for (std::size_t point = 0; point < network_.points.size(); ++point) {
        const int first = first_at_[point];
        const int end = first_at_[point + 1];
        for (int k = first; k < end;
             ++k) { // arriving against `around_[k]`, leaving clockwise of it
            next_[around_[k] ^ 1] = around_[k > first ? k - 1 : end - 1];
        }
    }
    cycle_of_.assign(next_.size(), -1);
    cycles_.clear();
    for (int h = 0; h < static_cast<int>(next_.size()); ++h) {
        if (next_[h] < 0 || cycle_of_[h] >= 0) {
            continue;
        }
        for (int k = h; cycle_of_[k] < 0; k = next_[k]) {
            cycle_of_[k] = static_cast<int>(cycles_.size());
        }
        cycles_.push_back({h, twice_area(h), {}});
    }
}

WideInteger Tracing::twice_area(int first) const {
    WideInteger sum = 0;
    for (int h = next_[first]; h != first; h = next_[h]) {
        sum += turn(origin(first), origin(h), target(h));
    }
    return sum;
}

bool Tracing::mark_bridges() {
    bool is_any = false;
    for (std::size_t i = 0; i < kinds_.size(); ++i) {
        if (kinds_[i] == SegmentKind::border && cycle_of_[2 * i] == cycle_of_[2 * i + 1]) {
            kinds_[i] = SegmentKind::bridge;
            is_any = true;
        }
    }
    return is_any;
}

// Components are numbered by their first points.
void Tracing::find_components() {
    DisjointSets sets(static_cast<int>(network_.points.size()));
    for (int h = 0; h < static_cast<int>(next_.size()); h += 2) {
        if (is_border(h)) {
            sets.join(origin(h), target(h));
        }
    }
    component_.assign(network_.points.size(), -1);
    std::vector<int> number_of_root(network_.points.size(), -1);
    int count = 0;
    for (int point = 0; point < static_cast<int>(network_.points.size()); ++point) {
        if (first_at_[point] < first_at_[point + 1]) {
            int& number = number_of_root[sets.root(point)];
            number = number < 0 ? count++ : number;
            component_[point] = number;
        }
    }
    outline_of_.assign(static_cast<std::size_t>(count), -1);
    for (int cycle = 0; cycle < static_cast<int>(cycles_.size()); ++cycle) {
        if (!is_face(cycle)) {
            outline_of_[component_[origin(cycles_[cycle].first)]] = cycle;
        }
    }
    face_around_.assign(static_cast<std::size_t>(count), -1);
}

// The border below the leftmost point of a component shows what is around the component: another
// component, which is farther left and has been nested before.
void Tracing::nest_components() {
    const auto count = static_cast<int>(outline_of_.size());
    if (count < 2) {
        return;
    }
    std::vector<int> leftmost(static_cast<std::size_t>(count), -1); // points
    for (int p = 0; p < static_cast<int>(component_.size()); ++p) {
        if (component_[p] >= 0) {
            int& first = leftmost[component_[p]];
            first = first < 0 || is_before(point(p), point(first)) ? p : first;
        }
    }
    std::sort(leftmost.begin(), leftmost.end(),
              [&](int p, int q) { return is_before(point(p), point(q)); });
    const BorderIndex borders(network_, kinds_);
    for (const int p : leftmost) {
        nest(component_[p], borders.below(point(p)));
    }
}

// `below` is the border below the component, as a half-edge to the right, or −1.
void Tracing::nest(int component, int below) {
    if (below < 0) {
        return;
    }
    const int cycle = cycle_of_[below];
    const int around = is_face(cycle) ? cycle : face_around_[component_[origin(below)]];
    face_around_[component] = around;
    if (around >= 0) {
        cycles_[around].inside.push_back(outline_of_[component]);
    }
}

Faces Tracing::take_faces() {
    check();
    Faces faces;
    faces.components = static_cast<int>(outline_of_.size());
    std::vector<std::vector<Ring>> rings_of_faces;
    for (int cycle = 0; cycle < static_cast<int>(cycles_.size()); ++cycle) {
        if (!is_face(cycle)) {
            continue;
        }
        std::vector<Ring>& rings = rings_of_faces.emplace_back(simple_rings(cycle));
        const auto outer = std::find_if(rings.begin(), rings.end(),
                                        [&](const Ring& ring) { return twice_area(ring) > 0; });
        std::rotate(rings.begin(), outer, outer + 1);
        for (const int outline : cycles_[cycle].inside) {
            for (Ring& ring : simple_rings(outline)) {
                rings.push_back(std::move(ring));
            }
        }
    }
    faces.sides = sides();
    free_what_is_done();
    faces.regions = regions_of(rings_of_faces, network_.points);
    faces.kinds = std::move(kinds_);
    return faces;
}

std::vector<std::array<int, 2>> Tracing::sides() const {
    std::vector<int> region_of(cycles_.size(), -1);
    int regions = 0;
    for (int cycle = 0; cycle < static_cast<int>(cycles_.size()); ++cycle) {
        region_of[cycle] = is_face(cycle) ? regions++ : -1;
    }
    for (std::size_t component = 0; component < outline_of_.size(); ++component) {
        const int around = face_around_[component];
        region_of[outline_of_[component]] = around < 0 ? -1 : region_of[around];
    }
    std::vector<std::array<int, 2>> sides(kinds_.size(), {-1, -1});
    for (std::size_t i = 0; i < kinds_.size(); ++i) {
        if (is_border(static_cast<int>(2 * i))) {
            sides[i] = {region_of[cycle_of_[2 * i]], region_of[cycle_of_[2 * i + 1]]};
        }
    }
    return sides;
}

// The regions that are made next take more memory than all else.
void Tracing::free_what_is_done() {
    for (std::vector<int>* list :
         {&around_, &first_at_, &next_, &cycle_of_, &component_, &place_}) {
        std::vector<int>().swap(*list);
    }
}

// A cycle that passes a point again goes round a ring of its own in between.
std::vector<Tracing::Ring> Tracing::simple_rings(int cycle) {
    std::vector<Ring> rings;
    Ring open;
    int h = cycles_[cycle].first;
    do {
        const int point = origin(h);
        int& place = place_[point];
        if (place < 0) {
            place = static_cast<int>(open.size());
            open.push_back(point);
        } else {
            rings.emplace_back(open.begin() + place, open.end());
            for (const int left : std::span(open).subspan(static_cast<std::size_t>(place) + 1)) {
                place_[left] = -1;
            }
            open.resize(static_cast<std::size_t>(place) + 1);
        }
        h = next_[h];
    } while (h != cycles_[cycle].first);
    for (const int left : open) {
        place_[left] = -1;
    }
    rings.push_back(std::move(open));
    return rings;
}

WideInteger Tracing::twice_area(const Ring& ring) const {
    WideInteger sum = 0;
    for (std::size_t k = 1; k + 1 < ring.size(); ++k) {
        sum += turn(ring[0], ring[k], ring[k + 1]);
    }
    return sum;
}

void Tracing::check() const {
    long long faces = 0;
    WideInteger area = 0;
    for (int cycle = 0; cycle < static_cast<int>(cycles_.size()); ++cycle) {
        if (is_face(cycle)) {
            ++faces;
            area += cycles_[cycle].twice_area;
            for (const int outline : cycles_[cycle].inside) {
                area += cycles_[outline].twice_area;
            }
        }
    }
    for (std::size_t component = 0; component < outline_of_.size(); ++component) {
        if (face_around_[component] < 0) {
            area += cycles_[outline_of_[component]].twice_area;
        }
    }
    const auto borders = std::count(kinds_.begin(), kinds_.end(), SegmentKind::border);
    const auto points = std::count_if(component_.begin(), component_.end(),
                                      [](int component) { return component >= 0; });
    const auto components = static_cast<long long>(outline_of_.size());
    if (faces != borders - points + components || area != 0) {
        throw std::logic_error("the faces of the network do not add up");
    }
}

} // namespace
} // namespace korvel::kit
