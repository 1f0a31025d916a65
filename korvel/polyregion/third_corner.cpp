#include "korvel/polyregion/third_corner.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace korvel {

void ThirdCornerSearch::start() {
    tree_.start();
    last_blockers_.clear();
    last_inner_points_.clear();
    apart_.assign(static_cast<std::size_t>(points_.count()), 0);
    search_ = 0;
}

int ThirdCornerSearch::choose(int a, int b, int apex) {
    // Down to here the bounds on radii hold in spite of rounding.
    constexpr double shortest_edge = 1e-7;
    if (!(direction_between(at(a), at(b)).len >= shortest_edge * points_.extent())) {
        return choose_exhaustively(a, b);
    }
    return apex == none ? choose_in_the_open(a, b) : choose_behind(a, b, apex);
}

int ThirdCornerSearch::choose_in_the_open(int a, int b) {
    shadows_.start(a, b);
    const EdgeFrame frame(points_, a, b);
    const FlatSurvivors flat = first_flat_survivors(frame);
    const int best = flat.below_all != none ? flat.below_all : nearest_survivor(frame);
    if (flat.undefined == none || (best != none && best < flat.undefined)) {
        return best;
    }
    for (int p = 0; p < flat.undefined; ++p) {
        if (may_close(a, b, p) && survives(a, b, p)) {
            return best;
        }
    }
    return flat.undefined;
}

/// The first survivors whose triangles are so flat that rounding makes Heron's radicand negative or
/// 0/0, or a zero of either sign. The least factor is more than the square of the height over the
/// longest side divided by six times the shortest, so only a point near the line of the edge can
/// have one that drowns in rounding.
ThirdCornerSearch::FlatSurvivors ThirdCornerSearch::first_flat_survivors(const EdgeFrame& frame) {
    const int a = frame.a;
    const int b = frame.b;
    const double reach =
        frame.margin + 3e-7 * points_.extent() * std::sqrt(points_.extent() / frame.length);
    suspects_.clear();
    tree_.each_point_near(std::array{frame.height}, reach, [&](int p) { suspects_.push_back(p); });
    std::sort(suspects_.begin(), suspects_.end());
    FlatSurvivors first;
    for (const int p : suspects_) {
        if (may_close(a, b, p)) {
            const double r = radius(a, b, p);
            int* const slot = std::isnan(r) ? &first.undefined : &first.below_all;
            if ((std::isnan(r) || r < 0) && *slot == none && survives(a, b, p)) {
                *slot = p;
            }
        }
    }
    return first;
}

/// The survivor with the smallest radius from 0 on. Boxes and points wait in the order of the lower
/// bounds of their radii, and what waits behind the best survivor so far need not be looked at.
int ThirdCornerSearch::nearest_survivor(const EdgeFrame& frame) {
    const int a = frame.a;
    const int b = frame.b;
    double best_radius = std::numeric_limits<double>::infinity();
    int best = none;
    waiting_.clear();
    suspects_.clear(); // with an infinite radius
    ++search_;
    for (const int end : {a, b}) {
        apart_[static_cast<std::size_t>(end)] = search_;
        sides_.any_side_at(end, SideTree::Kind::boundary, [&](int, int p) {
            if (std::exchange(apart_[static_cast<std::size_t>(p)], search_) != search_ &&
                may_close(a, b, p)) {
                const double height = frame.height.at(points_.local(p));
                waiting_.push_back({frame.bound(points_.local(p), height), p, true});
            }
            return false;
        });
    }
    if (!tree_.shape().is_undivided()) { // else there are no boxes to pass over
        cast_first_shadows(a, b);
    }
    waiting_.push_back({0, SlotTree::root, false});
    std::make_heap(waiting_.begin(), waiting_.end());
    while (!waiting_.empty()) {
        std::pop_heap(waiting_.begin(), waiting_.end());
        const Waiting next = waiting_.back();
        waiting_.pop_back();
        if (next.bound > best_radius * best_radius) {
            break;
        }
        if (!next.is_place) {
            if (!shadows_.cover(tree_.box(next.number))) {
                enter_box(frame, next.number, best_radius * best_radius);
            }
            continue;
        }
        const int p = next.number;
        if (apart_[static_cast<std::size_t>(p)] != search_ && shadows_.cover(points_.local(p))) {
            continue;
        }
        const double r = radius(a, b, p);
        if (r == std::numeric_limits<double>::infinity()) {
            suspects_.push_back(p);
        } else if (r >= 0 && (r < best_radius || (r == best_radius && p < best)) &&
                   survives(a, b, p)) {
            best_radius = r;
            best = p;
        }
    }
    if (best == none) {
        std::sort(suspects_.begin(), suspects_.end());
        const auto infinite = std::find_if(suspects_.begin(), suspects_.end(),
                                           [&](int p) { return survives(a, b, p); });
        return infinite == suspects_.end() ? none : *infinite;
    }
    return best;
}

/// Puts what a box holds among the waiting.
void ThirdCornerSearch::enter_box(const EdgeFrame& frame, int box, double limit) {
    const auto before = static_cast<std::ptrdiff_t>(waiting_.size());
    const auto wait = [&](double bound, int number, bool is_place) {
        if (bound <= limit) {
            waiting_.push_back({bound, number, is_place});
        }
    };
    const SlotTree& shape = tree_.shape();
    if (!shape.is_leaf(box)) {
        for (const int half : {SlotTree::first_half(box), SlotTree::second_half(box)}) {
            if (shape.has_slots(half)) {
                const TurnedBox& around = tree_.box(half);
                const double height = frame.height.at(around.centre);
                const double spread = around.spread(frame.height);
                if (height + spread >= -frame.margin) {
                    wait(frame.bound(around, height, spread), half, false);
                }
            }
        }
    } else {
        const SlotTree::Sorted bits = tree_.sorted(box, frame.height, frame.margin);
        for (SlotTree::Bits left = shape.all(box) & ~bits.below; left != 0; left &= left - 1) {
            const int slot = shape.first_slot(box) + std::countr_zero(left);
            const int p = tree_.place(slot);
            if (apart_[static_cast<std::size_t>(p)] != search_ &&
                ((bits.above & left & (~left + 1)) != 0 || may_close(frame.a, frame.b, p))) {
                const PlanePoint at = tree_.local(slot);
                wait(frame.bound(at, frame.height.at(at)), p, true);
            }
        }
    }
    if (2 * before < static_cast<std::ptrdiff_t>(waiting_.size())) {
        std::make_heap(waiting_.begin(), waiting_.end());
    } else {
        for (auto end = waiting_.begin() + before; end != waiting_.end();) {
            std::push_heap(waiting_.begin(), ++end);
        }
    }
}

/// The sides next to the edge hide most of what they can.
void ThirdCornerSearch::cast_first_shadows(int a, int b) {
    for (const int end : {a, b}) {
        for (const auto kind : {SideTree::Kind::boundary, SideTree::Kind::front}) {
            int most = 2;
            sides_.any_side_at(end, kind, [&](int side, int other) {
                if (other != a && other != b) {
                    shadows_.add_side(sides_.side(side));
                    shadows_.add_inner_point(other);
                }
                return --most == 0;
            });
        }
    }
}

/// The choice for an edge that has a triangle on its inner side already. Every other point either
/// has a side across that triangle's or has the apex inside its own triangle, but for those that
/// lie nearly on one of the triangle's lines (see `Shadows` for how nearly), and those joined to
/// the edge by the boundary: only these need the tests.
int ThirdCornerSearch::choose_behind(int a, int b, int apex) {
    const double extent = points_.extent();
    const std::array<PlanePoint, 3> corners{points_.local(a), points_.local(b),
                                            points_.local(apex)};
    std::array<LineForm, 3> lines;
    double size = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const Direction along = direction_between(corners[i], corners[(i + 1) % 3]);
        lines[i] = distance_left_of(corners[i], along);
        size = std::max(size, along.len);
    }
    const double area = left_of(corners[0], corners[1]).at(corners[2]);
    if (!(area > 1e-9 * extent * size)) {
        return choose_exhaustively(a, b);
    }
    const double reach = 4 * (points_.area_margin() * size / area + 1e-12 * extent);
    suspects_.clear();
    tree_.each_point_near(lines, reach, [&](int p) { suspects_.push_back(p); });
    for (const int end : {a, b}) {
        sides_.any_side_at(end, SideTree::Kind::boundary, [&](int, int p) {
            suspects_.push_back(p);
            return false;
        });
    }
    std::erase(suspects_, apex); // its triangle is listed
    std::sort(suspects_.begin(), suspects_.end());
    shadows_.start(a, b);
    return choose_among(a, b, suspects_);
}

int ThirdCornerSearch::choose_exhaustively(int a, int b) {
    suspects_.resize(static_cast<std::size_t>(points_.count()));
    for (int p = 0; p < points_.count(); ++p) {
        suspects_[static_cast<std::size_t>(p)] = p;
    }
    shadows_.start(a, b);
    return choose_among(a, b, suspects_);
}

int ThirdCornerSearch::choose_among(int a, int b, const std::vector<int>& ascending) {
    double best_radius = 0;
    int best = none;
    for (const int p : ascending) {
        if (may_close(a, b, p)) {
            const double r = radius(a, b, p);
            if ((best == none || r < best_radius) && survives(a, b, p)) {
                best_radius = r;
                best = p;
            }
        }
    }
    return best;
}

/// The tests beyond orientation: the triangle is new, its new sides cross nothing, and it holds no
/// point of the region. What has stopped one candidate mostly stops the next, so that is asked
/// first, and whatever stops one throws a shadow on others.
bool ThirdCornerSearch::survives(int a, int b, int p) {
    const std::array<SideTree::Segment, 2> segments{sides_.segment(b, p), sides_.segment(p, a)};
    int blocker = last_blockers_.find([&](int side) {
        return sides_.crosses(segments[0], side) || sides_.crosses(segments[1], side);
    });
    if (blocker != none) {
        shadows_.add_side(sides_.side(blocker));
        return false;
    }
    int inner = last_inner_points_.find([&](int q) { return points_.is_inside(a, b, p, q); });
    if (inner != none) {
        shadows_.add_inner_point(inner);
        return false;
    }
    inner = tree_.point_inside(a, b, p);
    if (inner != none) {
        last_inner_points_.add(inner);
        shadows_.add_inner_point(inner);
        return false;
    }
    for (const SideTree::Segment& segment : segments) {
        blocker = sides_.find_crossed(segment);
        if (blocker != none) {
            last_blockers_.add(blocker);
            shadows_.add_side(sides_.side(blocker));
            return false;
        }
    }
    const auto index = [&](int place) { return indices_[static_cast<std::size_t>(place)]; };
    return !listed_.contains(index(a), index(b), index(p));
}

} // namespace korvel
