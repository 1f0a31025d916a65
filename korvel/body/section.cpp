// Sections of a model by a plane.

#include <algorithm>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/body/tmod3d.h"
#include "korvel/geometry/vectors.h"

using korvel::has_element;

namespace {

constexpr int cut = 16;     // marks: of an edge that is still to be walked, and of a body
constexpr int of_body = 32; // of a face of the body in hand that is still to be walked

/// The faces of one body at each of its edges, in the order of the body's face list.
class FacesAtEdges {
public:
    /// Knows the edges for which `counts(edge)` holds.
    template <class Counts>
    FacesAtEdges(const TMOD3D& model, const BODY3D& body, Counts counts) {
        for (const int f : body.polys) {
            if (has_element(model.polys, f)) {
                for (const int e : model.polys[f].lines) {
                    if (has_element(model.lines, e) && counts(e)) {
                        add(e, f);
                    }
                }
            }
        }
    }

    /// The first face at an edge that is not `other_than`, or −1.
    int first(int edge, int other_than) const {
        const int slot = edges_.find(korvel::pair_key(0, edge));
        int link = slot < 0 ? -1 : heads_[slot].first;
        for (; link >= 0; link = links_[link].next) {
            if (links_[link].face != other_than) {
                return links_[link].face;
            }
        }
        return -1;
    }

private:
    struct Head {
        int first;
        int last;
    };
    struct Link {
        int face;
        int next;
    };

    void add(int edge, int face) {
        const int fresh = static_cast<int>(heads_.size());
        const int slot = edges_.find_or_add(korvel::pair_key(0, edge), fresh);
        const int link = static_cast<int>(links_.size());
        links_.push_back({face, -1});
        if (slot == fresh) {
            heads_.push_back({link, link});
        } else {
            int& last = heads_[slot].last;
            links_[last].next = link;
            last = link;
        }
    }

    korvel::KeyIndex edges_{64};
    std::vector<Head> heads_;
    std::vector<Link> links_;
};

/// Walks from face to face over cut edges until it is back at the first edge, which it takes last.
bool trace_loop(TMOD3D& model, const FacesAtEdges& faces_at, int face, int edge,
                std::vector<int>& loop) {
    int current = edge;
    do {
        face = faces_at.first(current, face);
        if (face < 0) {
            return false; // an open body
        }
        POLY3D& walked = model.polys[face];
        bool moved_on = false;
        if ((walked.state_flags & of_body) != 0) {
            for (const int e : walked.lines) {
                if (has_element(model.lines, e) && (model.lines[e].state_flags & cut) != 0 &&
                    e != current) {
                    // At most one edge leaves each face.
                    model.lines[e].state_flags &= ~cut;
                    walked.state_flags &= ~of_body;
                    loop.push_back(e);
                    current = e;
                    moved_on = true;
                    break;
                }
            }
        }
        if (!moved_on) {
            return false;
        }
    } while (current != edge);
    return true;
}

/// Appends a section vertex for each edge that the plane meets and returns its number for each
/// edge, −1 for the others. Clears the marks `cleared` of all edges on the way.
std::vector<int> cut_edges(TMOD3D& model, const double* plane, int cleared, TMOD2D& out) {
    std::vector<int> vertex_of(static_cast<std::size_t>(model.lines.GetSize()), -1);
    std::vector<double> points;
    int next = 0;
    for (int e = 0; e < model.lines.GetSize(); ++e) {
        LINE3D& edge = model.lines[e];
        if ((edge.state_flags & cleared) != 0) {
            edge.state_flags &= ~cleared;
        }
        double point[3] = {};
        if (has_element(model.verts, edge.start_vert) &&
            korvel::segment_meets_plane(model.verts[edge.start_vert].model_xyz, edge.direction,
                                        edge.length, plane, point)) {
            vertex_of[e] = next++;
            points.insert(points.end(), point, point + 3);
        }
    }
    out.verts.SetSize(next);
    for (int v = 0; v < next; ++v) {
        std::copy_n(points.begin() + 3 * v, 3, out.verts[v].model_xyz);
    }
    return vertex_of;
}

void add_section_face(TMOD2D& out, const std::vector<int>& loop, const std::vector<int>& vertex_of,
                      const BODY3D& body) {
    POLY3D face;
    face.verts.SetSize(static_cast<int>(loop.size()));
    for (std::size_t i = 0; i < loop.size(); ++i) {
        face.verts[static_cast<int>(i)] = vertex_of[loop[i]];
    }
    POLY3D_CPLX group;
    group.polys.Add(out.polys.GetSize());
    group.hue = body.hue;
    group.saturation = body.saturation;
    group.lightness = body.lightness;
    group.rgb_color();
    out.polys.Add(face);
    out.groups.Add(group);
}

} // namespace

void TMOD3D::get_x_section(double v, TMOD2D& out) {
    double plane[4] = {0, 1, 0, -v};
    get_section(plane, out);
}

void TMOD3D::get_y_section(double v, TMOD2D& out) {
    double plane[4] = {1, 0, 0, -v};
    get_section(plane, out);
}

void TMOD3D::get_section(double* plane, TMOD2D& out) {
    out.RemoveAll();
    // Marks are cleared once, and after each body where it has set them; without bodies they stay.
    const std::vector<int> vertex_of = cut_edges(*this, plane, bodies.IsEmpty() ? 0 : cut, out);
    bool faces_are_clear = false;
    std::vector<int> body_cuts;
    std::vector<int> loop;
    int last_cut_body = -1;
    for (int b = 0; b < bodies.GetSize(); ++b) {
        BODY3D& body = bodies[b];
        body.body_flags &= ~cut;
        for (const int e : body_cuts) {
            lines[e].state_flags &= ~cut;
        }
        body_cuts.clear();
        for (const int e : body.lines) {
            if (has_element(lines, e) && vertex_of[e] >= 0) {
                lines[e].state_flags |= cut;
                body.body_flags |= cut;
                body_cuts.push_back(e);
            }
        }
        if (body_cuts.empty()) {
            continue;
        }
        if (!faces_are_clear) {
            for (POLY3D& face : polys) {
                face.state_flags &= ~of_body;
            }
            faces_are_clear = true;
        } else {
            for (const int f : bodies[last_cut_body].polys) {
                if (has_element(polys, f)) {
                    polys[f].state_flags &= ~of_body;
                }
            }
        }
        last_cut_body = b;
        for (const int f : body.polys) {
            if (has_element(polys, f)) {
                polys[f].state_flags |= of_body;
            }
        }

        const FacesAtEdges faces_at(*this, body, [&](int e) {
            // Most edges are told off without a look at the edge.
            return vertex_of[e] >= 0 && (lines[e].state_flags & cut) != 0;
        });
        std::sort(body_cuts.begin(), body_cuts.end());
        for (const int e : body_cuts) {
            if ((lines[e].state_flags & cut) == 0) {
                continue;
            }
            loop.clear();
            if (trace_loop(*this, faces_at, faces_at.first(e, -1), e, loop) && loop.size() >= 3) {
                add_section_face(out, loop, vertex_of, body);
            }
        }
    }
}

bool TMOD3D::trace_section_poly(int body, int face, int edge, CArray<int>& loop) {
    if (!has_element(bodies, body)) {
        return false;
    }
    const FacesAtEdges faces_at(*this, bodies[body], [](int) { return true; });
    std::vector<int> walked;
    const bool closed = trace_loop(*this, faces_at, face, edge, walked);
    for (const int e : walked) {
        loop.Add(e);
    }
    return closed;
}
