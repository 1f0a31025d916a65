// Picks and points in bodies, against a search over all faces.

#include <gtest/gtest.h>

#include "korvel/body/edit/edit_state.h"
#include "tests/support/dice.h"
#include "tests/support/models.h"

using namespace korvel::test;

namespace {

using Triangle = std::array<Point, 3>;

Triangle triangle(const TMOD3D& model, int face, double (VERT3D::*xyz)[3]) {
    const auto at = [&](int i) { return point(model.verts[model.polys[face].verts[i]].*xyz); };
    return {at(0), at(1), at(2)};
}

double twice_area(const Point& a, const Point& b, const Point& c) {
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

/// Barycentric coordinates of p, seen along the third axis; all positive inside.
Point weights_at(const Triangle& t, const Point& p) {
    const double area = twice_area(t[0], t[1], t[2]);
    return {twice_area(p, t[1], t[2]) / area, twice_area(t[0], p, t[2]) / area,
            twice_area(t[0], t[1], p) / area};
}

bool is_inside(const Point& weights) {
    return std::all_of(weights.begin(), weights.end(), [](double w) { return w > 0; });
}

Point mix(const Point& weights, const Triangle& t) {
    Point p;
    for (std::size_t k = 0; k < 3; ++k) {
        p[k] = weights[0] * t[0][k] + weights[1] * t[1][k] + weights[2] * t[2][k];
    }
    return p;
}

/// Picks at p and compares; returns the face.
int checked_pick(TMOD3D& model, Point p) {
    int face = -1;
    int body = -1;
    double depth = -1e9;
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        for (const int f : model.bodies[b].polys) {
            const Triangle seen = triangle(model, f, &VERT3D::view_xyz);
            const Point weights = weights_at(seen, p);
            if (twice_area(seen[0], seen[1], seen[2]) > 1e-9 && is_inside(weights) &&
                mix(weights, seen)[2] > depth + 1e-9) { // of equals the first
                face = f;
                body = b;
                depth = mix(weights, seen)[2];
            }
        }
    }
    EXPECT_EQ(model.get_point_xyz(p.data()), 0);
    EXPECT_EQ(model.edit_state[korvel::edit_is_picked], 1);
    EXPECT_EQ(model.edit_state[korvel::edit_picked_face], face);
    EXPECT_EQ(model.edit_state[korvel::edit_picked_body], body);
    EXPECT_NEAR(p[2], depth, 1e-9);
    const Triangle seen = triangle(model, face, &VERT3D::view_xyz);
    const Triangle at = triangle(model, face, &VERT3D::model_xyz);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_NEAR(model.pick_data[k], mix(weights_at(seen, p), at)[k], 1e-9);
    }
    double on_edge[3];
    POLY3D& picked = model.polys[face];
    EXPECT_EQ(model.edit_state[korvel::edit_picked_vertex],
              picked.get_uvw_near_point(model.verts, p.data()));
    EXPECT_EQ(model.edit_state[korvel::edit_picked_edge],
              picked.get_uvw_near_side(model.verts, model.lines, p.data(), on_edge));
    EXPECT_EQ(point(model.pick_data + 6), point(on_edge));
    return face;
}

TMOD3D two_balls_and_a_cube() {
    TMOD3D model = starter(0, 1, {2, 0, 0}, {0, 0, 9});
    for (TMOD3D other :
         {starter(0, 1, {3, 0, 0}, {1, 1, 0}), starter(1, 0, {4, 5, 6}, {0, 7, 4})}) {
        model.add_model(other);
    }
    return model;
}

TEST(Picking, FindsTheNearestFaceUnderEveryFacesMiddle) {
    constexpr double angles[][2] = {{5, 5}, {0, 0}, {-130, 70}, {33, 110}, {250, -20}};
    int hidden = 0;
    for (TMOD3D model : {starter(0, 2), starter(1, 1, {2, 3, 4}, {50, 0, -7}), model_of(raised_l),
                         two_balls_and_a_cube(), model_of(two_tetrahedra)}) {
        const bool is_convex = model.bodies.GetSize() == 1 && model.polys.GetSize() > 24;
        for (const auto& [angle_1, angle_2] : angles) {
            model.vis_angle_1 = angle_1;
            model.vis_angle_2 = angle_2;
            model.change_vis_parm();
            for (int f = 0; f < model.polys.GetSize(); ++f) {
                const Triangle seen = triangle(model, f, &VERT3D::view_xyz);
                if (twice_area(seen[0], seen[1], seen[2]) > 1e-9) {
                    const int found = checked_pick(model, mix({0.334, 0.333, 0.333}, seen));
                    EXPECT_TRUE(found == f || !is_convex);
                    hidden += found == f ? 0 : 1;
                }
            }
        }
    }
    EXPECT_GT(hidden, 20);
}

TEST(Picking, ReturnsTheFirstOfEqualFacesOrNone) {
    // A triangle, listed twice, the third corner at the height `rise`, seen from a tilt. The click
    // counts from the middle of the extent. Returns face and body.
    const auto pick = [](double u, double v, double tilt, const char* bodies,
                         const char* rise = "6") {
        TMOD3D model =
            model_of(std::string("3 0 0 5  4 0 5  0 4 ") + rise + " 2 0 1 2  0 1 2 " + bodies);
        model.vis_angle_1 = 0;
        model.vis_angle_2 = tilt;
        model.change_vis_parm();
        std::fill(model.pick_data, model.pick_data + 9, 42);
        std::fill(model.edit_state, model.edit_state + 11, 43);
        double p[] = {u, v, 44};
        if (model.get_point_xyz(p) == 0) {
            return std::make_pair(model.edit_state[korvel::edit_picked_face],
                                  model.edit_state[korvel::edit_picked_body]);
        }
        EXPECT_EQ(p[2], 44);
        EXPECT_EQ(std::count(model.pick_data, model.pick_data + 9, 42), 9);
        EXPECT_EQ(std::count(model.edit_state, model.edit_state + 11, 43), 11);
        return std::make_pair(-1, -1);
    };
    const auto missed = std::make_pair(-1, -1);
    const char* const face_0 = "1 1 0 0 0 0";
    EXPECT_EQ(pick(-1, -1, 0, "2  1 0 0 0 1  1 0 0 0 0"), std::make_pair(1, 0)); // both as near
    EXPECT_EQ(pick(-1, -1, 0, "2  1 0 0 0 0  1 0 0 0 0"), std::make_pair(0, 0)); // shared
    EXPECT_EQ(pick(-2, 0, 0, "2  0 0 0 0  1 0 0 0 0"), std::make_pair(0, 1));    // the border
    EXPECT_EQ(pick(1, 1, 0, face_0), missed);
    EXPECT_EQ(pick(-1, 1, 180, face_0), missed); // from behind
    EXPECT_EQ(pick(NAN, -1, 0, face_0), missed);
    EXPECT_EQ(pick(-1, 1, 180, "1 0 0 0 0"), missed); // in no body
    EXPECT_EQ(pick(-1, -1, 0, face_0, "5"), missed);  // flat and face-on
    EXPECT_EQ(pick(-1, -1, 9, face_0, "5"), std::make_pair(0, 0));

    TMOD3D unseen = starter(0, 0);
    for (POLY3D& face : unseen.polys) {
        face.state_flags = 0; // the last pass over the view decides
    }
    double middle[] = {0.1, 0.2, 0};
    EXPECT_EQ(unseen.get_point_xyz(middle), 1);
}

TEST(PointLocation, AgreesWithTheFacesAbove) {
    Dice dice(7);
    for (TMOD3D& model : std::vector<TMOD3D>{starter(0, 1), model_of(raised_l),
                                             two_balls_and_a_cube(), model_of(two_tetrahedra)}) {
        int inside = 0;
        for (int i = 0; i < 1000; ++i) {
            Point p;
            Point dir;
            for (std::size_t k = 0; k < 3; ++k) { // beyond the bounds, too
                p[k] = dice.between(model.cuboid_min[k] - 0.1, model.cuboid_max[k] + 0.1);
                dir[k] = dice.between(-5, 5);
            }
            const auto is_above = [&](int f) {
                const Triangle face = triangle(model, f, &VERT3D::model_xyz);
                const Point weights = weights_at(face, p);
                return is_inside(weights) && mix(weights, face)[2] > p[2];
            };
            const auto holds_p = [&](const BODY3D& body) {
                return std::count_if(body.polys.begin(), body.polys.end(), is_above) % 2 == 1;
            };
            const BODY3D* const end = model.bodies.end();
            const BODY3D* const body =
                std::find_if(model.bodies.begin(), model.bodies.end(), holds_p);
            inside += body == end ? 0 : 1;
            ASSERT_EQ(model.detect_a_point_in_body(p.data(), dir.data()),
                      body == end ? -1 : body - model.bodies.begin());
        }
        EXPECT_GT(inside, 100);
        EXPECT_LT(inside, 900);
    }
}

TEST(PointLocation, BoundsAndRaysAlongFaces) {
    TMOD3D cube = starter(1, 0);
    TMOD3D corner = model_of("4 0 0 0  1 0 0  0 1 0  0 0 1 "
                             "4 0 1 2  0 1 3  1 2 3  2 0 3 1 4 0 0 0 0 1 2 3");
    TMOD3D empty;
    const auto locate = [](TMOD3D& model, Point p, Point dir) {
        return model.detect_a_point_in_body(p.data(), dir.data());
    };
    EXPECT_EQ(locate(cube, {1, 0.1, 0.2}, {-1, 0.01, 0.02}), 0); // the bounds belong to it
    EXPECT_EQ(locate(cube, {std::nextafter(1.0, 2.0), 0.1, 0.2}, {-1, 0.01, 0.02}), -1);
    EXPECT_EQ(locate(cube, {0.1, 0.2, 0.3}, {1, 0, 0}), 0); // along sixteen faces
    EXPECT_EQ(locate(corner, {0.1, 0.1, 0.1}, {1, 2, 3}), 0);
    EXPECT_EQ(locate(corner, {0.1, 0.1, 0.1}, {1, 1, 0}), -1); // along one, which counts as met
    EXPECT_EQ(locate(empty, {0, 0, 0}, {1, 2, 3}), -1);
}

TEST(PointLocation, Volumes) {
    TMOD3D model = model_of(raised_l);
    for (VERT3D& vertex : model.verts) {
        vertex.model_xyz[2] *= 2;
    }
    EXPECT_NEAR(model.get_pt_bady_v(0), 2 * 17995, 1e-9);
    EXPECT_NEAR(model.bodies[0].volume, 17995, 1e-9); // not stored
    EXPECT_EQ(model.get_pt_bady_v(1) + model.get_pt_bady_v(-1), 0);
}

} // namespace
