#include "tests/region/plain_region.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace korvel::test {
namespace {

Curves clean(const Curves& curves);
void split(Analysis& a);
void snap_ends(Analysis& a, double tolerance);
void build_graph(Analysis& a);
void trace_rings(Analysis& a, Pt seed);
void find_seed_rings(Analysis& a, Pt seed);
void list_ring_points(Analysis& a);
void list_sides(Analysis& a);
void drop_envelopes(Analysis& a);
void nest(Analysis& a);

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

struct Vec {
    double x;
    double y;
};
Vec from_to(Pt a, Pt b) {
    return {double(b.x) - a.x, double(b.y) - a.y};
}
double dot(Vec a, Vec b) {
    return a.x * b.x + a.y * b.y;
}
double cross(Vec a, Vec b) {
    return a.x * b.y - a.y * b.x;
}
double length(Vec a) {
    return std::sqrt(dot(a, a));
}

template <class List>
int count_of(const List& list) {
    return static_cast<int>(list.size());
}
template <class List>
auto& at(List& list, int index) {
    return list[static_cast<std::size_t>(index)];
}
template <class List, class Entry>
int place_in(const List& list, const Entry& entry) {
    const auto found = std::find(list.begin(), list.end(), entry);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}
template <class List, class Entry>
bool holds(const List& list, const Entry& entry) {
    return place_in(list, entry) >= 0;
}
template <class List>
List reversed(const List& list) {
    return List(list.rbegin(), list.rend());
}

/// What a signed, 1-based curve id names.
template <class List>
auto& named(List& list, int id) {
    return at(list, std::abs(id) - 1);
}
Pts walked(const Analysis& a, int id) {
    return id > 0 ? named(a.split, id) : reversed(named(a.split, id));
}

Curves clean(const Curves& curves) {
    Curves kept;
    for (Pts curve : curves) {
        curve.erase(std::unique(curve.begin(), curve.end()), curve.end());
        if (curve.size() != 1 && !holds(kept, curve) && !holds(kept, reversed(curve))) {
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
        const int start = curve.empty() ? -1 : place_in(a.nodes, curve.front());
        const int end = curve.empty() ? -1 : place_in(a.nodes, curve.back());
        a.curve_to_node.push_back({start, end, 1, 0, 0});
        if (!curve.empty()) {
            at(a.curve_ids, start).push_back(id);
            at(a.curve_ids, end).push_back(-id);
        }
    }
    for (const Ints& ids : a.curve_ids) {
        a.curve_num.push_back(count_of(ids));
    }
    while (holds(a.curve_num, 1)) {
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
        const bool repeated = holds(seen, ring);
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
        std::find_if(smaller.begin(), smaller.end(), [&](Pt pt) { return !holds(larger, pt); });
    return off == smaller.end() || winds_around(larger, *off);
}

bool shares_curve(const Ints& ring, const Ints& other) {
    return std::any_of(ring.begin(), ring.end(),
                       [&](int id) { return holds(other, id) || holds(other, -id); });
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

void list_ring_points(Analysis& a) {
    for (const Pts& curve : a.split) {
        for (const Pt pt : curve) {
            if (!holds(a.unique_pts, pt)) {
                a.unique_pts.push_back(pt);
            }
            a.pt_index.push_back(place_in(a.unique_pts, pt));
        }
    }
    for (const Ints& ring : a.rings) {
        Ints& list = a.ring_pts.emplace_back();
        for (const int id : ring) {
            for (const Pt pt : walked(a, id)) {
                list.push_back(place_in(a.unique_pts, pt));
            }
            list.pop_back(); // the first point of the next curve, or of the ring
        }
    }
    a.kept_areas = a.areas;
}

void remove_ring(Analysis& a, std::ptrdiff_t ring) {
    a.ring_pts.erase(a.ring_pts.begin() + ring);
    a.kept_areas.erase(a.kept_areas.begin() + ring);
}

void list_sides(Analysis& a) {
    const auto touches_itself = [](Ints ring) {
        std::sort(ring.begin(), ring.end());
        return std::adjacent_find(ring.begin(), ring.end()) != ring.end();
    };
    const auto first = std::find_if(a.ring_pts.begin(), a.ring_pts.end(), touches_itself);
    if (first != a.ring_pts.end()) {
        remove_ring(a, first - a.ring_pts.begin());
    }
    for (const Ints& ring : a.ring_pts) {
        for (int k = 0; k < count_of(ring); ++k) {
            const std::pair side{at(ring, k), at(ring, (k + 1) % count_of(ring))};
            if (!holds(a.sides, side) && !holds(a.sides, std::pair{side.second, side.first})) {
                a.sides.push_back(side);
            }
        }
    }
}

bool encloses(const Analysis& a, const Ints& ring, int point) {
    Pts corners;
    for (const int corner : ring) {
        corners.push_back(at(a.unique_pts, corner));
    }
    return winds_around(corners, at(a.unique_pts, point));
}

void drop_envelopes(Analysis& a) {
    a.rings_at.resize(a.unique_pts.size());
    a.sides_at.resize(a.unique_pts.size());
    for (int u = 0; u < count_of(a.unique_pts); ++u) {
        for (int k = 0; k < count_of(a.ring_pts); ++k) {
            if (holds(at(a.ring_pts, k), u)) {
                at(a.rings_at, u).push_back(k);
            }
        }
        for (int k = 0; k < count_of(a.sides); ++k) {
            if (at(a.sides, k).first == u || at(a.sides, k).second == u) {
                at(a.sides_at, u).push_back(k);
            }
        }
    }
    std::vector<bool> visited(a.unique_pts.size());
    std::vector<bool> claimed(a.ring_pts.size());
    Ints envelopes;
    for (int u = 0; u < count_of(a.unique_pts); ++u) {
        const Ints& through = at(a.rings_at, u);
        if (visited[std::size_t(u)] || through.size() < 3) {
            continue;
        }
        const int largest = *std::max_element(through.begin(), through.end(), [&](int x, int y) {
            return at(a.kept_areas, x) < at(a.kept_areas, y);
        });
        Ints points;
        for (const int ring : through) {
            points.insert(points.end(), at(a.ring_pts, ring).begin(), at(a.ring_pts, ring).end());
        }
        const Ints& outline = at(a.ring_pts, largest);
        const auto off =
            std::find_if(points.begin(), points.end(), [&](int pt) { return !holds(outline, pt); });
        if (!claimed[std::size_t(largest)] && (off == points.end() || encloses(a, outline, *off))) {
            envelopes.push_back(largest);
            for (const int ring : through) {
                claimed[std::size_t(ring)] = true;
            }
            for (const int pt : points) {
                visited[std::size_t(pt)] = true;
            }
        }
    }
    std::sort(envelopes.rbegin(), envelopes.rend());
    for (const int ring : envelopes) {
        remove_ring(a, ring);
    }
}

void nest(Analysis& a) {
    a.is_hole.assign(a.ring_pts.size(), 0);
    for (int i = 0; i < count_of(a.ring_pts); ++i) {
        a.regions.push_back({i});
        const Ints& outer = at(a.ring_pts, i);
        for (int j = 0; j < i; ++j) {
            const Ints& inner = at(a.ring_pts, j);
            const bool meet =
                std::any_of(outer.begin(), outer.end(), [&](int pt) { return holds(inner, pt); });
            if (at(a.is_hole, j) == 0 && !meet && encloses(a, outer, inner[0])) {
                at(a.regions, i).push_back(j);
                at(a.is_hole, j) = 1;
            }
        }
    }
}

Pts points_in(const CArray<tagPOINT>& list) {
    Pts pts;
    for (const tagPOINT& pt : list) {
        pts.push_back({pt.x, pt.y});
    }
    return pts;
}

template <class Record, class Value>
std::vector<Value> field(const CArray<Record>& records, Value Record::*member) {
    std::vector<Value> values;
    for (const Record& record : records) {
        values.push_back(record.*member);
    }
    return values;
}
template <class Record>
Lists field(const CArray<Record>& records, CArray<int> Record::*member) {
    Lists lists;
    for (const Record& record : records) {
        lists.emplace_back((record.*member).begin(), (record.*member).end());
    }
    return lists;
}

} // namespace

Analysis analysis_of(const CREGION& r) {
    Analysis a;
    a.cleaned = curves_in(*r.input_pts, *r.input_counts);
    a.split = curves_in(r.curve_pts, r.curve_counts);
    a.nodes = points_in(r.node_pts);
    for (const CREGION::CURVE_NODE& c : r.curve_to_node) {
        a.curve_to_node.push_back({c.start_node, c.end_node, c.oc_flag, c.ring_dir, c.ring_turn});
    }
    a.curve_num = field(r.node_to_curve, &CREGION::NODE_CURVE::curve_num);
    a.curve_ids = field(r.node_to_curve, &CREGION::NODE_CURVE::curve_ids);
    a.rings = field(r.rings, &CREGION::tagRToC::curve_ids);
    a.areas = field(r.rings, &CREGION::tagRToC::ring_area);
    a.in_rings = field(r.in_rings, &CREGION::tagRToC::curve_ids);
    a.ex_rings = field(r.ex_rings, &CREGION::tagRToC::curve_ids);
    a.unique_pts = points_in(r.unique_pts);
    a.pt_index.assign(r.pt_index.begin(), r.pt_index.end());
    a.ring_pts = field(r.ring_pts, &CREGION::RToPt::pts);
    a.kept_areas = field(r.ring_pts, &CREGION::RToPt::ring_area);
    a.is_hole = field(r.ring_pts, &CREGION::RToPt::is_hole);
    for (const CREGION::RING_SIDE& side : r.sides) {
        a.sides.emplace_back(side.p0, side.p1);
    }
    a.rings_at = field(r.pt_links, &CREGION::PT_LINK::rings);
    a.sides_at = field(r.pt_links, &CREGION::PT_LINK::sides);
    a.regions = field(r.regions, &CREGION::PyToRg::rings);
    return a;
}

Curves curves_from(const char* text) {
    Curves curves(*text == 0 ? 0 : 1);
    for (; *text != 0; text += *text == ' ' ? 1 : 0) {
        int used = 0;
        Pt pt{};
        if (*text == ';') {
            curves.emplace_back();
            ++text;
        } else if (std::sscanf(text, "%d,%d%n", &pt.x, &pt.y, &used) == 2) {
            curves.back().push_back(pt);
            text += used;
        }
    }
    return curves;
}

Network::Network(const Curves& curves) {
    for (const Pts& curve : curves) {
        for (const Pt pt : curve) {
            this->pts.Add({pt.x, pt.y});
        }
        counts.Add(static_cast<int>(curve.size()));
    }
}

Curves curves_in(const CArray<tagPOINT>& pts, const CArray<int>& counts) {
    const Pts all = points_in(pts);
    Curves curves;
    auto start = all.begin();
    for (const int count : counts) {
        curves.emplace_back(start, start + count);
        start += count;
    }
    return curves;
}

} // namespace korvel::test
