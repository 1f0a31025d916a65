#include "korvel/body/derive/edge_chains.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "korvel/base/equal_sides.h"
#include "korvel/base/indices.h"
#include "korvel/base/key_index.h"

namespace korvel {
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

/// Calls `visit(i, a, b)` for each pair of vertices that follow one another on the boundary.
template <class Visit>
void for_each_boundary_pair(const POLY3D& face, Visit visit) {
    const int n = face.verts.GetSize();
    for (int i = 0; i < n; ++i) {
        visit(i, face.verts[i], face.verts[i + 1 < n ? i + 1 : 0]);
    }
}

/// The edges of a model by their ends. Of several edges between two vertices it knows the last one.
KeyIndex edges_by_ends(const TMOD3D& model) {
    KeyIndex table(model.lines.GetSize());
    for (int edge = model.lines.GetUpperBound(); edge >= 0; --edge) {
        table.find_or_add(side_key(model.lines[edge].start_vert, model.lines[edge].end_vert), edge);
    }
    return table;
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

/// `POLY3D::vert_to_line` for face after face. Where a face names an edge between two vertices it
/// must be the last one between them.
class LineChainer {
public:
    explicit LineChainer(const TMOD3D& model) : model_(model) {}

    void chain(POLY3D& face) {
        chain_.clear();
        for_each_boundary_pair(face, [&](int i, int a, int b) {
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

private:
    const TMOD3D& model_;
    std::optional<KeyIndex> table_; ///< seldom needed
    std::vector<int> chain_;
};

/// Numbers the sides of triangles in order of first appearance, whichever way they run. The edges
/// that share their lower end are looked through one by one; in most meshes there are about three.
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
            const Side& edge = edges_[e];
            --steps_left_;
            if ((edge.a ^ edge.b) == (a ^ b)) {
                return e; // the lower ends are one, so the others are
            }
        }
        next_.push_back(first);
        edges_.push_back({a, b});
        return first = static_cast<int>(edges_.size()) - 1;
    }

    bool takes_too_long() const { return steps_left_ < 0; }

    std::vector<Side>& edges() { return edges_; }

private:
    std::vector<int> first_; ///< by lower point
    std::vector<Side> edges_;
    std::vector<int> next_; ///< with the same lower point
    std::int64_t steps_left_;
};

} // namespace

void find_all_sides(TMOD3D& model, int first_face, Chains chains) {
    const int old_edges = model.lines.GetSize();
    const VertexRange range = old_edges > 0 ? vertices_of_faces(model, first_face) : VertexRange();
    std::vector<Side> sides;
    std::vector<int> edge_of; // by side; the edges that stand there come first
    // A closed surface of triangles has three sides to a face.
    sides.reserve(3 * static_cast<std::size_t>(model.polys.GetSize() - first_face));
    // From the last edge on, since of several between two vertices the last one is the one found.
    for (int e = old_edges - 1; e >= 0; --e) {
        const LINE3D& line = model.lines[e];
        if (range.contains(line.start_vert) && range.contains(line.end_vert)) {
            sides.push_back({line.start_vert, line.end_vert});
            edge_of.push_back(e);
        }
    }
    const std::size_t known = edge_of.size();
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        for_each_boundary_pair(model.polys[f], [&](int, int a, int b) { sides.push_back({a, b}); });
    }

    const std::vector<int> first = first_equal_sides(sides);
    edge_of.resize(sides.size());
    int next = old_edges;
    for (std::size_t i = known; i < sides.size(); ++i) {
        const auto equal = static_cast<std::size_t>(first[i]);
        edge_of[i] = equal == i ? next++ : edge_of[equal];
    }
    model.lines.SetSize(next);
    for (std::size_t i = known; i < sides.size(); ++i) {
        if (static_cast<std::size_t>(first[i]) == i) {
            model.lines[edge_of[i]].set_line_point(sides[i].a, sides[i].b);
        }
    }
    LineChainer line_chainer(model);
    const int* edges = edge_of.data() + known;
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
    }
}

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
        const auto put = [=](UnsetVector<int>& list, int first, int second, int third) {
            list[at] = first;
            list[at + 1] = second;
            list[at + 2] = third;
        };
        put(chains.lines, ab, bc, ca);
        put(chains.verts, from_a ? a : b, c, from_a ? b : a);
        put(chains.side_lines, from_a ? ca : bc, from_a ? bc : ca, ab);
    }
    chains.edges = std::move(numbers.edges());
    return chains;
}

void chain_verts_and_lines(TMOD3D& model) {
    LineChainer line_chainer(model);
    for (POLY3D& face : model.polys) {
        face.line_to_vert(model.lines);
        line_chainer.chain(face);
    }
}

} // namespace korvel
