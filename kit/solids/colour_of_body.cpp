#include "kit/solids/colour_of_body.h"

#include <algorithm>
#include <cmath>

namespace korvel::kit {
namespace {

BodyColour from_channels(double red, double green, double blue);

} // namespace

// Channels are cut off to whole numbers, so those in the midst of what becomes one are safe.
BodyColour colour_of_body(const Colour& colour) {
    const BodyColour usual;
    if (colour == usual.rgb()) {
        return usual;
    }
    const auto channel = [](unsigned char value, double above) {
        return std::min(1.0, (value + above) / 255);
    };
    BodyColour best;
    for (const double above : {0.5, 0.3, 0.7, 0.1, 0.9}) {
        best = from_channels(channel(colour.red, above), channel(colour.green, above),
                             channel(colour.blue, above));
        if (best.rgb() == colour) {
            break;
        }
    }
    return best;
}

namespace {

// The double hexcone model, with the six decimals of a model file.
BodyColour from_channels(double red, double green, double blue) {
    const auto [low, high] = std::minmax({red, green, blue});
    const double range = high - low;
    const auto rounded = [](double value) { return std::nearbyint(value * 1e6) / 1e6; };
    BodyColour colour;
    colour.lightness = rounded((low + high) / 2);
    colour.saturation = 0;
    if (range > 0) {
        colour.saturation = rounded(std::min(1.0, range / (1 - std::abs(low + high - 1))));
        const double sector = high == red     ? (green - blue) / range
                              : high == green ? 2 + (blue - red) / range
                                              : 4 + (red - green) / range;
        colour.hue = rounded(60 * (sector > 0 ? sector : sector + 6));
    }
    return colour;
}

} // namespace
} // namespace korvel::kit
