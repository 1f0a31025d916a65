#pragma once

namespace korvel::kit {

/// A colour on the screen, channels from 0 to 255.
struct Colour {
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;

    friend bool operator==(const Colour&, const Colour&) = default;
};

} // namespace korvel::kit
