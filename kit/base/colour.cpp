#include "kit/base/colour.h"

#include <array>
#include <cstdio>

namespace korvel::kit {

std::string colour_text(const Colour& colour) {
    std::array<char, 8> text = {};
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", colour.red, colour.green, colour.blue);
    return text.data();
}

} // namespace korvel::kit
