#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/points.h"
#include "kit/maps/fill.h"
#include "kit/maps/map.h"
#include "kit/solids/solids.h"
#include "kit/solids/weld.h"

namespace korvel::kit {

/// Which axis of the model the levels become; the map's x and y become the other two.
enum class LevelAxis {
    z = 1, ///< map x, map y, level
    y = 2, ///< map x, level, map y
    x = 3, ///< level, map x, map y
};

/// A region that became no body.
struct LeftOut {
    enum class Reason {
        front_does_not_fit, ///< the triangles of the front do not fit its outline (`Fill::front`)
        unsound_rings,      ///< its rings cross, overlap, cut it apart or have no area
        unsound_body,       ///< its body would not be closed, see `surface`
        no_levels,          ///< nothing states its levels (`RaiseOptions::only_listed`)
    };
    int region = 0;
    Reason reason = Reason::unsound_rings;
    Surface surface = {};
};

/// "its rings cross, overlap, cut it apart or have no area", …
std::string text(const LeftOut& left_out);

/// The levels of the lower and the upper cap of a body, in units of the model.
struct Levels {
    double low = 0;
    double high = 1;
};

/// How regions are raised.
struct RaiseOptions {
    double low = 0; ///< the level of the lower caps, in units of the model
    double high = 1;

    /// Levels of single regions, by their index in the map; the list may be shorter than the map.
    std::vector<std::optional<Levels>> levels_of_region = {};

    /// Leaves out the regions without levels of their own.
    bool only_listed = false;

    LevelAxis axis = LevelAxis::z;

    /// Units of the map to a unit of the model, along x and y; not 0. A map whose y grows downward
    /// comes out the right way up with {1, -1}. With this unit and origin the model has the
    /// placement of the map.
    Point2 unit = {1, 1};

    /// The point of the map that becomes 0, 0.
    Point2 origin = {};

    /// How the caps are triangulated.
    Fill fill = Fill::automatic;

    /// Gives each body vertices, edges and faces of its own, instead of sharing them with the
    /// bodies of neighbouring regions (`weld`).
    bool separate = false;

    /// How many threads work; 0 takes one for each core. The result does not depend on it.
    int threads = 0;

    /// Receives the notice of the exact class for each body, in the order of the regions; empty
    /// discards it.
    std::function<void(const std::string&)> on_notice = {};

    /// Is called for each region that is left out, in the order of the regions. It may throw, which
    /// ends the call.
    std::function<void(const LeftOut&)> on_left_out = {};
};

/// Solids that were raised from regions.
struct Raised {
    Solids solids;
    std::vector<int> region_of_body; ///< ascending
    std::vector<LeftOut> left_out;   ///< ascending
    int caps_by_front = 0;           ///< bodies with the triangles of the advancing front
    int caps_by_delaunay = 0;        ///< bodies with constrained Delaunay triangles
    WeldReport welded;               ///< empty for separate bodies
};

/// Raises each region to a closed body between two levels, in one piece. Bodies have the names of
/// their regions, and bodies of regions that share a side have clearly different hues. No regions
/// give no bodies.
///
/// Bodies of neighbouring regions share vertices, edges and walls. At a point where a region
/// touches itself the vertical edge of its body has four faces. Separate bodies have two faces at
/// each edge and a vertex for each sector of the region there.
///
/// Throws an `Error` for levels or units that do not fit, and where units are so large that corners
/// of a region coincide. Takes over a second from about a thousand regions of many corners on.
Raised raise(const Map& map, const RaiseOptions& options = {}, const Context& context = {});

} // namespace korvel::kit
