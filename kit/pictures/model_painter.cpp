#include "kit/pictures/model_painter.h"

#include <GL/gl.h>

#include <algorithm>
#include <iterator>

#include "kit/pictures/face_colour.h"
#include "kit/pictures/model_picture.h"
#include "kit/solids/exact.h"

namespace korvel::kit {
namespace {

bool is_closed(const TMOD3D& model, const BODY3D& body, std::vector<bool>& is_odd);
bool shares_a_face(const TMOD3D& model, const BODY3D& body);

} // namespace

// Where a body is closed, what is turned away from the viewer is behind something that is not. A
// face that two bodies share is turned for one of them, but then it is between them, and not seen
// while both are drawn opaque.
void ModelPainter::take_model(const TMOD3D& model, const std::set<int>& hidden) {
    *this = {};
    std::vector<bool> is_odd(static_cast<std::size_t>(model.lines.GetSize()), false);
    const bool shows_shared_faces =
        !hidden.empty() || std::any_of(model.bodies.begin(), model.bodies.end(),
                                       [](const BODY3D& body) { return body.alpha < 1; });
    is_hidden_.resize(static_cast<std::size_t>(model.bodies.GetSize()), false);
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        const BODY3D& body = model.bodies[b];
        if (hidden.contains(b)) {
            is_hidden_[static_cast<std::size_t>(b)] = true;
        } else {
            add_body(model, b,
                     is_closed(model, body, is_odd) &&
                         !(shows_shared_faces && shares_a_face(model, body)));
        }
    }
    share_positions(static_cast<std::size_t>(model.verts.GetSize()));
    edge_ends_.reserve(2 * static_cast<std::size_t>(model.lines.GetSize()));
    for (const LINE3D& edge : model.lines) {
        if (hidden.empty() || std::any_of(edge.bodies.begin(), edge.bodies.end(),
                                          [&](int body) { return !hidden.contains(body); })) {
            edge_ends_.push_back(static_cast<unsigned>(edge.start_vert));
            edge_ends_.push_back(static_cast<unsigned>(edge.end_vert));
        }
    }
}

void ModelPainter::add_body(const TMOD3D& model, int body, bool is_closed) {
    Part part;
    part.body = body;
    part.is_closed = is_closed;
    part.first = triangles_.size();
    for (const int number : model.bodies[body].polys) {
        const CArray<int>& corners = model.polys[number].verts;
        for (int k = 2; k < corners.GetSize(); ++k) {
            triangles_.push_back({number, {corners[0], corners[k - 1], corners[k]}});
        }
    }
    part.end = triangles_.size();
    parts_.push_back(part);
}

void ModelPainter::share_positions(std::size_t vertices) {
    constexpr auto none = static_cast<unsigned>(-1);
    position_of_.assign(vertices, none);
    vertex_of_.reserve(triangles_.size());
    for (const Triangle& triangle : triangles_) {
        const int last = triangle.vertices[2];
        position_of_[static_cast<std::size_t>(last)] = static_cast<unsigned>(vertex_of_.size());
        vertex_of_.push_back(last);
    }
    for (const Triangle& triangle : triangles_) {
        for (const int vertex : triangle.vertices) {
            unsigned& position = position_of_[static_cast<std::size_t>(vertex)];
            if (position == none) {
                position = static_cast<unsigned>(vertex_of_.size());
                vertex_of_.push_back(vertex);
            }
        }
    }
    positions_.resize(vertex_of_.size());
    colours_.resize(vertex_of_.size());
    corners_.resize(3 * triangles_.size());
    seen_.resize(vertices);
    lifted_.resize(vertices);
}

void ModelPainter::take_view(const TMOD3D& model, double opacity, bool also_from_behind) {
    lift_ = (model.view_bounds[5] - model.view_bounds[4]) * 0.005; // as the library
    for (std::size_t v = 0; v < seen_.size(); ++v) {
        take_position(model, v);
    }
    for (std::size_t i = 0; i < vertex_of_.size(); ++i) {
        positions_[i] = seen_[static_cast<std::size_t>(vertex_of_[i])];
    }
    for (Part& part : parts_) {
        part.alpha = model.bodies[part.body].alpha * opacity;
        take_part(model, part, also_from_behind);
    }
}

void ModelPainter::take_moved(const TMOD3D& model, std::span<const int> vertices) {
    std::vector<bool> has_moved(seen_.size(), false);
    for (const int vertex : vertices) {
        has_moved[static_cast<std::size_t>(vertex)] = true;
        take_position(model, static_cast<std::size_t>(vertex));
    }
    for (std::size_t i = 0; i < vertex_of_.size(); ++i) {
        const auto vertex = static_cast<std::size_t>(vertex_of_[i]);
        if (has_moved[vertex]) {
            positions_[i] = seen_[vertex];
        }
    }
}

void ModelPainter::take_position(const TMOD3D& model, std::size_t vertex) {
    const double* const at = model.verts[static_cast<int>(vertex)].view_xyz;
    seen_[vertex] = {static_cast<float>(at[0]), static_cast<float>(at[1]),
                     static_cast<float>(at[2])};
    lifted_[vertex] = {seen_[vertex][0], seen_[vertex][1], static_cast<float>(at[2] + lift_)};
}

// Those that are turned away come last, and without a colour where they are not drawn: most of the
// time goes into colours.
void ModelPainter::take_part(const TMOD3D& model, Part& part, bool also_from_behind) {
    const BODY3D& body = model.bodies[part.body];
    part.hides_backs = part.is_closed && part.alpha >= 1 && !also_from_behind;
    part.facing = 0;
    std::size_t away = part.end;
    double depth = 0;
    for (std::size_t t = part.first; t < part.end; ++t) {
        const Triangle& triangle = triangles_[t];
        const POLY3D& face = model.polys[triangle.face];
        const bool is_away = face.rotated_plane[2] < 0;
        if (!is_away || !part.hides_backs) {
            colours_[t] = face_colour(body, face);
            colours_[t][3] = static_cast<float>(part.alpha);
        }
        depth += seen_[static_cast<std::size_t>(triangle.vertices[0])][2];
        const std::size_t place = is_away ? --away : part.first + part.facing++;
        unsigned* const corners = &corners_[3 * place];
        corners[0] = position_of_[static_cast<std::size_t>(triangle.vertices[0])];
        corners[1] = position_of_[static_cast<std::size_t>(triangle.vertices[1])];
        corners[2] = static_cast<unsigned>(t);
    }
    part.depth = depth / static_cast<double>(std::max<std::size_t>(1, part.end - part.first));
}

void ModelPainter::draw_faces() const {
    if (triangles_.empty()) {
        return;
    }
    glShadeModel(GL_FLAT); // the colour of a triangle is that of its last corner
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, positions_.data());
    glColorPointer(4, GL_FLOAT, 0, colours_.data());
    std::vector<Part> transparent;
    for (const Part& part : parts_) {
        if (part.alpha < 1) {
            transparent.push_back(part);
        } else {
            draw(part);
        }
    }
    std::stable_sort(transparent.begin(), transparent.end(),
                     [](const Part& a, const Part& b) { return a.depth < b.depth; });
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
    for (const Part& part : transparent) {
        draw(part);
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
    glShadeModel(GL_SMOOTH);
}

// The ones turned away first, which matters where they show through.
void ModelPainter::draw(const Part& part) const {
    const auto draw_some = [&](std::size_t first, std::size_t end) {
        if (first < end) {
            glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(3 * (end - first)), GL_UNSIGNED_INT,
                           &corners_[3 * first]);
        }
    };
    if (!part.hides_backs) {
        draw_some(part.first + part.facing, part.end);
    }
    draw_some(part.first, part.first + part.facing);
}

void ModelPainter::draw_edges() const {
    if (edge_ends_.empty()) {
        return;
    }
    glEnableClientState(GL_VERTEX_ARRAY);
    glColor3d(1, 1, 1);
    glVertexPointer(3, GL_FLOAT, 0, lifted_.data());
    glDrawElements(GL_LINES, static_cast<GLsizei>(edge_ends_.size()), GL_UNSIGNED_INT,
                   edge_ends_.data());
    glDisableClientState(GL_VERTEX_ARRAY);
}

void ModelPainter::draw_outlines(const TMOD3D& model, const ViewFrame& frame, bool with_edges,
                                 std::span<const int> outlines) const {
    std::vector<int> shown;
    shown.reserve(outlines.size());
    std::ranges::copy_if(outlines, std::back_inserter(shown), [&](int e) {
        const CArray<int>& bodies = model.lines[e].bodies;
        return std::any_of(bodies.begin(), bodies.end(),
                           [&](int body) { return !is_hidden_[static_cast<std::size_t>(body)]; });
    });
    kit::draw_outlines(model, frame, with_edges, shown);
}

namespace {

bool is_closed(const TMOD3D& model, const BODY3D& body, std::vector<bool>& is_odd) {
    for (const int face : body.polys) {
        for (const int edge : model.polys[face].lines) {
            const auto e = static_cast<std::size_t>(edge);
            is_odd[e] = !is_odd[e];
        }
    }
    bool is_closed = true;
    for (const int edge : body.lines) {
        is_closed = is_closed && !is_odd[static_cast<std::size_t>(edge)];
        is_odd[static_cast<std::size_t>(edge)] = false;
    }
    return is_closed;
}

bool shares_a_face(const TMOD3D& model, const BODY3D& body) {
    return std::any_of(body.polys.begin(), body.polys.end(),
                       [&](int face) { return model.polys[face].bodies.GetSize() > 1; });
}

} // namespace
} // namespace korvel::kit
