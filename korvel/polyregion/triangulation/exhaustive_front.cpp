// The advancing front in its exhaustive form: each edge of the region, and then each side that a
// new triangle opens, tries every point of the region and keeps the smallest circumscribed circle.

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <vector>

#include "korvel/base/ring_sides.h"
#include "korvel/polyregion/plydt.h"
#include "korvel/polyregion/side_topology.h"
#include "korvel/polyregion/triangle_tests.h"
#include "korvel/polyregion/triangulation/front_progress.h"

using korvel::PlanePoint;

namespace {

constexpr int open_side = 8;

#if defined(__GNUC__)
__attribute__((format(printf, 2, 3)))
#endif
void write(FILE* trace, const char* format, ...) {
    if (trace != nullptr) {
        std::va_list values;
        va_start(values, format);
        std::vfprintf(trace, format, values);
        va_end(values);
    }
}

/// A point as the two adjoining reals that the predicates take.
struct Coordinates {
    explicit Coordinates(const VERT2D& pt) : xy{pt.x, pt.y} {}
    double xy[2];
};

PlanePoint as_point(const double* xy) {
    return {xy[0], xy[1]};
}

korvel::Direction direction_of(const PLYDT::SIDE& side) {
    return {side.ux, side.uy, side.len};
}

bool joins(const PLYDT::SIDE& side, int a, int b) {
    return (side.p0 == a && side.p1 == b) || (side.p0 == b && side.p1 == a);
}

PLYDT::SIDE side_between(int p0, int p1) {
    PLYDT::SIDE side;
    side.p0 = p0;
    side.p1 = p1;
    return side;
}

} // namespace

void PLYDT::close_front_exhaustively(FILE* trace, PyToRg& rg) {
    CArray<SIDE> bund;
    for (const int ring : rg.rings) {
        for (const int side : ring_list[ring].sides) {
            bund.Add(side_list[side]);
            write(trace, "side=%d p=%d %d\n", side, side_list[side].p0, side_list[side].p1);
        }
    }
    CArray<SIDE> front;
    CArray<TRG> candidates;
    korvel::FrontProgress progress(*this, rg);
    constexpr int every_edge = 1; // each is compared with all points

    for (int i = 0; i < rg.rings.GetSize(); ++i) {
        const CArray<int>& pts = ring_list[rg.rings[i]].pts;
        korvel::for_each_side(pts, pts.GetSize(), [&](int, int from, int to) {
            // Holes run backwards, so that the region lies on the same hand of every edge.
            const int a = i == 0 ? from : to;
            const int b = i == 0 ? to : from;
            write(trace, "%d %d\n", a, b);
            gather_candidates(trace, rg, a, b, candidates);
            select_trangle(trace, rg, candidates, bund, front);
            progress.edge_is_closed(*this, every_edge);
        });
    }

    // Each pass closes what the one before has opened.
    for (int start = 0, end = front.GetSize(); start < end; start = end, end = front.GetSize()) {
        for (int j = start; j < end; ++j) {
            if ((front[j].flags & open_side) == 0) {
                continue;
            }
            front[j].flags &= ~open_side;
            const int a = front[j].p1; // reversed: away from the triangle that opened the side
            const int b = front[j].p0;
            write(trace, "insidespt======== %d %d\n", a, b);
            gather_candidates(trace, rg, a, b, candidates);
            select_trangle(trace, rg, candidates, bund, front);
            progress.edge_is_closed(*this, every_edge);
        }
    }
}

void PLYDT::gather_candidates(FILE* trace, PyToRg& rg, int a, int b, CArray<TRG>& candidates) {
    candidates.SetSize(0);
    const bool asks_all = makes_all_tests();
    for (const int ring : rg.rings) {
        for (const int p : ring_list[ring].pts) {
            if (p == a || p == b) {
                continue;
            }
            write(trace, "selpt %d\n", p);
            TRG t;
            t.va = a;
            t.vb = b;
            t.vc = p;
            if (!asks_all || !attrglist(trg_list, t)) { // else asked of what may win
                candidates.Add(t);
            }
        }
    }
}

void PLYDT::select_trangle(FILE* trace, PyToRg& rg, CArray<TRG>& candidates, CArray<SIDE>& bund,
                           CArray<SIDE>& front) {
    const int best = makes_all_tests() ? choose_by_all_tests(trace, rg, candidates, bund, front)
                                       : choose_by_radius(rg, candidates, bund, front);
    if (best < 0) {
        return;
    }
    const TRG winner = candidates[best];
    trg_list.Add(winner);
    write(trace, "min r %d %d %d\n", winner.va, winner.vb, winner.vc);

    SIDE second = side_between(winner.vb, winner.vc);
    SIDE third = side_between(winner.vc, winner.va);
    for (SIDE* side : {&second, &third}) {
        if (!atsidelist(bund, *side)) {
            add_a_line(front, *side);
        }
    }
    for (const SIDE& side : front) {
        write(trace, "inside = %d %d mus = %d\n", side.p0, side.p1,
              (side.flags & open_side) != 0 ? 1 : 0);
    }
}

/// Makes every test on every candidate and returns the best of those that are left, or −1.
int PLYDT::choose_by_all_tests(FILE* trace, PyToRg& rg, CArray<TRG>& candidates, CArray<SIDE>& bund,
                               CArray<SIDE>& front) {
    const auto remove_where = [&](auto goes) {
        for (int i = candidates.GetUpperBound(); i >= 0; --i) {
            if (goes(candidates[i])) {
                candidates.RemoveAt(i);
            }
        }
    };
    remove_where([&](const TRG& t) {
        write(trace, "begen %d %d %d\n", t.va, t.vb, t.vc);
        return turns_away(t);
    });
    remove_where([&](const TRG& t) { return has_crossed_side(trace, t, bund, front); });
    remove_where([&](TRG& t) {
        write(trace, "pru  %d %d %d\n", t.va, t.vb, t.vc);
        return contian_pt(rg, t);
    });
    if (candidates.IsEmpty()) {
        return -1;
    }
    int best = 0;
    for (int i = 0; i < candidates.GetSize(); ++i) {
        TRG& t = candidates[i];
        write(trace, "cross side %d %d %d\n", t.va, t.vb, t.vc);
        set_radius(t);
        // The first of equals wins, and a first radius that is not a number is never beaten.
        if (t.radius < candidates[best].radius) {
            best = i;
        }
    }
    return best;
}

/// The same candidate, with the costly tests made in the order of the radii and only until one
/// survives them.
int PLYDT::choose_by_radius(PyToRg& rg, CArray<TRG>& candidates, CArray<SIDE>& bund,
                            CArray<SIDE>& front) {
    const auto survives = [&](int i) {
        return !has_crossed_side(nullptr, candidates[i], bund, front) &&
               !contian_pt(rg, candidates[i]) && !attrglist(trg_list, candidates[i]);
    };
    std::vector<int> by_radius;
    std::vector<int> undefined;
    for (int i = 0; i < candidates.GetSize(); ++i) {
        if (!turns_away(candidates[i])) {
            set_radius(candidates[i]);
            (std::isnan(candidates[i].radius) ? undefined : by_radius).push_back(i);
        }
    }
    const auto is_worse = [&](int i, int j) {
        const double a = candidates[i].radius;
        const double b = candidates[j].radius;
        return a != b ? a > b : i > j;
    };
    std::vector<int> heap = by_radius;
    std::make_heap(heap.begin(), heap.end(), is_worse);
    while (!heap.empty() && !survives(heap.front())) {
        std::pop_heap(heap.begin(), heap.end(), is_worse);
        heap.pop_back();
    }
    const int best = heap.empty() ? -1 : heap.front();

    // A radius that is not a number wins when no other survivor comes before it.
    const auto first = std::find_if(undefined.begin(), undefined.end(),
                                    [&](int i) { return (best < 0 || i < best) && survives(i); });
    if (first == undefined.end()) {
        return best;
    }
    const bool is_beaten = std::any_of(by_radius.begin(), by_radius.end(),
                                       [&](int i) { return i < *first && survives(i); });
    return is_beaten ? best : *first;
}

/// Whether the third corner lies on the outer side of the edge; one on its line does not.
bool PLYDT::turns_away(const TRG& t) {
    Coordinates a(pt_list[t.va]);
    Coordinates b(pt_list[t.vb]);
    Coordinates c(pt_list[t.vc]);
    return vert_beside_s(a.xy, b.xy, c.xy) == -1;
}

bool PLYDT::has_crossed_side(FILE* trace, const TRG& t, CArray<SIDE>& bund, CArray<SIDE>& front) {
    write(trace, "not reguaur %d %d %d\n", t.va, t.vb, t.vc);
    SIDE s = side_between(t.vb, t.vc);
    write(trace, "texside1 %d %d\n", t.vb, t.vc);
    if (crosses_bund_or_front(trace, s, bund, front, 1)) {
        return true;
    }
    s = side_between(t.vc, t.va);
    write(trace, "tinside %d %d\n", t.vc, t.va);
    return crosses_bund_or_front(trace, s, bund, front, 2);
}

void PLYDT::set_radius(TRG& t) {
    Coordinates a(pt_list[t.va]);
    Coordinates b(pt_list[t.vb]);
    Coordinates c(pt_list[t.vc]);
    t.radius = circum_radius(a.xy, b.xy, c.xy);
}

bool PLYDT::crosses_bund_or_front(FILE* trace, SIDE& s, CArray<SIDE>& bund, CArray<SIDE>& front,
                                  int test) {
    Coordinates from(pt_list[s.p0]);
    Coordinates to(pt_list[s.p1]);
    double line[3];
    line_2d_equation(from.xy, to.xy, line);
    s.ux = line[0];
    s.uy = line[1];
    s.len = line[2];
    if (!atsidelist(bund, s) && line_cross_poly_bund(trace, bund, s)) {
        write(trace, "test %d exside\n", test);
        return true;
    }
    if (!atsidelist(front, s) && line_cross_poly_bund(trace, front, s)) {
        write(trace, "test %d inside\n", test);
        return true;
    }
    return false;
}

void PLYDT::add_a_line(CArray<SIDE>& list, SIDE& s) {
    for (SIDE& side : list) {
        if (joins(side, s.p0, s.p1)) {
            side.flags &= ~open_side;
            return;
        }
    }
    Coordinates from(pt_list[s.p0]);
    Coordinates to(pt_list[s.p1]);
    double line[3];
    line_2d_equation(from.xy, to.xy, line);
    SIDE opened = side_between(s.p0, s.p1);
    opened.flags = s.flags | open_side;
    opened.ux = line[0];
    opened.uy = line[1];
    opened.len = line[2];
    list.Add(opened);
}

bool PLYDT::line_cross_poly_bund(FILE* trace, CArray<SIDE>& list, SIDE& s) {
    for (int i = 0; i < list.GetSize(); ++i) {
        if (line_cross(trace, list[i], s)) {
            return true;
        }
        write(trace, "side = %d\n", i);
    }
    return false;
}

bool PLYDT::line_cross(FILE* trace, SIDE& e, SIDE& s) {
    if (e.p0 == s.p0 || e.p0 == s.p1 || e.p1 == s.p0 || e.p1 == s.p1) {
        return false;
    }
    const korvel::SideMeeting meeting =
        korvel::meet_sides(korvel::plane_point(pt_list[e.p0]), direction_of(e),
                           korvel::plane_point(pt_list[s.p0]), direction_of(s));
    write(trace, "%d %d %d %d\n", e.p0, e.p1, s.p0, s.p1);
    write(trace, "c= %f\n", meeting.det);
    if (meeting.det == 0 || std::isnan(meeting.det)) {
        return false;
    }
    const auto write_side = [&](const SIDE& side, double at) {
        write(trace, "%f %f\n%f %f\n%f %f\n", pt_list[side.p0].x, pt_list[side.p0].y,
              pt_list[side.p1].x, pt_list[side.p1].y, side.len, at);
    };
    write(trace, "%f %f %f\n", e.ux, e.uy, e.len);
    write(trace, "%f %f %f\n", s.ux, s.uy, s.len);
    write(trace, "%f\n", meeting.det);
    write_side(e, meeting.on_e);
    write_side(s, meeting.on_s);
    return meeting.crosses;
}

void PLYDT::line_2d_equation(double* a, double* b, double* out) {
    const korvel::Direction direction = korvel::direction_between(as_point(a), as_point(b));
    out[0] = direction.ux;
    out[1] = direction.uy;
    out[2] = direction.len;
}

/// Whether c lies on the line through a and b, or on its mirror image: absolute values are
/// compared.
bool PLYDT::coline(double* a, double* b, double* c) {
    return std::fabs((c[1] - a[1]) * (b[0] - a[0])) == std::fabs((b[1] - a[1]) * (c[0] - a[0]));
}

int PLYDT::vert_beside_s(double* a, double* b, double* p) {
    return korvel::turn_sign(as_point(a), as_point(b), as_point(p));
}

bool PLYDT::contian_pt(PyToRg& rg, TRG& t) {
    for (const int ring : rg.rings) {
        for (const int pt : ring_list[ring].pts) {
            if (pt_intrangle(pt, t)) {
                return true;
            }
        }
    }
    return false;
}

bool PLYDT::pt_intrangle(int k, TRG& t) {
    if (k == t.va || k == t.vb || k == t.vc) {
        return false;
    }
    return korvel::strictly_inside(
        korvel::plane_point(pt_list[t.va]), korvel::plane_point(pt_list[t.vb]),
        korvel::plane_point(pt_list[t.vc]), korvel::plane_point(pt_list[k]));
}

double PLYDT::circum_radius(double* a, double* b, double* c) {
    return korvel::circumradius(as_point(a), as_point(b), as_point(c));
}

bool PLYDT::atsidelist(CArray<SIDE>& list, SIDE& s) {
    return std::any_of(begin(list), end(list),
                       [&](const SIDE& side) { return joins(side, s.p0, s.p1); });
}

bool PLYDT::attrglist(CArray<TRG>& list, TRG& t) {
    const auto is_corner = [&](int v) { return v == t.va || v == t.vb || v == t.vc; };
    return std::any_of(begin(list), end(list), [&](const TRG& listed) {
        return is_corner(listed.va) && is_corner(listed.vb) && is_corner(listed.vc);
    });
}
