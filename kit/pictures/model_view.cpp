#include "kit/pictures/model_view.h"

#include "kit/pictures/gl_view.h"
#include "kit/pictures/model_picture.h"

namespace korvel::kit {
namespace {

void turn_to(TMOD3D& model, const ViewAngles& angles);

} // namespace

ViewFrame turn_view(TMOD3D& model, const ViewOptions& options) {
    turn_to(model, options.angles);
    return options.part ? part_of_view(model, *options.part, options.size)
                        : whole_view(model, options.box, options.size);
}

ViewFrame turn_turntable(TMOD3D& model, const ViewOptions& options) {
    turn_to(model, options.angles);
    return turning_view(model, options.box, options.size);
}

void draw_view(TMOD3D& model, const ViewFrame& frame, const ViewOptions& options) {
    begin_view(frame);
    draw_model(model, options.edges, options.box);
    if (options.marked) {
        draw_pick(model, *options.marked, frame);
    }
}

namespace {

void turn_to(TMOD3D& model, const ViewAngles& angles) {
    model.vis_angle_1 = angles.turn;
    model.vis_angle_2 = angles.tilt;
    model.change_vis_parm();
}

} // namespace
} // namespace korvel::kit
