// Starter models: a cube and a twenty-face solid, refined, placed and scaled.

#include <algorithm>
#include <cmath>
#include <iterator>

#include "korvel/base/indices.h"
#include "korvel/body/derive/derive_all.h"
#include "korvel/body/derive/edge_chains.h"
#include "korvel/body/refinement.h"
#include "korvel/body/tmod3d.h"
#include "korvel/platform/check_point.h"

namespace {

constexpr int pool_growth = 64;
constexpr int body_growth = 2;

template <class Points>
void set_model_points(TMOD3D& model, const Points& points);

} // namespace

void TMOD3D::inti_mode(double* center, double* size, int kind, int rounds) {
    const bool is_cube = kind != 0;
    if (is_cube) {
        inti_cube();
    } else {
        inti_p20();
    }
    for (int round = 0; round < rounds; ++round) {
        const int faces_before = polys.GetSize();
        for (int b = 0; b < bodies.GetSize(); ++b) {
            korvel::refine_body(*this, b, !is_cube);
        }
        if (is_cube) {
            korvel::find_all_sides(*this, 0);
        } else if (korvel::has_element(polys, round)) {
            // For the twenty-face solid, round r searches the sides of face r alone.
            polys[round].find_side(lines);
        }
        if (polys.GetSize() == faces_before) {
            break; // too large to be refined further
        }
        korvel::check_point("refining", round + 1, rounds);
    }
    for (VERT3D& vertex : verts) {
        for (int k = 0; k < 3; ++k) {
            double& x = vertex.model_xyz[k];
            x = is_cube ? size[k] * x * 0.5 + center[k] : x * size[0] + center[k];
        }
    }

    korvel::derive_all(*this);
    mode_ok = 1;
    for (int b = 0; b < bodies.GetSize(); ++b) {
        get_body_span(b);
    }
}

void TMOD3D::inti_cube() {
    // Eight corners, then the centres of the six sides.
    constexpr double points[14][3] = {
        {1, 1, 1},   {-1, 1, 1}, {-1, -1, 1}, {1, -1, 1}, {1, 1, -1}, {-1, 1, -1}, {-1, -1, -1},
        {1, -1, -1}, {1, 0, 0},  {0, 1, 0},   {-1, 0, 0}, {0, -1, 0}, {0, 0, 1},   {0, 0, -1},
    };
    constexpr int faces[24][3] = {
        {0, 1, 12}, {1, 2, 12}, {2, 3, 12}, {3, 0, 12}, {5, 4, 13}, {6, 5, 13},
        {7, 6, 13}, {4, 7, 13}, {0, 4, 9},  {4, 5, 9},  {5, 1, 9},  {1, 0, 9},
        {1, 5, 10}, {5, 6, 10}, {6, 2, 10}, {2, 1, 10}, {2, 6, 11}, {6, 7, 11},
        {7, 3, 11}, {3, 2, 11}, {3, 7, 8},  {7, 4, 8},  {4, 0, 8},  {0, 3, 8},
    };
    verts.SetSize(static_cast<int>(std::size(points)), pool_growth);
    polys.SetSize(static_cast<int>(std::size(faces)), pool_growth);
    bodies.SetSize(1, body_growth);
    set_model_points(*this, points);
    for (int f = 0; f < polys.GetSize(); ++f) {
        for (const int v : faces[f]) {
            polys[f].add_a_vert(v);
        }
        bodies[0].polys.Add(f);
    }
    lines.RemoveAll();
    korvel::find_all_sides(*this, 0, korvel::Chains::of_both);
}

void TMOD3D::inti_p20() {
    const double golden = (std::sqrt(5.0) + 1.0) * 0.5;
    const double scale = std::sqrt(golden + 2.0);
    const double a = golden / scale;
    const double b = 1.0 / scale;
    const double points[12][3] = {
        {a, b, 0},  {-a, b, 0},  {a, -b, 0}, {-a, -b, 0}, {b, 0, a},  {b, 0, -a},
        {-b, 0, a}, {-b, 0, -a}, {0, a, b},  {0, -a, b},  {0, a, -b}, {0, -a, -b},
    };
    constexpr int edges[30][2] = {
        {0, 2},  {1, 3},  {4, 6}, {5, 7}, {8, 10}, {9, 11}, {0, 4},  {0, 5},  {1, 6},  {1, 7},
        {2, 4},  {2, 5},  {3, 6}, {3, 7}, {4, 8},  {4, 9},  {5, 10}, {5, 11}, {6, 8},  {6, 9},
        {7, 10}, {7, 11}, {8, 0}, {8, 1}, {9, 2},  {9, 3},  {10, 0}, {10, 1}, {11, 2}, {11, 3},
    };
    constexpr int faces[20][3] = {
        {6, 22, 14}, {7, 16, 26},  {10, 15, 24}, {28, 17, 11}, {8, 18, 23},
        {27, 20, 9}, {25, 19, 12}, {13, 21, 29}, {26, 4, 22},  {23, 4, 27},
        {24, 5, 28}, {29, 5, 25},  {10, 0, 6},   {7, 0, 11},   {8, 1, 12},
        {13, 1, 9},  {18, 2, 14},  {15, 2, 19},  {16, 3, 20},  {21, 3, 17},
    };
    verts.SetSize(static_cast<int>(std::size(points)), pool_growth);
    lines.SetSize(static_cast<int>(std::size(edges)), pool_growth);
    polys.SetSize(static_cast<int>(std::size(faces)), pool_growth);
    bodies.SetSize(1, body_growth);
    set_model_points(*this, points);
    for (int e = 0; e < lines.GetSize(); ++e) {
        lines[e].set_line_point(edges[e][0], edges[e][1]);
    }
    for (int f = 0; f < polys.GetSize(); ++f) {
        for (const int e : faces[f]) {
            polys[f].add_a_line(e);
        }
        bodies[0].polys.Add(f);
    }
    korvel::chain_verts_and_lines(*this);
}

namespace {

template <class Points>
void set_model_points(TMOD3D& model, const Points& points) {
    int v = 0;
    for (const auto& point : points) {
        std::copy_n(point, 3, model.verts[v++].model_xyz);
    }
}

} // namespace
