#include "kit/solids/collision.h"

#include <algorithm>
#include <array>

namespace korvel::kit {
namespace {

int first_crossed_face(const TMOD3D& model);
int first_edge_across(TMOD3D& model, int face);

} // namespace

std::optional<Collision> first_collision(TMOD3D& model, const Context& context) {
    context.report("checking the move", 0, 1);
    const CheckPointScope calls = context.follow_calls();
    std::optional<Collision> collision;
    if (!model.legal_body_rel_side()) {
        const int face = first_crossed_face(model);
        collision = {first_edge_across(model, face), face};
    }
    context.report("checking the move", 1, 1);
    return collision;
}

namespace {

// The test marks the faces that an edge does not cross, in their order, until it finds one.
int first_crossed_face(const TMOD3D& model) {
    constexpr int is_tested = 32;
    const auto* const found =
        std::find_if(model.polys.begin(), model.polys.end(),
                     [](const POLY3D& face) { return (face.state_flags & is_tested) == 0; });
    return static_cast<int>(found - model.polys.begin());
}

// The edges before it cross no face at all.
int first_edge_across(TMOD3D& model, int face) {
    const auto has_end_on_face = [&](const LINE3D& edge) {
        const std::array ends = {edge.start_vert, edge.end_vert};
        return std::any_of(ends.begin(), ends.end(), [&](int v) {
            const CArray<int>& faces = model.verts[v].faces;
            return std::find(faces.begin(), faces.end(), face) != faces.end();
        });
    };
    return *std::find_if(model.relat_list_3.begin(), model.relat_list_3.end(), [&](int e) {
        LINE3D& edge = model.lines[e];
        return !has_end_on_face(edge) &&
               edge.detect_line_cross_poly(model.polys[face], model.verts);
    });
}

} // namespace
} // namespace korvel::kit
