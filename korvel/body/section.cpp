// Sections of a model by a plane.

#include <algorithm>
#include <cmath>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/body/tmod3d.h"
#include "korvel/geometry/marks.h"
#include "korvel/geometry/vectors.h"

using korvel::has_element;
namespace edge_mark = korvel::edge_mark;
namespace face_mark = korvel::face_mark;
namespace body_mark = korvel::body_mark;

namespace {

class FacesAtEdges;

std::vector<int> cut_edges(TMOD3D& model, const double* plane, TMOD2D& out);
std::vector<double> heights_above(const double* plane, const TMOD3D& model);
bool is_certainly_missed(double height, const LINE3D& edge, const double* plane);
void mark_cut_edges(TMOD3D& model, BODY3D& body, const std::vector<int>& vertex_of,
                    std::vector<int>& body_cuts);
void trace_body(TMOD3D& model, const BODY3D& body, std::vector<int>& body_cuts,
                const std::vector<int>& vertex_of, TMOD2D& out);
bool trace_loop(TMOD3D& model, const FacesAtEdges& faces_at, int face, int edge,
                std::vector<int>& loop);

/// Clears the marks of the faces that do not belong to the body that is cut. Before the first such
/// body all others are cleared; after that only the faces of the body before it have marks.
class CutBodyMarks {
public:
    explicit CutBodyMarks(TMOD3D& model) : model_(model) {}
    void clear_before(const BODY3D& body);

private:
    void clear_all_but(const BODY3D& body);

    TMOD3D& model_;
    const BODY3D* marked_ = nullptr;
};

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
    const std::vector<int> vertex_of = cut_edges(*this, plane, out);
    CutBodyMarks body_marks(*this);
    std::vector<int> body_cuts; // the edges of the body in hand that the plane meets
    for (BODY3D& body : bodies) {
        mark_cut_edges(*this, body, vertex_of, body_cuts);
        if (!body_cuts.empty()) {
            body_marks.clear_before(body);
            trace_body(*this, body, body_cuts, vertex_of, out);
        }
    }
}

namespace {

/// Appends a section vertex for each edge that the plane meets and returns its number for each
/// edge, −1 for the others. Clears the marks of all edges, unless the model has no body to walk.
std::vector<int> cut_edges(TMOD3D& model, const double* plane, TMOD2D& out) {
    const int cleared = model.bodies.IsEmpty() ? 0 : edge_mark::cut;
    const std::vector<double> heights = heights_above(plane, model);
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
            !is_certainly_missed(heights[edge.start_vert], edge, plane) &&
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

/// Of all vertices, since the records of an edge's vertices are far from each other and large.
std::vector<double> heights_above(const double* plane, const TMOD3D& model) {
    std::vector<double> heights;
    heights.reserve(static_cast<std::size_t>(model.verts.GetSize()));
    for (const VERT3D& vertex : model.verts) {
        heights.push_back(korvel::height_above(plane, vertex.model_xyz));
    }
    return heights;
}

/// Whether `segment_meets_plane` is certain to return false, since it computes a place t along the
/// edge that is more than 1e-7 of the length away from both ends, and so large that the product of
/// its distances from them does not underflow. Excludes most edges before a division.
bool is_certainly_missed(double height, const LINE3D& edge, const double* plane) {
    constexpr double least = 1e-140;
    const double reach = 1.0000001 * (std::fabs(edge.length) + least);
    return std::fabs(height) > std::fabs(korvel::climb_along(plane, edge.direction)) * reach;
}

/// Moves the edges' marks from one body, whose cut edges `body_cuts` contains, to the next one.
void mark_cut_edges(TMOD3D& model, BODY3D& body, const std::vector<int>& vertex_of,
                    std::vector<int>& body_cuts) {
    for (const int e : body_cuts) {
        model.lines[e].state_flags &= ~edge_mark::cut;
    }
    body_cuts.clear();
    body.body_flags &= ~body_mark::cut;
    for (const int e : body.lines) {
        if (has_element(model.lines, e) && vertex_of[e] >= 0) {
            model.lines[e].state_flags |= edge_mark::cut;
            body.body_flags |= body_mark::cut;
            body_cuts.push_back(e);
        }
    }
}

/// Writes nothing where the mark is as it shall be, which saves time on many faces.
void change_mark(int& flags, int mark) {
    if ((flags & face_mark::in_cut_body) != mark) {
        flags ^= face_mark::in_cut_body;
    }
}

void CutBodyMarks::clear_before(const BODY3D& body) {
    if (marked_ == nullptr) {
        clear_all_but(body);
    } else {
        for (const int f : marked_->polys) {
            if (has_element(model_.polys, f)) {
                change_mark(model_.polys[f].state_flags, 0);
            }
        }
    }
    marked_ = &body;
}

void CutBodyMarks::clear_all_but(const BODY3D& body) {
    std::vector<bool> stays(static_cast<std::size_t>(model_.polys.GetSize()), false);
    for (const int f : body.polys) {
        if (has_element(model_.polys, f)) {
            stays[f] = true;
        }
    }
    for (int f = 0; f < model_.polys.GetSize(); ++f) {
        if (!stays[f]) {
            change_mark(model_.polys[f].state_flags, 0);
        }
    }
}

/// The faces of one body at each of its edges, in the order of the body's face list.
class FacesAtEdges {
public:
    /// Contains the edges for which `counts(edge)` holds. Calls `visit(face)` for each face, whose
    /// record is then in the cache.
    template <class Counts, class Visit>
    FacesAtEdges(TMOD3D& model, const BODY3D& body, Counts counts, Visit visit) {
        for (const int f : body.polys) {
            if (has_element(model.polys, f)) {
                visit(model.polys[f]);
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

/// Appends a section face for each closed loop of a body. A loop starts at the lowest cut edge that
/// no loop before it has taken.
void trace_body(TMOD3D& model, const BODY3D& body, std::vector<int>& body_cuts,
                const std::vector<int>& vertex_of, TMOD2D& out) {
    const auto is_cut = [&](int e) {
        // The first condition excludes most edges without a look at the record.
        return vertex_of[e] >= 0 && (model.lines[e].state_flags & edge_mark::cut) != 0;
    };
    const FacesAtEdges faces_at(model, body, is_cut, [](POLY3D& face) {
        change_mark(face.state_flags, face_mark::in_cut_body);
    });
    std::sort(body_cuts.begin(), body_cuts.end());
    std::vector<int> loop;
    for (const int e : body_cuts) {
        if ((model.lines[e].state_flags & edge_mark::cut) == 0) {
            continue;
        }
        loop.clear();
        if (trace_loop(model, faces_at, faces_at.first(e, -1), e, loop) && loop.size() >= 3) {
            add_section_face(out, loop, vertex_of, body);
        }
    }
}

/// The first marked edge by which a loop leaves a face that it has entered by `entry`, or −1. At
/// most one loop leaves each face.
int exit_of(const TMOD3D& model, const POLY3D& face, int entry) {
    if ((face.state_flags & face_mark::in_cut_body) == 0) {
        return -1;
    }
    const auto* const found = std::find_if(begin(face.lines), end(face.lines), [&](int e) {
        return has_element(model.lines, e) && (model.lines[e].state_flags & edge_mark::cut) != 0 &&
               e != entry;
    });
    return found == end(face.lines) ? -1 : *found;
}

/// Walks from face to face across cut edges until it is back at the first edge, which it takes
/// last.
bool trace_loop(TMOD3D& model, const FacesAtEdges& faces_at, int face, int edge,
                std::vector<int>& loop) {
    int current = edge;
    do {
        face = faces_at.first(current, face);
        const int exit = face < 0 ? -1 : exit_of(model, model.polys[face], current);
        if (exit < 0) {
            return false; // an open body, or a face that a loop has crossed before
        }
        model.lines[exit].state_flags &= ~edge_mark::cut;
        model.polys[face].state_flags &= ~face_mark::in_cut_body;
        loop.push_back(exit);
        current = exit;
    } while (current != edge);
    return true;
}

} // namespace

bool TMOD3D::trace_section_poly(int body, int face, int edge, CArray<int>& loop) {
    if (!has_element(bodies, body)) {
        return false;
    }
    const FacesAtEdges faces_at(
        *this, bodies[body], [](int) { return true; }, [](const POLY3D&) {});
    std::vector<int> walked;
    const bool closed = trace_loop(*this, faces_at, face, edge, walked);
    for (const int e : walked) {
        loop.Add(e);
    }
    return closed;
}
