#include "korvel/body/derive/flat_model.h"

#include <algorithm>
#include <utility>

namespace korvel {
namespace {

/// Appends to `lists` the entries of record `record`'s list that are below `size`, each once.
void add_list(PackedLists& lists, const CArray<int>& list, int record, int size,
              FirstTimes& times) {
    for (const int index : list) {
        if (index >= 0 && index < size && times.is_first(index, record)) {
            lists.add(index);
        }
    }
    lists.end_list();
}

} // namespace

FlatModel flattened(const TMOD3D& model) {
    constexpr std::size_t corners = 3; // of most faces
    const int faces = model.polys.GetSize();
    FlatModel flat;
    flat.points.reserve(static_cast<std::size_t>(model.verts.GetSize()));
    for (const VERT3D& vertex : model.verts) {
        FlatModel::Point& point = flat.points.emplace_back();
        std::copy_n(vertex.model_xyz, 3, point.model);
    }
    flat.edges.reserve(static_cast<std::size_t>(model.lines.GetSize()));
    for (const LINE3D& line : model.lines) {
        flat.edges.push_back({line.start_vert, line.end_vert});
    }
    flat.face_verts.reserve(faces, corners * static_cast<std::size_t>(faces));
    flat.face_lines.reserve(faces, corners * static_cast<std::size_t>(faces));
    FirstTimes vert_times(model.verts.GetSize());
    FirstTimes line_times(model.lines.GetSize());
    for (int f = 0; f < faces; ++f) {
        const POLY3D& face = model.polys[f];
        add_list(flat.face_verts, face.verts, f, model.verts.GetSize(), vert_times);
        add_list(flat.face_lines, face.lines, f, model.lines.GetSize(), line_times);
    }
    flat.body_faces = faces_of_bodies(model, faces);
    return flat;
}

PackedLists faces_of_bodies(const TMOD3D& model, int faces) {
    PackedLists body_faces;
    body_faces.reserve(model.bodies.GetSize(), static_cast<std::size_t>(faces));
    FirstTimes times(faces);
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        add_list(body_faces, model.bodies[b].polys, b, faces, times);
    }
    return body_faces;
}

} // namespace korvel
