#pragma once

#include <array>
#include <set>
#include <span>
#include <vector>

#include "kit/pictures/view_frame.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Draws a model again and again, as a window does: keeps what OpenGL takes in arrays, so that a
/// picture costs one call for each body. The pixels are those of `TMOD3D::gl_draw_mbody`; faces
/// that are seen from behind, through the gap of an open body, are as light as from the front.
///
/// `take_model`, `take_view` and a drawing call come in this order after each change of what they
/// take. Each is linear. Takes about 100 bytes for each face.
class ModelPainter {
public:
    /// Takes the faces of the bodies that are not hidden, and the edges. The relations must be
    /// current.
    void take_model(const TMOD3D& model, const std::set<int>& hidden = {});

    /// Takes positions and colours, after the view was turned, or vertices were moved or bodies
    /// given other colours. The view must be current. Bodies are drawn with that share of their
    /// opacity. Faces that others hide, because their body is closed, opaque and turned away there,
    /// are left out unless `also_from_behind`, as a clipped model needs.
    void take_view(const TMOD3D& model, double opacity = 1, bool also_from_behind = false);

    /// Takes the positions of some vertices that were moved in the view; colours stay. Linear, but
    /// much faster than `take_view`.
    void take_moved(const TMOD3D& model, std::span<const int> vertices);

    // Into the current OpenGL context, after `begin_view`.

    /// The faces. Transparent bodies come last, the farthest first; blending is off afterwards.
    void draw_faces() const;

    /// All edges in white, in front of the faces as `TMOD3D::gl_draw_body_outlook` draws them.
    void draw_edges() const;

    /// The outlines as `draw_outlines` draws them, of bodies that are not hidden. `outlines` are
    /// those of the model (`outline_edges`), which are found once for each model.
    void draw_outlines(const TMOD3D& model, const ViewFrame& frame, bool with_edges,
                       std::span<const int> outlines) const;

private:
    using Position = std::array<float, 3>;
    using Colour = std::array<float, 4>;

    // What is drawn of a body: triangles, of which those that are turned away come last in their
    // part of `corners_`.
    struct Part {
        int body = 0;
        std::size_t first = 0; // triangle
        std::size_t end = 0;
        bool is_closed = false; // and seen from outside only
        bool hides_backs = false;
        std::size_t facing = 0; // triangles, from the first on
        double alpha = 1;
        double depth = 0;
    };
    struct Triangle {
        int face = 0;
        std::array<int, 3> vertices = {};
    };

    void add_body(const TMOD3D& model, int body, bool is_closed);
    void share_positions(std::size_t vertices);
    void take_position(const TMOD3D& model, std::size_t vertex);
    void take_part(const TMOD3D& model, Part& part, bool also_from_behind);
    void draw(const Part& part) const;

    std::vector<Part> parts_;
    std::vector<Triangle> triangles_;
    // A position for each triangle's last corner, which has its colour; then those of vertices that
    // are no triangle's last.
    std::vector<int> vertex_of_;
    std::vector<Position> positions_;
    std::vector<Colour> colours_;
    std::vector<unsigned> position_of_; // of each vertex
    std::vector<unsigned> corners_;     // three positions for each triangle
    std::vector<Position> seen_;        // each vertex
    std::vector<Position> lifted_;      // in front of the faces
    std::vector<unsigned> edge_ends_;
    std::vector<bool> is_hidden_;
    double lift_ = 0;
};

} // namespace korvel::kit
