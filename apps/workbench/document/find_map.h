#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QString>

#include "kit/kit.h"

namespace korvel::workbench {

/// What the user has set for a region. It belongs to the place, not to a number: regions are found
/// anew whenever curves change, and a note goes to the region that contains its point then.
struct RegionNote {
    kit::Point2 place = {}; ///< in the user's coordinates
    std::string name = {};
    std::optional<kit::Levels> levels = {};
};

/// A place of the map that may need the user's attention.
struct Problem {
    enum class Kind { loose_end, bridge, duplicate, no_length, sliver, gap };
    Kind kind = Kind::loose_end;
    QString text;                  ///< for the list
    kit::Rectangle bounds;         ///< in the user's coordinates
    std::vector<kit::Point2> line; ///< that is the problem, if it is one
};

/// The regions of curves with what belongs to them. Never changed, so that views and the worker can
/// share it.
struct FoundMap {
    kit::Map map; ///< with names and distinct colours
    kit::RegionLocator locator{map};
    std::vector<std::vector<int>> neighbours;
    std::vector<std::optional<kit::Levels>> levels; ///< of each region
    std::vector<double> areas;                      ///< of each region
    std::vector<kit::Rectangle> boxes;              ///< around each region
    std::vector<std::optional<kit::Point2>> places; ///< `Region::inner_point` of each
    std::vector<Problem> problems;
    kit::NetworkReport report;

    explicit FoundMap(kit::Map regions) : map(std::move(regions)) {}
};

/// In the user's units.
struct FindMapOptions {
    std::optional<double> tolerance = {}; ///< `kit::FindOptions::tolerance`
    double gap_reach = 0;                 ///< gaps up to this are listed
};

/// The regions of a network with names and levels from notes. Throws a kit::Error.
std::shared_ptr<const FoundMap> find_map(kit::Network network, const FindMapOptions& options,
                                         const std::vector<RegionNote>& notes,
                                         const kit::Context& context = {});

} // namespace korvel::workbench
