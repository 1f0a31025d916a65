#include "kit/solids/model_check.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "kit/files/model_file.h"
#include "kit/solids/surface.h"

namespace korvel::kit {
namespace {

class ModelCheck {
public:
    ModelCheck(const FileContents& contents, Findings& out)
        : model_(contents.model), lines_(contents.lines), out_(out) {}

    void check_faces();
    void check_bodies();
    void note_unused_records();
    void note_equal_positions();

private:
    void check_twins(int body);
    void add(std::vector<Finding>& findings, int line, std::string message) {
        findings.push_back({line, std::move(message)});
    }

    const TMOD3D& model_;
    const RecordLines& lines_;
    Findings& out_;
};

bool is_flat(const TMOD3D& model, const CArray<int>& corners);

} // namespace

void check_model(const FileContents& contents, Findings& out) {
    ModelCheck check(contents, out);
    check.check_faces();
    check.check_bodies();
    check.note_unused_records();
    check.note_equal_positions();
    if (const auto change = first_change(contents.model, contents.lines)) {
        out.notes.push_back(*change);
    }
}

namespace {

void ModelCheck::check_faces() {
    for (int face = 0; face < model_.polys.GetSize(); ++face) {
        const CArray<int>& corners = model_.polys[face].verts;
        const std::array<int, 3> ascending = sorted_corners(model_.polys[face]);
        if (ascending[0] < 0) {
            continue;
        }
        const std::string name = "face " + std::to_string(face);
        if (ascending[0] == ascending[1] || ascending[1] == ascending[2]) {
            add(out_.problems, lines_.parts[face],
                name + " has vertex " + std::to_string(ascending[1]) + " twice");
        } else if (is_flat(model_, corners)) {
            add(out_.notes, lines_.parts[face], name + " has no area");
        }
    }
}

void ModelCheck::check_bodies() {
    const std::vector<Surface> all = surfaces(model_);
    for (int body = 0; body < model_.bodies.GetSize(); ++body) {
        const Surface& surface = all[body];
        const int line = lines_.wholes[body];
        const std::string name = "body " + std::to_string(body);
        if (model_.bodies[body].polys.IsEmpty()) {
            add(out_.problems, line, name + " has no face");
        } else if (!surface.is_closed()) {
            add(out_.problems, line, name + " is " + state_text(surface));
        } else if (!surface.is_clean()) {
            add(out_.notes, line, name + " is " + state_text(surface));
        }
        check_twins(body);
    }
}

// Faces that a body has twice, be it as one number or as two.
void ModelCheck::check_twins(int body) {
    std::vector<std::pair<std::array<int, 3>, int>> faces;
    for (const int face : model_.bodies[body].polys) {
        if (face >= 0 && sorted_corners(model_.polys[face])[0] >= 0) {
            faces.emplace_back(sorted_corners(model_.polys[face]), face);
        }
    }
    std::sort(faces.begin(), faces.end());
    for (std::size_t i = 1; i < faces.size(); ++i) {
        const auto& [corners, face] = faces[i - 1];
        if (corners != faces[i].first) {
            continue;
        }
        const std::string name = "body " + std::to_string(body);
        if (face == faces[i].second) {
            add(out_.problems, lines_.wholes[body],
                name + " lists face " + std::to_string(face) + " twice");
        } else {
            add(out_.problems, lines_.parts[faces[i].second],
                "face " + std::to_string(faces[i].second) + " has the vertices of face " +
                    std::to_string(face) + ", both of " + name);
        }
    }
}

void ModelCheck::note_unused_records() {
    std::vector<bool> is_vertex_used(model_.verts.GetSize(), false);
    std::vector<bool> is_face_used(model_.polys.GetSize(), false);
    for (const POLY3D& face : model_.polys) {
        for (const int v : face.verts) {
            if (v >= 0) {
                is_vertex_used[v] = true;
            }
        }
    }
    for (const BODY3D& body : model_.bodies) {
        for (const int f : body.polys) {
            if (f >= 0) {
                is_face_used[f] = true;
            }
        }
    }
    note_unused(is_vertex_used, lines_.points, "vertex", "face", out_);
    note_unused(is_face_used, lines_.parts, "face", "body", out_);
}

// Within a body: faces that meet there do not share the vertex and leave the body open.
void ModelCheck::note_equal_positions() {
    const auto place = [&](int v) {
        const double* const p = model_.verts[v].model_xyz;
        return std::array<double, 3>{p[0], p[1], p[2]};
    };
    for (int body = 0; body < model_.bodies.GetSize(); ++body) {
        std::vector<int> vertices;
        for (const int f : model_.bodies[body].polys) {
            if (f >= 0) {
                const CArray<int>& corners = model_.polys[f].verts;
                std::copy_if(corners.begin(), corners.end(), std::back_inserter(vertices),
                             [](int v) { return v >= 0; });
            }
        }
        std::sort(vertices.begin(), vertices.end());
        vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
        std::stable_sort(vertices.begin(), vertices.end(),
                         [&](int a, int b) { return place(a) < place(b); });
        const auto first = std::adjacent_find(vertices.begin(), vertices.end(),
                                              [&](int a, int b) { return place(a) == place(b); });
        if (first != vertices.end()) {
            add(out_.notes, lines_.points[first[1]],
                "vertex " + std::to_string(first[1]) + " has the position of vertex " +
                    std::to_string(first[0]) + ", both of body " + std::to_string(body));
        }
    }
}

bool is_flat(const TMOD3D& model, const CArray<int>& corners) {
    const double* const a = model.verts[corners[0]].model_xyz;
    const double* const b = model.verts[corners[1]].model_xyz;
    const double* const c = model.verts[corners[2]].model_xyz;
    const auto part = [&](int k, int l) {
        return (b[k] - a[k]) * (c[l] - a[l]) - (b[l] - a[l]) * (c[k] - a[k]);
    };
    return part(0, 1) == 0 && part(1, 2) == 0 && part(2, 0) == 0;
}

} // namespace
} // namespace korvel::kit
