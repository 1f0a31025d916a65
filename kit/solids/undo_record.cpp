#include "kit/solids/undo_record.h"

#include <algorithm>
#include <iterator>

namespace korvel::kit {
namespace {

template <class Value>
void copy_value(const Value& from, Value& to) {
    if constexpr (std::is_array_v<Value>) {
        for (std::size_t i = 0; i < std::extent_v<Value>; ++i) {
            copy_value(from[i], to[i]);
        }
    } else if constexpr (requires { to.Copy(from); }) {
        to.Copy(from);
    } else {
        to = from;
    }
}

template <class Record, class... Member>
void copy_members(const Record& from, Record& to, Member Record::*... members) {
    (copy_value(from.*members, to.*members), ...);
}

void copy_bounds(const TMOD3D& from, TMOD3D& to) {
    copy_members(from, to, &TMOD3D::wrap_cuboid, &TMOD3D::wrap_radius, &TMOD3D::cuboid_corners,
                 &TMOD3D::cuboid_min, &TMOD3D::cuboid_max);
}

void copy_selection(const TMOD3D& from, TMOD3D& to) {
    copy_members(from, to, &TMOD3D::relat_list_1, &TMOD3D::relat_list_2, &TMOD3D::relat_list_3,
                 &TMOD3D::relat_list_4, &TMOD3D::mut_weights, &TMOD3D::edit_state,
                 &TMOD3D::pick_data);
}

void copy_span(const BODY3D& from, BODY3D& to) {
    copy_members(from, to, &BODY3D::model_min, &BODY3D::model_max, &BODY3D::view_mid,
                 &BODY3D::view_span, &BODY3D::view_min, &BODY3D::view_max, &BODY3D::change_dirt);
}

int first_corner(const POLY3D& face) {
    return face.verts.IsEmpty() ? -1 : face.verts[0];
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

std::vector<Marks::Change> Marks::update(const TMOD3D& model) {
    std::vector<Change> changes;
    const auto take = [&](List list, const auto& records, auto value_of) {
        std::size_t index = 0;
        for (const auto& record : records) {
            int& value = values_[list][index];
            if (const int now = value_of(record); now != value) {
                changes.push_back({list, index, value});
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

void Marks::revert(const std::vector<Change>& changes) {
    for (const Change& change : changes) {
        values_[change.list][change.index] = change.before;
    }
}

void Marks::restore(TMOD3D& model) const {
    const auto give = [&](List list, auto& records) {
        auto value = values_[list].begin();
        for (auto& record : records) {
            record.state_flags = *value++;
        }
    };
    give(vertex_marks, model.verts);
    give(edge_marks, model.lines);
    give(face_marks, model.polys);
    auto corner = values_[first_corners].begin();
    for (POLY3D& face : model.polys) {
        if (first_corner(face) != *corner++) {
            face.invert_poly_range();
        }
    }
    auto mark = values_[body_marks].begin();
    for (BODY3D& body : model.bodies) {
        body.body_flags = *mark++;
    }
}

MoveRecord::MoveRecord(const TMOD3D& model) {
    moved_.reserve(static_cast<std::size_t>(model.relat_list_2.GetSize()));
    for (const int v : model.relat_list_2) {
        const VERT3D& vertex = model.verts[v];
        moved_.push_back({v, values(vertex.model_xyz), values(vertex.temp_view_xyz)});
    }
    volumes_.reserve(static_cast<std::size_t>(model.bodies.GetSize()));
    for (const BODY3D& body : model.bodies) {
        volumes_.push_back(body.volume);
    }
    for (const int slot : {edit_picked_body, edit_scaled_body}) {
        const int body = model.edit_state[slot];
        if (body >= 0 && body < model.bodies.GetSize()) {
            span_bodies_.push_back(body);
            copy_span(model.bodies[body], spans_.emplace_back());
        }
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
    for (LINE3D& edge : model.lines) {
        edge.set_line_eqt(model.verts);
    }
    for (POLY3D& face : model.polys) {
        face.set_poly_eql(model.verts);
    }
    int body = 0;
    for (const double volume : volumes_) {
        model.bodies[body++].volume = volume;
    }
    for (std::size_t i = 0; i < spans_.size(); ++i) {
        copy_span(spans_[i], model.bodies[span_bodies_[i]]);
    }
    copy_bounds(rest_, model);
}

void MoveRecord::restore_selection(TMOD3D& model) const {
    copy_selection(rest_, model);
}

} // namespace korvel::kit
