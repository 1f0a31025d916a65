#include "kit/solids/mesh_shells.h"

#include <algorithm>
#include <span>
#include <utility>

#include "kit/base/disjoint_sets.h"
#include "kit/base/vectors.h"
#include "kit/solids/turned_sets.h"

namespace korvel::kit {
namespace {

// Of coincident triangles: one that runs like an earlier one, or against it.
constexpr char is_repeated = 1;
constexpr char is_first = 2;
constexpr char is_second = 3;

// The steps from triangles to shells. They number the triangles by position.
class ShellFinder {
public:
    ShellFinder(const TriangleList& list, const std::vector<int>& triangles,
                std::vector<signed char>& turns)
        : list_(list), triangles_(triangles), turns_(turns), sets_(triangles.size()),
          is_doubled_(triangles.size(), 0), is_open_(triangles.size(), 0) {}

    Shells run();

private:
    void find_coincident();
    void connect_pairs();
    void run_as_most();
    void run_outward_in_pieces();
    void connect_crowded();
    Shells collect();
    void leave_out_folded(Shell& shell) const;
    void measure(Shell& shell) const;
    double volume_seen_from(const Point3& origin, int triangle) const;
    int count() const { return static_cast<int>(triangles_.size()); }
    signed char& turn_of(int position) { return turns_[triangles_[position]]; }

    const TriangleList& list_;
    const std::vector<int>& triangles_;
    std::vector<signed char>& turns_;
    TurnedSets sets_;
    std::vector<char> is_doubled_;
    std::vector<char> is_open_; // at one edge at least
    std::vector<TriangleSide> sides_;
    std::vector<std::pair<int, int>> folded_; // coincident triangles that run against one another
    bool has_crowded_edges_ = false;
};

} // namespace

Shells shells_of(const TriangleList& list, const std::vector<int>& triangles,
                 std::vector<signed char>& turns) {
    return ShellFinder(list, triangles, turns).run();
}

namespace {

// Where an edge has more than two triangles, those that belong together follow from how they run,
// and a few that run the wrong way are recognized by their neighbours at other edges.
Shells ShellFinder::run() {
    sides_ = sides_of(list_, triangles_);
    find_coincident();
    connect_pairs();
    if (has_crowded_edges_) {
        run_as_most();
        run_outward_in_pieces();
        connect_crowded();
    }
    run_as_most();
    return collect();
}

// Of triangles with the same corners that run alike, the first one remains. Each has one edge
// between its two lower points.
void ShellFinder::find_coincident() {
    bool is_any_doubled = false;
    std::vector<TriangleSide> sorted;
    for_each_edge(sides_, [&](std::span<const TriangleSide> edge) {
        if (edge.size() == 1 || (edge.size() == 2 && edge[0].third != edge[1].third)) {
            return;
        }
        sorted.assign(edge.begin(), edge.end());
        std::erase_if(sorted, [](const TriangleSide& side) { return side.third < side.high; });
        std::stable_sort(
            sorted.begin(), sorted.end(),
            [](const TriangleSide& a, const TriangleSide& b) { return a.third < b.third; });
        for (std::size_t first = 0, i = 1; i < sorted.size(); ++i) {
            if (sorted[i].third != sorted[first].third) {
                first = i;
            } else if (sorted[i].ascends() != sorted[first].ascends() && i == first + 1) {
                folded_.emplace_back(sorted[first].position(), sorted[i].position());
            } else {
                is_doubled_[sorted[i].position()] = is_repeated;
                is_any_doubled = true;
            }
        }
    });
    if (is_any_doubled) {
        std::erase_if(sides_,
                      [&](const TriangleSide& side) { return is_doubled_[side.position()] != 0; });
    }
}

void ShellFinder::connect_pairs() {
    for_each_edge(sides_, [&](std::span<const TriangleSide> edge) {
        if (edge.size() == 2) {
            sets_.join(edge[0].position(), edge[1].position(),
                       edge[0].ascends() == edge[1].ascends());
        }
        if (edge.size() == 1) {
            is_open_[edge[0].position()] = 1;
        }
        has_crowded_edges_ = has_crowded_edges_ || edge.size() > 2;
    });
}

// Turns the triangles of each set alike, as most of them run in the mesh.
void ShellFinder::run_as_most() {
    std::vector<int> excess(triangles_.size(), 0); // of those that run like the first one, by that
    for (int position = 0; position < count(); ++position) {
        const auto [root, is_against] = sets_.root(position);
        excess[root] += is_against ? -1 : 1;
    }
    for (int position = 0; position < count(); ++position) {
        const auto [root, is_against] = sets_.root(position);
        turn_of(position) = is_against == (excess[root] < 0) ? 1 : -1;
    }
}

// A piece of the mesh, connected over any edges, that is inside out.
void ShellFinder::run_outward_in_pieces() {
    DisjointSets pieces(count());
    for_each_edge(sides_, [&](std::span<const TriangleSide> edge) {
        for (std::size_t i = 1; i < edge.size(); ++i) {
            pieces.join(edge[0].position(), edge[i].position());
        }
    });
    std::vector<double> volumes(triangles_.size(), 0);
    for (int position = 0; position < count(); ++position) {
        const int root = pieces.root(position);
        const Point3& origin = list_.points[list_.corners[triangles_[root]][0]];
        volumes[root] += turn_of(position) * volume_seen_from(origin, triangles_[position]);
    }
    for (int position = 0; position < count(); ++position) {
        if (volumes[pieces.root(position)] < 0) {
            turn_of(position) = static_cast<signed char>(-turn_of(position));
        }
    }
}

void ShellFinder::connect_crowded() {
    std::vector<bool> ascends;
    for_each_edge(sides_, [&](std::span<const TriangleSide> edge) {
        if (edge.size() <= 2) {
            return;
        }
        ascends.clear();
        for (const TriangleSide& side : edge) {
            ascends.push_back(side.ascends() == (turn_of(side.position()) > 0));
        }
        std::vector<char> is_paired(edge.size(), 0);
        for (const auto& [a, b] : pairs_around_edge(edge, ascends, list_.points)) {
            is_paired[a] = is_paired[b] = 1;
            sets_.join(edge[a].position(), edge[b].position(),
                       edge[a].ascends() == edge[b].ascends());
        }
        for (std::size_t i = 0; i < edge.size(); ++i) {
            if (is_paired[i] == 0) {
                is_open_[edge[i].position()] = 1;
            }
        }
    });
}

Shells ShellFinder::collect() {
    Shells found;
    std::vector<int> shell_of(triangles_.size(), -1); // by the first triangle of its set
    for (const auto& [first, second] : folded_) {
        if (sets_.root(first).first == sets_.root(second).first) {
            is_doubled_[first] = is_first;
            is_doubled_[second] = is_second;
        }
    }
    for (int position = 0; position < count(); ++position) {
        if (is_doubled_[position] == is_repeated) {
            ++found.doubled;
            continue;
        }
        int& shell = shell_of[sets_.root(position).first];
        if (shell < 0) {
            shell = static_cast<int>(found.shells.size());
            found.shells.emplace_back();
        }
        Shell& own = found.shells[shell];
        own.triangles.push_back(position);
        own.is_closed = own.is_closed && is_open_[position] == 0;
        own.is_turned_alike = own.is_turned_alike && turn_of(position) > 0;
    }
    for (Shell& shell : found.shells) {
        const std::size_t before = shell.triangles.size();
        if (!folded_.empty()) {
            leave_out_folded(shell);
        }
        found.doubled += static_cast<int>(before - shell.triangles.size());
        for (int& triangle : shell.triangles) {
            triangle = triangles_[triangle];
        }
        measure(shell);
    }
    found.sides = std::move(sides_);
    return found;
}

// Both of a pair, which enclose nothing, unless that leaves an open shell more open, or nothing.
void ShellFinder::leave_out_folded(Shell& shell) const {
    const auto is_folded = [&](int position) { return is_doubled_[position] != 0; };
    if (std::all_of(shell.triangles.begin(), shell.triangles.end(), is_folded)) {
        shell.is_closed = false;
    }
    std::erase_if(shell.triangles, [&](int position) {
        return shell.is_closed ? is_folded(position) : is_doubled_[position] == is_second;
    });
}

// By tetrahedra from a corner, so that a place far from the origin costs no digits.
void ShellFinder::measure(Shell& shell) const {
    const Point3& origin = list_.points[list_.corners[shell.triangles[0]][0]];
    double sum = 0;
    double lost = 0; // of the sum's last digits (W. Kahan, 1965)
    for (const int triangle : shell.triangles) {
        for (const int corner : list_.corners[triangle]) {
            shell.box.take_in(list_.points[corner]);
        }
        const double term = turns_[triangle] * volume_seen_from(origin, triangle) - lost;
        const double next = sum + term;
        lost = (next - sum) - term;
        sum = next;
    }
    shell.volume = shell.is_closed ? sum / 6 : 0;
}

// Six times the volume of the tetrahedron.
double ShellFinder::volume_seen_from(const Point3& origin, int triangle) const {
    const auto& [a, b, c] = list_.corners[triangle];
    const std::vector<Point3>& points = list_.points;
    return dot(apart(origin, points[a]), cross(apart(origin, points[b]), apart(origin, points[c])));
}

} // namespace
} // namespace korvel::kit
