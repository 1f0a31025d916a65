#pragma once

#include <string>

namespace korvel::kit {

/// A colour on the screen, channels from 0 to 255.
struct Colour {
    unsigned char red = 0;
    unsigned char green = 0;
    unsigned char blue = 0;

    friend bool operator==(const Colour&, const Colour&) = default;
};

/// "#d19060".
std::string colour_text(const Colour& colour);

} // namespace korvel::kit
