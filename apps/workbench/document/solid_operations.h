#pragma once

#include <set>

#include "kit/kit.h"

namespace korvel::workbench {

class SolidModel;

/// A cuboid or a ball to begin with.
struct Starter {
    bool is_ball = false;
    kit::Point3 centre = {};
    kit::Point3 lengths = {1, 1, 1}; ///< of the edges; of a ball the first one is the radius
    int rounds = 0;                  ///< of refinement
    bool adds = true;                ///< to the solids, instead of replacing them
};

// Operations on all solids in the worker, each a step of the history.

void make_starter(SolidModel& solids, const Starter& starter);

/// Joins vertices no farther apart, and the faces and edges that become equal. What was welded is
/// reported as a warning.
void weld(SolidModel& solids, double tolerance);

/// Removes faces of no body and vertices of no face.
void clean(SolidModel& solids);

void remove_bodies(SolidModel& solids, const std::set<int>& bodies);

/// The solids of before, unless they are to be replaced, with others added.
kit::Solids with_added(const kit::Solids& before, kit::Solids others, bool adds,
                       const kit::Context& context);

} // namespace korvel::workbench
