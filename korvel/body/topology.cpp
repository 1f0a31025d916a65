// The relations between vertices, edges, faces and bodies.

#include <algorithm>
#include <utility>
#include <vector>

#include "korvel/body/tmod3d.h"
#include "korvel/geometry/equal_sides.h"
#include "korvel/geometry/list_index.h"

namespace {

constexpr int in_body_list = 16;      // of a vertex or an edge
constexpr int seen_face = 32;         // of a face
constexpr int in_neighbour_list = 16; // of a body

/// Lists of indices, one after the other: what passes over all records read and write instead of
/// the records.
class Lists {
public:
    Lists(int lists, std::size_t entries) {
        ends_.reserve(static_cast<std::size_t>(lists));
        entries_.reserve(entries);
    }

    void add(int entry) { entries_.push_back(entry); }
    void end_list() { ends_.push_back(static_cast<int>(entries_.size())); }

    int size() const { return static_cast<int>(ends_.size()); }
    std::size_t entries() const { return entries_.size(); }

    struct Range {
        const int* first;
        const int* last;
        const int* begin() const { return first; }
        const int* end() const { return last; }
    };
    Range operator[](int list) const {
        const auto at = static_cast<std::size_t>(list);
        const int* const data = entries_.data();
        return {data + (at == 0 ? 0 : ends_[at - 1]), data + ends_[at]};
    }

    /// For each of `listed` indices the lists that name it, ascending.
    Lists turned_round(int listed) const;

private:
    std::vector<int> ends_;
    std::vector<int> entries_;
};

/// Tells whether an index comes up for the first time within a list.
class FirstTimes {
public:
    explicit FirstTimes(int size) : last_list_(static_cast<std::size_t>(size), -1) {}

    bool is_first(int index, int list) {
        return std::exchange(last_list_[static_cast<std::size_t>(index)], list) != list;
    }

private:
    std::vector<int> last_list_;
};

/// What the model's records list, each entry once and only those that exist.
struct Listed {
    Lists face_verts;
    Lists face_lines;
    Lists body_faces;
    Lists body_verts; ///< in order of first appearance
    Lists body_lines;
};

Listed gather(const TMOD3D& model);
void relate_vertices(TMOD3D& model, const Listed& listed);
void relate_edges(TMOD3D& model, const Listed& listed, const Lists& line_faces);
void relate_faces(TMOD3D& model, const Listed& listed, const Lists& line_faces,
                  const Lists& face_bodies);
void relate_bodies(TMOD3D& model, const Listed& listed, const Lists& face_bodies);

} // namespace

void TMOD3D::found_top_rel() {
    const Listed listed = gather(*this);
    relate_vertices(*this, listed);
    const Lists line_faces = listed.face_lines.turned_round(lines.GetSize());
    const Lists face_bodies = listed.body_faces.turned_round(polys.GetSize());
    relate_edges(*this, listed, line_faces);
    relate_faces(*this, listed, line_faces, face_bodies);
    relate_bodies(*this, listed, face_bodies);
}

namespace {

/// Appends to `lists` the entries of a record's list that name something, each once.
void add_list(Lists& lists, const CArray<int>& list, int record, int size, FirstTimes& times) {
    for (const int index : list) {
        if (index >= 0 && index < size && times.is_first(index, record)) {
            lists.add(index);
        }
    }
    lists.end_list();
}

/// What the entries of each list list in turn, in order of first appearance.
Lists joined(const Lists& lists, const Lists& of_entry, int size) {
    Lists all(lists.size(), of_entry.entries());
    FirstTimes times(size);
    for (int list = 0; list < lists.size(); ++list) {
        for (const int entry : lists[list]) {
            for (const int index : of_entry[entry]) {
                if (times.is_first(index, list)) {
                    all.add(index);
                }
            }
        }
        all.end_list();
    }
    return all;
}

Lists Lists::turned_round(int listed) const {
    Lists lists(listed, 0);
    // The end of a list is one further on than the start of the next while they are filled.
    lists.ends_.assign(static_cast<std::size_t>(listed) + 1, 0);
    for (const int index : entries_) {
        ++lists.ends_[static_cast<std::size_t>(index) + 1];
    }
    for (std::size_t i = 1; i < lists.ends_.size(); ++i) {
        lists.ends_[i] += lists.ends_[i - 1];
    }
    lists.entries_.resize(entries_.size());
    for (int list = 0; list < size(); ++list) {
        for (const int index : (*this)[list]) {
            int& end = lists.ends_[static_cast<std::size_t>(index)];
            lists.entries_[static_cast<std::size_t>(end++)] = list;
        }
    }
    lists.ends_.pop_back();
    return lists;
}

void set_list(CArray<int>& list, Lists::Range range) {
    korvel::assign_range(list, range.first, static_cast<int>(range.last - range.first));
}

Listed gather(const TMOD3D& model) {
    constexpr std::size_t corners = 3; // of most faces
    const int verts = model.verts.GetSize();
    const int lines = model.lines.GetSize();
    const int faces = model.polys.GetSize();
    const int bodies = model.bodies.GetSize();
    const auto face_entries = corners * static_cast<std::size_t>(faces);

    Lists face_verts(faces, face_entries);
    Lists face_lines(faces, face_entries);
    FirstTimes vert_times(verts);
    FirstTimes line_times(lines);
    for (int f = 0; f < faces; ++f) {
        add_list(face_verts, model.polys[f].verts, f, verts, vert_times);
        add_list(face_lines, model.polys[f].lines, f, lines, line_times);
    }
    Lists body_faces(bodies, static_cast<std::size_t>(faces));
    FirstTimes face_times(faces);
    for (int b = 0; b < bodies; ++b) {
        add_list(body_faces, model.bodies[b].polys, b, faces, face_times);
    }
    Lists body_verts = joined(body_faces, face_verts, verts);
    Lists body_lines = joined(body_faces, face_lines, lines);
    return {std::move(face_verts), std::move(face_lines), std::move(body_faces),
            std::move(body_verts), std::move(body_lines)};
}

/// Marks what the last body lists; before, the mark of every record was cleared.
template <class Records>
void mark_last_body(Records& records, const Lists& of_body) {
    if (of_body.size() > 0) {
        for (const int index : of_body[of_body.size() - 1]) {
            records[index].state_flags |= in_body_list;
        }
    }
}

/// The marks that are cleared before each body, so not in a model without bodies.
int cleared_marks(const TMOD3D& model) {
    return model.bodies.IsEmpty() ? 0 : in_body_list;
}

/// For each vertex the edges that end there, ascending.
Lists edges_at_vertices(const std::vector<korvel::Side>& edges, int verts) {
    Lists ends(static_cast<int>(edges.size()), 2 * edges.size());
    for (const auto [start, end] : edges) {
        if (start >= 0 && end >= 0) {
            if (start < verts) {
                ends.add(start);
            }
            if (end < verts && end != start) {
                ends.add(end);
            }
        }
        ends.end_list();
    }
    return ends.turned_round(verts);
}

void relate_vertices(TMOD3D& model, const Listed& listed) {
    std::vector<korvel::Side> edges;
    edges.reserve(static_cast<std::size_t>(model.lines.GetSize()));
    for (const LINE3D& line : model.lines) {
        edges.push_back({line.start_vert, line.end_vert});
    }
    const Lists lines = edges_at_vertices(edges, model.verts.GetSize());
    const Lists faces = listed.face_verts.turned_round(model.verts.GetSize());
    const Lists bodies = listed.body_verts.turned_round(model.verts.GetSize());
    const int cleared = cleared_marks(model);
    std::vector<int> neighbours;
    for (int v = 0; v < model.verts.GetSize(); ++v) {
        VERT3D& vertex = model.verts[v];
        set_list(vertex.lines, lines[v]);
        neighbours.clear();
        for (const int e : lines[v]) {
            const auto [start, end] = edges[static_cast<std::size_t>(e)];
            neighbours.push_back(start == v ? end : start);
        }
        korvel::assign_list(vertex.neighbours, neighbours);
        set_list(vertex.faces, faces[v]);
        set_list(vertex.bodies, bodies[v]);
        vertex.state_flags &= ~cleared;
    }
    mark_last_body(model.verts, listed.body_verts);
}

void relate_edges(TMOD3D& model, const Listed& listed, const Lists& line_faces) {
    const Lists bodies = listed.body_lines.turned_round(model.lines.GetSize());
    const int cleared = cleared_marks(model);
    for (int e = 0; e < model.lines.GetSize(); ++e) {
        LINE3D& line = model.lines[e];
        set_list(line.faces, line_faces[e]);
        set_list(line.bodies, bodies[e]);
        line.state_flags &= ~cleared;
    }
    mark_last_body(model.lines, listed.body_lines);
}

void relate_faces(TMOD3D& model, const Listed& listed, const Lists& line_faces,
                  const Lists& face_bodies) {
    FirstTimes times(model.polys.GetSize());
    std::vector<int> neighbours;
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        POLY3D& face = model.polys[f];
        times.is_first(f, f); // a face is no neighbour of its own
        neighbours.clear();
        for (const int e : listed.face_lines[f]) {
            for (const int g : line_faces[e]) {
                if (times.is_first(g, f)) {
                    neighbours.push_back(g);
                }
            }
        }
        korvel::assign_list(face.neighbour_faces, neighbours);
        set_list(face.bodies, face_bodies[f]);
        face.state_flags |= seen_face; // set on each face when its own turn comes
    }
}

void relate_bodies(TMOD3D& model, const Listed& listed, const Lists& face_bodies) {
    const int bodies = model.bodies.GetSize();
    FirstTimes times(bodies);
    std::vector<int> neighbours;
    for (int b = 0; b < bodies; ++b) {
        BODY3D& body = model.bodies[b];
        body.body_flags &= ~in_neighbour_list;
        times.is_first(b, b);
        neighbours.clear();
        for (const int f : listed.body_faces[b]) {
            for (const int c : face_bodies[f]) {
                if (times.is_first(c, b)) {
                    neighbours.push_back(c);
                }
            }
        }
        korvel::assign_list(body.neighbour_bodies, neighbours);
        set_list(body.verts, listed.body_verts[b]);
        set_list(body.lines, listed.body_lines[b]);
    }
    if (bodies > 0) {
        // The marks of the last body alone stay, as if all were cleared before each body.
        model.bodies[bodies - 1].body_flags |= in_neighbour_list;
        for (const int c : neighbours) {
            model.bodies[c].body_flags |= in_neighbour_list;
        }
    }
}

} // namespace
