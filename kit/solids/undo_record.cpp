#include "kit/solids/undo_record.h"

#include <algorithm>
#include <iterator>

#include "kit/solids/kept_members.h"
#include "kit/solids/moved_equations.h"

namespace korvel::kit {
namespace {

int first_corner(const POLY3D& face) {
    return face.verts.IsEmpty() ? -1 : face.verts[0];
}

// Three indices have room in the list itself.
std::size_t bytes_of_list(const CArray<int>& list) {
    return list.GetSize() > 3 ? static_cast<std::size_t>(list.GetSize()) * sizeof(int) : 0;
}

std::array<double, 3> values(const double (&xyz)[3]) {
    return {xyz[0], xyz[1], xyz[2]};
}

} // namespace

Marks::Marks(const TMOD3D& model) {
    const auto size = [](const auto& records) {
        return static_cast<std::size_t>(records.GetSize());
    };
    values_[vertex_marks].resize(size(model.verts));
    values_[edge_marks].resize(size(model.lines));
    values_[face_marks].resize(size(model.polys));
    values_[first_corners].resize(size(model.polys));
    values_[body_marks].resize(size(model.bodies));
    update(model);
}

void Marks::add(Changes& changes, const Change& change) {
    if (change.bits == 0) {
        return;
    }
    if (!changes.empty()) {
        Change& last = changes.back();
        if (last.list == change.list && last.bits == change.bits &&
            last.first + last.count == change.first) {
            last.count += change.count;
            return;
        }
    }
    changes.push_back(change);
}

Marks::Changes Marks::update(const TMOD3D& model) {
    Changes changes;
    const auto take = [&](List list, const auto& records, auto value_of) {
        int index = 0;
        for (const auto& record : records) {
            int& value = values_[list][static_cast<std::size_t>(index)];
            if (const int now = value_of(record); now != value) {
                add(changes, {list, index, 1, value ^ now});
                value = now;
            }
            ++index;
        }
    };
    const auto flags = [](const auto& record) { return record.state_flags; };
    take(vertex_marks, model.verts, flags);
    take(edge_marks, model.lines, flags);
    take(face_marks, model.polys, flags);
    take(first_corners, model.polys, first_corner);
    take(body_marks, model.bodies, [](const BODY3D& body) { return body.body_flags; });
    return changes;
}

Marks::Changes Marks::change(const Changes& changes) {
    const std::array before = values_;
    for (const Change& change : changes) {
        int* const first = values_[static_cast<std::size_t>(change.list)].data() + change.first;
        std::for_each(first, first + change.count, [&](int& value) { value ^= change.bits; });
    }
    Changes sum;
    for (int list = 0; list < lists; ++list) {
        const std::vector<int>& from = before[static_cast<std::size_t>(list)];
        const std::vector<int>& to = values_[static_cast<std::size_t>(list)];
        for (std::size_t i = 0; i < from.size(); ++i) {
            if (from[i] != to[i]) {
                add(sum, {list, static_cast<int>(i), 1, from[i] ^ to[i]});
            }
        }
    }
    return sum;
}

void change_marks(const Marks::Changes& changes, TMOD3D& model) {
    const auto turn = [&](POLY3D& face) {
        face.invert_poly_range();
        face.set_poly_eql(model.verts);
    };
    for (const Marks::Change& change : changes) {
        for (int i = change.first; i < change.first + change.count; ++i) {
            switch (change.list) {
            case Marks::vertex_marks:
                model.verts[i].state_flags ^= change.bits;
                break;
            case Marks::edge_marks:
                model.lines[i].state_flags ^= change.bits;
                break;
            case Marks::face_marks:
                model.polys[i].state_flags ^= change.bits;
                break;
            case Marks::first_corners:
                turn(model.polys[i]);
                break;
            default:
                model.bodies[i].body_flags ^= change.bits;
                break;
            }
        }
    }
}

MoveRecord::MoveRecord(const TMOD3D& model) {
    moved_.reserve(static_cast<std::size_t>(model.relat_list_2.GetSize()));
    for (const int v : model.relat_list_2) {
        take(model, v);
    }
    for (const int slot : {edit_picked_body, edit_scaled_body}) {
        const int body = model.edit_state[slot];
        if (body >= 0 && body < model.bodies.GetSize()) {
            span_bodies_.push_back(body);
        }
    }
    take_rest(model);
}

MoveRecord::MoveRecord(const TMOD3D& model, const MoveRecord& same_move)
    : span_bodies_(same_move.span_bodies_) {
    moved_.reserve(same_move.moved_.size());
    for (const Moved& moved : same_move.moved_) {
        take(model, moved.vertex);
    }
    take_rest(model);
}

void MoveRecord::take(const TMOD3D& model, int vertex) {
    const VERT3D& at = model.verts[vertex];
    moved_.push_back({vertex, values(at.model_xyz), values(at.temp_view_xyz)});
}

void MoveRecord::take_rest(const TMOD3D& model) {
    volumes_.reserve(static_cast<std::size_t>(model.bodies.GetSize()));
    for (const BODY3D& body : model.bodies) {
        volumes_.push_back(body.volume);
    }
    spans_.resize(span_bodies_.size());
    for (std::size_t i = 0; i < spans_.size(); ++i) {
        copy_span(model.bodies[span_bodies_[i]], spans_[i]);
    }
    copy_bounds(model, rest_);
    copy_selection(model, rest_);
}

void MoveRecord::restore(TMOD3D& model) const {
    for (const Moved& moved : moved_) {
        VERT3D& vertex = model.verts[moved.vertex];
        std::copy(moved.model_xyz.begin(), moved.model_xyz.end(), vertex.model_xyz);
        std::copy(moved.temp_view_xyz.begin(), moved.temp_view_xyz.end(), vertex.temp_view_xyz);
    }
    std::vector<int> vertices(moved_.size());
    std::ranges::transform(moved_, vertices.begin(), &Moved::vertex);
    compute_equations_at(model, vertices);
    int body = 0;
    for (const double volume : volumes_) {
        model.bodies[body++].volume = volume;
    }
    for (std::size_t i = 0; i < spans_.size(); ++i) {
        copy_span(spans_[i], model.bodies[span_bodies_[i]]);
    }
    copy_bounds(rest_, model);
}

// Origin and bounds of the view are as they were.
void MoveRecord::restore_view(TMOD3D& model) const {
    if (has_moved_much(model, moved_.size())) {
        model.rotate_model();
        return;
    }
    for (const Moved& moved : moved_) {
        VERT3D& vertex = model.verts[moved.vertex];
        vertex.rotate(model.rot_matrix);
        vertex.trans_uvw_org(model.view_center);
    }
    for (const Moved& moved : moved_) {
        const VERT3D& vertex = model.verts[moved.vertex];
        for (const int e : vertex.lines) {
            model.lines[e].set_line_2d_eqt(model.verts);
        }
        for (const int f : vertex.faces) {
            model.polys[f].get_rotated_poly_eql(model.verts);
            model.polys[f].detect_rotated_poly_vis(model.view_dir);
        }
    }
    model.roate_wrap_cuboid();
}

void MoveRecord::restore_selection(TMOD3D& model) const {
    copy_selection(rest_, model);
}

std::size_t MoveRecord::bytes() const {
    return sizeof(MoveRecord) + moved_.capacity() * sizeof(Moved) +
           volumes_.capacity() * sizeof(double) + spans_.capacity() * sizeof(BODY3D) +
           span_bodies_.capacity() * sizeof(int) + bytes_of(rest_) - sizeof(TMOD3D);
}

std::size_t bytes_of(const Marks::Changes& changes) {
    return changes.capacity() * sizeof(Marks::Change);
}

std::size_t bytes_of(const TMOD3D& model) {
    std::size_t sum = sizeof(TMOD3D);
    const auto add_records = [&](const auto& records, auto... lists) {
        for (const auto& record : records) {
            sum += sizeof(record) + (bytes_of_list(record.*lists) + ...);
        }
    };
    add_records(model.verts, &VERT3D::faces, &VERT3D::lines, &VERT3D::neighbours, &VERT3D::bodies);
    add_records(model.lines, &LINE3D::faces, &LINE3D::bodies);
    add_records(model.polys, &POLY3D::verts, &POLY3D::lines, &POLY3D::neighbour_faces,
                &POLY3D::bodies);
    add_records(model.bodies, &BODY3D::polys, &BODY3D::lines, &BODY3D::verts,
                &BODY3D::neighbour_bodies);
    for (const CArray<int>* const list :
         {&model.relat_list_1, &model.relat_list_2, &model.relat_list_3, &model.relat_list_4}) {
        sum += bytes_of_list(*list);
    }
    return sum + static_cast<std::size_t>(model.mut_weights.GetSize()) * sizeof(double);
}

} // namespace korvel::kit
