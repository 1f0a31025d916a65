#pragma once

#include <algorithm>
#include <cmath>

// glTF states colours in linear light, from 0 to 1; ours are those of the screen (sRGB).

namespace korvel::kit {

inline double linear_light(unsigned char channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// The nearest byte, so that it is the one from which the light was computed.
inline unsigned char screen_channel(double light) {
    light = std::clamp(light, 0.0, 1.0);
    const double value =
        light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
    return static_cast<unsigned char>(std::lround(255 * value));
}

} // namespace korvel::kit
