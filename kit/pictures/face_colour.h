#pragma once

#include <array>
#include <cmath>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Red, green, blue and opacity of a face of a body in a view that is current: what
/// `TMOD3D::gl_draw_mbody` draws for faces towards the viewer, and the same from behind.
inline std::array<float, 4> face_colour(const BODY3D& body, const POLY3D& face) {
    constexpr float per_turn = 0.6F;
    constexpr float edge_on = 0.2F;
    const auto lightness = static_cast<float>(std::abs(face.rotated_plane[2]) * per_turn + edge_on);
    std::array<float, 4> colour = {};
    colour[3] = static_cast<float>(body.alpha);
    CMYColor().HLSToRGBf(static_cast<float>(body.hue), lightness,
                         static_cast<float>(body.saturation), colour[0], colour[1], colour[2]);
    return colour;
}

} // namespace korvel::kit
