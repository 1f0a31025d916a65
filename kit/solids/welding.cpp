#include "kit/solids/welding.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/solids/face_order.h"
#include "kit/solids/join_points.h"
#include "kit/solids/walls.h"

namespace korvel::kit {
namespace {

void check(const Soup& soup, const WeldOptions& options);
int join_vertices(Soup& soup, double tolerance, std::vector<bool>& touches_itself);
void refuse_collapsed_faces(const Soup& soup, double tolerance);
int share_faces(Soup& soup);
std::vector<int> first_equal_faces(const Soup& soup);
void keep_used(Soup& soup);

} // namespace

std::unique_ptr<TMOD3D> welded(Soup soup, const WeldOptions& options, const Context& context,
                               WeldReport& report) {
    constexpr const char* stage = "welding";
    constexpr int steps = 4;
    check(soup, options);
    context.report(stage, 0, steps);
    std::vector<bool> touches_itself;
    report.vertices_joined = join_vertices(soup, options.tolerance, touches_itself);
    refuse_collapsed_faces(soup, options.tolerance);
    keep_used(soup);
    context.report(stage, 1, steps);
    const MatchedWalls walls = options.match_walls ? match_walls(soup, context) : MatchedWalls();
    report.walls_split = walls.split;
    report.walls_turned = walls.turned;
    context.report(stage, 2, steps);
    report.faces_shared = share_faces(soup);
    keep_used(soup);
    context.report(stage, 3, steps);
    std::unique_ptr<TMOD3D> model = model_of(soup);
    soup = {}; // its memory serves for what is derived
    for (int body = 0; body < model->bodies.GetSize(); ++body) {
        if (touches_itself[static_cast<std::size_t>(body)]) {
            order_faces_for_orientation(*model, body);
        }
    }
    derive_from_faces(*model, context);
    context.report(stage, steps, steps);
    return model;
}

void derive_from_faces(TMOD3D& model, const Context& context) {
    const CheckPointScope calls = context.follow_calls();
    model.clear_no_use_ele();
    model.mode_ok = model.bodies.IsEmpty() ? 0 : 1;
    for (int body = 0; body < model.bodies.GetSize(); ++body) {
        model.get_body_span(body);
    }
}

namespace {

void check(const Soup& soup, const WeldOptions& options) {
    if (!(options.tolerance >= 0) || !std::isfinite(options.tolerance)) {
        throw input_error("the tolerance is negative or not finite");
    }
    for (std::size_t v = 0; v < soup.points.size(); ++v) {
        for (const double coordinate : soup.points[v]) {
            if (!std::isfinite(coordinate)) {
                throw input_error("vertex " + std::to_string(v) + " has no finite position");
            }
        }
    }
}

// Marks the bodies of which vertices were joined with one another. Returns how many became another
// one.
int join_vertices(Soup& soup, double tolerance, std::vector<bool>& touches_itself) {
    const std::vector<int> joined = joined_points(soup.points, tolerance);
    std::vector<int> vertex_in(soup.points.size(), -1); // the last body there …
    std::vector<int> vertex_of(soup.points.size(), -1); // … and its vertex before
    for (std::size_t body = 0; body < soup.bodies.size(); ++body) {
        touches_itself.push_back(false);
        for (const int face : soup.bodies[body]) {
            for (const int v : soup.faces[face]) {
                const int at = joined[v];
                if (vertex_in[at] != static_cast<int>(body)) {
                    vertex_in[at] = static_cast<int>(body);
                    vertex_of[at] = v;
                } else if (vertex_of[at] != v) {
                    touches_itself.back() = true;
                }
            }
        }
    }
    for (int& corner : soup.faces.corners()) {
        corner = joined[corner];
    }
    int count = 0;
    for (std::size_t v = 0; v < joined.size(); ++v) {
        count += joined[v] != static_cast<int>(v) ? 1 : 0;
    }
    return count;
}

void refuse_collapsed_faces(const Soup& soup, double tolerance) {
    for (std::size_t body = 0; body < soup.bodies.size(); ++body) {
        for (const int face : soup.bodies[body]) {
            const std::span<const int> corners = soup.faces[face];
            for (std::size_t k = 0; k < corners.size(); ++k) {
                if (std::find(corners.begin(), corners.begin() + k, corners[k]) !=
                    corners.begin() + k) {
                    throw input_error("body " + std::to_string(body) +
                                      ": two corners of its face " + std::to_string(face) +
                                      (tolerance > 0 ? " are within the tolerance of one another"
                                                     : " have the same position") +
                                      ", and joining them would leave it without area");
                }
            }
        }
    }
}

// Lets bodies list the first of equal faces. Returns how many are listed by several.
int share_faces(Soup& soup) {
    const std::vector<int> first = first_equal_faces(soup);
    std::vector<int> listed_by(first.size(), -1);
    std::vector<char> is_shared(first.size(), 0);
    for (std::size_t body = 0; body < soup.bodies.size(); ++body) {
        for (int& face : soup.bodies[body]) {
            face = first[face];
            if (listed_by[face] == static_cast<int>(body)) {
                throw input_error("body " + std::to_string(body) +
                                  " would have two faces at the same vertices");
            }
            is_shared[face] = listed_by[face] >= 0 ? 1 : 0;
            listed_by[face] = static_cast<int>(body);
        }
    }
    return static_cast<int>(std::count(is_shared.begin(), is_shared.end(), 1));
}

// The corners of a face from the least one on, towards the lesser of its neighbours.
void start_at_least(std::vector<int>& corners) {
    if (corners.empty()) {
        return;
    }
    std::rotate(corners.begin(), std::min_element(corners.begin(), corners.end()), corners.end());
    if (corners[1 % corners.size()] > corners.back()) {
        std::reverse(corners.begin() + 1, corners.end());
    }
}

// Compares the faces at each point that is the least of their corners. Only faces that bodies list
// count.
std::vector<int> first_equal_faces(const Soup& soup) {
    std::vector<int> first(static_cast<std::size_t>(soup.faces.size()));
    std::vector<char> is_listed(first.size(), 0);
    for (const std::vector<int>& body : soup.bodies) {
        for (const int face : body) {
            is_listed[face] = 1;
        }
    }
    FaceList ordered;
    std::vector<std::size_t> ends(soup.points.size() + 1, 0);
    std::vector<int> corners;
    for (int face = 0; face < soup.faces.size(); ++face) {
        corners.assign(soup.faces[face].begin(), soup.faces[face].end());
        start_at_least(corners);
        ordered.add(corners);
        first[face] = face;
        if (is_listed[face] != 0 && !corners.empty()) {
            ++ends[corners[0] + 1];
        }
    }
    for (std::size_t v = 1; v < ends.size(); ++v) {
        ends[v] += ends[v - 1];
    }
    std::vector<int> at(ends.back());
    std::vector<std::size_t> next(ends.begin(), ends.end() - 1);
    for (int face = 0; face < soup.faces.size(); ++face) {
        if (is_listed[face] != 0 && !ordered[face].empty()) {
            at[next[ordered[face][0]]++] = face;
        }
    }
    const auto are_equal = [&](int a, int b) { return std::ranges::equal(ordered[a], ordered[b]); };
    for (std::size_t v = 0; v + 1 < ends.size(); ++v) {
        const auto begin = at.begin() + static_cast<std::ptrdiff_t>(ends[v]);
        const auto end = at.begin() + static_cast<std::ptrdiff_t>(ends[v + 1]);
        std::sort(begin, end, [&](int a, int b) {
            return are_equal(a, b) ? a < b
                                   : std::ranges::lexicographical_compare(ordered[a], ordered[b]);
        });
        for (auto face = begin; face != end; ++face) {
            if (face != begin && are_equal(*face, face[-1])) {
                first[*face] = first[face[-1]];
            }
        }
    }
    return first;
}

// Without the faces that no body and the points that no face uses; the others keep their order.
void keep_used(Soup& soup) {
    std::vector<int> face_number(static_cast<std::size_t>(soup.faces.size()), -1);
    std::vector<int> point_number(soup.points.size(), -1);
    for (const std::vector<int>& body : soup.bodies) {
        for (const int face : body) {
            face_number[face] = 0;
            for (const int point : soup.faces[face]) {
                point_number[point] = 0;
            }
        }
    }
    std::vector<Point3> points;
    for (std::size_t v = 0; v < point_number.size(); ++v) {
        if (point_number[v] == 0) {
            point_number[v] = static_cast<int>(points.size());
            points.push_back(soup.points[v]);
        }
    }
    FaceList faces;
    std::vector<int> corners;
    for (int face = 0; face < soup.faces.size(); ++face) {
        if (face_number[face] == 0) {
            corners.clear();
            for (const int point : soup.faces[face]) {
                corners.push_back(point_number[point]);
            }
            face_number[face] = faces.add(corners);
        }
    }
    for (std::vector<int>& body : soup.bodies) {
        for (int& face : body) {
            face = face_number[face];
        }
    }
    soup.points = std::move(points);
    soup.faces = std::move(faces);
}

} // namespace
} // namespace korvel::kit
