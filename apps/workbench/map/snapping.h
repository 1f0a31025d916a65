#pragma once

namespace korvel::workbench {

/// To what the points of tools move: ends, points and lines of curves within a distance.
struct Snapping {
    bool is_on = true;
    double distance = 10;
    bool in_units = false; ///< the distance, of the user's coordinates; else in pixels
};

} // namespace korvel::workbench
