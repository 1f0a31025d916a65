#include "kit/solids/touching_loops.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "kit/solids/face_sides.h"
#include "kit/solids/own_orientation.h"

namespace korvel::kit {
namespace {

// A side of a face at a cut edge. Each face that is cut has two, which follow one another.
struct CutSide {
    int edge;
    FaceSide side;
    int partner = -1; // the side at which a loop goes on behind the edge
};

std::vector<CutSide> cut_sides(const TMOD3D& model, int body, const std::vector<bool>& is_cut);
FaceSide side_at(const TMOD3D& model, int edge, int position, const CArray<int>& corners);
void find_partners(const TMOD3D& model, int body, std::vector<CutSide>& sides);
std::vector<int> around_edge(const TMOD3D& model, int body, const std::vector<CutSide>& sides,
                             std::span<const int> at_edge);

} // namespace

std::vector<int> bodies_touching_themselves(const TMOD3D& model, const std::vector<bool>& is_cut) {
    std::vector<int> touching;
    for (int e = 0; e < model.lines.GetSize(); ++e) {
        const CArray<int>& faces = model.lines[e].faces;
        if (!is_cut[e] || faces.GetSize() < 4) {
            continue;
        }
        std::vector<int> bodies;
        for (const int f : faces) {
            bodies.insert(bodies.end(), model.polys[f].bodies.begin(), model.polys[f].bodies.end());
        }
        std::sort(bodies.begin(), bodies.end());
        for (std::size_t i = 2; i < bodies.size(); ++i) {
            if (bodies[i] == bodies[i - 2]) {
                touching.push_back(bodies[i]);
            }
        }
    }
    std::sort(touching.begin(), touching.end());
    touching.erase(std::unique(touching.begin(), touching.end()), touching.end());
    return touching;
}

std::vector<CutLoop> cut_loops(const TMOD3D& model, int body, const std::vector<bool>& is_cut) {
    std::vector<CutSide> sides = cut_sides(model, body, is_cut);
    find_partners(model, body, sides);
    std::vector<CutLoop> loops;
    std::vector<bool> is_passed(sides.size(), false);
    for (int start = 0; start < static_cast<int>(sides.size()); ++start) {
        CutLoop loop;
        int side = start;
        while (side >= 0 && !is_passed[side]) {
            const int exit = side ^ 1; // of the same face
            is_passed[side] = is_passed[exit] = true;
            loop.push_back(sides[exit].edge);
            side = sides[exit].partner;
        }
        if (side == start && loop.size() >= 3) {
            loops.push_back(std::move(loop));
        }
    }
    return loops;
}

namespace {

std::vector<CutSide> cut_sides(const TMOD3D& model, int body, const std::vector<bool>& is_cut) {
    std::vector<CutSide> sides;
    const CArray<int>& listed = model.bodies[body].polys;
    for (int position = 0; position < listed.GetSize(); ++position) {
        const POLY3D& face = model.polys[listed[position]];
        const std::size_t before = sides.size();
        for (const int edge : face.lines) {
            if (is_cut[edge]) {
                sides.push_back({edge, side_at(model, edge, position, face.verts)});
            }
        }
        if (sides.size() != before + 2) {
            sides.resize(before);
        }
    }
    return sides;
}

// The lists of a face's edges and of its corners need not run the same way.
FaceSide side_at(const TMOD3D& model, int edge, int position, const CArray<int>& corners) {
    const auto [low, high] =
        std::minmax({model.lines[edge].start_vert, model.lines[edge].end_vert});
    bool ascends = false;
    for (int k = 0; k < corners.GetSize(); ++k) {
        ascends |= corners[k] == low && corners[(k + 1) % corners.GetSize()] == high;
    }
    return {low, high, position, ascends};
}

void find_partners(const TMOD3D& model, int body, std::vector<CutSide>& sides) {
    std::vector<int> order(sides.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = static_cast<int>(i);
    }
    std::sort(order.begin(), order.end(), [&](int a, int b) {
        return std::tie(sides[a].edge, a) < std::tie(sides[b].edge, b);
    });
    const std::vector<int> turns = own_orientation(model, body).turns;
    for (auto first = order.begin(); first != order.end();) {
        const auto end = std::find_if(
            first, order.end(), [&](int side) { return sides[side].edge != sides[*first].edge; });
        const std::vector<int> around = around_edge(model, body, sides, {first, end});
        for (std::size_t i = 0; i < around.size(); ++i) {
            const int next = around[(i + 1) % around.size()];
            const FaceSide& side = sides[around[i]].side;
            const bool has_body_behind = side.ascends != (turns[side.position] > 0);
            if (has_body_behind && around.size() > 1) {
                sides[around[i]].partner = next;
                sides[next].partner = around[i];
            }
        }
        first = end;
    }
}

// The sides at an edge in the order of `sort_around_edge`.
std::vector<int> around_edge(const TMOD3D& model, int body, const std::vector<CutSide>& sides,
                             std::span<const int> at_edge) {
    std::vector<int> around(at_edge.begin(), at_edge.end());
    if (around.size() > 2) {
        std::vector<FaceSide> sorted;
        for (const int side : at_edge) {
            sorted.push_back(sides[side].side);
        }
        sort_around_edge(sorted, model, body);
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            around[i] = *std::find_if(at_edge.begin(), at_edge.end(), [&](int side) {
                return sides[side].side.position == sorted[i].position;
            });
        }
    }
    return around;
}

} // namespace
} // namespace korvel::kit
