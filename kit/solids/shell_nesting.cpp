#include "kit/solids/shell_nesting.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "kit/base/box_tree.h"
#include "kit/base/exact_predicates.h"
#include "kit/base/vectors.h"

namespace korvel::kit {
namespace {

/// Where a vertical line meets a triangle.
struct LineHit {
    double z = 0;
    int shell = 0;
};

// The triangles of closed shells, seen from above.
class ShellView {
public:
    ShellView(const TriangleList& list, const std::vector<Shell>& shells);

    // The shells that contain a point in the midst of one.
    std::vector<int> around(int shell) const;

private:
    struct Entry {
        int triangle;
        int shell;
    };
    Point2 line_through(int shell) const;
    std::vector<LineHit> hits_of(const Point2& line) const;
    bool meets(int triangle, const Point2& line) const;
    double height_at(int triangle, const Point2& line) const;
    std::int32_t column(std::size_t axis, double at) const;

    const TriangleList& list_;
    const std::vector<Shell>& shells_;
    Box box_; // of all
    std::vector<Entry> entries_;
    BoxTree tree_;
};

bool is_in_box(const Box& inner, const Box& outer);
double middle_of_widest(const std::vector<LineHit>& hits, int shell);
PlanePoint from_above(const Point3& point) {
    return {point[0], point[1]};
}

} // namespace

std::vector<int> shells_around(const TriangleList& list, const std::vector<Shell>& shells) {
    std::vector<int> around(shells.size(), -1);
    const auto is_solid = [](const Shell& shell) { return shell.volume != 0; };
    if (std::count_if(shells.begin(), shells.end(), is_solid) < 2) {
        return around;
    }
    const ShellView view(list, shells);
    const auto size = [&](int shell) { return std::abs(shells[shell].volume); };
    for (int shell = 0; shell < static_cast<int>(shells.size()); ++shell) {
        if (!is_solid(shells[shell])) {
            continue;
        }
        for (const int other : view.around(shell)) {
            const bool is_larger =
                size(other) > size(shell) || (size(other) == size(shell) && other < shell);
            if (is_larger && (around[shell] < 0 || size(other) < size(around[shell]))) {
                around[shell] = other;
            }
        }
    }
    return around;
}

namespace {

ShellView::ShellView(const TriangleList& list, const std::vector<Shell>& shells)
    : list_(list), shells_(shells) {
    for (int shell = 0; shell < static_cast<int>(shells.size()); ++shell) {
        if (shells[shell].volume != 0) {
            box_.take_in(shells[shell].box.low);
            box_.take_in(shells[shell].box.high);
            for (const int triangle : shells[shell].triangles) {
                entries_.push_back({triangle, shell});
            }
        }
    }
    tree_ = BoxTree(entries_.size(), [&](std::size_t entry) {
        BoxTree::Box box;
        for (const int corner : list_.corners[entries_[entry].triangle]) {
            const std::int32_t x = column(0, list_.points[corner][0]);
            const std::int32_t y = column(1, list_.points[corner][1]);
            box.take_in({x, y, x, y});
        }
        return box;
    });
}

// The inner point is halfway between two hits of the shell, so that shells which touch it do not
// matter.
std::vector<int> ShellView::around(int shell) const {
    const std::vector<LineHit> hits = hits_of(line_through(shell));
    const double z = middle_of_widest(hits, shell);
    std::vector<int> odd; // those with an odd number of hits above
    for (const LineHit& hit : hits) {
        if (hit.z > z && hit.shell != shell &&
            is_in_box(shells_[shell].box, shells_[hit.shell].box)) {
            odd.push_back(hit.shell);
        }
    }
    std::sort(odd.begin(), odd.end());
    std::vector<int> around;
    for (auto first = odd.begin(); first != odd.end();) {
        const auto end = std::upper_bound(first, odd.end(), *first);
        if ((end - first) % 2 != 0) {
            around.push_back(*first);
        }
        first = end;
    }
    return around;
}

// Through the triangle that is largest seen from above.
Point2 ShellView::line_through(int shell) const {
    Point2 line = {};
    double largest = -1;
    for (const int triangle : shells_[shell].triangles) {
        const auto& [a, b, c] = list_.corners[triangle];
        const Point3& p = list_.points[a];
        const Point3 q = apart(p, list_.points[b]);
        const Point3 r = apart(p, list_.points[c]);
        const double area = std::abs(q[0] * r[1] - q[1] * r[0]);
        if (area > largest) {
            largest = area;
            line = {p[0] + (q[0] + r[0]) / 3, p[1] + (q[1] + r[1]) / 3};
        }
    }
    return line;
}

std::vector<LineHit> ShellView::hits_of(const Point2& line) const {
    std::vector<LineHit> hits;
    const std::int32_t x = column(0, line[0]);
    const std::int32_t y = column(1, line[1]);
    tree_.for_each_at({x, y, x, y}, [&](std::size_t entry) {
        if (meets(entries_[entry].triangle, line)) {
            hits.push_back({height_at(entries_[entry].triangle, line), entries_[entry].shell});
        }
    });
    std::sort(hits.begin(), hits.end(),
              [](const LineHit& a, const LineHit& b) { return a.z < b.z; });
    return hits;
}

// The line is a little to the right, and less above, of where it is: it meets no edge. It crosses a
// side that is below or above both ends or at one of them by the x of the ends.
bool ShellView::meets(int triangle, const Point2& line) const {
    bool is_inside = false;
    const auto& corners = list_.corners[triangle];
    for (std::size_t k = 0; k < 3; ++k) {
        const Point3& a = list_.points[corners[k]];
        const Point3& b = list_.points[corners[(k + 1) % 3]];
        const bool a_is_left = a[0] <= line[0];
        if (a_is_left == (b[0] <= line[0])) {
            continue;
        }
        const Point3& left = a_is_left ? a : b;
        const Point3& right = a_is_left ? b : a;
        const int side = turn(from_above(left), from_above(right), {line[0], line[1]});
        // On the side itself: moved to the right, the line is below a side that rises.
        const bool is_above = side > 0 || (side == 0 && !(right[1] > left[1]));
        is_inside ^= is_above;
    }
    return is_inside;
}

double ShellView::height_at(int triangle, const Point2& line) const {
    const auto& [a, b, c] = list_.corners[triangle];
    const Point3& p = list_.points[a];
    const Point3 q = apart(p, list_.points[b]);
    const Point3 r = apart(p, list_.points[c]);
    const Point3 normal = cross(q, r);
    const double along = (line[0] - p[0]) * normal[0] + (line[1] - p[1]) * normal[1];
    const auto [low, high] = std::minmax({0.0, q[2], r[2]});
    return p[2] + std::clamp(normal[2] == 0 ? 0 : -along / normal[2], low, high);
}

std::int32_t ShellView::column(std::size_t axis, double at) const {
    constexpr double columns = 1 << 30;
    const double extent = box_.high[axis] - box_.low[axis];
    const double share = extent > 0 ? (at - box_.low[axis]) / extent : 0;
    return static_cast<std::int32_t>(std::clamp(share, 0.0, 1.0) * columns);
}

bool is_in_box(const Box& inner, const Box& outer) {
    for (std::size_t k = 0; k < 3; ++k) {
        if (inner.low[k] < outer.low[k] || inner.high[k] > outer.high[k]) {
            return false;
        }
    }
    return true;
}

double middle_of_widest(const std::vector<LineHit>& hits, int shell) {
    double middle = 0;
    double widest = -1;
    bool is_in = false;
    double entered = 0;
    for (const LineHit& hit : hits) {
        if (hit.shell != shell) {
            continue;
        }
        if (is_in && hit.z - entered > widest) {
            widest = hit.z - entered;
            middle = entered + widest / 2;
        }
        is_in = !is_in;
        entered = hit.z;
    }
    return middle;
}

} // namespace
} // namespace korvel::kit
