// Body models: every call, and every change that hosts can make to the public members.

#include <iterator>

#include "tests/fuzz/exercise.h"

namespace korvel::test {
namespace {

using Step = void (*)(TMOD3D& model, Bytes& bytes);

// Models stay small, so that calls stay quick.
constexpr int most_records = 600;
constexpr int most_tests = 20000; // of edges against faces

bool is_large(const TMOD3D& model) {
    return model.verts.GetSize() > most_records || model.lines.GetSize() > 3 * most_records ||
           model.polys.GetSize() > most_records || model.bodies.GetSize() > most_records;
}

/// Half of the time a point near the model, otherwise any point.
struct TargetPoint {
    TargetPoint(const TMOD3D& model, Bytes& bytes) {
        const int vertex = bytes.index(model.verts.GetSize());
        const bool is_on_model = vertex >= 0 && vertex < model.verts.GetSize() && bytes.chance(2);
        for (int k = 0; k < 3; ++k) {
            at[k] = is_on_model ? model.verts[vertex].view_xyz[k] * 0.75 : bytes.real();
        }
    }
    double at[3] = {};
};

int body_of(const TMOD3D& model, Bytes& bytes) {
    return bytes.index(model.bodies.GetSize());
}

void pick(TMOD3D& model, Bytes& bytes) {
    TargetPoint target(model, bytes);
    model.get_point_xyz(target.at);
}

void cut(TMOD3D& model, Bytes& bytes) {
    TMOD2D section;
    model.get_x_section(bytes.real(), section);
    model.get_y_section(bytes.real(), section);
    exercise(section, bytes);
    double plane[4] = {bytes.real(), bytes.real(), bytes.real(), bytes.real()};
    model.get_section(plane, model.sect_model_1);
    CArray<int> loop;
    model.trace_section_poly(body_of(model, bytes), bytes.index(model.polys.GetSize()),
                             bytes.index(model.lines.GetSize()), loop);
}

void turn(TMOD3D& model, Bytes& bytes) {
    model.vis_angle_1 = bytes.real();
    model.vis_angle_2 = bytes.real();
    model.change_vis_parm();
}

void gather(TMOD3D& model, Bytes& bytes) {
    model.edit_state[0] = bytes.integer();
    model.edit_state[4] = bytes.index(model.verts.GetSize());
    model.set_rel_triangle_vert();
    model.rel_aux_parm();
}

void move(TMOD3D& model, Bytes& bytes) {
    TargetPoint p(model, bytes);
    TargetPoint q(model, bytes);
    const int body = body_of(model, bytes);
    model.edit_state[10] = body;
    model.get_body_change_dirt(body, p.at);
    model.change_mut_points(bytes.choice(8), p.at, q.at);
}

void ask_faces(TMOD3D& model, Bytes& bytes) {
    if (is_large(model)) {
        return;
    }
    TargetPoint target(model, bytes);
    for (POLY3D& face : model.polys) {
        int side[2] = {bytes.index(model.verts.GetSize()), bytes.index(model.verts.GetSize())};
        double nearest[3] = {};
        face.det_poly_include_line(side);
        face.point_range_in_poly(side[0]);
        face.is_composed_vert(side[1]);
        face.detect_line_in(side[0]);
        face.det_point_in_con_poly(target.at, &model.verts);
        face.det_3dpoint_in_con_poly(target.at, model.verts);
        face.poly_volume(model.verts);
        face.get_uvw_near_point(model.verts, target.at);
        face.get_uvw_near_side(model.verts, model.lines, target.at, nearest);
        if (bytes.chance(16)) {
            face.find_side(model.lines);
            face.vert_to_line(model.lines);
            face.line_to_vert(model.lines);
        }
    }
    for (LINE3D& line : model.lines) {
        line.det_vert_at(bytes.index(model.verts.GetSize()));
        if (!model.polys.IsEmpty()) {
            line.detect_line_cross_poly(model.polys[0], model.verts);
        }
    }
}

void check_gathered(TMOD3D& model, Bytes& /*bytes*/) {
    if (static_cast<long long>(model.relat_list_3.GetSize()) * model.polys.GetSize() < most_tests) {
        model.legal_body_rel_side();
    }
}

void draw(TMOD3D& model, Bytes& /*bytes*/) {
    model.gl_draw_mbody();
    model.gl_draw_orig_mbody();
    model.gl_draw_all_poly();
    model.gl_draw_cuboid_line();
    model.gl_draw_cuboid_plan();
    model.gl_draw_sel_vert();
    model.gl_draw_body_outlook();
}

void copy(TMOD3D& model, Bytes& bytes) {
    TMOD3D other(model);
    other.RemoveAll();
    draw(other, bytes);
    other.found_top_rel();
    other.rotate_model();
    other.Copy(model);
    model = other;
}

void merge(TMOD3D& model, Bytes& bytes) {
    if (is_large(model)) {
        return;
    }
    if (bytes.chance(3)) {
        model.add_model(model);
    } else {
        TMOD3D other(model);
        edit(other, bytes);
        model.add_model(other);
    }
}

void start(TMOD3D& model, Bytes& bytes) {
    if (is_large(model)) {
        model.RemoveAll();
    }
    double center[3] = {bytes.real(), bytes.real(), bytes.real()};
    double size[3] = {bytes.real(), bytes.real(), bytes.real()};
    model.inti_mode(center, size, bytes.choice(2), bytes.choice(3) - 1);
}

void raise(TMOD3D& model, Bytes& bytes) {
    if (is_large(model)) {
        return;
    }
    PLYDT set;
    take_set(set, bytes);
    exercise(set, bytes);
    if (bytes.chance(4)) {
        set.prism_pts.SetSize(bytes.choice(8));
    }
    model.create3dmode(set);
}

void move_origin(TMOD3D& model, Bytes& bytes) {
    double p[3] = {bytes.real(), bytes.real(), bytes.real()};
    model.trans_model_orig(p);
}

void locate(TMOD3D& model, Bytes& bytes) {
    TargetPoint target(model, bytes);
    double along[3] = {bytes.real(), bytes.real(), bytes.real()};
    model.detect_a_point_in_body(target.at, along);
    model.get_pt_bady_v(body_of(model, bytes));
}

void edit_vertex_or_edge(TMOD3D& model, Bytes& bytes);
void edit_face_or_body(TMOD3D& model, Bytes& bytes);
void edit_state_or_relations(TMOD3D& model, Bytes& bytes);
void resize_lists(TMOD3D& model, Bytes& bytes);

// In this order each step has something to work on in a sound model.
constexpr Step steps[] = {
    [](TMOD3D& m, Bytes&) { m.write_mode(nowhere()); },
    draw,
    turn,
    pick,
    gather,
    check_gathered,
    move,
    locate,
    cut,
    ask_faces,
    [](TMOD3D& m, Bytes&) { m.insert_point_on_poly(); },
    pick,
    [](TMOD3D& m, Bytes&) { m.insert_point_on_side(); },
    [](TMOD3D& m, Bytes& b) { m.set_body_as_relat(body_of(m, b)); },
    move,
    [](TMOD3D& m, Bytes&) { m.set_all_body_as_relat(); },
    [](TMOD3D& m, Bytes&) { m.mut_weight(); },
    move,
    check_gathered,
    [](TMOD3D& m, Bytes&) { m.back_rel_vert(); },
    [](TMOD3D& m, Bytes&) { m.back_all_vert(); },
    copy,
    [](TMOD3D& m, Bytes& b) { m.get_body_span(body_of(m, b)); },
    [](TMOD3D& m, Bytes&) { m.ant_rotate_model(); },
    move_origin,
    [](TMOD3D& m, Bytes&) { m.model_wrap_cuboid(); },
    [](TMOD3D& m, Bytes&) { m.roate_wrap_cuboid(); },
    [](TMOD3D& m, Bytes&) { m.get_vis_poly(); },
    [](TMOD3D& m, Bytes&) { m.comput_mode_aux_parm(); },
    [](TMOD3D& m, Bytes&) { m.found_top_rel(); },
    merge,
    [](TMOD3D& m, Bytes& b) { m.deletet(body_of(m, b)); },
    [](TMOD3D& m, Bytes&) { m.clear_no_use_ele(); },
    cut,
};

// These add a body to the model.
constexpr Step beginnings[] = {start, raise};

} // namespace

void exercise(TMOD3D& model, Bytes& bytes) {
    for (const Step step : steps) {
        step(model, bytes);
    }
}

void exercise_once(TMOD3D& model, Bytes& bytes) {
    constexpr int count = static_cast<int>(std::size(steps));
    const int chosen = bytes.choice(count + static_cast<int>(std::size(beginnings)));
    (chosen < count ? steps[chosen] : beginnings[chosen - count])(model, bytes);
}

void edit(TMOD3D& model, Bytes& bytes) {
    switch (bytes.choice(4)) {
    case 0:
        edit_vertex_or_edge(model, bytes);
        break;
    case 1:
        edit_face_or_body(model, bytes);
        break;
    case 2:
        edit_state_or_relations(model, bytes);
        break;
    default:
        resize_lists(model, bytes);
        break;
    }
}

namespace {

template <class Records, class Change>
void change_one(Records& records, Bytes& bytes, Change change) {
    if (!records.IsEmpty()) {
        change(records[bytes.choice(records.GetSize())]);
    }
}

void edit_vertex_or_edge(TMOD3D& model, Bytes& bytes) {
    const int verts = model.verts.GetSize();
    const int lines = model.lines.GetSize();
    const int polys = model.polys.GetSize();
    const int bodies = model.bodies.GetSize();
    switch (bytes.choice(4)) {
    case 0:
        change_one(model.verts, bytes,
                   [&](VERT3D& vertex) { vertex.model_xyz[bytes.choice(3)] = bytes.real(); });
        break;
    case 1:
        change_one(model.verts, bytes, [&](VERT3D& vertex) {
            edit(vertex.faces, polys, bytes);
            edit(vertex.lines, lines, bytes);
            edit(vertex.neighbours, verts, bytes);
            edit(vertex.bodies, bodies, bytes);
        });
        break;
    case 2:
        change_one(model.lines, bytes, [&](LINE3D& line) {
            line.start_vert = bytes.index(verts);
            line.end_vert = bytes.index(verts);
        });
        break;
    default:
        change_one(model.lines, bytes, [&](LINE3D& line) {
            edit(line.faces, polys, bytes);
            edit(line.bodies, bodies, bytes);
        });
        break;
    }
}

void edit_face_or_body(TMOD3D& model, Bytes& bytes) {
    const int verts = model.verts.GetSize();
    const int lines = model.lines.GetSize();
    const int polys = model.polys.GetSize();
    const int bodies = model.bodies.GetSize();
    switch (bytes.choice(4)) {
    case 0:
        change_one(model.polys, bytes, [&](POLY3D& face) { edit(face.verts, verts, bytes); });
        break;
    case 1:
        change_one(model.polys, bytes, [&](POLY3D& face) { edit(face.lines, lines, bytes); });
        break;
    case 2:
        change_one(model.polys, bytes, [&](POLY3D& face) {
            face.verts.SetSize(bytes.choice(4));
            face.main_axis = bytes.integer();
            face.state_flags = bytes.integer();
            edit(face.bodies, bodies, bytes);
        });
        break;
    default:
        change_one(model.bodies, bytes, [&](BODY3D& body) {
            edit(body.polys, polys, bytes);
            edit(body.lines, lines, bytes);
            edit(body.verts, verts, bytes);
        });
        break;
    }
}

void edit_state_or_relations(TMOD3D& model, Bytes& bytes) {
    if (bytes.chance(2)) {
        model.edit_state[bytes.choice(11)] = bytes.integer();
        model.pick_data[bytes.choice(9)] = bytes.real();
        return;
    }
    edit(model.relat_list_1, model.polys.GetSize(), bytes);
    edit(model.relat_list_2, model.verts.GetSize(), bytes);
    edit(model.relat_list_3, model.lines.GetSize(), bytes);
    edit(model.relat_list_4, 9, bytes);
    model.mut_weights.SetSize(bytes.choice(6));
}

void resize_lists(TMOD3D& model, Bytes& bytes) {
    if (bytes.chance(2)) {
        model.verts.SetSize(bytes.choice(model.verts.GetSize() + 2));
        return;
    }
    model.polys.SetSize(bytes.choice(model.polys.GetSize() + 2));
    model.lines.SetSize(bytes.choice(model.lines.GetSize() + 2));
    model.bodies.SetSize(bytes.choice(model.bodies.GetSize() + 2));
}

} // namespace
} // namespace korvel::test
