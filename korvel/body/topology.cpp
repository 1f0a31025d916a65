// The relations between vertices, edges, faces and bodies.

#include <utility>
#include <vector>

#include "korvel/body/tmod3d.h"
#include "korvel/geometry/list_index.h"

using korvel::distribute;
using korvel::has_element;

namespace {

constexpr int in_body_list = 16;      // of a vertex or an edge
constexpr int seen_face = 32;         // of a face
constexpr int in_neighbour_list = 16; // of a body

/// Calls `add(listed, record)` for every entry of the records' index lists, once for each record
/// that lists it; entries outside the `size` listed things are passed over.
template <class Records, class ListOf, class Add>
void for_each_entry(const Records& records, ListOf list_of, int size, Add add) {
    std::vector<int> last_record(static_cast<std::size_t>(size), -1);
    for (int record = 0; record < records.GetSize(); ++record) {
        for (const int listed : list_of(records[record])) {
            if (listed >= 0 && listed < size &&
                std::exchange(last_record[static_cast<std::size_t>(listed)], record) != record) {
                add(listed, record);
            }
        }
    }
}

/// Fills, for each of `targets`, the list of the records that list it, ascending.
template <class Targets, class BackList, class Records, class ListOf>
void fill_back_lists(Targets& targets, BackList back_list, const Records& records, ListOf list_of) {
    const auto each_entry = [&](auto add) {
        for_each_entry(records, list_of, targets.GetSize(), add);
    };
    distribute(targets.GetSize(), each_entry,
               [&](int target) -> CArray<int>& { return targets[target].*back_list; });
}

void set_body_lists(TMOD3D& model) {
    if (model.bodies.IsEmpty()) {
        return; // marks are cleared for bodies alone
    }
    for (LINE3D& line : model.lines) {
        line.state_flags &= ~in_body_list;
    }
    for (VERT3D& vertex : model.verts) {
        vertex.state_flags &= ~in_body_list;
    }
    std::vector<int> found_verts;
    std::vector<int> found_lines;
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        // Only the last body's marks stay, as if all were cleared before each body.
        for (const int v : found_verts) {
            model.verts[v].state_flags &= ~in_body_list;
        }
        for (const int e : found_lines) {
            model.lines[e].state_flags &= ~in_body_list;
        }
        found_verts.clear();
        found_lines.clear();
        BODY3D& body = model.bodies[b];
        for (const int f : body.polys) {
            if (!has_element(model.polys, f)) {
                continue;
            }
            for (const int v : model.polys[f].verts) {
                if (has_element(model.verts, v) &&
                    (model.verts[v].state_flags & in_body_list) == 0) {
                    model.verts[v].state_flags |= in_body_list;
                    found_verts.push_back(v);
                }
            }
            for (const int e : model.polys[f].lines) {
                if (has_element(model.lines, e) &&
                    (model.lines[e].state_flags & in_body_list) == 0) {
                    model.lines[e].state_flags |= in_body_list;
                    found_lines.push_back(e);
                }
            }
        }
        korvel::assign_list(body.verts, found_verts);
        korvel::assign_list(body.lines, found_lines);
    }
}

void relate_vertices(TMOD3D& model) {
    const auto each_end = [&](auto add) {
        for (int e = 0; e < model.lines.GetSize(); ++e) {
            const int start = model.lines[e].start_vert;
            const int end = model.lines[e].end_vert;
            if (has_element(model.verts, start) && end >= 0) {
                add(start, e);
            }
            if (has_element(model.verts, end) && start >= 0 && start != end) {
                add(end, e);
            }
        }
    };
    distribute(model.verts.GetSize(), each_end,
               [&](int v) -> CArray<int>& { return model.verts[v].lines; });
    for (int v = 0; v < model.verts.GetSize(); ++v) {
        VERT3D& vertex = model.verts[v];
        vertex.neighbours.SetSize(0);
        vertex.neighbours.SetSize(vertex.lines.GetSize());
        for (int i = 0; i < vertex.lines.GetSize(); ++i) {
            vertex.neighbours[i] = model.lines[vertex.lines[i]].det_vert_at(v);
        }
    }
    fill_back_lists(model.verts, &VERT3D::faces, model.polys,
                    [](const POLY3D& face) -> const CArray<int>& { return face.verts; });
    fill_back_lists(model.verts, &VERT3D::bodies, model.bodies,
                    [](const BODY3D& body) -> const CArray<int>& { return body.verts; });
}

void relate_edges(TMOD3D& model) {
    fill_back_lists(model.lines, &LINE3D::faces, model.polys,
                    [](const POLY3D& face) -> const CArray<int>& { return face.lines; });
    fill_back_lists(model.lines, &LINE3D::bodies, model.bodies,
                    [](const BODY3D& body) -> const CArray<int>& { return body.lines; });
}

void relate_faces(TMOD3D& model) {
    std::vector<int> found;
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        POLY3D& face = model.polys[f];
        const auto for_each_face_on_edges = [&](auto visit) {
            for (const int e : face.lines) {
                if (has_element(model.lines, e)) {
                    for (const int g : model.lines[e].faces) {
                        visit(g);
                    }
                }
            }
        };
        for_each_face_on_edges([&](int g) { model.polys[g].state_flags &= ~seen_face; });
        face.state_flags |= seen_face;
        found.clear();
        for_each_face_on_edges([&](int g) {
            if ((model.polys[g].state_flags & seen_face) == 0) {
                model.polys[g].state_flags |= seen_face;
                found.push_back(g);
            }
        });
        korvel::assign_list(face.neighbour_faces, found);
    }
    fill_back_lists(model.polys, &POLY3D::bodies, model.bodies,
                    [](const BODY3D& body) -> const CArray<int>& { return body.polys; });
}

void relate_bodies(TMOD3D& model) {
    for (BODY3D& body : model.bodies) {
        body.body_flags &= ~in_neighbour_list;
    }
    std::vector<int> found;
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        // Only the last body's marks stay, as if all were cleared before each body.
        if (b > 0) {
            model.bodies[b - 1].body_flags &= ~in_neighbour_list;
        }
        for (const int c : found) {
            model.bodies[c].body_flags &= ~in_neighbour_list;
        }
        found.clear();
        BODY3D& body = model.bodies[b];
        body.body_flags |= in_neighbour_list;
        for (const int f : body.polys) {
            if (!has_element(model.polys, f)) {
                continue;
            }
            for (const int c : model.polys[f].bodies) {
                if ((model.bodies[c].body_flags & in_neighbour_list) == 0) {
                    model.bodies[c].body_flags |= in_neighbour_list;
                    found.push_back(c);
                }
            }
        }
        korvel::assign_list(body.neighbour_bodies, found);
    }
}

} // namespace

void TMOD3D::found_top_rel() {
    set_body_lists(*this);
    relate_vertices(*this);
    relate_edges(*this);
    relate_faces(*this);
    relate_bodies(*this);
}
