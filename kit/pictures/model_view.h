#pragma once

#include <optional>

#include "kit/base/rectangle.h"
#include "kit/pictures/view_frame.h"
#include "kit/solids/pick.h"
#include "kit/solids/view_angles.h"
#include "korvel/module/korvel.h"

// Views of models, drawn by OpenGL. view_files.h writes them into files, without a window.
//
// The view is a part of the model, which each of these functions turns; nothing else in it changes.
// Its faces and relations must be current.

namespace korvel::kit {

class OffscreenRenderer;

/// How a model is shown.
struct ViewOptions {
    PictureSize size = {};
    ViewAngles angles = {.turn = 30, .tilt = -60};

    /// What the picture shows, its x being u and its y being v; without it the whole model.
    std::optional<Rectangle> part = {};

    bool edges = false; ///< all edges in white
    bool box = false;   ///< the box around the model in black

    /// What was picked in this view: its face is shown yellow, its nearest edge red, its nearest
    /// vertex as a blue dot and the position as a white one.
    std::optional<Pick> marked = {};

    /// Draws files if set, and has the size of the pictures; otherwise one is made for each call,
    /// which takes about as long as drawing a small model.
    OffscreenRenderer* screen = nullptr;
};

/// Turns the model and returns what a picture of it shows: the coordinates to pick by. Linear in
/// the model.
ViewFrame turn_view(TMOD3D& model, const ViewOptions& options);

/// Turns the model and returns what each picture of a turntable shows, in the same scale at every
/// turn.
ViewFrame turn_turntable(TMOD3D& model, const ViewOptions& options);

/// Draws the model, whose view is current, into the current OpenGL context. `begin_view` is called
/// first; afterwards the depth test is off if a pick was marked. Linear in the model.
void draw_view(TMOD3D& model, const ViewFrame& frame, const ViewOptions& options);

} // namespace korvel::kit
