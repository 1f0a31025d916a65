#include "apps/workbench/document/curve_edits.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace korvel::workbench {
namespace {

bool is_end(const Curves& curves, const CurvePoint& point);
bool is_last(const Curve& curve, int point);
std::int32_t sum_within_range(std::int32_t a, std::int64_t b);

} // namespace

std::vector<Curve> cut(const Curve& curve, int point) {
    return cut(curve, std::set<int>{point});
}

// A closed curve is turned to start at the first of the points.
std::vector<Curve> cut(const Curve& curve, const std::set<int>& points) {
    const int last = static_cast<int>(curve.size()) - 1;
    const int start =
        is_closed(curve) && !points.empty() && !points.contains(last) ? *points.begin() : 0;
    Curve turned(curve.begin() + start, curve.end());
    if (start > 0) {
        turned.insert(turned.end(), curve.begin() + 1, curve.begin() + start + 1);
    }
    std::vector<Curve> parts;
    auto from = turned.begin();
    for (const int point : points) {
        if (point > start && point < last) {
            const auto to = turned.begin() + (point - start);
            parts.emplace_back(from, to + 1);
            from = to;
        }
    }
    parts.emplace_back(from, turned.end());
    return parts;
}

Curve with_point(Curve curve, int segment, const kit::GridPoint& point) {
    curve.insert(curve.begin() + segment + 1, point);
    return curve;
}

std::optional<Curve> without(const Curve& curve, const std::set<int>& points) {
    const bool was_closed = is_closed(curve);
    Curve kept;
    kept.reserve(curve.size());
    const int count = static_cast<int>(curve.size()) - (was_closed ? 1 : 0);
    const auto is_removed = [&](int point) {
        return points.contains(point) ||
               (was_closed && point == 0 && points.contains(static_cast<int>(curve.size()) - 1));
    };
    for (int point = 0; point < count; ++point) {
        if (!is_removed(point)) {
            kept.push_back(curve[static_cast<std::size_t>(point)]);
        }
    }
    if (was_closed && kept.size() > 2) {
        kept.push_back(kept.front());
    }
    return kept.size() > 1 ? std::optional(std::move(kept)) : std::nullopt;
}

Curve reversed(Curve curve) {
    std::ranges::reverse(curve);
    return curve;
}

Curve joined(Curve a, bool at_end_of_a, Curve b, bool at_end_of_b) {
    Curve curve = at_end_of_a ? std::move(a) : reversed(std::move(a));
    const Curve rest = at_end_of_b ? reversed(std::move(b)) : std::move(b);
    const bool meet = kit::is_same(curve.back(), rest.front());
    curve.insert(curve.end(), rest.begin() + (meet ? 1 : 0), rest.end());
    return curve;
}

Curve closed(Curve curve) {
    if (curve.size() > 2 && !is_closed(curve)) {
        curve.push_back(curve.front());
    }
    return curve;
}

std::vector<CurveChange> moved(const Curves& curves, const PointSet& points,
                               const kit::GridPoint& by) {
    std::vector<CurveChange> changes;
    changes.reserve(points.size());
    for (const auto& [index, moving] : points) {
        Curve curve = curves[index];
        const bool was_closed = is_closed(curve);
        const int last = static_cast<int>(curve.size()) - 1;
        std::set<int> all = moving;
        if (was_closed && (all.contains(0) || all.contains(last))) {
            all.insert({0, last});
        }
        for (const int point : all) {
            kit::GridPoint& place = curve[static_cast<std::size_t>(point)];
            place = {sum_within_range(place.x, by.x), sum_within_range(place.y, by.y)};
        }
        changes.push_back({index, 1, {std::move(curve)}});
    }
    return changes;
}

kit::GridPoint way_between(const kit::GridPoint& from, const kit::GridPoint& to) {
    return {sum_within_range(to.x, -std::int64_t{from.x}),
            sum_within_range(to.y, -std::int64_t{from.y})};
}

std::vector<CurveChange> without(const Curves& curves, const PointSet& points) {
    std::vector<CurveChange> changes;
    changes.reserve(points.size());
    for (const auto& [index, removed] : points) {
        CurveChange& change = changes.emplace_back();
        change.first = index;
        change.count = 1;
        if (std::optional<Curve> curve = without(curves[index], removed)) {
            change.by.push_back(std::move(*curve));
        }
    }
    return changes;
}

std::vector<CurveChange> joined(const Curves& curves, const CurvePoint& a, const CurvePoint& b) {
    if (!is_end(curves, a) || !is_end(curves, b) || a == b) {
        return {};
    }
    std::vector<CurveChange> changes;
    if (a.curve == b.curve) {
        if (curves[a.curve].size() > 2) {
            changes.push_back({a.curve, 1, {closed(curves[a.curve])}});
        }
        return changes;
    }
    const auto& [first, second] = std::minmax(a, b);
    Curve curve =
        joined(curves[first.curve], first.point != 0, curves[second.curve], second.point != 0);
    changes.push_back({first.curve, 1, {std::move(curve)}});
    changes.push_back({second.curve, 1, {}});
    return changes;
}

namespace {

// A closed curve has no ends.
bool is_end(const Curves& curves, const CurvePoint& point) {
    const Curve& curve = curves[point.curve];
    return !is_closed(curve) && curve.size() > 1 &&
           (point.point == 0 || is_last(curve, point.point));
}

bool is_last(const Curve& curve, int point) {
    return static_cast<std::size_t>(point) + 1 == curve.size();
}

std::int32_t sum_within_range(std::int32_t a, std::int64_t b) {
    constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(a + b, least, most));
}

} // namespace
} // namespace korvel::workbench
