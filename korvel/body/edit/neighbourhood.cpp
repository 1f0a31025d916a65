// The neighbourhood of a picked vertex, gathered for a move of many vertices.

#include "korvel/base/indices.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/body/edit/relation_lists.h"
#include "korvel/geometry/marks.h"

using korvel::has_element;
namespace edge_mark = korvel::edge_mark;
namespace face_mark = korvel::face_mark;
namespace vertex_mark = korvel::vertex_mark;

namespace {

void gather_vertices(TMOD3D& model);
void gather_vertex(TMOD3D& model, int vertex, int level);
void gather_neighbours(TMOD3D& model, int vertex, int level);
void gather_faces_and_edges(TMOD3D& model);
void refresh_face(TMOD3D& model, int face);

} // namespace

void TMOD3D::set_rel_triangle_vert() {
    korvel::empty_relation_lists(*this);
    if (has_element(verts, edit_state[korvel::edit_picked_vertex])) {
        gather_vertices(*this);
        gather_faces_and_edges(*this);
    }
    edit_state[korvel::edit_gathered_faces] = relat_list_1.GetSize();
    edit_state[korvel::edit_gathered_vertices] = relat_list_2.GetSize();
    edit_state[korvel::edit_gathered_edges] = relat_list_3.GetSize();
    for (const int f : relat_list_1) {
        refresh_face(*this, f);
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
            refresh_face(*this, f);
        }
    }
}

namespace {

/// Gathers the picked vertex and, level by level, the neighbours of the level before.
void gather_vertices(TMOD3D& model) {
    for (VERT3D& vertex : model.verts) {
        vertex.state_flags &= ~vertex_mark::gathered;
    }
    gather_vertex(model, model.edit_state[korvel::edit_picked_vertex], 0);
    const CArray<int>& gathered = model.relat_list_2;
    const int depth = model.edit_state[korvel::edit_neighbourhood_depth];
    int level_start = 0;
    for (int level = 1; level <= depth && level_start < gathered.GetSize(); ++level) {
        const int level_end = gathered.GetSize();
        for (int i = level_start; i < level_end; ++i) {
            gather_neighbours(model, gathered[i], level);
        }
        level_start = level_end;
    }
}

void gather_vertex(TMOD3D& model, int vertex, int level) {
    model.verts[vertex].state_flags |= vertex_mark::gathered;
    model.relat_list_2.Add(vertex);
    model.relat_list_4.Add(level);
}

void gather_neighbours(TMOD3D& model, int vertex, int level) {
    for (const int v : model.verts[vertex].neighbours) {
        if (has_element(model.verts, v) &&
            (model.verts[v].state_flags & vertex_mark::gathered) == 0) {
            gather_vertex(model, v, level);
        }
    }
}

template <class Records>
void clear_mark(const CArray<int>& listed, Records& records, int mark) {
    for (const int record : listed) {
        if (has_element(records, record)) {
            records[record].state_flags &= ~mark;
        }
    }
}

/// Appends to `list` the listed records that are not marked yet, and marks them.
template <class Records>
void gather(const CArray<int>& listed, Records& records, int mark, CArray<int>& list) {
    for (const int record : listed) {
        if (has_element(records, record) && (records[record].state_flags & mark) == 0) {
            records[record].state_flags |= mark;
            list.Add(record);
        }
    }
}

void gather_faces_and_edges(TMOD3D& model) {
    for (const int v : model.relat_list_2) {
        clear_mark(model.verts[v].faces, model.polys, face_mark::gathered);
        clear_mark(model.verts[v].lines, model.lines, edge_mark::gathered);
    }
    for (const int v : model.relat_list_2) {
        gather(model.verts[v].faces, model.polys, face_mark::gathered, model.relat_list_1);
        gather(model.verts[v].lines, model.lines, edge_mark::gathered, model.relat_list_3);
    }
}

void refresh_face(TMOD3D& model, int face) {
    model.polys[face].set_poly_eql(model.verts);
    model.polys[face].get_rotated_poly_eql(model.verts);
}

} // namespace
