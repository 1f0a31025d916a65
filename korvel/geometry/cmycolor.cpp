#include "korvel/geometry/cmycolor.h"

#include <algorithm>

// Constants and intermediate values are single precision throughout: a double among them would
// change last digits and with them truncated bytes.

namespace {

constexpr float per_byte = 0.003921569F;    // 1/255
constexpr float per_sextant = 0.016666668F; // 1/60

unsigned char to_byte(float channel) {
    const float scaled = channel * 255.0F;
    return static_cast<unsigned char>(scaled > 0.0F ? std::min(scaled, 255.0F) : 0.0F);
}

} // namespace

void CMYColor::RGBiToHLS(unsigned char r, unsigned char g, unsigned char b, float& h, float& l,
                         float& s) {
    red = r * per_byte;
    green = g * per_byte;
    blue = b * per_byte;
    RGBToHLS();
    h = hue;
    l = lightness;
    s = saturation;
}

void CMYColor::RGBToHLS() {
    const float lowest = std::min({red, green, blue});
    const float highest = std::max({red, green, blue});
    const float range = highest - lowest;
    const float sum = highest + lowest;
    lightness = sum * 0.5F;
    if (highest == lowest) {
        saturation = 0.0F;
        hue = 0.0F;
        return;
    }
    saturation = lightness <= 0.5F ? range / sum : range / (2.0F - sum);
    const float rc = (highest - red) / range;
    const float gc = (highest - green) / range;
    const float bc = (highest - blue) / range;
    // Of channels that share the maximum the last one gives the hue.
    if (red == highest) {
        hue = (bc + 6.0F - gc) * 60.0F;
    }
    if (green == highest) {
        hue = (rc + 2.0F - bc) * 60.0F;
    }
    if (blue == highest) {
        hue = (gc + 4.0F - rc) * 60.0F;
    }
    if (hue > 360.0F) { // 360 itself, pure red, does not become 0
        hue -= 360.0F;
    }
}

void CMYColor::HLSToRGBi(float h, float l, float s, unsigned char& r, unsigned char& g,
                         unsigned char& b) {
    hue = h;
    lightness = l;
    saturation = s;
    HLSToRGB();
    r = to_byte(red);
    g = to_byte(green);
    b = to_byte(blue);
}

void CMYColor::HLSToRGBf(float h, float l, float s, float& r, float& g, float& b) {
    hue = h;
    lightness = l;
    saturation = s;
    HLSToRGB();
    r = red;
    g = green;
    b = blue;
}

void CMYColor::HLSToRGB() {
    if (saturation == 0.0F) {
        red = green = blue = lightness;
        return;
    }
    const float m2 = lightness <= 0.5F ? lightness * (1.0F + saturation)
                                       : lightness + saturation - lightness * saturation;
    const float m1 = 2.0F * lightness - m2;
    red = ToRGBf(m1, m2, hue + 120.0F);
    green = ToRGBf(m1, m2, hue);
    blue = ToRGBf(m1, m2, hue - 120.0F);
}

float CMYColor::ToRGBf(float m1, float m2, float h) {
    if (h > 360.0F) { // one turn at most is taken off or added
        h -= 360.0F;
    } else if (h < 0.0F) {
        h += 360.0F;
    }
    if (h < 60.0F) {
        return m1 + (m2 - m1) * h * per_sextant;
    }
    if (h < 180.0F) {
        return m2;
    }
    if (h >= 240.0F) {
        return m1;
    }
    return m1 + (m2 - m1) * (240.0F - h) * per_sextant;
}
