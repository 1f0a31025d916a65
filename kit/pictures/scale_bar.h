#pragma once

#include <string>

#include "kit/pictures/label_writer.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Where a scale bar is in a picture, in pixels.
struct ScaleBar {
    double right = 0;
    double bottom = 0;
    double width = 100;
    double font = 10;
    int units_per_pixel = 1;
};

/// Draws a bar on a white ground, half of it black, with its length above.
void paint_scale_bar(CDC& dc, LabelWriter& labels, const ScaleBar& bar, const std::string& length);

} // namespace korvel::kit
