#pragma once

#include "korvel/platform/export.h"

/// Conversion between red-green-blue and hue-lightness-saturation in single precision (the double
/// hexcone model). Channels, saturation and lightness run from 0 to 1, hue in degrees.
///
/// Arguments stand in the order hue, lightness, saturation; the members do not.
class KORVEL_API CMYColor {
public:
    float hue = 0;
    float saturation = 0;
    float lightness = 0;
    float red = 0;
    float green = 0;
    float blue = 0;
    float spare_values[6] = {}; ///< carried along by copies

    CMYColor() = default;
    CMYColor(const CMYColor& src) = default;
    CMYColor& operator=(const CMYColor& src) = default;
    virtual ~CMYColor() = default;

    void Copy(const CMYColor& src) { *this = src; }
    void RemoveAll() {} ///< there are no arrays to empty

    /// Sets hue, saturation and lightness from the channels. Pure red has hue 360, greys have 0.
    void RGBToHLS();
    /// Sets the channels from hue, lightness and saturation.
    void HLSToRGB();
    /// One channel: a trapezoid over the hue h between the levels m1 and m2.
    float ToRGBf(float m1, float m2, float h);

    void RGBiToHLS(unsigned char r, unsigned char g, unsigned char b, float& h, float& l, float& s);
    /// Channels come out as bytes, truncated and never rounded; values outside 0 … 255 saturate.
    void HLSToRGBi(float h, float l, float s, unsigned char& r, unsigned char& g, unsigned char& b);
    void HLSToRGBf(float h, float l, float s, float& r, float& g, float& b);
};
