#include "kit/solids/moved_equations.h"

namespace korvel::kit {

bool has_moved_much(const TMOD3D& model, std::size_t moved) {
    return moved > static_cast<std::size_t>(model.verts.GetSize()) / 16;
}

void compute_equations_at(TMOD3D& model, std::span<const int> vertices) {
    if (has_moved_much(model, vertices.size())) {
        for (LINE3D& edge : model.lines) {
            edge.set_line_eqt(model.verts);
        }
        for (POLY3D& face : model.polys) {
            face.set_poly_eql(model.verts);
        }
        return;
    }
    for (const int v : vertices) {
        for (const int e : model.verts[v].lines) {
            model.lines[e].set_line_eqt(model.verts);
        }
        for (const int f : model.verts[v].faces) {
            model.polys[f].set_poly_eql(model.verts);
        }
    }
}

} // namespace korvel::kit
