#pragma once

namespace korvel::kit {

/// Width and height in pixels (PNG, SVG) or points (PDF).
struct PictureSize {
    int width = 1600;
    int height = 1000;
};

} // namespace korvel::kit
