#pragma once

namespace korvel::kit {

/// By how many degrees a model is turned about its z axis, and then tilted about the x axis of the
/// view. At 0, 0 it is seen from above, x to the right and y upward; at 0, −90 from the front, z
/// upward. In the view u runs to the right, v upward and w towards the viewer, all from the middle
/// of the model's extent.
struct ViewAngles {
    double turn = 5;
    double tilt = 5;

    friend bool operator==(const ViewAngles&, const ViewAngles&) = default;
};

} // namespace korvel::kit
