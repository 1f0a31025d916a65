// Edge directions and lines in the view, face planes and visibility.

#include "korvel/body/derive/equations.h"

#include "korvel/body/derive/orientation.h"
#include "korvel/geometry/vectors.h"
#include "korvel/plane/line_equation.h"
#include "korvel/platform/check_point.h"

void TMOD3D::comput_mode_aux_parm() {
    constexpr int step = 4096;
    for (int e = 0; e < lines.GetSize(); ++e) {
        lines[e].set_line_eqt(verts);
        korvel::check_point_after(e, lines.GetSize(), step, "setting edge equations");
    }
    korvel::orient_bodies(*this);
    for (int f = 0; f < polys.GetSize(); ++f) {
        polys[f].set_poly_eql(verts);
        korvel::check_point_after(f, polys.GetSize(), step, "setting face equations");
    }
}

namespace korvel {
namespace {

using Points = std::vector<FlatModel::Point>;

const FlatModel::Point* point_at(const Points& points, int v) {
    return v >= 0 && static_cast<std::size_t>(v) < points.size() ? &points[v] : nullptr;
}

} // namespace

void set_equations(LINE3D& line, const Points& points) {
    const FlatModel::Point* const from = point_at(points, line.start_vert);
    const FlatModel::Point* const to = point_at(points, line.end_vert);
    if (from == nullptr || to == nullptr) {
        return;
    }
    line.length = direction_to(from->model, to->model, line.direction);
    line.main_axis = main_axis_of(line.direction);
    const LineEquation seen =
        line_through({from->view[0], from->view[1]}, {to->view[0], to->view[1]});
    line.line_2d_eqt[0] = seen.a;
    line.line_2d_eqt[1] = seen.b;
    line.line_2d_eqt[2] = seen.c;
}

void set_equations(POLY3D& face, const Points& points) {
    if (points.empty()) {
        return;
    }
    if (face.verts.GetSize() >= 3) {
        const FlatModel::Point* const a = point_at(points, face.verts[0]);
        const FlatModel::Point* const b = point_at(points, face.verts[1]);
        const FlatModel::Point* const c = point_at(points, face.verts[2]);
        if (a != nullptr && b != nullptr && c != nullptr) {
            plane_through(a->model, b->model, c->model, face.plane);
            face.main_axis = main_axis_of(face.plane);
            plane_through(a->view, b->view, c->view, face.rotated_plane);
        }
    }
    face.detect_rotated_poly_vis(nullptr);
}

} // namespace korvel
