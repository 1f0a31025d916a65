#include "kit/pictures/model_view.h"

#include <algorithm>

#include "kit/pictures/gl_view.h"
#include "kit/pictures/model_picture.h"
#include "kit/solids/outline_edges.h"

namespace korvel::kit {

ViewFrame view_frame(const Solids& solids, const ViewOptions& options) {
    return view_frame(solids.model(), options);
}

ViewFrame turntable_frame(const Solids& solids, const ViewOptions& options) {
    return turntable_frame(solids.model(), options);
}

void draw_view(const Solids& solids, const ViewFrame& frame, const ViewOptions& options) {
    const auto held = solids.hold();
    draw_view(solids.model(), frame, options);
}

ViewFrame view_frame(const TMOD3D& model, const ViewOptions& options) {
    return options.part ? part_of_view(model, *options.part, options.size)
                        : whole_view(model, options.box, options.size);
}

ViewFrame turntable_frame(const TMOD3D& model, const ViewOptions& options) {
    return turning_view(model, options.box, options.size);
}

void draw_view(const TMOD3D& model, const ViewFrame& frame, const ViewOptions& options) {
    begin_view(frame);
    draw_model(model, options.edges, options.box);
    if (options.outlines || options.creases) {
        const double angle = options.creases.value_or(smooth_angle);
        draw_outlines(model, frame, options.edges,
                      options.outlines ? std::min(angle, smooth_angle) : angle);
    }
    if (options.marked) {
        draw_pick(model, *options.marked, frame);
    }
}

} // namespace korvel::kit
