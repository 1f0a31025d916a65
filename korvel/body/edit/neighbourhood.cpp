// The neighbourhood of a picked vertex, gathered for a move of many vertices.

#include "korvel/base/indices.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/body/tmod3d.h"

using korvel::has_element;

namespace {

constexpr int gathered_vertex = 4;
constexpr int gathered = 2; // of a face or an edge

/// Appends to `list` the listed records that are not marked yet, and marks them.
template <class Records>
void gather(const CArray<int>& listed, Records& records, CArray<int>& list, int& count) {
    for (const int record : listed) {
        if (has_element(records, record) && (records[record].state_flags & gathered) == 0) {
            records[record].state_flags |= gathered;
            list.Add(record);
            ++count;
        }
    }
}

template <class Records>
void clear_gathered(const CArray<int>& listed, Records& records) {
    for (const int record : listed) {
        if (has_element(records, record)) {
            records[record].state_flags &= ~gathered;
        }
    }
}

} // namespace

void TMOD3D::set_rel_triangle_vert() {
    relat_list_1.RemoveAll();
    relat_list_2.RemoveAll();
    relat_list_3.RemoveAll();
    relat_list_4.RemoveAll();
    mut_weights.RemoveAll();
    edit_state[korvel::gathered_face_count] = 0;
    edit_state[korvel::gathered_vertex_count] = 0;
    edit_state[korvel::gathered_edge_count] = 0;
    if (!has_element(verts, edit_state[korvel::picked_vertex])) {
        return;
    }
    for (VERT3D& vertex : verts) {
        vertex.state_flags &= ~gathered_vertex;
    }
    const auto gather_vertex = [&](int v, int level) {
        verts[v].state_flags |= gathered_vertex;
        relat_list_2.Add(v);
        relat_list_4.Add(level);
    };
    gather_vertex(edit_state[korvel::picked_vertex], 0);
    int level_start = 0;
    for (int level = 1;
         level <= edit_state[korvel::neighbourhood_depth] && level_start < relat_list_2.GetSize();
         ++level) {
        const int level_end = relat_list_2.GetSize();
        for (int i = level_start; i < level_end; ++i) {
            for (const int v : verts[relat_list_2[i]].neighbours) {
                if (has_element(verts, v) && (verts[v].state_flags & gathered_vertex) == 0) {
                    gather_vertex(v, level);
                }
            }
        }
        level_start = level_end;
    }
    edit_state[korvel::gathered_vertex_count] = relat_list_2.GetSize();

    for (const int v : relat_list_2) {
        clear_gathered(verts[v].faces, polys);
        clear_gathered(verts[v].lines, lines);
    }
    for (const int v : relat_list_2) {
        gather(verts[v].faces, polys, relat_list_1, edit_state[korvel::gathered_face_count]);
        gather(verts[v].lines, lines, relat_list_3, edit_state[korvel::gathered_edge_count]);
    }
    for (const int f : relat_list_1) {
        polys[f].set_poly_eql(verts);
        polys[f].get_rotated_poly_eql(verts);
    }
}

void TMOD3D::rel_aux_parm() {
    for (const int e : relat_list_3) {
        if (has_element(lines, e)) {
            lines[e].set_line_eqt(verts);
            lines[e].set_line_2d_eqt(verts);
        }
    }
    for (const int f : relat_list_1) {
        if (has_element(polys, f)) {
            polys[f].set_poly_eql(verts);
            polys[f].get_rotated_poly_eql(verts);
        }
    }
}
