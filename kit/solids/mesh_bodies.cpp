#include "kit/solids/mesh_bodies.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>

#include "kit/base/disjoint_sets.h"
#include "kit/solids/mesh_shells.h"
#include "kit/solids/shell_nesting.h"
#include "kit/solids/triangle_sides.h"

namespace korvel::kit {
namespace {

/// How a shell belongs to others.
struct Role {
    bool is_cavity = false;
    int body = 0; ///< the shell around it if it is a cavity, else itself
};

// Counts what bodies consist of.
class SurfaceCounter {
public:
    explicit SurfaceCounter(const TriangleList& list)
        : list_(list), body_of_(list.size(), -1), last_at_(list.points.size(), -1) {}

    // Of the bodies from `first` on, which are those of a group of triangles.
    void count(const std::vector<int>& group, const std::vector<TriangleSide>& sides,
               std::vector<MeshBody>& bodies, std::size_t first);

private:
    void count_points(MeshBody& body, int number);
    void count_edge(std::span<const int> bodies_at, std::vector<MeshBody>& bodies) const;

    const TriangleList& list_;
    std::vector<int> body_of_; // of each triangle
    std::vector<int> last_at_; // the last body at each point
};

std::vector<std::vector<int>> groups_of(const Mesh& mesh, const TriangleList& list);
DisjointSets parts_at_open_edges(const TriangleList& list);
std::size_t part_of(const TriangleList& list, int triangle);
std::vector<Role> roles_of(const TriangleList& list, const std::vector<Shell>& shells,
                           bool are_one_body);
void turn_outward(const std::vector<Shell>& shells, const std::vector<Role>& roles,
                  std::vector<signed char>& turns);
void add_bodies_of(const TriangleList& list, const std::vector<Shell>& shells,
                   const std::vector<Role>& roles, std::vector<MeshBody>& bodies);
void apply_turns(const std::vector<MeshBody>& bodies, const std::vector<signed char>& turns,
                 TriangleList& list, MeshReport& report);

} // namespace

std::vector<MeshBody> bodies_of(const Mesh& mesh, TriangleList& list, MeshReport& report) {
    std::vector<MeshBody> bodies;
    std::vector<signed char> turns(list.size(), 1);
    SurfaceCounter counter(list);
    for (const std::vector<int>& group : groups_of(mesh, list)) {
        const Shells found = shells_of(list, group, turns);
        const std::vector<Role> roles = roles_of(list, found.shells, mesh.parts_are_bodies);
        turn_outward(found.shells, roles, turns);
        const std::size_t first = bodies.size();
        add_bodies_of(list, found.shells, roles, bodies);
        counter.count(group, found.sides, bodies, first);
        report.faces_doubled += found.doubled;
        report.shells += static_cast<int>(found.shells.size());
        report.cavities += static_cast<int>(std::count_if(
            roles.begin(), roles.end(), [](const Role& role) { return role.is_cavity; }));
    }
    std::sort(bodies.begin(), bodies.end(),
              [](const MeshBody& a, const MeshBody& b) { return a.triangles[0] < b.triangles[0]; });
    apply_turns(bodies, turns, list, report);
    for (const MeshBody& body : bodies) {
        report.open_edges += body.surface.open_edges;
        report.crowded_edges += body.surface.crowded_edges;
    }
    return bodies;
}

namespace {

// The triangles of parts that are closed by themselves, or bodies, and of those that are not with
// the ones that they share open edges with.
std::vector<std::vector<int>> groups_of(const Mesh& mesh, const TriangleList& list) {
    const std::size_t parts = list.part_ends.size();
    DisjointSets sets(static_cast<int>(parts));
    if (!mesh.parts_are_bodies && parts > 1) {
        sets = parts_at_open_edges(list);
    }
    std::vector<std::vector<int>> groups;
    std::vector<int> group_of(parts, -1); // by the first part of the set
    std::size_t triangle = 0;
    for (std::size_t part = 0; part < parts; ++part) {
        if (triangle == list.part_ends[part]) {
            continue;
        }
        int& group = group_of[sets.root(static_cast<int>(part))];
        if (group < 0) {
            group = static_cast<int>(groups.size());
            groups.emplace_back();
        }
        for (; triangle < list.part_ends[part]; ++triangle) {
            groups[group].push_back(static_cast<int>(triangle));
        }
    }
    return groups;
}

DisjointSets parts_at_open_edges(const TriangleList& list) {
    DisjointSets sets(static_cast<int>(list.part_ends.size()));
    std::vector<int> all(list.size());
    std::iota(all.begin(), all.end(), 0);
    const std::vector<TriangleSide> sides = sides_of(list, all);
    for_each_edge(sides, [&](std::span<const TriangleSide> edge) {
        int open = -1; // the last part with an odd number of triangles here
        for (std::size_t i = 0; i < edge.size();) {
            const std::size_t part = part_of(list, edge[i].position());
            bool is_odd = false;
            for (; i < edge.size() &&
                   static_cast<std::size_t>(edge[i].position()) < list.part_ends[part];
                 ++i) {
                is_odd = !is_odd;
            }
            if (is_odd) {
                if (open >= 0) {
                    sets.join(static_cast<int>(part), open);
                }
                open = static_cast<int>(part);
            }
        }
    });
    return sets;
}

std::size_t part_of(const TriangleList& list, int triangle) {
    const auto end = std::upper_bound(list.part_ends.begin(), list.part_ends.end(),
                                      static_cast<std::size_t>(triangle));
    return static_cast<std::size_t>(end - list.part_ends.begin());
}

// A shell directly inside of a body is its cavity when it runs the other way in the mesh; where one
// of the two does not run alike, it is one at any rate. Inside of a cavity there are bodies.
std::vector<Role> roles_of(const TriangleList& list, const std::vector<Shell>& shells,
                           bool are_one_body) {
    const std::vector<int> around = shells_around(list, shells);
    std::vector<int> order(shells.size()); // from the outside to the inside
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return std::abs(shells[a].volume) > std::abs(shells[b].volume);
    });
    std::vector<Role> roles(shells.size());
    for (const int number : order) {
        roles[number].body = are_one_body ? 0 : number;
        const int outer = around[number];
        if (outer < 0 || roles[outer].is_cavity) {
            continue;
        }
        const Shell& shell = shells[number];
        const bool is_certain = shell.is_turned_alike && shells[outer].is_turned_alike;
        const bool runs_against = (shell.volume < 0) != (shells[outer].volume < 0);
        roles[number].is_cavity = are_one_body || !is_certain || runs_against;
        if (roles[number].is_cavity && !are_one_body) {
            roles[number].body = outer;
        }
    }
    return roles;
}

void turn_outward(const std::vector<Shell>& shells, const std::vector<Role>& roles,
                  std::vector<signed char>& turns) {
    for (std::size_t number = 0; number < shells.size(); ++number) {
        const double volume = shells[number].volume;
        if (volume != 0 && (volume < 0) != roles[number].is_cavity) {
            for (const int triangle : shells[number].triangles) {
                turns[triangle] = static_cast<signed char>(-turns[triangle]);
            }
        }
    }
}

void add_bodies_of(const TriangleList& list, const std::vector<Shell>& shells,
                   const std::vector<Role>& roles, std::vector<MeshBody>& bodies) {
    std::vector<std::vector<int>> triangles(shells.size());
    for (std::size_t number = 0; number < shells.size(); ++number) {
        std::vector<int>& of_body = triangles[roles[number].body];
        of_body.insert(of_body.end(), shells[number].triangles.begin(),
                       shells[number].triangles.end());
    }
    for (std::vector<int>& of_body : triangles) {
        if (!of_body.empty()) {
            std::sort(of_body.begin(), of_body.end());
            MeshBody& body = bodies.emplace_back();
            body.part = part_of(list, of_body[0]);
            body.triangles = std::move(of_body);
        }
    }
}

void apply_turns(const std::vector<MeshBody>& bodies, const std::vector<signed char>& turns,
                 TriangleList& list, MeshReport& report) {
    for (const MeshBody& body : bodies) {
        int last = -1; // of the faces of the mesh that are turned
        for (const int triangle : body.triangles) {
            if (turns[triangle] < 0) {
                std::swap(list.corners[triangle][1], list.corners[triangle][2]);
                report.faces_turned += list.faces[triangle] != last ? 1 : 0;
                last = list.faces[triangle];
            }
        }
    }
}

void SurfaceCounter::count(const std::vector<int>& group, const std::vector<TriangleSide>& sides,
                           std::vector<MeshBody>& bodies, std::size_t first) {
    for (std::size_t body = first; body < bodies.size(); ++body) {
        count_points(bodies[body], static_cast<int>(body));
    }
    DisjointSets pieces(static_cast<int>(group.size()));
    std::vector<std::pair<int, int>> at_edge; // body and position
    std::vector<int> bodies_at;
    for_each_edge(sides, [&](std::span<const TriangleSide> edge) {
        at_edge.clear();
        for (const TriangleSide& side : edge) {
            at_edge.emplace_back(body_of_[group[side.position()]], side.position());
        }
        std::sort(at_edge.begin(), at_edge.end());
        bodies_at.clear();
        for (std::size_t i = 0; i < at_edge.size(); ++i) {
            bodies_at.push_back(at_edge[i].first);
            if (i > 0 && at_edge[i].first == at_edge[i - 1].first) {
                pieces.join(at_edge[i - 1].second, at_edge[i].second);
            }
        }
        count_edge(bodies_at, bodies);
    });
    for (int position = 0; position < static_cast<int>(group.size()); ++position) {
        const int body = body_of_[group[position]];
        if (body >= 0 && pieces.root(position) == position) {
            ++bodies[body].surface.pieces;
        }
    }
}

void SurfaceCounter::count_points(MeshBody& body, int number) {
    body.surface.faces = static_cast<int>(body.triangles.size());
    for (const int triangle : body.triangles) {
        body_of_[triangle] = number;
        for (const int corner : list_.corners[triangle]) {
            body.surface.vertices += last_at_[corner] != number ? 1 : 0;
            last_at_[corner] = number;
        }
    }
}

// `bodies_at` is in ascending order; −1 for triangles that are left out.
void SurfaceCounter::count_edge(std::span<const int> bodies_at,
                                std::vector<MeshBody>& bodies) const {
    for (auto first = bodies_at.begin(); first != bodies_at.end();) {
        const auto end = std::upper_bound(first, bodies_at.end(), *first);
        const auto count = end - first;
        if (*first >= 0) {
            MeshBody& body = bodies[*first];
            ++body.surface.edges;
            body.surface.open_edges += count % 2 != 0 ? 1 : 0;
            body.surface.crowded_edges += count > 2 && count % 2 == 0 ? 1 : 0;
            body.has_crowded_edges = body.has_crowded_edges || count > 2;
        }
        first = end;
    }
}

} // namespace
} // namespace korvel::kit
