#pragma once

#include <optional>

#include "kit/base/rectangle.h"
#include "kit/pictures/picture_size.h"
#include "kit/pictures/view_frame.h"
#include "kit/solids/pick.h"
#include "kit/solids/solids.h"
#include "korvel/module/korvel.h"

// Views of models, drawn by OpenGL at the angles to which the model is turned: `Solids::set_view`,
// or `vis_angle_1`, `vis_angle_2` and `change_vis_parm` of `TMOD3D`. view_files.h writes them into
// files, without a window.

namespace korvel::kit {

class OffscreenRenderer;

/// How a model is shown.
struct ViewOptions {
    PictureSize size = {};

    /// What the picture shows, its x being u and its y being v; without it the whole model.
    std::optional<Rectangle> part = {};

    bool edges = false;    ///< all edges in white
    bool outlines = false; ///< those that outline the bodies (`outline_edges`), dark

    /// The same with those at which the faces of a body turn by more than this angle in degrees, as
    /// suits a finely divided surface.
    std::optional<double> creases = {};

    bool box = false; ///< the box around the model in black

    /// What was picked in this view: its face is shown yellow, its nearest edge red, its nearest
    /// vertex as a blue dot and the position as a white one.
    std::optional<Pick> marked = {};

    /// Draws files if set, and has the size of the pictures; otherwise one is made for each call,
    /// which takes about as long as drawing a small model.
    OffscreenRenderer* screen = nullptr;
};

/// What a picture shows, in the coordinates that `Solids::pick` takes: a click on pixel x, y picks
/// at `u_of(x)`, `v_of(y)`. Constant time.
ViewFrame view_frame(const Solids& solids, const ViewOptions& options = {});
ViewFrame view_frame(const TMOD3D& model, const ViewOptions& options = {});

/// What each picture of a turntable shows, in the same scale at every turn. Linear in the vertices.
ViewFrame turntable_frame(const Solids& solids, const ViewOptions& options = {});
ViewFrame turntable_frame(const TMOD3D& model, const ViewOptions& options = {});

/// Draws the model into the current OpenGL context, as large as the frame. `begin_view` is called
/// first; afterwards the depth test is off if a pick was marked. Linear in the model.
void draw_view(const Solids& solids, const ViewFrame& frame, const ViewOptions& options = {});
void draw_view(const TMOD3D& model, const ViewFrame& frame, const ViewOptions& options = {});

} // namespace korvel::kit
