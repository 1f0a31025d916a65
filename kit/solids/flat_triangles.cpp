#include "kit/solids/flat_triangles.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <utility>

#include "kit/base/vectors.h"
#include "kit/solids/triangle_sides.h"

namespace korvel::kit {
namespace {

bool divide_neighbours(TriangleList& list, std::vector<int>& flat);
TriangleSide longest_side(const TriangleList& list, int triangle);
std::span<const TriangleSide> sides_at(const std::vector<TriangleSide>& sides,
                                       const TriangleSide& edge);
void divide(TriangleList& list, int triangle, int flat, const TriangleSide& edge);
void drop_triangles(TriangleList& list, const std::vector<int>& dropped);

} // namespace

// Where flat triangles are neighbours, they go one after another.
void remove_flat_triangles(TriangleList& list, std::vector<int> flat) {
    constexpr int most_rounds = 16;
    for (int round = 0; round < most_rounds && !flat.empty(); ++round) {
        if (!divide_neighbours(list, flat)) {
            break;
        }
    }
    drop_triangles(list, flat);
}

namespace {

// Keeps those in `flat` that have no neighbour, or one that is flat too or divided already. Returns
// whether any was divided.
bool divide_neighbours(TriangleList& list, std::vector<int>& flat) {
    std::vector<int> all(list.size());
    std::iota(all.begin(), all.end(), 0);
    const std::vector<TriangleSide> sides = sides_of(list, all);
    std::vector<char> is_final(list.size(), 0);
    for (const int triangle : flat) {
        is_final[triangle] = 1;
    }
    const std::size_t before = flat.size();
    std::erase_if(flat, [&](int triangle) {
        const TriangleSide edge = longest_side(list, triangle);
        const std::span<const TriangleSide> around = sides_at(sides, edge);
        if (around.size() % 2 != 0) {
            return false;
        }
        for (const TriangleSide& side : around) {
            if (is_final[side.position()] == 0 && side.third != edge.third) {
                is_final[side.position()] = 1;
                divide(list, side.position(), triangle, edge);
                return true;
            }
        }
        return false;
    });
    return flat.size() < before;
}

TriangleSide longest_side(const TriangleList& list, int triangle) {
    const std::array<int, 3>& corners = list.corners[triangle];
    TriangleSide longest = {};
    double most = -1;
    for (std::size_t k = 0; k < 3; ++k) {
        const int from = corners[k];
        const int to = corners[(k + 1) % 3];
        const Point3 side = apart(list.points[from], list.points[to]);
        if (dot(side, side) > most) {
            most = dot(side, side);
            longest = {std::min(from, to), std::max(from, to), corners[(k + 2) % 3], 0};
        }
    }
    return longest;
}

std::span<const TriangleSide> sides_at(const std::vector<TriangleSide>& sides,
                                       const TriangleSide& edge) {
    const auto [first, last] = std::equal_range(
        sides.begin(), sides.end(), edge, [](const TriangleSide& a, const TriangleSide& b) {
            return std::pair(a.low, a.high) < std::pair(b.low, b.high);
        });
    return {first, last};
}

// At the point opposite of the edge; the flat triangle becomes the other part.
void divide(TriangleList& list, int triangle, int flat, const TriangleSide& edge) {
    list.corners[flat] = list.corners[triangle];
    std::replace(list.corners[triangle].begin(), list.corners[triangle].end(), edge.low,
                 edge.third);
    std::replace(list.corners[flat].begin(), list.corners[flat].end(), edge.high, edge.third);
}

void drop_triangles(TriangleList& list, const std::vector<int>& dropped) {
    if (dropped.empty()) {
        return;
    }
    std::vector<char> is_dropped(list.size(), 0);
    for (const int triangle : dropped) {
        is_dropped[triangle] = 1;
    }
    std::size_t kept = 0;
    auto end = list.part_ends.begin();
    for (std::size_t triangle = 0; triangle < is_dropped.size(); ++triangle) {
        for (; *end == triangle; ++end) {
            *end = kept;
        }
        if (is_dropped[triangle] == 0) {
            list.corners[kept] = list.corners[triangle];
            list.faces[kept++] = list.faces[triangle];
        }
    }
    std::fill(end, list.part_ends.end(), kept);
    list.corners.resize(kept);
    list.faces.resize(kept);
}

} // namespace
} // namespace korvel::kit
