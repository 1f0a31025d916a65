#include "tests/body/plain_model.h"

#include <algorithm>

namespace korvel::test {
namespace {

using IntArray = CArray<int>;

bool holds(const IntArray& list, int value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

template <class Records>
void clear_flag(Records& records, int flag) {
    for (auto& record : records) {
        record.state_flags &= ~flag;
    }
}

void set_volume(TMOD3D& model, BODY3D& body) {
    double sum = 0;
    for (const int f : body.polys) {
        const IntArray& verts = model.polys[f].verts;
        if (verts.GetSize() >= 3) {
            const double* p = model.verts[verts[0]].model_xyz;
            const double* q = model.verts[verts[1]].model_xyz;
            const double* r = model.verts[verts[2]].model_xyz;
            sum += p[0] * (q[1] * r[2] - q[2] * r[1]) + p[1] * (q[2] * r[0] - q[0] * r[2]) +
                   p[2] * (q[0] * r[1] - q[1] * r[0]);
        }
    }
    body.volume = sum * 0.16666666666666666;
}

void orient(TMOD3D& model, BODY3D& body) {
    const int faces = body.polys.GetSize();
    const auto face_at = [&](int index) -> POLY3D& { return model.polys[body.polys[index]]; };
    for (int i = 0; i < faces; ++i) {
        face_at(i).state_flags = (face_at(i).state_flags & ~2) | 32 | 64;
    }
    if (faces > 0) {
        face_at(0).state_flags = (face_at(0).state_flags | 2) & ~32;
    }
    for (bool again = true; again;) {
        again = false;
        for (int i = 0; i < faces; ++i) {
            POLY3D& face = face_at(i);
            if ((face.state_flags & 2) == 0) {
                continue;
            }
            again = true;
            for (int k = 0; k < face.verts.GetSize(); ++k) {
                int pair[2] = {face.verts[k], face.verts[(k + 1) % face.verts.GetSize()]};
                for (int j = 0; j < faces; ++j) {
                    const int runs = face_at(j).det_poly_include_line(pair);
                    if (j != i && (face_at(j).state_flags & 32) != 0 && runs != 0) {
                        if (runs == 1) {
                            face_at(j).invert_poly_range();
                        }
                        face_at(j).state_flags = (face_at(j).state_flags | 2) & ~32;
                        break;
                    }
                }
            }
            face.state_flags &= ~2;
        }
    }
    set_volume(model, body);
    for (int i = 0; i < faces && body.volume < 0; ++i) {
        face_at(i).invert_poly_range();
        face_at(i).set_poly_eql(model.verts);
    }
}

/// Appends to `found` what is listed and does not carry the flag yet.
template <class Records, class Flags>
void collect(const IntArray& listed, Records& records, Flags flags, int flag, IntArray& found) {
    for (const int i : listed) {
        if ((records[i].*flags & flag) == 0) {
            records[i].*flags |= flag;
            found.Add(i);
        }
    }
}

/// The records that list i.
template <class Records, class List>
void list_holders(const Records& records, List list, int i, IntArray& holders) {
    holders.RemoveAll();
    for (int r = 0; r < records.GetSize(); ++r) {
        if (holds(records[r].*list, i)) {
            holders.Add(r);
        }
    }
}

} // namespace

void comput_mode_aux_parm_plainly(TMOD3D& model) {
    for (LINE3D& line : model.lines) {
        line.set_line_eqt(model.verts);
    }
    for (BODY3D& body : model.bodies) {
        orient(model, body);
    }
    for (POLY3D& face : model.polys) {
        face.set_poly_eql(model.verts);
    }
    for (BODY3D& body : model.bodies) {
        set_volume(model, body);
    }
}

void found_top_rel_plainly(TMOD3D& model) {
    for (BODY3D& body : model.bodies) {
        clear_flag(model.lines, 16);
        clear_flag(model.verts, 16);
        body.lines.RemoveAll();
        body.verts.RemoveAll();
        for (const int f : body.polys) {
            collect(model.polys[f].verts, model.verts, &VERT3D::state_flags, 16, body.verts);
            collect(model.polys[f].lines, model.lines, &LINE3D::state_flags, 16, body.lines);
        }
    }
    for (int v = 0; v < model.verts.GetSize(); ++v) {
        VERT3D& vertex = model.verts[v];
        vertex.lines.RemoveAll();
        vertex.neighbours.RemoveAll();
        for (int e = 0; e < model.lines.GetSize(); ++e) {
            const int other = model.lines[e].det_vert_at(v);
            if (other >= 0) {
                vertex.lines.Add(e);
                vertex.neighbours.Add(other);
            }
        }
        list_holders(model.polys, &POLY3D::verts, v, vertex.faces);
        list_holders(model.bodies, &BODY3D::verts, v, vertex.bodies);
    }
    for (int e = 0; e < model.lines.GetSize(); ++e) {
        list_holders(model.polys, &POLY3D::lines, e, model.lines[e].faces);
        list_holders(model.bodies, &BODY3D::lines, e, model.lines[e].bodies);
    }
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        POLY3D& face = model.polys[f];
        for (const int e : face.lines) {
            for (const int g : model.lines[e].faces) {
                model.polys[g].state_flags &= ~32;
            }
        }
        face.state_flags |= 32;
        face.neighbour_faces.RemoveAll();
        for (const int e : face.lines) {
            collect(model.lines[e].faces, model.polys, &POLY3D::state_flags, 32,
                    face.neighbour_faces);
        }
        list_holders(model.bodies, &BODY3D::polys, f, face.bodies);
    }
    for (BODY3D& body : model.bodies) {
        for (BODY3D& other : model.bodies) {
            other.body_flags &= ~16;
        }
        body.body_flags |= 16;
        body.neighbour_bodies.RemoveAll();
        for (const int f : body.polys) {
            collect(model.polys[f].bodies, model.bodies, &BODY3D::body_flags, 16,
                    body.neighbour_bodies);
        }
    }
}

bool legal_body_rel_side_plainly(TMOD3D& model) {
    for (const int e : model.relat_list_3) {
        clear_flag(model.polys, 32);
        for (const int v : {model.lines[e].start_vert, model.lines[e].end_vert}) {
            for (const int f : model.verts[v].faces) {
                model.polys[f].state_flags |= 32;
            }
        }
        for (POLY3D& face : model.polys) {
            if ((face.state_flags & 32) == 0 &&
                model.lines[e].detect_line_cross_poly(face, model.verts)) {
                return false;
            }
            face.state_flags |= 32;
        }
    }
    return true;
}

bool trace_section_poly_plainly(TMOD3D& model, int body, int face, int edge, IntArray& loop) {
    const IntArray& polys = model.bodies[body].polys;
    int current = edge;
    do {
        const int* next = std::find_if(polys.begin(), polys.end(), [&](int f) {
            return f != face && holds(model.polys[f].lines, current);
        });
        if (next == polys.end()) {
            return false;
        }
        POLY3D& walked = model.polys[*next];
        const int before = loop.GetSize();
        for (const int e : walked.lines) {
            if ((walked.state_flags & 32) != 0 && (model.lines[e].state_flags & 16) != 0 &&
                e != current) {
                model.lines[e].state_flags &= ~16;
                walked.state_flags &= ~32;
                loop.Add(e);
                current = e;
                face = *next;
            }
        }
        if (loop.GetSize() == before) {
            return false;
        }
    } while (current != edge);
    return true;
}

void add_model_plainly(TMOD3D& model, const TMOD3D& added) {
    const int first_vertex = model.verts.GetSize();
    const int first_face = model.polys.GetSize();
    const int first_body = model.bodies.GetSize();
    model.verts.SetSize(first_vertex + added.verts.GetSize());
    for (int v = 0; v < added.verts.GetSize(); ++v) {
        std::copy_n(added.verts[v].model_xyz, 3, model.verts[first_vertex + v].model_xyz);
    }
    for (POLY3D face : added.polys) {
        std::for_each(face.verts.begin(), face.verts.end(), [=](int& v) { v += first_vertex; });
        model.polys.Add(face);
    }
    for (BODY3D body : added.bodies) {
        std::for_each(body.polys.begin(), body.polys.end(), [=](int& f) { f += first_face; });
        model.bodies.Add(body);
    }
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        model.polys[f].find_side(model.lines);
    }
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        model.polys[f].line_to_vert(model.lines);
        model.polys[f].vert_to_line(model.lines);
    }
    for (int b = first_body; b < model.bodies.GetSize(); ++b) {
        orient(model, model.bodies[b]);
    }
    comput_mode_aux_parm_plainly(model);
    model.model_wrap_cuboid();
    model.rotate_model();
    model.mode_ok = 1;
    found_top_rel_plainly(model);
}

void get_section_plainly(TMOD3D& model, const double* n, TMOD2D& out) {
    IntArray vertex_of;
    for (const LINE3D& line : model.lines) {
        const double* p = model.verts[line.start_vert].model_xyz;
        const double* d = line.direction;
        const double s = n[0] * d[0] + n[1] * d[1] + n[2] * d[2];
        const double t = -(n[0] * p[0] + n[1] * p[1] + n[2] * p[2] + n[3]) / s;
        VERT3D vertex;
        for (int k = 0; k < 3; ++k) {
            vertex.model_xyz[k] = p[k] + t * d[k];
        }
        vertex_of.Add(s == 0 || (t - line.length) * t > 0 ? -1 : out.verts.Add(vertex));
    }
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        BODY3D& body = model.bodies[b];
        body.body_flags &= ~16;
        clear_flag(model.lines, 16);
        for (const int e : body.lines) {
            if (vertex_of[e] >= 0) {
                model.lines[e].state_flags |= 16;
                body.body_flags |= 16;
            }
        }
        if ((body.body_flags & 16) == 0) {
            continue;
        }
        clear_flag(model.polys, 32);
        for (const int f : body.polys) {
            model.polys[f].state_flags |= 32;
        }
        for (int e = 0; e < model.lines.GetSize(); ++e) {
            const int* first = std::find_if(body.polys.begin(), body.polys.end(),
                                            [&](int f) { return holds(model.polys[f].lines, e); });
            IntArray loop;
            if ((model.lines[e].state_flags & 16) == 0 ||
                !trace_section_poly_plainly(model, b, *first, e, loop) || loop.GetSize() < 3) {
                continue;
            }
            POLY3D face;
            for (const int edge : loop) {
                face.add_a_vert(vertex_of[edge]);
            }
            POLY3D_CPLX group;
            group.polys.Add(out.polys.Add(face));
            group.hue = body.hue;
            group.saturation = body.saturation;
            group.lightness = body.lightness;
            group.rgb_color();
            out.groups.Add(group);
        }
    }
}

} // namespace korvel::test
