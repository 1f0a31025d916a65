#include "korvel/body/edge_chains.h"

#include <utility>
#include <vector>

#include "korvel/geometry/first_index.h"

namespace korvel {
namespace {

/// The edges of a model by their ends. Of several edges between two vertices it knows the last one,
/// which is the one that a face's edge list names.
FirstIndex edges_by_ends(const TMOD3D& model, int more) {
    FirstIndex table(model.lines.GetSize() + more);
    for (int edge = model.lines.GetUpperBound(); edge >= 0; --edge) {
        table.find_or_add(side_key(model.lines[edge].start_vert, model.lines[edge].end_vert), edge);
    }
    return table;
}

/// Calls `visit(i, a, b)` for each pair of vertices that follow one another on the boundary.
template <class Visit>
void for_each_boundary_pair(const POLY3D& face, Visit visit) {
    const int n = face.verts.GetSize();
    for (int i = 0; i < n; ++i) {
        visit(i, face.verts[i], face.verts[i + 1 < n ? i + 1 : 0]);
    }
}

} // namespace

void find_all_sides(TMOD3D& model, int first_face) {
    // A closed surface of triangles has three edges to two faces.
    FirstIndex table = edges_by_ends(model, (model.polys.GetSize() - first_face) / 2 * 3);
    std::vector<std::pair<int, int>> added;
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        POLY3D& face = model.polys[f];
        face.lines.SetSize(0);
        face.lines.SetSize(face.verts.GetSize());
        for_each_boundary_pair(face, [&](int i, int a, int b) {
            const int next = model.lines.GetSize() + static_cast<int>(added.size());
            face.lines[i] = table.find_or_add(side_key(a, b), next);
            if (face.lines[i] == next) {
                added.emplace_back(a, b);
            }
        });
    }
    int edge = model.lines.GetSize();
    model.lines.SetSize(edge + static_cast<int>(added.size()));
    for (const auto& [a, b] : added) {
        model.lines[edge++].set_line_point(a, b);
    }
}

void chain_verts(TMOD3D& model, int first_face) {
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        model.polys[f].line_to_vert(model.lines);
    }
}

void chain_lines(TMOD3D& model, int first_face) {
    const FirstIndex table = edges_by_ends(model, 0);
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        POLY3D& face = model.polys[f];
        face.lines.SetSize(0);
        for_each_boundary_pair(face, [&](int i, int a, int b) {
            const int edge = table.find(side_key(a, b));
            if (edge >= 0) {
                face.lines.SetAtGrow(i, edge);
            }
        });
    }
}

} // namespace korvel
