#include "kit/pictures/model_view.h"

#include "kit/pictures/gl_view.h"
#include "kit/pictures/model_picture.h"

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
    if (options.outlines) {
        draw_outlines(model, frame, options.edges);
    }
    if (options.marked) {
        draw_pick(model, *options.marked, frame);
    }
}

} // namespace korvel::kit
