// The first half of the plain analysis: from curves to rings of curves.

#include "tests/region/plain_region.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tests/region/plain_steps.h"

namespace korvel::test {
namespace {

Curves clean(const Curves& curves);
void split(Analysis& a);
void snap_ends(Analysis& a, double tolerance);
void build_graph(Analysis& a);
void trace_rings(Analysis& a, Pt seed);
void find_seed_rings(Analysis& a, Pt seed);

} // namespace

Analysis analyse_plainly(const Curves& curves, Pt seed, double tolerance) {
    Analysis a;
    a.cleaned = clean(curves);
    split(a);
    snap_ends(a, tolerance);
    build_graph(a);
    trace_rings(a, seed);
    find_seed_rings(a, seed);
    list_ring_points(a);
    list_sides(a);
    drop_envelopes(a);
    nest(a);
    return a;
}

namespace {

Curves clean(const Curves& curves) {
    Curves kept;
    for (Pts curve : curves) {
        curve.erase(std::unique(curve.begin(), curve.end()), curve.end());
        if (curve.size() != 1 && !contains(kept, curve) && !contains(kept, reversed(curve))) {
            kept.push_back(curve);
        }
    }
    return kept;
}

bool is_met(const Pt* p, const Pt* q, double& r1) {
    const Vec d1 = from_to(p[0], p[1]);
    const Vec d2 = from_to(q[0], q[1]);
    const Vec e = from_to(p[0], q[0]);
    const double det = d2.y * d1.x - d2.x * d1.y;
    if (std::fabs(det) < 1e-8) {
        return false;
    }
    r1 = (e.x * d2.y - e.y * d2.x) / det;
    const double r2 = (e.x * d1.y - e.y * d1.x) / det;
    return 0 <= r1 && r1 <= 1 && 0 <= r2 && r2 <= 1;
}

std::vector<double> ratios_on(const Analysis& a, const Pts& curve, int j) {
    std::vector<double> ratios;
    for (const Pts& other : a.cleaned) {
        for (int m = 0; m + 1 < count_of(other); ++m) {
            const bool neighbours = &other == &curve && std::abs(m - j) <= 1;
            double r = 0;
            if (!neighbours && is_met(&at(curve, j), &at(other, m), r)) {
                ratios.push_back(r);
            }
        }
    }
    std::sort(ratios.begin(), ratios.end());
    ratios.erase(std::unique(ratios.begin(), ratios.end()), ratios.end());
    return ratios;
}

void split(Analysis& a) {
    for (const Pts& curve : a.cleaned) {
        Pts piece;
        for (int j = 0; j + 1 < count_of(curve); ++j) {
            const Pt from = at(curve, j);
            const Vec d = from_to(from, at(curve, j + 1));
            piece.push_back(from);
            for (const double r : ratios_on(a, curve, j)) {
                const Pt pt{int(d.x * r + from.x), int(d.y * r + from.y)};
                piece.push_back(pt);
                a.split.push_back(std::exchange(piece, {pt}));
            }
        }
        piece.insert(piece.end(), curve.rbegin(), curve.rbegin() + (curve.empty() ? 0 : 1));
        a.split.push_back(piece);
    }
}

void snap_ends(Analysis& a, double tolerance) {
    const double radius = tolerance == 0 ? 3 : std::fabs(tolerance * 0.5);
    const auto snap = [&](Pt& end) {
        for (const Pt node : a.nodes) {
            if (length(from_to(end, node)) < radius) {
                end = node;
                return;
            }
        }
        a.nodes.push_back(end);
    };
    a.split = clean(a.split);
    for (Pts& curve : a.split) {
        if (!curve.empty()) {
            snap(curve.front());
            snap(curve.back());
        }
    }
    a.split = clean(a.split);
}

void build_graph(Analysis& a) {
    a.curve_ids.resize(a.nodes.size());
    for (int id = 1; id <= count_of(a.split); ++id) {
        const Pts& curve = named(a.split, id);
        const int start = curve.empty() ? -1 : index_in(a.nodes, curve.front());
        const int end = curve.empty() ? -1 : index_in(a.nodes, curve.back());
        a.curve_to_node.push_back({start, end, 1, 0, 0});
        if (!curve.empty()) {
            at(a.curve_ids, start).push_back(id);
            at(a.curve_ids, end).push_back(-id);
        }
    }
    for (const Ints& ids : a.curve_ids) {
        a.curve_num.push_back(count_of(ids));
    }
    while (contains(a.curve_num, 1)) {
        for (int node = 0; node < count_of(a.nodes); ++node) {
            for (const int id : at(a.curve_ids, node)) {
                auto& curve = named(a.curve_to_node, id);
                if (at(a.curve_num, node) == 1 && curve[2] == 1) {
                    curve[2] = 0;
                    --at(a.curve_num, curve[0]);
                    --at(a.curve_num, curve[1]);
                }
            }
        }
    }
}

double angle_between(Vec u, Vec v) {
    const double a = dot(u, v);
    const double b = cross(u, v);
    const double len = std::sqrt(a * a + b * b);
    if (a >= 0) {
        return b >= 0 ? std::asin(b / len) : 4 * std::asin(1.0) - std::asin(-b / len);
    }
    return 2 * std::asin(1.0) + (b >= 0 ? -std::asin(b / len) : std::asin(-b / len));
}

template <class List, class GoesAfter>
void shell_sort_plainly(List& list, GoesAfter goes_after) {
    for (std::size_t gap = list.size() / 2; gap > 0; gap /= 2) {
        for (std::size_t i = gap; i < list.size(); ++i) {
            for (std::size_t k = i; k >= gap && goes_after(list[k - gap], list[k]); k -= gap) {
                std::swap(list[k - gap], list[k]);
            }
        }
    }
}

int next_curve(const Analysis& a, int c, int turn) {
    const Pts back = walked(a, -c);
    Vec u = from_to(back[0], back[1]);
    u = {u.x / length(u), u.y / length(u)};
    std::vector<std::pair<double, int>> found;
    for (const int id : at(a.curve_ids, named(a.curve_to_node, c)[c < 0 ? 0 : 1])) {
        if (named(a.curve_to_node, id)[2] != 0 && id != -c) {
            const Pts leaving = walked(a, id);
            found.emplace_back(angle_between(u, from_to(leaving[0], leaving[1])), id);
        }
    }
    shell_sort_plainly(found, [](const auto& x, const auto& key) { return x.first > key.first; });
    return turn == -1 ? found.front().second : found.back().second;
}

void walk(Analysis& a, int start, int turn) {
    if (named(a.split, start).empty()) {
        return;
    }
    Ints ids{start};
    for (int c = next_curve(a, start, turn); c != start; c = next_curve(a, c, turn)) {
        ids.push_back(c);
        auto& curve = named(a.curve_to_node, c);
        if (curve[3] == 0) {
            curve[3] = c < 0 ? -1 : 1;
            curve[4] = turn;
        } else {
            curve[3] = 2;
        }
        if (count_of(ids) > count_of(a.split)) {
            return;
        }
    }
    a.rings.push_back(ids);
}

void trace_rings(Analysis& a, Pt seed) {
    for (int s = 1; s <= count_of(a.split); ++s) {
        auto& curve = named(a.curve_to_node, s);
        if (curve[2] == 0 || curve[3] == 2) {
            continue;
        }
        if (curve[3] == 0) {
            curve[3] = 1;
            curve[4] = -1;
            walk(a, s, -1);
            walk(a, s, 1);
        } else {
            walk(a, curve[3] * s, -curve[4]);
        }
        curve[3] = 2;
    }
    Lists seen;
    std::erase_if(a.rings, [&](Ints ring) {
        std::sort(ring.begin(), ring.end());
        const bool repeated = contains(seen, ring);
        seen.push_back(ring);
        return repeated;
    });
    for (const Ints& ring : a.rings) {
        double sum = 0;
        for (const int id : ring) {
            const Pts pts = walked(a, id);
            for (std::size_t k = 1; k < pts.size(); ++k) {
                sum += cross(from_to(seed, pts[k - 1]), from_to(seed, pts[k]));
            }
        }
        a.areas.push_back(std::fabs(sum) * 0.5);
    }
}

Pts outline_of(const Analysis& a, const Ints& ring) {
    Pts outline;
    for (const int id : ring) {
        const Pts pts = walked(a, id);
        outline.insert(outline.end(), pts.begin(), pts.end() - 1);
    }
    return outline;
}

/// The first corner off the larger ring decides; without one the smaller ring counts as inside.
bool lies_inside(const Pts& smaller, const Pts& larger) {
    const auto off =
        std::find_if(smaller.begin(), smaller.end(), [&](Pt pt) { return !contains(larger, pt); });
    return off == smaller.end() || winds_around(larger, *off);
}

bool shares_curve(const Ints& ring, const Ints& other) {
    return std::any_of(ring.begin(), ring.end(),
                       [&](int id) { return contains(other, id) || contains(other, -id); });
}

void find_seed_rings(Analysis& a, Pt seed) {
    std::vector<std::pair<double, Ints>> around;
    std::vector<std::pair<double, Ints>> others;
    for (int k = 0; k < count_of(a.rings); ++k) {
        const Ints& ring = at(a.rings, k);
        (winds_around(outline_of(a, ring), seed) ? around : others)
            .emplace_back(at(a.areas, k), ring);
    }
    if (around.empty()) {
        return;
    }
    shell_sort_plainly(around, [](const auto& x, const auto& key) { return x.first > key.first; });
    const Pts smallest = outline_of(a, around[0].second);
    std::erase_if(others, [&](const auto& other) {
        const auto shares = [&](const auto& one) { return shares_curve(other.second, one.second); };
        return std::any_of(around.begin(), around.end(), shares) ||
               !winds_around(smallest, named(a.split, other.second[0])[0]);
    });
    shell_sort_plainly(others, [](const auto& x, const auto& key) { return x.first < key.first; });
    a.in_rings = {around[0].second};
    for (const auto& [area, ring] : others) {
        const Pts outline = outline_of(a, ring);
        if (std::none_of(a.ex_rings.begin(), a.ex_rings.end(), [&](const Ints& kept) {
                return lies_inside(outline, outline_of(a, kept));
            })) {
            a.ex_rings.push_back(ring);
        }
    }
}

} // namespace

bool winds_around(const Pts& ring, Pt pt) {
    double sum = 0;
    for (int k = 0; k < count_of(ring); ++k) {
        const Vec p = from_to(pt, at(ring, k));
        const Vec q = from_to(pt, at(ring, (k + 1) % count_of(ring)));
        const double angle = std::acos(dot(p, q) / (length(p) * length(q)));
        sum += cross(p, q) >= 0 ? angle : -angle;
    }
    return std::fabs(sum) > 1.0;
}

} // namespace korvel::test
