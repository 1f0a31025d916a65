// The section model's records, its default content, its dump and its drawing.

#include "korvel/section/tmod2d.h"

#include <algorithm>

#include "korvel/base/members.h"

TMOD2D::TMOD2D(const TMOD2D& src) {
    *this = src;
}

TMOD2D::~TMOD2D() {
    RemoveAll();
}

TMOD2D& TMOD2D::operator=(const TMOD2D& src) {
    korvel::copy_members(*this, src, &TMOD2D::groups, &TMOD2D::polys, &TMOD2D::lines,
                         &TMOD2D::verts);
    return *this;
}

void TMOD2D::Copy(const TMOD2D& src) {
    *this = src;
}

void TMOD2D::RemoveAll() {
    korvel::remove_lists(*this, &TMOD2D::verts, &TMOD2D::lines, &TMOD2D::polys, &TMOD2D::groups);
}

void TMOD2D::intlmode() {
    constexpr int corners[8][2] = {{-2000, -2000}, {2000, -2000}, {2000, 2000}, {-2000, 2000},
                                   {-1000, -1000}, {1000, -1000}, {1000, 1000}, {-1000, 1000}};
    // The first four do not follow the outer square, and the fourth one's end means nothing.
    constexpr int ends[8][2] = {{0, 1}, {1, 3}, {2, 0}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}};
    for (const auto& [x, y] : corners) {
        VERT3D vert;
        vert.model_xyz[0] = x;
        vert.model_xyz[1] = y;
        verts.Add(vert);
    }
    for (const auto& [start, end] : ends) {
        LINE3D line;
        line.set_line_point(start, end);
        lines.Add(line);
    }
    for (const int first : {0, 4}) {
        POLY3D face;
        for (int i = first; i < first + 4; ++i) {
            face.add_a_vert(i);
            face.add_a_line(i);
        }
        polys.Add(face);
    }
    POLY3D_CPLX frame;
    frame.polys.Add(0);
    frame.polys.Add(1);
    groups.Add(frame);
}

void TMOD2D::set_poly_at_grow() {
    FILE* const dump = std::fopen("ttty", "w");
    if (dump == nullptr) {
        return;
    }
    for (int face = 0; face < std::min(korvel::size_of(polys), 2); ++face) {
        const CArray<int>& chain = polys[face].verts;
        const CArray<int>& sides = polys[face].lines;
        for (int j = 0; j < chain.GetSize(); ++j) {
            std::fprintf(dump, "%d", chain[j]);
            if (j < sides.GetSize()) {
                std::fprintf(dump, " %d", sides[j]);
            }
            std::fprintf(dump, "\n");
        }
    }
    std::fclose(dump);
}

void TMOD2D::draw_filled_model(int ax_u, int ax_v, int dev_x, int dev_y, double org_u, double org_v,
                               double unit_u, double unit_v, double scale, CDC* dc) {
    if (dc == nullptr) {
        return;
    }
    dc->SetPolyFillMode(ALTERNATE);
    for (POLY3D_CPLX& group : groups) {
        group.draw_a_fill_poly(ax_u, ax_v, polys, verts, dev_x, dev_y, org_u, org_v, unit_u, unit_v,
                               scale, dc);
    }
}
