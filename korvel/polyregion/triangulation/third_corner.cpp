#include "korvel/polyregion/triangulation/third_corner.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace korvel {

void ThirdCornerSearch::start() {
    tree_.start();
    last_inner_ = none;
    apart_.assign(static_cast<std::size_t>(points_.count()), 0);
    search_ = 0;
}

int ThirdCornerSearch::choose(int a, int b, int apex, int hint) {
    if (!(direction_between(at(a), at(b)).len >= tolerance::shortest_edge * points_.extent())) {
        return choose_exhaustively(a, b);
    }
    return apex == none ? choose_in_the_open(a, b, hint) : choose_behind(a, b, apex, hint);
}

int ThirdCornerSearch::choose_in_the_open(int a, int b, int hint) {
    zones_.start(a, b);
    const EdgeFrame frame(points_, a, b);
    const FlatSurvivors flat = first_flat_survivors(frame, hint);
    const int best = flat.below_all != none ? flat.below_all : nearest_survivor(frame, hint);
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
ThirdCornerSearch::FlatSurvivors ThirdCornerSearch::first_flat_survivors(const EdgeFrame& frame,
                                                                         int hint) {
    const int a = frame.a;
    const int b = frame.b;
    const double slope = tolerance::flat_slope * std::sqrt(2 * points_.extent() / frame.length);
    FlatSurvivors first;
    if (!tree_.shape().is_undivided() &&
        guide_.is_clear_edge(a, b, hint, tolerance::flat_edge * frame.length) &&
        guide_.is_free_beyond(a, b, frame.margin, slope) &&
        guide_.is_free_beyond(b, a, frame.margin, slope)) {
        return first;
    }
    suspects_.clear();
    const double reach = frame.margin + slope * points_.extent();
    tree_.each_point_near(frame.height, reach, frame.height, frame.margin,
                          [&](int p) { suspects_.push_back(p); });
    std::sort(suspects_.begin(), suspects_.end());
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

/// The survivor with the smallest radius from 0 on. Boxes and vertices wait in the order of the
/// lower bounds of their radii, and what waits behind the best survivor so far need not be
/// examined.
int ThirdCornerSearch::nearest_survivor(const EdgeFrame& frame, int hint) {
    Nearest best = survivor_of_guide(frame.a, frame.b, hint);
    suspects_.clear(); // those with an infinite radius
    gather_waiting(frame, best);
    if (waiting_.empty()) {
        return best.vertex;
    }
    if (!tree_.shape().is_undivided()) { // else there are no boxes to exclude
        add_nearest_zones(frame.a, frame.b);
    }
    std::make_heap(waiting_.begin(), waiting_.end());
    while (!waiting_.empty()) {
        std::pop_heap(waiting_.begin(), waiting_.end());
        const Waiting next = waiting_.back();
        waiting_.pop_back();
        if (next.bound > best.radius * best.radius) {
            break;
        }
        if (next.is_vertex) {
            examine(frame.a, frame.b, next.number, best);
        } else if (!zones_.cover(tree_.box(next.number))) {
            enter_box(frame, next.number, best.radius * best.radius);
        }
    }
    return best.vertex == none ? first_infinite_survivor(frame.a, frame.b) : best.vertex;
}

/// The third corner of the guide's triangle and its radius, if it survives.
ThirdCornerSearch::Nearest ThirdCornerSearch::survivor_of_guide(int a, int b, int hint) {
    const int p = guide_.apex(a, b, hint);
    if (p != none && may_close(a, b, p) && (surely_survives(a, b, p) || survives(a, b, p))) {
        const double r = radius(a, b, p);
        if (r >= 0 && r < std::numeric_limits<double>::infinity()) {
            last_inner_ = p;
            return {p, r};
        }
    }
    return {};
}

/// The vertices that the boundary joins with the edge, which no zone excludes, and either the few
/// others that may have a smaller radius or the root of the tree.
void ThirdCornerSearch::gather_waiting(const EdgeFrame& frame, const Nearest& best) {
    waiting_.clear();
    ++search_;
    for (const int end : {frame.a, frame.b}) {
        apart_[end] = search_;
        sides_.any_side_at(end, SideTree::Kind::boundary, [&](int, int p) {
            if (std::exchange(apart_[p], search_) != search_ && p != best.vertex &&
                may_close(frame.a, frame.b, p)) {
                wait(frame, p, best.radius);
            }
            return false;
        });
    }
    const std::size_t joined = waiting_.size();
    if (best.vertex == none || !wait_beside(frame, best.vertex, best.radius)) {
        waiting_.resize(joined);
        waiting_.push_back({0, SlotTree::root, false});
    }
}

void ThirdCornerSearch::wait(const EdgeFrame& frame, int p, double best_radius) {
    const PlanePoint at = points_.local(p);
    const double bound = frame.bound(at, frame.height.at(at));
    if (bound <= best_radius * best_radius) {
        waiting_.push_back({bound, p, true});
    }
}

/// Puts the vertices among the waiting whose radii may be below that of the guide's triangle. False
/// where they are so many that the tree is faster.
bool ThirdCornerSearch::wait_beside(const EdgeFrame& frame, int best, double best_radius) {
    int may_follow = 8;
    const auto may_wait = [&](int p) {
        if (apart_[p] != search_ && p != best && may_close(frame.a, frame.b, p)) {
            wait(frame, p, best_radius);
            --may_follow;
        }
        return may_follow == 0;
    };
    tree_.any_point_beside(frame.height, frame.margin, frame.disk(best_radius), may_wait);
    const Disk flat = frame.flat_disk(best_radius);
    if (flat.radius > frame.length / 2) {
        tree_.any_point_beside(frame.height, frame.margin, flat, may_wait);
    }
    for (const int end : {frame.a, frame.b}) {
        const Disk next_to_end = frame.end_disk(end);
        if (!guide_.is_clear_vertex(end, next_to_end.radius)) {
            tree_.any_point_beside(frame.height, frame.margin, next_to_end, may_wait);
        }
    }
    return may_follow > 0;
}

/// Puts what a box holds among the waiting.
void ThirdCornerSearch::enter_box(const EdgeFrame& frame, int box, double limit) {
    const auto before = static_cast<std::ptrdiff_t>(waiting_.size());
    const auto wait = [&](double bound, int number, bool is_vertex) {
        if (bound <= limit) {
            waiting_.push_back({bound, number, is_vertex});
        }
    };
    const SlotTree& shape = tree_.shape();
    if (!shape.is_leaf(box)) {
        for (const int half : {SlotTree::first_half(box), SlotTree::second_half(box)}) {
            if (shape.has_slots(half)) {
                const OrientedBox& around = tree_.box(half);
                const double height = frame.height.at(around.centre);
                const double spread = around.spread(frame.height);
                if (height + spread >= -frame.margin) {
                    wait(frame.bound(around, height, spread), half, false);
                }
            }
        }
    } else {
        const SlotTree::Signs bits = tree_.signs(box, frame.height, frame.margin);
        for (SlotTree::Bits left = shape.all(box) & ~bits.below; left != 0; left &= left - 1) {
            const int p = tree_.vertex(shape.first_slot(box) + std::countr_zero(left));
            if (apart_[p] != search_ &&
                ((bits.above & left & (~left + 1)) != 0 || may_close(frame.a, frame.b, p))) {
                const PlanePoint at = points_.local(p);
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
void ThirdCornerSearch::add_nearest_zones(int a, int b) {
    for (const int end : {a, b}) {
        for (const auto kind : {SideTree::Kind::boundary, SideTree::Kind::front}) {
            int most = 2;
            sides_.any_side_at(end, kind, [&](int side, int other) {
                if (other != a && other != b) {
                    zones_.add_side(sides_.side(side));
                    zones_.add_inner_point(other);
                }
                return --most == 0;
            });
        }
    }
}

/// Makes a vertex the best one if it survives with a smaller radius, or as the first of equals.
void ThirdCornerSearch::examine(int a, int b, int p, Nearest& best) {
    if (apart_[p] != search_ && zones_.cover(points_.local(p))) {
        return;
    }
    const double r = radius(a, b, p);
    if (r == std::numeric_limits<double>::infinity()) {
        suspects_.push_back(p);
    } else if (r >= 0 && (r < best.radius || (r == best.radius && p < best.vertex)) &&
               survives(a, b, p)) {
        best = {p, r};
    }
}

int ThirdCornerSearch::first_infinite_survivor(int a, int b) {
    std::sort(suspects_.begin(), suspects_.end());
    const auto found =
        std::find_if(suspects_.begin(), suspects_.end(), [&](int p) { return survives(a, b, p); });
    return found == suspects_.end() ? none : *found;
}

/// The choice for an edge that has a triangle on its inner side already. Every other point either
/// has a side across that triangle's or has the apex inside its own triangle, but for those that
/// lie nearly on one of the triangle's lines (see `ExclusionZones` for how nearly), and those
/// joined to the edge by the boundary: only these need the tests.
int ThirdCornerSearch::choose_behind(int a, int b, int apex, int hint) {
    const double extent = points_.extent();
    const std::array<PlanePoint, 3> corners{points_.local(a), points_.local(b),
                                            points_.local(apex)};
    std::array<LineForm, 3> lines;
    double size = 0;
    double length = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const Direction along = direction_between(corners[i], corners[(i + 1) % 3]);
        lines[i] = distance_left_of(corners[i], along);
        size = std::max(size, along.len);
        length = i == 0 ? along.len : length;
    }
    const double area = left_of(corners[0], corners[1]).at(corners[2]);
    if (!(area > tolerance::flat_apex * extent * size)) {
        return choose_exhaustively(a, b);
    }
    const double reach =
        tolerance::behind_apex * (points_.area_margin() * size / area + points_.line_margin());
    const double margin = points_.line_margin() + points_.area_margin() / length;
    suspects_.clear();
    const auto add_near = [&](std::size_t line, int u, int v) {
        const bool is_free = !tree_.shape().is_undivided() &&
                             guide_.is_clear_edge(u, v, line == 0 ? hint : none, reach) &&
                             guide_.is_free_beyond(u, v, reach, 0) &&
                             (line != 0 || guide_.is_free_beyond(v, u, reach, 0));
        if (!is_free) {
            tree_.each_point_near(lines[line], reach, lines[0], margin,
                                  [&](int p) { suspects_.push_back(p); });
        }
    };
    add_near(0, a, b);
    add_near(1, b, apex); // before b it lies on the right of the edge
    add_near(2, a, apex);
    for (const int end : {a, b}) {
        sides_.any_side_at(end, SideTree::Kind::boundary, [&](int, int p) {
            suspects_.push_back(p);
            return false;
        });
    }
    std::erase(suspects_, apex); // its triangle is listed
    last_inner_ = apex;
    std::sort(suspects_.begin(), suspects_.end());
    zones_.start(a, b);
    return choose_among(a, b, suspects_);
}

int ThirdCornerSearch::choose_exhaustively(int a, int b) {
    suspects_.resize(static_cast<std::size_t>(points_.count()));
    for (int p = 0; p < points_.count(); ++p) {
        suspects_[p] = p;
    }
    zones_.start(a, b);
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
/// point of the region. Whatever stops one candidate throws a shadow on others; a point in it
/// mostly stops the next, too.
bool ThirdCornerSearch::survives(int a, int b, int p) {
    int inner = last_inner_ != none && points_.is_inside(a, b, p, last_inner_) ? last_inner_ : none;
    if (inner == none) {
        const std::array<SideTree::Segment, 2> segments{sides_.segment(b, p), sides_.segment(p, a)};
        int blocker = side_across(segments);
        if (blocker == none) {
            inner = tree_.point_inside(a, b, p);
            if (inner == none) {
                blocker = sides_.find_crossed(segments[0]);
                blocker = blocker == none ? sides_.find_crossed(segments[1]) : blocker;
            } else {
                last_inner_ = inner;
            }
        }
        if (blocker != none) {
            zones_.add_side(sides_.side(blocker));
            return false;
        }
    }
    if (inner != none) {
        zones_.add_inner_point(inner);
        return false;
    }
    return !is_listed(a, b, p);
}

/// A side that one of the segments crosses and that the guide finds at once, or `none`.
int ThirdCornerSearch::side_across(const std::array<SideTree::Segment, 2>& segments) const {
    for (const SideTree::Segment& segment : segments) {
        const auto ends = segment.on_boundary || segment.on_front
                              ? std::nullopt
                              : guide_.side_across(segment.p0, segment.p1);
        if (ends.has_value()) {
            for (const auto kind : {SideTree::Kind::boundary, SideTree::Kind::front}) {
                const int side = sides_.find((*ends)[0], (*ends)[1], kind);
                if (side != none && sides_.crosses(segment, side)) {
                    return side;
                }
            }
        }
    }
    return none;
}

/// Without a look at the sides: the guide's own triangles cross nothing and hold nothing.
bool ThirdCornerSearch::surely_survives(int a, int b, int p) const {
    return guide_.is_clear_triangle(a, b, p) && !sides_.may_be_in_line(b, p) &&
           !sides_.may_be_in_line(p, a) && !is_listed(a, b, p);
}

bool ThirdCornerSearch::is_listed(int a, int b, int p) const {
    const auto index = [&](int vertex) { return indices_[vertex]; };
    return listed_.contains(index(a), index(b), index(p));
}

} // namespace korvel
