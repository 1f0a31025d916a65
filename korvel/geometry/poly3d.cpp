// A face's lists: copies, the chain of vertices and the chain of edges.

#include "korvel/geometry/poly3d.h"

#include <algorithm>

#include "korvel/base/indices.h"
#include "korvel/base/members.h"
#include "korvel/base/ring_sides.h"
#include "korvel/geometry/vectors.h"

using korvel::has_element;

namespace {

bool joins(const LINE3D& line, int a, int b);

} // namespace

POLY3D::POLY3D(const POLY3D& src) {
    *this = src;
}

POLY3D& POLY3D::operator=(const POLY3D& src) {
    korvel::copy_members(*this, src, &POLY3D::plane, &POLY3D::rotated_plane, &POLY3D::state_flags,
                         &POLY3D::area, &POLY3D::main_axis, &POLY3D::verts, &POLY3D::lines,
                         &POLY3D::neighbour_faces, &POLY3D::bodies);
    return *this;
}

void POLY3D::Copy(const POLY3D& src) {
    *this = src;
}

void POLY3D::RemoveAll() {
    korvel::remove_lists(*this, &POLY3D::verts, &POLY3D::lines, &POLY3D::neighbour_faces,
                         &POLY3D::bodies);
}

void POLY3D::add_a_vert(int v) {
    verts.Add(v);
}

void POLY3D::add_a_line(int e) {
    lines.Add(e);
}

void POLY3D::find_side(CArray<LINE3D, LINE3D&>& lines) {
    korvel::for_each_side(verts, verts.GetSize(), [&](int, int a, int b) {
        if (std::none_of(begin(lines), end(lines),
                         [&](const LINE3D& line) { return joins(line, a, b); })) {
            LINE3D side;
            side.set_line_point(a, b);
            lines.Add(side);
        }
    });
    vert_to_line(lines);
}

void POLY3D::vert_to_line(CArray<LINE3D, LINE3D&>& lines) {
    this->lines.SetSize(0);
    korvel::for_each_side(verts, verts.GetSize(), [&](int i, int a, int b) {
        for (int j = lines.GetUpperBound(); j >= 0; --j) {
            if (joins(lines[j], a, b)) {
                this->lines.SetAtGrow(i, j); // the last of several
                break;
            }
        }
    });
}

void POLY3D::line_to_vert(CArray<LINE3D, LINE3D&>& lines) {
    const CArray<int>& chain = this->lines;
    const int m = chain.GetSize();
    if (m < 1 || !std::all_of(begin(chain), end(chain),
                              [&](int line) { return has_element(lines, line); })) {
        return;
    }
    verts.SetAtGrow(0, lines[chain[0]].start_vert);
    verts.SetAtGrow(1, lines[chain[0]].end_vert);
    // Edges that are not connected leave slots unset; these count as 0.
    const auto vert_at = [&](int k) { return k < verts.GetSize() ? verts[k] : 0; };
    for (int k = 1; k < m; ++k) {
        const int prev = vert_at(k - 1);
        const int cur = k == m - 1 ? verts[0] : vert_at(k);
        // The result overwrites `cur` instead of the slot after it, so that a triangle is reversed
        // against its first edge; of several edges that fit the last one wins.
        for (const int line : chain) {
            const int start = lines[line].start_vert;
            const int end = lines[line].end_vert;
            if (start == cur && end != prev) {
                verts.SetAtGrow(k, end);
            } else if (end == cur && start != prev) {
                verts.SetAtGrow(k, start);
            }
        }
    }
}

int POLY3D::det_poly_include_line(int* p) {
    for (int i = 0; i < verts.GetSize(); ++i) {
        const int a = verts[i];
        const int b = verts[korvel::next_around(i, verts.GetSize())];
        if (a == p[0] && b == p[1]) {
            return 1;
        }
        if (b == p[0] && a == p[1]) {
            return -1;
        }
    }
    return 0;
}

int POLY3D::point_range_in_poly(int v) {
    const int* const found = std::find(begin(verts), end(verts), v);
    return found == end(verts) ? -1 : static_cast<int>(found - begin(verts));
}

void POLY3D::invert_poly_range() {
    std::reverse(begin(verts), end(verts));
}

bool POLY3D::detect_line_in(int e) {
    return std::find(begin(lines), end(lines), e) != end(lines);
}

bool POLY3D::is_composed_vert(int v) {
    return point_range_in_poly(v) >= 0;
}

namespace {

bool joins(const LINE3D& line, int a, int b) {
    return (line.start_vert == a && line.end_vert == b) ||
           (line.start_vert == b && line.end_vert == a);
}

} // namespace
