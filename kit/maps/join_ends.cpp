#include "kit/maps/join_ends.h"

#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace korvel::kit {
namespace {

// Ends that have not moved, in cells of the radius.
class Nodes {
public:
    explicit Nodes(double radius) : radius_(radius) {}

    // The first node near a point, which becomes a node itself if there is none.
    GridPoint node_near(const GridPoint& point) {
        const std::int64_t column = cell(point.x);
        const std::int64_t row = cell(point.y);
        int first = -1;
        for (std::int64_t i = column - 1; i <= column + 1; ++i) {
            for (std::int64_t k = row - 1; k <= row + 1; ++k) {
                const auto [begin, end] = nodes_of_cell_.equal_range(key(i, k));
                for (auto node = begin; node != end; ++node) {
                    if (is_near(nodes_[node->second], point) &&
                        (first < 0 || node->second < first)) {
                        first = node->second;
                    }
                }
            }
        }
        if (first >= 0) {
            return nodes_[first];
        }
        nodes_of_cell_.emplace(key(column, row), static_cast<int>(nodes_.size()));
        nodes_.push_back(point);
        return point;
    }

private:
    std::int64_t cell(int coordinate) const {
        return static_cast<std::int64_t>(std::floor(coordinate / radius_));
    }
    // Cells that share a key are distinguished by the distance.
    static std::uint64_t key(std::int64_t column, std::int64_t row) {
        return static_cast<std::uint64_t>(column) * 0x9e3779b97f4a7c15U +
               static_cast<std::uint64_t>(row);
    }
    bool is_near(const GridPoint& a, const GridPoint& b) const {
        return std::hypot(static_cast<double>(a.x) - b.x, static_cast<double>(a.y) - b.y) < radius_;
    }

    double radius_;
    std::vector<GridPoint> nodes_;
    std::unordered_multimap<std::uint64_t, int> nodes_of_cell_;
};

} // namespace

std::optional<JoinedEnds> join_ends(const Network& network, double tolerance) {
    constexpr double radius_of_0 = 3;
    const double radius = tolerance == 0 ? radius_of_0 : std::abs(tolerance) / 2;
    if (radius <= 1) {
        return std::nullopt;
    }
    Nodes nodes(radius);
    JoinedEnds joined;
    std::vector<GridPoint> points;
    for (int i = 0; i < network.curve_count(); ++i) {
        points.assign(network.curve(i).begin(), network.curve(i).end());
        if (!points.empty()) {
            for (GridPoint* const end : {&points.front(), &points.back()}) {
                const GridPoint node = nodes.node_near(*end);
                joined.moved += is_same(node, *end) ? 0 : 1;
                *end = node;
            }
        }
        joined.network.add_curve(points);
    }
    joined.network.set_name(network.name());
    return joined.moved > 0 ? std::optional(std::move(joined)) : std::nullopt;
}

} // namespace korvel::kit
