// The edges of faces: found by the faces' vertices, and the vertices rewritten by them.

#include "korvel/body/derive/edge_chains.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"
#include "korvel/base/ring_sides.h"
#include "korvel/platform/check_point.h"

namespace korvel {
namespace {

constexpr const char* stage = "finding edges";

/// Sides that may be edges, and the edge of each.
struct SideEdges {
    std::vector<IndexPair> sides;
    std::vector<int> edge_of;
    std::size_t known = 0; ///< sides that stem from edges of the model; they come first
};

SideEdges known_edges(const TMOD3D& model, int first_face);
void add_sides_of_faces(const TMOD3D& model, int first_face, std::vector<IndexPair>& sides);
void append_new_edges(TMOD3D& model, SideEdges& found);

/// `POLY3D::vert_to_line` for face after face. Where a face names an edge between two vertices it
/// must be the last one between them.
class LineChainer {
public:
    explicit LineChainer(const TMOD3D& model) : model_(model) {}
    void chain(POLY3D& face);

private:
    const TMOD3D& model_;
    std::optional<KeyIndex> table_; ///< seldom needed
    std::vector<int> chain_;
};

} // namespace

void find_all_sides(TMOD3D& model, int first_face, Chains chains) {
    SideEdges found = known_edges(model, first_face);
    add_sides_of_faces(model, first_face, found.sides);
    append_new_edges(model, found);
    LineChainer line_chainer(model);
    const int* edges = found.edge_of.data() + found.known;
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        const int n = model.polys[f].verts.GetSize();
        assign_range(model.polys[f].lines, edges, n);
        edges += n;
        if (chains != Chains::stay) {
            model.polys[f].line_to_vert(model.lines);
        }
        if (chains == Chains::of_both) {
            line_chainer.chain(model.polys[f]);
        }
        check_point_after(f - first_face, model.polys.GetSize() - first_face, 4096, stage);
    }
}

void chain_verts_and_lines(TMOD3D& model) {
    LineChainer line_chainer(model);
    for (POLY3D& face : model.polys) {
        face.line_to_vert(model.lines);
        line_chainer.chain(face);
    }
}

namespace {

/// The least and the greatest vertex that faces name.
struct VertexRange {
    int lowest = std::numeric_limits<int>::max();
    int highest = std::numeric_limits<int>::min();

    bool contains(int v) const { return v >= lowest && v <= highest; }
};

VertexRange vertices_of_faces(const TMOD3D& model, int first_face) {
    VertexRange range;
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        for (const int v : model.polys[f].verts) {
            range.lowest = std::min(range.lowest, v);
            range.highest = std::max(range.highest, v);
        }
    }
    return range;
}

/// The model's edges that the faces can have, from the last edge on: of several between two
/// vertices the last one is the one found.
SideEdges known_edges(const TMOD3D& model, int first_face) {
    SideEdges known;
    if (model.lines.IsEmpty()) {
        return known;
    }
    const VertexRange range = vertices_of_faces(model, first_face);
    for (int e = model.lines.GetUpperBound(); e >= 0; --e) {
        const LINE3D& line = model.lines[e];
        if (range.contains(line.start_vert) && range.contains(line.end_vert)) {
            known.sides.push_back({line.start_vert, line.end_vert});
            known.edge_of.push_back(e);
        }
    }
    known.known = known.sides.size();
    return known;
}

void add_sides_of_faces(const TMOD3D& model, int first_face, std::vector<IndexPair>& sides) {
    constexpr std::size_t corners = 3; // of most faces
    sides.reserve(sides.size() +
                  corners * static_cast<std::size_t>(model.polys.GetSize() - first_face));
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        const CArray<int>& verts = model.polys[f].verts;
        for_each_side(verts, verts.GetSize(), [&](int, int a, int b) { sides.push_back({a, b}); });
    }
}

/// Gives every side its edge; a side that equals none before it becomes a new edge.
void append_new_edges(TMOD3D& model, SideEdges& found) {
    const std::vector<int> first = first_equal_pairs(found.sides);
    found.edge_of.resize(found.sides.size());
    int next = model.lines.GetSize();
    std::vector<std::size_t> added;
    for (std::size_t i = found.known; i < found.sides.size(); ++i) {
        const auto equal = static_cast<std::size_t>(first[i]);
        if (equal == i) {
            added.push_back(i);
        }
        found.edge_of[i] = equal == i ? next++ : found.edge_of[equal];
    }
    model.lines.SetSize(next);
    for (const std::size_t i : added) {
        model.lines[found.edge_of[i]].set_line_point(found.sides[i].a, found.sides[i].b);
    }
}

/// The edge between a and b that a face of few edges names already, or −1.
int own_edge(const TMOD3D& model, const POLY3D& face, int a, int b) {
    constexpr int few = 8;
    if (face.lines.GetSize() > few) {
        return -1;
    }
    for (const int e : face.lines) {
        if (has_element(model.lines, e)) {
            const int start = model.lines[e].start_vert;
            const int end = model.lines[e].end_vert;
            if ((start == a && end == b) || (start == b && end == a)) {
                return e;
            }
        }
    }
    return -1;
}

/// The edges of a model by their ends. Of several edges between two vertices it contains the last.
KeyIndex edges_by_ends(const TMOD3D& model) {
    KeyIndex table(model.lines.GetSize());
    for (int edge = model.lines.GetUpperBound(); edge >= 0; --edge) {
        table.find_or_add(side_key(model.lines[edge].start_vert, model.lines[edge].end_vert), edge);
    }
    return table;
}

void LineChainer::chain(POLY3D& face) {
    chain_.clear();
    for_each_side(face.verts, face.verts.GetSize(), [&](int i, int a, int b) {
        int edge = own_edge(model_, face, a, b);
        if (edge < 0) {
            if (!table_) {
                table_ = edges_by_ends(model_);
            }
            edge = table_->find(side_key(a, b));
        }
        if (edge >= 0) {
            chain_.resize(static_cast<std::size_t>(i)); // pairs without an edge leave 0
            chain_.push_back(edge);
        }
    });
    assign_list(face.lines, chain_);
}

/// Numbers the sides of triangles in order of first appearance, whichever way they run. The edges
/// that share their lower end are searched one by one; in most meshes there are about three.
class EdgeNumbers {
public:
    EdgeNumbers(int points, std::size_t sides)
        : first_(static_cast<std::size_t>(points), -1),
          steps_left_(16 * static_cast<std::int64_t>(sides)) {
        edges_.reserve(sides / 2);
        next_.reserve(sides / 2);
    }

    /// The number of the edge between two different points.
    int number(int a, int b) {
        int& first = first_[std::min(a, b)];
        for (int e = first; e >= 0; e = next_[e]) {
            const IndexPair& edge = edges_[e];
            --steps_left_;
            if ((edge.a ^ edge.b) == (a ^ b)) {
                return e; // the lower ends are equal, so the others are
            }
        }
        next_.push_back(first);
        edges_.push_back({a, b});
        return first = static_cast<int>(edges_.size()) - 1;
    }

    bool takes_too_long() const { return steps_left_ < 0; }

    std::vector<IndexPair>& edges() { return edges_; }

private:
    std::vector<int> first_; ///< by lower point
    std::vector<IndexPair> edges_;
    std::vector<int> next_; ///< with the same lower point
    std::int64_t steps_left_;
};

} // namespace

std::optional<TriangleChains> chain_triangles(const std::vector<int>& corners, int vertices) {
    TriangleChains chains;
    chains.lines.resize(corners.size());
    chains.verts.resize(corners.size());
    chains.side_lines.resize(corners.size());
    EdgeNumbers numbers(vertices, corners.size());
    const auto exists = [=](int v) { return v >= 0 && v < vertices; };
    for (std::size_t at = 0; at < corners.size(); at += 3) {
        const int a = corners[at];
        const int b = corners[at + 1];
        const int c = corners[at + 2];
        if (!exists(a) || !exists(b) || !exists(c) || a == b || b == c || c == a ||
            numbers.takes_too_long()) {
            return std::nullopt;
        }
        const int ab = numbers.number(a, b);
        const int bc = numbers.number(b, c);
        const int ca = numbers.number(c, a);
        // The rewritten triangle runs against its first edge, from that edge's start.
        const bool from_a = numbers.edges()[ab].a == a;
        const auto put = [=](std::vector<int>& list, int first, int second, int third) {
            list[at] = first;
            list[at + 1] = second;
            list[at + 2] = third;
        };
        put(chains.lines, ab, bc, ca);
        put(chains.verts, from_a ? a : b, c, from_a ? b : a);
        put(chains.side_lines, from_a ? ca : bc, from_a ? bc : ca, ab);
        check_point_after(static_cast<long long>(at / 3),
                          static_cast<long long>(corners.size() / 3), 4096, stage);
    }
    chains.edges = std::move(numbers.edges());
    return chains;
}

} // namespace korvel
